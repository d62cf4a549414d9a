// tools/figure_text.h - figures of layouts as lines of characters.
#pragma once

#include <string>

#include "tools/layout_figure.h"

namespace murv::tool
{

/// The name of each field as far as its segment has room for, by a measure of room; where there is none, a key, which
/// the legend explains.
struct tLabels
{
    struct tKey
    {
        std::string m_strKey;
        int m_iField;
    };
    std::vector<std::string> m_vNames;  // by field
    std::vector<bool> m_vWithLength;    // by field: there is room for the length, too
    std::vector<tKey> m_vLegend;
};

/// \param columns4Bit    columns that one bit has
/// \param columnsBetween columns that the line between two fields takes
/// \param sameLine       the length stands after the name
tLabels labels4Figure(const tFigure& figure, const std::vector<tSegment>& segments, double columns4Bit,
                      double columnsBetween, bool sameLine);

/// Title, ruler, boxes and legend, in lines with line feeds.
std::string text4Figure(const tFigure& figure);

}  // namespace murv::tool
