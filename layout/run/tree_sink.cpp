// layout/run/tree_sink.cpp - a tree from what is read.
#include "layout/run/tree_sink.h"

#include "core/heap_text.h"
#include "layout/run/kept_values.h"

namespace murv::detail
{

namespace
{

/// Sets a value. A text of the same length goes into the block that is there.
void setScalar(CFields& node, const tScalar& value)
{
    if (value.m_eType == DT_codelist)
    {
        const std::string_view text = value.m_strvText;
        if (tFieldAccess::type(node) == DT_codelist && setSameLength(node, text))
            return;
        tSlot fresh{DT_codelist, true, {}};
        fresh.m_uValue.m_pData = duplicatePrefixedStream(text.data(), static_cast<unsigned int>(text.size()));
        tFieldAccess::replaceValue(node, fresh);
        return;
    }
    tSlot fresh{value.m_eType, false, {}};
    fresh.m_uValue.m_ullValue = value.m_ullValue;
    tFieldAccess::replaceValue(node, fresh);
}

/// Removes all members from one on.
void cutMembers(CFields& container, unsigned int from)
{
    while (container.getChildCount() > from)
        container.removeChildAt(container.getChildCount() - 1);
}

}  // namespace

void CTreeSink::begin(CFields& root)
{
    m_pRoot = &root;
    m_bRootIsSet = false;
    m_vOpen.clear();
    if (!tFieldAccess::isBare(root))
        root.removeAll(DT_null);
}

void CTreeSink::end()
{
    while (!m_vOpen.empty())
        leave();
    if (!m_bRootIsSet)
        m_pRoot->removeAll(DT_null);
}

/// The member of the tree before that stands in the place of the next one, when it is of use; else null.
CFields* CTreeSink::takeOld(tOpen& open, std::string_view name, unsigned int id)
{
    if (!open.m_tOld.hasNext())
        return nullptr;
    CFields& old = open.m_tOld.next();
    if (tFieldAccess::id(old) != id || !tFieldAccess::isBare(old) ||
        !tFieldAccess::isNamed(old, name.data(), static_cast<unsigned int>(name.size())))
        return nullptr;
    open.m_tOld.skip();
    return &old;
}

/// The fast path for a tree that is built: appends a named leaf to a field set that has nothing of the tree before.
/// Without it, reading takes 1.1 times as long.
/// \return false where something else is to be done
bool CTreeSink::append(const tPart& leaf, const tScalar& value)
{
    if (m_vOpen.empty() || leaf.m_strName.empty() || !leaf.m_tItem.m_vBits.empty())
        return false;
    tOpen& open = m_vOpen.back();
    CFields& set = *open.m_pNode;
    if (tFieldAccess::type(set) != DT_fields || open.m_tOld.hasNext())
        return false;
    CFields& node = tFieldAccess::appendMember(set, leaf.m_strName.data(),
                                               static_cast<unsigned int>(leaf.m_strName.size()), leaf.m_uiID);
    ++open.m_uiCount;
    setScalar(node, value);
    return true;
}

CFields& CTreeSink::add(const tPart& part)
{
    m_bRootIsSet = true;
    if (m_vOpen.empty())
        return *m_pRoot;
    if (tFieldAccess::type(*m_vOpen.back().m_pNode) == DT_array)
        return addNamed("", 0);
    return addNamed(part.m_strName, part.m_uiID);
}

CFields& CTreeSink::addNamed(std::string_view name, unsigned int id)
{
    tOpen& open = m_vOpen.back();
    CFields* const old = takeOld(open, name, id);
    ++open.m_uiCount;
    if (old != nullptr)
        return *old;
    // Another shape than before: what was there after the last member goes.
    CFields& parent = *open.m_pNode;
    if (!open.m_tOld.atEnd())
        cutMembers(parent, open.m_uiCount - 1);
    open.m_tOld.stop();
    if (tFieldAccess::type(parent) == DT_array)
        return tFieldAccess::append(parent);
    return tFieldAccess::appendMember(parent, name.data(), static_cast<unsigned int>(name.size()), id);
}

void CTreeSink::push(unsigned int part, E_DataType type)
{
    CFields& node = add(m_tPlan.m_vParts[part]);
    // A container without a vector is one that removeAll() left.
    if (tFieldAccess::type(node) != type || tFieldAccess::members(node) == nullptr)
        node.setValue(type);
    m_vOpen.push_back({&node, CMemberCursor(tFieldAccess::members(node)), 0});
}

/// Ends a container: members of the tree before that have no successor go.
void CTreeSink::leave()
{
    tOpen& open = m_vOpen.back();
    if (!open.m_tOld.atEnd())
        cutMembers(*open.m_pNode, open.m_uiCount);
    m_vOpen.pop_back();
}

void CTreeSink::setLeaf(const tPart& leaf, const tScalar& value)
{
    CFields& node = add(leaf);
    if (leaf.m_tItem.m_vBits.empty() || value.m_eType == DT_null)
    {
        setScalar(node, value);
        return;
    }
    if (tFieldAccess::type(node) != DT_fields || tFieldAccess::members(node) == nullptr)
        node.setValue(DT_fields);
    m_vOpen.push_back({&node, CMemberCursor(tFieldAccess::members(node)), 0});
    for (const tBitField& field : leaf.m_tItem.m_vBits)
        setScalar(addNamed(field.m_strName, 0), makeScalar(false, bitsOf(field, value.m_ullValue)));
    leave();
}

}  // namespace murv::detail
