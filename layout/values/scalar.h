// layout/values/scalar.h - the value of one leaf, without a node.
//
// Reading makes it from bytes and making turns it into bytes; trees, views, JSON and tables take it from there.
#pragma once

#include <string_view>

#include "murv/types.h"

namespace murv::detail
{

/// A value; which member counts is said by the type: null, bool, sint, uint, double or byte string.
struct tScalar
{
    E_DataType m_eType = DT_null;
    union
    {
        bool m_bValue;
        long long m_llValue;
        unsigned long long m_ullValue = 0;
        double m_dValue;
    };
    std::string_view m_strvText;  // DT_codelist: in the packet, in the tree, or in a scratch; not owned
};

inline tScalar makeScalar(std::string_view text)
{
    tScalar value;
    value.m_eType = DT_codelist;
    value.m_strvText = text;
    return value;
}

/// An integer as the codec gives it: signed when it fits.
inline tScalar makeScalar(bool negative, unsigned long long magnitude)
{
    tScalar value;
    value.m_eType = !negative && magnitude > 0x7FFFFFFFFFFFFFFF ? DT_uint : DT_sint;
    value.m_ullValue = negative ? 0 - magnitude : magnitude;
    return value;
}

}  // namespace murv::detail
