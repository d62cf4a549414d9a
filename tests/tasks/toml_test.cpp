// tests/tasks/toml_test.cpp - the snippets of docs/ten-tasks.md for toml++, and what the page says of them.
#include <gtest/gtest.h>
#include <toml++/toml.h>

#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>

#include "support/subprocess.h"
#include "tasks/message_of.h"

namespace murv::tests
{

namespace
{
constexpr const char* s_cpShop = R"(# The shop in the High Street.
name = "shop"

[listen]
port = 8080  # as agreed
host = "::1"

[[orders]]
price = 19.50
lines = 2

[[orders]]
price = 5.00
lines = 1
)";

toml::table shop()
{
    return toml::parse(s_cpShop);
}
}  // namespace

TEST(TomlTasks, load)
{
    const CTemporaryDirectory directory;
    const std::string file = directory.write("shop", "name \"shop\"\n\n[listen]\nport = tru\n");
    std::ostringstream out;

    try
    {
        const toml::table tree = toml::parse_file(file);
    }
    catch (const toml::parse_error& error)
    {
        out << error.source().begin << ": " << error.description() << "\n";
    }

    EXPECT_EQ(out.str(), R"(line 1, column 6: Error while parsing key-value pair: expected '=', saw '"'
)");
}

TEST(TomlTasks, valueOrDefault)
{
    const toml::table tree = shop();

    const int backlog = tree["listen"]["backlog"].value_or(128);

    EXPECT_EQ(backlog, 128);
    EXPECT_EQ(tree["listen"]["port"].value_or(128), 8080);
}

TEST(TomlTasks, valueOrDefaultOfAnotherType)
{
    const toml::table tree{{"text", "many"}, {"big", 5000000000LL}};
    EXPECT_EQ(tree["text"].value_or(128), 128);
    EXPECT_EQ(tree["big"].value_or(128), 128);
}

namespace
{
template <typename T>
T valueAt(const toml::table& tree, const std::string& path)
{
    const auto node = tree.at_path(path);
    if (const std::optional<T> value = node.value<T>())
        return *value;
    if (!node)
        throw std::runtime_error(path + ": missing");
    std::ostringstream message;
    message << path << ": wrong type or out of range (" << node.node()->source().begin << ")";
    throw std::runtime_error(message.str());
}
}  // namespace

TEST(TomlTasks, valueOrFail)
{
    const toml::table tree = shop();

    const auto port = valueAt<unsigned short>(tree, "listen.port");

    EXPECT_EQ(port, 8080);
    EXPECT_EQ(messageOf([&] { static_cast<void>(valueAt<int>(tree, "listen.timeout")); }),
              R"(listen.timeout: missing)");
    EXPECT_EQ(messageOf([&] { static_cast<void>(valueAt<signed char>(tree, "listen.port")); }),
              R"(listen.port: wrong type or out of range (line 5, column 8))");
}

TEST(TomlTasks, loop)
{
    const toml::table tree = shop();
    std::ostringstream out;

    for (const auto& [name, value] : *tree["listen"].as_table())
        out << name << ": " << toml::node_view(value) << "\n";

    EXPECT_EQ(out.str(), R"(host: '::1'
port: 8080
)");
}

TEST(TomlTasks, changeAndSave)
{
    const CTemporaryDirectory directory;
    const std::string file = directory.write("shop", s_cpShop);

    toml::table tree = toml::parse_file(file);
    tree["listen"].as_table()->insert_or_assign("port", 9090);
    std::ofstream(file) << tree << "\n";

    EXPECT_EQ(directory.read("shop"), R"(name = 'shop'

[listen]
host = '::1'
port = 9090

[[orders]]
lines = 2
price = 19.5

[[orders]]
lines = 1
price = 5.0
)");
}

TEST(TomlTasks, append)
{
    toml::table tree = shop();

    tree["orders"].as_array()->push_back(toml::table{{"price", 7.25}, {"lines", 1}});

    EXPECT_EQ(tree.at_path("orders[2].price"), 7.25);
    EXPECT_EQ(tree.at_path("orders[2].lines"), 1);
}

namespace
{
struct tListen
{
    unsigned short port = 80;
    std::string host;
};

tListen listen4Table(const toml::table& table)
{
    return {table["port"].value<unsigned short>().value(), table["host"].value<std::string>().value()};
}

toml::table table4Listen(const tListen& listen)
{
    return toml::table{{"port", listen.port}, {"host", listen.host}};
}
}  // namespace

TEST(TomlTasks, structure)
{
    toml::table tree = shop();

    tListen listen = listen4Table(*tree["listen"].as_table());
    listen.port = 9090;
    tree.insert_or_assign("listen", table4Listen(listen));

    EXPECT_EQ(*tree["listen"].as_table(), (toml::table{{"port", 9090}, {"host", "::1"}}));
}

TEST(TomlTasks, structureOfTooLargeNumber)
{
    EXPECT_THROW(listen4Table(toml::table{{"port", 70000}, {"host", "::1"}}), std::bad_optional_access);
}

namespace
{
void mergeTable(toml::table& target, const toml::table& patch)
{
    for (const auto& [name, value] : patch)
    {
        toml::table* const old = target[name].as_table();
        if (old != nullptr && value.is_table())
            mergeTable(*old, *value.as_table());
        else
            target.insert_or_assign(name, value);
    }
}
}  // namespace

TEST(TomlTasks, mergePatch)
{
    toml::table tree = shop();
    const toml::table patch = toml::parse("listen.port = 8443");

    mergeTable(tree, patch);

    EXPECT_EQ(*tree["listen"].as_table(), (toml::table{{"port", 8443}, {"host", "::1"}}));
    EXPECT_EQ(tree["name"], "shop");
}

TEST(TomlTasks, nullIsNoValue)
{
    EXPECT_THROW(static_cast<void>(toml::parse("host = null")), toml::parse_error);
}

TEST(TomlTasks, compare)
{
    const toml::table before = shop();
    toml::table after = before;
    EXPECT_TRUE(before == after);
    after["listen"].as_table()->insert_or_assign("port", 9090);
    after["orders"].as_array()->push_back(toml::table{{"price", 7.25}});

    const bool isSame = before == after;

    EXPECT_FALSE(isSame);
}

TEST(TomlTasks, compareMembersInAnotherOrder)
{
    EXPECT_EQ(toml::parse("port = 8080\nhost = '::1'"), toml::parse("host = '::1'\nport = 8080"));
}

namespace
{
void show(const toml::node& node, const std::string& path, std::ostream& out)
{
    if (const toml::table* table = node.as_table())
    {
        for (const auto& [name, value] : *table)
            show(value, path + "." + std::string(name.str()), out);
    }
    else if (const toml::array* array = node.as_array())
    {
        for (std::size_t i = 0; i < array->size(); ++i)
            show((*array)[i], path + "[" + std::to_string(i) + "]", out);
    }
    else
        out << path << ": " << toml::node_view(node) << "\n";
}
}  // namespace

TEST(TomlTasks, walk)
{
    const toml::table tree = shop();
    std::ostringstream out;

    show(tree, "", out);

    EXPECT_EQ(out.str(), R"(.listen.host: '::1'
.listen.port: 8080
.name: 'shop'
.orders[0].lines: 2
.orders[0].price: 19.5
.orders[1].lines: 1
.orders[1].price: 5.0
)");
}

}  // namespace murv::tests
