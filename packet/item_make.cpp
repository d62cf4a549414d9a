// packet/item_make.cpp - value bytes of an item, and their fit.
//
// The kinds differ in two small steps, which are combined here instead of being written out eight times.
#include "packet/item_make.h"

#include <algorithm>
#include <cstdint>

#include "core/field_access.h"
#include "core/text/bit_cast.h"
#include "core/text/double_text.h"
#include "core/text/integer_text.h"
#include "core/text/word_bytes.h"
#include "core/throw.h"

namespace murv::detail
{

namespace
{

constexpr std::size_t s_cnWord = 8;
constexpr std::size_t s_cnScratch = 32 + s_cnWord;  // 32 bytes can be read from any of the first eight on
constexpr char s_ccNegativeFill = static_cast<char>(0xAD);
static_assert(s_cnScratch >= s_cnDoubleTextRoom && s_cnScratch >= s_cnIntegerTextRoom);

/// How value bytes come to a fixed length.
enum E_Fit : unsigned char
{
    FIT_none,   // no leaf
    FIT_right,  // filled up at the end; the first bytes when too long
    FIT_left,   // filled up in front, after a minus sign; the first bytes when too long
    FIT_word,   // filled up in front; the last bytes when too long
};

struct tFitRow
{
    E_Fit m_eFit;
    char m_cFill;
};

// Null, array, field set, bool, sint, uint, double, byte string.
constexpr tFitRow s_ctFits[2][8] = {
    {{FIT_right, ' '}, {}, {}, {FIT_left, '0'}, {FIT_left, '0'}, {FIT_left, '0'}, {FIT_left, '0'}, {FIT_right, ' '}},
    {{FIT_right, 0}, {}, {}, {FIT_left, 0}, {FIT_word, 0}, {FIT_word, 0}, {FIT_word, 0}, {FIT_right, 0}},
};

/// Who reports a node that is no leaf, by form and length code.
struct tReporter
{
    const char* m_pFunction;
    const char* m_pText;
};

constexpr tReporter s_ctMakers[2][2] = {
    {{"murv::CFields::pkt_makeToACF", "Unknown data type(%d)"}, {"murv::CFields::pkt_makeToACV", "Unknown data type"}},
    {{"murv::CFields::pkt_makeToBCF", "Unknown data type"}, {"murv::CFields::pkt_makeToBCV", "Unknown data type"}},
};

constexpr tReporter s_ctMeasurers[2] = {
    {"murv::CFields::pkt_lengthToAC", "Unknown data type(%d)"},
    {"murv::CFields::pkt_lengthToBC", "Unknown data type"},
};

[[noreturn]] void throwUnknown(const CFields& node, const tReporter& reporter)
{
    throwAt(reporter.m_pFunction, reporter.m_pText, static_cast<int>(tFieldAccess::type(node)));
}

void storeBigEndian(char* out, std::uint64_t word)
{
    storeWord(out, reverseBytes(word));
}

std::string_view scratchText(const char* scratch, const char* end)
{
    return {scratch, static_cast<std::size_t>(end - scratch)};
}

/// The value as text; in `scratch`, or in the node.
std::string_view asciiBytes(const CFields& leaf, char* scratch, const tReporter& reporter)
{
    const uMultiValue& value = tFieldAccess::value(leaf);
    switch (tFieldAccess::type(leaf))
    {
    case DT_null: return {};
    case DT_bool: *scratch = value.m_bValue ? '1' : '0'; return {scratch, 1};
    case DT_sint: return scratchText(scratch, writeSigned(scratch, value.m_llValue));
    case DT_uint: return scratchText(scratch, writeUnsigned(scratch, value.m_ullValue));
    case DT_double: return scratchText(scratch, writeDouble(scratch, value.m_dValue));
    case DT_codelist: return tFieldAccess::codes(leaf);
    case DT_array:
    case DT_fields: break;
    }
    throwUnknown(leaf, reporter);
}

/// The value as binary bytes, numbers in eight; in `scratch`, or in the node.
std::string_view binaryBytes(const CFields& leaf, char* scratch, const tReporter& reporter)
{
    const uMultiValue& value = tFieldAccess::value(leaf);
    switch (tFieldAccess::type(leaf))
    {
    case DT_null: return {};
    case DT_bool: *scratch = value.m_bValue ? 1 : 0; return {scratch, 1};
    case DT_sint: storeBigEndian(scratch, static_cast<std::uint64_t>(value.m_llValue)); return {scratch, s_cnWord};
    case DT_uint: storeBigEndian(scratch, value.m_ullValue); return {scratch, s_cnWord};
    case DT_double: storeBigEndian(scratch, bitCast<std::uint64_t>(value.m_dValue)); return {scratch, s_cnWord};
    case DT_codelist: return tFieldAccess::codes(leaf);
    case DT_array:
    case DT_fields: break;
    }
    throwUnknown(leaf, reporter);
}

bool isNegative(const CFields& leaf)
{
    const uMultiValue& value = tFieldAccess::value(leaf);
    switch (tFieldAccess::type(leaf))
    {
    case DT_sint: return value.m_llValue < 0;
    case DT_double: return value.m_dValue < 0.0;
    default: return false;
    }
}

/// Appends eight bytes, the first of a scratch, in `length` bytes. Shorter: the last bytes; longer: filled up in front;
/// exactly eight: nothing, see "Exactly eight" in docs/packets.md.
void putWord(CPacketBuffer& packet, const char* word, std::size_t length, bool negative)
{
    if (length < s_cnWord)
        packet.putOf32(word + (s_cnWord - length), length);
    else if (length > s_cnWord)
    {
        packet.fill(length - s_cnWord, negative ? s_ccNegativeFill : '\0');
        packet.putOf32(word, s_cnWord);
    }
}

/// Appends a text from a scratch in `length` bytes: filled up in front but after a minus sign, or cut at the end.
void putLeftFilled(CPacketBuffer& packet, std::string_view text, std::size_t length, char fill)
{
    if (text.size() >= length)
    {
        packet.putOf32(text.data(), length);
        return;
    }
    const std::size_t sign = text.front() == '-' ? 1 : 0;
    packet.putOf32(text.data(), sign);
    packet.fill(length - text.size(), fill);
    packet.putOf32(text.data() + sign, text.size() - sign);
}

void makeFixed(const CFields& leaf, E_PacketExpCode form, std::size_t length, CPacketBuffer& packet)
{
    char scratch[s_cnScratch];
    const tReporter& reporter = s_ctMakers[form][LEC_F];
    const std::string_view bytes =
        form == PEC_A ? asciiBytes(leaf, scratch, reporter) : binaryBytes(leaf, scratch, reporter);
    if (length == 0)
        return;
    const tFitRow& row = s_ctFits[form][tFieldAccess::type(leaf)];
    switch (row.m_eFit)
    {
    case FIT_left: putLeftFilled(packet, bytes, length, row.m_cFill); break;
    case FIT_word: putWord(packet, bytes.data(), length, isNegative(leaf)); break;
    default:
        packet.put(bytes.substr(0, length));
        packet.fill(length - std::min(length, bytes.size()), row.m_cFill);
        break;
    }
}

/// A number's text in `width` characters: zeros stand before a minus sign, and what is too long loses its end.
void putAsciiPrefix(CPacketBuffer& packet, long long number, std::size_t width)
{
    char scratch[s_cnScratch];
    const std::string_view text = scratchText(scratch, writeSigned(scratch, number));
    packet.fill(width - std::min(width, text.size()), '0');
    packet.put(text.substr(0, width));
}

void putBinaryPrefix(CPacketBuffer& packet, long long number, std::size_t width, E_DataType type)
{
    char scratch[s_cnScratch];
    storeBigEndian(scratch, static_cast<std::uint64_t>(number));
    putWord(packet, scratch, width, number < 0 && (type == DT_null || type == DT_bool));
}

void makeVariable(const CFields& leaf, const tPacketExpInfo& pei, CPacketBuffer& packet)
{
    char scratch[s_cnScratch];
    const tReporter& reporter = s_ctMakers[pei.m_ePacketExp][LEC_V];
    const bool ascii = pei.m_ePacketExp == PEC_A;
    const std::string_view bytes = ascii ? asciiBytes(leaf, scratch, reporter) : binaryBytes(leaf, scratch, reporter);
    const long long number = static_cast<long long>(bytes.size()) + pei.m_ucPrefixSize - pei.m_cCalibration;
    if (ascii)
        putAsciiPrefix(packet, number, pei.m_ucPrefixSize);
    else
        putBinaryPrefix(packet, number, pei.m_ucPrefixSize, tFieldAccess::type(leaf));
    packet.put(bytes);
}

unsigned int signedWidth(long long value)
{
    const auto fits = [value](int bits) { return value >= -(1LL << (bits - 1)) && value < (1LL << (bits - 1)); };
    return fits(8) ? 1 : fits(16) ? 2 : fits(32) ? 4 : 8;
}

unsigned int unsignedWidth(unsigned long long value)
{
    const auto fits = [value](int bits) { return value >> bits == 0; };
    return fits(8) ? 1 : fits(16) ? 2 : fits(32) ? 4 : 8;
}

}  // namespace

void makeOtherItem(CFields& leaf, CPacketBuffer& packet)
{
    tPacketExpInfo& pei = tFieldAccess::pei(leaf);
    switch (pei.m_eLengthExp)
    {
    case LEC_F:
    case LEC_D: makeFixed(leaf, pei.m_ePacketExp, pei.m_uiLength, packet); break;
    case LEC_V:
    {
        const std::size_t before = packet.size();
        makeVariable(leaf, pei, packet);
        pei.m_uiLength = static_cast<unsigned int>(packet.size() - before);
        break;
    }
    }
}

unsigned int naturalLength(const CFields& leaf, E_PacketExpCode form)
{
    const tReporter& reporter = s_ctMeasurers[form];
    char scratch[s_cnScratch];
    const E_DataType type = tFieldAccess::type(leaf);
    if (form == PEC_B && type == DT_sint)
        return signedWidth(tFieldAccess::value(leaf).m_llValue);
    if (form == PEC_B && type == DT_uint)
        return unsignedWidth(tFieldAccess::value(leaf).m_ullValue);
    const std::string_view bytes =
        form == PEC_A ? asciiBytes(leaf, scratch, reporter) : binaryBytes(leaf, scratch, reporter);
    return static_cast<unsigned int>(bytes.size());
}

}  // namespace murv::detail
