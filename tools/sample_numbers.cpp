// tools/sample_numbers.cpp - how many digits or bits a number has, then one of its whole range.
#include "tools/sample_numbers.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>

namespace murv::tool
{

namespace
{
constexpr std::uint64_t s_cullMostDigits = 12;  // of a number whose width nothing limits
constexpr std::uint64_t s_cullPlain = 1000;     // plain numbers are below it
constexpr std::size_t s_cnSafeDigits = 18;      // fit 64 bits

/// A number without sign from 0 to the most; its ends are likelier than the rest, and so are small ones.
std::uint64_t magnitude(std::uint64_t most, const tSampleStyle& style, CSampleRandom& random)
{
    if (style.m_bPlain)
        return random.between(0, std::min(most, s_cullPlain - 1));
    const std::uint64_t edges[] = {0, 1, most, most - std::min<std::uint64_t>(most, 1), most / 2};
    if (random.chance(30))
        return std::min(edges[random.below(std::size(edges))], most);
    const std::uint64_t bits = random.next() >> random.below(64);
    return most == ~std::uint64_t{0} ? bits : bits % (most + 1);
}

/// So many digits, the first of them not 0.
std::string digits4(std::size_t count, CSampleRandom& random)
{
    std::string digits(1, static_cast<char>('1' + random.below(9)));
    while (digits.size() < count)
        digits += static_cast<char>('0' + random.below(10));
    return digits;
}

/// Digits of a number, with edges as likely as for numbers in bytes.
std::string randomDigits(std::size_t most, const tSampleStyle& style, CSampleRandom& random)
{
    most = style.m_bPlain ? std::min<std::size_t>(most, 3) : std::max<std::size_t>(most, 1);
    const std::string edges[] = {"0", "1", std::string(most, '9'), "1" + std::string(most - 1, '0')};
    if (random.chance(30))
        return edges[random.below(std::size(edges))];
    return digits4(1 + static_cast<std::size_t>(random.below(most)), random);
}

/// Puts a point before the last digits.
std::string withPoint(std::string digits, std::size_t decimals)
{
    if (decimals == 0)
        return digits;
    if (digits.size() <= decimals)
        digits.insert(0, decimals + 1 - digits.size(), '0');
    return digits.insert(digits.size() - decimals, ".");
}

CFields number4Text(const std::string& text, bool asText)
{
    const bool isInteger = text.find('.') == std::string::npos && text.size() <= s_cnSafeDigits;
    if (asText || !isInteger)
        return CFields(text);
    return CFields(std::strtoll(text.c_str(), nullptr, 10));
}

/// How many digits an item has room for.
std::size_t room4Digits(const tSamplePart& part)
{
    const tLayoutPart& seen = part.m_tPart;
    std::uint64_t width = part.m_tExpression.m_ullWidth;
    if (part.m_tExpression.m_cLength != 'F' || width == 0)
        width = std::min(seen.m_ullMost - seen.m_ullLeast + 1, s_cullMostDigits);
    return static_cast<std::size_t>(width - std::min<std::uint64_t>(part.m_tRules.m_nTail, width));
}

struct tDigitForm
{
    unsigned int m_uiWord;     // SW_none: plain digits
    bool m_bHalfBytes;         // two digits a byte
    std::size_t m_nSign;       // digits that the sign takes the place of
    bool m_bFreeSign;          // below zero without "signed"
    std::size_t m_nMinusSign;  // digits that go when it is below zero
};

constexpr tDigitForm s_ctForms[] = {
    {SW_packed, true, 1, false, 0},   {SW_bcd, true, 0, false, 0},  {SW_zoned, false, 0, false, 0},
    {SW_trailing, false, 1, true, 0}, {SW_none, false, 0, true, 1},
};

const tDigitForm& form4Part(const tSamplePart& part)
{
    return *std::find_if(std::begin(s_ctForms), std::end(s_ctForms) - 1,
                         [&](const tDigitForm& form) { return part.has(form.m_uiWord); });
}

/// A point that is written: digits on both sides, or none.
std::string withWrittenPoint(const std::string& digits, bool isExact, CSampleRandom& random)
{
    const std::size_t most = digits.size() - (isExact || digits.size() == 1 ? 0 : 1);
    const std::size_t decimals = static_cast<std::size_t>(random.below(most + 1));
    if (decimals == 0)
        return digits;
    std::string text = digits;
    return text.insert(text.size() - decimals, isExact || digits.size() > decimals ? "." : "0.");
}

CFields makeDigits(const tSamplePart& part, const tSampleStyle& style, CSampleRandom& random)
{
    const tDigitForm& form = form4Part(part);
    const std::size_t width = room4Digits(part);
    std::size_t room = form.m_bHalfBytes ? 2 * width : width;
    room -= std::min(room, form.m_nSign);
    const bool isExact = part.has(SW_exact);
    const bool mayHaveSign = !isExact && (form.m_bFreeSign || part.has(SW_signed)) && room > form.m_nMinusSign;
    const bool isNegative = mayHaveSign && !style.m_bPlain && random.chance(30);
    room -= isNegative ? form.m_nMinusSign : 0;
    const bool isPointWritten = part.m_tRules.m_bPoint && room > 2 && random.chance(70);
    room -= isPointWritten ? 1 : 0;
    std::string digits = randomDigits(room, style, random);
    const bool isFilled = isExact && part.m_tExpression.m_cLength == 'F' && part.m_tExpression.m_ullWidth != 0;
    if (isFilled && digits.size() < room)
        digits.insert(0, room - digits.size(), '0');
    const bool isZero = digits.find_first_not_of('0') == std::string::npos;
    std::string text =
        isPointWritten ? withWrittenPoint(digits, isExact, random) : withPoint(digits, part.m_tRules.m_uiDecimals);
    if (isNegative && !isZero)
        text.insert(0, "-");
    return number4Text(text, isExact);
}

/// Octal and hexadecimal digits.
CFields makeRadix(const tSamplePart& part, const tSampleStyle& style, CSampleRandom& random)
{
    const std::size_t bits = room4Digits(part) * (part.has(SW_octal) ? 3 : 4);
    const std::uint64_t most = bits >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << bits) - 1;
    return CFields(static_cast<unsigned long long>(magnitude(most, style, random)));
}

CFields makeBinary(const tSamplePart& part, const tSampleStyle& style, CSampleRandom& random)
{
    const std::uint64_t bits = std::min<std::uint64_t>(8 * part.m_tExpression.m_ullWidth, 64);
    const std::uint64_t half = std::uint64_t{1} << (bits == 0 ? 0 : bits - 1);
    const bool isSigned = part.has(SW_signed);
    const std::uint64_t most = isSigned ? half - 1 : half - 1 + half;
    const std::uint64_t value = magnitude(most, style, random);
    const bool isNegative = isSigned && random.chance(40);
    const std::size_t decimals = part.m_tRules.m_uiDecimals;
    if (decimals != 0)
        return CFields((isNegative && value != 0 ? "-" : "") + withPoint(std::to_string(value), decimals));
    if (isNegative)
        return CFields(-static_cast<long long>(value) - 1);
    return CFields(static_cast<unsigned long long>(value));
}

CFields makeFloat(const tSamplePart& part, const tSampleStyle& style, CSampleRandom& random)
{
    const double edges[] = {0.0, -0.0, 1.0, -1.0, std::numeric_limits<float>::max(), std::numeric_limits<float>::min()};
    if (style.m_bPlain || random.chance(30))
        return CFields(edges[random.below(style.m_bPlain ? 4 : std::size(edges))]);
    double value = std::numeric_limits<double>::infinity();
    while (!std::isfinite(value))
    {
        const std::uint64_t bits = random.next();
        if (part.m_tExpression.m_ullWidth != 4)
            std::memcpy(&value, &bits, sizeof value);
        else
        {
            const auto low = static_cast<std::uint32_t>(bits);
            float narrow = 0;
            std::memcpy(&narrow, &low, sizeof narrow);
            value = static_cast<double>(narrow);
        }
    }
    return CFields(value);
}

CFields makeBits(const tSamplePart& part, const tSampleStyle&, CSampleRandom& random)
{
    CFields set(DT_fields);
    const tSampleStyle any;
    for (const tLayoutBits& bits : part.m_vBits)
    {
        const std::uint64_t most = bits.m_uiWidth >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << bits.m_uiWidth) - 1;
        set.addChildRef(bits.m_strvName, 0, true) = static_cast<unsigned long long>(magnitude(most, any, random));
    }
    return set;
}

struct tNumberRow
{
    char m_cForm;
    unsigned int m_uiWords;  // one of them; SW_none: always
    CFields (*m_pMake)(const tSamplePart& part, const tSampleStyle& style, CSampleRandom& random);
};

constexpr tNumberRow s_ctRows[] = {
    {'B', SW_float, makeFloat}, {'B', SW_packed | SW_bcd, makeDigits},
    {'B', SW_none, makeBinary}, {'A', SW_octal | SW_hex, makeRadix},
    {'A', SW_none, makeDigits},
};
}  // namespace

CFields makeSampleNumber(const tSamplePart& part, const tSampleStyle& style, CSampleRandom& random)
{
    if (!part.m_vBits.empty())
        return makeBits(part, style, random);
    for (const tNumberRow& row : s_ctRows)
    {
        if (row.m_cForm == part.m_tExpression.m_cForm && (row.m_uiWords == SW_none || part.has(row.m_uiWords)))
            return row.m_pMake(part, style, random);
    }
    return CFields(0);
}

std::string sampleInRange(const tSampleRange& range, std::size_t decimals, CSampleRandom& random)
{
    char* end = nullptr;
    const long long low = std::strtoll(range.m_strLow.c_str(), &end, 10);
    if (range.m_strLow.empty() || *end != '\0')
        return {};
    const long long high = std::strtoll(range.m_strHigh.c_str(), &end, 10);
    if (range.m_strHigh.empty() || *end != '\0' || high < low)
        return {};
    const long long edge = random.chance(50) ? low : high;
    const std::uint64_t span = static_cast<std::uint64_t>(high) - static_cast<std::uint64_t>(low);
    const long long number =
        random.chance(30) ? edge : static_cast<long long>(static_cast<std::uint64_t>(low) + random.between(0, span));
    std::string fraction(decimals, '0');
    const bool hasFraction = number < high && number >= 0;
    for (std::size_t i = 0; hasFraction && i < decimals; ++i)
        fraction[i] = static_cast<char>('0' + random.below(10));
    return std::to_string(number) + (decimals == 0 ? "" : "." + fraction);
}

}  // namespace murv::tool
