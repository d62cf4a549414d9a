// tools/utf8.h - where characters begin and end.
//
// Documents hold bytes; only what people look at (source lines, JSON) asks whether they form characters.
#pragma once

#include <cstddef>
#include <string_view>

namespace murv::tool
{

/// Length in bytes of the well-formed UTF-8 sequence that `text` begins with; 0 when there is none.
std::size_t utf8Length(std::string_view text);

/// True for bytes that only stand inside a sequence.
inline bool isUtf8Inside(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

}  // namespace murv::tool
