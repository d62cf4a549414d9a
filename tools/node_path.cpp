// tools/node_path.cpp - reads paths step by step and follows them into a tree.
#include "tools/node_path.h"

#include "murv/text.h"

namespace murv::tool
{

namespace
{
class CPathReader
{
public:
    explicit CPathReader(std::string_view text) : m_svText(text)
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
        return m_tPath;
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
        unsigned int index = 0;
        if (!readNumber(index))
            return fail("an index is needed");
        if (!isAt(']'))
            return fail("\"]\" expected");
        ++m_nAt;
        add(SK_index, {}, index);
    }

    void readId()
    {
        ++m_nAt;
        unsigned int id = 0;
        if (!readNumber(id) || id == 0 || id > static_cast<unsigned int>(CFields::maxSint32))
            return fail("an ID from 1 to 2147483647 is needed");
        add(SK_id, {}, id);
    }

    void readName()
    {
        const std::size_t end = std::min(m_svText.find_first_of(".[]#\"", m_nAt), m_svText.size());
        if (end == m_nAt)
            return fail("a name is needed");
        std::string name(m_svText.substr(m_nAt, end - m_nAt));
        m_nAt = end;
        add(SK_name, std::move(name), 0);
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
        add(SK_name, ToUnescapeString(m_svText.substr(begin, end - begin), false), 0);
    }

    bool readNumber(unsigned int& number)
    {
        const std::size_t end = std::min(m_svText.find_first_not_of("0123456789", m_nAt), m_svText.size());
        unsigned long long value = 0;
        if (end == m_nAt || !aton64(m_svText.data() + m_nAt, static_cast<unsigned int>(end - m_nAt), value))
            return false;
        m_nAt = end;
        // What no container can hold is no member, and no error.
        number = value > CFields::maxUint32 ? CFields::maxUint32 : static_cast<unsigned int>(value);
        return true;
    }

    void add(E_StepKind kind, std::string name, unsigned int number)
    {
        m_tPath.m_vStep.push_back({kind, std::move(name), number, m_nAt});
    }

    void fail(const char* message)
    {
        m_tPath.m_pError = message;
        m_tPath.m_nErrorAt = m_nAt;
    }

    std::string_view m_svText;
    std::size_t m_nAt = 0;
    tNodePath m_tPath;
};

CFields* followStep(CFields& node, const tStep& step)
{
    switch (step.m_eKind)
    {
    case SK_name: return node.findChildAt(step.m_strName.data(), static_cast<unsigned int>(step.m_strName.size()));
    case SK_id: return node.findID(step.m_uiNumber);
    case SK_index: break;
    }
    return node.isValidChild(step.m_uiNumber) ? &node[step.m_uiNumber] : nullptr;
}
}  // namespace

tNodePath parseNodePath(std::string_view text)
{
    return CPathReader(text).read();
}

CFields* findNode(CFields& root, const tNodePath& path, std::size_t& taken)
{
    CFields* node = &root;
    taken = 0;
    for (const tStep& step : path.m_vStep)
    {
        node = followStep(*node, step);
        if (node == nullptr)
            return nullptr;
        ++taken;
    }
    return node;
}

}  // namespace murv::tool
