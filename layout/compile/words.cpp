// layout/compile/words.cpp - value words: how the bytes of one leaf are its value.
#include <utility>

#include "layout/compile/draft.h"
#include "layout/compile/rule_compilers.h"
#include "layout/values/code_pages.h"
#include "packet/keyword_table.h"

namespace murv::detail
{

namespace
{

struct tFormWord
{
    std::string_view m_strvWord;
    E_ItemForm m_eForm;
};

constexpr tFormWord s_ctFormWords[] = {
    {"float", IF_float}, {"octal", IF_octal}, {"packed", IF_packed},
    {"bcd", IF_bcd},     {"zoned", IF_zoned}, {"trailing sign", IF_trailing},
};

struct tPaddingWord
{
    std::string_view m_strvWord;
    E_Padding m_eOfNumbers;
    E_Padding m_eOfTexts;
};

constexpr tPaddingWord s_ctPaddingWords[] = {
    {"pad blank", PAD_blanksFront, PAD_blanksAfter},
    {"pad zero", PAD_zeroBytes, PAD_zeroBytes},
    {"left", PAD_blanksAfter, PAD_blanksAfter},
    {"right", PAD_blanksFront, PAD_blanksFront},
};

void setOrder(tDraft& draft, bool little)
{
    draft.m_bOrder = true;
    draft.m_bLittle = little;
}

void setTail(tItem& item, const tRule& rule)
{
    if (!rule.m_vTexts.empty())
        item.m_strTail = rule.m_vTexts.front();
}

/// The letters consist of parts of the time; other characters are not letters or digits.
bool isDatePattern(std::string_view letters)
{
    bool any = false;
    while (!letters.empty())
    {
        const std::size_t row = firstTimePart(letters);
        const bool isPart = row < std::size(s_ctTimeParts);
        const char first = letters.front();
        if (!isPart && ((first >= '0' && first <= '9') || ((first | 32) >= 'a' && (first | 32) <= 'z')))
            return false;
        any = any || isPart;
        letters.remove_prefix(isPart ? s_ctTimeParts[row].m_strvLetters.size() : 1);
    }
    return any;
}

}  // namespace

void compileLittle(tCompile& compile, unsigned int part, const tRule&)
{
    setOrder(compile.draft(part), true);
}

void compileBig(tCompile& compile, unsigned int part, const tRule&)
{
    setOrder(compile.draft(part), false);
}

void compilePage(tCompile& compile, unsigned int part, const tRule& rule)
{
    compile.draft(part).m_pPage = findCodePage(rule.m_pRow->m_pName);
    compile.draft(part).m_bOwnPage = true;
}

void compileRaw(tCompile& compile, unsigned int part, const tRule&)
{
    compile.draft(part).m_bRaw = true;
}

void compileSigned(tCompile& compile, unsigned int part, const tRule&)
{
    compile.part(part).m_tItem.m_bSigned = true;
}

void compileForm(tCompile& compile, unsigned int part, const tRule& rule)
{
    tItem& item = compile.part(part).m_tItem;
    for (const tFormWord& row : s_ctFormWords)
    {
        if (row.m_strvWord == rule.m_pRow->m_pName)
            item.m_eForm = row.m_eForm;
    }
    setTail(item, rule);
}

void compileHex(tCompile& compile, unsigned int part, const tRule& rule)
{
    tItem& item = compile.part(part).m_tItem;
    const bool number = (compile.draft(part).m_uiPlaces & RP_ascii) != 0;
    item.m_eForm = number ? IF_hex : IF_hexText;
    item.m_bLower = rule.m_strWord == "lower";
    if (!number && !rule.m_vTexts.empty())
        compile.refuse(part, rule, "Only numbers have bytes after their digits");
    setTail(item, rule);
}

void compileBitFields(tCompile& compile, unsigned int part, const tRule& rule)
{
    tItem& item = compile.part(part).m_tItem;
    unsigned int left = item.m_uiLength <= 8 ? item.m_uiLength * 8 : 0;
    item.m_vBits = rule.m_vBits;
    for (std::size_t i = 0; i < item.m_vBits.size(); ++i)
    {
        tBitField& field = item.m_vBits[i];
        for (std::size_t j = 0; j < i; ++j)
        {
            if (item.m_vBits[j].m_strName == field.m_strName)
                compile.refuse(part, rule, "The name \"" + field.m_strName + "\" stands twice among the bits");
        }
        if (field.m_uiWidth > left)
        {
            left = 1;
            break;
        }
        left -= field.m_uiWidth;
        field.m_uiShift = left;
    }
    if (left != 0)
    {
        item.m_vBits.clear();
        compile.refuse(part, rule, "The bits do not fill the number exactly");
    }
}

void compileDecimals(tCompile& compile, unsigned int part, const tRule& rule)
{
    tItem& item = compile.part(part).m_tItem;
    item.m_bDecimals = true;
    item.m_ucDecimals = static_cast<unsigned char>(rule.m_ullNumber);
    item.m_cPoint = rule.m_vTexts.empty() ? '\0' : rule.m_vTexts.front().front();
    if (item.m_cPoint == '-' || item.m_cPoint == '+' || item.m_cPoint == ' ' ||
        (item.m_cPoint >= '0' && item.m_cPoint <= '9'))
        compile.refuse(part, rule, "A decimal point is no digit, sign or blank");
}

void compileExact(tCompile& compile, unsigned int part, const tRule&)
{
    compile.part(part).m_tItem.m_bExact = true;
}

void compileNull(tCompile& compile, unsigned int part, const tRule& rule)
{
    const bool blank = std::string_view(rule.m_pRow->m_pName) == "blank is null";
    (blank ? compile.part(part).m_tItem.m_bBlankIsNull : compile.part(part).m_tItem.m_bZeroIsNull) = true;
}

void compilePadding(tCompile& compile, unsigned int part, const tRule& rule)
{
    const bool number = (compile.draft(part).m_uiPlaces & RP_number) != 0;
    for (const tPaddingWord& row : s_ctPaddingWords)
    {
        if (row.m_strvWord == rule.m_pRow->m_pName)
            compile.part(part).m_tItem.m_ePadding = number ? row.m_eOfNumbers : row.m_eOfTexts;
    }
    compile.draft(part).m_bPadding = true;
}

void compileKeep(tCompile& compile, unsigned int part, const tRule&)
{
    tDraft& draft = compile.draft(part);
    compile.part(part).m_tItem.m_bKeep = (draft.m_uiPlaces & RP_time) != 0;
    draft.m_bKeepAll = (draft.m_uiPlaces & RP_string) != 0;
}

void compileValid(tCompile& compile, unsigned int part, const tRule& rule)
{
    tItem& item = compile.part(part).m_tItem;
    if (!rule.m_strBit.empty())
        return;  // the bits may not be known yet
    item.m_vValid = rule.m_vValid;
    item.m_strValidDate = rule.m_strWord;
    if (!rule.m_strWord.empty() && !isDatePattern(rule.m_strWord))
        compile.refuse(part, rule, "\"" + rule.m_strWord + "\" does not consist of parts of a date, such as DDMMYYYY");
}

void compileMask(tCompile& compile, unsigned int part, const tRule& rule)
{
    constexpr unsigned long long most = 255;
    tItem& item = compile.part(part).m_tItem;
    item.m_bMask = true;
    item.m_ucShown = static_cast<unsigned char>(rule.m_ullNumber);
    if (rule.m_ullNumber > most)
        compile.refuse(part, rule, "A mask shows 255 bytes at most");
}

}  // namespace murv::detail
