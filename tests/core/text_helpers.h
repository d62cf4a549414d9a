// tests/core/text_helpers.h - what the text tests share.
//
// Inputs stand in heap blocks of exactly their size, so that the address sanitizer sees one byte too many.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace murv::tests
{

/// A copy of a text in a block of its own, `offset` bytes after the block's beginning.
class CExactText
{
public:
    explicit CExactText(std::string_view text, std::size_t offset = 0)
        : m_pBlock(new char[offset + text.size()]), m_cnOffset(offset), m_cnSize(text.size())
    {
        if (!text.empty())
            std::memcpy(m_pBlock.get() + offset, text.data(), text.size());
    }

    const char* begin() const
    {
        return m_pBlock.get() + m_cnOffset;
    }
    const char* end() const
    {
        return begin() + m_cnSize;
    }
    std::size_t size() const
    {
        return m_cnSize;
    }

private:
    std::unique_ptr<char[]> m_pBlock;  // owned
    std::size_t m_cnOffset;
    std::size_t m_cnSize;
};

}  // namespace murv::tests
