// ser/text_grammar.cpp - the document, values on the general path, and what stands before them.

#include "core/field_access.h"
#include "core/field_vector.h"
#include "ser/text_lexer.h"
#include "ser/text_messages.h"

namespace murv::detail
{

bool CTextParser::loadDocument(CFields& target)
{
    const char* p = m_pBegin;
    bool done = loadFieldInfo(p, true);
    m_bPeiAllowed = false;  // of what follows the root's value, only comments are read
    tTokenInfo token;
    skipCommentTokens(p, token);
    if (m_bComments && !m_strComment.empty())
        target.setComment(m_strComment, CP_after);
    if (m_tLoad.has(LCBC_ROOT_CONTAINER) && !tFieldAccess::isContainer(target))
        done = addError(s_cpScalarRoot, {TT_error, m_pBegin, m_pEnd});
    return done;
}

bool CTextParser::loadFieldInfo(const char*& p, bool root)
{
    if (!m_tLoad.isDepthLeft())
        m_tLoad.throwTooDeep("murv::CLoader4SER::loadFieldInfo");
    ++m_tLoad.m_iDepth;
    const bool done = loadValue(p, root);
    m_bPeiPending = false;
    --m_tLoad.m_iDepth;
    return done;
}

bool CTextParser::loadValue(const char*& p, bool root)
{
    bool commented = false;
    for (;;)
    {
        tTokenInfo token;
        skipCommentTokens(p, token);
        if (m_bComments && !m_strComment.empty())
        {
            giveComments(top(), commented);
            commented = true;
        }
        if (root && token.m_eType != TT_fieldsBegin)
        {
            if (!loadRootFieldInfo(p, token))
                return false;
            root = false;
            m_bPeiAllowed = true;
            continue;
        }
        switch (token.m_eType)
        {
        case TT_fieldsBegin: m_bCommented = commented; return loadFields(p, token);
        case TT_arrayBegin: m_bCommented = commented; return loadArray(p, token);
        case TT_peiBegin:
            if (!decodePEI(token))
                return false;
            continue;
        case TT_fieldsEnd:
        case TT_arrayEnd:
        case TT_comma:
            if (m_bEmptyNull)
                return loadEmptyValue(p);
            return loadScalar(p, top(), token);
        default: return loadScalar(p, top(), token);
        }
    }
}

bool CTextParser::loadEmptyValue(const char*& p)
{
    --p;  // the token is the caller's to read
    CFields& node = top();
    startValue(node);
    tFieldAccess::replaceValue(node, {});
    setEmptyOffsets(node, p);
    finishKind(node);
    noteValue(node, p);
    return true;
}

bool CTextParser::loadRootFieldInfo(const char*& p, tTokenInfo& token)
{
    unsigned int id = 0;
    if (!loadHead(p, token, true, id))
        return false;
    if (id != 0)
        top().setID(id);
    if (!m_strName.empty() && !top().setName(m_strName))
        return addError(s_cpLongRootName, token);
    return true;
}

bool CTextParser::loadHead(const char*& p, tTokenInfo& token, bool root, unsigned int& id)
{
    m_strName = {};
    if (token.m_eType == TT_id)
    {
        id = extractID(token);
        if (id == 0)
            return addError(s_cpBadTextId, token);
        loadToken(p, token);
        skipComments(p, token);
    }
    switch (token.m_eType)
    {
    case TT_string:
    case TT_number: return loadNameOrStepBack(p, token, root ? s_cpNoRootNumber : s_cpNoName);
    case TT_assign: return true;
    case TT_fieldsBegin:
    case TT_fieldsEnd:
    case TT_arrayBegin:
    case TT_peiBegin:
    case TT_comma:
    case TT_true:
    case TT_false:
    case TT_null: p = token.m_pBegin; return true;
    default: return addErrorAndRecover(p, s_cpNoName, token, TT_fieldsEnd);
    }
}

bool CTextParser::loadNameOrStepBack(const char*& p, const tTokenInfo& token, const char* numberRefused)
{
    const bool clean = m_bClean;
    if (!followedByAssign(p, token))
    {
        p = token.m_pBegin;
        return true;
    }
    if (token.m_eType == TT_number)
    {
        if (!m_tLoad.has(LCBC_NUMBER_NAME))
            return addErrorAndRecover(p, numberRefused, token, TT_fieldsEnd);
        CFields number;
        atonInField(token.m_pBegin, static_cast<unsigned int>(token.m_pEnd - token.m_pBegin), number);
        m_strNumberName = number.asString();
        m_strName = m_strNumberName;
        return true;
    }
    m_bClean = clean;
    return toUnescapeString(token, m_strName) || recover4Error(p, TT_fieldsEnd);
}

// Looks for the "=" after a possible name, and reads it when it is there. Comments on the way are kept only then: else
// they are met again after the value.
bool CTextParser::followedByAssign(const char*& p, const tTokenInfo& token)
{
    skipSpaces(p);
    if (p != m_pEnd && *p == '=')
    {
        ++p;
        return true;
    }
    const bool keep = m_bComments;
    tTokenInfo next;
    m_bComments = false;
    skipCommentTokens(p, next);
    m_bComments = keep;
    if (next.m_eType != TT_assign)
        return false;
    if (keep)
    {
        p = token.m_pEnd;
        skipCommentTokens(p, next);
    }
    return true;
}

}  // namespace murv::detail
