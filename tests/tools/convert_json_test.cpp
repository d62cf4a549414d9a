// tests/tools/convert_json_test.cpp - murv convert to and from JSON: exact, plain, and hostile JSON.
#include <gtest/gtest.h>

#include "murv/edit.h"
#include "murv/murv.h"
#include "murv/walk.h"
#include "tests/support/random_tree.h"
#include "tests/support/same_tree.h"
#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
tRun converted(const std::string& input, const std::string& to, std::vector<std::string> options = {})
{
    options.insert(options.begin(), {"convert", "-", "--to", to});
    return murvOn(input, options);
}

std::string json(const std::string& document, const std::vector<std::string>& options = {})
{
    const tRun run = converted(document, "json", options);
    EXPECT_EQ(run.m_iExit, 0) << document;
    EXPECT_EQ(run.m_strError, "") << document;
    return run.m_strOutput.substr(0, run.m_strOutput.size() - 1);
}

tRun fromJson(const std::string& text, std::vector<std::string> options = {})
{
    options.insert(options.end(), {"--from", "json"});
    return converted(text, "compact", options);
}

/// The document on one line.
std::string document(const std::string& text, const std::vector<std::string>& options = {})
{
    const tRun run = fromJson(text, options);
    EXPECT_EQ(run.m_iExit, 0) << text;
    EXPECT_EQ(run.m_strError, "") << text;
    return run.m_strOutput.substr(0, run.m_strOutput.size() - 1);
}

/// The first line of what is wrong.
std::string fault(const std::string& text, const std::vector<std::string>& options = {})
{
    const tRun run = fromJson(text, options);
    EXPECT_EQ(run.m_iExit, 3) << text;
    EXPECT_EQ(run.m_strOutput, "") << text;
    return run.m_strError.substr(0, run.m_strError.find('\n'));
}

void expectBothWays(const std::string& text, const std::string& form, const std::vector<std::string>& options = {})
{
    EXPECT_EQ(json(text, options), form);
    EXPECT_EQ(document(form, options), text);
}

/// A binary file with the tree.
std::string file4Tree(const CFields& tree)
{
    CSavers saver(SCBC_SECOND_VALUE | SCBC_LOSSLESS);
    const std::string file = saver.saving(tree, ER_BER);
    EXPECT_FALSE(saver.isError()) << saver.getLastErrMsg();
    return file;
}

/// Makes second values copies of the first: no file holds two that differ.
CFields withEqualValues(CFields tree)
{
    walk(tree, [](CFields& node) {
        const E_ValueKind kind = node.getVK();
        node.setVK(VK_actual);
        node.setVK(kind);
    });
    return tree;
}

CFields tree4File(const std::string& file)
{
    CLoaders loader(LCBC_COMMENT | LCBC_DUPLICATE | LCBC_LOSSLESS);
    CFields tree;
    EXPECT_TRUE(loader.loading(file, tree)) << loader.getLastErrMsg();
    return tree;
}

std::string repeated(const std::string& text, std::size_t count)
{
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}
}  // namespace

TEST(ConvertJson, valuesOfBothAreTheSame)
{
    expectBothWays("{\"a\"=1,\"b\"=[true,false,null,\"x\\n\\\"\"],\"c\"={},\"d\"=[]}",
                   "{\"a\":1,\"b\":[true,false,null,\"x\\n\\\"\"],\"c\":{},\"d\":[]}");
    expectBothWays("{\"caf\xC3\xA9\"=\"\xF0\x9F\x98\x80\",\"\\x00\"}",
                   "{\"caf\xC3\xA9\":\"\xF0\x9F\x98\x80\",\"\":\"\\u0000\"}");
    for (const char* const scalar : {"5", "-1", "2.5", "true", "null", "\"a\"", "\"\""})
        expectBothWays(scalar, scalar);
}

TEST(ConvertJson, integersAreExact)
{
    expectBothWays("[2147483647,-2147483649,-9223372036854775808,2147483648,18446744073709551615]",
                   "[2147483647,-2147483649,-9223372036854775808,2147483648,18446744073709551615]");
    expectBothWays("[05,00,03000000000]", "[{\"$uint\":5},{\"$uint\":0},{\"$int\":3000000000}]");
    EXPECT_EQ(document("[-0, {\"$int\":7}, {\"$uint\":3000000000}]"), "[0,7,3000000000]");
}

TEST(ConvertJson, doublesHaveTheFewestDigits)
{
    expectBothWays("[0.1,25.0,-0.0,5e-324,1.7976931348623157e+308]", "[0.1,25.0,-0.0,5e-324,1.7976931348623157e+308]");
    EXPECT_EQ(document("[1E5,0.10000000000000001,1e-7,100000000000000000000,1.5000]"),
              "[100000.0,0.1,1e-07,1e+20,1.5]");
}

TEST(ConvertJson, numbersThatAreNoneExactlyAreErrors)
{
    const std::string message = "no 64-bit integer and no double is exactly this number (see --nearest)";
    EXPECT_EQ(fault("[1,\n 18446744073709551617]"), "<stdin>:2:2: error: " + message);
    for (const char* const number : {"0.1234567890123456789", "9007199254740993.0", "1e-400", "-9223372036854775809",
                                     "3.14159265358979323846264338327950288"})
    {
        EXPECT_EQ(fault(number), "<stdin>:1:1: error: " + message) << number;
        EXPECT_EQ(fromJson(number, {"--nearest"}).m_iExit, 0) << number;
    }
    EXPECT_EQ(document("[9007199254740993.0,1e-400]", {"--nearest"}), "[9007199254740992.0,0.0]");
    EXPECT_EQ(fault("[1e400]", {"--nearest"}), "<stdin>:1:6: error: no JSON: number overflow parsing '1e400'");
    EXPECT_EQ(fault("0." + std::string(5000, '3')), "<stdin>:1:1: error: " + message);
}

TEST(ConvertJson, whatBelongsToNodesHasKeysOfItsOwn)
{
    EXPECT_EQ(json("// before\n{ #7 \"port\" = 8080, // main\n \"date\" = (ACF8YYYYMMDD) 20240101 }\n// end\n"),
              "{\"$comment\":\"// before\",\"$comment_after\":\"// end\",\"$value\":{"
              "\"port\":{\"$id\":7,\"$comment_on_line\":\"// main\",\"$value\":8080},"
              "\"date\":{\"$packet\":\"ACF8YYYYMMDD\",\"$value\":20240101}}}");
    expectBothWays("#3\"root\"=[{#7\"a\"=05,\"b\"=(ACF3)\"abc\",#8{},\"c\"=(ANF3fix)5}]",
                   "{\"$name\":\"root\",\"$id\":3,\"$value\":[{\"a\":{\"$id\":7,\"$uint\":5},"
                   "\"b\":{\"$packet\":\"ACF3\",\"$value\":\"abc\"},\"\":{\"$id\":8,\"$value\":{}},"
                   "\"c\":{\"$packet\":\"ANF3fix\",\"$value\":5}}]}");
    EXPECT_EQ(converted("{\"$comment\":\"/* a */\",\"$value\":[{\"$comment_on_line\":\"// b\",\"$value\":1}]}", "text",
                        {"--from", "json"})
                  .m_strOutput,
              "/* a */\n[\n  1 // b\n]\n");
}

TEST(ConvertJson, namesThatJsonCannotRepeatBecomePairs)
{
    expectBothWays("{\"a\"=1,\"a\"=2,3,#5\"b\"=[],4}",
                   "{\"$members\":[[\"a\",1],[\"a\",2],[\"\",3],[\"b\",{\"$id\":5,\"$value\":[]}],[\"\",4]]}");
    expectBothWays("#2\"r\"={\"a\"=1,\"a\"={\"b\"=2,\"b\"=3}}",
                   "{\"$name\":\"r\",\"$id\":2,\"$members\":[[\"a\",1],[\"a\",{\"$members\":[[\"b\",2],[\"b\",3]]}]]}");
}

TEST(ConvertJson, reservedNamesStayNames)
{
    expectBothWays("{\"$id\"=\"https://x\",\"$schema\"=\"y\"}", "{\"$id\":\"https://x\",\"$schema\":\"y\"}");
    expectBothWays("{\"$id\"=5}", "{\"$id\":5}");
    expectBothWays("{\"$value\"=5,\"more\"=6}", "{\"$value\":5,\"more\":6}");
    expectBothWays("{\"$id\"=5,\"$value\"={\"$hex\"=\"00\"}}",
                   "{\"$members\":[[\"$id\",5],[\"$value\",{\"$members\":[[\"$hex\",\"00\"]]}]]}");
    expectBothWays("{\"$id\"=5,\"$value\"={\"$uint\"=1}}", "{\"$id\":5,\"$value\":{\"$uint\":1}}", {"--plain"});
}

TEST(ConvertJson, bytesAreDigits)
{
    const std::string text = "[\"\\xFF\\x00\",{\"\\xFE\"=\"a\"},{\"a\"=(ACF1)\"\\xFD\"}]";
    expectBothWays(text,
                   "[{\"$hex\":\"FF00\"},{\"$members\":[[{\"$hex\":\"FE\"},\"a\"]]},"
                   "{\"a\":{\"$packet\":\"ACF1\",\"$hex\":\"FD\"}}]",
                   {"--bytes", "hex"});
    expectBothWays(text,
                   "[{\"$base64\":\"/wA=\"},{\"$members\":[[{\"$base64\":\"/g==\"},\"a\"]]},"
                   "{\"a\":{\"$packet\":\"ACF1\",\"$base64\":\"/Q==\"}}]",
                   {"--bytes", "base64"});
    EXPECT_EQ(document("[{\"$base64\":\"\"},{\"$base64\":\"QUJD\"},{\"$hex\":\"41 42\"}]"), "[\"\",\"ABC\",\"AB\"]");
    expectBothWays("{\"a\"=\"\\xFF\"}", "{\"a\":{\"$hex\":\"FF\"}}", {"--plain", "--bytes", "hex"});
    EXPECT_EQ(document("{\"a\":{\"$hex\":\"FF\"}}", {"--plain"}), "{\"a\"={\"$hex\"=\"FF\"}}");
}

TEST(ConvertJson, whatJsonCannotHoldIsNamedByItsPath)
{
    const std::pair<const char*, const char*> documents[] = {
        {"{\"a\"=[1,\"\\xFF\"]}", "a[1]: JSON cannot hold bytes that are not UTF-8 (see --bytes)"},
        {"{\"\\xFE\"=1}", "\"\\xFE\": JSON cannot hold a name or comment that is not UTF-8 (see --bytes)"},
        {"\"\\xFE\"", "the root: JSON cannot hold bytes that are not UTF-8 (see --bytes)"},
    };
    for (const auto& [text, message] : documents)
    {
        const tRun run = converted(text, "json");
        EXPECT_EQ(run.m_iExit, 3) << text;
        EXPECT_EQ(run.m_strOutput, "");
        EXPECT_NE(run.m_strError.find(std::string("error: ") + message + "\n"), std::string::npos) << run.m_strError;
    }
    EXPECT_EQ(converted("{ \"a\" = 1 /*x*/ /*y*/ }", "json").m_iExit, 3);
    EXPECT_EQ(converted("{ \"a\" = (ANF4 remark) 1 }", "json").m_iExit, 3);
}

TEST(ConvertJson, plainIsValuesAlone)
{
    EXPECT_EQ(json("// c\n#1 \"r\" = { #7 \"a\" = (ANF2) 05, // d\n \"b\" = [1.50, {}] }", {"--plain"}),
              "{\"a\":5,\"b\":[1.5,{}]}");
    EXPECT_EQ(json("{ \"a\" = 1 /*x*/ /*y*/ }", {"--plain"}), "{\"a\":1}");
    EXPECT_EQ(converted("{\"x\"={\"a\"=1,\"a\"=2}}", "json", {"--plain"}).m_strError,
              "<stdin>:1:17: error: x[1]: plain JSON cannot hold two members of one name\n"
              "{\"x\"={\"a\"=1,\"a\"=2}}\n"
              "                ^\n");
    EXPECT_EQ(converted("{1,2}", "json", {"--plain"}).m_iExit, 3);
    const tRun run = converted(file4Tree(CFields(std::numeric_limits<double>::infinity())), "json", {"--plain"});
    EXPECT_EQ(run.m_strError, "<stdin>: error: the root: plain JSON cannot hold an infinite number\n");
}

TEST(ConvertJson, treesThatOnlyBinaryFilesHoldComeBack)
{
    CFields tree(DT_array);
    for (const double value : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity()})
        tree.addArrayAt(CFields(value));
    CFields& element = tree.addArrayAt(CFields(5));
    element.setName("n");
    element.setID(9);
    const tRun run = converted(file4Tree(tree), "json");
    EXPECT_EQ(run.m_strOutput,
              "[{\"$double\":\"NaN\"},{\"$double\":\"Infinity\"},{\"$double\":\"-Infinity\"},"
              "{\"$name\":\"n\",\"$id\":9,\"$value\":5}]\n");
    const tRun back = converted(run.m_strOutput, "binary", {"--from", "json"});
    EXPECT_EQ(back.m_strError, "");
    EXPECT_TRUE(sameTree(tree4File(back.m_strOutput), tree, ST_all));
    EXPECT_EQ(fromJson(run.m_strOutput).m_strError.substr(0, 53),
              "<stdin>:1:2: error: [0]: text cannot hold NaN\n[{\"$dou");
}

TEST(ConvertJson, randomTreesComeBackEqual)
{
    for (unsigned int seed = 0; seed < 40; ++seed)
    {
        const std::string file = file4Tree(withEqualValues(CRandomTree(seed).tree()));
        const tRun to = converted(file, "json", {"--bytes", seed % 2 == 0 ? "hex" : "base64"});
        ASSERT_EQ(to.m_strError, "") << seed;
        const tRun from = converted(to.m_strOutput, "binary", {"--from", "json"});
        ASSERT_EQ(from.m_strError, "") << seed << " " << to.m_strOutput;
        ASSERT_EQ(difference(tree4File(from.m_strOutput), tree4File(file), SP_all & ~SP_offsets), "") << seed;
    }
}

TEST(ConvertJson, everyPrefixOfJsonIsAnError)
{
    const std::string text = "{\"a\":{\"$id\":7,\"$value\":\"\\u00e9\"},\"b\":[1.5,true,null]}";
    ASSERT_EQ(fromJson(text).m_iExit, 0);
    for (std::size_t length = 0; length < text.size(); ++length)
    {
        const tRun run = fromJson(text.substr(0, length));
        EXPECT_EQ(run.m_iExit, 3) << length;
        EXPECT_EQ(run.m_strOutput, "");
        EXPECT_NE(run.m_strError.find("<stdin>:1:" + std::to_string(length + 1) + ": error: no JSON: "),
                  std::string::npos)
            << run.m_strError;
    }
}

TEST(ConvertJson, nothingFollowsAByteOfValueZero)
{
    EXPECT_EQ(fault(std::string("[1]\0[2]", 7)), "<stdin>:1:4: error: no JSON: a byte of value 0");
    EXPECT_EQ(fault(std::string("[1]\0", 4)), "<stdin>:1:4: error: no JSON: a byte of value 0");
    EXPECT_EQ(fault(std::string("[\"\0\"]", 5)).rfind("<stdin>:1:3: error: no JSON: ", 0), 0U);
}

TEST(ConvertJson, mistakesNameTheirPlace)
{
    const std::string text = "no JSON: syntax error while parsing ";
    EXPECT_EQ(fault("{\"a\":1,\n \"a\":2}"), "<stdin>:2:2: error: the name \"a\" is there twice");
    EXPECT_EQ(fault("{\"\":1, \"\":2}"), "<stdin>:1:8: error: the name \"\" is there twice");
    EXPECT_EQ(fault("[{\"" + std::string(256, 'n') + "\":1}]"), "<stdin>:1:3: error: a name is longer than 255 bytes");
    EXPECT_EQ(fault("[1] 2").substr(0, 63), "<stdin>:1:5: error: " + text + "value -");
    EXPECT_EQ(fault("[\"\xFF\"]").substr(0, 69), "<stdin>:1:3: error: " + text + "value - inval");
    EXPECT_EQ(fault("[\"\\ud800\"]").substr(0, 20), "<stdin>:1:9: error: ");
    EXPECT_EQ(fault("[01]").substr(0, 20), "<stdin>:1:3: error: ");
    EXPECT_EQ(fault("[1,]").substr(0, 20), "<stdin>:1:4: error: ");
    EXPECT_EQ(fromJson("[1,\n {\"$int\":1.0}]").m_strError,
              "<stdin>:2:2: error: \"$int\" holds no integer of this type\n {\"$int\":1.0}]\n ^~~~~~~~~~~~\n");
    EXPECT_EQ(document("\xEF\xBB\xBF{\"a\":1}"), "{\"a\"=1}");
}

TEST(ConvertJson, objectsThatStandForNoNodeAreErrors)
{
    const std::pair<const char*, const char*> objects[] = {
        {"{\"$value\":1,\"$id\":0}", "\"$id\" holds no ID from 1 to 2147483647"},
        {"{\"$value\":1,\"$id\":3000000000}", "\"$id\" holds no ID from 1 to 2147483647"},
        {"{\"$value\":1,\"$id\":\"7\"}", "\"$id\" holds no ID from 1 to 2147483647"},
        {"{\"$value\":1,\"$hex\":\"00\"}", "more than one value: \"$hex\" is too much"},
        {"{\"$value\":{\"$id\":1,\"$value\":2}}", "\"$value\" holds a node with keys of its own"},
        {"{\"$id\":{\"$id\":1,\"$value\":2},\"$value\":3}", "\"$id\" holds a node with keys of its own"},
        {"{\"$int\":18446744073709551615}", "\"$int\" holds no integer of this type"},
        {"{\"$int\":1.0}", "\"$int\" holds no integer of this type"},
        {"{\"$uint\":-1}", "\"$uint\" holds no integer of this type"},
        {"{\"$double\":\"nan\"}", "\"$double\" holds none of \"NaN\", \"Infinity\" and \"-Infinity\""},
        {"{\"$hex\":\"0\"}", "\"$hex\" holds something other than pairs of hexadecimal digits"},
        {"{\"$base64\":\"QQ\"}", "\"$base64\" holds something other than base64 with its padding"},
        {"{\"$base64\":\"QR==\"}", "\"$base64\" holds something other than base64 with its padding"},
        {"{\"$base64\":\"Q===\"}", "\"$base64\" holds something other than base64 with its padding"},
        {"{\"$base64\":5}", "\"$base64\" holds something other than base64 with its padding"},
        {"{\"$members\":{}}", "\"$members\" holds something other than pairs of a name and a value"},
        {"{\"$members\":[[1,2]]}", "\"$members\" holds something other than pairs of a name and a value"},
        {"{\"$members\":[[\"a\"]]}", "\"$members\" holds something other than pairs of a name and a value"},
        {"{\"$comment\":\"x\",\"$value\":1}", "\"$comment\" holds no comment, which begins with \"/\""},
        {"{\"$packet\":\"XYZ\",\"$value\":1}", "\"$packet\" holds no packet expression, or that of no scalar"},
        {"{\"$packet\":\"ACF1\",\"$value\":[]}", "\"$packet\" holds no packet expression, or that of no scalar"},
        {"{\"$packet\":\"ACF1) \\\"\",\"$value\":1}", "\"$packet\" holds no packet expression, or that of no scalar"},
        {"{\"$name\":\"\",\"$value\":1}", "\"$name\" holds no name of 1 to 255 bytes"},
    };
    for (const auto& [object, message] : objects)
        EXPECT_EQ(fault(std::string("\n ") + object), std::string("<stdin>:2:2: error: ") + message);
    EXPECT_EQ(fault("{\"a\":{\"$name\":\"b\",\"$value\":1}}"),
              "<stdin>:1:6: error: \"$name\" is for the root and for elements of arrays");
}

TEST(ConvertJson, nestsAsDeepAsDocuments)
{
    const std::string message = "error: values may nest 1000 levels";
    const auto nested = [](std::size_t levels, const std::string& begin, const std::string& end) {
        return repeated(begin, levels - 1) + "1" + repeated(end, levels - 1);
    };
    const std::string deepest = nested(1000, "[", "]");
    EXPECT_EQ(document(deepest), deepest);
    EXPECT_EQ(json(deepest), deepest);
    EXPECT_EQ(fault(nested(1001, "[", "]")), "<stdin>:1:1001: " + message);
    const std::string pairs = nested(1000, "{\"$members\":[[\"$hex\",", "]]}");
    EXPECT_EQ(json(document(pairs)), pairs);
    EXPECT_EQ(fault(nested(1001, "{\"a\":", "}")), "<stdin>:1:5001: " + message);
    EXPECT_EQ(fault(std::string(1000000, '[')), "<stdin>:1:1001: " + message);
    EXPECT_EQ(fault(repeated("{\"$value\":", 400000)), "<stdin>:1:10001: " + message);
}

TEST(ConvertJson, theNameOfAFileSaysWhatItIs)
{
    const CTemporaryDirectory files;
    files.write("a.json", "{\"a\":1}");
    files.write("a.murv", "{\"a\"=1}");
    files.write("json", "{\"a\":1}");
    EXPECT_EQ(murv(files, {"convert", "a.json", "--to", "compact"}).m_strOutput, "{\"a\"=1}\n");
    EXPECT_EQ(murv(files, {"convert", "a.murv", "--to", "json"}).m_strOutput, "{\"a\":1}\n");
    EXPECT_EQ(murv(files, {"convert", "json", "--from", "json", "--to", "compact"}).m_strOutput, "{\"a\"=1}\n");
    EXPECT_EQ(murv(files, {"convert", "a.json", "--to", "json"}).m_strOutput, "{\"a\":1}\n");
    EXPECT_EQ(murv(files, {"convert", "a.json", "--from", "document", "--to", "json"}).m_iExit, 3);
    EXPECT_EQ(murv(files, {"convert", "none.json", "--to", "text"}).m_iExit, 5);
}

TEST(ConvertJson, anExistingResultStaysWhenThereIsNone)
{
    const CTemporaryDirectory files;
    files.write("a.murv", "[1,\"\\xFF\"]");
    files.write("a.json", "old");
    EXPECT_EQ(murv(files, {"convert", "a.murv", "--to", "json", "-o", "a.json"}).m_iExit, 3);
    EXPECT_EQ(files.read("a.json"), "old");
    EXPECT_EQ(murv(files, {"convert", "a.murv", "--to", "json", "--bytes", "hex", "-o", "a.json"}).m_iExit, 0);
    EXPECT_EQ(files.read("a.json"), "[1,{\"$hex\":\"FF\"}]\n");
}

TEST(ConvertJson, largeTreesAreWrittenWhole)
{
    std::string text = "[0";
    for (int i = 1; i < 100000; ++i)
        text += ",\"" + std::to_string(i) + "\"";
    text += "]";
    EXPECT_EQ(json(text), text);
    EXPECT_EQ(document(text), text);
}

TEST(ConvertJson, optionsForJsonNeedJson)
{
    EXPECT_EQ(converted("[1]", "text", {"--plain"}).m_strError, "murv: error: --plain and --bytes are for JSON\n");
    EXPECT_EQ(converted("[1]", "text", {"--bytes", "hex"}).m_iExit, 2);
    EXPECT_EQ(converted("[1]", "json", {"--nearest"}).m_strError,
              "murv: error: --nearest is for numbers read from JSON\n");
    EXPECT_EQ(converted("[1]", "json", {"--bytes", "octal"}).m_iExit, 2);
    EXPECT_EQ(converted("[1]", "json", {"--output-password-file", "x"}).m_iExit, 2);
}

}  // namespace murv::tests
