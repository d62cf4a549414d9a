// tools/figure_svg.h - figures of layouts as SVG.
#pragma once

#include <string>

#include "tools/layout_figure.h"

namespace murv::tool
{

inline constexpr int s_ciFigureWidth = 720;

/// The rules of style that figures need, for light and dark; once for a document.
std::string figureStyle();

/// Height of a figure, in the units of its width.
int height4Figure(const tFigure& figure);

/// An <svg> element with title and description.
/// \param number  makes its IDs different from those of other figures
/// \param y       where it stands in an <svg> around it; below 0 for a figure of its own, as in HTML
std::string svg4Figure(const tFigure& figure, std::size_t number, int y);

/// A document with all figures, one below the other.
std::string svg4Figures(const std::vector<tFigure>& figures, const std::string& name);

}  // namespace murv::tool
