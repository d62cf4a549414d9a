// ber/body_sink.cpp - the body of a file, enciphered slice by slice.
//
// The block that the saver keeps holds a slice and, after it, the slice's enciphered form.
#include "ber/body_sink.h"

#include <cstdlib>
#include <new>

namespace murv::detail
{

CBodySink::CBodySink(tKeptBlock& block, std::string& file, E_CipherType cipher)
    : m_tBlock(block), m_strFile(file), m_tCipher(cipherRow(cipher))
{
    if (m_tBlock.m_nSize < s_cnRoom)
    {
        char* const memory = static_cast<char*>(std::realloc(m_tBlock.m_pData, s_cnRoom));
        if (memory == nullptr)
            throw std::bad_alloc();
        m_tBlock.m_pData = memory;
        m_tBlock.m_nSize = s_cnRoom;
    }
    m_pPlace = m_tBlock.m_pData;
    m_pEnd = m_pPlace + s_cnSlice;
}

CBodySink::~CBodySink()
{
    wipe(m_tBlock.m_pData, std::max(m_nTouched, filled()));
}

bool CBodySink::setKey(std::string_view password)
{
    return m_tCipher.m_pPrepareKey(m_tKey.data(), password.data(), password.size());
}

void CBodySink::put(std::string_view bytes)
{
    while (!bytes.empty())
    {
        const std::size_t piece = std::min(bytes.size(), s_cnMostRoom);
        std::memcpy(room(piece), bytes.data(), piece);
        m_pPlace += piece;
        bytes.remove_prefix(piece);
    }
}

std::uint64_t CBodySink::enciphered(E_CipherType cipher, std::uint64_t bodySize)
{
    const tCipherRow& row = cipherRow(cipher);
    return row.m_pTextSize(bodySize, bodySize < row.m_nShortest);
}

/// Enciphers as much as makes whole units; what is left over moves to the front.
void CBodySink::encipherSlice()
{
    const std::size_t left = filled() % s_cnPlainSliceUnit;
    const std::size_t whole = filled() - left;
    encipher(whole, false);
    std::memcpy(m_tBlock.m_pData, m_tBlock.m_pData + whole, left);
    m_pPlace = m_tBlock.m_pData + left;
    m_bFirst = false;
}

void CBodySink::finish()
{
    if (filled() == 0)
        return;
    encipher(filled(), m_bFirst && filled() < m_tCipher.m_nShortest);
    m_pPlace = m_tBlock.m_pData;
}

/// Appends the enciphered form of the slice's first bytes to the file.
void CBodySink::encipher(std::size_t length, bool filledUp)
{
    auto* const slice = reinterpret_cast<unsigned char*>(m_tBlock.m_pData);
    unsigned char* const text = slice + s_cnSlice;
    const std::size_t textSize = m_tCipher.m_pEncodeSlice({m_tKey.data(), text, slice, length, filledUp});
    m_strFile.append(reinterpret_cast<const char*>(text), textSize);
    m_nTouched = std::max(m_nTouched, filled());
}

}  // namespace murv::detail
