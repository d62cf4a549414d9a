// tests/ser/growth_test.cpp - loading costs in proportion to the data, whatever is in it.
//
// A document is loaded at two sizes, one sixteen times the other. Sixteen times the time is right; 256 times would be a
// cost that grows with the square. The bound lies between, far from both.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <numeric>
#include <random>

#include "tests/ser/load_helpers.h"
#include "tests/support/processor_seconds.h"

using namespace murv;
using namespace murv::tests;

namespace
{
constexpr unsigned int s_cuiFactor = 16;
constexpr double s_cdBound = 80;

double seconds4Load(const std::string& text, bool good)
{
    struct tSubject
    {
        CLoader4SER m_tLoader;
        CFields m_tTree;
    };
    return processorSeconds(
        3, [] { return std::make_unique<tSubject>(); },
        [&](const std::unique_ptr<tSubject>& subject) {
            EXPECT_EQ(good, subject->m_tLoader.loading(text, subject->m_tTree)) << subject->m_tLoader.getLastErrMsg();
        });
}

using tMake = std::function<std::string(unsigned int)>;

void expectLinear(unsigned int count, const tMake& make, bool good = true)
{
    const std::string small = make(count);
    const std::string large = make(count * s_cuiFactor);
    EXPECT_TRUE(costsLessThan(
        s_cdBound, [&] { return seconds4Load(small, good); }, [&] { return seconds4Load(large, good); }));
}

std::string joined(unsigned int count, const std::function<std::string(unsigned int)>& member)
{
    std::string text = "{";
    for (unsigned int i = 0; i < count; ++i)
        text += (i == 0 ? "" : ",") + member(i);
    return text + "}";
}

std::string id(unsigned int i)
{
    return "#" + std::to_string(i + 1) + " ";
}
std::string name(unsigned int i)
{
    return "\"n" + std::to_string(i) + "\"=";
}
double seconds4Byte(const std::string& text)
{
    return seconds4Load(text, true) / static_cast<double>(text.size());
}

TEST(Growth, documentsMadeToBeSlowCostLittleMoreThanOrdinaryOnes)
{
    const auto repeated = [](const std::string& text, unsigned int count) {
        std::string all;
        for (unsigned int i = 0; i < count; ++i)
            all += text;
        return all;
    };
    const std::string ordinary =
        "[" + repeated("{\"id\"=17,\"name\"=\"somebody\",\"amount\"=12.5,\"tags\"=[1,2,3]},", 20000) + "1]";
    const std::string chain = repeated("{#5,", 900) + repeated("},", 900);
    // Ten is the aim; a noisy machine is allowed for.
    const auto costsLittleMore = [&](const std::string& text) {
        return costsLessThan(
            40, [&] { return seconds4Byte(ordinary); }, [&] { return seconds4Byte(text); });
    };
    EXPECT_TRUE(costsLittleMore("{" + repeated("{#5},", 200000) + "1}"));
    EXPECT_TRUE(costsLittleMore("{\"a\"={#5},\"b\"={#5},\"a\"=1," + repeated(chain, 200) + "1}"));
    EXPECT_TRUE(costsLittleMore("{" + repeated(",", 400000) + "}"));
    // Containers with IDs that are read again in any order, each with a node of one same ID, which is asked for.
    const auto shuffled = [](unsigned int count, const std::string& body) {
        std::vector<unsigned int> order(count);
        std::iota(order.begin(), order.end(), 10);
        std::shuffle(order.begin(), order.end(), std::mt19937(1));
        std::string all;
        for (const unsigned int id : order)
            all += '#' + std::to_string(id) + body;
        return all;
    };
    EXPECT_TRUE(costsLittleMore("{" + shuffled(100000, "{},") + shuffled(100000, "{#7 1},") + "1}"));
    EXPECT_TRUE(costsLittleMore("{" + shuffled(100000, "{#7 1},") + shuffled(100000, "{0,#7 1},#7 2,") + "1}"));
    EXPECT_TRUE(costsLittleMore("{" + shuffled(100000, "{#7 1},") + shuffled(100000, "{},#7 2,") + "1}"));
}

}  // namespace

TEST(GrowthOfLoad, members)
{
    expectLinear(4000, [](unsigned int n) { return joined(n, [](unsigned int i) { return name(i) + "1"; }); });
    expectLinear(20000, [](unsigned int n) { return "[" + repeated("1,", n) + "1]"; });
    expectLinear(20000, [](unsigned int n) { return "[" + std::string(n, ',') + "]"; });
    expectLinear(20000, [](unsigned int n) { return "{" + std::string(n, ',') + "}"; });
}

TEST(GrowthOfLoad, smallContainers)
{
    expectLinear(5000, [](unsigned int n) { return "[" + repeated("[1],{\"a\"=2},", n) + "1]"; });
    expectLinear(5000, [](unsigned int n) { return "[" + repeated("[[[[[]]]]],", n) + "1]"; });
}

TEST(GrowthOfLoad, membersDeepDown)
{
    const std::string open = repeated("[", 990);
    const std::string close = repeated("]", 990);
    expectLinear(20000, [&](unsigned int n) { return open + repeated("1,", n) + "1" + close; });
    expectLinear(3000, [&](unsigned int n) { return open + repeated("[[[[1]]]],", n) + "1" + close; });
}

TEST(GrowthOfLoad, repeatedNames)
{
    expectLinear(4000, [](unsigned int n) { return joined(n, [](unsigned int) { return "\"a\"=1"; }); });
    expectLinear(4000, [](unsigned int n) { return joined(2 * n, [n](unsigned int i) { return name(i % n) + "1"; }); });
    expectLinear(4000, [](unsigned int n) {
        return joined(2 * n, [n](unsigned int i) { return name(i % n) + "{\"x\"=[1]}"; });
    });
}

TEST(GrowthOfLoad, namesAmongMembersWithoutName)
{
    expectLinear(4000, [](unsigned int n) {
        return "{#5 0," + repeated("0,", n) + joined(n, [](unsigned int i) { return "#5 " + name(i) + "1"; }).substr(1);
    });
}

TEST(GrowthOfLoad, ids)
{
    expectLinear(4000, [](unsigned int n) { return joined(n, [](unsigned int i) { return id(i) + "1"; }); });
    expectLinear(4000, [](unsigned int n) { return "[" + repeated("{#1 1,#2 2,#3 3},", n) + "1]"; });
}

TEST(GrowthOfLoad, repeatedIds)
{
    expectLinear(4000, [](unsigned int n) { return joined(n, [](unsigned int) { return "#1 1"; }); });
    expectLinear(4000, [](unsigned int n) { return joined(2 * n, [n](unsigned int i) { return id(i % n) + "1"; }); });
    expectLinear(4000, [](unsigned int n) {
        return "{" + joined(n, [](unsigned int) { return "{#1 1}"; }) + "," +
               joined(n, [](unsigned int) { return "#1 2"; }).substr(1);
    });
}

TEST(GrowthOfLoad, repeatedIdsOfContainers)
{
    expectLinear(2000,
                 [](unsigned int n) { return joined(2 * n, [n](unsigned int i) { return id(i % n) + "{\"x\"=1}"; }); });
    // With IDs inside, which go and come again, and others after them.
    expectLinear(1500, [](unsigned int n) {
        return joined(3 * n, [n](unsigned int i) { return id(i % n) + "{" + id(n + i % n) + "1}"; });
    });
    expectLinear(1500, [](unsigned int n) {
        const std::string many = joined(n, [](unsigned int i) { return id(i + 10) + "1"; });
        const std::string again = joined(n, [n](unsigned int) { return "#1 {#2 1}," + id(n + 9) + "2,#2 3"; });
        return "{#1 {}," + many.substr(1, many.size() - 2) + "," + again.substr(1);
    });
}

TEST(GrowthOfLoad, repeatedIdsOfManyEquals)
{
    // The same ID in many places, and its first holder destroyed again and again.
    expectLinear(1500, [](unsigned int n) {
        const std::string holders = joined(n, [](unsigned int i) { return name(i) + "{#1 1}"; });
        const std::string again = joined(n, [](unsigned int i) { return name(i) + "0,#1 2"; });
        return holders.substr(0, holders.size() - 1) + "," + again.substr(1);
    });
    expectLinear(1500, [](unsigned int n) {
        const std::string holders = joined(n, [](unsigned int i) { return name(i) + "{#1 1}"; });
        const std::string again = joined(n, [n](unsigned int i) { return name(n - 1 - i) + "{#1 3},#1 2"; });
        return holders.substr(0, holders.size() - 1) + "," + again.substr(1);
    });
}

TEST(GrowthOfLoad, repeatedIdsInBatches)
{
    expectLinear(800, [](unsigned int count) {
        return joined(count, [](unsigned int) { return "[{#1}" + repeated(",{#1}", 8) + "],#1 0"; });
    });
}

TEST(GrowthOfLoad, repeatedIdsDeepDown)
{
    const std::string open = repeated("{\"a\"=", 900);
    const std::string close = repeated("}", 900);
    expectLinear(3000, [&](unsigned int n) {
        const std::string again = joined(n, [](unsigned int) { return "#5 {#7 1},#7 2"; });
        return "{\"p\"=" + open + "{#5 1}" + close + ",\"q\"=" + open + "{#7 1}" + close + "," + again.substr(1);
    });
}

TEST(GrowthOfLoad, repeatedIdsAtManyDepths)
{
    // Containers hang on a path of 500 levels; each gets a node with one same ID, and they lose it from the first on.
    expectLinear(2, [](unsigned int width) {
        const unsigned int count = 500 * width;
        std::string comb;
        for (unsigned int i = 0; i < count; ++i)
            comb += (i % width == 0 ? "{" : "") + id(i + 10) + "{},";
        const std::string fill = joined(count, [=](unsigned int i) { return id(i * 7919 % count + 10) + "{#7 1}"; });
        const std::string kill = joined(count, [](unsigned int i) { return id(i + 10) + "{},#7 2"; });
        return "{" + comb + repeated("},", 500) + fill.substr(1, fill.size() - 2) + ",#7 2," + kill.substr(1);
    });
}

TEST(GrowthOfLoad, comments)
{
    expectLinear(200000, [](unsigned int n) { return "/*" + std::string(n, 'c') + "*/ 1"; });
    expectLinear(200000, [](unsigned int n) { return "/*" + std::string(n, '*') + "*/ 1"; });
    expectLinear(200000, [](unsigned int n) { return "/*" + std::string(n, '\r') + "*/ 1"; });
    expectLinear(20000, [](unsigned int n) { return repeated("//c\n", n) + "1"; });
    expectLinear(20000, [](unsigned int n) { return "1" + repeated("\n//c", n); });
    expectLinear(5000, [](unsigned int n) { return "[" + repeated("1, // c\n/*d*/", n) + "1]"; });
}

TEST(GrowthOfLoad, commentsOnOneLine)
{
    expectLinear(10000, [](unsigned int n) { return "[1" + repeated("/*c*/", n) + ",2]"; });
    expectLinear(10000, [](unsigned int n) { return "[1" + std::string(n * 5, ' ') + repeated("/*c*/", n) + ",2]"; });
    expectLinear(10000, [](unsigned int n) { return "[1 /*\n*/" + repeated("/*c*/", n) + ",2]"; });
    expectLinear(10000, [](unsigned int n) { return "{\"a\"" + repeated("/*c*/", n) + "}"; });
    expectLinear(5000, [](unsigned int n) { return "{" + repeated("\"a\"/*c*/,", n) + "1}"; });
}

TEST(GrowthOfLoad, strings)
{
    expectLinear(200000, [](unsigned int n) { return "\"" + std::string(n, 's') + "\""; });
    expectLinear(100000, [](unsigned int n) { return "\"" + repeated("\\n", n) + "\""; });
    expectLinear(50000, [](unsigned int n) { return "[" + repeated("\"\\n\",", n / 5) + "1]"; });
    expectLinear(
        200000, [](unsigned int n) { return "[\"" + std::string(n, '\\'); }, false);
    // Each escaped string a little longer than the one before.
    expectLinear(60, [](unsigned int n) {
        return joined(n, [](unsigned int i) { return "\"\\n" + std::string(i, 'x') + "\""; }) + std::string(n * n, ' ');
    });
}

TEST(GrowthOfLoad, blanks)
{
    expectLinear(200000, [](unsigned int n) { return std::string(n, ' ') + "1"; });
    expectLinear(200000, [](unsigned int n) { return "[1," + std::string(n, '\n') + "2]"; });
    expectLinear(200000, [](unsigned int n) { return "{\"a\"" + std::string(n, '\r') + "=1}"; });
    expectLinear(200000, [](unsigned int n) { return "{\"a\"" + std::string(n, ' ') + "}"; });
}

TEST(GrowthOfLoad, numbers)
{
    expectLinear(200000, [](unsigned int n) { return std::string(n, '7'); });
    expectLinear(200000, [](unsigned int n) { return "[0." + std::string(n, '3') + "]"; });
    expectLinear(200000, [](unsigned int n) { return "{1e" + std::string(n, '0') + "}"; });
    expectLinear(100000, [](unsigned int n) { return "#" + std::string(n, '0') + "1 5"; });
}

TEST(GrowthOfLoad, packetExpressions)
{
    expectLinear(3000, [](unsigned int n) { return "[" + repeated("(ACF4) 1,", n) + "1]"; });
    expectLinear(200000, [](unsigned int n) { return "[(ACF4 " + std::string(n, 'r') + ") 1]"; });
    expectLinear(
        200000, [](unsigned int n) { return "[(" + std::string(n, 'r'); }, false);
}

TEST(GrowthOfLoad, errorsAtTheEnd)
{
    expectLinear(
        20000, [](unsigned int n) { return "[" + repeated("1,\n", n) + "@"; }, false);
    expectLinear(
        20000, [](unsigned int n) { return "{" + repeated("\"a\"=1,\n", n) + "@"; }, false);
    expectLinear(
        50000, [](unsigned int n) { return repeated("[", 900) + "@" + repeated("1\n", n); }, false);
    expectLinear(
        50000, [](unsigned int n) { return repeated("[", 900) + "@" + repeated("]", n); }, false);
    expectLinear(
        50000, [](unsigned int n) { return repeated("[", 900) + "@" + std::string(n, '\0'); }, false);
    expectLinear(
        100000, [](unsigned int n) { return "[@" + std::string(n, '"'); }, false);
    expectLinear(
        100000, [](unsigned int n) { return "[@" + std::string(n, '/'); }, false);
    expectLinear(
        50000, [](unsigned int n) { return "[@" + repeated("/*", n); }, false);
}
