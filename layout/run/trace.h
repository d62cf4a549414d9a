// layout/run/trace.h - what reading found: which parts lie where.
//
// The scanner writes a trace while it finds the parts of a packet; trees, views, JSON and annotated dumps are made from
// it. Making writes the same, so that both can be compared.
#pragma once

#include <cstdint>
#include <vector>

namespace murv::detail
{

enum E_Trace : unsigned char
{
    TR_run,        // items of fixed width; index: run
    TR_item,       // an item of varying width; index: part; the place of its value, without prefix and mark
    TR_open,       // a field set begins; index: part
    TR_close,      // and ends
    TR_array,      // an array begins; index: part
    TR_element,    // an element begins; index: part of the array
    TR_arrayEnd,   // an array ends
    TR_record,     // a record begins; index: part
    TR_recordEnd,  // and ends
    TR_skip,       // bytes between aligned parts; index: the part before them
};

struct tTrace
{
    E_Trace m_eTrace;
    unsigned int m_uiIndex;
    std::uint64_t m_ullOffset;  // in the input
    std::uint64_t m_ullLength;  // 0 where something begins or ends
};

using tTraces = std::vector<tTrace>;

/// The number of the element at hand, from 0, in each array around a part; the outermost first.
using tElements = std::vector<std::uint64_t>;

}  // namespace murv::detail
