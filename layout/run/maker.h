// layout/run/maker.h - packets from trees.
//
// The maker runs the steps of a plan as the scanner does, but follows the data. Numbers about other parts are left open
// when they come, and filled in when what they are about is complete. A number whose own width varies moves all that
// follows; then everything is made again with the widths that were found, until nothing moves any more: as often as
// such numbers are nested.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/member_cursor.h"
#include "layout/plan/plan.h"
#include "layout/run/kept_values.h"
#include "layout/run/scanner.h"
#include "murv/fields.h"
#include "murv/layout.h"

namespace murv::detail
{

class CMaker
{
public:
    explicit CMaker(const tPlan& plan);

    /// Replaces `out` by the packet. \return false at a fault, which fault() tells; `out` is of no use then
    bool make(const CFields& tree, const tMakeOptions& options, std::string& out);

    /// Appends one record, whose numbers about other records the data must have.
    bool makeRecord(unsigned int part, const CFields& record, const tMakeOptions& options, std::string& out);

    /// Whether reading has found the record that was made last, from that entry of its trace on. Else fault() tells the
    /// difference.
    /// \param base  where the record lies in what was read
    bool isReadSo(const CScanner& scanner, std::size_t from, std::uint64_t base);

    const tScanFault& fault() const
    {
        return m_tFault;
    }
    const std::vector<tScanFault>& findings() const
    {
        return m_vFindings;
    }
    /// The bytes that the fault is about, as far as there are any.
    std::string_view faultBytes() const;
    /// The name of a member that the layout does not know.
    const std::string& unknownName() const
    {
        return m_strUnknown;
    }
    /// A sentence about it, with the nearest name that the layout knows.
    std::string unknownWords() const;

private:
    static constexpr const char* s_cpDiffers = "The data has another value than what is filled in";

    /// A field set or array of the data that is being made.
    struct tCursor
    {
        const CFields* m_pNode = nullptr;  // null: the data lacks it
        CMemberCursor m_tNext;             // where the next member is looked for first
        unsigned int m_uiMatched = 0;      // members that were found
        unsigned int m_uiPart = 0;
        unsigned int m_uiLast = 0;     // of parts between marks: one after the last that is made
        std::uint64_t m_ullCount = 0;  // of an array: elements begun
        bool m_bFirst = true;          // no part between marks was made yet
    };
    /// A number that is filled in.
    struct tHole
    {
        unsigned int m_uiPart = 0;
        std::uint64_t m_ullOffset = 0;  // of its item
        std::uint64_t m_ullLength = 0;
        tScalar m_tValue;
        std::string m_strText;             // of a bitmap, or of a value that chooses
        const CFields* m_pData = nullptr;  // what the data says, or null
        std::uint64_t m_ullRecord = 0;     // as in a fault
        std::uint64_t m_ullRecordOffset = 0;
        std::size_t m_nElements = 0;  // where its elements begin among those of all holes
        std::size_t m_nArrays = 0;    // how many they are
    };
    struct tMeasure
    {
        bool m_bEnded = false;
        std::uint64_t m_ullBegin = 0;
        std::uint64_t m_ullEnd = 0;
    };
    /// A total over one instance of its base.
    struct tTotal
    {
        std::uint64_t m_ullSum = 0;
        std::vector<unsigned int> m_vParts;    // holes that it counts
        std::vector<unsigned int> m_vNumbers;  // holes that take it
    };
    struct tOpenTotal
    {
        unsigned int m_uiLink;
        tTotal m_tTotal;
    };
    struct tOpenCheck
    {
        unsigned int m_uiLink;
        unsigned int m_uiHole;
        std::uint64_t m_ullBegin;
        std::uint64_t m_ullEnd;
    };

    // maker.cpp
    void begin();
    void beginNumbers();
    bool makePasses(const CFields& tree, unsigned int from, E_Step last);
    bool makeOnce(const CFields& tree, unsigned int from, E_Step last);
    void dropLastMark();
    bool isFilledIn(unsigned int part) const;
    E_Scan step(const tStep& step);
    E_Scan makeLeaf(unsigned int part);
    E_Scan makeLiteral(unsigned int part, const CFields* node);
    E_Scan makeValue4Leaf(unsigned int part, const CFields* node);
    E_PacketFault appendValue(const tPart& leaf, const tScalar& value, bool isOwn, std::size_t& length);
    E_Scan putValue(unsigned int part, const tScalar& value, bool isOwn);
    bool holdsMark(std::string_view bytes) const;
    E_Scan keep(unsigned int part, std::string_view bytes);
    E_Scan putTested(unsigned int part, const tScalar& value, bool isOwn);
    bool isValid(unsigned int part, const tScalar& value, unsigned int& bits) const;
    E_Scan stop(E_PacketFault code, unsigned int part, const char* text = nullptr, std::uint64_t length = 0,
                unsigned int bits = s_cuiNone);
    E_Scan stopAtValue(E_PacketFault code, unsigned int part, const tScalar& value);
    const CFields* find(unsigned int part);
    const CFields* findOutOfOrder(tCursor& cursor, const tPart& wanted) const;
    const tPart& part4(unsigned int part) const
    {
        return m_tPlan.m_vParts[part];
    }
    tElements elements() const;
    void addElements(tElements& elements) const;
    void add(E_Trace trace, unsigned int index, std::uint64_t offset, std::uint64_t length = 0)
    {
        if (!m_tPlan.m_bSelfEvident)
            m_vTrace.push_back({trace, index, offset, length});
    }

    // make_rows.cpp
    E_Scan onRun(unsigned int index);
    std::ptrdiff_t makeRow(const tRun::tField& first);
    E_Scan makePlainLeaf(unsigned int part);
    E_Scan stopAtMark(const tRun& run, std::size_t begin);

    // make_data.cpp
    E_Scan takeScalar(unsigned int part, const CFields& node, tScalar& value);
    E_Scan takeBits(unsigned int part, const CFields& node, tScalar& value);
    E_Scan refuseBits(unsigned int part, const CFields& node);
    E_Scan agree();
    bool agrees(const tLink& link, unsigned int hole);

    // make_callbacks.cpp
    E_Scan makeAsked(unsigned int part, const CFields* node);
    E_Scan agreeWithCallback(unsigned int part, const tScalar& value, std::size_t begin);
    const std::string& shownRecord();
    E_Scan fillForCallbacks(unsigned int hole);
    void showFilled(std::uint64_t offset, std::string_view item);

    // make_verify.cpp
    bool verify();

    // make_structure.cpp
    E_Scan onOpen(const tStep& step);
    E_Scan onClose(unsigned int part);
    E_Scan onArray(unsigned int part);
    E_Scan onNext(const tStep& step);
    E_Scan onElement(const tStep& step);
    E_Scan onArrayEnd(unsigned int part);
    E_Scan onWhen(const tStep& step);
    E_Scan onChoose(unsigned int index);
    E_Scan onJoint(const tStep& step);
    E_Scan onRecord(unsigned int part);
    E_Scan onRecordEnd(unsigned int part);
    E_Scan onAlign(unsigned int part);
    E_Scan refuseMembers(const tCursor& cursor);
    E_Scan agreeWithChoice(const tPart& set, unsigned int member);
    bool isMeant(const tTest& test) const;
    bool hasBitOf(unsigned int link) const;
    unsigned int findMember(const tPart& set, const CFields& member) const;

    // make_measures.cpp
    E_Scan beginHole(unsigned int part, tHole& hole);
    E_Scan makeHole(unsigned int part);
    E_Scan onSpanEnd(unsigned int index);
    E_Scan onLink(unsigned int index);
    E_Scan onTotal(unsigned int part);
    E_Scan onReset(unsigned int index);
    E_Scan setSize(const tLink& link, unsigned int hole, std::uint64_t size);
    E_Scan setNumber(const tLink& link, unsigned int hole, std::uint64_t value);
    E_Scan setBit(unsigned int link, unsigned int bit);
    void count(unsigned int part, std::uint64_t amount);
    E_Scan fillTotals();
    E_Scan fillHoles();
    E_Scan fillChecks();
    E_Scan fillHole(unsigned int hole);
    E_Scan testHoles();
    tScalar value4Hole(unsigned int hole, std::string& room) const;
    E_Scan stopAtHole(E_PacketFault code, unsigned int hole, const char* text = nullptr, unsigned int bits = s_cuiNone);

    const tPlan& m_tPlan;
    tMakeOptions m_tOptions;
    std::string* m_pOut = nullptr;
    const CFields* m_pRoot = nullptr;
    unsigned int m_uiStep = 0;
    std::vector<tCursor> m_vCursors;
    std::vector<const std::string*> m_vMarks;  // at which reading would cut an item
    CKeptValues m_tKept;
    std::vector<tHole> m_vHoles;
    std::vector<tHole> m_vGuesses;           // of the pass before
    tElements m_vHoleElements;               // of the arrays around each hole, one after the other
    std::vector<unsigned int> m_vHole4Link;  // that the link fills in next, or none
    std::vector<unsigned int> m_vHole4Part;  // of the last instance of a part
    std::vector<tMeasure> m_vMeasures;
    std::vector<tTotal> m_vTotals;  // by link, of the instance at hand
    std::vector<tOpenTotal> m_vOpenTotals;
    std::vector<tOpenCheck> m_vOpenChecks;
    tTraces m_vTrace;
    CScanner m_tScanner;
    std::string m_strScratch;
    std::string m_strValue;
    std::string m_strShown;  // the record as far as callbacks have seen it
    std::string m_strUnknown;
    std::uint64_t m_ullRecord = 0;
    std::uint64_t m_ullRecordStart = 0;
    std::uint64_t m_ullFrameStart = 0;
    unsigned int m_uiFound = s_cuiNone;  // the part that was looked for last
    const CFields* m_pFound = nullptr;
    unsigned int m_uiAlone = s_cuiNone;  // the record that is made alone, or none
    bool m_bInRecord = false;
    bool m_bMoved = false;  // a number has another width than was guessed
    tScanFault m_tFault;
    std::vector<tScanFault> m_vFindings;
};

}  // namespace murv::detail
