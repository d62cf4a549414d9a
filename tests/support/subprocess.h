// tests/support/subprocess.h - runs a program as a user's shell would, and returns all that can be seen of it.
#pragma once

#include <string>
#include <vector>

namespace murv::tests
{

/// What surrounds a run.
struct tSurroundings
{
    std::string m_strInput;                     // standard input
    std::string m_strDirectory;                 // working directory; empty for the present one
    std::vector<std::string> m_vEnvironment;    // NAME=VALUE, in place of NO_COLOR and TERM=xterm, besides PATH
    std::string m_strOutputFile;                // standard output goes there instead of into the result
    bool m_bClosedInput = false;                // no standard input at all
    bool m_bClosedOutput = false;               // no standard output at all
    bool m_bReaderGone = false;                 // standard output is a pipe that nobody reads
    bool m_bTerminal = false;                   // the standard error stream is a terminal
    bool m_bNobody = false;                     // without the rights of root
    unsigned long long m_ullMostFileBytes = 0;  // files may not grow beyond; 0 for no limit
    unsigned long long m_ullMostMemory = 0;     // address space in bytes; 0 for no limit
    unsigned int m_uiMostSeconds = 0;           // SIGALRM ends it then; 0 for no limit
};

struct tRun
{
    int m_iExit;  // exit code; -1 and below for the signal that ended it, negated
    std::string m_strOutput;
    std::string m_strError;
};

/// Runs `command`, whose first part is the path of the program, and waits for its end.
tRun runProgram(const std::vector<std::string>& command, const tSurroundings& around = {});

/// A directory of the test's own, removed with all it holds at the end.
class CTemporaryDirectory
{
public:
    CTemporaryDirectory();
    CTemporaryDirectory(const CTemporaryDirectory&) = delete;
    CTemporaryDirectory& operator=(const CTemporaryDirectory&) = delete;
    ~CTemporaryDirectory();

    const std::string& path() const
    {
        return m_strPath;
    }
    /// Writes a file. \return its path
    std::string write(const std::string& name, const std::string& content) const;
    std::string read(const std::string& name) const;
    /// Names of what is in it, sorted, with a blank between.
    std::string names() const;

private:
    std::string m_strPath;
};

}  // namespace murv::tests
