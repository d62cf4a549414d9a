// tests/ber/cipher/seed_test.cpp - the SEED cipher: published examples, self test, key rules, block rules.
//
// Wide and portable code are compared.
//
// Inputs lie in blocks of exactly their size, so that the sanitizer sees a byte read or written too many.

#include "ber/cipher/seed.h"

#include "ber/cipher/message.h"
#include "ber/cipher/seed_gfni.h"
#include "ber/cipher/seed_tables.h"
#include "ber/cipher/seed_wide.h"
#include "ber/cipher/wipe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <new>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "tests/ber/cipher/random_bytes.h"
#include "tests/support/processor.h"

namespace
{

using namespace murv;
using namespace murv::tests;

struct tSchedule
{
    std::uint32_t m_aui[detail::s_cuiSeedSchedule] = {};

    bool operator==(const tSchedule&) const = default;
};

tSchedule schedule4(const tBytes& password)
{
    tSchedule schedule;
    EXPECT_TRUE(SeedKeyFromPassword(schedule.m_aui, password.data(), password.size()));
    return schedule;
}

tBytes encrypted(const tBytes& plain, const tBytes& key, bool padAlways = false)
{
    unsigned char* out = nullptr;
    const std::uint32_t count = SeedEncrypt(plain.data(), plain.size(), key.data(), key.size(), &out, padAlways);
    EXPECT_EQ(out == nullptr, count == 0);
    tBytes result(out, out + count);
    std::free(out);
    return result;
}

tBytes decrypted(const tBytes& data, const tBytes& key)
{
    unsigned char* out = nullptr;
    const std::uint32_t count = SeedDecrypt(data.data(), data.size(), key.data(), key.size(), &out);
    EXPECT_EQ(out == nullptr, count == 0);
    tBytes result(out, out + count);
    std::free(out);
    return result;
}

tBytes part(const tBytes& bytes, std::size_t start, std::size_t end)
{
    return tBytes(bytes.begin() + static_cast<std::ptrdiff_t>(start), bytes.begin() + static_cast<std::ptrdiff_t>(end));
}

tBytes zeroPadded(tBytes bytes, std::size_t length)
{
    bytes.resize(length);
    return bytes;
}

const tBytes s_cvKey = randomBytes(16, 77);

// The four test examples of RFC 4269.
constexpr detail::tSeedExample s_ctExamples[] = {
    {{0},
     {0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F},
     {0x5E, 0xBA, 0xC6, 0xE0, 0x05, 0x4E, 0x16, 0x68, 0x19, 0xAF, 0xF1, 0xCC, 0x6D, 0x34, 0x6C, 0xDB}},
    {{0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F},
     {0},
     {0xC1, 0x1F, 0x22, 0xF2, 0x01, 0x40, 0x50, 0x50, 0x84, 0x48, 0x35, 0x97, 0xE4, 0x37, 0x0F, 0x43}},
    {{0x47, 0x06, 0x48, 0x08, 0x51, 0xE6, 0x1B, 0xE8, 0x5D, 0x74, 0xBF, 0xB3, 0xFD, 0x95, 0x61, 0x85},
     {0x83, 0xA2, 0xF8, 0xA2, 0x88, 0x64, 0x1F, 0xB9, 0xA4, 0xE9, 0xA5, 0xCC, 0x2F, 0x13, 0x1C, 0x7D},
     {0xEE, 0x54, 0xD1, 0x3E, 0xBC, 0xAE, 0x70, 0x6D, 0x22, 0x6B, 0xC3, 0x14, 0x2C, 0xD4, 0x0D, 0x4A}},
    detail::s_ctSeedSelfTest,
};

TEST(Seed, publishedExamplesEncryptAndDecrypt)
{
    for (const detail::tSeedExample& example : s_ctExamples)
    {
        tSchedule schedule;
        ASSERT_TRUE(SeedKeySetup(schedule.m_aui, example.m_aucKey, 16));
        unsigned char block[16];
        ASSERT_TRUE(SeedEncryptBlock(schedule.m_aui, block, example.m_aucPlain));
        EXPECT_TRUE(std::equal(block, block + 16, example.m_aucCipher));
        ASSERT_TRUE(SeedDecryptBlock(schedule.m_aui, block, block));
        EXPECT_TRUE(std::equal(block, block + 16, example.m_aucPlain));
    }
}

TEST(Seed, selfTestUsesTheFourthPublishedExample)
{
    EXPECT_EQ(detail::s_ctSeedSelfTest.m_aucKey[0], 0x28);
    EXPECT_EQ(detail::s_ctSeedSelfTest.m_aucPlain[0], 0xB4);
    EXPECT_EQ(detail::s_ctSeedSelfTest.m_aucCipher[15], 0x22);
}

TEST(Seed, sBoxesArePermutations)
{
    for (const detail::tSBox& box : detail::s_caucSBoxes)
        EXPECT_EQ(std::set<unsigned int>(box.begin(), box.end()).size(), 256u);
}

// ---- self test

bool encryptWrongly(const std::uint32_t*, unsigned char* out, const unsigned char*)
{
    std::fill(out, out + 16, static_cast<unsigned char>(0));
    return true;
}

bool refuse(const std::uint32_t*, unsigned char*, const unsigned char*)
{
    return false;
}

TEST(SeedSelfTest, passesWithThePublishedExamples)
{
    for (const detail::tSeedExample& example : s_ctExamples)
        EXPECT_EQ(detail::seedSelfTest(example, SeedEncryptBlock, SeedDecryptBlock), nullptr);
}

TEST(SeedSelfTest, oneWrongBitIsAnEncryptionFailure)
{
    detail::tSeedExample example = detail::s_ctSeedSelfTest;
    example.m_aucCipher[15] ^= 1;
    EXPECT_STREQ(detail::seedSelfTest(example, SeedEncryptBlock, SeedDecryptBlock), "SEED test encryption failed.");
    EXPECT_STREQ(detail::seedSelfTest(detail::s_ctSeedSelfTest, encryptWrongly, SeedDecryptBlock),
                 "SEED test encryption failed.");
    EXPECT_STREQ(detail::seedSelfTest(detail::s_ctSeedSelfTest, refuse, SeedDecryptBlock),
                 "SEED test encryption failed.");
}

TEST(SeedSelfTest, decryptionThatDoesNotComeBackIsADecryptionFailure)
{
    EXPECT_STREQ(detail::seedSelfTest(detail::s_ctSeedSelfTest, SeedEncryptBlock, encryptWrongly),
                 "SEED test decryption failed.");
    EXPECT_STREQ(detail::seedSelfTest(detail::s_ctSeedSelfTest, SeedEncryptBlock, refuse),
                 "SEED test decryption failed.");
}

TEST(SeedSelfTest, failureIsPrintedOnALineOfStandardOutput)
{
    testing::internal::CaptureStdout();
    EXPECT_STREQ(detail::reportSeedSelfTest("SEED test encryption failed."), "SEED test encryption failed.");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "SEED test encryption failed.\n");
}

TEST(SeedSelfTest, successPrintsNothing)
{
    testing::internal::CaptureStdout();
    EXPECT_EQ(detail::reportSeedSelfTest(nullptr), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(SeedSelfTest, failureRefusesEveryKey)
{
    tSchedule schedule;
    EXPECT_FALSE(detail::seedKeySetup("SEED test encryption failed.", schedule.m_aui, s_cvKey.data(), 16));
    EXPECT_EQ(schedule, tSchedule());
    EXPECT_TRUE(detail::seedKeySetup(nullptr, schedule.m_aui, s_cvKey.data(), 16));
}

TEST(SeedSelfTest, firstUseFromSeveralThreadsIsSafe)
{
    std::vector<tSchedule> schedules(4);
    std::vector<std::thread> threads;
    threads.reserve(schedules.size());
    for (tSchedule& schedule : schedules)
        threads.emplace_back([&schedule] { SeedKeySetup(schedule.m_aui, s_cvKey.data(), 16); });
    for (std::thread& thread : threads)
        thread.join();
    for (const tSchedule& schedule : schedules)
        EXPECT_EQ(schedule, schedule4(s_cvKey));
}

// ---- keys

TEST(SeedKey, onlySixteenBytesAreAKey)
{
    const tBytes key = randomBytes(40, 1);
    for (std::size_t length = 0; length <= 40; ++length)
    {
        tSchedule schedule;
        EXPECT_EQ(SeedKeySetup(schedule.m_aui, key.data(), length), length == 16) << length;
    }
}

TEST(SeedKey, passwordIsCutOrZeroPaddedToSixteenBytes)
{
    const tBytes password = randomBytes(40, 2);
    for (std::size_t length = 1; length <= 40; ++length)
    {
        const tBytes key = zeroPadded(part(password, 0, std::min<std::size_t>(length, 16)), 16);
        tSchedule expected;
        ASSERT_TRUE(SeedKeySetup(expected.m_aui, key.data(), key.size()));
        EXPECT_EQ(schedule4(part(password, 0, length)), expected) << length;
    }
}

TEST(SeedKey, keyOfTwentyBytesEncryptsAsItsFirstSixteen)
{
    const tBytes plain = randomBytes(100, 3);
    const tBytes key = randomBytes(20, 4);
    EXPECT_EQ(encrypted(plain, key), encrypted(plain, part(key, 0, 16)));
}

TEST(SeedKey, keyOfThreeBytesEncryptsAsItsZeroPaddedForm)
{
    const tBytes plain = randomBytes(100, 3);
    EXPECT_EQ(encrypted(plain, {'k', 'e', 'y'}), encrypted(plain, zeroPadded({'k', 'e', 'y'}, 16)));
}

TEST(SeedKey, nullAndEmptyFail)
{
    tSchedule schedule;
    EXPECT_FALSE(SeedKeyFromPassword(nullptr, "key", 3));
    EXPECT_FALSE(SeedKeyFromPassword(schedule.m_aui, nullptr, 3));
    EXPECT_FALSE(SeedKeyFromPassword(schedule.m_aui, "key", 0));
    EXPECT_FALSE(SeedKeySetup(nullptr, s_cvKey.data(), 16));
    EXPECT_FALSE(SeedKeySetup(schedule.m_aui, nullptr, 16));
    EXPECT_EQ(schedule, tSchedule());
}

TEST(SeedBlock, nullFails)
{
    const tSchedule schedule = schedule4(s_cvKey);
    unsigned char block[16] = {};
    for (const auto cipher : {SeedEncryptBlock, SeedDecryptBlock})
    {
        EXPECT_FALSE(cipher(nullptr, block, block));
        EXPECT_FALSE(cipher(schedule.m_aui, nullptr, block));
        EXPECT_FALSE(cipher(schedule.m_aui, block, nullptr));
    }
}

// ---- messages

TEST(SeedMessage, fiveBytesBecomeOnePaddedBlock)
{
    const tBytes plain = {1, 2, 3, 4, 5};
    EXPECT_EQ(encrypted(plain, s_cvKey).size(), 16u);
    EXPECT_EQ(encrypted(plain, s_cvKey), encrypted(zeroPadded(plain, 16), s_cvKey));
    EXPECT_EQ(decrypted(encrypted(plain, s_cvKey), s_cvKey), zeroPadded(plain, 16));
}

TEST(SeedMessage, sixteenBytesStaySixteen)
{
    EXPECT_EQ(encrypted(randomBytes(16, 5), s_cvKey).size(), 16u);
    EXPECT_EQ(encrypted(randomBytes(16, 5), s_cvKey, true).size(), 16u);
}

TEST(SeedMessage, lastFourOfTwentyBytesStayPlain)
{
    const tBytes plain = randomBytes(20, 6);
    const tBytes result = encrypted(plain, s_cvKey);
    ASSERT_EQ(result.size(), 20u);
    EXPECT_EQ(part(result, 0, 16), encrypted(part(plain, 0, 16), s_cvKey));
    EXPECT_EQ(part(result, 16, 20), part(plain, 16, 20));
}

TEST(SeedMessage, padAlwaysEncryptsTwentyBytesAsTwoBlocks)
{
    const tBytes plain = randomBytes(20, 6);
    const tBytes result = encrypted(plain, s_cvKey, true);
    ASSERT_EQ(result.size(), 32u);
    EXPECT_EQ(part(result, 16, 32), encrypted(zeroPadded(part(plain, 16, 20), 16), s_cvKey));
    EXPECT_EQ(decrypted(result, s_cvKey), zeroPadded(plain, 32));
}

TEST(SeedMessage, everyLengthComesBackWithItsPadding)
{
    for (std::size_t length = 1; length <= 300; ++length)
    {
        const tBytes plain = randomBytes(length, static_cast<unsigned int>(length));
        const std::size_t whole = (length + 15) / 16 * 16;
        const std::size_t size = length < 16 ? 16 : length;
        EXPECT_EQ(encrypted(plain, s_cvKey).size(), size);
        EXPECT_EQ(encrypted(plain, s_cvKey, true).size(), whole);
        EXPECT_EQ(decrypted(encrypted(plain, s_cvKey), s_cvKey), zeroPadded(plain, size)) << length;
        EXPECT_EQ(decrypted(encrypted(plain, s_cvKey, true), s_cvKey), zeroPadded(plain, whole)) << length;
    }
}

TEST(SeedMessage, equalBlocksEncryptEquallyWithoutChaining)
{
    const tBytes result = encrypted(tBytes(64, 'x'), s_cvKey);
    for (std::size_t start = 16; start < 64; start += 16)
        EXPECT_EQ(part(result, start, start + 16), part(result, 0, 16));
}

TEST(SeedMessage, decryptingLessThanABlockCopiesIt)
{
    EXPECT_EQ(decrypted({9, 8, 7}, s_cvKey), (tBytes{9, 8, 7}));
}

TEST(SeedMessage, anotherKeyDoesNotDecrypt)
{
    const tBytes plain = randomBytes(64, 7);
    EXPECT_NE(decrypted(encrypted(plain, s_cvKey), randomBytes(16, 78)), plain);
}

TEST(SeedMessage, nullAndEmptyFailAndLeaveNoBuffer)
{
    unsigned char some = 0;
    struct tCase
    {
        const void* m_pData;
        std::size_t m_uiLength;
        const void* m_pKey;
        std::size_t m_uiKeyLength;
    };
    for (const tCase& c : {tCase{nullptr, 4, "key", 3}, tCase{"data", 0, "key", 3}, tCase{"data", 4, nullptr, 3},
                           tCase{"data", 4, "key", 0}})
    {
        unsigned char* out = &some;
        EXPECT_EQ(SeedEncrypt(c.m_pData, c.m_uiLength, c.m_pKey, c.m_uiKeyLength, &out, false), 0u);
        EXPECT_EQ(out, nullptr);
        out = &some;
        EXPECT_EQ(SeedDecrypt(c.m_pData, c.m_uiLength, c.m_pKey, c.m_uiKeyLength, &out), 0u);
        EXPECT_EQ(out, nullptr);
    }
    EXPECT_EQ(SeedEncrypt("data", 4, "key", 3, nullptr, false), 0u);
    EXPECT_EQ(SeedDecrypt("data", 4, "key", 3, nullptr), 0u);
}

TEST(SeedMessage, resultBeyondThirtyTwoBitsFailsBeforeAnythingIsRead)
{
    unsigned char some = 0;
    unsigned char* out = &some;
    EXPECT_EQ(SeedEncrypt(&some, 0xFFFFFFFFu, "key", 3, &out, true), 0u);  // padded it has 2^32 bytes
    EXPECT_EQ(out, nullptr);
    out = &some;
    EXPECT_EQ(SeedEncrypt(&some, static_cast<std::size_t>(-1), "key", 3, &out, true), 0u);
    EXPECT_EQ(out, nullptr);
    out = &some;
    EXPECT_EQ(SeedDecrypt(&some, static_cast<std::size_t>(-1), "key", 3, &out), 0u);
    EXPECT_EQ(out, nullptr);
}

TEST(SeedMessage, mayOverwriteItsInput)
{
    const tSchedule schedule = schedule4(s_cvKey);
    for (std::size_t length = 16; length <= 300; ++length)
    {
        const tBytes plain = randomBytes(length, 12);
        tBytes bytes = plain;
        EXPECT_EQ(detail::seedEncryptTo(schedule.m_aui, bytes.data(), bytes.data(), length, false), length);
        EXPECT_EQ(bytes, encrypted(plain, s_cvKey));
        EXPECT_EQ(detail::seedDecryptTo(schedule.m_aui, bytes.data(), bytes.data(), length), length);
        EXPECT_EQ(bytes, plain);
    }
}

TEST(SeedMessage, slicesOfWholeBlocksGiveTheResultOfOneCall)
{
    const tBytes plain = randomBytes(9600, 13);
    const tSchedule schedule = schedule4(s_cvKey);
    tBytes bytes(plain.size());
    for (std::size_t start = 0; start < plain.size(); start += 2400)
        detail::seedEncryptBlocks(schedule.m_aui, bytes.data() + start, plain.data() + start, 2400 / 16);
    EXPECT_EQ(bytes, encrypted(plain, s_cvKey));
}

// ---- versions

TEST(SeedPortable, anyNumberOfBlocksGivesWhatSingleBlocksGive)
{
    const tSchedule schedule = schedule4(s_cvKey);
    for (std::size_t blocks = 0; blocks <= 40; ++blocks)
    {
        const tBytes plain = randomBytes(blocks * 16, static_cast<unsigned int>(blocks));
        tBytes single(plain.size());
        tBytes together(plain.size());
        for (std::size_t i = 0; i < plain.size(); i += 16)
            ASSERT_TRUE(SeedEncryptBlock(schedule.m_aui, single.data() + i, plain.data() + i));
        detail::seedEncryptPortable(schedule.m_aui, together.data(), plain.data(), blocks);
        EXPECT_EQ(together, single) << blocks;
        detail::seedDecryptPortable(schedule.m_aui, together.data(), together.data(), blocks);
        EXPECT_EQ(together, plain) << blocks;
    }
}

TEST(SeedWide, givesWhatThePortableVersionGives)
{
    const auto encrypt = detail::seedWideEncryptor();
    const auto decrypt = detail::seedWideDecryptor();
    ASSERT_EQ(encrypt != nullptr, hasAvx512Gfni());
    ASSERT_EQ(decrypt != nullptr, hasAvx512Gfni());
    if (!hasAvx512Gfni())
        GTEST_SKIP() << "NOT TESTED: this processor has no AVX-512 with GFNI";
    for (std::size_t blocks = 0; blocks <= 250; ++blocks)
    {
        const tBytes plain = randomBytes(blocks * 16, static_cast<unsigned int>(blocks));
        const tSchedule schedule = schedule4(randomBytes(16, static_cast<unsigned int>(blocks + 500)));
        tBytes portable(plain.size());
        tBytes wide(plain.size());
        detail::seedEncryptPortable(schedule.m_aui, portable.data(), plain.data(), blocks);
        encrypt(schedule.m_aui, wide.data(), plain.data(), blocks);
        EXPECT_EQ(wide, portable) << blocks;
        detail::seedDecryptPortable(schedule.m_aui, portable.data(), plain.data(), blocks);
        decrypt(schedule.m_aui, wide.data(), plain.data(), blocks);
        EXPECT_EQ(wide, portable) << blocks;
    }
}

TEST(SeedWide, matricesMakeTheSBoxes)
{
    EXPECT_TRUE(detail::isGfniRight(0));
    EXPECT_TRUE(detail::isGfniRight(1));
    EXPECT_EQ(detail::power4Field(detail::findBasisRoot(), 255, detail::s_cuiGfniField), 1);
}

TEST(Wipe, leavesOnlyZeros)
{
    tBytes bytes = randomBytes(100, 8);
    detail::wipe(bytes.data() + 10, 80);
    EXPECT_EQ(part(bytes, 10, 90), tBytes(80, 0));
    EXPECT_EQ(part(bytes, 0, 10), part(randomBytes(100, 8), 0, 10));
    EXPECT_EQ(part(bytes, 90, 100), part(randomBytes(100, 8), 90, 100));
    detail::wipe(nullptr, 0);
}

TEST(Wipe, workAreaIsZeroFromItsBeginningAndAgainAtItsEnd)
{
    using tArea = detail::CWipedArea<unsigned char, 64>;
    alignas(tArea) unsigned char memory[sizeof(tArea)];
    std::fill(std::begin(memory), std::end(memory), static_cast<unsigned char>('x'));
    auto* area = new (memory) tArea;
    EXPECT_EQ(tBytes(area->data(), area->data() + 64), tBytes(64, 0));
    std::fill(area->data(), area->data() + 64, static_cast<unsigned char>('k'));
    area->~CWipedArea();
    EXPECT_EQ(tBytes(std::begin(memory), std::end(memory)), tBytes(64, 0));
}

}  // namespace
