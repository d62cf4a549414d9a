// tools/sample_plan.h - what random data for a layout has to know, looked up once.
//
// A value that decides about other parts gets wishes: the values at which something else happens. So all alternatives
// and conditions are met.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "murv/layout.h"
#include "tools/sample_rules.h"

namespace murv::tool
{

/// A value, or one of the small numbers in a number.
struct tSampleTarget
{
    unsigned int m_uiPart = CLayout::s_cuiNoPart;
    std::string m_strBits;  // name; empty: the whole value
};

/// A test whose path leads to its target.
struct tSampleCondition
{
    tSampleTarget m_tTarget;
    E_SampleCompare m_eCompare = SC_equal;
    std::vector<std::string> m_vValue;
};

struct tSampleWish
{
    std::string m_strBits;  // small number that it is about; empty: the whole value
    std::vector<std::string> m_vValue;
    bool m_bOnly = false;  // no other value will do
};

/// A packet expression, taken apart.
struct tSampleExpression
{
    char m_cForm = 'A';    // A: text; B: binary
    char m_cType = 'C';    // C: bytes; N: number
    char m_cLength = 'F';  // F: fixed; V: after its length
    std::uint64_t m_ullWidth = 0;
    std::string m_strKeyword;
};

struct tSamplePart
{
    tLayoutPart m_tPart;
    std::vector<unsigned int> m_vMembers;
    tSampleRules m_tRules;
    tSampleExpression m_tExpression;
    std::vector<tLayoutBits> m_vBits;
    std::vector<tSampleCondition> m_vIf;
    std::optional<tSampleCondition> m_tUntil;
    tSampleTarget m_tChooser;
    std::vector<tSampleWish> m_vWishes;

    bool has(unsigned int words) const
    {
        return (m_tRules.m_uiWords & words) != 0;
    }
};

class CSamplePlan
{
public:
    explicit CSamplePlan(const CLayout& layout);

    const CLayout& layout() const
    {
        return m_tLayout;
    }
    const tSamplePart& operator[](unsigned int part) const
    {
        return m_vPart[part];
    }
    /// Bytes that random texts avoid, for they would end a value or record.
    const std::string& marks() const
    {
        return m_strMarks;
    }

private:
    unsigned int setAround(unsigned int part) const;
    unsigned int memberOf(unsigned int set, const std::string& name) const;
    tSampleTarget find(unsigned int scope, const std::vector<std::string>& path) const;
    tSampleCondition resolved(unsigned int scope, const tSampleTest& test);
    void resolve(unsigned int part);
    void wishForAlternatives(unsigned int set);
    tSampleWish& wish(const tSampleTarget& target);

    const CLayout& m_tLayout;
    std::vector<tSamplePart> m_vPart;
    std::string m_strMarks;
};

}  // namespace murv::tool
