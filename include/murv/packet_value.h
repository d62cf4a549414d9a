// murv/packet_value.h - the value of one item of a packet, without a node.
#ifndef MURV_PACKET_VALUE_H
#define MURV_PACKET_VALUE_H

#include <string_view>

#include "murv/types.h"

namespace murv
{

/// A value as a packet gives it: null, an integer, a double, or a text. Integers are DT_sint when they fit. The type
/// says which member counts; all of the union are the same eight bytes.
struct tPacketValue
{
    E_DataType m_eType = DT_null;
    union
    {
        bool m_bValue;                      ///< DT_bool
        long long m_llValue;                ///< DT_sint
        unsigned long long m_ullValue = 0;  ///< DT_uint
        double m_dValue;                    ///< DT_double
        unsigned long long m_ullBits;       ///< the bits of any of them
    };
    std::string_view m_strvText;  ///< DT_codelist; not owned: it lies in the packet, or is valid until the next value
};

}  // namespace murv

#endif
