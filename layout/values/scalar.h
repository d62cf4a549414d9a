// layout/values/scalar.h - the value of one leaf, without a node.
//
// Reading makes it from bytes and making turns it into bytes; trees, views, JSON and tables take it from there.
#pragma once

#include <string_view>

#include "murv/packet_value.h"

namespace murv::detail
{

using tScalar = tPacketValue;

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
