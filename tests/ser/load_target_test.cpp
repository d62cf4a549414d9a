// tests/ser/load_target_test.cpp - what a load leaves of the node that it is given.
#include <gtest/gtest.h>

#include "tests/ser/load_helpers.h"
#include "tests/support/thrown.h"

using namespace murv;
using namespace murv::tests;

namespace
{
CFields target()
{
    CFields node(DT_fields);
    node.addChildRef("old") = 1;
    node.setName("kept");
    node.setID(9);
    node.setComment("/*kept*/", CP_before);
    node.setComment("//kept", CP_trailing);
    node.setComment("//too", CP_after);
    tPacketExpInfo pei{};
    pei.m_uiLength = 8;
    node.pkt_SetExp(pei);
    return node;
}

bool loadInto(CFields& node, std::string_view text, unsigned int flags = s_cuiUsual)
{
    CLoader4SER loader(flags);
    return loader.loading(text, node);
}

constexpr const char* s_cpKept = "<0:/*kept*/><1://kept><2://too>";
}  // namespace

TEST(LoadTarget, valueIsReplaced)
{
    CFields node = target();
    EXPECT_TRUE(loadInto(node, "{\"new\"=2}"));
    EXPECT_EQ(show(node), std::string("#9 kept={new=2}") + s_cpKept);
    EXPECT_TRUE(loadInto(node, "5"));
    EXPECT_EQ(show(node), std::string("#9 kept=5") + s_cpKept);
    EXPECT_TRUE(loadInto(node, "[1]"));
    EXPECT_EQ(show(node), std::string("#9 kept=[1]") + s_cpKept);
    EXPECT_TRUE(loadInto(node, "\"t\""));
    EXPECT_EQ(show(node), std::string("#9 kept=\"t\"") + s_cpKept);
}

TEST(LoadTarget, keepsItsPacketExpressionUnlessThereIsAnother)
{
    CFields node = target();
    EXPECT_TRUE(loadInto(node, "7"));
    EXPECT_EQ(+node.pkt_GetExp().m_uiLength, 8u);
    EXPECT_TRUE(loadInto(node, "(ACF5) 7"));
    EXPECT_EQ(+node.pkt_GetExp().m_uiLength, 5u);
}

TEST(LoadTarget, takesWhatTheDocumentStates)
{
    CFields node = target();
    EXPECT_TRUE(loadInto(node, "/*n*/ #7 \"new\" = 5 //t\n//a"));
    EXPECT_EQ(show(node), "#7 new=5<0:/*n*/><1://t><2://a>");
}

TEST(LoadTarget, mayBeAMemberOfATree)
{
    CFields tree(DT_fields);
    tree.addChildRef("a") = 1;
    tree.addChildRef("b") = 2;
    EXPECT_TRUE(loadInto(tree["a"], "{\"x\"=[1,2]}"));
    EXPECT_EQ(show(tree), "{a={x=[1,2]},b=2}");
}

TEST(LoadTarget, losesItsSecondValue)
{
    CFields node(1);
    node.setVK(VK_fix);
    EXPECT_TRUE(loadInto(node, "5"));
    EXPECT_EQ(show(node), "5");
    EXPECT_TRUE(node.isNull(VK_fix));
    node.setValue(3, VK_fix);
    EXPECT_TRUE(loadInto(node, "[5]"));
    EXPECT_TRUE(node.isNull(VK_fix));
}

TEST(LoadTarget, withoutAVectorIsReadInto)
{
    CFields node(DT_fields);
    node.removeAll(DT_fields);
    EXPECT_TRUE(loadInto(node, "{\"a\"=1}"));
    EXPECT_EQ(show(node), "{a=1}");
    node.removeAll(DT_array);
    EXPECT_FALSE(loadInto(node, "@"));
    EXPECT_EQ(show(node), "[]");
}

TEST(LoadTarget, thatIsAContainerIsEmptyAfterAFailure)
{
    CFields node = target();
    EXPECT_FALSE(loadInto(node, "{\"new\"=2,@"));
    EXPECT_EQ(show(node), std::string("#9 kept={}") + s_cpKept);
    EXPECT_EQ(node.getOffsetStart(), 0);
    EXPECT_EQ(node.getOffsetEnd(), 0);
    CFields other = target();
    EXPECT_FALSE(loadInto(other, "@"));
    EXPECT_EQ(other.getChildCount(), 0u);
    CFields array;
    EXPECT_FALSE(loadInto(array, "[1,2,[3"));
    EXPECT_EQ(show(array), "[]");
}

TEST(LoadTarget, thatIsAScalarKeepsItsValueWhenNoneWasRead)
{
    CFields node(7);
    EXPECT_FALSE(loadInto(node, "@"));
    EXPECT_EQ(show(node), "7");
    EXPECT_FALSE(loadInto(node, "\"name\" = @"));
    EXPECT_EQ(show(node), "name=7");
}

TEST(LoadTarget, isEmptyAfterTheDepthException)
{
    CFields node(7);
    EXPECT_EQ(thrown([&] { loadInto(node, "{\"a\"=1,\"b\"=" + repeated("[", 1001)); }),
              "[murv::CLoader4SER::loadFieldInfo#0] Exceeded s_cnStackDepthLimit");
    EXPECT_EQ(show(node), "{}");
    EXPECT_TRUE(loadInto(node, "{\"a\"=1}"));
    EXPECT_EQ(show(node), "{a=1}");
}

TEST(LoadTarget, ofALoaderThatThrewBeforeIsReadByTheRules)
{
    CLoader4SER loader;
    CFields first;
    EXPECT_THROW(loader.loading("[1,/*c*/" + repeated("[{#1 ", 600), first), CLogicError);
    CFields second;
    EXPECT_TRUE(loader.loading("{#1 2,\"a\"={#1 3}}", second));
    EXPECT_EQ(show(second), "{#1 2,a={#1 3}}");
    EXPECT_EQ(show(first), "[]");
}

TEST(LoadTarget, outlivesLoaderAndData)
{
    CFields node;
    {
        CLoader4SER loader;
        std::string text = "{\"a\"=\"text\",/*c*/\"b\"=[\"x\\n\"]}";
        EXPECT_TRUE(loader.loading(text, node));
        text.assign(text.size(), '!');
    }
    EXPECT_EQ(show(node), "{a=\"text\"<1:/*c*/>,b=[\"x\\10\"]}");
}

TEST(LoadTarget, ofOneLoaderDoesNotMeetThatOfTheNext)
{
    CLoader4SER loader;
    CFields first;
    EXPECT_TRUE(loader.loading("{\"a\"={\"b\"=1},#7 5} // c", first));
    {
        CFields gone;
        EXPECT_TRUE(loader.loading("{#7 {#8 1}}", gone));
    }
    CFields second;
    EXPECT_TRUE(loader.loading("// d\n{#7 6,#8 7} // e", second));
    EXPECT_EQ(show(first), "{a={b=1},#7 5}<1:// c>");
    EXPECT_EQ(show(second), "{#7 6,#8 7}<0:// d><1:// e>");
}
