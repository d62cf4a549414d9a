// tests/layout/stock/iso8583_test.cpp - card messages, in characters and in binary.
#include "tests/layout/stock/stock_helpers.h"

namespace murv::tests
{

namespace
{

/// The member of a field set with that ID.
const CFields* element(const CFields& data, unsigned int id)
{
    for (const CFields& member : data)
    {
        if (member.getID() == id)
            return &member;
    }
    return nullptr;
}

std::string withoutZeros(const std::string& digits)
{
    const std::size_t first = digits.find_first_not_of('0');
    return first == std::string::npos ? "0" : digits.substr(first);
}

/// "1111..." of the answer as the hexadecimal digits of the bytes.
std::string hexBytes(const std::string& bits)
{
    std::string bytes;
    for (std::size_t i = 0; i + 8 <= bits.size(); i += 8)
        bytes.push_back(static_cast<char>(std::stoul(bits.substr(i, 8), nullptr, 2)));
    return bytes;
}

}  // namespace

TEST(ISO8583, messagesInCharactersComeBack)
{
    const CLayout layout = installed("iso8583");
    for (const char* name : {"financial_transaction_message", "iso_reversal_message", "network_management_message"})
    {
        SCOPED_TRACE(name);
        std::string bytes = sample(std::string("iso8583/") + name + ".dat");
        if (bytes.back() == '\n')  // no part of the message
            bytes.pop_back();
        thereAndBack(layout, bytes);
    }
}

TEST(ISO8583, elementsAreThoseOfTheAnswer)
{
    const CFields tree = thereAndBack(installed("iso8583"), sample("iso8583/iso_reversal_message.dat"));
    const auto objects = flatJSON(sample("iso8583/iso_reversal_message.json"));
    ASSERT_EQ(objects.size(), 2u);
    EXPECT_EQ(at(tree, "mti"), objects[0].at("mti"));
    EXPECT_EQ(at(tree, "bitmap"), hexBytes(objects[0].at("bitmap")));
    const CFields& data = *nodeAt(tree, "data");
    EXPECT_EQ(data.getChildCount(), objects[1].size());
    for (const auto& [id, value] : objects[1])
    {
        const CFields* const node = element(data, static_cast<unsigned int>(std::stoul(id)));
        ASSERT_NE(node, nullptr) << id;
        // Blanks at the end are padding; the amount is a number; the second bitmap is bytes.
        const std::string shown = id == "1" ? hexBytes(value) : id == "4" ? withoutZeros(value) : value;
        EXPECT_EQ(node->asString(), shown.substr(0, id == "1" ? std::string::npos : shown.find_last_not_of(' ') + 1))
            << id;
    }
}

TEST(ISO8583, bitWithoutAnElementIsRefused)
{
    std::string bytes = sample("iso8583/network_management_message.dat");
    bytes[5] = '6';  // bit 6 instead of 7
    const tReading result = reading(installed("iso8583"), bytes);
    EXPECT_FALSE(result.m_bRead);
    EXPECT_EQ(place(result.m_tFault), "bit at 4 (bitmap)");
}

TEST(ISO8583, messageInBinary)
{
    // Written by hand from the public list of data elements: a request of 12.34 by a card of a public test number.
    const std::string bytes = bytesOf(
                                  "0200 7024058000C00000"  // type; elements 2, 3, 4, 11, 14, 22, 24, 25, 41, 42
                                  "08 4111111111111111"    // 2
                                  "000000"                 // 3
                                  "000000001234"           // 4
                                  "000042"                 // 11
                                  "3012"                   // 14
                                  "0051 0003 00") +        // 22, 24, 25
                              "TERM0001MERCHANT 000001";   // 41, 42
    const CFields tree = thereAndBack(installed("iso8583-bcd"), bytes);
    expectValues(tree, {{"mti", "200"},
                        {"data.account.length", "8"},
                        {"data.account.digits", bytesOf("4111111111111111")},
                        {"data.amount", "1234"},
                        {"data.trace", "42"},
                        {"data.expires", "3012"},
                        {"data.entry mode", "51"},
                        {"data.terminal", "TERM0001"},
                        {"data.acceptor", "MERCHANT 000001"},
                        {"data.response", "(none)"}});
}

TEST(ISO8583, digitsInBinaryAreChecked)
{
    const std::string bytes = bytesOf("0800 8020000000000000 0400000000000000 00A042 0301");
    const tReading result = reading(installed("iso8583-bcd"), bytes);
    EXPECT_FALSE(result.m_bRead);
    EXPECT_EQ(place(result.m_tFault), "digits at 18 (data.trace)");
}

}  // namespace murv::tests
