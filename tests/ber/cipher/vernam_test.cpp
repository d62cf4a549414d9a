// tests/ber/cipher/vernam_test.cpp - the keyless text encoding: alphabet, layout, stop rules, edges.
//
// Every kernel is compared with each other.
//
// Inputs lie in blocks of exactly their size, so that the sanitizer sees a byte read or written too many.

#include "ber/cipher/vernam.h"

#include "ber/cipher/message.h"
#include "ber/cipher/vernam_wide.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/ber/cipher/random_bytes.h"
#include "tests/support/processor.h"

namespace
{

using namespace murv;
using namespace murv::tests;

tBytes bytes4(const std::string& text)
{
    return tBytes(text.begin(), text.end());
}

std::string encoded(const tBytes& plain)
{
    unsigned char* out = nullptr;
    const std::uint32_t count = VernamEncode(plain.data(), plain.size(), &out);
    std::string text(reinterpret_cast<const char*>(out), count);
    std::free(out);
    return text;
}

/// The decoded bytes; nothing when decoding fails, which must then leave no buffer.
tBytes decoded(const std::string& text)
{
    const tBytes exact = bytes4(text);
    unsigned char* out = nullptr;
    const std::uint32_t count = VernamDecode(exact.data(), exact.size(), &out);
    EXPECT_EQ(out == nullptr, count == 0);
    tBytes plain(out, out + count);
    std::free(out);
    return plain;
}

/// What the rules say, symbol by symbol, written without regard to speed.
tBytes decodedByTheRules(const std::string& text)
{
    tBytes plain;
    unsigned int bits = 0;
    unsigned int count = 0;
    for (const char symbol : text)
    {
        if (symbol < '?' || symbol > '~')
            break;
        bits = bits << 6 | static_cast<unsigned int>(symbol - '?');
        count += 6;
        if (count >= 8)
        {
            count -= 8;
            plain.push_back(static_cast<unsigned char>(bits >> count));
        }
    }
    return plain;
}

/// Every way to decode that this processor has, into blocks of exactly the promised room.
void expectAllDecode(const std::string& text, const tBytes& expected)
{
    const tBytes exact = bytes4(text);
    for (const auto decode : {detail::vernamDecodeTo, detail::vernamDecodePortable})
    {
        const std::size_t room = detail::vernamByteRoom(exact.size());
        const auto out = std::make_unique<unsigned char[]>(room);
        const std::size_t count = decode(out.get(), exact.data(), exact.size());
        ASSERT_LE(count, room);
        EXPECT_EQ(tBytes(out.get(), out.get() + count), expected) << text;
    }
}

TEST(Vernam, symbolsAreTheSixtyFourNeighboursFromQuestionMarkToTilde)
{
    tBytes plain;
    std::string expected;
    for (unsigned int group = 0; group < 16; ++group)
    {
        const unsigned int bits = (group * 4) << 18 | (group * 4 + 1) << 12 | (group * 4 + 2) << 6 | (group * 4 + 3);
        for (const unsigned int shift : {16u, 8u, 0u})
            plain.push_back(static_cast<unsigned char>(bits >> shift));
        for (unsigned int i = 0; i < 4; ++i)
            expected.push_back(static_cast<char>('?' + group * 4 + i));
    }
    EXPECT_EQ(encoded(plain), expected);
    EXPECT_EQ(expected, "?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`abcdefghijklmnopqrstuvwxyz{|}~");
}

TEST(Vernam, threeBytesBecomeFourSymbols)
{
    EXPECT_EQ(encoded({0x00, 0x00, 0x00}), "????");
    EXPECT_EQ(encoded({0xFF, 0xFF, 0xFF}), "~~~~");
    EXPECT_EQ(encoded({0x12, 0x34, 0x56}), "CbPU");  // 4, 35, 17, 22
}

TEST(Vernam, oneByteEndsInTwoPadsAndTwoBytesEndInOne)
{
    EXPECT_EQ(encoded({0x12}), "C_--");        // 4, 32
    EXPECT_EQ(encoded({0x12, 0x34}), "CbO-");  // 4, 35, 16
    EXPECT_EQ(encoded(bytes4("abc")), "WUHb");
}

TEST(Vernam, everyLengthComesBack)
{
    for (unsigned int length = 1; length <= 300; ++length)
    {
        const tBytes plain = randomBytes(length, length);
        const std::string text = encoded(plain);
        EXPECT_EQ(text.size(), (length + 2) / 3 * 4);
        EXPECT_EQ(decoded(text), plain) << length;
    }
}

TEST(Vernam, bigBuffersComeBack)
{
    for (const std::size_t length : {4095u, 65536u, 100001u, 1048577u})
        EXPECT_EQ(decoded(encoded(randomBytes(length, 5))), randomBytes(length, 5)) << length;
}

TEST(Vernam, everyKernelEncodesAsThePortableOne)
{
    for (unsigned int length = 1; length <= 300; ++length)
    {
        const tBytes plain = randomBytes(length, length + 1000);
        tBytes expected(detail::vernamTextSize(length));
        tBytes actual(detail::vernamTextSize(length));
        EXPECT_EQ(detail::vernamEncodePortable(expected.data(), plain.data(), length), expected.size());
        EXPECT_EQ(detail::vernamEncodeTo(actual.data(), plain.data(), length), actual.size());
        EXPECT_EQ(actual, expected) << length;
    }
}

bool hasWidth(detail::E_VernamWidth width)
{
    return width == detail::VW_512 ? hasAvx512Vbmi() : hasAvx2();
}

class CVernamWidth : public testing::TestWithParam<detail::E_VernamWidth>
{
};

INSTANTIATE_TEST_SUITE_P(Vernam, CVernamWidth, testing::Values(detail::VW_256, detail::VW_512));

TEST_P(CVernamWidth, kernelCodesWhatItSaysItDidAndTouchesNothingElse)
{
    const auto encode = detail::vernamEncoder4Width(GetParam());
    const auto decode = detail::vernamDecoder4Width(GetParam());
    ASSERT_EQ(encode != nullptr, hasWidth(GetParam()));
    ASSERT_EQ(decode != nullptr, hasWidth(GetParam()));
    if (!hasWidth(GetParam()))
        GTEST_SKIP() << "NOT TESTED: this processor has no registers of that width";
    for (std::size_t groups = 0; groups <= 100; ++groups)
    {
        const tBytes plain = randomBytes(groups * 3, static_cast<unsigned int>(groups));
        tBytes text(groups * 4);
        tBytes expected(groups * 4);
        detail::vernamEncodePortable(expected.data(), plain.data(), plain.size());
        const std::size_t encodedGroups = encode(text.data(), plain.data(), groups);
        ASSERT_LE(encodedGroups, groups);
        ASSERT_LE(groups - encodedGroups, 16u);
        expected.resize(encodedGroups * 4);
        text.resize(encodedGroups * 4);
        EXPECT_EQ(text, expected);

        tBytes bytes(encodedGroups * 3);
        const std::size_t decodedGroups = decode(bytes.data(), text.data(), encodedGroups);
        ASSERT_LE(decodedGroups, encodedGroups);
        ASSERT_LE(encodedGroups - decodedGroups, 16u);
        EXPECT_TRUE(
            std::equal(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(decodedGroups * 3), plain.begin()));
    }
}

TEST_P(CVernamWidth, decoderStopsBeforeAForeignByteAnywhere)
{
    const auto decode = detail::vernamDecoder4Width(GetParam());
    if (!hasWidth(GetParam()))
        GTEST_SKIP() << "NOT TESTED: this processor has no registers of that width";
    ASSERT_NE(decode, nullptr);
    for (std::size_t place = 0; place < 256; ++place)
    {
        tBytes text(256, 'a');
        tBytes bytes(192);
        text[place] = 0x80;
        EXPECT_LE(decode(bytes.data(), text.data(), 64), place / 4) << place;
    }
}

TEST(Vernam, decodingStopsAtAForeignByteInEveryPlace)
{
    const std::string text = encoded(randomBytes(225, 9));
    for (std::size_t place = 0; place < text.size(); ++place)
    {
        for (const char foreign : {'\0', '-', '=', '>', '\x7F', '\x80', '\xBF', '\xFF'})
        {
            std::string broken = text;
            broken[place] = foreign;
            expectAllDecode(broken, decodedByTheRules(broken));
            EXPECT_EQ(decoded(broken), decodedByTheRules(broken)) << place << ' ' << static_cast<int>(foreign);
        }
    }
}

TEST(Vernam, everyByteThatIsNoSymbolStopsDecoding)
{
    for (int byte = 0; byte < 256; ++byte)
    {
        const bool isSymbol = byte >= '?' && byte <= '~';
        std::string text(96, 'a');
        text[40] = static_cast<char>(byte);
        EXPECT_EQ(decoded(text).size(), isSymbol ? 72u : 30u) << byte;
        expectAllDecode(text, decodedByTheRules(text));
    }
}

TEST(Vernam, everyPrefixDecodesToWhatItsSymbolsHold)
{
    const std::string text = encoded(randomBytes(150, 11));
    for (std::size_t length = 1; length <= text.size(); ++length)
        expectAllDecode(text.substr(0, length), decodedByTheRules(text.substr(0, length)));
}

TEST(Vernam, lastGroupOfTwoOrThreeSymbolsGivesOneOrTwoBytes)
{
    EXPECT_EQ(decoded("C_"), (tBytes{0x12}));
    EXPECT_EQ(decoded("CbO"), (tBytes{0x12, 0x34}));
    EXPECT_EQ(decoded("CbPUC_"), (tBytes{0x12, 0x34, 0x56, 0x12}));
}

TEST(Vernam, symbolThatStandsAloneGivesNothing)
{
    EXPECT_EQ(decoded("C"), tBytes());
    EXPECT_EQ(decoded("C---"), tBytes());
    EXPECT_EQ(decoded("CbPUC"), (tBytes{0x12, 0x34, 0x56}));
}

TEST(Vernam, textAfterThePadIsIgnored)
{
    EXPECT_EQ(decoded("C_--CbPU"), (tBytes{0x12}));
    EXPECT_EQ(decoded("C_-PU"), (tBytes{0x12}));
    EXPECT_EQ(decoded("CbPU\nCbPU"), (tBytes{0x12, 0x34, 0x56}));
}

TEST(Vernam, textThatBeginsWithAPadOrForeignByteFails)
{
    EXPECT_EQ(decoded("-CbPU"), tBytes());
    EXPECT_EQ(decoded(" CbPU"), tBytes());
    EXPECT_EQ(decoded("----"), tBytes());
}

TEST(Vernam, decodedBufferIsZeroAfterTheBytes)
{
    const std::string text = encoded(randomBytes(90, 3)) + "-" + std::string(60, 'a');
    unsigned char* out = nullptr;
    const std::uint32_t count = VernamDecode(text.data(), text.size(), &out);
    ASSERT_EQ(count, 90u);
    EXPECT_EQ(tBytes(out + count, out + text.size()), tBytes(text.size() - count, 0));
    std::free(out);
}

TEST(Vernam, decodingMayOverwriteItsText)
{
    for (std::size_t length = 1; length <= 300; ++length)
    {
        const tBytes plain = randomBytes(length, 21);
        for (const auto decode : {detail::vernamDecodeTo, detail::vernamDecodePortable})
        {
            tBytes text = bytes4(encoded(plain));
            text.resize(decode(text.data(), text.data(), text.size()));
            EXPECT_EQ(text, plain) << length;
        }
    }
}

TEST(Vernam, slicesGiveTheTextOfOneCall)
{
    const tBytes plain = randomBytes(10000, 4);
    const std::string whole = encoded(plain);
    tBytes text(whole.size());
    std::size_t size = 0;
    for (std::size_t start = 0; start < plain.size(); start += 999)
        size += detail::vernamEncodeTo(text.data() + size, plain.data() + start,
                                       std::min<std::size_t>(999, plain.size() - start));
    EXPECT_EQ(std::string(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(size)), whole);
}

TEST(Vernam, nullAndEmptyFailAndLeaveNoBuffer)
{
    unsigned char some = 0;
    for (const auto code : {VernamEncode, VernamDecode})
    {
        unsigned char* out = &some;
        EXPECT_EQ(code(nullptr, 4, &out), 0u);
        EXPECT_EQ(out, nullptr);
        out = &some;
        EXPECT_EQ(code("abcd", 0, &out), 0u);
        EXPECT_EQ(out, nullptr);
        EXPECT_EQ(code("abcd", 4, nullptr), 0u);
    }
}

TEST(Vernam, lengthBeyondThirtyTwoBitsFailsBeforeAnythingIsRead)
{
    unsigned char some = 0;
    unsigned char* out = &some;
    EXPECT_EQ(VernamEncode(&some, 3221225470u, &out), 0u);  // its text would have 4294967296 symbols
    EXPECT_EQ(out, nullptr);
    out = &some;
    EXPECT_EQ(VernamEncode(&some, static_cast<std::size_t>(-1), &out), 0u);
    EXPECT_EQ(out, nullptr);
    out = &some;
    EXPECT_EQ(VernamDecode(&some, static_cast<std::size_t>(-1), &out), 0u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(detail::vernamTextSize(3221225469u), 4294967292u);
}

}  // namespace
