// packet/packet_buffer.h - the packet that is being made.
//
// Most packets are short: they are put together on the stack and become a string, of exactly their size, at the end.
#pragma once

#include <cstddef>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace murv::detail
{

/// Appending throws std::bad_alloc when the packet does not fit the memory.
class CPacketBuffer
{
public:
    static constexpr std::size_t s_cnSlack = 32;  // bytes that may always be written after the last one

    /// \name Appending from outside
    /// Whoever appends many short pieces keeps the end of the packet in a register.
    /// @{
    /// Where the next byte goes. s_cnSlack bytes may be written from any place up to limit() on.
    char* end()
    {
        return m_cNear + m_nNear;
    }
    const char* limit() const
    {
        return m_cNear + s_cnNear;
    }
    /// Makes all bytes before `end` part of the packet.
    void setEnd(const char* end)
    {
        m_nNear = 0;
        advance(static_cast<std::size_t>(end - m_cNear));
    }
    /// @}

    std::size_t size() const
    {
        return m_strFar.size() + m_nNear;
    }
    void put(std::string_view bytes)
    {
        if (bytes.size() > s_cnNear - m_nNear)
            spill(bytes.size()).append(bytes);
        else if (!bytes.empty())
        {
            std::memcpy(m_cNear + m_nNear, bytes.data(), bytes.size());
            m_nNear += bytes.size();
        }
    }
    /// Appends the first `count` bytes of a block of 32: all 32 are copied, which needs no loop.
    void putOf32(const char* block, std::size_t count)
    {
        std::memcpy(m_cNear + m_nNear, block, s_cnSlack);
        advance(count);
    }
    void fill(std::size_t count, char byte)
    {
        if (count > s_cnSlack)
        {
            spill(count).append(count, byte);
            return;
        }
        std::memset(m_cNear + m_nNear, byte, s_cnSlack);
        advance(count);
    }
    /// All that was appended so far, as one string.
    std::string& text()
    {
        return m_nNear == 0 ? m_strFar : spill(0);
    }
    /// Hands the packet out.
    std::string take()
    {
        return m_strFar.empty() ? std::string(m_cNear, m_nNear) : std::move(text());
    }

private:
    static constexpr std::size_t s_cnNear = 512;

    void advance(std::size_t count)
    {
        m_nNear += count;
        if (m_nNear > s_cnNear)
            spill(0);
    }
    /// The string with all that came before, and room for `count` bytes more.
    std::string& spill(std::size_t count)
    {
        if (count > m_strFar.max_size() - m_strFar.size() - m_nNear)
            throw std::bad_alloc();
        m_strFar.append(m_cNear, m_nNear);
        m_nNear = 0;
        return m_strFar;
    }

    std::size_t m_nNear = 0;
    std::string m_strFar;
    char m_cNear[s_cnNear + s_cnSlack];
};

}  // namespace murv::detail
