// ber/body_source.h - the bytes of a body, deciphered slice by slice.
//
// A reader looks at bytes in a window that moves along the body, so that they are read while hot in the cache and the
// memory needed does not grow with the file. Places are told as offsets in the deciphered body.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "ber/cipher/cipher.h"
#include "ber/cipher/seed.h"
#include "ber/cipher/wipe.h"
#include "ber/layout.h"

namespace murv::detail
{

class CBodySource
{
public:
    /// \param body  enciphered; outlives this
    /// Throws std::bad_alloc.
    CBodySource(std::string_view body, E_CipherType cipher);
    CBodySource(const CBodySource&) = delete;
    CBodySource& operator=(const CBodySource&) = delete;
    ~CBodySource();

    /// Sets the key of a cipher that needs one. \return false when the cipher refuses it
    bool setKey(std::string_view key);

    /// Looks ahead: behind this, `s_cnAhead` bytes are in the window, or all that the body still has. What `cursor`
    /// gave before is void.
    void lookAhead()
    {
        if (inWindow() < s_cnAhead && !m_bEnded) [[unlikely]]
            refill();
    }
    /// The next byte, and the number of bytes that lie side by side from there on.
    const char* cursor() const
    {
        return m_pCursor;
    }
    std::size_t inWindow() const
    {
        return static_cast<std::size_t>(m_pWindowEnd - m_pCursor);
    }
    /// \pre so many bytes are in the window
    void advance(std::size_t count)
    {
        m_pCursor += count;
    }
    /// Offset of the next byte.
    std::size_t offset() const
    {
        return m_nOffset + static_cast<std::size_t>(m_pCursor - m_pWindow.get());
    }
    /// The body has no more bytes than this from the next one on; it may have fewer.
    std::size_t mostRemaining() const;
    /// Copies bytes, however many. \return false when the body ends before
    bool read(char* to, std::size_t count);
    bool skip(std::size_t count);

    static constexpr std::size_t s_cnAhead = 512;
    static_assert(s_cnAhead >= s_cnLongestFixedPart);

private:
    static constexpr std::size_t s_cnTextSlice = 32768;  // of VERNAM text; whole groups, and whole blocks of SEED
    static_assert(s_cnTextSlice % 4 == 0 && s_cnTextSlice % s_cuiSeedBlock == 0);

    void refill();
    std::size_t decipher(char* to, std::size_t textSize);

    const char* m_pText;  // what is not deciphered yet
    const char* m_pTextEnd;
    const E_CipherType m_eCipher;
    bool m_bEnded = false;  // everything that can be deciphered is
    std::size_t m_nRoom;    // of the window
    std::unique_ptr<char[]> m_pWindow;
    char* m_pCursor;
    char* m_pWindowEnd;
    std::size_t m_nOffset = 0;  // of the window's first byte
    CWipedArea<std::uint32_t, s_cuiSeedSchedule> m_tSchedule;
};

}  // namespace murv::detail
