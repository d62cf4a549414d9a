// ser/token_text.h - where tokens of the text notation end.
//
// Each function takes a cursor, `p`, that stands after the first byte of its token, and moves it to the end. What the
// bytes mean is not looked at.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "core/text/byte_scan.h"
#include "murv/token.h"

namespace murv::detail
{

/// Bytes that begin a kind of token.
struct tTokenRow
{
    std::string_view m_strvBytes;
    E_TokenType m_eType;
};

inline constexpr tTokenRow s_ctTokenRows[] = {
    {{"\0", 1}, TT_end}, {"{", TT_fieldsBegin}, {"}", TT_fieldsEnd}, {"[", TT_arrayBegin},       {"]", TT_arrayEnd},
    {"(", TT_peiBegin},  {")", TT_peiEnd},      {"\"", TT_string},   {"-0123456789", TT_number}, {"t", TT_true},
    {"f", TT_false},     {"n", TT_null},        {"#", TT_id},        {"=", TT_assign},           {",", TT_comma},
    {"/", TT_comment},
};

// What kind of token a byte begins; bytes that stand in no row begin none.
inline constexpr auto s_ctType4Byte = [] {
    std::array<unsigned char, 256> types{};
    for (unsigned char& type : types)
        type = TT_error;
    for (const tTokenRow& row : s_ctTokenRows)
    {
        for (const char byte : row.m_strvBytes)
            types[static_cast<unsigned char>(byte)] = static_cast<unsigned char>(row.m_eType);
    }
    return types;
}();

inline E_TokenType type4Byte(char byte)
{
    return static_cast<E_TokenType>(s_ctType4Byte[static_cast<unsigned char>(byte)]);
}

// Whether there are digits at all is not checked here: a lone "-" and "1." are tokens, too.
inline void takeNumber(const char*& p, const char* end)
{
    p = skipDigits(p, end);
    if (p != end && *p == '.')
        p = skipDigits(p + 1, end);
    if (p != end && (*p == 'e' || *p == 'E'))
    {
        ++p;
        if (p != end && (*p == '+' || *p == '-'))
            ++p;
        p = skipDigits(p, end);
    }
}

/// \param clean  set: the string holds no escape
/// \return whether the string is closed
inline bool takeString(const char*& p, const char* end, bool& clean)
{
    const char* at = findStringStop(p, end);
    clean = at != end && *at == '"';
    while (at != end && *at == '\\')
    {
        // The byte after a backslash is skipped, too; escapes often follow each other.
        at = end - at > 2 ? at + 2 : end;
        if (at != end && *at != '\\')
            at = findStringStop(at, end);
    }
    const bool isClosed = at != end;
    p = isClosed ? at + 1 : at;
    return isClosed;
}

/// \param rest  of the word, after its first byte. \return whether it is there; else `p` stays
inline bool takeWord(const char*& p, const char* end, std::string_view rest)
{
    if (static_cast<std::size_t>(end - p) < rest.size() || std::memcmp(p, rest.data(), rest.size()) != 0)
        return false;
    p += rest.size();
    return true;
}

/// Both kinds of comment; the line end after a comment of the first kind belongs to it.
/// \return whether it is one, and a block comment is closed
bool takeComment(const char*& p, const char* end);

/// The text of a packet expression, without the blanks around it and the remark after it, up to the ")".
/// \return null, or the loader's message; s_cNoPeiEnd when only the ")" is missing
const char* takePeiText(const char*& p, const char* end, std::string_view& text);

// An array, whose address is one in all sources: callers compare addresses, not texts.
inline constexpr char s_cNoPeiEnd[] = "Missing ')' in packet expression";

}  // namespace murv::detail
