// tests/ser/layout_model_test.cpp - the text savers against the plain models, on random trees.
//
// The trees are full of what decides about line breaks and blanks: missing names, empty values, comments of all
// positions and endings, packet expressions, second values, and containers of every size around the limits.
#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>

#include "tests/ser/layout_model.h"
#include "tests/ser/saver_helpers.h"

namespace
{

using namespace murv;
using namespace murv::tests;

class CRandomTree
{
public:
    explicit CRandomTree(unsigned int seed) : m_tRandom(seed)
    {
    }

    CFields make()
    {
        CFields root;
        fill(root, 0);
        if (one(3))
            root.setName(std::string_view(pick({"r", "two words", "\n"})));
        if (one(3))
            root.setID(upTo(20));
        return root;
    }

private:
    unsigned int upTo(unsigned int limit)
    {
        return std::uniform_int_distribution<unsigned int>(0, limit)(m_tRandom);
    }
    bool one(unsigned int in)
    {
        return upTo(in - 1) == 0;
    }
    const char* pick(std::initializer_list<const char*> texts)
    {
        return texts.begin()[upTo(static_cast<unsigned int>(texts.size()) - 1)];
    }

    void fill(CFields& node, unsigned int depth)
    {
        const unsigned int kind = depth == 0 && !one(10) ? 8 + upTo(3) : upTo(depth >= 4 ? 7 : 11);
        if (kind < 8)
            fillScalar(node, kind);
        else
            fillContainer(node, kind < 10 ? DT_fields : DT_array, depth);
        if (one(4))
            comment(node);
    }
    void fillScalar(CFields& node, unsigned int kind)
    {
        setScalar(node, kind, VK_actual);
        if (one(3))
        {
            setScalar(node, one(2) ? kind : upTo(7), VK_fix);
            node.setVK(one(2) ? VK_fix : VK_valid);
        }
        if (one(4))
            express(node);
    }
    void setScalar(CFields& node, unsigned int kind, E_ValueKind vk)
    {
        switch (kind)
        {
        case 0: node.setValue(DT_null, vk); break;
        case 1: node.setValue(one(2), vk); break;
        case 2: node.setValue(static_cast<int>(upTo(2000)) - 1000, vk); break;
        case 3: node.setValue(1ULL << upTo(63), vk); break;
        case 4: node.setValue(upTo(100) / 7.0, vk); break;
        case 5: node.setValue("", vk); break;
        case 6: node.setValue(std::string(upTo(24), 's'), vk); break;
        default: node.setValue(pick({" ", "a b", "q\"\n", "\xC3\xA4", "x "}), vk); break;
        }
    }
    void fillContainer(CFields& node, E_DataType type, unsigned int depth)
    {
        node.setValue(type);
        if (one(8))
            return node.removeAll(type);  // without a vector
        const unsigned int count = one(12) ? 20 + upTo(10) : upTo(6);
        const bool scalarsOnly = one(2);
        for (unsigned int i = 0; i < count; ++i)
        {
            if (type == DT_array)
                fill(node.addArrayAt(CFields()), scalarsOnly ? 4 : depth + 1);
            else
                fillMember(node, scalarsOnly ? 4 : depth + 1);
        }
    }
    void fillMember(CFields& set, unsigned int depth)
    {
        const char* const name = one(4) ? "" : pick({"a", "name", "n\tn", " "});
        fill(set.addChildRef(name, one(4) ? upTo(9) : 0, true), depth);
    }
    void comment(CFields& node)
    {
        node.setComment(
            pick({"// c", "// blank ", "", "/* a\n/* b */", "// one\n// two\n", "//\n\nrest", "/ \n/", "//\n\n"}),
            static_cast<E_CommentPosition>(upTo(2)));
        if (one(2))
            comment(node);
    }
    void express(CFields& node)
    {
        tPacketExpInfo pei{};
        pei.m_ePacketExp = one(2) ? PEC_A : PEC_B;
        pei.m_eRuntimeExp = one(2) ? REC_C : REC_N;
        pei.m_eLengthExp = static_cast<E_LengthExpCode>(upTo(3));
        pei.m_uiLength = upTo(12);
        pei.m_ucPrefixSize = static_cast<unsigned char>(upTo(3));
        pei.m_usSkIndex = static_cast<unsigned short>(one(2) ? upTo(2) : upTo(6));
        pei.m_ucSkKind = one(8) ? 9 : 0;  // nothing is registered for it
        node.pkt_SetExp(pei);
    }

    std::mt19937 m_tRandom;
};

void expectSameError(const CErrorBase& saver, const CErrorBase& model)
{
    EXPECT_EQ(saver.getLastErrCode(), model.getLastErrCode());
    EXPECT_EQ(saver.getLastErrMsg(), model.getLastErrMsg());
}

/// One saving by each saver and its model. The savers are kept, so that no saving may lean on the one before.
class CComparison
{
public:
    CComparison(unsigned int width, char indent)
        : m_tString(width),
          m_tStream(std::string(width, indent)),
          m_tModel(SCBC_SECOND_VALUE, std::string(width, ' ')),
          m_tStreamModel(SCBC_SECOND_VALUE, std::string(width, indent))
    {
    }

    void compare(const CFields& tree, unsigned int scbc, unsigned char style)
    {
        m_tString.setSCBC(scbc);
        m_tModel.setSCBC(scbc);
        ASSERT_EQ(m_tString.saving(tree, style), m_tModel.saving(tree, style))
            << "style " << +style << " bits " << scbc;
        expectSameError(m_tString, m_tModel);

        std::ostringstream os;
        m_tStream.setSCBC(scbc);
        m_tStreamModel.setSCBC(scbc);
        m_tStream.saving(os, tree, style);
        ASSERT_EQ(os.str(), m_tStreamModel.saving(tree, style)) << "style " << +style << " bits " << scbc;
        expectSameError(m_tStream, m_tStreamModel);

        m_tCompact.setSCBC(scbc);
        m_tCompactModel.setSCBC(scbc);
        ASSERT_EQ(m_tCompact.saving(tree, style), m_tCompactModel.saving(tree, style)) << "style " << +style;
        expectSameError(m_tCompact, m_tCompactModel);
    }

private:
    CSaver4SER_HFW m_tString;
    CStreamSaver4SER_HFW m_tStream;
    CSaver4SER_PKT m_tCompact;
    CLayoutModel m_tModel;
    CLayoutModel m_tStreamModel;
    CCompactModel m_tCompactModel{SCBC_SECOND_VALUE, false};
};

TEST(LayoutModel, saversWriteWhatTheModelWritesInEveryStyleAndConfiguration)
{
    for (unsigned int seed = 0; seed < 60; ++seed)
    {
        const CFields tree = CRandomTree(seed).make();
        CComparison comparison(seed % 4, ' ');
        for (unsigned int style = 0; style <= SAVE_ALL; ++style)
        {
            for (unsigned int scbc = 0; scbc < 16; ++scbc)
                ASSERT_NO_FATAL_FAILURE(comparison.compare(tree, scbc, static_cast<unsigned char>(style))) << seed;
        }
    }
}

TEST(LayoutModel, saversWriteWhatTheModelWritesForThousandsOfTrees)
{
    std::mt19937 random(1);
    CComparison blanks(2, ' ');
    CComparison tabs(1, '\t');
    for (unsigned int seed = 1000; seed < 13000; ++seed)
    {
        const CFields tree = CRandomTree(seed).make();
        const auto scbc = static_cast<unsigned int>(random() % 16);
        const auto style = static_cast<unsigned char>(random() % 4 == 0 ? random() % 64 : SAVE_ALL - random() % 2);
        ASSERT_NO_FATAL_FAILURE(blanks.compare(tree, scbc, style)) << seed;
        ASSERT_NO_FATAL_FAILURE(tabs.compare(tree, scbc, style)) << seed;
    }
}

}  // namespace
