// layout/values/fault_table.h - the reasons why packets and trees do not fit, with their words.
//
// Errors, findings, logs and the manual all take names and sentences from these rows. A name that has shipped stays.
#pragma once

#include <iterator>

#include "murv/packet_fault.h"

namespace murv::detail
{

struct tFaultRow
{
    E_PacketFault m_eCode;
    const char* m_pName;
    const char* m_pSentence;  // without a full stop
    bool m_bFinding;          // reported beside the data
};

inline constexpr tFaultRow s_ctFaults[] = {
    {PF_none, "none", "Nothing is wrong", false},
    {PF_more, "more", "The input ends too soon", false},

    {PF_digits, "digits", "Other characters stand where digits must", false},
    {PF_padding, "padding", "The padding is of another kind than the item has", false},
    {PF_sign, "sign", "The item cannot have this sign", false},
    {PF_zeros, "zeros", "Zeros stand in front of a number of varying width", false},
    {PF_blank, "blank", "The item is blank, and no rule says that this is null", false},
    {PF_character, "character", "The item's code page does not have this character", false},
    {PF_literal, "literal", "Other bytes stand here than the layout demands", false},
    {PF_float, "float", "A not-a-number has another form than the quiet one", false},
    {PF_range, "range", "The number is beyond what its type holds", false},

    {PF_type, "type", "The item does not take a value of this kind", false},
    {PF_tooLong, "tooLong", "The value does not fit the item", false},
    {PF_width, "width", "The value has fewer or more bytes than the item takes", false},
    {PF_negative, "negative", "The number is below zero, and the item has no sign", false},
    {PF_lossy, "lossy", "Reading would give another value", false},
    {PF_null, "null", "The item cannot say null", false},
    {PF_mark, "mark", "The value holds a mark at which reading would end it", false},

    {PF_missing, "missing", "A part that must be there is missing", false},
    {PF_unknown, "unknown", "The layout does not know this part", false},
    {PF_repeated, "repeated", "A member stands twice", false},
    {PF_unwanted, "unwanted", "There is data for a part that is not there by its conditions", false},
    {PF_choice, "choice", "None of the alternatives fits, or not exactly one was given", false},
    {PF_size, "size", "A size does not agree with its part", false},
    {PF_count, "count", "A count does not agree with its array", false},
    {PF_leftOver, "leftOver", "Bytes are left after the last part", false},
    {PF_bit, "bit", "A bit is set for a part that the layout does not have", false},
    {PF_skipped, "skipped", "Other bytes than the fill stand between aligned parts", false},
    {PF_frame, "frame", "The record does not have its mark, length or prefix", false},
    {PF_ambiguous, "ambiguous", "Reading would take the bytes for something else", false},
    {PF_limit, "limit", "A limit that the caller set is passed", false},
    {PF_memory, "memory", "There is not enough memory", false},
    {PF_input, "input", "The input cannot be read", false},
    {PF_callback, "callback", "The callback of the item's keyword refused it", false},

    {PF_date, "date", "The date or time does not exist", true},
    {PF_invalid, "invalid", "The value is not one of the valid ones", true},
    {PF_checksum, "checksum", "The checksum differs", true},
    {PF_total, "total", "The total differs", true},
    {PF_oldSign, "oldSign", "The sign has a form that is no longer written", true},
    {PF_lineEnd, "lineEnd", "The line ends in another way than the lines before", true},
};

constexpr bool areFaultsInOrder()
{
    for (unsigned int i = 0; i < std::size(s_ctFaults); ++i)
    {
        if (s_ctFaults[i].m_eCode != i)
            return false;
    }
    return true;
}

static_assert(areFaultsInOrder() && std::size(s_ctFaults) == PF_lineEnd + 1, "the code is the row");

}  // namespace murv::detail
