// tests/ser/text_model.cpp - values, members and errors of the plain text reader.
#include "tests/ser/text_model.h"

#include "murv/text.h"
#include "ser/pei_reader.h"

namespace murv::tests
{

namespace
{
/// Every comment begins a line; those that end in a line feed have theirs already.
std::string joined(const std::vector<std::string>& comments)
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

bool isBelow(const CFields& node, const CFields& sought)
{
    for (const CFields& member : node)
    {
        if (&member == &sought || isBelow(member, sought))
            return true;
    }
    return false;
}
}  // namespace

bool CTextModel::load(CFields& target)
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

std::string CTextModel::message() const
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

std::vector<tErrorRange> CTextModel::ranges() const
{
    std::vector<tErrorRange> all;
    for (const tRecord& record : m_vRecords)
        all.push_back({static_cast<unsigned int>(record.m_tToken.m_nBegin),
                       static_cast<unsigned int>(record.m_tToken.m_nEnd), record.m_strMessage});
    return all;
}

std::string CTextModel::location(std::size_t position) const
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

bool CTextModel::fail(const std::string& message, const tToken& token, std::size_t second)
{
    m_vRecords.push_back({token, message, second});
    return false;
}

bool CTextModel::recover(E_TokenType until)
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

bool CTextModel::failAndRecover(const char* message, const tToken& token, E_TokenType until)
{
    fail(message, token);
    return recover(until);
}

bool CTextModel::readValue(bool root)
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

bool CTextModel::readOneValue(bool root)
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
        if (token.m_eType != TT_peiBegin)
            return readValueAt(node, token);
        if (!m_bPeiPending)
            return failWithoutValue();
        tPacketExpInfo expression{};
        if (const char* const message = detail::decodePei(m_strPei, m_uiConfig, expression))
        {
            fail(message, token);
            return failWithoutValue();
        }
        node.pkt_SetExp(expression);
    }
}

bool CTextModel::readValueAt(CFields& node, const tToken& token)
{
    switch (token.m_eType)
    {
    case TT_string: return readStringValue(node, token);
    case TT_fieldsBegin:
    case TT_arrayBegin:
    {
        startValue(node);
        const bool done = token.m_eType == TT_fieldsBegin ? readFields(node, token) : readArray(node, token);
        node.setOffsetEnd(static_cast<int>(m_nCursor));
        return done;
    }
    case TT_number:
        startValue(node);
        atonInField(m_strText.data() + token.m_nBegin, static_cast<unsigned int>(token.m_nEnd - token.m_nBegin), node);
        return finishValue(node, token.m_nBegin, token.m_nEnd);
    case TT_true:
    case TT_false:
        startValue(node);
        node.setValue(token.m_eType == TT_true);
        return finishValue(node, token.m_nBegin, token.m_nEnd);
    case TT_null:
        startValue(node);
        node.setValue(DT_null);
        return finishValue(node, token.m_nBegin, token.m_nEnd);
    default: return readMissingValue(node, token);
    }
}

bool CTextModel::readMissingValue(CFields& node, const tToken& token)
{
    const bool missing = token.m_eType == TT_fieldsEnd || token.m_eType == TT_arrayEnd || token.m_eType == TT_comma;
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

bool CTextModel::failWithoutValue()
{
    m_bNoValue = true;
    return false;
}

void CTextModel::startValue(CFields& node)
{
    m_bPeiAllowed = false;
    m_bPeiPending = false;
    node.setValue(DT_null, VK_fix);
}

bool CTextModel::finishValue(CFields& node, std::size_t begin, std::size_t end)
{
    node.setOffsetStart(static_cast<int>(begin));
    node.setOffsetEnd(static_cast<int>(end));
    const tPacketExpInfo pei = node.pkt_GetExp();
    if (pei.m_ucSkKind == 0 && (pei.m_usSkIndex == 1 || pei.m_usSkIndex == 2))
        node.setVK(static_cast<E_ValueKind>(pei.m_usSkIndex));
    return true;
}

bool CTextModel::readRootHead(tToken token)
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

bool CTextModel::readHead(tToken& token, std::string& name, unsigned int& id, const char* numberRefused)
{
    if (token.m_eType == TT_id)
    {
        id = id4Token(token);
        if (id == 0)
            return fail("Failed to loading for the #ID syntax", token);
        token = nextAfterComments();
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

unsigned int CTextModel::id4Token(const tToken& token) const
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

bool CTextModel::isAssignNext(const tToken& token)
{
    const bool keep = m_bKeep;
    m_bKeep = false;
    const tToken following = next();
    m_bKeep = keep;
    m_nCursor = following.m_eType == TT_assign ? token.m_nEnd : token.m_nBegin;
    if (following.m_eType != TT_assign)
        return false;
    next();
    return true;
}

bool CTextModel::readFields(CFields& node, const tToken& begin)
{
    node.setValue(DT_fields);
    node.setOffsetStart(static_cast<int>(begin.m_nBegin));
    for (;;)
    {
        tToken token = nextAfterComments();
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
            return failAndRecover(message4Fault(end, token, "Missing ',' or '}' in field declaration"), token,
                                  TT_fieldsEnd);
        while (token.m_eType == TT_comment)
            token = plainToken();
        if (token.m_eType == TT_fieldsEnd)
            return true;
        if (token.m_eType != TT_comma)
            return fail(message4Fault(end, token, "Missing ','"), token);
    }
}

bool CTextModel::readArray(CFields& node, const tToken& begin)
{
    node.setValue(DT_array);
    node.setOffsetStart(static_cast<int>(begin.m_nBegin));
    for (;;)
    {
        m_bPeiAllowed = true;
        if (!readMember(*node.addChildPtr("")))
            return recover(TT_arrayEnd);
        const std::size_t end = m_nCursor;
        const tToken token = nextAfterComments();
        if (token.m_eType == TT_arrayEnd)
            return true;
        if (token.m_eType != TT_comma)
            return failAndRecover(message4Fault(end, token, "Missing ',' or ']' in array declaration"), token,
                                  TT_arrayEnd);
    }
}

const char* CTextModel::message4Fault(std::size_t valueEnd, const tToken& token, const char* message) const
{
    const char last = m_strText[valueEnd - 1];
    return token.m_eType == TT_peiBegin && last != '}' && last != ']' ? "Add a field for this syntax" : message;
}

bool CTextModel::readMember(CFields& member)
{
    if (m_bTooDeep)
        return false;
    m_vStack.push_back(&member);
    const bool done = readValue(false);
    m_vStack.pop_back();
    return done;
}

CFields* CTextModel::add(CFields& set, const std::string& name, unsigned int id)
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

bool CTextModel::readStringValue(CFields& node, const tToken& token)
{
    std::string bytes;
    if (!unescape(token, bytes))
        return false;
    startValue(node);
    node.setValue(bytes);
    return finishValue(node, token.m_nBegin, token.m_nEnd);
}

}  // namespace murv::tests
