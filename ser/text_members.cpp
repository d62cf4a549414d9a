// ser/text_members.cpp - members of field sets and elements of arrays.
//
// Nearly all of a document is members, and most of these are read by the fast path; without it, real documents take 1.8
// to 1.9 times as long to load. Whatever it does not know it leaves to the general path, from the same place, so that
// there is one set of messages.
//
// Three functions that every member goes through are inline by force: compilers find them too long, and with calls real
// documents take 1.08 to 1.2 times as long.

#include <cstring>
#include <utility>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/text/byte_scan.h"
#include "core/text/number_scan.h"
#include "core/throw.h"
#include "io/load_messages.h"
#include "io/open_container.h"
#include "ser/integer_mark.h"
#include "ser/text_lexer.h"
#include "ser/text_messages.h"

namespace murv::detail
{

namespace
{

/// The message for a token where a separator is missing. After a scalar "(" would be a packet expression that comes too
/// late; after a container there cannot be one at all.
const char* message4Separator(const char* valueEnd, const tTokenInfo& token, const char* message)
{
    const bool late = token.m_eType == TT_peiBegin && valueEnd[-1] != '}' && valueEnd[-1] != ']';
    return late ? s_cpNoOpenMember : message;
}

/// Takes a step of the general path with a copy of the cursor, so that the cursor of the fast path stays in a register.
/// A variable whose own address is given away is stored and loaded again around every call: without the copy, arrays of
/// numbers took a fifth longer to load.
template <typename tStep>
bool takeGeneralPath(const char*& p, tStep&& step)
{
    const char* copy = p;
    const bool done = step(copy);
    p = copy;
    return done;
}

}  // namespace

// The fast path. `member` was just made, and is no member that is read again.

// The name of most members: no ID, no escape, and "=" next.
inline bool CTextParser::loadNameFast(const char*& p, tTokenInfo& token)
{
    if (p == m_pEnd || *p != '"')
        return false;
    const char* const begin = p + 1;
    const char* const end = findStringStop(begin, m_pEnd);
    if (end == m_pEnd || *end != '"')
        return false;
    const char* const assign = skipBlanks(end + 1, m_pEnd);
    if (assign == m_pEnd || *assign != '=')
        return false;
    token = {TT_string, p, end + 1};
    m_strName = {begin, static_cast<std::size_t>(end - begin)};
    p = assign + 1;
    return true;
}

// The value of most members that are no containers: it begins here, without comment or packet expression.
[[gnu::always_inline]] inline bool CTextParser::loadValueFast(const char*& p, CFields& member)
{
    switch (type4Byte(*p))
    {
    case TT_number: return loadNumberFast(p, member);
    case TT_string: return loadStringFast(p, member);
    case TT_true: return loadWordFast(p, member, "true", DT_bool, true);
    case TT_false: return loadWordFast(p, member, "false", DT_bool, false);
    case TT_null: return loadWordFast(p, member, "null", DT_null, false);
    case TT_fieldsEnd:
    case TT_arrayEnd:
    case TT_comma: return loadEmptyFast(p, member);
    default: return false;
    }
}

inline bool CTextParser::loadNumberFast(const char*& p, CFields& member)
{
    if (*p == s_ccOtherInteger && m_bLossless) [[unlikely]]
        return false;  // it may be marked
    tScannedNumber number;
    const char* const end = scanNumberToken(p, m_pEnd, number);
    tFieldAccess::setType(member, number.m_eType).m_ullValue = number.m_uValue.m_ullValue;
    finishFast(p, member, end);
    return true;
}

inline bool CTextParser::loadStringFast(const char*& p, CFields& member)
{
    const char* const begin = p + 1;
    const char* const end = findStringStop(begin, m_pEnd);
    if (end == m_pEnd || *end != '"' || static_cast<std::size_t>(end - begin) > s_cuiLongestCodes)
        return false;
    bool isPooled = false;
    const char* const codes =
        duplicatePrefixedStream(m_tLoad.m_tNodeStack.pool(), begin, static_cast<unsigned int>(end - begin), isPooled);
    tFieldAccess::setType(member, DT_codelist, true, isPooled).m_pData = codes;
    finishFast(p, member, end + 1);
    return true;
}

inline bool CTextParser::loadWordFast(const char*& p, CFields& member, std::string_view word, E_DataType type,
                                      bool value)
{
    if (static_cast<std::size_t>(m_pEnd - p) < word.size() || std::memcmp(p, word.data(), word.size()) != 0)
        return false;
    tFieldAccess::setType(member, type) = boolValue(value);
    finishFast(p, member, p + word.size());
    return true;
}

inline bool CTextParser::loadEmptyFast(const char* p, CFields& member)
{
    if (!m_bEmptyNull)
        return false;
    finishFast(p, member, p);
    setEmptyOffsets(member, p);
    return true;
}

// A container in a container, without what the general path keeps of values that were read before.
template <E_DataType type>
inline bool CTextParser::loadContainerFast(const char*& p, CFields& member)
{
    tFieldAccess::setType(member, type).m_pFV = CFieldVector::empty();  // it had no value
    tFieldAccess::setOffsetStart(member, offset(p));
    m_bPeiAllowed = false;
    m_tLoad.m_vStack.push_back(&member);
    ++m_tLoad.m_iDepth;
    const char* copy = p + 1;  // see takeGeneralPath
    const bool done = loadMembers<type>(copy, member, false);
    p = copy;
    --m_tLoad.m_iDepth;
    m_tLoad.m_vStack.pop_back();
    return done;
}

inline void CTextParser::finishFast(const char*& p, CFields& member, const char* end)
{
    tFieldAccess::setOffsets(member, offset(p), offset(end));
    m_bPeiAllowed = false;
    noteValue(member, end);
    p = end;
}

// "," or the end, when one of them is the next byte that is no blank.
inline bool CTextParser::loadSeparatorFast(const char*& p, char end, bool& more) const
{
    const char* const at = skipBlanks(p, m_pEnd);
    if (at == m_pEnd || (*at != ',' && *at != end))
        return false;
    more = *at == ',';
    p = at + 1;
    return true;
}

// Both paths.

template <E_DataType type>
bool CTextParser::loadMembers(const char*& cursor, CFields& node, bool commented)
{
    constexpr bool isArray = type == DT_array;
    constexpr char end = isArray ? ']' : '}';
    COpenContainer open(m_tLoad, node);
    bool more = !m_bLossless || !isEmptyContainer(cursor, end);
    if (!more && m_bComments && !m_strComment.empty())
        giveComments(node, commented);  // the brackets hold nothing else that could have them
    bool done = true;
    const char* p = cursor;  // the cursor itself, in a register; see takeGeneralPath
    while (done && more)
    {
        skipSpaces(p);
        done = isArray ? loadElement(p, open.members()) : loadFieldMember(p, open.members());
        if (done && !loadSeparatorFast(p, end, more))
            done = takeGeneralPath(p, [this, &more](const char*& at) {
                return isArray ? loadArraySeparator(at, more) : loadFieldSeparator(at, more);
            });
    }
    cursor = p;
    noteValue(node, p);  // before the members move: no need to follow the last of them
    open.close();
    tFieldAccess::setOffsetEnd(node, offset(p));
    return done;
}

[[gnu::always_inline]] inline bool CTextParser::loadFieldMember(const char*& p, CMemberBuilder& members)
{
    unsigned int id = 0;
    tTokenInfo token;
    if (!loadNameFast(p, token) && !takeGeneralPath(p, [&](const char*& at) { return loadNameGeneral(at, token, id); }))
        return false;
    CFields* const member = addMember(members, id);
    if (member == nullptr)
        return addError(s_cpNotAdded, token);
    skipSpaces(p);
    if (m_tLoad.m_eMember == tLoad::MS_reread) [[unlikely]]
        return takeGeneralPath(p, [&](const char*& at) { return loadValueGeneral(at, *member, TT_fieldsEnd); });
    return loadMemberValue(p, *member, TT_fieldsEnd);
}

inline bool CTextParser::loadElement(const char*& p, CMemberBuilder& members)
{
    CFields& element = members.appendElement();
    m_tLoad.m_eMember = tLoad::MS_added;
    return loadMemberValue(p, element, TT_arrayEnd);
}

[[gnu::always_inline]] inline bool CTextParser::loadMemberValue(const char*& p, CFields& member, E_TokenType closing)
{
    if (p != m_pEnd && isValueAlone()) [[likely]]
    {
        if (*p == '[')
            return loadContainerFast<DT_array>(p, member) || recover4Error(p, closing);
        if (*p == '{')
            return loadContainerFast<DT_fields>(p, member) || recover4Error(p, closing);
        if (loadValueFast(p, member))
            return true;
    }
    return takeGeneralPath(p, [&](const char*& at) { return loadValueGeneral(at, member, closing); });
}

inline CFields* CTextParser::addMember(CMemberBuilder& members, unsigned int id)
{
    if (id == 0 && !m_bDuplicates)
    {
        if (CFields* const member = members.appendNew(m_strName))
        {
            m_tLoad.m_eMember = tLoad::MS_added;
            return member;
        }
    }
    return addMemberGeneral(id);
}

CFields* CTextParser::addMemberGeneral(unsigned int id)
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

/// Reads the end of a container, also after comments, if nothing stands before it; else nothing but comments.
bool CTextParser::isEmptyContainer(const char*& p, char end)
{
    skipSpaces(p);
    const char* const first = p;
    tTokenInfo token{TT_comment, first, first};
    while (p != m_pEnd && *p == '/' && token.m_eType == TT_comment)
    {
        loadToken(p, token);
        skipSpaces(p);
    }
    if (p != m_pEnd && *p == end && token.m_eType == TT_comment)
    {
        ++p;
        return true;
    }
    // Comments that are not tolerated before a value are met again, and are an error there.
    if (!m_bTolerant || token.m_eType != TT_comment)
        p = first;
    return false;
}

// The general path.

template <E_DataType type>
bool CTextParser::loadMembersGeneral(const char*& p, const tTokenInfo& token)
{
    CFields& node = top();
    startValue(node);
    makeContainer(node, type);
    tFieldAccess::setOffsetStart(node, offset(token.m_pBegin));
    const bool done = loadMembers<type>(p, node, std::exchange(m_bCommented, false));
    finishKind(node);
    return done;
}

bool CTextParser::loadFields(const char*& p, const tTokenInfo& token)
{
    return loadMembersGeneral<DT_fields>(p, token);
}

bool CTextParser::loadArray(const char*& p, const tTokenInfo& token)
{
    return loadMembersGeneral<DT_array>(p, token);
}

bool CTextParser::loadNameGeneral(const char*& p, tTokenInfo& token, unsigned int& id)
{
    loadToken(p, token);
    skipComments(p, token);
    return loadHead(p, token, false, id);
}

// `member` is the last one added, or one that is read again.
bool CTextParser::loadValueGeneral(const char*& p, CFields& member, E_TokenType closing)
{
    return loadOneValue(p, member) || recover4Error(p, closing);
}

bool CTextParser::loadOneValue(const char*& p, CFields& member)
{
    const E_TokenType type = p == m_pEnd ? TT_end : type4Byte(*p);
    if (isValueAlone() && type >= TT_string && type <= TT_null)
    {
        tTokenInfo token;
        loadToken(p, token);
        return loadScalar(p, member, token);
    }
    m_bPeiAllowed = true;
    m_tLoad.m_vStack.push_back(&member);
    const bool done = loadFieldInfo(p, false);
    m_tLoad.m_vStack.pop_back();
    return done;
}

// "," or the end after a member, also after comments.
bool CTextParser::loadFieldSeparator(const char*& p, bool& more)
{
    const char* const valueEnd = p;
    tTokenInfo token;
    loadToken(p, token);
    if (token.m_eType != TT_fieldsEnd && token.m_eType != TT_comma && token.m_eType != TT_comment)
        return addErrorAndRecover(p, message4Separator(valueEnd, token, s_cpNoFieldsEnd), token, TT_fieldsEnd);
    skipComments(p, token);
    if (token.m_eType != TT_fieldsEnd && token.m_eType != TT_comma)
        return addError(message4Separator(valueEnd, token, s_cpNoComma), token);
    more = token.m_eType == TT_comma;
    return true;
}

bool CTextParser::loadArraySeparator(const char*& p, bool& more)
{
    const char* const valueEnd = p;
    tTokenInfo token;
    loadToken(p, token);
    skipComments(p, token);
    more = token.m_eType == TT_comma;
    if (!more && token.m_eType != TT_arrayEnd)
        return addErrorAndRecover(p, message4Separator(valueEnd, token, s_cpNoArrayEnd), token, TT_arrayEnd);
    return true;
}

}  // namespace murv::detail
