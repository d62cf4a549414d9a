// tests/everyday/convert_test.cpp - structures and containers from trees, and back.
#include "murv/convert.h"

#include <gtest/gtest.h>

#include <list>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tests/everyday/everyday_helpers.h"
#include "tests/support/thrown.h"

namespace shapes
{

struct tPoint
{
    double m_dX = 0;
    double m_dY = 0;
};
MURV_NAMED_MEMBERS(tPoint, (m_dX, "x"), (m_dY, "y"))

struct tShape
{
    std::string name;
    std::vector<tPoint> points;
    std::optional<int> color;
    std::map<std::string, bool> flags;
};
MURV_MEMBERS(tShape, name, points, color, flags)

struct tConfig
{
    unsigned short m_usPort = 8080;
    std::string m_strHost = "localhost";
    std::optional<int> m_oLimit = 5;
};
constexpr auto murvMembers(const tConfig*)
{
    return std::make_tuple(murv::member("port", &tConfig::m_usPort), murv::memberOr("host", &tConfig::m_strHost),
                           murv::memberOr("limit", &tConfig::m_oLimit));
}

class CSecret
{
public:
    int number() const
    {
        return m_iNumber;
    }

private:
    int m_iNumber = 3;
    friend MURV_MEMBERS(CSecret, m_iNumber)
};

struct tBranch
{
    std::vector<tBranch> below;
};
MURV_MEMBERS(tBranch, below)

struct tWide
{
    int a = 1, b = 2, c = 3, d = 4, e = 5, f = 6, g = 7, h = 8, i = 9, j = 10, k = 11, l = 12, m = 13, n = 14, o = 15,
        p = 16, q = 17, r = 18, s = 19, t = 20, u = 21, v = 22, w = 23, x = 24;
};
MURV_MEMBERS(tWide, a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t, u, v, w, x)

}  // namespace shapes

namespace murv::tests
{

namespace
{
template <typename T>
void expectBoth(const T& value, const std::string& text)
{
    const CFields tree = toTree(value);
    EXPECT_EQ(textOf(tree), text);
    EXPECT_EQ(fromTree<T>(tree), value) << text;
}

template <typename T>
std::string refusal(const std::string& text, bool withText = false)
{
    const CFields tree = load(text);
    return thrown([&] { return fromTree<T>(tree, withText ? text : ""); });
}
}  // namespace

TEST(Convert, scalarsAndContainersGoBothWays)
{
    expectBoth(5, "5");
    expectBoth(true, "true");
    expectBoth(std::string("x"), "\"x\"");
    expectBoth(std::vector<int>{1, 2}, "[1,2]");
    expectBoth(std::vector<bool>{true, false}, "[true,false]");
    expectBoth(std::vector<std::vector<int>>{{1}, {}}, "[[1],[]]");
    expectBoth(std::list<std::string>{"a"}, "[\"a\"]");
    expectBoth(std::array<int, 3>{1, 2, 3}, "[1,2,3]");
    expectBoth(std::pair<int, std::string>(1, "a"), "[1,\"a\"]");
    expectBoth(std::tuple<int, bool, std::string>(1, true, "a"), "[1,true,\"a\"]");
    expectBoth(std::map<std::string, int>{{"a", 1}, {"b.c", 2}}, R"({"a"=1,"b.c"=2})");
    expectBoth(std::unordered_map<std::string, int>{{"a", 1}}, R"({"a"=1})");
    expectBoth(std::optional<int>(), "null");
    expectBoth(std::optional<int>(3), "3");
    expectBoth(load("[1,{\"a\"=2}]"), R"([1,{"a"=2}])");
    expectBoth(std::map<std::string, int>(), "{}");
    EXPECT_EQ(toTree(1U).getDT(), DT_uint);
    EXPECT_EQ(toTree(std::vector<std::vector<int>>()).getDT(), DT_array);
}

TEST(Convert, structuresGoBothWays)
{
    shapes::tShape shape;
    shape.name = "line";
    shape.points = {{0.5, 1.5}, {2.5, 3.5}};
    shape.flags["open"] = true;
    const std::string text = R"({"name"="line","points"=[{"x"=0.5,"y"=1.5},{"x"=2.5,"y"=3.5}],"flags"={"open"=true}})";
    EXPECT_EQ(textOf(toTree(shape)), text);
    const auto again = fromTree<shapes::tShape>(load(text));
    EXPECT_EQ(textOf(toTree(again)), text);
    EXPECT_FALSE(again.color.has_value());
    shape.color = 7;
    EXPECT_EQ(fromTree<shapes::tShape>(toTree(shape)).color, 7);
}

TEST(Convert, membersThatMayBeMissingKeepTheirValue)
{
    const auto config = fromTree<shapes::tConfig>(load("{ \"port\" = 1, \"more\" = 2 }"));
    EXPECT_EQ(config.m_usPort, 1);
    EXPECT_EQ(config.m_strHost, "localhost");
    EXPECT_EQ(config.m_oLimit, 5);
    EXPECT_EQ(fromTree<shapes::tConfig>(load("{ \"port\" = 1, \"limit\" = null }")).m_oLimit, std::nullopt);
    EXPECT_EQ(refusal<shapes::tConfig>("{ \"host\" = \"a\" }"),
              "port: nothing found, integer from 0 to 65535 wanted (below byte 0)");
}

TEST(Convert, privateMembersAreDescribedInside)
{
    EXPECT_EQ(textOf(toTree(shapes::CSecret())), R"({"m_iNumber"=3})");
    EXPECT_EQ(fromTree<shapes::CSecret>(load(R"({"m_iNumber"=9})")).number(), 9);
}

TEST(Convert, asManyMembersAsTheMacroTakes)
{
    const CFields tree = toTree(shapes::tWide());
    EXPECT_EQ(tree.getChildCount(), 24U);
    EXPECT_EQ(tree["x"], CFields(24));
    EXPECT_EQ(fromTree<shapes::tWide>(tree).x, 24);
}

TEST(Convert, errorsHaveThePath)
{
    EXPECT_EQ(refusal<shapes::tShape>(R"({"name"="a","points"=[{"x"=1,"y"=2},{"x"="1"}]})"),
              "points[1].x: string found, double wanted (byte 41)");
    EXPECT_EQ(refusal<shapes::tShape>("{\"name\"=\"a\",\n\"points\"=[{\"x\"=1}]}", true),
              "points[0].y: nothing found, double wanted (below line 2, column 11)");
    EXPECT_EQ(refusal<shapes::tShape>(R"({"name"="a","points"=5})"), "points: integer 5 found, array wanted (byte 21)");
    EXPECT_EQ(refusal<shapes::tPoint>("[1]"), ".: array found, field set wanted (byte 0)");
    EXPECT_EQ((refusal<std::map<std::string, int>>(R"({"a.b"=true})")),
              "\"a.b\": bool found, integer from -2147483648 to 2147483647 wanted (byte 7)");
    EXPECT_EQ((refusal<std::array<int, 3>>("[1,2]")), ".: array found, array of 3 wanted (byte 0)");
    EXPECT_EQ((refusal<std::pair<bool, int>>("[true]")), ".: array found, array of 2 wanted (byte 0)");
    EXPECT_EQ((refusal<std::vector<std::optional<bool>>>("[null,true,1]")),
              "[2]: integer 1 found, bool wanted (byte 11)");
}

TEST(Convert, namesThatNoTreeHoldsAreRefused)
{
    EXPECT_EQ(thrown([] {
                  return toTree(std::map<std::string, int>{{"", 1}});
              }),
              "Cannot make the member \"\": a name has 1 to 255 bytes");
}

TEST(Convert, hostileDepthEndsInAnError)
{
    CFields tree(DT_fields);
    CFields* node = &tree;
    for (unsigned int level = 0; level < 100000; ++level)
    {
        CFields& list = node->addChildRef("below");
        list.setValue(DT_array);
        node = &list.addArrayAt(CFields(DT_fields));
    }
    EXPECT_EQ(thrown([&] { return fromTree<shapes::tBranch>(tree); }),
              "Cannot convert a tree of more than 1000 levels");
    EXPECT_EQ(fromTree<shapes::tBranch>(load("{\"below\"=[{\"below\"=[]}]}")).below.size(), 1U);
}

}  // namespace murv::tests
