// io/open_container.h - a container that is being read.
//
// Containers are opened inside each other; what is open is a chain that unwinds by itself, whatever ends the load.
#pragma once

#include "io/load.h"
#include "io/member_builder.h"

namespace murv::detail
{

/// Makes a container the one that members are added to, for as long as it is being read.
class COpenContainer
{
public:
    /// \param node  a container without members that has a vector: the load's target, or the current member
    COpenContainer(tLoad& load, CFields& node)
        : m_pCurrent(load.m_pBuilder),
          m_pOuter(load.m_pBuilder),
          m_tBuilder(load.m_tNodeStack, node, load.m_pLastValueNode,
                     load.m_pIdIndex == nullptr ? 0 : load.m_pIdIndex->now())
    {
        if (load.m_eMember != tLoad::MS_added)
            m_tBuilder.setPlace(m_pOuter, load.m_tMemberPlace);
        else if (m_pOuter != nullptr)
            m_tBuilder.setPlace(m_pOuter, {s_cuiNoPlace, m_pOuter->count() - 1});
        m_pCurrent = &m_tBuilder;
    }
    COpenContainer(const COpenContainer&) = delete;
    COpenContainer& operator=(const COpenContainer&) = delete;
    ~COpenContainer()
    {
        m_pCurrent = m_pOuter;
    }
    /// The container's members.
    CMemberBuilder& members()
    {
        return m_tBuilder;
    }
    /// To be called when all members are there.
    void close()
    {
        m_tBuilder.close();
    }

private:
    CMemberBuilder*& m_pCurrent;
    CMemberBuilder* m_pOuter;
    CMemberBuilder m_tBuilder;
};

}  // namespace murv::detail
