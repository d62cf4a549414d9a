// tests/core/field_threads_test.cpp - what several threads may do.
//
// One tree may be read from many threads, and distinct trees may be used at once.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "murv/fields.h"

namespace
{

using namespace murv;

constexpr int s_ciThreads = 4;

CFields sample()
{
    CFields tree;
    for (int i = 0; i < 200; ++i)
    {
        CFields& member = tree.addChildRef("name" + std::to_string(i), static_cast<unsigned int>(i + 1));
        member.addArrayAt(i);
        member.addArrayAt("text");
    }
    return tree;
}

template <typename tAction>
void inThreads(const tAction& action)
{
    std::vector<std::thread> threads;
    threads.reserve(s_ciThreads);
    for (int i = 0; i < s_ciThreads; ++i)
        threads.emplace_back(action, i);
    for (std::thread& thread : threads)
        thread.join();
}

TEST(Threads, oneTreeIsReadByMany)
{
    const CFields tree = sample();
    std::atomic<int> wrong{0};
    inThreads([&](int thread) {
        for (int i = thread; i < 200; ++i)
        {
            const std::string name = "name" + std::to_string(i);
            const CFields copy(tree[name]);
            wrong += copy[0].asSint32() == i && copy[1].asString() == "text" ? 0 : 1;
            wrong += tree.findID(static_cast<unsigned int>(i + 1)) == &tree[i] ? 0 : 1;
            wrong += tree["missing"].isNull() && &tree[999] == &CFields::nullRef ? 0 : 1;
            wrong += tree.getMemberCount() == 600 ? 0 : 1;
        }
        const CFields whole(tree);
        wrong += whole == tree && whole.compare(tree) == 0 ? 0 : 1;
        int seen = 0;
        for (const CFields& member : tree)
            seen += member.getChildCount() == 2 ? 1 : 0;
        wrong += seen == 200 ? 0 : 1;
    });
    EXPECT_EQ(0, wrong);
}

TEST(Threads, distinctTreesAreChangedAtOnce)
{
    std::atomic<int> wrong{0};
    inThreads([&](int thread) {
        for (int round = 0; round < 20; ++round)
        {
            CFields tree = sample();
            tree.addChildRef("own") = thread;
            tree["name7"].setName("seven");
            tree.removeChildAt("name8");
            wrong += tree["own"].asSint32() == thread && tree["seven"][0].asSint32() == 7 ? 0 : 1;
            wrong += tree.getChildCount() == 200 ? 0 : 1;
            CFields empty(DT_fields);
            empty.addChildRef("a");
            empty.removeChildAll();
            wrong += CFields(DT_array).emptyChild() && empty.emptyChild() ? 0 : 1;
        }
    });
    EXPECT_EQ(0, wrong);
}

TEST(Threads, aTreeMovesFromOneToAnother)
{
    CFields tree;
    std::thread maker([&tree] { tree = sample(); });
    maker.join();
    EXPECT_EQ(600u, tree.getMemberCount());
    std::thread user([tree = std::move(tree)]() mutable { tree.removeChildAll(); });
    user.join();
    EXPECT_TRUE(tree.isNull());  // NOLINT(bugprone-use-after-move)
}

}  // namespace
