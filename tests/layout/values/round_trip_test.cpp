// tests/layout/values/round_trip_test.cpp - what is read can be made again, for every form and rule.
//
// Short items are tried with all bytes that they can have, longer ones with random bytes of the kinds that matter.
#include <cstdlib>
#include <random>
#include <vector>

#include "tests/layout/values/item_helpers.h"

namespace
{

using namespace murv;
using namespace murv::tests;

struct tNamedItem
{
    std::string m_strName;
    tItem m_tItem;
};

/// Every rule with every form that can have it.
std::vector<tNamedItem> itemsOfWidth(unsigned int width)
{
    std::vector<tNamedItem> items;
    const auto add = [&](const std::string& name, tItem item) {
        items.push_back({name, item});
        prepareItem(item);
        items.push_back({name + ", prepared", item});
    };
    const E_ItemForm characters[] = {IF_digits, IF_trailing, IF_octal, IF_hex, IF_zoned};
    for (const E_ItemForm form : characters)
    {
        const std::string name = "form " + std::to_string(form);
        const tItem shapes[] = {
            fixedItem(form, width),
            varyingItem(form, width),
            paddedItem(fixedItem(form, width), PAD_blanksFront),
            paddedItem(fixedItem(form, width), PAD_blanksAfter),
            paddedItem(fixedItem(form, width), PAD_none),
        };
        for (const tItem& shape : shapes)
        {
            const std::string shaped =
                name + ", padding " + std::to_string(shape.m_ePadding) + (shape.m_bVaries ? ", varies" : "");
            add(shaped, shape);
            add(shaped + ", blank", blankNullItem(shape));
            add(shaped + ", zero", zeroNullItem(shape));
            add(shaped + ", signed", signedItem(shape));
            add(shaped + ", exact", exactItem(shape));
            add(shaped + ", exact, zero", zeroNullItem(exactItem(shape)));
            add(shaped + ", lower", lowerItem(shape));
            add(shaped + ", tail", tailedItem(shape, "0"));
            add(shaped + ", decimals", decimalItem(shape, 2));
            add(shaped + ", decimals, zero", zeroNullItem(decimalItem(shape, 1)));
            add(shaped + ", point", pointedItem(shape));
            add(shaped + ", comma", pointedItem(shape, ','));
            add(shaped + ", point, zero", zeroNullItem(pointedItem(shape)));
            add(shaped + ", point, exact", exactItem(pointedItem(shape)));
            add(shaped + ", comma, exact, blank", blankNullItem(exactItem(pointedItem(shape, ','))));
            add(shaped + ", EBCDIC", signedItem(pageItem(shape, "cp037")));
            add(shaped + ", EBCDIC, decimals", decimalItem(pageItem(shape, "cp1047"), 1));
            add(shaped + ", EBCDIC, exact", exactItem(pageItem(shape, "cp500")));
            add(shaped + ", hour", timeItem(shape, "hh"));
            add(shaped + ", hour, zero", zeroNullItem(timeItem(shape, "hh")));
        }
    }
    const E_ItemForm bytes[] = {IF_binary, IF_float, IF_packed, IF_bcd};
    for (const E_ItemForm form : bytes)
    {
        const std::string name = "form " + std::to_string(form);
        for (const tItem& shape : {fixedItem(form, width), varyingItem(form, width)})
        {
            const std::string shaped = name + (shape.m_bVaries ? ", varies" : "");
            add(shaped, shape);
            add(shaped + ", little", littleItem(shape));
            add(shaped + ", signed", signedItem(shape));
            add(shaped + ", signed, little", littleItem(signedItem(shape)));
            add(shaped + ", zero", zeroNullItem(shape));
            add(shaped + ", decimals", decimalItem(signedItem(shape), 2));
            add(shaped + ", hour", timeItem(shape, "hh"));
            if (form != IF_packed && form != IF_bcd)
                continue;
            add(shaped + ", exact", exactItem(signedItem(shape)));
            add(shaped + ", exact, zero", zeroNullItem(exactItem(shape)));
        }
    }
    const E_ItemForm texts[] = {IF_text, IF_bytes, IF_hexText};
    const E_Padding paddings[] = {PAD_none, PAD_blanksAfter, PAD_blanksFront, PAD_zeroBytes};
    for (const E_ItemForm form : texts)
    {
        for (const E_Padding padding : paddings)
        {
            const tItem item = paddedItem(fixedItem(form, width), padding);
            const std::string name = "form " + std::to_string(form) + ", padding " + std::to_string(padding);
            add(name, item);
            for (const char* const page : {"ascii", "latin1", "cp037", "cp500", "cp1047"})
                add(name + ", " + page, pageItem(item, page));
        }
        add("form " + std::to_string(form) + ", varies", varyingItem(form, width));
    }
    return items;
}

TEST(ValueRoundTrip, allItemsOfOneByte)
{
    for (const tNamedItem& row : itemsOfWidth(1))
    {
        for (unsigned int byte = 0; byte < 256; ++byte)
            ASSERT_TRUE(comesBack(row.m_tItem, std::string(1, static_cast<char>(byte)))) << row.m_strName;
    }
}

void expectPairsComeBack(const tNamedItem& row, std::string_view alphabet)
{
    std::string bytes(2, '\0');
    for (const char first : alphabet)
    {
        bytes[0] = first;
        for (const char second : alphabet)
        {
            bytes[1] = second;
            ASSERT_TRUE(comesBack(row.m_tItem, bytes)) << row.m_strName;
        }
    }
}

std::string allBytes()
{
    std::string bytes(256, '\0');
    for (unsigned int i = 0; i < 256; ++i)
        bytes[i] = static_cast<char>(i);
    return bytes;
}

TEST(ValueRoundTrip, allItemsOfTwoBytesInEachForm)
{
    const std::string alphabet = allBytes();
    for (unsigned int form = 0; form < s_cuiItemForms; ++form)
    {
        const auto kind = static_cast<E_ItemForm>(form);
        expectPairsComeBack({"fixed", fixedItem(kind, 2)}, alphabet);
        expectPairsComeBack({"signed", signedItem(fixedItem(kind, 2))}, alphabet);
        expectPairsComeBack({"varies", signedItem(varyingItem(kind, 2))}, alphabet);
    }
}

TEST(ValueRoundTrip, itemsOfTwoBytesThatHaveAMeaningSomewhere)
{
    constexpr std::string_view alphabet(
        "\0\1\x0C\x0D\x0F\x1D\x20\x40\x60\x7F\x80\x9F\xC0\xD0\xF0\xF9\xFF+-,.0189AFJR{}af", 33);
    for (const tNamedItem& row : itemsOfWidth(2))
        expectPairsComeBack(row, alphabet);
}

TEST(ValueRoundTrip, itemsWithoutBytes)
{
    for (const tNamedItem& row : itemsOfWidth(8))
    {
        EXPECT_TRUE(!row.m_tItem.m_bVaries || comesBack(row.m_tItem, "")) << row.m_strName;
    }
}

/// Short random texts of the bytes that have a meaning somewhere.
void expectRandomBytesComeBack(unsigned int width, std::string_view alphabet, std::mt19937& random)
{
    std::string bytes(width, '\0');
    for (const tNamedItem& row : itemsOfWidth(width))
    {
        for (int round = 0; round < 30; ++round)
        {
            for (char& byte : bytes)
                byte = alphabet[random() % alphabet.size()];
            ASSERT_TRUE(comesBack(row.m_tItem, bytes)) << row.m_strName;
        }
    }
}

TEST(ValueRoundTrip, randomItemsOfMoreBytes)
{
    std::mt19937 random(7);
    for (const unsigned int width : {3U, 4U, 5U, 8U, 9U, 17U, 21U, 25U})
    {
        expectRandomBytesComeBack(width, "0123456789", random);
        expectRandomBytesComeBack(width, "00000017", random);
        expectRandomBytesComeBack(width, "  0019-", random);
        expectRandomBytesComeBack(width, "000.,59", random);
        expectRandomBytesComeBack(width, "0019+-{}AJR", random);
        expectRandomBytesComeBack(width, "09afAF", random);
        expectRandomBytesComeBack(width, std::string_view("\0\0\0\1\x12\x34\x0C\x0D\x0F\x99\xFF\x80", 12), random);
        expectRandomBytesComeBack(width, "\xF0\xF0\xF1\xF9\x40\x60\xC1\xD0", random);
    }
}

/// Values that are made are read back as the same value; numbers in texts may come back as numbers.
TEST(ValueRoundTrip, whatIsMadeIsReadBack)
{
    std::mt19937_64 random(11);
    unsigned int integers = 0;
    for (const unsigned int width : {1U, 2U, 4U, 8U, 12U, 20U})
    {
        for (const tNamedItem& row : itemsOfWidth(width))
        {
            for (int round = 0; round < 40; ++round)
            {
                const auto number = static_cast<long long>(random() >> random() % 64) * (round % 2 == 0 ? 1 : -1);
                std::string out;
                if (makeValue(row.m_tItem, signedScalar(number), out) != PF_none)
                    continue;
                tScalar value;
                std::string scratch;
                ASSERT_EQ(PF_none, readValue(row.m_tItem, out, VO_none, value, scratch)) << row.m_strName;
                std::string again;
                ASSERT_EQ(PF_none, makeValue(row.m_tItem, value, again)) << row.m_strName << " " << number;
                ASSERT_EQ(out, again) << row.m_strName << " " << number;
                if (row.m_tItem.m_bDecimals || row.m_tItem.m_bExact || row.m_tItem.m_eForm == IF_float)
                    continue;
                ASSERT_EQ(std::to_string(number), shown(value)) << row.m_strName;
                ++integers;
            }
        }
    }
    EXPECT_GT(integers, 10000U);
}

/// Makes, reads and makes again. \return false when making refuses the value
/// \param out  the text of the value may lie in it
bool makeAndRead(const tNamedItem& row, const tScalar& given, tScalar& back, std::string& out, std::string& scratch)
{
    out.clear();
    if (makeValue(row.m_tItem, given, out) != PF_none)
        return false;
    EXPECT_EQ(PF_none, readValue(row.m_tItem, out, VO_none, back, scratch)) << row.m_strName << " " << shown(given);
    std::string again;
    EXPECT_EQ(PF_none, makeValue(row.m_tItem, back, again)) << row.m_strName << " " << shown(given);
    EXPECT_EQ(out, again) << row.m_strName << " " << shown(given);
    return true;
}

bool isNumberForm(E_ItemForm form)
{
    return form != IF_text && form != IF_bytes && form != IF_hexText;
}

TEST(ValueRoundTrip, textsThatAreMadeAreReadBackAsTheSameTextOrNumber)
{
    std::mt19937 random(13);
    constexpr std::string_view alphabet("0012345.- +AF\xC3\xA9", 15);
    unsigned int texts = 0;
    for (const tNamedItem& row : itemsOfWidth(6))
    {
        for (int round = 0; round < 200; ++round)
        {
            std::string text(random() % 7, ' ');
            for (char& c : text)
                c = alphabet[random() % alphabet.size()];
            tScalar back;
            std::string out;
            std::string scratch;
            if (!makeAndRead(row, makeScalar(std::string_view(text)), back, out, scratch))
                continue;
            ++texts;
            tItem same = row.m_tItem;
            same.m_vValid = {{text, text}};
            const bool keepsText = !isNumberForm(same.m_eForm) || (same.m_bExact && same.m_eForm != IF_float);
            ASSERT_TRUE(keepsText ? shown(back) == '"' + text + '"'
                                  : isValidValue(same, back) || same.m_eForm == IF_float)
                << row.m_strName << " " << text << " came back as " << shown(back);
        }
    }
    EXPECT_GT(texts, 10000U);
}

TEST(ValueRoundTrip, doublesThatAreMadeAreReadBackAsTheSameNumber)
{
    std::mt19937 random(17);
    unsigned int doubles = 0;
    for (const unsigned int width : {4U, 8U, 20U})
    {
        for (const tNamedItem& row : itemsOfWidth(width))
        {
            for (int round = 0; round < 50; ++round)
            {
                const double scales[] = {1, 10, 100, 1e5, 1e-9};
                const double number = (static_cast<double>(random() % 20000) - 10000) / scales[random() % 5];
                tScalar back;
                std::string out;
                std::string scratch;
                if (row.m_tItem.m_eForm == IF_float || !makeAndRead(row, doubleScalar(number), back, out, scratch))
                    continue;
                ++doubles;
                const std::string text = shown(back);
                ASSERT_EQ(number, std::strtod(text.c_str() + (text.front() == '"' ? 1 : 0), nullptr))
                    << row.m_strName << " came back as " << text;
            }
        }
    }
    EXPECT_GT(doubles, 10000U);
}

}  // namespace
