// tools/hex_text.cpp - hexadecimal digits.
#include "tools/hex_text.h"

namespace murv::tool
{

namespace
{
constexpr char s_ccDigits[] = "0123456789ABCDEF";
constexpr std::string_view s_csvBetween = " \t\r\n,:-";

/// \return -1 for what is no digit
int valueOf(char digit)
{
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    return digit >= 'A' && digit <= 'F' ? digit - 'A' + 10 : -1;
}
}  // namespace

void appendHex(std::string& out, std::string_view bytes, std::string_view between)
{
    bool isFirst = true;
    for (const char byte : bytes)
    {
        const auto number = static_cast<unsigned char>(byte);
        if (!isFirst)
            out += between;
        isFirst = false;
        out += s_ccDigits[number >> 4U];
        out += s_ccDigits[number & 0xFU];
    }
}

bool bytes4Hex(std::string_view text, std::string& bytes, std::size_t& fault)
{
    for (std::size_t at = 0; at < text.size();)
    {
        if (s_csvBetween.find(text[at]) != std::string_view::npos)
        {
            ++at;
            continue;
        }
        const bool hasMark = text[at] == '0' && at + 1 < text.size() && (text[at + 1] == 'x' || text[at + 1] == 'X');
        if (hasMark)
            at += 2;
        const int high = at < text.size() ? valueOf(text[at]) : -1;
        const int low = at + 1 < text.size() ? valueOf(text[at + 1]) : -1;
        if (high < 0 || low < 0)
        {
            fault = high < 0 ? at : at + 1;
            return false;
        }
        bytes += static_cast<char>(high * 16 + low);
        at += 2;
    }
    return true;
}

std::string hex4Offset(std::uint64_t offset, std::size_t digits)
{
    std::string text;
    for (; offset != 0 || text.size() < digits; offset >>= 4U)
        text.insert(text.begin(), s_ccDigits[offset & 0xFU]);
    return "0x" + text;
}

}  // namespace murv::tool
