// tests/document/document_test.cpp - a change rewrites one member, and everything else stays as it was.
#include <gtest/gtest.h>

#include <filesystem>
#include <limits>

#include "murv/document.h"
#include "murv/edit.h"
#include "tests/support/failing_malloc.h"
#include "tests/support/processor_seconds.h"
#include "tests/support/subprocess.h"

namespace murv::tests
{

namespace
{

constexpr const char* s_cpService =
    "// The service.\n"
    "\n"
    "{\n"
    "  \"port\" = 0080, // not yet 443\n"
    "  \"rate\" = 1.50,\n"
    "\n"
    "  // Who may call.\n"
    "  \"hosts\" = [ \"a\",\"b\" ],\n"
    "  \"limits\" =\n"
    "  {\n"
    "    \"depth\" = (ANF4) 12 // levels\n"
    "  }\n"
    "}\n";

CDocument loaded(std::string_view text)
{
    CDocument document;
    EXPECT_TRUE(document.load(text)) << text;
    return document;
}

/// The text after one change.
template <typename tChange>
std::string changed(std::string_view text, tChange&& change)
{
    CDocument document = loaded(text);
    change(document);
    return document.text();
}

std::string replaced(std::string text, const std::string& old, const std::string& fresh)
{
    const std::size_t at = text.find(old);
    EXPECT_NE(at, std::string::npos) << old;
    return text.replace(at, old.size(), fresh);
}

/// The message of the CException that the action throws.
template <typename tAction>
std::string refusal(tAction&& action)
{
    try
    {
        action();
    }
    catch (const CException& error)
    {
        return error.what();
    }
    return "(nothing was thrown)";
}

}  // namespace

TEST(Document, textIsUnchangedUntilSomethingChanges)
{
    EXPECT_EQ(loaded(s_cpService).text(), s_cpService);
    EXPECT_EQ(loaded("/**/ [1,, // x\r\n (ANF4  y) 2 ] rest").text(), "/**/ [1,, // x\r\n (ANF4  y) 2 ] rest");
}

TEST(Document, setChangesTheValueAlone)
{
    EXPECT_EQ(changed(s_cpService, [](CDocument& d) { d.set("port", 443); }), replaced(s_cpService, "0080", "443"));
    EXPECT_EQ(changed(s_cpService, [](CDocument& d) { d.set("limits.depth", 13); }),
              replaced(s_cpService, "(ANF4) 12", "(ANF4) 13"));
    EXPECT_EQ(changed(s_cpService, [](CDocument& d) { d.set("hosts[1]", "Zürich"); }),
              replaced(s_cpService, "\"b\"", "\"Zürich\""));
}

TEST(Document, settingWhatIsThereKeepsItsSpelling)
{
    EXPECT_EQ(changed(s_cpService,
                      [](CDocument& d) {
                          d.set("rate", 1.5);
                          d.set("port", 80);
                          d.set("hosts", array({"a", "b"}));
                      }),
              s_cpService);
}

TEST(Document, newMembersAreLaidOutLikeTheirNeighbours)
{
    EXPECT_EQ(changed(s_cpService, [](CDocument& d) { d.set("limits.width", 7); }),
              replaced(s_cpService, "12 // levels\n", "12, // levels\n    \"width\" = 7\n"));
    EXPECT_EQ(changed("{\"a\"=1,\"b\"={\"c\"=2}}", [](CDocument& d) { d.set("b.d", 3); }),
              "{\"a\"=1,\"b\"={\"c\"=2, \"d\"=3}}");
    EXPECT_EQ(changed("{\r\n\t\"a\" = 1\r\n}\r\n",
                      [](CDocument& d) {
                          d.set("b", array({1, 2}));
                      }),
              "{\r\n\t\"a\" = 1,\r\n\t\"b\" = [1, 2]\r\n}\r\n");
}

TEST(Document, newContainersOpenAsOthersDo)
{
    EXPECT_EQ(changed("{\n  \"a\" = {\n    \"x\" = 1\n  }\n}", [](CDocument& d) { d.set("b.y", 2); }),
              "{\n  \"a\" = {\n    \"x\" = 1\n  },\n  \"b\" = {\n    \"y\" = 2\n  }\n}");
    EXPECT_EQ(changed("{\n  \"a\" = 1\n}", [](CDocument& d) { d.set("b.y.z", 2); }),
              "{\n  \"a\" = 1,\n  \"b\" =\n  {\n    \"y\" =\n    {\n      \"z\" = 2\n    }\n  }\n}");
}

TEST(Document, valuesBecomeContainersAndContainersValues)
{
    EXPECT_EQ(changed("{\n  \"a\" = 1, // c\n  \"b\" = 2\n}",
                      [](CDocument& d) {
                          d.set("a", fields({{"x", 1}}));
                      }),
              "{\n  \"a\" =\n  {\n    \"x\" = 1\n  }, // c\n  \"b\" = 2\n}");
    EXPECT_EQ(
        changed("{\n  \"a\" =\n  {\n    \"x\" = 1\n  }, // c\n  \"b\" = 2\n}", [](CDocument& d) { d.set("a", 5); }),
        "{\n  \"a\" = 5, // c\n  \"b\" = 2\n}");
    EXPECT_EQ(changed("{ \"a\" = { \"b\" = 1 } }",
                      [](CDocument& d) {
                          d.set("a", array({1, fields({{"c", 2}})}));
                      }),
              "{ \"a\" = [1, { \"c\" = 2 }] }");
}

TEST(Document, emptyContainersTakeTheirFirstMember)
{
    EXPECT_EQ(changed("{}", [](CDocument& d) { d.set("a", 1); }), "{\n  \"a\" = 1\n}");
    EXPECT_EQ(changed("{\n  \"a\" = {},\n  \"b\" = []\n}",
                      [](CDocument& d) {
                          d.set("a.x", 1);
                          d.set("b[0]", 2);
                          d.set("b[1]", 3);
                      }),
              "{\n  \"a\" = { \"x\" = 1 },\n  \"b\" = [2, 3]\n}");
    EXPECT_EQ(changed("{\n  \"a\" =\n  { // none yet\n  }\n}", [](CDocument& d) { d.set("a.x", 1); }),
              "{\n  \"a\" =\n  { // none yet\n    \"x\" = 1\n  }\n}");
}

TEST(Document, missingValuesAreFilledIn)
{
    EXPECT_EQ(changed("{\"a\" =, \"b\"=}", [](CDocument& d) { d.set("a", 1); }), "{\"a\" = 1, \"b\"=}");
    EXPECT_EQ(changed("[1,,3,]", [](CDocument& d) { d.set("[1]", 2); }), "[1, 2,3,]");
    EXPECT_EQ(changed("[1,]", [](CDocument& d) { d.set("[2]", 3); }), "[1,, 3]");
}

TEST(Document, removeTakesTheCommentsOfAMemberWithIt)
{
    EXPECT_EQ(changed(s_cpService, [](CDocument& d) { d.remove("port"); }),
              replaced(s_cpService, "  \"port\" = 0080, // not yet 443\n", ""));
    EXPECT_EQ(changed(s_cpService, [](CDocument& d) { d.remove("hosts"); }),
              replaced(s_cpService, "  // Who may call.\n  \"hosts\" = [ \"a\",\"b\" ],\n", ""));
}

TEST(Document, removeKeepsCommentsThatStandApart)
{
    EXPECT_EQ(changed("{\n  // Section\n\n  // a\n  \"a\" = 1,\n  \"b\" = 2\n}", [](CDocument& d) { d.remove("a"); }),
              "{\n  // Section\n\n  \"b\" = 2\n}");
    EXPECT_EQ(changed("{\n  \"a\" = 1,\n  // Section\n\n  // b\n  \"b\" = 2\n}", [](CDocument& d) { d.remove("b"); }),
              "{\n  \"a\" = 1\n  // Section\n}");
}

TEST(Document, removeOfTheLastMemberTakesTheCommaBeforeIt)
{
    EXPECT_EQ(changed("[1, /* one */ 2]", [](CDocument& d) { d.remove("[1]"); }), "[1]");
    EXPECT_EQ(changed("{\n  \"a\" = 1, // one\n  \"b\" = 2 // two\n}", [](CDocument& d) { d.remove("b"); }),
              "{\n  \"a\" = 1 // one\n}");
    EXPECT_EQ(changed("{\n  \"a\" = 1\n}", [](CDocument& d) { d.remove("a"); }), "{}");
    EXPECT_EQ(changed("[,5]", [](CDocument& d) { d.remove("[1]"); }), "[null]");
    EXPECT_EQ(changed("[5,]", [](CDocument& d) { d.remove("[0]"); }), "[null]");
}

TEST(Document, insertGoesBetweenMembers)
{
    EXPECT_EQ(changed("[1, 2]", [](CDocument& d) { d.insert(".", 0, 0); }), "[0, 1, 2]");
    EXPECT_EQ(changed("{\n  \"a\" = 1,\n  // b\n  \"b\" = 2\n}", [](CDocument& d) { d.insert(".", 1, 9, "n"); }),
              "{\n  \"a\" = 1,\n  \"n\" = 9,\n  // b\n  \"b\" = 2\n}");
    EXPECT_EQ(changed("{\n  \"a\" = 1\n}", [](CDocument& d) { d.insert(".", 1, 9, "n"); }),
              "{\n  \"a\" = 1,\n  \"n\" = 9\n}");
}

TEST(Document, renameChangesTheNameAlone)
{
    EXPECT_EQ(changed(s_cpService, [](CDocument& d) { d.rename("limits", "most \"x\""); }),
              replaced(s_cpService, "\"limits\"", "\"most \\\"x\\\"\""));
    EXPECT_EQ(changed("{ #7 5, 6 }", [](CDocument& d) { d.rename("[0]", "a"); }), "{ #7 \"a\" = 5, 6 }");
    EXPECT_EQ(changed("{}", [](CDocument& d) { d.rename(".", "root"); }), "\"root\" = {}");
}

TEST(Document, commentsStandWhereTheyBelong)
{
    EXPECT_EQ(changed("{\n  \"a\" = 1,\n  \"b\" = 2\n}",
                      [](CDocument& d) {
                          d.comment("a", "One.\nTwo.");
                          d.comment("a", "three", CP_trailing);
                          d.comment("b", "four", CP_trailing);
                      }),
              "{\n  // One.\n  // Two.\n  \"a\" = 1, // three\n  \"b\" = 2 // four\n}");
    EXPECT_EQ(changed("[1, 2]",
                      [](CDocument& d) {
                          d.comment("[0]", "x");
                          d.comment("[1]", "y", CP_trailing);
                      }),
              "[/* x */ 1, 2 /* y */]");
}

TEST(Document, commentsReplaceThoseThatAreThere)
{
    EXPECT_EQ(changed(s_cpService, [](CDocument& d) { d.comment("port", "soon 443", CP_trailing); }),
              replaced(s_cpService, "not yet 443", "soon 443"));
    EXPECT_EQ(changed(s_cpService, [](CDocument& d) { d.comment("hosts", ""); }),
              replaced(s_cpService, "  // Who may call.\n", ""));
    EXPECT_EQ(changed("// head\n\n// old\n{} // end\n",
                      [](CDocument& d) {
                          d.comment(".", "new");
                          d.comment(".", "done", CP_trailing);
                      }),
              "// head\n\n// new\n{} // done\n");
}

TEST(Document, aContainerOnOneLineIsFollowedByOneOfThatKind)
{
    EXPECT_EQ(changed("[\n  { \"a\" = 1 }\n]",
                      [](CDocument& d) {
                          d.set("[1]", fields({{"a", 2}}));
                      }),
              "[\n  { \"a\" = 1 },\n  { \"a\" = 2 }\n]");
    const std::string text(120, 'x');
    EXPECT_EQ(changed("[\n  { \"a\" = 1 }\n]",
                      [&](CDocument& d) {
                          d.set("[1]", fields({{"a", text}}));
                      }),
              "[\n  { \"a\" = 1 },\n  {\n    \"a\" = \"" + text + "\"\n  }\n]");
}

TEST(Document, valuesInTheNotationKeepTheirSpelling)
{
    EXPECT_EQ(changed("{ \"a\" = 1, \"b\" = 2 }",
                      [](CDocument& d) {
                          d.setText("a", "1.50");
                          d.setText("b", "\"\\u0041\"");
                          d.setText("c", " [007,\n 1e3] ");
                      }),
              "{ \"a\" = 1.50, \"b\" = \"\\u0041\", \"c\" = [007, 1e3] }");
    EXPECT_EQ(changed("{ \"a\" = 1 }", [](CDocument& d) { d.setText("b.c", "1.50"); }),
              "{ \"a\" = 1, \"b\" = { \"c\" = 1.50 } }");
    EXPECT_EQ(changed("{ \"null\" = }", [](CDocument& d) { d.setText("null.null[0]", "1.50"); }),
              "{ \"null\" = { \"null\" = [1.50] } }");
    CDocument document = loaded("{ \"a\" = 1 }");
    for (const char* const text : {"", "1 2", "\"x\" = 1", "#3 4", "(ANF4) 5", "[1", "// c", "6 // c"})
        EXPECT_THROW(document.setText("a", text), CLogicError) << text;
    EXPECT_EQ(document.text(), "{ \"a\" = 1 }");
}

TEST(Document, mergeChangesWhatThePatchSays)
{
    const CFields patch = fields({{"port", 443},
                                  {"hosts", nullptr},
                                  {"limits", fields({{"width", 7}, {"x", nullptr}})},
                                  {"new", fields({{"a", 1}, {"b", nullptr}})}});
    std::string expected = replaced(s_cpService, "0080", "443");
    expected = replaced(expected, "\n  // Who may call.\n  \"hosts\" = [ \"a\",\"b\" ],\n", "\n");
    expected = replaced(expected, "12 // levels\n  }\n",
                        "12, // levels\n    \"width\" = 7\n  },\n  \"new\" =\n  {\n    \"a\" = 1\n  }\n");
    EXPECT_EQ(changed(s_cpService, [&](CDocument& d) { d.merge(patch); }), expected);
    EXPECT_EQ(changed("{ \"a\" = 1, \"a\" = 2, \"b\" = 3 }",
                      [](CDocument& d) {
                          d.merge(fields({{"a", nullptr}}));
                      }),
              "{ \"b\" = 3 }");
    EXPECT_EQ(changed("[1] // c",
                      [&](CDocument& d) {
                          d.merge(fields({{"a", nullptr}, {"b", 1}}));
                      }),
              "{\n  \"b\" = 1\n} // c");
    EXPECT_EQ(changed("{ \"a\" = 1 }", [](CDocument& d) { d.merge(CFields(5)); }), "5");
}

TEST(Document, aPatchIsAppliedAsAWholeOrNotAtAll)
{
    CDocument document = loaded(s_cpService);
    EXPECT_THROW(document.merge(fields({{"port", 1}, {"limits", fields({{"depth", array({1})}})}})), CLogicError);
    EXPECT_EQ(document.text(), s_cpService);
}

TEST(Document, pathsLeadByNumberAndId)
{
    EXPECT_EQ(changed("{ \"x\" = [1, { #7 \"y\" = 2 }] }",
                      [](CDocument& d) {
                          d.set("#7", 3);
                          d.set("/x/0", 4);
                          d.set("x[-1].z", 5);
                      }),
              "{ \"x\" = [4, { #7 \"y\" = 3, \"z\" = 5 }] }");
}

TEST(Document, changesThatCannotBeMadeChangeNothing)
{
    CDocument document = loaded(s_cpService);
    const CFields before = document.tree();
    EXPECT_THROW(document.set("port.x", 1), CLogicError);
    EXPECT_THROW(document.set("hosts[5]", 1), CLogicError);
    EXPECT_THROW(document.set("[", 1), CPathError);
    EXPECT_THROW(document.set("limits.depth", array({1})), CLogicError);
    EXPECT_THROW(document.set("rate", std::numeric_limits<double>::infinity()), CLogicError);
    EXPECT_THROW(document.set("new", std::numeric_limits<double>::infinity()), CLogicError);
    EXPECT_THROW(document.insert(".", 0, std::numeric_limits<double>::infinity(), "first"), CLogicError);
    EXPECT_THROW(document.remove("nothing"), CLogicError);
    EXPECT_THROW(document.remove("."), CLogicError);
    EXPECT_THROW(document.rename("hosts[0]", "x"), CLogicError);
    EXPECT_THROW(document.rename("port", ""), CLogicError);
    EXPECT_THROW(document.comment("port", "two\nlines", CP_trailing), CLogicError);
    EXPECT_THROW(document.comment("hosts[0]", "ends */ early"), CLogicError);
    EXPECT_EQ(document.text(), s_cpService);
    EXPECT_TRUE(sameTree(document.tree(), before, ST_all));
}

TEST(Document, aNewValueDoesNotBecomeANameOfTheTextAfterIt)
{
    for (const char* const text : {"{}= 5", "{} /* c */ = 5", "[1]\n// c\n\n=", "#5 {}=5"})
    {
        CDocument document = loaded(text);
        for (const char* const value : {"1", "\"s\""})
            EXPECT_EQ(refusal([&] { document.setText(".", value); }),
                      "The value would be the name of the text after the document, which begins with \"=\"");
        EXPECT_EQ(document.text(), text);
    }
    EXPECT_EQ(changed("{}=5", [](CDocument& d) { d.set(".", array({1})); }), "[1] =5");
    EXPECT_EQ(changed("\"a\" = [] = 5", [](CDocument& d) { d.set(".", "b"); }), "\"a\" = \"b\" = 5");
}

TEST(Document, textWithMistakesLeavesTheDocumentAsItIs)
{
    CDocument document = loaded(s_cpService);
    EXPECT_FALSE(document.load("{ \"a\" = ], \"b\" = # }"));
    ASSERT_EQ(document.errors().size(), 2U);
    EXPECT_EQ(document.errors()[0].m_uiColumn, 9U);
    EXPECT_EQ(document.text(), s_cpService);
    EXPECT_TRUE(document.load("[1]"));
    EXPECT_TRUE(document.errors().empty());
}

TEST(Document, valuesNestNoDeeperThanALoaderReads)
{
    CDocument document = loaded(std::string(999, '[') + std::string(999, ']'));
    std::string path;
    for (int i = 0; i < 999; ++i)
        path += "[0]";
    document.set(path, array({}));
    EXPECT_THROW(document.set(path + "[0]", array({})), CLogicError);
    EXPECT_TRUE(CDocument().load(document.text()));
}

TEST(Document, textsThatAreNoLongerUsedGo)
{
    CDocument document = loaded("{ \"a\" = \"\" }");
    const std::string text(1000, 'x');
    const auto blocks = CFailingMalloc::liveBlocks();
    for (int i = 0; i < 10000; ++i)
        document.set("a", text + std::to_string(i));
    EXPECT_EQ(document.text(), "{ \"a\" = \"" + text + "9999\" }");
    EXPECT_LT(CFailingMalloc::liveBlocks() - blocks, 2000);
}

TEST(Document, withoutMemoryNothingChanges)
{
    if (!CFailingMalloc::isMallocReached() || !CFailingMalloc::isNewReached())
        GTEST_SKIP() << "NOT TESTED: allocations cannot be made to fail here";
    using tChange = void (*)(CDocument&);
    constexpr tChange changes[] = {
        [](CDocument& d) { d.set("limits.depth", "a text that needs memory of its own, in any case"); },
        [](CDocument& d) {
            d.set("new.member", array({1, 2}));
        },
        [](CDocument& d) { d.insert("hosts", 1, "a text that needs memory of its own, in any case"); },
        [](CDocument& d) { d.remove("hosts"); },
        [](CDocument& d) { d.rename("limits", "a name that is longer than a node has room for"); },
        [](CDocument& d) { d.comment("limits", "a comment that needs memory of its own"); },
    };
    for (const tChange change : changes)
    {
        bool isDone = false;
        for (long failAt = 1; !isDone; ++failAt)
        {
            CDocument document = loaded(s_cpService);
            const CFields before = document.tree();
            {
                CFailingMalloc failing(failAt);
                try
                {
                    change(document);
                    isDone = true;
                }
                catch (const std::exception&)
                {
                }
            }
            if (isDone)
            {
                EXPECT_NE(document.text(), s_cpService);
                break;
            }
            ASSERT_EQ(document.text(), s_cpService) << failAt;
            ASSERT_TRUE(sameTree(document.tree(), before, ST_all)) << failAt;
        }
    }
}

TEST(Document, ofMixedLineEndsTheFirstIsTaken)
{
    EXPECT_EQ(changed("{\n  \"a\" = 1\r\n}", [](CDocument& document) { document.set("b", 2); }),
              "{\n  \"a\" = 1,\n  \"b\" = 2\r\n}");
}

TEST(Document, aChangeCostsTheSameInALongText)
{
    const auto changes = [](std::size_t bytes) {
        CDocument document = loaded("{ \"a\" = 0, \"b\" = \"" + std::string(bytes, 'x') + "\" }");
        return processorSeconds(1, [&] {
            for (int i = 0; i != 2000; ++i)
                document.set("a", i + 1);
        });
    };
    EXPECT_TRUE(costsLessThan(
        3, [&] { return changes(100); }, [&] { return changes(4000000); }));
}

TEST(DocumentFile, isReadAndReplacedWithItsPermissions)
{
    const CTemporaryDirectory files;
    const std::string path = files.write("a.murv", s_cpService);
    std::filesystem::permissions(path, std::filesystem::perms(0640));
    std::filesystem::create_symlink("a.murv", files.path() + "/link");
    CDocument document;
    ASSERT_TRUE(document.loadFile(files.path() + "/link"));
    document.set("port", 1);
    document.saveFile(files.path() + "/link");
    EXPECT_EQ(files.read("a.murv"), replaced(s_cpService, "0080", "1"));
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));
    EXPECT_EQ(files.names(), "a.murv link");
}

TEST(DocumentFile, failuresSayWhy)
{
    const CTemporaryDirectory files;
    CDocument document;
    EXPECT_EQ(refusal([&] { return document.loadFile("/nothing/here"); }),
              "/nothing/here cannot be read: No such file or directory");
    EXPECT_EQ(refusal([&] { return document.loadFile("/"); }), "/ cannot be read: it is a directory");
    EXPECT_EQ(refusal([&] { document.saveFile("/nothing/here"); }),
              "/nothing/here cannot be written: No such file or directory");
    EXPECT_EQ(refusal([&] { document.saveFile(files.path()); }),
              files.path() + " cannot be written: it is no regular file");
    EXPECT_EQ(files.names(), "");
}

TEST(DocumentFile, aFileThatNobodyMayWriteToStays)
{
    const CTemporaryDirectory files;
    const std::string path = files.write("a.murv", "{}");
    std::filesystem::permissions(path, std::filesystem::perms(0444));
    EXPECT_EQ(refusal([&] { loaded("[1]").saveFile(path); }), path + " cannot be written: it is read-only");
    EXPECT_EQ(files.read("a.murv"), "{}");
    EXPECT_EQ(files.names(), "a.murv");
}

TEST(DocumentFile, aNewFileIsMade)
{
    const CTemporaryDirectory files;
    loaded("[1]").saveFile(files.path() + "/new");
    EXPECT_EQ(files.read("new"), "[1]");
    EXPECT_EQ(files.names(), "new");
}

}  // namespace murv::tests
