// tools/explain_table.h - the rows of a record as an HTML table: every byte with what it means.
#pragma once

#include <string>
#include <vector>

#include "tools/explain_rows.h"

namespace murv::tool
{

class CExplainTable
{
public:
    enum E_Columns
    {
        CO_all,
        CO_brief,  // for a page that has rules and comments elsewhere; offsets are decimal as they are there
    };

    explicit CExplainTable(E_Columns columns) : m_eColumns(columns)
    {
    }

    /// The table of a record. Comments and rules of field sets and arrays are shown once in it.
    /// \param caption  as markup
    std::string table4Record(const tExplainRecord& record, const std::string& caption);

private:
    std::string row4(const tExplainRow& row, const std::string& base);
    std::string place4(const tExplainRow& row) const;
    bool isNew(const tExplainRow& row);

    E_Columns m_eColumns;
    std::uint64_t m_ullTables = 0;
    std::vector<bool> m_vSeen;  // by part: it had a row in this record
};

}  // namespace murv::tool
