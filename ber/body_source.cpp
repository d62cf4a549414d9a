// ber/body_source.cpp - the body of a file, deciphered slice by slice.
//
// One window holds what is being read; it is wiped when it held what a password protects.
#include "ber/body_source.h"

#include <cstring>

#include "ber/cipher/vernam.h"

namespace murv::detail
{

CBodySource::CBodySource(std::string_view body, E_CipherType cipher)
    : m_pText(body.data()), m_pTextEnd(body.data() + body.size()), m_eCipher(cipher)
{
    // Deciphering never gives more bytes than it takes.
    m_nRoom = s_cnAhead + std::min(body.size(), s_cnTextSlice);
    m_pWindow.reset(new char[m_nRoom]);
    m_pCursor = m_pWindowEnd = m_pWindow.get();
}

CBodySource::~CBodySource()
{
    if (isCipherKeyNeeded(m_eCipher))
        wipe(m_pWindow.get(), m_nRoom);  // also what lies behind a last, shorter slice
}

bool CBodySource::setKey(std::string_view key)
{
    return SeedKeyFromPassword(m_tSchedule.data(), key.data(), key.size());
}

std::size_t CBodySource::mostRemaining() const
{
    if (m_bEnded)
        return inWindow();
    return inWindow() + static_cast<std::size_t>(m_pTextEnd - m_pText);
}

// The window holds less than s_cnAhead bytes here; they move to its front, and one slice goes behind them.
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
    if (m_eCipher != CT_vernam)
        return seedDecryptTo(m_tSchedule.data(), out, text, textSize);
    const std::size_t size = vernamDecodeTo(out, text, textSize);
    m_bEnded = size < vernamByteRoom(textSize);  // at a pad symbol or a foreign byte
    return size;
}

bool CBodySource::read(char* to, std::size_t count)
{
    for (;;)
    {
        const std::size_t piece = std::min(count, inWindow());
        if (piece != 0)
            std::memcpy(to, m_pCursor, piece);
        m_pCursor += piece;
        to += piece;
        count -= piece;
        if (count == 0)
            return true;
        if (m_bEnded)
            return false;
        refill();
    }
}

bool CBodySource::skip(std::size_t count)
{
    for (;;)
    {
        const std::size_t piece = std::min(count, inWindow());
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
