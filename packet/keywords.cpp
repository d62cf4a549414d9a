// packet/keywords.cpp - the callback registries, and setting all leaves of a keyword at once.

#include "core/field_access.h"
#include "core/tree_walk.h"
#include "murv/fields.h"
#include "packet/keyword_table.h"

namespace murv
{

using detail::s_cuiLastKind;
using detail::tFieldAccess;

namespace
{

/// The callbacks of one sort, by kind; kind 0 stays empty.
template <typename tCallback>
class CRegistry
{
public:
    bool set(unsigned int kind, tCallback callback)
    {
        if (kind == 0 || kind > s_cuiLastKind)
            return false;
        m_pCallback[kind] = callback;
        return true;
    }
    tCallback get(unsigned int kind) const
    {
        return kind <= s_cuiLastKind ? m_pCallback[kind] : nullptr;
    }

private:
    tCallback m_pCallback[s_cuiLastKind + 1] = {};
};

constinit CRegistry<CFields::tCheckIdxFP> s_tCheckIdx;
constinit CRegistry<CFields::tGetIdxFP> s_tGetIdx;
constinit CRegistry<CFields::tGetTxtFP> s_tGetTxt;
constinit CRegistry<CFields::tAllotPktFP> s_tAllotPkt;
constinit CRegistry<CFields::tParsePktFP> s_tParsePkt;
constinit CRegistry<CFields::tCheckPktFP> s_tCheckPkt;

/// 0, or what is wrong with that keyword.
int findFault(unsigned int kind, unsigned int index)
{
    if (kind > s_cuiLastKind || index == 0)
        return -1;
    return kind == 0 && index > detail::s_cuiLastKeyword ? -2 : 0;
}

/// Applies `change` to all leaves of that keyword and counts them.
template <typename tChange>
int changeLeaves(CFields& root, unsigned int kind, unsigned int index, tChange&& change)
{
    int count = 0;
    detail::CTreeWalk<CFields> walk(root);
    while (CFields* const node = walk.next())
    {
        const tPacketExpInfo& pei = tFieldAccess::pei(*node);
        if (tFieldAccess::isContainer(*node) || pei.m_ucSkKind != kind || pei.m_usSkIndex != index)
            continue;
        change(*node);
        ++count;
    }
    return count;
}

}  // namespace

bool CFields::setCheckIdxFP4ESK(unsigned char kind, tCheckIdxFP callback)
{
    return s_tCheckIdx.set(kind, callback);
}

bool CFields::setGetIdxFP4ESK(unsigned char kind, tGetIdxFP callback)
{
    return s_tGetIdx.set(kind, callback);
}

bool CFields::setGetTxtFP4ESK(unsigned char kind, tGetTxtFP callback)
{
    return s_tGetTxt.set(kind, callback);
}

bool CFields::setAllotPktFP4ESK(unsigned char kind, tAllotPktFP callback)
{
    return s_tAllotPkt.set(kind, callback);
}

bool CFields::setParsePktFP4ESK(unsigned char kind, tParsePktFP callback)
{
    return s_tParsePkt.set(kind, callback);
}

bool CFields::setCheckPktFP4ESK(unsigned char kind, tCheckPktFP callback)
{
    return s_tCheckPkt.set(kind, callback);
}

CFields::tCheckIdxFP CFields::getCheckIdxFP4ESK(unsigned char kind)
{
    return s_tCheckIdx.get(kind);
}

CFields::tGetIdxFP CFields::getGetIdxFP4ESK(unsigned char kind)
{
    return s_tGetIdx.get(kind);
}

CFields::tGetTxtFP CFields::getGetTxtFP4ESK(unsigned char kind)
{
    return s_tGetTxt.get(kind);
}

CFields::tAllotPktFP CFields::getAllotPktFP4ESK(unsigned char kind)
{
    return s_tAllotPkt.get(kind);
}

CFields::tParsePktFP CFields::getParsePktFP4ESK(unsigned char kind)
{
    return s_tParsePkt.get(kind);
}

CFields::tCheckPktFP CFields::getCheckPktFP4ESK(unsigned char kind)
{
    return s_tCheckPkt.get(kind);
}

int CFields::pkt_SetValue4SKI(unsigned char kind, unsigned short index, const CFields& value, CFields* a_pRoot)
{
    if (const int fault = findFault(kind, index))
        return fault;
    // The value may be a part of the tree that is about to change.
    CFields copy;
    copy.setValue(value);
    return changeLeaves(a_pRoot == nullptr ? *this : *a_pRoot, kind, index,
                        [&copy](CFields& leaf) { leaf.setValue(copy); });
}

int CFields::pkt_SetOSA4SKI(unsigned char kind, unsigned short index, const void* data, CFields* a_pRoot)
{
    if (const int fault = findFault(kind, index))
        return fault;
    return changeLeaves(a_pRoot == nullptr ? *this : *a_pRoot, kind, index,
                        [data](CFields& leaf) { leaf.pkt_SetOSA4User(data); });
}

}  // namespace murv
