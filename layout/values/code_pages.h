// layout/values/code_pages.h - characters of one byte each, to UTF-8 and back.
//
// Every page here is a part of the first 256 characters of Unicode, so a character is one byte on both sides, and two
// tables of 256 bytes are the whole page. Signs, digits, blanks and prefixes of an item are in its page, too.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace murv::detail
{

using tPageBytes = std::array<unsigned char, 256>;

struct tCodePage
{
    std::string_view m_strvName;     // in rules
    bool m_bAsciiLike;               // bytes below 128 are ASCII
    unsigned int m_uiCharacters;     // characters from 0 on that it has: 128 or 256
    tPageBytes m_aucCharacter4Byte;  // the code point; a byte that is no character comes as 128 or above
    tPageBytes m_aucByte4Character;

    char blank() const
    {
        return static_cast<char>(m_aucByte4Character[' ']);
    }
};

/// The page of that name in rules, or null.
const tCodePage* findCodePage(std::string_view name);

/// Gives the text of bytes of a page as UTF-8: a view of the bytes where they are ASCII, else in the scratch.
///
/// \param page     null: the bytes are the text
/// \param scratch  is replaced where it is needed
/// \return false when a byte is no character of the page
bool readPageText(const tCodePage* page, std::string_view bytes, std::string_view& text, std::string& scratch);

/// Appends the bytes of a UTF-8 text in a page.
///
/// \param page  null: the text itself
/// \return false, and nothing appended, when the page lacks a character, or the text is not UTF-8
bool makePageText(const tCodePage* page, std::string_view text, std::string& out);

/// Bytes of a page as characters of one byte each, in which digits, blanks and signs are those of ASCII: the bytes
/// themselves, or in the scratch, which is replaced then.
/// \param room  bytes that the caller can append to the scratch before the view moves
std::string_view readPageDigits(const tCodePage* page, std::string_view bytes, std::string& scratch, std::size_t room);

/// Turns ASCII characters into those of a page, from a place on to the end.
void makePageDigits(const tCodePage* page, std::string& out, std::size_t from);

}  // namespace murv::detail
