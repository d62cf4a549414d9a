// tests/tools/convert_test.cpp - murv convert: text to binary files and back, with and without a password.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "murv/murv.h"
#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
constexpr const char* s_cpDocument =
    "{\n"
    "  #7 \"port\" = 8080, // main\n"
    "  \"date\" = (ACF8YYYYMMDD) 20240101,\n"
    "  \"host\" = \"db\"\n"
    "}\n";

/// The document as binary files, with the password "old" and without one; and both passwords.
void writePasswordFiles(const CTemporaryDirectory& files)
{
    files.write("a.murv", s_cpDocument);
    files.write("old", "old\n");
    files.write("new", "new\n");
    murv(files, {"convert", "--to", "binary", "-o", "plain.bin", "a.murv"});
    murv(files, {"convert", "--to", "binary", "--password-file", "old", "-o", "old.bin", "a.murv"});
}

/// Converts to out.bin.
tRun toBinary(const CTemporaryDirectory& files, std::vector<std::string> arguments, const tSurroundings& around = {})
{
    arguments.insert(arguments.begin(), {"convert", "--to", "binary", "-o", "out.bin"});
    return murv(files, arguments, around);
}

/// What out.bin says when it is opened with the password in the file, or without one.
tRun opened(const CTemporaryDirectory& files, const std::string& passwordFile = "")
{
    std::vector<std::string> call = {"convert", "--to", "text", "out.bin"};
    if (!passwordFile.empty())
        call.insert(call.end(), {"--password-file", passwordFile});
    return murv(files, call);
}

bool hasResult(const CTemporaryDirectory& files)
{
    return std::filesystem::exists(files.path() + "/out.bin");
}
}  // namespace

TEST(Convert, refusesToLoseCommentsAndRemarks)
{
    for (const char* const to : {"json", "binary"})
    {
        const tRun comment = murvOn("{ \"a\" = 1 /*x*/ /*y*/ }", {"convert", "--to", to, "-"});
        EXPECT_EQ(comment.m_iExit, 3);
        EXPECT_EQ(comment.m_strOutput, "");
        EXPECT_EQ(comment.m_strError.substr(0, comment.m_strError.find('\n')),
                  "<stdin>:1:11: error: this comment would be lost: a value keeps one comment on its line");
        // A remark may look like a comment, even like one that is kept.
        for (const char* const document :
             {"{ \"b\" = (ANF4 remark) 2 }", "{ \"b\" = (ANF4 /remark) 2 }", "{ \"b\" = (ANF4 /*c*/) 2 /*c*/ }"})
        {
            const tRun remark = murvOn(document, {"convert", "--to", to, "-"});
            EXPECT_EQ(remark.m_iExit, 3);
            EXPECT_EQ(remark.m_strError.substr(0, remark.m_strError.find('\n')),
                      "<stdin>:1:15: error: this remark in a packet expression would be lost");
        }
    }
}

TEST(Convert, textThatBecomesTextKeepsEverySpelling)
{
    const std::string name(300, 'n');
    const std::string document = "{ // first\n  \"" + name +
                                 "\" = (ANV2+128 remark) 007,\n  \"a\" = [1.0, 1e3, \"\\u0041 \xC3\xBC\"]" +
                                 " /*x*/ /*y*/,\n  \"a\" = (ACF4) [],\n}\n";
    const tRun text = murvOn(document, {"convert", "--to", "text", "-"});
    EXPECT_EQ(text.m_strError, "");
    EXPECT_EQ(text.m_strOutput, document);
    EXPECT_EQ(murvOn("[ 007, 1.50 /*x*/ /*y*/, \"\\u0041\" ]", {"convert", "--to", "compact", "-"}).m_strOutput,
              "[007,1.50,\"\\u0041\"]\n");
}

TEST(Convert, textEndsWithOneLineFeed)
{
    for (const char* const comments : {" // c", "\n// c", " // c\n// d\n\n/* e */"})
    {
        const std::string document = "[1]" + std::string(comments);
        for (const char* const end : {"", "\n", "\n\n\n"})
            EXPECT_EQ(murvOn(document + end, {"convert", "--to", "text", "-"}).m_strOutput, document + "\n");
        const tRun binary = murvOn(document, {"convert", "--to", "binary", "-"});
        ASSERT_EQ(binary.m_iExit, 0) << binary.m_strError;
        const tRun text = murvOn(binary.m_strOutput, {"convert", "--to", "text", "-"});
        EXPECT_EQ(text.m_strOutput.find("\n\n"), std::string::npos) << text.m_strOutput;
        EXPECT_EQ(murvOn(text.m_strOutput, {"fmt", "--check", "-"}).m_iExit, 0) << text.m_strOutput;
    }
}

TEST(Convert, textBecomesBinaryAndTextAgain)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpDocument);
    EXPECT_EQ(murv(files, {"convert", "--to", "binary", "-o", "a.bin", "a.murv"}).m_iExit, 0);
    EXPECT_EQ(files.read("a.bin").substr(0, 4), "MURF");
    const tRun run = murv(files, {"convert", "--to", "text", "a.bin"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(run.m_strOutput, s_cpDocument);
    EXPECT_EQ(run.m_strError, "");
}

TEST(Convert, compactIsOneLine)
{
    EXPECT_EQ(murvOn(s_cpDocument, {"convert", "--to", "compact", "-"}).m_strOutput,
              "{#7\"port\"=8080,\"date\"=(ACF8YYYYMMDD)20240101,\"host\"=\"db\"}\n");
}

TEST(Convert, binaryResultGoesToAPipe)
{
    const tRun run = murvOn(s_cpDocument, {"convert", "--to", "binary", "-"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(murvOn(run.m_strOutput, {"convert", "--to", "text", "-"}).m_strOutput, s_cpDocument);
}

TEST(Convert, passwordComesFromAFile)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpDocument);
    files.write("password", "secret\n");
    EXPECT_EQ(
        murv(files, {"convert", "--to", "binary", "--password-file", "password", "-o", "a.bin", "a.murv"}).m_iExit, 0);
    EXPECT_EQ(files.read("a.bin")[11], 1);
    EXPECT_EQ(murv(files, {"convert", "--to", "text", "--password-file", "password", "a.bin"}).m_strOutput,
              s_cpDocument);
}

TEST(Convert, passwordComesFromTheStandardInput)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpDocument);
    tSurroundings around;
    around.m_strInput = "secret";
    EXPECT_EQ(murv(files, {"convert", "--to", "binary", "--password-stdin", "-o", "a.bin", "a.murv"}, around).m_iExit,
              0);
    EXPECT_EQ(murv(files, {"convert", "--to", "text", "--password-stdin", "a.bin"}, around).m_strOutput, s_cpDocument);
    EXPECT_EQ(murv(files, {"fmt", "--password-stdin", "a.bin"}, around).m_strOutput, s_cpDocument);
}

TEST(Convert, missingOrWrongPasswordHasItsOwnExitCode)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpDocument);
    files.write("right", "secret");
    files.write("wrong", "Secret");
    murv(files, {"convert", "--to", "binary", "--password-file", "right", "-o", "a.bin", "a.murv"});
    const tRun missing = murv(files, {"convert", "--to", "text", "a.bin"});
    EXPECT_EQ(missing.m_iExit, 6);
    EXPECT_EQ(missing.m_strError, "a.bin: error: Input the password\n");
    const tRun wrong = murv(files, {"convert", "--to", "text", "--password-file", "wrong", "a.bin"});
    EXPECT_EQ(wrong.m_iExit, 6);
    EXPECT_EQ(wrong.m_strError, "a.bin: error: Mismatched password\n");
    for (const char* verb : {"check", "stat", "fmt"})
        EXPECT_EQ(murv(files, {verb, "a.bin"}).m_iExit, 6) << verb;
}

TEST(Convert, passwordFileWithoutAPasswordIsRefused)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpDocument);
    files.write("empty", "\n");
    const tRun run = murv(files, {"convert", "--to", "binary", "--password-file", "empty", "-o", "a.bin", "a.murv"});
    EXPECT_EQ(run.m_iExit, 6);
    EXPECT_EQ(run.m_strError, "empty: error: holds no password\n");
    EXPECT_FALSE(std::filesystem::exists(files.path() + "/a.bin"));
}

TEST(Convert, standardInputHoldsOneThing)
{
    const std::vector<std::vector<std::string>> passwords = {
        {"--password-stdin"}, {"--password-file", "-"}, {"--output-password-stdin"}, {"--output-password-file", "-"}};
    for (const std::vector<std::string>& password : passwords)
    {
        std::vector<std::string> call = {"convert", "--to", "binary", "-"};
        call.insert(call.end(), password.begin(), password.end());
        const tRun run = murvOn(s_cpDocument, call);
        EXPECT_EQ(run.m_iExit, 2) << password[0];
        EXPECT_EQ(run.m_strError, "murv: error: the standard input cannot hold both document and password\n")
            << password[0];
    }
}

TEST(Convert, passwordIsKept)
{
    const CTemporaryDirectory files;
    writePasswordFiles(files);
    EXPECT_EQ(toBinary(files, {"--password-file", "old", "old.bin"}).m_iExit, 0);
    EXPECT_EQ(files.read("out.bin"), files.read("old.bin"));
    EXPECT_EQ(opened(files, "old").m_strOutput, s_cpDocument);
    EXPECT_EQ(opened(files).m_iExit, 6);
}

TEST(Convert, passwordIsTakenOff)
{
    const CTemporaryDirectory files;
    writePasswordFiles(files);
    EXPECT_EQ(toBinary(files, {"--password-file", "old", "--no-output-password", "old.bin"}).m_iExit, 0);
    EXPECT_EQ(files.read("out.bin"), files.read("plain.bin"));
    EXPECT_EQ(opened(files).m_strOutput, s_cpDocument);
}

TEST(Convert, passwordIsPutOnAPlainFile)
{
    const CTemporaryDirectory files;
    writePasswordFiles(files);
    for (const char* plain : {"a.murv", "plain.bin"})
    {
        EXPECT_EQ(toBinary(files, {"--output-password-file", "new", plain}).m_iExit, 0) << plain;
        EXPECT_EQ(opened(files, "new").m_strOutput, s_cpDocument) << plain;
        EXPECT_EQ(opened(files).m_iExit, 6) << plain;
    }
}

TEST(Convert, passwordIsChanged)
{
    const CTemporaryDirectory files;
    writePasswordFiles(files);
    EXPECT_EQ(toBinary(files, {"--password-file", "old", "--output-password-file", "new", "old.bin"}).m_iExit, 0);
    EXPECT_EQ(opened(files, "new").m_strOutput, s_cpDocument);
    EXPECT_EQ(opened(files, "old").m_iExit, 6);
}

TEST(Convert, eitherPasswordComesFromTheStandardInput)
{
    const CTemporaryDirectory files;
    writePasswordFiles(files);
    tSurroundings around;
    around.m_strInput = "new\n";
    EXPECT_EQ(toBinary(files, {"--password-file", "old", "--output-password-stdin", "old.bin"}, around).m_iExit, 0);
    EXPECT_EQ(opened(files, "new").m_strOutput, s_cpDocument);
    around.m_strInput = "old\n";
    EXPECT_EQ(toBinary(files, {"--password-stdin", "--output-password-file", "new", "old.bin"}, around).m_iExit, 0);
    EXPECT_EQ(opened(files, "new").m_strOutput, s_cpDocument);
    EXPECT_EQ(toBinary(files, {"--password-stdin", "--no-output-password", "old.bin"}, around).m_iExit, 0);
    EXPECT_EQ(opened(files).m_strOutput, s_cpDocument);
}

TEST(Convert, outputPasswordDoesNotOpenTheFile)
{
    const CTemporaryDirectory files;
    writePasswordFiles(files);
    const tRun run = toBinary(files, {"--output-password-file", "old", "old.bin"});
    EXPECT_EQ(run.m_iExit, 6);
    EXPECT_EQ(run.m_strError, "old.bin: error: Input the password\n");
    EXPECT_FALSE(hasResult(files));
}

TEST(Convert, outputPasswordThatCannotBeReadLeavesNoResult)
{
    const CTemporaryDirectory files;
    writePasswordFiles(files);
    files.write("empty", "\n");
    const tRun none = toBinary(files, {"--output-password-file", "empty", "a.murv"});
    EXPECT_EQ(none.m_iExit, 6);
    EXPECT_EQ(none.m_strError, "empty: error: holds no password\n");
    const tRun missing = toBinary(files, {"--output-password-file", "missing", "a.murv"});
    EXPECT_EQ(missing.m_iExit, 5);
    EXPECT_EQ(missing.m_strError, "missing: error: cannot be read: No such file or directory\n");
    EXPECT_FALSE(hasResult(files));
}

TEST(Convert, outputHasOnePasswordOrNone)
{
    const CTemporaryDirectory files;
    writePasswordFiles(files);
    const std::vector<std::vector<std::string>> calls = {
        {"--no-output-password", "--output-password-file", "new", "a.murv"},
        {"--no-output-password", "--output-password-stdin", "a.murv"},
        {"--output-password-file", "new", "--output-password-stdin", "a.murv"}};
    for (const std::vector<std::string>& call : calls)
    {
        const tRun run = toBinary(files, call);
        EXPECT_EQ(run.m_iExit, 2) << call[1];
        EXPECT_NE(run.m_strError.find(" excludes --"), std::string::npos) << run.m_strError;
    }
    EXPECT_FALSE(hasResult(files));
}

TEST(Convert, passwordIsNotPutOnText)
{
    const CTemporaryDirectory files;
    writePasswordFiles(files);
    for (const char* encoding : {"text", "compact"})
    {
        const tRun run = murv(files, {"convert", "--to", encoding, "--output-password-file", "new", "a.murv"});
        EXPECT_EQ(run.m_iExit, 2) << encoding;
        EXPECT_EQ(run.m_strOutput, "") << encoding;
        EXPECT_EQ(run.m_strError, "murv: error: a password can be put on a binary result only\n") << encoding;
    }
    EXPECT_EQ(murv(files, {"convert", "--to", "text", "--password-file", "old", "--no-output-password", "old.bin"})
                  .m_strOutput,
              s_cpDocument);
}

TEST(Convert, standardInputHoldsOnePassword)
{
    const CTemporaryDirectory files;
    writePasswordFiles(files);
    const std::vector<std::vector<std::string>> calls = {
        {"--password-stdin", "--output-password-stdin", "old.bin"},
        {"--password-stdin", "--output-password-file", "-", "old.bin"},
        {"--password-file", "-", "--output-password-stdin", "old.bin"}};
    for (const std::vector<std::string>& call : calls)
    {
        const tRun run = toBinary(files, call);
        EXPECT_EQ(run.m_iExit, 2) << call[0];
        EXPECT_EQ(run.m_strError, "murv: error: the standard input cannot hold both passwords\n") << call[0];
    }
    EXPECT_FALSE(hasResult(files));
}

TEST(Convert, passwordFileWithoutANameIsAWrongCall)
{
    const CTemporaryDirectory files;
    writePasswordFiles(files);
    for (const char* option : {"--password-file", "--output-password-file"})
    {
        const tRun run = toBinary(files, {option, "", "a.murv"});
        EXPECT_EQ(run.m_iExit, 2) << option;
        EXPECT_EQ(run.m_strError, "murv: error: " + std::string(option) + ": names no file (see murv help convert)\n");
    }
    EXPECT_FALSE(hasResult(files));
}

TEST(Convert, whatTextSaysComesBackFromABinaryFile)
{
    const std::string document =
        "{\n  \"price\" = 25.0,\n  \"none\" = \"\",\n  \"set\" = {},\n  \"list\" = [],\n"
        "  \"name\" = \"Z\xC3\xBCrich\",\n  \"tenth\" = 0.1,\n  \"unsigned\" = 05\n}\n";
    const tRun binary = murvOn(document, {"convert", "--to", "binary", "-"});
    EXPECT_EQ(binary.m_strError, "");
    EXPECT_EQ(binary.m_iExit, 0);
    const tRun text = murvOn(binary.m_strOutput, {"convert", "--to", "text", "-"});
    EXPECT_EQ(text.m_strError, "");
    EXPECT_EQ(text.m_strOutput, document);
    EXPECT_EQ(murvOn(binary.m_strOutput, {"check", "-"}).m_iExit, 0);
    EXPECT_EQ(murvOn(binary.m_strOutput, {"get", "-", "price"}).m_strOutput, "25.0\n");
    EXPECT_EQ(murvOn(binary.m_strOutput, {"get", "-", "list"}).m_strOutput, "[]\n");
    EXPECT_EQ(murvOn(binary.m_strOutput, {"convert", "--to", "compact", "-"}).m_strOutput,
              "{\"price\"=25.0,\"none\"=\"\",\"set\"={},\"list\"=[],\"name\"=\"Z\xC3\xBCrich\",\"tenth\"=0.1,"
              "\"unsigned\"=05}\n");
}

TEST(Convert, whatTextCannotHoldIsNamedByItsPath)
{
    CFields tree(DT_fields);
    CFields& orders = tree.addChildRef("orders");
    orders.setValue(DT_array);
    orders.addArrayAt(CFields(DT_fields)).addChildRef("price").setValue(std::nan(""));
    for (const char* const encoding : {"text", "compact"})
    {
        const tRun run = murvOn(tree.toMURV(ER_BER), {"convert", "--to", encoding, "-"});
        EXPECT_EQ(run.m_iExit, 3);
        EXPECT_EQ(run.m_strOutput, "");
        EXPECT_EQ(run.m_strError, "<stdin>: error: orders[0].price: text cannot hold NaN\n");
    }
    EXPECT_EQ(murvOn(tree.toMURV(ER_BER), {"get", "-", "orders"}).m_iExit, 3);
    EXPECT_EQ(murvOn(tree.toMURV(ER_BER), {"get", "-", "orders", "--json"}).m_strOutput, "[{\"price\":null}]\n");
}

TEST(Convert, thePacketExpressionOfAContainerIsRefusedAtItsPlace)
{
    const std::pair<const char*, const char*> messages[] = {
        {"binary", "the packet expression of this container would be lost"},
        {"json", "a[1]: JSON cannot hold the packet expression of a container"}};
    for (const auto& [encoding, message] : messages)
    {
        const tRun run = murvOn("{\"a\"=[1,\n(ACF4) [1]]}", {"convert", "--to", encoding, "-"});
        EXPECT_EQ(run.m_iExit, 3) << encoding;
        EXPECT_EQ(run.m_strError, "<stdin>:2:8: error: " + std::string(message) + "\n(ACF4) [1]]}\n       ^\n");
    }
}

TEST(Convert, whatIsLostIsShownAtItsPlace)
{
    const tRun run = murvOn("{\"a b\"=[1,\n(ANV2+128) 5]}", {"convert", "--to", "json", "-"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strError,
              "<stdin>:2:12: error: \"a b\"[1]: JSON cannot hold this packet expression\n"
              "(ANV2+128) 5]}\n"
              "           ^\n");
}

TEST(Convert, whatIsLostIsShownAtItsPlaceHoweverLongItsPathIs)
{
    std::string text = "(ANV2+128) 5";
    for (int level = 0; level < 100; ++level)
        text = "{\"level\"=\n" + text + "}";
    const tRun run = murvOn(text, {"convert", "--to", "json", "-"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strError.rfind("<stdin>:101:12: error: level.level.", 0), 0U) << run.m_strError;
}

TEST(Convert, malformedFileLeavesNoResult)
{
    const CTemporaryDirectory files;
    files.write("a.murv", "MURF but not really");
    const tRun run = murv(files, {"convert", "--to", "text", "-o", "out", "a.murv"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_FALSE(std::filesystem::exists(files.path() + "/out"));
}

TEST(Convert, resultReplacesAFileAndKeepsItsMode)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpDocument);
    const std::string out = files.write("out", "before");
    std::filesystem::permissions(out, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_EQ(murv(files, {"convert", "--to", "text", "--output", "out", "a.murv"}).m_iExit, 0);
    EXPECT_EQ(files.read("out"), s_cpDocument);
    EXPECT_EQ(std::filesystem::status(out).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(files.path()), {}), 2);
}

TEST(Convert, outputThatCannotBeWrittenIsAnOutputFailure)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpDocument);
    const tRun run = murv(files, {"convert", "--to", "text", "-o", "no/such/place", "a.murv"});
    EXPECT_EQ(run.m_iExit, 5);
    EXPECT_EQ(run.m_strError, "no/such/place: error: not written: the directory of the file does not exist\n");
    EXPECT_EQ(murv(files, {"convert", "--to", "text", "-o", "/dev/full", "a.murv"}).m_iExit, 5);
}

TEST(Convert, outputWithoutANameIsAWrongCall)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpDocument);
    for (const char* option : {"-o", "--output"})
    {
        const tRun run = murv(files, {"convert", "--to", "text", option, "", "a.murv"});
        EXPECT_EQ(run.m_iExit, 2) << option;
        EXPECT_EQ(run.m_strOutput, "") << option;
        EXPECT_EQ(run.m_strError, "murv: error: --output: names no file (see murv help convert)\n") << option;
    }
    EXPECT_EQ(murv(files, {"convert", "--to", "text", "a.murv", "--output="}).m_iExit, 2);
    EXPECT_EQ(files.names(), "a.murv");
}

TEST(Convert, otherEncodingIsAWrongCall)
{
    EXPECT_EQ(murvOn("[1]", {"convert", "--to", "xml", "-"}).m_iExit, 2);
    EXPECT_EQ(murvOn("[1]", {"convert", "-"}).m_iExit, 2);
}

}  // namespace murv::tests
