// io/text_sink.h - where savers write: a growing string, or slices for a stream.
//
// A writer asks for room, fills it by pointer and says how far it came, so that a token costs one comparison and no
// call. What happens to a full room is up to the sink. Nobody reads a sink back.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <ostream>
#include <string>
#include <string_view>

#include "murv/saver.h"

namespace murv::detail
{

/// Takes text in order.
class ITextSink
{
public:
    ITextSink(const ITextSink&) = delete;
    ITextSink& operator=(const ITextSink&) = delete;
    virtual ~ITextSink() = default;

    /// Room for at least `bytes` bytes after what was taken; valid until the next call. Throws std::bad_alloc.
    char* room(std::size_t bytes)
    {
        if (static_cast<std::size_t>(m_pEnd - m_pPlace) < bytes) [[unlikely]]
            makeRoom(bytes);
        return m_pPlace;
    }
    /// Takes what the room was filled with up to `end`.
    void take(char* end)
    {
        m_pPlace = end;
    }
    void put(std::string_view text)
    {
        for (; text.size() > s_cnSlice4Put; text.remove_prefix(s_cnSlice4Put))
            putSlice(text.substr(0, s_cnSlice4Put));
        putSlice(text);
    }
    /// True when text was lost. Further text is lost too, and the writer may as well stop.
    bool failed() const
    {
        return m_bFailed;
    }

protected:
    /// The block is the saver's; it outlives the sink and may be replaced by a larger one.
    explicit ITextSink(tKeptBlock& block) : m_tBlock(block)
    {
        rewind();
    }

    virtual void makeRoom(std::size_t bytes) = 0;

    /// Grows the block to `size` bytes, keeping what it holds.
    void resize(std::size_t size)
    {
        const std::size_t held = pending();
        char* const data = static_cast<char*>(std::realloc(m_tBlock.m_pData, size));
        if (data == nullptr)
            throw std::bad_alloc();
        m_tBlock.m_pData = data;
        m_tBlock.m_nSize = size;
        m_pPlace = data + held;
        m_pEnd = data + size;
    }
    void rewind()
    {
        m_pPlace = m_tBlock.m_pData;
        m_pEnd = m_tBlock.m_pData + m_tBlock.m_nSize;
    }
    /// Bytes in the block.
    std::size_t pending() const
    {
        return static_cast<std::size_t>(m_pPlace - m_tBlock.m_pData);
    }
    std::size_t capacity() const
    {
        return m_tBlock.m_nSize;
    }
    std::string_view pendingText() const
    {
        return {m_tBlock.m_pData, pending()};
    }

    static constexpr std::size_t s_cnSlice = 65536;  // what goes to a stream at once, or more

    bool m_bFailed = false;

private:
    static constexpr std::size_t s_cnSlice4Put = 32768;

    void putSlice(std::string_view text)
    {
        if (text.empty())
            return;
        std::memcpy(room(text.size()), text.data(), text.size());
        m_pPlace += text.size();
    }

    tKeptBlock& m_tBlock;
    char* m_pPlace = nullptr;
    char* m_pEnd = nullptr;
};

/// Collects the text.
class CStringSink final : public ITextSink
{
public:
    explicit CStringSink(tKeptBlock& block) : ITextSink(block)
    {
    }

    /// Valid until more is taken.
    std::string_view text() const
    {
        return pendingText();
    }
    std::size_t size() const
    {
        return pending();
    }
    void clear()
    {
        rewind();
    }

private:
    static constexpr std::size_t s_cnFirstSize = 1024;

    void makeRoom(std::size_t bytes) override
    {
        resize(std::max({s_cnFirstSize, 2 * pending(), pending() + bytes}));
    }
};

/// Counts the text and drops it. Fails once there is more than a limit.
class CCountingSink final : public ITextSink
{
public:
    CCountingSink(tKeptBlock& block, unsigned long long limit) : ITextSink(block), m_ullLimit(limit)
    {
    }

    unsigned long long size() const
    {
        return m_ullDropped + pending();
    }

private:
    void makeRoom(std::size_t bytes) override
    {
        m_ullDropped += pending();
        m_bFailed = m_ullDropped > m_ullLimit;
        rewind();
        if (capacity() < bytes)
            resize(std::max(s_cnSlice, bytes));
    }

    unsigned long long m_ullDropped = 0;
    const unsigned long long m_ullLimit;
};

/// Gives the text to a stream in slices, unformatted. The last slice goes with flush().
class CStreamSink final : public ITextSink
{
public:
    /// \param os  outlives the sink
    CStreamSink(tKeptBlock& block, std::ostream& os) : ITextSink(block), m_tStream(os)
    {
    }

    /// Writes what is pending. Throws what the stream throws when its exceptions are switched on.
    void flush()
    {
        const std::string_view slice = pendingText();
        rewind();
        if (slice.empty() || m_bFailed)
            return;
        m_bFailed = true;  // also when the next line throws
        m_tStream.write(slice.data(), static_cast<std::streamsize>(slice.size()));
        m_bFailed = !m_tStream.good();
    }

private:
    void makeRoom(std::size_t bytes) override
    {
        flush();
        if (capacity() < bytes)
            resize(std::max(s_cnSlice, bytes));
    }

    std::ostream& m_tStream;
};

}  // namespace murv::detail
