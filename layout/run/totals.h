// layout/run/totals.h - arithmetic that reading and making of numbers about other parts share.
#pragma once

#include <cstdint>
#include <string_view>

#include "layout/plan/plan.h"
#include "layout/values/checksum.h"

namespace murv::detail
{

/// Bytes to skip from an offset to the next multiple of `align`.
inline std::uint64_t skipTo(unsigned int align, std::uint64_t offset)
{
    return (align - offset % align) % align;
}

/// How much of a total a number keeps: it counts modulo this; 0 for all 64 bits.
std::uint64_t total4Item(const tPlan& plan, const tLink& link);

/// Adds an amount, which may be below zero, to a total.
std::uint64_t addToTotal(std::uint64_t modulo, std::uint64_t total, std::uint64_t amount);

/// The bytes that a checksum is about, and where the number itself lies; it may lie outside.
struct tChecked
{
    std::string_view m_strvBytes;
    std::uint64_t m_ullOwn;  // its offset, modulo 2^64
    std::uint64_t m_ullOwnLength;
};

/// The checksum, with blanks (numbers in text) or zero bytes in place of the number's own bytes.
std::uint64_t checksum4(E_Checksum kind, const tItem& number, const tChecked& checked);

}  // namespace murv::detail
