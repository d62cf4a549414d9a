// layout/compile/heads.cpp - what parts can begin with, the ends of arrays, and what could be taken for something else.
#include <string>

#include "layout/compile/head_walk.h"

namespace murv::detail
{

namespace
{

/// Heads of a part as the plan keeps them: none at all for one that can begin with anything.
std::vector<tHead> usefulHeads(const CHeadWalk& walk)
{
    return walk.isAnything() ? std::vector<tHead>() : walk.heads();
}

/// Whether bytes that belong to the one would be taken for the other.
bool coversAny(tCompile& compile, const std::vector<tHead>& heads, const std::vector<tHead>& others)
{
    for (const tHead& other : others)
    {
        if (heads.empty())
            return true;
        for (const tHead& head : heads)
        {
            if (!compile.spend(1))
                return false;
            if (covers(head, other))
                return true;
        }
    }
    return false;
}

void checkChoice(tCompile& compile, unsigned int index)
{
    const std::vector<unsigned int> members = compile.part(index).m_vMembers;
    const std::vector<tHead> anything(1);
    for (std::size_t i = 0; i < members.size(); ++i)
    {
        tPart& part = compile.part(members[i]);
        CHeadWalk walk(compile);
        walk.collectPart(members[i]);
        // What may have no bytes can begin with anything.
        if (compile.draft(members[i]).m_ullLeast != 0)
            part.m_vHeads = usefulHeads(walk);
        for (std::size_t j = 0; j < i; ++j)
        {
            const tPart& earlier = compile.part(members[j]);
            const std::vector<tHead>& own = part.m_vHeads.empty() ? anything : part.m_vHeads;
            if (!coversAny(compile, earlier.m_vHeads, own))
                continue;
            compile.refusePart(members[i], nameOf(part) + " is never chosen: " + nameOf(earlier) +
                                               " comes first and takes whatever begins like it");
            break;
        }
    }
}

/// Finds a part that follows and would be taken for the one before it; none when there is no such part.
unsigned int findTaken(tCompile& compile, unsigned int index, const std::vector<tHead>& heads)
{
    CHeadWalk walk(compile);
    walk.collectFollowers(index);
    for (std::size_t i = 0; i < walk.heads().size(); ++i)
    {
        if (coversAny(compile, heads, {walk.heads()[i]}))
            return walk.origin(i) == s_cuiNone ? index : walk.origin(i);
    }
    return s_cuiNone;
}

void findArrayEnd(tCompile& compile, unsigned int index)
{
    tPart& array = compile.part(index);
    if (array.m_vMembers.empty())
        return;
    CHeadWalk walk(compile);
    walk.collectPart(index);
    array.m_vHeads = usefulHeads(walk);
    const tDraft& draft = compile.draft(index);
    tHead mark;
    if (array.m_uiCount != s_cuiNone)
        array.m_eArrayEnd = AE_count;
    else if (draft.m_bSized)
        array.m_eArrayEnd = AE_enclosing;
    else if (array.m_tUntil.m_tValue.m_uiPart != s_cuiNone)
        array.m_eArrayEnd = AE_until;
    else if (!array.m_strEnds.empty())
    {
        array.m_eArrayEnd = AE_mark;
        mark.m_vBytes.push_back({0, array.m_strEnds});
        if (!array.m_vHeads.empty() && coversAny(compile, {mark}, array.m_vHeads))
            compile.refusePart(index, "An element begins with the mark that ends the array");
    }
    else if (array.m_bToEnd || !array.m_strBetween.empty() || draft.m_bDelimited)
        array.m_eArrayEnd = AE_enclosing;
    else
    {
        array.m_eArrayEnd = array.m_vHeads.empty() ? AE_enclosing : AE_heads;
        const unsigned int taken = findTaken(compile, index, array.m_vHeads);
        if (taken != s_cuiNone)
            compile.refuseEnd(index, "Nothing tells where " + nameOf(array) + " ends: " + nameOf(compile.part(taken)) +
                                         " after it could be an element");
    }
}

void checkOptional(tCompile& compile, unsigned int index)
{
    tPart& part = compile.part(index);
    const tDraft& draft = compile.draft(index);
    if (part.m_eKind != PK_array)
    {
        CHeadWalk walk(compile);
        walk.collectPart(index);
        part.m_vHeads = usefulHeads(walk);
    }
    if (draft.m_bSized || draft.m_bDelimited || part.m_uiBitmap != s_cuiNone || part.m_uiCount != s_cuiNone)
        return;
    const unsigned int taken = findTaken(compile, index, part.m_vHeads);
    if (taken != s_cuiNone && part.m_eKind != PK_array)
        compile.refusePart(index, "Nothing tells whether " + nameOf(part) +
                                      " is there: " + nameOf(compile.part(taken)) + " after it could be taken for it");
}

}  // namespace

void findHeads(tCompile& compile)
{
    for (unsigned int i = 0; i < compile.count(); ++i)
    {
        if (compile.part(i).m_eKind == PK_array)
            findArrayEnd(compile, i);
        if (compile.part(i).m_eChoice == CH_heads)
            checkChoice(compile, i);
        if (compile.part(i).m_bOptional)
            checkOptional(compile, i);
    }
}

}  // namespace murv::detail
