// tests/core/member_cursor_test.cpp - stepping through the members of a container.
#include "core/member_cursor.h"

#include <gtest/gtest.h>

#include "murv/fields.h"

namespace murv
{

namespace
{

using detail::CMemberCursor;
using detail::tFieldAccess;

CFields numbers(unsigned int count)
{
    CFields array(DT_array);
    for (unsigned int i = 0; i < count; ++i)
        array.addArrayAt(CFields(static_cast<int>(i)));
    return array;
}

CMemberCursor cursorOf(const CFields& container)
{
    return CMemberCursor(tFieldAccess::members(container));
}

TEST(MemberCursor, takesAllMembersInOrderHoweverManyRunsTheyLieIn)
{
    for (const unsigned int count : {1U, 3U, 4U, 5U, 12U, 13U, 63U, 64U, 1000U})
    {
        const CFields grown = numbers(count);  // appended one by one: several runs
        const CFields copied(grown);           // one run
        for (const CFields* const container : {&grown, &copied})
        {
            CMemberCursor cursor = cursorOf(*container);
            for (unsigned int i = 0; i < count; ++i)
            {
                ASSERT_FALSE(cursor.atEnd()) << count;
                ASSERT_EQ(cursor.take(), &container->getChildAt(i)) << count;
                ASSERT_EQ(&cursor.taken(), &container->getChildAt(i)) << count;
            }
            EXPECT_TRUE(cursor.atEnd()) << count;
            EXPECT_EQ(cursor.take(), nullptr) << count;
        }
    }
}

TEST(MemberCursor, isAtTheEndOfNullAndOfEmptyContainers)
{
    CMemberCursor none;
    CMemberCursor null(nullptr);
    CMemberCursor empty = cursorOf(CFields(DT_fields));
    for (CMemberCursor* const cursor : {&none, &null, &empty})
    {
        EXPECT_TRUE(cursor->atEnd());
        EXPECT_FALSE(cursor->hasNext());
        EXPECT_EQ(cursor->take(), nullptr);
        EXPECT_EQ(cursor->ahead(0), nullptr);
    }
}

TEST(MemberCursor, lookingAtTheNextMemberDoesNotStep)
{
    const CFields array = numbers(2);
    CMemberCursor cursor = cursorOf(array);
    ASSERT_TRUE(cursor.hasNext());
    EXPECT_EQ(&cursor.next(), &array.getChildAt(0));
    ASSERT_TRUE(cursor.hasNext());
    EXPECT_EQ(&cursor.next(), &array.getChildAt(0));
    EXPECT_EQ(cursor.take(), &array.getChildAt(0));
    ASSERT_TRUE(cursor.hasNext());
    EXPECT_EQ(&cursor.next(), &array.getChildAt(1));
}

TEST(MemberCursor, skippingStepsThroughAllRuns)
{
    const CFields grown = numbers(100);
    CMemberCursor cursor = cursorOf(grown);
    for (unsigned int i = 0; i < 100; ++i, cursor.skip())
    {
        ASSERT_TRUE(cursor.hasNext()) << i;
        ASSERT_EQ(&cursor.next(), &grown.getChildAt(i)) << i;
    }
    EXPECT_FALSE(cursor.hasNext());
    EXPECT_TRUE(cursor.atEnd());
}

TEST(MemberCursor, askingForTheEndKeepsTheTakenMember)
{
    const CFields grown = numbers(100);
    CMemberCursor cursor = cursorOf(grown);
    for (unsigned int i = 0; i < 100; ++i)
    {
        cursor.take();
        EXPECT_EQ(cursor.atEnd(), i == 99);
        ASSERT_EQ(&cursor.taken(), &grown.getChildAt(i)) << i;
    }
}

TEST(MemberCursor, looksAheadWithinARunOnly)
{
    const CFields array = numbers(4);
    CMemberCursor cursor = cursorOf(array);
    cursor.take();
    EXPECT_EQ(cursor.ahead(0), &array.getChildAt(1));
    EXPECT_EQ(cursor.ahead(2), &array.getChildAt(3));
    EXPECT_EQ(cursor.ahead(3), nullptr);
}

TEST(MemberCursor, stoppingLeavesOutTheRest)
{
    const CFields array = numbers(100);
    CMemberCursor cursor = cursorOf(array);
    cursor.take();
    cursor.stop();
    EXPECT_TRUE(cursor.atEnd());
    EXPECT_EQ(cursor.take(), nullptr);
}

TEST(MemberCursor, aCopyStepsOnItsOwn)
{
    const CFields array = numbers(3);
    CMemberCursor cursor = cursorOf(array);
    cursor.take();
    CMemberCursor copy = cursor;
    copy.take();
    EXPECT_EQ(cursor.take(), &array.getChildAt(1));
    EXPECT_EQ(copy.take(), &array.getChildAt(2));
}

}  // namespace

}  // namespace murv
