// tools/json_tree.h - trees from JSON, by a layout.
//
// The layout says what JSON leaves open: which member has only an ID, and where {"hex":"00FF"} stands for bytes.
// Integers of more than 64 bits become texts, so that no digit is lost.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "murv/layout.h"
#include "tools/json_fault.h"

namespace murv::tool
{

/// The members of the parts of a layout, by the keys that JSON has for them.
class CJsonKeys
{
public:
    explicit CJsonKeys(const CLayout& layout);
    const CLayout& layout() const
    {
        return m_tLayout;
    }
    /// \return CLayout::s_cuiNoPart when the layout has no such member
    unsigned int member(unsigned int part, const std::string& key) const;
    /// The part that repeats in an array; none for another part.
    unsigned int element(unsigned int part) const;
    /// The record of a kind. \return an empty text, or the mistake
    std::string findRecord(const std::string& kind, unsigned int& record) const;

private:
    const CLayout& m_tLayout;
    std::vector<std::unordered_map<std::string, unsigned int>> m_vMembers;  // by part
    std::unordered_map<std::string, unsigned int> m_vRecords;               // by kind
};

/// Reads one JSON value.
/// \param part  what it is in the layout; an array of such values is taken, too
bool loadJson(std::string_view text, const CJsonKeys& keys, unsigned int part, CFields& tree, tJsonFault& fault);

/// Reads a JSON object of a record, as unpack --lines writes it.
/// \param kind  the member "kind"
/// \param data  the member "data", by the layout of that kind
bool loadJsonRecord(std::string_view text, const CJsonKeys& keys, unsigned int& record, CFields& data,
                    tJsonFault& fault);

/// Whether a text is JSON, not a document: its first name is followed by a colon.
bool looksLikeJson(std::string_view text);

}  // namespace murv::tool
