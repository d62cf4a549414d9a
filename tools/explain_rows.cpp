// tools/explain_rows.cpp - collects rows while a record is read, then adds bytes, and what lies between values.
#include "tools/explain_rows.h"

#include <algorithm>
#include <deque>

#include "tools/packet_leaf.h"
#include "tools/record_kind.h"

namespace murv::tool
{

namespace
{
/// Width of the length prefix of an item, by its expression: ACV2+2 has two bytes.
std::uint64_t prefixWidth(std::string_view expression)
{
    std::uint64_t width = 0;
    if (expression.size() < 4 || expression[2] != 'V')
        return 0;
    for (const char digit : expression.substr(3))
    {
        if (digit < '0' || digit > '9')
            break;
        width = 10 * width + static_cast<unsigned char>(digit - '0');
    }
    return width;
}

bool hasMasks(const CLayout& layout)
{
    for (unsigned int part = 0; part < layout.getPartCount(); ++part)
    {
        if (layout.getPart(part).m_bMasked)
            return true;
    }
    return false;
}

/// Collects the rows of one record, without bytes.
class CRowCollector : public IPacketVisitor
{
public:
    CRowCollector(const CLayout& layout, const CPacketJsonParts& parts) : m_tLayout(layout), m_tParts(parts)
    {
    }

    void begin()
    {
        m_vRow.clear();
        m_vPath.assign(1, "");
        m_vIndex.clear();
        m_bInRecord = false;
    }
    std::vector<tExplainRow>& rows()
    {
        return m_vRow;
    }
    unsigned int depth() const
    {
        return static_cast<unsigned int>(m_vPath.size()) - 1;
    }

    void onFields(unsigned int part) override
    {
        open(part, ER_fields);
    }
    void onFieldsEnd(unsigned int) override
    {
        m_vPath.pop_back();
    }
    void onArray(unsigned int part) override
    {
        open(part, ER_array);
        m_vIndex.push_back(0);
    }
    void onElement(unsigned int, std::uint64_t index) override
    {
        m_vIndex.back() = index;
    }
    void onArrayEnd(unsigned int) override
    {
        m_vIndex.pop_back();
        m_vPath.pop_back();
    }
    void onRecord(unsigned int part, std::uint64_t, std::uint64_t) override
    {
        m_uiRecord = part;
        m_bInRecord = true;
    }
    void onLeaf(unsigned int part, const tPacketValue& value, const tByteRange& place) override
    {
        tExplainRow row = row4Part(part, ER_leaf);
        row.m_ullOffset = place.m_ullOffset;
        row.m_ullLength = place.m_ullLength;
        appendJsonLeaf(row.m_strValue, m_tParts[part], value, place);
        m_vRow.push_back(std::move(row));
    }

private:
    tExplainRow row4Part(unsigned int part, E_ExplainRow kind)
    {
        const tLayoutPart seen = m_tLayout.getPart(part);
        tExplainRow row;
        row.m_eKind = kind;
        row.m_uiDepth = depth();
        row.m_uiPart = part;
        row.m_strExpression = seen.m_strvExpression;
        row.m_strRules = seen.m_strvRules;
        row.m_strComment = seen.m_strvComment;
        row.m_strName = part == m_uiRecord ? std::string() : label4Part(m_tLayout, part);
        row.m_strPath = m_vPath.back();
        if (part != m_uiRecord && isElement(m_tLayout, part))
        {
            row.m_strName = "[" + std::to_string(m_vIndex.back()) + "]";
            row.m_strPath += row.m_strName;
        }
        else if (part != m_uiRecord)
            row.m_strPath += "." + row.m_strName;
        return row;
    }

    void open(unsigned int part, E_ExplainRow kind)
    {
        if (part == m_uiRecord && m_bInRecord)
        {
            m_vPath.emplace_back();
            return;
        }
        tExplainRow row = row4Part(part, isElement(m_tLayout, part) ? ER_element : kind);
        m_vPath.push_back(row.m_strPath);
        m_vRow.push_back(std::move(row));
    }

    const CLayout& m_tLayout;
    const CPacketJsonParts& m_tParts;
    std::vector<tExplainRow> m_vRow;
    std::vector<std::string> m_vPath;  // of what is open, within the record
    std::vector<std::uint64_t> m_vIndex;
    unsigned int m_uiRecord = CLayout::s_cuiNoPart;
    bool m_bInRecord = false;
};
}  // namespace

struct CExplainer::tState
{
    tState(const CLayout& layout, std::string_view bytes, bool unmask)
        : m_tLayout(layout),
          m_strvInput(bytes),
          m_bHides(!unmask && hasMasks(layout)),
          m_tParts(layout, unmask),
          m_tCollector(layout, m_tParts),
          m_tReader(layout)
    {
        m_tReader.open(bytes);
    }

    void fill(tExplainRow& row) const;
    void put(tExplainRecord& record, tExplainRow row) const;
    void putBetween(tExplainRecord& record, std::uint64_t from, std::uint64_t to, const std::string& name) const;
    void putGap(tExplainRecord& record, std::uint64_t from, const tExplainRow& next) const;
    bool markFailed(tExplainRecord& record, const tPacketFault& fault) const;
    void putFailed(tExplainRecord& record, std::uint64_t from) const;
    void putUnread(tExplainRecord& record, std::uint64_t from, std::uint64_t to) const;
    void attach(tExplainRecord& record, const tPacketFault& finding) const;
    tExplainRecord make(bool isDamaged);
    void step();

    const CLayout& m_tLayout;
    std::string_view m_strvInput;
    bool m_bHides;  // what could not be read may hold masked values
    CPacketJsonParts m_tParts;
    CRowCollector m_tCollector;
    CRecordReader m_tReader;
    std::uint64_t m_ullAt = 0;  // up to here, rows have the input
    std::deque<tExplainRecord> m_vReady;
    bool m_bPending = false;  // the last of them is damaged: the record after it says where it ends
    bool m_bOver = false;
    bool m_bFaults = false;
    std::vector<tPacketFault> m_vLast;
};

/// Gives a row its bytes, masked.
void CExplainer::tState::fill(tExplainRow& row) const
{
    row.m_strBytes =
        m_strvInput.substr(static_cast<std::size_t>(row.m_ullOffset), static_cast<std::size_t>(row.m_ullLength));
    const bool isMasked = row.m_uiPart != CLayout::s_cuiNoPart && m_tParts[row.m_uiPart].m_bMasked;
    const bool mayBe =
        m_bHides && (row.m_eKind == ER_unread || (row.m_eKind == ER_failed && row.m_strExpression.empty()));
    if (!isMasked && !mayBe)
        return;
    const std::size_t shown = isMasked ? m_tParts[row.m_uiPart].m_uiShown : 0;
    const std::size_t hidden = row.m_strBytes.size() - std::min(shown, row.m_strBytes.size());
    std::fill(row.m_strBytes.begin(), row.m_strBytes.begin() + static_cast<std::ptrdiff_t>(hidden), '*');
    row.m_vHidden.assign(row.m_strBytes.size(), false);
    std::fill(row.m_vHidden.begin(), row.m_vHidden.begin() + static_cast<std::ptrdiff_t>(hidden), true);
}

void CExplainer::tState::put(tExplainRecord& record, tExplainRow row) const
{
    fill(row);
    record.m_vRow.push_back(std::move(row));
}

void CExplainer::tState::putBetween(tExplainRecord& record, std::uint64_t from, std::uint64_t to,
                                    const std::string& name) const
{
    if (from >= to)
        return;
    tExplainRow row;
    row.m_eKind = ER_between;
    row.m_ullOffset = from;
    row.m_ullLength = to - from;
    row.m_strName = name;
    row.m_uiDepth = record.m_vRow.empty() ? 1 : record.m_vRow.back().m_uiDepth;
    put(record, std::move(row));
}

/// What lies before a value: the mark after the one before it, or fill, and the length of the value itself.
void CExplainer::tState::putGap(tExplainRecord& record, std::uint64_t from, const tExplainRow& next) const
{
    const std::uint64_t to = next.m_ullOffset;
    const std::uint64_t prefix = std::min(prefixWidth(next.m_strExpression), to - std::min(from, to));
    const bool isFill = !record.m_vRow.empty() && record.m_vRow.back().m_strRules.find("align") != std::string::npos;
    putBetween(record, from, to - prefix, isFill ? "fill" : "mark");
    putBetween(record, to - prefix, to, "length");
    if (from < to)
        record.m_vRow.back().m_uiDepth = next.m_uiDepth;
}

/// Marks the row of a number that was read before it proved wrong. \return false when no row has it
bool CExplainer::tState::markFailed(tExplainRecord& record, const tPacketFault& fault) const
{
    const auto row = std::find_if(record.m_vRow.begin(), record.m_vRow.end(), [&fault](const tExplainRow& other) {
        return other.m_eKind == ER_leaf && other.m_ullOffset == fault.m_ullOffset && other.m_strPath == fault.m_strPath;
    });
    if (row == record.m_vRow.end())
        return false;
    row->m_eKind = ER_failed;
    row->m_tFault = fault;
    return true;
}

/// The item at which reading stopped.
void CExplainer::tState::putFailed(tExplainRecord& record, std::uint64_t from) const
{
    const tPacketFault& fault = m_tReader.getFault();
    if (fault.m_ullOffset < from && markFailed(record, fault))
        return;
    const std::uint64_t begin = std::clamp<std::uint64_t>(fault.m_ullOffset, from, m_strvInput.size());
    putBetween(record, from, begin, "mark");
    tExplainRow row;
    row.m_eKind = ER_failed;
    row.m_uiDepth = std::max(1U, m_tCollector.depth());
    row.m_ullOffset = begin;
    row.m_ullLength = std::min<std::uint64_t>(fault.m_ullLength, m_strvInput.size() - begin);
    row.m_strPath = fault.m_strPath;
    const std::string& base = record.m_strPath;
    const bool isInside = !base.empty() && row.m_strPath.compare(0, base.size() + 1, base + ".") == 0;
    row.m_strName = isInside ? row.m_strPath.substr(base.size() + 1) : row.m_strPath;
    row.m_strExpression = fault.m_strExpression;
    row.m_strRules = fault.m_strRules;
    row.m_uiPart = m_tLayout.findPart(pathInLayout(fault.m_strPath));
    row.m_tFault = fault;
    put(record, std::move(row));
}

void CExplainer::tState::putUnread(tExplainRecord& record, std::uint64_t from, std::uint64_t to) const
{
    if (from >= to)
        return;
    tExplainRow row;
    row.m_eKind = ER_unread;
    row.m_uiDepth = 1;
    row.m_ullOffset = from;
    row.m_ullLength = to - from;
    row.m_strName = "not read";
    put(record, std::move(row));
}

/// Puts a finding to the value that it is about.
void CExplainer::tState::attach(tExplainRecord& record, const tPacketFault& finding) const
{
    for (tExplainRow& row : record.m_vRow)
    {
        if (row.m_eKind != ER_leaf || row.m_ullOffset != finding.m_ullOffset || row.m_strPath != finding.m_strPath ||
            row.m_tFault)
            continue;
        row.m_tFault = finding;
        return;
    }
    record.m_vFinding.push_back(finding);
}

tExplainRecord CExplainer::tState::make(bool isDamaged)
{
    tExplainRecord record;
    const tRecordInfo& info = m_tReader.getRecord();
    const bool hasBegun = info.m_uiPart != CLayout::s_cuiNoPart;
    record.m_bDamaged = isDamaged;
    record.m_ullNumber = hasBegun ? info.m_ullNumber : m_tReader.getFault().m_ullRecord;
    record.m_ullOffset = hasBegun ? info.m_ullOffset : m_ullAt;
    record.m_ullLength = info.m_ullLength;
    record.m_uiPart = info.m_uiPart;
    if (hasBegun)
    {
        record.m_strKind = recordKind(m_tLayout, info.m_uiPart);
        record.m_strPath = m_tReader.getPath();
        record.m_strComment = m_tLayout.getPart(info.m_uiPart).m_strvComment;
        putBetween(record, m_ullAt, info.m_ullOffset, "length of the record");
    }
    std::uint64_t at = record.m_ullOffset;
    for (tExplainRow& row : m_tCollector.rows())
    {
        if (row.m_eKind == ER_leaf)
            putGap(record, at, row);
        else
            row.m_ullOffset = at;
        const std::string& inside = row.m_strPath;
        row.m_strPath = record.m_strPath.empty() && !inside.empty() && inside[0] == '.' ? inside.substr(1)
                                                                                        : record.m_strPath + inside;
        at = row.m_ullOffset + row.m_ullLength;
        put(record, std::move(row));
    }
    for (const tPacketFault& finding : m_tReader.getFindings())
        attach(record, finding);
    if (isDamaged)
    {
        putFailed(record, at);
        m_ullAt = record.m_vRow.back().m_ullOffset + record.m_vRow.back().m_ullLength;
        return record;
    }
    putBetween(record, at, info.m_ullOffset + info.m_ullLength, "mark");
    m_ullAt = m_tReader.getCounts().m_ullBytes;
    putBetween(record, info.m_ullOffset + info.m_ullLength, m_ullAt, "end of the record");
    return record;
}

CExplainer::CExplainer(const CLayout& layout, std::string_view bytes, bool unmask)
    : m_pState(std::make_unique<tState>(layout, bytes, unmask))
{
}

CExplainer::~CExplainer() = default;

/// Reads on: one more record is ready, or the input is over. Where a damaged one ends is known only then.
void CExplainer::tState::step()
{
    m_tCollector.begin();
    const E_RecordResult result = m_tReader.next(m_tCollector);
    const bool isRecord = result == RR_record || result == RR_fault;
    if (m_bPending)
    {
        const bool hasBegun = isRecord && m_tReader.getRecord().m_uiPart != CLayout::s_cuiNoPart;
        const std::uint64_t begin = hasBegun             ? m_tReader.getRecord().m_ullOffset
                                    : result == RR_fault ? m_tReader.getFault().m_ullOffset
                                                         : m_strvInput.size();
        putUnread(m_vReady.back(), m_ullAt, begin);
        m_ullAt = std::max(m_ullAt, begin);
    }
    m_bPending = result == RR_fault;
    m_bOver = !isRecord;
    if (!isRecord)
    {
        m_vLast = m_tReader.getFindings();
        return;
    }
    m_vReady.push_back(make(result == RR_fault));
    if (result == RR_record)
        return;
    m_bFaults = true;
    m_bOver = !m_tReader.skip();
    if (m_bOver)
        putUnread(m_vReady.back(), m_ullAt, m_strvInput.size());
}

bool CExplainer::next(tExplainRecord& record)
{
    tState& state = *m_pState;
    while (!state.m_bOver && state.m_vReady.size() <= (state.m_bPending ? 1U : 0U))
        state.step();
    if (state.m_vReady.empty())
        return false;
    record = std::move(state.m_vReady.front());
    state.m_vReady.pop_front();
    return true;
}

const std::vector<tPacketFault>& CExplainer::lastFindings() const
{
    return m_pState->m_vLast;
}

bool CExplainer::hasFaults() const
{
    return m_pState->m_bFaults;
}

}  // namespace murv::tool
