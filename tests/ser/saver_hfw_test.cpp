// tests/ser/saver_hfw_test.cpp - the human-friendly text as a string.
//
// Texts are exact. Trees are made by the interface, so nothing here leans on a loader.
#include <gtest/gtest.h>

#include <string>

#include "murv/saver.h"
#include "murv/text.h"
#include "tests/ser/deep_tree.h"
#include "tests/ser/saver_helpers.h"

namespace
{

using namespace murv;
using namespace murv::tests;

constexpr unsigned int s_cuiOneLine = SCBC_ONE_LINE_ARRAY | SCBC_SECOND_VALUE;

CFields fieldsOf(std::string_view name, const CFields& value, unsigned int id = 0)
{
    CFields root(DT_fields);
    add(root, name, value, id);
    return root;
}

std::string oneLine(const CFields& tree)
{
    return text4String(tree, SAVE_ALL, s_cuiOneLine);
}

/// Two members with comments on their lines.
std::string text4Trailing(const char* first, const char* second)
{
    CFields tree(DT_fields);
    add(tree, "a", 1).setComment(first, CP_trailing);
    add(tree, "b", 2).setComment(second, CP_trailing);
    return text4String(tree);
}

TEST(SaverHfw, writesOneMemberALine)
{
    EXPECT_EQ(text4String(sampleTree(), 63, 13),
              "{\n"
              "  \"a\" = 1,\n"
              "  \"flags\" =[ 1, 2, 3 ],\n"
              "  #7 \"sub\" =\n"
              "  {\n"
              "    \"x\" = 5\n"
              "  }\n"
              "}\n");
}

TEST(SaverHfw, leavesOutBlanksWithoutSpacing)
{
    EXPECT_EQ(text4String(sampleTree(), 62, 13),
              "{\n  \"a\"=1,\n  \"flags\"=[ 1,2,3 ],\n  #7 \"sub\"=\n  {\n    \"x\"=5\n  }\n}\n");
}

TEST(SaverHfw, leavesOutPartsThatTheStyleDoesNotAskFor)
{
    EXPECT_EQ(text4String(sampleTree(), 63 - SAVE_ID, 13),
              "{\n  \"a\" = 1,\n  \"flags\" =[ 1, 2, 3 ],\n  \"sub\" =\n  {\n    \"x\" = 5\n  }\n}\n");
    EXPECT_EQ(text4String(sampleTree(), 63 - SAVE_NAME, 9), "{\n  1,\n  [ 1, 2, 3 ],\n  #7 {\n    5\n  }\n}");
    EXPECT_EQ(text4String(sampleTree(), SAVE_VALUE, 8),
              "{\n  1,\n  [\n    1,\n    2,\n    3\n  ],\n  {\n    5\n  }\n}");
    EXPECT_EQ(text4String(sampleTree(), 0, 8), "{\n  ,\n  [\n    ,\n    ,\n    \n  ],\n  {\n    \n  }\n}");
}

TEST(SaverHfw, writesAnEmptyContainerAsItsBrackets)
{
    EXPECT_EQ(text4String(CFields(DT_fields)), "{}");
    EXPECT_EQ(text4String(CFields(DT_array)), "[]");
    EXPECT_EQ(text4String(CFields(DT_fields), 63, 12), "{}\n");
    EXPECT_EQ(text4String(CFields(DT_array), 63, 12), "[]\n");
    EXPECT_EQ(text4String(fieldsOf("a", DT_fields)), "{\n  \"a\" ={}\n}");
    EXPECT_EQ(text4String(fieldsOf("a", DT_array, 3)), "{\n  #3 \"a\" =[]\n}");
}

TEST(SaverHfw, writesAContainerWithoutMemberVectorAsEmpty)
{
    CFields fields;
    fields.removeAll(DT_fields);
    EXPECT_EQ(text4String(fields), "{}");
    CFields array;
    array.removeAll(DT_array);
    EXPECT_EQ(oneLine(arrayOf({array, fields})), "[ [], {} ]");
}

TEST(SaverHfw, writesAScalarRoot)
{
    EXPECT_EQ(text4String(CFields()), "");
    EXPECT_EQ(text4String(CFields(5)), "5");
    EXPECT_EQ(text4String(CFields("a\"b")), "\"a\\\"b\"");
    EXPECT_EQ(text4String(CFields(), 63, SCBC_NULL_WORD | SCBC_FINAL_NEWLINE), "null\n");
}

TEST(SaverHfw, writesTheRootsIdAndNameBeforeIt)
{
    CFields root(5);
    root.setID(3);
    EXPECT_EQ(text4String(root), "#3  5");
    root.setName("n");
    EXPECT_EQ(text4String(root), "#3 \"n\" = 5");
    EXPECT_EQ(text4String(root, SAVE_NAME | SAVE_VALUE, 8), "\"n\"=5");

    CFields tree = fieldsOf("x", 5);
    tree.setID(3);
    EXPECT_EQ(text4String(tree), "#3 {\n  \"x\" = 5\n}");
    tree.setName("n");
    EXPECT_EQ(text4String(tree), "#3 \"n\" =\n{\n  \"x\" = 5\n}");
}

TEST(SaverHfw, neverWritesAnIdOfZero)
{
    CFields tree = fieldsOf("x", 5);
    tree["x"].setID(0);
    EXPECT_EQ(text4String(tree), "{\n  \"x\" = 5\n}");
}

TEST(SaverHfw, quotesNamesWithTheirEscapes)
{
    CFields tree(DT_fields);
    tree.addChildRef("", 0, true).setName(std::string_view("a\0\"\xFF", 4));
    EXPECT_EQ(text4String(tree), "{\n  \"a\\x00\\\"\\xFF\" =\n}");
}

TEST(SaverHfw, writesEveryByteOfAString)
{
    const std::string bytes = everyByte();
    EXPECT_EQ(text4String(CFields(bytes)), ToQuotedEscapeString(bytes));
    const std::string large(100000, '\n');
    EXPECT_EQ(text4String(CFields(large)), ToQuotedEscapeString(large));
    const std::string clean(100000, 'c');
    EXPECT_EQ(text4String(fieldsOf("a", clean)), "{\n  \"a\" = \"" + clean + "\"\n}");
}

TEST(SaverHfw, indentsByTheWidth)
{
    const CFields tree = fieldsOf("a", fieldsOf("b", arrayOf({1})));
    EXPECT_EQ(text4String(tree, 63, 8, 0), "{\n\"a\" =\n{\n\"b\" =\n[\n1\n]\n}\n}");
    EXPECT_EQ(text4String(tree, 63, 8, 1), "{\n \"a\" =\n {\n  \"b\" =\n  [\n   1\n  ]\n }\n}");
    EXPECT_EQ(text4String(tree, 63, 8, 40), "{\n" + std::string(40, ' ') + "\"a\" =\n" + std::string(40, ' ') + "{\n" +
                                                std::string(80, ' ') + "\"b\" =\n" + std::string(80, ' ') + "[\n" +
                                                std::string(120, ' ') + "1\n" + std::string(80, ' ') + "]\n" +
                                                std::string(40, ' ') + "}\n}");
}

TEST(SaverHfw, aHugeWidthCostsNothingWithoutMembers)
{
    EXPECT_EQ(CSaver4SER_HFW(4294967295U).saving(CFields(DT_fields)), "{}");
}

TEST(SaverHfw, writesEveryArrayOneElementALineUnlessToldOtherwise)
{
    EXPECT_EQ(text4String(arrayOf({1, 2})), "[\n  1,\n  2\n]");
    EXPECT_EQ(oneLine(arrayOf({1, 2})), "[ 1, 2 ]");
}

TEST(SaverHfw, limitsOneLineArraysTo73CharactersWithASeparatorForEachElement)
{
    const std::string first23 = "[ 1" + [] {
        std::string rest;
        for (int i = 1; i < 23; ++i)
            rest += ", 1";
        return rest;
    }();
    EXPECT_EQ(oneLine(arrayOf(23, 1)), first23 + " ]");             // 2 * 23 + 2 + 23 = 71
    EXPECT_EQ(oneLine(arrayOf(24, 1)).substr(0, 8), "[\n  1,\n ");  // 74

    EXPECT_EQ(oneLine(arrayOf({std::string(67, 'a')})), "[ \"" + std::string(67, 'a') + "\" ]");      // 4 + 69 = 73
    EXPECT_EQ(oneLine(arrayOf({std::string(68, 'a')})), "[\n  \"" + std::string(68, 'a') + "\"\n]");  // 74
}

TEST(SaverHfw, countsTwoCharactersForASeparatorAlsoWithoutSpacing)
{
    const CFields array = arrayOf({std::string(32, 'a'), std::string(32, 'b')});  // 2 * 2 + 2 + 34 + 34 = 74
    EXPECT_EQ(text4String(array, 62, s_cuiOneLine).substr(0, 3), "[\n ");
    const CFields shorter = arrayOf({std::string(32, 'a'), std::string(31, 'b')});
    EXPECT_EQ(text4String(shorter, 62, s_cuiOneLine),
              "[ \"" + std::string(32, 'a') + "\",\"" + std::string(31, 'b') + "\" ]");
}

TEST(SaverHfw, writes25ElementsOneALineHoweverShort)
{
    CFields array(DT_array);
    for (int i = 0; i < 24; ++i)
        array.addArrayAt(CFields());
    EXPECT_EQ(oneLine(array).substr(0, 6), "[ , , ");
    array.addArrayAt(CFields());
    EXPECT_EQ(oneLine(array).substr(0, 6), "[\n  ,\n");
}

TEST(SaverHfw, anArrayOfEmptyContainersMayStandOnOneLine)
{
    EXPECT_EQ(oneLine(arrayOf({CFields(DT_array), CFields(DT_fields), 1})), "[ [], {}, 1 ]");
}

TEST(SaverHfw, anArrayThatHoldsAFilledContainerTakesLines)
{
    EXPECT_EQ(oneLine(arrayOf({1, arrayOf({2})})), "[\n  1,\n  [ 2 ]\n]");
    EXPECT_EQ(oneLine(arrayOf({fieldsOf("x", 5)})), "[\n  {\n    \"x\" = 5\n  }\n]");
}

TEST(SaverHfw, aNestedArrayDoesNotLendItsMeasureToTheOuterOne)
{
    const CFields inner = arrayOf({commented(1, "// c", CP_trailing), 2});
    EXPECT_EQ(oneLine(arrayOf({inner, inner, 3})),
              "[\n"
              "  [\n    1, // c\n    2\n  ],\n"
              "  [\n    1, // c\n    2\n  ],\n"
              "  3\n"
              "]");
}

TEST(SaverHfw, writesNoTextForEmptyElementsOfAOneLineArray)
{
    EXPECT_EQ(oneLine(arrayOf({1, CFields(), ""})), "[ 1, ,  ]");
    EXPECT_EQ(text4String(arrayOf({CFields()}), 63, 11), "[ null ]");
}

TEST(SaverHfw, aOneLineArrayStandsAfterNameOrIdWithoutBlank)
{
    EXPECT_EQ(oneLine(fieldsOf("f", arrayOf({1}))), "{\n  \"f\" =[ 1 ]\n}");
    EXPECT_EQ(oneLine(fieldsOf("", arrayOf({1}), 4)), "{\n  #4 [ 1 ]\n}");
    EXPECT_EQ(text4String(fieldsOf("", arrayOf({1}), 4)), "{\n  #4 [\n    1\n  ]\n}");
}

TEST(SaverHfw, aCommentOnAnElementGivesEachElementALine)
{
    EXPECT_EQ(oneLine(arrayOf({1, commented(2, "// two", CP_trailing), 3})), "[\n  1,\n  2, // two\n  3\n]");
    EXPECT_EQ(oneLine(arrayOf({commented(1, "// one", CP_before)})), "[\n  // one\n  1\n]");
}

TEST(SaverHfw, aCommentCountsForTheLayoutAlsoWhenItIsNotWritten)
{
    const CFields array = arrayOf({1, commented(2, "// two", CP_trailing)});
    EXPECT_EQ(text4String(array, 63 - SAVE_COMMENT, s_cuiOneLine), "[\n  1,\n  2\n]");
    EXPECT_EQ(oneLine(arrayOf({commented(1, "", CP_after)})), "[\n  1\n]");
}

TEST(SaverHfw, measuredElementsEndWithALineFeedOfTheirOwn)
{
    const CFields array = arrayOf({commented(1, "// after", CP_after)});
    EXPECT_EQ(oneLine(array), "[\n  1\n// after\n\n]");
    EXPECT_EQ(text4String(array), "[\n  1\n// after\n]");
}

TEST(SaverHfw, measuredElementsHaveTheBlankAfterAPacketExpressionOnly)
{
    const CFields array = arrayOf({withItem(1, itemOf(4)), commented(withItem("", itemOf(4)), "// c", CP_trailing)});
    EXPECT_EQ(oneLine(array), "[\n  (ACF4) 1,\n  (ACF4)  // c\n]");
    EXPECT_EQ(oneLine(arrayOf({withItem(1, itemOf(4))})), "[ (ACF4) 1 ]");
}

TEST(SaverHfw, measuresNeverOutliveTheirSaving)
{
    CSaver4SER_HFW saver;
    saver.setSCBC(s_cuiOneLine);
    EXPECT_EQ(saver.saving(arrayOf({commented(1, "// c", CP_trailing)})), "[\n  1 // c\n]");
    saver.setSCBC(SCBC_SECOND_VALUE);
    EXPECT_EQ(saver.saving(arrayOf({7, 8})), "[\n  7,\n  8\n]");
}

TEST(SaverHfw, writesANullMemberWithoutBlank)
{
    EXPECT_EQ(text4String(fieldsOf("a", CFields())), "{\n  \"a\" =\n}");
    EXPECT_EQ(text4String(fieldsOf("a", CFields()), 63, SCBC_NULL_WORD), "{\n  \"a\" = null\n}");
    EXPECT_EQ(text4String(fieldsOf("a", CFields()), 62, SCBC_NULL_WORD), "{\n  \"a\"=null\n}");
}

TEST(SaverHfw, aLastMemberThatHoldsAnEmptyStringLeavesItsLineOpen)
{
    EXPECT_EQ(text4String(fieldsOf("a", "")), "{\n  \"a\" = }");
    EXPECT_EQ(text4String(fieldsOf("a", ""), 62, 8), "{\n  \"a\"=\n}");
    EXPECT_EQ(text4String(fieldsOf("", "", 5)), "{\n  #5  }");
}

TEST(SaverHfw, anEmptyStringBeforeOtherMembersIsFollowedByItsComma)
{
    CFields tree = fieldsOf("a", "");
    add(tree, "b", 1);
    EXPECT_EQ(text4String(tree), "{\n  \"a\" = ,\n  \"b\" = 1\n}");
}

TEST(SaverHfw, anEmptyLastElementIsFollowedByALineFeed)
{
    EXPECT_EQ(text4String(arrayOf({1, ""})), "[\n  1,\n  \n]");
    EXPECT_EQ(text4String(arrayOf({CFields()})), "[\n  \n]");
}

TEST(SaverHfw, membersOfWhichNothingIsWrittenEndWithALineFeed)
{
    EXPECT_EQ(text4String(fieldsOf("", CFields())), "{\n  \n}");
    CFields tree = fieldsOf("", 1);
    add(tree, "", CFields());
    EXPECT_EQ(text4String(tree), "{\n  1,\n  }");
}

TEST(SaverHfw, unnamedContainersStandOnTheirIndentation)
{
    EXPECT_EQ(text4String(fieldsOf("", fieldsOf("x", 5))), "{\n  {\n    \"x\" = 5\n  }\n}");
    EXPECT_EQ(text4String(arrayOf({arrayOf({1})})), "[\n  [\n    1\n  ]\n]");
}

TEST(SaverHfw, membersShareTheMemoryOfWhatWasWritten)
{
    CFields tree = fieldsOf("a", 1);
    add(tree, "", 2);
    EXPECT_EQ(text4String(tree), "{\n  \"a\" = 1,\n   2\n}");
    CFields unnamed = fieldsOf("", 2);
    EXPECT_EQ(text4String(unnamed), "{\n  2\n}");
}

TEST(SaverHfw, elementsForgetWhatWasWrittenBefore)
{
    EXPECT_EQ(text4String(arrayOf({withItem(1, itemOf(4)), 2})), "[\n  (ACF4) 1,\n  2\n]");
}

TEST(SaverHfw, aCommentOnTheLineFollowsTheComma)
{
    EXPECT_EQ(text4Trailing("// note", "// last"), "{\n  \"a\" = 1, // note\n  \"b\" = 2 // last\n}");
}

TEST(SaverHfw, commentsBeforeAreIndentedWhereALineBeginsWithASlash)
{
    CFields tree(DT_fields);
    add(tree, "a", 1).setComment("// one\n// two\nthree\n\n/ four", CP_before);
    EXPECT_EQ(text4String(tree), "{\n  // one\n  // two\nthree\n\n  / four\n  \"a\" = 1\n}");
}

TEST(SaverHfw, commentsAfterStandOnLinesOfTheirOwn)
{
    CFields tree(DT_fields);
    CFields& a = add(tree, "a", 1);
    a.setComment("// t", CP_trailing);
    a.setComment("// after", CP_after);
    add(tree, "b", fieldsOf("x", 5)).setComment("// behind b", CP_after);
    EXPECT_EQ(text4String(tree), "{\n  \"a\" = 1, // t\n// after\n  \"b\" =\n  {\n    \"x\" = 5\n  }\n// behind b\n}");
}

TEST(SaverHfw, theRootsCommentsStandAroundIt)
{
    CFields root = fieldsOf("x", 5);
    root.setComment("// before", CP_before);
    root.setComment("// trailing", CP_trailing);
    root.setComment("// after", CP_after);
    EXPECT_EQ(text4String(root, 63, 12), "// before\n{\n  \"x\" = 5\n} // trailing\n// after\n\n");
    EXPECT_EQ(text4String(root, 63 - SAVE_COMMENT, 8), "{\n  \"x\" = 5\n}");
}

TEST(SaverHfw, aCommentThatEndsInABlankIsFollowedByItsLineBreak)
{
    EXPECT_EQ(text4Trailing("// note ", "// note "), "{\n  \"a\" = 1, // note \n  \"b\" = 2 // note \n}");
}

TEST(SaverHfw, aCommentThatEndsInALineFeedNeedsNoOther)
{
    CFields tree(DT_fields);
    add(tree, "a", 1).setComment("// note\n\n", CP_trailing);  // one line feed is dropped when it is set
    EXPECT_EQ(text4String(tree), "{\n  \"a\" = 1 // note\n}");
}

TEST(SaverHfw, anEmptyCommentWritesNothing)
{
    CFields tree(DT_fields);
    CFields& a = add(tree, "a", 1);
    for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
        a.setComment("", position);
    EXPECT_EQ(text4String(tree), "{\n  \"a\" = 1\n}");
}

TEST(SaverHfw, reportsInvalidKeywordsAndWritesOn)
{
    CSaver4SER_HFW saver;
    EXPECT_EQ(saver.saving(fieldsOf("a", CFields())["a"]), "\"a\" =");
    EXPECT_FALSE(saver.isError());
    CFields tree(DT_fields);
    add(tree, "a", 1).pkt_SetExp(itemOf(0, 5));
    add(tree, "b", 2);
    EXPECT_EQ(saver.saving(tree), "{\n  \"a\" = (ACF0) 1,\n  \"b\" = 2\n}");
    EXPECT_EQ(saver.getLastErrCode(), -991);
    EXPECT_EQ(withoutLine(saver.getLastErrMsg()),
              "[murv::ISaver::makePEI#0] '5' was invalid index of internal keyword");
}

TEST(SaverHfw, clearsItsErrorWhenASavingStarts)
{
    CSaver4SER_HFW saver;
    saver.saving(withItem(1, itemOf(0, 5)));
    ASSERT_TRUE(saver.isError());
    saver.saving(CFields(1));
    EXPECT_FALSE(saver.isError());
}

TEST(SaverHfw, aCopiedSaverHasTheSameConfiguration)
{
    CSaver4SER_HFW saver(1);
    saver.setSCBC(SCBC_FINAL_NEWLINE);
    saver.saving(sampleTree());
    CSaver4SER_HFW copy(saver);
    EXPECT_EQ(copy.saving(arrayOf({1})), "[\n 1\n]\n");
    CSaver4SER_HFW assigned;
    assigned.saving(arrayOf({5}));
    assigned = copy;
    EXPECT_EQ(assigned.saving(arrayOf({1})), "[\n 1\n]\n");
    EXPECT_EQ(saver.saving(arrayOf({1})), "[\n 1\n]\n");
}

TEST(SaverHfw, startsWithTheSecondValueBitAndTwoBlanks)
{
    CSaver4SER_HFW saver;
    EXPECT_EQ(saver.getSCBC(), 8U);
    EXPECT_EQ(saver.saving(arrayOf({1})), "[\n  1\n]");
}

TEST(SaverHfw, savesALargeArrayWhoseMembersLieInManyBlocks)
{
    CFields array(DT_array);
    std::string expected = "[";
    for (int i = 0; i < 5000; ++i)
    {
        array.addArrayAt(i);
        expected += (i == 0 ? "\n  " : ",\n  ") + std::to_string(i);
    }
    EXPECT_EQ(text4String(array), expected + "\n]");
}

TEST(SaverHfw, savesATreeOfAMillionLevelsOnASmallStack)
{
    constexpr unsigned int levels = 1000000;
    onSmallStack([] {
        CFields tree = nestedArrays(levels);
        const std::string text = CSaver4SER_HFW(0).saving(tree);
        EXPECT_EQ(text.size(), 4 * levels - 2);  // "[\n" and "\n]" around the innermost "[]"
        EXPECT_EQ(text.substr(0, 6), "[\n[\n[\n");
        EXPECT_EQ(text.substr(text.size() - 6), "\n]\n]\n]");
        EXPECT_EQ(CSaver4SER_HFW(1).saving(nestedArrays(3)), "[\n [\n  []\n ]\n]");
    });
}

}  // namespace
