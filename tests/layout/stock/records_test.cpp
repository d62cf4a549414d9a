// tests/layout/stock/records_test.cpp - the pattern of a mainframe file, and the measurements.
#include <array>

#include "tests/layout/stock/stock_helpers.h"

namespace murv::tests
{

TEST(COBOL, fileComesBack)
{
    const CFields tree = thereAndBack(installed("cobol"), sample("cobol/bookings.ebc"));
    expectValues(tree, {{"header.title", "Buchungen M\xC3\xA4rz"},
                        {"header.created", "20240229"},
                        {"bookings.0.account", "1234567890"},
                        {"bookings.0.balance", "-12345.67"},
                        {"bookings.0.branch", "42"},
                        {"bookings.0.fee", "-19.95"},
                        {"bookings.0.rate", "2.5"},
                        {"bookings.0.closed", "240131"},
                        {"bookings.0.holder.P.born", "18151210"},
                        {"bookings.1.name", "M\xC3\xBCller & S\xC3\xB6hne"},
                        {"bookings.1.balance", "100000000.50"},
                        {"bookings.1.rate", "-1234.5"},
                        {"bookings.1.sequence", "-2"},
                        {"bookings.1.closed", "(null)"},
                        {"bookings.1.holder.C.register number", "HRB 12345"},
                        {"trailer.count", "2"},
                        {"trailer.balance", "99987654.83"}});
}

TEST(COBOL, damagedAmountsAreRefused)
{
    const std::string bytes = sample("cobol/bookings.ebc");
    const CLayout layout = installed("cobol");
    std::string packed = bytes;
    packed[80 + 36] = '\x7A';  // neither C nor D in the last half
    EXPECT_EQ(place(reading(layout, packed).m_tFault), "sign at 111 (bookings[0].balance)");
    std::string zoned = bytes;
    zoned[80 + 40] = '\x40';  // a blank among digits
    EXPECT_EQ(place(reading(layout, zoned).m_tFault), "padding at 120 (bookings[0].fee)");
}

TEST(COBOL, totalsThatDifferAreFound)
{
    std::string bytes = sample("cobol/bookings.ebc");
    bytes[247] = '\xF3';
    const tReading result = reading(installed("cobol"), bytes);
    EXPECT_TRUE(result.m_bRead);
    EXPECT_EQ(places(result.m_vFindings), std::vector<std::string>{"total at 241 (trailer.count)"});
}

TEST(Sensor, measurementsComeBack)
{
    // Made by hand: length, flags "alarm", station 2, time 3; a number of 20.5 and a text; a name; CRC-32 of the rest.
    const std::string head = "MSR1" + bytesOf("2900 80 0200000000000000 03000000") + bytesOf("0200") +
                             bytesOf("01 01 14500000") + bytesOf("02 02 02") + "ok" + std::string("roof\0", 5);
    const CLayout layout = installed("sensor");
    std::string bytes = head;
    // The checksum as its definition says: one bit after the other.
    unsigned int crc = 0xFFFFFFFF;
    for (const char byte : bytes)
    {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
    }
    for (unsigned int i = 0; i < 4; ++i)
        bytes.push_back(static_cast<char>(~crc >> 8 * i & 0xFF));
    ASSERT_EQ(bytes.size(), 41u);
    const CFields tree = thereAndBack(layout, bytes);
    expectValues(tree, {{"flags.alarm", "1"},
                        {"flags.calibrated", "0"},
                        {"station", "2"},
                        {"position", "(none)"},
                        {"readings.0.value.number", "20.500"},
                        {"readings.1.value.text", "ok"},
                        {"name", "roof"}});
    bytes[25] ^= 1;
    EXPECT_EQ(reading(layout, bytes).m_vFindings.size(), 1u);
}

}  // namespace murv::tests
