// A compilation that runs out of memory throws, leaks nothing, and leaves the layout usable.
#include <gtest/gtest.h>

#include <new>
#include <string>

#include "murv/layout.h"
#include "murv/murv.h"
#include "support/failing_malloc.h"
#include "tests/support/source_file.h"

namespace
{

using murv::tests::CFailingMalloc;
using murv::tests::contentOf;

/// A layout with rules of nearly all kinds.
constexpr const char* s_cpRuleRich = R"({
  "@" = "layout 1; lines; cp037; little",
  // the first record, and the only one of its kind
  "head" = {
    "kind" = (ACF1fix) "H", "day" = (ANF8YYYYMMDD) null, "@day" = "keep; zero is null",
    "words" = (BNF1) 0, "@words" = "size of body / 2 + 1", "map" = (BCF1) "", "@map" = "bits of data",
    "flags" = (BNF1) 1, "@flags" = "bits 1 on, 3 mode, 4 count", "@flags.mode" = "valid 0..5",
    "@flags.count" = "count of list", "list" = [ (BNF2) 0 ], "@list" = "big",
    "body" = { "a" = (ACF0) "", "@a" = "to end", "z" = (ACF1) "", "@z" = "raw" },
    "data" = { #1 "x" = (ANF3) 0, "@x" = "zoned; signed; decimals 1", #3 "y" = (ACF2) "", "@y" = "mask 1; right" },
    "v" = {
      "@" = "one of by flags.mode else other", #1 "n" = (BNF4) 0, "@n" = "float",
      "other" = { "t" = (ACF0) "", "@t" = "ends \";\"" }
    },
    "copy" = { "@" = "like data" }, "of copy" = (ANF2) 0, "@of copy" = "size of body", "key" = (ACF4) "",
    "@key" = "hex lower; ascii", "name" = (ACF20) "", "@name" = "ends \";\"; required; if flags.on = 1",
    "crc" = (BNF4) 0, "@crc" = "crc32 iscsi of kind..name"
  },
  "groups" = [ {
    "entries" = [ {
      "kind" = (ACF1fix) "E", "amount" = (ANF6) 0, "@amount" = "decimals 2; pad blank",
      "words" = [ (ACF3) "" ], "@words" = "until . = \"end\"",
      "note" = { "@" = "optional", (ACF1fix) "#", "t" = (ACF2) "" }
    } ],
    "total" = {
      "kind" = (ACF1fix) "T", "n" = (ANF4) 0, "@n" = "records of entries", "sum" = (ANF8) 0,
      "@sum" = "decimals 2; sum of entries.amount", "check" = (ANF1) 0, "@check" = "luhn of sum"
    }
  } ],
  "rest" = [ {
    "@" = "one of", "pair" = { "@" = "between \"=\"", "k" = (ACF2fix) "K:", "v" = (ACF0) "" },
    "any" = { "t" = (ACF0) "", "@t" = "before \"!\"", (ACF1fix) "!" }
  } ]
})";

std::string installed(const char* name)
{
    return contentOf(std::string("share/murv/layouts/") + name + ".murv");
}

/// Lets each allocation of a compilation fail in turn.
/// \param mistakes  how many the layout has
void failEach(const std::string& text, std::size_t mistakes)
{
    murv::CFields document;
    murv::CLoaders loader(murv::LCBC_COMMENT | murv::LCBC_DUPLICATE);
    ASSERT_TRUE(loader.loading(text, document)) << loader.getLastErrMsg();
    const long before = CFailingMalloc::liveBlocks();
    bool isOver = false;
    for (long n = 1; !isOver && !testing::Test::HasFailure(); ++n)
    {
        murv::CLayout layout;
        bool compiled = false;
        try
        {
            const CFailingMalloc failing(n);
            compiled = layout.compile(document);
            isOver = !failing.hasFailed();  // sorting does without its memory
            EXPECT_EQ(compiled, mistakes == 0) << n;
        }
        catch (const std::bad_alloc&)
        {
        }
        EXPECT_EQ(layout.isCompiled(), compiled) << n;
        EXPECT_EQ(layout.compile(document), mistakes == 0) << n;
        EXPECT_EQ(layout.getMistakes().size(), mistakes) << n << " " << layout.getMistakes().front().m_strMessage;
    }
    EXPECT_EQ(CFailingMalloc::liveBlocks(), before);
}

class LayoutFailure : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!CFailingMalloc::isNewReached())
            GTEST_SKIP() << "NOT TESTED: allocations cannot be made to fail here";
    }
};

TEST_F(LayoutFailure, everyAllocationMayFail)
{
    failEach(installed("sensor"), 0);
}

TEST_F(LayoutFailure, everyAllocationOfAPaymentFileMayFail)
{
    failEach(installed("ach"), 0);
}

TEST_F(LayoutFailure, everyAllocationOfManyRulesMayFail)
{
    failEach(s_cpRuleRich, 0);
}

TEST_F(LayoutFailure, everyAllocationOfMistakesMayFail)
{
    std::string text = s_cpRuleRich;
    for (const char* const word : {"size of body", "iscsi", "pad blank", "\"luhn of"})
        text.insert(text.find(word) + 1, "x");
    failEach(text, 4);
}

}  // namespace
