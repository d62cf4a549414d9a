// tools/input.h - reads files and loads documents, for every verb.
//
// Loading goes through the front loader, so each verb takes text and binary files alike. The options that concern
// loading, among them where the password comes from, are declared here once.
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "murv/fields.h"
#include "tools/diagnostics.h"
#include "tools/exit_code.h"
#include "tools/password.h"

namespace CLI
{
class App;
}

namespace murv::tool
{

class CProgress;

/// That are shown of a text, unless the user wants another number.
inline constexpr std::size_t s_cnMostMistakes = 20;

/// How documents are to be loaded.
struct tLoadOptions
{
    bool m_bUtf8 = false;             // \u escapes give UTF-8
    bool m_bNumberNames = false;      // numbers are accepted as member names
    CPasswordSource m_tPassword;      // of binary files
    std::size_t m_nMostMistakes = 1;  // of a text, which are shown

    /// Declares the options that every verb with documents has.
    void declare(CLI::App& verb);
    /// The loader's configuration word.
    unsigned int flags() const;
};

/// Which file was read, and which state of it: isOf() says whether a path still leads to the same.
struct tFileIdentity
{
    dev_t m_tDevice = 0;
    ino_t m_tNode = 0;
    off_t m_tSize = 0;
    timespec m_tChanged = {};

    static tFileIdentity of(const struct stat& file);
    bool isOf(const struct stat& file) const;
};

/// The bytes of one file, or of the standard input.
struct tInput
{
    std::string m_strPath;  // "-" for the standard input
    std::string m_strName;  // as shown
    std::unique_ptr<char[]> m_pBytes;
    std::size_t m_nSize = 0;
    bool m_bTooBig = false;  // more than a document may have: no bytes, only the size
    tFileIdentity m_tIdentity;

    bool isStandardInput() const
    {
        return m_strPath == "-";
    }
    std::string_view text() const
    {
        return {m_pBytes.get(), m_bTooBig ? 0 : m_nSize};
    }
    /// Whether it holds text; else it is binary.
    bool isText() const;
};

/// Reads a file whole, with one allocation when its size is known. Reports failures.
E_ExitCode readInput(const std::string& path, CDiagnostics& diagnostics, tInput& input);

/// Reports that a file is larger than a document may be, in the words of loaders. \return the code for that
E_ExitCode reportTooBig(const tInput& input, CDiagnostics& diagnostics);

/// Loads a document with its comments, and reports all errors at their places.
///
/// \param flags      bits of E_LoaderConfigBit besides those of the options
/// \param textAfter  how to report text after the document, which is not part of it; as SV_error it makes the document
///                   malformed, and nothing takes no notice of it
E_ExitCode loadInput(const tInput& input, const tLoadOptions& options, unsigned int flags,
                     std::optional<E_Severity> textAfter, CDiagnostics& diagnostics, CFields& tree);

/// Reports the mistakes of a text in which members of equal names all stay: up to s_cnMostMistakes, whatever the
/// options say. \return the exit code for that
E_ExitCode reportMistakes(const tInput& input, const tLoadOptions& options, CDiagnostics& diagnostics);

}  // namespace murv::tool
