// tests/everyday/edit_test.cpp - changes to many members, merge patches, differences, comparison, exchange, hashes.
#include "murv/edit.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <string>
#include <unordered_set>
#include <utility>

#include "tests/everyday/everyday_helpers.h"
#include "tests/support/failing_malloc.h"
#include "tests/support/random_tree.h"
#include "tests/support/same_tree.h"
#include "tests/support/thrown.h"

namespace murv::tests
{

namespace
{
std::string merged(const std::string& target, const std::string& patch)
{
    CFields tree = load(target);
    merge(tree, load(patch));
    return textOf(tree);
}

std::string differencesOf(const CFields& a, const CFields& b, unsigned int options = DF_values)
{
    std::string all;
    for (const tDifference& one : diff(a, b, options))
    {
        all += one.path() + ":";
        all += one.m_pOld == nullptr ? "-" : one.m_pOld->isField() || one.m_pOld->isArray() ? "c" : "0";
        all += ">";
        all += one.m_pNew == nullptr ? "- " : one.m_pNew->isField() || one.m_pNew->isArray() ? "c " : "0 ";
    }
    return all;
}

std::string differences(const std::string& a, const std::string& b)
{
    const CFields before = load(a);
    const CFields after = load(b);
    return differencesOf(before, after);
}

CFields manyMembers(int count)
{
    CFields tree;
    for (int i = 0; i < count; ++i)
        tree.addChildRef("n" + std::to_string(count - i)) = i;
    return tree;
}
}  // namespace

TEST(InsertAt, putsMembersBeforeOthers)
{
    CFields list = load("[1, 2]");
    EXPECT_EQ(insertAt(list, 0, "first"), CFields("first"));
    insertAt(list, 3, "last");
    insertAt(list, 2, list);
    EXPECT_EQ(textOf(list), R"(["first",1,["first",1,2,"last"],2,"last"])");
    CFields set = load(R"({ "a" = 1, #5 "b" = 2 })");
    insertAt(set, 1, true, "x");
    EXPECT_EQ(textOf(set), R"({"a"=1,"x"=true,#5"b"=2})");
    CFields fresh;
    insertAt(fresh, 0, 1);
    EXPECT_EQ(textOf(fresh), "[1]");
}

TEST(InsertAt, refusesWithNothingChanged)
{
    CFields list = load("[1]");
    CFields set = load("{\"a\"=1}");
    CFields number(5);
    EXPECT_EQ(thrown([&] { insertAt(list, 2, 1); }), "Cannot insert a member: the index is after the end");
    EXPECT_EQ(thrown([&] { insertAt(list, 0, 1, "x"); }), "Cannot insert a member: an element has no name");
    EXPECT_EQ(thrown([&] { insertAt(set, 0, 1); }), "Cannot insert a member: a name has 1 to 255 bytes");
    EXPECT_EQ(thrown([&] { insertAt(number, 0, 1); }),
              "Cannot insert a member: the node is neither field set nor array");
    EXPECT_EQ(textOf(list) + textOf(set) + textOf(number), "[1]{\"a\"=1}5");
}

TEST(InsertAt, withoutMemoryNothingChanges)
{
    if (!CFailingMalloc::isMallocReached() || !CFailingMalloc::isNewReached())
        GTEST_SKIP();
    CFields tree = manyMembers(200);
    const CFields before = tree;
    bool isDone = false;
    for (long failAt = 1; !isDone; ++failAt)
    {
        CFailingMalloc failing(failAt);
        try
        {
            insertAt(tree, 7, 1, "a name that is longer than a node has room for");
            isDone = true;
        }
        catch (const std::exception&)
        {
            const CNoFailure guard;
            ASSERT_EQ(difference(tree, before), "") << failAt;
        }
    }
    EXPECT_EQ(tree.getChildCount(), 201U);
    EXPECT_EQ(tree.getChildIdx4Name("a name that is longer than a node has room for"), 7);
}

TEST(EraseIf, removesMembersThatThePredicateNames)
{
    CFields tree = load(R"({ "a" = 1, "b" = { "c" = 1 }, #4 "d" = 1, "e" = 2 })");
    EXPECT_EQ(eraseIf(tree, [](const CFields& member) { return member == CFields(1); }), 2U);
    EXPECT_EQ(textOf(tree), R"({"b"={"c"=1},"e"=2})");
    EXPECT_EQ(eraseIf(tree, [](const CFields&) { return false; }), 0U);
    EXPECT_EQ(eraseIf(tree, [](const CFields&) { return true; }), 2U);
    EXPECT_EQ(textOf(tree), "{}");
    CFields number(1);
    EXPECT_EQ(eraseIf(number, [](const CFields&) { return true; }), 0U);
    EXPECT_EQ(number, CFields(1));
}

TEST(EraseIf, keepsLookUpsOfLargeFieldSetsRight)
{
    CFields tree = manyMembers(1000);
    EXPECT_EQ(eraseIf(tree, [](const CFields& member) { return member.asSint32() % 2 == 0; }), 500U);
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(tree.isValidChild("n" + std::to_string(1000 - i)), i % 2 != 0);
    tree.addChildRef("n1000") = 5;
    EXPECT_EQ(tree.getChildIdx4Name("n1000"), 500);
}

TEST(SortMembers, sortsByNameAndKeepsAllElse)
{
    CFields tree = load(R"({ "b" = 1, #3 "a" = [{ "d" = 1, "c" = 2 }, 1], "b" = 0, "B" = 5 })");
    sortMembers(tree);
    EXPECT_EQ(textOf(tree), R"({"B"=5,#3"a"=[{"d"=1,"c"=2},1],"b"=1,"b"=0})");
    sortMembers(tree, true);
    EXPECT_EQ(textOf(tree), R"({"B"=5,#3"a"=[{"c"=2,"d"=1},1],"b"=1,"b"=0})");
    CFields large = manyMembers(500);
    sortMembers(large);
    EXPECT_STREQ(large[0].getName(), "n1");
    EXPECT_STREQ(large[2].getName(), "n100");
    EXPECT_EQ(large["n77"], CFields(500 - 77));
}

TEST(SortMembers, sortsByAnOrderOfOnesOwn)
{
    CFields list = load("[3, 1, 2]");
    sortMembers(list, [](const CFields& a, const CFields& b) { return a > b; });
    EXPECT_EQ(textOf(list), "[3,2,1]");
}

TEST(Merge, doesWhatRfc7386Says)
{
    const std::pair<std::pair<const char*, const char*>, const char*> cases[] = {
        {{R"({"a"="b"})", R"({"a"="c"})"}, R"({"a"="c"})"},
        {{R"({"a"="b"})", R"({"b"="c"})"}, R"({"a"="b","b"="c"})"},
        {{R"({"a"="b"})", R"({"a"=null})"}, "{}"},
        {{R"({"a"="b","b"="c"})", R"({"a"=null})"}, R"({"b"="c"})"},
        {{R"({"a"=["b"]})", R"({"a"="c"})"}, R"({"a"="c"})"},
        {{R"({"a"="c"})", R"({"a"=["b"]})"}, R"({"a"=["b"]})"},
        {{R"({"a"={"b"="c"}})", R"({"a"={"b"="d","c"=null}})"}, R"({"a"={"b"="d"}})"},
        {{R"({"a"=[{"b"="c"}]})", R"({"a"=[1]})"}, R"({"a"=[1]})"},
        {{R"(["a","b"])", R"(["c","d"])"}, R"(["c","d"])"},
        {{R"({"a"="b"})", R"(["c"])"}, R"(["c"])"},
        {{R"({"a"="foo"})", "null"}, "null"},
        {{R"({"a"="foo"})", R"("bar")"}, R"("bar")"},
        {{R"({"e"=null})", R"({"a"=1})"}, R"({"e"=null,"a"=1})"},
        {{"[1,2]", R"({"a"="b","c"=null})"}, R"({"a"="b"})"},
        {{"{}", R"({"a"={"bb"={"ccc"=null}}})"}, R"({"a"={"bb"={}}})"},
    };
    for (const auto& [trees, result] : cases)
        EXPECT_EQ(merged(trees.first, trees.second), result) << trees.first << " " << trees.second;
}

TEST(Merge, keepsIdsOfTheTargetAndTakesThoseOfNewMembers)
{
    EXPECT_EQ(merged(R"({ #1 "a" = 1, "b" = 2, "b" = 3 })", R"({ #2 "a" = 5, #3 "c" = 6, "b" = null })"),
              R"({#1"a"=5,#3"c"=6})");
}

TEST(Merge, refusesMembersWithoutNameWithNothingChanged)
{
    CFields tree = load(R"({"a"=1})");
    EXPECT_EQ(thrown([&] { merge(tree, load(R"({"a"=2,"b"={""=1}})")); }),
              "Cannot merge: the member b[0] of the patch has no name");
    EXPECT_EQ(textOf(tree), R"({"a"=1})");
}

TEST(Merge, thePatchMayLieInTheTarget)
{
    CFields tree = load(R"({"a"=1,"b"={"a"={"x"=1},"b"=null}})");
    merge(tree, tree["b"]);
    EXPECT_EQ(textOf(tree), R"({"a"={"x"=1}})");
    merge(tree, tree);
    EXPECT_EQ(textOf(tree), R"({"a"={"x"=1}})");
    merge(tree["a"], tree);
    EXPECT_EQ(textOf(tree), R"({"a"={"x"=1,"a"={"x"=1}}})");
}

TEST(Merge, goesToAnyDepth)
{
    CFields patch;
    CFields* node = &patch;
    for (unsigned int level = 0; level < 200000; ++level)
        node = &node->addChildRef("a");
    *node = 1;
    CFields target;
    merge(target, patch);
    EXPECT_TRUE(sameTree(target, patch));
    merge(target, patch);
    EXPECT_TRUE(sameTree(target, patch));
}

TEST(Diff, namesWhatChangedCameAndWent)
{
    EXPECT_EQ(differences(R"({"a"=1,"b"=[1,2,3],"c"={"d"=1},"e"=5})", R"({"a"=2,"b"=[1,4],"c"={"f"=1},"e"=5,"g"=[]})"),
              "a:0>0 b[1]:0>0 b[2]:0>- c.d:0>- c.f:->0 g:->c ");
    EXPECT_EQ(differences("[1]", "[1,[2]]"), "[1]:->c ");
    EXPECT_EQ(differences("1", "2"), ".:0>0 ");
    EXPECT_EQ(differences("{}", "[]"), ".:c>c ");
    EXPECT_EQ(differences(R"({"a"={"b"=1}})", R"({"a"=5})"), "a:c>0 ");
}

TEST(Diff, orderOfMembersDoesNotCount)
{
    EXPECT_EQ(differences(R"({"a"=1,"b"={"x"=1,"y"=2}})", R"({"b"={"y"=2,"x"=1},"a"=1})"), "");
    EXPECT_EQ(differences(R"({"a"=1,"a"=2,"b"=3})", R"({"b"=3,"a"=1,"a"=4,"a"=5})"), "[1]:0>0 [3]:->0 ");
}

TEST(Diff, typesCountAndNanIsEqualToItself)
{
    CFields a = array({1, 1U, 1.0, std::numeric_limits<double>::quiet_NaN(), ""});
    CFields b = array({1U, 1U, 1, std::numeric_limits<double>::quiet_NaN(), ""});
    EXPECT_EQ(differencesOf(a, b), "[0]:0>0 [2]:0>0 ");
    EXPECT_EQ(differencesOf(a, a), "");
}

TEST(Diff, whatBelongsToNodesCountsWhenAsked)
{
    const CFields a = load("#1 \"r\" = { /*a*/ \"a\" = [1, 2 /*x*/], #3 \"b\" = (ACF2) 5, \"c\" = 0 }");
    const CFields b = load("#2 \"s\" = { \"a\" = [1, 2 /*y*/], #4 \"b\" = (ACF3) 5, \"c\" = 1 }");
    EXPECT_EQ(differencesOf(a, b), "c:0>0 ");
    EXPECT_EQ(differencesOf(a, b, DF_heads), ".:c>c b:0>0 c:0>0 ");
    EXPECT_EQ(differencesOf(a, b, DF_comments), "a:c>c a[1]:0>0 c:0>0 ");
    EXPECT_EQ(differencesOf(a, b, DF_expressions), "b:0>0 c:0>0 ");
    EXPECT_EQ(differencesOf(a, b, DF_all), ".:c>c a:c>c a[1]:0>0 b:0>0 c:0>0 ");
    EXPECT_EQ(differencesOf(a, a, DF_all), "");
    CFields named = array({1});
    named[0].setName("n");
    EXPECT_EQ(differencesOf(named, array({1}), DF_heads), "[0]:0>0 ");
}

TEST(Diff, ofDeepTreesCostsLinearSpace)
{
    const auto deep = [](int value) {
        CFields tree;
        CFields* node = &tree;
        for (unsigned int level = 0; level < 100000; ++level)
        {
            node->addChildRef("v") = value;
            node = &node->addChildRef("n");
        }
        return tree;
    };
    const CFields a = deep(1);
    const CFields b = deep(2);
    const std::vector<tDifference> found = diff(a, b);
    ASSERT_EQ(found.size(), 100000U);
    EXPECT_EQ(found[2].path(), "n.n.v");
    EXPECT_EQ(found.back().path().size(), 2U * 99999 + 1);
}

TEST(SameTree, looksAtNamesIdsAndWhatIsAskedFor)
{
    const CFields tree = load("{ // c\n #1 \"a\" = (ANF4) 1, \"b\" = [1.5, \"x\"] }");
    const auto isSame = [&](auto&& change, unsigned int options) {
        CFields other = tree;
        change(other);
        return sameTree(tree, other, options);
    };
    EXPECT_TRUE(isSame([](CFields&) {}, ST_all));
    EXPECT_FALSE(isSame([](CFields& t) { t["a"].setName("x"); }, ST_values));
    EXPECT_FALSE(isSame([](CFields& t) { t["a"].setID(2); }, ST_values));
    EXPECT_FALSE(isSame([](CFields& t) { t["b"][0] = 2.5; }, ST_values));
    EXPECT_FALSE(isSame([](CFields& t) { t["b"].addArrayAt(1); }, ST_values));
    EXPECT_FALSE(isSame([](CFields& t) { t["a"] = 1U; }, ST_values));
    const auto comment = [](CFields& t) { t["a"].setComment("// d", CP_before); };
    EXPECT_TRUE(isSame(comment, ST_expressions));
    EXPECT_FALSE(isSame(comment, ST_comments));
    const auto expression = [](CFields& t) { t["a"].pkt_SetExp(CFields::nullPktExp); };
    EXPECT_TRUE(isSame(expression, ST_comments));
    EXPECT_FALSE(isSame(expression, ST_expressions));
    const auto second = [](CFields& t) { t["a"].setVK(VK_fix); };
    EXPECT_TRUE(isSame(second, ST_comments));
    EXPECT_FALSE(isSame(second, ST_expressions));
}

TEST(SameTree, copiesOfRandomTreesAreTheSame)
{
    for (unsigned int seed = 0; seed < 40; ++seed)
    {
        const CFields tree = CRandomTree(seed).tree();
        const CFields copy = tree;
        EXPECT_TRUE(sameTree(tree, copy, ST_all)) << seed;
        EXPECT_TRUE(diff(tree, copy).empty()) << seed;
        EXPECT_EQ(sameTree(tree, CRandomTree(seed + 100).tree()), false) << seed;
    }
}

TEST(Swap, exchangesNodesWithAllTheyHave)
{
    CFields tree = load(R"({ #1 "a" = [1], "b" = 2 })");
    swap(tree[0], tree[1]);
    EXPECT_EQ(textOf(tree), R"({"b"=2,#1"a"=[1]})");
    CFields other(5);
    swap(tree, other);
    EXPECT_EQ(textOf(other), R"({"b"=2,#1"a"=[1]})");
    EXPECT_EQ(tree, CFields(5));
    swap(tree, tree);
    EXPECT_EQ(tree, CFields(5));
    EXPECT_EQ(thrown([&] { swap(other, other[1]); }), "Cannot exchange a node with one below it");
    EXPECT_EQ(thrown([&] { swap(other[1], other); }), "Cannot exchange a node with one below it");
    CFields large = manyMembers(100);
    swap(large[3], large[90]);
    EXPECT_EQ(large.getChildIdx4Name("n97"), 90);
    EXPECT_EQ(large.getChildIdx4Name("n10"), 3);
}

TEST(Hash, equalTreesHaveEqualHashes)
{
    const std::hash<CFields> hash;
    EXPECT_EQ(hash(load(R"({"a"=1})")), hash(load(R"({#5"b"=1})")));
    EXPECT_EQ(hash(CFields(0.0)), hash(CFields(-0.0)));
    std::unordered_set<std::size_t> seen;
    for (const char* text : {"1", "2", "01", "1.5", "true", "null", "\"1\"", "[]", "{}", "[1]", "[1,2]", "[[1],2]",
                             "[[1,2]]", "[2,1]", "\"\"", "false"})
        EXPECT_TRUE(seen.insert(hash(load(text))).second) << text;
    std::unordered_set<CFields> trees = {load("[1]"), load("[1]"), load("[2]")};
    EXPECT_EQ(trees.size(), 2U);
    EXPECT_NE(hash(deepTree(1000000)), hash(deepTree(999999)));
}

}  // namespace murv::tests
