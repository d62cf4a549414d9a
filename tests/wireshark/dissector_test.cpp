// tests/wireshark/dissector_test.cpp - dissectors agree with murv explain about the same bytes.
//
// Samples are those of the layouts' own tests. What explain --json says of a packet is the answer: every value with its
// place, name and text, and where reading stops.
#include <gtest/gtest.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sstream>

#include "murv/loader.h"
#include "murv/records.h"
#include "tests/layout/stock/stock_helpers.h"
#include "tests/support/subprocess.h"
#include "tests/wireshark/dissection.h"

namespace murv::tests
{

namespace
{

using nlohmann::json;

class Dissector : public testing::Test
{
protected:
    void SetUp() override
    {
        static const bool s_cbHasTshark = hasTshark();
        if (!s_cbHasTshark)
            GTEST_SKIP() << "tshark is not installed";
    }
};

std::vector<json> explained(const std::string& layout, const std::string& packet)
{
    tSurroundings around;
    around.m_strInput = packet;
    const tRun run = runProgram({MURV_TOOL_PATH, "explain", "-l", layout, "--json"}, around);
    std::vector<json> records;
    for (const std::string& line : linesOf(run.m_strOutput))
        records.push_back(json::parse(line));
    return records;
}

/// A text as labels show it.
std::string shownText(const std::string& text)
{
    std::string shown;
    for (const char c : text)
    {
        const auto byte = static_cast<unsigned char>(c);
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\u%04x", byte);
        shown += c == '\n' ? "\\n" : c == '\r' ? "\\r" : c == '\t' ? "\\t" : c == '\b' ? "\\b" : std::string();
        shown += c == '\n' || c == '\r' || c == '\t' || c == '\b' ? ""
                 : byte < 0x20 || byte == 0x7F                    ? escape
                                                                  : std::string(1, c);
    }
    return shown;
}

std::string shownValue(const json& value)
{
    if (value.is_string())
        return shownText(value.get<std::string>());
    if (value.is_object())
        return "hex " + value["hex"].get<std::string>();
    return value.dump();
}

/// `messages[1].Hello world.x` is messages.hello_world.x in filters.
std::string filterPath(const std::string& path)
{
    std::string name;
    bool isIndex = false;
    for (const char c : path)
    {
        isIndex = (isIndex || c == '[') && c != ']';
        if (isIndex || c == ']')
            continue;
        const bool isPlain = (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '.';
        name += isPlain ? c : c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : '_';
    }
    return "zz." + name;
}

std::string nameOf(const std::string& path)
{
    const std::string name = path.substr(path.rfind('.') + 1);
    return name.empty() ? "literal" : name;
}

bool isSameDouble(const std::string& label, const json& value)
{
    return value.is_number_float() && std::strtod(label.c_str(), nullptr) == value.get<double>();
}

/// Whether the item is the value of a row.
bool isRow(const tShownItem& item, const json& row)
{
    if (item.m_ullOffset != row["offset"] || item.m_ullLength != row["length"])
        return false;
    const std::string path = row["path"];
    // Wireshark cuts labels, and says so.
    const std::string cut = " [truncated]";
    const bool isCut = item.m_strLabel.rfind(cut, 0) == 0;
    const std::string begin = (isCut ? cut : std::string()) + nameOf(path) + ": ";
    if (item.m_strLabel.rfind(begin, 0) != 0)
        return false;
    // Null, and literals without a name, have no field.
    const bool hasField = !row["value"].is_null() && path.back() != '.';
    if (item.m_strField != (hasField ? filterPath(path) : ""))
        return false;
    const std::string shown = item.m_strLabel.substr(begin.size());
    const json& value = row["value"];
    if (value.is_object() && !value.contains("hex"))
        return true;  // bits are compared one by one
    const std::string wanted = shownValue(value);
    return shown == wanted || isSameDouble(shown, value) ||
           (isCut && shown.size() > 150 && wanted.rfind(shown.substr(0, 150), 0) == 0);
}

bool hasBits(const tShownItem& item, const std::string& name, const json& value)
{
    const std::string end = " = " + name + ": " + value.dump();
    return item.m_bOfBits && item.m_strLabel.size() >= end.size() &&
           item.m_strLabel.compare(item.m_strLabel.size() - end.size(), end.size(), end) == 0 &&
           item.m_strValue == value.dump();
}

std::string words4(const std::vector<tShownItem>& items)
{
    std::ostringstream words;
    for (const tShownItem& item : items)
        words << "  " << item.m_ullOffset << "+" << item.m_ullLength << " " << item.m_strField << " ["
              << item.m_strLabel << "]\n";
    return words.str();
}

bool isValue(const tShownItem& item)
{
    return !item.m_bOfBits && !item.m_bFault && item.m_strLabel.find(": ") != std::string::npos;
}

/// Every value that explain shows up to the first fault is there, in its order, and no other.
void expectValues(const tShownPacket& packet, const std::vector<json>& records)
{
    std::size_t at = 0;
    const auto& items = packet.m_vItems;
    for (const json& record : records)
    {
        for (const json& row : record["items"])
        {
            if (row.contains("error"))
            {
                while (at < items.size() && !isValue(items[at]))
                    ++at;
                EXPECT_EQ(at, items.size()) << words4(items);
                return;
            }
            if (!row.contains("value"))
                continue;
            while (at < items.size() && !isValue(items[at]))
                ++at;
            ASSERT_LT(at, items.size()) << row << "\n" << words4(items);
            ASSERT_TRUE(isRow(items[at], row))
                << row << "\nis [" << items[at].m_strLabel << "] as " << items[at].m_strField << " at "
                << items[at].m_ullOffset << "+" << items[at].m_ullLength;
            ++at;
            if (!row["value"].is_object() || row["value"].contains("hex"))
                continue;
            std::size_t bits = 0;
            for (; at < items.size() && items[at].m_bOfBits; ++at)
            {
                for (const auto& [name, value] : row["value"].items())
                    bits += hasBits(items[at], name, value) ? 1 : 0;
            }
            EXPECT_EQ(bits, row["value"].size()) << row << "\n" << words4(items);
        }
    }
    while (at < items.size() && !isValue(items[at]))
        ++at;
    EXPECT_EQ(at, items.size()) << words4(items);
}

/// The first fault, and findings when there is none, are at the places that the reader tells.
void expectPlaces(const tShownPacket& packet, const CLayout& layout, const std::string& bytes)
{
    CRecordReader reader(layout);
    reader.open(bytes);
    std::vector<tShownPlace> findings;
    E_RecordResult result = RR_record;
    while (result == RR_record)
    {
        result = reader.next();
        for (const tPacketFault& finding : reader.getFindings())
            findings.push_back({finding.m_ullOffset, finding.m_ullLength});
    }
    const tPacketFault& fault = reader.getFault();
    std::vector<tShownPlace> faults;
    if (result == RR_fault)
        faults.push_back({fault.m_ullOffset, fault.m_ullLength});
    ASSERT_EQ(packet.m_vFaults.size(), faults.size()) << place(fault);
    if (!faults.empty())
    {
        EXPECT_TRUE(packet.m_vFaults == faults)
            << place(fault) << " but " << packet.m_vFaults[0].m_ullOffset << "+" << packet.m_vFaults[0].m_ullLength;
        return;
    }
    const auto before = [](const tShownPlace& a, const tShownPlace& b) { return a.m_ullOffset < b.m_ullOffset; };
    std::vector<tShownPlace> shown = packet.m_vFindings;
    std::stable_sort(shown.begin(), shown.end(), before);
    std::stable_sort(findings.begin(), findings.end(), before);
    EXPECT_TRUE(shown == findings) << shown.size() << " findings are shown, " << findings.size() << " are there";
}

/// Copies of a packet with one byte changed, and others that are cut.
std::vector<std::string> damaged(const std::string& packet)
{
    std::vector<std::string> copies;
    constexpr std::size_t count = 6;
    for (std::size_t i = 0; i < count; ++i)
    {
        const std::size_t at = (packet.size() * i + i) / count;
        if (at == 0)
            continue;
        copies.push_back(packet.substr(0, at));
        copies.push_back(packet);
        copies.back()[std::min(at, packet.size() - 1)] = static_cast<char>(i % 3 == 0 ? 'x' : packet[at / 2] ^ 0x11);
    }
    return copies;
}

/// Shows packets and damaged copies of them, and compares all.
void expectAgrees(const std::string& name, const std::vector<std::string>& packets)
{
    const CLayout layout = installed(name);
    std::vector<std::string> all = packets;
    for (const std::string& packet : packets)
    {
        for (const std::string& copy : damaged(packet))
            all.push_back(copy);
    }
    const std::vector<tShownPacket> shown = dissect(name, all);
    ASSERT_EQ(shown.size(), all.size());
    for (std::size_t i = 0; i < all.size() && !testing::Test::HasFailure(); ++i)
    {
        SCOPED_TRACE(name + ", packet " + std::to_string(i) + (i < packets.size() ? "" : ", damaged"));
        EXPECT_FALSE(i < packets.size() && shown[i].m_vItems.size() < 3);
        expectValues(shown[i], explained(name, all[i]));
        expectPlaces(shown[i], layout, all[i]);
    }
}

std::vector<std::string> segments(const std::string& stream, std::size_t size)
{
    std::vector<std::string> parts;
    for (std::size_t at = 0; at < stream.size(); at += size)
        parts.push_back(stream.substr(at, size));
    return parts;
}

/// The names and texts of all values in a stream, whatever the segments are.
std::vector<std::string> streamed(const std::string& layout, const std::string& stream, std::size_t size)
{
    tCaptureOptions options;
    options.m_bTcp = true;
    std::vector<std::string> values;
    for (const tShownPacket& packet : dissect(layout, segments(stream, size), options))
    {
        EXPECT_TRUE(packet.m_vFaults.empty());
        for (const tShownItem& item : packet.m_vItems)
        {
            if (isValue(item))
                values.push_back(item.m_strLabel);
        }
    }
    return values;
}

void expectSameInStream(const std::string& layout, const std::string& stream, const std::vector<std::size_t>& sizes)
{
    std::vector<std::string> wanted;
    for (const json& record : explained(layout, stream))
    {
        ASSERT_TRUE(record["fits"]) << record;
        for (const json& row : record["items"])
        {
            if (row.contains("value"))
                wanted.push_back(nameOf(row["path"]) + ": " + shownValue(row["value"]));
        }
    }
    ASSERT_GT(wanted.size(), 3U);
    for (const std::size_t size : sizes)
        EXPECT_EQ(streamed(layout, stream, size), wanted) << layout << " in segments of " << size;
}

std::string made(const std::string& layout, const std::string& document)
{
    CLoaders loader;
    CFields tree;
    EXPECT_TRUE(loader.loading(document, tree)) << loader.getLastErrMsg();
    std::string packet;
    CPacketMaker maker(installed(layout));
    EXPECT_TRUE(maker.make(tree, packet)) << place(maker.getFault());
    return packet;
}

std::string fix(std::string text)
{
    std::replace(text.begin(), text.end(), '|', '\x01');
    return text;
}

const std::string s_strLogon =
    fix("8=FIX.4.2|9=65|35=A|49=SERVER|56=CLIENT|34=177|52=20090107-18:15:16|98=0|108=30|10=062|");

constexpr const char* s_cpSensor =
    R"({"flags"={"calibrated"=1},"station"=18446744073709551615,"time"=1729060480,"position"={"latitude"=48.5,
        "longitude"=-0.1},"readings"=[{"channel"=1,"value"={"number"=23.105}},{"channel"=2,"value"={"text"="open"}}],
        "name"="Roof"})";

}  // namespace

TEST_F(Dissector, agreesAboutBinaryMessages)
{
    expectAgrees("hsrp", {bytesOf("0000 1003 0A64 0100 636973636F000000 C0A80001"),
                          bytesOf("0003 0001 000E 02 00 0000 0001 6F000000")});
    expectAgrees("ntp", {bytesOf("E40003E9 00000000 00000 05A53544550 0000000000000000A4B39CD101FB24BFDCF25A3984199119"
                                 "DCF25A39841D6DC5 00000000")});
    expectAgrees("sensor", {made("sensor", s_cpSensor)});
    expectAgrees("modbus-request",
                 {bytesOf("0001 0000 0006 11 03 006B 0003"), bytesOf("0001 0000 000B 11 10 0001 0002 04 000A 0102")});
}

TEST_F(Dissector, agreesAboutDigitsAndBitmaps)
{
    expectAgrees("iso8583",
                 {sample("iso8583/financial_transaction_message.dat"), sample("iso8583/iso_reversal_message.dat")});
    expectAgrees("iso8583-bcd", {bytesOf("0200 7024058000C00000 08 4111111111111111 000000 000000001234 000042 3012"
                                         "0051 0003 00") +
                                 "TERM0001MERCHANT 000001"});
}

TEST_F(Dissector, agreesAboutTextWithMarks)
{
    expectAgrees("fix", {s_strLogon});
    expectAgrees("nmea", {"$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n",
                          "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n"});
}

TEST_F(Dissector, agreesAboutFilesOfRecords)
{
    expectAgrees("ach", {sample("ach/ppd-debit.ach")});
    expectAgrees("cobol", {sample("cobol/bookings.ebc")});
    expectAgrees("itch50", {sample("itch50/sample-length-prefixed.bin").substr(0, 700)});
    expectAgrees("tle", {"1 25544U 98067A   08264.51782528 -.00002182  00000-0 -11606-4 0  2927\n"
                         "2 25544  51.6416 247.4627 0006703 130.5360 325.0288 15.72125391563537\n"});
}

TEST_F(Dissector, agreesAboutArchives)
{
    expectAgrees("tar", {sample("archives/ustar.tar").substr(0, 2048)});
    expectAgrees("cpio", {sample("archives/newc.cpio")});
    expectAgrees("git-index", {sample("unix/git.index")});
}

TEST_F(Dissector, putsRecordsTogetherFromSegments)
{
    const std::string itch = sample("itch50/sample-length-prefixed.bin");
    expectSameInStream("itch50", itch.substr(0, 14 + 41), {1, 1000});
    expectSameInStream("cobol", sample("cobol/bookings.ebc"), {33});
    expectSameInStream("nmea", "$GPGSV,2,1,08,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45*75\r\n", {10});
    expectSameInStream("modbus-request",
                       bytesOf("0001 0000 0006 11 03 006B 0003 0002 0000 0009 11 10 0001 0001 02 0005"), {7});
    expectSameInStream("fix", s_strLogon + s_strLogon, {20, 1000});
}

TEST_F(Dissector, filtersKnowTypes)
{
    const std::string low = bytesOf("0000 1003 0A64 0100 636973636F000000 C0A80001");
    const std::string high = bytesOf("0000 1003 0AC8 0100 636973636F000000 C0A80001");
    tCaptureOptions options;
    options.m_strFilter =
        "zz.body.state.priority > 150 && zz.body.state.authentication == \"cisco\" && "
        "zz.body.state.address.a == 192 && !zz.fault";
    EXPECT_EQ(dissect("hsrp", {low, high, high.substr(0, 15)}, options).size(), 1U);
    options.m_strFilter = "zz.readings.value.number > 23.1 && zz.station == 18446744073709551615";
    EXPECT_EQ(dissect("sensor", {made("sensor", s_cpSensor)}, options).size(), 1U);
}

TEST_F(Dissector, takesAnotherNameWhereWiresharkHasTheProtocol)
{
    tCaptureOptions options;
    options.m_strProtocol = "hsrp";
    options.m_strShownProtocol = "murv_hsrp";
    const auto shown = dissect("hsrp", {bytesOf("0000 1003 0A64 0100 636973636F000000 C0A80001")}, options);
    ASSERT_EQ(shown.size(), 1U);
    ASSERT_FALSE(shown[0].m_vItems.empty());
    EXPECT_EQ(shown[0].m_vItems[0].m_strField, "murv_hsrp.version");
}

TEST_F(Dissector, masksAreNeitherInLabelsNorInFilters)
{
    const std::string packet = bytesOf("0200 4000000000000000 08 4111111111111111");
    const auto shown = dissect("iso8583-bcd", {packet});
    ASSERT_EQ(shown.size(), 1U);
    const tShownItem& last = shown[0].m_vItems.back();
    EXPECT_EQ(last.m_strField, "zz.data.account.digits");
    EXPECT_EQ(last.m_strLabel, "digits: ********");
    EXPECT_EQ(last.m_strValue, "********");
}

TEST_F(Dissector, hostileNamesAndCommentsStayText)
{
    const CTemporaryDirectory directory;
    const std::string path =
        directory.write("x.murv",
                        "// ]] error('comment') --[[\n{ \"@\" = \"layout 1\",\n// \\\" .. error('a') .. \\\"\n"
                        "\"\\\" .. error('name') .. \\\"\\n\" = (BNF1) 0, \"\\x1B[2J\" = (BNF1) 0, \"a.b\" = (BNF1) 0, "
                        "\"a b\" = (BNF1) 0, \"fault\" = (BCF2fix) \"]\\\"\" }");
    const auto shown = dissect(path, {"\x01\x02\x03\x04]\""});
    ASSERT_EQ(shown.size(), 1U);
    ASSERT_EQ(shown[0].m_vItems.size(), 5U) << words4(shown[0].m_vItems);
    EXPECT_EQ(shown[0].m_vItems[0].m_strLabel, "\" .. error('name') .. \"?: 1");
    EXPECT_EQ(shown[0].m_vItems[1].m_strLabel, "?[2J: 2");
    EXPECT_EQ(shown[0].m_vItems[2].m_strField, "zz.a_b");
    EXPECT_EQ(shown[0].m_vItems[3].m_strField, "zz.a_b_2");
    EXPECT_EQ(shown[0].m_vItems[4].m_strField, "zz.fault_2");
}

}  // namespace murv::tests
