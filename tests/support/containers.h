// tests/support/containers.h - containers that many tests begin with.
#pragma once

#include "murv/fields.h"

namespace murv::tests
{

/// An array of 0, 1, 2, ...
inline CFields countedArray(int count)
{
    CFields array(DT_array);
    for (int i = 0; i < count; ++i)
        array.addArrayAt(i);
    return array;
}

/// A container of that type without memory for members.
inline CFields withoutVector(E_DataType dt)
{
    CFields node;
    node.removeAll(dt);
    return node;
}

}  // namespace murv::tests
