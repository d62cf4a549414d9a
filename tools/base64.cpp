// tools/base64.cpp - groups of three bytes and four characters.
#include "tools/base64.h"

#include <array>
#include <cstdint>

namespace murv::tool
{

namespace
{
constexpr std::string_view s_svDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::size_t s_cnBytes = 3;       // of a group
constexpr std::size_t s_cnCharacters = 4;  // of a group
constexpr std::int8_t s_ccNone = -1;

constexpr std::array<std::int8_t, 256> makeValues()
{
    std::array<std::int8_t, 256> values{};
    for (std::int8_t& value : values)
        value = s_ccNone;
    for (std::size_t digit = 0; digit < s_svDigits.size(); ++digit)
        values[static_cast<unsigned char>(s_svDigits[digit])] = static_cast<std::int8_t>(digit);
    return values;
}

constexpr std::array<std::int8_t, 256> s_ctValue4Digit = makeValues();

/// Characters of the last group that are no padding.
std::size_t digits4Last(std::string_view group)
{
    std::size_t count = group.size();
    while (count > 2 && group[count - 1] == '=')
        --count;
    return count;
}

/// \return false for a character that is no digit, and for bits after the last byte
bool readGroup(std::string_view digits, std::string& bytes)
{
    std::uint32_t bits = 0;
    for (const char digit : digits)
    {
        const std::int8_t value = s_ctValue4Digit[static_cast<unsigned char>(digit)];
        if (value == s_ccNone)
            return false;
        bits = bits << 6U | static_cast<std::uint32_t>(value);
    }
    const std::size_t whole = digits.size() - 1;  // bytes
    const auto spare = static_cast<unsigned int>(digits.size() * 6 - whole * 8);
    if ((bits & ((1U << spare) - 1)) != 0)
        return false;
    bits >>= spare;
    for (std::size_t i = whole; i != 0; --i)
        bytes += static_cast<char>(static_cast<unsigned char>(bits >> (8 * (i - 1))));
    return true;
}
}  // namespace

void appendBase64(std::string& out, std::string_view bytes)
{
    for (; !bytes.empty(); bytes.remove_prefix(bytes.size() < s_cnBytes ? bytes.size() : s_cnBytes))
    {
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < s_cnBytes; ++i)
            bits = bits << 8U | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
        for (std::size_t i = 0; i < s_cnCharacters; ++i)
            out += i <= bytes.size() ? s_svDigits[bits >> (6 * (s_cnBytes - i)) & 0x3FU] : '=';
    }
}

bool bytes4Base64(std::string_view text, std::string& bytes)
{
    bytes.clear();
    if (text.size() % s_cnCharacters != 0)
        return false;
    bytes.reserve(text.size() / s_cnCharacters * s_cnBytes);
    for (; !text.empty(); text.remove_prefix(s_cnCharacters))
    {
        const bool isLast = text.size() == s_cnCharacters;
        const std::string_view group = text.substr(0, s_cnCharacters);
        if (!readGroup(group.substr(0, isLast ? digits4Last(group) : s_cnCharacters), bytes))
            return false;
    }
    return true;
}

}  // namespace murv::tool
