// tests/ser/round_trip_test.cpp - what the text savers write, the text loader reads back.
//
// What text cannot tell apart is computed, not left out: the expected tree of each random tree is the one with whole
// numbers typed by their digits, an empty container with its one null member, and null for what is written as nothing.
#include <gtest/gtest.h>

#include "murv/loader.h"
#include "murv/saver.h"
#include "tests/support/random_tree.h"
#include "tests/support/same_tree.h"
#include "tests/support/text_ways.h"

using namespace murv;
using namespace murv::tests;

namespace
{

constexpr unsigned int s_cuiParts = SP_ids | SP_comments | SP_expressions | SP_second;

/// Null is written as a word, so that it can be followed by a comment of its own.
std::string save(const CFields& tree, E_TextWay way, unsigned int more)
{
    return text4Way(tree, way, SCBC_SECOND_VALUE | SCBC_NULL_WORD | more);
}

bool load(const std::string& text, CFields& tree, std::string& message)
{
    // Names and IDs that repeat are members of their own.
    CLoader4SER loader(LCBC_COMMENT | LCBC_EMPTY_NULL | LCBC_DUPLICATE);
    const bool done = loader.loading(text, tree);
    message = loader.getLastErrMsg();
    return done;
}

void expectRoundTrip(const CFields& tree, E_TextWay way, unsigned int more)
{
    const std::string text = save(tree, way, more);
    CFields back;
    std::string message;
    ASSERT_TRUE(load(text, back, message)) << message << text;
    ASSERT_EQ(difference(treeAsRead(tree, way != TW_compact), back, s_cuiParts), "") << text;
    // From now on nothing changes any more.
    const std::string again = save(back, way, more);
    CFields second;
    ASSERT_TRUE(load(again, second, message)) << message << again;
    ASSERT_EQ(difference(treeAsRead(back, way != TW_compact), second, s_cuiParts), "") << again;
    ASSERT_EQ(save(second, way, more), save(second, way, more));
    ASSERT_EQ(difference(back, second, s_cuiParts), "") << again;
    ASSERT_EQ(save(second, way, more), again);
}

/// On one line no blank parts an ID from what follows: a number there needs a name between them.
void nameNumbers(CFields& node)
{
    if (node.getID() != 0 && node.getNameLen() == 0 && node.isNumeric(writtenSlot(node)))
        node.setName("number");
    for (CFields& member : node)
        nameNumbers(member);
}

}  // namespace

TEST(RoundTrip, ofRandomTreesAsIndentedText)
{
    for (unsigned int seed = 1; seed <= 10000; ++seed)
    {
        SCOPED_TRACE(seed);
        const unsigned int more = seed % 2 == 0 ? static_cast<unsigned int>(SCBC_ONE_LINE_ARRAY) : 0u;
        ASSERT_NO_FATAL_FAILURE(expectRoundTrip(CRandomTree(seed).tree(), TW_indented, more));
    }
}

TEST(RoundTrip, ofRandomTreesAsTextOnOneLine)
{
    for (unsigned int seed = 1; seed <= 10000; ++seed)
    {
        SCOPED_TRACE(seed);
        CFields tree = CRandomTree(seed).tree();
        nameNumbers(tree);
        ASSERT_NO_FATAL_FAILURE(expectRoundTrip(tree, TW_compact, 0));
    }
}

TEST(RoundTrip, ofRandomTreesThroughAStream)
{
    for (unsigned int seed = 1; seed <= 3000; ++seed)
    {
        SCOPED_TRACE(seed);
        ASSERT_NO_FATAL_FAILURE(expectRoundTrip(CRandomTree(seed).tree(), TW_stream, SCBC_FINAL_NEWLINE));
    }
}

TEST(RoundTrip, ofNamesAndStringsOfEveryByte)
{
    CFields tree(DT_fields);
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
    {
        const std::string one(1, static_cast<char>(byte));
        tree.addChildRef("x").setValue(1);
        tree.addChildRef(one + "n").setValue(one);
        all += one;
    }
    tree.addChildRef(all.substr(1)).setValue(all);
    for (const E_TextWay way : s_ceTextWays)
        ASSERT_NO_FATAL_FAILURE(expectRoundTrip(tree, way, 0));
}

TEST(RoundTrip, ofDeepTrees)
{
    CFields tree(1);
    for (int level = 1; level < 1000; ++level)
    {
        CFields outer(level % 2 == 0 ? DT_array : DT_fields);
        outer.addChildRef("", 0, true).swapValue(tree, false);
        tree.swapValue(outer, false);
    }
    for (const E_TextWay way : {TW_indented, TW_compact})
        ASSERT_NO_FATAL_FAILURE(expectRoundTrip(tree, way, 0));
}
