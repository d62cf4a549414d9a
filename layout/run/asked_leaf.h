// layout/run/asked_leaf.h - a leaf as the callbacks of its keyword see it.
//
// Callbacks get a node of their own, with name, ID, packet expression and value of the leaf, and see the packet through
// the record of that node, as those of the `pkt_` members do. The packet is the record at hand.
#pragma once

#include "layout/plan/part.h"
#include "murv/fields.h"

namespace murv::detail
{

class CAskedLeaf
{
public:
    /// \param user  the application's pointer
    CAskedLeaf(const tPart& leaf, const tScalar& value, const void* user);

    /// Runs a callback; what it throws passes through. \return whether it agreed. Throws CLogicError when it is missing
    bool askMaking(const std::string& packet);
    bool askParsing(std::string_view packet, unsigned int offset);
    /// What the callback did that the codec does not take; null for nothing.
    const char* complaint() const;
    /// The length that it left in the packet expression.
    unsigned int length() const
    {
        return m_tNode.pkt_GetExp().m_uiLength;
    }
    /// The value that it left; valid as long as this.
    tScalar value() const;

private:
    const tPart& m_tLeaf;
    CFields m_tNode;
};

}  // namespace murv::detail
