// layout/describe.cpp - a compiled layout as a tree, for programs that make readers of their own from it.
//
// What has its usual value is left out, so that the tree says what is special about a part. Names of members and words
// are a part of the interface: docs/layout-description.md lists them.
#include <iterator>

#include "core/throw.h"
#include "layout/plan/plan.h"
#include "layout/run/fault_words.h"
#include "layout/run/totals.h"
#include "layout/values/checksum.h"
#include "layout/values/code_pages.h"
#include "murv/layout.h"
#include "packet/keyword_table.h"

namespace murv
{

using namespace detail;

namespace
{

constexpr const char* s_capKinds[] = {"leaf", "fields", "array"};
constexpr const char* s_capComparisons[] = {"=", "!=", "<", ">", "<=", ">=", "&"};
constexpr const char* s_capArrayEnds[] = {"rest", "count", "until", "mark", "heads"};
constexpr const char* s_capLeafEnds[] = {"width", "prefix", "mark", "before", "rest"};
constexpr const char* s_capLinks[] = {"size", "count", "bits", "check", "sum", "elements", "records"};
constexpr const char* s_capFrames[] = {"none", "lines", "mark", "fixed", "prefixed"};
constexpr const char* s_capPaddings[] = {"none", "blanks after", "blanks in front", "zeros in front", "zero bytes"};
constexpr const char* s_capForms[] = {"text", "bytes", "hex text", "digits", "trailing", "octal",
                                      "hex",  "zoned", "binary",   "float",  "packed",   "bcd"};

static_assert(std::size(s_capKinds) == PK_array + 1 && std::size(s_capComparisons) == CM_anyBit + 1 &&
              std::size(s_capArrayEnds) == AE_heads + 1 && std::size(s_capLeafEnds) == LE_enclosing + 1 &&
              std::size(s_capLinks) == LK_records + 1 && std::size(s_capFrames) == FR_prefixed + 1 &&
              std::size(s_capPaddings) == PAD_zeroBytes + 1 && std::size(s_capForms) == s_cuiItemForms);

/// Each has a member only when it is not the usual value.
void putFlag(CFields& tree, const char* name, bool value)
{
    if (value)
        tree.addChildRef(name) = true;
}

template <typename T>
void putNumber(CFields& tree, const char* name, T value, T usual = 0)
{
    if (value != usual)
        tree.addChildRef(name) = value;
}

void putText(CFields& tree, const char* name, std::string_view value)
{
    if (!value.empty())
        tree.addChildRef(name) = value;
}

void putReference(CFields& tree, const char* name, unsigned int value)
{
    putNumber(tree, name, value, s_cuiNone);
}

void putList(CFields& tree, const char* name, const std::vector<std::string>& texts)
{
    if (texts.empty())
        return;
    CFields& list = tree.addChildRef(name);
    for (const std::string& text : texts)
        list.addArrayAt(CFields()) = text;
}

void putValueOf(CFields& tree, const tPlan& plan, const tValueOf& value)
{
    tree.addChildRef("part") = value.m_uiPart;
    if (value.m_uiBits == s_cuiNone)
        return;
    const tBitField& bits = plan.m_vParts[value.m_uiPart].m_tItem.m_vBits[value.m_uiBits];
    tree.addChildRef("shift") = bits.m_uiShift;
    tree.addChildRef("bits") = bits.m_uiWidth;
}

void putTest(CFields& tree, const tPlan& plan, const tTest& test)
{
    putValueOf(tree, plan, test.m_tValue);
    tree.addChildRef("is") = s_capComparisons[test.m_eComparison];
    CFields& values = tree.addChildRef("values");
    for (const tConstant& constant : test.m_vConstants)
    {
        CFields& value = values.addArrayAt(CFields());
        value.addChildRef("text") = constant.m_strText;
        if (constant.m_bNumber)
            value.addChildRef("number") = (constant.m_bNegative && constant.m_ullMagnitude != 0 ? "-" : "") +
                                          std::to_string(constant.m_ullMagnitude);
    }
}

void putPadding(CFields& tree, const tItem& item)
{
    putNumber(tree, "length", item.m_uiLength);
    putFlag(tree, "varies", item.m_bVaries);
    if (item.m_ePadding != PAD_none)
        tree.addChildRef("padding") = s_capPaddings[item.m_ePadding];
    putText(tree, "tail", item.m_strTail);
    putFlag(tree, "blankIsNull", item.m_bBlankIsNull);
    putFlag(tree, "zeroIsNull", item.m_bZeroIsNull);
}

void putPrefix(CFields& tree, const tItem& item)
{
    if (item.m_ucPrefix == 0)
        return;
    CFields& prefix = tree.addChildRef("prefix");
    prefix.addChildRef("width") = static_cast<unsigned int>(item.m_ucPrefix);
    // What the number says beyond the bytes of the value.
    putNumber(prefix, "plus", item.m_ucPrefix - item.m_cCalibration);
    putFlag(prefix, "binary", item.m_bBinaryPrefix);
    const tCodePage* const page = item.m_pPrefixPage != nullptr ? item.m_pPrefixPage : item.m_pPage;
    if (page != nullptr && !item.m_bBinaryPrefix)
        prefix.addChildRef("page") = page->m_strvName;
}

void putValid(CFields& tree, const tItem& item)
{
    putText(tree, "validDate", item.m_strValidDate);
    if (item.m_vValid.empty())
        return;
    CFields& list = tree.addChildRef("valid");
    for (const tValidRange& range : item.m_vValid)
    {
        CFields& row = list.addArrayAt(CFields());
        row.addChildRef("low") = range.m_strLow;
        row.addChildRef("high") = range.m_strHigh.empty() ? range.m_strLow : range.m_strHigh;
    }
}

void putBits(CFields& tree, const tItem& item)
{
    if (item.m_vBits.empty())
        return;
    CFields& list = tree.addChildRef("bits");
    for (const tBitField& bits : item.m_vBits)
    {
        CFields& row = list.addArrayAt(CFields());
        row.addChildRef("name") = bits.m_strName;
        row.addChildRef("bits") = bits.m_uiWidth;
        row.addChildRef("shift") = bits.m_uiShift;
    }
}

void putItem(CFields& tree, const tItem& item)
{
    tree.addChildRef("form") = s_capForms[item.m_eForm];
    putPadding(tree, item);
    putPrefix(tree, item);
    putFlag(tree, "little", item.m_bLittle);
    putFlag(tree, "signed", item.m_bSigned);
    if (item.m_bDecimals)
        tree.addChildRef("decimals") = static_cast<unsigned int>(item.m_ucDecimals);
    if (item.m_cPoint != 0)
        tree.addChildRef("point") = std::string(1, item.m_cPoint);
    putFlag(tree, "exact", item.m_bExact);
    putFlag(tree, "lower", item.m_bLower);
    if (item.m_pPage != nullptr)
        tree.addChildRef("page") = item.m_pPage->m_strvName;
    if (item.m_pTime != nullptr)
        tree.addChildRef("time") = item.m_pTime->name();
    if (item.m_bMask)
        tree.addChildRef("maskedBut") = static_cast<unsigned int>(item.m_ucShown);
    putBits(tree, item);
    putValid(tree, item);
}

void putLeaf(CFields& tree, const tPart& part)
{
    if (part.m_bLiteral)
        tree.addChildRef("literal") = part.m_strLiteral;
    putFlag(tree, "required", part.m_bRequired);
    if (part.m_eEnd != LE_fixed)
        tree.addChildRef("endsBy") = s_capLeafEnds[part.m_eEnd];
    putList(tree, "marks", part.m_vMarks);
    putItem(tree.addChildRef("item"), part.m_tItem);
}

void putPresence(CFields& tree, const tPlan& plan, const tPart& part)
{
    if (!part.m_vIf.empty())
    {
        CFields& tests = tree.addChildRef("tests");
        for (const tTest& test : part.m_vIf)
            putTest(tests.addArrayAt(CFields()), plan, test);
    }
    putFlag(tree, "optional", part.m_bOptional);
    if (part.m_uiBitmap != s_cuiNone)
    {
        tree.addChildRef("bitmap") = part.m_uiBitmap;
        tree.addChildRef("bit") = part.m_uiBit;
    }
    putReference(tree, "size", part.m_uiSize);
    if (part.m_vHeads.empty())
        return;
    CFields& heads = tree.addChildRef("heads");
    for (const tHead& head : part.m_vHeads)
    {
        CFields& row = heads.addArrayAt(CFields());
        for (const tHead::tBytes& bytes : head.m_vBytes)
        {
            CFields& wanted = row.addArrayAt(CFields());
            wanted.addChildRef("offset") = bytes.m_uiOffset;
            wanted.addChildRef("bytes") = bytes.m_strBytes;
        }
    }
}

void putStructure(CFields& tree, const tPlan& plan, const tPart& part)
{
    if (part.m_eChoice == CH_heads)
        tree.addChildRef("oneOf") = "heads";
    if (part.m_eChoice == CH_value)
    {
        tree.addChildRef("oneOf") = "value";
        putValueOf(tree.addChildRef("by"), plan, part.m_tChoice);
        if (part.m_uiElse != s_cuiNone)
            tree.addChildRef("otherwise") = part.m_vMembers[part.m_uiElse];
    }
    putText(tree, "between", part.m_strBetween);
    putNumber(tree, "align", part.m_uiAlign);
    putText(tree, "fill", part.m_strAlignFill);
    putNumber(tree, "bytesAfter", part.m_uiTail);
    if (part.m_eKind != PK_array)
        return;
    tree.addChildRef("endsBy") = s_capArrayEnds[part.m_eArrayEnd];
    if (part.m_eArrayEnd == AE_count)
        tree.addChildRef("count") = part.m_uiCount;
    if (part.m_eArrayEnd == AE_until)
        putTest(tree.addChildRef("lastIf"), plan, part.m_tUntil);
    if (part.m_eArrayEnd == AE_mark)
        tree.addChildRef("mark") = part.m_strEnds;
}

void putPart(CFields& tree, const tPlan& plan, unsigned int number)
{
    const tPart& part = plan.m_vParts[number];
    tree.addChildRef("kind") = s_capKinds[part.m_eKind];
    putText(tree, "name", part.m_strName);
    putNumber(tree, "id", part.m_uiID);
    putText(tree, "path", path4Part(plan, number, {}));
    putText(tree, "expression", part.m_strExpression);
    putText(tree, "rules", part.m_strRules);
    putReference(tree, "parent", part.m_uiParent);
    putFlag(tree, "record", part.m_bRecord);
    putText(tree, "comment", part.m_strComment);
    putPresence(tree, plan, part);
    putStructure(tree, plan, part);
    if (part.m_eKind == PK_leaf)
        putLeaf(tree, part);
}

void putLink(CFields& tree, const tPlan& plan, unsigned int number)
{
    const tLink& link = plan.m_vLinks[number];
    tree.addChildRef("kind") = s_capLinks[link.m_eKind];
    putValueOf(tree.addChildRef("number"), plan, link.m_tNumber);
    putReference(tree, "span", link.m_uiSpan);
    putReference(tree, "target", link.m_uiTarget);
    putReference(tree, "over", link.m_uiBase);
    putNumber(tree, "times", link.m_ullDivisor, 1ULL);
    putNumber(tree, "plus", link.m_llPlus);
    if (link.m_eKind == LK_check)
        tree.addChildRef("check") = words4Checksum(static_cast<E_Checksum>(link.m_ucChecksum));
    if (link.m_uiBase != s_cuiNone && total4Item(plan, link) != 0)
        tree.addChildRef("modulo") = std::to_string(total4Item(plan, link));
    putFlag(tree, "rules", link.m_bRules);
    putFlag(tree, "numberFirst", link.m_bNumberFirst);
    putFlag(tree, "mayLack", plan.m_vMayLack[number]);
}

void putSpan(CFields& tree, const tSpan& span)
{
    tree.addChildRef("first") = span.m_uiFirst;
    tree.addChildRef("last") = span.m_uiLast;
    putReference(tree, "size", span.m_uiSize);
    putFlag(tree, "sizeInside", span.m_bSizeInside);
}

void putFrame(CFields& tree, const tFrame& frame)
{
    tree.addChildRef("kind") = s_capFrames[frame.m_eKind];
    putNumber(tree, "length", frame.m_uiLength);
    putText(tree, "mark", frame.m_strMark);
    putNumber(tree, "plus", frame.m_llPlus);
    if (frame.m_eKind == FR_prefixed)
        putItem(tree.addChildRef("item"), frame.m_tPrefix);
}

/// The characters of the pages that are not like ASCII, byte by byte; each is one of the first 256 of Unicode.
void putPages(CFields& tree, const tPlan& plan)
{
    const auto put = [&tree](const tCodePage* page) {
        if (page == nullptr || page->m_bAsciiLike || tree.isValidChild(page->m_strvName))
            return;
        const tPageBytes& characters = page->m_aucCharacter4Byte;
        tree.addChildRef(page->m_strvName) =
            std::string_view(reinterpret_cast<const char*>(characters.data()), characters.size());
    };
    put(plan.m_tFrame.m_tPrefix.m_pPage);
    for (const tPart& part : plan.m_vParts)
    {
        put(part.m_tItem.m_pPage);
        put(part.m_tItem.m_pPrefixPage);
    }
}

}  // namespace

void CLayout::describe(CFields& description) const
{
    if (m_pPlan == nullptr)
        throwAt("murv::CLayout::describe", "The layout is not compiled");
    const tPlan& plan = *m_pPlan;
    description = CFields();
    putText(description, "comment", plan.m_strComment);
    putFrame(description.addChildRef("frame"), plan.m_tFrame);
    CFields& parts = description.addChildRef("parts");
    for (unsigned int part = 0; part < plan.m_vParts.size(); ++part)
        putPart(parts.addArrayAt(CFields()), plan, part);
    CFields& spans = description.addChildRef("spans") = DT_array;
    for (const tSpan& span : plan.m_vSpans)
        putSpan(spans.addArrayAt(CFields()), span);
    CFields& links = description.addChildRef("links") = DT_array;
    for (unsigned int link = 0; link < plan.m_vLinks.size(); ++link)
        putLink(links.addArrayAt(CFields()), plan, link);
    putPages(description.addChildRef("pages") = DT_fields, plan);
}

}  // namespace murv
