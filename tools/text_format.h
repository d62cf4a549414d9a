// tools/text_format.h - the text of a document, laid out anew without changing what it says.
//
// The library's savers write values: 0.1 with 17 digits, 1.0 as 1, an empty string as nothing. That is right for data
// and wrong for a text that a person wrote, so numbers keep their spelling here, and empty strings are written.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "murv/fields.h"
#include "tools/source_text.h"

namespace murv::tool
{

struct tFormat
{
    bool m_bCompact = false;       // one line, without comments
    bool m_bOneLineArrays = true;  // short arrays of scalars stand on one line
    bool m_bNullWord = true;       // null is written as "null" instead of nothing
    bool m_bFinalNewline = true;
    std::string m_strIndentUnit = "  ";
};

/// What a text cannot hold although trees can.
struct tLoss
{
    const CFields* m_pNode = nullptr;  // null when all can be written
    const char* m_pMessage = nullptr;
};

/// The text of a tree.
///
/// \param tree    its values are changed on the way; of what it holds afterwards only the structure may be relied on
/// \param source  the text that it was loaded from; empty when it was not loaded from text
/// \param loss    given the first thing that the text lacks
std::string text4Tree(CFields& tree, std::string_view source, const tFormat& format, tLoss* loss = nullptr);

/// Compares everything that a document states except comments: values, types, names, IDs, packet expressions.
bool isSameDocument(const CFields& a, const CFields& b);

/// The first comment of `before` that `after` lacks.
std::optional<tRange> findLostComment(std::string_view before, std::string_view after);

}  // namespace murv::tool
