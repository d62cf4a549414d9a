// tools/layout_figure.cpp - lays the parts of a record into rows of four bytes.
#include "tools/layout_figure.h"

#include <algorithm>

#include "tools/packet_leaf.h"
#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
constexpr unsigned int s_cuiByte = 8;
constexpr unsigned int s_cuiRowBytes = s_cuiFigureBits / s_cuiByte;
constexpr std::uint64_t s_cullMostRows = 2;  // more whole rows of one field become a torn one
constexpr unsigned int s_cuiLeastRest = 16;  // bits of a row in which a part of any length finds room

std::string unit4Length(std::uint64_t least, std::uint64_t most)
{
    const std::string length = text4Length(least, most);
    if (most == CLayout::s_cullNoBound)
        return std::to_string(least) + " bytes or more";
    return length + (length == "1" ? " byte" : " bytes");
}

/// Where the parts after a part and all below it begin.
unsigned int afterPart(const CLayout& layout, unsigned int part)
{
    unsigned int at = part + 1;
    while (at < layout.getPartCount() && layout.getPart(at).m_uiParent >= part)
        ++at;
    return at;
}

class CFigureMaker
{
public:
    CFigureMaker(const CLayout& layout, const CLayoutPaths& paths, unsigned int part)
        : m_tLayout(layout), m_tPaths(paths)
    {
        const tLayoutPart seen = layout.getPart(part);
        m_tFigure.m_uiPart = part;
        m_tFigure.m_strTitle = paths.path(part);
        m_tFigure.m_strNote = unit4Length(seen.m_ullLeast, seen.m_ullMost);
    }

    /// \param nested  given the arrays and choices that the figure shows as one box
    tFigure make(std::vector<unsigned int>& nested)
    {
        const unsigned int top = m_tFigure.m_uiPart;
        const unsigned int end = afterPart(m_tLayout, top);
        std::vector<unsigned int> optionals;  // ends of field sets that may be absent
        for (unsigned int at = top; at < end;)
        {
            while (!optionals.empty() && optionals.back() <= at)
            {
                breakRow();
                optionals.pop_back();
            }
            const tLayoutPart part = m_tLayout.getPart(at);
            const bool isRow = part.m_eKind == LP_fields && !part.m_bChoice;
            if (!isRow || at != top)
                m_tFigure.m_vParts.push_back(at);
            if (isRow && part.m_bOptional && at != top)
                optionals.push_back(afterPart(m_tLayout, at));
            if (!isRow)
                add(at, part, !optionals.empty());
            if (!isRow && part.m_eKind != LP_leaf)
                nested.push_back(at);
            at = isRow ? at + 1 : afterPart(m_tLayout, at);
        }
        return std::move(m_tFigure);
    }

private:
    void add(unsigned int number, const tLayoutPart& part, bool inOptional)
    {
        tFigureField field;
        field.m_uiPart = number;
        field.m_strShort = m_tPaths.name(number);
        field.m_strName = relativePath(number) + (part.m_strvLiteral.empty() ? "" : " = " + shownLiteral(part));
        field.m_strLength = unit4Length(part.m_ullLeast, part.m_ullMost);
        field.m_bLiteral = part.m_bLiteral;
        field.m_bComputed = part.m_bComputed;
        field.m_bNested = part.m_eKind != LP_leaf;
        field.m_bOptional = inOptional || (part.m_bOptional && number != m_tFigure.m_uiPart);
        if (part.m_eKind == LP_array)
            field.m_strName += "[]";
        if (part.m_bChoice)
            field.m_strName += ": one of " + std::to_string(membersOf(m_tLayout, number).size());
        const std::vector<tLayoutRow> rows = rows4Parts(m_tLayout, m_tPaths, {number});
        field.m_strWhole = wholeOf(rows.front());
        const bool isFixed = part.m_ullLeast == part.m_ullMost;
        if (m_bBroken)
            m_strOffset = part.m_uiBase == baseOfFigure() ? rows.front().m_strOffset : "";
        if (rows.size() > 1)
            addBits(field, rows);
        else if (isFixed)
            put(addField(field), part.m_ullLeast * s_cuiByte);
        else
            putTorn(addField(field));
        if (!isFixed || part.m_bOptional)
            breakRow();
    }

    unsigned int baseOfFigure() const
    {
        return m_tLayout.getPart(m_tFigure.m_uiPart).m_uiBase;
    }

    std::string relativePath(unsigned int number) const
    {
        const std::string& path = m_tPaths.path(number);
        const std::string& around = m_tFigure.m_strTitle;
        if (around == "." || number == m_tFigure.m_uiPart)
            return number == m_tFigure.m_uiPart ? m_tPaths.name(number) : path;
        return path.substr(path.size() > around.size() && path[around.size()] == '.' ? around.size() + 1
                                                                                     : around.size());
    }

    static std::string wholeOf(const tLayoutRow& row)
    {
        const bool isPlace = !row.m_strFrom.empty();
        std::string text = row.m_strPath + ": ";
        text += row.m_bBits ? row.m_strKind : unit4Length(row.m_tPart.m_ullLeast, row.m_tPart.m_ullMost);
        text += row.m_strOffset.empty() ? "" : (isPlace ? " at " : " ") + row.m_strOffset;
        return row.m_bBits ? text : text + ", " + row.m_strKind;
    }

    int addField(const tFigureField& field)
    {
        m_tFigure.m_vFields.push_back(field);
        return static_cast<int>(m_tFigure.m_vFields.size()) - 1;
    }

    void addBits(const tFigureField& number, const std::vector<tLayoutRow>& rows)
    {
        for (std::size_t i = 1; i < rows.size(); ++i)
        {
            tFigureField field = number;
            field.m_strShort = rows[i].m_tBits.m_strvName;
            field.m_strName = number.m_strName + "." + field.m_strShort;
            field.m_strLength = rows[i].m_strLength;
            field.m_strWhole = wholeOf(rows[i]);
            put(addField(field), rows[i].m_tBits.m_uiWidth);
        }
    }

    void breakRow()
    {
        m_bBroken = true;
    }

    tFigureRow& row()
    {
        if (m_bBroken)
        {
            m_tFigure.m_vRows.emplace_back();
            m_tFigure.m_vRows.back().m_aiField.fill(-1);
            m_tFigure.m_vRows.back().m_strOffset = m_strOffset;
            m_uiBit = 0;
            m_bBroken = false;
        }
        return m_tFigure.m_vRows.back();
    }

    void fill(int field, unsigned int bits)
    {
        tFigureRow& at = row();
        std::fill_n(at.m_aiField.begin() + m_uiBit, bits, field);
        m_uiBit = (m_uiBit + bits) % s_cuiFigureBits;
        m_bBroken = m_uiBit == 0;
        if (m_bBroken && !at.m_bTorn)
            nextOffset(at, s_cuiRowBytes);
    }

    /// The offset of the row after one that holds that number of bytes.
    void nextOffset(const tFigureRow& at, std::uint64_t bytes)
    {
        if (at.m_strOffset.empty())
            return;
        const bool isRelative = at.m_strOffset.front() == '+';
        const std::uint64_t offset = std::stoull(at.m_strOffset.substr(isRelative ? 1 : 0));
        m_strOffset = (isRelative ? "+" : "") + std::to_string(offset + bytes);
    }

    void put(int field, std::uint64_t bits)
    {
        while (bits != 0)
        {
            row();
            const std::uint64_t rows = m_uiBit == 0 ? bits / s_cuiFigureBits : 0;
            if (rows > s_cullMostRows)
            {
                tear(field, rows * s_cuiRowBytes);
                bits -= rows * s_cuiFigureBits;
                continue;
            }
            const std::uint64_t some = std::min<std::uint64_t>(bits, s_cuiFigureBits - m_uiBit);
            fill(field, static_cast<unsigned int>(some));
            bits -= some;
        }
    }

    /// A torn row, which stands for a number of bytes.
    void tear(int field, std::uint64_t bytes)
    {
        tFigureRow& at = row();
        at.m_bTorn = true;
        fill(field, s_cuiFigureBits);
        nextOffset(at, bytes);
    }

    /// A part of any length: what is left of the row, and where that is little, a torn row.
    void putTorn(int field)
    {
        row();
        const unsigned int rest = m_uiBit == 0 ? 0 : s_cuiFigureBits - m_uiBit;
        if (rest != 0)
            fill(field, rest);
        if (rest >= s_cuiLeastRest)
            m_tFigure.m_vRows.back().m_bTornEnd = true;
        else
            tear(field, 0);
    }

    const CLayout& m_tLayout;
    const CLayoutPaths& m_tPaths;
    tFigure m_tFigure;
    unsigned int m_uiBit = 0;  // of the row at hand
    bool m_bBroken = true;     // what comes next begins a row
    std::string m_strOffset;   // of the next row
};

/// What a box stands for: the element of an array, or each alternative; leaves only where they are alternatives.
std::vector<unsigned int> insideOf(const CLayout& layout, unsigned int part)
{
    unsigned int at = part;
    while (layout.getPart(at).m_eKind == LP_array)
        ++at;
    const tLayoutPart seen = layout.getPart(at);
    if (seen.m_bChoice)
        return membersOf(layout, at);
    return seen.m_eKind == LP_leaf ? std::vector<unsigned int>() : std::vector<unsigned int>{at};
}
}  // namespace

std::vector<tSegment> segmentsOf(const tFigure& figure)
{
    std::vector<tSegment> segments;
    for (std::size_t row = 0; row < figure.m_vRows.size(); ++row)
    {
        const tFigureRow& at = figure.m_vRows[row];
        for (unsigned int begin = 0; begin < s_cuiFigureBits;)
        {
            unsigned int end = begin;
            while (end < s_cuiFigureBits && at.m_aiField[end] == at.m_aiField[begin])
                ++end;
            if (at.m_aiField[begin] >= 0)
                segments.push_back({row, begin, end});
            begin = end;
        }
    }
    return segments;
}

std::vector<tSegment> labelSegments(const tFigure& figure)
{
    std::vector<tSegment> widest(figure.m_vFields.size(), {0, 0, 0});
    for (const tSegment& segment : segmentsOf(figure))
    {
        const tFigureRow& row = figure.m_vRows[segment.m_nRow];
        tSegment& best = widest[static_cast<std::size_t>(row.m_aiField[segment.m_uiBegin])];
        const unsigned int width = segment.m_uiEnd - segment.m_uiBegin;
        const unsigned int most = best.m_uiEnd - best.m_uiBegin;
        if (width > most || (width == most && row.m_bTorn))
            best = segment;
    }
    return widest;
}

std::vector<tFigure> figures4Record(const CLayout& layout, const CLayoutPaths& paths, unsigned int record,
                                    const std::string& name)
{
    std::vector<tFigure> figures;
    std::vector<unsigned int> open = {record};
    while (!open.empty())
    {
        const unsigned int part = open.back();
        open.pop_back();
        std::vector<unsigned int> nested;
        figures.push_back(CFigureMaker(layout, paths, part).make(nested));
        for (auto box = nested.rbegin(); box != nested.rend(); ++box)
        {
            const std::vector<unsigned int> inside = insideOf(layout, *box);
            open.insert(open.end(), inside.rbegin(), inside.rend());
        }
    }
    if (record == 0)
        figures.front().m_strTitle = name;
    return figures;
}

std::vector<unsigned int> recordsOf(const CLayout& layout)
{
    std::vector<unsigned int> records;
    for (unsigned int part = 0; part < layout.getPartCount(); ++part)
    {
        if (layout.getPart(part).m_bRecord)
            records.push_back(part);
    }
    return records;
}

}  // namespace murv::tool
