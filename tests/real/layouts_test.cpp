// tests/real/layouts_test.cpp - records of public formats, read and made by the layouts in examples/layouts.
//
// The records were made by other programs; what they must say comes from the control records, the listings and the
// decoded values beside them. tests/data/layouts/README.md says where they come from.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "murv/loader.h"
#include "tests/packet/packet_helpers.h"
#include "tests/support/source_file.h"

namespace murv::tests
{

namespace
{

constexpr std::size_t s_cnArchiveHeader = 512;

CFields layout(const std::string& name)
{
    CLoaders loader;
    CFields tree;
    EXPECT_TRUE(loader.loading(contentOf("examples/layouts/" + name + ".murv"), tree)) << loader.getLastErrMsg();
    return tree;
}

std::string recordFile(const std::string& name)
{
    return contentOf(MURV_TEST_DATA_DIR "/layouts/" + name);
}

std::vector<std::string> lines(const std::string& text)
{
    std::vector<std::string> result;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        result.push_back(line);
    return result;
}

/// The record as the layout reads it; it must fill the layout exactly.
CFields read(CFields record, std::string_view bytes)
{
    EXPECT_EQ(parsedTree(record, bytes), 0);
    return record;
}

// Payments.

/// The layout of the record type in the first column.
CFields paymentLayout(const std::string& line)
{
    static const CFields s_cPayments = layout("payments");
    for (const CFields& record : s_cPayments)
        if (record["type"].asString() == line.substr(0, 1))
            return record;
    ADD_FAILURE() << "no layout for " << line;
    return {};
}

std::vector<CFields> payments()
{
    std::vector<CFields> result;
    for (const std::string& line : lines(recordFile("payments.ach")))
        result.push_back(read(paymentLayout(line), line));
    return result;
}

/// What control records count: entries, amounts by direction, and the banks that receive them.
struct tTotals
{
    long long m_llEntries = 0;
    long long m_llDebits = 0;
    long long m_llCredits = 0;
    long long m_llHash = 0;

    void add(const CFields& entry)
    {
        ++m_llEntries;
        // The last digit of the transaction code: 0 to 4 credits an account, 5 to 9 debits it.
        (entry["transaction"].asSint64() % 10 >= 5 ? m_llDebits : m_llCredits) += entry["amount"].asSint64();
        m_llHash = (m_llHash + entry["receiving bank"].asSint64()) % 10000000000;
    }
};

// Archive headers.

std::vector<std::string> archiveHeaders()
{
    const std::string bytes = recordFile("archive_headers.bin");
    std::vector<std::string> result;
    for (std::size_t at = 0; at + s_cnArchiveHeader <= bytes.size(); at += s_cnArchiveHeader)
        result.push_back(bytes.substr(at, s_cnArchiveHeader));
    return result;
}

/// The text before the first zero byte.
std::string text4(const CFields& item)
{
    const std::string bytes = item.asString();
    return bytes.substr(0, bytes.find('\0'));
}

long octal(const CFields& item)
{
    return std::strtol(text4(item).c_str(), nullptr, 8);
}

/// The sum of a header's bytes, those of the checksum itself counted as blanks.
long byteSum(std::string header)
{
    header.replace(148, 8, 8, ' ');
    long sum = 0;
    for (const char byte : header)
        sum += static_cast<unsigned char>(byte);
    return sum;
}

std::string permissions(const CFields& header)
{
    const std::string type = text4(header["type"]);
    std::string text = type == "5" ? "d" : type == "2" ? "l" : "-";
    const long mode = octal(header["mode"]);
    for (int bit = 8; bit >= 0; --bit)
        text += (mode >> bit & 1) != 0 ? "xwr"[bit % 3] : '-';
    if ((mode & 04000) != 0)
        text[3] = 's';
    return text;
}

/// The line that a listing with numeric owners shows, blanks squeezed.
std::string listing(const CFields& header)
{
    const std::time_t seconds = octal(header["mtime"]);
    char when[32];
    std::strftime(when, sizeof when, "%Y-%m-%d %H:%M:%S", std::gmtime(&seconds));
    std::ostringstream out;
    out << permissions(header) << ' ' << octal(header["uid"]) << '/' << octal(header["gid"]) << ' '
        << octal(header["size"]) << ' ' << when << ' ' << text4(header["name"]);
    if (text4(header["type"]) == "2")
        out << " -> " << text4(header["link"]);
    return out.str();
}

std::string squeezed(const std::string& line)
{
    std::string result;
    for (const char byte : line)
        if (byte != ' ' || result.empty() || result.back() != ' ')
            result += byte;
    return result;
}

// Orbits.

nlohmann::json orbits()
{
    return nlohmann::json::parse(recordFile("orbits.json"));
}

/// The layout with the runtime code C in place of N: what is read stays as it is.
CFields readAsBytes(CFields record)
{
    for (CFields& item : record)
    {
        tPacketExpInfo pei = item.pkt_GetExp();
        pei.m_eRuntimeExp = REC_C;
        item.pkt_SetExp(pei);
    }
    return record;
}

/// Digits count as themselves, a minus sign as one, all else as nothing.
int checkDigit(const std::string& line)
{
    int sum = 0;
    for (const char byte : line.substr(0, 68))
        sum += byte >= '0' && byte <= '9' ? byte - '0' : byte == '-' ? 1 : 0;
    return sum % 10;
}

/// " 28098-4" is 0.28098 times ten to the power of -4.
double impliedPoint(const std::string& text)
{
    const std::size_t exponent = text.size() - 2;
    return std::strtod((text.substr(0, 1) + "0." + text.substr(1, exponent - 1) + "e" + text.substr(exponent)).c_str(),
                       nullptr);
}

std::string withoutBlanks(std::string text)
{
    text.erase(text.find_last_not_of(' ') + 1);
    return text.erase(0, text.find_first_not_of(' '));
}

}  // namespace

TEST(PaymentLayout, recordsHave94Columns)
{
    for (const CFields& record : layout("payments"))
        EXPECT_EQ(record.pkt_Make4Children(false).size(), 94U) << record.getName();
}

TEST(PaymentLayout, fileHeaderSaysWhoSentItAndWhen)
{
    const CFields header = payments().front();
    EXPECT_EQ(header["destination"].asString(), " 231380104");
    EXPECT_EQ(header["origin"].asString(), "0121042882");
    EXPECT_EQ(header["created on"].asSint64(), 190718);
    EXPECT_EQ(header["created at"].asSint64(), 1055);
    EXPECT_EQ(header["record size"].asSint64(), 94);
    EXPECT_EQ(header["destination name"].asString(), "Federal Reserve Bank   ");
    EXPECT_EQ(header["origin name"].asString(), "My Bank Name           ");
}

TEST(PaymentLayout, entrySaysWhoIsPaidAndHowMuch)
{
    const CFields entry = payments()[3];
    EXPECT_EQ(entry["transaction"].asSint64(), 22);
    EXPECT_EQ(entry["receiving bank"].asSint64(), 23138010);
    EXPECT_EQ(entry["account"].asString(), "987654321        ");
    EXPECT_EQ(entry["amount"].asSint64(), 100000000);
    EXPECT_EQ(entry["receiver"].asString(), "Credit Account 1      ");
    EXPECT_EQ(entry["trace"].asSint64(), 121042880000002);
}

TEST(PaymentLayout, entriesAddUpToTheControlRecords)
{
    tTotals totals;
    unsigned int controls = 0;
    for (const CFields& record : payments())
    {
        const std::string type = record["type"].asString();
        if (type == "6")
            totals.add(record);
        if (type != "8" && type != "9")
            continue;
        ++controls;
        EXPECT_EQ(record["entry count"].asSint64(), totals.m_llEntries);
        EXPECT_EQ(record["debits"].asSint64(), totals.m_llDebits);
        EXPECT_EQ(record["credits"].asSint64(), totals.m_llCredits);
        EXPECT_EQ(record["entry hash"].asSint64(), totals.m_llHash);
    }
    EXPECT_EQ(controls, 2U);
    EXPECT_EQ(totals.m_llEntries, 3);
    EXPECT_EQ(totals.m_llDebits, 200000000);
}

TEST(PaymentLayout, recordsAreMadeAgainByteForByte)
{
    const std::vector<std::string> originals = lines(recordFile("payments.ach"));
    ASSERT_EQ(originals.size(), 7U);
    for (const std::string& original : originals)
        EXPECT_EQ(read(paymentLayout(original), original).pkt_Make4Children(false), original);
}

TEST(PaymentLayout, checkingFindsAnotherRecordTypeAndABadDate)
{
    std::string header = lines(recordFile("payments.ach")).front();
    CFields record = paymentLayout(header);
    EXPECT_EQ(failedLeaves(record, header), 0U);
    header.replace(23, 6, "191318");
    EXPECT_EQ(failedLeaves(record, header), 1U);
    header[0] = '5';
    EXPECT_EQ(failedLeaves(record, header), 2U);
}

TEST(PaymentLayout, cutRecordSaysHowManyBytesAreMissing)
{
    const std::string original = lines(recordFile("payments.ach"))[2];
    CFields record = paymentLayout(original);
    EXPECT_EQ(parsedTree(record, std::string_view(original).substr(0, 90)), -4);
}

TEST(ArchiveLayout, headersSayWhatTheListingSays)
{
    const std::vector<std::string> headers = archiveHeaders();
    const std::vector<std::string> expected = lines(recordFile("archive_headers.list"));
    ASSERT_EQ(headers.size(), 4U);
    ASSERT_EQ(expected.size(), headers.size());
    for (std::size_t i = 0; i < headers.size(); ++i)
        EXPECT_EQ(listing(read(layout("archive_header"), headers[i])), squeezed(expected[i]));
}

TEST(ArchiveLayout, checksumIsTheSumOfTheBytes)
{
    for (const std::string& header : archiveHeaders())
        EXPECT_EQ(octal(read(layout("archive_header"), header)["checksum"]), byteSum(header));
}

TEST(ArchiveLayout, headersAreMadeAgainByteForByte)
{
    for (const std::string& header : archiveHeaders())
        EXPECT_EQ(read(layout("archive_header"), header).pkt_Make4Children(false), header);
}

TEST(ArchiveLayout, headerIsMadeFromShortValues)
{
    CFields header = layout("archive_header");
    header["name"].setValue("./hello.txt");
    header["uid"].setValue("0001751");
    header["gid"].setValue("0003722");
    header["size"].setValue("00000000016");
    header["mtime"].setValue("14570074760");
    header["user"].setValue("app");
    header["group"].setValue("staff");
    std::ostringstream sum;
    sum << '0' << std::oct << byteSum(header.pkt_Make4Children(false)) << '\0' << ' ';
    header["checksum"].setValue(sum.str());
    EXPECT_EQ(header.pkt_Make4Children(false), archiveHeaders()[2]);
}

TEST(OrbitLayout, firstLineSaysWhatTheDecodedValuesSay)
{
    for (const nlohmann::json& orbit : orbits())
    {
        const CFields line = read(layout("orbit_line1"), orbit["line1"].get<std::string>());
        EXPECT_EQ(line["satellite"].asSint64(), orbit["satnum"].get<int>());
        EXPECT_EQ(line["class"].asString(), orbit["classification"].get<std::string>());
        EXPECT_EQ(withoutBlanks(line["designator"].asString()), orbit["intldesg"].get<std::string>());
        EXPECT_EQ(line["epoch year"].asSint64() + 2000, orbit["epochyr"].get<int>());
        EXPECT_EQ(line["epoch day"].asDouble(), orbit["epochdays"].get<double>());
        EXPECT_DOUBLE_EQ(impliedPoint(line["drag"].asString()), orbit["bstar"].get<double>());
        EXPECT_EQ(line["element set"].asSint64(), orbit["elnum"].get<int>());
    }
}

TEST(OrbitLayout, secondLineSaysWhatTheDecodedValuesSay)
{
    for (const nlohmann::json& orbit : orbits())
    {
        const CFields line = read(layout("orbit_line2"), orbit["line2"].get<std::string>());
        EXPECT_EQ(line["satellite"].asSint64(), orbit["satnum"].get<int>());
        // The decoder went through radians and back.
        EXPECT_DOUBLE_EQ(line["inclination"].asDouble(), orbit["inclo_deg"].get<double>());
        EXPECT_DOUBLE_EQ(line["node"].asDouble(), orbit["nodeo_deg"].get<double>());
        EXPECT_DOUBLE_EQ(line["perigee"].asDouble(), orbit["argpo_deg"].get<double>());
        EXPECT_DOUBLE_EQ(line["anomaly"].asDouble(), orbit["mo_deg"].get<double>());
        EXPECT_DOUBLE_EQ(line["eccentricity"].asDouble() / 1e7, orbit["ecco"].get<double>());
        EXPECT_EQ(line["revolution"].asSint64(), std::stoi(orbit["revnum"].get<std::string>()));
    }
}

TEST(OrbitLayout, numbersThatAreNotDecodedBesideAreRead)
{
    const nlohmann::json orbit = orbits()[1];
    EXPECT_EQ(read(layout("orbit_line1"), orbit["line1"].get<std::string>())["drift"].asDouble(), -.00000084);
    EXPECT_EQ(read(layout("orbit_line2"), orbit["line2"].get<std::string>())["motion"].asDouble(), 1.20231981);
}

TEST(OrbitLayout, checkDigitTellsGoodLinesFromBad)
{
    int wrong = 0;
    for (const nlohmann::json& orbit : orbits())
        for (const std::size_t number : {0U, 1U})
        {
            const std::string name = number == 0 ? "line1" : "line2";
            const std::string bytes = orbit[name].get<std::string>();
            const CFields line = read(layout("orbit_" + name), bytes);
            const bool good = line["check"].asSint64() == checkDigit(bytes);
            EXPECT_EQ(good, orbit["checksum_ok"][number].get<bool>()) << bytes;
            wrong += good ? 0 : 1;
        }
    EXPECT_EQ(wrong, 1);
}

// Of the numbers only those of digits alone come back as they were: blanks in front become zeros, and of a number with
// a decimal point as many of its 17 significant digits are made as the item has room for.
TEST(OrbitLayout, numbersComeBackWithZerosInFrontAndWithTheirDigitsCut)
{
    const nlohmann::json orbit = orbits()[0];
    const CFields first = read(layout("orbit_line1"), orbit["line1"].get<std::string>());
    const CFields second = read(layout("orbit_line2"), orbit["line2"].get<std::string>());
    EXPECT_EQ(orbit["line1"], "1 00005U 58002B   00179.78495062  .00000023  00000-0  28098-4 0  4753");
    EXPECT_EQ(first.pkt_Make4Children(false), "1 00005U 58002B   00179.78495061 2.29999999  00000-0  28098-4 0 04753");
    EXPECT_EQ(orbit["line2"], "2 00005  34.2682 348.7242 1859667 331.7664  19.3264 10.82419157413667");
    EXPECT_EQ(second.pkt_Make4Children(false), "2 00005 034.2682 348.7242 1859667 331.7663 019.3264 10.82419157413667");
}

TEST(OrbitLayout, linesWhoseItemsStayBytesAreMadeAgainByteForByte)
{
    int seen = 0;
    for (const nlohmann::json& orbit : orbits())
        for (const std::string name : {"line1", "line2"})
        {
            const std::string bytes = orbit[name].get<std::string>();
            EXPECT_EQ(read(readAsBytes(layout("orbit_" + name)), bytes).pkt_Make4Children(false), bytes);
            ++seen;
        }
    EXPECT_EQ(seen, 8);
}

}  // namespace murv::tests
