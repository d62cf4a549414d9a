// syntax/grammar_recovery.cpp - commas, and how reading goes on after a mistake.
#include "ser/text_messages.h"
#include "syntax/grammar_reader.h"

namespace murv::detail
{

/// After a member: goes on to the next one, and closes the containers that end here.
void CGrammarReader::finishMember()
{
    while (!m_vOpen.empty())
    {
        if (isClosing(m_vOpen.back()))
        {
            closeContainer();
            continue;
        }
        if (m_tToken.m_eType == TT_comma)
            return pass(SR_comma);
        if (reportSeparator() || !recover())
            return;
    }
}

/// Says that neither a comma nor the end follows a member. \return whether another member does
bool CGrammarReader::reportSeparator()
{
    tOpen& open = m_vOpen.back();
    const char* message = open.m_bArray ? s_cpNoArrayEnd : m_bCommented ? s_cpNoComma : s_cpNoFieldsEnd;
    const char last = m_pValueEnd[-1];
    if (m_tToken.m_eType == TT_peiBegin && last != '}' && last != ']')
        message = s_cpNoOpenMember;
    const bool goesOnHere = goesOn(open);
    if (!goesOnHere || !open.m_bCommaMissed)
        fail(message, m_tToken);
    open.m_bCommaMissed = open.m_bArray;  // said once of an array whose elements stand side by side
    return goesOnHere;
}

/// Whether the token begins another member, so that only a comma is missing.
bool CGrammarReader::goesOn(const tOpen& open) const
{
    if (!open.m_bArray)
        return m_tToken.m_eType == TT_string || m_tToken.m_eType == TT_id;
    return (m_tToken.m_eType >= TT_string && m_tToken.m_eType <= TT_null) || m_tToken.m_eType == TT_fieldsBegin ||
           m_tToken.m_eType == TT_arrayBegin;
}

/// Skips to the next comma, or to the bracket that closes an open container; containers within do not count. The
/// containers inside that one are left. \return false at the end of the text; then all are
bool CGrammarReader::recover()
{
    std::size_t nested = 0;
    while (m_tToken.m_eType != TT_end)
    {
        const bool isClose = m_tToken.m_eType == TT_fieldsEnd || m_tToken.m_eType == TT_arrayEnd;
        const bool isArray = m_tToken.m_eType == TT_arrayEnd;
        if (nested == 0 && m_tToken.m_eType == TT_comma)
            return true;
        if (nested == 0 && isClose && m_anOpen[isArray ? 1 : 0] != 0)
        {
            leaveTo(isArray);
            return true;
        }
        if (m_tToken.m_eType == TT_fieldsBegin || m_tToken.m_eType == TT_arrayBegin)
            ++nested;
        else if (isClose && nested != 0)
            --nested;
        pass(SR_skipped);
    }
    while (!m_vOpen.empty())
    {
        m_vOpen.pop_back();
        m_tSink.end();
    }
    m_anOpen[0] = m_anOpen[1] = 0;
    return false;
}

/// Leaves the containers inside the innermost one of a kind.
void CGrammarReader::leaveTo(bool isArray)
{
    while (m_vOpen.back().m_bArray != isArray)
    {
        --m_anOpen[m_vOpen.back().m_bArray ? 1 : 0];
        m_vOpen.pop_back();
        m_tSink.end();
    }
}

}  // namespace murv::detail
