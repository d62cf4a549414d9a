// tests/layout/stock/unix_files_test.cpp - an index of git, the header of a database, public keys.
//
// The answers are what git, SQLite and ssh-keygen print of the same files.
#include "tests/layout/stock/stock_helpers.h"

namespace murv::tests
{

namespace
{

std::string hexOf(const std::string& bytes)
{
    std::string digits;
    for (const char byte : bytes)
    {
        digits.push_back("0123456789abcdef"[static_cast<unsigned char>(byte) >> 4]);
        digits.push_back("0123456789abcdef"[static_cast<unsigned char>(byte) & 15]);
    }
    return digits;
}

std::string octal(unsigned long number)
{
    std::ostringstream out;
    out << std::oct << number;
    return out.str();
}

}  // namespace

TEST(GitIndex, entriesAreThoseThatGitLists)
{
    const CFields tree = thereAndBack(installed("git-index"), sample("unix/git.index"));
    const std::vector<std::string> lines = linesOf(sample("unix/git.index.list"));
    ASSERT_EQ(countAt(tree, "entries") * 6, lines.size());
    for (std::size_t i = 0; i < lines.size(); i += 6)
    {
        const CFields& entry = nodeAt(tree, "entries")->getChildAt(static_cast<unsigned int>(i / 6));
        EXPECT_EQ(octal(std::stoul(at(entry, "mode"))) + " " + hexOf(at(entry, "object")) + " " +
                      at(entry, "flags.stage") + "\t" + at(entry, "name"),
                  lines[i]);
        EXPECT_EQ("  ctime: " + at(entry, "changed.seconds") + ":" + at(entry, "changed.nanoseconds"), lines[i + 1]);
        EXPECT_EQ("  mtime: " + at(entry, "modified.seconds") + ":" + at(entry, "modified.nanoseconds"), lines[i + 2]);
        EXPECT_EQ("  dev: " + at(entry, "device") + "\tino: " + at(entry, "inode"), lines[i + 3]);
        EXPECT_EQ("  uid: " + at(entry, "uid") + "\tgid: " + at(entry, "gid"), lines[i + 4]);
        EXPECT_EQ("  size: " + at(entry, "size") + "\tflags: 0", lines[i + 5]);
    }
}

TEST(SQLiteHeader, valuesAreThoseOfThePragmas)
{
    const CFields tree = thereAndBack(installed("sqlite-header"), sample("unix/sqlite-header.bin"));
    std::map<std::string, std::string> answer;
    for (const std::string& line : linesOf(sample("unix/sqlite-header.list")))
        answer[line.substr(0, line.find(' '))] = line.substr(line.find(' ') + 1);
    expectValues(tree, {{"page size", answer.at("page_size")},
                        {"user version", answer.at("user_version")},
                        {"application", answer.at("application_id")},
                        {"schema cookie", answer.at("schema_version")},
                        {"pages", answer.at("page_count")},
                        {"free pages", answer.at("freelist_count")},
                        {"incremental vacuum", answer.at("auto_vacuum")}});
    EXPECT_EQ(at(tree, "encoding"), answer.at("encoding") == "UTF-8" ? "1" : "other");
    EXPECT_EQ(at(tree, "write version"), answer.at("journal_mode") == "delete" ? "1" : "other");
    EXPECT_EQ(at(tree, "library version"), answer.at("sqlite_version") == "3.40.1" ? "3040001" : "other");
}

TEST(SSHPublicKey, kindsAndSizesAreThoseOfTheTool)
{
    const std::vector<std::string> lines = linesOf(sample("unix/ssh.list"));
    const CFields ed25519 = thereAndBack(installed("ssh-public-key"), sample("unix/ssh-ed25519-public.bin"));
    EXPECT_EQ(std::to_string(at(ed25519, "ed25519.key").size() * 8) + " ", lines[0].substr(0, 4));
    const CFields rsa = thereAndBack(installed("ssh-public-key"), sample("unix/ssh-rsa-public.bin"));
    // The number has a zero byte before its highest bit.
    EXPECT_EQ(std::to_string((at(rsa, "rsa.modulus").size() - 1) * 8), lines[1].substr(0, 4));
    EXPECT_EQ(at(rsa, "rsa.exponent"), "\x01" + std::string(1, '\0') + "\x01");
}

}  // namespace murv::tests
