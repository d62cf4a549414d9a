// layout/run/tree_sink.h - a tree from what is read.
//
// The tree has the names and IDs of the layout and no packet expressions. At a fault it holds what was read before. A
// tree that holds a packet of the same shape is not built anew: its nodes take the new values, which saves most of the
// time where packets are read one after the other.
#pragma once

#include <vector>

#include "core/field_access.h"
#include "core/member_cursor.h"
#include "layout/plan/plan.h"
#include "layout/run/trace.h"
#include "layout/values/scalar.h"
#include "murv/fields.h"

namespace murv::detail
{

class CTreeSink
{
public:
    static constexpr bool s_cbWantsValues = true;

    explicit CTreeSink(const tPlan& plan) : m_tPlan(plan)
    {
    }
    /// Takes the tree that is to be filled; what it held is gone when end() returns.
    void begin(CFields& root);
    /// Removes what is left of the tree before in containers that did not end, as after a fault.
    void end();

    void open(unsigned int part)
    {
        push(part, DT_fields);
    }
    void close(unsigned int)
    {
        leave();
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
        leave();
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
            setLeaf(leaf, value);
    }

private:
    /// A container that is being filled. Members do not move while others are appended.
    struct tOpen
    {
        CFields* m_pNode;
        CMemberCursor m_tOld;        // members of the tree before that have not been taken
        unsigned int m_uiCount = 0;  // members that are there
    };

    CFields& add(const tPart& part);
    CFields& addNamed(std::string_view name, unsigned int id);
    static CFields* takeOld(tOpen& open, std::string_view name, unsigned int id);
    void push(unsigned int part, E_DataType type);
    void leave();
    void setLeaf(const tPart& leaf, const tScalar& value);

    const tPlan& m_tPlan;
    std::vector<tOpen> m_vOpen;  // the root first
    CFields* m_pRoot = nullptr;
    bool m_bRootIsSet = false;
};

/// Fills a tree from here to the end of the block, however that is left.
class CTreeFilling
{
public:
    CTreeFilling(CTreeSink& sink, CFields& root) : m_tSink(sink)
    {
        sink.begin(root);
    }
    CTreeFilling(const CTreeFilling&) = delete;
    CTreeFilling& operator=(const CTreeFilling&) = delete;
    ~CTreeFilling()
    {
        m_tSink.end();
    }

private:
    CTreeSink& m_tSink;
};

}  // namespace murv::detail
