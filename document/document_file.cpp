// document/document_file.cpp - reads and replaces the file of a document.
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>

#include "murv/document.h"

namespace murv
{

namespace
{

namespace fs = std::filesystem;

[[noreturn]] void refuse(const std::string& path, const char* what, const std::string& why)
{
    throw CException(path + what + why);
}

/// A file beside another one, which is removed unless it has taken that one's name.
class CFileBeside
{
public:
    CFileBeside(const fs::path& target, const fs::file_status& status) : m_tTarget(target), m_tStatus(status)
    {
        std::random_device random;
        m_tPath = target;
        m_tPath += "." + std::to_string(random()) + ".tmp";
    }
    CFileBeside(const CFileBeside&) = delete;
    CFileBeside& operator=(const CFileBeside&) = delete;
    ~CFileBeside()
    {
        std::error_code ignored;
        if (!m_bNamed)
            fs::remove(m_tPath, ignored);
    }
    /// What is in a file that only its owner may read is never in one that others may read, even for a moment.
    bool write(const std::string& text)
    {
        std::ofstream file(m_tPath, std::ios::binary | std::ios::trunc);
        std::error_code error;
        if (fs::exists(m_tStatus))
            fs::permissions(m_tPath, fs::perms::owner_read | fs::perms::owner_write, error);
        if (!error)
            file.write(text.data(), static_cast<std::streamsize>(text.size()));
        file.flush();
        file.close();
        return !file.fail() && !error;
    }
    std::error_code takeName()
    {
        std::error_code error;
        if (fs::exists(m_tStatus))
            fs::permissions(m_tPath, m_tStatus.permissions(), error);
        if (!error)
            fs::rename(m_tPath, m_tTarget, error);
        m_bNamed = !error;
        return error;
    }

private:
    fs::path m_tTarget;
    fs::file_status m_tStatus;
    fs::path m_tPath;
    bool m_bNamed = false;
};

}  // namespace

bool CDocument::loadFile(const std::string& path)
{
    std::error_code error;
    if (fs::is_directory(path, error))
        refuse(path, " cannot be read: ", "it is a directory");
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    std::string text;
    if (file)
        text.assign(std::istreambuf_iterator<char>(file), {});
    if (!file.is_open() || file.bad())
        refuse(path, " cannot be read: ", std::strerror(errno));
    return load(text);
}

void CDocument::saveFile(const std::string& path) const
{
    std::error_code error;
    const fs::path target = fs::weakly_canonical(path, error);
    if (error)
        refuse(path, " cannot be written: ", error.message());
    constexpr fs::perms writers = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    const fs::file_status status = fs::status(target, error);
    if (fs::exists(status) && !fs::is_regular_file(status))
        refuse(path, " cannot be written: ", "it is no regular file");
    if (fs::exists(status) && (status.permissions() & writers) == fs::perms::none)
        refuse(path, " cannot be written: ", "it is read-only");
    errno = 0;
    CFileBeside file(target, status);
    if (!file.write(text()))
        refuse(path, " cannot be written: ", errno == 0 ? "writing failed" : std::strerror(errno));
    error = file.takeName();
    if (error)
        refuse(path, " cannot be written: ", error.message());
}

}  // namespace murv
