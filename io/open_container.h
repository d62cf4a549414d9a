// io/open_container.h - a container that is being read.
//
// Containers are opened inside each other; what is open is a chain that unwinds by itself, whatever ends the load.
#pragma once

#include "io/member_builder.h"
#include "murv/loader.h"

namespace murv::detail
{

/// Makes a container the one that members are added to, for as long as it is being read.
class COpenContainer
{
public:
    /// \param node  a container without members that has a vector: the loader's target, or the member just had
    COpenContainer(ILoaderCommon& loader, CFields& node)
        : m_pCurrent(loader.m_pBuilder),
          m_pOuter(loader.m_pBuilder),
          m_tBuilder(*loader.m_pNodeStack, node, loader.m_pLastValueNode,
                     loader.m_pIdIndex == nullptr ? 0 : loader.m_pIdIndex->now())
    {
        if (loader.m_eMember != ILoaderCommon::MS_fresh)
            m_tBuilder.setPlace(m_pOuter, {loader.m_uiMemberSet, loader.m_uiMemberPosition});
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
