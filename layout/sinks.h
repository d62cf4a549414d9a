// layout/sinks.h - sinks of the trace reader besides the tree.
#pragma once

#include <vector>

#include "core/throw.h"
#include "layout/run/trace.h"
#include "layout/values/scalar.h"
#include "murv/layout.h"

namespace murv::detail
{

/// Throws CLogicError for a layout that is not compiled.
inline void requireCompiled(const CLayout& layout, tPlace place)
{
    if (!layout.isCompiled())
        throwAt(place, "The layout is not compiled");
}

/// Takes nothing: values are only checked.
struct CNoSink
{
    static constexpr bool s_cbWantsValues = false;

    void open(unsigned int)
    {
    }
    void close(unsigned int)
    {
    }
    void array(unsigned int)
    {
    }
    void element(unsigned int)
    {
    }
    void arrayEnd(unsigned int)
    {
    }
    void run(const tRun&)
    {
    }
    void record(unsigned int, std::uint64_t, std::uint64_t)
    {
    }
    void recordEnd(unsigned int)
    {
    }
    void skip(const tTrace&)
    {
    }
    void leaf(unsigned int, const tScalar&, const tTrace&)
    {
    }
};

/// Hands everything to a visitor.
class CVisitorSink
{
public:
    static constexpr bool s_cbWantsValues = true;

    explicit CVisitorSink(IPacketVisitor& visitor) : m_tVisitor(visitor)
    {
    }
    void open(unsigned int part)
    {
        m_tVisitor.onFields(part);
    }
    void close(unsigned int part)
    {
        m_tVisitor.onFieldsEnd(part);
    }
    void array(unsigned int part)
    {
        m_vElements.push_back(0);
        m_tVisitor.onArray(part);
    }
    void element(unsigned int part)
    {
        m_tVisitor.onElement(part, m_vElements.back()++);
    }
    void arrayEnd(unsigned int part)
    {
        m_vElements.pop_back();
        m_tVisitor.onArrayEnd(part);
    }
    void run(const tRun&)
    {
    }
    void record(unsigned int part, std::uint64_t number, std::uint64_t offset)
    {
        m_tVisitor.onRecord(part, number, offset);
    }
    void recordEnd(unsigned int part)
    {
        m_tVisitor.onRecordEnd(part);
    }
    void skip(const tTrace&)
    {
    }
    void leaf(unsigned int part, const tScalar& value, const tTrace& trace)
    {
        m_tVisitor.onLeaf(part, value, {trace.m_ullOffset, trace.m_ullLength});
    }

private:
    IPacketVisitor& m_tVisitor;
    std::vector<std::uint64_t> m_vElements;
};

}  // namespace murv::detail
