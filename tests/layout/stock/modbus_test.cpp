// tests/layout/stock/modbus_test.cpp - messages of the examples in the public specification of the protocol.
//
// The bytes of functions and data are those of "MODBUS Application Protocol Specification V1.1b3" (modbus.org), section
// 6, where each function has one; before them stands the header that "MODBUS Messaging on TCP/IP" describes.
#include "tests/layout/stock/stock_helpers.h"

namespace murv::tests
{

namespace
{

/// A header with transaction 1 and unit 17 before a function and its data.
std::string message(const char* hex)
{
    const std::string data = bytesOf(hex);
    return bytesOf("0001 0000 00") + static_cast<char>(data.size() + 1) + '\x11' + data;
}

void expectMessage(const char* layout, const char* hex, const std::map<std::string, std::string>& values)
{
    SCOPED_TRACE(hex);
    const CFields tree = thereAndBack(installed(layout), message(hex));
    ASSERT_EQ(countAt(tree, "messages"), 1u);
    EXPECT_EQ(at(tree, "messages.0.unit"), "17");
    for (const auto& [path, value] : values)
        EXPECT_EQ(at(tree, "messages.0.body." + path), value) << path;
}

}  // namespace

TEST(Modbus, requests)
{
    const char* layout = "modbus-request";
    expectMessage(layout, "01 0013 0013", {{"read coils.address", "19"}, {"read coils.count", "19"}});
    expectMessage(layout, "02 00C4 0016", {{"read inputs.address", "196"}, {"read inputs.count", "22"}});
    expectMessage(layout, "03 006B 0003",
                  {{"read holding registers.address", "107"}, {"read holding registers.count", "3"}});
    expectMessage(layout, "04 0008 0001", {{"read input registers.address", "8"}});
    expectMessage(layout, "05 00AC FF00", {{"write coil.address", "172"}, {"write coil.value", "65280"}});
    expectMessage(layout, "06 0001 0003", {{"write register.value", "3"}});
    expectMessage(layout, "0F 0013 000A 02 CD01", {{"write coils.count", "10"}, {"write coils.values", "\xCD\x01"}});
    expectMessage(layout, "10 0001 0002 04 000A 0102",
                  {{"write registers.count", "2"}, {"write registers.size", "4"}, {"write registers.values.1", "258"}});
    expectMessage(layout, "16 0004 00F2 0025", {{"mask register.and", "242"}, {"mask register.or", "37"}});
    expectMessage(layout, "17 0003 0006 000E 0003 06 00FF 00FF 00FF",
                  {{"read and write registers.read count", "6"}, {"read and write registers.values.2", "255"}});
    expectMessage(layout, "2B 0E 01 00", {{"other.bytes", bytesOf("0E0100")}});
}

TEST(Modbus, answers)
{
    const char* layout = "modbus-response";
    expectMessage(layout, "01 03 CD6B05", {{"coils.size", "3"}, {"coils.values", "\xCD\x6B\x05"}});
    expectMessage(layout, "02 03 ACDB35", {{"inputs.values", "\xAC\xDB\x35"}});
    expectMessage(layout, "03 06 022B 0000 0064",
                  {{"holding registers.values.0", "555"}, {"holding registers.values.2", "100"}});
    expectMessage(layout, "04 02 000A", {{"input registers.values.0", "10"}});
    expectMessage(layout, "05 00AC FF00", {{"coil written.address", "172"}});
    expectMessage(layout, "06 0001 0003", {{"register written.value", "3"}});
    expectMessage(layout, "0F 0013 000A", {{"coils written.count", "10"}});
    expectMessage(layout, "10 0001 0002", {{"registers written.count", "2"}});
    expectMessage(layout, "16 0004 00F2 0025", {{"register masked.or", "37"}});
    expectMessage(layout, "17 0C 00FE 0ACD 0001 0003 000D 00FF", {{"registers read.values.5", "255"}});
    expectMessage(layout, "81 02", {{"coils refused.reason", "2"}});
    expectMessage(layout, "83 02", {{"holding registers refused.reason", "2"}});
}

TEST(Modbus, messagesFollowEachOther)
{
    const CFields tree = thereAndBack(installed("modbus-request"), message("03 006B 0003") + message("06 0001 0003"));
    EXPECT_EQ(countAt(tree, "messages"), 2u);
}

TEST(Modbus, sizesThatDisagreeAreRefused)
{
    const tReading result = reading(installed("modbus-request"), message("10 0001 0002 03 000A 0102"));
    EXPECT_FALSE(result.m_bRead);
    EXPECT_EQ(result.m_tFault.m_eCode, PF_size);
    const tReading many = reading(installed("modbus-request"), message("03 0000 007E"));
    EXPECT_EQ(places(many.m_vFindings),
              std::vector<std::string>{"invalid at 10 (messages[0].body.read holding registers.count)"});
}

}  // namespace murv::tests
