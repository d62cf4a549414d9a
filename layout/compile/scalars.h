// layout/compile/scalars.h - the values that a layout itself states.
#pragma once

#include "layout/values/scalar.h"
#include "murv/fields.h"

namespace murv::detail
{

/// The second value's slot where it is in use, else the first.
inline E_ValueKind secondKind(const CFields& node)
{
    return node.getVK() == VK_actual ? VK_actual : VK_fix;
}

/// A value of a leaf; its text lies in the node.
inline tScalar scalar4(const CFields& node, E_ValueKind kind)
{
    const E_DataType type = node.getDT(kind);
    const char* data = nullptr;
    tScalar value;
    value.m_eType = type == DT_array || type == DT_fields ? DT_null : type;
    if (type == DT_codelist)
    {
        const unsigned int length = node.getCodePoint(&data, kind);
        value.m_strvText = length == 0 ? std::string_view() : std::string_view(data, length);
    }
    else if (type == DT_bool)
        value.m_bValue = node.getValueRef(kind).m_bValue;
    else if (value.m_eType != DT_null)
        value.m_ullValue = node.getValueRef(kind).m_ullValue;
    return value;
}

}  // namespace murv::detail
