// layout/run/tree_sink.h - a tree from what is read.
//
// The tree has the names and IDs of the layout and no packet expressions. It may be left unfinished at a fault: what
// was read stays in it.
#pragma once

#include <vector>

#include "core/field_access.h"
#include "layout/plan/plan.h"
#include "layout/run/trace.h"
#include "layout/values/scalar.h"
#include "murv/fields.h"

namespace murv::detail
{

class CTreeSink
{
public:
    explicit CTreeSink(const tPlan& plan) : m_tPlan(plan)
    {
    }
    /// Empties the tree, which is to be filled.
    void begin(CFields& root);

    void open(unsigned int part)
    {
        push(part, DT_fields);
    }
    void close(unsigned int)
    {
        m_vOpen.pop_back();
    }
    void array(unsigned int part)
    {
        push(part, DT_array);
    }
    void element(unsigned int)
    {
    }
    void arrayEnd(unsigned int)
    {
        m_vOpen.pop_back();
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
    void leaf(unsigned int part, const tScalar& value, const tTrace&)
    {
        const tPart& leaf = m_tPlan.m_vParts[part];
        if (leaf.m_bShown)
            setLeaf(add(leaf), leaf.m_tItem, value);
    }

private:
    CFields& add(const tPart& part);
    void push(unsigned int part, E_DataType type);
    static void setLeaf(CFields& node, const tItem& item, const tScalar& value);

    const tPlan& m_tPlan;
    std::vector<CFields*> m_vOpen;  // the root first; members do not move while others are appended
    CFields* m_pRoot = nullptr;
};

}  // namespace murv::detail
