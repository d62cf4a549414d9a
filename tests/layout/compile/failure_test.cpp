// A compilation that runs out of memory throws, leaks nothing, and leaves the layout usable.
#include <gtest/gtest.h>

#include <fstream>
#include <new>
#include <sstream>
#include <string>

#include "murv/layout.h"
#include "murv/murv.h"
#include "support/failing_malloc.h"

namespace
{

using murv::tests::CFailingMalloc;

TEST(LayoutFailure, everyAllocationMayFail)
{
    if (!CFailingMalloc::isNewReached())
        GTEST_SKIP() << "NOT TESTED: allocations cannot be made to fail here";
    std::ifstream file(std::string(MURV_SOURCE_DIR) + "/share/murv/layouts/sensor.murv");
    std::stringstream text;
    text << file.rdbuf();
    murv::CFields document;
    murv::CLoaders loader(murv::LCBC_COMMENT | murv::LCBC_DUPLICATE);
    ASSERT_TRUE(loader.loading(text.str(), document));
    const long before = CFailingMalloc::liveBlocks();
    bool compiled = false;
    for (long n = 1; !compiled; ++n)
    {
        murv::CLayout layout;
        bool thrown = false;
        try
        {
            const CFailingMalloc failing(n);
            compiled = layout.compile(document);
        }
        catch (const std::bad_alloc&)
        {
            thrown = true;
        }
        ASSERT_NE(thrown, compiled) << n;
        EXPECT_EQ(layout.isCompiled(), compiled) << n;
        EXPECT_TRUE(layout.compile(document)) << n;
    }
    EXPECT_EQ(CFailingMalloc::liveBlocks(), before);
}

}  // namespace
