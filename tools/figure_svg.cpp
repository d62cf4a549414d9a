// tools/figure_svg.cpp - boxes, edges and labels of figures as SVG elements.
//
// Colours are rules of style, so that one figure serves light and dark. Nothing is told by colour alone: kinds stand in
// the titles of boxes and in the description.
#include "tools/figure_svg.h"

#include "tools/figure_text.h"
#include "tools/markup.h"

namespace murv::tool
{

namespace
{
constexpr int s_ciBit = 20;
constexpr int s_ciLeft = 64;
constexpr int s_ciTop = 62;
constexpr int s_ciRow = 42;
constexpr int s_ciLegendLine = 18;
constexpr int s_ciEnd = 18;         // below the boxes
constexpr double s_cdColumn = 7.3;  // width of a character of a name
constexpr int s_ciTooth = 4;        // of torn edges

int x4Bit(unsigned int bit)
{
    return s_ciLeft + s_ciBit * static_cast<int>(bit);
}

int y4Row(std::size_t row)
{
    return s_ciTop + s_ciRow * static_cast<int>(row);
}

std::string number4(int number)
{
    return std::to_string(number);
}

std::string textAt(int x, int y, const char* classes, const std::string& text)
{
    return "<text x=\"" + number4(x) + "\" y=\"" + number4(y) + "\" class=\"" + classes + "\">" + markup4Text(text) +
           "</text>\n";
}

std::string classes4Field(const tFigureField& field)
{
    return field.m_bNested ? "nested" : field.m_bLiteral ? "literal" : field.m_bComputed ? "computed" : "plain";
}

int fieldOf(const tFigure& figure, std::size_t row, unsigned int bit)
{
    return row < figure.m_vRows.size() && bit < s_cuiFigureBits ? figure.m_vRows[row].m_aiField[bit] : -1;
}

std::string boxes(const tFigure& figure)
{
    std::vector<std::string> rects(figure.m_vFields.size());
    for (const tSegment& at : segmentsOf(figure))
    {
        const int width = s_ciBit * static_cast<int>(at.m_uiEnd - at.m_uiBegin);
        rects[static_cast<std::size_t>(fieldOf(figure, at.m_nRow, at.m_uiBegin))] +=
            "<rect x=\"" + number4(x4Bit(at.m_uiBegin)) + "\" y=\"" + number4(y4Row(at.m_nRow)) + "\" width=\"" +
            number4(width) + "\" height=\"" + number4(s_ciRow) + "\"/>";
    }
    std::string svg;
    for (std::size_t i = 0; i < rects.size(); ++i)
        svg += "<g class=\"" + classes4Field(figure.m_vFields[i]) + "\"><title>" +
               markup4Text(figure.m_vFields[i].m_strWhole) + "</title>" + rects[i] + "</g>\n";
    return svg;
}

/// A vertical zigzag along one row.
std::string tornEdge(int x, int y)
{
    std::string path = "M" + number4(x) + " " + number4(y);
    constexpr int teeth = 6;
    for (int i = 0; i < teeth; ++i)
        path += "l" + number4(i % 2 == 0 ? s_ciTooth : -s_ciTooth) + " " + number4(s_ciRow / teeth);
    return path;
}

/// Edges around fields: drawn through, dashed around what may be absent, and torn.
class CEdges
{
public:
    explicit CEdges(const tFigure& figure) : m_tFigure(figure)
    {
        for (std::size_t row = 0; row <= figure.m_vRows.size(); ++row)
        {
            addAbove(row);
            if (row < figure.m_vRows.size())
                addVertical(row);
        }
    }

    std::string svg() const
    {
        std::string svg = path("edge", m_strWhole);
        svg += path("edge dashed", m_strDashed);
        return svg + path("edge torn", m_strTorn);
    }

private:
    static std::string path(const char* classes, const std::string& data)
    {
        return data.empty() ? std::string() : "<path class=\"" + std::string(classes) + "\" d=\"" + data + "\"/>\n";
    }

    bool isWhole(int field) const
    {
        return field >= 0 && !m_tFigure.m_vFields[static_cast<std::size_t>(field)].m_bOptional;
    }

    void add(int a, int b, const std::string& data)
    {
        (isWhole(a) || isWhole(b) ? m_strWhole : m_strDashed) += data;
    }

    void addAbove(std::size_t row)
    {
        for (unsigned int begin = 0; begin < s_cuiFigureBits;)
        {
            const int above = fieldOf(m_tFigure, row - 1, begin);
            const int below = fieldOf(m_tFigure, row, begin);
            unsigned int end = begin;
            while (end < s_cuiFigureBits && fieldOf(m_tFigure, row - 1, end) == above &&
                   fieldOf(m_tFigure, row, end) == below)
                ++end;
            if (above != below)
                add(above, below, "M" + number4(x4Bit(begin)) + " " + number4(y4Row(row)) + "H" + number4(x4Bit(end)));
            begin = end;
        }
    }

    void addVertical(std::size_t row)
    {
        const tFigureRow& at = m_tFigure.m_vRows[row];
        for (unsigned int bit = 0; bit <= s_cuiFigureBits; ++bit)
        {
            const int left = bit == 0 ? -1 : fieldOf(m_tFigure, row, bit - 1);
            const int right = fieldOf(m_tFigure, row, bit);
            const bool isLast = bit == s_cuiFigureBits;
            if (left == right)
                continue;
            if ((at.m_bTorn && (bit == 0 || isLast)) || (at.m_bTornEnd && isLast))
                m_strTorn += tornEdge(x4Bit(bit), y4Row(row));
            else
                add(left, right, "M" + number4(x4Bit(bit)) + " " + number4(y4Row(row)) + "V" + number4(y4Row(row + 1)));
        }
    }

    const tFigure& m_tFigure;
    std::string m_strWhole;
    std::string m_strDashed;
    std::string m_strTorn;
};

std::string labelsOf(const tFigure& figure, const tLabels& labels, const std::vector<tSegment>& segments)
{
    std::string svg;
    constexpr int oneLine = s_ciRow / 2 + 4;
    constexpr int firstLine = s_ciRow / 2 - 2;
    constexpr int secondLine = s_ciRow / 2 + 13;
    for (std::size_t i = 0; i < segments.size(); ++i)
    {
        const tSegment& at = segments[i];
        if (at.m_uiBegin == at.m_uiEnd)
            continue;
        const int x = (x4Bit(at.m_uiBegin) + x4Bit(at.m_uiEnd)) / 2;
        const bool isTwo = labels.m_vWithLength[i];
        svg += textAt(x, y4Row(at.m_nRow) + (isTwo ? firstLine : oneLine), "name", labels.m_vNames[i]);
        if (isTwo)
            svg += textAt(x, y4Row(at.m_nRow) + secondLine, "length", figure.m_vFields[i].m_strLength);
    }
    return svg;
}

std::string rulerOf(const tFigure& figure)
{
    std::string svg;
    for (unsigned int bit = 0; bit < s_cuiFigureBits; ++bit)
        svg += textAt(x4Bit(bit) + s_ciBit / 2, s_ciTop - 8, bit % 8 == 0 ? "bit first" : "bit", std::to_string(bit));
    for (std::size_t row = 0; row < figure.m_vRows.size(); ++row)
    {
        if (!figure.m_vRows[row].m_strOffset.empty())
            svg += textAt(s_ciLeft - 10, y4Row(row) + 15, "offset", figure.m_vRows[row].m_strOffset);
    }
    return svg;
}

std::string legendOf(const tFigure& figure, const tLabels& labels)
{
    std::string svg;
    int y = y4Row(figure.m_vRows.size()) + s_ciEnd + 2;
    for (const tLabels::tKey& key : labels.m_vLegend)
    {
        const tFigureField& field = figure.m_vFields[static_cast<std::size_t>(key.m_iField)];
        svg += textAt(s_ciLeft, y, "legend", key.m_strKey + "  " + field.m_strName + " (" + field.m_strLength + ")");
        y += s_ciLegendLine;
    }
    return svg;
}

std::string description(const tFigure& figure)
{
    std::string text = "Rows of 32 bits, the first byte at the left.";
    for (const tFigureField& field : figure.m_vFields)
        text += " " + field.m_strWhole + (field.m_bOptional ? ", may be absent" : "") + ".";
    return text;
}

tLabels labelsForSvg(const tFigure& figure, const std::vector<tSegment>& segments)
{
    return labels4Figure(figure, segments, s_ciBit / s_cdColumn, 1, false);
}
}  // namespace

std::string figureStyle()
{
    return ".figure{--ink:#1b1f24;--quiet:#57606a;--plain:#ffffff;--literal:#dfe3e8;--computed:#dcefe0;"
           "--nested:#e3ebfb}\n"
           "@media (prefers-color-scheme:dark){.figure{--ink:#e6e9ed;--quiet:#a3abb5;--plain:#1b2027;--literal:#363d47;"
           "--computed:#1f3d2b;--nested:#22345a}}\n"
           "@media print{.figure{--ink:#000;--quiet:#444;--plain:#fff;--literal:#e4e4e4;--computed:#eef5ef;"
           "--nested:#eef1f8}}\n"
           ".figure text{font-family:ui-monospace,\"DejaVu Sans Mono\",Menlo,Consolas,monospace;font-size:12px;"
           "fill:var(--ink);white-space:pre}\n"
           ".figure .name,.figure .length,.figure .bit{text-anchor:middle}\n"
           ".figure .length{font-size:10px;fill:var(--quiet)}\n"
           ".figure .bit{font-size:9px;fill:var(--quiet)}.figure .first{font-weight:bold;fill:var(--ink)}\n"
           ".figure .offset{text-anchor:end;font-size:11px;fill:var(--quiet)}\n"
           ".figure .title{font-size:14px;font-weight:bold}\n"
           ".figure .plain{fill:var(--plain)}.figure .literal{fill:var(--literal)}"
           ".figure .computed{fill:var(--computed)}.figure .nested{fill:var(--nested)}\n"
           ".figure .edge{fill:none;stroke:var(--ink);stroke-width:1.2}.figure .dashed{stroke-dasharray:4 3}"
           ".figure .torn{stroke-linejoin:round}\n";
}

int height4Figure(const tFigure& figure)
{
    const tLabels labels = labelsForSvg(figure, labelSegments(figure));
    return y4Row(figure.m_vRows.size()) + s_ciEnd + s_ciLegendLine * static_cast<int>(labels.m_vLegend.size());
}

std::string svg4Figure(const tFigure& figure, std::size_t number, int y)
{
    const std::vector<tSegment> segments = labelSegments(figure);
    const tLabels labels = labelsForSvg(figure, segments);
    const std::string height = number4(height4Figure(figure));
    const std::string width = number4(s_ciFigureWidth);
    const std::string id = std::to_string(number);
    std::string svg = "<svg class=\"figure\" role=\"img\" aria-labelledby=\"t" + id + " d" + id + "\" viewBox=\"0 0 " +
                      width + " " + height + "\" width=\"" + width + "\" height=\"" + height + "\"";
    svg += y < 0 ? ">\n" : " y=\"" + number4(y) + "\">\n";
    svg += "<title id=\"t" + id + "\">" + markup4Text(figure.m_strTitle + ", " + figure.m_strNote) + "</title>\n";
    svg += "<desc id=\"d" + id + "\">" + markup4Text(description(figure)) + "</desc>\n";
    svg += textAt(s_ciLeft, 24, "title", figure.m_strTitle + " (" + figure.m_strNote + ")");
    svg += boxes(figure) + CEdges(figure).svg() + rulerOf(figure) + labelsOf(figure, labels, segments);
    return svg + legendOf(figure, labels) + "</svg>\n";
}

std::string svg4Figures(const std::vector<tFigure>& figures, const std::string& name)
{
    constexpr int between = 16;
    std::string inside;
    int height = between;
    for (std::size_t i = 0; i < figures.size(); ++i)
    {
        inside += svg4Figure(figures[i], i + 1, height);
        height += height4Figure(figures[i]) + between;
    }
    const std::string size = " viewBox=\"0 0 " + number4(s_ciFigureWidth) + " " + number4(height) + "\" width=\"" +
                             number4(s_ciFigureWidth) + "\" height=\"" + number4(height) + "\"";
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" role=\"img\" "
           "aria-labelledby=\"t0 d0\"" +
           size + ">\n<title id=\"t0\">" + markup4Text(name) + "</title>\n<desc id=\"d0\">" +
           markup4Text("Layout " + name + " in " + std::to_string(figures.size()) +
                       (figures.size() == 1 ? " picture." : " pictures.")) +
           "</desc>\n<style>\nsvg{color-scheme:light dark}\n.page{fill:#ffffff}\n"
           "@media (prefers-color-scheme:dark){.page{fill:#12161b}}\n" +
           figureStyle() + "</style>\n<rect class=\"page\" width=\"100%\" height=\"100%\"/>\n" + inside + "</svg>\n";
}

}  // namespace murv::tool
