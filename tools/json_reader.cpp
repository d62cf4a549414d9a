// tools/json_reader.cpp - takes what the parser reads; no JSON tree in between.
//
// The parser does not say where a value stands. So a cursor goes through the text with it, from token to token; what it
// passes the parser has accepted before.
#include "tools/json_reader.h"

#include <cstdio>
#include <vector>

#include "murv/text.h"
#include "tools/json_events.h"
#include "tools/json_form.h"
#include "tools/json_node.h"
#include "tools/node_walk.h"
#include "tools/source_text.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnMostLevels = 1000;                     // of a tree
constexpr std::size_t s_cnMostNesting = 3 * s_cnMostLevels + 2;  // an object, a list of members and a pair for each
constexpr std::size_t s_cnLongestName = 255;

/// Goes through a JSON text, token by token.
class CJsonCursor
{
public:
    explicit CJsonCursor(std::string_view text) : m_svText(text)
    {
        if (text.substr(0, 3) == "\xEF\xBB\xBF")
            m_nAt = 3;
    }

    tRange next()
    {
        const std::size_t begin = std::min(m_svText.find_first_not_of(" \t\r\n,:", m_nAt), m_svText.size());
        m_nAt = begin;
        if (begin == m_svText.size())
            return {begin, begin};
        if (m_svText[begin] == '"')
            skipString();
        else if (std::string_view("{}[]").find(m_svText[begin]) != std::string_view::npos)
            ++m_nAt;
        else
            m_nAt = std::min(m_svText.find_first_of(" \t\r\n,:{}[]\"", begin), m_svText.size());
        return {begin, m_nAt};
    }

private:
    void skipString()
    {
        ++m_nAt;
        for (;;)
        {
            m_nAt = std::min(m_svText.find_first_of("\"\\", m_nAt), m_svText.size());
            if (m_nAt == m_svText.size())
                return;
            const bool isEnd = m_svText[m_nAt] == '"';
            m_nAt += isEnd ? 1 : 2;
            if (isEnd)
                return;
        }
    }

    std::string_view m_svText;
    std::size_t m_nAt = 0;
};

/// The digits of a number that count: without zeros before and after them.
std::string digitsOf(std::string_view number)
{
    std::string digits;
    for (const char character : number.substr(0, number.find_first_of("eE")))
    {
        if (character >= '0' && character <= '9' && (character != '0' || !digits.empty()))
            digits += character;
    }
    digits.erase(digits.find_last_not_of('0') + 1);
    return digits;
}

/// Whether a double, written with as many digits as the number has, is that number.
bool isExact(double value, std::string_view number)
{
    constexpr std::size_t most = 800;  // no double has more
    const std::string digits = digitsOf(number);
    if (digits.empty() || digits.size() > most)
        return digits.empty();
    char text[most + 16];
    const int length = std::snprintf(text, sizeof text, "%.*e", static_cast<int>(digits.size() - 1), value);
    return digitsOf({text, static_cast<std::size_t>(length)}) == digits;
}

/// Takes what the parser reads.
class CJsonReader : public CJsonEvents
{
public:
    CJsonReader(std::string_view text, const tJsonReading& how, CFields& tree, tJsonFault& fault)
        : CJsonEvents(CFields::maxSint32, fault), m_tCursor(text), m_tHow(how), m_tTree(tree)
    {
    }

    /// Whether what has been read nests as documents may.
    bool checkLevels()
    {
        std::size_t deepest = 0;
        if (m_bDeep)
            forEachNode(static_cast<const CFields&>(m_tTree),
                        [&deepest](const CFields&, std::size_t level) { deepest = std::max(deepest, level); });
        return deepest <= s_cnMostLevels || failDeep();
    }

    bool number_float(number_float_t value, const string_t& number) override
    {
        CFields* const node = add();
        if (node == nullptr)
            return false;
        if (!m_tHow.m_bNearest && !isExact(value, number))
            return fail("no 64-bit integer and no double is exactly this number (see --nearest)");
        return node->setValue(value);
    }
    bool string(string_t& text) override
    {
        return set(text);
    }
    bool start_object(std::size_t) override
    {
        return open(DT_fields);
    }
    bool start_array(std::size_t) override
    {
        return open(DT_array);
    }
    bool key(string_t& name) override
    {
        m_tToken = m_tCursor.next();
        m_tKey = m_tToken;
        m_strKey.swap(name);
        return m_strKey.size() <= s_cnLongestName || fail("a name is longer than 255 bytes");
    }
    bool end_object() override
    {
        CFields& node = close();
        std::string fault;
        if (m_tHow.m_bPlain && m_tHow.m_bBytes)
            fault = turnBytes(node);
        else if (!m_tHow.m_bPlain && isNodeObject(node))
            fault = m_tNodes.turn(node, !m_vOpen.empty() && m_vOpen.back()->isField());
        if (fault.empty())
            return true;
        m_tToken.m_nBegin = static_cast<std::size_t>(node.getOffsetStart());
        return fail(std::move(fault));
    }
    bool end_array() override
    {
        close();
        return true;
    }

private:
    bool fail(std::string message)
    {
        m_tFault = {m_tToken.m_nBegin, std::max<std::size_t>(m_tToken.m_nEnd - m_tToken.m_nBegin, 1),
                    std::move(message)};
        return false;
    }

    bool failDeep()
    {
        m_tToken = m_tDeep;
        return fail("values may nest 1000 levels");
    }

    CFields* add() override
    {
        m_tToken = m_tCursor.next();
        if (m_vOpen.size() >= s_cnMostLevels && !m_bDeep)
        {
            m_bDeep = true;
            m_tDeep = m_tToken;
        }
        CFields* node = &m_tTree;
        if (!m_vOpen.empty())
        {
            CFields& around = *m_vOpen.back();
            const unsigned int before = around.getChildCount();
            // An empty name finds none; a second member without a name is one of its own.
            node = around.isArray() ? &around.addArrayAt(CFields()) : &around.addChildRef(m_strKey);
            if (around.isField() && (around.getChildCount() == before || isSecondNameless(around)))
            {
                m_tToken = m_tKey;
                fail("the name " + ToQuotedEscapeString(m_strKey) + " is there twice");
                return nullptr;
            }
        }
        node->setOffsetStart(static_cast<int>(m_tToken.m_nBegin));
        node->setOffsetEnd(static_cast<int>(m_tToken.m_nEnd));
        return node;
    }

    bool isSecondNameless(const CFields& around)
    {
        if (!m_strKey.empty())
            return false;
        const bool isSecond = !m_vNameless.empty() && m_vNameless.back() == &around;
        if (!isSecond)
            m_vNameless.push_back(&around);
        return isSecond;
    }

    bool open(E_DataType type)
    {
        CFields* const node = add();
        if (node == nullptr)
            return false;
        if (m_vOpen.size() == s_cnMostNesting)
            return failDeep();
        m_vOpen.push_back(node);
        return node->setValue(type);
    }

    CFields& close()
    {
        CFields& node = *m_vOpen.back();
        m_tToken = m_tCursor.next();
        node.setOffsetEnd(static_cast<int>(m_tToken.m_nEnd));
        if (!m_vNameless.empty() && m_vNameless.back() == &node)
            m_vNameless.pop_back();
        m_vOpen.pop_back();
        return node;
    }

    CJsonCursor m_tCursor;
    const tJsonReading& m_tHow;
    CFields& m_tTree;
    CJsonNodes m_tNodes;
    std::vector<CFields*> m_vOpen;            // members do not move while others are appended
    std::vector<const CFields*> m_vNameless;  // of those, the ones that have a member without a name
    std::string m_strKey;
    tRange m_tKey{};
    tRange m_tToken{};
    tRange m_tDeep{};  // the first value that may be too deep
    bool m_bDeep = false;
};
}  // namespace

bool readJson(std::string_view text, const tJsonReading& how, CFields& tree, tJsonFault& fault)
{
    CJsonReader reader(text, how, tree, fault);
    return reader.parse(text) && reader.checkLevels();
}

}  // namespace murv::tool
