// layout/packet_reader.cpp - reading packets that are wholly in memory.
#include "layout/run/fault_words.h"
#include "layout/run/trace_reader.h"
#include "layout/run/tree_sink.h"
#include "layout/sinks.h"
#include "murv/layout.h"

namespace murv
{

using namespace detail;

IPacketVisitor::~IPacketVisitor() = default;

void IPacketVisitor::onFields(unsigned int)
{
}

void IPacketVisitor::onFieldsEnd(unsigned int)
{
}

void IPacketVisitor::onArray(unsigned int)
{
}

void IPacketVisitor::onElement(unsigned int, std::uint64_t)
{
}

void IPacketVisitor::onArrayEnd(unsigned int)
{
}

void IPacketVisitor::onRecord(unsigned int, std::uint64_t, std::uint64_t)
{
}

void IPacketVisitor::onRecordEnd(unsigned int)
{
}

void IPacketVisitor::onLeaf(unsigned int, const tPacketValue&, const tByteRange&)
{
}

struct CPacketReader::tState
{
    tState(const CLayout& layout, const tReadOptions& options)
        : m_pPlan(layout.getPlan()),
          m_uiOptions(options.m_bUnscaled ? VO_unscaled : VO_none),
          m_tScanner(*m_pPlan),
          m_tTree(*m_pPlan)
    {
    }

    template <typename tSink>
    bool read(std::string_view bytes, tSink& sink);
    bool fail(const tScanFault& fault);
    std::string_view bytesOf(const tScanFault& fault) const;

    std::shared_ptr<const tPlan> m_pPlan;
    unsigned int m_uiOptions;
    CScanner m_tScanner;
    CTreeSink m_tTree;
    std::string_view m_strvInput;
    tPacketFault m_tFault;
    std::vector<tPacketFault> m_vFindings;
};

std::string_view CPacketReader::tState::bytesOf(const tScanFault& fault) const
{
    if (fault.m_ullOffset > m_strvInput.size())
        return {};
    return m_strvInput.substr(static_cast<std::size_t>(fault.m_ullOffset), static_cast<std::size_t>(fault.m_ullLength));
}

bool CPacketReader::tState::fail(const tScanFault& fault)
{
    m_tFault = describe(*m_pPlan, fault, bytesOf(fault));
    return false;
}

/// Reads record by record: the values of each are read while it is in the cache.
template <typename tSink>
bool CPacketReader::tState::read(std::string_view bytes, tSink& sink)
{
    m_strvInput = bytes;
    if (m_tFault.m_eCode != PF_none)
        m_tFault = tPacketFault();
    m_vFindings.clear();
    m_tScanner.reset();
    m_tScanner.show(bytes.data(), 0, bytes.size(), true);
    CTraceReader<tSink> values(*m_pPlan, m_tScanner, m_uiOptions, sink);
    bool isRead = true;
    E_Scan result = SC_record;
    while (isRead && result == SC_record)
    {
        result = m_tScanner.run();
        isRead = values.read(m_tScanner.trace(), m_tScanner.findings());
        m_tScanner.trace().clear();
    }
    sortFindings(m_tScanner.findings());
    for (const tScanFault& finding : m_tScanner.findings())
        m_vFindings.push_back(describe(*m_pPlan, finding, bytesOf(finding)));
    if (!isRead)
        return fail(values.fault());
    if (result != SC_done)
        return fail(m_tScanner.fault());
    if (m_tScanner.position() == bytes.size())
        return true;
    const std::uint64_t left = bytes.size() - m_tScanner.position();
    return fail({PF_leftOver, 0, m_tScanner.position(), left, 0, 0, m_tScanner.position(), nullptr, {}});
}

CPacketReader::CPacketReader(const CLayout& layout, const tReadOptions& options)
{
    requireCompiled(layout, "murv::CPacketReader::CPacketReader");
    m_pState = std::make_unique<tState>(layout, options);
}

CPacketReader::CPacketReader(CPacketReader&&) noexcept = default;
CPacketReader& CPacketReader::operator=(CPacketReader&&) noexcept = default;
CPacketReader::~CPacketReader() = default;

bool CPacketReader::read(std::string_view bytes, CFields& tree)
{
    const CTreeFilling filling(m_pState->m_tTree, tree);
    return m_pState->read(bytes, m_pState->m_tTree);
}

bool CPacketReader::visit(std::string_view bytes, IPacketVisitor& visitor)
{
    CVisitorSink sink(visitor);
    return m_pState->read(bytes, sink);
}

bool CPacketReader::check(std::string_view bytes)
{
    CNoSink sink;
    return m_pState->read(bytes, sink);
}

tMakeOptions CPacketReader::getMakeOptions() const
{
    tMakeOptions options;
    options.m_bReturns = m_pState->m_tScanner.hasReturns();
    options.m_bOpenEnd = m_pState->m_tScanner.isOpenEnd();
    return options;
}

const tPacketFault& CPacketReader::getFault() const
{
    return m_pState->m_tFault;
}

const std::vector<tPacketFault>& CPacketReader::getFindings() const
{
    return m_pState->m_vFindings;
}

}  // namespace murv
