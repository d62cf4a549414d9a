// Items whose keywords an application has registered: what callbacks see, what they may do, and what is refused.
#include <cstring>
#include <stdexcept>
#include <vector>

#include "murv/records.h"
#include "support/clean_registries.h"
#include "support/failing_malloc.h"
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

namespace
{

/// What callbacks saw, one entry a call.
std::vector<std::string> s_vSeen;

constexpr unsigned char s_cucKind = 3;

int getIndex(const char* text, unsigned char)
{
    return std::strncmp(text, "mine", 4) == 0 ? 7 : 0;
}

const char* getText(unsigned short, unsigned char)
{
    return "mine";
}

int agreeMaking(unsigned short index, unsigned char option, CFields& node)
{
    const tInnerSupportedArgs4ESK& args = node.pkt_GetISA4ESK();
    EXPECT_EQ(args.m_uiPacketLen + args.m_uiOffset, 0u);
    EXPECT_NE(args.m_pMemo, nullptr);
    s_vSeen.push_back(std::to_string(index) + "/" + std::to_string(option) + " " + node.getName() + "=" +
                      node.asString() + " after " + quotedText(*args.madePacket()));
    return 1;
}

int agreeParsing(unsigned short index, unsigned char option, CFields& node)
{
    const tInnerSupportedArgs4ESK& args = node.pkt_GetISA4ESK();
    EXPECT_NE(args.m_pMemo, nullptr);
    s_vSeen.push_back(std::to_string(index) + "/" + std::to_string(option) + " " + node.getName() + "=" +
                      node.asString() + " at " + std::to_string(args.m_uiOffset) + " of " +
                      quotedText({args.givenPacket(), args.m_uiPacketLen}));
    return 1;
}

int refuse(unsigned short, unsigned char, CFields&)
{
    return 0;
}

int throwUp(unsigned short, unsigned char, CFields&)
{
    throw std::runtime_error("from the callback");
}

std::string_view rest4(CFields& node)
{
    const tInnerSupportedArgs4ESK& args = node.pkt_GetISA4ESK();
    return std::string_view(args.givenPacket(), args.m_uiPacketLen).substr(args.m_uiOffset);
}

int setLength(CFields& node, std::size_t length)
{
    tPacketExpInfo pei = node.pkt_GetExp();
    pei.m_uiLength = static_cast<unsigned int>(length);
    node.pkt_SetExp(pei);
    return 1;
}

/// The item ends after its first full stop.
int findStop(unsigned short, unsigned char, CFields& node)
{
    const std::size_t stop = rest4(node).find('.');
    return stop == std::string_view::npos ? 0 : setLength(node, stop + 1);
}

/// A sum over the bytes before, in one digit.
char sumOf(std::string_view bytes)
{
    unsigned int sum = 0;
    for (const char c : bytes)
        sum += static_cast<unsigned char>(c);
    return static_cast<char>('0' + sum % 10);
}

int makeSum(unsigned short, unsigned char, CFields& node)
{
    node = sumOf(*node.pkt_GetISA4ESK().madePacket()) - '0';
    return 1;
}

int checkSum(unsigned short, unsigned char, CFields& node)
{
    const tInnerSupportedArgs4ESK& args = node.pkt_GetISA4ESK();
    const std::string_view item = rest4(node);
    return !item.empty() && item[0] == sumOf({args.givenPacket(), args.m_uiOffset}) ? 1 : 0;
}

class LayoutCallbacks : public testing::Test
{
protected:
    LayoutCallbacks()
    {
        s_vSeen.clear();
        CFields::setGetIdxFP4ESK(s_cucKind, getIndex);
        CFields::setGetTxtFP4ESK(s_cucKind, getText);
        use(agreeMaking, agreeParsing);
    }
    static void use(CFields::tAllotPktFP making, CFields::tParsePktFP parsing)
    {
        CFields::setAllotPktFP4ESK(s_cucKind, making);
        CFields::setParsePktFP4ESK(s_cucKind, parsing);
    }
    static std::vector<std::string> seen(const std::string& result)
    {
        s_vSeen.insert(s_vSeen.begin(), result);
        return std::move(s_vSeen);
    }
    using tSeen = std::vector<std::string>;

private:
    tCleanRegistries m_tClean;
};

}  // namespace

TEST_F(LayoutCallbacks, readingShowsPacketAndOffset)
{
    const CLayout layout = layout4(R"("a" = (ACF2) "", "b" = (ACF4mine_2) "bb", "c" = (ACF2) "")");
    EXPECT_EQ(seen(read(layout, "AAxyzwCC")),
              (tSeen{R"({"a"="AA","b"="xyzw","c"="CC"})", R"(7/2 b=bb at 2 of "AAxyzwCC")"}));
}

TEST_F(LayoutCallbacks, makingShowsThePacketSoFarAndIsReadAgain)
{
    const CLayout layout = layout4(R"("a" = (ACF2) "", "b" = (ACF4mine_2) "bb", "c" = (ACF2) "")");
    EXPECT_EQ(seen(make(layout, R"({"a"="AA","b"="xy","c"="CC"})")),
              (tSeen{"AAxy  CC", R"(7/2 b=xy after "AA")", R"(7/2 b=bb at 2 of "AAxy  CC")"}));
    EXPECT_EQ(seen(make(layout, R"({"a"="AA","c"="CC"})")),
              (tSeen{"AAbb  CC", R"(7/2 b=bb after "AA")", R"(7/2 b=bb at 2 of "AAbb  CC")"}));
}

TEST_F(LayoutCallbacks, thePacketIsTheRecord)
{
    const CLayout layout = layout4(R"("l" = [ { "a" = (ACF1) "", "b" = (ANF1mine) 0 } ])", "lines");
    EXPECT_EQ(seen(read(layout, "a1\nb2\n")), (tSeen{R"({"l"=[{"a"="a","b"=1},{"a"="b","b"=2}]})",
                                                     R"(7/0 b=0 at 1 of "a1")", R"(7/0 b=0 at 1 of "b2")"}));
    EXPECT_EQ(seen(make(layout, R"({"l"=[{"a"="a","b"=1},{"a"="b","b"=2}]})")),
              (tSeen{"a1\nb2\n", R"(7/0 b=1 after "a")", R"(7/0 b=2 after "b")", R"(7/0 b=0 at 1 of "a1")",
                     R"(7/0 b=0 at 1 of "b2")"}));
}

TEST_F(LayoutCallbacks, itemsAreAskedInTheirOrderAndOnlyWhenTheyAreThere)
{
    const CLayout layout =
        layout4(R"("n" = (ANF1) 0, "a" = (ANF1mine) 0, "@a" = "if n = 1", "b" = (ANV1+1mine) 0, "c" = (ANF1mine) 0)");
    EXPECT_EQ(seen(read(layout, "12134")), (tSeen{R"({"n"=1,"a"=2,"b"=3,"c"=4})", R"(7/0 a=0 at 1 of "12134")",
                                                  R"(7/0 b=0 at 2 of "12134")", R"(7/0 c=0 at 4 of "12134")"}));
    EXPECT_EQ(seen(read(layout, "0134")),
              (tSeen{R"({"n"=0,"b"=3,"c"=4})", R"(7/0 b=0 at 1 of "0134")", R"(7/0 c=0 at 3 of "0134")"}));
}

TEST_F(LayoutCallbacks, whatACallbackRefusesIsAFault)
{
    const CLayout layout = layout4(R"("l" = [ { "a" = (ACF1) "", "b" = (ANF1mine) 0 } ])", "lines");
    use(agreeMaking, refuse);
    EXPECT_EQ(refusal(layout, "a1\n"), "callback at l[0].b @1+0: The callback of the item's keyword refused it");
    EXPECT_EQ(make(layout, R"({"l"=[{"a"="a","b"=1}]})"), "callback at l[0].b") << "it cannot be read again";
    use(refuse, agreeParsing);
    EXPECT_EQ(make(layout, R"({"l"=[{"a"="a","b"=1},{}]})"), "callback at l[0].b");
}

TEST_F(LayoutCallbacks, aRefusalIsSkippedLikeOtherDamage)
{
    use(makeSum, checkSum);
    const CLayout layout = layout4(R"("l" = [ { "a" = (ACF1) "", "s" = (ANF1mine) 0 } ])", "lines");
    CRecordReader reader(layout);
    reader.open("07\n17\n29\n");
    CFields record;
    EXPECT_EQ(reader.next(record), RR_fault);
    EXPECT_EQ(place4(reader.getFault()), "callback at l[0].s @1+0");
    EXPECT_TRUE(reader.skip());
    EXPECT_EQ(reader.next(record), RR_fault);
    EXPECT_TRUE(reader.skip());
    EXPECT_EQ(reader.next(record), RR_fault);
    EXPECT_TRUE(reader.skip());
    EXPECT_EQ(reader.next(record), RR_end);
    reader.open("08\n19\n20\n");
    for (const int sum : {8, 9, 0})
    {
        ASSERT_EQ(reader.next(record), RR_record);
        EXPECT_EQ(record["s"].asSint32(), sum);
    }
}

TEST_F(LayoutCallbacks, valuesOfCallbacksAreFilledIn)
{
    use(makeSum, checkSum);
    const CLayout layout = layout4(R"("a" = (ACF2) "", "s" = (ANF1mine) 0)");
    EXPECT_EQ(make(layout, R"({"a"="ab"})"), "ab5");
    EXPECT_EQ(make(layout, R"({"a"="ab","s"=9})"), "ab5") << "what is filled in ignores the data";
    tMakeOptions options;
    options.m_bAgree = true;
    EXPECT_EQ(make(layout, R"({"a"="ab","s"=9})", options), "callback at s");
    EXPECT_EQ(makingFault(layout, R"({"a"="ab","s"=9})", options), "The data has another value than what is filled in");
    EXPECT_EQ(make(layout, R"({"a"="ab","s"=5})", options), "ab5");
    EXPECT_EQ(make(layout4(R"("a" = (ACF2) "", "s" = (ANF1mine) 0, "@s" = "required")"), R"({"a"="ab"})"),
              "missing at s");
}

TEST_F(LayoutCallbacks, sizesAndCountsAreFilledInBeforeACallbackLooks)
{
    use(makeSum, checkSum);
    expectBoth(layout4(R"("n" = (ANF1) 0, "@n" = "size of a", "a" = (ACF0) "", "s" = (ANF1mine) 0)"), "2ab5",
               R"({"n"=2,"a"="ab","s"=5})");
    expectBoth(layout4(R"("n" = (BNF1) 0, "@n" = "count of l", "l" = [ (ACF1) "" ], "s" = (ANF1mine) 0)"),
               bytes("\2ab7"), R"({"n"=2,"l"=["a","b"],"s"=7})");
    expectBoth(layout4(R"("k" = (BNF1) 0, "v" = { "@" = "one of by k", #1 "a" = (ACF1) "", #2 "b" = (ACF1) "" },
        "s" = (ANF1mine) 0)"),
               bytes("\2a9"), R"({"k"=2,"v"={"b"="a"},"s"=9})");
    EXPECT_EQ(make(layout4(R"("k" = (BNF1) 0, "v" = { "@" = "one of by k", #1 "a" = (ACF1) "", #2 "b" = (ACF1) "" },
        "s" = (ANF1mine) 0)"),
                   R"({"v"={"b"="a"}})"),
              bytes("\2a9"));
    EXPECT_EQ(make(layout4(R"("n" = (ANV1+1) 0, "@n" = "size of a", "a" = (ACF0) "", "s" = (ANF1mine) 0)"),
                   R"({"a"="abcdefghijkl"})"),
              "212abcdefghijkl9")
        << "a number of varying width moves what follows";
    expectBoth(layout4(R"("m" = (BCF1) "", "@m" = "bits of d", "d" = { #1 "a" = (ACF1) "", #8 "b" = (ACF1) "" },
        "s" = (ANF1mine) 0)"),
               bytes("\x81xy0"), R"({"m"="\x81","d"={"a"="x","b"="y"},"s"=0})");
}

TEST_F(LayoutCallbacks, aCallbackMayDecideTheLength)
{
    use(agreeMaking, findStop);
    const CLayout layout = layout4(R"("a" = (ACF0mine) "", "b" = (ACF2) "", "c" = (BCF0mine) "")");
    expectBoth(layout, "one.xyt.", R"({"a"="one.","b"="xy","c"="t."})");
    EXPECT_EQ(make(layout, R"({"a"="one","b"="xy","c"="t."})"), "ambiguous at a");
    EXPECT_EQ(make(layout, R"({"a"="o.ne.","b"="xy","c"="t."})"), "ambiguous at a");
    EXPECT_EQ(make(layout, R"({"a"="one.","b"="xy","c"="t"})"), "callback at c");
    EXPECT_EQ(read(layout, "one.xyt"), "callback at c @6+0");
    EXPECT_EQ(read(layout4(R"("l" = [ { "a" = (ACF0mine) "", "b" = (ANF1) 0 } ])"), "x.1.2"),
              R"({"l"=[{"a"="x.","b"=1},{"a"=".","b"=2}]})");
}

TEST_F(LayoutCallbacks, lengthsBeyondThePacketAreMissingBytes)
{
    use(agreeMaking, [](unsigned short, unsigned char, CFields& node) { return setLength(node, 5); });
    EXPECT_EQ(read(layout4(R"("a" = (ACF0mine) "")"), "abc"), "more at a @0+3");
    EXPECT_EQ(read(layout4(R"("a" = (ACF0mine) "")", "lines"), "abc\n"), "frame at a @0+3");
    EXPECT_EQ(read(layout4(R"("a" = (ACF0mine) "")", "lines"), "abcde\n"), R"({"a"="abcde"})");
    use(agreeMaking, [](unsigned short, unsigned char, CFields& node) { return setLength(node, 0xFFFFFFFF); });
    EXPECT_EQ(read(layout4(R"("a" = (ACF0mine) "")"), "abc"), "size at a @0+0");
}

TEST_F(LayoutCallbacks, piecesDoNotChangeTheResult)
{
    use(agreeMaking, findStop);
    const CLayout layout = layout4(R"("a" = (ACF0mine) "", "b" = (ACF1) "")");
    CRecordReader reader(layout);
    reader.open();
    CFields record;
    std::string results;
    for (const char c : std::string("one.xtwo.y"))
    {
        reader.put({&c, 1});
        const E_RecordResult result = reader.next(record);
        ASSERT_TRUE(result == RR_more || result == RR_record);
        results += result == RR_record ? text4Tree(record) : "-";
    }
    EXPECT_EQ(results, R"(----{"a"="one.","b"="x"}----{"a"="two.","b"="y"})");
    reader.put("end");
    EXPECT_EQ(reader.next(record), RR_more);
    reader.end();
    EXPECT_EQ(reader.next(record), RR_fault);
    EXPECT_EQ(place4(reader.getFault()), "callback at a @10+0");
}

TEST_F(LayoutCallbacks, aStatedLengthStays)
{
    use(agreeMaking, [](unsigned short, unsigned char, CFields& node) { return setLength(node, 3); });
    for (const char* const item : {"(ACF2mine) \"\"", "(ACV1+1mine) \"\""})
    {
        const CLayout layout = layout4(R"("b" = )" + std::string(item));
        EXPECT_EQ(refusal(layout, "1x"), "callback at b @0+0: The callback gave a length that the layout states itself")
            << item;
    }
    use([](unsigned short, unsigned char, CFields& node) { return setLength(node, 3); }, agreeParsing);
    EXPECT_EQ(makingFault(layout4(R"("b" = (ACF2mine) "")"), R"({"b"="xy"})"),
              "The callback gave a length that the layout states itself");
    EXPECT_EQ(makingFault(layout4(R"("b" = (ACF0mine) "")"), R"({"b"="xy"})"),
              "The value has another length than the callback gave");
}

TEST_F(LayoutCallbacks, whatElseACallbackChangesIsRefused)
{
    const auto makeForm = [](unsigned short, unsigned char, CFields& node) {
        tPacketExpInfo pei = node.pkt_GetExp();
        pei.m_ePacketExp = PEC_B;
        node.pkt_SetExp(pei);
        return 1;
    };
    const auto makeContainer = [](unsigned short, unsigned char, CFields& node) {
        node.setValue(DT_fields);
        return 1;
    };
    const CLayout layout = layout4(R"("b" = (ACF2mine) "")");
    use(agreeMaking, makeForm);
    EXPECT_EQ(refusal(layout, "xy"),
              "callback at b @0+0: The callback changed more of the packet expression than its length");
    use(agreeMaking, makeContainer);
    EXPECT_EQ(refusal(layout, "xy"), "callback at b @0+0: The callback made the value a container");
    use(makeForm, agreeParsing);
    EXPECT_EQ(make(layout, R"({"b"="xy"})"), "callback at b");
    use(makeContainer, agreeParsing);
    EXPECT_EQ(makingFault(layout, R"({"b"="xy"})"), "The callback made the value a container");
}

TEST_F(LayoutCallbacks, whatACallbackGivesMustFit)
{
    const CLayout layout = layout4(R"("b" = (ACF2mine) "")");
    for (const char* const value : {"xyz", "x "})
    {
        static const char* s_pValue;
        s_pValue = value;
        use(
            [](unsigned short, unsigned char, CFields& node) {
                node = s_pValue;
                return 1;
            },
            agreeParsing);
        EXPECT_EQ(make(layout, "{}"), std::string_view(value) == "xyz" ? "tooLong at b" : "lossy at b");
    }
    EXPECT_EQ(make(layout4(R"("a" = { "@" = "between \"|\"", "b" = (ACF0mine) "", "c" = (ACF0) "" })", "lines"),
                   R"({"a"={"b"="x","c"="y"}})"),
              "x |y\n");
}

TEST_F(LayoutCallbacks, exceptionsPassAndAllGoesOnAfterThem)
{
    const CLayout layout = layout4(R"("a" = (ACF1) "", "b" = (ACF1mine) "")");
    CPacketReader reader(layout);
    CPacketMaker maker(layout);
    CPacketView view(layout);
    CRecordWriter writer(layout);
    CFields tree = tree4(R"({"old"=1})");
    std::string packet = "old";
    use(throwUp, throwUp);
    EXPECT_THROW(reader.read("xy", tree), std::runtime_error);
    EXPECT_EQ(text4Tree(tree), "null");
    EXPECT_THROW(reader.check("xy"), std::runtime_error);
    EXPECT_THROW(view.open("xy"), std::runtime_error);
    EXPECT_THROW(maker.make(CFields(DT_fields), packet), std::runtime_error);
    EXPECT_EQ(packet, "");
    EXPECT_THROW(writer.write(0, CFields(DT_fields), packet), std::runtime_error);
    use(agreeMaking, throwUp);
    EXPECT_THROW(maker.make(CFields(DT_fields), packet), std::runtime_error);
    EXPECT_EQ(packet, "");
    EXPECT_THROW(writer.write(0, CFields(DT_fields), packet), std::runtime_error);
    EXPECT_EQ(packet, "");
    use(agreeMaking, agreeParsing);
    EXPECT_TRUE(view.open("xy"));
    EXPECT_TRUE(reader.read("xy", tree));
    EXPECT_TRUE(maker.make(tree, packet));
    EXPECT_EQ(packet, "xy");
    EXPECT_TRUE(writer.write(0, tree, packet));
    EXPECT_EQ(packet, "xyxy");
}

TEST_F(LayoutCallbacks, afterAnExceptionARecordReaderIsOpenedAnew)
{
    const CLayout layout = layout4(R"("b" = (ACF1mine) "")");
    CRecordReader reader(layout);
    CFields record;
    use(agreeMaking, throwUp);
    reader.open("x");
    EXPECT_THROW(reader.next(record), std::runtime_error);
    EXPECT_EQ(reader.next(record), RR_fault);
    EXPECT_EQ(reader.getFault().m_strMessage, "An exception has ended the last call; open the input anew");
    use(agreeMaking, agreeParsing);
    reader.open("x");
    EXPECT_EQ(reader.next(record), RR_record);
}

TEST_F(LayoutCallbacks, exceptionsLeakNothing)
{
    const CLayout layout = layout4(R"("a" = (ACF1) "", "b" = (ACF40mine) "")");
    const CFields tree = tree4(R"({"a"="x","b"="a value that is longer than its node"})");
    const std::string bytes(41, 'x');
    use(throwUp, throwUp);
    const long before = CFailingMalloc::liveBlocks();
    {
        CPacketReader reader(layout);
        CFields into;
        EXPECT_THROW(reader.read(bytes, into), std::runtime_error);
        CPacketMaker maker(layout);
        std::string packet;
        EXPECT_THROW(maker.make(tree, packet), std::runtime_error);
    }
    EXPECT_EQ(CFailingMalloc::liveBlocks(), before);
}

TEST_F(LayoutCallbacks, aMissingCallbackIsMisuse)
{
    const CLayout layout = layout4(R"("b" = (ACF1mine) "")");
    use(nullptr, agreeParsing);
    std::string packet;
    EXPECT_THROW(CPacketMaker(layout).make(CFields(DT_fields), packet), CLogicError);
    EXPECT_EQ(read(layout, "x"), R"({"b"="x"})");
    use(agreeMaking, nullptr);
    EXPECT_THROW(CPacketReader(layout).check("x"), CLogicError);
}

TEST_F(LayoutCallbacks, theUserPointerIsThatOfTheDataOrOfTheLayout)
{
    static const void* s_pUser;
    const auto look = [](unsigned short, unsigned char, CFields& node) {
        s_pUser = node.pkt_GetOSA4User();
        return 1;
    };
    use(look, look);
    const int own = 0;
    const int others = 0;
    CFields document = tree4(R"({ "@" = "layout 1", "b" = (ACF1mine) "x" })");
    document["b"].pkt_SetOSA4User(&own);
    CLayout layout;
    ASSERT_TRUE(layout.compile(document));
    EXPECT_TRUE(CPacketReader(layout).check("x"));
    EXPECT_EQ(s_pUser, &own);
    use(look, agreeParsing);
    std::string packet;
    EXPECT_TRUE(CPacketMaker(layout).make(tree4(R"({"b"="x"})"), packet));
    EXPECT_EQ(s_pUser, &own);
    CFields data = tree4(R"({"b"="x"})");
    data["b"].pkt_SetOSA4User(&others);
    EXPECT_TRUE(CPacketMaker(layout).make(data, packet));
    EXPECT_EQ(s_pUser, &others);
}

TEST_F(LayoutCallbacks, everyAllocationMayFail)
{
    if (!CFailingMalloc::isNewReached())
        GTEST_SKIP() << "NOT TESTED: allocations cannot be made to fail here";
    use(makeSum, checkSum);
    const CLayout layout = layout4(R"("n" = (ANF1) 0, "@n" = "size of a", "a" = (ACF0) "", "s" = (ANF1mine) 0)");
    CFields tree = tree4(R"({"a"="ab"})");
    CPacketMaker maker(layout);
    std::string packet;
    bool isMade = false;
    for (long n = 1; !isMade; ++n)
    {
        try
        {
            const CFailingMalloc failing(n);
            isMade = maker.make(tree, packet);
            EXPECT_TRUE(isMade) << n;
        }
        catch (const std::bad_alloc&)
        {
        }
    }
    EXPECT_EQ(packet, "2ab5");
    CPacketReader reader(layout);
    bool isRead = false;
    for (long n = 1; !isRead; ++n)
    {
        try
        {
            const CFailingMalloc failing(n);
            isRead = reader.check(packet);
            EXPECT_TRUE(isRead) << n;
        }
        catch (const std::bad_alloc&)
        {
        }
    }
}

TEST_F(LayoutCallbacks, writtenRecordsAreReadAgain)
{
    use(agreeMaking, findStop);
    const CLayout layout = layout4(R"("l" = [ { "a" = (ACF0mine) "", "b" = (ACF0) "", "@b" = "to end" } ])", "lines");
    CRecordWriter writer(layout);
    std::string out;
    EXPECT_TRUE(writer.write(layout.findPart("l"), tree4(R"({"a"="x.","b"="y"})"), out));
    EXPECT_FALSE(writer.write(layout.findPart("l"), tree4(R"({"a"="x.x.","b"="y"})"), out));
    EXPECT_EQ(place4(writer.getFault()), "ambiguous at l[1].a @4+4");
    EXPECT_FALSE(writer.write(layout.findPart("l"), tree4(R"({"a"="x","b"="y"})"), out));
    EXPECT_EQ(place4(writer.getFault()), "callback at l[1].a @4+0");
    EXPECT_EQ(out, "x.y\n");
}

}  // namespace murv::tests
