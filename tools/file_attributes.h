// tools/file_attributes.h - gives a new file the owner, rights and attributes of the file that it replaces.
//
// A file that changes hands, or that more people may read than before, is worse than one that was not replaced. So what
// cannot be kept is an error, never a warning.
#pragma once

#include <sys/stat.h>

#include <string>

namespace murv::tool
{

/// Gives an open file the group, owner, extended attributes (access control lists are such) and mode of another.
///
/// The mode comes last, so that nobody gains a right from a half-finished state, and because a change of owner clears
/// bits of it. Attributes that describe the content - security.capability, security.ima, security.evm - are left out.
/// \param path  the other file, not a symbolic link
/// \param like  what stat() says of it
/// \param file  made with mode 0600, its content already written, because writing removes attributes
/// \return empty, or what cannot be kept, and why
std::string keepAttributes(const std::string& path, const struct stat& like, int file);

}  // namespace murv::tool
