// tests/tools/names_test.cpp - names of files and parts of documents are shown so that a terminal cannot be fooled.
#include <gtest/gtest.h>

#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
// An escape sequence, DEL, a line feed, a C1 control, a right-to-left override and an isolate; and an honest umlaut.
constexpr const char* s_cpName = "a\x1b[31m\x7f\n\xC2\x9B\xE2\x80\xAE\xE2\x81\xA6\xC3\xA4.murv";
constexpr const char* s_cpShown = "a?[31m?????\xC3\xA4.murv";
constexpr const char* s_cpRaw = "raw\xFF\xC3.murv";
constexpr const char* s_cpRawShown = "raw??.murv";

// The same names as JSON strings: all characters are there, and a terminal still shows them as text.
constexpr const char* s_cpNameInJson = "\"a\\u001b[31m\\u007f\\n\\u009b\\u202e\\u2066\xC3\xA4.murv\"";
constexpr const char* s_cpRawInJson = "\"raw\xEF\xBF\xBD\xEF\xBF\xBD.murv\"";
}  // namespace

TEST(Names, areShownSafelyOnBothStreams)
{
    for (const auto& [name, shown] : {std::pair(s_cpName, s_cpShown), std::pair(s_cpRaw, s_cpRawShown)})
    {
        const std::string safe = shown;
        const CTemporaryDirectory files;
        files.write(name, "[1,2]");
        EXPECT_EQ(murv(files, {"fmt", "--check", name}).m_strOutput, safe + "\n");
        EXPECT_EQ(murv(files, {"check", name}).m_strOutput, safe + ": accepted\n");
        EXPECT_EQ(murv(files, {"stat", name}).m_strOutput.rfind(safe + " (text)\n", 0), 0U);
        EXPECT_EQ(murv(files, {"get", name, "x"}).m_strError, safe + ": note: nothing at x\n");
        EXPECT_EQ(murv(files, {"info", name}).m_strError, safe + ": error: is not a binary file\n");
        ASSERT_EQ(murv(files, {"convert", "--to", "binary", "-o", name, name}).m_iExit, 0);
        EXPECT_EQ(murv(files, {"info", name}).m_strOutput.rfind(safe + "\n", 0), 0U);
        files.write(name, "[:]");
        EXPECT_EQ(murv(files, {"check", name}).m_strError.rfind(safe + ":1:2: error: ", 0), 0U);
        const std::string missing = std::string("no ") + name;
        EXPECT_EQ(murv(files, {"check", missing}).m_strError,
                  "no " + safe + ": error: cannot be read: No such file or directory\n");
    }
}

TEST(Names, ofArgumentsAreShownSafelyToo)
{
    EXPECT_EQ(murvOn("[1, 2]", {"get", "-", "x\xE2\x80\xAEy"}).m_strError, "<stdin>: note: nothing at x?y\n");
    EXPECT_EQ(murvOn("[1, 2]", {"get", "-", "x\x1b["}).m_strError, "PATH:1:4: error: an index is needed\nx?[\n   ^\n");
    EXPECT_EQ(murvOn("", {"fmt", "--indent", "\x1b", "-"}).m_iExit, 2);
    EXPECT_EQ(murvOn("", {"convert", "--to", "\x1b[2J", "-"}).m_strError.find('\x1b'), std::string::npos);
}

TEST(Names, inJsonAreTheRealOnes)
{
    for (const auto& [name, shown] : {std::pair(s_cpName, s_cpNameInJson), std::pair(s_cpRaw, s_cpRawInJson)})
    {
        const std::string json = shown;
        const CTemporaryDirectory files;
        files.write(name, "[1,2]");
        EXPECT_EQ(murv(files, {"fmt", "--check", "--json", name}).m_strOutput,
                  "{\"file\":" + json + ",\"differs\":true}\n");
        EXPECT_EQ(murv(files, {"check", "--json", name}).m_strOutput, "{\"file\":" + json + ",\"accepted\":true}\n");
        EXPECT_EQ(murv(files, {"stat", "--json", name}).m_strOutput.rfind("{\"file\":" + json + ",", 0), 0U);
        EXPECT_EQ(murv(files, {"get", "--json", name, "x"}).m_strError,
                  "{\"severity\":\"note\",\"file\":" + json + ",\"message\":\"nothing at x\"}\n");
    }
}

TEST(Names, excerptsDoNotChangeTheDirectionOfWriting)
{
    const char* const controls[] = {"\xD8\x9C",     "\xE2\x80\x8E", "\xE2\x80\x8F", "\xE2\x80\xAA",
                                    "\xE2\x80\xAB", "\xE2\x80\xAC", "\xE2\x80\xAD", "\xE2\x80\xAE",
                                    "\xE2\x81\xA6", "\xE2\x81\xA7", "\xE2\x81\xA8", "\xE2\x81\xA9"};
    for (const std::string control : controls)
    {
        const tRun run = murvOn("{ /*" + control + "\xC3\xA4*/ : }", {"check", "-"});
        EXPECT_EQ(run.m_strError, "<stdin>:1:" + std::to_string(10 + control.size()) +
                                      ": error: Missing '}' or field member name\n"
                                      "{ /*?\xC3\xA4*/ : }\n"
                                      "         ^\n");
    }
    // What stands beside them is shown.
    EXPECT_NE(murvOn("{ /*\xE2\x80\x8D\xE2\x80\xA9\xE2\x81\xA5\xE2\x81\xAA*/ : }", {"check", "-"})
                  .m_strError.find("{ /*\xE2\x80\x8D\xE2\x80\xA9\xE2\x81\xA5\xE2\x81\xAA*/ : }\n"),
              std::string::npos);
}

}  // namespace murv::tests
