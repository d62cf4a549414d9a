// tools/explain_rows.h - what murv explain shows, as rows that any output can be made of.
//
// Every byte of a record is in one row: values, lengths before them, marks, fill, and what could not be read. Masks are
// applied here, so that no output can forget them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "murv/records.h"
#include "tools/packet_json.h"

namespace murv::tool
{

enum E_ExplainRow
{
    ER_fields,   // a field set begins
    ER_array,    // an array begins
    ER_element,  // an element begins
    ER_leaf,     // a value
    ER_between,  // bytes that belong to no value: a length, a mark, fill
    ER_failed,   // the item that does not fit
    ER_unread,   // what could not be read after it
};

struct tExplainRow
{
    E_ExplainRow m_eKind = ER_leaf;
    unsigned int m_uiDepth = 0;  // of nesting within the record, from 0
    unsigned int m_uiPart = CLayout::s_cuiNoPart;
    std::uint64_t m_ullOffset = 0;  // in the input
    std::uint64_t m_ullLength = 0;
    std::string m_strBytes;       // of values and what is between; masked bytes are stars
    std::vector<bool> m_vHidden;  // which of them are masked; empty: none
    std::string m_strName;        // of the part; what the bytes are for ER_between
    std::string m_strPath;        // in the whole
    std::string m_strExpression;  // packet expression
    std::string m_strRules;
    std::string m_strComment;              // of the layout
    std::string m_strValue;                // as JSON; empty for none
    std::optional<tPacketFault> m_tFault;  // fault or finding
};

/// A record, or what could be read of it.
struct tExplainRecord
{
    unsigned int m_uiPart = CLayout::s_cuiNoPart;
    std::uint64_t m_ullNumber = 0;
    std::uint64_t m_ullOffset = 0;
    std::uint64_t m_ullLength = 0;
    std::string m_strKind;
    std::string m_strPath;
    std::string m_strComment;
    bool m_bDamaged = false;
    std::vector<tExplainRow> m_vRow;
    std::vector<tPacketFault> m_vFinding;  // those that no row has
};

/// Reads records and makes rows of them.
class CExplainer
{
public:
    /// \param bytes  the whole input, which the caller keeps
    CExplainer(const CLayout& layout, std::string_view bytes, bool unmask);
    ~CExplainer();

    /// The next record. \return false when none is left
    bool next(tExplainRecord& record);
    /// Findings after the last record, such as totals of the whole.
    const std::vector<tPacketFault>& lastFindings() const;
    bool hasFaults() const;

private:
    struct tState;
    std::unique_ptr<tState> m_pState;
};

}  // namespace murv::tool
