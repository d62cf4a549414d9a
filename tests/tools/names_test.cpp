// tests/tools/names_test.cpp - names of files and parts of documents are shown so that a terminal cannot be fooled.
#include <gtest/gtest.h>

#include "tests/tools/sales.h"
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

TEST(Names, ofLayoutsAndPacketsAreShownSafely)
{
    for (const std::string name : {s_cpName, s_cpRaw})
    {
        const CTemporaryDirectory files;
        const std::string packets = "p" + name;
        const std::string missing = "missing " + name;
        files.write(name, s_cpSalesLayout);
        files.write(packets, std::string(s_cpSales).replace(33, 1, "O"));
        const std::vector<std::vector<std::string>> calls = {
            {"check", "-l", name, packets},
            {"check", "-l", missing, packets},
            {"unpack", "-l", name, packets},
            {"unpack", "-l", name, packets, "--on-fault", "collect", missing + "/x"},
            {"unpack", "-l", name, packets, "-o", missing + "/x"},
            {"unpack", "-l", packets, name},
            {"unpack", "-l", name, missing},
            {"pack", "-l", name, packets},
            {"explain", "-l", name, packets, "--html"},
            {"explain", "-l", name, missing},
            {"layout", packets},
            {"picture", packets},
            {"doc", name},
            {"gen", "wireshark", packets},
            {"gen", "samples", "-l", name, "-d", packets},
        };
        for (const std::vector<std::string>& call : calls)
        {
            const tRun run = murv(files, call);
            const std::string shown = run.m_strOutput + run.m_strError;
            EXPECT_NE(shown, "") << call[0];
            for (const char* const unsafe :
                 {"\x1b", "\x7f", "\xC2\x9B", "\xE2\x80\xAE", "\xE2\x81\xA6", "\xFF", "\xC3."})
                EXPECT_EQ(shown.find(unsafe), std::string::npos) << call[0] << "\n" << shown;
        }
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
