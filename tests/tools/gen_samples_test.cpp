// tests/tools/gen_samples_test.cpp - murv gen samples: what it writes, and where.
#include <map>
#include <set>

#include "murv/layout.h"
#include "tests/support/sanitized.h"
#include "tests/tools/sales.h"
#include "tests/tools/sample_lines.h"

namespace murv::tests
{

namespace
{
/// The text of a member, up to the comma or brace after it.
std::string member(const std::string& line, const std::string& name)
{
    const std::size_t at = line.find("\"" + name + "\":");
    if (at == std::string::npos)
        return "none";
    const std::size_t begin = at + name.size() + 3;
    return line.substr(begin, line.find_first_of(",}", begin) - begin);
}

/// How often each value of a member came.
std::map<std::string, int> valuesOf(const std::string& layout, const std::string& name, unsigned int count = 400)
{
    std::map<std::string, int> values;
    for (const std::string& line : samples(layout, {"-n", std::to_string(count)}))
        ++values[member(line.substr(line.find("\"tree\":")), name)];
    return values;
}

std::string layout(const std::string& parts)
{
    return "{ \"@\" = \"layout 1\", " + parts + " }";
}

tRun gen(const std::string& text, std::vector<std::string> options)
{
    options.insert(options.begin(), {"gen", "samples", "-l", "-"});
    return murvOn(text, options);
}

}  // namespace

TEST(GenSamples, aSeedGivesTheSameBytesOnEveryMachine)
{
    const std::string text =
        "{ \"@\" = \"layout 1; little\", \"n\" = (BNF2) 0, \"d\" = (ANF5) 0, \"@d\" = \"decimals 2\", "
        "\"day\" = (ANF6YYMMDD) 0, \"t\" = (ACF6) \"\", "
        "\"list\" = [ { (ACF1fix) \"-\", \"f\" = (BNF8) 0, \"@f\" = \"float\" } ] }";
    const std::vector<std::string> lines = samples(text, {"-n", "4"});
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(member(lines[0], "bytes"),
              "\"E6C130303036313031313233312020202020202D15A786147EECD56B2DF07668990E827545\"");
    EXPECT_EQ(lines[2],
              "{\"sample\":3,\"seed\":3,\"size\":37,\"bytes\":\""
              "AAD630343935303736303530332020202020202D00000000000010382D000000000000F03F\",\"tree\":{\"n\":54954,"
              "\"d\":\"49.50\",\"day\":760503,\"t\":\"\",\"list\":[{\"f\":1.1754943508222875e-38},{\"f\":1.0}]}}");
    EXPECT_EQ(member(lines[3], "bytes"), "\"FF7F30303030373034303631356E20202020202D17B4DB5C580B2948\"");
    const std::string damaged = samples(text, {"--damaged", "--seed", "4"}).front();
    EXPECT_EQ(damaged.substr(damaged.find("\"change\"")),
              "\"change\":\"repeated\",\"at\":23,\"fault\":{\"path\":\"\",\"code\":\"leftOver\",\"offset\":28,"
              "\"length\":1,\"rules\":\"layout 1; little\",\"bytes\":\"48\","
              "\"message\":\"Bytes are left after the last part\"}}");
}

TEST(GenSamples, eachSampleHasASeedOfItsOwn)
{
    const std::vector<std::string> all = samples("sensor", {"-n", "5", "--seed", "100"});
    const std::vector<std::string> last = samples("sensor", {"--seed", "104"});
    ASSERT_EQ(all.size(), 5U);
    ASSERT_EQ(last.size(), 1U);
    EXPECT_EQ(member(last[0], "seed"), "104");
    EXPECT_EQ(all[4].substr(all[4].find("\"seed\"")), last[0].substr(last[0].find("\"seed\"")));
    EXPECT_EQ(samples("sensor", {}), samples("sensor", {"--seed", "1"}));
}

TEST(GenSamples, numbersHaveTheirWholeRangeAndItsEnds)
{
    std::map<std::string, int> values = valuesOf(layout("\"n\" = (BNF1) 0"), "n");
    EXPECT_GT(values["0"], 10);
    EXPECT_GT(values["255"], 10);
    EXPECT_GT(values.size(), 80U);
    values = valuesOf(layout("\"n\" = (BNF1) 0, \"@n\" = \"signed\""), "n");
    EXPECT_GT(values["-128"], 3);
    EXPECT_GT(values["127"], 3);
    values = valuesOf(layout("\"n\" = (ANF2) 0"), "n");
    EXPECT_GT(values["99"], 10);
    EXPECT_GT(values["-9"], 3);
    values = valuesOf(layout("\"n\" = (BNF8) 0"), "n");
    EXPECT_GT(values["18446744073709551615"], 10);
    values = valuesOf(layout("\"n\" = (ANF5) 0, \"@n\" = \"decimals 2\""), "n");
    EXPECT_GT(values["\"999.99\""], 5);
    values = valuesOf(layout("\"n\" = (BNF2) 0, \"@n\" = \"packed; signed\""), "n");
    EXPECT_GT(values["999"], 3);
    EXPECT_GT(values["-999"], 1);
}

TEST(GenSamples, textsHaveAllLengthsThatFit)
{
    for (const char* text : {"(ACF3) \"\"", "(ACV1+1) \"\"", "(BCV1+1) \"\""})
    {
        std::set<std::size_t> sizes;
        for (const std::string& line : samples(layout(std::string("\"t\" = ") + text), {"-n", "300"}))
        {
            const std::string bytes = bytesOf(line);
            const bool isFixed = bytes.size() == 3 && text[3] == 'F';
            sizes.insert(isFixed ? bytes.find_last_not_of(' ') + 1 : bytes.size() - 1);
        }
        EXPECT_EQ(sizes.count(0), 1U) << text;
        EXPECT_GT(sizes.size(), 3U) << text;
        EXPECT_EQ(*sizes.rbegin(), text[3] == 'F' ? 3U : text[0] == '(' && text[1] == 'A' ? 9U : 255U) << text;
    }
}

TEST(GenSamples, charactersAreThoseOfTheCodePage)
{
    bool hasLatin = false;
    for (const std::string& line : samples(layout("\"t\" = (ACF8) \"\", \"@t\" = \"cp037\""), {"-n", "200"}))
        hasLatin = hasLatin || line.find('\xC3') != std::string::npos;
    EXPECT_TRUE(hasLatin);
    for (const std::string& line : samples(layout("\"t\" = (ACF8) \"\", \"@t\" = \"ascii\""), {"-n", "200"}))
    {
        for (const char byte : bytesOf(line))
            EXPECT_LT(static_cast<unsigned char>(byte), 0x80U) << line;
    }
}

TEST(GenSamples, datesExistAndValidRulesAreObeyed)
{
    const std::string text = layout(
        "\"d\" = (ANF8YYYYMMDD) 0, \"t\" = (ANF9hhmmSSsss) 0, \"v\" = (ANF2) 1, \"@v\" = \"valid 1..3 | 99\", "
        "\"w\" = (ACF10) \"A\", \"@w\" = \"valid date DD.MM.YYYY\"");
    CLayout compiled;
    ASSERT_TRUE(compiled.compile(text));
    CPacketReader reader(compiled);
    std::set<std::string> values;
    for (const std::string& line : samples(text, {"-n", "200"}))
    {
        EXPECT_TRUE(reader.check(bytesOf(line)) && reader.getFindings().empty()) << line;
        values.insert(member(line, "v"));
    }
    EXPECT_EQ(values, (std::set<std::string>{"1", "2", "3", "99"}));
}

TEST(GenSamples, conditionsAndChoicesAreMet)
{
    const std::string text = layout(
        "\"kind\" = (BNF4) 0, \"a\" = (ACF1) \"\", \"@a\" = \"if kind = 4711\", "
        "\"v\" = { \"@\" = \"one of by kind else other\", #70000 \"big\" = (BNF1) 0, \"other\" = (BNF2) 0 }");
    std::map<std::string, int> kinds = valuesOf(text, "kind");
    EXPECT_GT(kinds["4711"], 50);
    EXPECT_GT(kinds["70000"], 50);
    EXPECT_GT(kinds.size(), 20U);
}

TEST(GenSamples, arraysEndWhereTheirRuleSays)
{
    const std::string text = layout("\"list\" = [ (BNF1) 0 ], \"@list\" = \"until . = 0\"");
    std::set<std::size_t> sizes;
    for (const std::string& line : samples(text, {"-n", "100"}))
    {
        const std::string bytes = bytesOf(line);
        EXPECT_EQ(bytes.find('\0'), bytes.size() - 1) << line;
        sizes.insert(bytes.size());
    }
    EXPECT_EQ(sizes, (std::set<std::size_t>{1, 2, 3}));
    std::size_t most = 0;
    for (const std::string& line : samples(text, {"-n", "100", "--elements", "20"}))
        most = std::max(most, bytesOf(line).size());
    EXPECT_GT(most, 15U);
}

TEST(GenSamples, streamsOfRecordsAreRead)
{
    const CTemporaryDirectory files;
    for (const char* name : {"sensor", "itch50", "nmea", "tle", "fix"})
    {
        EXPECT_EQ(murv(files, {"gen", "samples", name, "-n", "200", "-o", "out"}).m_iExit, 0) << name;
        EXPECT_EQ(murv(files, {"check", "-q", "-l", name, "out"}).m_strError, "") << name;
    }
}

TEST(GenSamples, filesThatCannotFollowOneAnotherAreNotMadeToAStream)
{
    const tRun run = murvOn("", {"gen", "samples", "ach", "-n", "2"});
    EXPECT_EQ(run.m_iExit, 2);
    EXPECT_EQ(run.m_strError,
              "murv: error: files of this layout cannot follow one another; use --lines or --directory\n");
    EXPECT_EQ(murvOn("", {"gen", "samples", "ach"}).m_strOutput.substr(0, 1), "1");
}

#ifndef MURV_TEST_SANITIZED
TEST(GenSamples, largeStreamsNeedNoMoreMemory)
{
    tSurroundings around;
    around.m_strInput = layout(R"("n" = (BNF1) 0, "text" = (BCV1+1) "")");
    around.m_strOutputFile = "/dev/null";
    around.m_ullMostMemory = 28'000'000;
    const tRun run = runProgram({MURV_TOOL_PATH, "gen", "samples", "-l", "-", "-n", "300000"}, around);
    EXPECT_EQ(run.m_strError, "");
    EXPECT_EQ(run.m_iExit, 0);
}
#endif

TEST(GenSamples, aReaderThatGoesAwayEndsItQuietly)
{
    tSurroundings around;
    around.m_bReaderGone = true;
    around.m_uiMostSeconds = 60;
    const tRun run = runProgram({MURV_TOOL_PATH, "gen", "samples", "sensor", "-n", "1000000000"}, around);
    EXPECT_EQ(run.m_iExit, 5);
    EXPECT_EQ(run.m_strError, "");
}

TEST(GenSamples, directoriesHaveSamplesTreesAndAnIndex)
{
    const CTemporaryDirectory files;
    EXPECT_EQ(murv(files, {"gen", "samples", "sensor", "-n", "2", "-d", "dir"}).m_strError, "");
    EXPECT_EQ(murv(files, {"gen", "samples", "sensor", "-n", "2", "-d", "dir", "--json"}).m_iExit, 0);
    EXPECT_EQ(files.read("dir/index.jsonl"),
              "{\"sample\":1,\"seed\":1,\"file\":\"sample-001.bin\",\"size\":" +
                  std::to_string(files.read("dir/sample-001.bin").size()) +
                  ",\"tree\":\"sample-001.json\"}\n{\"sample\":2,\"seed\":2,\"file\":\"sample-002.bin\",\"size\":" +
                  std::to_string(files.read("dir/sample-002.bin").size()) + ",\"tree\":\"sample-002.json\"}\n");
    EXPECT_EQ(files.read("dir/sample-001.bin"), bytesOf(samples("sensor", {}).front()));
    for (const char* tree : {"dir/sample-002.murv", "dir/sample-002.json"})
        EXPECT_EQ(murv(files, {"pack", "-l", "sensor", tree}).m_strOutput, files.read("dir/sample-002.bin")) << tree;
}

TEST(GenSamples, damagedOnesHaveAnIndexAndNoTree)
{
    const CTemporaryDirectory files;
    files.write("l.murv", s_cpSalesLayout);
    EXPECT_EQ(murv(files, {"gen", "samples", "-l", "l.murv", "-n", "20", "--damaged", "-d", "bad"}).m_strError, "");
    const std::vector<std::string> index = linesOf(files.read("bad/index.jsonl"));
    EXPECT_EQ(index.size(), 20U);
    for (const std::string& line : index)
    {
        const bool hasFault = line.find("\"fault\":") != std::string::npos;
        std::string file = member(line, "file");
        file = "bad/" + file.substr(1, file.size() - 2);
        EXPECT_EQ(murv(files, {"check", "-q", "-l", "l.murv", file}).m_iExit, hasFault ? 4 : 1) << line;
    }
    EXPECT_EQ(files.read("bad/sample-001.murv"), "");
}

TEST(GenSamples, maskedValuesAreMadeUpAndShown)
{
    for (const std::string& line : samples(s_cpSalesLayout, {"-n", "20"}))
        EXPECT_EQ(line.find("****"), std::string::npos) << line;
}

TEST(GenSamples, whatNoDataFitsIsSaid)
{
    const tRun run = gen(layout("\"a\" = (ANF1) 0, \"@a\" = \"valid 10..12\""), {});
    EXPECT_EQ(run.m_iExit, 4);
    EXPECT_EQ(run.m_strError,
              "murv: error: no data was found that the layout takes (seed 1); a: The value does not fit the item\n");
    EXPECT_EQ(gen(layout("\"a\" = (BCF0) \"\", \"@a\" = \"to end\""), {"--damaged", "--lines"}).m_strError,
              "murv: error: no change of the sample of seed 1 is refused or found\n");
    EXPECT_EQ(gen(layout("\"a\" = (BCF900000000) \"\""), {}).m_strError,
              "murv: error: no samples of more than 64 MiB are made\n");
}

TEST(GenSamples, wrongCallsSayWhatIsMissing)
{
    const std::map<std::string, std::vector<std::string>> calls = {
        {"murv: error: a layout is required\n", {}},
        {"murv: error: --count is a number from 1 to 1000000000\n", {"sensor", "-n", "0"}},
        {"murv: error: --damaged needs --lines or --directory, which say what was damaged\n", {"sensor", "--damaged"}},
    };
    for (const auto& [error, options] : calls)
    {
        std::vector<std::string> call = {"gen", "samples"};
        call.insert(call.end(), options.begin(), options.end());
        const tRun run = murvOn("", call);
        EXPECT_EQ(run.m_iExit, 2) << error;
        EXPECT_EQ(run.m_strError, error);
    }
    EXPECT_EQ(murvOn("", {"gen", "samples", "sensor", "-d", "x", "--lines"}).m_iExit, 2);
    EXPECT_EQ(gen("{ \"@\" = \"layout 2\" }", {}).m_iExit, 3);
}

}  // namespace murv::tests
