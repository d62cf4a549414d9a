// core/text/unescape.cpp - the bytes that an escaped text stands for.
//
// Runs without a backslash are copied in blocks. Every length is tested by subtracting before a byte is looked at.
#include "core/text/unescape.h"

#include "core/text/byte_scan.h"
#include "core/text/escape_table.h"
#include "core/text/hex.h"
#include "core/text/utf8.h"

namespace murv::detail
{

namespace
{

constexpr bool isHighSurrogate(unsigned int value) noexcept
{
    return value >= 55296 && value <= 56319;
}

/// The state of the decoder. The functions below begin with `m_pIn` after the letter of an escape, at its digits.
struct tDecoder
{
    const char* m_pIn;
    const char* m_pEnd;
    char* m_pOut;

    std::ptrdiff_t left() const noexcept
    {
        return m_pEnd - m_pIn;
    }

    E_UnescapeError readHexByte() noexcept
    {
        if (left() < 2)
            return UE_hexShort;
        return takeBytes(2) ? UE_none : UE_hexDigit;
    }

    E_UnescapeError readTwoBytes() noexcept
    {
        if (left() < 4)
            return UE_bytesShort;
        return takeBytes(4) ? UE_none : UE_bytesDigit;
    }

    E_UnescapeError readCodePoint() noexcept
    {
        unsigned int codePoint = 0;
        E_UnescapeError error = readFourDigits(codePoint);
        if (error == UE_none && isHighSurrogate(codePoint))
            error = readSecondHalf(codePoint);
        if (error == UE_none)
            m_pOut = writeUtf8(m_pOut, codePoint);
        return error;
    }

private:
    bool takeBytes(std::size_t digits) noexcept
    {
        if (decodeHexPairs(m_pIn, digits, m_pOut) != digits)
            return false;
        m_pIn += digits;
        m_pOut += digits / 2;
        return true;
    }

    E_UnescapeError readFourDigits(unsigned int& value) noexcept
    {
        if (left() < 4)
            return UE_pointShort;
        int digits = 0;
        int wrong = 0;
        for (const char* const stop = m_pIn + 4; m_pIn != stop; ++m_pIn)
        {
            const int digit = hexValue(*m_pIn);
            wrong |= digit;
            digits = digits * 16 + (digit & 15);
        }
        value = static_cast<unsigned int>(digits);
        return wrong < 0 ? UE_pointDigit : UE_none;
    }

    E_UnescapeError readSecondHalf(unsigned int& codePoint) noexcept
    {
        if (left() < 6)
            return UE_pairShort;
        if (m_pIn[0] != '\\' || m_pIn[1] != 'u')
            return UE_pairToken;
        m_pIn += 2;
        unsigned int low = 0;
        const E_UnescapeError error = readFourDigits(low);
        codePoint = 65536 + ((codePoint & 1023) << 10) + (low & 1023);
        return error;
    }
};

E_UnescapeError decodeEscape(tDecoder& decoder, E_UnicodeMode mode) noexcept
{
    if (decoder.left() == 0)
        return UE_nothingFollows;
    const char letter = *decoder.m_pIn++;
    if (const unsigned char byte = s_ctByte4Letter[static_cast<unsigned char>(letter)]; byte != 0)
    {
        *decoder.m_pOut++ = static_cast<char>(byte);
        return UE_none;
    }
    if (letter == 'x')
        return decoder.readHexByte();
    if (letter == 'u')
        return mode == UM_codePoint ? decoder.readCodePoint() : decoder.readTwoBytes();
    return UE_unknownLetter;
}

}  // namespace

tUnescaped unescape(const char* begin, const char* end, E_UnicodeMode mode, char* out) noexcept
{
    tDecoder decoder{begin, end, out};
    for (;;)
    {
        copyUntilStop<tBackslashStop>(decoder.m_pIn, end, decoder.m_pOut);
        if (decoder.m_pIn == end)
            return {decoder.m_pOut, UE_none, nullptr};
        const char* const place = decoder.m_pIn++;
        const E_UnescapeError error = decodeEscape(decoder, mode);
        if (error != UE_none)
            return {decoder.m_pOut, error, place};
    }
}

}  // namespace murv::detail
