// tools/descriptor.h - an open file that is closed at the end.
//
// Documents are read whole and packets in pieces; both begin with this.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <string>

namespace murv::tool
{

class CDescriptor
{
public:
    explicit CDescriptor(int descriptor) : m_iDescriptor(descriptor)
    {
    }
    CDescriptor(const CDescriptor&) = delete;
    CDescriptor& operator=(const CDescriptor&) = delete;
    ~CDescriptor()
    {
        if (m_iDescriptor > STDERR_FILENO)
            close(m_iDescriptor);
    }
    /// Opens a file to be read, "-" for the standard input. After a failure get() is negative, and errno says why.
    explicit CDescriptor(const std::string& path)
        : m_iDescriptor(path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC))
    {
    }
    int get() const
    {
        return m_iDescriptor;
    }

private:
    int m_iDescriptor;
};

}  // namespace murv::tool
