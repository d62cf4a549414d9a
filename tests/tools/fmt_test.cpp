// tests/tools/fmt_test.cpp - what murv fmt writes, and what it never changes.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
std::string fmt(const std::string& document, std::vector<std::string> options = {})
{
    options.insert(options.begin(), {"fmt", "-"});
    const tRun run = murvOn(document, options);
    EXPECT_EQ(run.m_iExit, 0) << run.m_strError;
    EXPECT_EQ(run.m_strError, "");
    return run.m_strOutput;
}

constexpr const char* s_cpUgly = "{\"a\"=1,#7 \"sub\"={\"x\"=5},\"list\"=[1,2,3] } // end\n";
constexpr const char* s_cpPretty =
    "{\n"
    "  \"a\" = 1,\n"
    "  #7 \"sub\" = { \"x\" = 5 },\n"
    "  \"list\" = [1, 2, 3]\n"
    "} // end\n";

/// What is said about a document that is refused: nothing is written, and the exit code is 3.
std::string refusal(const std::string& document)
{
    const tRun run = murvOn(document, {"fmt", "-"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strOutput, "");
    return run.m_strError;
}
}  // namespace

TEST(Fmt, checkGivesALineOfJsonForEachFileThatDiffers)
{
    const CTemporaryDirectory files;
    files.write("a \"x\".murv", "[1,2]");
    files.write("b.murv", "[1, 2]\n");
    files.write("c.murv", "[3]");
    const tRun run = murv(files, {"fmt", "--check", "--json", "a \"x\".murv", "b.murv", "c.murv"});
    EXPECT_EQ(run.m_iExit, 1);
    EXPECT_EQ(run.m_strOutput,
              "{\"file\":\"a \\\"x\\\".murv\",\"differs\":true}\n{\"file\":\"c.murv\",\"differs\":true}\n");
    EXPECT_EQ(run.m_strError, "");
}

TEST(Fmt, writesOneMemberALine)
{
    EXPECT_EQ(fmt(s_cpUgly), s_cpPretty);
}

TEST(Fmt, leavesItsOwnLayoutAsItIs)
{
    EXPECT_EQ(fmt(s_cpPretty), s_cpPretty);
}

TEST(Fmt, compactWritesOneLineWithoutComments)
{
    EXPECT_EQ(fmt(s_cpUgly, {"--compact"}), "{\"a\"=1,#7\"sub\"={\"x\"=5},\"list\"=[1,2,3]}\n");
}

TEST(Fmt, indentTakesBlanksOrTabs)
{
    EXPECT_EQ(fmt("{\"a\"={\n\"b\"=1}}", {"--indent", "4"}), "{\n    \"a\" =\n    {\n        \"b\" = 1\n    }\n}\n");
    EXPECT_EQ(fmt("{\"a\"={\n\"b\"=1}}", {"--indent", "tab"}), "{\n\t\"a\" =\n\t{\n\t\t\"b\" = 1\n\t}\n}\n");
}

TEST(Fmt, indentOutsideItsRangeIsAWrongCall)
{
    for (const char* indent : {"0", "17", "x", "", "-1"})
        EXPECT_EQ(murvOn("[1]", {"fmt", "-", "--indent=" + std::string(indent)}).m_iExit, 2) << indent;
}

TEST(Fmt, oneLineArraysCanBeSwitchedOff)
{
    EXPECT_EQ(fmt("[1,2]", {"--no-one-line-arrays"}), "[\n  1,\n  2\n]\n");
}

TEST(Fmt, nullWordCanBeSwitchedOff)
{
    EXPECT_EQ(fmt("{\"a\"=null,\"b\"=}"), "{\n  \"a\" = null,\n  \"b\" =\n}\n");
    EXPECT_EQ(fmt("{\"a\"=null,\"b\"=1}", {"--no-null-word"}), "{\n  \"a\" =,\n  \"b\" = 1\n}\n");
}

TEST(Fmt, finalNewlineCanBeSwitchedOff)
{
    EXPECT_EQ(fmt("[1]", {"--no-final-newline"}), "[1]");
}

TEST(Fmt, optionsWorkForBinaryFiles)
{
    const std::string binary =
        murvOn("{\"a\"=[1,null],\"b\"={\"c\"=0.5}}", {"convert", "--to", "binary", "-"}).m_strOutput;
    EXPECT_EQ(fmt(binary, {"--indent", "tab", "--no-null-word", "--no-final-newline"}),
              "{\n\t\"a\" = [1,],\n\t\"b\" =\n\t{\n\t\t\"c\" = 0.5\n\t}\n}");
    EXPECT_EQ(fmt(binary, {"--compact"}), "{\"a\"=[1,null],\"b\"={\"c\"=0.5}}\n");
    EXPECT_EQ(fmt(binary, {"--no-one-line-arrays"}),
              "{\n  \"a\" =\n  [\n    1,\n    null\n  ],\n  \"b\" =\n  {\n    \"c\" = 0.5\n  }\n}\n");
}

TEST(Fmt, numbersKeepTheirSpelling)
{
    EXPECT_EQ(fmt("[0.1, 1.0, 1e3, -0.0, 1.50, 123456789.123456789, 1e400, 007, 05]"),
              "[0.1, 1.0, 1e3, -0.0, 1.50, 123456789.123456789, 1e400, 007, 05]\n");
}

TEST(Fmt, emptyStringsStayStrings)
{
    EXPECT_EQ(fmt("{\"a\"=\"\",\"b\"=[\"\",\"x\"]}"), "{\n  \"a\" = \"\",\n  \"b\" = [\"\", \"x\"]\n}\n");
    EXPECT_EQ(fmt("{\"a\"=\"\"}", {"--compact"}), "{\"a\"=\"\"}\n");
}

TEST(Fmt, spellingsAreNotMixedUpWithStringsThatLookLikeStandIns)
{
    const std::string document = "{\n  \"~\" = 0.10,\n  \"|\" = \"^\",\n  \"@\" = \"\",\n  \"~~~\" = \"\\\"~\"\n}\n";
    EXPECT_EQ(fmt(document), document);
}

TEST(Fmt, emptyContainersStayEmpty)
{
    EXPECT_EQ(fmt("{\"a\"={},\"b\"=[ ],\"c\"=[null]}"), "{\n  \"a\" = {},\n  \"b\" = [],\n  \"c\" = [null]\n}\n");
}

TEST(Fmt, membersOfEqualNameAllStay)
{
    EXPECT_EQ(fmt("{\"a\"=1,\"a\"=2,#3 \"b\"=1,#3 \"c\"=2}", {"--compact"}), "{\"a\"=1,\"a\"=2,#3\"b\"=1,#3\"c\"=2}\n");
}

TEST(Fmt, packetExpressionsStay)
{
    EXPECT_EQ(fmt("{\"amount\"=(ANF12)0.50,\"at\"=(ANF8YYYYMMDD) 0,\"fixed\"=(ACF4fix) \"\"}"),
              "{\n  \"amount\" = (ANF12) 0.50,\n  \"at\" = (ANF8YYYYMMDD) 0,\n  \"fixed\" = (ACF4fix) \"\"\n}\n");
}

TEST(Fmt, stringsKeepTheirSpelling)
{
    EXPECT_EQ(fmt("[\"\xC3\xBC \\xC3\\xBC \\u0041 \\/\",\"\xE2\x80\xAE \xFF\"]"),
              "[\"\xC3\xBC \\xC3\\xBC \\u0041 \\/\", \"\xE2\x80\xAE \xFF\"]\n");
}

TEST(Fmt, namesOfAnyLengthStay)
{
    const std::string name(300, 'n');
    EXPECT_EQ(fmt("{\"" + name + "\"=1}"), "{\n  \"" + name + "\" = 1\n}\n");
}

TEST(Fmt, leavesNoNullOutThatAContainerNeeds)
{
    EXPECT_EQ(fmt("[null]", {"--no-null-word"}), "[null]\n");
    const std::string bare = fmt("{ \"a\" = 1,\n null // c3\n}", {"--no-null-word"});
    EXPECT_EQ(bare, "{\n  \"a\" = 1,\n   null // c3\n}\n");
    EXPECT_EQ(fmt(bare, {"--no-null-word"}), bare);
    EXPECT_EQ(fmt("null", {"--no-null-word"}), "null\n");
    EXPECT_EQ(fmt("[/* one */ null, 2]", {"--no-null-word"}), "[/* one */ null, 2]\n");
    EXPECT_EQ(fmt("[1,null,(ACF4) null]", {"--no-null-word"}), "[1, , (ACF4)]\n");
    EXPECT_EQ(fmt("{\"a\"=[null,null],\"b\"=}", {"--no-null-word", "--compact"}), "{\"a\"=[,],\"b\"=}\n");
}

TEST(Fmt, keepsEveryCommentOfABlockAsItIs)
{
    const std::string document = "{\n  /* a\n// not a comment of its own\n  */\n  \"a\" = 1\n}\n";
    EXPECT_EQ(fmt(document), document);
}

TEST(Fmt, numbersAsNamesNeedTheOption)
{
    EXPECT_EQ(fmt("{1=2}", {"--number-names"}), "{\n  1 = 2\n}\n");
    EXPECT_EQ(refusal("{1=2}"),
              "<stdin>:1:2: error: Missing '}' or field member name\n{1=2}\n ^\n"
              "<stdin>: note: names stand in double quotes: \"name\" = value\n");
}

TEST(Fmt, textAfterTheDocumentStays)
{
    EXPECT_EQ(fmt("{\"a\"=1} // fine\n\"more\",  {\n"), "{\n  \"a\" = 1\n} // fine\n\"more\",  {\n");
    EXPECT_EQ(fmt("[1]  2"), "[1] 2\n");
}

TEST(Fmt, commentsStayInTheirOrderAndContainer)
{
    EXPECT_EQ(fmt("[ 1, /* first */ // second\n 2 /* third */ , // fourth\n3\n// last\n]"),
              "[\n  1, /* first */ // second\n  2 /* third */, // fourth\n  3\n  // last\n]\n");
}

TEST(Fmt, remarksStay)
{
    EXPECT_EQ(fmt("{\"a\"=(ANF4 cents) 1,\"b\"=( ACV2+128 )2}"),
              "{\n  \"a\" = (ANF4 cents) 1,\n  \"b\" = ( ACV2+128 ) 2\n}\n");
    EXPECT_EQ(fmt("{\"a\"=(ANF4 cents) 1}", {"--compact"}), "{\"a\"=(ANF4)1}\n");
}

TEST(Fmt, packetExpressionsOfContainersStay)
{
    EXPECT_EQ(fmt("[(ACF4) [1]]"), "[(ACF4) [1]]\n");
}

TEST(Fmt, showsEveryMistake)
{
    EXPECT_EQ(
        refusal("{\"a\"=1?,\"b\"=?}"),
        "<stdin>:1:7: error: Missing ',' or '}' in field declaration\n{\"a\"=1?,\"b\"=?}\n      ^\n"
        "<stdin>:1:13: error: Syntax error: value, field or array expected.\n{\"a\"=1?,\"b\"=?}\n            ^\n");
}

TEST(Fmt, widthDecidesWhatStaysOnOneLine)
{
    const std::string numbers = "111111111111, 222222222222, 333333333333, 444444444444, 555555555555, 666666666666";
    const std::string lines =
        "111111111111,\n    222222222222,\n    333333333333,\n    444444444444,\n    555555555555,\n    666666666666";
    EXPECT_EQ(fmt("{\"a\"=[" + numbers + "]}"), "{\n  \"a\" = [" + numbers + "]\n}\n");
    EXPECT_EQ(fmt("{\"a\"=[" + numbers + "]}", {"--width", "80"}), "{\n  \"a\" =\n  [\n    " + lines + "\n  ]\n}\n");
}

TEST(Fmt, compactPutsABlankBetweenAnIdAndANumber)
{
    EXPECT_EQ(fmt("{#3 5}", {"--compact"}), "{#3 5}\n");
    EXPECT_EQ(fmt("{#3 -5, #4 \"x\", #5 (ANF1) 5, #6 true}", {"--compact"}), "{#3-5,#4\"x\",#5(ANF1)5,#6true}\n");
    EXPECT_EQ(fmt("{#3 5}"), "{\n  #3  5\n}\n");
}

TEST(Fmt, checkNamesWhatDiffers)
{
    const CTemporaryDirectory files;
    files.write("ugly.murv", s_cpUgly);
    files.write("pretty.murv", s_cpPretty);
    const tRun run = murv(files, {"fmt", "--check", "pretty.murv", "ugly.murv"});
    EXPECT_EQ(run.m_iExit, 1);
    EXPECT_EQ(run.m_strOutput, "ugly.murv\n");
    EXPECT_EQ(run.m_strError, "");
    EXPECT_EQ(murv(files, {"fmt", "--check", "pretty.murv"}).m_iExit, 0);
    EXPECT_EQ(files.read("ugly.murv"), s_cpUgly);
}

TEST(Fmt, graverCodeOfSeveralFilesWins)
{
    const CTemporaryDirectory files;
    files.write("ugly.murv", s_cpUgly);
    files.write("broken.murv", "{\"a\" : 1}");
    EXPECT_EQ(murv(files, {"fmt", "--check", "broken.murv", "ugly.murv"}).m_iExit, 3);
    EXPECT_EQ(murv(files, {"fmt", "--check", "missing.murv", "broken.murv"}).m_iExit, 5);
}

TEST(Fmt, severalFilesNeedAPlaceToGo)
{
    const tRun run = murvOn("", {"fmt", "a", "b"});
    EXPECT_EQ(run.m_iExit, 2);
    EXPECT_EQ(run.m_strError, "murv: error: several files need --in-place or --check\n");
}

TEST(Fmt, inPlaceReplacesWhatDiffersAndKeepsTheMode)
{
    const CTemporaryDirectory files;
    const std::string path = files.write("a.murv", s_cpUgly);
    files.write("b.murv", s_cpUgly);
    std::filesystem::permissions(path, std::filesystem::perms(0640));
    const tRun run = murv(files, {"fmt", "--in-place", "a.murv", "b.murv"});
    EXPECT_EQ(run.m_iExit, 0) << run.m_strError;
    EXPECT_EQ(run.m_strOutput, "");
    EXPECT_EQ(files.read("a.murv"), s_cpPretty);
    EXPECT_EQ(files.read("b.murv"), s_cpPretty);
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));
    EXPECT_EQ(files.names(), "a.murv b.murv");
}

TEST(Fmt, inPlaceDoesNotTouchWhatIsLaidOutAlready)
{
    const CTemporaryDirectory files;
    const std::string path = files.write("a.murv", s_cpPretty);
    const auto longAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1000);
    std::filesystem::last_write_time(path, longAgo);
    const auto before = std::filesystem::last_write_time(path);
    EXPECT_EQ(murv(files, {"fmt", "-i", "a.murv"}).m_iExit, 0);
    EXPECT_EQ(std::filesystem::last_write_time(path), before);
}

TEST(Fmt, inPlaceFollowsASymbolicLinkAndKeepsIt)
{
    const CTemporaryDirectory files;
    std::filesystem::create_directory(files.path() + "/real");
    files.write("real/a.murv", s_cpUgly);
    std::filesystem::create_symlink("real/a.murv", files.path() + "/link.murv");
    EXPECT_EQ(murv(files, {"fmt", "-i", "link.murv"}).m_iExit, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(files.path() + "/link.murv"));
    EXPECT_EQ(files.read("real/a.murv"), s_cpPretty);
}

TEST(Fmt, inPlaceKeepsTheOldFileWhenWritingFails)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpUgly);
    tSurroundings around;
    around.m_ullMostFileBytes = 8;
    const tRun run = murv(files, {"fmt", "-i", "a.murv"}, around);
    EXPECT_EQ(run.m_iExit, 5);
    EXPECT_EQ(files.read("a.murv"), s_cpUgly);
    EXPECT_EQ(files.names(), "a.murv");
}

TEST(Fmt, inPlaceLeavesFilesOfOthersAlone)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "NOT TESTED: needs root, to run as another user";
    const CTemporaryDirectory files;
    std::filesystem::permissions(files.path(), std::filesystem::perms(0777));
    const std::string path = files.write("a.murv", s_cpUgly);
    std::filesystem::permissions(path, std::filesystem::perms(0644));
    tSurroundings around;
    around.m_bNobody = true;
    const tRun run = murv(files, {"fmt", "-i", "a.murv"}, around);
    EXPECT_EQ(run.m_iExit, 5);
    EXPECT_EQ(run.m_strError, "a.murv: error: not replaced: Permission denied\n");
    EXPECT_EQ(files.read("a.murv"), s_cpUgly);
}

TEST(Fmt, inPlaceSaysWhenTheDirectoryCannotBeWritten)
{
    const CTemporaryDirectory files;
    const std::string path = files.write("a.murv", s_cpUgly);
    std::filesystem::permissions(path, std::filesystem::perms(0666));
    std::filesystem::permissions(files.path(), std::filesystem::perms(0555));
    tSurroundings around;
    around.m_bNobody = true;
    const tRun run = murv(files, {"fmt", "-i", "a.murv"}, around);
    std::filesystem::permissions(files.path(), std::filesystem::perms(0755));
    EXPECT_EQ(run.m_iExit, 5);
    EXPECT_EQ(run.m_strError, "a.murv: error: not replaced: cannot write beside it: Permission denied\n");
    EXPECT_EQ(files.read("a.murv"), s_cpUgly);
}

TEST(Fmt, inPlaceKeepsAMalformedFile)
{
    const CTemporaryDirectory files;
    files.write("a.murv", "{\"a\" : 1}");
    EXPECT_EQ(murv(files, {"fmt", "-i", "a.murv"}).m_iExit, 3);
    EXPECT_EQ(files.read("a.murv"), "{\"a\" : 1}");
}

TEST(Fmt, standardInputCannotBeReplaced)
{
    const tRun run = murvOn("[1]", {"fmt", "--in-place", "-"});
    EXPECT_EQ(run.m_iExit, 2);
    EXPECT_EQ(run.m_strError, "murv: error: the standard input cannot be replaced: --in-place needs files\n");
}

TEST(Fmt, checkAndInPlaceExcludeEachOther)
{
    EXPECT_EQ(murvOn("[1]", {"fmt", "--check", "--in-place", "a"}).m_iExit, 2);
}

/// Layouts keep a part and the rules about it on one line, by hand.
bool isPacketLayout(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    return text.find("\"layout 1") != std::string::npos;
}

TEST(Fmt, examplesAreLaidOutAlready)
{
    std::size_t seen = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(MURV_SOURCE_DIR "/examples"))
    {
        if (entry.path().extension() != ".murv" || isPacketLayout(entry.path()))
            continue;
        ++seen;
        const tRun run = murvOn("", {"fmt", "--check", entry.path().string()});
        EXPECT_EQ(run.m_iExit, 0) << run.m_strOutput << run.m_strError;
    }
    EXPECT_GE(seen, 7U);  // three documents and four layouts
}

}  // namespace murv::tests
