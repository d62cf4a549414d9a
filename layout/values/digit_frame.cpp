// layout/values/digit_frame.cpp - padding, blanks and tail of numbers in characters.
//
// One kind of padding belongs to an item: any other is refused, as making would write other bytes.
#include "layout/values/digit_frame.h"

#include "core/text/trim.h"
#include "layout/values/code_pages.h"
#include "layout/values/number_text.h"
#include "packet/keyword_table.h"

namespace murv::detail
{

namespace
{

E_PacketFault stripBlanks(const tItem& item, std::string_view& digits, bool& isNull)
{
    if (trimFront(digits, ' ').empty())
    {
        // Null has no bytes where the width varies, so blanks would not come back.
        isNull = item.m_bBlankIsNull && (!item.m_bVaries || digits.empty());
        return isNull ? PF_none : PF_blank;
    }
    const E_Padding padding = item.m_bVaries ? PAD_none : item.m_ePadding;
    if (padding == PAD_blanksFront)
        digits = trimFront(digits, ' ');
    else if (padding == PAD_blanksAfter)
        digits = trimEnd(digits, ' ');
    return digits.front() == ' ' || digits.back() == ' ' ? PF_padding : PF_none;
}

}  // namespace

E_PacketFault checkZerosInFront(const tItem& item, std::string_view whole)
{
    if (item.m_bExact || isZeroFilled(item))
        return PF_none;
    const bool decimal = item.m_eForm != IF_octal && item.m_eForm != IF_hex;
    if (item.m_pTime != nullptr && decimal)  // the letters of a date are decimal digits
        return whole.size() == item.m_pTime->name().size() ? PF_none : PF_width;
    if (whole.size() < 2 || whole.front() != '0')
        return PF_none;
    return item.m_bVaries ? PF_zeros : PF_padding;
}

E_PacketFault stripFrame(const tItem& item, std::string_view bytes, std::string_view& digits, bool& isNull,
                         std::string& scratch)
{
    if (!bytes.ends_with(item.m_strTail))
        return PF_literal;
    bytes.remove_suffix(item.m_strTail.size());
    scratch.clear();
    digits = readPageDigits(item.m_pPage, bytes, scratch, bytes.size() + s_cnPresentationRoom);
    if (!digits.empty() && digits.front() != ' ' && digits.back() != ' ')
        return PF_none;
    return stripBlanks(item, digits, isNull);
}

E_PacketFault fitFrame(const tItem& item, std::size_t needed, std::size_t& fill)
{
    fill = 0;
    needed += item.m_strTail.size();
    if (item.m_bVaries)
        return item.m_uiLength != 0 && needed > item.m_uiLength ? PF_tooLong : PF_none;
    if (needed > item.m_uiLength)
        return PF_tooLong;
    fill = item.m_uiLength - needed;
    return fill != 0 && item.m_ePadding == PAD_none ? PF_width : PF_none;
}

E_PacketFault makeBlank(const tItem& item, std::string& out)
{
    if (!item.m_bBlankIsNull)
        return PF_null;
    const std::size_t before = out.size();
    if (!item.m_bVaries && item.m_uiLength > item.m_strTail.size())
        out.append(item.m_uiLength - item.m_strTail.size(), ' ');
    finishFrame(item, out, before);
    return PF_none;
}

void finishFrame(const tItem& item, std::string& out, std::size_t from)
{
    makePageDigits(item.m_pPage, out, from);
    out += item.m_strTail;
}

}  // namespace murv::detail
