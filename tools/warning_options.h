// tools/warning_options.h - which warnings of documents are wanted, and showing them.
//
// The words are those of compilers: -Wall, -Wno-NAME, -Werror. What can be warned of is the library's table.
#pragma once

#include <string>
#include <vector>

#include "murv/syntax.h"
#include "tools/input.h"

namespace murv::tool
{

class CWarningOptions
{
public:
    /// Declares -W, and --list-warnings, with which the verb needs no FILE.
    /// \param layout  an option that -W has no meaning with
    void declare(CLI::App& verb, CLI::Option* layout);
    /// Whether the table is to be shown instead of anything else.
    bool isListWanted() const
    {
        return m_bList;
    }
    /// Whether there was any -W.
    bool isUsed() const
    {
        return !m_vWord.empty();
    }
    bool areErrors() const;
    /// Reports what a text holds of the kinds that are wanted. \return how many there are
    /// \param isLayout  packet expressions follow the rules of layouts, and are not looked at
    std::size_t report(const tInput& input, const tLoadOptions& options, bool isLayout,
                       CDiagnostics& diagnostics) const;
    /// The table: names, whether they are on from the start, and what they are about; or a JSON object for each.
    static std::string list(bool json);

private:
    unsigned int kinds() const;

    std::vector<std::string> m_vWord;
    bool m_bList = false;
};

}  // namespace murv::tool
