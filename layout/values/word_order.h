// layout/values/word_order.h - integers of one to eight bytes in either order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/text/word_bytes.h"

namespace murv::detail
{

/// Up to eight bytes as a number; without bytes 0. Two loads that may overlap in the middle.
inline std::uint64_t loadOrdered(std::string_view bytes, bool little) noexcept
{
    const std::size_t size = bytes.size();
    const char* const p = bytes.data();
    const auto byte = [p](std::size_t at) { return std::uint64_t{static_cast<unsigned char>(p[at])}; };
    std::uint64_t word = 0;  // the first byte the lowest
    if (size == 8)
        word = loadWord(p);
    else if (size >= 4)
    {
        const std::uint64_t low = byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24;
        const std::uint64_t high = byte(size - 4) | byte(size - 3) << 8 | byte(size - 2) << 16 | byte(size - 1) << 24;
        word = low | high << (8 * (size - 4));
    }
    else if (size != 0)
        word = byte(0) | byte(size / 2) << (8 * (size / 2)) | byte(size - 1) << (8 * (size - 1));
    return little || size == 0 ? word : reverseBytes(word) >> (64 - 8 * size);
}

/// Appends the low bytes of a number, at most eight.
inline void appendOrdered(std::uint64_t word, std::size_t bytes, bool little, std::string& out)
{
    char room[8];
    storeWord(room, little ? word : reverseBytes(word));
    out.append(little ? room : room + (8 - bytes), bytes);
}

}  // namespace murv::detail
