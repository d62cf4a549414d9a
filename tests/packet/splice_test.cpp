// tests/packet/splice_test.cpp - several parts of a text replaced in one go.
#include "packet/splice.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace murv
{

namespace
{

using detail::tReplacement;

struct tPart
{
    std::size_t m_nOffset;
    std::size_t m_nOldLength;
    std::string m_strNew;
};

std::string spliced(std::string text, const std::vector<tPart>& parts)
{
    std::vector<tReplacement> replacements;
    std::string fresh;
    for (const tPart& part : parts)
    {
        replacements.push_back({part.m_nOffset, part.m_nOldLength, part.m_strNew.size()});
        fresh += part.m_strNew;
    }
    detail::splice(text, replacements, fresh);
    return text;
}

TEST(Splice, nothingToReplaceLeavesTheText)
{
    EXPECT_EQ(spliced("abc", {}), "abc");
    EXPECT_EQ(spliced("", {}), "");
}

TEST(Splice, partsOfTheSameLengthAreWrittenOver)
{
    EXPECT_EQ(spliced("a00b00c", {{1, 2, "12"}, {4, 2, "34"}}), "a12b34c");
}

TEST(Splice, whatFollowsALongerOrShorterPartMoves)
{
    EXPECT_EQ(spliced("a0b0c", {{1, 1, "123"}, {3, 1, "45"}}), "a123b45c");
    EXPECT_EQ(spliced("a000b0c", {{1, 3, ""}, {5, 1, "45"}}), "ab45c");
}

TEST(Splice, partsOfTheSameLengthBeforeAndAfterOthersAreReplacedToo)
{
    EXPECT_EQ(spliced("a0b0c0d", {{1, 1, "1"}, {3, 1, "22"}, {5, 1, "3"}}), "a1b22c3d");
}

TEST(Splice, partsMayTouchEachOtherAndBothEnds)
{
    EXPECT_EQ(spliced("0000", {{0, 1, "11"}, {1, 2, "2"}, {3, 1, "333"}}), "112333");
    EXPECT_EQ(spliced("", {{0, 0, "new"}}), "new");
}

TEST(Splice, anyReplacementsGiveWhatReplacingFromTheLastToTheFirstGives)
{
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round)
    {
        const std::string text(random() % 40, '.');
        std::vector<tPart> parts;
        for (std::size_t at = random() % 5; at < text.size(); at += random() % 5)
        {
            const std::size_t oldLength = random() % 3;
            if (oldLength > text.size() - at)
                break;
            parts.push_back({at, oldLength, std::string(random() % 4, static_cast<char>('a' + round % 26))});
            at += oldLength;
        }
        std::string expected = text;
        for (std::size_t i = parts.size(); i-- > 0;)
            expected.replace(parts[i].m_nOffset, parts[i].m_nOldLength, parts[i].m_strNew);
        EXPECT_EQ(spliced(text, parts), expected);
    }
}

}  // namespace

}  // namespace murv
