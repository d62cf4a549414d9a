// murv/syntax.h - every mistake in a text, not only the first.
#ifndef MURV_SYNTAX_H
#define MURV_SYNTAX_H

#include <string_view>
#include <vector>

#include "murv/export.h"
#include "murv/load_error.h"

namespace murv
{

/// Finds all mistakes in a text. The first is the one at which a loader stops, at the same place and in the same words.
///
/// After a mistake, reading goes on at the next comma, or at a bracket that closes an open container; what is skipped
/// gives no further mistakes. Comments are tolerated, missing values are null, and repeated names and IDs are members of
/// their own, whatever the configuration says.
/// \param text    a document of the text notation, of up to 2147483647 bytes
/// \param config  bits of E_LoaderConfigBit that a loader would have
/// \return in the order of the text; empty when a loader takes it. Time: linear in the text
MURV_API std::vector<tErrorPlace> findMistakes(std::string_view text, unsigned int config);

}  // namespace murv

#endif
