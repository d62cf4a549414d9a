// layout/compile/rule_text.cpp - words, names, numbers and quoted texts of rules.
#include "layout/compile/rule_text.h"

#include <cstddef>

#include "core/text/unescape.h"

namespace murv::detail
{

namespace
{

constexpr std::string_view s_cstrvBlanks = " \t\r\n";
constexpr unsigned long long s_cullMost = 0xFFFFFFFFFFFFFFFF;

struct tComparisonRow
{
    std::string_view m_strvSymbol;
    E_Comparison m_eComparison;
};

// Longer symbols first, so that a symbol is found without looking ahead.
constexpr tComparisonRow s_ctComparisons[] = {
    {"!=", CM_unequal}, {"<=", CM_notGreater}, {">=", CM_notLess}, {"=", CM_equal},
    {"<", CM_less},     {">", CM_greater},     {"&", CM_anyBit},
};

bool isBlank(char character)
{
    return s_cstrvBlanks.find(character) != std::string_view::npos;
}

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

std::string_view trim(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

/// Length of the quoted text that begins here, quotes included; 0 when it is not closed.
std::size_t quotedLength(std::string_view text)
{
    for (std::size_t i = 1; i < text.size(); ++i)
    {
        if (text[i] == '\\')
            ++i;
        else if (text[i] == '"')
            return i + 1;
    }
    return 0;
}

bool areDigitsOnly(std::string_view text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Whether a name ends before this word: an operator, "else", or "from" with a number.
bool endsName(std::string_view rest)
{
    const std::size_t length = rest.find_first_of(s_cstrvBlanks);
    const std::string_view word = rest.substr(0, length);
    if (word == "/" || word == "+" || word == "-" || word == "else")
        return true;
    if (word == "from")
        return length != std::string_view::npos && areDigitsOnly(trim(rest.substr(length)));
    for (const tComparisonRow& row : s_ctComparisons)
    {
        if (word == row.m_strvSymbol)
            return true;
    }
    return false;
}

/// Length of the unquoted name that the text begins with, without the blanks after it.
std::size_t nameLength(std::string_view text)
{
    std::size_t end = 0;
    for (std::size_t i = 0; i < text.size();)
    {
        if (text[i] == '.' || text[i] == '|' || text[i] == '"')
            break;
        if (!isBlank(text[i]))
        {
            end = ++i;
            continue;
        }
        while (i < text.size() && isBlank(text[i]))
            ++i;
        if (endsName(text.substr(i)))
            break;
    }
    return end;
}

}  // namespace

std::string describeStep(const tRuleStep& step)
{
    return step.m_strName.empty() ? "#" + std::to_string(step.m_uiID) : step.m_strName;
}

bool splitRules(std::string_view text, std::vector<std::string_view>& rules)
{
    std::size_t begin = 0;
    for (std::size_t i = 0; i <= text.size(); ++i)
    {
        if (i < text.size() && text[i] == '"')
        {
            const std::size_t length = quotedLength(text.substr(i));
            if (length == 0)
                return false;
            i += length - 1;
        }
        else if (i == text.size() || text[i] == ';')
        {
            rules.push_back(trim(text.substr(begin, i - begin)));
            if (rules.back().empty())
                return false;
            begin = i + 1;
        }
    }
    return true;
}

void CRuleText::skipBlanks()
{
    while (!m_strvLeft.empty() && isBlank(m_strvLeft.front()))
        m_strvLeft.remove_prefix(1);
}

bool CRuleText::atEnd()
{
    skipBlanks();
    return m_strvLeft.empty();
}

bool CRuleText::takeWords(std::string_view words)
{
    CRuleText rest(m_strvLeft);
    while (!words.empty())
    {
        const std::size_t blank = words.find(' ');
        if (rest.takeWord() != words.substr(0, blank))
            return false;
        words.remove_prefix(blank == std::string_view::npos ? words.size() : blank + 1);
    }
    m_strvLeft = rest.m_strvLeft;
    return true;
}

std::string_view CRuleText::takeWord()
{
    skipBlanks();
    const std::string_view word = m_strvLeft.substr(0, m_strvLeft.find_first_of(" \t\r\n\""));
    m_strvLeft.remove_prefix(word.size());
    return word;
}

bool CRuleText::takeCharacter(char character)
{
    skipBlanks();
    if (m_strvLeft.empty() || m_strvLeft.front() != character)
        return false;
    m_strvLeft.remove_prefix(1);
    return true;
}

bool CRuleText::takeNumber(unsigned long long& number)
{
    skipBlanks();
    std::size_t count = 0;
    for (number = 0; count < m_strvLeft.size() && isDigit(m_strvLeft[count]); ++count)
    {
        const auto digit = static_cast<unsigned long long>(m_strvLeft[count] - '0');
        if (number > (s_cullMost - digit) / 10)
            return false;
        number = number * 10 + digit;
    }
    m_strvLeft.remove_prefix(count);
    return count != 0;
}

bool CRuleText::takeOperatorAndNumber(char symbol, unsigned long long& number)
{
    skipBlanks();
    const std::string_view before = m_strvLeft;
    if (takeCharacter(symbol) && !m_strvLeft.empty() && isBlank(m_strvLeft.front()) && takeNumber(number))
        return true;
    m_strvLeft = before;
    return false;
}

bool CRuleText::takeQuoted(std::string& text)
{
    skipBlanks();
    const std::size_t length = m_strvLeft.empty() || m_strvLeft.front() != '"' ? 0 : quotedLength(m_strvLeft);
    if (length == 0)
        return false;
    text.resize(length);
    const tUnescaped done = unescape(m_strvLeft.data() + 1, m_strvLeft.data() + length - 1, UM_codePoint, text.data());
    text.resize(static_cast<std::size_t>(done.m_pEnd - text.data()));
    m_strvLeft.remove_prefix(length);
    return done.m_eError == UE_none;
}

bool CRuleText::takeStep(tRuleStep& step)
{
    skipBlanks();
    step = {};
    if (isAt("\""))
        return takeQuoted(step.m_strName) && !step.m_strName.empty();
    const std::string_view name = m_strvLeft.substr(0, nameLength(m_strvLeft));
    m_strvLeft.remove_prefix(name.size());
    if (name.size() > 1 && name.size() <= 11 && name.front() == '#' && areDigitsOnly(name.substr(1)))
    {
        unsigned long long id = 0;
        CRuleText(name.substr(1)).takeNumber(id);
        step.m_uiID = static_cast<unsigned int>(id);
        return id != 0 && id <= 0x7FFFFFFF;
    }
    step.m_strName = name;
    return !name.empty();
}

bool CRuleText::takePath(std::vector<tRuleStep>& path)
{
    tRuleStep step;
    do
    {
        if (!takeStep(step))
            return false;
        path.push_back(step);
    } while (!isAt("..") && takeCharacter('.'));
    return true;
}

bool CRuleText::takeComparison(E_Comparison& comparison)
{
    skipBlanks();
    for (const tComparisonRow& row : s_ctComparisons)
    {
        const std::size_t length = row.m_strvSymbol.size();
        if (!isAt(row.m_strvSymbol) || m_strvLeft.size() == length || !isBlank(m_strvLeft[length]))
            continue;
        comparison = row.m_eComparison;
        m_strvLeft.remove_prefix(length);
        return true;
    }
    return false;
}

bool CRuleText::takeValue(std::string& text, bool toComma)
{
    skipBlanks();
    if (isAt("\""))
        return takeQuoted(text);
    std::string_view value = m_strvLeft.substr(0, m_strvLeft.find_first_of(toComma ? "|,\"" : "|\""));
    value = trim(value.substr(0, value.find("..")));
    m_strvLeft.remove_prefix(value.size());
    text = value;
    return !value.empty();
}

bool CRuleText::takeRangeMark()
{
    skipBlanks();
    if (!isAt(".."))
        return false;
    m_strvLeft.remove_prefix(2);
    return true;
}

bool CRuleText::isAt(std::string_view text)
{
    skipBlanks();
    return m_strvLeft.starts_with(text);
}

tConstant makeConstant(std::string_view text)
{
    tConstant constant;
    constant.m_strText = text;
    const bool negative = text.starts_with('-');
    const std::string_view digits = text.substr(negative ? 1 : 0);
    CRuleText reader(digits);
    constant.m_bNumber = areDigitsOnly(digits) && reader.takeNumber(constant.m_ullMagnitude);
    constant.m_bNegative = constant.m_bNumber && negative && constant.m_ullMagnitude != 0;
    return constant;
}

}  // namespace murv::detail
