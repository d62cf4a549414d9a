// ser/text_loss.h - what text cannot hold.
//
// The rules that a lossless saving checks; docs/text.md lists them.
#pragma once

#include <cstdint>

#include "murv/saver.h"
#include "ser/indentation.h"

namespace murv::detail
{

/// Looks at a tree before a lossless saving, and reports the first node that would not come back equal.
///
/// \param saver     gives style and configuration and takes the error
/// \param function  that the error is reported by
/// \param indent    of the first level on, null for text on one line
/// \param bound     unless it is null, given a number of bytes that the text does not pass; for indented text only
/// \return false when there is such a node
bool isTextWhole(ISaver& saver, const char* function, const CFields& root, const CIndentation* indent,
                 std::uint64_t* bound = nullptr);

/// Refuses a text that is longer than documents may be. \return false after reporting it
bool isTextLengthHeld(ISaver& saver, const char* function, unsigned long long length);

}  // namespace murv::detail
