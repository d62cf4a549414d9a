// tests/layout/stock/tle_test.cpp - orbital elements, compared with another program's decoding of the same lines.
#include <cmath>

#include "tests/layout/stock/stock_helpers.h"

namespace murv::tests
{

namespace
{

/// A mantissa with the point before it, and a power of ten.
double scaled(const CFields& set, const std::string& mantissa, const std::string& power)
{
    return std::stod(at(set, mantissa)) * 1e-5 * std::pow(10, std::stoi(at(set, power)));
}

/// The lines of the published file without comments, cut to their 69 columns: what follows there are times for tests
/// of programs, and no part of the format.
std::string elements()
{
    std::string lines;
    for (const std::string& line : linesOf(sample("tle/SGP4-VER.TLE")))
    {
        if (line[0] == '1' || line[0] == '2')
            lines += line.substr(0, 69) + "\n";
    }
    return lines;
}

/// Sets whose check digits the answer calls wrong: paths of the digits.
std::vector<std::string> wrongDigits()
{
    std::vector<std::string> paths;
    std::size_t set = 0;
    unsigned int line = 0;
    for (const std::string& text : linesOf(sample("tle/SGP4-VER.parsed.json")))
    {
        if (text.find("checksum_ok") != std::string::npos)
            line = 0;
        if (text.find("   true") == std::string::npos && text.find("   false") == std::string::npos)
            continue;
        ++line;
        if (text.find("false") != std::string::npos)
            paths.push_back("satellites[" + std::to_string(set) + "].line " + std::to_string(line) + ".check");
        set += line == 2 ? 1 : 0;
    }
    return paths;
}

}  // namespace

TEST(TLE, elementsAreThoseOfTheAnswer)
{
    const tReading result = reading(installed("tle"), elements());
    ASSERT_TRUE(result.m_bRead) << place(result.m_tFault) << " " << result.m_tFault.m_strMessage;
    const auto expected = flatJSON(sample("tle/SGP4-VER.parsed.json"));
    ASSERT_EQ(countAt(result.m_tTree, "satellites"), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
    {
        SCOPED_TRACE(i);
        const CFields& set = nodeAt(result.m_tTree, "satellites")->getChildAt(static_cast<unsigned int>(i));
        const auto& answer = expected[i];
        EXPECT_EQ(std::stoul(at(set, "line 1.satellite")), std::stoul(answer.at("satnum")));
        EXPECT_EQ(at(set, "line 1.class"), answer.at("classification"));
        EXPECT_EQ(at(set, "line 1.designator"), answer.at("intldesg"));
        EXPECT_EQ(std::stoul(at(set, "line 1.year")), std::stoul(answer.at("epochyr")) % 100);
        EXPECT_EQ(std::stod(at(set, "line 1.day")), std::stod(answer.at("epochdays")));
        EXPECT_NEAR(scaled(set, "line 1.drag", "line 1.drag power"), std::stod(answer.at("bstar")), 1e-15);
        EXPECT_EQ(at(set, "line 1.set"), answer.at("elnum"));
        // The answer's angles were radians in between.
        EXPECT_EQ(std::stod(at(set, "line 2.eccentricity")), std::stod(answer.at("ecco")));
        EXPECT_NEAR(std::stod(at(set, "line 2.inclination")), std::stod(answer.at("inclo_deg")), 1e-12);
        EXPECT_NEAR(std::stod(at(set, "line 2.node")), std::stod(answer.at("nodeo_deg")), 1e-12);
        EXPECT_NEAR(std::stod(at(set, "line 2.perigee")), std::stod(answer.at("argpo_deg")), 1e-12);
        EXPECT_NEAR(std::stod(at(set, "line 2.anomaly")), std::stod(answer.at("mo_deg")), 1e-12);
        EXPECT_EQ(std::stoul(at(set, "line 2.revolutions")), std::stoul(answer.at("revnum")));
    }
}

TEST(TLE, wrongCheckDigitsAreFound)
{
    const tReading result = reading(installed("tle"), elements());
    std::vector<std::string> found;
    for (const tPacketFault& finding : result.m_vFindings)
    {
        EXPECT_EQ(finding.m_eCode, PF_checksum);
        found.push_back(finding.m_strPath);
    }
    EXPECT_EQ(found, wrongDigits());
    EXPECT_EQ(found.size(), 5u);
}

TEST(TLE, filesComeBackButForWrongCheckDigits)
{
    const std::string bytes = elements();
    const CLayout layout = installed("tle");
    const tReading result = reading(layout, bytes);
    std::string made = making(layout, result.m_tTree);
    ASSERT_EQ(made.size(), bytes.size());
    for (const tPacketFault& finding : result.m_vFindings)
        made[static_cast<std::size_t>(finding.m_ullOffset)] = bytes[static_cast<std::size_t>(finding.m_ullOffset)];
    EXPECT_EQ(made, bytes);
}

TEST(TLE, namesMayStandBeforeTheLines)
{
    const CFields tree = thereAndBack(installed("tle"), "0 FIRST\n" + elements().substr(0, 280));
    expectValues(tree, {{"satellites.0.title.name", "FIRST"}, {"satellites.1.title", "(none)"}});
}

TEST(TLE, commentsAreRefused)
{
    const tReading result = reading(installed("tle"), sample("tle/SGP4-VER.TLE"));
    EXPECT_FALSE(result.m_bRead);
    EXPECT_EQ(result.m_tFault.m_ullOffset, 0u);
}

}  // namespace murv::tests
