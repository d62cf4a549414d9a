// layout/plan/runs.cpp - the fields of a run, and the rows of them that are made in one go.
#include "layout/plan/runs.h"

#include "core/text/digit_words.h"

namespace murv::detail
{

namespace
{

constexpr unsigned int s_cuiMostRowBytes = 1024;  // are made again at most once for each field that is not as usual

constexpr unsigned int s_cuiWord = 8;

/// Whether any bytes are a value: bytes, text without a code page, and whole numbers in bytes.
bool alwaysReads(const tItem& item, E_QuickForm quick)
{
    const bool isText = (item.m_eForm == IF_text || item.m_eForm == IF_bytes) && item.m_pPage == nullptr;
    const bool isNumber = quick == QF_big || quick == QF_little;
    return (isText || isNumber) && item.m_pTime == nullptr && !item.m_bTested;
}

/// The form in which a value can be checked. That of a number with decimals is its digits.
E_QuickForm checkForm4(const tItem& item, E_QuickForm quick)
{
    const bool isDigits = item.m_eForm == IF_digits && item.m_bBare && item.m_pPage == nullptr &&
                          item.m_pTime == nullptr && item.m_uiLength <= s_cnShortDigits;
    return item.m_bTested ? QF_none : quick != QF_none ? quick : isDigits ? QF_digits : QF_none;
}

/// Whether making a leaf asks for nothing but its value. Dates may become the present one, and may be findings.
bool isPlainValue(const tPart& leaf)
{
    return !leaf.m_bLiteral && !leaf.m_bOpen && !leaf.m_bAsks && !leaf.m_tItem.m_bTested &&
           leaf.m_tItem.m_pTime == nullptr && leaf.m_tItem.m_vBits.empty();
}

}  // namespace

void appendToRun(tPlan& plan, unsigned int index, unsigned int part)
{
    tRun& run = plan.m_vRuns[index];
    const tPart& leaf = plan.m_vParts[part];
    const tItem& item = leaf.m_tItem;
    const auto field = static_cast<unsigned int>(run.m_vFields.size());
    const bool isKept = plan.m_vRegister4Part[part] != s_cuiNone;
    const bool isPlain = isPlainValue(leaf) && !isKept && !plan.m_vChooses[part];
    E_QuickForm quick = item.m_vBits.empty() && !leaf.m_bAsks ? item.m_eQuick : QF_none;
    if (quick == QF_digits && item.m_uiLength <= s_cuiWord && run.m_uiLength + item.m_uiLength >= s_cuiWord)
        quick = QF_digitsAfter;
    run.m_vFields.push_back({part, run.m_uiLength, item.m_uiLength, isPlain, quick, item.m_bTested ? QF_none : quick,
                             checkForm4(item, quick)});
    if (!alwaysReads(item, quick))
        run.m_vChecked.push_back(field);
    plan.m_vPlace4Part[part] = {index, run.m_uiLength, item.m_uiLength, quick};
    run.m_uiLength += item.m_uiLength;
    if (leaf.m_bLiteral)
        run.m_vLiterals.push_back(field);
    if (isKept)
        run.m_vKept.push_back(field);
}

void makeRows(tPlan& plan, tRun& run)
{
    unsigned int fields = 0;
    unsigned int bytes = 0;
    for (auto field = run.m_vFields.rbegin(); field != run.m_vFields.rend(); ++field)
    {
        const bool isNamed = !plan.m_vParts[field->m_uiPart].m_strName.empty();
        const bool fits =
            field->m_bPlain && isNamed && field->m_eMake != QF_none && field->m_uiLength <= s_cuiMostRowBytes;
        const bool isLast = !fits || bytes + field->m_uiLength > s_cuiMostRowBytes;
        fields = fits ? (isLast ? 0 : fields) + 1 : 0;
        bytes = fits ? (isLast ? 0 : bytes) + field->m_uiLength : 0;
        field->m_usRow = static_cast<unsigned short>(fields);
        field->m_usRowBytes = static_cast<unsigned short>(bytes);
    }
}

}  // namespace murv::detail
