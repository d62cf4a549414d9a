// tools/temporary_file.h - a new file beside the one whose name it will take.
//
// Nothing that ends the tool early may leave it there, so signals that end programs remove it as well.
#pragma once

#include <sys/types.h>

#include <string>

namespace murv::tool
{

/// The part of the path before the last name, with its slash; empty for the present directory.
inline std::string directory4Path(const std::string& path)
{
    return path.substr(0, path.rfind('/') + 1);
}

/// Exists until it takes its name or this object ends. There is one at a time.
class CTemporaryFile
{
public:
    /// Makes it, empty, under a name that nobody can foresee.
    /// \param target  the file whose name it will take; not a symbolic link
    /// \param mode    who may use it; the umask or the access control list of the directory apply
    CTemporaryFile(const std::string& target, mode_t mode);
    CTemporaryFile(const CTemporaryFile&) = delete;
    CTemporaryFile& operator=(const CTemporaryFile&) = delete;
    ~CTemporaryFile();

    /// \return 0, or the errno of making it
    int error() const
    {
        return m_iError;
    }
    int descriptor() const
    {
        return m_iDescriptor;
    }
    /// Forces the content to the disk, unless told not to, then gives it the name. \return 0, or the errno of what
    /// failed
    int takeName(bool isForced);

private:
    std::string m_strTarget;
    std::string m_strPath;
    int m_iDescriptor = -1;
    int m_iError = 0;
    bool m_bExists = false;
};

}  // namespace murv::tool
