// core/text/text.cpp - scalars as text, text as scalars.
//
// Thin functions before the rules for numbers and quoting that savers and loaders use, too.
#include "murv/text.h"

#include <cstdint>
#include <limits>

#include "core/text/double_text.h"
#include "core/text/integer_text.h"
#include "core/text/number_scan.h"
#include "core/text/quote.h"
#include "core/text/unescape.h"

namespace murv
{

namespace
{

std::string signedText(long long value)
{
    char text[detail::s_cnIntegerTextRoom];
    return std::string(text, detail::writeSigned(text, value));
}

std::string unsignedText(unsigned long long value)
{
    char text[detail::s_cnIntegerTextRoom];
    return std::string(text, detail::writeUnsigned(text, value));
}

/// What aton64 finds in a text without its sign.
struct tDigitsRead
{
    unsigned long long m_ullValue;
    bool m_bDigits;    // false: a byte that is no digit came first
    bool m_bOverflow;  // stopped at a digit that would pass the limit
};

tDigitsRead readDigits(std::string_view text, std::uint64_t limit) noexcept
{
    const char* const end = text.data() + text.size();
    std::uint64_t value = 0;
    const char* const stop = detail::readToLimit(text.data(), end, limit, value);
    if (stop == end)
        return {value, true, false};
    const bool overflow = *stop >= '0' && *stop <= '9';
    return {overflow ? value : 0, overflow, overflow};
}

}  // namespace

std::string ToString(long long value)
{
    return signedText(value);
}

std::string ToString(unsigned long long value)
{
    return unsignedText(value);
}

std::string ToString(long value)
{
    return signedText(value);
}

std::string ToString(unsigned long value)
{
    return unsignedText(value);
}

std::string ToString(int value)
{
    return signedText(value);
}

std::string ToString(unsigned int value)
{
    return unsignedText(value);
}

std::string ToString(double value)
{
    char text[detail::s_cnDoubleTextRoom];
    return std::string(text, detail::writeDouble(text, value));
}

std::string ToString(bool value)
{
    return value ? "true" : "false";
}

std::string ToQuotedEscapeString(const char* text)
{
    return ToQuotedEscapeString(text != nullptr ? std::string_view(text) : std::string_view());
}

std::string ToQuotedEscapeString(const char* text, std::size_t length)
{
    return ToQuotedEscapeString(text != nullptr ? std::string_view(text, length) : std::string_view());
}

std::string ToQuotedEscapeString(std::string_view text)
{
    const char* const end = text.data() + text.size();
    const char* const escape = detail::findEscape(text.data(), end);
    const auto clean = static_cast<std::size_t>(escape - text.data());
    std::string quoted;
    if (escape == end)
    {
        quoted.reserve(clean + 2);
        quoted += '"';
        quoted += text;
        quoted += '"';
        return quoted;
    }
    // A byte for each byte before the first escape, the worst case from there on.
    quoted.resize(clean + detail::quotedRoom(text.size() - clean));
    char* const begin = quoted.data();
    quoted.resize(static_cast<std::size_t>(detail::writeQuoted(begin, text.data(), text.size()) - begin));
    return quoted;
}

std::string ToUnescapeString(const char* text, bool unicodeAsUtf8)
{
    return ToUnescapeString(text != nullptr ? std::string_view(text) : std::string_view(), unicodeAsUtf8);
}

std::string ToUnescapeString(std::string_view text, bool unicodeAsUtf8)
{
    std::string bytes(text.size(), '\0');
    const detail::E_UnicodeMode mode = unicodeAsUtf8 ? detail::UM_codePoint : detail::UM_bytes;
    const detail::tUnescaped result = detail::unescape(text.data(), text.data() + text.size(), mode, bytes.data());
    bytes.resize(static_cast<std::size_t>(result.m_pEnd - bytes.data()));
    return bytes;
}

bool aton64(const char* text, unsigned int length, long long& value) noexcept
{
    value = 0;
    if (text == nullptr)
        return false;
    std::string_view digits(text, length);
    const bool negative = !digits.empty() && digits.front() == '-';
    if (negative || (!digits.empty() && digits.front() == '+'))
        digits.remove_prefix(1);
    constexpr auto largest = static_cast<unsigned long long>(std::numeric_limits<long long>::max());
    const tDigitsRead read = readDigits(digits, negative ? largest + 1 : largest);
    const bool sign = negative && !read.m_bOverflow;
    value = static_cast<long long>(sign ? 0 - read.m_ullValue : read.m_ullValue);
    return read.m_bDigits;
}

bool aton64(const char* text, unsigned int length, unsigned long long& value) noexcept
{
    value = 0;
    if (text == nullptr)
        return false;
    std::string_view digits(text, length);
    if (!digits.empty() && digits.front() == '-')
        return false;
    if (!digits.empty() && digits.front() == '+')
        digits.remove_prefix(1);
    const tDigitsRead read = readDigits(digits, std::numeric_limits<unsigned long long>::max());
    value = read.m_ullValue;
    return read.m_bDigits;
}

}  // namespace murv
