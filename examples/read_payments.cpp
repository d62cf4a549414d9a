// read_payments.cpp - reads a file of payments, record by record, and goes on after a damaged one.
//
// The layout is read_payments.murv. Memory does not grow with the file: a record is read, used and forgotten. Amounts
// are read as integers, in cents, so that adding them is exact.
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "murv/murv.h"
#include "murv/records.h"

namespace
{

bool compile(const std::string& path, murv::CLayout& layout)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    if (layout.compile(text.str()))
        return true;
    for (const murv::tLayoutMistake& mistake : layout.getMistakes())
    {
        const murv::tDataPlace place = murv::place4Offset(text.str(), mistake.m_uiOffset);
        std::cout << path << ":" << place.m_uiLine << ":" << place.m_uiColumn << ": " << mistake.m_strMessage << "\n";
    }
    return false;
}

void printFault(const murv::tPacketFault& fault)
{
    std::cout << "record " << fault.m_ullRecord << ", byte " << fault.m_ullRecordOffset << ", " << fault.m_strPath
              << ": " << fault.m_strMessage << " (" << fault.m_strBytes << ")\n";
}

}  // namespace

int main()
{
    murv::CLayout layout;
    if (!compile("read_payments.murv", layout))
        return 1;
    const unsigned int payment = layout.findPart("payments");
    long long cents = 0;

    std::ifstream file("read_payments.txt", std::ios::binary);
    murv::tRecordOptions options;
    options.m_bUnscaled = true;
    murv::CRecordReader reader(layout, options);
    reader.open(file);
    murv::CFields record;
    for (murv::E_RecordResult result = reader.next(record); result != murv::RR_end; result = reader.next(record))
    {
        for (const murv::tPacketFault& finding : reader.getFindings())
            printFault(finding);
        if (result == murv::RR_record)
        {
            if (layout.getPart(reader.getRecord().m_uiPart).m_uiParent == payment)
                cents += record["amount"].asSint64();
            std::cout << reader.getPath() << ": " << record.toMURV(murv::ER_SER_PKT) << "\n";
            continue;
        }
        printFault(reader.getFault());
        if (!reader.skip())
            break;
    }

    const murv::tRecordCounts& counts = reader.getCounts();
    std::cout << counts.m_ullRecords << " records, " << counts.m_ullDamaged << " damaged, " << cents << " cents\n";
    return 0;
}
