// What loads but may be meant otherwise: each kind with its place, and hostile texts in linear time.
#include <gtest/gtest.h>

#include "murv/loader.h"
#include "murv/syntax.h"
#include "tests/ser/random_text.h"

namespace murv::tests
{

namespace
{

constexpr unsigned int s_cuiConfig = LCBC_COMMENT | LCBC_EMPTY_NULL | LCBC_LOSSLESS;

/// "line:column-end message" of each, and "(line:column)" of the second place.
std::string suspicions(std::string_view text, unsigned int kinds = SU_all, unsigned int config = s_cuiConfig)
{
    std::string lines;
    for (const tSuspicion& suspicion : findSuspicions(text, config, kinds))
    {
        const tErrorPlace& place = suspicion.m_tPlace;
        const unsigned int end = place.m_uiColumn + place.m_uiEnd - place.m_uiStart;
        lines += std::to_string(place.m_uiLine) + ":" + std::to_string(place.m_uiColumn) + "-" + std::to_string(end) +
                 " " + place.m_strMessage;
        if (place.m_tSecond)
            lines += " (" + std::to_string(place.m_tSecond->m_uiLine) + ":" +
                     std::to_string(place.m_tSecond->m_uiColumn) + ")";
        lines += "\n";
    }
    return lines;
}

/// The same of the one value of a document, which begins at column 2, without place and message of the kind.
std::string details(const std::string& expressions, E_Suspicion kind)
{
    std::string details;
    for (const tSuspicion& suspicion : findSuspicions("[" + expressions + "]", s_cuiConfig, kind))
    {
        const std::string& message = suspicion.m_tPlace.m_strMessage;
        const std::size_t colon = message.find(": ");
        details += (details.empty() ? "" : "; ") + (colon == std::string::npos ? "yes" : message.substr(colon + 2));
    }
    return details;
}

constexpr const char* s_cpTaken = "this name is taken; the first member of that name is filled again";
constexpr const char* s_cpSimilar = "this name differs from another one in upper and lower case only";

}  // namespace

TEST(Suspicions, thereAreNoneInAnOrdinaryDocument)
{
    EXPECT_EQ(suspicions(R"(#1 "a" = { "b" = (ACF8) "x", "c" = [1, [2], { "b" = }], , #2 "d" = { "b" = 1 } } // end)"),
              "");
    EXPECT_EQ(suspicions(R"({ "n" = (ANF3sizeset_1) 0, "t" = (ANF8YYYYMMDD) 0, "b" = (ACD0sizedef_1) "" })"), "");
}

TEST(Suspicions, namesAreComparedInTheirFieldSet)
{
    EXPECT_EQ(suspicions("{ \"a\" = 1,\n  \"b\" = { \"a\" = 1, \"c\" = 2 },\n  \"c\" = 1, \"a\" = 2, \"a\" = 3 }"),
              "3:12-15 " + std::string(s_cpTaken) + " (1:3)\n3:21-24 " + s_cpTaken + " (1:3)\n");
    EXPECT_EQ(suspicions(R"([{ "a" = 1 }, { "a" = 1 }])"), "");
}

TEST(Suspicions, namesAreComparedByTheirBytes)
{
    EXPECT_EQ(suspicions(R"({ "a\nb" = 1, "\x61\nb" = 2 })"), "1:15-24 " + std::string(s_cpTaken) + " (1:3)\n");
    EXPECT_EQ(suspicions(R"({ "a\nb" = 1, "a\tb" = 2 })"), "");
    EXPECT_EQ(suspicions(R"({ "7" = 1, 7 = 2 })", SU_all, s_cuiConfig | LCBC_NUMBER_NAME),
              "1:12-13 " + std::string(s_cpTaken) + " (1:3)\n");
    EXPECT_EQ(suspicions("{ \"\" = 1, \"\" = 2 }"), "") << "a member without a name";
    const std::string longName(256, 'n');
    EXPECT_EQ(suspicions("{ \"" + longName + "\" = 1, \"" + longName + "\" = 2 }"), "") << "loaders leave it out";
}

TEST(Suspicions, namesThatDifferInCaseOnlyAreSimilar)
{
    EXPECT_EQ(suspicions(R"({ "Port" = 1, "port" = 2, "port" = 3, "PORT" = 4, "Port" = 5 })"),
              "1:15-21 " + std::string(s_cpSimilar) + " (1:3)\n1:27-33 " + s_cpTaken + " (1:15)\n1:39-45 " +
                  s_cpSimilar + " (1:3)\n1:51-57 " + s_cpTaken + " (1:3)\n");
    EXPECT_EQ(suspicions("{ \"\xC3\x84\" = 1, \"\xC3\xA4\" = 2, \"[\" = 3, \"{\" = 4 }"), "");
}

TEST(Suspicions, idsAreComparedInTheWholeDocument)
{
    EXPECT_EQ(suspicions("{ #7 \"a\" = { #8 \"b\" = 1 },\n#007 \"c\" = [{ #8 \"d\" = 1 }] }"),
              "2:1-5 this ID is taken (1:3)\n2:15-17 this ID is taken (1:14)\n");
}

TEST(Suspicions, commasBeforeTheEndAndEmptyContainersAreFound)
{
    EXPECT_EQ(suspicions("[1, 2, /* none */ ]"), "1:6-7 a comma before a closing bracket adds a null\n");
    EXPECT_EQ(suspicions("{ \"a\" = 1, }"), "1:10-11 a comma before a closing bracket adds a null\n");
    EXPECT_EQ(suspicions("[,]"), "1:2-3 a comma before a closing bracket adds a null\n");
    EXPECT_EQ(suspicions("[{}, [ ]]"),
              "1:2-4 an empty container is loaded as one that holds a null\n"
              "1:6-9 an empty container is loaded as one that holds a null\n");
}

TEST(Suspicions, textAfterTheDocumentIsFound)
{
    EXPECT_EQ(suspicions("[1] // fine\n[2"), "2:1-2 text after the document is ignored\n");
}

TEST(Suspicions, aTimeHasTheLengthOfItsDigits)
{
    EXPECT_EQ(suspicions("[(ANF3YYMMDD day) 0]"),
              "1:2-18 the item has not the length of its time: YYMMDD takes 6 digits\n");
    EXPECT_EQ(details("(ANF8YYMMDD) 0", SU_timeLength), "YYMMDD takes 6 digits");
    EXPECT_EQ(details("(ANF4DOW) 0", SU_timeLength), "DOW takes 1 to 3 digits");
    EXPECT_EQ(details("(BNF2YYMMDD) 0", SU_timeLength), "YYMMDD takes 3 to 7 bytes");
    EXPECT_EQ(details("(BNF8YYYYMMDDhhmmSSsss) 0", SU_timeLength), "YYYYMMDDhhmmSSsss takes 7 bytes");
    EXPECT_EQ(details("(ANF1DOW) 0, (ANF3DOW) 0, (ANF3DOY) 0, (ANF17YYYYMMDDhhmmSSsss) 0, (BNF3YYMMDD) 0, (ANV2YY) 0, "
                      "(BNF7YYYYMMDDhhmmSSsss) 0, (BNF1YY) 0",
                      SU_timeLength),
              "");
}

TEST(Suspicions, sizeKeywordsHavePartners)
{
    const std::string before = "no item with a size and the option 1 precedes";
    const std::string after = "no item of run-time length (D) and the option 1 follows";
    EXPECT_EQ(details("(ANF3sizeset_1) 0, (ACD0sizeset_1) \"\", (ACD0sizeset_1) \"\"", SU_sizePartner), "");
    EXPECT_EQ(details("(ANF3sizeset_1) 0, { \"b\" = [(ACD0sizedef_1) \"\"] }", SU_sizePartner), "");
    EXPECT_EQ(details("(ANF3sizeset_1) 0, (ACD0sizedef_2) \"\"", SU_sizePartner),
              after + "; no item with a size and the option 2 precedes");
    EXPECT_EQ(details("(ACD0sizedef_1) \"\", (ANF3sizeset_1) 0", SU_sizePartner), before + "; " + after);
    EXPECT_EQ(details("(ANF3sizeset_1) 0, (ANV3sizeset_1) 0, (ACD0sizedef_1) \"\"", SU_sizePartner), after)
        << "the last one counts";
}

TEST(Suspicions, itemsWithoutLengthAreLeftOut)
{
    EXPECT_EQ(suspicions("[(ACF0) 1]"), "1:2-8 an item of length 0 is left out of packets\n");
    for (const char* const expression : {"(ACV0)", "(ANF0YYMMDD)", "(ACD0)", "(ACF0fix)", "(ANFDOY)"})
        EXPECT_EQ(details(expression, SU_zeroLength), "yes") << expression;
    for (const char* const expression : {"(ACV1)", "(ACF1)", "(ACD0sizedef_1)", "(ACF0) {}"})
        EXPECT_EQ(details(expression, SU_zeroLength), "") << expression;
    EXPECT_EQ(suspicions("[(ANF0YYMMDD) 1]"), "1:2-14 an item of length 0 is left out of packets\n");
}

TEST(Suspicions, optionsAreOneToNine)
{
    EXPECT_EQ(suspicions("[(ANF3sizeset_12) 0]", SU_keywordOption),
              "1:2-18 options of keywords are 1 to 9: binary files refuse 12\n");
    EXPECT_EQ(details("(ANF3sizeset_17) 0", SU_keywordOption), "four bits are kept of it, which are 1");
    EXPECT_EQ(details("(ANF3sizeset_) 0", SU_keywordOption), "it is missing");
    EXPECT_EQ(details("(ANF3sizeset_9) 0, (ANF3sizeset_+02and) 0, (ANF3fix) 0", SU_keywordOption), "");
}

TEST(Suspicions, onlyTheKindsThatAreWantedAreFound)
{
    constexpr const char* text =
        R"({ "a" = [], #1 "a" = [1,], #1 "A" = (ANF0sizeset_12) 0, "t" = (ANF2YYMMDD) 1 } rest)";
    unsigned int seen = 0;
    for (const tSuspicionKind& kind : getSuspicionKinds())
    {
        for (const tSuspicion& suspicion : findSuspicions(text, s_cuiConfig, kind.m_eKind))
        {
            EXPECT_EQ(suspicion.m_eKind, kind.m_eKind) << kind.m_strvName;
            seen |= suspicion.m_eKind;
        }
    }
    EXPECT_EQ(seen, SU_all);
    EXPECT_TRUE(findSuspicions(text, s_cuiConfig, 0).empty());
}

TEST(Suspicions, mistakesBetweenThemDoNoHarm)
{
    EXPECT_EQ(suspicions("{ \"a\" = { \"b\" = [ 1 }, \"a\" = x, \"b\" = (XX) 1, \"b\" = 1, }"),
              "1:24-27 " + std::string(s_cpTaken) + " (1:3)\n1:47-50 " + s_cpTaken +
                  " (1:33)\n"
                  "1:54-55 a comma before a closing bracket adds a null\n");
    CRandomText random(5);
    for (int i = 0; i < 3000; ++i)
    {
        const std::string text = random.mutated(random.document());
        for (const tSuspicion& suspicion : findSuspicions(text, s_cuiConfig))
        {
            ASSERT_LE(suspicion.m_tPlace.m_uiStart, suspicion.m_tPlace.m_uiEnd) << text;
            ASSERT_LE(suspicion.m_tPlace.m_uiEnd, text.size()) << text;
        }
    }
}

TEST(Suspicions, timeIsLinearInNamesIdsAndNesting)
{
    std::string equal = "{";
    std::string other = "{";
    std::string deep;
    for (int i = 0; i < 200000; ++i)
    {
        equal += "#1 \"name\"=1,";
        other += "#" + std::to_string(1 + i) + "\"n" + std::to_string(i) + "\"=(ANF3sizeset_1)1,";
    }
    for (int i = 0; i < 999; ++i)
        deep += "{\"name\"=1,\"x\"=";
    EXPECT_EQ(findSuspicions(equal + "}", s_cuiConfig, SU_duplicateName | SU_duplicateId).size(), 2U * 199999U);
    EXPECT_EQ(findSuspicions(other + "}", s_cuiConfig).size(), 200001U);
    EXPECT_EQ(findSuspicions(deep + "{" + equal.substr(1), s_cuiConfig, SU_duplicateName).size(), 199999U);
}

}  // namespace murv::tests
