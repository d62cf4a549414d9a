// Which items an application's keyword may stand in: what is refused is a mistake at its place.
#include <gtest/gtest.h>

#include <string>

#include "murv/layout.h"
#include "murv/murv.h"
#include "support/clean_registries.h"

namespace murv::tests
{

namespace
{

int agree(unsigned short, unsigned char, CFields&)
{
    return 1;
}

class CallbackItems : public testing::Test
{
protected:
    CallbackItems()
    {
        CFields::setGetIdxFP4ESK(3, [](const char*, unsigned char) { return 7; });
        CFields::setAllotPktFP4ESK(3, agree);
    }
    /// The mistakes of a layout with these members, each as `offset path: message`; the offset is that of the mark "^".
    static std::string mistakes4(std::string members)
    {
        std::string layout = R"({ "@" = "layout 1", )" + members + " }";
        const std::size_t mark = layout.find('^');
        if (mark != layout.npos)
            layout.erase(mark, 1);
        CLayout compiled;
        compiled.compile(layout);
        std::string text;
        for (const tLayoutMistake& mistake : compiled.getMistakes())
            text += (mistake.m_uiOffset == mark ? "" : "elsewhere ") + mistake.m_strPath + ": " + mistake.m_strMessage;
        return text;
    }

private:
    tCleanRegistries m_tClean;
};

}  // namespace

TEST_F(CallbackItems, itemsHaveAWidthAPrefixOrALengthThatTheCallbackGives)
{
    for (const char* const item :
         {"(ACF4mine) \"\"", "(BCF4mine) \"\"", "(ANF4mine) 0", "(BNF4mine) 0", "(ACV2mine) \"\"", "(ANV2mine) 0",
          "(BCV1mine) \"\"", "(ACF0mine) \"\"", "(BCF0mine) \"\"", "(ANF0mine) 0"})
        EXPECT_EQ(mistakes4("\"a\" = " + std::string(item)), "") << item;
}

TEST_F(CallbackItems, rulesMayEndThemInstead)
{
    EXPECT_EQ(mistakes4(R"("n" = (BNF1) 0, "@n" = "size of a", "a" = (ACF0mine) "", "b" = (ACF0mine) "",
                           "@b" = "ends \";\"", "c" = (ACF0mine) "", "@c" = "to end")"),
              "");
}

TEST_F(CallbackItems, lengthCodeDIsAMistake)
{
    EXPECT_EQ(mistakes4(R"("a" = (ACD0mine) ^"")"),
              "a: Write length code F and length 0, for which the callback gives the length, instead of D");
}

TEST_F(CallbackItems, binaryNumbersHaveAFixedWidth)
{
    EXPECT_EQ(mistakes4(R"("a" = (BNF0mine) ^0)"), "a: A binary number has 1 to 8 bytes");
    EXPECT_EQ(mistakes4(R"("a" = (BNV1mine) ^0)"),
              "a: BNV does not come back; write BNF, or BCV for bytes, or \"size of PART\" about a number");
}

TEST_F(CallbackItems, anElementOfAnUnknownLengthMayTakeNoBytes)
{
    EXPECT_EQ(mistakes4(R"("a" = ^[ (ACF0mine) "" ])"),
              "a: An element of \"a\" may take no bytes, so there could be any number");
    EXPECT_EQ(mistakes4(R"("a" = [ (ANF0mine) 0 ])"), "") << "a number has a digit";
}

TEST_F(CallbackItems, noRuleFillsThemIn)
{
    EXPECT_EQ(mistakes4(R"("a" = (ANF4mine) 0, "@a" = ^"size of b", "b" = (ACF4) "")"),
              "a: The callback of its keyword fills \"a\" in, so no rule does");
}

TEST_F(CallbackItems, theirPaddingNeedsAWidth)
{
    EXPECT_EQ(mistakes4(R"("a" = (ACF0mine) ^"", "@a" = "right")"), "a: Only items of fixed width have padding");
}

TEST_F(CallbackItems, theKindHasCallbacks)
{
    CFields::setAllotPktFP4ESK(3, nullptr);
    EXPECT_EQ(mistakes4(R"("a" = (ACF4mine) ^"")"),
              "a: The keyword of kind 3 has no callbacks; register them before the layout is compiled");
    CFields::setParsePktFP4ESK(3, agree);
    EXPECT_EQ(mistakes4(R"("a" = (ACF4mine) "")"), "");
}

TEST_F(CallbackItems, theirWidthIsKnownWhenItIsStated)
{
    CLayout layout;
    ASSERT_TRUE(layout.compile(R"({ "@" = "layout 1", "a" = (ACF4mine) "", "b" = (ACF0mine) "", "c" = (ACF1) "" })"));
    EXPECT_EQ(layout.getPart(1).m_ullMost, 4u);
    EXPECT_EQ(layout.getPart(2).m_ullOffset, 4u);
    EXPECT_EQ(layout.getPart(2).m_ullMost, CLayout::s_cullNoBound);
    EXPECT_EQ(layout.getPart(3).m_uiBase, CLayout::s_cuiNoPart);
}

}  // namespace murv::tests
