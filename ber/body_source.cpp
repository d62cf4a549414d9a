// ber/body_source.cpp - the body of a file, deciphered slice by slice.
//
// One window holds what is being read; it is wiped when it held what a password protects.
#include "ber/body_source.h"

#include <cstring>

namespace murv::detail
{

CBodySource::CBodySource(std::string_view body, E_CipherType cipher)
    : m_pText(body.data()), m_pTextEnd(body.data() + body.size()), m_tCipher(cipherRow(cipher))
{
    // Deciphering never gives more bytes than it takes.
    m_nRoom = s_cnAhead + std::min(body.size(), s_cnTextSlice);
    m_pWindow.reset(new char[m_nRoom]);
    m_pCursor = m_pWindowEnd = m_pWindow.get();
}

CBodySource::~CBodySource()
{
    if (m_tCipher.m_bKeyNeeded)
        wipe(m_pWindow.get(),
             m_nRoom);  // also what earlier slices left after the end of the last one
}

bool CBodySource::setKey(std::string_view password)
{
    return m_tCipher.m_pPrepareKey(m_tKey.data(), password.data(), password.size());
}

// The window holds less than s_cnAhead bytes here; they move to its front, and one slice goes after them.
void CBodySource::refill()
{
    const std::size_t left = inWindow();
    m_nOffset = offset();
    std::memmove(m_pWindow.get(), m_pCursor, left);
    m_pCursor = m_pWindow.get();
    m_pWindowEnd = m_pCursor + left;
    m_pWindowEnd += decipher(m_pWindowEnd, std::min(static_cast<std::size_t>(m_pTextEnd - m_pText), s_cnTextSlice));
    m_bEnded = m_bEnded || m_pText == m_pTextEnd;
}

std::size_t CBodySource::decipher(char* to, std::size_t textSize)
{
    auto* const out = reinterpret_cast<unsigned char*>(to);
    const auto* const text = reinterpret_cast<const unsigned char*>(m_pText);
    m_pText += textSize;
    const std::size_t size = m_tCipher.m_pDecodeSlice({m_tKey.data(), out, text, textSize});
    m_bEnded = size < m_tCipher.m_pPlainSize(textSize);
    return size;
}

/// Steps over bytes, slice after slice. \param copy  where they go; null: nowhere
bool CBodySource::pass(std::size_t count, char* copy)
{
    for (;;)
    {
        const std::size_t piece = std::min(count, inWindow());
        if (copy != nullptr && piece != 0)
        {
            std::memcpy(copy, m_pCursor, piece);
            copy += piece;
        }
        m_pCursor += piece;
        count -= piece;
        if (count == 0)
            return true;
        if (m_bEnded)
            return false;
        refill();
    }
}

}  // namespace murv::detail
