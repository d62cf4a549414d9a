// tests/core/error_test.cpp - the error state and of how misuse is thrown.
//
// The table of codes is spelled out once more here: its texts have shipped, so a change of the table must be noticed.
#include "murv/error.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "core/error_table.h"
#include "core/throw.h"
#include "tests/support/thrown.h"

namespace
{

using murv::CException;
using murv::CLogicError;
using murv::tests::thrown;

struct tExpectedRow
{
    int m_iCode;
    const char* m_pText;
};

constexpr tExpectedRow s_ctExpected[] = {
    {1, "[WRN] The working failed"},
    {2, "[WRN] Timeout occured"},
    {3, "[WRN] Blocking a function"},
    {0, "[OK] Succeeded"},
    {-1000, "[SYS] Fatal error"},
    {-999, "[SYS] Runtime error"},
    {-998, "[SYS] Unknown value"},
    {-997, "[SYS] Invalid value"},
    {-996, "[SYS] Bad value"},
    {-995, "[SYS] The value was not exist"},
    {-994, "[SYS] Unknown version"},
    {-993, "[SYS] Invalid memory"},
    {-992, "[SYS] The memory pointer was NULL"},
    {-991, "[SYS] Invalid parameter"},
    {-990, "[SYS] Bad parameter"},
    {-989, "[SYS] Invalid command"},
    {-988, "[SYS] Bad command"},
    {-987, "[SYS] Invalid data"},
    {-986, "[SYS] Bad data"},
    {-985, "[SYS] Could not create the thread"},
    {-984, "[SYS] Failed to close the thread"},
    {-983, "[SYS] Not exist directory"},
    {-1200, "[SOCK] WSAStartup failed"},
    {-1199, "[SOCK] Creation failed"},
    {-1198, "[SOCK] Failed to the NonBlock"},
    {-1197, "[SOCK] Failed to get the hostinfo"},
    {-1196, "[SOCK] Failed to the bind"},
    {-1195, "[SOCK] Failed to the listen"},
    {-1194, "[SOCK] Failed to the accept"},
    {-1193, "[SOCK] Failed to the connection"},
    {-1192, "[SOCK] Failed to sending the data"},
    {-1191, "[SOCK] Failed to receiving the data"},
    {-1190, "[SOCK] Failed to close"},
    {-1300, "[AUTH] The ID was not exist"},
    {-1299, "[AUTH] The ID was too short"},
    {-1298, "[AUTH] The ID was too long"},
    {-1297, "[AUTH] Invalid password"},
    {-1296, "[AUTH] The password was too short"},
    {-1295, "[AUTH] The password was too long"},
    {-1294, "[AUTH] The same account already exist"},
    {-1293, "[AUTH] Invalid domain-ID"},
    {-1292, "[AUTH] The same domain-ID already exist"},
    {-1500, "[SEC] Failed to set the key"},
    {-1499, "[SEC] Failed to the data encryption"},
    {-1498, "[SEC] Failed to the data decryption"},
    {-2000, "[NET] Unknown packet"},
    {-1999, "[NET] Fault check-sum"},
    {-1998, "[NET] Invalid CRC"},
    {-1997, "[NET] The session was not exist"},
    {-1996, "[NET] Could not make the sending packet"},
    {-1995, "[NET] "},
    {-13000, "[DB] SQL syntax error"},
};

TEST(ErrorTable, holdsItsRowsInOrder)
{
    ASSERT_EQ(52u, std::size(murv::detail::s_ctErrors));
    for (std::size_t i = 0; i < std::size(s_ctExpected); ++i)
    {
        EXPECT_EQ(s_ctExpected[i].m_iCode, murv::detail::s_ctErrors[i].m_iCode) << "row " << i;
        EXPECT_STREQ(s_ctExpected[i].m_pText, murv::detail::s_ctErrors[i].m_cText) << "row " << i;
    }
}

TEST(ErrorTable, aRowHasRoomFor47Characters)
{
    static_assert(sizeof murv::detail::s_ctErrors[0].m_cText == 48);
    for (const murv::detail::tErrorRow& row : murv::detail::s_ctErrors)
        EXPECT_LE(std::strlen(row.m_cText), 47u) << row.m_iCode;
}

TEST(ErrorBase, beginsWithoutError)
{
    const CErrorBase error;
    EXPECT_FALSE(error.isError());
    EXPECT_EQ(0, error.getLastErrCode());
    EXPECT_EQ("", error.getLastErrMsg());
}

TEST(ErrorBase, fixErrorTakesCodeAndTextFromTheTable)
{
    for (const tExpectedRow& row : s_ctExpected)
    {
        CErrorBase error;
        EXPECT_TRUE(error.setFixError(row.m_iCode));
        EXPECT_EQ(row.m_iCode, error.getLastErrCode());
        EXPECT_EQ(row.m_pText, error.getLastErrMsg());
    }
}

TEST(ErrorBase, fixErrorZeroIsAnErrorByItsMessage)
{
    CErrorBase error;
    EXPECT_TRUE(error.setFixError(0));
    EXPECT_EQ("[OK] Succeeded", error.getLastErrMsg());
    EXPECT_EQ(0, error.getLastErrCode());
    EXPECT_TRUE(error.isError());
}

TEST(ErrorBase, fixErrorMayCarryItsGroupTagAlone)
{
    CErrorBase error;
    EXPECT_TRUE(error.setFixError(-1995));
    EXPECT_EQ("[NET] ", error.getLastErrMsg());
}

TEST(ErrorBase, unknownFixErrorLeavesThePreviousError)
{
    CErrorBase error;
    error.setUserError(-987, "%s", "before");
    EXPECT_FALSE(error.setFixError(12345));
    EXPECT_EQ(-987, error.getLastErrCode());
    EXPECT_EQ("before", error.getLastErrMsg());
}

TEST(ErrorBase, userErrorSetsCodeAndFormattedMessage)
{
    CErrorBase error;
    EXPECT_TRUE(error.setUserError(-991, "[%s#%d] Unknown encoding rule(%u)", "murv::CSavers::saving", 7, 3u));
    EXPECT_EQ(-991, error.getLastErrCode());
    EXPECT_EQ("[murv::CSavers::saving#7] Unknown encoding rule(3)", error.getLastErrMsg());
    EXPECT_TRUE(error.isError());
}

TEST(ErrorBase, userErrorTakesCodesOutsideTheTable)
{
    CErrorBase error;
    EXPECT_TRUE(error.setUserError(77777, "x"));
    EXPECT_EQ(77777, error.getLastErrCode());
}

TEST(ErrorBase, codeAloneIsAnError)
{
    CErrorBase error;
    error.setUserError(-1, "x");
    EXPECT_TRUE(error.isError());
    error.setUserError(0, "x");
    EXPECT_TRUE(error.isError());
}

TEST(ErrorBase, emptyMessageIsRefused)
{
    CErrorBase error;
    EXPECT_FALSE(error.setUserError(-991, ""));
    EXPECT_FALSE(error.isError());
    error.setUserError(-987, "before");
    EXPECT_FALSE(error.setUserError(-991, "%s", ""));
    EXPECT_FALSE(error.setErrMsg("%s", ""));
    EXPECT_EQ(-987, error.getLastErrCode());
    EXPECT_EQ("before", error.getLastErrMsg());
}

TEST(ErrorBase, nullFormatIsRefused)
{
    CErrorBase error;
    const char* const null = nullptr;
    EXPECT_FALSE(error.setUserError(-991, null));
    EXPECT_FALSE(error.setErrMsg(null));
    EXPECT_FALSE(error.isError());
}

TEST(ErrorBase, messageThatCannotBeMadeLeavesErrno)
{
    const wchar_t none[] = {static_cast<wchar_t>(0x110000), 0};
    CErrorBase error;
    errno = 5;
    EXPECT_FALSE(error.setErrMsg("%ls", none));
    EXPECT_EQ(5, errno);
}

TEST(ErrorBase, messageReplacesAndKeepsTheCode)
{
    CErrorBase error;
    error.setUserError(-987, "before");
    EXPECT_TRUE(error.setErrMsg("after %d", 5));
    EXPECT_EQ(-987, error.getLastErrCode());
    EXPECT_EQ("after 5", error.getLastErrMsg());
}

TEST(ErrorBase, messageHasAtMost511Characters)
{
    CErrorBase error;
    error.setUserError(-987, "before");
    const std::string longest(511, 'x');
    EXPECT_FALSE(error.setErrMsg("%s", std::string(512, 'x').c_str()));
    EXPECT_FALSE(error.setErrMsg("%s", std::string(600, 'x').c_str()));
    EXPECT_FALSE(error.setUserError(-1, "%s", std::string(512, 'x').c_str()));
    EXPECT_EQ("before", error.getLastErrMsg());
    EXPECT_EQ(-987, error.getLastErrCode());
    EXPECT_TRUE(error.setErrMsg("%s", longest.c_str()));
    EXPECT_EQ(longest, error.getLastErrMsg());
}

TEST(ErrorBase, messageMayBeMadeOfItself)
{
    CErrorBase error;
    error.setErrMsg("inner");
    EXPECT_TRUE(error.setErrMsg("outer %s", error.getLastErrMsg().c_str()));
    EXPECT_EQ("outer inner", error.getLastErrMsg());
}

bool setThroughList(CErrorBase& error, const char* format, ...) MURV_PRINTF(2, 3);
bool setThroughList(CErrorBase& error, const char* format, ...)
{
    va_list args;
    va_start(args, format);
    const bool done = error.setErrMsgVA(format, args);
    va_end(args);
    return done;
}

TEST(ErrorBase, messageFromAnArgumentListLeavesTheCode)
{
    CErrorBase error;
    error.setFixError(-990);
    EXPECT_TRUE(setThroughList(error, "%s %d", "list", 3));
    EXPECT_EQ("list 3", error.getLastErrMsg());
    EXPECT_EQ(-990, error.getLastErrCode());
    EXPECT_FALSE(setThroughList(error, "%s", ""));
    EXPECT_EQ("list 3", error.getLastErrMsg());
}

TEST(ErrorBase, addingAppendsAsItIs)
{
    CErrorBase error;
    error.addErrMsg(nullptr);
    EXPECT_FALSE(error.isError());
    error.addErrMsg("x");
    error.addErrMsg("x");
    EXPECT_EQ("xx", error.getLastErrMsg());
    EXPECT_EQ(0, error.getLastErrCode());
    error.addErrMsg(std::string(1000, 'y').c_str());
    EXPECT_EQ(1002u, error.getLastErrMsg().size());
}

TEST(ErrorBase, clearingEndsTheError)
{
    CErrorBase error;
    error.setFixError(-991);
    error.clearError();
    EXPECT_FALSE(error.isError());
    EXPECT_EQ(0, error.getLastErrCode());
    EXPECT_EQ("", error.getLastErrMsg());
}

TEST(ErrorBase, copiesCarryCodeAndMessage)
{
    CErrorBase error;
    error.setFixError(-991);
    const CErrorBase copy(error);
    EXPECT_EQ(-991, copy.getLastErrCode());
    EXPECT_EQ("[SYS] Invalid parameter", copy.getLastErrMsg());
    CErrorBase assigned;
    assigned = copy;
    EXPECT_EQ(-991, assigned.getLastErrCode());
    EXPECT_EQ("[SYS] Invalid parameter", assigned.getLastErrMsg());
    CErrorBase& self = assigned;
    assigned = self;
    EXPECT_EQ(-991, assigned.getLastErrCode());
    EXPECT_EQ("[SYS] Invalid parameter", assigned.getLastErrMsg());
}

TEST(ErrorBase, hasOneClassUnderTwoNames)
{
    static_assert(std::is_same_v<::CErrorBase, murv::CErrorBase>);
    murv::CErrorBase error;
    error.setFixError(-991);
    ::CErrorBase& same = error;
    EXPECT_EQ(-991, same.getLastErrCode());
}

TEST(ErrorBase, isDestroyedThroughItsBase)
{
    static_assert(std::has_virtual_destructor_v<CErrorBase>);
    static_assert(std::has_virtual_destructor_v<CException>);
    static_assert(std::has_virtual_destructor_v<CLogicError>);
    struct tCounting : CErrorBase
    {
        explicit tCounting(int& gone) : m_iGone(gone)
        {
        }
        ~tCounting() override
        {
            ++m_iGone;
        }
        int& m_iGone;
    };
    int gone = 0;
    std::unique_ptr<CErrorBase>(new tCounting(gone)).reset();
    EXPECT_EQ(1, gone);
}

struct tClearing : CErrorBase
{
    int m_iCleared = 0;
    void clearError() override
    {
        ++m_iCleared;
        CErrorBase::clearError();
    }
};

TEST(ErrorBase, clearingIsVirtual)
{
    tClearing error;
    static_cast<CErrorBase&>(error).clearError();
    EXPECT_EQ(1, error.m_iCleared);
}

TEST(LogicError, isAStandardExceptionWithItsMessage)
{
    static_assert(std::is_base_of_v<std::exception, CException>);
    static_assert(std::is_base_of_v<CException, CLogicError>);
    const CLogicError error("what happened");
    const std::exception& base = error;
    EXPECT_STREQ("what happened", base.what());
    const CLogicError copy = error;
    EXPECT_STREQ("what happened", copy.what());
}

std::string formatted(const char* format, ...) MURV_PRINTF(1, 2);
std::string formatted(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    std::string text = murv::detail::formatString(format, args);
    va_end(args);
    return text;
}

TEST(FormatString, takesUpTo255Characters)
{
    EXPECT_EQ("a 5", formatted("%s %d", "a", 5));
    EXPECT_EQ(std::string(255, 'x'), formatted("%s", std::string(255, 'x').c_str()));
    EXPECT_EQ("", formatted("%s", std::string(256, 'x').c_str()));
}

TEST(FormatString, nullFormatGivesNothing)
{
    const char* const null = nullptr;
    EXPECT_EQ("", formatted(null));
}

TEST(ThrowLogicError, carriesTheFormattedText)
{
    EXPECT_EQ("[f#0] text 3", thrown([] { murv::detail::throwLogicError("[%s#%d] text %d", "f", 12, 3); }));
}

TEST(ThrowLogicError, placeIsTheLineOfTheCall)
{
    const int line = __LINE__ + 3;
    try
    {
        murv::detail::throwAt("murv::x", "text");
    }
    catch (const CLogicError& error)
    {
        EXPECT_EQ("[murv::x#" + std::to_string(line) + "] text", error.what());
        return;
    }
    FAIL() << "nothing was thrown";
}

TEST(ThrowLogicError, numbersTakeTheirPlacesInTheText)
{
    EXPECT_EQ("[f#0] a(-1)", thrown([] { murv::detail::throwAt("f", "a(%d)", -1); }));
    EXPECT_EQ("[f#0] a(1) b(2)", thrown([] { murv::detail::throwAt("f", "a(%d) b(%d)", 1, 2); }));
}

TEST(ThrowLogicError, mismatchHasNoPlace)
{
    EXPECT_EQ("mismatched condition", thrown([] { murv::detail::throwMismatch(); }));
}

TEST(ThrowLogicErrorDeathTest, emptyTextEndsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(murv::detail::throwLogicError("%s", ""), "");
    EXPECT_DEATH(murv::detail::throwLogicError("%s", std::string(300, 'x').c_str()), "");
}

}  // namespace
