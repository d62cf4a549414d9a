// tools/html_page.cpp - the style, and the pieces of markup that all pages have.
#include "tools/html_page.h"

#include "tools/markup.h"

#ifndef MURV_VERSION
#error "the build defines MURV_VERSION"
#endif

namespace murv::tool
{

namespace
{
constexpr const char* s_cpStyle =
    ":root{color-scheme:light dark;--page:#fff;--text:#1b1f24;--soft:#57606a;--line:#d0d7de;--code:#f2f4f7;"
    "--link:#0550ae;--mark:#ffd8d3;--error:#a40e26;--warning:#7d4e00}\n"
    "@media (prefers-color-scheme:dark){:root{--page:#12161b;--text:#e6e9ed;--soft:#a3abb5;--line:#363d47;"
    "--code:#1e242c;--link:#79b8ff;--mark:#5a1e1e;--error:#ff9b94;--warning:#f0b429}}\n"
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
    ".lines{white-space:pre}.bits th{padding-left:1.25rem;font-weight:400}\n"
    "td p{margin:0 0 .2rem;min-width:11rem}tbody th .soft{font-weight:400}\n"
    "caption{text-align:left;font-weight:600;padding:.35rem 0}.dump td,.dump th{overflow-wrap:anywhere}\n"
    ".dump{table-layout:fixed;min-width:58rem}.dump thead th:nth-child(1){width:5.5rem}"
    ".dump thead th:nth-child(2){width:13rem}.dump thead th:nth-child(3){width:6rem}.dump .code{padding-top:.45rem}\n"
    "mark{background:var(--mark);color:inherit;border-bottom:2px solid var(--error)}"
    "p.error{color:var(--error)}p.warning{color:var(--warning)}\n"
    "@media (max-width:44rem){body{padding:1rem .9rem 2rem}table,tbody,tr,td,tbody th{display:block;width:auto}"
    "thead{position:absolute;clip-path:inset(50%);height:1px;overflow:hidden}"
    "tr{border-bottom:1px solid var(--line);padding:.4rem 0}td,tbody th{border:0;padding:.05rem 0}"
    "td:empty{display:none}.place,.long{white-space:normal}td[data-label]::before{content:attr(data-label) \": \";"
    "color:var(--soft)}td p{min-width:0}"
    "caption{display:block}.dump{min-width:0}.dump tr{display:flex;flex-wrap:wrap;column-gap:.75rem}"
    ".dump tbody th{order:-1;width:100%}.dump td:not(.code){width:100%}.dump td:empty{display:none}"
    ".dump .code::before{display:none}.dump td p{display:inline}}\n"
    "footer{margin-top:3rem;color:var(--soft);font-size:.9rem}\n"
    "@media print{:root{--page:#fff;--text:#000;--soft:#444;--line:#bbb;--code:#f2f2f2;--link:#000;"
    "--mark:#fff;--error:#000;--warning:#000}"
    "body{max-width:none;padding:0;font-size:10pt}nav{display:none}a{text-decoration:none}.wide{overflow:visible}"
    ".wide svg{max-width:100%;height:auto}h2,h3{break-after:avoid}tr,figure{break-inside:avoid}"
    "table{font-size:8.5pt}td p{min-width:0}mark{outline:1px solid}"
    "thead{display:table-header-group}.dump{min-width:0}}\n";
}  // namespace

std::string pageBegin(std::string_view title, const std::string& style)
{
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" +
           markup4Text(title) + "</title>\n<style>\n" + s_cpStyle + style + "</style>\n</head>\n<body>\n";
}

std::string pageEnd(const std::string& source)
{
    return "<footer>Made by murv " MURV_VERSION " " + source + ".</footer>\n</body>\n</html>\n";
}

std::string element(const char* name, const std::string& markup)
{
    return "<" + std::string(name) + ">" + markup + "</" + name + ">";
}

std::string code(std::string_view text)
{
    return element("code", markup4Text(text));
}

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

std::string cell(const char* classes, const char* label, const std::string& markup)
{
    if (markup.empty())
        return "<td></td>";
    return "<td class=\"" + std::string(classes) + "\" data-label=\"" + label + "\">" + markup + "</td>";
}

std::string headRow(std::initializer_list<const char*> names)
{
    std::string markup = "<thead><tr>";
    for (const char* const name : names)
        markup += "<th scope=\"col\">" + std::string(name) + "</th>";
    return markup + "</tr></thead>\n";
}

}  // namespace murv::tool
