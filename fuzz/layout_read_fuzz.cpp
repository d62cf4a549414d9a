// fuzz/layout_read_fuzz.cpp - any bytes, read by any layout.
//
// The input is a layout and, after a zero byte, a packet; or the number of one of the layouts below in the first byte,
// and a packet. Reading ends in a fault, or in findings, or making gives the same bytes. Records come the same from
// pieces as from the whole, and a view has what the tree has.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "murv/layout.h"
#include "murv/records.h"
#include "tests/layout/record_log.h"

using namespace murv;
using murv::tests::CRecordLog;

namespace
{

constexpr const char* s_cpLayouts[] = {
    // Lines, records of several kinds, totals.
    R"({ "@" = "layout 1; lines", "b" = [ { "h" = { "t" = (ACF1fix) "5", "d" = (ANF4) 0, "@d" = "blank is null" },
        "e" = [ { "t" = (ACF1fix) "6", "v" = (ANF4) 0, "@v" = "decimals 2", "x" = (ACF3) "" } ],
        "c" = { "t" = (ACF1fix) "8", "n" = (ANF2) 0, "@n" = "records of e", "s" = (ANF6) 0,
            "@s" = "decimals 2; sum of e.v" } } ] })",
    // Bitmaps, prefixes.
    R"({ "@" = "layout 1", "m" = (ACF2) "", "@m" = "hex; bits of d", "d" = { #1 "more" = (ACF2) "",
        "@more" = "hex; bits of d from 9", #2 "a" = (ACV2+2) "", #3 "n" = (ANF3) 0, #9 "b" = (ACV1) "",
        #10 "c" = (ANV1+1) 0 } })",
    // Binary: sizes, counts, choices, conditions, a check.
    R"({ "@" = "layout 1; little", "magic" = (BCF2fix) "MS", "length" = (BNF1) 0, "@length" = "size of .",
        "f" = (BNF1) 0, "@f" = "bits 1 x, 3 n, 4 spare", "@f.n" = "count of l",
        "p" = { "@" = "if f.x = 1", "q" = (BNF4) 0, "@q" = "float" },
        "l" = [ { "k" = (BNF1) 0, "v" = { "@" = "one of by k else raw", #1 "n" = (BNF2) 0, #2 "t" = (BCV1+1) "",
            "raw" = (BNF1) 0 }, "@v" = "align 2" } ], "o" = (ACF0) "", "@o" = "ends \"\\x00\"",
        "c" = (BNF2) 0, "@c" = "crc16 of magic..o" })",
    // Marks.
    R"({ "@" = "layout 1; lines", "l" = [ { "@" = "between \"|\"", "a" = (ACF0) "", "b" = (ANF0) 0,
        "@b" = "blank is null", "s" = { "@" = "between \"^\"", "x" = (ACF0) "", "y" = (ACF3) "" }, "z" = [ (ACF0) "" ],
        "@z" = "between \"~\"" } ] })",
    // Optional parts, "before", "until", varying widths that measure.
    R"({ "@" = "layout 1; prefixed BNF1 + 1", "l" = [ { "o" = { "@" = "optional", "t" = (ACF1fix) "O", "n" = (ANV1+1) 0,
        "@n" = "size of b", "b" = (ACF0) "", "@b" = "before \";\" | \"..\"" }, "u" = [ { "k" = (ANF1) 0,
        "w" = (ACF1) "",
        "@w" = "if k & 6" } ], "@u" = "until k = 0", "r" = (BCF0) "", "@r" = "to end" } ] })",
    // Values.
    R"({ "@" = "layout 1", "a" = (ANF5) 0, "b" = (ACF4) "", "@b" = "right", "c" = (BNF3) 0, "@c" = "packed; signed",
        "d" = (ANF4) 0, "@d" = "zoned; signed; decimals 1", "e" = (ANF4) 0, "@e" = "octal \"\\x00\"", "f" = (ACF3) "",
        "@f" = "cp037", "g" = (ANF6YYMMDD) 0, "h" = (ANF5) 0, "@h" = "trailing sign", "i" = (ANF4) 0, "@i" = "exact",
        "j" = (BNF8) 0, "k" = (BNF4) 0, "@k" = "float", "l" = (ANF5) 0, "@l" = "decimals \".\"; pad blank" })",
    // Messages one after the other.
    R"({ "@" = "layout 1", "t" = (ACF1) "", "n" = (ANF1) 0, "@n" = "size of b", "b" = (ACF0) "", "@b" = "to end" })",
};

void require(bool holds, const char* what, const std::string& more = {})
{
    if (holds)
        return;
    std::fprintf(stderr, "%s\n%s\n", what, more.c_str());
    std::abort();
}

std::string words4(const tPacketFault& fault)
{
    return std::string(getFaultName(fault.m_eCode)) + " at " + fault.m_strPath + ", offset " +
           std::to_string(fault.m_ullOffset) + ": " + fault.m_strMessage;
}

/// All records, and how it ended. A piece of no bytes: everything at once.
std::string readRecords(const CLayout& layout, std::string_view packet, std::size_t piece)
{
    CRecordReader reader(layout);
    CRecordLog log;
    std::size_t given = 0;
    if (piece == 0)
        reader.open(packet);
    else
        reader.open();
    for (std::size_t i = 0; i < 4 * packet.size() + 16; ++i)
    {
        const E_RecordResult result = reader.next(log);
        if (result == RR_end)
            return log.m_strLog + "end";
        if (result == RR_fault && !reader.skip())
            return log.m_strLog + words4(reader.getFault());
        if (result != RR_more)
            continue;
        require(piece != 0, "bytes are missing after the end");
        if (given < packet.size())
            reader.put(packet.substr(given, piece));
        else
            reader.end();
        given += piece;
    }
    require(false, "records without end");
    return {};
}

void requireRoundTrip(const CLayout& layout, std::string_view packet)
{
    CPacketReader reader(layout);
    CFields tree;
    const bool isRead = reader.read(packet, tree);
    require(isRead == (reader.getFault().m_eCode == PF_none), "result and fault differ");
    require(reader.getFault().m_ullOffset <= packet.size(), "a fault outside the packet", words4(reader.getFault()));
    for (const tPacketFault& finding : reader.getFindings())
        require(finding.m_ullOffset + finding.m_ullLength <= packet.size() && isFinding(finding.m_eCode),
                "a finding outside the packet", words4(finding));
    require(CPacketReader(layout).check(packet) == isRead, "reading and checking differ");
    CPacketView view(layout);
    const bool isOpen = view.open(packet);
    require(isOpen || !isRead, "a view that does not open", words4(view.getFault()));
    if (!isRead || !reader.getFindings().empty())
        return;
    CPacketMaker maker(layout, reader.getMakeOptions());
    std::string made;
    require(maker.make(tree, made), "what was read is not made", words4(maker.getFault()));
    require(made == packet, "what was read is made in another way", made);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    if (input.empty())
        return 0;
    CLayout layout;
    std::string_view packet = input.substr(1);
    const auto index = static_cast<std::size_t>(data[0]);
    if (index < std::size(s_cpLayouts))
        require(layout.compile(s_cpLayouts[index]), "a layout of this file has mistakes");
    else
    {
        const std::size_t end = input.find('\0');
        if (end == std::string_view::npos || !layout.compile(input.substr(0, end)))
            return 0;
        packet = input.substr(end + 1);
    }
    requireRoundTrip(layout, packet);
    const std::string whole = readRecords(layout, packet, 0);
    for (const std::size_t piece : {std::size_t{1}, std::size_t{3}})
        require(readRecords(layout, packet, piece) == whole, "pieces differ from the whole", whole);
    return 0;
}
