// murv/convert.h - structures and standard containers from trees, and back.
//
// A structure is described once, beside it: MURV_MEMBERS(tPoint, m_dX, m_dY), or without a macro by a function that is
// found by the type of its argument:
//
//     constexpr auto murvMembers(const tPoint*)
//     {
//         return std::make_tuple(murv::member("x", &tPoint::m_dX), murv::member("y", &tPoint::m_dY));
//     }
#ifndef MURV_CONVERT_H
#define MURV_CONVERT_H

#include <array>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "murv/export.h"
#include "murv/fields.h"
#include "murv/get.h"
#include "murv/make.h"

namespace murv
{

/// The description of one member of a structure: the name in trees, and where it is.
template <typename tClass, typename tValue>
struct tMemberOf
{
    std::string_view m_svName;  ///< not owned: static text
    tValue tClass::*m_pMember;
    bool m_bRequired;
};

/// A member that must be there, unless it is a std::optional.
template <typename tClass, typename tValue>
constexpr tMemberOf<tClass, tValue> member(std::string_view name, tValue tClass::*pointer)
{
    return {name, pointer, true};
}

/// A member that keeps what its structure gives it when it is missing.
template <typename tClass, typename tValue>
constexpr tMemberOf<tClass, tValue> memberOr(std::string_view name, tValue tClass::*pointer)
{
    return {name, pointer, false};
}

namespace detail
{
/// The way from the node that is converted to one below it; lies on the stack of the conversion.
struct tSpot
{
    const tSpot* m_pAround;
    std::string_view m_svName;  // of a member; empty for an element
    std::size_t m_nIndex;
    std::size_t m_nLevel;
};

/// Throws CValueError about a node, or about what is missing when it is null.
[[noreturn]] MURV_API void throwAtSpot(const tSpot& spot, const CFields* node, const CFields& around,
                                       std::string_view wanted, std::string_view source);
/// Types that hold themselves would recurse as deep as the tree; this throws CLogicError before the stack is used up.
MURV_API void requireLevel(const tSpot& spot);
/// Appends a member; throws CLogicError for a name that is not 1 to 255 bytes.
MURV_API CFields& addMember(CFields& node, std::string_view name);

template <typename T, typename = void>
struct tIsDescribed : std::false_type
{
};
template <typename T>
struct tIsDescribed<T, std::void_t<decltype(murvMembers(static_cast<const T*>(nullptr)))>> : std::true_type
{
};

template <typename T, typename = void>
struct tIsMap : std::false_type
{
};
template <typename T>
struct tIsMap<T, std::void_t<typename T::mapped_type>> : std::is_same<typename T::key_type, std::string>
{
};

template <typename T, typename = void>
struct tIsList : std::false_type
{
};
template <typename T>
struct tIsList<T, std::void_t<decltype(std::declval<T&>().push_back(std::declval<typename T::value_type>()))>>
    : std::true_type
{
};

template <typename T>
struct tIsOptional : std::false_type
{
};
template <typename T>
struct tIsOptional<std::optional<T>> : std::true_type
{
};

template <typename T>
struct tIsTuple : std::false_type
{
};
template <typename... T>
struct tIsTuple<std::tuple<T...>> : std::true_type
{
};
template <typename T, typename U>
struct tIsTuple<std::pair<T, U>> : std::true_type
{
};

template <typename T>
struct tIsArray : std::false_type
{
};
template <typename T, std::size_t n>
struct tIsArray<std::array<T, n>> : std::true_type
{
};

template <typename T>
inline constexpr bool s_cbNever = false;

template <typename T>
void writeTree(CFields& node, const T& value);

template <typename T>
void writeElement(CFields& node, const T& value)
{
    writeTree(node.addArrayAt(CFields()), value);
}

template <typename T>
void writeMember(CFields& node, std::string_view name, const T& value)
{
    if constexpr (tIsOptional<T>::value)
    {
        if (!value.has_value())
            return;
    }
    writeTree(addMember(node, name), value);
}

template <typename T>
void writeContainer(CFields& node, const T& value)
{
    if constexpr (tIsDescribed<T>::value)
    {
        node.setValue(DT_fields);
        std::apply([&](const auto&... one) { (writeMember(node, one.m_svName, value.*one.m_pMember), ...); },
                   murvMembers(&value));
    }
    else if constexpr (tIsMap<T>::value)
    {
        node.setValue(DT_fields);
        for (const auto& [name, one] : value)
            writeTree(addMember(node, name), one);
    }
    else if constexpr (tIsTuple<T>::value)
    {
        node.setValue(DT_array);
        std::apply([&](const auto&... one) { (writeElement(node, one), ...); }, value);
    }
    else
    {
        static_assert(tIsList<T>::value || tIsArray<T>::value,
                      "describe the type by MURV_MEMBERS or a function murvMembers");
        node.setValue(DT_array);
        for (const typename T::value_type& one : value)
            writeElement(node, one);
    }
}

template <typename T>
void writeTree(CFields& node, const T& value)
{
    if constexpr (std::is_same_v<T, CFields>)
        node.setValue(value);
    else if constexpr (s_cbIsScalar<T>)
        node.setValue(CNewValue(value).take());
    else if constexpr (tIsOptional<T>::value)
    {
        if (value.has_value())
            writeTree(node, *value);
    }
    else
        writeContainer(node, value);
}

/// Reads trees into values; keeps the text of the document for places.
class CTreeReader
{
public:
    explicit CTreeReader(std::string_view source) : m_svSource(source)
    {
    }

    template <typename T>
    void read(const CFields& node, T& value, const tSpot& spot) const
    {
        if constexpr (std::is_same_v<T, CFields>)
            value.setValue(node);
        else if constexpr (s_cbIsScalar<T>)
        {
            std::optional<T> found = get<T>(node);
            if (!found.has_value())
                throwAtSpot(spot, &node, node, wanted4Type<T>(), m_svSource);
            value = *std::move(found);
        }
        else if constexpr (tIsOptional<T>::value)
        {
            if (node.isNull())
                value.reset();
            else
                read(node, value.emplace(), spot);
        }
        else
            readContainer(node, value, spot);
    }

private:
    template <typename T>
    void readContainer(const CFields& node, T& value, const tSpot& spot) const
    {
        requireLevel(spot);
        constexpr bool isSet = tIsDescribed<T>::value || tIsMap<T>::value;
        if (isSet ? !node.isField() : !node.isArray())
            throwAtSpot(spot, &node, node, isSet ? "field set" : "array", m_svSource);
        if constexpr (tIsDescribed<T>::value)
            std::apply([&](const auto&... one) { (readMember(node, one, value.*one.m_pMember, spot), ...); },
                       murvMembers(&value));
        else if constexpr (tIsMap<T>::value)
            readMap(node, value, spot);
        else if constexpr (tIsTuple<T>::value)
            readTuple(node, value, spot);
        else if constexpr (tIsArray<T>::value)
            readArray(node, value, spot);
        else
            readList(node, value, spot);
    }

    template <typename tMember, typename T>
    void readMember(const CFields& node, const tMember& member, T& value, const tSpot& spot) const
    {
        const tSpot below{&spot, member.m_svName, 0, spot.m_nLevel + 1};
        const CFields* const found =
            node.findChildAt(member.m_svName.data(), static_cast<unsigned int>(member.m_svName.size()));
        if (found != nullptr)
            return read(*found, value, below);
        if constexpr (tIsOptional<T>::value)
        {
            if (member.m_bRequired)
                value.reset();
        }
        else if (member.m_bRequired)
            throwAtSpot(below, nullptr, node, wantedWord<T>(), m_svSource);
    }

    template <typename T>
    void readMap(const CFields& node, T& value, const tSpot& spot) const
    {
        value.clear();
        std::size_t index = 0;
        for (const CFields& member : node)
        {
            const std::string_view name(member.getName(), member.getNameLen());
            typename T::mapped_type one{};
            read(member, one, tSpot{&spot, name, index++, spot.m_nLevel + 1});
            value.emplace(std::string(name), std::move(one));
        }
    }

    template <typename T>
    void readList(const CFields& node, T& value, const tSpot& spot) const
    {
        static_assert(tIsList<T>::value, "describe the type by MURV_MEMBERS or a function murvMembers");
        value.clear();
        std::size_t index = 0;
        for (const CFields& element : node)
        {
            typename T::value_type one{};
            read(element, one, tSpot{&spot, {}, index++, spot.m_nLevel + 1});
            value.push_back(std::move(one));
        }
    }

    template <typename T>
    void readArray(const CFields& node, T& value, const tSpot& spot) const
    {
        requireCount(node, value.size(), spot);
        for (std::size_t i = 0; i < value.size(); ++i)
            read(node[i], value[i], tSpot{&spot, {}, i, spot.m_nLevel + 1});
    }

    template <typename T>
    void readTuple(const CFields& node, T& value, const tSpot& spot) const
    {
        requireCount(node, std::tuple_size_v<T>, spot);
        std::size_t i = 0;
        std::apply(
            [&](auto&... one) {
                const auto next = [&](auto& element) {
                    read(node[i], element, tSpot{&spot, {}, i, spot.m_nLevel + 1});
                    ++i;
                };
                (next(one), ...);
            },
            value);
    }

    void requireCount(const CFields& node, std::size_t count, const tSpot& spot) const
    {
        if (node.getChildCount() != count)
            throwAtSpot(spot, &node, node, "array of " + std::to_string(count), m_svSource);
    }

    template <typename T>
    static std::string wantedWord()
    {
        if constexpr (s_cbIsScalar<T>)
            return wanted4Type<T>();
        else if constexpr (std::is_same_v<T, CFields>)
            return {};
        else
            return tIsDescribed<T>::value || tIsMap<T>::value ? "field set" : "array";
    }

    std::string_view m_svSource;
};
}  // namespace detail

/// A tree of a value: bool, integers, float, double, std::string, std::string_view, CFields, std::optional, std::vector
/// and other containers with push_back, std::array, std::pair, std::tuple, maps from std::string, and structures that
/// are described, each made of such types.
///
/// Structures and maps become field sets, the others arrays; an empty std::optional is null, and as a member of a
/// structure is left out. Linear.
/// \throw CLogicError for a name in a map that is not 1 to 255 bytes
template <typename T>
[[nodiscard]] CFields toTree(const T& value)
{
    CFields tree;
    detail::writeTree(tree, value);
    return tree;
}

/// The value of a tree, strictly: types are read as `get` reads them, arrays of fixed size and tuples need as many
/// elements. Members that a structure does not have are passed over; of several of one name the first counts.
///
/// \param source  the text that the tree was loaded from, so that an error can say line and column; may be empty
/// \throw CValueError with the path from `node` when a value is missing or is of another type; CLogicError when a type
///        that holds itself meets a tree of more than 1000 levels. Linear; a structure looks each member up.
template <typename T>
[[nodiscard]] T fromTree(const CFields& node, std::string_view source = {})
{
    static_assert(!std::is_same_v<T, std::string_view>, "the tree may go before the view");
    T value{};
    detail::CTreeReader(source).read(node, value, detail::tSpot{nullptr, {}, 0, 0});
    return value;
}

}  // namespace murv

/// Describes a structure by its members, which have their own names in trees; stands in the namespace of the structure,
/// or after `friend` inside it, and takes up to 24 members.
#define MURV_MEMBERS(type, ...) MURV_DETAIL_MEMBERS(MURV_DETAIL_SAME_NAME, type, __VA_ARGS__)

/// The same with names in trees: MURV_NAMED_MEMBERS(tPoint, (m_dX, "x"), (m_dY, "y")).
#define MURV_NAMED_MEMBERS(type, ...) MURV_DETAIL_MEMBERS(MURV_DETAIL_OTHER_NAME, type, __VA_ARGS__)

#define MURV_DETAIL_MEMBERS(one, type, ...)                               \
    inline constexpr auto murvMembers(const type*)                        \
    {                                                                     \
        return std::make_tuple(MURV_DETAIL_EACH(one, type, __VA_ARGS__)); \
    }
#define MURV_DETAIL_SAME_NAME(type, a) ::murv::member(#a, &type::a)
#define MURV_DETAIL_OTHER_NAME(type, a) ::murv::member(MURV_DETAIL_SECOND a, &type::MURV_DETAIL_FIRST a)
#define MURV_DETAIL_FIRST(a, b) a
#define MURV_DETAIL_SECOND(a, b) b

#define MURV_DETAIL_PICK(a1, a2, a3, a4, a5, a6, a7, a8, a9, a10, a11, a12, a13, a14, a15, a16, a17, a18, a19, a20, \
                         a21, a22, a23, a24, name, ...)                                                             \
    name
#define MURV_DETAIL_EACH(one, type, ...)                                                                              \
    MURV_DETAIL_PICK(__VA_ARGS__, MURV_DETAIL_EACH_24, MURV_DETAIL_EACH_23, MURV_DETAIL_EACH_22, MURV_DETAIL_EACH_21, \
                     MURV_DETAIL_EACH_20, MURV_DETAIL_EACH_19, MURV_DETAIL_EACH_18, MURV_DETAIL_EACH_17,              \
                     MURV_DETAIL_EACH_16, MURV_DETAIL_EACH_15, MURV_DETAIL_EACH_14, MURV_DETAIL_EACH_13,              \
                     MURV_DETAIL_EACH_12, MURV_DETAIL_EACH_11, MURV_DETAIL_EACH_10, MURV_DETAIL_EACH_9,               \
                     MURV_DETAIL_EACH_8, MURV_DETAIL_EACH_7, MURV_DETAIL_EACH_6, MURV_DETAIL_EACH_5,                  \
                     MURV_DETAIL_EACH_4, MURV_DETAIL_EACH_3, MURV_DETAIL_EACH_2, MURV_DETAIL_EACH_1, none)            \
    (one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_1(one, type, a) one(type, a)
#define MURV_DETAIL_EACH_2(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_1(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_3(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_2(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_4(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_3(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_5(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_4(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_6(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_5(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_7(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_6(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_8(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_7(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_9(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_8(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_10(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_9(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_11(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_10(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_12(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_11(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_13(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_12(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_14(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_13(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_15(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_14(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_16(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_15(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_17(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_16(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_18(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_17(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_19(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_18(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_20(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_19(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_21(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_20(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_22(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_21(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_23(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_22(one, type, __VA_ARGS__)
#define MURV_DETAIL_EACH_24(one, type, a, ...) one(type, a), MURV_DETAIL_EACH_23(one, type, __VA_ARGS__)

#endif
