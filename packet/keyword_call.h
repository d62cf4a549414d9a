// packet/keyword_call.h - running the callbacks of external keywords.
//
// The node's record of the packet around it is filled only while a callback runs, however that ends.
#pragma once

#include "core/field_access.h"
#include "core/throw.h"
#include "murv/fields.h"

namespace murv::detail
{

/// Shows the packet to the callbacks of a node as long as it lives.
class CPacketView
{
public:
    CPacketView(CFields& node, const tInnerSupportedArgs4ESK& args) : m_tNode(node)
    {
        tFieldAccess::makeSideRecord(node).m_tISA = args;
    }
    CPacketView(const CPacketView&) = delete;
    CPacketView& operator=(const CPacketView&) = delete;
    ~CPacketView()
    {
        if (tSideRecord* const record = tFieldAccess::sideRecord(m_tNode))
            record->m_tISA = {};
    }

private:
    CFields& m_tNode;
};

/// Calls the callback of the node's keyword; throws CLogicError with that text when there is none.
///
/// \return whether it agreed
inline bool callKeyword(int (*callback)(unsigned short, unsigned char, CFields&), CFields& node,
                        const tInnerSupportedArgs4ESK& args, tPlace place, const char* missing)
{
    if (callback == nullptr)
        throwAt(place, missing);
    const tPacketExpInfo& pei = tFieldAccess::pei(node);
    const unsigned short index = pei.m_usSkIndex;
    const unsigned char option = pei.m_ucSkOption;
    const CPacketView view(node, args);
    return callback(index, option, node) > 0;
}

}  // namespace murv::detail
