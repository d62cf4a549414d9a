// wipe.h - zeroing of key material that the compiler may not leave out.
//
// A plain memset before the end of a function is a dead store and is removed. The barrier below tells the compiler that
// the bytes are looked at afterwards; where there is no such barrier the bytes are written through a volatile pointer.

#pragma once

#include <cstddef>
#include <cstring>

namespace murv::detail
{

/// Overwrites `len` bytes with zeros, also when nothing reads them later. Null is accepted when `len` is 0.
inline void wipe(void* bytes, std::size_t len)
{
    if (len == 0)
        return;
#if defined(__GNUC__) || defined(__clang__)
    std::memset(bytes, 0, len);
    __asm__ __volatile__("" : : "r"(bytes) : "memory");
#else
    volatile unsigned char* byte = static_cast<volatile unsigned char*>(bytes);
    for (std::size_t i = 0; i < len; ++i)
        byte[i] = 0;
#endif
}

/// A local work area for key material or plain text: zero when made, wiped when it goes out of scope.
template <class T, std::size_t N>
class CWipedArea
{
public:
    CWipedArea() = default;
    CWipedArea(const CWipedArea&) = delete;
    CWipedArea& operator=(const CWipedArea&) = delete;
    ~CWipedArea()
    {
        wipe(m_aItems, sizeof m_aItems);
    }

    T* data()
    {
        return m_aItems;
    }
    const T* data() const
    {
        return m_aItems;
    }

private:
    T m_aItems[N] = {};
};

}  // namespace murv::detail
