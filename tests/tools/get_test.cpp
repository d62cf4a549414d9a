// tests/tools/get_test.cpp - paths and the values they lead to.
#include <gtest/gtest.h>

#include <limits>

#include "murv/murv.h"
#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
constexpr const char* s_cpOrders =
    "// orders\n"
    "{ \"shop\" = \"caf\xC3\xA9 \\\"x\\\"\",\n"
    "  \"orders\" = [ { #7 \"id\" = 1, \"price\" = 19.99 }, { \"id\" = 2, \"price\" = 1.0, \"note\" = \"\" } ],\n"
    "  #9 \"a.b c\" = { \"on\" = true, \"none\" = null, \"list\" = [1, [2, 3]] } // last\n"
    "}\n";

tRun get(const std::string& path, std::vector<std::string> options = {})
{
    options.insert(options.begin(), {"get", "-", path});
    return murvOn(s_cpOrders, options);
}

std::string value(const std::string& path, const std::vector<std::string>& options = {})
{
    const tRun run = get(path, options);
    EXPECT_EQ(run.m_iExit, 0) << path;
    EXPECT_EQ(run.m_strError, "");
    return run.m_strOutput;
}
}  // namespace

TEST(Get, pathsLeadByNameIndexAndId)
{
    EXPECT_EQ(value("orders[0].price"), "19.99\n");
    EXPECT_EQ(value("orders[1].price"), "1.0\n");
    EXPECT_EQ(value("[1][1].id"), "2\n");
    EXPECT_EQ(value("#7"), "1\n");
    EXPECT_EQ(value("#9.on"), "true\n");
    EXPECT_EQ(value("\"a.b c\".list[1][0]"), "2\n");
    EXPECT_EQ(value("orders.#7"), "1\n");
}

TEST(Get, integersArePlainDigitsWhateverTheirType)
{
    EXPECT_EQ(murvOn("{\"a\"=08080}", {"get", "-", "a"}).m_strOutput, "8080\n");
    EXPECT_EQ(murvOn("{\"a\"=03000000000}", {"get", "-r", "-", "a"}).m_strOutput, "3000000000");
    EXPECT_EQ(murvOn("{\"a\"=[08080]}", {"get", "-", "a"}).m_strOutput, "[08080]\n");
}

TEST(Get, dotIsTheRoot)
{
    EXPECT_EQ(murvOn("[1, 2]", {"get", "-", "."}).m_strOutput, "[1, 2]\n");
}

TEST(Get, containersAreWrittenAsText)
{
    EXPECT_EQ(value("#9"), "{\n  \"on\" = true,\n  \"none\" = null,\n  \"list\" = [1, [2, 3]]\n}\n");
}

TEST(Get, valuesKeepTheirSpelling)
{
    const std::string name(300, 'n');
    const std::string document =
        "{ \"list\" = (ANF4) \"\\u0041\", // c\n  \"set\" = // why\n  {\n    #7 \"" + name +
        "\" = (ANV2+128 x) 007, /*y*/ /*z*/ \"d\" = 1.0 // end\n  }, \"none\" = , \"e\" = 1e3 }";
    EXPECT_EQ(murvOn(document, {"get", "-", "list"}).m_strOutput, "\"\\u0041\"\n");
    EXPECT_EQ(murvOn(document, {"get", "-", "list", "-r"}).m_strOutput, std::string("\0A", 2));
    EXPECT_EQ(murvOn(document, {"get", "-", "set"}).m_strOutput,
              "{\n  #7 \"" + name + "\" = (ANV2+128 x) 007,\n  /*y*/ /*z*/ \"d\" = 1.0 // end\n}\n");
    EXPECT_EQ(murvOn(document, {"get", "-", "*"}).m_strOutput,
              "\"\\u0041\"\n{#7\"" + name + "\"=(ANV2+128)007,\"d\"=1.0}\nnull\n1e3\n");
    EXPECT_EQ(murvOn(document, {"get", "-", "none"}).m_strOutput, "null\n");
}

TEST(Get, membersThatAreReadAgainAreThereOnce)
{
    const std::string document =
        "{ \"x\" = { \"a\" = 1.0, \"a\" = 2.50 }, \"y\" = 1.0, \"y\" = 1e1, \"z\" = [1.0, 2e0] }";
    EXPECT_EQ(murvOn(document, {"get", "-", "x"}).m_strOutput, "{\n  \"a\" = 2.5\n}\n");
    EXPECT_EQ(murvOn(document, {"get", "-", "y"}).m_strOutput, "1e1\n");
    EXPECT_EQ(murvOn(document, {"get", "-", "z"}).m_strOutput, "[1.0, 2e0]\n");
}

TEST(Get, stringsAreQuotedUnlessRaw)
{
    EXPECT_EQ(value("shop"), "\"caf\xC3\xA9 \\\"x\\\"\"\n");
    EXPECT_EQ(value("shop", {"--raw"}), "caf\xC3\xA9 \"x\"");
    EXPECT_EQ(value("orders[1].note"), "\"\"\n");
    EXPECT_EQ(value("orders[1].note", {"--raw"}), "");
}

TEST(Get, rawIsTheValueAndNothingElse)
{
    EXPECT_EQ(value("#9.on", {"--raw"}), "true");
    EXPECT_EQ(value("#9.none", {"--raw"}), "null");
    EXPECT_EQ(value("orders[0].price", {"-r"}), "19.99");
    EXPECT_EQ(value("orders[1].price", {"-r"}), "1.0");
    EXPECT_EQ(value("#9.list[1]", {"-r"}), "[2, 3]");
    EXPECT_EQ(murvOn("[\"a\\n\"]", {"get", "-r", "-", "[0]"}).m_strOutput, "a\n");
}

TEST(Get, jsonOfEveryType)
{
    EXPECT_EQ(value("shop", {"--json"}), "\"caf\xC3\xA9 \\\"x\\\"\"\n");
    EXPECT_EQ(value("#9", {"--json"}), "{\"on\":true,\"none\":null,\"list\":[1,[2,3]]}\n");
    EXPECT_EQ(value("orders", {"--json"}), "[{\"id\":1,\"price\":19.99},{\"id\":2,\"price\":1,\"note\":\"\"}]\n");
}

TEST(Get, jsonEscapesWhatItMust)
{
    const tRun run =
        murvOn("[\"\\\"\\\\\\b\\f\\n\\r\\t\\x01\\x7F\xFF\xC3\\u0000\", 1e400, -1e400]", {"get", "-", ".", "--json"});
    EXPECT_EQ(run.m_strOutput,
              "[\"\\\"\\\\\\b\\f\\n\\r\\t\\u0001\\u007f\xEF\xBF\xBD\xEF\xBF\xBD\\u0000\\u0000\",1e+9999,-1e+9999]\n");
}

TEST(Get, findingNothingIsATrueNo)
{
    for (const char* path : {"missing", "orders[2]", "orders.id", "shop.x", "shop[0]", "#8", "orders[99999999999]"})
    {
        const tRun run = get(path);
        EXPECT_EQ(run.m_iExit, 1) << path;
        EXPECT_EQ(run.m_strOutput, "");
        EXPECT_EQ(run.m_strError, "<stdin>: note: nothing at " + std::string(path) + "\n");
    }
}

TEST(Get, saysHowFarThePathLed)
{
    EXPECT_EQ(get("orders[0].name.first").m_strError, "<stdin>: note: nothing at orders[0].name\n");
}

TEST(Get, malformedPathsAreAWrongCall)
{
    const std::pair<const char*, const char*> calls[] = {
        {"", "PATH:1:1: error: a path is needed; . is the root\n\n^\n"},
        {"a[", "PATH:1:3: error: an index is needed\na[\n  ^\n"},
        {"a[1", "PATH:1:4: error: \"]\" expected\na[1\n   ^\n"},
        {"a[-0]", "PATH:1:3: error: an index is needed\na[-0]\n  ^\n"},
        {"a[1..x]", "PATH:1:6: error: an index is needed\na[1..x]\n     ^\n"},
        {"a[*", "PATH:1:4: error: \"]\" expected\na[*\n   ^\n"},
        {"a..b", "PATH:1:3: error: a name is needed\na..b\n  ^\n"},
        {"a.", "PATH:1:3: error: a name is needed\na.\n  ^\n"},
        {"[0]a", "PATH:1:4: error: \".\" or \"[\" expected\n[0]a\n   ^\n"},
        {"#0", "PATH:1:3: error: an ID from 1 to 2147483647 is needed\n#0\n  ^\n"},
        {"#x", "PATH:1:2: error: an ID from 1 to 2147483647 is needed\n#x\n ^\n"},
        {"\"a", "PATH:1:1: error: the quote is not closed\n\"a\n^\n"},
        {"\"a\\", "PATH:1:1: error: the quote is not closed\n\"a\\\n^\n"},
    };
    for (const auto& [path, message] : calls)
    {
        const tRun run = get(path);
        EXPECT_EQ(run.m_iExit, 2) << path;
        EXPECT_EQ(run.m_strError, message);
    }
}

TEST(Get, negativeIndexesCountFromTheEnd)
{
    EXPECT_EQ(value("orders[-1].id"), "2\n");
    EXPECT_EQ(value("[-1].list[-1][-2]"), "2\n");
    EXPECT_EQ(get("orders[-3]").m_strError, "<stdin>: note: nothing at orders[-3]\n");
}

TEST(Get, severalValuesAreALineEach)
{
    EXPECT_EQ(value("orders[*].price"), "19.99\n1.0\n");
    EXPECT_EQ(value("orders.*.note"), "\"\"\n");
    EXPECT_EQ(value("#9.*"), "true\nnull\n[1,[2,3]]\n");
    EXPECT_EQ(value("orders[..1]"), "{#7\"id\"=1,\"price\"=19.99}\n");
    EXPECT_EQ(value("*.list[0..99]"), "1\n[2,3]\n");
    EXPECT_EQ(murvOn("[\"a\\nb\", 08, 1.50, // c\n 1e3]", {"get", "-", "[*]"}).m_strOutput,
              "\"a\\nb\"\n8\n1.50\n1e3\n");
}

TEST(Get, severalRawValuesEndWithALineFeedEach)
{
    EXPECT_EQ(value("orders[1].*", {"-r"}), "2\n1.0\n\n");
    EXPECT_EQ(murvOn("[\"a\", [1, 2]]", {"get", "-r", "-", "[*]"}).m_strOutput, "a\n[1,2]\n");
}

TEST(Get, severalValuesAreOneJsonArray)
{
    EXPECT_EQ(value("orders[*].price", {"--json"}), "[19.99,1]\n");
    EXPECT_EQ(value("orders[-1..]", {"--json"}), "[{\"id\":2,\"price\":1,\"note\":\"\"}]\n");
}

TEST(Get, severalValuesMayBeNone)
{
    for (const char* path : {"orders[2..]", "orders[*].x", "shop[*]", "missing[*].x"})
    {
        const tRun run = get(path, {"--json"});
        EXPECT_EQ(run.m_iExit, 1) << path;
        EXPECT_EQ(run.m_strOutput, "");
    }
    EXPECT_EQ(get("orders[*].name.first").m_strError, "<stdin>: note: nothing at orders[*].name\n");
}

TEST(Get, valuesThatTextCannotHoldGiveNothing)
{
    const CTemporaryDirectory files;
    CFields tree(DT_array);
    tree.addArrayAt(CFields(1));
    tree.addArrayAt(CFields(std::numeric_limits<double>::quiet_NaN()));
    files.write("a.murf", CSavers(SCBC_LOSSLESS).saving(tree, ER_BER));
    const tRun run = murv(files, {"get", "a.murf", "[*]"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strOutput, "");
    EXPECT_EQ(run.m_strError, "a.murf: error: the root: text cannot hold NaN\n");
}

TEST(Get, defaultStandsForWhatIsMissing)
{
    EXPECT_EQ(value("missing", {"--default", "8080"}), "8080\n");
    EXPECT_EQ(value("missing", {"--default", ""}), "\n");
    EXPECT_EQ(value("missing", {"--default=a b", "--raw"}), "a b");
    EXPECT_EQ(value("orders[*].x", {"--default", "none"}), "none\n");
    EXPECT_EQ(value("orders[0].price", {"--default", "5"}), "19.99\n");
    EXPECT_EQ(value("#9.none", {"--default", "5"}), "null\n");
    EXPECT_EQ(get("a[", {"--default", "5"}).m_iExit, 2);
    EXPECT_EQ(murvOn("{", {"get", "-", "a", "--default", "5"}).m_iExit, 3);
}

TEST(Get, defaultIsJsonOrATextInJson)
{
    EXPECT_EQ(value("missing", {"--json", "--default", "[1, {}]"}), "[1, {}]\n");
    EXPECT_EQ(value("missing", {"--json", "--default", "a \"b\""}), "\"a \\\"b\\\"\"\n");
    EXPECT_EQ(value("missing", {"--json", "--default", ""}), "\"\"\n");
}

TEST(Get, rawAndJsonExcludeEachOther)
{
    EXPECT_EQ(get("shop", {"--raw", "--json"}).m_iExit, 2);
}

TEST(Get, malformedDocumentsAreReported)
{
    const tRun run = murvOn("{:}", {"get", "-", "a"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strError, "<stdin>:1:2: error: Missing '}' or field member name\n{:}\n ^\n");
}

}  // namespace murv::tests
