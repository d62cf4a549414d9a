// tests/ser/lossless_any_tree_test.cpp - lossless savings of any tree come back equal, or name a node by its path.
//
// The trees hold what no document says: any ten bytes as packet expression, comments of any bytes after their slash,
// keywords that nobody knows, names in arrays, expressions on containers. What is refused must be worth it, too.
// MURV_LOSSLESS_TREES sets the number of trees.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>
#include <sstream>

#include "murv/loader.h"
#include "murv/path.h"
#include "murv/saver.h"
#include "tests/support/clean_registries.h"
#include "tests/support/same_tree.h"

using namespace murv;
using namespace murv::tests;

namespace
{

constexpr unsigned int s_cuiLoad = LCBC_COMMENT | LCBC_DUPLICATE | LCBC_LOSSLESS;
constexpr unsigned int s_cuiWhole = SP_all & ~static_cast<unsigned int>(SP_offsets);
constexpr unsigned char s_cucKind = 1;
constexpr unsigned short s_cusKnown = 7;

unsigned int treeCount()
{
    const char* const number = std::getenv("MURV_LOSSLESS_TREES");
    return number == nullptr ? 20000 : static_cast<unsigned int>(std::strtoul(number, nullptr, 10));
}

/// Of the external keywords one is complete, one has a name that cannot be read, and all others are unknown.
void registerKeywords()
{
    CFields::setGetIdxFP4ESK(s_cucKind, [](const char* text, unsigned char) -> int {
        return std::strncmp(text, "mine", 4) == 0 ? s_cusKnown : 0;
    });
    CFields::setGetTxtFP4ESK(s_cucKind, [](unsigned short index, unsigned char option) -> const char* {
        static const char* const names[] = {"mine", "mine_1", "mine_2", "mine_3"};
        if (index == s_cusKnown)
            return names[option & 3];
        return index == 31 ? "yours" : nullptr;
    });
    CFields::setCheckIdxFP4ESK(s_cucKind,
                               [](unsigned short index, unsigned char) -> int { return index == s_cusKnown ? 1 : 0; });
}

class CAnyTree
{
public:
    explicit CAnyTree(unsigned int seed) : m_tRandom(seed)
    {
    }

    CFields tree()
    {
        CFields root;
        fill(root, 1 + below(5));
        head(root);
        comments(root);
        return root;
    }
    unsigned int below(unsigned int limit)
    {
        return static_cast<unsigned int>(m_tRandom() % limit);
    }
    bool oneOf(unsigned int cases)
    {
        return below(cases) == 0;
    }
    void comment(CFields& node, E_CommentPosition position)
    {
        static const char* const parts[] = {"/* c */", "// c",  "/**/",   "//", "/",  "/* a\n b */", "// a\n",
                                            "\n",      "\r",    " ",      "/*", "*/", "x",           "5",
                                            "//*",     "/***/", "/*/ */", "\t", "\f"};
        std::string text = parts[below(5)];
        for (unsigned int more = below(3); more != 0; --more)
            text.append(oneOf(2) ? "\n" : "").append(parts[below(std::size(parts))]);
        node.setComment(text, position);
    }
    void expression(CFields& node)
    {
        tPacketExpInfo pei{};
        if (oneOf(12))
        {
            for (unsigned char& byte : m_ucBytes)
                byte = static_cast<unsigned char>(below(256));
            std::memcpy(&pei, m_ucBytes, sizeof pei);
        }
        else
            usual(pei);
        node.pkt_SetExp(pei);
        const bool isDual = pei.m_ucSkKind == 0 && (pei.m_usSkIndex == VK_fix || pei.m_usSkIndex == VK_valid);
        if (isDual ? oneOf(15) : !oneOf(60))
            return;
        const auto kind = isDual ? static_cast<E_ValueKind>(pei.m_usSkIndex) : VK_valid;
        node.setVK(kind);
        if (oneOf(4))
            value(node, VK_fix);
        node.setVK(kind);
    }

private:
    std::string bytes(unsigned int longest)
    {
        static const char signs[] =
            "\"\\/{}[]=,#()0123456789-+.eE \t\r\n'\0truefalsn\xC3\xBC\xE2\x80\xAE\xF0\x9F\x98\x80";
        const unsigned int form = below(3);
        std::string text(below(longest + 1), ' ');
        for (char& byte : text)
            byte = form == 0 ? static_cast<char>(below(256)) : form == 1 ? signs[below(sizeof signs)] : 'a';
        return text;
    }
    void value(CFields& node, E_ValueKind vk)
    {
        const unsigned long long bits = static_cast<unsigned long long>(m_tRandom()) << 32U | m_tRandom();
        double number = 0;
        std::memcpy(&number, &bits, sizeof number);
        switch (below(8))
        {
        case 0: node.setValue(DT_null, vk); break;
        case 1: node.setValue(oneOf(2), vk); break;
        case 2: node.setValue(static_cast<long long>(bits) >> below(64), vk); break;
        case 3: node.setValue(bits >> below(64), vk); break;
        case 4: node.setValue(std::round(std::ldexp(number, -1000)), vk); break;
        case 5: node.setValue(number, vk); break;
        case 6: node.setValue(DT_codelist, vk); break;
        default: node.setValue(bytes(oneOf(20) ? 300 : 12), vk); break;
        }
    }
    void usual(tPacketExpInfo& pei)
    {
        static constexpr unsigned short keywords[] = {0, 0, 0, 1, 2, 3, 4, 5, 7, 11, 31, 38, 39};
        pei.m_ePacketExp = static_cast<E_PacketExpCode>(below(2));
        pei.m_eRuntimeExp = static_cast<E_RuntimeExpCode>(below(2));
        pei.m_eLengthExp = static_cast<E_LengthExpCode>(below(3));
        pei.m_uiLength = oneOf(6) ? static_cast<unsigned int>(m_tRandom()) : below(1000);
        if (pei.m_eLengthExp == LEC_V)
        {
            pei.m_ucPrefixSize = static_cast<unsigned char>(below(12));
            pei.m_uiLength = oneOf(20) ? 1 : pei.m_ucPrefixSize;
            pei.m_cCalibration = static_cast<signed char>(static_cast<int>(below(256)) - 128);
        }
        pei.m_usSkIndex = keywords[below(std::size(keywords))];
        if (pei.m_usSkIndex == 3 || pei.m_usSkIndex == 4 || oneOf(30))
            pei.m_ucSkOption = below(12) & 15U;
        if (pei.m_usSkIndex == s_cusKnown || oneOf(30))
            pei.m_ucSkKind = (oneOf(8) ? 2U : s_cucKind) & 15U;
    }
    void head(CFields& node)
    {
        if (oneOf(3))
            node.setID(1 + below(oneOf(2) ? 5 : 2147483647));
        const std::string name = bytes(oneOf(10) ? 255 : 6);
        if (!oneOf(4) && !name.empty())
            node.setName(name);
    }
    void comments(CFields& node)
    {
        for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
        {
            if (oneOf(position == CP_after ? 60 : 12))
                comment(node, position);
        }
    }
    void fill(CFields& node, unsigned int depth)
    {
        if (depth == 0 || oneOf(2))
        {
            value(node, VK_actual);
            if (oneOf(4))
                expression(node);
            return;
        }
        const bool isSet = oneOf(2);
        node.setValue(isSet ? DT_fields : DT_array);
        if (oneOf(30))
            node.removeAll(node.getDT());
        else
            for (unsigned int left = below(6); left != 0; --left)
            {
                CFields& member = node.addChildRef("", 0, true);
                fill(member, depth - 1);
                if (isSet || oneOf(80))
                    head(member);
                comments(member);
            }
        if (oneOf(60))
            expression(node);
    }

    std::mt19937 m_tRandom;
    unsigned char m_ucBytes[sizeof(tPacketExpInfo)] = {};
};

constexpr int s_ciTextWays = 4;
constexpr int s_ciWays = 6;
constexpr const char* s_cpPassword = "secret";

struct tSaving
{
    std::string m_strBytes;
    std::string m_strError;
    std::optional<std::vector<unsigned int>> m_vPath;
};

template <typename tSaver>
tSaving saveBy(tSaver& saver, const CFields& tree, unsigned int scbc, const char* password = nullptr)
{
    saver.setSCBC(scbc);
    std::string bytes = saver.saving(tree, SAVE_ALL, password);
    return {std::move(bytes), saver.getLastErrMsg(), saver.getErrorPath()};
}

tSaving save(const CFields& tree, int way, unsigned int scbc)
{
    CSaver4SER_HFW indented(way == 0 ? 2 : 0);
    CSaver4SER_PKT compact;
    CSaver4BER_BASIC binary;
    CStreamSaver4SER_HFW stream("\t");
    compact.setCompatibilityYAML((scbc & SCBC_NULL_WORD) != 0);
    switch (way)
    {
    case 0:
    case 1: return saveBy(indented, tree, scbc);
    case 2: return saveBy(compact, tree, scbc);
    case 3:
    {
        std::ostringstream out;
        stream.setSCBC(scbc);
        stream.saving(out, tree);
        return {out.str(), stream.getLastErrMsg(), stream.getErrorPath()};
    }
    default: return saveBy(binary, tree, scbc, way == s_ciTextWays ? nullptr : s_cpPassword);
    }
}

/// How a saving differs when it is read back; "" when it does not.
std::string differenceOnLoad(const CFields& tree, const std::string& bytes, unsigned int parts)
{
    CLoaders loader(s_cuiLoad);
    CFields back;
    if (!loader.loading(bytes, back, s_cpPassword))
        return loader.getLastErrMsg();
    return difference(tree, back, parts);
}

/// The path in the message leads to the same node as the path of indexes, unless it is shortened.
void expectRefusal(const CFields& tree, const tSaving& saving, const std::string& medium)
{
    EXPECT_EQ(saving.m_strBytes, "");
    const std::size_t end = saving.m_strError.find(": " + medium + " cannot hold ");
    ASSERT_NE(end, std::string::npos) << saving.m_strError;
    ASSERT_TRUE(saving.m_vPath.has_value());
    const CFields* node = &tree;
    for (const unsigned int index : *saving.m_vPath)
    {
        ASSERT_LT(index, node->getChildCount());
        node = &node->getChildAt(index);
    }
    const std::size_t begin = saving.m_strError.find("] ") + 2;
    const std::string words = saving.m_strError.substr(begin, end - begin);
    const bool isShortened = words.find("...") != std::string::npos;
    EXPECT_TRUE(isShortened || node == (words == "the root" ? &tree : find(tree, words))) << words;
}

void expectBackOrRefused(const CFields& tree, unsigned int seed, unsigned int& refused)
{
    for (int way = 0; way < s_ciWays; ++way)
    {
        const tSaving saving = save(tree, way, SCBC_LOSSLESS | (seed & 15U));
        SCOPED_TRACE(way);
        if (saving.m_strError.empty())
        {
            const unsigned int parts = way == 2 ? s_cuiWhole & ~static_cast<unsigned int>(SP_comments) : s_cuiWhole;
            ASSERT_EQ(differenceOnLoad(tree, saving.m_strBytes, parts), "") << saving.m_strBytes;
        }
        else
        {
            ASSERT_NO_FATAL_FAILURE(expectRefusal(tree, saving, way < s_ciTextWays ? "text" : "a binary file"));
            ++refused;
        }
    }
}

}  // namespace

TEST(LosslessRandom, anyTreeComesBackEqualOrIsRefusedByPath)
{
    const tCleanRegistries clean;
    registerKeywords();
    unsigned int refused = 0;
    const unsigned int count = treeCount();
    for (unsigned int seed = 1; seed <= count; ++seed)
    {
        SCOPED_TRACE(seed);
        ASSERT_NO_FATAL_FAILURE(expectBackOrRefused(CAnyTree(seed).tree(), seed, refused));
    }
    EXPECT_GT(refused, count / 10);
    EXPECT_LT(refused, count * s_ciWays / 2);
}

TEST(LosslessRandom, nothingIsRefusedThatComesBackEqualByItself)
{
    const tCleanRegistries clean;
    registerKeywords();
    unsigned int refused = 0;
    for (unsigned int seed = 1; seed <= treeCount(); ++seed)
    {
        CAnyTree random(seed);
        CFields tree(DT_array);
        tree.addArrayAt(CFields(1));
        tree.addArrayAt(CFields(2));
        CFields& node = random.oneOf(2) ? tree[0] : tree;
        if (random.oneOf(3))
            random.expression(tree[0]);
        else
            random.comment(node, static_cast<E_CommentPosition>(random.below(3)));
        for (const int way : {0, s_ciTextWays})
        {
            if (save(tree, way, SCBC_LOSSLESS).m_strError.empty())
                continue;
            ++refused;
            const tSaving plain = save(tree, way, SCBC_NULL_WORD | SCBC_SECOND_VALUE);
            ASSERT_NE(differenceOnLoad(tree, plain.m_strBytes, s_cuiWhole), "") << seed << " " << way;
        }
    }
    EXPECT_GT(refused, treeCount() / 10);
}
