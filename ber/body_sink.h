// ber/body_sink.h - takes the bytes of a body and enciphers them slice by slice.
//
// A body never exists as a whole: a slice is filled, enciphered while it is hot in the cache, and appended to the file.
// What is left in the slice is wiped at the end, whatever becomes of the saving.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "ber/cipher/cipher.h"
#include "murv/saver.h"

namespace murv::detail
{

class CBodySink
{
public:
    /// \param block  memory for the slice, kept by the saver
    /// \param file   what enciphered bytes are appended to; not owned
    /// Throws std::bad_alloc.
    CBodySink(tKeptBlock& block, std::string& file, E_CipherType cipher);
    CBodySink(const CBodySink&) = delete;
    CBodySink& operator=(const CBodySink&) = delete;
    ~CBodySink();

    /// To be called before the first byte. \return false when the cipher refuses the password
    bool setKey(std::string_view password);

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
    /// Takes any number of bytes.
    void put(std::string_view bytes);
    /// Enciphers the rest.
    void finish();

    static constexpr std::size_t s_cnMostRoom = 1024;

    /// Size of an enciphered body.
    static std::uint64_t enciphered(E_CipherType cipher, std::uint64_t bodySize);

private:
    static constexpr std::size_t s_cnSlice = 512 * s_cnPlainSliceUnit;
    static constexpr std::size_t s_cnTextRoom = s_cnSlice / 3 * 4;  // no cipher needs more
    static constexpr std::size_t s_cnRoom = s_cnSlice + s_cnTextRoom;

    void encipherSlice();
    void encipher(std::size_t length, bool filledUp);
    std::size_t filled() const
    {
        return static_cast<std::size_t>(m_pPlace - m_tBlock.m_pData);
    }

    tKeptBlock& m_tBlock;
    std::string& m_strFile;
    const tCipherRow& m_tCipher;
    bool m_bFirst = true;  // no slice was enciphered yet
    char* m_pPlace;
    char* m_pEnd;
    std::size_t m_nTouched = 0;  // bytes of the slice that were ever filled
    tCipherKey m_tKey;
};

}  // namespace murv::detail
