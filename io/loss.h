// io/loss.h - what a lossless saving could not bring back, and where it lies.
//
// Before anything is written, each node of the tree is checked against the rules of the notation. The first one that
// breaks them ends the saving, with its path.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "murv/saver.h"

namespace murv::detail
{

/// Where a node lies in its tree.
struct tNodeLevel
{
    std::size_t m_nLevel;  // 1 for the root
    bool m_bElement;       // of an array

    bool isRoot() const
    {
        return m_nLevel == 1;
    }
};

/// A container on the way to a node, and the index of the member that the way goes on by.
struct tPathStep
{
    const CFields* m_pContainer;
    std::uint32_t m_uiIndex;
};

/// What a loader gives the second value and the value kind by the packet expression alone; a node that has others would
/// come back without them.
/// \return null, or the name of what would be lost
const char* lossOfSecondValue(const CFields& node);

inline constexpr const char* s_cpLossOfLevel = "values that nest deeper than 1000 levels";
inline constexpr const char* s_cpLossOfContainerPei = "the packet expression of a container";
inline constexpr const char* s_cpLossOfPei = "this packet expression";
inline constexpr std::size_t s_cnMostLevels = 1000;
inline constexpr std::size_t s_cnMostDocumentBytes = 2147483647;

/// Names what cannot be held in the saver's error, and where. Throws std::bad_alloc, before the error changes.
/// \param steps   the way to the node; none for the root
/// \param medium  "text", "a binary file"
void reportLoss(ISaver& saver, const char* function, const std::vector<tPathStep>& steps, const char* medium,
                const char* loss, int line = __builtin_LINE());

/// Checks all nodes against a rule, in the order of the document.
///
/// \param rule   called with a node and its level: null, or the name of what would be lost
/// \param steps  given the way to the node that breaks the rule
/// \return what the rule said, null when all nodes keep it. Throws std::bad_alloc.
template <typename tRule>
const char* findLoss(const CFields& root, tRule&& rule, std::vector<tPathStep>& steps)
{
    steps.clear();
    if (const char* const loss = rule(root, tNodeLevel{1, false}))
        return loss;
    if (memberCount(root) != 0)
        steps.push_back({&root, 0});
    while (!steps.empty())
    {
        const tPathStep step = steps.back();
        const CFieldVector* const members = tFieldAccess::members(*step.m_pContainer);
        if (step.m_uiIndex == members->count())
        {
            steps.pop_back();
            if (!steps.empty())
                ++steps.back().m_uiIndex;
            continue;
        }
        const CFields& member = members->at(step.m_uiIndex);
        const bool isElement = tFieldAccess::type(*step.m_pContainer) == DT_array;
        if (const char* const loss = rule(member, tNodeLevel{steps.size() + 1, isElement}))
            return loss;
        if (memberCount(member) != 0)
            steps.push_back({&member, 0});
        else
            ++steps.back().m_uiIndex;
    }
    return nullptr;
}

}  // namespace murv::detail
