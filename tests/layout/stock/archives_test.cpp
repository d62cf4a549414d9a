// tests/layout/stock/archives_test.cpp - tar, cpio and ar archives, compared with what the tools list of them.
#include <ctime>

#include "tests/layout/stock/stock_helpers.h"

namespace murv::tests
{

namespace
{

std::string archive(const std::string& name)
{
    return sample("archives/" + name);
}

std::vector<std::string> wordsOf(const std::string& line)
{
    std::istringstream in(line);
    std::vector<std::string> words;
    for (std::string word; in >> word;)
        words.push_back(word);
    return words;
}

std::string utc(long long seconds, const char* form)
{
    const auto time = static_cast<std::time_t>(seconds);
    std::tm parts{};
    gmtime_r(&time, &parts);
    char text[64];
    return {text, std::strftime(text, sizeof text, form, &parts)};
}

/// "rwsr-xr-x" for the twelve bits of permissions.
std::string permissions(unsigned int mode)
{
    std::string text;
    for (unsigned int bit = 9; bit-- > 0;)
        text.push_back((mode >> bit & 1) != 0 ? "xwr"[bit % 3] : '-');
    if ((mode & 04000) != 0)
        text[2] = (mode & 0100) != 0 ? 's' : 'S';
    return text;
}

/// The members of an archive that hold files, not extended headers.
std::vector<const CFields*> filesOf(const CFields& tree)
{
    std::vector<const CFields*> files;
    for (const CFields& member : *nodeAt(tree, "members"))
    {
        const std::string type = at(member, "type");
        if (type != "x" && type != "g")
            files.push_back(&member);
    }
    return files;
}

/// "drwxr-xr-x 1001/2002 0 2024-02-29 12:34:56 ./empty/", as tar lists it.
std::string listed(const CFields& member)
{
    const std::map<std::string, char> letters = {{"5", 'd'}, {"2", 'l'}, {"0", '-'}, {std::string(1, '\0'), '-'}};
    const auto mode = static_cast<unsigned int>(std::stoul(at(member, "mode")));
    std::string text = letters.at(at(member, "type")) + permissions(mode) + " " + at(member, "uid") + "/" +
                       at(member, "gid") + " " + at(member, "size") + " " +
                       utc(std::stoll(at(member, "mtime")), "%Y-%m-%d %H:%M:%S") + " " + at(member, "name");
    if (at(member, "type") == "2")
        text += " -> " + at(member, "link");
    return text;
}

void expectTar(const std::string& name, const std::string& form)
{
    const CFields tree = thereAndBack(installed("tar"), archive(name));
    const std::vector<std::string> expected = linesOf(archive(name + ".list"));
    const std::vector<const CFields*> files = filesOf(tree);
    ASSERT_EQ(files.size(), expected.size());
    for (std::size_t i = 0; i < files.size(); ++i)
    {
        std::string line;
        for (std::string word : wordsOf(expected[i]))
            line += (line.empty() ? "" : " ") + word.substr(0, word.find(".0901"));  // the fraction is in the header
        EXPECT_EQ(listed(*files[i]), line);
        EXPECT_NE(nodeAt(*files[i], "form." + form), nullptr) << i;
    }
}

void expectCpio(const std::string& layout, const std::string& name)
{
    const CFields tree = thereAndBack(installed(layout), archive(name));
    const std::vector<std::string> expected = linesOf(archive(name + ".list"));
    ASSERT_EQ(countAt(tree, "members"), expected.size() + 1);
    for (std::size_t i = 0; i < expected.size(); ++i)
    {
        const CFields& member = nodeAt(tree, "members")->getChildAt(static_cast<unsigned int>(i));
        const auto mode = static_cast<unsigned int>(std::stoul(at(member, "mode")));
        const bool isLink = mode >> 12 == 10;
        const std::vector<std::string> words = wordsOf(expected[i]);
        EXPECT_EQ((isLink ? "l" : "-") + permissions(mode & 07777), words[0]);
        EXPECT_EQ(at(member, "links"), words[1]);
        EXPECT_EQ(at(member, "uid"), words[2]);
        EXPECT_EQ(at(member, "gid"), words[3]);
        EXPECT_EQ(at(member, "content size"), words[4]);
        EXPECT_EQ(utc(std::stoll(at(member, "mtime")), "%b %d"), words[5] + " " + words[6]);
        EXPECT_EQ(at(member, "name"), words[8]);
        if (isLink)
        {
            EXPECT_EQ(at(member, "content"), words[10]);
        }
    }
}

void expectAr(const std::string& name, const std::vector<std::string>& names, unsigned int first)
{
    const std::string bytes = archive(name);
    const CFields tree = thereAndBack(installed("ar"), bytes);
    const std::vector<std::string> expected = linesOf(archive(name + ".list"));
    ASSERT_EQ(countAt(tree, "members"), expected.size() + first);
    for (std::size_t i = 0; i < expected.size(); ++i)
    {
        const CFields& member = nodeAt(tree, "members")->getChildAt(static_cast<unsigned int>(i) + first);
        const std::vector<std::string> words = wordsOf(expected[i]);
        EXPECT_EQ(permissions(static_cast<unsigned int>(std::stoul(at(member, "mode"))) & 07777), words[0]);
        EXPECT_EQ(at(member, "uid") + "/" + at(member, "gid"), words[1]);
        EXPECT_EQ(at(member, "size"), words[2]);
        EXPECT_EQ(utc(std::stoll(at(member, "mtime")), "%b %d %H:%M %Y"),
                  words[3] + " " + words[4] + " " + words[5] + " " + words[6]);
        EXPECT_EQ(at(member, "name"), names[i]);
        // The listing says where the content begins, which holds no byte before it of the same text.
        const std::size_t offset = std::stoul(words[8], nullptr, 16);
        EXPECT_EQ(bytes.substr(offset, std::stoul(words[2])), at(member, "content"));
    }
}

}  // namespace

TEST(Tar, posixArchive)
{
    expectTar("ustar.tar", "posix");
}

TEST(Tar, gnuArchive)
{
    expectTar("gnu.tar", "gnu");
}

TEST(Tar, archiveOfVersion7)
{
    expectTar("v7.tar", "v7");
}

TEST(Tar, paxArchiveKeepsItsExtendedHeaders)
{
    expectTar("pax.tar", "posix");
    const CFields tree = reading(installed("tar"), archive("pax.tar")).m_tTree;
    EXPECT_EQ(at(tree, "members.0.type"), "x");
    EXPECT_EQ(at(tree, "members.0.content").substr(0, 30), "30 mtime=1795210964.090101301\n");
}

TEST(Tar, wrongSumIsFound)
{
    std::string bytes = archive("ustar.tar");
    bytes[512] = '_';
    const tReading result = reading(installed("tar"), bytes);
    EXPECT_TRUE(result.m_bRead);
    EXPECT_EQ(places(result.m_vFindings), std::vector<std::string>{"checksum at 660 (members[1].checksum)"});
}

TEST(Tar, bytesAfterTheEndAreRefused)
{
    const tReading result = reading(installed("tar"), archive("ustar.tar") + "x");
    EXPECT_FALSE(result.m_bRead);
    EXPECT_EQ(result.m_tFault.m_ullOffset, 5120u);
}

TEST(Cpio, newArchive)
{
    expectCpio("cpio", "newc.cpio");
}

TEST(Cpio, newArchiveWithSums)
{
    expectCpio("cpio", "crc.cpio");
    std::string bytes = archive("crc.cpio");
    const std::size_t content = bytes.find("hello, packet");
    bytes[content] = 'j';
    const tReading result = reading(installed("cpio"), bytes);
    EXPECT_TRUE(result.m_bRead);
    EXPECT_EQ(places(result.m_vFindings), std::vector<std::string>{"checksum at 102 (members[0].sum)"});
}

TEST(Cpio, oldArchive)
{
    expectCpio("cpio-odc", "odc.cpio");
}

TEST(Cpio, otherBytesBetweenAlignedPartsAreRefused)
{
    std::string bytes = archive("newc.cpio");
    bytes[0x87] = 'x';
    const tReading result = reading(installed("cpio"), bytes);
    EXPECT_FALSE(result.m_bRead);
    EXPECT_EQ(result.m_tFault.m_eCode, PF_skipped);
}

TEST(Ar, archive)
{
    expectAr("plain.a", {"hello.txt/", "data.bin/"}, 0);
}

TEST(Ar, archiveWithLongNames)
{
    expectAr("longname.a", {"hello.txt/", "/0"}, 1);
    const CFields tree = reading(installed("ar"), archive("longname.a")).m_tTree;
    expectValues(tree, {{"members.0.name", "//"},
                        {"members.0.mtime", "(null)"},
                        {"members.0.content", "a_member_with_a_long_name.txt/\n\n"}});
}

}  // namespace murv::tests
