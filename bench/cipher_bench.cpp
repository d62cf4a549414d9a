// bench/cipher_bench.cpp - speed of both ciphers against OpenSSL's base64 and SEED, in one run.
//
// Only ratios between rows of the same run mean anything: the machine is shared and its clock moves. For stable
// medians run with --benchmark_repetitions=9 --benchmark_enable_random_interleaving=true.

#include "ber/cipher/message.h"
#include "ber/cipher/seed.h"
#include "ber/cipher/seed_wide.h"
#include "ber/cipher/vernam.h"
#include "ber/cipher/vernam_wide.h"

#include <benchmark/benchmark.h>
#include <openssl/evp.h>
#include <openssl/provider.h>

#include <cstdint>
#include <cstdlib>
#include <random>
#include <vector>

namespace
{

using namespace murv;

using tBytes = std::vector<unsigned char>;
using tSeedFP = void (*)(const std::uint32_t*, unsigned char*, const unsigned char*, std::size_t);

constexpr unsigned char s_caucKey[17] = "sixteen byte key";

tBytes randomBytes(std::size_t length)
{
    std::mt19937 random(20);
    tBytes bytes(length);
    for (unsigned char& byte : bytes)
        byte = static_cast<unsigned char>(random());
    return bytes;
}

std::size_t length4(const benchmark::State& state)
{
    return static_cast<std::size_t>(state.range(0));
}

/// Speed is counted in plain bytes, whichever direction is measured.
void countBytes(benchmark::State& state)
{
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void vernamEncode(benchmark::State& state, decltype(&detail::vernamEncodeTo) encode)
{
    const tBytes plain = randomBytes(length4(state));
    tBytes text(detail::vernamTextSize(plain.size()));
    for ([[maybe_unused]] auto _ : state)
    {
        benchmark::DoNotOptimize(encode(text.data(), plain.data(), plain.size()));
        benchmark::ClobberMemory();
    }
    countBytes(state);
}

void vernamDecode(benchmark::State& state, decltype(&detail::vernamDecodeTo) decode)
{
    const tBytes plain = randomBytes(length4(state));
    tBytes text(detail::vernamTextSize(plain.size()));
    detail::vernamEncodeTo(text.data(), plain.data(), plain.size());
    tBytes bytes(detail::vernamByteRoom(text.size()));
    for ([[maybe_unused]] auto _ : state)
    {
        benchmark::DoNotOptimize(decode(bytes.data(), text.data(), text.size()));
        benchmark::ClobberMemory();
    }
    countBytes(state);
}

void vernamEncodeAllocating(benchmark::State& state)
{
    const tBytes plain = randomBytes(length4(state));
    for ([[maybe_unused]] auto _ : state)
    {
        unsigned char* text = nullptr;
        benchmark::DoNotOptimize(VernamEncode(plain.data(), plain.size(), &text));
        benchmark::ClobberMemory();
        std::free(text);
    }
    countBytes(state);
}

void vernamDecodeAllocating(benchmark::State& state)
{
    const tBytes plain = randomBytes(length4(state));
    tBytes text(detail::vernamTextSize(plain.size()));
    detail::vernamEncodeTo(text.data(), plain.data(), plain.size());
    for ([[maybe_unused]] auto _ : state)
    {
        unsigned char* bytes = nullptr;
        benchmark::DoNotOptimize(VernamDecode(text.data(), text.size(), &bytes));
        benchmark::ClobberMemory();
        std::free(bytes);
    }
    countBytes(state);
}

void opensslBase64Encode(benchmark::State& state)
{
    const tBytes plain = randomBytes(length4(state));
    tBytes text(plain.size() / 3 * 4 + 8);
    for ([[maybe_unused]] auto _ : state)
    {
        benchmark::DoNotOptimize(EVP_EncodeBlock(text.data(), plain.data(), static_cast<int>(plain.size())));
        benchmark::ClobberMemory();
    }
    countBytes(state);
}

void opensslBase64Decode(benchmark::State& state)
{
    const tBytes plain = randomBytes(length4(state));
    tBytes text(plain.size() / 3 * 4 + 8);
    const int length = EVP_EncodeBlock(text.data(), plain.data(), static_cast<int>(plain.size()));
    tBytes bytes(plain.size() + 8);
    for ([[maybe_unused]] auto _ : state)
    {
        benchmark::DoNotOptimize(EVP_DecodeBlock(bytes.data(), text.data(), length));
        benchmark::ClobberMemory();
    }
    countBytes(state);
}

void seedBlocks(benchmark::State& state, tSeedFP cipher)
{
    if (cipher == nullptr)
    {
        state.SkipWithError("not on this processor");
        return;
    }
    const tBytes plain = randomBytes(length4(state));
    tBytes out(plain.size());
    std::uint32_t schedule[detail::s_cuiSeedSchedule];
    SeedKeySetup(schedule, s_caucKey, detail::s_cuiSeedBlock);
    for ([[maybe_unused]] auto _ : state)
    {
        cipher(schedule, out.data(), plain.data(), plain.size() / detail::s_cuiSeedBlock);
        benchmark::ClobberMemory();
    }
    countBytes(state);
}

void seedEncryptAllocating(benchmark::State& state)
{
    const tBytes plain = randomBytes(length4(state));
    for ([[maybe_unused]] auto _ : state)
    {
        unsigned char* out = nullptr;
        benchmark::DoNotOptimize(
            SeedEncrypt(plain.data(), plain.size(), s_caucKey, detail::s_cuiSeedBlock, &out, false));
        benchmark::ClobberMemory();
        std::free(out);
    }
    countBytes(state);
}

/// OpenSSL 3 keeps SEED in its legacy provider, which some systems package apart.
void opensslSeed(benchmark::State& state, int encrypt)
{
    static OSSL_PROVIDER* const s_pLegacy = OSSL_PROVIDER_load(nullptr, "legacy");
    static EVP_CIPHER* const s_pSeed = EVP_CIPHER_fetch(nullptr, "SEED-ECB", nullptr);
    if (s_pLegacy == nullptr || s_pSeed == nullptr)
    {
        state.SkipWithError("OpenSSL's legacy provider is not installed");
        return;
    }
    const tBytes plain = randomBytes(length4(state));
    tBytes out(plain.size() + 16);
    EVP_CIPHER_CTX* const context = EVP_CIPHER_CTX_new();
    EVP_CipherInit_ex(context, s_pSeed, nullptr, s_caucKey, nullptr, encrypt);
    EVP_CIPHER_CTX_set_padding(context, 0);
    for ([[maybe_unused]] auto _ : state)
    {
        int count = 0;
        EVP_CipherUpdate(context, out.data(), &count, plain.data(), static_cast<int>(plain.size()));
        benchmark::DoNotOptimize(count);
        benchmark::ClobberMemory();
    }
    EVP_CIPHER_CTX_free(context);
    countBytes(state);
}

void sizes(benchmark::internal::Benchmark* row)
{
    row->Arg(64 * 1024)->Arg(1024 * 1024);
}

BENCHMARK(opensslBase64Encode)->Apply(sizes);
BENCHMARK_CAPTURE(vernamEncode, portable, detail::vernamEncodePortable)->Apply(sizes);
BENCHMARK_CAPTURE(vernamEncode, widest, detail::vernamEncodeTo)->Apply(sizes);
BENCHMARK(vernamEncodeAllocating)->Apply(sizes);
BENCHMARK(opensslBase64Decode)->Apply(sizes);
BENCHMARK_CAPTURE(vernamDecode, portable, detail::vernamDecodePortable)->Apply(sizes);
BENCHMARK_CAPTURE(vernamDecode, widest, detail::vernamDecodeTo)->Apply(sizes);
BENCHMARK(vernamDecodeAllocating)->Apply(sizes);
BENCHMARK_CAPTURE(opensslSeed, encrypt, 1)->Apply(sizes);
BENCHMARK_CAPTURE(seedBlocks, encryptPortable, detail::seedEncryptPortable)->Apply(sizes);
BENCHMARK_CAPTURE(seedBlocks, encryptWide, detail::seedWideEncryptor())->Apply(sizes);
BENCHMARK(seedEncryptAllocating)->Apply(sizes);
BENCHMARK_CAPTURE(opensslSeed, decrypt, 0)->Apply(sizes);
BENCHMARK_CAPTURE(seedBlocks, decryptPortable, detail::seedDecryptPortable)->Apply(sizes);
BENCHMARK_CAPTURE(seedBlocks, decryptWide, detail::seedWideDecryptor())->Apply(sizes);

}  // namespace

BENCHMARK_MAIN();
