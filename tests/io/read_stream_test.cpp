// tests/io/read_stream_test.cpp - the rest of a stream as one string.
#include "io/read_stream.h"

#include <gtest/gtest.h>

#include <istream>
#include <sstream>
#include <stdexcept>

#include "tests/support/breaking_buffer.h"

using namespace murv::detail;
using namespace murv::tests;

namespace
{
constexpr std::size_t s_cnNoLimit = 1 << 30;
constexpr std::size_t s_cnPiece = 65536;  // what is read at once

/// All bytes but the end mark, in a pattern that does not repeat with the pieces.
std::string pattern(std::size_t size)
{
    std::string text(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        text[i] = static_cast<char>(i % 255);
    return text;
}

std::string read(std::istream& in, std::size_t most)
{
    std::string data = "left over";
    readStream(in, most, data);
    return data;
}

bool isRead(std::istream& in)
{
    std::string data;
    return readStream(in, s_cnNoLimit, data);
}
}  // namespace

TEST(ReadStream, readsToTheEnd)
{
    for (const std::size_t size : {std::size_t{1}, s_cnPiece - 1, s_cnPiece, s_cnPiece + 1, 3 * s_cnPiece})
    {
        std::istringstream in(pattern(size));
        EXPECT_EQ(read(in, s_cnNoLimit), pattern(size)) << size;
        EXPECT_TRUE(in.eof());
        EXPECT_FALSE(in.fail());
    }
}

TEST(ReadStream, takesTheByteOf255AndLeavesTheRest)
{
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, s_cnPiece - 1, s_cnPiece, s_cnPiece + 1})
    {
        std::istringstream in(pattern(size) + "\xFFnext");
        EXPECT_EQ(read(in, s_cnNoLimit), pattern(size)) << size;
        EXPECT_TRUE(in.good());
        EXPECT_EQ(read(in, s_cnNoLimit), "next");
    }
}

TEST(ReadStream, stopsAtTheMostBytes)
{
    for (const std::size_t most : {std::size_t{1}, std::size_t{5}, s_cnPiece, s_cnPiece + 7})
    {
        std::istringstream in(pattern(2 * s_cnPiece));
        EXPECT_EQ(read(in, most), pattern(most)) << most;
        EXPECT_TRUE(in.good());
        EXPECT_EQ(in.tellg(), static_cast<std::streamoff>(most));
    }
}

TEST(ReadStream, afterExactlyTheMostBytesThereIsNothing)
{
    std::istringstream in("12345");
    EXPECT_EQ(read(in, 5), "12345");
    EXPECT_FALSE(in.fail());
    EXPECT_EQ(read(in, 5), "");
    EXPECT_TRUE(in.fail());
}

TEST(ReadStream, blanksAtTheBeginAreKept)
{
    std::istringstream in(" \n\t1");
    in >> std::skipws;
    EXPECT_EQ(read(in, s_cnNoLimit), " \n\t1");
}

TEST(ReadStream, aStreamThatFailedBeforeGivesNothing)
{
    std::istringstream in("text");
    in.setstate(std::ios_base::failbit);
    EXPECT_EQ(read(in, s_cnNoLimit), "");
    EXPECT_TRUE(in.fail());
}

TEST(ReadStream, aStreamThatBreaksGivesWhatWasThere)
{
    CBreakingBuffer buffer("begin");
    std::istream in(&buffer);
    EXPECT_EQ(read(in, s_cnNoLimit), "begin");
    EXPECT_TRUE(in.bad());
}

TEST(ReadStream, endsAreNoFailures)
{
    std::istringstream text("text");
    EXPECT_TRUE(isRead(text));
    std::istringstream empty("");
    EXPECT_TRUE(isRead(empty));
    std::istringstream mark("\xFF");
    EXPECT_TRUE(isRead(mark));
    EXPECT_TRUE(isRead(mark));  // at its end
}

TEST(ReadStream, tellsOfAStreamThatFailedBeforeOrBreaks)
{
    for (const std::ios_base::iostate state : {std::ios_base::failbit, std::ios_base::badbit})
    {
        std::istringstream failed("text");
        failed.setstate(state);
        EXPECT_FALSE(isRead(failed));
    }
    for (const char* const begin : {"", "begin"})
    {
        CBreakingBuffer buffer(begin);
        std::istream in(&buffer);
        EXPECT_FALSE(isRead(in)) << begin;
    }
}

TEST(ReadStream, aStreamThatMayThrowDoes)
{
    std::istringstream in("");
    in.exceptions(std::ios_base::failbit);
    EXPECT_THROW(read(in, s_cnNoLimit), std::ios_base::failure);
}
