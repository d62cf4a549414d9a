// tools/layout_figure.h - pictures of layouts as rows of 32 bits, in the way of protocol specifications.
//
// A figure says which field each bit of each row belongs to. Text and SVG draw the same figures.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "tools/layout_row.h"

namespace murv::tool
{

inline constexpr unsigned int s_cuiFigureBits = 32;

/// A box of a figure: a leaf, some bits of it, or an array or choice that has figures of its own.
struct tFigureField
{
    unsigned int m_uiPart = 0;
    std::string m_strName;    // from the part that the figure shows; with the value of a literal
    std::string m_strShort;   // the last step alone
    std::string m_strLength;  // "4 bytes"
    std::string m_strWhole;   // all that there is to say
    bool m_bLiteral = false;
    bool m_bComputed = false;
    bool m_bOptional = false;
    bool m_bNested = false;  // an array or choice
};

/// Four bytes, or as many as a torn row stands for.
struct tFigureRow
{
    std::array<int, s_cuiFigureBits> m_aiField;  // index of the field, -1 for nothing
    bool m_bTorn = false;                        // stands for any number of bytes, or for many
    bool m_bTornEnd = false;                     // its last field ends somewhere
    std::string m_strOffset;                     // of its first byte; empty when it varies
};

struct tFigure
{
    unsigned int m_uiPart = 0;
    std::string m_strTitle;              // path of what it shows
    std::string m_strNote;               // "94 bytes", "each element, 3..258 bytes"
    std::vector<unsigned int> m_vParts;  // all that it shows, field sets included
    std::vector<tFigureField> m_vFields;
    std::vector<tFigureRow> m_vRows;
};

/// Part of a row that one field has.
struct tSegment
{
    std::size_t m_nRow;
    unsigned int m_uiBegin;
    unsigned int m_uiEnd;
};

/// The segments of all rows, in order.
std::vector<tSegment> segmentsOf(const tFigure& figure);

/// The widest segment of each field, where its label goes; of equal ones a torn row, else the first.
std::vector<tSegment> labelSegments(const tFigure& figure);

/// The figures of a record, and of the elements and alternatives in it that have parts of their own.
/// \param name  of the layout: the title where the record is the whole
std::vector<tFigure> figures4Record(const CLayout& layout, const CLayoutPaths& paths, unsigned int record,
                                    const std::string& name);

/// The records of a layout, in order.
std::vector<unsigned int> recordsOf(const CLayout& layout);

}  // namespace murv::tool
