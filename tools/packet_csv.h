// tools/packet_csv.h - records of one kind as comma-separated values (RFC 4180).
//
// Columns are the leaves of the record in the order of the layout; nested field sets give names with dots. An array has
// one column, which holds it as JSON.
#pragma once

#include <string>
#include <vector>

#include "murv/layout.h"
#include "tools/packet_json.h"

namespace murv::tool
{

class CPacketCsv : public IPacketVisitor
{
public:
    /// \param record  the kind of records; others are left out
    CPacketCsv(const CLayout& layout, const CPacketJsonParts& parts, unsigned int record);

    /// The names of the columns, with a line end.
    std::string header() const;
    /// Forgets the values of the last record.
    void begin();
    /// Appends the row of the record that was read, if it is of the kind.
    void appendRow(std::string& out) const;

    void onFields(unsigned int part) override;
    void onFieldsEnd(unsigned int part) override;
    void onArray(unsigned int part) override;
    void onElement(unsigned int part, std::uint64_t index) override;
    void onArrayEnd(unsigned int part) override;
    void onRecord(unsigned int part, std::uint64_t number, std::uint64_t offset) override;
    void onRecordEnd(unsigned int part) override;
    void onLeaf(unsigned int part, const tPacketValue& value, const tByteRange& place) override;

private:
    static constexpr unsigned int s_cuiNone = 0xFFFFFFFF;

    void addColumns(const CLayout& layout, unsigned int part);
    std::string name4Part(const CLayout& layout, unsigned int part) const;

    const CPacketJsonParts& m_tParts;
    unsigned int m_uiRecord;
    std::vector<unsigned int> m_vColumn4Part;  // the first of several for a number that consists of small ones
    std::vector<std::string> m_vName;
    std::vector<std::string> m_vCell;  // ready to be written
    std::string m_strArray;
    CPacketJson m_tArray;
    unsigned int m_uiArrays = 0;  // arrays that are open
    bool m_bWanted = false;
};

}  // namespace murv::tool
