// murv/get.h - values of nodes as C++ types, strictly: a value comes as it is, or not at all.
//
// A number is never cut, a text never becomes a number, and what is missing is said by the result or by an error that
// names path, types and place.
#ifndef MURV_GET_H
#define MURV_GET_H

#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "murv/error.h"
#include "murv/export.h"
#include "murv/fields.h"
#include "murv/load_error.h"
#include "murv/path.h"

namespace murv
{

/// A value is missing, or is none of the type that is wanted.
///
/// what() reads `listen.port: string found, integer from 0 to 65535 wanted (line 3, column 21)`. It holds numbers that
/// do not fit, but never a text of the tree.
class MURV_API CValueError : public CLogicError
{
public:
    /// \param path    where the value should be
    /// \param node    what is there, or null; its first value is described, and nothing else kept
    /// \param around  the last node on the way that there is
    /// \param wanted  the type that is wanted; empty when anything would do
    /// \param source  the text that the tree was loaded from; empty when it is not known
    CValueError(std::string_view path, const CFields* node, const CFields& around, std::string_view wanted,
                std::string_view source = {});
    CValueError(const CValueError& other) = default;
    CValueError& operator=(const CValueError& other) = default;
    ~CValueError() override;

    const std::string& getPath() const noexcept;
    /// What is there, such as "string", or "integer 70000" for a number that does not fit; "nothing".
    const std::string& getFound() const noexcept;
    /// What is wanted, such as "bool" or "integer from 0 to 255"; empty when anything would do.
    const std::string& getWanted() const noexcept;
    /// Where the node lies in the data that it was loaded from, for missing ones the last node on the way to it.
    /// Nothing for trees made by hand; line and column are 0 when the text is not known.
    const std::optional<tDataPlace>& getPlace() const noexcept;

private:
    std::string m_strPath;
    std::string m_strFound;
    std::string m_strWanted;
    std::optional<tDataPlace> m_tPlace;
};

/// The type of the first value in words: null, array, field set, bool, integer, unsigned integer, double or string.
/// The text is static.
[[nodiscard]] MURV_API const char* typeName(const CFields& node) noexcept;

/// The bytes of a byte string, which the node owns: valid until its value changes or the node goes. Empty for other
/// types. Nothing is copied.
[[nodiscard]] MURV_API std::string_view textView(const CFields& node);
std::string_view textView(const CFields&& node) = delete;

namespace detail
{
/// Throws CValueError about what is at the path, or is not.
[[noreturn]] MURV_API void throwValueError(const CFields& node, std::string_view path, std::string_view wanted,
                                           std::string_view source);

/// char and the wide characters are neither integers nor texts: they are asked for as signed char, or as a string.
template <typename T>
inline constexpr bool s_cbIsCharacter =
    std::is_same_v<T, char> || std::is_same_v<T, wchar_t> || std::is_same_v<T, char16_t> || std::is_same_v<T, char32_t>
#ifdef __cpp_char8_t
    || std::is_same_v<T, char8_t>
#endif
    ;

template <typename T>
inline constexpr bool s_cbIsInteger = std::is_integral_v<T> && !std::is_same_v<T, bool> && !s_cbIsCharacter<T>;

template <typename T>
inline constexpr bool s_cbIsScalar =
    s_cbIsInteger<T> || std::is_same_v<T, bool> || std::is_same_v<T, float> || std::is_same_v<T, double> ||
    std::is_same_v<T, std::string> || std::is_same_v<T, std::string_view>;

template <typename T>
std::optional<T> integer4Signed(long long value)
{
    if constexpr (std::is_unsigned_v<T>)
    {
        if (value < 0 || static_cast<unsigned long long>(value) > std::numeric_limits<T>::max())
            return std::nullopt;
    }
    else if (value < std::numeric_limits<T>::min() || value > std::numeric_limits<T>::max())
        return std::nullopt;
    return static_cast<T>(value);
}

template <typename T>
std::optional<T> integer4Unsigned(unsigned long long value)
{
    if (value > static_cast<unsigned long long>(std::numeric_limits<T>::max()))
        return std::nullopt;
    return static_cast<T>(value);
}

/// The integer as a floating-point number that is exactly this integer.
template <typename T>
std::optional<T> float4Magnitude(unsigned long long magnitude, bool isNegative)
{
    const T value = static_cast<T>(magnitude);
    if (value >= static_cast<T>(18446744073709551616.0) || static_cast<unsigned long long>(value) != magnitude)
        return std::nullopt;
    return isNegative ? -value : value;
}

template <typename T>
std::optional<T> float4Double(double value)
{
    if constexpr (std::is_same_v<T, float>)
    {
        const bool isTooLarge = std::isfinite(value) && std::fabs(value) > std::numeric_limits<float>::max();
        if (isTooLarge || (value != 0 && static_cast<float>(value) == 0))
            return std::nullopt;
    }
    return static_cast<T>(value);
}

template <typename T>
std::optional<T> readInteger(const CFields& node)
{
    static_assert(sizeof(T) <= sizeof(long long), "nodes hold integers of 64 bits");
    switch (node.getDT())
    {
    case DT_sint: return integer4Signed<T>(node.getValueRef().m_llValue);
    case DT_uint: return integer4Unsigned<T>(node.getValueRef().m_ullValue);
    default: return std::nullopt;
    }
}

template <typename T>
std::optional<T> readFloat(const CFields& node)
{
    const uMultiValue& value = node.getValueRef();
    const auto bits = static_cast<unsigned long long>(value.m_llValue);
    switch (node.getDT())
    {
    case DT_sint: return float4Magnitude<T>(value.m_llValue < 0 ? 0 - bits : bits, value.m_llValue < 0);
    case DT_uint: return float4Magnitude<T>(value.m_ullValue, false);
    case DT_double: return float4Double<T>(value.m_dValue);
    default: return std::nullopt;
    }
}

template <typename T>
std::string wanted4Type()
{
    if constexpr (std::is_same_v<T, bool>)
        return "bool";
    else if constexpr (std::is_same_v<T, float>)
        return "float";
    else if constexpr (std::is_same_v<T, double>)
        return "double";
    else if constexpr (s_cbIsInteger<T>)
        return "integer from " + std::to_string(std::numeric_limits<T>::min()) + " to " +
               std::to_string(std::numeric_limits<T>::max());
    else
        return "string";
}
}  // namespace detail

/// The first value of a node as a T: bool, any integer type, float, double, std::string or std::string_view.
///
/// Integers come from integers that fit; a double from doubles and from integers that it holds exactly; a float also
/// from doubles in its range, rounded to the nearest, since few doubles are floats. Texts come from byte strings, bool
/// from bool, and nothing from anything else: no double becomes an integer, no text a number.
/// \return the value, or nothing. A std::string_view is valid as that of textView is. O(1), but for copied texts.
template <typename T>
[[nodiscard]] std::optional<T> get(const CFields& node)
{
    static_assert(detail::s_cbIsScalar<T>,
                  "get<T> takes bool, integers (char is none), float, double, std::string and std::string_view");
    if constexpr (std::is_same_v<T, bool>)
        return node.getDT() == DT_bool ? std::optional<bool>(node.getValueRef().m_bValue) : std::nullopt;
    else if constexpr (detail::s_cbIsInteger<T>)
        return detail::readInteger<T>(node);
    else if constexpr (std::is_floating_point_v<T>)
        return detail::readFloat<T>(node);
    else
        return node.getDT() == DT_codelist ? std::optional<T>(textView(node)) : std::nullopt;
}

/// A view into a node that is about to go would dangle.
template <typename T, std::enable_if_t<std::is_same_v<T, std::string_view>, int> = 0>
std::optional<T> get(const CFields&& node) = delete;

/// The value at a path, as above. Nothing also when nothing is there.
/// \param path  a name, a path or a JSON pointer, as `find` takes it; throws CPathError when it is malformed
template <typename T>
[[nodiscard]] std::optional<T> get(const CFields& node, std::string_view path)
{
    const CFields* const found = find(node, path);
    return found == nullptr ? std::nullopt : get<T>(*found);
}
template <typename T>
[[nodiscard]] std::optional<T> get(const CFields& node, const tNodePath& path)
{
    const CFields* const found = find(node, path);
    return found == nullptr ? std::nullopt : get<T>(*found);
}
template <typename T, std::enable_if_t<std::is_same_v<T, std::string_view>, int> = 0>
std::optional<T> get(const CFields&& node, std::string_view path) = delete;

/// As for `find`, a literal 0 is no path.
template <typename T, typename tIndex, std::enable_if_t<std::is_integral_v<tIndex>, int> = 0>
std::optional<T> get(const CFields& node, tIndex index) = delete;

/// The value at a path as the type of the fallback, or the fallback when there is none of that type.
///
/// A value of another type counts as missing, and so does a number that does not fit; use `at` where that is an error.
template <typename T>
[[nodiscard]] T valueOr(const CFields& node, std::string_view path, T fallback)
{
    const std::optional<T> value = get<T>(node, path);
    return value.has_value() ? *value : fallback;
}
[[nodiscard]] inline std::string valueOr(const CFields& node, std::string_view path, const char* fallback)
{
    const std::optional<std::string_view> value = get<std::string_view>(node, path);
    return std::string(value.has_value() ? *value : fallback);
}
/// The result would be a view into a node that is about to go.
template <typename T, std::enable_if_t<std::is_same_v<T, std::string_view>, int> = 0>
T valueOr(const CFields&& node, std::string_view path, T fallback) = delete;

/// The node at a path, which must be there.
///
/// \param path    a name, a path or a JSON pointer, as `find` takes it; throws CPathError when it is malformed
/// \param source  the text that the tree was loaded from, so that the error can say line and column; may be empty
/// \throw CValueError when nothing is there
MURV_API const CFields& at(const CFields& node, std::string_view path, std::string_view source = {});
MURV_API CFields& at(CFields& node, std::string_view path, std::string_view source = {});
template <typename... tNone, typename tIndex, std::enable_if_t<std::is_integral_v<tIndex>, int> = 0>
const CFields& at(const CFields& node, tIndex index, std::string_view source = {}) = delete;

/// The value at a path as a T, as `get` reads it. Parameters and errors as above.
/// \throw CValueError when nothing is there, or no T
template <typename T>
T at(const CFields& node, std::string_view path, std::string_view source = {})
{
    const CFields* const found = find(node, path);
    const std::optional<T> value = found == nullptr ? std::nullopt : get<T>(*found);
    if (!value.has_value())
        detail::throwValueError(node, path, detail::wanted4Type<T>(), source);
    return *value;
}
template <typename T, std::enable_if_t<std::is_same_v<T, std::string_view>, int> = 0>
T at(const CFields&& node, std::string_view path, std::string_view source = {}) = delete;

}  // namespace murv

#endif
