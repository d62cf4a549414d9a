// murv gen wireshark: the call, and what the script says; tests/wireshark/ runs it.
#include <gtest/gtest.h>

#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
std::string script(const std::string& members, std::vector<std::string> options = {})
{
    options.insert(options.begin(), {"gen", "wireshark", "-"});
    const tRun run = murvOn("{ " + members + " }", options);
    EXPECT_EQ(run.m_strError, "");
    EXPECT_EQ(run.m_iExit, 0);
    return run.m_strOutput;
}

void expectHas(const std::string& text, const std::string& what)
{
    EXPECT_NE(text.find(what), std::string::npos) << what << " in\n" << text.substr(0, 3000);
}

void expectLacks(const std::string& text, const std::string& what)
{
    EXPECT_EQ(text.find(what), std::string::npos) << what;
}

/// Why a layout can have no dissector for TCP.
void expectNoStream(const std::string& members, const std::string& why)
{
    const tRun run = murvOn("{ " + members + " }", {"gen", "wireshark", "-", "--tcp"});
    EXPECT_EQ(run.m_iExit, 4);
    EXPECT_EQ(run.m_strOutput, "");
    EXPECT_EQ(run.m_strError, "<stdin>: error: there can be no dissector for TCP: " + why + "\n");
    const std::string udp = script(members);
    expectHas(udp, "-- Not for TCP: " + why + ".\n");
    expectHas(udp, "  transports = { \"udp\" },\n");
}
}  // namespace

TEST(GenWireshark, writesATableOfPartsAndTheEngine)
{
    const std::string text = script(
        "\"@\" = \"layout 1\",\n// how much\n\"Hello time\" = (BNF2) 3, \"@Hello time\" = "
        "\"valid 1..9\"",
        {"--port", "1985", "--udp", "--name", "demo"});
    expectHas(text, "-- Wireshark dissector for the layout stdin, made by murv gen wireshark of murv ");
    expectHas(text, "  protocol = \"demo\",");
    expectHas(text, "  transports = { \"udp\" },\n  port = 1985,\n");
    expectHas(text, R"(    -- 1: Hello time BNF2; valid 1..9
    {
      kind = "leaf",
      name = "Hello time",
      parent = 0,
      comment = "how much",
      item = { form = "binary", length = 2, valid = { { low = "1", high = "9" } } },
      field = "hello_time",
    },
)");
    expectHas(text, "function proto.dissector(tvb, pinfo, tree)");
}

TEST(GenWireshark, isForBothTransportsOrTheOneThatIsAskedFor)
{
    const std::string members = "\"@\" = \"layout 1; fixed 2\", \"a\" = (BNF2) 0";
    expectHas(script(members), "transports = { \"udp\", \"tcp\" }");
    expectHas(script(members, {"--tcp"}), "transports = { \"tcp\" }");
    expectLacks(script(members), "  port =");
}

TEST(GenWireshark, refusesTcpWhereAStreamDoesNotSayEnough)
{
    expectNoStream("\"@\" = \"layout 1\", \"a\" = (BNF2) 0, \"b\" = (BCF0) \"\", \"@b\" = \"to end\"",
                   "b may end with the input (\"to end\"), and a stream has no end");
    expectNoStream("\"@\" = \"layout 1\", \"a\" = (BNF2) 0, \"b\" = (BNF2) 0, \"@b\" = \"optional\"",
                   "b may end with the input (\"optional\"), and a stream has no end");
    expectNoStream(
        "\"@\" = \"layout 1; lines\", \"h\" = { (ACF1fix) \"H\", \"k\" = (ANF1) 0 }, \"d\" = { (ACF1fix) "
        "\"D\", \"x\" = (ACF1) \"\", \"@x\" = \"if h.k = 1\" }",
        "d.x depends on another record (\"if h.k = 1\"), and in a stream each is read alone");
    expectNoStream("\"@\" = \"layout 1; fixed 1\", \"h\" = { \"k\" = (ANF1) 0 }, \"d\" = { \"x\" = (ANF1) 0 }",
                   "d begins like h, and in a stream records are told apart by their literals alone");
}

TEST(GenWireshark, saysWhatIsNotComparedOverTcp)
{
    const std::string text = script(
        "\"@\" = \"layout 1; lines\", \"l\" = [ { (ACF1fix) \"D\", \"x\" = (ANF1) 0 } ], "
        "\"end\" = { (ACF1fix) \"E\", \"n\" = (ANF1) 0, \"@n\" = \"count of l\" }");
    expectHas(text, "-- Not compared over TCP, where each record is read alone: end.n.\n");
}

TEST(GenWireshark, namesAreUniqueAndFitFilters)
{
    const std::string text = script(
        "\"@\" = \"layout 1\", \"a b\" = (BNF1) 0, \"a.b\" = (BNF1) 0, \"Finding\" = (BNF1) 0, "
        "#7 (BNF1) 0, \"\xC3\xA4\" = (BNF1) 0, \"l\" = [ (BNF1) 0 ], \"@l\" = \"to end\"");
    for (const char* field : {"\"a_b\"", "\"a_b_2\"", "\"finding_2\"", "\"id7\"", "\"part\"", "\"l\""})
        expectHas(text, std::string("field = ") + field);
}

TEST(GenWireshark, textsOfTheLayoutAreQuoted)
{
    const std::string text =
        script("\"@\" = \"layout 1\",\n// ]] \\\" \\\\ \x1B[2J\n\"\\\"\\\\\\n\\x00\\xFF\" = (BNF1) 0");
    expectHas(text, R"(name = "\"\\\010\000\255")");
    expectHas(text, R"(comment = "]] \\\" \\\\ \027[2J")");
    expectHas(text, R"(-- 1: "\"\\???" BNF1)");
    expectLacks(text, "\x1B");
    expectLacks(text.substr(0, text.find("local layout")), "\xFF");
}

TEST(GenWireshark, codePagesAreThereWhenTheyAreUsed)
{
    expectHas(script("\"@\" = \"layout 1; cp500\", \"a\" = (ACF1) \"\""), "pages = {\n    cp500 = \"");
    expectHas(script("\"@\" = \"layout 1; latin1\", \"a\" = (ACF1) \"\""), "pages = {},");
}

TEST(GenWireshark, refusesWhatWiresharkCannotShow)
{
    std::string layout = "\"x\" = (BNF1) 0";
    for (int i = 0; i < 401; ++i)
        layout = "\"a\" = { " + layout + " }";
    const tRun run = murvOn("{ \"@\" = \"layout 1\", " + layout + " }", {"gen", "wireshark", "-"});
    EXPECT_EQ(run.m_iExit, 4);
    EXPECT_EQ(run.m_strError, "<stdin>: error: the layout nests deeper than the 400 levels that Wireshark can show\n");
}

TEST(GenWireshark, writesAFile)
{
    const CTemporaryDirectory directory;
    const tRun run = murv(directory, {"gen", "wireshark", "-l", "hsrp", "-o", "hsrp.lua"});
    EXPECT_EQ(run.m_iExit, 0) << run.m_strError;
    EXPECT_EQ(run.m_strOutput, "");
    EXPECT_EQ(directory.read("hsrp.lua"), murvOn("", {"gen", "wireshark", "hsrp"}).m_strOutput);
}

TEST(GenWireshark, wrongCallsAreRefused)
{
    const std::pair<std::vector<std::string>, const char*> calls[] = {
        {{}, "murv: error: a layout is required"},
        {{"hrsp"}, "murv: error: no layout is called hrsp; did you mean hsrp? (see murv layouts)"},
        {{"hsrp", "--port", "0"},
         "murv: error: --port: Value 0 not in range 1 to 65535 (see murv gen wireshark --help)"},
        {{"hsrp", "--port", "65536"},
         "murv: error: --port: Value 65536 not in range 1 to 65535 (see murv gen wireshark --help)"},
        {{"hsrp", "--udp", "--tcp"}, "murv: error: --udp excludes --tcp (see murv gen wireshark --help)"},
        {{"hsrp", "--name", "A.b"}, "murv: error: --name takes small letters, digits and \"_\", and no digit first"},
    };
    for (const auto& [options, message] : calls)
    {
        std::vector<std::string> call = {"gen", "wireshark"};
        call.insert(call.end(), options.begin(), options.end());
        const tRun run = murvOn("", call);
        EXPECT_EQ(run.m_iExit, 2);
        EXPECT_EQ(run.m_strError, std::string(message) + "\n");
    }
}

TEST(GenWireshark, everyInstalledLayoutHasOne)
{
    for (const char* name :
         {"ach", "ar", "binaryfile", "cobol", "cpio", "fix", "git-index", "hsrp", "iso8583", "itch50",
          "modbus-response", "nmea", "ntp", "pcap", "sensor", "ssh-public-key", "tar", "tle"})
    {
        const tRun run = murvOn("", {"gen", "wireshark", name});
        EXPECT_EQ(run.m_iExit, 0) << name << run.m_strError;
        expectHas(run.m_strOutput, "local layout = {");
    }
}

TEST(GenWireshark, helpIsThatOfTheInnerVerb)
{
    const tRun run = murvOn("", {"gen", "wireshark", "--help"});
    EXPECT_EQ(run.m_iExit, 0);
    expectHas(run.m_strOutput, "Usage: murv gen wireshark [OPTIONS] [LAYOUT]");
    expectHas(run.m_strOutput, "--port N");
    expectHas(murvOn("", {"gen", "--help"}).m_strOutput, "\n  wireshark ");
}

}  // namespace murv::tests
