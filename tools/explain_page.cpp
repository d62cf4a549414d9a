// tools/explain_page.cpp - a page with a table for each record, and a summary that leads to what does not fit.
//
// The bytes are checked once before, so that the summary stands first and the page never has to be held whole.
#include "murv/records.h"
#include "tools/explain_output.h"
#include "tools/explain_table.h"
#include "tools/hex_text.h"
#include "tools/html_page.h"
#include "tools/markup.h"
#include "tools/packet_report.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnMostLinks = 50;

class CExplainPage : public IExplainOutput
{
public:
    CExplainPage(const CLayout& layout, const tExplainPage& page)
        : m_tLayout(layout), m_tPage(page), m_tTable(CExplainTable::CO_all)
    {
    }

    std::string begin() override
    {
        const std::string name = markup4Text(m_tPage.m_strInput);
        std::string markup = pageBegin(m_tPage.m_strInput + " - by the layout " + m_tPage.m_strLayout, s_cpStyle) +
                             "<header>\n" + element("h1", name) + "\n<p class=\"soft\">" +
                             counted(m_tPage.m_strvBytes.size(), "byte") + ", by the layout " +
                             code(m_tPage.m_strLayout) + ". Offsets count bytes from 0, in hexadecimal digits.</p>\n" +
                             paragraphs(m_tLayout.getPart(0).m_strvComment);
        if (m_tPage.m_bSummary)
            markup += summary();
        return markup + "</header>\n<main>\n";
    }

    std::string record(const tExplainRecord& record) override
    {
        const std::string number = record.m_ullNumber == 0 ? "" : std::to_string(record.m_ullNumber);
        const std::string head = number.empty() ? "Offset " + hex4Offset(record.m_ullOffset) : "Record " + number;
        std::string markup = number.empty() ? "<section>\n" : "<section id=\"record" + number + "\">\n";
        markup += element("h2", head + (record.m_strPath.empty() ? "" : ": " + markup4Text(record.m_strPath))) + "\n";
        if (!record.m_strPath.empty())
            markup += paragraphs(record.m_strComment);
        const std::string place = counted(record.m_ullLength, "byte") + " at " + hex4Offset(record.m_ullOffset);
        markup += m_tTable.table4Record(record, record.m_bDamaged ? "<span class=\"error\">Does not fit</span>, from " +
                                                                        hex4Offset(record.m_ullOffset) + " on"
                                                                  : place);
        return markup + list4Findings(record.m_vFinding) + "</section>\n";
    }

    std::string end(const std::vector<tPacketFault>& findings) override
    {
        return list4Findings(findings) + "</main>\n" +
               pageEnd("from " + code(m_tPage.m_strInput) + " and the layout " + code(m_tPage.m_strLayout));
    }

private:
    static constexpr const char* s_cpStyle =
        "td.comment p{min-width:9rem}.error{color:var(--error)}h2+p{margin-top:0}\n"
        "@media print{@page{size:landscape}}\n";

    static std::string words4Fault(const tPacketFault& fault)
    {
        return (fault.m_strPath.empty() ? "" : code(fault.m_strPath) + ": ") + markup4Text(message4Fault(fault));
    }

    static std::string list4Findings(const std::vector<tPacketFault>& findings)
    {
        std::string markup;
        for (const tPacketFault& finding : findings)
            markup += "<p class=\"warning\"><strong>Warning:</strong> " + words4Fault(finding) + " (at " +
                      hex4Offset(finding.m_ullOffset) + ")</p>\n";
        return markup;
    }

    /// How many records there are, and links to those that do not fit or have findings.
    std::string summary() const
    {
        CRecordReader reader(m_tLayout);
        reader.open(m_tPage.m_strvBytes);
        std::string items;
        std::uint64_t links = 0;
        const auto add = [&](const tPacketFault& fault) {
            if (links++ >= s_cnMostLinks || fault.m_ullRecord == 0)
                return;
            const std::string number = std::to_string(fault.m_ullRecord);
            items +=
                "<li><a href=\"#record" + number + "\">record " + number + "</a>: " + words4Fault(fault) + "</li>\n";
        };
        E_RecordResult result = RR_record;
        std::uint64_t faults = 0;
        do
        {
            result = reader.next();
            for (const tPacketFault& finding : reader.getFindings())
                add(finding);
            if (result != RR_fault)
                continue;
            ++faults;
            add(reader.getFault());
            if (!reader.skip())
                break;
        } while (result == RR_record || result == RR_fault);
        std::string markup = "<p>" + counted(reader.getCounts().m_ullRecords, "record") + " without error";
        markup += faults == 0 ? "" : ", <strong class=\"error\">" + counted(faults, "error") + "</strong>";
        const std::uint64_t findings = reader.getCounts().m_ullFindings;
        markup += (findings == 0 ? "" : ", " + counted(findings, "finding")) + ".</p>\n";
        if (links > s_cnMostLinks)
            items += "<li>" + std::to_string(links - s_cnMostLinks) + " more</li>\n";
        return markup +
               (items.empty() ? "" : "<nav aria-label=\"Errors and findings\"><ul>\n" + items + "</ul></nav>\n");
    }

    const CLayout& m_tLayout;
    tExplainPage m_tPage;
    CExplainTable m_tTable;
};
}  // namespace

std::unique_ptr<IExplainOutput> makeExplainPage(const CLayout& layout, const tExplainPage& page)
{
    return std::make_unique<CExplainPage>(layout, page);
}

}  // namespace murv::tool
