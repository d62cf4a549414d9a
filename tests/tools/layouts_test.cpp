// tests/tools/layouts_test.cpp - murv layouts, and how -l finds a layout.
#include <gtest/gtest.h>

#include "tests/tools/sales.h"
#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
/// Runs with a directory of layouts of the test's own.
tRun murvWith(const CTemporaryDirectory& files, const std::vector<std::string>& arguments)
{
    tSurroundings around;
    around.m_vEnvironment = {"MURV_LAYOUTS=" + files.path(), "TERM=xterm"};
    return murv(files, arguments, around);
}
}  // namespace

TEST(Layouts, areListedWithTheirPurpose)
{
    const CTemporaryDirectory files;
    files.write("zz-sales.murv", s_cpSalesLayout);
    files.write("zz-two.murv", "// Of several\n// lines (1.0). And more.\n{}");
    files.write("zz-none.murv", "{ \"@\" = \"layout 1\" }");
    files.write("zz-other.txt", "// no layout");
    const tRun run = murvWith(files, {"layouts"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_NE(run.m_strOutput.find("zz-none\nzz-sales"), std::string::npos) << run.m_strOutput;
    EXPECT_NE(run.m_strOutput.find("  The sales of a day\n"), std::string::npos) << run.m_strOutput;
    EXPECT_NE(run.m_strOutput.find("  Of several lines (1.0)\n"), std::string::npos) << run.m_strOutput;
    EXPECT_EQ(run.m_strOutput.find("zz-other"), std::string::npos);
    EXPECT_NE(murvWith(files, {"layouts", "--json"})
                  .m_strOutput.find("{\"name\":\"zz-sales\",\"file\":\"" + files.path() +
                                    "/zz-sales.murv\",\"purpose\":\"The sales of a day\"}\n"),
              std::string::npos);
}

TEST(Layouts, areFoundByNameAndByFile)
{
    const CTemporaryDirectory files;
    const CTemporaryDirectory elsewhere;
    files.write("zz-sales.murv", s_cpSalesLayout);
    elsewhere.write("in", s_cpSales);
    tSurroundings around;
    around.m_vEnvironment = {"MURV_LAYOUTS=/nowhere:" + files.path()};
    for (const std::string& name : {std::string("zz-sales"), files.path() + "/zz-sales.murv"})
        EXPECT_EQ(murv(elsewhere, {"check", "-l", name, "in"}, around).m_iExit, 0) << name;
}

TEST(Layouts, fileThatExistsCountsBeforeAnInstalledOne)
{
    const CTemporaryDirectory files;
    files.write("zz-sales.murv", "{ \"@\" = \"layout 1\", \"a\" = (ACF1) \"\" }");
    files.write("zz-sales", s_cpSalesLayout);
    files.write("in", s_cpSales);
    EXPECT_EQ(murvWith(files, {"check", "-l", "zz-sales", "in"}).m_iExit, 0);
}

TEST(Layouts, nameThatIsNotThereGetsASuggestion)
{
    const CTemporaryDirectory files;
    files.write("zz-sales.murv", s_cpSalesLayout);
    const tRun run = murvWith(files, {"unpack", "-l", "zz-sale"});
    EXPECT_EQ(run.m_iExit, 2);
    EXPECT_EQ(run.m_strError, "murv: error: no layout is called zz-sale; did you mean zz-sales? (see murv layouts)\n");
    EXPECT_EQ(murvWith(files, {"unpack", "-l", "nix.murv"}).m_strError,
              "nix.murv: error: cannot be read: No such file or directory\n");
}

TEST(Layouts, thoseOfTheSourcesAreThereWhereTheToolIsBuilt)
{
    EXPECT_NE(murvOn("", {"layouts"}).m_strOutput.find("sensor "), std::string::npos);
}

}  // namespace murv::tests
