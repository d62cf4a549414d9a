// tools/input.cpp - files into bytes, bytes into trees.
#include "tools/input.h"

#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "murv/loader.h"
#include "tools/progress.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnMostBytes = static_cast<std::size_t>(CFields::maxSint32);
constexpr std::size_t s_cnPiece = std::size_t{8} << 20U;
constexpr std::size_t s_cnFrontLoaderLeast = 4;

class CDescriptor
{
public:
    explicit CDescriptor(int descriptor) : m_iDescriptor(descriptor)
    {
    }
    CDescriptor(const CDescriptor&) = delete;
    CDescriptor& operator=(const CDescriptor&) = delete;
    ~CDescriptor()
    {
        if (m_iDescriptor > STDERR_FILENO)
            close(m_iDescriptor);
    }
    int get() const
    {
        return m_iDescriptor;
    }

private:
    int m_iDescriptor;
};

/// Reads up to `most` bytes. \return 0, or the errno of the read that failed
int readUpTo(int descriptor, char* to, std::size_t most, std::size_t& got, CProgress& progress)
{
    got = 0;
    while (got < most)
    {
        const ssize_t bytes = read(descriptor, to + got, std::min(most - got, s_cnPiece));
        if (bytes == 0)
            break;
        if (bytes < 0 && errno != EINTR)
            return errno;
        got += bytes < 0 ? 0 : static_cast<std::size_t>(bytes);
        progress.show("reading", got);
    }
    return 0;
}

/// Reads to the end; a first block of `expected` bytes and one more, which shows the end, is enough for most files.
int readToEnd(int descriptor, std::size_t expected, tInput& input, CProgress& progress)
{
    std::size_t room = expected + 1;
    input.m_pBytes.reset(new char[room]);
    for (;;)
    {
        std::size_t got = 0;
        const int error =
            readUpTo(descriptor, input.m_pBytes.get() + input.m_nSize, room - input.m_nSize, got, progress);
        input.m_nSize += got;
        if (error != 0 || input.m_nSize < room)
            return error;
        if (input.m_nSize > s_cnMostBytes)
        {
            input.m_bTooBig = true;
            return 0;
        }
        room = std::min(2 * room, s_cnMostBytes + 1);
        std::unique_ptr<char[]> larger(new char[room]);
        std::memcpy(larger.get(), input.m_pBytes.get(), input.m_nSize);
        input.m_pBytes = std::move(larger);
    }
}

int readDescriptor(int descriptor, tInput& input)
{
    struct stat file = {};
    if (fstat(descriptor, &file) != 0)
        return errno;
    if (S_ISDIR(file.st_mode))
        return EISDIR;
    input.m_tIdentity = tFileIdentity::of(file);
    const std::size_t size = S_ISREG(file.st_mode) ? static_cast<std::size_t>(file.st_size) : 0;
    if (size > s_cnMostBytes)
    {
        input.m_nSize = size;
        input.m_bTooBig = true;
        return 0;
    }
    CProgress progress(input.m_strName, size);
    return readToEnd(descriptor, size == 0 ? 65535 : size, input, progress);
}

/// The offset behind "See " and " for detail." in a line of the composed message, if it is such a line.
std::optional<std::size_t> secondPlace(std::string_view text, const std::string& line)
{
    unsigned long lineNumber = 0;
    unsigned long column = 0;
    if (std::sscanf(line.c_str(), "See Line %lu, Column %lu", &lineNumber, &column) != 2)
        return std::nullopt;
    return offset4Place(text, {lineNumber, column});
}

/// The second places of the errors, which only the composed message tells; one entry for each error.
std::vector<std::optional<std::size_t>> secondPlaces(std::string_view text, std::string_view composed)
{
    std::vector<std::optional<std::size_t>> places;
    while (!composed.empty())
    {
        const std::size_t end = std::min(composed.find('\n'), composed.size());
        const std::string line(composed.substr(0, end));
        composed.remove_prefix(std::min(end + 1, composed.size()));
        if (line.rfind("* ", 0) == 0)
            places.emplace_back();
        else if (!places.empty() && line.rfind("See ", 0) == 0)
            places.back() = secondPlace(text, line);
    }
    return places;
}

tDiagnostic diagnostic4Range(const tInput& input, E_Severity severity, std::string message, tRange range)
{
    tDiagnostic diagnostic;
    diagnostic.m_eSeverity = severity;
    diagnostic.m_strFile = input.m_strName;
    diagnostic.m_strMessage = std::move(message);
    diagnostic.m_svSource = input.text();
    diagnostic.m_tRange = range;
    return diagnostic;
}

void reportErrors(const tInput& input, const CErrorBase& state, const std::vector<tErrorRange>& ranges,
                  CDiagnostics& diagnostics)
{
    if (ranges.empty())
    {
        diagnostics.error(input.m_strName, withoutFunction(state.getLastErrMsg()));
        return;
    }
    if (!input.isText())
    {
        for (const tErrorRange& range : ranges)  // the offset counts in the deciphered body, which is not shown
            diagnostics.error(input.m_strName, "offset " + std::to_string(range.m_uiStart) + ": " + range.m_strMessage);
        return;
    }
    const auto seconds = secondPlaces(input.text(), state.getLastErrMsg());
    for (std::size_t i = 0; i < ranges.size(); ++i)
    {
        tDiagnostic diagnostic =
            diagnostic4Range(input, SV_error, ranges[i].m_strMessage, {ranges[i].m_uiStart, ranges[i].m_uiEnd});
        if (i < seconds.size() && seconds[i])
            diagnostic.m_vNote.push_back(
                diagnostic4Range(input, SV_note, "see here for detail", {*seconds[i], *seconds[i] + 1}));
        diagnostics.report(diagnostic);
    }
}

/// The loader's words for a password that is missing or wrong.
bool isPasswordFault(const std::string& message)
{
    const std::string text = withoutFunction(message);
    return text == "Input the password" || text == "Mismatched password" || text == "'SEED' encryption need the key";
}

/// One load. What is too short for the front loader to tell is text.
template <typename tLoader>
E_ExitCode loadBy(tLoader& loader, const tInput& input, const std::string& password, CDiagnostics& diagnostics,
                  CFields& tree)
{
    CProgress progress(input.m_strName, input.m_nSize);
    progress.show("loading");
    try
    {
        // A size that is too big is refused before any byte is looked at.
        if (loader.loading(std::string_view(input.m_pBytes.get(), input.m_nSize), tree, password.c_str(), true))
            return EC_done;
        progress.hide();
        reportErrors(input, loader, loader.getErrorRanges(), diagnostics);
    }
    catch (const CLogicError& error)
    {
        progress.hide();
        diagnostics.error(input.m_strName, withoutFunction(error.what()) + " (values may nest 1000 levels)");
    }
    return isPasswordFault(loader.getLastErrMsg()) ? EC_password : EC_malformed;
}

E_ExitCode loadBytes(const tInput& input, const tLoadOptions& options, unsigned int flags, CDiagnostics& diagnostics,
                     CFields& tree)
{
    std::string password;
    if (!input.isText())
    {
        if (const E_ExitCode code = options.m_tPassword.read(input, diagnostics, password))
            return code;
    }
    if (input.m_nSize < s_cnFrontLoaderLeast)
    {
        CLoader4SER loader(flags);
        return loadBy(loader, input, password, diagnostics, tree);
    }
    CLoaders loader(flags);
    return loadBy(loader, input, password, diagnostics, tree);
}

/// Reports text behind the document. \return false when it makes the document malformed
bool checkTextBehind(const tInput& input, const CFields& tree, E_Severity severity, CDiagnostics& diagnostics)
{
    const std::string_view text = input.text();
    const std::size_t end = skipComments(text, static_cast<std::size_t>(tree.getOffsetEnd()));
    if (end == text.size())
        return true;
    const std::string message =
        severity == SV_error ? "text behind the document would be lost" : "text behind the document is ignored";
    diagnostics.report(diagnostic4Range(input, severity, message, {end, end + 1}));
    return severity != SV_error;
}
}  // namespace

void tLoadOptions::declare(CLI::App& verb)
{
    verb.add_flag("--utf8", m_bUtf8, "Read \\u escapes as UTF-8 instead of two bytes");
    m_tPassword.declare(verb, "", "the password");
    verb.add_flag("--number-names", m_bNumberNames, "Accept numbers as member names");
}

unsigned int tLoadOptions::flags() const
{
    return LCBC_COMMENT | LCBC_EMPTY_NULL | LCBC_LOSSLESS | (m_bUtf8 ? LCBC_UNICODE_UTF8 : 0U) |
           (m_bNumberNames ? LCBC_NUMBER_NAME : 0U);
}

tFileIdentity tFileIdentity::of(const struct stat& file)
{
    return {file.st_dev, file.st_ino, file.st_size, file.st_mtim};
}

bool tFileIdentity::isOf(const struct stat& file) const
{
    return m_tDevice == file.st_dev && m_tNode == file.st_ino && m_tSize == file.st_size &&
           m_tChanged.tv_sec == file.st_mtim.tv_sec && m_tChanged.tv_nsec == file.st_mtim.tv_nsec;
}

bool tInput::isText() const
{
    const std::string_view bytes = text();
    return bytes.size() < s_cnFrontLoaderLeast ||
           ILoaderBase::getER(bytes.data(), static_cast<unsigned int>(bytes.size())) == 0;
}

E_ExitCode readInput(const std::string& path, CDiagnostics& diagnostics, tInput& input)
{
    input.m_strPath = path;
    input.m_strName = input.isStandardInput() ? "<stdin>" : path;
    const CDescriptor file(input.isStandardInput() ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC));
    const int error = file.get() < 0 ? errno : readDescriptor(file.get(), input);
    if (error == 0)
        return EC_done;
    diagnostics.error(input.m_strName, std::string("cannot be read: ") + std::strerror(error));
    return EC_inputOutput;
}

E_ExitCode loadInput(const tInput& input, const tLoadOptions& options, unsigned int flags, E_Severity textBehind,
                     CDiagnostics& diagnostics, CFields& tree)
{
    if (const E_ExitCode code = loadBytes(input, options, options.flags() | flags, diagnostics, tree))
        return code;
    if (input.isText() && !checkTextBehind(input, tree, textBehind, diagnostics))
        return EC_malformed;
    return EC_done;
}

}  // namespace murv::tool
