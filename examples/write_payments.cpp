// write_payments.cpp - writes a file of payments, record by record, by the layout read_payments.murv.
//
// A writer keeps no records, so it cannot know totals: the program adds them up. A wrong one would be a finding.
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "murv/murv.h"
#include "murv/records.h"

int main()
{
    std::ostringstream text;
    text << std::ifstream("read_payments.murv", std::ios::binary).rdbuf();
    murv::CLayout layout;
    if (!layout.compile(text.str()))
        return 1;
    const std::vector<std::pair<std::string, double>> payments = {{"Ada", 125.5}, {"Grace", 25}};
    const unsigned int paymentPart = layout.findPart("payments") + 1;  // the element follows its array
    std::string out;

    murv::CRecordWriter writer(layout);
    murv::CFields header;
    header.addChildRef("day") = 20240229;
    header.addChildRef("bank") = "First Bank";
    bool isWritten = writer.write(layout.findPart("header"), header, out);
    for (const auto& [payee, amount] : payments)
    {
        murv::CFields payment;
        payment.addChildRef("account") = "0001234567";
        payment.addChildRef("amount") = amount;
        payment.addChildRef("payee") = payee;
        isWritten = isWritten && writer.write(paymentPart, payment, out);
    }
    murv::CFields end;
    end.addChildRef("count") = static_cast<int>(payments.size());
    end.addChildRef("sum") = "150.50";
    isWritten = isWritten && writer.write(layout.findPart("end"), end, out) && writer.finish();

    std::cout << out;
    for (const murv::tPacketFault& finding : writer.getFindings())
        std::cout << finding.m_strPath << ": " << finding.m_strMessage << "\n";
    if (!isWritten)
        std::cout << writer.getFault().m_strPath << ": " << writer.getFault().m_strMessage << "\n";
    return isWritten ? 0 : 1;
}
