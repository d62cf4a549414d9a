// tests/layout/stock/ach_test.cpp - payment files of the United States.
//
// The files were made by other programs. What they must say is in them: entry hash, counts and totals in the records 8
// and 9 are compared by the layout, and the names of broken files say what is wrong with them.
#include "murv/records.h"
#include "tests/layout/stock/stock_helpers.h"

namespace murv::tests
{

namespace
{

tReading achReading(const std::string& file)
{
    return reading(installed("ach"), sample("ach/" + file));
}

/// The sum of the amounts in columns 30 to 39 of the entries whose transaction code ends as debits or credits do.
unsigned long long amountSum(const std::string& bytes, bool debits)
{
    unsigned long long sum = 0;
    for (const std::string& line : linesOf(bytes))
    {
        if (line[0] == '6' && (line[2] >= '5') == debits)
            sum += std::stoull(line.substr(29, 10));
    }
    return sum;
}

/// Cents as the layout shows them.
std::string dollars(unsigned long long cents)
{
    const std::string digits = std::to_string(cents % 100);
    return std::to_string(cents / 100) + "." + (digits.size() < 2 ? "0" : "") + digits;
}

}  // namespace

TEST(ACH, validFilesComeBackWithoutFindings)
{
    const CLayout layout = installed("ach");
    for (const char* name : {"arc-debit", "ccd-debit", "contested-return", "cor-read", "ctx-debit", "dishonored-return",
                             "dne-read", "enr-read", "iat-mixedCreditDebit", "ppd-credit", "ppd-debit",
                             "ppd-mixedDebitCredit", "tel-debit", "web-credit"})
    {
        SCOPED_TRACE(name);
        const std::string bytes = sample(std::string("ach/") + name + ".ach");
        const CFields tree = thereAndBack(layout, bytes);
        EXPECT_EQ(at(tree, "file control.debits"), dollars(amountSum(bytes, true)));
        EXPECT_EQ(at(tree, "file control.credits"), dollars(amountSum(bytes, false)));
    }
}

TEST(ACH, batchCountOfARealFileDiffers)
{
    // The file says five batches and has four.
    const std::string bytes = sample("ach/20110805A.ach");
    const CLayout layout = installed("ach");
    const tReading result = reading(layout, bytes);
    ASSERT_TRUE(result.m_bRead) << result.m_tFault.m_strMessage;
    EXPECT_EQ(places(result.m_vFindings), std::vector<std::string>{"total at 8741 (file control.batch count)"});
    std::string repaired = bytes;
    repaired.replace(8741, 6, "000004");
    EXPECT_EQ(making(layout, result.m_tTree, result.m_tOptions), repaired);
    EXPECT_EQ(countAt(result.m_tTree, "batches"), 4u);
    expectValues(result.m_tTree, {{"batches.0.header.company", "EXAMPLE COMPANY"},
                                  {"batches.0.entries.0.entry.amount", "270.00"},
                                  {"batches.0.entries.0.entry.receiver", "JULIAN PRICE"},
                                  {"batches.0.entries.24.entry.trace", "042000010000025"}});
}

TEST(ACH, entriesHaveTheirAddenda)
{
    const CFields change = achReading("cor-read.ach").m_tTree;
    expectValues(change, {{"batches.0.entries.0.addenda.0.change.reason", "C01"},
                          {"batches.0.entries.0.addenda.0.change.original trace", "121042880000001"},
                          {"batches.0.entries.0.addenda.0.change.corrected", "1918171614"}});
    const CFields exchange = achReading("ctx-debit.ach").m_tTree;
    EXPECT_EQ(countAt(exchange, "batches.0.entries.0.addenda"), 2u);
    EXPECT_EQ(at(exchange, "batches.0.entries.0.addenda.1.other.text"), "Debit Second Account");
}

TEST(ACH, recordOfTooManyBytesIsRefusedAlone)
{
    // One name has a character of two bytes, so its record has 95.
    const std::string bytes = sample("ach/extended-ascii.ach");
    const tReading result = achReading("extended-ascii.ach");
    EXPECT_FALSE(result.m_bRead);
    EXPECT_EQ(result.m_tFault.m_eCode, PF_frame);
    EXPECT_EQ(result.m_tFault.m_ullOffset, bytes.find("627121042882191759324"));
    EXPECT_EQ(result.m_tFault.m_ullLength, 95u);

    const CLayout layout = installed("ach");
    CRecordReader records(layout);
    records.open(bytes);
    for (;;)
    {
        const E_RecordResult next = records.next();
        if (next == RR_end || (next == RR_fault && !records.skip()))
            break;
    }
    EXPECT_EQ(records.getCounts().m_ullDamaged, 1u);
    EXPECT_EQ(records.getCounts().m_ullRecords, linesOf(bytes).size() - 1);
}

TEST(ACH, batchHeaderBeforeTheFileHeaderIsRefusedThere)
{
    const tReading result = achReading("invalid/1e5RecordBefore1or8.txt");
    EXPECT_FALSE(result.m_bRead);
    EXPECT_EQ(place(result.m_tFault), "literal at 0 (file header.type)");
}

TEST(ACH, recordThatEndsTheFileTooEarlyIsRefusedThere)
{
    const tReading result = achReading("invalid/1k8RecordFollowing9Record.txt");
    EXPECT_FALSE(result.m_bRead);
    EXPECT_EQ(result.m_tFault.m_eCode, PF_frame);
    EXPECT_EQ(result.m_tFault.m_ullOffset, 9u * 95);
    EXPECT_EQ(result.m_tFault.m_strBytes.substr(0, 10), "**********");  // the line may hold an account
}

TEST(ACH, wrongFormatCodeIsFound)
{
    const tReading result = achReading("invalid/1qFormatCodeIncorrect.txt");
    EXPECT_TRUE(result.m_bRead);
    EXPECT_EQ(places(result.m_vFindings), std::vector<std::string>{"invalid at 39 (file header.format)"});
}

TEST(ACH, companyOfZerosIsFound)
{
    const tReading result = achReading("invalid/2lCompanyNameAllZeros.txt");
    EXPECT_TRUE(result.m_bRead);
    EXPECT_EQ(places(result.m_vFindings), std::vector<std::string>{"invalid at 99 (batches[0].header.company)"});
}

TEST(ACH, entryCountOfAnotherFileControlIsFound)
{
    const tReading result = achReading("invalid/adv-invalidFileControl.ach");
    EXPECT_TRUE(result.m_bRead);
    EXPECT_EQ(places(result.m_vFindings), std::vector<std::string>{"total at 488 (file control.entry count)"});
}

TEST(ACH, shortFileControlIsRefusedThere)
{
    const std::string bytes = sample("ach/invalid/iat-invalidAddenda10.ach");
    const tReading result = achReading("invalid/iat-invalidAddenda10.ach");
    EXPECT_FALSE(result.m_bRead);
    EXPECT_EQ(result.m_tFault.m_eCode, PF_frame);
    EXPECT_EQ(result.m_tFault.m_ullOffset, bytes.find("\n9000002") + 1);
}

TEST(ACH, accountsAreMaskedInFaults)
{
    std::string bytes = sample("ach/ppd-debit.ach");
    const std::size_t account = bytes.find("123456789        0200000000");
    ASSERT_NE(account, std::string::npos);
    bytes[account + 17] = 'x';
    const tReading result = reading(installed("ach"), bytes);
    EXPECT_EQ(place(result.m_tFault),
              "digits at " + std::to_string(account + 17) + " (batches[0].entries[0].entry.amount)");
    EXPECT_EQ(result.m_tFault.m_strBytes, "x200000000");
}

}  // namespace murv::tests
