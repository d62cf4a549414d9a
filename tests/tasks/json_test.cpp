// tests/tasks/json_test.cpp - the snippets of docs/ten-tasks.md for nlohmann/json, and what the page says of them.
#include <gtest/gtest.h>

#define JSON_DIAGNOSTICS 1  // messages with the place in the tree
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "support/subprocess.h"
#include "tasks/message_of.h"

namespace murv::tests
{

using nlohmann::json;

namespace
{
constexpr const char* s_cpShop = R"(// The shop in the High Street.
{
  "name": "shop",
  "listen": { "port": 8080, "host": "::1" },  // as agreed
  "orders": [
    { "price": 19.50, "lines": 2 },
    { "price": 5.00, "lines": 1 }
  ]
}
)";

json shop()
{
    return json::parse(s_cpShop, nullptr, true, true);
}
}  // namespace

TEST(JsonTasks, load)
{
    const CTemporaryDirectory directory;
    const std::string file = directory.write("shop", "{\n  \"name\" \"shop\",\n  \"listen\": { \"port\": tru }\n}\n");
    std::ostringstream out;

    try
    {
        std::ifstream in(file);
        const json tree = json::parse(in);
    }
    catch (const json::parse_error& error)
    {
        out << error.what() << "\n";
    }

    EXPECT_EQ(out.str(), R"([json.exception.parse_error.101] parse error at line 2, column 15: syntax error while )"
                         R"(parsing object separator - unexpected string literal; expected ':'
)");
}

TEST(JsonTasks, valueOrDefault)
{
    const json tree = shop();

    const int backlog = tree.value("/listen/backlog"_json_pointer, 128);

    EXPECT_EQ(backlog, 128);
    EXPECT_EQ(tree.value("/listen/port"_json_pointer, 128), 8080);
}

TEST(JsonTasks, valueOrDefaultOfAnotherType)
{
    const json tree = {{"text", "many"}, {"big", 5000000000LL}};
    EXPECT_THROW(static_cast<void>(tree.value("text", 128)), json::type_error);
    EXPECT_EQ(tree.value("big", 128), 705032704);
}

TEST(JsonTasks, valueOrFail)
{
    const json tree = shop();

    const auto port = tree.at("listen").at("port").get<unsigned short>();

    EXPECT_EQ(port, 8080);
    EXPECT_EQ(messageOf([&] { static_cast<void>(tree.at("listen").at("timeout").get<int>()); }),
              R"([json.exception.out_of_range.403] (/listen) key 'timeout' not found)");
    EXPECT_EQ(messageOf([&] { static_cast<void>(tree.at("listen").at("host").get<int>()); }),
              R"([json.exception.type_error.302] (/listen/host) type must be number, but is string)");
}

TEST(JsonTasks, loop)
{
    const json tree = shop();
    std::ostringstream out;

    for (const auto& [name, value] : tree.at("listen").items())
        out << name << ": " << value << "\n";

    EXPECT_EQ(out.str(), R"(host: "::1"
port: 8080
)");
}

TEST(JsonTasks, loopOfOrderedJson)
{
    const auto tree = nlohmann::ordered_json::parse(R"({"port": 8080, "host": "::1"})");
    EXPECT_EQ(tree.begin().key(), "port");
}

TEST(JsonTasks, changeAndSave)
{
    const CTemporaryDirectory directory;
    const std::string file = directory.write("shop", s_cpShop);

    std::ifstream in(file);
    json tree = json::parse(in, nullptr, true, true);  // passes over comments
    tree["listen"]["port"] = 9090;
    std::ofstream(file) << tree.dump(2) << "\n";

    EXPECT_EQ(directory.read("shop"), R"({
  "listen": {
    "host": "::1",
    "port": 9090
  },
  "name": "shop",
  "orders": [
    {
      "lines": 2,
      "price": 19.5
    },
    {
      "lines": 1,
      "price": 5.0
    }
  ]
}
)");
}

TEST(JsonTasks, append)
{
    json tree = shop();

    tree["orders"].push_back({{"price", 7.25}, {"lines", 1}});

    EXPECT_EQ(tree["orders"][2]["price"], 7.25);
    EXPECT_EQ(tree["orders"][2]["lines"], 1);
}

namespace
{
struct tListen
{
    unsigned short port = 80;
    std::string host;
};
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(tListen, port, host)
}  // namespace

TEST(JsonTasks, structure)
{
    json tree = shop();

    auto listen = tree.at("listen").get<tListen>();
    listen.port = 9090;
    tree["listen"] = listen;

    EXPECT_EQ(tree["listen"], json({{"port", 9090}, {"host", "::1"}}));
}

TEST(JsonTasks, structureOfTooLargeNumber)
{
    const json tree = {{"port", 70000}, {"host", "::1"}};
    EXPECT_EQ(tree.get<tListen>().port, 4464);
}

TEST(JsonTasks, mergePatch)
{
    json tree = shop();
    const json patch = json::parse(R"({ "listen": { "port": 8443, "host": null } })");

    tree.merge_patch(patch);

    EXPECT_EQ(tree["listen"].dump(), R"({"port":8443})");
    EXPECT_EQ(tree["name"], "shop");
}

TEST(JsonTasks, compare)
{
    const json before = shop();
    json after = before;
    EXPECT_TRUE(before == after);
    after["listen"]["port"] = 9090;
    after["orders"].push_back({{"price", 7.25}});
    std::ostringstream out;

    const bool isSame = before == after;
    for (const json& difference : json::diff(before, after))
        out << difference << "\n";

    EXPECT_FALSE(isSame);
    EXPECT_EQ(out.str(), R"({"op":"replace","path":"/listen/port","value":9090}
{"op":"add","path":"/orders/-","value":{"price":7.25}}
)");
    EXPECT_EQ(before.patch(json::diff(before, after)), after);
}

TEST(JsonTasks, compareMembersInAnotherOrder)
{
    EXPECT_EQ(json::parse(R"({"port": 8080, "host": "::1"})"), json::parse(R"({"host": "::1", "port": 8080})"));
}

TEST(JsonTasks, walk)
{
    const json tree = shop();
    std::ostringstream out;

    const json flat = tree.flatten();  // kept, since items() does not own it
    for (const auto& [pointer, value] : flat.items())
        out << pointer << ": " << value << "\n";

    EXPECT_EQ(out.str(), R"(/listen/host: "::1"
/listen/port: 8080
/name: "shop"
/orders/0/lines: 2
/orders/0/price: 19.5
/orders/1/lines: 1
/orders/1/price: 5.0
)");
}

}  // namespace murv::tests
