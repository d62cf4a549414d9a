// tests/support/text_ways.h - the ways to write a tree as text.
#pragma once

#include <sstream>
#include <string>

#include "murv/saver.h"

namespace murv::tests
{

enum E_TextWay
{
    TW_indented,
    TW_compact,
    TW_stream,
};

inline constexpr E_TextWay s_ceTextWays[] = {TW_indented, TW_compact, TW_stream};

/// \param scbc  bits of E_SaverConfigBit
inline std::string text4Way(const CFields& tree, E_TextWay way, unsigned int scbc)
{
    CSavers savers(scbc);
    if (way != TW_stream)
        return savers.saving(tree, way == TW_indented ? ER_SER_HFW : ER_SER_PKT);
    std::ostringstream out;
    savers.saving(out, tree, ER_SER_HFW);
    return out.str();
}

}  // namespace murv::tests
