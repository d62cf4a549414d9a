// ber/body_source.h - the bytes of a body, deciphered slice by slice.
//
// A reader looks at bytes in a window that moves along the body, so that they are read while hot in the cache and the
// memory needed does not grow with the file. Places are offsets in the deciphered body.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "ber/cipher/cipher.h"
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

    /// To be called before the first byte. \return false when the cipher refuses the password
    bool setKey(std::string_view password);

    /// Makes sure that `s_cnAhead` bytes are in the window, or all that the body still has. What `cursor` gave before
    /// is void.
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
    /// \pre the window holds `count` bytes
    void advance(std::size_t count)
    {
        m_pCursor += count;
    }
    /// Offset of the next byte.
    std::size_t offset() const
    {
        return m_nOffset + static_cast<std::size_t>(m_pCursor - m_pWindow.get());
    }
    /// An upper bound of the bytes that the body still has.
    std::size_t mostRemaining() const
    {
        return inWindow() + (m_bEnded ? 0 : static_cast<std::size_t>(m_pTextEnd - m_pText));
    }
    /// Copies any number of bytes. \return false when the body ends before
    bool read(char* to, std::size_t count)
    {
        return pass(count, to);
    }
    /// The same without copying.
    bool skip(std::size_t count)
    {
        return pass(count, nullptr);
    }

    static constexpr std::size_t s_cnAhead = 512;
    static_assert(s_cnAhead >= s_cnLongestFixedPart);

private:
    static constexpr std::size_t s_cnTextSlice = 32768;
    static_assert(s_cnTextSlice % s_cnTextSliceUnit == 0);

    void refill();
    std::size_t decipher(char* to, std::size_t textSize);
    bool pass(std::size_t count, char* copy);

    const char* m_pText;  // what is not deciphered yet
    const char* m_pTextEnd;
    const tCipherRow& m_tCipher;
    bool m_bEnded = false;  // everything that can be deciphered is
    std::size_t m_nRoom;    // of the window
    std::unique_ptr<char[]> m_pWindow;
    char* m_pCursor;
    char* m_pWindowEnd;
    std::size_t m_nOffset = 0;  // of the window's first byte
    tCipherKey m_tKey;
};

}  // namespace murv::detail
