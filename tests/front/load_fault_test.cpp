// tests/front/load_fault_test.cpp - errors as data: why a load failed, and where.
#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <sstream>
#include <stdexcept>

#include "murv/murv.h"
#include "tests/ser/load_helpers.h"
#include "tests/support/breaking_buffer.h"
#include "tests/support/failing_malloc.h"
#include "tests/support/thrown.h"

using namespace murv;
using namespace murv::tests;

namespace
{

/// "start-end line:column message", and " offset line:column" of a second place.
std::string show(const tErrorPlace& place)
{
    std::string text = std::to_string(place.m_uiStart) + "-" + std::to_string(place.m_uiEnd) + " " +
                       std::to_string(place.m_uiLine) + ":" + std::to_string(place.m_uiColumn) + " " +
                       place.m_strMessage;
    if (place.m_tSecond)
        text += " " + std::to_string(place.m_tSecond->m_uiOffset) + " " + std::to_string(place.m_tSecond->m_uiLine) +
                ":" + std::to_string(place.m_tSecond->m_uiColumn);
    return text;
}

std::string places(const ILoaderBase& loader)
{
    std::string all;
    for (const tErrorPlace& place : loader.getErrorPlaces())
        all += show(place) + "\n";
    return all;
}

std::string plainFile()
{
    CFields tree;
    tree.addChildRef("a") = 1;
    tree.addChildRef("b") = "text";
    return tree.toMURV(ER_BER);
}

std::string fileWithPassword()
{
    return CFields("text").toMURV(ER_BER, SAVE_ALL, "secret");
}

/// One byte of the file changed.
std::string changed(std::string file, std::size_t offset, char byte)
{
    file.at(offset) = byte;
    return file;
}

struct tFaultCase
{
    const char* m_pWhat;
    std::string m_strData;
    const char* m_pPassword;
    E_LoadFault m_eFault;
    std::size_t m_nPlaces;
};

std::vector<tFaultCase> faultCases()
{
    const std::string secret = fileWithPassword();
    const std::string plain = plainFile();
    std::string noBlock = secret;
    noBlock.erase(13, static_cast<unsigned char>(secret[12])).at(12) = 0;
    return {
        {"accepted text", "[1, 2]", nullptr, LF_none, 0},
        {"accepted file", plain, nullptr, LF_none, 0},
        {"accepted file with password", secret, "secret", LF_none, 0},
        {"malformed text", "[1,@]", nullptr, LF_text, 1},
        {"too short to tell", "[1]", nullptr, LF_encodingRule, 0},
        {"header that ends early", plain.substr(0, 10), nullptr, LF_encodingRule, 0},
        {"unknown rule", changed(plain, 10, 6), nullptr, LF_encodingRule, 0},
        {"no password", secret, nullptr, LF_passwordMissing, 0},
        {"empty password", secret, "", LF_passwordMissing, 0},
        {"no key", noBlock, nullptr, LF_passwordMissing, 0},
        {"other password", secret, "Secret", LF_passwordWrong, 0},
        {"longer password", secret, "secret!", LF_passwordWrong, 0},
        {"header only", plain.substr(0, 13), nullptr, LF_damagedFile, 0},
        {"other size of header", changed(plain, 8, 12), nullptr, LF_damagedFile, 0},
        {"unknown cipher", changed(plain, 11, 9), nullptr, LF_damagedFile, 0},
        {"password block beyond the end", changed(plain, 12, '\xFF'), nullptr, LF_damagedFile, 0},
        {"password block that is none", changed(secret, 13, '\x01'), "secret", LF_damagedFile, 0},
        {"short body", plain.substr(0, 15), nullptr, LF_damagedFile, 0},
        {"cut body", plain.substr(0, plain.size() - 8), nullptr, LF_damagedFile, 1},
    };
}

constexpr const char* s_cpStreamFailed = "[murv::ILoaderBase::loading#0] Input stream failed";

/// One of each class.
struct tAllLoaders
{
    std::vector<ILoaderBase*> all()
    {
        return {&m_tFront, &m_tText, &m_tBinary};
    }

    CLoaders m_tFront;
    CLoader4SER m_tText;
    CLoader4BER m_tBinary;
};

}  // namespace

TEST(LoadFault, saysOfEachKindOfDataWhyItIsRefused)
{
    for (const tFaultCase& row : faultCases())
    {
        CLoaders loader;
        CFields tree;
        EXPECT_EQ(loader.loading(row.m_strData, tree, row.m_pPassword), row.m_eFault == LF_none) << row.m_pWhat;
        EXPECT_EQ(loader.getLoadFault(), row.m_eFault) << row.m_pWhat << ": " << loader.getLastErrMsg();
        EXPECT_EQ(loader.getErrorPlaces().size(), row.m_nPlaces) << row.m_pWhat;
        EXPECT_EQ(loader.getErrorRanges().size(), row.m_nPlaces) << row.m_pWhat;
    }
}

TEST(LoadFault, isNoneBeforeTheFirstLoad)
{
    tAllLoaders loaders;
    for (ILoaderBase* const loader : loaders.all())
    {
        EXPECT_EQ(loader->getLoadFault(), LF_none);
        EXPECT_TRUE(loader->getErrorPlaces().empty());
    }
}

TEST(LoadFault, dataOfNoBinaryFileFollowsAnotherRule)
{
    CLoader4BER loader;
    CFields tree;
    EXPECT_FALSE(loader.loading("[1, 2, 3, 4, 5]", tree));
    EXPECT_EQ(loader.getLoadFault(), LF_encodingRule);
}

TEST(LoadFault, tooMuchDataIsTooBigForEveryLoader)
{
    tAllLoaders loaders;
    for (ILoaderBase* const loader : loaders.all())
    {
        CFields tree;
        EXPECT_FALSE(loader->loadit("[1]", 2147483648u, tree));
        EXPECT_EQ(loader->getLoadFault(), LF_tooBig);
        // NOLINTNEXTLINE(bugprone-string-constructor): never read
        EXPECT_FALSE(loader->loading(std::string_view("[1]", 2147483648u), tree));
        EXPECT_EQ(loader->getLoadFault(), LF_tooBig);
    }
}

TEST(LoadFault, depthThatEndsALoadByAnExceptionIsTooDeep)
{
    CFields deep(DT_array);
    for (int i = 0; i < 1000; ++i)
    {
        CFields outer(DT_array);
        outer.addArrayAt(std::move(deep));
        deep = std::move(outer);
    }
    const std::string documents[] = {repeated("[", 1001), deep.toMURV(ER_BER)};
    for (const std::string& document : documents)
    {
        CLoaders loader;
        CFields tree;
        EXPECT_THROW(loader.loading(document, tree), CLogicError);
        EXPECT_EQ(loader.getLoadFault(), LF_tooDeep);
        EXPECT_TRUE(loader.loading("[1, 2]", tree));
        EXPECT_EQ(loader.getLoadFault(), LF_none);
    }
}

TEST(LoadFault, memoryThatRunsOutIsMemory)
{
    if (!CFailingMalloc::isNewReached())
        GTEST_SKIP() << "allocations cannot be made to fail here";
    const std::string value(100, 'v');
    CFields source;
    source.addChildRef("a name that has a block of its own") = value;
    const std::string malformed = "[1, 2 @]";
    const std::string documents[] = {source.toMURV(ER_SER_PKT), source.toMURV(ER_BER), malformed};
    for (const std::string& document : documents)
    {
        int failures = 0;
        bool more = true;
        for (long failAt = 1; more; ++failAt)
        {
            CLoaders loader;
            CFields tree;
            bool done = false;
            bool thrown = false;
            {
                const CFailingMalloc fail(failAt);
                try
                {
                    done = loader.loading(document, tree);
                }
                catch (const std::bad_alloc&)
                {
                    thrown = true;
                }
                catch (const CLogicError&)  // the stated message of a string that could not be copied
                {
                    thrown = true;
                }
                more = fail.hasFailed();
            }
            if (done || !more)  // some failures are made good
                continue;
            ++failures;
            EXPECT_EQ(loader.getLoadFault(), thrown || document != malformed ? LF_memory : LF_text) << failAt;
        }
        EXPECT_GT(failures, 1) << document;
    }
}

TEST(LoadFault, exceptionOfAKeywordCallbackIsTheCallbacks)
{
    CFields::setGetIdxFP4ESK(3, [](const char*, unsigned char) -> int { throw std::runtime_error("not now"); });
    CLoaders loader;
    CFields tree;
    EXPECT_THROW(loader.loading("[(ACF8word) 1]", tree), std::runtime_error);
    CFields::setGetIdxFP4ESK(3, nullptr);
    EXPECT_EQ(loader.getLoadFault(), LF_callback);
}

TEST(LoadFault, streamThatFailedBeforeItsFirstByteIsReported)
{
    tAllLoaders loaders;
    for (ILoaderBase* const loader : loaders.all())
    {
        std::istringstream in("[1, 2]");
        in.setstate(std::ios_base::failbit);
        CFields tree(7);
        EXPECT_FALSE(loader->loading(in, tree));
        EXPECT_EQ(loader->getLastErrCode(), -999);
        EXPECT_EQ(withoutLine(loader->getLastErrMsg()), s_cpStreamFailed);
        EXPECT_EQ(loader->getLoadFault(), LF_stream);
        EXPECT_TRUE(loader->getErrorPlaces().empty());
        EXPECT_EQ(murv::tests::show(tree), "7");
    }
}

TEST(LoadFault, streamThatBreaksIsReportedAndNotLoaded)
{
    for (const char* const begin : {"", "[1, 2]"})
    {
        CBreakingBuffer buffer(begin);
        std::istream in(&buffer);
        CLoaders loader;
        CFields tree(7);
        EXPECT_FALSE(loader.loading(in, tree));
        EXPECT_EQ(loader.getLastErrCode(), -999);
        EXPECT_EQ(withoutLine(loader.getLastErrMsg()), s_cpStreamFailed);
        EXPECT_EQ(loader.getLoadFault(), LF_stream);
        EXPECT_EQ(murv::tests::show(tree), "7");
    }
}

TEST(LoadFault, streamThatThrowsIsAStreamFault)
{
    CBreakingBuffer buffer("[1, 2]");
    std::istream in(&buffer);
    in.exceptions(std::ios_base::badbit);
    CLoaders loader;
    CFields tree;
    EXPECT_FALSE(loader.loading("[@, 1]", tree));
    EXPECT_THROW(loader.loading(in, tree), std::runtime_error);
    EXPECT_EQ(loader.getLoadFault(), LF_stream);
    EXPECT_TRUE(loader.getErrorPlaces().empty());
}

TEST(LoadFault, streamAtItsEndIsEmptyData)
{
    std::istringstream in("");
    CLoaders loader;
    CFields tree;
    EXPECT_FALSE(loader.loading(in, tree));
    EXPECT_TRUE(loader.getStatus());
    EXPECT_EQ(loader.getLoadFault(), LF_none);
}

TEST(LoadFault, failedStreamIsNamedByTheStreamOperator)
{
    std::istringstream in("[1, 2]");
    in.setstate(std::ios_base::failbit);
    CFields tree;
    testing::internal::CaptureStderr();
    const std::string message = thrown([&] { in >> tree; });
    testing::internal::GetCapturedStderr();
    EXPECT_NE(message.find("] Input stream failed"), std::string::npos) << message;
}

TEST(LoadFault, copiesOfLoadersKeepFaultAndPlaces)
{
    for (const tFaultCase& row : faultCases())
    {
        CLoaders loader;
        CFields tree;
        loader.loading(row.m_strData, tree, row.m_pPassword);
        const CLoaders copy(loader);
        CLoaders assigned;
        assigned.loading("[@, 1]", tree);
        assigned = loader;
        for (const CLoaders* const other : {&copy, static_cast<const CLoaders*>(&assigned)})
        {
            EXPECT_EQ(other->getLoadFault(), row.m_eFault) << row.m_pWhat;
            EXPECT_EQ(places(*other), places(loader)) << row.m_pWhat;
        }
    }
}

TEST(LoadFault, staysUntilTheNextLoadStarts)
{
    CLoaders loader;
    CFields tree;
    EXPECT_FALSE(loader.loading("[1,@]", tree));
    loader.clearError();
    EXPECT_FALSE(loader.loading("", tree));  // refused before it starts
    EXPECT_EQ(loader.getLoadFault(), LF_text);
    EXPECT_EQ(places(loader), "3-4 1:4 Syntax error: value, field or array expected.\n");
    EXPECT_TRUE(loader.loading("[1, 2]", tree));
    EXPECT_EQ(loader.getLoadFault(), LF_none);
    EXPECT_EQ(places(loader), "");
}

TEST(ErrorPlaces, haveLineAndColumnOfBothPlaces)
{
    CLoaders loader;
    CFields tree;
    EXPECT_FALSE(loader.loading("{\r\n \"\xC3\xA4\" =\n  \"one\ntw\\qo\" }", tree));
    EXPECT_EQ(places(loader), "13-24 3:3 Bad escape sequence in string 20 4:3\n");
    EXPECT_EQ(loader.getLastErrMsg(), errorAt(3, 3, "Bad escape sequence in string", 4, 3));
}

TEST(ErrorPlaces, stayWhenTheDataIsGone)
{
    CLoader4SER loader;
    CFields tree;
    {
        auto data = std::make_unique<std::string>("[\n 1,\n @]");
        EXPECT_FALSE(loader.loading(*data, tree));
        data->assign(data->size(), '\n');
    }
    EXPECT_EQ(places(loader), "7-8 3:2 Syntax error: value, field or array expected.\n");
}

TEST(ErrorPlaces, areThoseOfEveryError)
{
    CLoaders loader(LCBC_ROOT_CONTAINER | LCBC_COMMENT);
    CFields tree;
    EXPECT_FALSE(loader.loading("\n\n  @   ", tree));
    EXPECT_EQ(places(loader),
              "4-5 3:3 Missing '}' or field member name\n"
              "0-8 1:1 A valid MURV document must be either an DT_array or an DT_fields type.\n");
}

TEST(ErrorPlaces, ofBinaryDataAreOffsetsInTheDecipheredBody)
{
    const std::string file = plainFile();
    CLoaders loader;
    CFields tree;
    EXPECT_FALSE(loader.loading(file.substr(0, file.size() - 8), tree));
    const std::vector<tErrorPlace> places = loader.getErrorPlaces();
    ASSERT_EQ(places.size(), 1u);
    EXPECT_EQ(places[0].m_uiStart, loader.getErrorRanges()[0].m_uiStart);
    EXPECT_EQ(places[0].m_uiEnd, loader.getErrorRanges()[0].m_uiEnd);
    EXPECT_EQ(places[0].m_uiLine, 0u);
    EXPECT_EQ(places[0].m_uiColumn, 0u);
    ASSERT_TRUE(places[0].m_tSecond);
    EXPECT_EQ(places[0].m_tSecond->m_uiLine, 0u);
    EXPECT_EQ(places[0].m_tSecond->m_uiColumn, 0u);
    EXPECT_EQ(loader.getLastErrMsg(), "* Offset " + std::to_string(places[0].m_uiStart) + "\n  " +
                                          places[0].m_strMessage + "\nSee Offset " +
                                          std::to_string(places[0].m_tSecond->m_uiOffset) + " for detail.\n");
}

namespace
{
/// An application's own loader: finds fault with every other byte, last one first.
class CPickyLoader : public ILoaderCommon
{
public:
    CPickyLoader() : ILoaderCommon(0)
    {
    }
    bool loadit(const char* data, unsigned int size, CFields& target, const char*, bool comments) override
    {
        startLoad(data, size, target, comments);
        CFields node;
        CFields second;
        for (int at = static_cast<int>(size); at > 0; at -= 2)
        {
            node.setOffsetStart(at - 1);
            node.setOffsetEnd(at);
            second.setOffsetStart(0);
            pushError(node, "no", second);
        }
        composeErrors(true);
        finishLoad(target, getStatus());
        return getStatus();
    }
};
}  // namespace

TEST(ErrorPlaces, areCountedForLoadersOfTheApplicationToo)
{
    CPickyLoader loader;
    CFields tree;
    EXPECT_FALSE(loader.loading("a\nb\r\nc", tree));
    EXPECT_EQ(loader.getLoadFault(), LF_text);
    EXPECT_EQ(places(loader), "5-6 3:1 no 0 1:1\n3-4 2:2 no 0 1:1\n1-2 1:2 no 0 1:1\n");
}

TEST(ErrorPlaces, manyOfThemCostOneWalk)
{
    CPickyLoader loader;
    CFields tree;
    const std::string line(400000, ' ');  // a walk for each of its 200,000 errors would take minutes
    EXPECT_FALSE(loader.loading(line, tree));
    EXPECT_EQ(loader.getErrorPlaces().front().m_uiColumn, 400000u);
    EXPECT_EQ(loader.getErrorPlaces().back().m_uiColumn, 2u);
}
