// tests/ber/cipher/cipher_test.cpp - the dispatch by cipher number: names, keys, failures, and no memory.
//
// What the ciphers do is tested where they are; here it counts that the right one is called with the right things.

#include "ber/cipher/cipher.h"

#include "ber/cipher/message.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/support/failing_malloc.h"
#include "tests/support/sanitized.h"

#if defined(__linux__)
#include <sys/resource.h>
#endif

namespace
{

using namespace murv;
using namespace murv::tests;

const std::string s_cstrText = "The body of a file, longer than a block of SEED.";
const std::string s_cstrKey = "password";

std::string taken(unsigned char* out, std::uint32_t count)
{
    EXPECT_EQ(out == nullptr, count == 0);
    std::string result(reinterpret_cast<const char*>(out), count);
    std::free(out);
    return result;
}

std::string enciphered(unsigned int type, const std::string& text, const std::string& key, bool padAlways = false)
{
    unsigned char* out = nullptr;
    const std::uint32_t count = CipherEncrypt(type, text.data(), text.size(), key.data(), key.size(), padAlways, &out);
    return taken(out, count);
}

std::string deciphered(unsigned int type, const std::string& text, const std::string& key)
{
    unsigned char* out = nullptr;
    const std::uint32_t count = CipherDecrypt(type, text.data(), text.size(), key.data(), key.size(), &out);
    return taken(out, count);
}

TEST(Cipher, numbersHaveNames)
{
    EXPECT_STREQ(detail::cipherName(0), "VERNAM");
    EXPECT_STREQ(detail::cipherName(1), "SEED");
    EXPECT_STREQ(detail::cipherName(2), "");
    EXPECT_STREQ(detail::cipherName(0xFFFFFFFF), "");
}

TEST(Cipher, onlySeedNeedsAKey)
{
    EXPECT_FALSE(detail::findCipher(0)->m_bKeyNeeded);
    EXPECT_TRUE(detail::findCipher(1)->m_bKeyNeeded);
    EXPECT_EQ(detail::findCipher(2), nullptr);
}

TEST(Cipher, zeroIsVernam)
{
    unsigned char* out = nullptr;
    const std::uint32_t count = VernamEncode(s_cstrText.data(), s_cstrText.size(), &out);
    EXPECT_EQ(enciphered(0, s_cstrText, ""), taken(out, count));
    EXPECT_EQ(deciphered(0, enciphered(0, s_cstrText, ""), ""), s_cstrText);
}

TEST(Cipher, vernamIgnoresTheKey)
{
    EXPECT_EQ(enciphered(0, s_cstrText, s_cstrKey), enciphered(0, s_cstrText, ""));
    unsigned char* out = nullptr;
    const std::uint32_t count = CipherEncrypt(0, s_cstrText.data(), s_cstrText.size(), nullptr, 0, true, &out);
    EXPECT_EQ(taken(out, count), enciphered(0, s_cstrText, ""));
}

TEST(Cipher, oneIsSeed)
{
    unsigned char* out = nullptr;
    const std::uint32_t count =
        SeedEncrypt(s_cstrText.data(), s_cstrText.size(), s_cstrKey.data(), s_cstrKey.size(), &out, false);
    EXPECT_EQ(enciphered(1, s_cstrText, s_cstrKey), taken(out, count));
    EXPECT_EQ(deciphered(1, enciphered(1, s_cstrText, s_cstrKey), s_cstrKey), s_cstrText);
}

TEST(Cipher, padAlwaysReachesSeed)
{
    const std::string twenty(20, 'x');
    EXPECT_EQ(enciphered(1, twenty, s_cstrKey, false).size(), 20u);
    EXPECT_EQ(enciphered(1, twenty, s_cstrKey, true).size(), 32u);
}

TEST(Cipher, otherNumbersFail)
{
    for (const unsigned int type : {2u, 3u, 255u, 256u, 0xFFFFFFFFu})
    {
        EXPECT_EQ(enciphered(type, s_cstrText, s_cstrKey), "");
        EXPECT_EQ(deciphered(type, s_cstrText, s_cstrKey), "");
    }
}

TEST(Cipher, seedWithoutKeyFails)
{
    EXPECT_EQ(enciphered(1, s_cstrText, ""), "");
    EXPECT_EQ(deciphered(1, s_cstrText, ""), "");
}

TEST(Cipher, nothingToDecodeLeavesNoBuffer)
{
    EXPECT_EQ(deciphered(0, "-???", ""), "");
    EXPECT_EQ(deciphered(0, "=", ""), "");
}

TEST(Cipher, nullAndEmptyFailAndLeaveNoBuffer)
{
    unsigned char some = 0;
    for (const unsigned int type : {0u, 1u, 2u})
    {
        unsigned char* out = &some;
        EXPECT_EQ(CipherEncrypt(type, nullptr, 5, "key", 3, false, &out), 0u);
        EXPECT_EQ(out, nullptr);
        out = &some;
        EXPECT_EQ(CipherEncrypt(type, "data", 0, "key", 3, false, &out), 0u);
        EXPECT_EQ(out, nullptr);
        out = &some;
        EXPECT_EQ(CipherDecrypt(type, nullptr, 5, "key", 3, &out), 0u);
        EXPECT_EQ(out, nullptr);
        out = &some;
        EXPECT_EQ(CipherDecrypt(type, "data", 0, "key", 3, &out), 0u);
        EXPECT_EQ(out, nullptr);
        EXPECT_EQ(CipherEncrypt(type, "data", 4, "key", 3, false, nullptr), 0u);
        EXPECT_EQ(CipherDecrypt(type, "data", 4, "key", 3, nullptr), 0u);
    }
}

TEST(Cipher, everyLengthComesBackUnderEveryCipher)
{
    for (std::size_t length = 1; length <= 300; ++length)
    {
        std::string text(length, '\0');
        for (std::size_t i = 0; i < length; ++i)
            text[i] = static_cast<char>(i * 37 + length);
        EXPECT_EQ(deciphered(0, enciphered(0, text, ""), ""), text);
        std::string back = deciphered(1, enciphered(1, text, s_cstrKey), s_cstrKey);
        ASSERT_GE(back.size(), length);
        back.resize(length);  // the padding of less than a block
        EXPECT_EQ(back, text);
    }
}

using tCoder = std::size_t (*)(const detail::tCipherSlice& slice);

/// Codes a text in slices of one, two and three units.
std::string codedInSlices(const detail::tCipherRow& row, tCoder coder, std::size_t unit, const std::string& text)
{
    detail::tCipherKey key;
    EXPECT_TRUE(row.m_pPrepareKey(key.data(), s_cstrKey.data(), s_cstrKey.size()));
    const auto* const data = reinterpret_cast<const unsigned char*>(text.data());
    std::string result;
    for (std::size_t at = 0, units = 1; at < text.size(); units = units % 3 + 1)
    {
        unsigned char out[256];
        const std::size_t length = std::min(units * unit, text.size() - at);
        const std::size_t count = coder({key.data(), out, data + at, length});
        result.append(reinterpret_cast<const char*>(out), count);
        at += length;
    }
    return result;
}

TEST(Cipher, slicesOfWholeUnitsGiveTheResultOfOne)
{
    std::string text(1000, '\0');
    for (std::size_t i = 0; i < text.size(); ++i)
        text[i] = static_cast<char>(i * 37);
    for (const unsigned int type : {0u, 1u})
    {
        const detail::tCipherRow& row = *detail::findCipher(type);
        const std::string whole = enciphered(type, text, s_cstrKey);
        EXPECT_EQ(codedInSlices(row, row.m_pEncodeSlice, detail::s_cnPlainSliceUnit, text), whole) << row.m_pName;
        EXPECT_EQ(row.m_pTextSize(text.size(), false), whole.size()) << row.m_pName;
        EXPECT_EQ(codedInSlices(row, row.m_pDecodeSlice, detail::s_cnTextSliceUnit, whole), text) << row.m_pName;
    }
}

TEST(Cipher, aSliceInWhichTheMessageEndsGivesLessThanItsPlainSize)
{
    const detail::tCipherRow& vernam = *detail::findCipher(detail::CT_vernam);
    unsigned char out[16];
    const auto decoded = [&](const char* text) {
        return vernam.m_pDecodeSlice({nullptr, out, reinterpret_cast<const unsigned char*>(text), 8});
    };
    EXPECT_EQ(vernam.m_pPlainSize(8), 6u);
    EXPECT_EQ(decoded("AAAAAAAA"), 6u);
    EXPECT_EQ(decoded("AAAAAAA-"), 5u);
    EXPECT_EQ(decoded("AA-AAAAA"), 1u);
    EXPECT_EQ(detail::findCipher(detail::CT_seed)->m_pPlainSize(8), 8u);
}

#if defined(__linux__) && !defined(MURV_TEST_SANITIZED)

/// Runs in a process of its own: all four directions when no big buffer can be had. Exit status 0 when all fail
/// cleanly.
void tryWithoutMemory()
{
    const std::vector<unsigned char> data(64u << 20, 'a');  // 'a' is a symbol, so that decoding would succeed too
    const rlimit limit = {1u << 20, 1u << 20};              // less than is in use: no new mapping
    if (setrlimit(RLIMIT_AS, &limit) != 0)
        std::_Exit(1);
    for (const unsigned int type : {0u, 1u})
    {
        unsigned char some = 0;
        unsigned char* out = &some;
        if (CipherEncrypt(type, data.data(), data.size(), "key", 3, false, &out) != 0 || out != nullptr)
            std::_Exit(2);
        out = &some;
        if (CipherDecrypt(type, data.data(), data.size(), "key", 3, &out) != 0 || out != nullptr)
            std::_Exit(3);
    }
    std::_Exit(0);
}

TEST(CipherDeathTest, memoryThatCannotBeHadFailsAndLeavesNoBuffer)
{
    EXPECT_EXIT(tryWithoutMemory(), testing::ExitedWithCode(0), "");
}

#else

TEST(CipherDeathTest, memoryThatCannotBeHadFailsAndLeavesNoBuffer)
{
    GTEST_SKIP() << "NOT TESTED: under the address sanitizer, and elsewhere, memory cannot be made scarce";
}

#endif

// The same without a limit for the whole process, so that the sanitizer watches, too.
TEST(Cipher, allocationThatFailsLeavesNoBuffer)
{
    if (!CFailingMalloc::isMallocReached())
        GTEST_SKIP() << "NOT TESTED: another allocator is in the way";
    const std::string text(64, 'a');  // which decoding takes, too
    for (const unsigned int type : {0u, 1u})
    {
        unsigned char some = 0;
        unsigned char* out = &some;
        {
            const CFailingMalloc fail(1);
            EXPECT_EQ(CipherEncrypt(type, text.data(), text.size(), "key", 3, false, &out), 0u);
            EXPECT_TRUE(fail.hasFailed());
        }
        EXPECT_EQ(out, nullptr);
        out = &some;
        {
            const CFailingMalloc fail(1);
            EXPECT_EQ(CipherDecrypt(type, text.data(), text.size(), "key", 3, &out), 0u);
            EXPECT_TRUE(fail.hasFailed());
        }
        EXPECT_EQ(out, nullptr);
    }
}

}  // namespace
