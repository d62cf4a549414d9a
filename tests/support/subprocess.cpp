// tests/support/subprocess.cpp - fork, redirect, exec, collect.
//
// Streams go through files, so that neither side ever waits for the other; only a terminal cannot be a file.
#include "tests/support/subprocess.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace murv::tests
{

namespace
{
constexpr unsigned int s_cuiNobody = 65534;
constexpr int s_ciNotStarted = 126;
constexpr unsigned long long s_cullMostSeconds = 120;  // of processor time: nothing runs for ever

[[noreturn]] void fail(const char* what)
{
    throw std::runtime_error(std::string("subprocess: ") + what + ": " + std::to_string(errno));
}

std::string fileContent(const std::string& path)
{
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

/// Both ends of a terminal; what is written to it comes out unchanged.
struct tTerminal
{
    int m_iMaster = -1;
    int m_iSlave = -1;

    void open()
    {
        m_iMaster = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
        if (m_iMaster < 0 || grantpt(m_iMaster) != 0 || unlockpt(m_iMaster) != 0)
            fail("no terminal");
        m_iSlave = ::open(ptsname(m_iMaster), O_RDWR | O_NOCTTY | O_CLOEXEC);
        termios mode = {};
        if (m_iSlave < 0 || tcgetattr(m_iSlave, &mode) != 0)
            fail("no terminal");
        mode.c_oflag &= ~static_cast<tcflag_t>(OPOST);
        tcsetattr(m_iSlave, TCSANOW, &mode);
    }
    std::string take() const
    {
        std::string text;
        char piece[4096];
        fcntl(m_iMaster, F_SETFL, O_NONBLOCK);
        for (ssize_t got = 0; (got = ::read(m_iMaster, piece, sizeof piece)) > 0;)
            text.append(piece, static_cast<std::size_t>(got));
        return text;
    }
    void close() const
    {
        ::close(m_iMaster);
        ::close(m_iSlave);
    }
};

void limit(decltype(RLIMIT_FSIZE) resource, unsigned long long most)
{
    const rlimit bound = {static_cast<rlim_t>(most), static_cast<rlim_t>(most)};
    if (most != 0)
        setrlimit(resource, &bound);
}

void redirect(int descriptor, int to)
{
    if (descriptor < 0 || dup2(descriptor, to) < 0)
        _exit(s_ciNotStarted);
}

/// What the child does; it never returns.
[[noreturn]] void runChild(int program, char* const* arguments, char* const* environment, const tSurroundings& around,
                           const std::string& files, const tTerminal& terminal)
{
    redirect(open((files + "/in").c_str(), O_RDONLY), STDIN_FILENO);
    const std::string output = around.m_strOutputFile.empty() ? files + "/out" : around.m_strOutputFile;
    redirect(open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
    redirect(around.m_bTerminal ? terminal.m_iSlave : open((files + "/err").c_str(), O_WRONLY | O_CREAT, 0600),
             STDERR_FILENO);
    if (around.m_bReaderGone)
    {
        int ends[2];
        if (pipe(ends) != 0)
            _exit(s_ciNotStarted);
        redirect(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
    }
    for (int descriptor = 3; descriptor < 64; ++descriptor)
    {
        if (descriptor != program)
            close(descriptor);
    }
    if (around.m_bClosedInput)
        close(STDIN_FILENO);
    if (around.m_bClosedOutput)
        close(STDOUT_FILENO);
    if (!around.m_strDirectory.empty() && chdir(around.m_strDirectory.c_str()) != 0)
        _exit(s_ciNotStarted);
    if (around.m_bNobody && geteuid() == 0 && (setgid(s_cuiNobody) != 0 || setuid(s_cuiNobody) != 0))
        _exit(s_ciNotStarted);
    limit(RLIMIT_CPU, s_cullMostSeconds);
    limit(RLIMIT_FSIZE, around.m_ullMostFileBytes);
    limit(RLIMIT_AS, around.m_ullMostMemory);
    alarm(around.m_uiMostSeconds);
    fexecve(program, arguments, environment);
    _exit(s_ciNotStarted);
}

std::vector<char*> pointers(std::vector<std::string>& texts)
{
    std::vector<char*> list;
    list.reserve(texts.size() + 1);
    for (std::string& text : texts)
        list.push_back(text.data());
    list.push_back(nullptr);
    return list;
}

/// The options of the sanitizers must reach the program, too.
void addInherited(std::vector<std::string>& environment)
{
    for (const char* name : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "PATH"})
    {
        if (const char* const value = std::getenv(name))
            environment.push_back(std::string(name) + "=" + value);
    }
}
}  // namespace

tRun runProgram(const std::vector<std::string>& command, const tSurroundings& around)
{
    const CTemporaryDirectory files;
    files.write("in", around.m_strInput);
    tTerminal terminal;
    if (around.m_bTerminal)
        terminal.open();
    // Opened with the rights of the test, so that it can also be run without them.
    const int program = open(command.front().c_str(), O_RDONLY | O_CLOEXEC);
    if (program < 0)
        fail("the program cannot be opened");

    std::vector<std::string> arguments = command;
    std::vector<std::string> environment = around.m_vEnvironment;
    if (environment.empty())
        environment.emplace_back("TERM=xterm");
    addInherited(environment);
    const std::vector<char*> argumentList = pointers(arguments);
    const std::vector<char*> environmentList = pointers(environment);
    const pid_t child = fork();
    if (child < 0)
        fail("fork");
    if (child == 0)
        runChild(program, argumentList.data(), environmentList.data(), around, files.path(), terminal);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR)
        continue;
    close(program);

    tRun run;
    run.m_iExit = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    run.m_strOutput = fileContent(files.path() + "/out");
    run.m_strError = around.m_bTerminal ? terminal.take() : fileContent(files.path() + "/err");
    if (around.m_bTerminal)
        terminal.close();
    return run;
}

CTemporaryDirectory::CTemporaryDirectory()
    : m_strPath((std::filesystem::temp_directory_path() / "murv-test-XXXXXX").string())
{
    if (mkdtemp(m_strPath.data()) == nullptr)
        fail("mkdtemp");
    chmod(m_strPath.c_str(), 0755);
}

CTemporaryDirectory::~CTemporaryDirectory()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_strPath, ignored);
}

std::string CTemporaryDirectory::write(const std::string& name, const std::string& content) const
{
    std::string path = m_strPath + "/" + name;
    std::ofstream(path, std::ios::binary) << content;
    return path;
}

std::string CTemporaryDirectory::read(const std::string& name) const
{
    return fileContent(m_strPath + "/" + name);
}

std::string CTemporaryDirectory::names() const
{
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(m_strPath))
        found.push_back(entry.path().filename().string());
    std::sort(found.begin(), found.end());
    std::string text;
    for (const std::string& name : found)
        text += (text.empty() ? "" : " ") + name;
    return text;
}

}  // namespace murv::tests
