// layout/run/tree_sink.h - a tree from what is read.
//
// The tree has the names and IDs of the layout and no packet expressions. At a fault it holds what was read before. A
// tree that holds a packet of the same shape is not built anew: its nodes take the new values, which halves the time
// where packets are read one after the other. Without the fast path for them, setOld, it is 1.4 times as long.
#pragma once

#include <cstring>
#include <string_view>
#include <vector>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/member_cursor.h"
#include "layout/plan/plan.h"
#include "layout/run/trace.h"
#include "layout/values/scalar.h"
#include "murv/fields.h"

namespace murv::detail
{

/// Puts a text into the block of a string node that has one of that length. \return false when it has not
inline bool setSameLength(CFields& node, std::string_view text)
{
    if (!tFieldAccess::isOwned(node))
        return false;
    const std::string_view held = tFieldAccess::codes(node);
    if (held.size() != text.size() || held.data() == nullptr)
        return false;
    std::memcpy(const_cast<char*>(held.data()), text.data(), text.size());
    return true;
}

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
    /// Makes room for the leaves of a run at once, where they are the first members.
    void run(const tRun& run)
    {
        if (m_vOpen.empty())
            return;
        CFields& set = *m_vOpen.back().m_pNode;
        if (tFieldAccess::type(set) == DT_fields && tFieldAccess::members(set) == CFieldVector::empty())
            tFieldAccess::value(set).m_pFV = CFieldVector::make(static_cast<std::uint32_t>(run.m_vFields.size()));
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
        if (leaf.m_bShown && !setOld(leaf, value) && !append(leaf, value))
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

    bool setOld(const tPart& leaf, const tScalar& value);
    bool append(const tPart& leaf, const tScalar& value);
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

/// The fast path: gives the member of the tree before that stands in the place of a leaf a number, or a text of the
/// same length. \return false when there is none, or its value is of another kind
inline bool CTreeSink::setOld(const tPart& leaf, const tScalar& value)
{
    if (m_vOpen.empty() || leaf.m_strName.empty() || !leaf.m_tItem.m_vBits.empty())
        return false;
    tOpen& open = m_vOpen.back();
    if (!open.m_tOld.hasNext())
        return false;
    CFields& old = open.m_tOld.next();
    const E_DataType held = tFieldAccess::type(old);
    const bool isText = value.m_eType == DT_codelist;
    if ((held == DT_codelist) != isText || tFieldAccess::isContainer(held) || tFieldAccess::id(old) != leaf.m_uiID ||
        !tFieldAccess::isNamed(old, leaf.m_strName.data(), static_cast<unsigned int>(leaf.m_strName.size())) ||
        !tFieldAccess::isBare(old))
        return false;
    if (!isText)
        tFieldAccess::setType(old, value.m_eType).m_ullValue = value.m_ullValue;
    else if (!setSameLength(old, value.m_strvText))
        return false;
    open.m_tOld.skip();
    ++open.m_uiCount;
    return true;
}

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
