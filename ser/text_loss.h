// ser/text_loss.h - what text cannot hold.
//
// The rules that a lossless saving checks; docs/text.md lists them.
#pragma once

#include "murv/saver.h"
#include "ser/indentation.h"

namespace murv::detail
{

/// Looks at a tree before a lossless saving, and reports the first node that would not come back equal.
///
/// \param saver     gives style and configuration and takes the error
/// \param function  that the error is reported by
/// \param indent    of the first level on, null for text on one line
/// \return false when there is such a node
bool isTextWhole(ISaver& saver, const char* function, const CFields& root, const CIndentation* indent);

/// Refuses a text that is longer than documents may be. \return false after reporting it
bool isTextLengthHeld(ISaver& saver, const char* function, unsigned long long length);

}  // namespace murv::detail
