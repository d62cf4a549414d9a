// core/text/word_order.h - integers of one to eight bytes in either order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/text/word_bytes.h"

namespace murv::detail
{

/// Up to eight bytes as a number; without bytes 0.
inline std::uint64_t loadOrdered(std::string_view bytes, bool little) noexcept
{
    if (bytes.empty())
        return 0;
    const std::uint64_t word = loadShort(bytes.data(), bytes.size());
    return little ? word : reverseBytes(word) >> (64 - 8 * bytes.size());
}

/// Appends the low bytes of a number, at most eight.
inline void appendOrdered(std::uint64_t word, std::size_t bytes, bool little, std::string& out)
{
    char room[8];
    storeWord(room, little ? word : reverseBytes(word));
    out.append(little ? room : room + (8 - bytes), bytes);
}

}  // namespace murv::detail
