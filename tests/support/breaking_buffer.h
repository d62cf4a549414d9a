// tests/support/breaking_buffer.h - a stream that fails half way.
#pragma once

#include <stdexcept>
#include <streambuf>
#include <string>
#include <utility>

namespace murv::tests
{

/// Gives what it has, then throws.
class CBreakingBuffer : public std::streambuf
{
public:
    explicit CBreakingBuffer(std::string text) : m_strText(std::move(text))
    {
        setg(m_strText.data(), m_strText.data(), m_strText.data() + m_strText.size());
    }

protected:
    int_type underflow() override
    {
        throw std::runtime_error("the line broke");
    }

private:
    std::string m_strText;
};

}  // namespace murv::tests
