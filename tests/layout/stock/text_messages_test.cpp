// tests/layout/stock/text_messages_test.cpp - messages of text with marks: FIX and NMEA 0183.
//
// The FIX messages are the examples of en.wikipedia.org/wiki/Financial_Information_eXchange; the sentences are those
// that public descriptions of NMEA 0183 use throughout (gpsd.gitlab.io/gpsd/NMEA.html). Both bring their checksums.
#include "tests/layout/stock/stock_helpers.h"

namespace murv::tests
{

namespace
{

/// FIX is printed with bars where the byte 01 is.
std::string fix(std::string text)
{
    std::replace(text.begin(), text.end(), '|', '\x01');
    return text;
}

const std::string s_strLogon =
    fix("8=FIX.4.2|9=65|35=A|49=SERVER|56=CLIENT|34=177|52=20090107-18:15:16|98=0|108=30|10=062|");
const std::string s_strReport =
    fix("8=FIX.4.2|9=178|35=8|49=PHLX|56=PERS|52=20071123-05:30:00.000|11=ATOMNOCCC9990900|20=3|150=E|39=E|55=MSFT|"
        "167=CS|54=1|38=15|40=2|44=15|58=PHLX EQUITY TESTING|59=0|47=C|32=0|31=0|151=15|14=0|6=0|10=128|");

constexpr const char* s_cstrGGA = "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n";
constexpr const char* s_cstrRMC = "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n";
constexpr const char* s_cstrGSV = "$GPGSV,2,1,08,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45*75\r\n";

}  // namespace

TEST(FIX, logon)
{
    expectValues(thereAndBack(installed("fix"), s_strLogon), {{"messages.0.version", "FIX.4.2"},
                                                              {"messages.0.body length", "65"},
                                                              {"messages.0.body.type", "A"},
                                                              {"messages.0.body.fields.0.sender.value", "SERVER"},
                                                              {"messages.0.body.fields.2.number.value", "177"},
                                                              {"messages.0.body.fields.5.heartbeat.value", "30"},
                                                              {"messages.0.checksum", "62"}});
}

TEST(FIX, reportWithFieldsThatHaveNoName)
{
    const CFields tree = thereAndBack(installed("fix"), s_strReport + s_strLogon);
    EXPECT_EQ(countAt(tree, "messages"), 2u);
    EXPECT_EQ(countAt(tree, "messages.0.body.fields"), 21u);
    expectValues(tree, {{"messages.0.body.fields.4.other.tag", "20"},
                        {"messages.0.body.fields.4.other.value", "3"},
                        {"messages.0.body.fields.10.quantity.value", "15"},
                        {"messages.0.body.fields.13.text.value", "PHLX EQUITY TESTING"}});
}

TEST(FIX, wrongChecksumIsFound)
{
    std::string bytes = s_strLogon;
    bytes[bytes.size() - 2] = '3';
    const tReading result = reading(installed("fix"), bytes);
    EXPECT_TRUE(result.m_bRead);
    EXPECT_EQ(places(result.m_vFindings),
              std::vector<std::string>{"checksum at " + std::to_string(bytes.size() - 4) + " (messages[0].checksum)"});
}

TEST(FIX, wrongLengthIsRefused)
{
    std::string bytes = s_strLogon;
    bytes.replace(bytes.find("65"), 2, "64");
    const tReading result = reading(installed("fix"), bytes);
    EXPECT_FALSE(result.m_bRead);
    EXPECT_EQ(result.m_tFault.m_strPath, "messages[0].body.fields[5].heartbeat.value");
}

TEST(FIX, dataMayHoldTheMark)
{
    // Written by hand: raw data of three bytes, the second of which is 01.
    const std::string bytes = fix("8=FIX.4.4|9=17|35=A|95=3|96=a|b|10=055|");
    expectValues(thereAndBack(installed("fix"), bytes), {{"messages.0.body.fields.0.raw data.length", "3"},
                                                         {"messages.0.body.fields.0.raw data.bytes",
                                                          "a\x01"
                                                          "b"}});
}

TEST(NMEA, position)
{
    const CFields tree = thereAndBack(installed("nmea"), s_cstrGGA);
    expectValues(tree, {{"sentences.0.talker", "GP"},
                        {"sentences.0.data.GGA.time", "123519"},
                        {"sentences.0.data.GGA.latitude", "4807.038"},
                        {"sentences.0.data.GGA.quality", "1"},
                        {"sentences.0.data.GGA.satellites", "08"},
                        {"sentences.0.data.GGA.altitude", "545.4"},
                        {"sentences.0.data.GGA.age", "(null)"},
                        {"sentences.0.data.GGA.station", ""},
                        {"sentences.0.checksum", "71"}});
}

TEST(NMEA, sentencesOfAllKinds)
{
    const CFields tree = thereAndBack(installed("nmea"), std::string(s_cstrRMC) + s_cstrGSV + s_cstrGGA);
    expectValues(tree, {{"sentences.0.data.RMC.speed", "022.4"},
                        {"sentences.0.data.RMC.variation", "003.1"},
                        {"sentences.0.data.RMC.rest", "W"},
                        {"sentences.1.type", "GSV"},
                        {"sentences.1.data.other.parts", "2,1,08,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45"},
                        {"sentences.2.data.GGA.dilution", "0.9"}});
}

TEST(NMEA, receiverWithoutPosition)
{
    const CFields tree = thereAndBack(installed("nmea"), "$GPGGA,,,,,,0,,,,,,,,*66\r\n");
    expectValues(tree, {{"sentences.0.data.GGA.quality", "0"},
                        {"sentences.0.data.GGA.satellites", "(null)"},
                        {"sentences.0.data.GGA.latitude", ""}});
}

TEST(NMEA, wrongChecksumIsFound)
{
    std::string bytes = s_cstrGGA;
    bytes[10] = '9';
    const tReading result = reading(installed("nmea"), bytes);
    EXPECT_TRUE(result.m_bRead);
    EXPECT_EQ(places(result.m_vFindings), std::vector<std::string>{"checksum at 63 (sentences[0].checksum)"});
}

}  // namespace murv::tests
