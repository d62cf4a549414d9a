// io/read_stream.h - the rest of a stream as one string.
//
// Loaders take what is at most 2147483647 bytes; a stream may give more than that, or never end. So reading stops in
// time instead of filling the memory first.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>

namespace murv::detail
{

/// Reads to the end of the stream, to the first byte of value 255, which is taken and dropped, or until there are
/// `most` bytes. A stream that gives nothing at all fails, as with a line that is read.
/// \param data  receives what was read
/// \return false when the stream had failed before or broke meanwhile; true at a mere end, also right at the start.
/// Throws std::bad_alloc, and what the stream throws when its exceptions are switched on.
bool readStream(std::istream& in, std::size_t most, std::string& data);

}  // namespace murv::detail
