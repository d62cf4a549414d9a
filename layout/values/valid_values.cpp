// layout/values/valid_values.cpp - which values the rules call valid.
//
// Numbers are compared digit by digit, so that no width and no number of decimals is too much.
#include <iterator>
#include <string>
#include <string_view>

#include "core/text/integer_text.h"
#include "core/text/number_scan.h"
#include "core/text/trim.h"
#include "layout/values/number_text.h"
#include "layout/values/value_codec.h"
#include "packet/time_value.h"

namespace murv::detail
{

namespace
{

/// A decimal text; zeros at its ends do not count.
struct tDecimalText
{
    bool m_bNegative = false;
    std::string_view m_strvWhole;
    std::string_view m_strvFraction;

    bool isZero() const
    {
        return m_strvWhole.empty() && m_strvFraction.empty();
    }
};

bool splitDecimal(std::string_view text, tDecimalText& decimal)
{
    decimal.m_bNegative = !text.empty() && text.front() == '-';
    if (decimal.m_bNegative)
        text.remove_prefix(1);
    const std::size_t point = text.find('.');
    const std::string_view whole = text.substr(0, point);
    const std::string_view fraction = point != std::string_view::npos ? text.substr(point + 1) : std::string_view();
    if (whole.size() + fraction.size() == 0 || !areDigits(whole) || !areDigits(fraction))
        return false;
    decimal.m_strvWhole = trimFront(whole, '0');
    decimal.m_strvFraction = trimEnd(fraction, '0');
    decimal.m_bNegative = decimal.m_bNegative && !decimal.isZero();
    return true;
}

/// \return below, at or above 0
int compareMagnitudes(const tDecimalText& a, const tDecimalText& b)
{
    if (a.m_strvWhole.size() != b.m_strvWhole.size())
        return a.m_strvWhole.size() < b.m_strvWhole.size() ? -1 : 1;
    const int order = a.m_strvWhole.compare(b.m_strvWhole);
    return order != 0 ? order : a.m_strvFraction.compare(b.m_strvFraction);
}

int compareDecimals(const tDecimalText& a, const tDecimalText& b)
{
    if (a.m_bNegative != b.m_bNegative)
        return a.m_bNegative ? -1 : 1;
    return a.m_bNegative ? compareMagnitudes(b, a) : compareMagnitudes(a, b);
}

bool isSingle(const tValidRange& range)
{
    return range.m_strHigh.empty() || range.m_strHigh == range.m_strLow;
}

const std::string& highOf(const tValidRange& range)
{
    return isSingle(range) ? range.m_strLow : range.m_strHigh;
}

double double4(const std::string& text)
{
    const tScannedNumber number = scanNumber(text.data(), static_cast<unsigned int>(text.size()));
    return number.m_eType == DT_double ? number.m_uValue.m_dValue
           : number.m_eType == DT_sint ? static_cast<double>(number.m_uValue.m_llValue)
                                       : static_cast<double>(number.m_uValue.m_ullValue);
}

bool isDoubleIn(const tValidRange& range, double value)
{
    return value >= double4(range.m_strLow) && value <= double4(highOf(range));
}

/// \param number  the decimal text of the value
bool isNumberIn(const tValidRange& range, std::string_view number, bool& comparable)
{
    tDecimalText value;
    tDecimalText low;
    tDecimalText high;
    comparable = splitDecimal(number, value) && splitDecimal(range.m_strLow, low) && splitDecimal(highOf(range), high);
    return comparable && compareDecimals(value, low) >= 0 && compareDecimals(value, high) <= 0;
}

bool isTextIn(const tItem& item, const tValidRange& range, std::string_view text)
{
    bool comparable = false;
    const bool isText = item.m_eForm == IF_text || item.m_eForm == IF_bytes || item.m_eForm == IF_hexText;
    if (!isText || !isSingle(range))
    {
        const bool inside = isNumberIn(range, text, comparable);
        if (comparable)
            return inside;
    }
    text = withoutPadding(item, text);
    return text >= withoutPadding(item, range.m_strLow) && text <= withoutPadding(item, highOf(range));
}

/// The letters are parts of the date; other characters stand for themselves.
bool isDate(std::string_view letters, std::string_view text)
{
    std::string parts;
    std::string digits;
    if (text.size() != letters.size())
        return false;
    for (std::size_t i = 0; i < letters.size();)
    {
        const std::size_t row = firstTimePart(letters.substr(i));
        const bool isPart = row < std::size(s_ctTimeParts);
        const std::size_t size = isPart ? s_ctTimeParts[row].m_strvLetters.size() : 1;
        if (isPart ? !areDigits(text.substr(i, size)) : text[i] != letters[i])
            return false;
        if (isPart)
        {
            parts += s_ctTimeParts[row].m_strvLetters;
            digits += text.substr(i, size);
        }
        i += size;
    }
    std::uint64_t number = 0;
    return magnitude4Digits(digits, number) && isTimeValue(splitTimeName(parts), number);
}

}  // namespace

std::string_view withoutPadding(const tItem& item, std::string_view text)
{
    if (item.m_eForm != IF_text)
        return text;
    return item.m_ePadding == PAD_blanksFront ? trimFront(text, ' ') : trimEnd(text, ' ');
}

bool isValidValue(const tItem& item, const tScalar& value)
{
    if ((item.m_vValid.empty() && item.m_strValidDate.empty()) || value.m_eType == DT_null)
        return true;
    char room[s_cnIntegerTextRoom];
    std::string_view text = value.m_strvText;
    if (value.m_eType == DT_sint || value.m_eType == DT_uint)
    {
        const char* const end =
            value.m_eType == DT_sint ? writeSigned(room, value.m_llValue) : writeUnsigned(room, value.m_ullValue);
        text = {room, static_cast<std::size_t>(end - room)};
    }
    if (!item.m_strValidDate.empty())
    {
        const std::size_t letters = item.m_strValidDate.size();
        const std::size_t zeros = value.m_eType != DT_codelist && letters > text.size() ? letters - text.size() : 0;
        if (!isDate(item.m_strValidDate, std::string(zeros, '0').append(text)))
            return false;
    }
    for (const tValidRange& range : item.m_vValid)
    {
        if (value.m_eType == DT_double ? isDoubleIn(range, value.m_dValue) : isTextIn(item, range, text))
            return true;
    }
    return item.m_vValid.empty();
}

std::size_t findInvalidBits(const tItem& item, unsigned long long number, std::size_t from)
{
    for (; from < item.m_vBits.size(); ++from)
    {
        const tBitField& field = item.m_vBits[from];
        const std::string text = std::to_string((number >> field.m_uiShift) & mask4Width(field.m_uiWidth));
        bool comparable = false;
        bool isValid = field.m_vValid.empty();
        for (const tValidRange& range : field.m_vValid)
            isValid = isValid || isNumberIn(range, text, comparable);
        if (!isValid)
            break;
    }
    return from;
}

}  // namespace murv::detail
