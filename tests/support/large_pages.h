// tests/support/large_pages.h - whether trees can lie in large pages here.
#pragma once

#include "core/memory/page_block.h"

namespace murv::tests
{

inline bool hasLargePages()
{
    void* const probe = detail::mapPages(detail::s_cnLargePage);
    if (probe != nullptr)
        detail::unmapPages(probe, detail::s_cnLargePage);
    return probe != nullptr;
}

}  // namespace murv::tests
