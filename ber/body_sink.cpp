// ber/body_sink.cpp - the body of a file, enciphered slice by slice.
//
// A slice is enciphered while it is in the cache; plain text never exists as a whole.
#include "ber/body_sink.h"

#include <cstdlib>
#include <new>

#include "ber/cipher/vernam.h"

namespace murv::detail
{

static_assert(CBodySink::s_cnMostRoom >= s_cuiSeedBlock);

CBodySink::CBodySink(tKeptBlock& block, std::string& file, E_CipherType cipher)
    : m_tBlock(block), m_strFile(file), m_eCipher(cipher)
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
    m_nTouched = std::max(m_nTouched, static_cast<std::size_t>(m_pPlace - m_tBlock.m_pData));
    wipe(m_tBlock.m_pData, m_nTouched);
}

bool CBodySink::setKey(std::string_view key)
{
    return SeedKeyFromPassword(m_tSchedule.data(), key.data(), key.size());
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
    if (cipher == CT_vernam)
        return (bodySize + 2) / 3 * 4;
    return std::max<std::uint64_t>(bodySize, s_cuiSeedBlock);
}

// Whole groups only; what is over moves to the front.
void CBodySink::encipherSlice()
{
    const auto filled = static_cast<std::size_t>(m_pPlace - m_tBlock.m_pData);
    const std::size_t whole = filled / s_cnGroup * s_cnGroup;
    if (m_eCipher == CT_vernam)
        append(vernamEncodeTo(text(), slice(), whole));
    else
    {
        seedEncryptBlocks(m_tSchedule.data(), text(), slice(), whole / s_cuiSeedBlock);
        append(whole);
    }
    std::memcpy(m_tBlock.m_pData, m_tBlock.m_pData + whole, filled - whole);
    m_pPlace = m_tBlock.m_pData + (filled - whole);
    m_nTouched = std::max(m_nTouched, filled);
    m_bFirst = false;
}

// SEED fills up a body that is shorter than one block; the odd bytes behind the blocks of a longer one stay as they
// are.
void CBodySink::finish()
{
    const auto filled = static_cast<std::size_t>(m_pPlace - m_tBlock.m_pData);
    if (filled == 0)
        return;
    if (m_eCipher == CT_vernam)
        append(vernamEncodeTo(text(), slice(), filled));
    else if (m_bFirst)
        append(seedEncryptTo(m_tSchedule.data(), text(), slice(), filled, false));
    else
    {
        const std::size_t blocks = filled / s_cuiSeedBlock;
        seedEncryptBlocks(m_tSchedule.data(), text(), slice(), blocks);
        std::memcpy(text() + blocks * s_cuiSeedBlock, slice() + blocks * s_cuiSeedBlock, filled % s_cuiSeedBlock);
        append(filled);
    }
    m_nTouched = std::max(m_nTouched, filled);
    m_pPlace = m_tBlock.m_pData;
}

void CBodySink::append(std::size_t textSize)
{
    m_strFile.append(reinterpret_cast<const char*>(text()), textSize);
}

}  // namespace murv::detail
