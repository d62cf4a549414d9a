// tests/ser/text_model_test.cpp - the loader against the rules, on random documents.
//
// Tree, names, IDs, comments, packet expressions, second values, offsets, success and every word of an error are
// compared with what a slow and literal reader makes of the same text.
#include <gtest/gtest.h>

#include "tests/ser/load_helpers.h"
#include "tests/ser/random_text.h"
#include "tests/ser/text_model.h"
#include "tests/support/same_tree.h"

using namespace murv;
using namespace murv::tests;

namespace
{

/// Loads the text by both readers into trees that were the same before.
testing::AssertionResult readAlike(std::string_view text, unsigned int flags, bool comments, CFields& tree,
                                   CFields& modelTree)
{
    const auto differs = [&](const std::string& how) {
        return testing::AssertionFailure() << how << "\nflags " << flags << " comments " << comments << "\n"
                                           << text << "\nloader " << show(tree) << "\nmodel  " << show(modelTree);
    };
    CTextModel model(text, flags, comments);
    const bool modelDone = model.load(modelTree);
    CLoader4SER loader(flags);
    const CExactText exact(text);
    bool done = false;
    try
    {
        done = loader.loadit(exact.begin(), static_cast<unsigned int>(exact.size()), tree, nullptr, comments);
    }
    catch (const CLogicError&)
    {
        return model.isTooDeep() ? testing::AssertionSuccess() : differs("unexpected exception");
    }
    if (model.isTooDeep())
        return differs("missing exception");
    if (done != modelDone)
        return differs(std::string("result; loader says ") + loader.getLastErrMsg() + "model says " + model.message());
    if (loader.getLastErrMsg() != model.message())
        return differs("message; loader says " + loader.getLastErrMsg() + "model says " + model.message());
    const std::vector<tErrorRange> ranges = loader.getErrorRanges();
    const std::vector<tErrorRange> modelRanges = model.ranges();
    if (ranges.size() != modelRanges.size())
        return differs("number of errors");
    for (std::size_t i = 0; i < ranges.size(); ++i)
    {
        if (ranges[i].m_uiStart != modelRanges[i].m_uiStart || ranges[i].m_uiEnd != modelRanges[i].m_uiEnd ||
            ranges[i].m_strMessage != modelRanges[i].m_strMessage)
            return differs("error range");
    }
    const std::string difference = tests::difference(tree, modelTree);
    return difference.empty() ? testing::AssertionSuccess() : differs("tree " + difference);
}

constexpr unsigned int s_cuiEveryFlag = 0x7F;

unsigned int randomFlags(CRandomText& random)
{
    return random.below(3) != 0 ? s_cuiUsual | (random.below(2) != 0 ? LCBC_NUMBER_NAME : 0u)
                                : random.below(s_cuiEveryFlag + 1);
}

}  // namespace

TEST(TextModel, randomDocumentsAreReadByTheRules)
{
    unsigned int good = 0;
    for (unsigned int seed = 1; seed <= 20000; ++seed)
    {
        CRandomText random(seed);
        const std::string text = random.document();
        CFields tree;
        CFields modelTree;
        ASSERT_TRUE(readAlike(text, randomFlags(random), random.below(5) != 0, tree, modelTree)) << "seed " << seed;
        good += tree.isNull() ? 0 : 1;
    }
    EXPECT_GT(good, 10000u);
}

TEST(TextModel, mutatedDocumentsAreReadByTheRules)
{
    for (unsigned int seed = 1; seed <= 40000; ++seed)
    {
        CRandomText random(seed);
        const std::string text = random.mutated(random.document());
        CFields tree;
        CFields modelTree;
        ASSERT_TRUE(readAlike(text, randomFlags(random), random.below(5) != 0, tree, modelTree)) << "seed " << seed;
    }
}

TEST(TextModel, aTargetThatHoldsSomethingIsReadIntoByTheRules)
{
    for (unsigned int seed = 1; seed <= 5000; ++seed)
    {
        CRandomText random(seed);
        CFields tree;
        CFields modelTree;
        for (int load = 0; load < 3; ++load)
        {
            const std::string text = random.below(3) == 0 ? random.mutated(random.document()) : random.document();
            ASSERT_TRUE(readAlike(text, s_cuiUsual, true, tree, modelTree)) << "seed " << seed << " load " << load;
        }
    }
}

// Few names, many IDs, containers read again at any depth: what the search by ID must get right.
TEST(TextModel, idsThatRepeatAtAnyDepthAreFoundByTheRules)
{
    for (unsigned int seed = 1; seed <= 20000; ++seed)
    {
        CRandomText random(seed);
        std::string text = "{";
        unsigned int open = 1;
        const unsigned int steps = 10 + random.below(60);
        const unsigned int ids = 2 + random.below(9);
        bool first = true;
        for (unsigned int step = 0; step < steps; ++step)
        {
            text += first ? "" : ",";
            first = false;
            if (random.below(4) != 0)
                text += "#" + std::to_string(1 + random.below(ids)) + " ";
            if (random.below(4) == 0)
                text += "\"" + std::string(1, static_cast<char>('a' + random.below(4))) + "\"=";
            const unsigned int kind = random.below(10);
            if (kind < 4 && open < 12)
            {
                text += "{";
                ++open;
                first = true;
            }
            else
                text += kind == 9 ? "[{#1 1},{#2 2}]" : std::to_string(step);
            while (!first && open > 1 && random.below(3) == 0)
            {
                text += "}";
                --open;
            }
        }
        text += repeated("}", open);
        CFields tree;
        CFields modelTree;
        ASSERT_TRUE(readAlike(text, s_cuiUsual, true, tree, modelTree)) << "seed " << seed;
    }
}
