// tests/everyday/path_test.cpp - paths and pointers, what they lead to, and the paths of nodes.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "murv/loader.h"
#include "murv/path.h"
#include "tests/everyday/everyday_helpers.h"
#include "tests/support/random_tree.h"
#include "tests/support/thrown.h"

namespace murv::tests
{

namespace
{
constexpr const char* s_cpOrders =
    R"({ "shop" = "x", "orders" = [ { #7 "id" = 1, "price" = 19.5 }, { "id" = 2, "price" = 1.5 } ],)"
    R"( #9 "a.b c" = { "on" = true, "" = 5, "list" = [1, [2, 3]] }, "/s~" = 4, "-" = 6 })";

std::string at(const CFields& tree, const std::string& path)
{
    const CFields* const node = find(tree, path);
    return node == nullptr ? "nothing" : node->asString();
}

std::string atPointer(const CFields& tree, const std::string& pointer)
{
    const CFields* const node = find(tree, parsePointer(pointer));
    return node == nullptr ? "nothing" : node->asString();
}

std::string fault(const tNodePath& path)
{
    return path.m_pError == nullptr ? "none" : std::to_string(path.m_nErrorAt) + ": " + path.m_pError;
}
}  // namespace

TEST(Path, leadsByNameIndexAndId)
{
    const CFields tree = load(s_cpOrders);
    EXPECT_EQ(at(tree, "shop"), "x");
    EXPECT_EQ(at(tree, "orders[1].price"), "1.5");
    EXPECT_EQ(at(tree, "[1][0].id"), "1");
    EXPECT_EQ(at(tree, "#7"), "1");
    EXPECT_EQ(at(tree, "orders.#7"), "1");
    EXPECT_EQ(at(tree, "#9.on"), "true");
    EXPECT_EQ(at(tree, "\"a.b c\".list[1][0]"), "2");
    EXPECT_EQ(at(tree, "\"a\\x2Eb c\"[1]"), "5");
    EXPECT_EQ(find(tree, "."), &tree);
}

TEST(Path, negativeIndexCountsFromTheEnd)
{
    const CFields tree = load(s_cpOrders);
    EXPECT_EQ(at(tree, "orders[-1].id"), "2");
    EXPECT_EQ(at(tree, "orders[-2].id"), "1");
    EXPECT_EQ(at(tree, "orders[-3].id"), "nothing");
    EXPECT_EQ(at(tree, "[-1]"), "6");
    EXPECT_EQ(fault(parsePath("a[-0]")), "2: an index is needed");
    EXPECT_EQ(fault(parsePath("a[-]")), "2: an index is needed");
    EXPECT_EQ(fault(parsePath("a[-1]", PO_none)), "2: an index is needed");
}

TEST(Path, whatIsNotThereIsNull)
{
    const CFields tree = load(s_cpOrders);
    for (const char* path : {"missing", "orders[2]", "orders[4294967295]", "orders[99999999999999999999999]",
                             "orders[-4294967296]", "orders.id", "shop.x", "shop[0]", "#8", "\"\"", "/orders/2",
                             "/orders/-", "/orders/00", "/orders/01", "/orders/4294967296", "/shop/0", "/x", "/"})
        EXPECT_EQ(find(tree, path), nullptr) << path;
    EXPECT_EQ(find(tree, std::string(300, 'x')), nullptr);
    std::size_t taken = 0;
    EXPECT_EQ(find(tree, parsePath("orders[0].name.first"), &taken), nullptr);
    EXPECT_EQ(taken, 2U);
}

TEST(Path, mutableTreesGiveMutableNodes)
{
    CFields tree = load(s_cpOrders);
    *find(tree, "orders[0].price") = 3;
    *find(tree, parsePath("shop")) = "y";
    EXPECT_EQ(at(tree, "orders[0].price"), "3");
    EXPECT_EQ(at(tree, "shop"), "y");
}

TEST(Path, mistakesNameTheirPlace)
{
    const std::pair<const char*, const char*> texts[] = {
        {"", "0: a path is needed; . is the root"},
        {"a[", "2: an index is needed"},
        {"a[1", "3: \"]\" expected"},
        {"a..b", "2: a name is needed"},
        {"a.", "2: a name is needed"},
        {"[0]a", "3: \".\" or \"[\" expected"},
        {"#0", "2: an ID from 1 to 2147483647 is needed"},
        {"#2147483648", "11: an ID from 1 to 2147483647 is needed"},
        {"#x", "1: an ID from 1 to 2147483647 is needed"},
        {"\"a", "0: the quote is not closed"},
        {"\"a\\", "0: the quote is not closed"},
        {"a.b[3].\"c\"", "none"},
    };
    for (const auto& [text, message] : texts)
        EXPECT_EQ(fault(parsePath(text)), message) << text;
}

TEST(Path, aLiteralZeroIsNoPath)
{
    const auto finds = [](auto index) -> decltype(find(std::declval<CFields&>(), index)) { return nullptr; };
    static_assert(!std::is_invocable_v<decltype(finds), int>);
    static_assert(!std::is_invocable_v<decltype(finds), std::size_t>);
    static_assert(std::is_invocable_v<decltype(finds), const char*>);
}

TEST(Path, stepsSayWhereTheyEnd)
{
    const tNodePath path = parsePath("a[12].\"b\".#3");
    ASSERT_EQ(path.m_vStep.size(), 4U);
    const std::pair<E_PathStep, std::size_t> steps[] = {{PS_name, 1}, {PS_index, 5}, {PS_name, 9}, {PS_id, 12}};
    for (unsigned int i = 0; i < 4; ++i)
    {
        EXPECT_EQ(path.m_vStep[i].m_eStep, steps[i].first);
        EXPECT_EQ(path.m_vStep[i].m_nEnd, steps[i].second);
    }
    EXPECT_EQ(path.m_vStep[1].m_uiNumber, 12U);
    EXPECT_EQ(path.m_vStep[2].m_strName, "b");
}

TEST(Path, followingWhatIsNoPathThrows)
{
    CFields tree = load(s_cpOrders);
    EXPECT_EQ(thrown([&] { return find(tree, "a["); }), "Malformed path \"a[\", byte 2: an index is needed");
    EXPECT_EQ(thrown([&] { return find(tree, ""); }), "Malformed path \"\", byte 0: a path is needed; . is the root");
    EXPECT_EQ(thrown([&] { return find(tree, "/a~2"); }),
              "Malformed path \"/a~2\", byte 3: \"0\" or \"1\" expected after \"~\"");
    EXPECT_EQ(thrown([&] { return find(tree, parsePath("a[")); }), "Malformed path, byte 2: an index is needed");
    EXPECT_EQ(CPathError("x", "y", 3).getOffset(), 3U);
}

namespace
{
/// What findAll gives, with a blank after each value.
std::string all(const CFields& tree, const std::string& path)
{
    std::string text;
    for (const CFields* const node : findAll(tree, path))
        text += (node->isField() || node->isArray() ? textOf(*node) : node->asString()) + " ";
    return text;
}

constexpr const char* s_cpList = R"({ "list" = [0, 1, 2, 3, 4, 5], "two" = { "a" = [6], "b" = 7, "*" = 8 } })";
}  // namespace

TEST(FindAll, starLeadsToAllMembers)
{
    const CFields tree = load(s_cpOrders);
    EXPECT_EQ(all(tree, "orders[*].price"), "19.5 1.5 ");
    EXPECT_EQ(all(tree, "orders.*.price"), "19.5 1.5 ");
    EXPECT_EQ(all(tree, "[1][*][0]"), "1 2 ");
    EXPECT_EQ(all(tree, "*[*].id"), "1 2 ");
    EXPECT_EQ(all(tree, "#9.*"), "true 5 \"list\"=[1,[2,3]] ");
    EXPECT_EQ(all(tree, "*.#7"), "1 ");
    EXPECT_EQ(all(tree, "shop.*"), "");
    EXPECT_EQ(all(tree, "shop"), "x ");
    EXPECT_EQ(all(tree, "/orders/1/id"), "2 ");
    EXPECT_EQ(all(tree, "missing"), "");
    EXPECT_EQ(findAll(tree, ".").at(0), &tree);
}

TEST(FindAll, starIsANameInQuotesAndInPartsOfNames)
{
    const CFields tree = load(R"({ "*" = 1, "*a" = 2, "c*" = { "*" = 3 } })");
    EXPECT_EQ(all(tree, "\"*\""), "1 ");
    EXPECT_EQ(all(tree, "*a"), "2 ");
    EXPECT_EQ(all(tree, "c*.*"), "3 ");
    EXPECT_EQ(at(tree, "*"), "1");
    EXPECT_EQ(pathName("*"), "\"*\"");
}

TEST(FindAll, rangesEndBeforeTheirSecondIndex)
{
    const CFields tree = load(s_cpList);
    const std::pair<const char*, const char*> ranges[] = {
        {"list[2..5]", "2 3 4 "}, {"list[2..]", "2 3 4 5 "},
        {"list[..2]", "0 1 "},    {"list[-2..]", "4 5 "},
        {"list[..-4]", "0 1 "},   {"list[-3..-1]", "3 4 "},
        {"list[1..-4]", "1 "},    {"list[4..99]", "4 5 "},
        {"list[-99..1]", "0 "},   {"list[..]", "0 1 2 3 4 5 "},
        {"list[3..3]", ""},       {"list[4..2]", ""},
        {"list[6..]", ""},        {"list[99..100]", ""},
        {"list[..-99]", ""},      {"list[0..99999999999]", "0 1 2 3 4 5 "},
        {"two[1..]", "7 8 "},     {"two[..2][-1..]", "6 "},
    };
    for (const auto& [path, values] : ranges)
        EXPECT_EQ(all(tree, path), values) << path;
}

TEST(FindAll, saysHowFarTheFurthestWayLed)
{
    const CFields tree = load(s_cpList);
    const auto taken = [&tree](const char* path) {
        std::size_t steps = 99;
        static_cast<void>(findAll(tree, parsePath(path, PO_fromEnd | PO_several), &steps));
        return steps;
    };
    EXPECT_EQ(taken("*.a.x"), 2U);
    EXPECT_EQ(taken("*[0]"), 2U);
    EXPECT_EQ(taken("list[7..]"), 1U);
    EXPECT_EQ(taken("none[*].x"), 0U);
    EXPECT_EQ(taken("."), 0U);
}

TEST(FindAll, mutableTreesGiveMutableNodes)
{
    CFields tree = load(s_cpList);
    for (CFields* const node : findAll(tree, "list[1..3]"))
        *node = 9;
    for (CFields* const node : findAll(tree, parsePath("two.b")))
        *node = 10;
    EXPECT_EQ(all(tree, "list[..4]"), "0 9 9 3 ");
    EXPECT_EQ(all(tree, "two.b"), "10 ");
}

TEST(FindAll, mistakesNameTheirPlace)
{
    const std::pair<const char*, const char*> texts[] = {
        {"a[*", "3: \"]\" expected"},         {"a[*..2]", "3: \"]\" expected"},
        {"a[1..", "5: an index is needed"},   {"a[1..-0]", "5: an index is needed"},
        {"a[1..x]", "5: an index is needed"}, {"a[x..1]", "2: an index is needed"},
        {"a[1.2]", "3: \"]\" expected"},      {"a[1..2", "6: \"]\" expected"},
        {"a[1..2..3]", "6: \"]\" expected"},  {"a.*x.*", "none"},
    };
    for (const auto& [text, message] : texts)
        EXPECT_EQ(fault(parsePath(text, PO_fromEnd | PO_several)), message) << text;
    EXPECT_EQ(fault(parsePath("a[*]")), "2: an index is needed");
    EXPECT_EQ(fault(parsePath("a[1..2]")), "3: \"]\" expected");
    EXPECT_EQ(fault(parsePath("a[-1..]", PO_several)), "2: an index is needed");
}

TEST(FindAll, isForPathsThatLeadToSeveralNodes)
{
    CFields tree = load(s_cpList);
    const tNodePath path = parsePath("list[*]", PO_several);
    EXPECT_EQ(thrown([&] { return find(tree, path); }), "Malformed path, byte 7: a range leads to several nodes");
    EXPECT_EQ(thrown([&] { return findAll(tree, "a["); }), "Malformed path \"a[\", byte 2: an index is needed");
    EXPECT_EQ(thrown([&] { return findAll(tree, parsePath("a[")); }), "Malformed path, byte 2: an index is needed");
}

TEST(FindAll, hostilePathsAndDepthsCostLinearTime)
{
    CFields tree = deepTree(200000);
    std::string path;
    std::string ids;
    CFields* node = &tree;
    for (unsigned int level = 1; level < 200000; ++level)
    {
        path += "[*]";
        node = &(*node)[0];
        node->setID(level);
        ids += (ids.empty() ? "*.#" : ".#") + std::to_string(level);
    }
    ASSERT_EQ(findAll(tree, path).size(), 1U);
    EXPECT_EQ(findAll(tree, path)[0], node);
    EXPECT_EQ(findAll(tree, path + "[*]").size(), 0U);
    EXPECT_EQ(findAll(tree, ids).at(0), node);
    CFields wide(DT_array);
    for (int i = 0; i < 100000; ++i)
        wide.addArrayAt(CFields(i));
    EXPECT_EQ(findAll(wide, "[*]").size(), 100000U);
}

TEST(Pointer, leadsAsRfc6901Says)
{
    CFields tree;
    tree.addChildRef("foo").addArrayAt("bar");
    tree["foo"].addArrayAt("baz");
    const std::pair<const char*, int> names[] = {{"a/b", 1},  {"c%d", 2},  {"e^f", 3}, {"g|h", 4},
                                                 {"i\\j", 5}, {"k\"l", 6}, {" ", 7},   {"m~n", 8}};
    for (const auto& [name, value] : names)
        tree.addChildRef(name) = value;
    EXPECT_EQ(find(tree, parsePointer("")), &tree);
    EXPECT_EQ(atPointer(tree, "/foo/0"), "bar");
    EXPECT_EQ(atPointer(tree, "/a~1b"), "1");
    EXPECT_EQ(atPointer(tree, "/c%d"), "2");
    EXPECT_EQ(atPointer(tree, "/e^f"), "3");
    EXPECT_EQ(atPointer(tree, "/g|h"), "4");
    EXPECT_EQ(atPointer(tree, "/i\\j"), "5");
    EXPECT_EQ(atPointer(tree, "/k\"l"), "6");
    EXPECT_EQ(atPointer(tree, "/ "), "7");
    EXPECT_EQ(atPointer(tree, "/m~0n"), "8");
    EXPECT_EQ(at(tree, "/foo/1"), "baz");
}

TEST(Pointer, digitsAreANameInFieldSets)
{
    const CFields tree = load(R"({ "1" = "one", "list" = [10, 11] })");
    EXPECT_EQ(at(tree, "/1"), "one");
    EXPECT_EQ(at(tree, "/list/1"), "11");
    EXPECT_EQ(at(tree, "/0"), "nothing");
}

TEST(Pointer, mistakesNameTheirPlace)
{
    EXPECT_EQ(fault(parsePointer("a")), "0: a pointer begins with \"/\"");
    EXPECT_EQ(fault(parsePointer("/ab~")), "4: \"0\" or \"1\" expected after \"~\"");
    EXPECT_EQ(fault(parsePointer("/a/b~2")), "5: \"0\" or \"1\" expected after \"~\"");
    EXPECT_EQ(fault(parsePointer("/~01")), "none");
    EXPECT_EQ(parsePointer("/~01").m_vStep[0].m_strName, "~1");
}

TEST(PathOf, isWhatLeadsBack)
{
    CFields tree = load(s_cpOrders);
    EXPECT_EQ(pathOf(tree, tree), ".");
    EXPECT_EQ(pathOf(tree, tree["orders"][1]["price"]), "orders[1].price");
    EXPECT_EQ(pathOf(tree, tree["a.b c"]["list"][1][0]), "\"a.b c\".list[1][0]");
    EXPECT_EQ(pathOf(tree, tree["a.b c"][1]), "\"a.b c\"[1]");
    EXPECT_EQ(pathOf(tree, tree["/s~"]), "\"/s~\"");
    EXPECT_EQ(pathOf(tree["orders"], tree["orders"][1]["price"]), "[1].price");
    EXPECT_EQ(pathOf(tree["orders"], tree["shop"]), std::nullopt);
    EXPECT_EQ(pathOf(tree, CFields(1)), std::nullopt);
    tree.addChildRef("shop", 0, true) = "second";
    EXPECT_EQ(pathOf(tree, tree[5]), "[5]");
}

TEST(PathOf, pointersSayTheSame)
{
    CFields tree = load(s_cpOrders);
    EXPECT_EQ(pointerOf(tree, tree), "");
    EXPECT_EQ(pointerOf(tree, tree["orders"][1]["price"]), "/orders/1/price");
    EXPECT_EQ(pointerOf(tree, tree["/s~"]), "/~1s~0");
    EXPECT_EQ(pointerOf(tree, tree["a.b c"][1]), std::nullopt);
    EXPECT_EQ(pointerOf(tree["orders"], tree["shop"]), std::nullopt);
}

TEST(PathOf, leadsBackToEveryNodeOfRandomTrees)
{
    for (unsigned int seed = 0; seed < 40; ++seed)
    {
        CFields tree = CRandomTree(seed).tree();
        for (const CFields* node : nodesOf(tree))
        {
            const std::optional<std::string> path = pathOf(tree, *node);
            ASSERT_TRUE(path.has_value());
            EXPECT_EQ(find(tree, *path), node) << *path;
            const std::optional<std::string> pointer = pointerOf(tree, *node);
            if (pointer.has_value())
            {
                EXPECT_EQ(find(tree, parsePointer(*pointer)), node) << *pointer;
            }
        }
    }
}

TEST(PathName, anyNameBecomesAStep)
{
    for (const std::string name : {"plain", "a.b", "", "#1", "[0]", "\"", "\\", "/x", "\n\x01\xC3\xA9\xFF", "-1", "."})
    {
        CFields tree(DT_fields);
        CFields& member = tree.addChildRef(name);
        if (!name.empty())
        {
            EXPECT_EQ(find(tree, pathName(name)), &member) << name;
            EXPECT_EQ(find(tree, pointerToken(name)), &member) << name;
        }
    }
    EXPECT_EQ(pathName("plain"), "plain");
    EXPECT_EQ(pathName("a.b"), "\"a.b\"");
    EXPECT_EQ(pathName(""), "\"\"");
    EXPECT_EQ(pointerToken("a/~b"), "/a~1~0b");
}

TEST(Path, hostilePathsAndDepthsCostLinearTime)
{
    CFields tree;
    CFields* node = &tree;
    std::string path;
    std::string pointer;
    for (unsigned int level = 0; level < 200000; ++level)
    {
        node = &node->addArrayAt(CFields());
        node->setID(level + 1);
        path += "[0]";
        pointer += "/0";
    }
    EXPECT_EQ(find(tree, path), node);
    EXPECT_EQ(find(tree, pointer), node);
    EXPECT_EQ(pathOf(tree, *node), path);
    EXPECT_EQ(pointerOf(tree, *node), pointer);
    EXPECT_EQ(find(tree, path + "[0]"), nullptr);
    std::string ids = "#1";
    for (unsigned int level = 1; level < 200000; ++level)
        ids += ".#" + std::to_string(level + 1);
    EXPECT_EQ(find(tree, ids), node);
    EXPECT_EQ(find(tree, ids + ".#1"), nullptr);
}

}  // namespace murv::tests
