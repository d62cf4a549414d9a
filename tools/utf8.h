// tools/utf8.h - where characters begin and end.
//
// Documents hold bytes; only what people look at (source lines, JSON) asks whether they form characters.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace murv::tool
{

/// Length in bytes of the well-formed UTF-8 sequence that `text` begins with; 0 when there is none.
std::size_t utf8Length(std::string_view text);

/// Whether all of the text is well-formed.
bool isUtf8(std::string_view text);

/// The number of the character that `sequence` is; it must be well-formed.
char32_t codePoint(std::string_view sequence);

/// Whether a terminal would act on the character instead of showing it: control characters, and the characters that
/// change the direction of writing, which can make a text look like another one; and byte order marks.
bool isControl(char32_t character);

/// The text as people may see it on a terminal: each control character, and each byte that is part of no character,
/// becomes a "?". For what comes from outside: names of files, arguments.
std::string shownText(std::string_view text);

/// The same where the bytes count, as in rules of a layout: they become escapes, such as \x00 and \r.
std::string escapedText(std::string_view text);

/// True for bytes that only stand inside a sequence.
inline bool isUtf8Inside(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

}  // namespace murv::tool
