// layout/values/checksum.h - checksums and check digits over bytes as they lie.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace murv::detail
{

/// The kinds; the row in the table of checksums, which has their names in rules.
enum E_Checksum : unsigned char
{
    CK_crc16Arc,
    CK_crc16Modbus,
    CK_crc16Ibm3740,
    CK_crc16Xmodem,
    CK_crc16Kermit,
    CK_crc32,
    CK_crc32Iscsi,
    CK_inet,
    CK_xor,
    CK_sum8,
    CK_sum32,
    CK_luhn,
    CK_mod10,
    CK_mod97,
};
inline constexpr unsigned int s_cuiChecksums = CK_mod97 + 1;

/// A checksum that takes bytes in pieces.
///
/// Of luhn and mod97, get() is the check digit (two of them for mod97, 02 to 98) that completes the number whose digits
/// were added; of mod10 it is the last digit of the sum. All three look at characters of ASCII and skip what is neither
/// a digit nor, for mod10, "-" nor, for mod97, a capital letter: so blanks in the number's own place do not count.
class CChecksum
{
public:
    explicit CChecksum(E_Checksum kind);
    void add(std::string_view bytes);
    /// The same byte, that many times; for the number's own bytes.
    void addFill(char byte, std::uint64_t count);
    std::uint64_t get() const;

private:
    E_Checksum m_eKind;
    std::uint64_t m_ullState;
    bool m_bOdd = false;  // of 16-bit words: half of one is in the state
};

/// Finds a kind by its words, such as "crc16" and "modbus", "inet" and "". \return false when there is none
bool findChecksum(std::string_view name, std::string_view variant, E_Checksum& kind);

/// The words of a kind, such as "crc16 modbus" and "inet".
std::string words4Checksum(E_Checksum kind);

}  // namespace murv::detail
