// document/document_path.h - follows a path into a tree and into its text at once.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "document/source_edit.h"
#include "murv/fields.h"
#include "murv/path.h"

namespace murv::detail
{

class CDocumentPath
{
public:
    /// Goes as far as there are nodes. Throws CPathError for a text that is no path.
    CDocumentPath(CFields& root, const CSourceTree& source, std::string_view path);

    /// The last node that is there.
    CFields& node() const
    {
        return *m_vWay.back();
    }
    CFields& parent() const
    {
        return *m_vWay[m_vWay.size() - 2];
    }
    const tSourcePlace& place() const
    {
        return m_tPlace;
    }
    const tNodePath& steps() const
    {
        return m_tSteps;
    }
    /// Whether the path leads to a node.
    bool isWhole() const
    {
        return m_nTaken == m_tSteps.m_vStep.size();
    }

    void requireWhole() const;
    /// Throws CLogicError where a value would lie too deep, in levels of containers.
    void requireDepth(const CFields& value, std::size_t deepest) const;
    /// Throws CLogicError where a container would get the packet expression of a value.
    void requireNoExpression(const CFields& value) const;

private:
    void goTo(CFields& member, std::size_t index);
    bool goToId(unsigned int id);

    const CSourceTree& m_tSource;
    std::string m_strPath;
    tNodePath m_tSteps;
    std::size_t m_nTaken = 0;
    std::vector<CFields*> m_vWay;  // from the root to the last node
    tSourcePlace m_tPlace;
};

}  // namespace murv::detail
