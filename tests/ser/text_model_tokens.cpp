// tests/ser/text_model_tokens.cpp - tokens, comments, strings and packet expressions of the plain text reader.
#include "tests/ser/text_model.h"

namespace murv::tests
{

namespace
{
int hex(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

void appendUtf8(std::string& out, unsigned int point)
{
    const auto byte = [&out](unsigned int value) { out += static_cast<char>(static_cast<unsigned char>(value)); };
    if (point < 0x80)
        byte(point);
    else if (point < 0x800)
    {
        byte(0xC0 | (point >> 6));
        byte(0x80 | (point & 63));
    }
    else if (point < 0x10000)
    {
        byte(0xE0 | (point >> 12));
        byte(0x80 | ((point >> 6) & 63));
        byte(0x80 | (point & 63));
    }
    else
    {
        byte(0xF0 | (point >> 18));
        byte(0x80 | ((point >> 12) & 63));
        byte(0x80 | ((point >> 6) & 63));
        byte(0x80 | (point & 63));
    }
}
}  // namespace

void CTextModel::skipBlanks()
{
    while (!atEnd() && isBlank(peek()))
        ++m_nCursor;
}

void CTextModel::skipDigits()
{
    while (isDigitNext())
        ++m_nCursor;
}

bool CTextModel::hasLineBreak(std::size_t begin, std::size_t end) const
{
    for (std::size_t i = begin; i < end; ++i)
    {
        if (m_strText[i] == '\r' || m_strText[i] == '\n')
            return true;
    }
    return false;
}

CTextModel::tToken CTextModel::plainToken()
{
    skipBlanks();
    const std::size_t begin = m_nCursor;
    if (atEnd())
        return {TT_end, begin, begin};
    const char byte = m_strText[m_nCursor++];
    E_TokenType type = TT_error;
    switch (byte)
    {
    case '\0': type = TT_end; break;
    case '{': type = TT_fieldsBegin; break;
    case '}': type = TT_fieldsEnd; break;
    case '[': type = TT_arrayBegin; break;
    case ']': type = TT_arrayEnd; break;
    case ',': type = TT_comma; break;
    case '=': type = TT_assign; break;
    case ')': type = TT_peiEnd; break;
    case '(':
        type = TT_peiBegin;
        if (m_bPeiAllowed)
            readPei(begin);
        break;
    case '"': type = readString() ? TT_string : TT_error; break;
    case '#':
        type = TT_id;
        skipDigits();
        break;
    case '/': type = readComment(begin) ? TT_comment : TT_error; break;
    case 't': type = readWord("rue") ? TT_true : TT_error; break;
    case 'f': type = readWord("alse") ? TT_false : TT_error; break;
    case 'n': type = readWord("ull") ? TT_null : TT_error; break;
    default:
        if (byte == '-' || (byte >= '0' && byte <= '9'))
        {
            type = TT_number;
            readNumber();
        }
        break;
    }
    if (type == TT_fieldsBegin || type == TT_fieldsEnd || type == TT_arrayBegin || type == TT_arrayEnd ||
        type == TT_comma)
        m_bPeiAllowed = false;
    return {type, begin, m_nCursor};
}

CTextModel::tToken CTextModel::nextAfterComments()
{
    tToken token = plainToken();
    while (token.m_eType == TT_comment)
        token = plainToken();
    return token;
}

bool CTextModel::readWord(std::string_view rest)
{
    if (m_strText.substr(m_nCursor, rest.size()) != rest)
        return false;
    m_nCursor += rest.size();
    return true;
}

bool CTextModel::readString()
{
    while (!atEnd())
    {
        const char byte = m_strText[m_nCursor++];
        if (byte == '"')
            return true;
        if (byte == '\\' && !atEnd())
            ++m_nCursor;
    }
    return false;
}

void CTextModel::readNumber()
{
    skipDigits();
    if (peek() == '.')
    {
        ++m_nCursor;
        skipDigits();
    }
    if (peek() == 'e' || peek() == 'E')
    {
        ++m_nCursor;
        if (peek() == '+' || peek() == '-')
            ++m_nCursor;
        skipDigits();
    }
}

bool CTextModel::readComment(std::size_t begin)
{
    if (atEnd())
        return false;
    const char kind = m_strText[m_nCursor++];
    if (kind == '*')
    {
        for (;; ++m_nCursor)
        {
            if (atEnd())
                return false;
            if (peek() == '*' && m_nCursor + 1 < m_strText.size() && m_strText[m_nCursor + 1] == '/')
                break;
        }
        m_nCursor += 2;
    }
    else if (kind == '/')
    {
        while (!atEnd() && peek() != '\n' && peek() != '\r')
            ++m_nCursor;
        if (peek() == '\r')
        {
            ++m_nCursor;
            if (peek() == '\n')
                ++m_nCursor;
        }
        else if (peek() == '\n')
            ++m_nCursor;
    }
    else
        return false;
    if (m_bKeep)
        keepComment(begin, kind == '*');
    return true;
}

void CTextModel::keepComment(std::size_t begin, bool block)
{
    std::string text;
    for (std::size_t i = begin; i < m_nCursor; ++i)
    {
        if (m_strText[i] == '\r' && i + 1 < m_nCursor && m_strText[i + 1] == '\n')
            continue;
        if (m_strText[i] == '\0')  // where the text of a comment would end
            text += ' ';
        else
            text += m_strText[i] == '\r' ? '\n' : m_strText[i];
    }
    const bool sameLine = m_nLastEnd != s_cnNone && !hasLineBreak(m_nLastEnd, begin);
    if (sameLine && !(block && hasLineBreak(begin, m_nCursor)))
        m_pLastNode->setComment(text, CP_trailing);
    else
        m_vPending.push_back(text);
}

void CTextModel::readPei(std::size_t begin)
{
    CFields& node = *m_vStack.back();
    const auto refuse = [this, begin](const char* message) {
        m_bPeiPending = false;
        fail(message, {TT_peiBegin, begin, m_nCursor});
    };
    if (m_bPeiPending)
        return refuse("Duplicated '(' in packet expression");
    if (m_vStack.size() > 1 && (node.isField() || node.isArray()))
        return refuse("Packet expression type has not field or array");
    node.setOffsetStart(static_cast<int>(begin));
    skipBlanks();
    if (peek() == ')')
    {
        ++m_nCursor;
        return refuse("This packet expression empty");
    }
    const std::size_t from = m_nCursor;
    while (!atEnd() && peek() != ')' && !isBlank(peek()))
        ++m_nCursor;
    if (atEnd())
        return refuse("Found not ')' in packet expression");
    m_strPei = m_strText.substr(from, m_nCursor - from);
    if (m_strPei.size() < 4)
        return refuse("The packet expression is too short");
    if (m_strPei.size() >= 256)
        return refuse("The packet expression is too long");
    const std::size_t close = m_strText.find(')', m_nCursor);
    if (close == m_strText.npos)
    {
        refuse("Missing ')' in packet expression");
        recover(TT_peiEnd);
        return;
    }
    m_nCursor = close + 1;
    node.setOffsetEnd(static_cast<int>(m_nCursor));
    m_bPeiPending = true;
}

int CTextModel::hexNumber(std::size_t from, int count) const
{
    int number = 0;
    for (int i = 0; i < count; ++i)
    {
        const int digit = hex(m_strText[from + static_cast<std::size_t>(i)]);
        if (digit < 0)
            return -1;
        number = number * 16 + digit;
    }
    return number;
}

bool CTextModel::unescape(const tToken& token, std::string& out)
{
    const std::size_t end = token.m_nEnd - 1;
    for (std::size_t i = token.m_nBegin + 1; i < end;)
    {
        if (m_strText[i] != '\\')
        {
            out += m_strText[i++];
            continue;
        }
        const std::size_t place = i++;
        if (i == end)
            return fail("Empty escape sequence in string", token, place);
        const char letter = m_strText[i++];
        const std::string_view letters = "\"/\\bfnrt";
        const std::size_t simple = letters.find(letter);
        if (simple != letters.npos)
            out += "\"/\\\b\f\n\r\t"[simple];
        else if (letter == 'x')
        {
            if (end - i < 2)
                return fail("Bad hexa escape sequence in string : two digits expected.", token, place);
            const int byte = hexNumber(i, 2);
            if (byte < 0)
                return fail("Bad hexa escape sequence in string", token, place);
            out += static_cast<char>(static_cast<unsigned char>(byte));
            i += 2;
        }
        else if (letter == 'u' && (m_uiConfig & LCBC_UNICODE_UTF8) == 0)
        {
            if (end - i < 4)
                return fail("Bad unicode escape sequence in string : four digits expected.", token, place);
            if (hexNumber(i, 4) < 0)
                return fail("Bad unicode escape sequence in string", token, place);
            out += static_cast<char>(static_cast<unsigned char>(hexNumber(i, 2)));
            out += static_cast<char>(static_cast<unsigned char>(hexNumber(i + 2, 2)));
            i += 4;
        }
        else if (letter == 'u')
        {
            unsigned int point = 0;
            if (const char* const message = readCodePoint(i, end, point))
                return fail(message, token, place);
            appendUtf8(out, point);
        }
        else
            return fail("Bad escape sequence in string", token, place);
    }
    return true;
}

const char* CTextModel::readCodePoint(std::size_t& i, std::size_t end, unsigned int& point) const
{
    const char* const tooFew = "Bad unicode escape sequence in string: four digits expected.";
    const char* const noDigit = "Bad unicode escape sequence in string: hexadecimal digit expected.";
    if (end - i < 4)
        return tooFew;
    const int high = hexNumber(i, 4);
    if (high < 0)
        return noDigit;
    i += 4;
    point = static_cast<unsigned int>(high);
    if (high < 55296 || high > 56319)
        return nullptr;
    if (end - i < 6)
        return "additional six characters expected to parse unicode surrogate pair.";
    if (m_strText[i] != '\\' || m_strText[i + 1] != 'u')
        return "expecting another \\u token to begin the second half of a unicode surrogate pair";
    const int low = hexNumber(i + 2, 4);
    if (low < 0)
        return noDigit;
    i += 6;
    point = 65536 + ((point & 1023) << 10) + (static_cast<unsigned int>(low) & 1023);
    return nullptr;
}

}  // namespace murv::tests
