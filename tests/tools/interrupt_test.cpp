// tests/tools/interrupt_test.cpp - a signal at any moment leaves whole files, and nothing else.
//
// The tool is stopped at the begin and the end of every system call while its temporary file is there; a signal is
// sent, and what is left is looked at. So no moment depends on luck.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <set>

#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
constexpr const char* s_cpUgly = "[1,2]";
constexpr const char* s_cpPretty = "[1, 2]\n";
constexpr int s_ciNotTraced = 99;

/// The tool, stopped at its system calls.
class CStoppedTool
{
public:
    CStoppedTool(const CTemporaryDirectory& directory, std::vector<std::string> arguments, int ignored = 0)
        : m_strDirectory(directory.path())
    {
        arguments.insert(arguments.begin(), MURV_TOOL_PATH);
        std::vector<char*> list;
        list.reserve(arguments.size() + 1);
        for (std::string& argument : arguments)
            list.push_back(argument.data());
        list.push_back(nullptr);
        m_iProcess = fork();
        if (m_iProcess == 0)
            runChild(list.data(), ignored);
        m_bStopped = m_iProcess > 0 && wait();
        if (m_bStopped)
            ptrace(PTRACE_SETOPTIONS, m_iProcess, nullptr, PTRACE_O_EXITKILL);
    }
    CStoppedTool(const CStoppedTool&) = delete;
    CStoppedTool& operator=(const CStoppedTool&) = delete;
    ~CStoppedTool()
    {
        if (m_bStopped)
            end(SIGKILL);
    }

    bool isStopped() const
    {
        return m_bStopped;
    }
    /// Runs to the next begin or end of a system call. \return false when it ended instead
    bool step()
    {
        m_bStopped = ptrace(PTRACE_SYSCALL, m_iProcess, nullptr, nullptr) == 0 && wait();
        return m_bStopped;
    }
    /// Path of the temporary file; empty when there is none.
    std::string temporary() const
    {
        for (const auto& entry : std::filesystem::directory_iterator(m_strDirectory))
        {
            if (entry.path().filename().string().rfind(".murv-", 0) == 0)
                return entry.path().string();
        }
        return {};
    }
    bool stepToTemporary()
    {
        while (m_bStopped && temporary().empty())
            step();
        return m_bStopped;
    }
    /// Sends the signal (0 for none) and lets it run. \return its exit code, or the negated signal that ended it
    int end(int signal)
    {
        if (signal != 0)
            kill(m_iProcess, signal);
        ptrace(PTRACE_DETACH, m_iProcess, nullptr, nullptr);
        m_bStopped = false;
        waitpid(m_iProcess, &m_iStatus, 0);
        return WIFSIGNALED(m_iStatus) ? -WTERMSIG(m_iStatus) : WEXITSTATUS(m_iStatus);
    }
    bool isTraceable() const
    {
        return m_bStopped || !WIFEXITED(m_iStatus) || WEXITSTATUS(m_iStatus) != s_ciNotTraced;
    }

private:
    [[noreturn]] void runChild(char* const* arguments, int ignored) const
    {
        for (const int signal : {SIGHUP, SIGINT, SIGTERM})
            std::signal(signal, signal == ignored ? SIG_IGN : SIG_DFL);
        const int nowhere = open("/dev/null", O_RDWR);
        for (const int descriptor : {0, 1, 2})
            dup2(nowhere, descriptor);
        if (chdir(m_strDirectory.c_str()) == 0 && ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0)
            execv(arguments[0], arguments);
        _exit(s_ciNotTraced);
    }
    bool wait()
    {
        return waitpid(m_iProcess, &m_iStatus, 0) == m_iProcess && WIFSTOPPED(m_iStatus);
    }

    std::string m_strDirectory;
    pid_t m_iProcess = -1;
    int m_iStatus = 0;
    bool m_bStopped = false;
};

bool isTracingPossible()
{
    const CTemporaryDirectory files;
    const CStoppedTool tool(files, {"--version"});
    return tool.isTraceable();
}

struct tCall
{
    std::vector<std::string> m_vArguments;
    const char* m_pNamesBefore;
};

/// Replacing, and making anew.
const tCall s_ctCalls[] = {
    {{"fmt", "--in-place", "a.murv"}, "a.murv"},
    {{"convert", "a.murv", "--to", "text", "-o", "a.murv"}, "a.murv"},
    {{"convert", "a.murv", "--to", "text", "-o", "new"}, "a.murv"},
};

/// Whether old and new content are whole, and nothing else is there.
void expectWhole(const CTemporaryDirectory& files, const tCall& call)
{
    const std::string content = files.read("a.murv");
    EXPECT_TRUE(content == s_cpUgly || content == s_cpPretty) << content;
    if (files.names() != call.m_pNamesBefore)
    {
        EXPECT_EQ(files.names(), "a.murv new");
        EXPECT_EQ(files.read("new"), s_cpPretty);
    }
}

/// Sends the signal at the stop of that number since the temporary file is there.
/// \return false when it had its name before
bool interrupt(const tCall& call, int signal, int stop)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpUgly);
    CStoppedTool tool(files, call.m_vArguments);
    if (!tool.stepToTemporary())
        return ADD_FAILURE() << "no temporary file was seen", false;
    while (stop-- > 0 && !tool.temporary().empty())
        tool.step();
    const bool there = !tool.temporary().empty();
    EXPECT_EQ(tool.end(signal), -signal);
    expectWhole(files, call);
    return there;
}
}  // namespace

TEST(Interrupt, signalsRemoveTheTemporaryFileAndEndTheTool)
{
    if (!isTracingPossible())
        GTEST_SKIP() << "NOT TESTED: needs the right to trace a process";
    for (const tCall& call : s_ctCalls)
    {
        int stops = 0;
        while (interrupt(call, SIGTERM, stops))
            ++stops;
        EXPECT_GE(stops, 6) << call.m_vArguments[0];  // at least writing, forcing to the disk, and naming
        for (const int signal : {SIGINT, SIGHUP})
            EXPECT_TRUE(interrupt(call, signal, stops / 2));
    }
}

TEST(Interrupt, ignoredSignalsStayIgnored)
{
    if (!isTracingPossible())
        GTEST_SKIP() << "NOT TESTED: needs the right to trace a process";
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
    {
        const CTemporaryDirectory files;
        files.write("a.murv", s_cpUgly);
        CStoppedTool tool(files, s_ctCalls[0].m_vArguments, signal);
        ASSERT_TRUE(tool.stepToTemporary());
        EXPECT_EQ(tool.end(signal), 0) << signal;
        EXPECT_EQ(files.read("a.murv"), s_cpPretty);
        EXPECT_EQ(files.names(), "a.murv");
    }
}

TEST(Interrupt, temporaryFileNeverGrantsMoreThanTheFile)
{
    if (!isTracingPossible())
        GTEST_SKIP() << "NOT TESTED: needs the right to trace a process";
    std::set<std::string> names;
    for (const mode_t mode : {0600U, 0640U, 04711U})
    {
        const CTemporaryDirectory files;
        const std::string path = files.write("a.murv", s_cpUgly);
        struct stat before = {};
        // Where that is allowed it belongs to somebody else, who alone may lend his rights.
        EXPECT_EQ(chown(path.c_str(), geteuid() == 0 ? 1234 : geteuid(), getegid()), 0);
        EXPECT_EQ(chmod(path.c_str(), mode), 0);
        EXPECT_EQ(stat(path.c_str(), &before), 0);
        CStoppedTool tool(files, s_ctCalls[0].m_vArguments);
        ASSERT_TRUE(tool.stepToTemporary());
        for (std::string temporary; !(temporary = tool.temporary()).empty(); tool.step())
        {
            struct stat now = {};
            ASSERT_EQ(stat(temporary.c_str(), &now), 0);
            EXPECT_EQ(now.st_mode & 07777U & ~(mode | 0600U), 0U);
            EXPECT_TRUE((now.st_mode & 04077U) == 0 || now.st_uid == before.st_uid);
            names.insert(std::filesystem::path(temporary).filename().string());
        }
        EXPECT_EQ(tool.end(0), 0);
        EXPECT_EQ(files.read("a.murv"), s_cpPretty);
    }
    EXPECT_EQ(names.size(), 3U) << "names that can be foreseen";
}

}  // namespace murv::tests
