// syntax/null_remover.cpp - when the word null is needed.
#include "syntax/null_remover.h"

namespace murv::detail
{

void CNullRemover::begin()
{
    release();
    m_bBare = true;
    m_tSink.begin();
}

void CNullRemover::token(E_SyntaxRole role, const tTokenInfo& token)
{
    if (role == SR_comment && !m_bHasComments)
        return;
    if (m_bWaits && isNeededBefore(role))
        release();
    else if (m_bWaits)
    {
        m_bWaits = false;
        if (m_bEnded)
            m_tSink.end();
    }
    if (role == SR_scalar && token.m_eType == TT_null && m_nLevel != 0)
    {
        m_tNull = token;
        m_bWaits = true;
        m_bEnded = false;
        return;
    }
    switch (role)
    {
    case SR_comment: m_bCommented = true; break;
    case SR_open: ++m_nLevel; break;
    case SR_close: --m_nLevel; break;
    default: break;
    }
    if (role == SR_open || role == SR_comma)
        m_bCommented = false;
    m_bFirst = role == SR_open || (m_bFirst && role == SR_comment);
    m_bBare = false;
    m_tSink.token(role, token);
}

void CNullRemover::end()
{
    if (m_bWaits)
        m_bEnded = true;
    else
        m_tSink.end();
}

/// A comment must not lose the member that it stands at, and a container not its only one.
bool CNullRemover::isNeededBefore(E_SyntaxRole role) const
{
    if (!m_bBare)
        return false;
    return role == SR_comment || m_bCommented || (role == SR_close && m_bFirst);
}

void CNullRemover::release()
{
    if (!m_bWaits)
        return;
    m_bWaits = false;
    m_bFirst = m_bBare = false;
    m_tSink.token(SR_scalar, m_tNull);
    if (m_bEnded)
        m_tSink.end();
}

}  // namespace murv::detail
