// layout/run/trace_reader.h - values from a trace, for whoever wants them.
//
// Reading a packet is two passes over each record while it is in the cache: the scanner finds the parts, and this one
// reads every value, strictly, and hands it to a sink: a tree, a row of JSON, a table, or nothing but the check.
#pragma once

#include <string>

#include "layout/run/scanner.h"
#include "layout/values/quick_values.h"
#include "layout/values/value_codec.h"

namespace murv::detail
{

/// \tparam tSink  has open(part), close(part), array(part), element(part), arrayEnd(part),
///                record(part, number, offset), recordEnd(part), skip(trace), run(run) before the leaves of a run,
///                leaf(part, value, trace) with the place of the value, and s_cbWantsValues: false when only the check
///                counts
template <typename tSink>
class CTraceReader
{
public:
    CTraceReader(const tPlan& plan, const CScanner& scanner, unsigned int options, tSink& sink)
        : m_tPlan(plan), m_tScanner(scanner), m_uiOptions(options), m_tSink(sink)
    {
    }

    /// Reads the entries of a trace. \return false at a fault, which fault() tells
    bool read(const tTraces& traces, std::vector<tScanFault>& findings)
    {
        for (const tTrace& trace : traces)
        {
            if (!readOne(trace, findings))
                return false;
        }
        return true;
    }
    const tScanFault& fault() const
    {
        return m_tFault;
    }
    /// Reads the entries of one record only, which begin with its TR_record.
    bool readRecord(const tTraces& traces, std::size_t from, const tElements& elements, std::uint64_t number,
                    std::vector<tScanFault>& findings)
    {
        m_pAround = &elements;
        m_vElements.clear();
        m_ullRecord = number - 1;
        m_bInRecord = false;
        for (std::size_t i = from; i < traces.size(); ++i)
        {
            if (!readOne(traces[i], findings))
                return false;
            if (traces[i].m_eTrace == TR_recordEnd)
                break;
        }
        return true;
    }

private:
    bool readOne(const tTrace& trace, std::vector<tScanFault>& findings)
    {
        switch (trace.m_eTrace)
        {
        case TR_run: return readRun(trace, findings);
        case TR_item: return readLeaf(trace, findings);
        case TR_open: m_tSink.open(trace.m_uiIndex); return true;
        case TR_close: m_tSink.close(trace.m_uiIndex); return true;
        case TR_array:
            m_vElements.push_back(~std::uint64_t{0});
            m_tSink.array(trace.m_uiIndex);
            return true;
        case TR_element:
            ++m_vElements.back();
            m_tSink.element(trace.m_uiIndex);
            return true;
        case TR_arrayEnd:
            m_vElements.pop_back();
            m_tSink.arrayEnd(trace.m_uiIndex);
            return true;
        case TR_record:
            ++m_ullRecord;
            m_bInRecord = true;
            m_ullRecordStart = trace.m_ullOffset;
            m_tSink.record(trace.m_uiIndex, m_ullRecord, trace.m_ullOffset);
            return true;
        case TR_recordEnd:
            m_bInRecord = false;
            m_tSink.recordEnd(trace.m_uiIndex);
            return true;
        case TR_skip: m_tSink.skip(trace); return true;
        }
        return true;
    }

    bool readRun(const tTrace& trace, std::vector<tScanFault>& findings)
    {
        const tRun& run = m_tPlan.m_vRuns[trace.m_uiIndex];
        m_tSink.run(run);
        if constexpr (tSink::s_cbWantsValues)
        {
            for (const tRun::tField& field : run.m_vFields)
            {
                if (!readField(field, field.m_eRead, trace, findings))
                    return false;
            }
        }
        else
        {
            for (const unsigned int index : run.m_vChecked)
            {
                if (!readField(run.m_vFields[index], run.m_vFields[index].m_eCheck, trace, findings))
                    return false;
            }
        }
        return true;
    }

    /// \param run  may end before the field, after a fault
    bool readField(const tRun::tField& field, E_QuickForm quick, const tTrace& run, std::vector<tScanFault>& findings)
    {
        if (field.m_uiOffset + field.m_uiLength > run.m_ullLength)
            return true;
        const tTrace item{TR_item, field.m_uiPart, run.m_ullOffset + field.m_uiOffset, field.m_uiLength};
        tScalar value;
        if (!readQuick(quick, m_tScanner.at(item.m_ullOffset), field.m_uiLength, value))
            return readLeaf(item, findings);
        m_tSink.leaf(field.m_uiPart, value, item);
        return true;
    }

    bool readLeaf(const tTrace& trace, std::vector<tScanFault>& findings)
    {
        const tPart& part = m_tPlan.m_vParts[trace.m_uiIndex];
        const std::string_view bytes = m_tScanner.bytes(trace.m_ullOffset, trace.m_ullLength);
        const bool isTested = part.m_tItem.m_bTested;
        const unsigned int options = tSink::s_cbWantsValues || isTested ? m_uiOptions : VO_unscaled;
        tScalar value;
        const E_PacketFault fault = readValue(part.m_tItem, bytes, options, value, m_strScratch);
        if (fault != PF_none && !report(fault, trace, findings))
            return false;
        if (isTested)
            test(part.m_tItem, value, trace, findings);
        m_tSink.leaf(trace.m_uiIndex, value, trace);
        return true;
    }

    /// Reports values that are not valid.
    void test(const tItem& item, const tScalar& value, const tTrace& trace, std::vector<tScanFault>& findings)
    {
        if (!isValidValue(item, value))
            report(PF_invalid, trace, findings);
        for (std::size_t i = 0; (i = findInvalidBits(item, value.m_ullValue, i)) < item.m_vBits.size(); ++i)
        {
            report(PF_invalid, trace, findings);
            findings.back().m_uiBits = static_cast<unsigned int>(i);
        }
    }

    /// \return whether it is a finding only
    bool report(E_PacketFault code, const tTrace& trace, std::vector<tScanFault>& findings)
    {
        m_tFault = {code,
                    trace.m_uiIndex,
                    trace.m_ullOffset,
                    trace.m_ullLength,
                    0,
                    m_bInRecord ? m_ullRecord : 0,
                    m_bInRecord ? m_ullRecordStart : trace.m_ullOffset,
                    nullptr,
                    m_vElements};
        if (m_pAround != nullptr)
            m_tFault.m_vElements.insert(m_tFault.m_vElements.begin(), m_pAround->begin(), m_pAround->end());
        if (isFinding(code))
            findings.push_back(m_tFault);
        return isFinding(code);
    }

    const tPlan& m_tPlan;
    const CScanner& m_tScanner;
    unsigned int m_uiOptions;
    tSink& m_tSink;
    std::string m_strScratch;
    const tElements* m_pAround = nullptr;  // of the arrays around the record that is read alone
    tElements m_vElements;
    std::uint64_t m_ullRecord = 0;
    std::uint64_t m_ullRecordStart = 0;
    bool m_bInRecord = false;
    tScanFault m_tFault;
};

}  // namespace murv::detail
