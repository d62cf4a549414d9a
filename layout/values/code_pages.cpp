// layout/values/code_pages.cpp - the tables of the code pages, and texts through them.
//
// EBCDIC pages differ in a few characters. One table is written down; the others say what they exchange.
#include "layout/values/code_pages.h"

#include "core/text/trim.h"
#include "core/text/utf8.h"

namespace murv::detail
{

namespace
{

// Line ends: 25 is the line feed, 15 the "next line" of the second set of controls.
constexpr tPageBytes s_caucEbcdic037 = {
    0x00, 0x01, 0x02, 0x03, 0x9C, 0x09, 0x86, 0x7F, 0x97, 0x8D, 0x8E, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F,  // 00
    0x10, 0x11, 0x12, 0x13, 0x9D, 0x85, 0x08, 0x87, 0x18, 0x19, 0x92, 0x8F, 0x1C, 0x1D, 0x1E, 0x1F,  // 10
    0x80, 0x81, 0x82, 0x83, 0x84, 0x0A, 0x17, 0x1B, 0x88, 0x89, 0x8A, 0x8B, 0x8C, 0x05, 0x06, 0x07,  // 20
    0x90, 0x91, 0x16, 0x93, 0x94, 0x95, 0x96, 0x04, 0x98, 0x99, 0x9A, 0x9B, 0x14, 0x15, 0x9E, 0x1A,  // 30
    0x20, 0xA0, 0xE2, 0xE4, 0xE0, 0xE1, 0xE3, 0xE5, 0xE7, 0xF1, 0xA2, 0x2E, 0x3C, 0x28, 0x2B, 0x7C,  // 40
    0x26, 0xE9, 0xEA, 0xEB, 0xE8, 0xED, 0xEE, 0xEF, 0xEC, 0xDF, 0x21, 0x24, 0x2A, 0x29, 0x3B, 0xAC,  // 50
    0x2D, 0x2F, 0xC2, 0xC4, 0xC0, 0xC1, 0xC3, 0xC5, 0xC7, 0xD1, 0xA6, 0x2C, 0x25, 0x5F, 0x3E, 0x3F,  // 60
    0xF8, 0xC9, 0xCA, 0xCB, 0xC8, 0xCD, 0xCE, 0xCF, 0xCC, 0x60, 0x3A, 0x23, 0x40, 0x27, 0x3D, 0x22,  // 70
    0xD8, 0x61, 0x62, 0x63, 0x64, 0x65, 0x66, 0x67, 0x68, 0x69, 0xAB, 0xBB, 0xF0, 0xFD, 0xFE, 0xB1,  // 80
    0xB0, 0x6A, 0x6B, 0x6C, 0x6D, 0x6E, 0x6F, 0x70, 0x71, 0x72, 0xAA, 0xBA, 0xE6, 0xB8, 0xC6, 0xA4,  // 90
    0xB5, 0x7E, 0x73, 0x74, 0x75, 0x76, 0x77, 0x78, 0x79, 0x7A, 0xA1, 0xBF, 0xD0, 0xDD, 0xDE, 0xAE,  // A0
    0x5E, 0xA3, 0xA5, 0xB7, 0xA9, 0xA7, 0xB6, 0xBC, 0xBD, 0xBE, 0x5B, 0x5D, 0xAF, 0xA8, 0xB4, 0xD7,  // B0
    0x7B, 0x41, 0x42, 0x43, 0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0xAD, 0xF4, 0xF6, 0xF2, 0xF3, 0xF5,  // C0
    0x7D, 0x4A, 0x4B, 0x4C, 0x4D, 0x4E, 0x4F, 0x50, 0x51, 0x52, 0xB9, 0xFB, 0xFC, 0xF9, 0xFA, 0xFF,  // D0
    0x5C, 0xF7, 0x53, 0x54, 0x55, 0x56, 0x57, 0x58, 0x59, 0x5A, 0xB2, 0xD4, 0xD6, 0xD2, 0xD3, 0xD5,  // E0
    0x30, 0x31, 0x32, 0x33, 0x34, 0x35, 0x36, 0x37, 0x38, 0x39, 0xB3, 0xDB, 0xDC, 0xD9, 0xDA, 0x9F,  // F0
};

/// What a page has at a byte, where it differs from the table above.
struct tDifference
{
    unsigned char m_ucByte;
    unsigned char m_ucCharacter;
};

constexpr tDifference s_ctDifferences500[] = {{0x4A, '['},  {0x4F, '!'},  {0x5A, ']'}, {0x5F, '^'},
                                              {0xB0, 0xA2}, {0xBA, 0xAC}, {0xBB, '|'}};
constexpr tDifference s_ctDifferences1047[] = {{0x5F, '^'},  {0xAD, '['},  {0xB0, 0xAC},
                                               {0xBA, 0xDD}, {0xBB, 0xA8}, {0xBD, ']'}};

constexpr tCodePage makePage(std::string_view name, const tPageBytes& characters, unsigned int count)
{
    tCodePage page{name, characters['A'] == 'A', count, characters, {}};
    for (unsigned int byte = 0; byte < count; ++byte)
        page.m_aucByte4Character[characters[byte]] = static_cast<unsigned char>(byte);
    return page;
}

constexpr tCodePage makeAsciiLike(std::string_view name, unsigned int count)
{
    tPageBytes characters{};
    for (unsigned int byte = 0; byte < characters.size(); ++byte)
        characters[byte] = static_cast<unsigned char>(byte);
    return makePage(name, characters, count);
}

template <std::size_t s_cnDifferences>
constexpr tCodePage makeEbcdic(std::string_view name, const tDifference (&differences)[s_cnDifferences])
{
    tPageBytes characters = s_caucEbcdic037;
    for (const tDifference& difference : differences)
        characters[difference.m_ucByte] = difference.m_ucCharacter;
    return makePage(name, characters, 256);
}

constexpr tCodePage s_ctCodePages[] = {
    makeAsciiLike("ascii", 128),
    makeAsciiLike("latin1", 256),
    makePage("cp037", s_caucEbcdic037, 256),
    makeEbcdic("cp500", s_ctDifferences500),
    makeEbcdic("cp1047", s_ctDifferences1047),
};

constexpr bool comeAllBytesBack()
{
    for (const tCodePage& page : s_ctCodePages)
    {
        for (unsigned int byte = 0; byte < page.m_uiCharacters; ++byte)
        {
            if (page.m_aucByte4Character[page.m_aucCharacter4Byte[byte]] != byte)
                return false;
        }
    }
    return true;
}

static_assert(comeAllBytesBack(), "a page has a character twice");
static_assert(s_ctCodePages[4].m_aucCharacter4Byte[0x25] == '\n' && s_ctCodePages[4].m_aucCharacter4Byte[0x15] == 0x85);

void translate(const tPageBytes& table, std::string_view bytes, std::string& out)
{
    out.resize(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i)
        out[i] = static_cast<char>(table[static_cast<unsigned char>(bytes[i])]);
}

/// Makes UTF-8 of single characters, which grow to two bytes from 128 on.
void widen(std::string& text)
{
    std::size_t wide = 0;
    for (const char c : text)
        wide += static_cast<unsigned char>(c) >> 7;
    std::size_t from = text.size();
    text.resize(from + wide);
    std::size_t to = text.size();
    while (to != from)  // when they meet, what is left in front is ASCII
    {
        const auto character = static_cast<unsigned char>(text[--from]);
        if (character < 128)
            text[--to] = static_cast<char>(character);
        else
        {
            to -= 2;
            writeUtf8(text.data() + to, character);
        }
    }
}

/// Appends the characters of UTF-8 that are not all ASCII. \return false when the page lacks one
bool appendCharacters(const tCodePage& page, std::string_view text, std::string& out)
{
    const char* const end = text.data() + text.size();
    for (const char* p = text.data(); p != end;)
    {
        const tUtf8Point point = readUtf8(p, end);
        if (point.m_nLength == 0 || point.m_uiCodePoint >= page.m_uiCharacters)
            return false;
        out += static_cast<char>(page.m_aucByte4Character[point.m_uiCodePoint]);
        p += point.m_nLength;
    }
    return true;
}

}  // namespace

const tCodePage* findCodePage(std::string_view name)
{
    for (const tCodePage& page : s_ctCodePages)
    {
        if (page.m_strvName == name)
            return &page;
    }
    return nullptr;
}

bool readPageText(const tCodePage* page, std::string_view bytes, std::string_view& text, std::string& scratch)
{
    if (page == nullptr || (page->m_bAsciiLike && isAscii(bytes)))
    {
        text = bytes;
        return true;
    }
    if (page->m_uiCharacters < 256)
        return false;
    translate(page->m_aucCharacter4Byte, bytes, scratch);
    if (!isAscii(scratch))
        widen(scratch);
    text = scratch;
    return true;
}

bool makePageText(const tCodePage* page, std::string_view text, std::string& out)
{
    const std::size_t before = out.size();
    if (page == nullptr || isAscii(text))
    {
        out += text;
        if (page != nullptr)
            makePageDigits(page, out, before);
        return true;
    }
    if (appendCharacters(*page, text, out))
        return true;
    out.resize(before);
    return false;
}

std::string_view readPageDigits(const tCodePage* page, std::string_view bytes, std::string& scratch, std::size_t room)
{
    if (page == nullptr || page->m_bAsciiLike)
        return bytes;
    scratch.reserve(bytes.size() + room);
    translate(page->m_aucCharacter4Byte, bytes, scratch);
    return scratch;
}

void makePageDigits(const tCodePage* page, std::string& out, std::size_t from)
{
    if (page == nullptr || page->m_bAsciiLike)
        return;
    for (std::size_t i = from; i < out.size(); ++i)
        out[i] = static_cast<char>(page->m_aucByte4Character[static_cast<unsigned char>(out[i])]);
}

}  // namespace murv::detail
