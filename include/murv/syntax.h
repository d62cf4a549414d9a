// murv/syntax.h - works on the tokens of a text: finds every mistake, and lays texts out.
#ifndef MURV_SYNTAX_H
#define MURV_SYNTAX_H

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "murv/export.h"
#include "murv/load_error.h"

namespace murv
{

/// Finds all mistakes in a text. The first is the one at which a loader stops, at the same place and in the same words.
///
/// After a mistake, reading goes on at the next comma, or at a bracket that closes an open container; what is skipped
/// gives no further mistakes. Comments are tolerated, missing values are null, and repeated names and IDs are members
/// of their own, whatever the configuration says.
/// \param text    a document of the text notation, of up to 2147483647 bytes
/// \param config  bits of E_LoaderConfigBit that a loader would have
/// \return in the order of the text; empty when a loader takes it. Time: linear in the text
MURV_API std::vector<tErrorPlace> findMistakes(std::string_view text, unsigned int config);

/// How a text is laid out.
struct tTextLayout
{
    std::string m_strIndent = "  ";  ///< of a level: blanks or tabs
    /// A container that stands on one line stays there when that line has at most this many bytes, or when the
    /// container itself has less than 74.
    unsigned int m_uiWidth = 120;
    bool m_bOneLineArrays = true;  ///< false: every element of an array has a line of its own
    bool m_bCompact = false;       ///< one line, without blanks, comments and remarks in packet expressions
    bool m_bNullWord = true;       ///< false: "null" is left out where nothing at all means the same
    bool m_bFinalNewline = true;   ///< the last line has a line end
};

/// Writes the tokens of a text with a new layout: each token as it stands, in its order, comments included.
///
/// Members stand on lines of their own and containers open on the next line, as savers write them. Containers that
/// stand on one line stay there when they fit, but for a document that is a field set. Comments stay on their line, or
/// on one of their own. Where there are empty lines between two members, one stays. All line ends become like the first
/// one. What follows the document stays as it is.
/// \param config   of the loader; see findMistakes
/// \param receive  is given the result in pieces of some kilobytes, in order
/// \return false when the text has mistakes; then nothing is received. Time: linear in text and result. Memory: a bit
///         for each container
MURV_API bool formatText(std::string_view text, unsigned int config, const tTextLayout& layout,
                         const std::function<void(std::string_view)>& receive);

/// The same in one piece. \return nothing when the text has mistakes
MURV_API std::optional<std::string> formatText(std::string_view text, unsigned int config, const tTextLayout& layout);

/// Whether two texts without mistakes have the same tokens in the same order: one is the other in a new layout. What
/// that layout leaves out is not compared.
MURV_API bool haveSameTokens(std::string_view a, std::string_view b, const tTextLayout& layout);

}  // namespace murv

#endif
