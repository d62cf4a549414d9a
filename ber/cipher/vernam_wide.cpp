// vernam_wide.cpp - the VERNAM kernels for AVX2 and for AVX-512 with VBMI.
//
// Because the symbols are neighbours, a symbol is its number plus a constant, and a foreign byte is a difference above
// 63. What remains is to move bits: by multiplication with AVX2, by a shift of its own for every byte with VBMI.

#include "ber/cipher/vernam_wide.h"

#include "ber/cipher/vernam.h"

#if defined(__x86_64__) && defined(__GNUC__)

#include <immintrin.h>

#if !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"  // g++ 12 finds it in its own immintrin.h (GCC bug 105593)
#endif

#define MURV_TARGET_AVX2 __attribute__((target("avx2")))
#define MURV_TARGET_VBMI __attribute__((target("avx512f,avx512bw,avx512vbmi")))

namespace murv::detail
{
namespace
{

MURV_TARGET_AVX2 std::size_t encode256(unsigned char* out, const unsigned char* data, std::size_t groups)
{
    const __m256i pick = _mm256_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10,  //
                                          1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10);
    const __m256i first = _mm256_set1_epi8(static_cast<char>(s_cucVernamFirst));
    std::size_t done = 0;
    for (; groups - done >= 10; done += 8)  // 24 bytes are coded, 28 are read
    {
        const unsigned char* from = data + done * 3;
        const __m256i low = _mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from)));
        const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + 12));
        const __m256i bytes = _mm256_shuffle_epi8(_mm256_inserti128_si256(low, high, 1), pick);
        const __m256i odd =
            _mm256_mulhi_epu16(_mm256_and_si256(bytes, _mm256_set1_epi32(0x0FC0FC00)), _mm256_set1_epi32(0x04000040));
        const __m256i even =
            _mm256_mullo_epi16(_mm256_and_si256(bytes, _mm256_set1_epi32(0x003F03F0)), _mm256_set1_epi32(0x01000010));
        const __m256i symbols = _mm256_add_epi8(_mm256_or_si256(odd, even), first);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + done * 4), symbols);
    }
    return done;
}

MURV_TARGET_AVX2 std::size_t decode256(unsigned char* out, const unsigned char* text, std::size_t groups)
{
    const __m256i first = _mm256_set1_epi8(static_cast<char>(s_cucVernamFirst));
    const __m256i above63 = _mm256_set1_epi8(static_cast<char>(0xC0));
    const __m256i pack = _mm256_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1,  //
                                          2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1);
    const __m256i join = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7);
    std::size_t done = 0;
    for (; groups - done >= 11; done += 8)  // 24 bytes are decoded, 32 are written
    {
        const __m256i symbols = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text + done * 4));
        const __m256i numbers = _mm256_sub_epi8(symbols, first);
        if (_mm256_testz_si256(numbers, above63) == 0)
            break;
        const __m256i twelve = _mm256_maddubs_epi16(numbers, _mm256_set1_epi32(0x01400140));
        const __m256i twentyFour = _mm256_madd_epi16(twelve, _mm256_set1_epi32(0x00011000));
        const __m256i bytes = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(twentyFour, pack), join);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + done * 3), bytes);
    }
    return done;
}

// Where each byte of a register comes from: out of 16 groups of three for encoding, of four for decoding.
alignas(64) constexpr unsigned char s_caucPick512[64] = {
    1,  0,  2,  1,  4,  3,  5,  4,  7,  6,  8,  7,  10, 9,  11, 10, 13, 12, 14, 13, 16, 15,
    17, 16, 19, 18, 20, 19, 22, 21, 23, 22, 25, 24, 26, 25, 28, 27, 29, 28, 31, 30, 32, 31,
    34, 33, 35, 34, 37, 36, 38, 37, 40, 39, 41, 40, 43, 42, 44, 43, 46, 45, 47, 46};
alignas(64) constexpr unsigned char s_caucPack512[64] = {
    2,  1,  0,  6,  5,  4,  10, 9,  8,  14, 13, 12, 18, 17, 16, 22, 21, 20, 26, 25, 24, 30, 29, 28,
    34, 33, 32, 38, 37, 36, 42, 41, 40, 46, 45, 44, 50, 49, 48, 54, 53, 52, 58, 57, 56, 62, 61, 60};

constexpr __mmask64 s_cull48Bytes = 0x0000FFFFFFFFFFFFu;

MURV_TARGET_VBMI std::size_t encode512(unsigned char* out, const unsigned char* data, std::size_t groups)
{
    const __m512i pick = _mm512_load_si512(s_caucPick512);
    const __m512i shifts = _mm512_set1_epi64(0x3036242A1016040A);
    const __m512i first = _mm512_set1_epi8(static_cast<char>(s_cucVernamFirst));
    const __m512i six = _mm512_set1_epi8(63);
    std::size_t done = 0;
    for (; groups - done >= 16; done += 16)
    {
        const __m512i bytes = _mm512_maskz_loadu_epi8(s_cull48Bytes, data + done * 3);
        const __m512i shifted = _mm512_multishift_epi64_epi8(shifts, _mm512_permutexvar_epi8(pick, bytes));
        _mm512_storeu_si512(out + done * 4, _mm512_add_epi8(_mm512_and_si512(shifted, six), first));
    }
    return done;
}

MURV_TARGET_VBMI std::size_t decode512(unsigned char* out, const unsigned char* text, std::size_t groups)
{
    const __m512i pack = _mm512_load_si512(s_caucPack512);
    const __m512i first = _mm512_set1_epi8(static_cast<char>(s_cucVernamFirst));
    const __m512i above63 = _mm512_set1_epi8(static_cast<char>(0xC0));
    std::size_t done = 0;
    for (; groups - done >= 16; done += 16)
    {
        const __m512i numbers = _mm512_sub_epi8(_mm512_loadu_si512(text + done * 4), first);
        if (_mm512_test_epi8_mask(numbers, above63) != 0)
            break;
        const __m512i twelve = _mm512_maddubs_epi16(numbers, _mm512_set1_epi32(0x01400140));
        const __m512i twentyFour = _mm512_madd_epi16(twelve, _mm512_set1_epi32(0x00011000));
        _mm512_mask_storeu_epi8(out + done * 3, s_cull48Bytes, _mm512_permutexvar_epi8(pack, twentyFour));
    }
    return done;
}

bool isWidthThere(E_VernamWidth width)
{
    __builtin_cpu_init();
    if (width == VW_512)
        return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
               __builtin_cpu_supports("avx512vbmi");
    return __builtin_cpu_supports("avx2") != 0;
}

}  // namespace

tVernamGroupsFP vernamEncoder4Width(E_VernamWidth width)
{
    if (!isWidthThere(width))
        return nullptr;
    return width == VW_512 ? encode512 : encode256;
}

tVernamGroupsFP vernamDecoder4Width(E_VernamWidth width)
{
    if (!isWidthThere(width))
        return nullptr;
    return width == VW_512 ? decode512 : decode256;
}

}  // namespace murv::detail

#else

namespace murv::detail
{

tVernamGroupsFP vernamEncoder4Width(E_VernamWidth)
{
    return nullptr;
}

tVernamGroupsFP vernamDecoder4Width(E_VernamWidth)
{
    return nullptr;
}

}  // namespace murv::detail

#endif
