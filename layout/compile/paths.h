// layout/compile/paths.h - finds the parts that rules name.
//
// Names are looked up in the innermost field set first, then outwards; the first set that has the first name decides.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "layout/compile/rule_text.h"
#include "layout/plan/part.h"

namespace murv::detail
{

struct tCompile;

/// What a path leads to.
struct tFound
{
    unsigned int m_uiPart = s_cuiNone;
    unsigned int m_uiBits = s_cuiNone;  // part of its bits, or none
    unsigned int m_uiSet = s_cuiNone;   // the field set in which the first name was found
    bool m_bCrossed = false;            // the path goes into an array
};

class CPaths
{
public:
    explicit CPaths(tCompile& compile) : m_tCompile(compile)
    {
    }

    /// The member of a field set that a step names, or none. Constant on average in large sets.
    unsigned int member(unsigned int set, const tRuleStep& step);
    /// Follows a path from the set around a part, outwards; an empty path is that set.
    ///
    /// \return nothing, or the mistake as one sentence
    std::string find(unsigned int set, const std::vector<tRuleStep>& path, tFound& found);
    /// The innermost field set around a part; the root has none.
    unsigned int setAround(unsigned int part) const;
    /// Proposes a name that the set, or one around it, has.
    std::string suggestMember(unsigned int set, const std::string& name, bool outwards) const;

private:
    std::string follow(const std::vector<tRuleStep>& path, tFound& found);

    tCompile& m_tCompile;
    // Of large sets: members by name, and by ID.
    std::unordered_map<unsigned int, std::vector<unsigned int>> m_tByName;
    std::unordered_map<unsigned int, std::vector<unsigned int>> m_tByID;
};

}  // namespace murv::detail
