// tests/document/document_property_test.cpp - random changes of random documents, beside the same changes of a tree.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>

#include "murv/document.h"
#include "murv/edit.h"
#include "murv/loader.h"
#include "murv/saver.h"
#include "syntax/token_scanner.h"
#include "syntax/token_spacing.h"
#include "tests/ser/random_text.h"
#include "tests/support/same_tree.h"

namespace murv::tests
{

namespace
{

constexpr unsigned int s_cuiConfig = LCBC_COMMENT | LCBC_EMPTY_NULL | LCBC_LOSSLESS | LCBC_DUPLICATE;
constexpr unsigned int s_cuiParts = SP_ids | SP_expressions;  // setting a value drops a second one, loading makes it

CFields load(const std::string& text)
{
    CFields tree;
    CLoader4SER loader(s_cuiConfig);
    EXPECT_TRUE(loader.loading(text, tree, "", true)) << loader.getLastErrMsg() << text;
    return tree;
}

/// The tokens of a text but for commas, which come and go with members.
std::vector<std::string_view> tokens(std::string_view text)
{
    std::vector<std::string_view> all;
    detail::CTokenScanner scanner(text);
    for (tTokenInfo token = scanner.next(); token.m_eType != TT_end; token = scanner.next())
    {
        std::string_view expression;
        if (token.m_eType == TT_peiBegin)
            scanner.takeExpression(token, expression);
        if (token.m_eType != TT_comma)
            all.push_back(detail::textWithoutLineEnd(token));
    }
    return all;
}

/// How many tokens of a text a change took away, and how many it put in their place: all others stay in their order.
struct tTokenChange
{
    std::size_t m_nGone;
    std::size_t m_nNew;
};

tTokenChange tokenChange(std::string_view before, std::string_view after)
{
    const std::vector<std::string_view> old = tokens(before);
    const std::vector<std::string_view> fresh = tokens(after);
    const std::size_t most = std::min(old.size(), fresh.size());
    std::size_t begin = 0;
    while (begin != most && old[begin] == fresh[begin])
        ++begin;
    std::size_t end = 0;
    while (end != most - begin && old[old.size() - 1 - end] == fresh[fresh.size() - 1 - end])
        ++end;
    return {old.size() - begin - end, fresh.size() - begin - end};
}

/// Makes the same random changes to a document and to a tree.
class CRandomChanges
{
public:
    CRandomChanges(unsigned int seed, CDocument& document) : m_tRandom(seed), m_tDocument(document)
    {
        m_tTree = document.tree();
    }
    const CFields& tree() const
    {
        return m_tTree;
    }
    /// \return what was changed
    std::string change()
    {
        const std::string path = randomPath();
        m_nTokens = tokensOf(*find(static_cast<const CFields&>(m_tTree), path));
        try
        {
            return changeAt(path);
        }
        catch (const CLogicError& error)
        {
            return std::string("refused: ") + error.what();
        }
    }

    /// Tokens that a change may take away: those of the value that was there, of a name, of comments beside a node.
    std::size_t mostGone(std::string_view change) const
    {
        if (change.starts_with("set ") || change.starts_with("remove "))
            return m_nTokens;
        if (change.starts_with("insert ") || change.starts_with("rename "))
            return 1;  // a null that becomes a container; the old name
        return change.starts_with("comment ") ? s_cnComments : 0;
    }
    /// Tokens that it may put in: those of the value, of its way and its name; of comments.
    std::size_t mostNew(std::string_view change) const
    {
        if (change.starts_with("remove "))
            return 1 + s_cnComments;  // the word null goes before comments that stay
        if (change.starts_with("set ") || change.starts_with("insert "))
            return s_cnValue;
        return change.starts_with("rename ") ? 2 : change.starts_with("comment ") ? 2 : 0;
    }

private:
    static constexpr std::size_t s_cnComments = 30;
    static constexpr std::size_t s_cnValue = 25;

    unsigned int below(unsigned int limit)
    {
        return static_cast<unsigned int>(m_tRandom() % limit);
    }
    /// Tokens of a node that is there, with the comments that may stand at it.
    std::size_t tokensOf(const CFields& node) const
    {
        CSaver4SER_PKT saver;
        saver.setSCBC(SCBC_LOSSLESS);
        const std::size_t comments = s_cnComments * (1 + node.getMemberCount());
        return tokens(saver.saving(node)).size() + comments;
    }
    std::string randomPath()
    {
        const CFields* node = &m_tTree;
        while (node->getChildCount() != 0 && below(4) != 0)
            node = &node->getChildAt(below(node->getChildCount()));
        return *pathOf(m_tTree, *node);
    }
    CFields randomValue()
    {
        switch (below(7))
        {
        case 0: return CFields(static_cast<int>(below(100)));
        case 1: return CFields("text\n\"quoted\"");
        case 2: return CFields(1.5);
        case 3: return CFields();
        case 4: return array({1, "two", fields({{"three", 3}})});
        case 5: return fields({{"x", 1}, {"y", array({})}, {"z", fields({{"deep", true}})}});
        default: return CFields(DT_array);
        }
    }
    std::string joined(const std::string& path, const std::string& step)
    {
        return path == "." ? step : path + (step[0] == '[' ? "" : ".") + step;
    }
    std::string changeAt(const std::string& path)
    {
        const CFields value = randomValue();
        switch (below(6))
        {
        case 0:
        {
            m_tDocument.set(path, value);
            murv::set(m_tTree, path, value);
            return "set " + path;
        }
        case 1:
        {
            const std::string added = joined(path, below(2) == 0 ? "new" : "[" + std::to_string(below(4)) + "]");
            m_tDocument.set(added, value);
            murv::set(m_tTree, added, value);
            return "set " + added;
        }
        case 2: return insert(path, value);
        case 3: return remove(path);
        case 4:
        {
            m_tDocument.rename(path, "renamed");
            find(m_tTree, path)->setName("renamed");
            return "rename " + path;
        }
        default:
        {
            const bool isTrailing = below(2) == 0;
            m_tDocument.comment(path,
                                below(4) == 0 ? ""
                                : isTrailing  ? "trailing"
                                              : "before\nand more",
                                isTrailing ? CP_trailing : CP_before);
            return "comment " + path;
        }
        }
    }
    std::string insert(const std::string& path, const CFields& value)
    {
        CFields& node = *find(m_tTree, path);
        const std::string name = node.isArray() ? "" : "inserted";
        const std::size_t index = below(node.getChildCount() + 1);
        m_tDocument.insert(path, index, value, name);
        insertAt(node, index, value, name);
        return "insert " + path + " " + std::to_string(index);
    }
    std::string remove(const std::string& path)
    {
        m_tDocument.remove(path);
        const CFields* const node = find(static_cast<const CFields&>(m_tTree), path);
        removeNode(m_tTree, node);
        return "remove " + path;
    }
    static bool removeNode(CFields& container, const CFields* node)
    {
        for (unsigned int i = 0; i != container.getChildCount(); ++i)
        {
            if (&container.getChildAt(i) == node)
                return container.removeChildAt(i);
            if (removeNode(container[i], node))
                return true;
        }
        return false;
    }

    std::mt19937 m_tRandom;
    std::size_t m_nTokens = 0;  // of the node that is changed
    CDocument& m_tDocument;
    CFields m_tTree;
};

}  // namespace

TEST(DocumentProperty, mergingGivesTheTreeThatMergingTreesGives)
{
    CRandomText random(6);
    for (int i = 0; i < 3000; ++i)
    {
        const std::string text = random.document();
        const std::string other = random.document();
        CDocument document;
        CDocument patch;
        if (!document.load(text) || !patch.load(other))
            continue;
        CFields tree = document.tree();
        try
        {
            document.merge(patch.tree());
        }
        catch (const CLogicError&)
        {
            ASSERT_EQ(document.text(), text);
            continue;
        }
        merge(tree, patch.tree());
        ASSERT_EQ(difference(tree, document.tree(), SP_values), "") << text << "\n" << other;
        ASSERT_EQ(difference(tree, load(document.text()), SP_values), "") << text << "\n" << other;
    }
}

TEST(DocumentProperty, textLoadsToTheTreeThatTheSameChangesGive)
{
    CRandomText random(5);
    unsigned int documents = 0;
    const char* const most = std::getenv("MURV_DOCUMENTS");
    const unsigned long wanted = most == nullptr ? 3000 : std::strtoul(most, nullptr, 10);
    for (unsigned int seed = 0; documents < wanted; ++seed)
    {
        const std::string text = random.document();
        CDocument document;
        if (!document.load(text))
            continue;
        ++documents;
        ASSERT_EQ(document.text(), text);
        CRandomChanges changes(seed, document);
        std::string log = text;
        for (int i = 0; i < 12; ++i)
        {
            const std::string before = document.text();
            const std::string change = changes.change();
            log += "\n==> " + change;
            const tTokenChange tokens = tokenChange(before, document.text());
            ASSERT_LE(tokens.m_nGone, changes.mostGone(change)) << log << "\n" << document.text();
            ASSERT_LE(tokens.m_nNew, changes.mostNew(change)) << log << "\nbefore\n"
                                                              << before << "\nafter"
                                                              << "\n"
                                                              << document.text();
            ASSERT_EQ(difference(changes.tree(), document.tree(), s_cuiParts), "") << log;
            ASSERT_EQ(difference(document.tree(), load(document.text()), s_cuiParts), "") << log << "\n"
                                                                                          << document.text();
        }
    }
}

}  // namespace murv::tests
