// murv/make.h - trees written down as they look, and values set by path.
//
//     CFields tree = fields({{"port", 8080}, {"tags", array({"a", 2, nullptr})}});
//     set(tree, "listen.host", "::1");
#ifndef MURV_MAKE_H
#define MURV_MAKE_H

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "murv/export.h"
#include "murv/fields.h"
#include "murv/get.h"
#include "murv/path.h"
#include "murv/strings.h"

namespace murv
{

/// A value for a new or an old node; converts from whatever a value may be. A parameter, not a variable.
///
/// Signed integers give DT_sint, unsigned ones DT_uint, of whatever width; float and double DT_double; texts
/// DT_codelist, copied; nullptr gives DT_null. A node keeps its ID, comments and packet expression where it becomes a
/// new node. A char is neither number nor text, and is refused, as pointers are.
class MURV_API CNewValue
{
public:
    CNewValue(std::nullptr_t) noexcept
    {
    }
    template <typename T, std::enable_if_t<std::is_same_v<T, bool> || std::is_floating_point_v<T>, int> = 0>
    CNewValue(T value) noexcept : m_tNode(floatOrBool(value))
    {
    }
    template <typename T, std::enable_if_t<detail::s_cbIsInteger<T>, bool> = true>
    CNewValue(T value) noexcept
        : m_tNode(static_cast<std::conditional_t<std::is_signed_v<T>, long long, unsigned long long>>(value))
    {
    }
    /// Ends in NUL; null throws CLogicError.
    CNewValue(const char* text) : m_tNode(text)
    {
    }
    CNewValue(const std::string& text) : m_tNode(text)
    {
    }
    CNewValue(std::string_view text) : m_tNode(text)
    {
    }
    /// Borrows the text; nothing is allocated.
    CNewValue(const CStaticString& text) : m_tNode(text)
    {
    }
    /// The zero value of that type.
    CNewValue(E_DataType type) : m_tNode(type)
    {
    }
    /// A deep copy.
    CNewValue(const CFields& node) : m_tNode(node)
    {
    }
    /// Takes the node over; O(1).
    CNewValue(CFields&& node) noexcept : m_tNode(std::move(node))
    {
    }
    template <typename T, detail::tForeignPointer<T> = 0>
    CNewValue(T*) = delete;
    template <typename T, std::enable_if_t<detail::s_cbIsCharacter<T>, char> = 0>
    CNewValue(T) = delete;

    /// Moves the value out, once. Constant, since a list of initial values is.
    CFields take() const
    {
        return std::move(m_tNode);
    }

private:
    template <typename T>
    static CFields floatOrBool(T value)
    {
        if constexpr (std::is_same_v<T, bool>)
            return CFields(value);
        else
            return CFields(static_cast<double>(value));
    }

    mutable CFields m_tNode;
};

/// A member of a field set that is written down: its name and its value.
struct tNewMember
{
    tNewMember(std::string_view name, CNewValue value) : m_svName(name), m_tValue(std::move(value))
    {
    }

    std::string_view m_svName;  ///< not owned; copied into the tree
    CNewValue m_tValue;
};

/// A field set with these members, in this order: `fields({{"a", 1}, {"b", array({1, 2})}, {"c", nullptr}})`.
///
/// Each value is moved into its place, so that the cost is linear in the number of nodes however they nest.
/// \throw CLogicError when a name does not have 1 to 255 bytes or is given twice
[[nodiscard]] MURV_API CFields fields(std::initializer_list<tNewMember> members);

/// An array of these elements: `array({1, "two", nullptr})`. A node among them loses its name.
[[nodiscard]] MURV_API CFields array(std::initializer_list<CNewValue> elements);

/// Sets the value at a path, and makes what is missing on the way to it.
///
/// A node that is there keeps its name, ID, comments and packet expression; its second value goes. Names make field
/// sets of null nodes and of what is missing; an index makes arrays, and may be the number of elements there are, which
/// appends one. In pointers, "-" appends, and "0" and "-" make arrays. A node as `value` may come from this tree; one
/// that becomes a new member keeps what it has but for its name.
/// \param path  a name, a path or a JSON pointer, as `find` takes it; throws CPathError when it is malformed
/// \return the node that was set
/// \throw CLogicError, with nothing changed, when the path goes on below a scalar other than null, skips elements, has
///        a name that is not 1 to 255 bytes, or asks for an ID or a place from the end that is not there
MURV_API CFields& set(CFields& node, std::string_view path, CNewValue value);
MURV_API CFields& set(CFields& node, const tNodePath& path, CNewValue value);
template <typename tIndex, std::enable_if_t<std::is_integral_v<tIndex>, int> = 0>
CFields& set(CFields& node, tIndex index, CNewValue value) = delete;

/// Appends an element to an array; a null node becomes one. A node loses its name. \return the element
/// \throw CLogicError for any other node
MURV_API CFields& append(CFields& node, CNewValue value);

}  // namespace murv

#endif
