// tests/layout/property/random_layout.h - random layouts, and random data that fits them.
//
// A sketch is a layout before it is text: each part knows how to make data for itself, so that whatever the generator
// comes up with can be made, read, damaged and compared.
#pragma once

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "murv/fields.h"

namespace murv::tests
{

using tRandom = std::mt19937;

/// A random number below `bound`.
unsigned int below(tRandom& random, unsigned int bound);

struct tSketch
{
    enum E_Kind
    {
        SK_leaf,
        SK_set,
        SK_array
    };
    E_Kind m_eKind = SK_leaf;
    std::string m_strName;
    unsigned int m_uiID = 0;
    std::string m_strExpression;                // of a leaf, with its keyword
    std::string m_strValue;                     // in the layout
    std::string m_strRules;                     // about this part
    std::string m_strOwnRules;                  // "@" of a field set
    std::vector<tSketch> m_vMembers;            // of an array: the element
    std::function<CFields(tRandom&)> m_tValue;  // null: the data has none
    bool m_bChoice = false;                     // one of the members
    bool m_bMayBeAbsent = false;                // the data may lack it
    unsigned int m_uiLeast = 0;                 // elements
    std::string m_strUntil;                     // member that is 1 in the last element only
};

/// A layout of its own for every state of the generator; with all sorts of leaves and rules.
tSketch makeSketch(tRandom& random);

/// The text of a layout.
std::string text4Sketch(const tSketch& sketch);

/// Data that the layout can hold.
CFields data4Sketch(const tSketch& sketch, tRandom& random);

/// Whether all that the data has is in what was read.
bool isWithin(const CFields& data, const CFields& read);

}  // namespace murv::tests
