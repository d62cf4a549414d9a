// tests/io/loader_common_test.cpp - parse stack, look-ups along it, and the error list.
#include <gtest/gtest.h>

#include <sstream>

#include "io/load.h"
#include "murv/loader.h"
#include "tests/support/containers.h"

using namespace murv;

namespace
{

/// A loader that does nothing, with everything within reach.
class COpenLoader : public ILoaderCommon
{
public:
    explicit COpenLoader(unsigned int flags = LCBC_COMMENT | LCBC_EMPTY_NULL) : ILoaderCommon(flags)
    {
    }
    bool loadit(const char* data, unsigned int size, CFields& target, const char* password, bool comments) override
    {
        m_strAsked = std::string(data == nullptr ? "(null)" : data, data == nullptr ? 6 : size) + "|" +
                     (password == nullptr ? "(null)" : password) + "|" + (comments ? "comments" : "none");
        startLoad(data, size, target, comments);
        finishLoad(target, m_bGood);
        return m_bGood;
    }

    using ILoaderCommon::addChild2StackTop;
    using ILoaderCommon::addRecord;
    using ILoaderCommon::finishLoad;
    using ILoaderCommon::getLastCommentField4Stack;
    using ILoaderCommon::getLastField4Stack;
    using ILoaderCommon::getLastThirdField4Stack;
    using ILoaderCommon::getLoadErrors;
    using ILoaderCommon::getStackTopField;
    using ILoaderCommon::m_bComment;
    using ILoaderCommon::m_pLoad;
    using ILoaderCommon::pushError;
    using ILoaderCommon::startLoad;

    std::string m_strAsked;
    bool m_bGood = true;
};

CFields range(int start, int end)
{
    CFields node;
    node.setOffsetStart(start);
    node.setOffsetEnd(end);
    return node;
}

}  // namespace

TEST(LoaderCommon, stackHoldsTheTargetDuringALoadAndNothingAfterwards)
{
    COpenLoader loader;
    CFields target;
    loader.startLoad("abc", 3, target, true);
    EXPECT_EQ(loader.getStackTopField(), &target);
    EXPECT_EQ(loader.m_pLoad->m_vStack.size(), 1u);
    loader.finishLoad(target, true);
    EXPECT_TRUE(loader.m_pLoad->m_vStack.empty());
}

TEST(LoaderCommon, anOwnLoaderAddsToTheStackTop)
{
    COpenLoader loader;
    CFields target;
    loader.startLoad("abc", 3, target, true);
    CFields* const member = loader.addChild2StackTop("a", 7);
    ASSERT_NE(member, nullptr);
    EXPECT_EQ(loader.addChild2StackTop("a", 0), member);
    EXPECT_EQ(target["a"].getID(), 7u);
    EXPECT_NE(loader.addChild2StackTop(nullptr, 0), nullptr);
    EXPECT_EQ(target.getChildCount(), 2u);
    target.setID(5);
    EXPECT_EQ(loader.addChild2StackTop("x", 5), nullptr);
    loader.setLCBC(LCBC_DUPLICATE);
    EXPECT_NE(loader.addChild2StackTop("a", 0), member);
    loader.finishLoad(target, true);
}

TEST(LoaderCommon, commentsAreKeptWhenConfigurationAndCallerAgree)
{
    CFields target;
    for (const bool tolerated : {false, true})
    {
        for (const bool wanted : {false, true})
        {
            COpenLoader loader(tolerated ? 0x30u : 0x20u);
            loader.startLoad("", 0, target, wanted);
            EXPECT_EQ(loader.m_bComment, tolerated && wanted);
        }
    }
}

TEST(LoaderCommon, aFailedLoadEmptiesContainersOnly)
{
    COpenLoader loader;
    CFields array = tests::countedArray(3);
    array.setOffsetStart(4);
    loader.startLoad("", 0, array, true);
    loader.finishLoad(array, false);
    EXPECT_EQ(array.getChildCount(), 0u);
    EXPECT_EQ(array.getOffsetStart(), 0);
    CFields scalar(7);
    scalar.setOffsetStart(4);
    loader.startLoad("", 0, scalar, true);
    loader.finishLoad(scalar, false);
    EXPECT_EQ(scalar.asSint32(), 7);
    EXPECT_EQ(scalar.getOffsetStart(), 4);
}

TEST(LoaderCommon, lastFieldIsTheLastMemberOfTheTop)
{
    COpenLoader loader;
    EXPECT_EQ(loader.getLastField4Stack(), nullptr);
    CFields array = tests::countedArray(3);
    loader.m_pLoad->m_vStack = {&array};
    EXPECT_EQ(loader.getLastField4Stack(), &array[2]);
}

TEST(LoaderCommon, lastFieldIsTheTopItselfWithoutMembers)
{
    COpenLoader loader;
    CFields array = tests::countedArray(3);
    CFields scalar(1);
    CFields empty(DT_fields);
    loader.m_pLoad->m_vStack = {&array, &scalar};
    EXPECT_EQ(loader.getLastField4Stack(), &scalar);
    loader.m_pLoad->m_vStack = {&array, &empty};
    EXPECT_EQ(loader.getLastField4Stack(), &empty);
}

TEST(LoaderCommon, lastFieldSkipsNullEntries)
{
    COpenLoader loader;
    CFields array = tests::countedArray(1);
    loader.m_pLoad->m_vStack = {&array, nullptr, nullptr};
    EXPECT_EQ(loader.getLastField4Stack(), &array[0]);
    loader.m_pLoad->m_vStack = {nullptr};
    EXPECT_EQ(loader.getLastField4Stack(), nullptr);
}

// The order: members of the top from last to first, the top, members of the entry below, that entry, and so on.
TEST(LoaderCommon, lastThirdFieldIsTwoPlacesBack)
{
    COpenLoader loader;
    CFields three = tests::countedArray(3);
    loader.m_pLoad->m_vStack = {&three};
    EXPECT_EQ(loader.getLastThirdField4Stack(), &three[1]);
    CFields one = tests::countedArray(1);
    loader.m_pLoad->m_vStack = {&three, &one};
    EXPECT_EQ(loader.getLastThirdField4Stack(), &one);
    CFields scalar(1);
    loader.m_pLoad->m_vStack = {&three, &scalar};
    EXPECT_EQ(loader.getLastThirdField4Stack(), &three[2]);
    CFields empty(DT_array);
    loader.m_pLoad->m_vStack = {&three, &empty, &scalar};
    EXPECT_EQ(loader.getLastThirdField4Stack(), &empty);
    loader.m_pLoad->m_vStack = {&empty, nullptr, &scalar, nullptr};
    EXPECT_EQ(loader.getLastThirdField4Stack(), &empty);
}

TEST(LoaderCommon, lastThirdFieldIsNullWhereTheStackIsTooShort)
{
    COpenLoader loader;
    EXPECT_EQ(loader.getLastThirdField4Stack(), nullptr);
    CFields scalar(1);
    loader.m_pLoad->m_vStack = {&scalar};
    EXPECT_EQ(loader.getLastThirdField4Stack(), nullptr);
    loader.m_pLoad->m_vStack = {nullptr, &scalar, nullptr};
    EXPECT_EQ(loader.getLastThirdField4Stack(), nullptr);
}

TEST(LoaderCommon, lastCommentFieldIsTheLastMemberWithAComment)
{
    COpenLoader loader;
    CFields outer = tests::countedArray(3);
    CFields inner = tests::countedArray(3);
    CFields scalar(1);
    scalar.setComment("/*not a member*/", CP_before);
    loader.m_pLoad->m_vStack = {&outer, nullptr, &inner, &scalar};
    EXPECT_EQ(loader.getLastCommentField4Stack(), nullptr);
    outer[0].setComment("/*c*/", CP_trailing);
    EXPECT_EQ(loader.getLastCommentField4Stack(), &outer[0]);
    inner[0].setComment("/*c*/", CP_after);
    inner[1].setComment("/*c*/", CP_before);
    EXPECT_EQ(loader.getLastCommentField4Stack(), &inner[1]);
}

TEST(LoaderCommon, errorsOfNodesTakeTheirRange)
{
    COpenLoader loader;
    CFields target;
    loader.startLoad("0123456789", 10, target, true);
    EXPECT_TRUE(loader.getStatus());
    EXPECT_TRUE(loader.pushError(range(2, 5), "first"));
    EXPECT_TRUE(loader.pushError(range(10, 10), "second", range(0, 10)));
    const std::vector<tErrorRange> errors = loader.getLoadErrors();
    ASSERT_EQ(errors.size(), 2u);
    EXPECT_EQ(errors[0].m_uiStart, 2u);
    EXPECT_EQ(errors[0].m_uiEnd, 5u);
    EXPECT_EQ(errors[0].m_strMessage, "first");
    EXPECT_EQ(errors[1].m_uiStart, 10u);
    EXPECT_EQ(errors[1].m_uiEnd, 10u);
    EXPECT_FALSE(loader.getStatus());
}

TEST(LoaderCommon, errorsOutsideTheDataAreNotRecorded)
{
    COpenLoader loader;
    CFields target;
    loader.startLoad("0123456789", 10, target, true);
    EXPECT_FALSE(loader.pushError(range(11, 11), "m"));
    EXPECT_FALSE(loader.pushError(range(0, 11), "m"));
    EXPECT_FALSE(loader.pushError(range(11, 5), "m"));
    EXPECT_FALSE(loader.pushError(range(0, 5), "m", range(0, 11)));
    EXPECT_FALSE(loader.pushError(range(0, 11), "m", range(0, 5)));
    EXPECT_TRUE(loader.getErrorRanges().empty());
    EXPECT_TRUE(loader.getStatus());
}

TEST(LoaderCommon, statusLooksAtTheErrorListOnly)
{
    COpenLoader loader;
    loader.setUserError(-991, "set by hand");
    EXPECT_TRUE(loader.getStatus());
    loader.addRecord("m", {TT_error, nullptr, nullptr});
    loader.clearError();
    EXPECT_FALSE(loader.getStatus());
}

TEST(LoaderCommon, errorsStayUntilTheNextLoad)
{
    COpenLoader loader;
    CFields target;
    loader.startLoad("0123", 4, target, true);
    loader.pushError(range(1, 2), "m");
    loader.finishLoad(target, false);
    EXPECT_EQ(loader.getErrorRanges().size(), 1u);
    loader.startLoad("0123", 4, target, true);
    EXPECT_TRUE(loader.getErrorRanges().empty());
}

TEST(LoaderCommon, copiesCarryErrorsAndConfiguration)
{
    const char data[] = "0123";
    COpenLoader loader(0x12);
    CFields target;
    loader.startLoad(data, 4, target, true);
    loader.pushError(range(1, 2), "m");
    loader.finishLoad(target, false);
    loader.setUserError(-991, "text");
    const COpenLoader copy(loader);
    COpenLoader assigned(0);
    assigned = loader;
    for (const COpenLoader* const other : {&copy, static_cast<const COpenLoader*>(&assigned)})
    {
        EXPECT_EQ(other->getLCBC(), 0x12u);
        EXPECT_EQ(other->getLastErrMsg(), "text");
        ASSERT_EQ(other->getErrorRanges().size(), 1u);
        EXPECT_EQ(other->getErrorRanges()[0].m_uiStart, 1u);
    }
    COpenLoader& same = assigned;
    assigned = same;
    EXPECT_EQ(assigned.getErrorRanges().size(), 1u);
}

TEST(LoaderCommon, configurationWordIsReplaced)
{
    COpenLoader loader;
    EXPECT_EQ(loader.getLCBC(), 0x30u);
    loader.setLCBC(0x41u);
    EXPECT_EQ(loader.getLCBC(), 0x41u);
    loader.setLCBC(-1);
    EXPECT_EQ(loader.getLCBC(), 0xFFFFFFFFu);
    loader.setLCBC(CLoaderConfig(3));
    EXPECT_EQ(loader.getLCBC(), 3u);
}

TEST(LoaderCommon, loadingPassesItsArgumentsOn)
{
    COpenLoader loader;
    CFields target;
    EXPECT_TRUE(loader.loading(std::string("a\0b", 3), target, "word", false));
    EXPECT_EQ(loader.m_strAsked, std::string("a\0b|word|none", 13));
    EXPECT_TRUE(loader.loading("text", target));
    EXPECT_EQ(loader.m_strAsked, "text|(null)|comments");
    EXPECT_TRUE(loader.loading(std::string_view("view"), target));
    EXPECT_EQ(loader.m_strAsked, "view|(null)|comments");
    loader.m_bGood = false;
    EXPECT_FALSE(loader.loading("text", target));
}

TEST(LoaderCommon, aStreamIsReadToItsEnd)
{
    COpenLoader loader;
    CFields target;
    std::istringstream in(std::string("  a\nb\0c \n", 9));
    EXPECT_TRUE(loader.loading(in, target, "word", true));
    EXPECT_EQ(loader.m_strAsked, std::string("  a\nb\0c \n|word|comments", 23));
    EXPECT_TRUE(in.eof());
    EXPECT_FALSE(in.fail());
}

TEST(LoaderCommon, aStreamIsReadToItsFirstByteOf255)
{
    COpenLoader loader;
    CFields target;
    std::istringstream in("first\xFFsecond\xFF");
    EXPECT_TRUE(loader.loading(in, target));
    EXPECT_EQ(loader.m_strAsked, "first|(null)|comments");
    EXPECT_TRUE(in.good());
    EXPECT_EQ(in.peek(), 's');
    EXPECT_TRUE(loader.loading(in, target));
    EXPECT_EQ(loader.m_strAsked, "second|(null)|comments");
}

TEST(LoaderCommon, aStreamThatGivesNothingFails)
{
    COpenLoader loader;
    CFields target;
    std::istringstream in("");
    loader.loading(in, target);
    EXPECT_EQ(loader.m_strAsked, "|(null)|comments");
    EXPECT_TRUE(in.fail());
    EXPECT_TRUE(in.eof());
    std::istringstream mark("\xFF");
    loader.loading(mark, target);
    EXPECT_TRUE(mark.good());  // the byte itself was read
}
