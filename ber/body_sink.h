// ber/body_sink.h - takes the bytes of a body and enciphers them slice by slice.
//
// A body never exists as a whole: a slice is filled, enciphered while it is hot in the cache and appended to the file.
// What is left in the slice is wiped at the end, whatever becomes of the saving.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "ber/cipher/cipher.h"
#include "ber/cipher/seed.h"
#include "ber/cipher/wipe.h"
#include "murv/saver.h"

namespace murv::detail
{

class CBodySink
{
public:
    /// \param block     memory for the slice, kept by the saver
    /// \param file      what enciphered bytes are appended to; not owned
    /// Throws std::bad_alloc.
    CBodySink(tKeptBlock& block, std::string& file, E_CipherType cipher);
    CBodySink(const CBodySink&) = delete;
    CBodySink& operator=(const CBodySink&) = delete;
    ~CBodySink();

    /// Sets the key of a cipher that needs one. \return false when the cipher refuses it
    bool setKey(std::string_view key);

    /// Room for at least `bytes` (at most s_cnMostRoom) bytes; ends with the next call.
    char* room(std::size_t bytes)
    {
        if (static_cast<std::size_t>(m_pEnd - m_pPlace) < bytes) [[unlikely]]
            encipherSlice();
        return m_pPlace;
    }
    /// Takes what the room was filled with up to `end`.
    void take(char* end)
    {
        m_pPlace = end;
    }
    /// Takes bytes of any number.
    void put(std::string_view bytes);
    /// Enciphers the rest.
    void finish();

    static constexpr std::size_t s_cnMostRoom = 1024;

    /// Size of an enciphered body.
    static std::uint64_t enciphered(E_CipherType cipher, std::uint64_t bodySize);

private:
    static constexpr std::size_t s_cnGroup = 48;  // both ciphers take slices of a multiple of this
    static constexpr std::size_t s_cnSlice = 512 * s_cnGroup;
    static constexpr std::size_t s_cnRoom = s_cnSlice + s_cnSlice / 3 * 4;

    void encipherSlice();
    unsigned char* slice() const
    {
        return reinterpret_cast<unsigned char*>(m_tBlock.m_pData);
    }
    /// Where a slice's enciphered form goes.
    unsigned char* text() const
    {
        return slice() + s_cnSlice;
    }
    void append(std::size_t textSize);

    tKeptBlock& m_tBlock;
    std::string& m_strFile;
    const E_CipherType m_eCipher;
    bool m_bFirst = true;  // no slice was enciphered yet
    char* m_pPlace;
    char* m_pEnd;
    std::size_t m_nTouched = 0;  // bytes of the slice that were ever filled
    CWipedArea<std::uint32_t, s_cuiSeedSchedule> m_tSchedule;
};

}  // namespace murv::detail
