// tests/ser/text_model.h - the text rules once more, slowly and literally.
//
// Reads byte by byte, recursively, and builds the tree through the public interface alone. It knows nothing of
// builders, indexes or short ways, so that what the loader gains by these is checked against what the rules say.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "murv/fields.h"
#include "murv/flags.h"
#include "murv/loader.h"
#include "murv/text.h"
#include "ser/pei_reader.h"

namespace murv::tests
{

class CTextModel
{
public:
    CTextModel(std::string_view text, unsigned int config, bool comments)
        : m_strText(text), m_uiConfig(config), m_bKeep(comments && (config & LCBC_COMMENT) != 0)
    {
    }

    bool load(CFields& target)
    {
        m_vStack = {&target};
        bool done = readValue(true);
        m_bPeiAllowed = false;
        next();
        if (m_bKeep && !m_vPending.empty())
        {
            std::string text;
            for (const std::string& comment : m_vPending)
                text += comment;
            target.setComment(text, CP_after);
        }
        if ((m_uiConfig & LCBC_ROOT_CONTAINER) != 0 && !target.isField() && !target.isArray())
            done = fail("A valid MURV document must be either an DT_array or an DT_fields type.",
                        {TT_error, 0, m_strText.size()});
        if (!done)
            target.removeChildAll();
        return done;
    }

    std::string message() const
    {
        std::string all;
        for (const tRecord& record : m_vRecords)
        {
            all += "* " + location(record.m_tToken.m_nBegin) + "\n  " + record.m_strMessage + "\n";
            if (record.m_nSecond != s_cnNone)
                all += "See " + location(record.m_nSecond) + " for detail.\n";
        }
        return all;
    }

    std::vector<tErrorRange> ranges() const
    {
        std::vector<tErrorRange> all;
        for (const tRecord& record : m_vRecords)
            all.push_back({static_cast<unsigned int>(record.m_tToken.m_nBegin),
                           static_cast<unsigned int>(record.m_tToken.m_nEnd), record.m_strMessage});
        return all;
    }

    bool isTooDeep() const
    {
        return m_bTooDeep;
    }

private:
    static constexpr std::size_t s_cnNone = static_cast<std::size_t>(-1);

    struct tToken
    {
        E_TokenType m_eType;
        std::size_t m_nBegin;
        std::size_t m_nEnd;
    };
    struct tRecord
    {
        tToken m_tToken;
        std::string m_strMessage;
        std::size_t m_nSecond;
    };

    // Bytes.

    bool atEnd() const
    {
        return m_nCursor == m_strText.size();
    }
    char peek() const
    {
        return atEnd() ? '\0' : m_strText[m_nCursor];
    }
    bool isDigitNext() const
    {
        return !atEnd() && peek() >= '0' && peek() <= '9';
    }
    static bool isBlank(char c)
    {
        return c == ' ' || c == '\t' || c == '\r' || c == '\n';
    }
    void skipBlanks()
    {
        while (!atEnd() && isBlank(peek()))
            ++m_nCursor;
    }
    void skipDigits()
    {
        while (isDigitNext())
            ++m_nCursor;
    }
    bool hasLineBreak(std::size_t begin, std::size_t end) const
    {
        for (std::size_t i = begin; i < end; ++i)
        {
            if (m_strText[i] == '\r' || m_strText[i] == '\n')
                return true;
        }
        return false;
    }

    std::string location(std::size_t position) const
    {
        std::size_t line = 1;
        std::size_t begin = 0;
        for (std::size_t i = 0; i < position; ++i)
        {
            if (m_strText[i] != '\r' && m_strText[i] != '\n')
                continue;
            if (m_strText[i] == '\r' && i + 1 < position && m_strText[i + 1] == '\n')
                ++i;
            ++line;
            begin = i + 1;
        }
        return "Line " + std::to_string(line) + ", Column " + std::to_string(position - begin + 1);
    }

    // Tokens.

    tToken plainToken()
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

    /// The next token behind comments, whatever the configuration.
    tToken nextBehindComments()
    {
        tToken token = plainToken();
        while (token.m_eType == TT_comment)
            token = plainToken();
        return token;
    }
    tToken next()
    {
        return (m_uiConfig & LCBC_COMMENT) != 0 ? nextBehindComments() : plainToken();
    }

    bool readWord(std::string_view rest)
    {
        if (m_strText.substr(m_nCursor, rest.size()) != rest)
            return false;
        m_nCursor += rest.size();
        return true;
    }

    bool readString()
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

    void readNumber()
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

    bool readComment(std::size_t begin)
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

    void keepComment(std::size_t begin, bool block)
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

    /// Every comment begins a line; those that end in a line feed have theirs already.
    static std::string joined(const std::vector<std::string>& comments)
    {
        std::string text;
        for (const std::string& comment : comments)
        {
            text += comment;
            if (comment.back() != '\n')
                text += '\n';
        }
        return text;
    }

    // Errors.

    bool fail(const std::string& message, const tToken& token, std::size_t second = s_cnNone)
    {
        m_vRecords.push_back({token, message, second});
        return false;
    }
    bool recover(E_TokenType until)
    {
        const std::size_t records = m_vRecords.size();
        m_bPeiAllowed = false;
        for (;;)
        {
            const tToken token = plainToken();
            if (token.m_eType == until || token.m_eType == TT_end)
                break;
        }
        m_vRecords.resize(records, {});
        return false;
    }
    bool failAndRecover(const char* message, const tToken& token, E_TokenType until)
    {
        fail(message, token);
        return recover(until);
    }

    // Grammar.

    bool readValue(bool root)
    {
        if (m_iDepth >= 1000)
        {
            m_bTooDeep = true;
            return false;
        }
        ++m_iDepth;
        m_bNoValue = false;
        const bool done = readOneValue(root);
        m_bPeiPending = false;
        if (m_bKeep && !m_bNoValue)
        {
            m_nLastEnd = m_nCursor;
            m_pLastNode = m_vStack.back();
        }
        m_bNoValue = false;
        --m_iDepth;
        return done;
    }

    bool readOneValue(bool root)
    {
        std::vector<std::string> before;  // comments since the node's head began
        for (;;)
        {
            const tToken token = next();
            CFields& node = *m_vStack.back();
            if (m_bKeep && !m_vPending.empty())
            {
                before.insert(before.end(), m_vPending.begin(), m_vPending.end());
                m_vPending.clear();
                node.setComment(joined(before), CP_before);
            }
            if (root && token.m_eType != TT_fieldsBegin)
            {
                if (!readRootHead(token))
                    return failWithoutValue();
                root = false;
                m_bPeiAllowed = true;
                continue;
            }
            const bool missing =
                token.m_eType == TT_fieldsEnd || token.m_eType == TT_arrayEnd || token.m_eType == TT_comma;
            if (token.m_eType == TT_peiBegin)
            {
                if (!m_bPeiPending)
                    return failWithoutValue();
                tPacketExpInfo expression{};
                if (const char* const message = detail::decodePei(m_strPei, m_uiConfig, expression))
                {
                    fail(message, token);
                    return failWithoutValue();
                }
                node.pkt_SetExp(expression);
                continue;
            }
            if (token.m_eType == TT_string)
                return readStringValue(node, token);
            if (token.m_eType == TT_fieldsBegin || token.m_eType == TT_arrayBegin)
            {
                startValue(node);
                const bool done = token.m_eType == TT_fieldsBegin ? readFields(node, token) : readArray(node, token);
                node.setOffsetEnd(static_cast<int>(m_nCursor));
                return done;
            }
            if (token.m_eType == TT_number || token.m_eType == TT_true || token.m_eType == TT_false ||
                token.m_eType == TT_null)
            {
                startValue(node);
                if (token.m_eType == TT_number)
                    atonInField(m_strText.data() + token.m_nBegin,
                                static_cast<unsigned int>(token.m_nEnd - token.m_nBegin), node);
                else if (token.m_eType == TT_null)
                    node.setValue(DT_null);
                else
                    node.setValue(token.m_eType == TT_true);
                return finishValue(node, token.m_nBegin, token.m_nEnd);
            }
            if (missing && (m_uiConfig & LCBC_EMPTY_NULL) != 0)
            {
                --m_nCursor;
                startValue(node);
                node.setValue(DT_null);
                return finishValue(node, m_nCursor - 1, m_nCursor);
            }
            node.setOffsetStart(static_cast<int>(token.m_nBegin));
            node.setOffsetEnd(static_cast<int>(token.m_nEnd));
            fail("Syntax error: value, field or array expected.", token);
            return failWithoutValue();
        }
    }

    /// There was nothing that a comment could follow.
    bool failWithoutValue()
    {
        m_bNoValue = true;
        return false;
    }

    void startValue(CFields& node)
    {
        m_bPeiAllowed = false;
        m_bPeiPending = false;
        node.setValue(DT_null, VK_fix);
    }
    bool finishValue(CFields& node, std::size_t begin, std::size_t end)
    {
        node.setOffsetStart(static_cast<int>(begin));
        node.setOffsetEnd(static_cast<int>(end));
        const tPacketExpInfo pei = node.pkt_GetExp();
        if (pei.m_ucSkKind == 0 && (pei.m_usSkIndex == 1 || pei.m_usSkIndex == 2))
            node.setVK(static_cast<E_ValueKind>(pei.m_usSkIndex));
        return true;
    }

    bool readRootHead(tToken token)
    {
        std::string name;
        unsigned int id = 0;
        if (!readHead(token, name, id, "Missing field member name"))
            return false;
        if (id != 0)
            m_vStack.back()->setID(id);
        if (name.size() > 255)
            return fail("Failed to set the root field name", token);
        if (!name.empty())
            m_vStack.back()->setName(name);
        return true;
    }

    bool readHead(tToken& token, std::string& name, unsigned int& id, const char* numberRefused)
    {
        if (token.m_eType == TT_id)
        {
            id = id4Token(token);
            if (id == 0)
                return fail("Failed to loading for the #ID syntax", token);
            token = nextBehindComments();
        }
        switch (token.m_eType)
        {
        case TT_string:
        case TT_number:
            if (!isAssignNext(token))
                return true;
            if (token.m_eType == TT_string)
                return unescape(token, name) || recover(TT_fieldsEnd);
            if ((m_uiConfig & LCBC_NUMBER_NAME) == 0)
                return failAndRecover(numberRefused, token, TT_fieldsEnd);
            {
                CFields number;
                atonInField(m_strText.data() + token.m_nBegin, static_cast<unsigned int>(token.m_nEnd - token.m_nBegin),
                            number);
                name = number.asString();
            }
            return true;
        case TT_assign: return true;
        case TT_fieldsBegin:
        case TT_fieldsEnd:
        case TT_arrayBegin:
        case TT_peiBegin:
        case TT_comma:
        case TT_true:
        case TT_false:
        case TT_null: m_nCursor = token.m_nBegin; return true;
        default: return failAndRecover("Missing '}' or field member name", token, TT_fieldsEnd);
        }
    }

    unsigned int id4Token(const tToken& token) const
    {
        unsigned long long id = 0;
        for (std::size_t i = token.m_nBegin + 1; i < token.m_nEnd; ++i)
        {
            id = id * 10 + static_cast<unsigned long long>(m_strText[i] - '0');
            if (id > 2147483647)
                return 0;
        }
        return static_cast<unsigned int>(id);
    }

    /// Looks behind a token that may be a name. Without "=" the cursor goes back to the token, and comments that were
    /// passed are met again; with it they are taken now.
    bool isAssignNext(const tToken& token)
    {
        const bool keep = m_bKeep;
        m_bKeep = false;
        tToken behind = next();
        m_bKeep = keep;
        m_nCursor = behind.m_eType == TT_assign ? token.m_nEnd : token.m_nBegin;
        if (behind.m_eType != TT_assign)
            return false;
        next();
        return true;
    }

    bool readFields(CFields& node, const tToken& begin)
    {
        node.setValue(DT_fields);
        node.setOffsetStart(static_cast<int>(begin.m_nBegin));
        for (;;)
        {
            tToken token = nextBehindComments();
            std::string name;
            unsigned int id = 0;
            if (!readHead(token, name, id, "Missing '}' or field member name"))
                return false;
            CFields* const member = add(node, name, id);
            if (member == nullptr)
                return fail("This field not allow the duplication or a error occured", token);
            if (!readMember(*member))
                return recover(TT_fieldsEnd);
            const std::size_t end = m_nCursor;
            token = plainToken();
            if (token.m_eType != TT_fieldsEnd && token.m_eType != TT_comma && token.m_eType != TT_comment)
                return failAndRecover(fault(end, token, "Missing ',' or '}' in field declaration"), token,
                                      TT_fieldsEnd);
            while (token.m_eType == TT_comment)
                token = plainToken();
            if (token.m_eType == TT_fieldsEnd)
                return true;
            if (token.m_eType != TT_comma)
                return fail(fault(end, token, "Missing ','"), token);
        }
    }

    bool readArray(CFields& node, const tToken& begin)
    {
        node.setValue(DT_array);
        node.setOffsetStart(static_cast<int>(begin.m_nBegin));
        for (;;)
        {
            m_bPeiAllowed = true;
            if (!readMember(*node.addChildPtr("")))
                return recover(TT_arrayEnd);
            const std::size_t end = m_nCursor;
            const tToken token = nextBehindComments();
            if (token.m_eType == TT_arrayEnd)
                return true;
            if (token.m_eType != TT_comma)
                return failAndRecover(fault(end, token, "Missing ',' or ']' in array declaration"), token, TT_arrayEnd);
        }
    }

    /// A packet expression behind a scalar has no member that waits for a value.
    const char* fault(std::size_t valueEnd, const tToken& token, const char* message) const
    {
        const char last = m_strText[valueEnd - 1];
        return token.m_eType == TT_peiBegin && last != '}' && last != ']' ? "Add a field for this syntax" : message;
    }

    bool readMember(CFields& member)
    {
        if (m_bTooDeep)
            return false;
        m_vStack.push_back(&member);
        const bool done = readValue(false);
        m_vStack.pop_back();
        return done;
    }

    CFields* add(CFields& set, const std::string& name, unsigned int id)
    {
        m_bPeiAllowed = true;
        const unsigned int before = set.getChildCount();
        CFields* const member = set.addChildPtr(name, id, (m_uiConfig & LCBC_DUPLICATE) != 0);
        if (member == &set)
            return nullptr;
        if (set.getChildCount() == before && m_pLastNode != nullptr && isBelow(*member, *m_pLastNode))
        {
            m_pLastNode = nullptr;  // it goes with the value that is replaced now
            m_nLastEnd = s_cnNone;
        }
        return member;
    }

    static bool isBelow(const CFields& node, const CFields& sought)
    {
        for (const CFields& member : node)
        {
            if (&member == &sought || isBelow(member, sought))
                return true;
        }
        return false;
    }

    // Strings and packet expressions.

    bool readStringValue(CFields& node, const tToken& token)
    {
        std::string bytes;
        if (!unescape(token, bytes))
            return false;
        startValue(node);
        node.setValue(bytes);
        return finishValue(node, token.m_nBegin, token.m_nEnd);
    }

    static int hex(char c)
    {
        if (c >= '0' && c <= '9')
            return c - '0';
        if (c >= 'a' && c <= 'f')
            return c - 'a' + 10;
        return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
    }
    /// The number of `count` hex digits, or -1.
    int hexNumber(std::size_t from, int count) const
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

    static void appendUtf8(std::string& out, unsigned int point)
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

    bool unescape(const tToken& token, std::string& out)
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

    const char* readCodePoint(std::size_t& i, std::size_t end, unsigned int& point) const
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

    void readPei(std::size_t begin)
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

    std::string_view m_strText;
    unsigned int m_uiConfig;
    bool m_bKeep;
    std::size_t m_nCursor = 0;
    std::size_t m_nLastEnd = s_cnNone;
    CFields* m_pLastNode = nullptr;
    std::vector<std::string> m_vPending;  // comments for the next node
    std::string_view m_strPei;
    bool m_bPeiAllowed = false;
    bool m_bPeiPending = false;
    bool m_bNoValue = false;
    bool m_bTooDeep = false;
    int m_iDepth = 0;
    std::vector<CFields*> m_vStack;
    std::vector<tRecord> m_vRecords;
};

}  // namespace murv::tests
