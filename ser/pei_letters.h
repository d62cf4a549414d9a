// ser/pei_letters.h - the letters that a packet expression begins with in text.
//
// The reader looks a letter up, the writer takes it by its code: one table for both.
#pragma once

#include <string_view>

#include "io/load_messages.h"
#include "murv/packet_expression.h"

namespace murv::detail
{

struct tPeiLetters
{
    std::string_view m_strvLetters;  // of the codes 0, 1, ...
    const char* m_pMismatch;         // message for any other letter
};

inline constexpr tPeiLetters s_ctPeiLetters[] = {
    {"AB", "Mismatched syntax for packet E_PacketExpCode"},
    {"CN", "Mismatched syntax for packet E_RuntimeExpCode"},
    {"FVD", s_cpBadLengthCode},
};

inline constexpr unsigned int s_cuiPeiLetters = 3;
static_assert(sizeof s_ctPeiLetters / sizeof s_ctPeiLetters[0] == s_cuiPeiLetters);
static_assert(s_ctPeiLetters[0].m_strvLetters[PEC_B] == 'B' && s_ctPeiLetters[1].m_strvLetters[REC_N] == 'N' &&
              s_ctPeiLetters[2].m_strvLetters[LEC_D] == 'D');

}  // namespace murv::detail
