// document/document_merge.cpp - applies merge patches (RFC 7386), one member after the other.
#include <vector>

#include "murv/document.h"
#include "murv/edit.h"
#include "murv/path.h"

namespace murv
{

namespace
{

/// A field set of the patch, and where its members go.
struct tOpenPatch
{
    const CFields* m_pPatch;
    std::string m_strPath;
    unsigned int m_uiNext = 0;
};

/// What a field set of a patch makes where there was none: its members but for those that are null.
CFields madeBy(const CFields& patch)
{
    CFields made(DT_fields);
    merge(made, patch);
    return made;
}

bool isFields(const CFields* node)
{
    return node != nullptr && node->isField();
}

void requireNames(const CFields& patch)
{
    CFields probe;
    merge(probe, patch);
}

}  // namespace

void CDocument::merge(const CFields& patch)
{
    if (!patch.isField())
        return set(".", patch);
    requireNames(patch);
    if (!tree().isField())
        return set(".", madeBy(patch));
    const std::string before = text();
    try
    {
        mergeMembers(patch);
    }
    catch (...)
    {
        static_cast<void>(load(before));
        throw;
    }
}

void CDocument::mergeMembers(const CFields& patch)
{
    std::vector<tOpenPatch> open{{&patch, {}}};
    removeNulls(patch, {});
    while (!open.empty())
    {
        if (open.back().m_uiNext == open.back().m_pPatch->getChildCount())
        {
            open.pop_back();
            continue;
        }
        const CFields& member = open.back().m_pPatch->getChildAt(open.back().m_uiNext++);
        if (member.isNull())
            continue;
        std::string path = open.back().m_strPath + pathName({member.getName(), member.getNameLen()});
        const CFields* const target = find(tree(), path);
        if (member.isField() && isFields(target))
        {
            path += '.';
            removeNulls(member, path);
            open.push_back({&member, std::move(path)});
        }
        else
            setMerged(path, member.isField() ? madeBy(member) : member);
    }
}

/// Removes what is null in a patch, before anything of it is set. \param prefix  of the paths of its members
void CDocument::removeNulls(const CFields& patch, const std::string& prefix)
{
    for (const CFields& member : patch)
    {
        if (!member.isNull())
            continue;
        const std::string path = prefix + pathName({member.getName(), member.getNameLen()});
        while (find(tree(), path) != nullptr)
            remove(path);
    }
}

void CDocument::setMerged(const std::string& path, const CFields& value)
{
    try
    {
        set(path, value);
    }
    catch (const CLogicError& error)
    {
        throw CLogicError(path + ": " + error.what());
    }
}

}  // namespace murv
