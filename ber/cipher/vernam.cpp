// vernam.cpp - the keyless 3-to-4 text encoding: portable kernels, and the choice of a kernel.
//
// The portable kernels work on eight symbols in one 64-bit word. A kernel codes whole groups only, and a decoding
// kernel may give up early; the last bytes and the stop rules are coded once, after it, symbol by symbol.

#include "ber/cipher/vernam.h"

#include "ber/cipher/vernam_wide.h"
#include "core/text/word_bytes.h"

namespace murv::detail
{
namespace
{

constexpr std::uint64_t s_cullFirst = s_cullOnes * s_cucVernamFirst;

/// 48 bits into eight numbers of six bits, one a byte, the topmost into the lowest byte.
constexpr std::uint64_t spread(std::uint64_t v)
{
    v = (v >> 24) | ((v & 0xFFFFFFu) << 32);
    v = ((v >> 12) & 0x00000FFF00000FFFu) | ((v & 0x00000FFF00000FFFu) << 16);
    return ((v >> 6) & 0x003F003F003F003Fu) | ((v & 0x003F003F003F003Fu) << 8);
}

/// Eight numbers of six bits into 48 bits, the lowest byte topmost.
constexpr std::uint64_t gather(std::uint64_t v)
{
    v = ((v & 0x003F003F003F003Fu) << 6) | ((v >> 8) & 0x003F003F003F003Fu);
    v = ((v & 0x00000FFF00000FFFu) << 12) | ((v >> 16) & 0x00000FFF00000FFFu);
    return ((v & 0xFFFFFFu) << 24) | (v >> 32);
}
static_assert(spread(0xFC0FFF03F03Fu) == 0x3F003F003F3F003Fu && gather(spread(0x123456789ABCu)) == 0x123456789ABCu);

std::uint64_t load64Be(const unsigned char* from)
{
    return reverseBytes(loadWord(reinterpret_cast<const char*>(from)));
}

void store64Be(unsigned char* to, std::uint64_t word)
{
    storeWord(reinterpret_cast<char*>(to), reverseBytes(word));
}

/// \return the groups encoded, a multiple of 4: as many as there are
std::size_t encodeGroupsPortable(unsigned char* out, const unsigned char* data, std::size_t groups)
{
    const std::size_t all = groups / 4 * 4;
    for (std::size_t done = 0; done < all; done += 4)
    {
        const std::uint64_t first = load64Be(data + done * 3) >> 16;
        const std::uint64_t second = load64Be(data + done * 3 + 4) & 0x0000FFFFFFFFFFFFu;
        storeWord(reinterpret_cast<char*>(out + done * 4), spread(first) + s_cullFirst);
        storeWord(reinterpret_cast<char*>(out + done * 4 + 8), spread(second) + s_cullFirst);
    }
    return all;
}

/// Eight symbols into their numbers; a byte that is no symbol gives a byte above 63.
constexpr std::uint64_t numbers4Symbols(std::uint64_t symbols)
{
    // No byte borrows from its neighbour, for the high bit of each is set before. Symbols keep it, lower bytes do not.
    return (((symbols | s_cullHighs) - s_cullFirst) ^ s_cullHighs) | (symbols & s_cullHighs);
}

/// \return the groups decoded, a multiple of 4: as many as there are before a foreign byte
std::size_t decodeGroupsPortable(unsigned char* out, const unsigned char* text, std::size_t groups)
{
    std::size_t done = 0;
    for (; groups - done >= 4; done += 4)
    {
        const std::uint64_t first = numbers4Symbols(loadWord(reinterpret_cast<const char*>(text + done * 4)));
        const std::uint64_t second = numbers4Symbols(loadWord(reinterpret_cast<const char*>(text + done * 4 + 8)));
        if (((first | second) & (s_cullOnes * 0xC0)) != 0)
            break;
        const std::uint64_t low = gather(second);
        store64Be(out + done * 3, (gather(first) << 16) | (low >> 32));
        store64Be(out + done * 3 + 4, (gather(first) << 48) | low);  // writes four bytes again, with the same value
    }
    return done;
}

using tGroupsFP = std::size_t (*)(unsigned char*, const unsigned char*, std::size_t);

std::size_t encodeWith(tGroupsFP kernel, unsigned char* out, const unsigned char* data, std::size_t length)
{
    const std::size_t done = kernel(out, data, length / 3);
    unsigned char* to = out + done * 4;
    for (std::size_t i = done * 3; i < length; i += 3, to += 4)
    {
        const unsigned int b0 = data[i];
        const unsigned int b1 = length - i > 1 ? data[i + 1] : 0;
        const unsigned int b2 = length - i > 2 ? data[i + 2] : 0;
        to[0] = static_cast<unsigned char>(s_cucVernamFirst + (b0 >> 2));
        to[1] = static_cast<unsigned char>(s_cucVernamFirst + ((b0 & 3) << 4) + (b1 >> 4));
        to[2] = static_cast<unsigned char>(s_cucVernamFirst + ((b1 & 15) << 2) + (b2 >> 6));
        to[3] = static_cast<unsigned char>(s_cucVernamFirst + (b2 & 63));
        if (length - i < 3)
            to[3] = s_cucVernamPad;
        if (length - i < 2)
            to[2] = s_cucVernamPad;
    }
    return static_cast<std::size_t>(to - out);
}

std::size_t decodeWith(tGroupsFP kernel, unsigned char* out, const unsigned char* text, std::size_t length)
{
    const std::size_t done = kernel(out, text, length / 4);
    unsigned char* to = out + done * 3;
    unsigned int bits = 0;
    for (std::size_t i = done * 4; i < length; ++i)
    {
        const unsigned int number = static_cast<unsigned int>(text[i]) - s_cucVernamFirst;
        if (number > 63)  // the pad, or a foreign byte: below '?' wraps to a big number
            break;
        bits = (bits << 6) | number;
        if (i % 4 != 0)  // the second symbol of a group completes its first byte, and so on
            *to++ = static_cast<unsigned char>(bits >> (6 - i % 4 * 2));
    }
    return static_cast<std::size_t>(to - out);
}

}  // namespace

std::size_t vernamEncodePortable(unsigned char* out, const unsigned char* data, std::size_t length)
{
    return encodeWith(encodeGroupsPortable, out, data, length);
}

std::size_t vernamDecodePortable(unsigned char* out, const unsigned char* text, std::size_t length)
{
    return decodeWith(decodeGroupsPortable, out, text, length);
}

std::size_t vernamEncodeTo(unsigned char* out, const unsigned char* data, std::size_t length)
{
    static const tGroupsFP s_pKernel = vernamWideEncoder() ? vernamWideEncoder() : encodeGroupsPortable;
    return encodeWith(s_pKernel, out, data, length);
}

std::size_t vernamDecodeTo(unsigned char* out, const unsigned char* text, std::size_t length)
{
    static const tGroupsFP s_pKernel = vernamWideDecoder() ? vernamWideDecoder() : decodeGroupsPortable;
    return decodeWith(s_pKernel, out, text, length);
}

}  // namespace murv::detail
