// everyday.cpp - the shorthands of docs/everyday.md, at work on one document.
#include <iostream>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "murv/everyday.h"
#include "murv/murv.h"

using namespace murv;

namespace
{
constexpr const char* s_cpDocument = R"({
  "name" = "shop",
  "listen" = { "port" = 8080, "host" = "::1" },
  #7 "orders" =
  [
    { "price" = 19.5, "lines" = 2 },
    { "price" = 5, "note" = "gift" }
  ]
})";

struct tListen
{
    unsigned short m_usPort = 80;
    std::optional<std::string> m_oHost;
    std::vector<std::string> m_vNames;
};
MURV_NAMED_MEMBERS(tListen, (m_usPort, "port"), (m_oHost, "host"), (m_vNames, "names"))

struct tPoint
{
    double m_dX = 0;
    double m_dY = 0;
};
constexpr auto murvMembers(const tPoint*)
{
    return std::make_tuple(murv::member("x", &tPoint::m_dX), murv::memberOr("y", &tPoint::m_dY));
}

void followPaths(const CFields& tree)
{
    const CFields* note = find(tree, "orders[1].note");
    const CFields* same = find(tree, "/orders/1/note");
    const CFields* price = find(tree, "#7[0].price");
    const CFields* none = find(tree, "orders[5].note");
    std::cout << (note == same) << " " << price->asDouble() << " " << (none == nullptr) << "\n";
    std::cout << pathOf(tree, *note).value() << " or " << pointerOf(tree, *note).value() << "\n";
    for (const CFields* each : findAll(tree, "orders[*].price"))
        std::cout << pathOf(tree, *each).value() << ": " << each->asString() << "\n";
}

void readValues(const CFields& tree)
{
    const std::optional<int> port = get<int>(tree, "listen.port");
    const std::string host = valueOr(tree, "listen.host", "localhost");
    const int backlog = valueOr(tree, "listen.backlog", 128);
    const double second = at<double>(tree, "orders[1].price");  // written as 5
    std::cout << *port << " " << host << " " << backlog << " " << second << "\n";
    try
    {
        at<signed char>(tree, "listen.port", s_cpDocument);
    }
    catch (const CValueError& error)
    {
        std::cout << error.what() << "\n";
    }
}

void loop(const CFields& tree)
{
    for (const auto& [name, value] : items(at(tree, "listen")))
        std::cout << name << ": " << typeName(value) << "\n";
    for (const auto& [index, order] : enumerate(at(tree, "orders")))
        std::cout << index << ": " << order["price"].asString() << "\n";
}

void change(CFields& tree)
{
    CFields order = fields({{"price", 7.25}, {"lines", 1}, {"tags", array({"new", 3, false})}});
    append(at(tree, "orders"), std::move(order));
    set(tree, "listen.port", 9090);
    set(tree, "limits.requests", 100U);  // makes "limits"
    set(tree, "/orders/2/tags/-", true);
    std::cout << at(tree, "orders[2]") << "\n" << at(tree, "limits") << "\n";
}

void show(const CFields& tree)
{
    walk(tree, [](const CFields& node, const CWalkPlace& place) {
        if (node.isArray() && place.path() == "orders[2].tags")
            return WN_skip;
        std::string text;
        visit(
            node, [&](double number) { text = "number " + std::to_string(number); },
            [&](std::string_view string) { text = "text " + std::string(string); }, [](auto&&) {});
        if (place.depth() == 3 && !text.empty())
            std::cout << place.path() << ": " << text << "\n";
        return WN_members;
    });
}

void edit(CFields& tree)
{
    insertAt(at(tree, "orders"), 0, fields({{"price", 1}}));
    eraseIf(at(tree, "orders"), [](const CFields& order) { return valueOr(order, "price", 0.0) > 15; });
    CFields before = tree;
    merge(tree, fields({{"listen", fields({{"port", 8443}, {"host", nullptr}})}, {"name", "store"}}));
    for (const tDifference& difference : diff(before, tree))
        std::cout << difference.path() << (difference.m_pNew == nullptr ? " went" : " changed") << "\n";
    sortMembers(tree);
    std::cout << tree[0].getName() << " " << sameTree(before, tree) << "\n";
}

void convert()
{
    std::cout << toTree(std::vector<tPoint>{{1.5, 2}}).toMURV(ER_SER_PKT) << "\n";
    CFields listen = fields({{"port", 443}, {"names", array({"a", 5})}});
    try
    {
        std::cout << fromTree<tListen>(listen).m_usPort << "\n";
    }
    catch (const CValueError& error)
    {
        std::cout << error.what() << "\n";
    }
    set(listen, "names[1]", "b");
    std::cout << fromTree<tListen>(listen).m_vNames.size() << "\n";
}
}  // namespace

int main()
{
    CFields tree;
    CLoaders loader;
    if (!loader.loading(s_cpDocument, tree))
    {
        std::cerr << loader.getLastErrMsg();
        return 1;
    }
    followPaths(tree);
    readValues(tree);
    loop(tree);
    change(tree);
    show(tree);
    edit(tree);
    convert();
}
