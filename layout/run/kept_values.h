// layout/run/kept_values.h - values that conditions, choices and numbers need while a packet is read or made.
#pragma once

#include <string>
#include <vector>

#include "layout/plan/plan.h"

namespace murv::detail
{

/// One register for each leaf that others look at. Texts are copied, so that bytes may move.
class CKeptValues
{
public:
    explicit CKeptValues(const tPlan& plan) : m_tPlan(plan), m_vKept(plan.m_uiRegisters)
    {
    }
    void set(unsigned int part, const tScalar& value);
    void clear(unsigned int index)
    {
        m_vKept[index].m_bPresent = false;
    }
    void clearAll();
    /// \return false when the value is absent or null
    bool get(const tValueOf& of, tScalar& value) const;
    /// The same for a number that is not negative.
    bool getNumber(const tValueOf& of, unsigned long long& number) const;
    /// Whether a condition holds.
    bool holds(const tTest& test) const;
    bool holdAll(const std::vector<tTest>& tests) const;
    /// Whether a bit of a bitmap is set; bit 0 is the highest of the first byte.
    bool hasBit(const tValueOf& bitmap, unsigned int bit) const;

private:
    struct tKept
    {
        bool m_bPresent = false;
        tScalar m_tValue;
        std::string m_strText;
    };

    const tPlan& m_tPlan;
    std::vector<tKept> m_vKept;
};

/// The alternative that a value names: the member with that ID, for numbers, else the one of that name; or none.
unsigned int namedMember(const tPlan& plan, const tPart& set, const tScalar& value);

/// The value of a bit field in a number.
unsigned long long bitsOf(const tBitField& field, unsigned long long number);

}  // namespace murv::detail
