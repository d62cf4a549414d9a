// tests/support/huge_text.h - gigabytes of one letter that take little memory.
//
// A few pages are mapped again and again, so that the largest sizes can be tested on any machine.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <string_view>

namespace murv::tests
{

/// A text of one letter between two bytes of the caller's choice.
class CHugeText
{
public:
    CHugeText(std::size_t size, char first, char letter, char last) : m_nSize(size)
    {
        const int file = ::memfd_create("letters", 0);
        if (file < 0)
            return;
        const std::size_t mapped = (size + s_cnPiece - 1) / s_cnPiece * s_cnPiece;
        void* const memory = ::ftruncate(file, s_cnPiece) == 0
                                 ? ::mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_NORESERVE, file, 0)
                                 : MAP_FAILED;
        if (memory != MAP_FAILED)
        {
            m_pText = static_cast<char*>(memory);
            m_nMapped = mapped;
            fill(file, first, letter, last);
        }
        ::close(file);
    }
    CHugeText(const CHugeText&) = delete;
    CHugeText& operator=(const CHugeText&) = delete;
    ~CHugeText()
    {
        if (m_pText != nullptr)
            ::munmap(m_pText, m_nMapped);
    }

    /// Empty when the system did not give the memory.
    std::string_view view() const
    {
        return m_pText == nullptr ? std::string_view() : std::string_view(m_pText, m_nSize);
    }

private:
    static constexpr std::size_t s_cnPiece = std::size_t{64} << 20;

    void fill(int file, char first, char letter, char last)
    {
        for (std::size_t i = 0; i < s_cnPiece; ++i)
            m_pText[i] = letter;
        for (std::size_t at = 0; at < m_nMapped; at += s_cnPiece)
        {
            if (::mmap(m_pText + at, s_cnPiece, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_FIXED | MAP_NORESERVE, file,
                       0) == MAP_FAILED)
            {
                ::munmap(m_pText, m_nMapped);
                m_pText = nullptr;
                return;
            }
        }
        m_pText[0] = first;
        m_pText[m_nSize - 1] = last;
    }

    std::size_t m_nSize;
    std::size_t m_nMapped = 0;
    char* m_pText = nullptr;
};

}  // namespace murv::tests
