// layout/run/scanner.h - finds the parts of packets in bytes, one record after the other.
//
// The scanner runs the steps of a plan over a window of the input and writes a trace of what it finds. It stops at the
// end of each record; where bytes are missing it stops, too, and goes on at the same step when the window has more.
// Values are read only where others depend on them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "layout/plan/plan.h"
#include "layout/run/kept_values.h"
#include "layout/run/trace.h"
#include "murv/layout.h"
#include "murv/packet_fault.h"

namespace murv::detail
{

/// Why the scanner stopped, or that it goes on.
enum E_Scan : unsigned char
{
    SC_next,    // the step is done
    SC_again,   // the step was chosen: it is next
    SC_record,  // a record has ended
    SC_done,    // the whole has ended
    SC_more,    // bytes are missing, and may come
    SC_fault,
};

/// A fault or finding with its place, before it is put into words.
struct tScanFault
{
    E_PacketFault m_eCode = PF_none;
    unsigned int m_uiPart = 0;
    std::uint64_t m_ullOffset = 0;
    std::uint64_t m_ullLength = 0;
    std::uint64_t m_ullMissing = 0;
    std::uint64_t m_ullRecord = 0;
    std::uint64_t m_ullRecordOffset = 0;  // where the record begins
    const char* m_pText = nullptr;        // says more than the reason does; static text or null
    tElements m_vElements;                // of the arrays around the part
    unsigned int m_uiBits = s_cuiNone;    // the part of its bits, or none
    std::string m_strBytes{};             // the bytes concerned, where they may be gone; else empty
};

class CScanner
{
public:
    /// \param keepsPlaces  skipFrame() will be asked for
    explicit CScanner(const tPlan& plan, bool keepsPlaces = false);

    /// Begins a new input.
    void reset();
    /// Begins the plan anew in the same input, where it stands.
    void restart();
    /// Shows bytes of the input.
    /// \param base  offset of the first byte shown; nothing before the last record's end is needed
    /// \param over  nothing follows these bytes
    void show(const char* data, std::uint64_t base, std::uint64_t length, bool over);
    /// Sets the most bytes that a record may have; there is no limit before.
    void setLongest(std::uint64_t longest)
    {
        m_ullLongest = longest;
    }
    /// Runs until a record has ended, or the scanner must stop.
    E_Scan run();
    /// After a fault: goes on after the frame at hand, at the place from which the next record can be read. Totals that
    /// are open are not compared. \return false when no frame is open
    bool skipFrame();
    /// Totals that are open are not compared, as a part of what they count is damaged.
    void distrustTotals();
    /// Where the content of the last record ended.
    std::uint64_t recordEnd() const
    {
        return m_ullRecordEnd;
    }
    /// Whether lines end with carriage return and line feed, as far as was read.
    bool hasReturns() const
    {
        return m_ucLineEnd == 2;
    }
    /// Whether the last record had no mark after it.
    bool isOpenEnd() const
    {
        return m_bOpenEnd;
    }
    /// The content of the frame at hand, as far as one is open; else the record at hand without its end.
    tByteRange damaged() const
    {
        if (m_bFrameOpen)
            return {m_ullFrameBegin, m_ullFrameEnd - m_ullFrameBegin};
        return {m_bInRecord ? m_ullRecordStart : m_ullPos, 0};
    }
    bool isInRecord() const
    {
        return m_bInRecord;
    }
    /// Whether nothing of the plan has been run yet.
    bool isAtBegin() const
    {
        return m_uiStep == 0;
    }

    tTraces& trace()
    {
        return m_vTrace;
    }
    const tTraces& trace() const
    {
        return m_vTrace;
    }
    const tScanFault& fault() const
    {
        return m_tFault;
    }
    std::vector<tScanFault>& findings()
    {
        return m_vFindings;
    }
    std::uint64_t position() const
    {
        return m_ullPos;
    }
    /// Bytes that are missing at least, after SC_more.
    std::uint64_t missing() const
    {
        return m_ullMissing;
    }
    std::uint64_t record() const
    {
        return m_ullRecord;
    }
    std::uint64_t recordStart() const
    {
        return m_ullRecordStart;
    }
    const char* at(std::uint64_t offset) const
    {
        return m_pData + (offset - m_ullBase);
    }
    std::string_view bytes(std::uint64_t offset, std::uint64_t length) const
    {
        return {at(offset), static_cast<std::size_t>(length)};
    }
    tElements elements() const;
    /// The same into a list that is kept for its memory.
    void getElements(tElements& elements) const;
    void addElements(tElements& elements) const;

private:
    static constexpr std::uint64_t s_cullUnknown = ~std::uint64_t{0};

    struct tLimit
    {
        std::uint64_t m_ullEnd;
        unsigned int m_uiPart;
        bool m_bOpen = false;  // the size is not known yet, so that the end is that of what is around
    };
    struct tLoop
    {
        std::uint64_t m_ullCount = 0;   // elements begun
        std::uint64_t m_ullWanted = 0;  // AE_count
        bool m_bLast = false;
    };
    struct tMeasure
    {
        bool m_bBegun = false;
        bool m_bEnded = false;
        bool m_bLimited = false;
        std::size_t m_nLimit = 0;  // its place among the limits
        std::uint64_t m_ullBegin = 0;
        std::uint64_t m_ullEnd = 0;
    };
    /// A place between records from which the scanner can go on.
    struct tPlace
    {
        unsigned int m_uiStep = 0;
        std::vector<tLoop> m_vLoops;
        std::vector<char> m_vFirst;
    };
    /// A number that was read, with its place.
    struct tNumber
    {
        bool m_bPresent = false;
        unsigned long long m_ullValue = 0;
        std::uint64_t m_ullOffset = 0;
        std::uint64_t m_ullLength = 0;
        std::uint64_t m_ullRecord = 0;  // as in a fault
        std::uint64_t m_ullRecordOffset = 0;
    };
    struct tTotalNumber
    {
        tNumber m_tNumber;
        std::string m_strBytes;  // the first of them
    };
    /// What is counted over an instance of a base, and the numbers that must equal it.
    struct tTotal
    {
        unsigned long long m_ullSum = 0;
        std::vector<tTotalNumber> m_vNumbers;
        tElements m_vElements;  // of the arrays around each number, one after the other
        bool m_bUnknown = false;
    };

    // scanner.cpp
    E_Scan step(const tStep& step);
    E_Scan onRun(unsigned int index);
    E_Scan onItem(unsigned int part);
    E_Scan onOpen(const tStep& step);
    E_Scan onClose(unsigned int part);
    E_Scan findValue(const tPart& leaf, unsigned int part, tTrace& item, std::uint64_t& after);
    E_Scan findMark(const tPart& leaf, unsigned int part, tTrace& item, std::uint64_t& after);
    E_Scan keep(unsigned int part, std::uint64_t offset, std::uint64_t length);
    E_Scan lack(unsigned int part, std::uint64_t wanted);
    E_Scan lackInRun(const tRun& run);
    E_Scan otherLiteral(unsigned int run, const tRun::tField& literal);
    E_Scan more(unsigned int part, std::uint64_t missing);
    E_Scan stop(E_PacketFault code, unsigned int part, std::uint64_t offset, std::uint64_t length,
                const char* text = nullptr);
    E_Scan stopAt(E_PacketFault code, const tLink& link, const tNumber& number, const char* text = nullptr);
    tScanFault makeFault(E_PacketFault code, const tLink& link, const tNumber& number, const char* text) const;
    void find(E_PacketFault code, unsigned int part, std::uint64_t offset, std::uint64_t length,
              const char* text = nullptr);
    tScanFault makeFault(E_PacketFault code, unsigned int part, std::uint64_t offset, std::uint64_t length,
                         const char* text) const;
    void add(E_Trace trace, unsigned int index, std::uint64_t offset, std::uint64_t length = 0)
    {
        m_vTrace.push_back({trace, index, offset, length});
    }
    bool has(std::uint64_t wanted) const
    {
        return wanted <= m_ullEdge - m_ullPos;
    }
    /// Bytes from the place on in which a mark was looked for before more bytes came.
    std::size_t searchedSoFar() const
    {
        return m_ullSearched > m_ullPos ? static_cast<std::size_t>(m_ullSearched - m_ullPos) : 0;
    }
    const tPart& part4(unsigned int part) const
    {
        return m_tPlan.m_vParts[part];
    }

    // scan_structure.cpp
    E_Scan onArray(unsigned int part);
    E_Scan onNext(const tStep& step);
    E_Scan onElement(const tStep& step);
    E_Scan onArrayEnd(unsigned int part);
    E_Scan onWhen(const tStep& step);
    E_Scan onChoose(unsigned int index);
    E_Scan onJoint(const tStep& step);
    E_Scan onCut(unsigned int part);
    E_Scan onUncut(unsigned int part);
    E_Scan onReset(unsigned int index);
    E_Scan isThere(unsigned int part, bool& there);
    E_Scan nextIsThere(const tPart& array, unsigned int part, bool& there);
    E_Scan beginsElement(const tPart& array, unsigned int part, bool& there);
    E_Scan skipElementMark(const tPart& array, unsigned int part, bool& there);
    E_Scan choose4Heads(const tChoice& choice, unsigned int& member);
    E_Scan choose4Value(const tChoice& choice, unsigned int& member);
    E_Scan isAtEnd(unsigned int part, bool& atEnd);
    E_Scan matchHeads(const std::vector<tHead>& heads, std::uint64_t skip, unsigned int part, bool& matches);
    E_Scan lookAhead(unsigned int part, bool& any);

    // scan_callbacks.cpp
    E_Scan onAsk(unsigned int part);
    std::string_view shownRecord() const;

    // scan_measures.cpp
    E_Scan onSpan(unsigned int index);
    E_Scan onSpanEnd(unsigned int index);
    E_Scan onLink(unsigned int index);
    E_Scan onTotal(unsigned int part);
    E_Scan onAlign(unsigned int part);
    E_Scan limitTo(unsigned int span, std::uint64_t size, bool inside);
    E_Scan compareAbsent(unsigned int index);
    E_Scan compareSize(const tLink& link, const tNumber& number, const tMeasure& measure);
    void compareCheck(const tLink& link, const tNumber& number, const tMeasure& measure);
    E_Scan compareCounts(unsigned int part, std::uint64_t count);
    E_Scan checkBits(unsigned int index);
    void compareTotal(const tLink& link, tTotal& total);
    bool size4Number(const tLink& link, std::uint64_t& size) const;
    void count(unsigned int part, unsigned long long amount);
    void pushLimit(std::uint64_t end, unsigned int part, bool isOpen = false);
    bool isOfInput(std::size_t limit) const;
    void popLimit();
    void setEdge();

    // scan_frames.cpp
    E_Scan onRecord(unsigned int part);
    E_Scan onRecordEnd(unsigned int part);
    E_Scan openFrame(unsigned int part);
    E_Scan openLine(unsigned int part, std::string_view mark);
    E_Scan openPrefixed(unsigned int part);
    void keepPlace(tPlace& place, unsigned int step) const;
    void setPlace(const tPlace& place, std::uint64_t offset);
    E_Scan tryFrom(const tPlace& place);
    E_Scan decide();
    tPlace afterRecord() const;
    E_Scan endFrameAt(unsigned int part, std::uint64_t begin, std::uint64_t length);
    bool isOutside() const
    {
        return m_tPlan.m_tFrame.m_eKind != FR_none && !m_bInRecord;
    }

    const tPlan& m_tPlan;
    bool m_bKeepsPlaces;
    const char* m_pData = nullptr;
    std::uint64_t m_ullBase = 0;
    std::uint64_t m_ullShown = 0;  // end of the window
    std::uint64_t m_ullEdge = 0;   // end of what may be read: of the window, or of the enclosing part
    std::uint64_t m_ullPos = 0;
    std::uint64_t m_ullLongest = s_cullUnknown;
    std::uint64_t m_ullMissing = 0;
    std::uint64_t m_ullSearched = 0;  // a mark does not begin before here
    std::uint64_t m_ullAsked = 0;     // the length that the last callback gave
    unsigned int m_uiStep = 0;
    bool m_bOver = false;

    std::vector<tLimit> m_vLimits;  // the ends of the enclosing parts; the first is that of the input
    std::vector<tLoop> m_vLoops;    // the arrays around the place
    std::vector<char> m_vFirst;     // of the field sets with marks around it: whether no part was read yet
    std::vector<tMeasure> m_vMeasures;
    std::vector<tNumber> m_vNumbers;
    std::vector<tTotal> m_vTotals;
    CKeptValues m_tKept;
    tTraces m_vTrace;
    std::string m_strScratch;

    std::uint64_t m_ullRecord = 0;
    std::uint64_t m_ullRecordStart = 0;
    std::uint64_t m_ullRecordEnd = 0;
    bool m_bInRecord = false;
    bool m_bFrameOpen = false;
    bool m_bFrameKnown = false;  // its end is known, but it is not as it should be
    std::uint64_t m_ullFrameBegin = 0;
    std::uint64_t m_ullFrameEnd = 0;
    std::uint64_t m_ullFrameAfter = 0;
    tPlace m_tLastGood;     // after the last record that was read
    tPlace m_tRecordPlace;  // where the record at hand began
    tPlace m_tFirst;        // after a damaged record: two places to go on from
    tPlace m_tSecond;
    bool m_bUndecided = false;
    bool m_bOpenEnd = false;
    unsigned char m_ucLineEnd = 0;  // bytes of the first line end; 0 before

    tScanFault m_tFault;
    std::vector<tScanFault> m_vFindings;
};

}  // namespace murv::detail
