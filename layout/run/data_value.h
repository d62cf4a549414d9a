// layout/run/data_value.h - the value of a leaf of the data, as the codec takes it.
#pragma once

#include "core/field_access.h"
#include "layout/values/scalar.h"

namespace murv::detail
{

/// The value of a node that is no container; its text lies in the node.
inline tScalar value4Data(const CFields& node)
{
    tScalar value;
    value.m_eType = tFieldAccess::type(node);
    if (value.m_eType == DT_codelist)
        value.m_strvText = tFieldAccess::codes(node);
    else
        value.m_ullValue = tFieldAccess::value(node).m_ullValue;
    return value;
}

}  // namespace murv::detail
