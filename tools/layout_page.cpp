// tools/layout_page.cpp - sections of the page, from the rows and figures that the other verbs show.
//
// The page has no scripts: it is read, printed and sent. Wide pictures and tables scroll for themselves on small
// screens.
#include "tools/layout_page.h"

#include "tools/explain_rows.h"
#include "tools/explain_table.h"
#include "tools/figure_svg.h"
#include "tools/html_page.h"
#include "tools/layout_example.h"
#include "tools/layout_row.h"
#include "tools/markup.h"
#include "tools/packet_report.h"

namespace murv::tool
{

namespace
{
std::string rulesOf(const CLayout& layout, unsigned int part)
{
    std::string markup;
    for (const tLayoutRule& rule : layout.getRules(part))
        markup += "<p>" + code(shownRule(rule.m_strvRule)) + " " + markup4Text(rule.m_strvSentence) + ".</p>";
    return markup;
}

std::string sizeOf(const tLayoutPart& part)
{
    const std::string least = std::to_string(part.m_ullLeast);
    if (part.m_ullMost == CLayout::s_cullNoBound)
        return least + " bytes or more";
    const std::string most = counted(part.m_ullMost, "byte");
    return part.m_ullLeast == part.m_ullMost ? most : least + " to " + most;
}

class CPage
{
public:
    CPage(const CLayout& layout, const CFields& document, const std::string& name)
        : m_tLayout(layout), m_tPaths(layout), m_vRecords(recordsOf(layout)), m_strName(name)
    {
        const tExample example = example4Layout(layout, document);
        addHead();
        addContents();
        if (m_vRecords.empty() || m_vRecords.front() != 0)
            addStructure();
        for (const unsigned int record : m_vRecords)
            addRecord(record);
        addExample(example);
        m_strPage += pageEnd("from the layout " + code(name));
    }
    std::string page()
    {
        return std::move(m_strPage);
    }

private:
    void addHead()
    {
        m_strPage += pageBegin(m_strName + " - packet layout", figureStyle()) + "<header>\n" +
                     element("h1", markup4Text(m_strName)) + "\n";
        const tLayoutPart root = m_tLayout.getPart(0);
        m_strPage += paragraphs(root.m_strvComment);
        m_strPage += "<p class=\"soft\">" + sizeOf(root) + " in all; " + std::to_string(m_vRecords.size()) +
                     (m_vRecords.size() == 1 ? " kind of record.</p>\n" : " kinds of records.</p>\n");
        m_strPage += rulesOf(m_tLayout, 0) + "</header>\n";
    }

    std::string nameOf(unsigned int record) const
    {
        return record == 0 ? m_strName : m_tPaths.path(record);
    }

    std::string linkTo(unsigned int record, const std::string& name = {}) const
    {
        return "<a href=\"#part" + std::to_string(record) + "\">" + markup4Text(name.empty() ? nameOf(record) : name) +
               "</a>";
    }

    void addContents()
    {
        m_strPage += "<nav aria-label=\"Contents\">\n<h2>Contents</h2>\n<ul>\n";
        if (m_vRecords.empty() || m_vRecords.front() != 0)
            m_strPage += "<li><a href=\"#structure\">Structure</a></li>\n";
        for (const unsigned int record : m_vRecords)
            m_strPage += "<li>" + linkTo(record) + "</li>\n";
        m_strPage += "<li><a href=\"#example\">Example</a></li>\n</ul>\n</nav>\n";
    }

    /// The parts above the records, as nested lists.
    void addStructure()
    {
        m_strPage += "<section id=\"structure\">\n<h2>Structure</h2>\n";
        std::vector<unsigned int> open = {0};  // parts whose lists are open
        m_strPage += "<ul>\n";
        for (unsigned int part = 1; part < m_tLayout.getPartCount(); ++part)
        {
            const tLayoutPart seen = m_tLayout.getPart(part);
            const bool isInside = m_tLayout.getPart(seen.m_uiParent).m_uiBase != CLayout::s_cuiNoPart;
            if (isInside)
                continue;
            for (; open.back() != seen.m_uiParent; open.pop_back())
                m_strPage += "</ul></li>\n";
            m_strPage += "<li>" + itemOf(part, seen);
            const bool hasList = !seen.m_bRecord && seen.m_eKind != LP_leaf;
            m_strPage += hasList ? "\n<ul>\n" : "</li>\n";
            if (hasList)
                open.push_back(part);
        }
        for (; open.size() > 1; open.pop_back())
            m_strPage += "</ul></li>\n";
        m_strPage += "</ul>\n</section>\n";
    }

    std::string itemOf(unsigned int part, const tLayoutPart& seen) const
    {
        const char* const words = seen.m_eKind == LP_array ? ", any number of:"
                                  : seen.m_bChoice         ? ", one of:"
                                  : seen.m_bRecord         ? ""
                                                           : ", in this order:";
        const std::string name =
            seen.m_bRecord ? linkTo(part) : element("strong", markup4Text(m_tPaths.name(part))) + words;
        const std::string comment(seen.m_strvComment.substr(0, seen.m_strvComment.find("\n\n")));
        return name + (seen.m_bOptional ? " (may be missing)" : "") +
               (comment.empty() ? "" : " <span class=\"soft\">" + markup4Text(comment) + "</span>") +
               (seen.m_bRecord ? "" : rulesOf(m_tLayout, part));
    }

    void addRecord(unsigned int record)
    {
        const tLayoutPart seen = m_tLayout.getPart(record);
        m_strPage +=
            "<section id=\"part" + std::to_string(record) + "\">\n<h2>" + markup4Text(nameOf(record)) + "</h2>\n";
        m_strPage += "<p class=\"soft\">Record, " + sizeOf(seen) + ".</p>\n";
        if (record != 0)
            m_strPage += paragraphs(seen.m_strvComment) + rulesOf(m_tLayout, record);
        bool isFirst = true;
        for (const tFigure& figure : figures4Record(m_tLayout, m_tPaths, record, m_strName))
        {
            if (!isFirst)
                addInner(figure);
            addFigure(figure);
            isFirst = false;
        }
        m_strPage += "</section>\n";
    }

    /// What stands before the picture of an element or alternative.
    void addInner(const tFigure& figure)
    {
        const unsigned int part = figure.m_uiPart;
        m_strPage += "<h3>" + markup4Text(m_tPaths.path(part)) + "</h3>\n";
        if (m_tLayout.getPart(part).m_eKind != LP_leaf)
            m_strPage += paragraphs(m_tLayout.getPart(part).m_strvComment) + rulesOf(m_tLayout, part);
    }

    void addFigure(const tFigure& figure)
    {
        const std::string title = markup4Text(figure.m_strTitle);
        m_strPage += "<figure><div class=\"wide\" tabindex=\"0\" role=\"region\" aria-label=\"Picture of " + title +
                     "\">\n" + svg4Figure(figure, ++m_nFigures, -1) + "</div></figure>\n";
        m_strPage += "<div class=\"wide\" tabindex=\"0\" role=\"region\" aria-label=\"Parts of " + title +
                     "\">\n<table>\n" + headRow({"Part", "Offset", "Length", "Kind", "Meaning and rules"}) +
                     "<tbody>\n";
        for (const tLayoutRow& row : rows4Parts(m_tLayout, m_tPaths, figure.m_vParts))
            addRow(row, figure.m_uiPart == 0 ? std::string() : m_tPaths.path(figure.m_uiPart) + ".");
        m_strPage += "</tbody>\n</table>\n</div>\n";
    }

    void addRow(const tLayoutRow& row, const std::string& around)
    {
        const bool isBelow = row.m_strPath.compare(0, around.size(), around) == 0 && row.m_strPath != around;
        const std::string name = isBelow ? row.m_strPath.substr(around.size()) : m_tPaths.name(row.m_uiPart);
        const std::string id = row.m_tPart.m_uiID == 0 || row.m_bBits ? "" : " #" + std::to_string(row.m_tPart.m_uiID);
        const std::string_view literal = row.m_tPart.m_strvLiteral;
        m_strPage += row.m_bBits ? "<tr class=\"bits\">" : "<tr>";
        m_strPage += "<th scope=\"row\">" + markup4Text(name);
        m_strPage += id.empty() ? "</th>" : "<span class=\"soft\">" + id + "</span></th>";
        m_strPage += cell("place", "Offset", row.m_bBits ? "" : markup4Text(row.m_strOffset));
        m_strPage += cell("long", "Length", markup4Text(row.m_strLength));
        const bool hasExpression = !row.m_bBits && !row.m_tPart.m_strvExpression.empty();
        m_strPage += cell("kind", "Kind",
                          markup4Text(row.m_strKind) + (literal.empty() ? "" : " " + code(shownLiteral(row.m_tPart))) +
                              (hasExpression ? " " + code(row.m_tPart.m_strvExpression) : ""));
        const std::string rules = row.m_bBits ? "" : rulesOf(m_tLayout, row.m_uiPart);
        m_strPage += "<td>" + (row.m_bBits ? "" : paragraphs(row.m_strComment)) + rules + "</td></tr>\n";
    }

    void addExample(const tExample& example)
    {
        m_strPage += "<section id=\"example\">\n<h2>Example</h2>\n";
        if (example.m_strPacket.empty())
        {
            m_strPage +=
                "<p>The layout's own values make no packet: " + markup4Text(example.m_strFault) + "</p>\n</section>\n";
            return;
        }
        m_strPage += "<p>What the layout's own values make: " + counted(example.m_strPacket.size(), "byte") +
                     ". Offsets count from the beginning; masked values are stars.</p>\n";
        CExplainer explainer(m_tLayout, example.m_strPacket, false);
        CExplainTable table(CExplainTable::CO_brief);
        for (tExplainRecord record; explainer.next(record);)
            m_strPage += table.table4Record(record, "Record " + linkTo(record.m_uiPart, record.m_strPath));
        m_strPage += "</section>\n";
    }

    const CLayout& m_tLayout;
    CLayoutPaths m_tPaths;
    std::vector<unsigned int> m_vRecords;
    std::string m_strName;
    std::string m_strPage;
    std::size_t m_nFigures = 0;
};
}  // namespace

std::string page4Layout(const CLayout& layout, const CFields& document, const std::string& name)
{
    return CPage(layout, document, name).page();
}

}  // namespace murv::tool
