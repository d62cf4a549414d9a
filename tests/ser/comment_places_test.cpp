// tests/ser/comment_places_test.cpp - every comment of a document is found in its tree, in order.
//
// The notation has no place for three kinds: one on the line of a value that is followed by another one there, one of a
// member that is read again, and one after text that follows the root. The first and the last are allowed for here, the
// second has tests of its own.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "murv/saver.h"
#include "tests/ser/load_helpers.h"
#include "tests/ser/random_text.h"
#include "tests/support/same_tree.h"

using namespace murv;
using namespace murv::tests;

namespace
{

bool hasLineBreak(std::string_view text)
{
    return text.find_first_of("\r\n") != text.npos;
}

/// Where the comment that begins at `begin` ends, its line end included.
std::size_t endOfComment(std::string_view text, std::size_t begin)
{
    if (text[begin + 1] == '*')
        return text.find("*/", begin + 2) + 2;
    std::size_t end = std::min(text.find_first_of("\r\n", begin), text.size());
    if (text.substr(end, 2) == "\r\n")
        ++end;
    return std::min(end + 1, text.size());
}

/// The comment as a tree holds it: without the end of its line, line ends inside as line feeds.
std::string normal(std::string_view comment)
{
    std::string text;
    for (std::size_t i = 0; i < comment.size(); ++i)
    {
        if (comment.substr(i, 2) != "\r\n")
            text += comment[i] == '\r' ? '\n' : comment[i];
    }
    if (text.back() == '\n')
        text.pop_back();
    return text;
}

struct tComment
{
    std::string m_strText;
    std::size_t m_nBegin;
    std::size_t m_nEnd;
};

/// The comments of a document that can be loaded.
std::vector<tComment> commentsOf(std::string_view text)
{
    std::vector<tComment> all;
    for (std::size_t at = 0; at < text.size(); ++at)
    {
        if (text[at] == '"')
        {
            for (++at; text[at] != '"'; ++at)
                at += text[at] == '\\' ? 1 : 0;
        }
        else if (text[at] == '(')
            at = text.find(')', at);
        else if (text[at] == '/')
        {
            const std::size_t end = endOfComment(text, at);
            all.push_back({normal(text.substr(at, end - at)), at, end});
            at = end - 1;
        }
    }
    return all;
}

/// The text without what follows the root and is ignored.
std::string_view readPart(std::string_view text, const CFields& tree)
{
    auto end = static_cast<std::size_t>(tree.getOffsetEnd());
    for (;;)
    {
        end = text.find_first_not_of(" \t\r\n", end);
        if (end == text.npos || text[end] != '/')
            return text.substr(0, end);
        end = endOfComment(text, end);
    }
}

/// The comments of a tree: those on the lines of values, by the ends of the values, and all others, by the begins.
struct tPlaced
{
    std::vector<std::pair<std::string, const CFields*>> m_vTrailing;
    std::vector<std::string> m_vOther;
};

void collectAll(const CFields& node, tPlaced& placed)
{
    std::string joined;
    for (const tComment& comment : commentsOf(node.getCommentCopy(CP_before)))
    {
        placed.m_vOther.push_back(comment.m_strText);
        joined += (joined.empty() ? "" : "\n") + comment.m_strText;
    }
    EXPECT_EQ(node.getCommentCopy(CP_before), joined);
    for (const CFields& member : node)
        collectAll(member, placed);
    for (const tComment& comment : commentsOf(node.getCommentCopy(CP_trailing)))
        placed.m_vTrailing.emplace_back(comment.m_strText, &node);
    for (const tComment& comment : commentsOf(node.getCommentCopy(CP_after)))
        placed.m_vOther.push_back(comment.m_strText);
}

/// Whether both comments stand on the line on which the value of `node` ended.
bool areOnItsLine(std::string_view text, const CFields& node, const tComment& first, const tComment& second)
{
    const auto end = static_cast<std::size_t>(node.getOffsetEnd());
    return end <= first.m_nBegin && !hasLineBreak(text.substr(end, second.m_nBegin - end));
}

/// How many comments gave way to another one on the line of a value; -1 when one is lost for no reason or stands out
/// of order.
int findReplaced(std::string_view text, const CFields& tree)
{
    tPlaced placed;
    collectAll(tree, placed);
    auto trailing = placed.m_vTrailing.begin();
    auto other = placed.m_vOther.begin();
    std::vector<tComment> missing;
    int replaced = 0;
    for (const tComment& comment : commentsOf(readPart(text, tree)))
    {
        if (other != placed.m_vOther.end() && *other == comment.m_strText)
        {
            ++other;
            continue;
        }
        if (trailing == placed.m_vTrailing.end() || trailing->first != comment.m_strText)
        {
            missing.push_back(comment);
            continue;
        }
        for (const tComment& lost : missing)
        {
            if (!areOnItsLine(text, *trailing->second, lost, comment))
                return -1;
            ++replaced;
        }
        missing.clear();
        ++trailing;
    }
    const bool allFound = trailing == placed.m_vTrailing.end() && other == placed.m_vOther.end();
    return missing.empty() && allFound ? replaced : -1;
}

}  // namespace

TEST(CommentPlaces, everyCommentIsFoundInOrderWhereThereIsAPlace)
{
    std::size_t comments = 0;
    int replaced = 0;
    unsigned int good = 0;
    for (unsigned int seed = 1; seed <= 20000; ++seed)
    {
        CRandomText random(seed);
        random.numberComments();
        const std::string text = random.document();
        const tLoad load(text, s_cuiUsual | LCBC_DUPLICATE | LCBC_NUMBER_NAME);
        if (!load.m_bDone)
            continue;
        const int found = findReplaced(text, load.m_tTree);
        ASSERT_GE(found, 0) << "seed " << seed << "\n" << text << "\n" << load.result();
        ++good;
        replaced += found;
        comments += commentsOf(readPart(text, load.m_tTree)).size();
    }
    EXPECT_GT(good, 10000u);
    EXPECT_GT(comments, 100000u);
    EXPECT_GT(replaced, 1000);
    EXPECT_LT(replaced, static_cast<int>(comments / 2));
}

namespace
{

constexpr std::string_view s_ctKinds[] = {"// l\n", "//\n", "/*b*/", "/*m\n*/", "/*a*/ /*b*/", "// r\r\n"};

/// The kinds of three places in text, by a number below 6 * 6 * 6.
struct tThreeComments
{
    std::string_view m_strv[3];
    explicit tThreeComments(std::size_t number)
        : m_strv{s_ctKinds[number % 6], s_ctKinds[number / 6 % 6], s_ctKinds[number / 36 % 6]}
    {
    }
    std::string joined() const
    {
        std::string text;
        for (const std::string_view part : m_strv)
        {
            for (const tComment& comment : commentsOf(part))
                text += (text.empty() ? "" : "\n") + comment.m_strText;
        }
        return text;
    }
};

/// The text in which "@" stands for one of the three comments after the other.
std::string filled(std::string_view pattern, const tThreeComments& comments)
{
    std::string text;
    std::size_t next = 0;
    for (const char c : pattern)
        text += c == '@' ? comments.m_strv[next++] : std::string_view(&c, 1);
    return text;
}

const CFields& innermost(const CFields& tree)
{
    return tree.getChildCount() == 1 && tree.getName() != std::string_view("x") ? innermost(tree[0U]) : tree;
}

}  // namespace

TEST(CommentPlaces, commentsBeforeOneNodeAreJoinedAndReadBackTheSame)
{
    for (const char* pattern : {"{@#7 @\"x\" = @5}", "{@\"x\" @= @5}", "{@\"x\" = @(ANF4) @5}",
                                "{@#7@\"x\" = (ANF4) @5}", "[{@#7 @\"x\" = @[1, 2]}]", "@#7 @\"x\" = @5",
                                "@\"x\" @= @{1, 2}", "@\"x\" = @(ANF4) @5", "#7 @\"x\" @= (ANF4)@ 5"})
    {
        for (std::size_t number = 0; number < 216; ++number)
        {
            const tThreeComments comments(number);
            const std::string text = filled(pattern, comments);
            tLoad load(text);
            ASSERT_TRUE(load.m_bDone) << text;
            EXPECT_EQ(innermost(load.m_tTree).getCommentCopy(CP_before), comments.joined()) << text;
            tLoad again(load.m_tTree.toMURV(ER_SER_HFW));
            EXPECT_EQ(difference(load.m_tTree, again.m_tTree, SP_ids | SP_comments | SP_expressions), "") << text;
        }
    }
}
