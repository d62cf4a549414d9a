// everyday/path.cpp - reads paths and pointers step by step, and writes their steps.
#include "murv/path.h"

#include <algorithm>
#include <utility>

#include "core/path_text.h"
#include "murv/text.h"

namespace murv
{

namespace
{
constexpr unsigned int s_cuiNoIndex = CFields::maxUint32;  // more members than any container holds
constexpr std::string_view s_svRange = "..";

class CPathReader
{
public:
    CPathReader(std::string_view text, unsigned int options) : m_svText(text), m_uiOptions(options)
    {
    }

    tNodePath read()
    {
        if (m_svText == ".")
            return m_tPath;
        if (m_svText.empty())
            fail("a path is needed; . is the root");
        while (m_tPath.m_pError == nullptr && m_nAt < m_svText.size())
            readStep();
        return std::move(m_tPath);
    }

private:
    bool isAt(char byte) const
    {
        return m_nAt < m_svText.size() && m_svText[m_nAt] == byte;
    }

    void readStep()
    {
        if (isAt('['))
            return readIndex();
        if (!m_tPath.m_vStep.empty())
        {
            if (!isAt('.'))
                return fail("\".\" or \"[\" expected");
            ++m_nAt;
        }
        if (isAt('#'))
            readId();
        else if (isAt('"'))
            readQuotedName();
        else
            readName();
    }

    void readIndex()
    {
        ++m_nAt;
        tPathPart part{PS_index, {}, 0, 0};
        if (allows(PO_several) && isAt('*'))
        {
            ++m_nAt;
            part = everything();
        }
        else if (!readRange(part))
            return fail("an index is needed");
        if (!isAt(']'))
            return fail("\"]\" expected");
        ++m_nAt;
        add(std::move(part));
    }

    /// An index, or two with ".." between them, which may be left out.
    bool readRange(tPathPart& part)
    {
        if (!isAtRange() && !readNumber(part.m_uiNumber, part.m_bFirstFromEnd))
            return false;
        part.m_eStep = part.m_bFirstFromEnd ? PS_fromEnd : PS_index;
        if (!isAtRange())
            return true;
        m_nAt += s_svRange.size();
        part.m_eStep = PS_range;
        part.m_uiAfter = s_cuiNoIndex;
        return isAt(']') || readNumber(part.m_uiAfter, part.m_bAfterFromEnd);
    }

    bool allows(E_PathOption option) const
    {
        return (m_uiOptions & option) != 0;
    }

    bool isAtRange() const
    {
        return allows(PO_several) && m_svText.substr(m_nAt, s_svRange.size()) == s_svRange;
    }

    static tPathPart everything()
    {
        tPathPart part{PS_range, {}, 0, 0};
        part.m_uiAfter = s_cuiNoIndex;
        return part;
    }

    /// An index, which may count from the end. \return false, at its digits, when there is none
    bool readNumber(unsigned int& number, bool& isFromEnd)
    {
        const std::size_t begin = m_nAt;
        isFromEnd = allows(PO_fromEnd) && isAt('-');
        m_nAt += isFromEnd ? 1 : 0;
        if (readNumber(number) && !(isFromEnd && number == 0))
            return true;
        m_nAt = begin;
        return false;
    }

    void readId()
    {
        ++m_nAt;
        unsigned int id = 0;
        if (!readNumber(id) || id == 0 || id > static_cast<unsigned int>(CFields::maxSint32))
            return fail("an ID from 1 to 2147483647 is needed");
        add({PS_id, {}, id, 0});
    }

    void readName()
    {
        const std::size_t end = std::min(m_svText.find_first_of(".[]#\"", m_nAt), m_svText.size());
        if (end == m_nAt)
            return fail("a name is needed");
        std::string name(m_svText.substr(m_nAt, end - m_nAt));
        m_nAt = end;
        if (allows(PO_several) && name == "*")
            return add(everything());
        add({PS_name, std::move(name), 0, 0});
    }

    void readQuotedName()
    {
        const std::size_t begin = m_nAt + 1;
        std::size_t end = begin;
        while (end < m_svText.size() && m_svText[end] != '"')
            end += m_svText[end] == '\\' ? 2 : 1;
        if (end >= m_svText.size())
            return fail("the quote is not closed");
        m_nAt = end + 1;
        add({PS_name, ToUnescapeString(m_svText.substr(begin, end - begin), false), 0, 0});
    }

    bool readNumber(unsigned int& number)
    {
        const std::size_t end = std::min(m_svText.find_first_not_of("0123456789", m_nAt), m_svText.size());
        if (end == m_nAt)
            return false;
        // What no container can hold is no member, and no error.
        unsigned long long value = 0;
        for (; m_nAt != end; ++m_nAt)
        {
            const auto digit = static_cast<unsigned int>(m_svText[m_nAt] - '0');
            value = std::min<unsigned long long>(value * 10 + digit, s_cuiNoIndex);
        }
        number = static_cast<unsigned int>(value);
        return true;
    }

    void add(tPathPart part)
    {
        part.m_nEnd = m_nAt;
        m_tPath.m_vStep.push_back(std::move(part));
    }

    void fail(const char* message)
    {
        m_tPath.m_pError = message;
        m_tPath.m_nErrorAt = m_nAt;
    }

    std::string_view m_svText;
    unsigned int m_uiOptions;
    std::size_t m_nAt = 0;
    tNodePath m_tPath;
};

/// The index that a step of a pointer is in an array.
unsigned int index4Token(std::string_view token)
{
    const bool isIndex = !token.empty() && token.size() <= 10 &&
                         token.find_first_not_of("0123456789") == std::string_view::npos &&
                         (token.front() != '0' || token.size() == 1);
    if (!isIndex)
        return s_cuiNoIndex;
    unsigned long long value = 0;
    for (const char digit : token)
        value = value * 10 + static_cast<unsigned int>(digit - '0');
    return static_cast<unsigned int>(std::min<unsigned long long>(value, s_cuiNoIndex));
}

/// \return false, with `wrong` at the place of the mistake, for a "~" that neither "0" nor "1" follows
bool unescapeToken(std::string_view token, std::string& name, std::size_t& wrong)
{
    name.reserve(token.size());
    for (std::size_t i = 0; i < token.size(); ++i)
    {
        if (token[i] != '~')
        {
            name += token[i];
            continue;
        }
        wrong = i++;
        if (i == token.size() || (token[i] != '0' && token[i] != '1'))
            return false;
        name += token[i] == '0' ? '~' : '/';
    }
    return true;
}

std::string quoted4Message(std::string_view path)
{
    return path.data() == nullptr ? "" : " " + ToQuotedEscapeString(path.substr(0, 200));
}
}  // namespace

CPathError::CPathError(std::string_view text, const char* error, std::size_t at)
    : CLogicError("Malformed path" + quoted4Message(text) + ", byte " + std::to_string(at) + ": " + error),
      m_nOffset(at)
{
}

CPathError::~CPathError() = default;

std::size_t CPathError::getOffset() const noexcept
{
    return m_nOffset;
}

tNodePath parsePath(std::string_view text, unsigned int options)
{
    return CPathReader(text, options).read();
}

tNodePath parsePointer(std::string_view text)
{
    tNodePath path;
    if (!text.empty() && text.front() != '/')
        path.m_pError = "a pointer begins with \"/\"";
    for (std::size_t at = 0; path.m_pError == nullptr && at < text.size();)
    {
        const std::size_t begin = at + 1;
        const std::size_t end = std::min(text.find('/', begin), text.size());
        std::string name;
        std::size_t wrong = 0;
        if (!unescapeToken(text.substr(begin, end - begin), name, wrong))
        {
            path.m_pError = "\"0\" or \"1\" expected after \"~\"";
            path.m_nErrorAt = begin + wrong + 1;
            break;
        }
        const unsigned int index = index4Token(name);
        path.m_vStep.push_back({PS_token, std::move(name), index, end});
        at = end;
    }
    return path;
}

std::string pathName(std::string_view name)
{
    std::string step;
    detail::appendPathName(step, name);
    return step;
}

std::string pointerToken(std::string_view name)
{
    std::string token = "/";
    token.reserve(name.size() + 1);
    for (const char byte : name)
    {
        if (byte == '~')
            token += "~0";
        else if (byte == '/')
            token += "~1";
        else
            token += byte;
    }
    return token;
}

}  // namespace murv
