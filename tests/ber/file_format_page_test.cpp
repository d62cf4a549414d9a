// tests/ber/file_format_page_test.cpp - the example on the page about the file format is what the saver writes.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "murv/murv.h"
#include "tests/ber/murf_bytes.h"
#include "tests/support/same_tree.h"
#include "tests/support/source_file.h"

namespace murv::tests
{

namespace
{
/// The bytes of a block of the page: hexadecimal pairs in front of the bars.
std::string bytesOfBlock(const std::string& label)
{
    std::istringstream page(contentOf("docs/file-format.md"));
    std::string line;
    while (std::getline(page, line) && line != "```" + label)
        continue;
    std::string bytes;
    while (std::getline(page, line) && line != "```")
    {
        std::istringstream pairs(line.substr(0, line.find('|')));
        for (std::string pair; pairs >> pair;)
            bytes += static_cast<char>(std::stoi(pair, nullptr, 16));
    }
    return bytes;
}

/// The document in front of the dump.
CFields exampleTree()
{
    CFields tree;
    CLoader4SER loader;
    EXPECT_TRUE(loader.loading("{ #7 \"port\" = 8080, \"host\" = \"db\" // main\n}", tree)) << loader.getLastErrMsg();
    return tree;
}
}  // namespace

TEST(FileFormatPage, dumpOfTheFileIsWhatTheSaverWrites)
{
    const std::string dumped = bytesOfBlock("hex-file");
    EXPECT_EQ(dumped.size(), 161u);
    EXPECT_EQ(hex(save(exampleTree())), hex(dumped));
}

TEST(FileFormatPage, dumpOfTheBodyIsWhatTheFileHolds)
{
    const std::string dumped = bytesOfBlock("hex-body");
    EXPECT_EQ(dumped.size(), 111u);
    EXPECT_EQ(hex(body4File(bytesOfBlock("hex-file"))), hex(dumped));
}

TEST(FileFormatPage, loaderReadsTheDump)
{
    const tLoaded loaded = load(bytesOfBlock("hex-file"));
    EXPECT_EQ(loaded.m_strMessage, "");
    EXPECT_EQ(difference(loaded.m_tTree, exampleTree(), SP_all & ~SP_offsets), "");
}

}  // namespace murv::tests
