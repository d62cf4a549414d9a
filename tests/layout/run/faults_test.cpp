// What a fault says: path, places, record, expression, rules, bytes and sentence.
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

namespace
{

CLayout file()
{
    return layout4(R"("batches" = [ { "head" = { "t" = (ACF1fix) "5" }, "entries" = [ { "t" = (ACF1fix) "6",
        "amount" = (ANF4) 0, "@amount" = "decimals 2; valid 0..50", "account" = (ACF4) "",
        "@account" = "mask 2; valid \"1234\" | \"5678\"",
        "secret" = (ANF2) 0, "@secret" = "mask" } ] } ])",
                   "lines");
}

tPacketFault fault4(const CLayout& layout, std::string_view packet)
{
    CPacketReader reader(layout);
    EXPECT_FALSE(reader.check(packet));
    return reader.getFault();
}

std::vector<tPacketFault> findingsOf(const CLayout& layout, std::string_view packet)
{
    CPacketReader reader(layout);
    EXPECT_TRUE(reader.check(packet)) << place4(reader.getFault());
    return reader.getFindings();
}

tPacketFault faultOfMaking(const CLayout& layout, const std::string& tree)
{
    CPacketMaker maker(layout);
    std::string packet;
    EXPECT_FALSE(maker.make(tree4(tree), packet));
    return maker.getFault();
}

}  // namespace

TEST(Faults, ofReadingSayAllThatIsKnown)
{
    const tPacketFault fault = fault4(file(), "5\n60001123400\n5\n6001x567899\n");
    EXPECT_EQ(fault.m_eCode, PF_digits);
    EXPECT_EQ(fault.m_strPath, "batches[1].entries[0].amount");
    EXPECT_EQ(fault.m_ullRecord, 4u);
    EXPECT_EQ(fault.m_ullOffset, 17u);
    EXPECT_EQ(fault.m_ullLength, 4u);
    EXPECT_EQ(fault.m_ullRecordOffset, 1u);
    EXPECT_EQ(fault.m_ullMissing, 0u);
    EXPECT_EQ(fault.m_strExpression, "ANF4");
    EXPECT_EQ(fault.m_strRules, "decimals 2; valid 0..50");
    EXPECT_EQ(fault.m_strBytes, "001x");
    EXPECT_EQ(fault.m_strMessage, "Other characters stand where digits must");
}

TEST(Faults, findingsHaveTheSameForm)
{
    const std::vector<tPacketFault> findings = findingsOf(file(), "5\n69999000000\n");
    ASSERT_EQ(findings.size(), 2u);
    EXPECT_EQ(findings[0].m_eCode, PF_invalid);
    EXPECT_EQ(findings[0].m_strPath, "batches[0].entries[0].amount");
    EXPECT_EQ(findings[0].m_ullRecord, 2u);
    EXPECT_EQ(findings[0].m_ullOffset, 3u);
    EXPECT_EQ(findings[0].m_ullRecordOffset, 1u);
    EXPECT_EQ(findings[0].m_strBytes, "9999");
    EXPECT_EQ(findings[0].m_strMessage, "The value is not one of the valid ones");
    EXPECT_EQ(findings[1].m_strBytes, "**00");
}

TEST(Faults, masksHideBytes)
{
    EXPECT_EQ(fault4(file(), "5\n6000112341x\n").m_strBytes, "**");
    EXPECT_EQ(fault4(file(), "5\n6000112341x\n").m_strRules, "mask");
}

TEST(Faults, bytesOfSeveralPartsAreHiddenWhenOneIsMasked)
{
    EXPECT_EQ(fault4(file(), "5\n60001123400_\n").m_strBytes, "*");
    const CLayout lines = layout4(R"("l" = [ { "account" = (ACF4) "", "@account" = "mask" } ])", "lines 4");
    EXPECT_EQ(fault4(lines, "12345\n").m_strBytes, "*****");
    const CLayout open = layout4(R"("l" = [ { "account" = (ACF4) "" } ])", "lines 4");
    EXPECT_EQ(fault4(open, "12345\n").m_strBytes, "12345");
}

TEST(Faults, bytesAreSixtyFourAtMost)
{
    const CLayout layout = layout4(R"("n" = (ANF100) 0)");
    EXPECT_EQ(fault4(layout, std::string(100, 'x')).m_strBytes, std::string(64, 'x'));
    EXPECT_EQ(fault4(layout, std::string(100, 'x')).m_ullLength, 100u);
}

TEST(Faults, missingBytesAreCounted)
{
    const CLayout layout =
        layout4(R"("a" = (ACF2) "", "n" = (BNF1) 0, "@n" = "size of b", "b" = (BCF0) "", "@b" = "to end")");
    EXPECT_EQ(fault4(layout, "").m_ullMissing, 2u) << "at least";
    EXPECT_EQ(fault4(layout, "xy").m_ullMissing, 1u);
    EXPECT_EQ(fault4(layout, "xy\5ab").m_ullMissing, 3u);
    EXPECT_EQ(fault4(layout, "xy\5ab").m_eCode, PF_more);
    EXPECT_EQ(fault4(layout, "xy\5ab").m_strMessage, "The input ends too soon");
}

TEST(Faults, theOutermostKnownLengthSaysWhatIsMissing)
{
    const CLayout layout = layout4(
        R"("l" = [ { "n" = (BNF1) 0, "@n" = "size of b", "b" = (BCF0) "", "@b" = "to end" } ])", "prefixed BNF1");
    EXPECT_EQ(fault4(layout, "\x0A\5a").m_ullMissing, 8u);
    EXPECT_EQ(fault4(layout, "\2\5ab").m_eCode, PF_size) << "inside a complete frame it is an error";
}

TEST(Faults, anEarlierFaultComesFirst)
{
    EXPECT_EQ(place4(fault4(layout4(R"("a" = (ANF2) 0, "b" = (ACV1+1) "")"), "x19")), "digits at a @0+2");
}

TEST(Faults, findingsComeInTheOrderOfTheInput)
{
    const CLayout layout = layout4(R"("l" = [ { "a" = (ANF1) 0, "@a" = "valid 1", "c" = (BNF1) 0, "@c" = "sum8 of a",
        "b" = (ANF1) 0, "@b" = "valid 1" } ])",
                                   "lines");
    EXPECT_EQ(findings4(findingsOf(layout, "2x2\r\n2x2\n")),
              " ! invalid at l[0].a @0+1 ! checksum at l[0].c @1+1 ! invalid at l[0].b @2+1"
              " ! invalid at l[1].a @5+1 ! checksum at l[1].c @6+1 ! invalid at l[1].b @7+1 ! lineEnd at l @8+1");
}

TEST(Faults, namesWithMarksAreQuotedInPaths)
{
    const CLayout layout = layout4(R"("a.b" = { "say \"x\"" = { #7 = (ANF1) 0 } })");
    EXPECT_EQ(fault4(layout, "x").m_strPath, R"("a.b"."say \"x\"".#7)");
}

TEST(Faults, ofMakingSayWhere)
{
    const tPacketFault fault =
        faultOfMaking(file(), R"({"batches"=[{"entries"=[{"account"="1234"}]},{"entries"=[{"account"="1234"},)"
                              R"({"amount"="100.00","account"="1234"}]}]})");
    EXPECT_EQ(fault.m_eCode, PF_tooLong);
    EXPECT_EQ(fault.m_strPath, "batches[1].entries[1].amount");
    EXPECT_EQ(fault.m_ullRecord, 5u);
    EXPECT_EQ(fault.m_ullOffset, 29u);
    EXPECT_EQ(fault.m_ullRecordOffset, 1u);
    EXPECT_EQ(fault.m_strExpression, "ANF4");
    EXPECT_EQ(fault.m_strRules, "decimals 2; valid 0..50");
    EXPECT_EQ(fault.m_strMessage, "The value does not fit the item");
}

TEST(Faults, ofNumbersThatAreFilledInSayWhere)
{
    const CLayout layout = layout4(
        R"("l" = [ { "h" = (ACF1) "", "n" = (ANF1) 0, "@n" = "size of b", "b" = (BCF0) "", "@b" = "to end" } ])",
        "prefixed BNF1");
    const tPacketFault fault = faultOfMaking(layout, R"({"l"=[{"b"="x"},{"b"="0123456789"}]})");
    EXPECT_EQ(place4(fault), "tooLong at l[1].n @6+1");
    EXPECT_EQ(fault.m_ullRecord, 2u);
    EXPECT_EQ(fault.m_ullRecordOffset, 1u);
}

TEST(Faults, outsideRecordsTheNextRecordIsMeant)
{
    const tPacketFault fault = fault4(layout4(R"("l" = [ { "a" = (ACF2) "" } ])", "lines 2"), "ab\nc\n");
    EXPECT_EQ(fault.m_ullRecord, 2u);
    EXPECT_EQ(fault.m_ullOffset, 3u);
    EXPECT_EQ(fault.m_ullRecordOffset, 0u);
}

TEST(Faults, aReaderForgetsThem)
{
    const CLayout layout = file();
    CPacketReader reader(layout);
    EXPECT_FALSE(reader.check("6"));
    EXPECT_TRUE(reader.check("5\n69999123400\n"));
    EXPECT_EQ(reader.getFault().m_eCode, PF_none);
    EXPECT_EQ(reader.getFault().m_strPath, "");
    EXPECT_EQ(reader.getFindings().size(), 1u);
    EXPECT_TRUE(reader.check("5\n"));
    EXPECT_TRUE(reader.getFindings().empty());
}

TEST(Faults, aLayoutThatIsNotCompiledIsMisuse)
{
    const CLayout layout;
    EXPECT_THROW(CPacketReader{layout}, CLogicError);
    EXPECT_THROW(CPacketMaker{layout}, CLogicError);
    EXPECT_THROW(CPacketView{layout}, CLogicError);
}

TEST(Faults, ofLiteralsSayWhichBytesWereExpected)
{
    const CLayout layout = layout4(R"("n" = (ANF1) 0, "t" = (BCF3fix) "a\"\xFF", "m" = (ACF4fix) "1234",
        "@m" = "mask 1", "v" = (ACV1+1fix) "xy", "e" = (ACF0fix) "z", "@e" = "ends \";\"")");
    const auto words = [&layout](std::string_view packet) { return fault4(layout, packet).m_strMessage; };
    EXPECT_EQ(words("0abc12342xyz;"), R"(The layout demands "a\"\xFF", but "abc" stands here)");
    EXPECT_EQ(words("0a\"\xFF"
                    "12352xyz;"),
              R"(The layout demands "***4", but "***5" stands here)");
    EXPECT_EQ(words("0a\"\xFF"
                    "12342xxz;"),
              R"(The layout demands "2xy", but "2xx" stands here)");
    EXPECT_EQ(faultOfMaking(layout, R"({"v"="x"})").m_strMessage, R"(The layout demands "2xy", but "1x" stands here)");
    EXPECT_EQ(faultOfMaking(layout, R"({"m"="1235"})").m_strMessage,
              R"(The layout demands "***4", but "***5" stands here)");
    const CLayout wide = layout4(R"("w" = (ACF70fix) "w")");
    EXPECT_EQ(fault4(wide, std::string(70, 'v')).m_strMessage, "The layout demands \"w" + std::string(63, ' ') +
                                                                   "\" and more, but \"" + std::string(64, 'v') +
                                                                   "\" and more stands here");
}

TEST(Faults, ofLossSayWhatWouldNotComeBack)
{
    const CLayout layout = layout4(R"("d" = (ANF4) 0, "@d" = "decimals 2", "n" = (ANF4) 0, "z" = (ANF4) 1,
        "@z" = "zero is null", "t" = (ACF4) "", "r" = (ACF4) "", "@r" = "right", "p" = (BNF2) 0,
        "@p" = "packed; decimals 1", "b" = (BNF2) 0, "h" = (ANF4) 0, "@h" = "hex")");
    const auto words = [&layout](const std::string& tree) {
        const tPacketFault fault = faultOfMaking(layout, tree);
        return std::string(getFaultName(fault.m_eCode)) + " at " + fault.m_strPath + ": " + fault.m_strMessage;
    };
    EXPECT_EQ(words(R"({"d"="1.234"})"), "lossy at d: The number has more decimals than the item");
    EXPECT_EQ(words(R"({"d"=1.234})"), "lossy at d: The number has more decimals than the item");
    EXPECT_EQ(words(R"({"p"="1.23"})"), "lossy at p: The number has more decimals than the item");
    EXPECT_EQ(words(R"({"n"="1.5"})"), "lossy at n: The number has decimals, which the item does not have");
    EXPECT_EQ(words(R"({"b"=1.5})"), "lossy at b: The number has decimals, which the item does not have");
    EXPECT_EQ(words(R"({"h"="1.5"})"), "lossy at h: The number has decimals, which the item does not have");
    EXPECT_EQ(words(R"({"n"="007"})"), "lossy at n: The number has zeros in front, which would not come back");
    EXPECT_EQ(words(R"({"z"=0})"), "lossy at z: The number is zero, which would come back as null");
    EXPECT_EQ(words(R"({"t"="x "})"), "lossy at t: The value ends in padding, which would not come back");
    EXPECT_EQ(words(R"({"r"=" x"})"), "lossy at r: The value begins with padding, which would not come back");
}

}  // namespace murv::tests
