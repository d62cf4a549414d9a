// tools/wireshark_script.cpp - names the fields, and writes what the engine needs to know as Lua tables.
#include "tools/wireshark_script.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "murv/packet_fault.h"
#include "tools/lua_text.h"
#include "tools/packet_leaf.h"
#include "tools/utf8.h"
#include "tools/wireshark_names.h"
#include "tools/wireshark_runtime.h"
#include "tools/wireshark_stream.h"

#ifndef MURV_VERSION
#error "the build defines MURV_VERSION"
#endif

namespace murv::tool
{

namespace
{
constexpr unsigned int s_cuiMostLevels = 400;  // Wireshark's own limit for a packet is 500
constexpr std::size_t s_cnMostTitle = 80;

/// The part with the most parts around it, when these are too many.
std::string whyTooDeep(const CLayout& layout)
{
    std::vector<unsigned int> depths(layout.getPartCount(), 0);
    for (unsigned int part = 1; part < layout.getPartCount(); ++part)
    {
        depths[part] = depths[layout.getPart(part).m_uiParent] + 1;
        if (depths[part] > s_cuiMostLevels)
            return "the layout nests deeper than the " + std::to_string(s_cuiMostLevels) +
                   " levels that Wireshark can show";
    }
    return {};
}

/// Gives the parts of a description labels, and names for filters.
class CFieldNamer
{
public:
    explicit CFieldNamer(const CLayout& layout) : m_tLayout(layout), m_vPath(layout.getPartCount())
    {
    }

    void name(CFields& row, unsigned int part)
    {
        const tLayoutPart seen = m_tLayout.getPart(part);
        if (seen.m_uiParent == CLayout::s_cuiNoPart)
            return;
        const std::string around = m_vPath[seen.m_uiParent];
        const std::string label = label4Part(m_tLayout, part);
        const bool isMember = !isElement(m_tLayout, part);
        const std::string own = seen.m_strvName.empty() ? "id" + std::to_string(seen.m_uiID) : filterName(label);
        m_vPath[part] = !isMember ? around : around.empty() ? own : around + "." + own;
        const std::string shown = label.empty() ? std::string("literal") : shownText(label);
        if (isMember && shown != seen.m_strvName)
            row.addChildRef("label") = shown;
        if (seen.m_eKind == LP_array || (isMember && label.empty()))
            return;
        const std::string field = m_tNames.take(m_vPath[part]);
        row.addChildRef("field") = field;
        nameBits(row, field);
    }

private:
    void nameBits(CFields& row, const std::string& field)
    {
        if (!row.isValidChild("item") || !row["item"].isValidChild("bits"))
            return;
        for (CFields& bits : row["item"]["bits"])
        {
            const std::string name = bits["name"].asString();
            bits.addChildRef("label") = shownText(name);
            bits.addChildRef("field") = m_tNames.take(field + "." + filterName(name));
        }
    }

    const CLayout& m_tLayout;
    std::vector<std::string> m_vPath;  // by part
    CFieldNames m_tNames;
};

/// Text as lines of a Lua comment.
std::string comment4Text(std::string_view text)
{
    std::string lines;
    while (!text.empty())
    {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string line = shownText(text.substr(0, end));
        lines += line.empty() ? "--\n" : "-- " + line + "\n";
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

/// The beginning of a comment, as the name of a protocol for people.
std::string title4Comment(std::string_view comment, const std::string& name)
{
    comment = comment.substr(0, comment.find('\n'));
    for (const std::string_view mark : {". ", ": ", "; "})
        comment = comment.substr(0, comment.find(mark));
    while (!comment.empty() && (comment.back() == '.' || comment.back() == ' '))
        comment.remove_suffix(1);
    return comment.empty() || comment.size() > s_cnMostTitle ? name : shownText(comment);
}

/// A part, with what it is called as a comment before it. Words of the layout itself are in the comment only.
std::string lua4Part(const CFields& part, unsigned int number)
{
    CFields shown;
    std::string words = std::to_string(number);
    for (const CFields& member : part)
    {
        const std::string_view name(member.getName(), member.getNameLen());
        if (name == "path" || name == "expression" || name == "rules")
            words += (name == "path"                                       ? ": "
                      : name == "rules" && part.isValidChild("expression") ? "; "
                                                                           : " ") +
                     shownText(member.asString());
        else
            shown.addChildRef(name) = member;
    }
    return "    -- " + words + "\n    " + (number == 0 ? "[0] = " : "") + lua4Node(shown, 4) + ",\n";
}

/// Rows that are counted from 0, as the layout's parts are.
std::string lua4Rows(const CFields& rows)
{
    std::string table = "{";
    for (unsigned int i = 0; i < rows.getChildCount(); ++i)
        table += std::string("\n    ") + (i == 0 ? "[0] = " : "") + lua4Node(rows.getChildAt(i), 4) + ",";
    return table + (rows.getChildCount() == 0 ? "}" : "\n  }");
}

/// The names of faults, or of findings, with what they say.
std::string lua4Faults(bool findings)
{
    CFields table;
    table = DT_fields;
    for (unsigned int code = PF_none + 1; *getFaultName(static_cast<E_PacketFault>(code)) != '\0'; ++code)
    {
        const auto fault = static_cast<E_PacketFault>(code);
        if (isFinding(fault) == findings)
            table.addChildRef(getFaultName(fault)) = getFaultSentence(fault);
    }
    return lua4Node(table, 2);
}

std::string lua4Description(const CFields& description, const tWiresharkOptions& options, const std::string& title)
{
    std::string table =
        "local layout = {\n  protocol = " + lua4Text(options.m_strProtocol) + ",  -- in filters; murv_" +
        options.m_strProtocol +
        " when Wireshark has a protocol of that name\n  label = " + lua4Text(shownText(options.m_strLayout)) +
        ",\n  title = " + lua4Text(title) + ",\n";
    table += std::string("  transports = { ") + (options.m_bUdp ? "\"udp\"" : "") +
             (options.m_bUdp && options.m_bTcp ? ", " : "") + (options.m_bTcp ? "\"tcp\"" : "") + " },\n";
    if (options.m_uiPort != 0)
        table += "  port = " + std::to_string(options.m_uiPort) + ",\n";
    table +=
        "  frame = " + lua4Node(description["frame"], 2) + ",\n  -- Parts are numbered from 0, as in murv layout.\n";
    table += "  parts = {\n";
    const CFields& parts = description["parts"];
    for (unsigned int part = 0; part < parts.getChildCount(); ++part)
        table += lua4Part(parts.getChildAt(part), part);
    table += "  },\n  -- Neighbours that are measured together.\n  spans = " + lua4Rows(description["spans"]) +
             ",\n  -- Numbers about other parts.\n  links = " + lua4Rows(description["links"]) +
             ",\n  -- Characters by byte.\n  pages = " + lua4Node(description["pages"], 2) +
             ",\n  -- Why bytes do not fit, and what may be wrong though they do.\n  faults = " + lua4Faults(false) +
             ",\n  findings = " + lua4Faults(true) + ",\n}\n";
    return table;
}

/// The record around a part, or none.
unsigned int recordAround(const CLayout& layout, unsigned int part)
{
    while (part != CLayout::s_cuiNoPart && !layout.getPart(part).m_bRecord)
        part = layout.getPart(part).m_uiParent;
    return part;
}

/// The paths of numbers that are about parts of other records.
std::string notCompared(const CLayout& layout, const CFields& description)
{
    std::string names;
    for (const CFields& link : description["links"])
    {
        const bool isTotal = link.isValidChild("over");
        if (!isTotal && link["kind"].asString() != "count")
            continue;
        const auto about = static_cast<unsigned int>(link[isTotal ? "over" : "target"].asUint64());
        const auto number = static_cast<unsigned int>(link["number"]["part"].asUint64());
        if (recordAround(layout, about) != recordAround(layout, number))
            names += (names.empty() ? "" : ", ") + shownText(layout.getPath(number));
    }
    return names;
}

std::string head4Script(const CLayout& layout, const tWiresharkOptions& options, const std::string& noStream,
                        const CFields& description)
{
    const std::string ports = options.m_uiPort == 0 ? "no port" : "port " + std::to_string(options.m_uiPort);
    const std::string transports = options.m_bUdp && options.m_bTcp ? "UDP and TCP" : options.m_bUdp ? "UDP" : "TCP";
    std::string head = comment4Text("Wireshark dissector for the layout " + options.m_strLayout +
                                    ", made by murv gen wireshark of murv " MURV_VERSION) +
                       "--\n" + comment4Text(layout.getPart(0).m_strvComment);
    head += layout.getPart(0).m_strvComment.empty() ? "" : "--\n";
    head += comment4Text("It is for " + transports + ", " + ports +
                         "; \"Decode As\" takes it for any.\n"
                         "To use it, copy it to the personal Lua plugins (Help, About, Folders), or call:\n"
                         "  tshark -X lua_script:" +
                         options.m_strProtocol + ".lua -r FILE");
    head += comment4Text("Expert information: " + options.m_strProtocol + ".fault, where a packet does not fit, and " +
                         options.m_strProtocol +
                         ".finding, where a value\nis wrong. Masks hide values in the tree; the "
                         "bytes are in the capture all the same.");
    if (!options.m_bTcp && !noStream.empty())
        head += comment4Text("Not for TCP: " + noStream + ".");
    const std::string across = notCompared(layout, description);
    if (options.m_bTcp && !across.empty())
        head += comment4Text("Not compared over TCP, where each record is read alone: " + across + ".");
    return head + "\n";
}
}  // namespace

std::string makeWiresharkScript(const CLayout& layout, tWiresharkOptions options, std::string& script)
{
    std::string tooDeep = whyTooDeep(layout);
    if (!tooDeep.empty())
        return tooDeep;
    CFields description;
    layout.describe(description);
    std::string noStream;
    if (options.m_bTcp)
        noStream = whyNoStream(description);
    if (!noStream.empty() && options.m_bTcpAsked)
        return "there can be no dissector for TCP: " + noStream;
    options.m_bTcp = options.m_bTcp && noStream.empty();
    CFieldNamer namer(layout);
    for (unsigned int part = 0; part < layout.getPartCount(); ++part)
        namer.name(description["parts"][part], part);
    const std::string title = title4Comment(layout.getPart(0).m_strvComment, shownText(options.m_strLayout));
    script = head4Script(layout, options, noStream, description) + lua4Description(description, options, title) + "\n" +
             wiresharkRuntime();
    return {};
}

}  // namespace murv::tool
