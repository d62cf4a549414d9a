// layout/compile/rule_table.cpp - all rules and value words, a row each.
#include "layout/compile/rule_table.h"

#include <algorithm>
#include <iterator>

#include "layout/compile/rule_arguments.h"
#include "layout/compile/rule_compilers.h"
#include "layout/compile/suggestion.h"

namespace murv::detail
{

namespace
{

constexpr unsigned int s_cuiInherited = RP_root | RP_set | RP_array;

// clang-format off
constexpr tRuleRow s_ctRules[] = {
    // The root, and how records lie in the input.
    {"layout", "layout 1", RP_root, "the root", RG_none, PH_plain, RT_none, readNumber, compileNothing,
     "this document is a layout, version 1"},
    {"lines", "lines [N | \"MARK\"]", RP_root, "the root", RG_frame, PH_plain, RT_none, readLines, compileLines,
     "each record stands on a line, of N bytes if stated, or ends before the mark"},
    {"fixed", "fixed N", RP_root, "the root", RG_frame, PH_plain, RT_none, readNumber, compileFixed,
     "each record has N bytes, without marks between them"},
    {"prefixed", "prefixed EXPRESSION [+ N]", RP_root, "the root", RG_frame, PH_plain, RT_none, readPrefixed,
     compilePrefixed, "each record follows its length, which may count more than the record"},

    // Which parts are there.
    {"one of by", "one of by PATH [else NAME]", RP_set, "field sets", RG_choice, PH_linked, RT_none, readChoice,
     compileOneOfBy, "one of the parts is there: the one whose ID or name equals a value that is read before"},
    {"one of", "one of", RP_root | RP_set, "field sets", RG_choice, PH_plain, RT_none, readNothing, compileOneOf,
     "one of the parts is there: the first whose literals are"},
    {"if", "if PATH = VALUE [| VALUE]", RP_part, "parts", RG_none, PH_linked, RT_repeats, readTest, compileIf,
     "the part is there only when the comparison holds"},
    {"optional", "optional", RP_part, "parts", RG_none, PH_plain, RT_none, readNothing, compileOptional,
     "the part may be missing: it is there when its literals are"},
    {"like", "like PATH", RP_set, "field sets", RG_none, PH_building, RT_none, readPathOnly, compileNothing,
     "the part is laid out like another one"},

    // Numbers about parts.
    {"size of", "size of PART [/ N] [+ N | - N]", RP_number | RP_bit, "numbers", RG_computed, PH_linked, RT_none,
     readSize, compileSize, "the number is the size of the part in bytes"},
    {"count of", "count of PATH [+ N | - N]", RP_number | RP_bit, "numbers", RG_computed, PH_linked, RT_none,
     readCount, compileCount, "the number counts the elements of an array"},
    {"bits of", "bits of PART [from N]", RP_string, "texts and bytes", RG_computed, PH_linked, RT_none, readBitmap,
     compileBitmap, "each bit says whether the part with its number as ID is there"},
    {"sum of", "sum of PATH [+ N | - N]", RP_number, "numbers", RG_computed, PH_linked, RT_none, readCount,
     compileSum, "the number is the sum of all these numbers"},
    {"records of", "records of PATH [+ N | - N]", RP_number, "numbers", RG_computed, PH_linked, RT_none, readCount,
     compileRecords, "the number counts the records of these parts"},
    {"crc16", "crc16 [VARIANT] of PART", RP_number, "numbers", RG_computed, PH_linked, RT_none, readChecksum,
     compileChecksum, "cyclic redundancy check of 16 bits"},
    {"crc32", "crc32 [VARIANT] of PART", RP_number, "numbers", RG_computed, PH_linked, RT_none, readChecksum,
     compileChecksum, "cyclic redundancy check of 32 bits"},
    {"inet", "inet of PART", RP_number, "numbers", RG_computed, PH_linked, RT_none, readChecksum, compileChecksum,
     "one's complement sum of 16-bit words, inverted"},
    {"xor", "xor of PART", RP_number, "numbers", RG_computed, PH_linked, RT_none, readChecksum, compileChecksum,
     "exclusive or of all bytes"},
    {"sum8", "sum8 of PART", RP_number, "numbers", RG_computed, PH_linked, RT_none, readChecksum, compileChecksum,
     "sum of all bytes, the lowest 8 bits of it"},
    {"sum32", "sum32 of PART", RP_number, "numbers", RG_computed, PH_linked, RT_none, readChecksum, compileChecksum,
     "sum of all bytes, the lowest 32 bits of it"},
    {"luhn", "luhn of PART", RP_number, "numbers", RG_computed, PH_linked, RT_none, readChecksum, compileChecksum,
     "check digit that doubles every second digit"},
    {"mod10", "mod10 of PART", RP_number, "numbers", RG_computed, PH_linked, RT_none, readChecksum, compileChecksum,
     "sum of the digits, the last digit of it"},
    {"mod97", "mod97 of PART", RP_number, "numbers", RG_computed, PH_linked, RT_none, readChecksum, compileChecksum,
     "check digits by the remainder of 97"},

    // Ends.
    {"ends", "ends \"MARK\"", RP_array | RP_leaf, "leaves and arrays", RG_end, PH_plain, RT_none, readMark,
     compileEnds, "a mark ends it"},
    {"before", "before \"MARK\" [| \"MARK\"]", RP_leaf, "leaves", RG_end, PH_plain, RT_none, readMarks,
     compileBefore, "it ends before one of the marks, which belong to what follows"},
    {"between", "between \"MARK\"", RP_root | RP_set | RP_array, "field sets and arrays", RG_none, PH_plain, RT_none,
     readMark, compileBetween, "the mark stands between its parts"},
    {"until", "until PATH = VALUE [| VALUE]", RP_array, "arrays", RG_none, PH_linked, RT_none, readTest,
     compileUntil, "the element for which the comparison holds is the last"},
    {"to end", "to end", RP_array | RP_leaf, "leaves and arrays", RG_end, PH_plain, RT_none, readNothing,
     compileToEnd, "it takes all that is left, less the parts after it"},
    {"align", "align N [\"FILL\"]", RP_root | RP_part, "parts", RG_none, PH_plain, RT_none, readAlign, compileAlign,
     "after it, bytes are skipped to a multiple of N"},

    // Values that must or may be.
    {"required", "required", RP_leaf, "leaves", RG_none, PH_plain, RT_none, readNothing, compileRequired,
     "data without it is refused"},
    {"valid", "valid V..V [| V]", RP_leaf | RP_bit, "leaves", RG_none, PH_plain, RT_word, readValid, compileValid,
     "other values are reported, and not made"},
    {"mask", "mask [N]", RP_leaf, "leaves", RG_none, PH_plain, RT_word, readMaybeNumber, compileMask,
     "people see stars, but for the last N bytes", 31, "mask", KO_maybe},

    // What a value is.
    {"little", "little", s_cuiInherited | RP_binary | RP_bytes, "binary numbers, prefixes and what holds them",
     RG_order, PH_plain, RT_word, readNothing, compileLittle, "the low byte comes first", 1, "le"},
    {"big", "big", s_cuiInherited | RP_binary | RP_bytes, "binary numbers, prefixes and what holds them", RG_order,
     PH_plain, RT_word, readNothing, compileBig, "the high byte comes first", 2, "be"},
    {"ascii", "ascii", s_cuiInherited | RP_ascii | RP_string, "texts, numbers in text and what holds them", RG_page,
     PH_plain, RT_word, readNothing, compilePage, "characters are those of ASCII", 3, "ascii"},
    {"cp037", "cp037", s_cuiInherited | RP_ascii | RP_string, "texts, numbers in text and what holds them", RG_page,
     PH_plain, RT_word, readNothing, compilePage, "characters are those of EBCDIC 037", 4, "cp037"},
    {"cp500", "cp500", s_cuiInherited | RP_ascii | RP_string, "texts, numbers in text and what holds them", RG_page,
     PH_plain, RT_word, readNothing, compilePage, "characters are those of EBCDIC 500", 5, "cp500"},
    {"cp1047", "cp1047", s_cuiInherited | RP_ascii | RP_string, "texts, numbers in text and what holds them",
     RG_page, PH_plain, RT_word, readNothing, compilePage, "characters are those of EBCDIC 1047", 6, "cp1047"},
    {"latin1", "latin1", s_cuiInherited | RP_ascii | RP_string, "texts, numbers in text and what holds them",
     RG_page, PH_plain, RT_word, readNothing, compilePage, "characters are those of ISO 8859-1", 7, "latin1"},
    {"raw", "raw", RP_string, "texts and bytes", RG_page, PH_plain, RT_word, readNothing, compileRaw,
     "bytes are not characters of a code page", 8, "raw"},
    {"signed", "signed", RP_number, "numbers", RG_none, PH_plain, RT_word, readNothing, compileSigned,
     "the number may be below zero", 9, "int"},
    {"float", "float", RP_binary, "binary numbers", RG_form, PH_plain, RT_word, readNothing, compileForm,
     "IEEE 754, of 4 or 8 bytes", 10, "float"},
    {"bits", "bits N NAME [, N NAME]", RP_binary, "binary numbers", RG_form, PH_plain, RT_word, readBitFields,
     compileBitFields, "a field set of small numbers, from the highest bit on"},
    {"decimals", "decimals N, or decimals \"POINT\"", RP_number, "numbers", RG_none, PH_plain, RT_word, readDecimals,
     compileDecimals, "decimals, after a point that is implied or written so", 11, "dec_", KO_argument},
    {"octal", "octal [\"TAIL\"]", RP_ascii, "numbers in text", RG_form, PH_plain, RT_word, readMaybeTail,
     compileForm, "octal digits, and the quoted bytes after them", 12, "oct"},
    {"hex", "hex [lower] [\"TAIL\"]", RP_ascii | RP_string, "numbers in text, texts and bytes", RG_form, PH_plain,
     RT_word, readHex, compileHex, "hexadecimal digits; of texts and bytes two for each byte", 13, "hex"},
    {"packed", "packed", RP_binary, "binary numbers", RG_form, PH_plain, RT_word, readNothing, compileForm,
     "two decimal digits a byte, the sign in the last half", 14, "packed", KO_decimals},
    {"bcd", "bcd", RP_binary, "binary numbers", RG_form, PH_plain, RT_word, readNothing, compileForm,
     "two decimal digits a byte", 15, "bcd", KO_decimals},
    {"zoned", "zoned", RP_ascii, "numbers in text", RG_form, PH_plain, RT_word, readNothing, compileForm,
     "decimal digits, the sign in the last one", 16, "zoned", KO_decimals},
    {"trailing sign", "trailing sign", RP_ascii, "numbers in text", RG_form, PH_plain, RT_word, readNothing,
     compileForm, "decimal digits, and \"+\" or \"-\" after them", 17, "trailing", KO_decimals},
    {"exact", "exact", RP_ascii, "numbers in text", RG_none, PH_plain, RT_word, readNothing, compileExact,
     "the digits are kept as text", 18, "exact"},
    {"blank is null", "blank is null", RP_ascii, "numbers in text", RG_null, PH_plain, RT_word, readNothing,
     compileNull, "blanks, or no bytes, are null", 19, "blanknull"},
    {"zero is null", "zero is null", RP_ascii | RP_time, "numbers in text and dates", RG_null, PH_plain, RT_word,
     readNothing, compileNull, "zeros are null", 20, "zeronull"},
    {"pad blank", "pad blank", RP_ascii | RP_string, "numbers in text, texts and bytes", RG_padding, PH_plain,
     RT_word, readNothing, compilePadding, "blanks are padding: before numbers, after texts and bytes", 21, "padblank"},
    {"pad zero", "pad zero", RP_string, "texts and bytes", RG_padding, PH_plain, RT_word, readNothing,
     compilePadding, "zero bytes at the end are padding", 22, "padzero"},
    {"left", "left", RP_ascii, "numbers in text", RG_padding, PH_plain, RT_word, readNothing, compilePadding,
     "digits stand at the left, and blanks after them", 23, "left"},
    {"right", "right", RP_string, "texts and bytes", RG_padding, PH_plain, RT_word, readNothing, compilePadding,
     "blanks in front are padding", 24, "right"},
    {"keep", "keep", RP_string | RP_time, "texts, bytes and dates", RG_padding, PH_plain, RT_word, readNothing,
     compileKeep, "padding belongs to the value; a date is never filled with the time", 25, "keep"},
};
// clang-format on

constexpr std::string_view s_cstrvBlanks = " \t\r\n";

/// Whether an earlier row hides a later one, whose name it begins.
constexpr bool isLongestFirst()
{
    for (const tRuleRow* late = std::begin(s_ctRules); late != std::end(s_ctRules); ++late)
    {
        for (const tRuleRow* early = std::begin(s_ctRules); early != late; ++early)
        {
            const std::string_view name = early->m_pName;
            const std::string_view longer = late->m_pName;
            if (longer == name || (longer.starts_with(name) && longer[name.size()] == ' '))
                return false;
        }
    }
    return true;
}

constexpr bool areKeywordsUnique()
{
    for (const tRuleRow& a : s_ctRules)
    {
        for (const tRuleRow& b : s_ctRules)
        {
            if (&a != &b && a.m_usKeyword != 0 && a.m_usKeyword == b.m_usKeyword)
                return false;
        }
        if ((a.m_usKeyword == 0) != (a.m_pKeyword == nullptr))
            return false;
    }
    return true;
}

static_assert(isLongestFirst(), "a rule must come before those whose name begins it");
static_assert(areKeywordsUnique(), "files hold the index of a keyword");

/// The first words of a text, as many as the name has.
std::string_view firstWords(std::string_view text, std::string_view name)
{
    auto blanks = std::count(name.begin(), name.end(), ' ');
    std::size_t end = text.find_first_of(s_cstrvBlanks);
    for (; end != std::string_view::npos && blanks > 0; --blanks)
        end = text.find_first_of(s_cstrvBlanks, end + 1);
    return text.substr(0, end);
}

std::string refuseUnknown(std::string_view text)
{
    std::string hint;
    for (const tRuleRow& row : s_ctRules)
    {
        if (hint.empty())
            hint = suggest(firstWords(text, row.m_pName), {row.m_pName});
    }
    constexpr std::size_t most = 60;
    return "There is no rule \"" + std::string(text.substr(0, most)) + "\"" + hint;
}

}  // namespace

const tRuleRow* beginRules()
{
    return std::begin(s_ctRules);
}

const tRuleRow* endRules()
{
    return std::end(s_ctRules);
}

const tRuleRow& ruleRow(std::string_view name)
{
    return *std::find_if(beginRules(), endRules(), [name](const tRuleRow& row) { return row.m_pName == name; });
}

const tRuleRow* findKeywordRow(unsigned int index)
{
    const tRuleRow* const row =
        std::find_if(beginRules(), endRules(), [index](const tRuleRow& at) { return at.m_usKeyword == index; });
    return index == 0 || row == endRules() ? nullptr : row;
}

std::string readRule(std::string_view text, tRule& rule)
{
    rule.m_strWritten = text;
    for (const tRuleRow& row : s_ctRules)
    {
        CRuleText reader(text);
        if (!reader.takeWords(row.m_pName))
            continue;
        rule.m_pRow = &row;
        if (row.m_pRead(reader, rule) && reader.atEnd())
            return {};
        return std::string("The rule is malformed; write it as: ") + row.m_pForm;
    }
    return refuseUnknown(text);
}

}  // namespace murv::detail
