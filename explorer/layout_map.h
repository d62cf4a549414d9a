// explorer/layout_map.h - the parts of a layout, and where its text says them.
//
// The library numbers parts and forgets the document. So the document is walked beside the parts, which have its order.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "explorer/document.h"
#include "murv/layout.h"

namespace murv::explorer
{

/// A range of the text that is about a part: the part itself, or the rules about it.
struct tPartPlace
{
    unsigned int m_uiPart;
    std::size_t m_nBegin;
    std::size_t m_nEnd;
};

/// A compiled layout with its text.
class CLayoutMap
{
public:
    /// \return false when there are mistakes; see document() and layout()
    bool compile(std::string_view text);

    const CLayout& layout() const
    {
        return m_tLayout;
    }
    const tDocument& document() const
    {
        return m_tDocument;
    }
    /// In the order of the text. Members that a part copies from another ("like") have none.
    const std::vector<tPartPlace>& places() const
    {
        return m_vPlaces;
    }
    /// The numbers of a part's members.
    const std::vector<unsigned int>& members(unsigned int part) const
    {
        return m_vMembers[part];
    }
    /// The member of that name and ID; looked for first at `hint`, which then is its index.
    unsigned int findMember(unsigned int part, std::string_view name, unsigned int id, std::size_t& hint) const;
    /// Whether trees have nothing of the part.
    bool isLeftOut(unsigned int part) const
    {
        return m_vLeftOut[part];
    }

private:
    void walk(std::string_view text);
    void place(std::string_view text, const CFields& node, unsigned int part);

    CLayout m_tLayout;
    tDocument m_tDocument;
    std::vector<tPartPlace> m_vPlaces;
    std::vector<std::vector<unsigned int>> m_vMembers;  // by part
    std::vector<bool> m_vLeftOut;                       // by part
};

}  // namespace murv::explorer
