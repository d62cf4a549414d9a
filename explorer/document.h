// explorer/document.h - a text that a person edits, loaded, and places in it as editors count them.
//
// The library counts bytes, JavaScript counts units of UTF-16.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "murv/fields.h"
#include "murv/load_error.h"

namespace murv::explorer
{

/// Places in a text, from bytes to units of UTF-16.
class CPlaces
{
public:
    CPlaces() = default;
    /// \param text  UTF-8, which the caller keeps
    explicit CPlaces(std::string_view text);
    /// Constant cost. A byte after the end is taken for the end.
    std::uint32_t at(std::size_t byte) const;

private:
    std::string_view m_strvText;
    std::vector<std::uint32_t> m_vUnits;  // before each block; empty when all is ASCII
};

/// A text and what loading it gave.
struct tDocument
{
    CFields m_tTree;
    CPlaces m_tPlaces;
    std::vector<tErrorPlace> m_vErrors;  // none when it was loaded
};

/// Loads a text, and finds all that is wrong with it.
/// \param flags  of E_LoaderConfigBit
void load(std::string_view text, unsigned int flags, tDocument& document);

/// Where a member begins in the text that it was loaded from: with its ID, name and packet expression, which are
/// before its value.
std::size_t memberBegin(std::string_view text, const CFields& node);

}  // namespace murv::explorer
