// layout/values/item.h - how the bytes of one leaf are its value.
//
// Compiling fills the description in from packet expression and rules; reading and making only look at it. It knows
// neither the part nor the packet around it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "layout/values/scalar.h"

namespace murv::detail
{

struct tCodePage;
struct tKeywordRow;

/// What the bytes are; the row in the table of codecs.
enum E_ItemForm : unsigned char
{
    IF_text,      // characters, filled up with padding
    IF_bytes,     // bytes as they are
    IF_hexText,   // bytes, each as two hexadecimal digits
    IF_digits,    // decimal digits, "-" in front
    IF_trailing,  // decimal digits, "+" or "-" after them
    IF_octal,     // octal digits
    IF_hex,       // hexadecimal digits
    IF_zoned,     // decimal digits, the sign in the last
    IF_binary,    // integer to the base 256, one to eight bytes
    IF_float,     // IEEE 754, four or eight bytes
    IF_packed,    // two digits a byte, the sign in the last half
    IF_bcd,       // two digits a byte
};
inline constexpr unsigned int s_cuiItemForms = IF_bcd + 1;

/// Where the padding of an item of fixed width stands, and what it is.
enum E_Padding : unsigned char
{
    PAD_none,         // padding is part of the value
    PAD_blanksAfter,  // texts; numbers by the rule "left"
    PAD_blanksFront,  // texts by "right"; numbers by "pad blank"
    PAD_zerosFront,   // numbers
    PAD_zeroBytes,    // after texts and bytes by "pad zero"
};

/// Items whose usual values are read and written without a call.
enum E_QuickForm : unsigned char
{
    QF_none,
    QF_digits,  // a whole number with zeros in front, up to sixteen digits
    // The same of up to eight digits, in a packet whose bytes before them make up a word with them. Without it, views
    // of such numbers take 1.05 to 1.08 times as long.
    QF_digitsAfter,
    QF_text,    // a text with blanks after it
    QF_bytes,   // bytes that fill the item
    QF_big,     // a number without sign, the high byte first
    QF_little,  // the same, the low byte first
};

/// Values that are valid: from one to another, both included; or a single one.
struct tValidRange
{
    std::string m_strLow;  // as the rule states it
    std::string m_strHigh;
};

/// A part of a binary number.
struct tBitField
{
    std::string m_strName;
    unsigned int m_uiWidth;
    unsigned int m_uiShift;               // of its lowest bit
    std::vector<tValidRange> m_vValid{};  // empty: all
};

/// That many bits, the lowest of a number.
constexpr unsigned long long mask4Width(unsigned int width)
{
    return width >= 64 ? ~0ULL : (1ULL << width) - 1;
}

struct tItem
{
    E_ItemForm m_eForm = IF_bytes;
    E_Padding m_ePadding = PAD_none;
    bool m_bVaries = false;  // the width varies; m_uiLength is the most bytes of value then, 0 for no bound
    bool m_bLittle = false;  // bytes of binary numbers and prefixes, the low one first
    bool m_bSigned = false;
    bool m_bExact = false;  // digits stay text
    bool m_bLower = false;  // hexadecimal digits are written in lower case
    bool m_bBlankIsNull = false;
    bool m_bZeroIsNull = false;
    bool m_bKeep = false;  // of a date: the option "now" leaves it alone
    bool m_bMask = false;
    bool m_bPlain = false;           // set by prepareItem: digits or bytes are an integer without other rules
    bool m_bTested = false;          // set by prepareItem: only some values are valid
    bool m_bBare = false;            // set by prepareItem: the item may be digits alone
    E_QuickForm m_eQuick = QF_none;  // set by prepareItem; the values still have to be valid ones
    unsigned char m_ucShown = 0;     // masked: this many bytes at the end stay visible
    unsigned char m_ucPrefix = 0;    // width of the length prefix, 0 without one
    signed char m_cCalibration = 0;
    bool m_bBinaryPrefix = false;
    char m_cPoint = 0;  // written decimal point, 0 when it is implied
    unsigned char m_ucDecimals = 0;
    bool m_bDecimals = false;                  // the value is a decimal text
    unsigned int m_uiLength = 0;               // bytes of value with the tail, without prefix
    const tCodePage* m_pPage = nullptr;        // null: bytes stay bytes, digits and blanks are ASCII
    const tCodePage* m_pPrefixPage = nullptr;  // of the prefix; null: that of the value
    const tKeywordRow* m_pTime = nullptr;      // the item is a date or time
    std::string m_strTail;                     // bytes that stand after the digits, as the rule quotes them
    std::vector<tBitField> m_vBits;            // the value is a field set of these
    std::vector<tValidRange> m_vValid;         // empty: all
    std::string m_strValidDate;                // letters such as "DDMMYYYY" that the digits must be a date in
};

}  // namespace murv::detail
