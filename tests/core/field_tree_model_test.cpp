// tests/core/field_tree_model_test.cpp - whole trees against simple models: copying, moving, counting, comparing.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "murv/fields.h"
#include "tests/support/tree_text.h"

namespace
{

using namespace murv;
using murv::tests::describe;

/// A value in the model's own words.
struct tModel
{
    E_DataType m_eType = DT_null;
    long long m_llNumber = 0;
    std::string m_strText;
    std::vector<tModel> m_vMembers;
};

int order(const tModel& a, const tModel& b)
{
    if (a.m_eType != b.m_eType)
        return a.m_eType < b.m_eType ? -1 : 1;
    if (a.m_vMembers.size() != b.m_vMembers.size())
        return a.m_vMembers.size() < b.m_vMembers.size() ? -1 : 1;
    for (std::size_t i = 0; i < a.m_vMembers.size(); ++i)
    {
        if (const int found = order(a.m_vMembers[i], b.m_vMembers[i]))
            return found;
    }
    if (a.m_llNumber != b.m_llNumber)
        return a.m_llNumber < b.m_llNumber ? -1 : 1;
    const int text = a.m_strText.compare(b.m_strText);
    return text < 0 ? -1 : text > 0 ? 1 : 0;
}

unsigned int countBelow(const tModel& node)
{
    unsigned int count = 0;
    for (const tModel& member : node.m_vMembers)
        count += 1 + countBelow(member);
    return count;
}

class CTreeMaker
{
public:
    explicit CTreeMaker(unsigned int seed) : m_tRandom(seed)
    {
    }

    tModel make(int depth)
    {
        tModel node;
        const int type = pick(depth > 0 ? 8 : 6);
        node.m_eType = type >= 6   ? static_cast<E_DataType>(type - 5)
                       : type == 0 ? DT_null
                                   : static_cast<E_DataType>(type + 2);
        if (node.m_eType == DT_array || node.m_eType == DT_fields)
        {
            for (int count = pick(pick(6) == 0 ? 40 : 5); count > 0; --count)
                node.m_vMembers.push_back(make(depth - 1));
        }
        else if (node.m_eType == DT_codelist)
        {
            for (int length = pick(4); length > 0; --length)
                node.m_strText += static_cast<char>(pick(3) == 0 ? 0xE4 : pick(3));
        }
        else if (node.m_eType != DT_null)
            node.m_llNumber = node.m_eType == DT_bool ? pick(2) : node.m_eType == DT_uint ? pick(3) : pick(5) - 2;
        return node;
    }

    void build(CFields& node, const tModel& model)
    {
        decorate(node);
        switch (model.m_eType)
        {
        case DT_bool: node.setValue(model.m_llNumber != 0); break;
        case DT_sint: node.setValue(model.m_llNumber); break;
        case DT_uint: node.setValue(static_cast<unsigned long long>(model.m_llNumber)); break;
        case DT_double: node.setValue(static_cast<double>(model.m_llNumber) / 2); break;
        case DT_codelist: node.setValue(model.m_strText); break;
        default: node.setValue(model.m_eType); break;
        }
        if (node.isNull() || (pick(8) == 0 && !node.isArray() && !node.isField()))
        {
            node.setVK(pick(2) == 0 ? VK_fix : VK_valid);
            decorate(node);
        }
        for (const tModel& member : model.m_vMembers)
            build(node.isArray() ? node.addArrayAt(CFields()) : node.addChildRef(randomName(), 0, true), member);
    }

    int pick(int below)
    {
        return static_cast<int>(m_tRandom() % static_cast<std::uint32_t>(below));
    }

private:
    std::string randomName()
    {
        return pick(5) == 0 ? std::string() : "n" + std::to_string(pick(60));
    }
    void decorate(CFields& node)
    {
        if (pick(4) == 0)
            node.setID(static_cast<unsigned int>(pick(100)));
        if (pick(6) == 0)
            node.setComment("// " + std::to_string(pick(9)), static_cast<E_CommentPosition>(pick(3)));
        if (pick(6) == 0)
            node.setOffsetEnd(pick(9));
        if (pick(8) == 0)
            node.pkt_SetOSA4User(this);
        tPacketExpInfo pei{};
        pei.m_uiLength = static_cast<unsigned int>(pick(3));
        node.pkt_SetExp(pei);
    }

    std::mt19937 m_tRandom;
};

TEST(TreeModelRandom, comparesAndCountsLikeTheModel)
{
    CTreeMaker maker(1);
    tModel before;
    CFields beforeTree;
    int equal = 0;
    for (int i = 0; i < 4000; ++i)
    {
        const tModel model = maker.pick(4) == 0 ? before : maker.make(4);
        CFields tree;
        maker.build(tree, model);
        ASSERT_EQ(countBelow(model), tree.getMemberCount());
        ASSERT_EQ(model.m_vMembers.size(), tree.getChildCount());
        const int expected = order(model, before);
        ASSERT_EQ(expected, tree.compare(beforeTree));
        ASSERT_EQ(-expected, beforeTree.compare(tree));
        ASSERT_EQ(expected == 0, tree == beforeTree);
        ASSERT_EQ(expected < 0, tree < beforeTree);
        equal += expected == 0 ? 1 : 0;
        before = model;
        beforeTree = std::move(tree);
    }
    EXPECT_GT(equal, 500);
}

TEST(TreeModelRandom, copiesAreWholeAndApart)
{
    CTreeMaker maker(2);
    for (int i = 0; i < 2000; ++i)
    {
        CFields tree;
        maker.build(tree, maker.make(4));
        const std::string expected = describe(tree);
        CFields copy(tree);
        ASSERT_EQ(expected, describe(copy));
        ASSERT_TRUE(copy == tree);
        CFields field;
        ASSERT_TRUE(field.setField(tree));
        ASSERT_EQ(expected, describe(field));
        tree.removeAll(DT_null);
        ASSERT_EQ(expected, describe(copy));
        CFields moved(std::move(copy));
        ASSERT_EQ(expected, describe(moved));
        ASSERT_EQ(describe(CFields()), describe(copy));  // NOLINT(bugprone-use-after-move)
        CFields array;
        array.addArrayAt(std::move(moved));
        ASSERT_EQ(expected, describe(array[0]));
        CFields out;
        ASSERT_TRUE(array.removeChildAt(0, &out));
        ASSERT_EQ(expected, describe(out));
    }
}

TEST(TreeModelRandom, everyIdIsFoundWhereThePreOrderWalkMeetsItFirst)
{
    CTreeMaker maker(3);
    for (int i = 0; i < 300; ++i)
    {
        CFields tree;
        maker.build(tree, maker.make(4));
        std::vector<const CFields*> first(100, nullptr);
        std::vector<const CFields*> open{&tree};
        while (!open.empty())
        {
            const CFields* const node = open.back();
            open.pop_back();
            if (node->getID() != 0 && first[node->getID()] == nullptr)
                first[node->getID()] = node;
            for (unsigned int at = node->getChildCount(); at-- > 0;)
                open.push_back(&node->getChildAt(at));
        }
        for (unsigned int id = 1; id < 100; ++id)
            ASSERT_EQ(first[id], tree.findID(id));
    }
}

}  // namespace
