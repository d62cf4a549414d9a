// murv/syntax.h - works on the tokens of a text: finds every mistake and what may be one, and lays texts out.
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
[[nodiscard]] MURV_API std::vector<tErrorPlace> findMistakes(std::string_view text, unsigned int config);

/// Explains a frequent mistake: what stands there, and what to write instead. It knows byte order marks, UTF-16, empty
/// texts, ":" for "=", comments that begin with "#", single and typographic quotes, and names and texts without quotes.
/// \param mistake  of this text, from findMistakes or from a loader
/// \return one sentence, static text; empty for any other mistake
[[nodiscard]] MURV_API std::string_view explainMistake(std::string_view text, const tErrorPlace& mistake);

/// What a text may hold that loads, but may be meant otherwise; bits, so that several can be named.
enum E_Suspicion : unsigned int
{
    SU_duplicateName = 0x1,    ///< in one field set; at the second and every further one
    SU_similarName = 0x2,      ///< differs in the case of the letters A to Z only; at the further spelling
    SU_duplicateId = 0x4,      ///< anywhere in the document; at the second and every further one
    SU_trailingComma = 0x8,    ///< before a closing bracket; adds a null
    SU_emptyContainer = 0x10,  ///< holds a null unless it is loaded with LCBC_LOSSLESS
    SU_textAfter = 0x20,       ///< text after the document, which loaders ignore
    SU_timeLength = 0x40,      ///< a fixed packet item that is not as long as its time keyword
    SU_sizePartner = 0x80,     ///< a size item without sized item after it in the document, or the other way round
    SU_zeroLength = 0x100,     ///< a packet item that is left out, as it has no length
    SU_keywordOption = 0x200,  ///< an option of an internal keyword that binary files refuse, or that loses bits
    SU_all = 0x3FF,
};

/// A kind of them.
struct tSuspicionKind
{
    E_Suspicion m_eKind;
    std::string_view m_strvName;         ///< for people to choose it by, such as "duplicate-name"
    std::string_view m_strvDescription;  ///< one sentence without full stop
};

/// All kinds, in the order of their bits.
[[nodiscard]] MURV_API std::vector<tSuspicionKind> getSuspicionKinds();

/// One of them, with its place.
struct tSuspicion
{
    E_Suspicion m_eKind;
    tErrorPlace m_tPlace;  ///< the second place, where there is one, is where name or ID was seen first
};

/// Finds what may be meant otherwise. A text with mistakes is read as findMistakes reads it.
///
/// Packet expressions are judged by the rules of packets, by which a size item and its sized items stand in this order
/// anywhere in the document; layouts have rules of their own.
/// \param config  bits of E_LoaderConfigBit that a loader would have
/// \param kinds   bits of E_Suspicion
/// \return in the order of the text. Time: linear in the text. Memory: that of the names of open containers and of all
///         IDs, besides the result
[[nodiscard]] MURV_API std::vector<tSuspicion> findSuspicions(std::string_view text, unsigned int config,
                                                              unsigned int kinds = SU_all);

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
[[nodiscard]] MURV_API bool formatText(std::string_view text, unsigned int config, const tTextLayout& layout,
                                       const std::function<void(std::string_view)>& receive);

/// The same in one piece. \return nothing when the text has mistakes
[[nodiscard]] MURV_API std::optional<std::string> formatText(std::string_view text, unsigned int config,
                                                             const tTextLayout& layout);

/// Whether two texts without mistakes have the same tokens in the same order: one is the other in a new layout. What
/// that layout leaves out is not compared.
[[nodiscard]] MURV_API bool haveSameTokens(std::string_view a, std::string_view b, const tTextLayout& layout);

}  // namespace murv

#endif
