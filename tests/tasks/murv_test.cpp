// tests/tasks/murv_test.cpp - the snippets of docs/ten-tasks.md for murv, and what the page says of them.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "murv/document.h"
#include "murv/everyday.h"
#include "murv/murv.h"
#include "support/subprocess.h"
#include "tasks/message_of.h"

namespace murv::tests
{

namespace
{
constexpr const char* s_cpShop = R"(// The shop in the High Street.
{
  "name" = "shop",
  "listen" = { "port" = 8080, "host" = "::1" },  // as agreed
  "orders" = [
    { "price" = 19.50, "lines" = 2 },
    { "price" = 5.00, "lines" = 1 }
  ]
}
)";

CFields tree4Text(const std::string& text)
{
    CFields tree;
    CLoaders loader;
    EXPECT_TRUE(loader.loading(text, tree)) << loader.getLastErrMsg();
    return tree;
}
}  // namespace

TEST(MurvTasks, load)
{
    const CTemporaryDirectory directory;
    const std::string file = directory.write("shop", "{\n  \"name\" \"shop\",\n  \"listen\" = { \"port\" = tru }\n}\n");
    std::ostringstream out;

    CDocument document;
    if (!document.loadFile(file))
        for (const tErrorPlace& place : document.errors())
            out << place.m_uiLine << ":" << place.m_uiColumn << ": " << place.m_strMessage << "\n";

    EXPECT_EQ(out.str(), R"(2:10: Missing ',' or '}' in field declaration
3:25: Syntax error: value, field or array expected.
)");
}

TEST(MurvTasks, valueOrDefault)
{
    const CFields tree = tree4Text(s_cpShop);

    const int backlog = valueOr(tree, "listen.backlog", 128);

    EXPECT_EQ(backlog, 128);
    EXPECT_EQ(valueOr(tree, "listen.port", 128), 8080);
}

TEST(MurvTasks, valueOrDefaultOfAnotherType)
{
    const CFields tree = fields({{"text", "many"}, {"big", 5000000000LL}});
    EXPECT_EQ(valueOr(tree, "text", 128), 128);
    EXPECT_EQ(valueOr(tree, "big", 128), 128);
}

TEST(MurvTasks, valueOrFail)
{
    const std::string text = s_cpShop;
    const CFields tree = tree4Text(text);

    const auto port = at<unsigned short>(tree, "listen.port", text);

    EXPECT_EQ(port, 8080);
    EXPECT_EQ(
        messageOf([&] { static_cast<void>(at<int>(tree, "listen.timeout", text)); }),
        R"(listen.timeout: nothing found, integer from -2147483648 to 2147483647 wanted (below line 4, column 14))");
    EXPECT_EQ(messageOf([&] { static_cast<void>(at<signed char>(tree, "listen.port", text)); }),
              R"(listen.port: integer 8080 found, integer from -128 to 127 wanted (line 4, column 25))");
}

TEST(MurvTasks, valueOrFailWithoutTheText)
{
    const CFields tree = tree4Text(s_cpShop);
    EXPECT_EQ(messageOf([&] { static_cast<void>(at<signed char>(tree, "listen.port")); }),
              "listen.port: integer 8080 found, integer from -128 to 127 wanted (byte 77)");
}

TEST(MurvTasks, loop)
{
    const CFields tree = tree4Text(s_cpShop);
    std::ostringstream out;

    for (const auto& [name, value] : items(at(tree, "listen")))
        out << name << ": " << value.asString() << "\n";

    EXPECT_EQ(out.str(), R"(port: 8080
host: ::1
)");
}

TEST(MurvTasks, changeAndSave)
{
    const CTemporaryDirectory directory;
    const std::string file = directory.write("shop", s_cpShop);

    CDocument document;
    if (document.loadFile(file))
    {
        document.set("listen.port", 9090);
        document.saveFile(file);
    }

    EXPECT_EQ(directory.read("shop"), R"(// The shop in the High Street.
{
  "name" = "shop",
  "listen" = { "port" = 9090, "host" = "::1" },  // as agreed
  "orders" = [
    { "price" = 19.50, "lines" = 2 },
    { "price" = 5.00, "lines" = 1 }
  ]
}
)");
}

TEST(MurvTasks, append)
{
    CFields tree = tree4Text(s_cpShop);

    append(at(tree, "orders"), fields({{"price", 7.25}, {"lines", 1}}));

    EXPECT_EQ(at<double>(tree, "orders[2].price"), 7.25);
    EXPECT_EQ(at<int>(tree, "orders[2].lines"), 1);
}

namespace
{
struct tListen
{
    unsigned short port = 80;
    std::string host;
};
MURV_MEMBERS(tListen, port, host)
}  // namespace

TEST(MurvTasks, structure)
{
    CFields tree = tree4Text(s_cpShop);

    auto listen = fromTree<tListen>(at(tree, "listen"));
    listen.port = 9090;
    set(tree, "listen", toTree(listen));

    EXPECT_EQ(at<int>(tree, "listen.port"), 9090);
    EXPECT_EQ(at<std::string>(tree, "listen.host"), "::1");
}

TEST(MurvTasks, structureOfTooLargeNumber)
{
    const CFields tree = fields({{"port", 70000}, {"host", "::1"}});
    EXPECT_EQ(messageOf([&] { static_cast<void>(fromTree<tListen>(tree)); }),
              R"(port: integer 70000 found, integer from 0 to 65535 wanted)");
}

TEST(MurvTasks, mergePatch)
{
    CFields tree = tree4Text(s_cpShop);
    const CFields patch = tree4Text(R"({ "listen" = { "port" = 8443, "host" = null } })");

    merge(tree, patch);

    EXPECT_EQ(at(tree, "listen").toMURV(ER_SER_PKT), R"("listen"={"port"=8443})");
    EXPECT_EQ(at<std::string>(tree, "name"), "shop");
}

TEST(MurvTasks, mergePatchIntoText)
{
    CDocument document;
    ASSERT_TRUE(document.load("{ \"port\" = 80, \"host\" = \"::1\" }  // as agreed\n"));
    document.merge(fields({{"host", nullptr}}));
    EXPECT_EQ(document.text(), "{ \"port\" = 80 }  // as agreed\n");
}

TEST(MurvTasks, compare)
{
    const CFields before = tree4Text(s_cpShop);
    CFields after = before;
    EXPECT_TRUE(before == after);
    set(after, "listen.port", 9090);
    append(at(after, "orders"), fields({{"price", 7.25}}));
    std::ostringstream out;

    const bool isSame = before == after;
    for (const tDifference& difference : diff(before, after))
        out << difference.path() << "\n";

    EXPECT_FALSE(isSame);
    EXPECT_EQ(out.str(), R"(listen.port
orders[2]
)");
}

TEST(MurvTasks, compareMembersInAnotherOrder)
{
    const CFields before = fields({{"port", 8080}, {"host", "::1"}});
    const CFields after = fields({{"host", "::1"}, {"port", 8080}});
    EXPECT_FALSE(before == after);
    EXPECT_TRUE(diff(before, after).empty());
}

TEST(MurvTasks, walk)
{
    const CFields tree = tree4Text(s_cpShop);
    std::ostringstream out;

    walk(tree, [&](const CFields& node, const CWalkPlace& place) {
        if (!node.isField() && !node.isArray())
            out << place.path() << ": " << node.asString() << "\n";
    });

    EXPECT_EQ(out.str(), R"(name: shop
listen.port: 8080
listen.host: ::1
orders[0].price: 19.5
orders[0].lines: 2
orders[1].price: 5
orders[1].lines: 1
)");
}

}  // namespace murv::tests
