// murv/types.h - what a node can hold: data types, value kinds, comment positions, the value union.
//
// The numbers are part of the binary file format and of saved messages; they never change.
#ifndef MURV_TYPES_H
#define MURV_TYPES_H

namespace murv
{

class CFieldVector;

/// Data type of one value slot. The order is also the sorting order between types.
enum E_DataType : unsigned int
{
    DT_null = 0,      ///< no value
    DT_array = 1,     ///< unnamed members, addressed by index
    DT_fields = 2,    ///< named members (a "field set")
    DT_bool = 3,      ///< true or false
    DT_sint = 4,      ///< signed 64-bit integer
    DT_uint = 5,      ///< unsigned 64-bit integer
    DT_double = 6,    ///< IEEE 754 double
    DT_codelist = 7,  ///< byte string; may hold any bytes
};

/// Which of a node's two values is meant.
///
/// `VK_fix` and `VK_valid` select the same second slot; they differ in what they mean to loaders and savers.
enum E_ValueKind : unsigned int
{
    VK_actual = 0,  ///< the one value that every node has
    VK_fix = 1,     ///< second value, tied to the packet keyword "fix"
    VK_valid = 2,   ///< second value, tied to the packet keyword "valid"
};

/// Where a comment stands relative to its node.
enum E_CommentPosition : unsigned int
{
    CP_before = 0,    ///< before the node
    CP_trailing = 1,  ///< after the value, on the same line
    CP_after = 2,     ///< after the value, on the following lines
};

/// Eight bytes that hold one value; the data type of the slot says which member is set.
union uMultiValue
{
    bool m_bValue;                  ///< DT_bool
    long long m_llValue;            ///< DT_sint
    unsigned long long m_ullValue;  ///< DT_uint
    double m_dValue;                ///< DT_double
    const char* m_pData;  ///< DT_codelist: owned block (length prefix, bytes, NUL) or borrowed text; may be null
    CFieldVector* m_pFV;  ///< DT_array, DT_fields: the members, owned by the node

    constexpr uMultiValue() : m_ullValue(0)
    {
    }
};

static_assert(sizeof(uMultiValue) == 8, "a value is eight bytes");

}  // namespace murv

#endif
