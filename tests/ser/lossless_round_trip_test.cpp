// tests/ser/lossless_round_trip_test.cpp - with both bits, what is loaded equals what was saved, in every respect.
//
// Random trees go through every notation. Where a tree holds what text cannot, the refusal must name the first such
// node; it is then mended, and the tree must come back whole. MURV_LOSSLESS_TREES sets the number of trees.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <sstream>

#include "murv/loader.h"
#include "murv/saver.h"
#include "ser/text_loss.h"
#include "tests/support/random_tree.h"
#include "tests/support/same_tree.h"

using namespace murv;
using namespace murv::tests;

namespace
{

constexpr unsigned int s_cuiLoad = LCBC_COMMENT | LCBC_EMPTY_NULL | LCBC_DUPLICATE | LCBC_LOSSLESS;
constexpr unsigned int s_cuiWhole = SP_all & ~static_cast<unsigned int>(SP_offsets);
constexpr unsigned int s_cuiWithoutComments = s_cuiWhole & ~static_cast<unsigned int>(SP_comments);

unsigned int treeCount()
{
    const char* const number = std::getenv("MURV_LOSSLESS_TREES");
    return number == nullptr ? 10000 : static_cast<unsigned int>(std::strtoul(number, nullptr, 10));
}

struct tSaving
{
    std::string m_strBytes;
    std::string m_strError;
};

enum E_Way
{
    WAY_indented,
    WAY_oneLineArrays,
    WAY_stream,
    WAY_compact,
    WAY_binary,
    WAY_count,
};

tSaving save(const CFields& tree, int way)
{
    CSavers savers(SCBC_LOSSLESS | (way == WAY_oneLineArrays ? SCBC_ONE_LINE_ARRAY : SCBC_FINAL_NEWLINE));
    tSaving saving;
    if (way == WAY_stream)
    {
        std::ostringstream out;
        savers.saving(out, tree);
        saving.m_strBytes = out.str();
    }
    else
        saving.m_strBytes = savers.saving(tree, way == WAY_compact  ? ER_SER_PKT
                                                : way == WAY_binary ? ER_BER
                                                                    : ER_SER_HFW);
    saving.m_strError = savers.getLastErrMsg();
    return saving;
}

template <typename tLoader>
std::string differenceOnLoad(const CFields& tree, const std::string& bytes, unsigned int parts)
{
    tLoader loader(s_cuiLoad);
    CFields back;
    if (!loader.loading(bytes, back))
        return loader.getLastErrMsg();
    return difference(tree, back, parts);
}

void expectRoundTrip(const CFields& tree)
{
    for (int way = 0; way < WAY_count; ++way)
    {
        const tSaving saving = save(tree, way);
        ASSERT_EQ(saving.m_strError, "") << way;
        const unsigned int parts = way == WAY_compact ? s_cuiWithoutComments : s_cuiWhole;
        const std::string found = way == WAY_binary ? differenceOnLoad<CLoader4BER>(tree, saving.m_strBytes, parts)
                                                    : differenceOnLoad<CLoader4SER>(tree, saving.m_strBytes, parts);
        ASSERT_EQ(found, "") << way << saving.m_strBytes;
    }
}

std::string pathOfMember(const CFields& container, unsigned int index)
{
    const CFields& member = container.getChildAt(index);
    const std::string_view name = name4Node(member);
    if (!container.isField() || name.empty() || container.findChildAt(member.getName(), member.getNameLen()) != &member)
        return "[" + std::to_string(index) + "]";
    if (name.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-") == name.npos)
        return "." + std::string(name);
    CSaver4SER_PKT quote;
    quote.setSCBC(SCBC_LOSSLESS);
    return "." + quote.saving(CFields(std::string(name)));
}

bool isHeldByText(const CFields& node)
{
    if (node.getDT() == DT_double && !std::isfinite(node.asDouble()))
        return false;
    return node.getVK() == VK_actual ||
           (node.getDT(VK_actual) == node.getDT(VK_fix) && bytes4Value(node, VK_actual) == bytes4Value(node, VK_fix));
}

/// Makes every node one that text can hold. \return the path of the first that was not, or ""
std::string mend(CFields& node, const std::string& path)
{
    std::string first;
    if (!isHeldByText(node))
    {
        first = path;
        const E_ValueKind kind = node.getVK();
        node.setVK(VK_actual);
        if (node.getDT() == DT_double && !std::isfinite(node.asDouble()))
            node.setValue(0.5);
        node.setVK(kind);
    }
    for (unsigned int i = 0; i < node.getChildCount(); ++i)
    {
        const std::string step = pathOfMember(node, i);
        const std::string found =
            mend(node[static_cast<int>(i)], path.empty() && step[0] == '.' ? step.substr(1) : path + step);
        if (first.empty())
            first = found;
    }
    return first;
}

/// An own way to refuse: nothing is written, and the message names the path.
void expectRefusal(const CFields& tree, const std::string& path)
{
    constexpr std::size_t longest = 300;
    constexpr std::size_t shown = 130;
    for (int way = 0; way < WAY_binary; ++way)
    {
        const tSaving saving = save(tree, way);
        ASSERT_EQ(saving.m_strBytes, "") << way;
        const std::string wanted =
            "] " + (path.size() > longest ? path.substr(0, shown) : path + ": text cannot hold ");
        ASSERT_NE(saving.m_strError.find(wanted), std::string::npos) << saving.m_strError << " / " << wanted;
    }
}

}  // namespace

TEST(LosslessRoundTrip, randomTreesComeBackEqualOrAreRefusedByPath)
{
    unsigned int refused = 0;
    const unsigned int count = treeCount();
    for (unsigned int seed = 1; seed <= count; ++seed)
    {
        SCOPED_TRACE(seed);
        const CFields tree = CRandomTree(seed).tree();
        CFields whole = CRandomTree(seed).tree();
        const std::string path = mend(whole, "");
        if (!path.empty())
        {
            ++refused;
            ASSERT_NO_FATAL_FAILURE(expectRefusal(tree, path));
        }
        ASSERT_NO_FATAL_FAILURE(expectRoundTrip(whole));
    }
    EXPECT_GT(refused, count / 20);
    EXPECT_LT(refused, count);
}

TEST(LosslessRoundTrip, noTextIsLongerThanItIsFirstTakenFor)
{
    for (unsigned int seed = 1; seed <= 300; ++seed)
    {
        CFields tree = CRandomTree(seed).tree();
        mend(tree, "");
        const unsigned int indentation = seed % 5 * 20;
        CSaver4SER_HFW saver(indentation);
        saver.setSCBC(SCBC_LOSSLESS | SCBC_FINAL_NEWLINE | (seed % 2 == 0 ? SCBC_ONE_LINE_ARRAY : 0U));
        const std::string text = saver.saving(tree);
        ASSERT_FALSE(saver.isError()) << saver.getLastErrMsg();
        std::uint64_t bound = 0;
        const murv::detail::CIndentation indent(" ", indentation);
        ASSERT_TRUE(murv::detail::isTextWhole(saver, "", tree, &indent, &bound));
        ASSERT_LE(text.size(), bound) << seed;
    }
}

TEST(LosslessRoundTrip, ofEveryByteAloneAndTogether)
{
    CFields tree(DT_fields);
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
    {
        const std::string one(1, static_cast<char>(byte));
        tree.addChildRef(one).setValue(one);
        tree.addChildRef("\xC3" + one).setValue("\xE2\x80" + one);
        all += one;
    }
    tree.addChildRef(all.substr(1)).setValue(all);
    ASSERT_NO_FATAL_FAILURE(expectRoundTrip(tree));
}

TEST(LosslessRoundTrip, ofEveryCodePointAlone)
{
    CFields tree(DT_array);
    for (unsigned int point = 0; point <= 0x10FFFF; ++point)
    {
        std::string text = "x";
        const auto put = [&text](unsigned int byte) { text += static_cast<char>(byte); };
        if (point < 0x800)
            put(0xC0 | point >> 6);
        else if (point < 0x10000)
        {
            put(0xE0 | point >> 12);
            put(0x80 | (point >> 6 & 63));
        }
        else
        {
            put(0xF0 | point >> 18);
            put(0x80 | (point >> 12 & 63));
            put(0x80 | (point >> 6 & 63));
        }
        put(0x80 | (point & 63));
        tree.addArrayAt(CFields(text));
    }
    CSaver4SER_PKT saver;
    saver.setSCBC(SCBC_LOSSLESS);
    EXPECT_EQ(differenceOnLoad<CLoader4SER>(tree, saver.saving(tree), s_cuiWhole), "");
}

TEST(LosslessRoundTrip, ofIntegersAtTheBordersOfTheirTypes)
{
    CFields tree(DT_array);
    for (const unsigned long long number : {0ULL, 1ULL, 9ULL, 10ULL, 2147483647ULL, 2147483648ULL, 4294967296ULL,
                                            9223372036854775807ULL, 9223372036854775808ULL, 18446744073709551615ULL})
    {
        tree.addArrayAt(CFields(number));
        tree.addArrayAt(CFields(static_cast<long long>(number)));
        tree.addArrayAt(CFields(static_cast<double>(number)));
    }
    ASSERT_NO_FATAL_FAILURE(expectRoundTrip(tree));
}

TEST(LosslessRoundTrip, ofEmptyContainersInEachOther)
{
    CFields tree(DT_fields);
    CFields* node = &tree;
    for (int level = 0; level < 50; ++level)
    {
        node->addChildRef("empty set").setValue(DT_fields);
        node->addChildRef("").setComment("// after an empty one", CP_trailing);
        CFields& array = node->addChildRef("a");
        array.setValue(DT_array);
        array.addArrayAt(CFields(DT_array)).setComment("/* before */", CP_before);
        array.addArrayAt(CFields(DT_fields)).setComment("// after it", CP_trailing);
        node = &array.addArrayAt(CFields(DT_fields));
    }
    ASSERT_NO_FATAL_FAILURE(expectRoundTrip(tree));
    ASSERT_NO_FATAL_FAILURE(expectRoundTrip(CFields(DT_fields)));
    ASSERT_NO_FATAL_FAILURE(expectRoundTrip(CFields(DT_array)));
}

TEST(LosslessRoundTrip, ofRootsThatAreScalars)
{
    for (const CFields& value : {CFields(), CFields(true), CFields(-5), CFields(5u), CFields(25.0), CFields("")})
    {
        CFields root = value;
        ASSERT_NO_FATAL_FAILURE(expectRoundTrip(root));
        root.setID(7);
        ASSERT_NO_FATAL_FAILURE(expectRoundTrip(root));
        root.setName("n");
        root.setComment("// before", CP_before);
        root.setComment("/* trailing */", CP_trailing);
        root.setComment("// after\n/* all */", CP_after);
        ASSERT_NO_FATAL_FAILURE(expectRoundTrip(root));
    }
}

TEST(LosslessRoundTrip, ofCommentsInEveryFormThatReads)
{
    for (const char* const comment : {"// a", "/* a */", "/**/", "// a\n// b", "// a\n/* b */",
                                      "/* a\n// no comment of its own\n b */", "/* a\n/ b */"})
    {
        CFields tree(DT_fields);
        tree.addChildRef("a").setValue(1);
        tree.addChildRef("b").setValue(2);
        tree[1].setComment(comment, CP_before);
        tree.setComment(comment, CP_before);
        tree.setComment(comment, CP_after);
        SCOPED_TRACE(comment);
        ASSERT_NO_FATAL_FAILURE(expectRoundTrip(tree));
    }
}

TEST(LosslessRoundTrip, ofCommentsAsTheyAreRead)
{
    for (const char* const comments : {"/* a */ /* b */", "/* a */ // b", "/* a */\n\n// b\n\n// c", "// a\r\n// b",
                                       "/* a\r\n / */\n/* b\n// c\n*/ // d"})
    {
        SCOPED_TRACE(comments);
        const std::string text =
            std::string(comments) + "\n{\n" + comments + "\n\"x\" =\n" + comments + "\n1\n}\n" + comments;
        CFields tree;
        ASSERT_TRUE(CLoader4SER(s_cuiLoad).loading(text, tree));
        ASSERT_NO_FATAL_FAILURE(expectRoundTrip(tree));
    }
}

TEST(LosslessRoundTrip, ofAThousandLevels)
{
    CFields tree(25.0);
    for (int level = 1; level < 1000; ++level)
    {
        CFields outer(level % 2 == 0 ? DT_array : DT_fields);
        outer.addChildRef("", 0, true).swapValue(tree, false);
        tree.swapValue(outer, false);
    }
    ASSERT_NO_FATAL_FAILURE(expectRoundTrip(tree));
    CFields deeper(DT_array);
    deeper.addArrayAt(CFields()).swapValue(tree, false);
    for (int way = 0; way < WAY_count; ++way)
    {
        const tSaving saving = save(deeper, way);
        EXPECT_EQ(saving.m_strBytes, "") << way;
        EXPECT_NE(saving.m_strError.find("cannot hold values that nest deeper than 1000 levels"), std::string::npos);
    }
}
