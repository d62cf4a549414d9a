// tools/layout_page.cpp - sections of the page, from the rows and figures that the other verbs show.
//
// The page has no scripts: it is read, printed and sent. Wide pictures and tables scroll for themselves on small
// screens.
#include "tools/layout_page.h"

#include "tools/figure_svg.h"
#include "tools/layout_example.h"
#include "tools/layout_row.h"
#include "tools/markup.h"

namespace murv::tool
{

namespace
{
constexpr const char* s_cpStyle =
    ":root{color-scheme:light dark;--page:#fff;--text:#1b1f24;--soft:#57606a;--line:#d0d7de;--code:#f2f4f7;"
    "--link:#0550ae}\n"
    "@media (prefers-color-scheme:dark){:root{--page:#12161b;--text:#e6e9ed;--soft:#a3abb5;--line:#363d47;"
    "--code:#1e242c;--link:#79b8ff}}\n"
    "*{box-sizing:border-box}\n"
    "body{margin:0 auto;max-width:76rem;padding:1.5rem 1.25rem 3rem;background:var(--page);color:var(--text);"
    "font:16px/1.5 system-ui,\"Segoe UI\",\"Liberation Sans\",Arial,sans-serif;overflow-wrap:anywhere}\n"
    "h1{font-size:2rem;margin:0 0 .5rem;line-height:1.2}h2{font-size:1.4rem;margin:2.5rem 0 .5rem;padding-top:.75rem;"
    "border-top:1px solid var(--line);line-height:1.25}h3{font-size:1.1rem;margin:1.75rem 0 .25rem}\n"
    "p{margin:.5rem 0;max-width:46rem}a{color:var(--link)}.soft{color:var(--soft)}\n"
    "code,.bytes{font-family:ui-monospace,\"DejaVu Sans Mono\",Menlo,Consolas,monospace;font-size:.86em}\n"
    "code{background:var(--code);border-radius:3px;padding:.1em .3em}\n"
    "ul{margin:.4rem 0;padding-left:1.4rem}li{margin:.15rem 0}\n"
    "figure{margin:1rem 0}.wide{overflow-x:auto}.wide svg{display:block}\n"
    "table{border-collapse:collapse;margin:.75rem 0;width:100%;font-size:.92rem}\n"
    "th,td{border-bottom:1px solid var(--line);padding:.35rem .75rem .35rem 0;text-align:left;vertical-align:top;"
    "overflow-wrap:normal}\n"
    "th{font-weight:600;color:var(--soft)}tbody th{color:inherit}.place,.long{white-space:nowrap}\n"
    "td.bytes{white-space:normal;min-width:14rem}.bits th{padding-left:1.25rem;font-weight:400}\n"
    "td p{margin:0 0 .2rem;min-width:11rem}tr.record th{padding-top:.9rem;color:var(--soft)}\n"
    "@media (max-width:44rem){body{padding:1rem .9rem 2rem}table,tbody,tr,td,tbody th{display:block;width:auto}"
    "thead{position:absolute;clip-path:inset(50%);height:1px;overflow:hidden}"
    "tr{border-bottom:1px solid var(--line);padding:.4rem 0}td,tbody th{border:0;padding:.05rem 0}"
    "td:empty{display:none}.place,.long{white-space:normal}td[data-label]::before{content:attr(data-label) \": \";"
    "color:var(--soft)}td.bytes,td p{min-width:0}}\n"
    "footer{margin-top:3rem;color:var(--soft);font-size:.9rem}\n"
    "@media print{:root{--page:#fff;--text:#000;--soft:#444;--line:#bbb;--code:#f2f2f2;--link:#000}"
    "body{max-width:none;padding:0;font-size:10pt}nav{display:none}a{text-decoration:none}.wide{overflow:visible}"
    ".wide svg{max-width:100%;height:auto}h2,h3{break-after:avoid}tr,figure{break-inside:avoid}"
    "table{font-size:8.5pt}td p,td.bytes{min-width:0}}\n";

std::string element(const char* name, const std::string& markup)
{
    return "<" + std::string(name) + ">" + markup + "</" + name + ">";
}

std::string code(std::string_view text)
{
    return element("code", markup4Text(text));
}

/// A comment: paragraphs stand between empty lines.
std::string paragraphs(std::string_view text)
{
    std::string markup;
    while (!text.empty())
    {
        const std::size_t end = std::min(text.find("\n\n"), text.size());
        const std::string_view paragraph = text.substr(0, end);
        if (paragraph.find_first_not_of(" \n\t\r") != std::string_view::npos)
            markup += element("p", markup4Text(paragraph)) + "\n";
        text.remove_prefix(std::min(text.size(), end + 2));
    }
    return markup;
}

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
    const bool isFixed = part.m_ullLeast == part.m_ullMost;
    return (isFixed ? least : least + " to " + std::to_string(part.m_ullMost)) +
           (part.m_ullMost == 1 ? " byte" : " bytes");
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
        m_strPage +=
            "<footer>Made by murv " MURV_VERSION " from the layout " + code(name) + ".</footer>\n</body>\n</html>\n";
    }
    std::string page()
    {
        return std::move(m_strPage);
    }

private:
    void addHead()
    {
        const std::string title = markup4Text(m_strName);
        m_strPage +=
            "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
            "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" +
            title + " - packet layout</title>\n<style>\n" + s_cpStyle + figureStyle() +
            "</style>\n</head>\n<body>\n<header>\n<h1>" + title + "</h1>\n";
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

    std::string linkTo(unsigned int record) const
    {
        return "<a href=\"#part" + std::to_string(record) + "\">" + markup4Text(nameOf(record)) + "</a>";
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
                     "\">\n<table>\n<thead><tr><th scope=\"col\">Part</th><th scope=\"col\">Offset</th>"
                     "<th scope=\"col\">Length</th><th scope=\"col\">Kind</th><th scope=\"col\">Meaning and rules</th>"
                     "</tr></thead>\n<tbody>\n";
        for (const tLayoutRow& row : rows4Parts(m_tLayout, m_tPaths, figure.m_vParts))
            addRow(row, figure.m_uiPart == 0 ? std::string() : m_tPaths.path(figure.m_uiPart) + ".");
        m_strPage += "</tbody>\n</table>\n</div>\n";
    }

    /// A cell that says on small screens, where there are no columns, what it is.
    static std::string cell(const char* classes, const char* label, const std::string& markup)
    {
        if (markup.empty())
            return "<td></td>";
        return "<td class=\"" + std::string(classes) + "\" data-label=\"" + label + "\">" + markup + "</td>";
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
        if (example.m_vLines.empty())
        {
            m_strPage +=
                "<p>The layout's own values make no packet: " + markup4Text(example.m_strFault) + "</p>\n</section>\n";
            return;
        }
        m_strPage += "<p>What the layout's own values make: " + std::to_string(example.m_ullBytes) +
                     " bytes. Offsets count from the beginning; masked values are stars.</p>\n"
                     "<div class=\"wide\" tabindex=\"0\" role=\"region\" aria-label=\"Example\">\n<table>\n<thead><tr>"
                     "<th scope=\"col\">Offset</th><th scope=\"col\">Bytes</th><th scope=\"col\">Part</th>"
                     "<th scope=\"col\">Value</th></tr></thead>\n<tbody>\n";
        for (const tExampleLine& line : example.m_vLines)
            addLine(line);
        m_strPage += "</tbody>\n</table>\n</div>\n</section>\n";
    }

    void addLine(const tExampleLine& line)
    {
        if (line.m_bRecord)
        {
            const std::string name = line.m_strPath.empty() ? m_strName : line.m_strPath;
            m_strPage += "<tr class=\"record\"><th scope=\"rowgroup\" colspan=\"4\">Record <a href=\"#part" +
                         std::to_string(line.m_uiPart) + "\">" + markup4Text(name) + "</a></th></tr>\n";
            return;
        }
        m_strPage += "<tr>" + cell("place", "Offset", std::to_string(line.m_ullOffset)) +
                     cell("bytes", "Bytes", markup4Text(line.m_strBytes)) + "<th scope=\"row\">" +
                     markup4Text(line.m_strPath) + "</th>" + cell("value", "Value", markup4Text(line.m_strValue)) +
                     "</tr>\n";
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
