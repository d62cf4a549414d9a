// tests/front/loaders_test.cpp - telling text from binary, and what the front loader passes on.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <type_traits>

#include "murv/loader.h"
#include "murv/saver.h"
#include "tests/ser/load_helpers.h"
#include "tests/support/thrown.h"

using namespace murv;
using namespace murv::tests;

namespace
{
/// A header of the binary kind up to its rule byte, and some bytes more.
std::string header(int flags, std::size_t size = 13)
{
    std::string data = std::string("MURF\0\0\5\1\0\0", 10) + static_cast<char>(flags) + std::string(20, '\0');
    return data.substr(0, size);
}

int rule(const std::string& data)
{
    return ILoaderBase::getER(data.data(), static_cast<unsigned int>(data.size()));
}

bool load(CLoaders& loader, const std::string& data, CFields& target)
{
    return loader.loadit(data.data(), static_cast<unsigned int>(data.size()), target);
}

std::string unknownRule(int number)
{
    return "[murv::CLoaders::loadit#0] Unknown encoding rule(" + std::to_string(number) + ")";
}
}  // namespace

TEST(Loaders, areDestroyedThroughTheirBases)
{
    static_assert(std::has_virtual_destructor_v<ILoaderBase>);
    static_assert(std::has_virtual_destructor_v<ILoaderCommon>);
    static_assert(std::has_virtual_destructor_v<CLoaderConfig>);
    static_assert(std::has_virtual_destructor_v<CLoader4SER>);
    const std::unique_ptr<ILoaderBase> loader(new CLoaders);
    CFields tree;
    EXPECT_TRUE(loader->loading("[1, 2]", tree));
}

TEST(EncodingRule, isUndecidableBelowFourBytes)
{
    EXPECT_EQ(ILoaderBase::getER(nullptr, 10), -1);
    EXPECT_EQ(rule(""), -1);
    EXPECT_EQ(rule("{1}"), -1);
    EXPECT_EQ(rule("MUR"), -1);
}

TEST(Loaders, takeLosslessTextOfAnyLength)
{
    for (const char* const text : {"{}", "[]", "5", "05", "\"\""})
    {
        CLoaders loader(LCBC_COMMENT | LCBC_EMPTY_NULL | LCBC_LOSSLESS);
        CFields tree;
        ASSERT_TRUE(load(loader, text, tree)) << text;
        EXPECT_EQ(CSavers(SCBC_LOSSLESS).saving(tree, ER_SER_PKT), text);
        CLoaders plain;
        EXPECT_FALSE(load(plain, text, tree));
        EXPECT_EQ(withoutLine(plain.getLastErrMsg()), unknownRule(-1));
    }
}

TEST(EncodingRule, isTextWithoutTheMagic)
{
    EXPECT_EQ(rule("{  }"), 0);
    EXPECT_EQ(rule("@@@@"), 0);
    EXPECT_EQ(rule("MURf1234567890"), 0);
    EXPECT_EQ(rule(" MURF123456789"), 0);
    EXPECT_EQ(rule(std::string(4, '\0')), 0);
}

TEST(EncodingRule, isToldByTheByteAtOffsetTen)
{
    EXPECT_EQ(rule(header(0)), 0);
    EXPECT_EQ(rule(header(1)), 0);
    EXPECT_EQ(rule(header(2)), 1);
    EXPECT_EQ(rule(header(3)), 1);
    EXPECT_EQ(rule(header(4)), 2);
    EXPECT_EQ(rule(header(5)), 2);
    for (int flags = 6; flags < 256; ++flags)
        EXPECT_EQ(rule(header(flags)), -1) << flags;
}

TEST(EncodingRule, isUndecidableWhereThatByteIsMissing)
{
    for (std::size_t size = 4; size <= 10; ++size)
        EXPECT_EQ(rule(header(5, size)), -1) << size;
    EXPECT_EQ(rule(header(5, 11)), 2);
}

TEST(Loaders, readText)
{
    CLoaders loader;
    CFields tree;
    EXPECT_TRUE(load(loader, "{\"a\"=1} // c", tree));
    EXPECT_EQ(show(tree), "{a=1}<1:// c>");
    EXPECT_TRUE(loader.getStatus());
    EXPECT_TRUE(loader.getErrorRanges().empty());
}

TEST(Loaders, needFourBytes)
{
    for (const char* const text : {"{ }", "1", "\"\"", "MUR"})
    {
        CLoaders loader;
        CFields tree(7);
        EXPECT_FALSE(load(loader, text, tree));
        EXPECT_EQ(loader.getLastErrCode(), -991);
        EXPECT_EQ(withoutLine(loader.getLastErrMsg()), unknownRule(-1));
        EXPECT_FALSE(loader.getStatus());
        EXPECT_EQ(show(tree), "7");
    }
    CLoader4SER direct;
    CFields tree;
    EXPECT_TRUE(direct.loadit("{ }", 3, tree));
}

TEST(Loaders, leaveEverythingAsItIsWithoutData)
{
    CLoaders loader;
    CFields tree(7);
    EXPECT_FALSE(load(loader, "@@@@", tree));
    const std::string message = loader.getLastErrMsg();
    EXPECT_FALSE(loader.loadit(nullptr, 10, tree));
    EXPECT_FALSE(loader.loadit("", 0, tree));
    EXPECT_FALSE(loader.loading(std::string(), tree));
    EXPECT_FALSE(loader.loading(static_cast<const char*>(nullptr), tree));
    EXPECT_EQ(loader.getLastErrMsg(), message);
    EXPECT_EQ(show(tree), "7");
    CLoaders fresh;
    EXPECT_FALSE(fresh.loadit(nullptr, 0, tree));
    EXPECT_TRUE(fresh.getStatus());
}

TEST(Loaders, refuseUnknownRules)
{
    for (const int flags : {6, 7, 8, 200, 255})
    {
        CLoaders loader;
        CFields tree(7);
        EXPECT_FALSE(load(loader, header(flags), tree));
        EXPECT_EQ(loader.getLastErrCode(), -991);
        EXPECT_EQ(withoutLine(loader.getLastErrMsg()), unknownRule(-1));
        EXPECT_EQ(show(tree), "7");
    }
    CLoaders loader;
    CFields tree;
    EXPECT_FALSE(load(loader, header(5, 10), tree));
    EXPECT_EQ(withoutLine(loader.getLastErrMsg()), unknownRule(-1));
}

TEST(Loaders, handRulesZeroAndOneToTheTextLoader)
{
    for (const int flags : {0, 1, 2, 3})
    {
        CLoaders loader;
        CFields tree;
        EXPECT_FALSE(load(loader, header(flags), tree));
        EXPECT_EQ(loader.getLastErrMsg(), errorAt(1, 1, s_cpNoName)) << flags;
    }
}

TEST(Loaders, takeOverCodeMessageAndRangesOfAFailure)
{
    CLoaders loader;
    CFields tree;
    EXPECT_FALSE(load(loader, "[1,@]", tree));
    EXPECT_EQ(loader.getLastErrCode(), 0);
    EXPECT_EQ(loader.getLastErrMsg(), errorAt(1, 4, s_cpNoValue));
    EXPECT_FALSE(loader.getStatus());
    ASSERT_EQ(loader.getErrorRanges().size(), 1u);
    EXPECT_EQ(loader.getErrorRanges()[0].m_uiStart, 3u);
    EXPECT_EQ(loader.getErrorRanges()[0].m_uiEnd, 4u);
}

TEST(Loaders, takeOverAMessageOfAnyLength)
{
    CLoaders loader(LCBC_ROOT_CONTAINER | LCBC_COMMENT);
    CFields tree;
    EXPECT_FALSE(load(loader, "    @   ", tree));
    EXPECT_EQ(loader.getLastErrMsg(),
              errorAt(1, 5, s_cpNoName) +
                  errorAt(1, 1, "A valid MURV document must be either an DT_array or an DT_fields type."));
}

TEST(Loaders, startAfreshWithEachLoad)
{
    CLoaders loader;
    CFields tree;
    EXPECT_FALSE(load(loader, "[1,@]", tree));
    EXPECT_TRUE(load(loader, "[1,2]", tree));
    EXPECT_EQ(loader.getLastErrMsg(), "");
    EXPECT_TRUE(loader.getStatus());
    EXPECT_TRUE(loader.getErrorRanges().empty());
}

TEST(Loaders, passTheirConfigurationOn)
{
    CLoaders loader(0);
    CFields tree;
    EXPECT_FALSE(load(loader, "{   }", tree));
    loader.setLCBC(LCBC_EMPTY_NULL);
    EXPECT_TRUE(load(loader, "{   }", tree));
    loader.setLCBC(LCBC_NUMBER_NAME);
    EXPECT_TRUE(load(loader, "{7=1}", tree));
    EXPECT_EQ(show(tree), "{7=1}");
}

TEST(Loaders, passTheCommentSwitchOn)
{
    CLoaders loader;
    CFields tree;
    EXPECT_TRUE(loader.loading("5 // c", tree, nullptr, false));
    EXPECT_EQ(show(tree), "5");
    EXPECT_TRUE(loader.loading("5 // c", tree, nullptr, true));
    EXPECT_EQ(show(tree), "5<1:// c>");
}

TEST(Loaders, statusLooksAtCodeAndMessage)
{
    CLoaders loader;
    EXPECT_TRUE(loader.getStatus());
    loader.addErrMsg("text");
    EXPECT_FALSE(loader.getStatus());
    loader.clearError();
    loader.setFixError(-991);
    EXPECT_FALSE(loader.getStatus());
}

TEST(Loaders, copiesCarryTheirState)
{
    const std::string data = "[1,@]";
    CLoaders loader(0x12);
    CFields tree;
    EXPECT_FALSE(load(loader, data, tree));
    CLoaders copy(loader);
    CLoaders assigned;
    assigned = loader;
    for (CLoaders* const other : {&copy, &assigned})
    {
        EXPECT_EQ(other->getLCBC(), 0x12u);
        EXPECT_EQ(other->getLastErrMsg(), loader.getLastErrMsg());
        ASSERT_EQ(other->getErrorRanges().size(), 1u);
        EXPECT_EQ(other->getErrorRanges()[0].m_uiStart, 3u);
        EXPECT_TRUE(load(*other, "[1,2]", tree));
    }
    EXPECT_FALSE(loader.getStatus());
}

TEST(Loaders, refuseTooMuchData)
{
    CLoaders loader;
    CFields tree(7);
    EXPECT_FALSE(loader.loadit("[1]", 2147483648u, tree));
    EXPECT_EQ(loader.getLastErrCode(), -991);
    EXPECT_EQ(withoutLine(loader.getLastErrMsg()), "[murv::CLoaders::loadit#0] Too big data size(2147483648)");
    EXPECT_EQ(show(tree), "7");
}

TEST(Loaders, forgetOlderErrorsWhenTheyRefuseTooMuchData)
{
    CLoaders front;
    CLoader4SER text;
    CLoader4BER binary;
    const std::string file = CSaver4BER_BASIC().saving(CFields("text"), SAVE_ALL).substr(0, 40);
    CFields tree;
    ASSERT_FALSE(front.loading("[1 2]", tree));
    ASSERT_FALSE(text.loading("[1 2]", tree));
    ASSERT_FALSE(binary.loading(file, tree));
    for (ILoaderBase* const loader :
         {static_cast<ILoaderBase*>(&front), static_cast<ILoaderBase*>(&text), static_cast<ILoaderBase*>(&binary)})
    {
        // NOLINTNEXTLINE(bugprone-string-constructor): never read
        EXPECT_FALSE(loader->loading(std::string_view("[1]", 2147483648u), tree));
        EXPECT_EQ(withoutLine(loader->getLastErrMsg()), "[murv::ILoaderBase::loading#0] Too big data size(2147483648)");
    }
    EXPECT_TRUE(front.getErrorRanges().empty());
    EXPECT_TRUE(text.getErrorRanges().empty());
    EXPECT_TRUE(binary.getErrorRanges().empty());
}

TEST(Loaders, letTheDepthExceptionPass)
{
    CLoaders loader;
    CFields tree;
    EXPECT_EQ(thrown([&] { loader.loading(repeated("[", 2000), tree); }),
              "[murv::CLoader4SER::loadFieldInfo#0] Exceeded s_cnStackDepthLimit");
    EXPECT_TRUE(loader.loading("[1,2]", tree));
}

TEST(StreamIn, readsAWholeStream)
{
    std::istringstream in("{\"a\" = 1, // c\n\"b\" = {}}");
    CFields tree;
    EXPECT_EQ(&(in >> tree), &in);
    EXPECT_EQ(show(tree), "{a=1<1:// c>,b={null}}");
    EXPECT_TRUE(in.eof());
}

TEST(StreamIn, readsOneDocumentAfterTheOther)
{
    std::istringstream in("[1,2]\xFF[3,4]\xFF");
    CFields first;
    CFields second;
    in >> first >> second;
    EXPECT_EQ(show(first), "[1,2]");
    EXPECT_EQ(show(second), "[3,4]");
}

TEST(StreamIn, saysWhatIsWrongAndThrows)
{
    std::istringstream in("[1,@]");
    CFields tree;
    testing::internal::CaptureStderr();
    const std::string message = thrown([&] { in >> tree; });
    const std::string printed = testing::internal::GetCapturedStderr();
    EXPECT_EQ(message, "[murv::operator >>#0] " + errorAt(1, 4, s_cpNoValue));
    EXPECT_EQ(withoutLine(printed), message);
}

TEST(StreamIn, throwsForAnEmptyStream)
{
    std::istringstream in("");
    CFields tree;
    testing::internal::CaptureStderr();
    EXPECT_EQ(thrown([&] { in >> tree; }), "[murv::operator >>#0] ");
    EXPECT_EQ(withoutLine(testing::internal::GetCapturedStderr()), "[murv::operator >>#0] \n");
}
