// tools/input.cpp - turns files into bytes and bytes into trees, and faults of either into diagnostics.
#include "tools/input.h"

#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

#include "murv/loader.h"
#include "murv/syntax.h"
#include "tools/binary_header.h"
#include "tools/descriptor.h"
#include "tools/progress.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnMostBytes = static_cast<std::size_t>(CFields::maxSint32);
constexpr std::size_t s_cnPiece = std::size_t{8} << 20U;
constexpr std::size_t s_cnFrontLoaderLeast = 4;

using vExplanations = std::vector<std::string_view>;

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

/// Reads to the end. The first block has one byte more than expected, so that one read shows the end of most files.
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

tDiagnostic diagnostic4Range(const tInput& input, E_Severity severity, const std::string& message, tRange range)
{
    tDiagnostic diagnostic;
    diagnostic.m_eSeverity = severity;
    diagnostic.m_strFile = input.m_strName;
    diagnostic.m_strMessage = message;
    diagnostic.m_svSource = input.text();
    diagnostic.m_tRange = range;
    return diagnostic;
}

/// The same for a binary file. Its body is enciphered, so there is no excerpt to show.
tDiagnostic diagnostic4Body(const tInput& input, E_Severity severity, const std::string& message, tRange range)
{
    tDiagnostic diagnostic;
    diagnostic.m_eSeverity = severity;
    diagnostic.m_strFile = input.m_strName;
    diagnostic.m_strMessage = "offset " + std::to_string(range.m_nBegin) + ": " + message;
    diagnostic.m_tRange = range;
    diagnostic.m_bInBody = true;
    return diagnostic;
}

/// What the offsets of a binary file count from.
tDiagnostic noteOnOffsets(const tInput& input)
{
    tDiagnostic note;
    note.m_eSeverity = SV_note;
    note.m_strFile = input.m_strName;
    note.m_strMessage = "offsets count from the start of the deciphered body";
    if (const std::optional<tBinaryHeader> header = binaryHeader4File(input.text()))
    {
        note.m_strMessage += ", which begins after the header of " + std::to_string(header->m_nHeaderBytes) + " bytes";
        if (header->m_nPasswordBytes != 0)
            note.m_strMessage += " and the password block of " + std::to_string(header->m_nPasswordBytes) + " bytes";
    }
    return note;
}

/// What may help with a mistake that many make. \param said  of this file so far; each is said once
void addExplanation(const tInput& input, const tErrorPlace& place, vExplanations& said, tDiagnostic& diagnostic)
{
    const std::string_view explanation = explainMistake(input.text(), place);
    if (explanation.empty() || std::find(said.begin(), said.end(), explanation) != said.end())
        return;
    said.push_back(explanation);
    tDiagnostic note;
    note.m_eSeverity = SV_note;
    note.m_strFile = input.m_strName;
    note.m_strMessage = explanation;
    diagnostic.m_vNote.push_back(note);
}

void reportPlace(const tInput& input, const tErrorPlace& place, vExplanations& said, CDiagnostics& diagnostics)
{
    // Only the loader knows which it was: a file with a binary header may say in it that it is text.
    const bool isText = place.m_uiLine != 0;
    const auto diagnostic4 = isText ? &diagnostic4Range : &diagnostic4Body;
    tDiagnostic diagnostic = diagnostic4(input, SV_error, place.m_strMessage, {place.m_uiStart, place.m_uiEnd});
    if (place.m_tSecond)
    {
        const std::size_t second = place.m_tSecond->m_uiOffset;
        diagnostic.m_vNote.push_back(diagnostic4(input, SV_note, "see here for detail", {second, second + 1}));
    }
    if (isText)
        addExplanation(input, place, said, diagnostic);
    else
        diagnostic.m_vNote.push_back(noteOnOffsets(input));
    diagnostics.report(diagnostic);
}

/// Reports up to `most` places, and the number of others.
void reportPlaces(const tInput& input, const std::vector<tErrorPlace>& places, std::size_t most,
                  CDiagnostics& diagnostics)
{
    const std::size_t shown = std::min(places.size(), most);
    vExplanations said;
    for (std::size_t i = 0; i != shown; ++i)
        reportPlace(input, places[i], said, diagnostics);
    const std::size_t left = places.size() - shown;
    if (left == 0)
        return;
    tDiagnostic note;
    note.m_eSeverity = SV_note;
    note.m_strFile = input.m_strName;
    note.m_strMessage = std::to_string(left) + (left == 1 ? " more mistake is" : " more mistakes are") + " not shown";
    diagnostics.report(note);
}

void reportErrors(const tInput& input, const ILoaderBase& loader, const tLoadOptions& options,
                  CDiagnostics& diagnostics)
{
    std::vector<tErrorPlace> places = loader.getErrorPlaces();
    if (places.empty())
        diagnostics.error(input.m_strName, withoutFunction(loader.getLastErrMsg()));
    const bool isText = loader.getLoadFault() == LF_text && !places.empty() && places[0].m_uiLine != 0;
    if (!isText || options.m_nMostMistakes == 1)
    {
        vExplanations said;
        for (const tErrorPlace& place : places)
            reportPlace(input, place, said, diagnostics);
        return;
    }
    const unsigned int first = places[0].m_uiStart;
    for (tErrorPlace& place : findMistakes(input.text(), options.flags()))
    {
        if (place.m_uiStart > first)  // the loader stops at the first one
            places.push_back(std::move(place));
    }
    reportPlaces(input, places, options.m_nMostMistakes, diagnostics);
}

struct tFaultRow
{
    E_LoadFault m_eFault;
    E_ExitCode m_eCode;
};

constexpr tFaultRow s_ctFaults[] = {
    {LF_text, EC_malformed},         {LF_encodingRule, EC_malformed}, {LF_passwordMissing, EC_password},
    {LF_passwordWrong, EC_password}, {LF_damagedFile, EC_malformed},  {LF_tooBig, EC_malformed},
    {LF_tooDeep, EC_malformed},      {LF_memory, EC_internal},
};

E_ExitCode code4Fault(E_LoadFault fault)
{
    for (const tFaultRow& row : s_ctFaults)
    {
        if (row.m_eFault == fault)
            return row.m_eCode;
    }
    return EC_internal;  // no streams and no callbacks here
}

/// One load, with everything that goes wrong turned into diagnostics and an exit code.
E_ExitCode loadBy(ILoaderBase& loader, const tInput& input, const tLoadOptions& options, const std::string& password,
                  CDiagnostics& diagnostics, CFields& tree)
{
    CProgress progress(input.m_strName, input.m_nSize);
    progress.show("loading");
    try
    {
        // A size that is too big is refused before any byte is looked at.
        if (loader.loading(std::string_view(input.m_pBytes.get(), input.m_nSize), tree, password.c_str(), true))
            return EC_done;
        progress.hide();
        reportErrors(input, loader, options, diagnostics);
    }
    catch (const CLogicError& error)
    {
        if (loader.getLoadFault() == LF_memory)
            throw std::bad_alloc();
        if (loader.getLoadFault() != LF_tooDeep)
            throw;
        progress.hide();
        diagnostics.error(input.m_strName, withoutFunction(error.what()) + " (values may nest 1000 levels)");
    }
    return code4Fault(loader.getLoadFault());
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
    if (input.m_nSize < s_cnFrontLoaderLeast)  // it would refuse fewer bytes; they can only be text
    {
        CLoader4SER loader(flags);
        return loadBy(loader, input, options, password, diagnostics, tree);
    }
    CLoaders loader(flags);
    return loadBy(loader, input, options, password, diagnostics, tree);
}

/// Reports text after the document. \return false when it makes the document malformed
bool checkTextAfter(const tInput& input, const CFields& tree, E_Severity severity, CDiagnostics& diagnostics)
{
    const std::string_view text = input.text();
    const std::size_t end = skipComments(text, static_cast<std::size_t>(tree.getOffsetEnd()));
    if (end == text.size())
        return true;
    const std::string message =
        severity == SV_error ? "text after the document would be lost" : "text after the document is ignored";
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
    const CDescriptor file(path);
    const int error = file.get() < 0 ? errno : readDescriptor(file.get(), input);
    if (error == 0)
        return EC_done;
    return diagnostics.fail(input.m_strName, std::string("cannot be read: ") + std::strerror(error), EC_inputOutput);
}

E_ExitCode reportTooBig(const tInput& input, CDiagnostics& diagnostics)
{
    return diagnostics.fail(input.m_strName, "Too big data size(" + std::to_string(input.m_nSize) + ")", EC_malformed);
}

E_ExitCode loadInput(const tInput& input, const tLoadOptions& options, unsigned int flags,
                     std::optional<E_Severity> textAfter, CDiagnostics& diagnostics, CFields& tree)
{
    if (const E_ExitCode code = loadBytes(input, options, options.flags() | flags, diagnostics, tree))
        return code;
    if (textAfter && input.isText() && !checkTextAfter(input, tree, *textAfter, diagnostics))
        return EC_malformed;
    return EC_done;
}

E_ExitCode reportMistakes(const tInput& input, const tLoadOptions& options, CDiagnostics& diagnostics)
{
    const std::vector<tErrorPlace> mistakes = findMistakes(input.text(), options.flags() | LCBC_DUPLICATE);
    reportPlaces(input, mistakes, s_cnMostMistakes, diagnostics);
    return EC_malformed;
}

}  // namespace murv::tool
