// murv/packet_fault.h - what is wrong with a packet, or with the data for one, as data.
//
// A fault stops the reading or making of its record; a finding is reported beside the data, which stays whole.
#ifndef MURV_PACKET_FAULT_H
#define MURV_PACKET_FAULT_H

#include <cstdint>
#include <string>

#include "murv/export.h"

namespace murv
{

/// Why a packet or a tree does not fit its layout. The numbers may change between versions; the names stay.
enum E_PacketFault : unsigned int
{
    PF_none = 0,  ///< nothing is wrong
    PF_more,      ///< the input ends too soon; more bytes may help

    // Values, while reading.
    PF_digits,     ///< other characters stand where digits must
    PF_padding,    ///< padding of another kind than the item has
    PF_sign,       ///< a sign that the item cannot have, such as "-0"
    PF_zeros,      ///< zeros in front of a number of varying width
    PF_blank,      ///< blanks where the rules know no null
    PF_character,  ///< a byte that is no character of the item's code page
    PF_literal,    ///< other bytes than the layout demands
    PF_float,      ///< a not-a-number of another form than the quiet one
    PF_range,      ///< beyond what the value's type holds

    // Values, while making.
    PF_type,      ///< a value of a kind that the item does not take
    PF_tooLong,   ///< does not fit the item
    PF_width,     ///< fewer or more bytes than the item has
    PF_negative,  ///< below zero in an item without sign
    PF_lossy,     ///< reading would give another value
    PF_null,      ///< null, which the item cannot say
    PF_mark,      ///< holds a mark at which reading would end it

    // Structure.
    PF_missing,    ///< a part or member that must be there is not
    PF_unknown,    ///< a member or part that the layout does not know
    PF_repeated,   ///< a member stands twice
    PF_unwanted,   ///< data for a part that is not there by its conditions
    PF_choice,     ///< no alternative fits, or not exactly one was given
    PF_size,       ///< a size that does not agree with its part
    PF_count,      ///< a count that does not agree with its array
    PF_leftOver,   ///< bytes left after the last part
    PF_bit,        ///< a bit of a part that the layout does not have
    PF_skipped,    ///< other bytes than the fill between aligned parts
    PF_frame,      ///< a record without its mark, length or prefix
    PF_ambiguous,  ///< reading would take the bytes for something else
    PF_limit,      ///< beyond a limit that the caller set
    PF_memory,     ///< out of memory
    PF_input,      ///< the input cannot be read
    PF_callback,   ///< the callback of an external keyword refused the item

    // Findings.
    PF_date,      ///< a date or time that does not exist
    PF_invalid,   ///< outside the valid values
    PF_checksum,  ///< a checksum or check digit that differs
    PF_total,     ///< a total that differs
    PF_oldSign,   ///< a form of sign that makers no longer use
    PF_lineEnd,   ///< another line end than the lines before
};

/// The name of a reason without its prefix, such as "digits"; for logs and JSON. Static text.
MURV_API const char* getFaultName(E_PacketFault fault);

/// One plain sentence without a full stop that says what the reason means. Static text.
MURV_API const char* getFaultSentence(E_PacketFault fault);

/// Whether the reason is only reported beside the data.
MURV_API bool isFinding(E_PacketFault fault);

/// A fault or finding, with its place.
struct tPacketFault
{
    E_PacketFault m_eCode = PF_none;
    std::string m_strPath;                ///< such as `batches[1].entries[2].entry.amount`; empty: the whole
    std::uint64_t m_ullRecord = 0;        ///< number of the record, from 1; 0: outside records
    std::uint64_t m_ullOffset = 0;        ///< of the first byte concerned, in the input; while making: in the packet
    std::uint64_t m_ullLength = 0;        ///< bytes concerned; 0 when the place is between bytes
    std::uint64_t m_ullRecordOffset = 0;  ///< of the first byte concerned, in its record
    std::uint64_t m_ullMissing = 0;       ///< PF_more: the bytes that are missing at least
    std::string m_strExpression;          ///< packet expression of the part, such as `ANF10`; empty without one
    std::string m_strRules;               ///< rules of the part as the layout states them
    std::string m_strBytes;               ///< the bytes concerned, 64 at most; stars where the part is masked
    std::string m_strMessage;             ///< one plain sentence
};

}  // namespace murv

#endif
