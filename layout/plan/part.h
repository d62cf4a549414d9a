// layout/plan/part.h - the parts of a compiled layout: what the document says, understood and checked.
//
// Parts form a tree in the order of the packet and stand in one row, each before its members. They hold no bytes of
// packets and never change once the layout is compiled.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "layout/values/item.h"
#include "murv/packet_expression.h"

namespace murv::detail
{

inline constexpr unsigned int s_cuiNone = 0xFFFFFFFF;
inline constexpr unsigned long long s_cullNoBound = 0xFFFFFFFFFFFFFFFF;

enum E_PartKind : unsigned char
{
    PK_leaf,
    PK_set,
    PK_array,  // its one member is the element
};

/// How two values are compared in a test.
enum E_Comparison : unsigned char
{
    CM_equal,
    CM_unequal,
    CM_less,
    CM_greater,
    CM_notGreater,
    CM_notLess,
    CM_anyBit,
};

/// The value that a test, a choice or a number looks at: a leaf, or one part of its bits.
struct tValueOf
{
    unsigned int m_uiPart = s_cuiNone;
    unsigned int m_uiBits = s_cuiNone;  // index in the item's bit fields, or none
};

/// A value that stands in a rule: a number where the text is one, and the text. Of a value with implied decimals the
/// number is in units of the last one, and always set.
struct tConstant
{
    std::string m_strText;
    bool m_bNumber = false;
    bool m_bNegative = false;
    unsigned long long m_ullMagnitude = 0;
};

/// A condition: true when the value compares so with one of the constants; false when the value is absent or null.
struct tTest
{
    tValueOf m_tValue;
    E_Comparison m_eComparison = CM_equal;
    std::vector<tConstant> m_vConstants;
};

/// Fixed bytes at the beginning of a part. Reading recognises the part by them.
struct tHead
{
    struct tBytes
    {
        unsigned int m_uiOffset;
        std::string m_strBytes;
    };
    std::vector<tBytes> m_vBytes;  // by offset
};

/// How the alternative of a field set is chosen.
enum E_Choice : unsigned char
{
    CH_none,   // all parts are there, one after the other
    CH_heads,  // the first whose head is there
    CH_value,  // the one whose ID or name equals a value
};

/// How an array ends.
enum E_ArrayEnd : unsigned char
{
    AE_enclosing,  // at the end of the enclosing part, of its own size included
    AE_count,      // by a number that is read before
    AE_until,      // after the element for which a test holds
    AE_mark,       // before a mark
    AE_heads,      // when no head of the element is there, or at the end of the enclosing part
};

/// How the end of a leaf of varying width is found.
enum E_LeafEnd : unsigned char
{
    LE_fixed,      // the width is known
    LE_prefix,     // by its length prefix
    LE_mark,       // after a mark, which belongs to it
    LE_before,     // before one of several marks, or at the end of the enclosing part
    LE_enclosing,  // at the end of the enclosing part, less the parts that follow in it
    LE_callback,   // the callback of its keyword says it
};

/// A part of a layout.
struct tPart
{
    E_PartKind m_eKind = PK_leaf;
    std::string m_strName;  // as in the data; empty: none
    unsigned int m_uiID = 0;
    unsigned int m_uiParent = s_cuiNone;
    unsigned int m_uiIndex = 0;  // among the members of its parent
    std::vector<unsigned int> m_vMembers;
    unsigned int m_uiAfter = 0;  // the first part that is not below this one
    bool m_bRecord = false;      // the outermost with leaves of its own
    bool m_bInRecord = false;    // a record, or below one

    // Where and how the layout says it.
    unsigned int m_uiPlace = 0;  // offset in the document
    std::string m_strExpression;
    std::string m_strRules;
    std::string m_strComment;

    // Leaves.
    tPacketExpInfo m_tExpression{};  // as the document has it
    const void* m_pUser = nullptr;   // of the document's leaf, for the callbacks of its keyword; not owned
    bool m_bAsks = false;            // an application has callbacks for its keyword
    tItem m_tItem;
    bool m_bLiteral = false;
    bool m_bComputed = false;  // making fills it in
    bool m_bOpen = false;      // making fills it in, or some of its bits; set by makeSteps()
    bool m_bShown = true;      // in trees: not a literal without name and ID in a field set; set by makeSteps()
    bool m_bRequired = false;  // the data must have it
    std::string m_strLiteral;  // the bytes of a literal, prefix and end mark included
    std::string m_strDefault;  // the layout's own value when it is a byte string; see defaultOf()
    E_DataType m_eDefault = DT_null;
    unsigned long long m_ullDefault = 0;  // the bits of a number
    E_LeafEnd m_eEnd = LE_fixed;
    std::vector<std::string> m_vMarks;  // LE_mark: one; LE_before: one or more
    unsigned int m_uiTail = 0;  // LE_enclosing, m_bToEnd, m_strBetween: bytes of the parts after it in what encloses it

    // Being there.
    std::vector<tTest> m_vIf;  // all must hold
    bool m_bOptional = false;
    unsigned int m_uiBitmap = s_cuiNone;  // link of the bitmap that says whether it is there
    unsigned int m_uiBit = 0;             // counted from 0, bit 0 the highest of the first byte
    std::vector<tHead> m_vHeads;          // what it can begin with, each with bytes; empty: anything

    unsigned int m_uiSize = s_cuiNone;  // link of the number before it that says its size, or none

    // Field sets.
    std::vector<unsigned int> m_vByName;  // members with a name, sorted
    std::vector<unsigned int> m_vByID;    // members with an ID, sorted
    E_Choice m_eChoice = CH_none;
    tValueOf m_tChoice;
    unsigned int m_uiElse = s_cuiNone;  // member index
    std::string m_strBetween;           // the mark between members or elements; an array that comes last in such a
                                        // set, and has no mark of its own, has that of the set

    // Arrays.
    E_ArrayEnd m_eArrayEnd = AE_enclosing;
    unsigned int m_uiCount = s_cuiNone;  // link of the number that counts it
    tTest m_tUntil;
    std::string m_strEnds;
    bool m_bToEnd = false;

    unsigned int m_uiAlign = 0;  // 0: none
    std::string m_strAlignFill;  // repeated; empty: zero bytes

    // For those who describe the layout.
    unsigned int m_uiBase = s_cuiNone;             // the part from whose beginning the offset counts, or none
    unsigned long long m_ullOffset = 0;            // bytes, the same in every packet
    unsigned long long m_ullLeast = 0;             // bytes of the part when it is there, prefix and mark included
    unsigned long long m_ullMost = s_cullNoBound;  // the same
};

inline bool mayBeAbsent(const tPart& part)
{
    return part.m_bOptional || !part.m_vIf.empty() || part.m_uiBitmap != s_cuiNone;
}

/// The layout's own value of a leaf, which stands for a missing one; valid as long as the part.
inline tScalar defaultOf(const tPart& leaf)
{
    tScalar value;
    value.m_eType = leaf.m_eDefault;
    value.m_ullValue = leaf.m_ullDefault;
    value.m_strvText = leaf.m_strDefault;
    return value;
}

/// What a number says about other parts.
enum E_Link : unsigned char
{
    LK_size,
    LK_count,
    LK_bits,
    LK_check,     // a checksum
    LK_sum,       // total of leaves
    LK_elements,  // total of elements
    LK_records,   // total of records
};

/// A number that making fills in and reading compares: what it is about, and how it is counted.
struct tLink
{
    E_Link m_eKind = LK_size;
    tValueOf m_tNumber;
    unsigned int m_uiSpan = s_cuiNone;    // LK_size, LK_check: what is measured
    unsigned int m_uiTarget = s_cuiNone;  // LK_count, LK_bits, totals: part
    unsigned int m_uiBase = s_cuiNone;    // totals: the part whose instance is counted over
    unsigned long long m_ullDivisor = 1;
    long long m_llPlus = 0;
    unsigned int m_uiFrom = 1;  // LK_bits: the ID of the first bit
    unsigned char m_ucChecksum = 0;
    bool m_bRules = false;        // reading finds the end of the target by it
    bool m_bNumberFirst = false;  // the number stands before the end of its target
};

/// Neighbours that are measured together: from the beginning of one part to the end of another, of the same set.
struct tSpan
{
    unsigned int m_uiFirst = s_cuiNone;
    unsigned int m_uiLast = s_cuiNone;
    unsigned int m_uiSize = s_cuiNone;  // link of the number that says its size beforehand, or none
    bool m_bSizeInside = false;         // that number stands inside
};

/// How records lie in the input.
enum E_Frame : unsigned char
{
    FR_none,
    FR_lines,     // up to a line feed, with or without a carriage return before it
    FR_mark,      // up to a mark
    FR_fixed,     // of one length
    FR_prefixed,  // after their length
};

struct tFrame
{
    E_Frame m_eKind = FR_none;
    unsigned int m_uiLength = 0;  // FR_fixed; FR_lines, FR_mark: of each record, 0 for any
    std::string m_strMark;        // FR_mark
    tItem m_tPrefix;              // FR_prefixed: the number
    long long m_llPlus = 0;       // what the number says beyond the record's bytes
};

}  // namespace murv::detail
