// tools/file_attributes.cpp - copies group, owner, extended attributes and mode, in this order.
#include "tools/file_attributes.h"

#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <string_view>
#include <vector>

#include "tools/output.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnMostBytes = 65536;  // of a value, and of all names: no file has more
constexpr std::string_view s_csvAccessList = "system.posix_acl_access";
constexpr uid_t s_cuiSameOwner = static_cast<uid_t>(-1);
constexpr gid_t s_cuiSameGroup = static_cast<gid_t>(-1);

std::string notKept(const std::string& what, int error)
{
    return "its " + what + " cannot be kept: " + text4Error(error);
}

std::string shown(const std::string& attribute)
{
    if (attribute == s_csvAccessList)
        return "access control list";
    std::string text = "attribute " + attribute;
    const auto isControl = [](char byte) { return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F; };
    std::replace_if(text.begin(), text.end(), isControl, '?');
    return text;
}

/// What the system removes from every file that is written to, or computes again.
bool isOfContent(std::string_view attribute)
{
    return attribute == "security.capability" || attribute == "security.ima" || attribute == "security.evm";
}

using vNames = std::vector<std::string>;

/// The names of a list as the system gives it: `size` bytes, or below 0 for a failure.
/// \return 0, or an errno; a file system without attributes has an empty list
int splitNames(const std::vector<char>& list, ssize_t size, vNames& names)
{
    if (size < 0)
        return errno == ENOTSUP || errno == ENOSYS ? 0 : errno;
    for (const char* at = list.data(); at < list.data() + size; at += names.back().size() + 1)
        names.emplace_back(at);
    return 0;
}

/// Gives the file the attribute unless it has it with this value. \return 0, or an errno
int keepAttribute(const char* path, int file, const char* name)
{
    std::vector<char> value(s_cnMostBytes);
    std::vector<char> present(s_cnMostBytes);
    const ssize_t size = getxattr(path, name, value.data(), value.size());
    if (size < 0)
        return errno;
    const ssize_t presentSize = fgetxattr(file, name, present.data(), present.size());
    if (size == presentSize && std::equal(value.begin(), value.begin() + size, present.begin()))
        return 0;
    return fsetxattr(file, name, value.data(), static_cast<std::size_t>(size), 0) == 0 ? 0 : errno;
}

/// Removes what the new file has and the other one lacks, such as the access control list that its directory gives it.
std::string removeOthers(const vNames& kept, int file)
{
    std::vector<char> list(s_cnMostBytes);
    vNames names;
    if (const int error = splitNames(list, flistxattr(file, list.data(), list.size()), names))
        return notKept("extended attributes", error);
    for (const std::string& name : names)
    {
        const bool foreign = name.rfind("security.", 0) != 0 && std::count(kept.begin(), kept.end(), name) == 0;
        if (foreign && fremovexattr(file, name.c_str()) != 0)
            return "the " + shown(name) + " that new files get cannot be removed: " + text4Error(errno);
    }
    return {};
}

std::string keepExtended(const std::string& path, int file)
{
    std::vector<char> list(s_cnMostBytes);
    vNames names;
    if (const int error = splitNames(list, listxattr(path.c_str(), list.data(), list.size()), names))
        return notKept("extended attributes", error);
    for (const std::string& name : names)
    {
        const int error = isOfContent(name) ? 0 : keepAttribute(path.c_str(), file, name.c_str());
        if (error != 0)
            return notKept(shown(name), error);
    }
    return removeOthers(names, file);
}

std::string keepMode(mode_t mode, int file)
{
    struct stat now = {};
    if (fchmod(file, mode & 07777U) != 0 || fstat(file, &now) != 0)
        return notKept("mode", errno);
    if (now.st_mode == mode)
        return {};
    // The set-group-ID bit vanishes without an error when the group is not one of ours.
    return notKept("mode", EPERM);
}
}  // namespace

std::string keepAttributes(const std::string& path, const struct stat& like, int file)
{
    struct stat now = {};
    if (fstat(file, &now) != 0)
        return notKept("attributes", errno);
    if (now.st_gid != like.st_gid && fchown(file, s_cuiSameOwner, like.st_gid) != 0)
        return notKept("group", errno);
    if (now.st_uid != like.st_uid && fchown(file, like.st_uid, s_cuiSameGroup) != 0)
        return notKept("owner", errno);
    const std::string fault = keepExtended(path, file);
    return fault.empty() ? keepMode(like.st_mode, file) : fault;
}

}  // namespace murv::tool
