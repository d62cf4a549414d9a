// ser/text_grammar.cpp - documents, field sets, arrays and members.

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/text/number_scan.h"
#include "core/throw.h"
#include "io/load_messages.h"
#include "io/open_container.h"
#include "murv/text.h"
#include "ser/text_lexer.h"

namespace murv::detail
{

namespace
{
constexpr const char* s_cpBadId = "Failed to loading for the #ID syntax";
constexpr const char* s_cpNoName = "Missing '}' or field member name";
constexpr const char* s_cpNoRootNumber = "Missing field member name";
constexpr const char* s_cpNoFieldsEnd = "Missing ',' or '}' in field declaration";
constexpr const char* s_cpNoComma = "Missing ','";
constexpr const char* s_cpNoArrayEnd = "Missing ',' or ']' in array declaration";
constexpr const char* s_cpNoOpenMember = "Add a field for this syntax";
constexpr const char* s_cpLongRootName = "Failed to set the root field name";
constexpr const char* s_cpScalarRoot = "A valid MURV document must be either an DT_array or an DT_fields type.";

/// What is wrong with a token where a separator is missed. Behind a scalar "(" would be a packet expression that comes
/// too late; behind a container there cannot be one at all.
const char* fault4Separator(const char* valueEnd, const tTokenInfo& token, const char* message)
{
    const bool late = token.m_eType == TT_peiBegin && valueEnd[-1] != '}' && valueEnd[-1] != ']';
    return late ? s_cpNoOpenMember : message;
}
}  // namespace

bool CTextParser::loadDocument(CFields& target)
{
    bool done = loadFieldInfo(true);
    m_bPeiAllowed = false;  // what follows the root's value is not looked at
    tTokenInfo token;
    skipCommentTokens(token);
    if (m_bComments && !m_strComment.empty())
        target.setComment(m_strComment, CP_after);
    if (m_tLoad.has(LCBC_ROOT_CONTAINER) && !tFieldAccess::isContainer(target))
        done = addError(s_cpScalarRoot, {TT_error, m_pBegin, m_pEnd});
    return done;
}

bool CTextParser::loadFieldInfo(bool root)
{
    if (!m_tLoad.isDepthLeft())
        m_tLoad.throwTooDeep("murv::CLoader4SER::loadFieldInfo");
    ++m_tLoad.m_iDepth;
    const bool done = loadValue(root);
    m_bPeiPending = false;
    --m_tLoad.m_iDepth;
    return done;
}

bool CTextParser::loadValue(bool root)
{
    bool commented = false;
    for (;;)
    {
        tTokenInfo token;
        skipCommentTokens(token);
        if (m_bComments && !m_strComment.empty())
        {
            giveComments(top(), commented);
            commented = true;
        }
        if (root && token.m_eType != TT_fieldsBegin)
        {
            if (!loadRootFieldInfo(token))
                return false;
            root = false;
            m_bPeiAllowed = true;
            continue;
        }
        switch (token.m_eType)
        {
        case TT_fieldsBegin: return loadChildFields(token);
        case TT_arrayBegin: return loadArray(token);
        case TT_peiBegin:
            if (!decodePEI(token))
                return false;
            continue;
        case TT_fieldsEnd:
        case TT_arrayEnd:
        case TT_comma:
            if (m_bEmptyNull)
                return loadEmptyValue();
            return loadScalar(top(), token);
        default: return loadScalar(top(), token);
        }
    }
}

bool CTextParser::loadScalar(CFields& node, const tTokenInfo& token)
{
    tSlot slot;
    bool done = false;
    switch (token.m_eType)
    {
    case TT_string: done = allotUnescapeString(node, token); break;
    case TT_number: done = decodeNumber(node, token); break;
    case TT_true:
    case TT_false:
        slot.m_eType = DT_bool;
        slot.m_uValue = boolValue(token.m_eType == TT_true);
        done = setSimple(node, token, slot);
        break;
    case TT_null: done = setSimple(node, token, slot); break;
    default:
        tFieldAccess::setOffsets(node, offset(token.m_pBegin), offset(token.m_pEnd));
        return addError(s_cpNoValue, token);
    }
    noteValue(node, m_pCursor);
    return done;
}

bool CTextParser::loadEmptyValue()
{
    --m_pCursor;  // the token is the caller's to read
    CFields& node = top();
    startValue(node);
    tFieldAccess::replaceValue(node, {});
    setEmptyOffsets(node, m_pCursor);
    finishKind(node);
    noteValue(node, m_pCursor);
    return true;
}

bool CTextParser::loadRootFieldInfo(tTokenInfo& token)
{
    unsigned int id = 0;
    if (!loadHead(token, true, id))
        return false;
    if (id != 0)
        top().setID(id);
    if (!m_strName.empty() && !top().setName(m_strName))
        return addError(s_cpLongRootName, token);
    return true;
}

bool CTextParser::loadHead(tTokenInfo& token, bool root, unsigned int& id)
{
    m_strName = {};
    if (token.m_eType == TT_id)
    {
        id = extractID(token);
        if (id == 0)
            return addError(s_cpBadId, token);
        loadToken(token);
        skipComments(token);
    }
    switch (token.m_eType)
    {
    case TT_string:
    case TT_number: return loadNameOrStepBack(token, root ? s_cpNoRootNumber : s_cpNoName);
    case TT_assign: return true;
    case TT_fieldsBegin:
    case TT_fieldsEnd:
    case TT_arrayBegin:
    case TT_peiBegin:
    case TT_comma:
    case TT_true:
    case TT_false:
    case TT_null: m_pCursor = token.m_pBegin; return true;
    default: return addErrorAndRecover(s_cpNoName, token, TT_fieldsEnd);
    }
}

bool CTextParser::loadNameOrStepBack(const tTokenInfo& token, const char* numberRefused)
{
    const bool clean = m_bClean;
    if (!followedByAssign(token))
    {
        m_pCursor = token.m_pBegin;
        return true;
    }
    if (token.m_eType == TT_number)
    {
        if (!m_tLoad.has(LCBC_NUMBER_NAME))
            return addErrorAndRecover(numberRefused, token, TT_fieldsEnd);
        CFields number;
        atonInField(token.m_pBegin, static_cast<unsigned int>(token.m_pEnd - token.m_pBegin), number);
        m_strNumberName = number.asString();
        m_strName = m_strNumberName;
        return true;
    }
    m_bClean = clean;
    return toUnescapeString(token, m_strName) || recover4Error(TT_fieldsEnd);
}

// Looks for the "=" behind a possible name, and reads it when it is there. Comments on the way are kept only then:
// else they are met again behind the value.
bool CTextParser::followedByAssign(const tTokenInfo& token)
{
    skipSpaces();
    if (m_pCursor != m_pEnd && *m_pCursor == '=')
    {
        ++m_pCursor;
        return true;
    }
    const bool keep = m_bComments;
    tTokenInfo next;
    m_bComments = false;
    skipCommentTokens(next);
    m_bComments = keep;
    if (next.m_eType != TT_assign)
        return false;
    if (keep)
    {
        m_pCursor = token.m_pEnd;
        skipCommentTokens(next);
    }
    return true;
}

template <E_DataType type, char end, CTextParser::fnLoadMember loadMember, CTextParser::fnLoadSeparator loadSeparator>
bool CTextParser::loadMembers(const tTokenInfo& token)
{
    CFields& node = top();
    startContainer(node, type, token);
    COpenContainer open(m_tLoad, node);
    bool more = !m_bLossless || !isEmptyContainer(end);
    bool done = true;
    const char* p = m_pCursor;
    while (done && more)
    {
        done = (this->*loadMember)(p);
        if (done && !loadPlainSeparator(p, end, more))
            done = (this->*loadSeparator)(p, more);
    }
    if (done)
        m_pCursor = p;
    open.close();
    tFieldAccess::setOffsetEnd(node, offset(m_pCursor));
    finishKind(node);
    noteValue(node, m_pCursor);
    return done;
}

/// Reads the end of a container, also behind comments, if nothing stands before it; else nothing but comments.
bool CTextParser::isEmptyContainer(char end)
{
    skipSpaces();
    const char* const first = m_pCursor;
    tTokenInfo token{TT_comment, first, first};
    while (m_pCursor != m_pEnd && *m_pCursor == '/' && token.m_eType == TT_comment)
    {
        loadToken(token);
        skipSpaces();
    }
    if (m_pCursor != m_pEnd && *m_pCursor == end && token.m_eType == TT_comment)
    {
        ++m_pCursor;
        return true;
    }
    // Comments that are not tolerated before a value are met again, and are an error there.
    if (!m_bTolerant || token.m_eType != TT_comment)
        m_pCursor = first;
    return false;
}

bool CTextParser::loadChildFields(const tTokenInfo& token)
{
    return loadMembers<DT_fields, '}', &CTextParser::loadChildField, &CTextParser::loadFieldSeparator>(token);
}

bool CTextParser::loadArray(const tTokenInfo& token)
{
    return loadMembers<DT_array, ']', &CTextParser::loadElement, &CTextParser::loadArraySeparator>(token);
}

bool CTextParser::loadChildField(const char*& p)
{
    unsigned int id = 0;
    tTokenInfo token;
    p = skipBlanks(p, m_pEnd);
    if (!loadPlainName(p, token))
    {
        m_pCursor = p;
        loadToken(token);
        skipComments(token);
        if (!loadHead(token, false, id))
            return false;
        p = m_pCursor;
    }
    CFields* const member = addChild(id);
    if (member == nullptr)
    {
        m_pCursor = p;
        return addError(s_cpNotAdded, token);
    }
    return loadMemberValue(p, *member, TT_fieldsEnd);
}

bool CTextParser::loadElement(const char*& p)
{
    CFields& member = m_tLoad.m_pBuilder->appendElement();
    m_tLoad.m_eMember = tLoad::MS_added;
    return loadMemberValue(p, member, TT_arrayEnd);
}

bool CTextParser::loadOtherValue(const char*& p, CFields& member, E_TokenType closing)
{
    m_pCursor = p;
    const bool done = loadChildValue(member) || recover4Error(closing);
    p = m_pCursor;
    return done;
}

CFields* CTextParser::addChild(unsigned int id)
{
    try
    {
        return m_tLoad.addMember(m_strName, id);
    }
    catch (const CMemoryError&)
    {
        m_tLoad.m_eFault = LF_memory;
        return nullptr;
    }
    catch (const CLogicError&)
    {
        return nullptr;
    }
}

// `member` is the last one added, or one that is read again.
bool CTextParser::loadChildValue(CFields& member)
{
    const E_TokenType type = m_pCursor == m_pEnd ? TT_end : type4Byte(*m_pCursor);
    const bool plain = isPlain();
    if (plain && (type == TT_arrayBegin || type == TT_fieldsBegin))
        return loadChildContainer(member, type);
    if (plain && type >= TT_string && type <= TT_null)
    {
        tTokenInfo token;
        loadToken(token);
        return loadScalar(member, token);
    }
    m_bPeiAllowed = true;
    m_tLoad.m_vStack.push_back(&member);
    const bool done = loadFieldInfo(false);
    m_tLoad.m_vStack.pop_back();
    return done;
}

bool CTextParser::loadChildContainer(CFields& member, E_TokenType type)
{
    const tTokenInfo token{type, m_pCursor, m_pCursor + 1};
    ++m_pCursor;
    m_tLoad.m_vStack.push_back(&member);
    ++m_tLoad.m_iDepth;
    const bool done = type == TT_arrayBegin ? loadArray(token) : loadChildFields(token);
    --m_tLoad.m_iDepth;
    m_tLoad.m_vStack.pop_back();
    return done;
}

// What stands behind a member, also behind comments: "," or the end.
bool CTextParser::loadFieldSeparator(const char*& p, bool& more)
{
    m_pCursor = p;
    tTokenInfo token;
    loadToken(token);
    if (token.m_eType != TT_fieldsEnd && token.m_eType != TT_comma && token.m_eType != TT_comment)
        return addErrorAndRecover(fault4Separator(p, token, s_cpNoFieldsEnd), token, TT_fieldsEnd);
    skipComments(token);
    if (token.m_eType != TT_fieldsEnd && token.m_eType != TT_comma)
        return addError(fault4Separator(p, token, s_cpNoComma), token);
    more = token.m_eType == TT_comma;
    p = m_pCursor;
    return true;
}

bool CTextParser::loadArraySeparator(const char*& p, bool& more)
{
    m_pCursor = p;
    tTokenInfo token;
    loadToken(token);
    skipComments(token);
    more = token.m_eType == TT_comma;
    if (!more && token.m_eType != TT_arrayEnd)
        return addErrorAndRecover(fault4Separator(p, token, s_cpNoArrayEnd), token, TT_arrayEnd);
    p = m_pCursor;
    return true;
}

}  // namespace murv::detail
