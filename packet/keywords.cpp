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

// Every sort of callback has a registry, a setter and a getter, which differ in nothing but their names.
#define MURV_CALLBACK_SORT(sort)                                              \
    static constinit CRegistry<CFields::t##sort##FP> s_t##sort;               \
                                                                              \
    bool CFields::set##sort##FP4ESK(unsigned char kind, t##sort##FP callback) \
    {                                                                         \
        return s_t##sort.set(kind, callback);                                 \
    }                                                                         \
                                                                              \
    CFields::t##sort##FP CFields::get##sort##FP4ESK(unsigned char kind)       \
    {                                                                         \
        return s_t##sort.get(kind);                                           \
    }

MURV_CALLBACK_SORT(CheckIdx)
MURV_CALLBACK_SORT(GetIdx)
MURV_CALLBACK_SORT(GetTxt)
MURV_CALLBACK_SORT(AllotPkt)
MURV_CALLBACK_SORT(ParsePkt)
MURV_CALLBACK_SORT(CheckPkt)

#undef MURV_CALLBACK_SORT

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
