// tests/tools/replace_test.cpp - which files are replaced, what they keep, and where results go.
//
// Some rules need root, another user or a file system with access control lists; a test that cannot have them says so.
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <vector>

#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
constexpr const char* s_cpUgly = "[1,2]";
constexpr const char* s_cpPretty = "[1, 2]\n";
constexpr const char* s_cpAccessList = "system.posix_acl_access";
constexpr uid_t s_cuiNobody = 65534;

tSurroundings asNobody()
{
    tSurroundings around;
    around.m_bNobody = true;
    return around;
}

/// The two ways to replace out.murv: both must keep the same rules. \return the prefix of their messages
struct tWay
{
    std::vector<std::string> m_vCall;
    const char* m_pFailure;
};

const tWay s_ctWays[] = {
    {{"fmt", "--in-place", "out.murv"}, "out.murv: error: not replaced: "},
    {{"convert", "in.murv", "--to", "text", "-o", "out.murv"}, "out.murv: error: not written: "},
};

/// A directory that everybody may write to, with the two documents.
struct tFiles : CTemporaryDirectory
{
    tFiles() : m_strOut(write("out.murv", s_cpUgly))
    {
        write("in.murv", s_cpUgly);
        setMode(path(), 0777);
        setMode(m_strOut, 0644);
    }
    static void setMode(const std::string& file, mode_t mode)
    {
        ASSERT_EQ(chmod(file.c_str(), mode), 0);
    }
    struct stat state() const
    {
        struct stat now = {};
        EXPECT_EQ(stat(m_strOut.c_str(), &now), 0);
        return now;
    }
    bool give(uid_t owner, gid_t group) const
    {
        return chown(m_strOut.c_str(), owner, group) == 0;
    }
    bool set(const char* attribute, const std::string& value, const std::string& file = "out.murv") const
    {
        return setxattr((path() + "/" + file).c_str(), attribute, value.data(), value.size(), 0) == 0;
    }
    /// "(none)" when it has none.
    std::string get(const char* attribute, const std::string& file = "out.murv") const
    {
        char value[1024];
        const ssize_t size = getxattr((path() + "/" + file).c_str(), attribute, value, sizeof value);
        return size < 0 ? std::string("(none)") : std::string(value, static_cast<std::size_t>(size));
    }
    void expectReplaced(const tRun& run) const
    {
        EXPECT_EQ(run.m_iExit, 0) << run.m_strError;
        EXPECT_EQ(read("out.murv"), s_cpPretty);
        EXPECT_EQ(names(), "in.murv out.murv");
    }
    void expectRefused(const tRun& run, const std::string& message) const
    {
        EXPECT_EQ(run.m_iExit, 5);
        EXPECT_EQ(run.m_strError, message + "\n");
        EXPECT_EQ(read("out.murv"), s_cpUgly);
        EXPECT_EQ(names(), "in.murv out.murv");
    }

    std::string m_strOut;
};

/// A list in the form of the kernel: owner and group as given, user 12345 and others as given.
std::string accessList(unsigned int owner, unsigned int user, unsigned int group, unsigned int mask)
{
    constexpr unsigned int none = 0xFFFFFFFF;
    const struct
    {
        unsigned int m_uiTag;
        unsigned int m_uiRights;
        unsigned int m_uiWho;
    } entries[] = {{1, owner, none}, {2, user, 12345}, {4, group, none}, {16, mask, none}, {32, 0, none}};
    std::string list;
    const auto put = [&list](unsigned int number, int bytes) {
        for (; bytes-- > 0; number >>= 8U)
            list += static_cast<char>(number & 0xFFU);
    };
    put(2, 4);
    for (const auto& entry : entries)
    {
        put(entry.m_uiTag, 2);
        put(entry.m_uiRights, 2);
        put(entry.m_uiWho, 4);
    }
    return list;
}
}  // namespace

#define MURV_NEEDS(condition, what)                    \
    do                                                 \
    {                                                  \
        if (!(condition))                              \
            GTEST_SKIP() << "NOT TESTED: needs " what; \
    } while (false)

TEST(Replace, inPlaceRefusesPipesSocketsAndDevicesUnread)
{
    const CTemporaryDirectory files;
    ASSERT_EQ(mkfifo((files.path() + "/pipe").c_str(), 0666), 0);
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, (files.path() + "/socket").c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    close(listener);
    std::filesystem::create_symlink("pipe", files.path() + "/link");
    tSurroundings around;
    around.m_uiMostSeconds = 20;
    const tRun run = murv(files, {"fmt", "-i", "pipe", "socket", "/dev/null", "link"}, around);
    EXPECT_EQ(run.m_iExit, 5);
    EXPECT_EQ(run.m_strError,
              "pipe: error: not replaced: it is a pipe\n"
              "socket: error: not replaced: it is a socket\n"
              "/dev/null: error: not replaced: it is a device\n"
              "link: error: not replaced: it is a pipe\n");
    EXPECT_EQ(files.names(), "link pipe socket");
}

TEST(Replace, readOnlyFilesStayWhoeverAsks)
{
    for (const tWay& way : s_ctWays)
    {
        const tFiles files;
        tFiles::setMode(files.m_strOut, 0444);
        files.expectRefused(murv(files, way.m_vCall), way.m_pFailure + std::string("it is read-only"));
        EXPECT_EQ(files.state().st_mode & 07777U, 0444U);
    }
}

TEST(Replace, modeIsKeptToTheLastBit)
{
    for (const tWay& way : s_ctWays)
    {
        for (const mode_t mode : {0600U, 0664U, 0777U, 04755U, 06711U})
        {
            const tFiles files;
            tFiles::setMode(files.m_strOut, mode);
            files.expectReplaced(murv(files, way.m_vCall));
            EXPECT_EQ(files.state().st_mode & 07777U, mode);
        }
    }
}

TEST(Replace, extendedAttributesAreKept)
{
    for (const tWay& way : s_ctWays)
    {
        const tFiles files;
        const std::string value("a\0b\n", 4);
        MURV_NEEDS(files.set("user.murv.origin", value), "a file system with user attributes");
        ASSERT_TRUE(files.set("user.murv.empty", ""));
        files.expectReplaced(murv(files, way.m_vCall));
        EXPECT_EQ(files.get("user.murv.origin"), value);
        EXPECT_EQ(files.get("user.murv.empty"), "");
    }
}

TEST(Replace, accessControlListIsKept)
{
    for (const tWay& way : s_ctWays)
    {
        const tFiles files;
        const std::string list = accessList(6, 4, 0, 4);
        tFiles::setMode(files.m_strOut, 0600);
        MURV_NEEDS(files.set(s_cpAccessList, list), "a file system with access control lists");
        files.expectReplaced(murv(files, way.m_vCall));
        EXPECT_EQ(files.get(s_cpAccessList), list);
        EXPECT_EQ(files.state().st_mode & 07777U, 0640U);  // the mask of the list is shown in the place of the group
    }
}

TEST(Replace, listThatTheDirectoryGivesNewFilesIsNotAdded)
{
    for (const tWay& way : s_ctWays)
    {
        const tFiles files;
        tFiles::setMode(files.m_strOut, 0640);
        MURV_NEEDS(files.set("system.posix_acl_default", accessList(7, 7, 7, 7), "."),
                   "a file system with access control lists");
        files.expectReplaced(murv(files, way.m_vCall));
        EXPECT_EQ(files.get(s_cpAccessList), "(none)");
        EXPECT_EQ(files.state().st_mode & 07777U, 0640U);
    }
}

TEST(Replace, newResultGetsTheListThatTheDirectoryGives)
{
    const tFiles files;
    MURV_NEEDS(files.set("system.posix_acl_default", accessList(7, 7, 7, 7), "."),
               "a file system with access control lists");
    files.write("other", "");
    EXPECT_EQ(murv(files, {"convert", "in.murv", "--to", "text", "-o", "new"}).m_iExit, 0);
    EXPECT_EQ(files.get(s_cpAccessList, "new"), files.get(s_cpAccessList, "other"));
    EXPECT_NE(files.get(s_cpAccessList, "new"), "(none)");
}

TEST(Replace, newResultHasTheModeOfTheUmask)
{
    const tFiles files;
    const mode_t before = umask(027);
    EXPECT_EQ(murv(files, {"convert", "in.murv", "--to", "text", "-o", "new"}).m_iExit, 0);
    umask(before);
    EXPECT_EQ(std::filesystem::status(files.path() + "/new").permissions(), std::filesystem::perms(0640));
}

TEST(Replace, ownerAndGroupAreKept)
{
    MURV_NEEDS(geteuid() == 0, "root, to give files away");
    for (const tWay& way : s_ctWays)
    {
        const tFiles files;
        ASSERT_TRUE(files.give(1234, 2345));
        tFiles::setMode(files.m_strOut, 06664);
        files.expectReplaced(murv(files, way.m_vCall));
        EXPECT_EQ(files.state().st_uid, 1234U);
        EXPECT_EQ(files.state().st_gid, 2345U);
        EXPECT_EQ(files.state().st_mode & 07777U, 06664U);
    }
}

TEST(Replace, fileThatWouldChangeHandsIsRefused)
{
    MURV_NEEDS(geteuid() == 0, "root, to give files away");
    for (const tWay& way : s_ctWays)
    {
        const tFiles files;
        ASSERT_TRUE(files.give(1234, s_cuiNobody));
        tFiles::setMode(files.m_strOut, 04777);
        files.expectRefused(murv(files, way.m_vCall, asNobody()),
                            way.m_pFailure + std::string("its owner cannot be kept: Operation not permitted"));
        EXPECT_EQ(files.state().st_uid, 1234U);
        ASSERT_TRUE(files.give(s_cuiNobody, 2345));
        files.expectRefused(murv(files, way.m_vCall, asNobody()),
                            way.m_pFailure + std::string("its group cannot be kept: Operation not permitted"));
        ASSERT_TRUE(files.give(s_cuiNobody, s_cuiNobody));
        files.expectReplaced(murv(files, way.m_vCall, asNobody()));
    }
}

TEST(Replace, attributeThatCannotBeKeptIsNamed)
{
    MURV_NEEDS(geteuid() == 0, "root, to give files away");
    for (const tWay& way : s_ctWays)
    {
        const tFiles files;
        ASSERT_TRUE(files.give(s_cuiNobody, s_cuiNobody));
        MURV_NEEDS(files.set("security.murv\n", "x"), "a file system with security attributes");
        const std::string fault = "its attribute security.murv? cannot be kept: Operation not permitted";
        files.expectRefused(murv(files, way.m_vCall, asNobody()), way.m_pFailure + fault);
        EXPECT_EQ(files.get("security.murv\n"), "x");
    }
}

TEST(Replace, attributesOfTheContentGo)
{
    for (const tWay& way : s_ctWays)
    {
        const tFiles files;
        const std::string capability("\0\0\0\2\1\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 20);
        MURV_NEEDS(files.set("security.capability", capability), "root, and a file system with capabilities");
        files.expectReplaced(murv(files, way.m_vCall));
        EXPECT_EQ(files.get("security.capability"), "(none)");
    }
}

TEST(Replace, otherHardLinksKeepTheOldContent)
{
    const tFiles files;
    std::filesystem::create_hard_link(files.m_strOut, files.path() + "/second");
    EXPECT_EQ(murv(files, {"fmt", "-i", "out.murv"}).m_iExit, 0);
    EXPECT_EQ(files.read("out.murv"), s_cpPretty);
    EXPECT_EQ(files.read("second"), s_cpUgly);
}

TEST(Replace, longestNamesAreNoHindrance)
{
    const CTemporaryDirectory files;
    const std::string name(255, 'n');
    files.write(name, s_cpUgly);
    const tRun run = murv(files, {"fmt", "-i", name});
    EXPECT_EQ(run.m_iExit, 0) << run.m_strError;
    EXPECT_EQ(files.read(name), s_cpPretty);
}

TEST(Replace, resultGoesWhereALinkLeads)
{
    const tFiles files;
    std::filesystem::create_directory(files.path() + "/real");
    std::filesystem::create_symlink("real/first", files.path() + "/link");
    std::filesystem::create_symlink("second", files.path() + "/real/first");
    for (const char* state : {"made", "replaced"})
    {
        const tRun run = murv(files, {"convert", "in.murv", "--to", "text", "-o", "link"});
        EXPECT_EQ(run.m_iExit, 0) << state << run.m_strError;
        EXPECT_EQ(files.read("real/second"), s_cpPretty) << state;
        EXPECT_TRUE(std::filesystem::is_symlink(files.path() + "/link")) << state;
        EXPECT_TRUE(std::filesystem::is_symlink(files.path() + "/real/first")) << state;
        files.write("real/second", "before");
    }
}

TEST(Replace, pathsThatLeadToNoFileAreOutputFailures)
{
    const tFiles files;
    std::filesystem::create_symlink("circle", files.path() + "/circle");
    std::filesystem::create_symlink("no/place", files.path() + "/nowhere");
    const struct
    {
        const char* m_pPath;
        const char* m_pFault;
    } rows[] = {
        {"circle", "Too many levels of symbolic links"},
        {"nowhere", "the directory of the file does not exist"},
        {"no/place", "the directory of the file does not exist"},
        {"in.murv/x", "Not a directory"},
        {"new/", "Is a directory"},
        {".", "Is a directory"},
    };
    for (const auto& row : rows)
    {
        const tRun run = murv(files, {"convert", "in.murv", "--to", "text", "-o", row.m_pPath});
        EXPECT_EQ(run.m_iExit, 5);
        EXPECT_EQ(run.m_strError, std::string(row.m_pPath) + ": error: not written: " + row.m_pFault + "\n");
    }
    EXPECT_EQ(files.names(), "circle in.murv nowhere out.murv");
}

TEST(Replace, devicesAndOpenStreamsTakeTheBytes)
{
    const tFiles files;
    const std::vector<std::string> call = {"convert", "in.murv", "--to", "text", "-o", "stream"};
    std::filesystem::create_symlink("/proc/self/fd/1", files.path() + "/stream");  // as /dev/stdout is one
    EXPECT_EQ(murv(files, {"convert", "in.murv", "--to", "text", "-o", "/dev/null"}).m_iExit, 0);
    tSurroundings around;
    around.m_strOutputFile = files.write("log", "");
    std::filesystem::create_hard_link(around.m_strOutputFile, files.path() + "/same");
    const tRun run = murv(files, call, around);
    EXPECT_EQ(run.m_iExit, 0) << run.m_strError;
    EXPECT_EQ(files.read("same"), s_cpPretty);
    around.m_strOutputFile = "/dev/full";
    EXPECT_EQ(murv(files, call, around).m_strError, "stream: error: not written: No space left on device\n");
    around.m_bReaderGone = true;
    const tRun gone = murv(files, call, around);
    EXPECT_EQ(gone.m_iExit, 5);
    EXPECT_EQ(gone.m_strError, "stream: error: not written: Broken pipe\n");
}

TEST(Replace, limitOfFileSizesLeavesTheOldFile)
{
    tSurroundings around;
    around.m_ullMostFileBytes = 70;  // enough for the messages
    for (const tWay& way : s_ctWays)
    {
        const tFiles files;
        std::string longer = "[1";
        for (int i = 0; i < 60; ++i)
            longer += ",1";
        longer += "]";
        files.write("in.murv", longer);
        files.write("out.murv", longer);
        const tRun run = murv(files, way.m_vCall, around);
        EXPECT_EQ(run.m_iExit, 5);
        EXPECT_EQ(run.m_strError, way.m_pFailure + std::string("File too large\n"));
        EXPECT_EQ(files.read("out.murv"), longer);
        EXPECT_EQ(files.names(), "in.murv out.murv");
    }
}

TEST(Replace, fullDiskLeavesTheOldFile)
{
    // The mounts of this process alone, so that nothing stays when it ends.
    MURV_NEEDS(
        geteuid() == 0 && unshare(CLONE_NEWNS) == 0 && mount("none", "/", "none", MS_REC | MS_PRIVATE, nullptr) == 0,
        "root, and the right to mount");
    for (const tWay& way : s_ctWays)
    {
        const CTemporaryDirectory place;
        ASSERT_EQ(mount("none", place.path().c_str(), "tmpfs", 0, "size=16k"), 0) << std::strerror(errno);
        const std::string half = "[1,2" + std::string(4200, ' ') + "]";
        place.write("out.murv", half);
        place.write("in.murv", half);
        place.write("rest", std::string(4096 * 4, 'x'));  // cut by the disk, which is full then
        const tRun run = murv(place, way.m_vCall);
        EXPECT_EQ(run.m_iExit, 5);
        EXPECT_EQ(run.m_strError, way.m_pFailure + std::string("No space left on device\n"));
        EXPECT_EQ(place.read("out.murv"), half);
        EXPECT_EQ(place.names(), "in.murv out.murv rest");
        EXPECT_EQ(umount2(place.path().c_str(), MNT_DETACH), 0);
    }
}

}  // namespace murv::tests
