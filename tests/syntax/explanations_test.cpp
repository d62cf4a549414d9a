// What is said of mistakes that many make, besides the message of the loader.
#include <gtest/gtest.h>

#include "murv/loader.h"
#include "murv/syntax.h"

namespace murv::tests
{

namespace
{

using namespace std::string_view_literals;

/// Of the first mistake of a text.
std::string_view explanation(std::string_view text)
{
    const std::vector<tErrorPlace> mistakes = findMistakes(text, LCBC_COMMENT | LCBC_EMPTY_NULL | LCBC_LOSSLESS);
    return mistakes.empty() ? "no mistake"sv : explainMistake(text, mistakes.front());
}

constexpr std::string_view s_cstrvName = "names stand in double quotes: \"name\" = value";
constexpr std::string_view s_cstrvText =
    "texts stand in double quotes; the only words without quotes are true, false and null";
constexpr std::string_view s_cstrvUtf16 = "the text seems to be UTF-16; save it as UTF-8 without a byte order mark";

}  // namespace

TEST(Explanations, ofATextInAnotherEncoding)
{
    EXPECT_EQ(explanation("\xEF\xBB\xBF{ \"a\" = 1 }"),
              "the text begins with a byte order mark (EF BB BF); save it as UTF-8 without one");
    EXPECT_EQ(explanation("\xFF\xFE{\0}\0"sv), s_cstrvUtf16);
    EXPECT_EQ(explanation("\xFE\xFF\0{\0}"sv), s_cstrvUtf16);
    EXPECT_EQ(explanation("{\0}\0"sv), s_cstrvUtf16);
    EXPECT_EQ(explanation("\0{\0}"sv), s_cstrvUtf16);
}

TEST(Explanations, ofAnEmptyText)
{
    EXPECT_EQ(explanation(""), "the document is empty; the shortest ones are {} and []");
    EXPECT_EQ(explanation(" /* none */ // here\n"), "the document is empty; the shortest ones are {} and []");
    EXPECT_EQ(explanation("[1"), "");
}

TEST(Explanations, ofColons)
{
    EXPECT_EQ(explanation("{ \"a\" : 1 }"), "a member is written \"name\" = value, with = and not :");
    EXPECT_EQ(explanation("[1, 2 : 3]"), "");
    EXPECT_EQ(explanation("{ : 1 }"), "");
}

TEST(Explanations, ofComments)
{
    constexpr std::string_view note =
        "a comment begins with // or stands between /* and */; # begins an ID, such as #7";
    EXPECT_EQ(explanation("# about\n{ \"a\" = 1 }"), note);
    EXPECT_EQ(explanation("{ \"a\" = 1 # one\n}"), note);
    EXPECT_EQ(explanation("[1, # two\n2]"), note);
    EXPECT_EQ(explanation("[1, #"), note);
    EXPECT_EQ(explanation("{ #0 \"a\" = 1 }"), "");
}

TEST(Explanations, ofOtherQuotes)
{
    EXPECT_EQ(explanation("{ 'a' = 1 }"), "names and texts stand in double quotes: \"text\"");
    EXPECT_EQ(explanation("['a']"), "names and texts stand in double quotes: \"text\"");
    EXPECT_EQ(explanation("[\xE2\x80\x9C"
                          "a\xE2\x80\x9D]"),
              "names and texts stand in straight double quotes: \"text\"");
}

TEST(Explanations, ofWordsWithoutQuotes)
{
    EXPECT_EQ(explanation("{ port = 1 }"), s_cstrvName);
    EXPECT_EQ(explanation("port= 1"), s_cstrvName);
    EXPECT_EQ(explanation("{ \"a\" = 1, tcp-port : 2 }"), s_cstrvName);
    EXPECT_EQ(explanation("{ nullable = 1 }"), s_cstrvName);
    EXPECT_EQ(explanation("[True]"), s_cstrvText);
    EXPECT_EQ(explanation("[truelove]"), s_cstrvText);
    EXPECT_EQ(explanation("{ \"a\" = 5kg }"), s_cstrvText);
    EXPECT_EQ(explanation("{ \"a\" = 1 2 }"), "");
}

}  // namespace murv::tests
