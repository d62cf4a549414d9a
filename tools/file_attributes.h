// tools/file_attributes.h - who may use a file, carried over to the one that replaces it.
//
// A file that falls into other hands, or is readable for more people than before, is worse than one not replaced. So
// what cannot be kept is an error, never a warning.
#pragma once

#include <sys/stat.h>

#include <string>

namespace murv::tool
{

/// Gives an open file the group, owner, extended attributes (access control lists are such) and mode of another.
///
/// The mode comes last: until then nobody gains a right by a half-finished state, and a change of owner takes bits of
/// it away. Attributes that speak of the content - security.capability, security.ima, security.evm - are left out.
/// \param path  the other file, not a symbolic link
/// \param like  what stat() says of it
/// \param file  made with mode 0600, its content already written, for writing takes attributes away
/// \return empty, or what cannot be kept, and why
std::string keepAttributes(const std::string& path, const struct stat& like, int file);

}  // namespace murv::tool
