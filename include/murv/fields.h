// murv/fields.h - the node of a data tree.
//
// Every node is at once a value and a named member of its parent. A node takes 64 bytes; the parts that few nodes need
// (second value, comments, user pointer, callback arguments) are in a side record, which is made when it is first used.
#ifndef MURV_FIELDS_H
#define MURV_FIELDS_H

#include <climits>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "murv/export.h"
#include "murv/member_iterator.h"
#include "murv/packet_expression.h"
#include "murv/strings.h"
#include "murv/types.h"

namespace murv
{

namespace detail
{
struct tFieldAccess;
struct tSideRecord;

/// Integer types that have no subscript overload of their own, such as std::size_t.
template <typename T>
using tOtherIndex = std::enable_if_t<std::is_integral_v<T> && !std::is_same_v<T, int> &&
                                         !std::is_same_v<T, unsigned int> && !std::is_same_v<T, bool>,
                                     int>;

/// True for a negative index of any integer type.
template <typename T>
constexpr bool isNegativeIndex(T index)
{
    if constexpr (std::is_signed_v<T>)
        return index < 0;
    else
        return static_cast<void>(index), false;
}

/// The index as an unsigned int; what does not fit becomes an index that never exists.
template <typename T>
constexpr unsigned int narrowIndex(T index)
{
    return static_cast<unsigned long long>(index) > UINT_MAX ? UINT_MAX : static_cast<unsigned int>(index);
}

/// Pointers that must not silently become a bool.
template <typename T>
using tForeignPointer = std::enable_if_t<!std::is_same_v<std::remove_cv_t<T>, char>, int>;
}  // namespace detail

/// A node of a data tree: a value (scalar, byte string, field set or array) with an optional name, ID, packet
/// expression and comments.
///
/// Ownership: a node owns its members, its name, its comments and its strings, except text given as CStaticString and
/// the user pointer, which it borrows. A member that is moved out of a loaded or copied tree keeps the piece of memory
/// that it lies in with others: an eighth of the tree, up to 2 MB. A copy of the member does not.
///
/// References: a reference to a member stays valid, and means that member, while members are appended to its parent and
/// while members after it are removed. It ends when that member or one before it is removed, or when its parent's
/// value is replaced.
///
/// Errors: misuse throws CLogicError; looking for something that is not there never throws. When memory runs out,
/// std::bad_alloc or CLogicError is thrown and the tree stays whole.
///
/// Threads: distinct trees may be used from distinct threads, and one tree may be read from several. Two things are
/// shared by all trees and are for one thread alone: registering keyword callbacks, which is to be done before others
/// use them, and writing to `freeNull`, which is what `tree["missing"] = 1` does. Threads that cannot be sure that a
/// name is there write through addChildRef, which adds the member, or findChildAt, which gives null.
///
/// Depth: trees may nest a million levels; no operation recurses on the depth.
class MURV_API CFields
{
public:
    using iterator = CMemberIterator<CFields>;
    using const_iterator = CMemberIterator<const CFields>;

    /// \name Limits
    /// "LSint" and "LUint" name the widest integers that a node stores.
    /// @{
    static constexpr int maxSint32 = INT_MAX;
    static constexpr int minSint32 = INT_MIN;
    static constexpr unsigned int maxUint32 = UINT_MAX;
    static constexpr long long minSint64 = LLONG_MIN;
    static constexpr long long maxSint64 = LLONG_MAX;
    static constexpr unsigned long long maxUint64 = ULLONG_MAX;
    static constexpr long long minLSint = LLONG_MIN;
    static constexpr long long maxLSint = LLONG_MAX;
    static constexpr unsigned long long maxLUint = ULLONG_MAX;
    /// @}

    /// \name Static nodes
    /// Usable from static initialisers of other files.
    /// @{
    static const CFields& null;     ///< a node of type DT_null
    static const CFields& nullRef;  ///< the same node; what look-ups in constant nodes give when nothing is found
    static CFields& freeNull;  ///< writable, by one thread; what look-ups by name give when there is no such member
    static const tPacketExpInfo& nullPktExp;  ///< the packet expression that means "none"
    /// @}

    /// \name Construction
    /// A new node has no ID, name, packet expression or comments.
    /// @{
    CFields() noexcept = default;
    /// The zero value of that type: no members, false, 0, 0.0 or the empty string.
    CFields(E_DataType dt);
    CFields(bool value) noexcept;
    CFields(int value) noexcept;
    CFields(unsigned int value) noexcept;
    CFields(long value) noexcept;
    CFields(unsigned long value) noexcept;
    CFields(long long value) noexcept;
    CFields(unsigned long long value) noexcept;
    CFields(double value) noexcept;
    /// Copies a NUL-terminated text; null throws.
    CFields(const char* text);
    /// Copies exactly `length` bytes; null throws.
    CFields(const char* text, unsigned int length);
    CFields(const std::string& text);
    CFields(std::string_view text);
    /// Borrows the text; nothing is allocated.
    CFields(const CStaticString& text);
    template <typename T, detail::tForeignPointer<T> = 0>
    CFields(T*) = delete;
    /// A null node is CFields(); a null pointer is no text.
    CFields(std::nullptr_t) = delete;
    /// Neither a number nor a text: write 'c' as a text, or as an int.
    CFields(char value) = delete;

    /// Deep copy of the whole node: values, name, ID, packet expression, comments, offsets and user pointer. Each value
    /// keeps its own type; a second value that setVK has not marked is left out.
    CFields(const CFields& source);
    /// Takes everything over and leaves `source` a null node; O(1).
    CFields(CFields&& source) noexcept;
    ~CFields();
    /// @}

    /// \name Value
    /// The value kind chooses the slot: VK_actual the first, any other the second.
    /// @{
    static bool isValidDT(unsigned int dt);
    static bool isValidVK(unsigned int vk);
    E_DataType getDT(E_ValueKind vk = VK_actual) const;
    /// Whether the second value is in use, and for which keyword.
    E_ValueKind getVK() const;
    /// Marks the second value as used (it starts as a copy of the first) or, with VK_actual, drops it.
    /// \return false, with nothing changed, for an unknown kind, and for a container that has no second value.
    bool setVK(E_ValueKind vk);
    /// The slot's eight bytes; valid until the node changes.
    const uMultiValue& getValueRef(E_ValueKind vk = VK_actual) const;
    /// Address of the scalar or of a byte string's first byte; null for an empty default string and other types.
    const void* getValuePtr(E_ValueKind vk = VK_actual) const;
    /// Size of what getValuePtr points to, in bytes.
    unsigned int getRawBytes(E_ValueKind vk = VK_actual) const;
    /// True when both slots hold equal values of one type; always false for containers.
    bool isEqualDualValue() const;

    /// Sets the slot to the zero value of the type.
    ///
    /// Writing the second slot resets the value kind to VK_actual: call setVK afterwards to mark it in use.
    /// \return false for a container in the second slot, which then is DT_null.
    bool setValue(E_DataType dt, E_ValueKind vk = VK_actual);
    bool setValue(bool value, E_ValueKind vk = VK_actual);
    bool setValue(int value, E_ValueKind vk = VK_actual);
    bool setValue(unsigned int value, E_ValueKind vk = VK_actual);
    bool setValue(long value, E_ValueKind vk = VK_actual);
    bool setValue(unsigned long value, E_ValueKind vk = VK_actual);
    bool setValue(long long value, E_ValueKind vk = VK_actual);
    bool setValue(unsigned long long value, E_ValueKind vk = VK_actual);
    bool setValue(double value, E_ValueKind vk = VK_actual);
    bool setValue(const char* text, E_ValueKind vk = VK_actual);
    bool setValue(const char* text, unsigned int length, E_ValueKind vk = VK_actual);
    bool setValue(const std::string& text, E_ValueKind vk = VK_actual);
    bool setValue(std::string_view text, E_ValueKind vk = VK_actual);
    bool setValue(const CStaticString& text, E_ValueKind vk = VK_actual);
    template <typename T, detail::tForeignPointer<T> = 0>
    bool setValue(T*, E_ValueKind = VK_actual) = delete;

    /// Copies both values and the value kind of `source`, which may be this node, a member or a parent of it.
    ///
    /// A marked second value of another type takes the type of the first: of a number the eight bytes are kept, a
    /// string becomes zero, and beside a string anything else becomes the empty string. (Assignment and setField keep
    /// both types.)
    /// \return false for a container whose source has a marked second value, which is dropped
    bool setValue(const CFields& source);
    /// Copies the whole node, each value with its own type; a source without ID leaves this node's ID. Always true.
    bool setField(const CFields& source);
    /// Exchanges the first values; with packet expressions also these and, when `other` has one, the user pointers.
    /// Throws when one node lies below the other.
    void swapValue(CFields& other, bool withPacketExp);
    /// Exchanges values, comments and offsets; IDs and names only when `other` has one.
    /// Throws when one node lies below the other.
    void swapField(CFields& other, bool withPacketExp);
    /// @}

    /// \name ID and name
    /// @{
    unsigned int getID() const;
    /// \return false, with nothing changed, above 2147483647; 0 clears.
    bool setID(unsigned int id);
    /// NUL-terminated; "" when there is none. Valid until the name changes, the node is moved, swapped or removed, or a
    /// member before it is removed.
    const char* getName() const;
    /// In bytes; a name may hold NUL bytes.
    unsigned int getNameLen() const;
    /// Copies the name. \return false, with nothing changed, unless it has 1 to 255 bytes.
    ///
    /// O(1) on average; O(log n) for a member of a large field set in which n members have the same name. The first
    /// such renaming after a member was removed costs a step for each member of the set.
    bool setName(const char* name);
    bool setName(const char* name, unsigned int length);
    bool setName(const std::string& name);
    bool setName(std::string_view name);
    void clearName();
    /// @}

    /// \name Adding members
    /// @{
    /// Gets or adds a member by name or ID.
    ///
    /// A null node becomes an array when the name is null or empty, else a field set. In a field set, unless duplicates
    /// are allowed, a member of that name, or else a node with that ID anywhere below this node, is returned as it is.
    /// By name O(1) on average; an ID other than 0 costs a walk over the subtree.
    /// \param name  NUL-terminated; null or empty for none; beyond 255 bytes the member stays unnamed
    /// \param id    1..2147483647; others give no ID
    CFields& addChildRef(const char* name, unsigned int id = 0, bool allowDuplicate = false);
    CFields& addChildRef(const std::string& name, unsigned int id = 0, bool allowDuplicate = false);
    CFields& addChildRef(std::string_view name, unsigned int id = 0, bool allowDuplicate = false);
    CFields* addChildPtr(const char* name, unsigned int id = 0, bool allowDuplicate = false);
    CFields* addChildPtr(const std::string& name, unsigned int id = 0, bool allowDuplicate = false);
    CFields* addChildPtr(std::string_view name, unsigned int id = 0, bool allowDuplicate = false);
    /// Appends a copy of `value` to an array (a null node becomes one); `valueOnly` leaves out name, ID and the like.
    CFields& addArrayAt(const CFields& value, bool valueOnly = false);
    CFields& addArrayAt(CFields&& value);
    /// @}

    /// \name Counting and testing
    /// @{
    /// Direct members; 0 for scalars.
    unsigned int getChildCount() const;
    /// All nodes below `start` (below this node when null), which itself is not counted.
    unsigned int getMemberCount(const CFields* start = nullptr) const;
    /// True for a container without members and for a null node.
    bool emptyChild() const;
    bool isValidChild(unsigned int index) const;
    bool isValidChild(int index) const;
    template <typename T, detail::tOtherIndex<T> = 0>
    bool isValidChild(T index) const
    {
        return !detail::isNegativeIndex(index) && isValidChild(detail::narrowIndex(index));
    }
    bool isValidChild(const char* name, unsigned int len) const;
    bool isValidChild(const char* name) const;
    bool isValidChild(const std::string& name) const;
    bool isValidChild(std::string_view name) const;
    /// @}

    /// \name Finding
    /// Names are bytes, and case counts; the first match in index order is the result.
    /// @{
    /// Finds the first direct member of that name, in field sets only.
    ///
    /// \param name  need not end in NUL; null finds nothing
    /// \param len   length of `name` in bytes; 0 finds nothing
    /// \return the member, owned by this node, or null. Average cost O(1) in large field sets.
    const CFields* findChildAt(const char* name, unsigned int len) const;
    CFields* findChildAt(const char* name, unsigned int len);
    /// Finds the first node with that ID in the subtree of `start` (of this node when null), itself included, parents
    /// before their members. Costs a walk.
    const CFields* findID(unsigned int id, const CFields* start = nullptr) const;
    CFields* findID(unsigned int id, const CFields* start = nullptr);
    /// The member, or nullRef when there is none.
    const CFields& getChildAt(unsigned int index) const;
    /// Index of the first direct member with that ID, or -1.
    int getChildIdx4ID(unsigned int id) const;
    /// Name of the first direct member with that ID, or ""; valid as that of getName.
    const char* getChildName4ID(unsigned int id) const;
    int getChildIdx4Name(const char* name) const;
    int getChildIdx4Name(const char* name, unsigned int length) const;
    /// ID of the first direct member of that name; 0 when there is none.
    unsigned int getChildID4Name(const char* name) const;
    unsigned int getChildID4Name(const char* name, unsigned int length) const;
    /// Renames the first direct member with that ID. \return false when there is none or the name is not 1..255 bytes.
    bool setChildName4ID(unsigned int id, const char* name);

    /// A copy of the member, or of `fallback` when there is none. Throws for scalars when looked up by index.
    CFields copyChildAt(unsigned int index, const CFields& fallback) const;
    CFields copyChildAt(int index, const CFields& fallback) const;
    template <typename T, detail::tOtherIndex<T> = 0>
    CFields copyChildAt(T index, const CFields& fallback) const
    {
        return copyChildAt(detail::isNegativeIndex(index) ? UINT_MAX : detail::narrowIndex(index), fallback);
    }
    CFields copyChildAt(const char* name, unsigned int len, const CFields& fallback) const;
    CFields copyChildAt(const char* name, const CFields& fallback) const;
    CFields copyChildAt(const std::string& name, const CFields& fallback) const;
    CFields copyChildAt(std::string_view name, const CFields& fallback) const;

    /// The member at that index; never creates one. Throws for scalars and for an index that does not exist.
    CFields& operator[](unsigned int index);
    CFields& operator[](int index);
    template <typename T, detail::tOtherIndex<T> = 0>
    CFields& operator[](T index)
    {
        return detail::isNegativeIndex(index) ? (*this)[-1] : (*this)[detail::narrowIndex(index)];
    }
    /// As above, but an index beyond the end gives nullRef.
    const CFields& operator[](unsigned int index) const;
    const CFields& operator[](int index) const;
    template <typename T, detail::tOtherIndex<T> = 0>
    const CFields& operator[](T index) const
    {
        return detail::isNegativeIndex(index) ? (*this)[-1] : (*this)[detail::narrowIndex(index)];
    }
    /// The first member of that name, or freeNull, the writable node that belongs to no tree and is shared by all: of
    /// several threads only one may write to it. To add a member use addChildRef, to ask for one findChildAt.
    CFields& operator[](const char* name);
    CFields& operator[](const std::string& name);
    CFields& operator[](std::string_view name);
    CFields& operator[](const CStaticString& name);
    /// The first member of that name, or nullRef.
    const CFields& operator[](const char* name) const;
    const CFields& operator[](const std::string& name) const;
    const CFields& operator[](std::string_view name) const;
    const CFields& operator[](const CStaticString& name) const;

    iterator begin();
    iterator end();
    const_iterator begin() const;
    const_iterator end() const;
    /// @}

    /// \name Removing members
    /// Members lie side by side: removing the last one costs O(1), any other a step for each member after it, which
    /// moves. To empty a container from the front costs the square of its size; removeChildAll is linear.
    /// @{
    /// Removes a member; with `out`, copies it there first.
    bool removeChildAt(unsigned int index, CFields* out = nullptr);
    bool removeChildAt(int index, CFields* out = nullptr);
    template <typename T, detail::tOtherIndex<T> = 0>
    bool removeChildAt(T index, CFields* out = nullptr)
    {
        return !detail::isNegativeIndex(index) && removeChildAt(detail::narrowIndex(index), out);
    }
    bool removeChildAt(const char* name, unsigned int len, CFields* out = nullptr);
    bool removeChildAt(const char* name, int len, CFields* out = nullptr);
    template <typename T, detail::tOtherIndex<T> = 0, std::enable_if_t<std::is_unsigned_v<T>, int> = 0>
    bool removeChildAt(const char* name, T len, CFields* out = nullptr)
    {
        return removeChildAt(name, detail::narrowIndex(len), out);
    }
    bool removeChildAt(const char* name, CFields* out = nullptr);
    bool removeChildAt(const std::string& name, CFields* out = nullptr);
    bool removeChildAt(std::string_view name, CFields* out = nullptr);
    /// Removes all members and resets this node's source offsets; scalars stay as they are.
    void removeChildAll();
    /// Resets both values to the zero value of the type. A container made so has no room for members: adding throws
    /// until setValue gives it a type again.
    void removeAll(E_DataType dt = DT_null);
    /// Cuts an array to its first `n` members; a larger `n` throws.
    void resizeArray(unsigned int n);
    /// @}

    /// \name Type tests
    /// @{
    bool isNull(E_ValueKind vk = VK_actual) const;
    bool isBool(E_ValueKind vk = VK_actual) const;
    bool isCodelist(E_ValueKind vk = VK_actual) const;
    bool isArray(E_ValueKind vk = VK_actual) const;
    bool isField(E_ValueKind vk = VK_actual) const;
    /// True when the number, of whatever type, is integral and in range.
    bool isSint32(E_ValueKind vk = VK_actual) const;
    bool isUint32(E_ValueKind vk = VK_actual) const;
    bool isSint64(E_ValueKind vk = VK_actual) const;
    bool isUint64(E_ValueKind vk = VK_actual) const;
    bool isIntegral(E_ValueKind vk = VK_actual) const;
    bool isNumeric(E_ValueKind vk = VK_actual) const;
    /// Same test as isNumeric: every integer is readable as a double.
    bool isDouble(E_ValueKind vk = VK_actual) const;
    /// Whether the value can be read as that type; DT_sint and DT_uint mean the 32-bit ranges.
    bool isConvertible(E_DataType dt, E_ValueKind vk = VK_actual) const;
    /// @}

    /// \name Conversions
    /// Throw CLogicError when the value does not convert. The range tests look at the first value, whichever is read.
    /// @{
    bool asBool(E_ValueKind vk = VK_actual) const;
    int asSint32(E_ValueKind vk = VK_actual) const;
    unsigned int asUint32(E_ValueKind vk = VK_actual) const;
    long long asSint64(E_ValueKind vk = VK_actual) const;
    unsigned long long asUint64(E_ValueKind vk = VK_actual) const;
    long long asLSint(E_ValueKind vk = VK_actual) const;
    unsigned long long asLUint(E_ValueKind vk = VK_actual) const;
    float asFloat(E_ValueKind vk = VK_actual) const;
    double asDouble(E_ValueKind vk = VK_actual) const;
    std::string asString(E_ValueKind vk = VK_actual) const;
    /// Reads numbers and decimal text. \return false, with `out` 0 or what the text gave, for anything else; also, with
    /// `out` 0, when a `long` of 32 bits cannot hold the number.
    bool toSint64(long long& out, E_ValueKind vk = VK_actual) const;
    bool toSint64(long& out, E_ValueKind vk = VK_actual) const;
    bool toUint64(unsigned long long& out, E_ValueKind vk = VK_actual) const;
    bool toUint64(unsigned long& out, E_ValueKind vk = VK_actual) const;
    /// Length in bytes and first byte of a byte string; 0, with `data` unchanged, for anything else.
    unsigned int getCodePoint(const char** data, E_ValueKind vk = VK_actual) const;
    /// Resizes an owned byte string, filling at the end. True even when the length stayed, as memory ran out or
    /// `length` is above 2147483642.
    bool resizeCodes(unsigned int length, unsigned char fill, E_ValueKind vk = VK_actual);
    /// @}

    /// \name Assignment
    /// @{
    /// A bare value (no ID, name, packet length, user pointer or offsets) replaces the values only. Any other node
    /// replaces everything, as setField does: without a name it clears the name; only an ID of 0 is not taken. A loaded
    /// document has offsets, so that `tree["config"] = loaded` clears the name "config";
    /// `tree["config"].setValue(loaded)` keeps it.
    ///
    /// Moving costs the same for trees of any size. A node that is moved into one of its members, or into one of the
    /// first 256 nodes below it, is copied instead. To move a node into one farther below it is a mistake. A library
    /// that was compiled without NDEBUG, or with AddressSanitizer, throws CLogicError ("mismatched condition") and
    /// changes nothing; to find the mistake, it walks over the moved tree whenever the target is a member of some node.
    /// In any other build of the library the behaviour is undefined; what is seen is that the source becomes null, and
    /// that the moved tree is below itself, belongs to nobody and is never freed. How the application is compiled does
    /// not count.
    CFields& operator=(const CFields& source);
    // NOLINTNEXTLINE(performance-noexcept-move-constructor): a second value or a comment to hold may need memory
    CFields& operator=(CFields&& source);
    CFields& operator=(E_DataType dt);
    CFields& operator=(bool value);
    CFields& operator=(int value);
    CFields& operator=(unsigned int value);
    CFields& operator=(long value);
    CFields& operator=(unsigned long value);
    CFields& operator=(long long value);
    CFields& operator=(unsigned long long value);
    CFields& operator=(double value);
    CFields& operator=(const char* text);
    CFields& operator=(const std::string& text);
    CFields& operator=(std::string_view text);
    CFields& operator=(const CStaticString& text);
    template <typename T, detail::tForeignPointer<T> = 0>
    CFields& operator=(T*) = delete;
    /// @}

    /// \name Comparison
    /// By type, then by first value, member by member; names, IDs, comments and second values do not count.
    /// @{
    bool operator==(const CFields& b) const;
    bool operator!=(const CFields& b) const;
    bool operator<(const CFields& b) const;
    bool operator>(const CFields& b) const;
    bool operator<=(const CFields& b) const;
    bool operator>=(const CFields& b) const;
    /// -1, 0 or 1.
    int compare(const CFields& b) const;
    /// True for a null node.
    bool operator!() const;
    /// @}

    /// \name Comments and source offsets
    /// A comment is kept with its leading slashes; the position must be one of the three.
    /// @{
    /// Copies the comment without one line feed at its end. Throws unless it is empty or begins with "/".
    void setComment(const char* text, unsigned int len, E_CommentPosition pos);
    void setComment(const char* text, E_CommentPosition pos);
    void setComment(const std::string& text, E_CommentPosition pos);
    void setComment(std::string_view text, E_CommentPosition pos);
    std::string getCommentCopy(E_CommentPosition pos) const;
    /// Null when there is none; valid until that comment changes.
    const char* getCommentPtr(E_CommentPosition pos) const;
    unsigned int getCommentLen(E_CommentPosition pos) const;
    /// An empty comment counts as present.
    bool hasComment(E_CommentPosition pos) const;
    /// True once any comment was set, even if none is left.
    bool isComment() const;
    /// Bytes from the start of the data that the node was loaded from; 0 for nodes made by hand. place4Offset
    /// (murv/load_error.h) gives line and column.
    void setOffsetStart(int offset);
    int getOffsetStart() const;
    void setOffsetEnd(int offset);
    int getOffsetEnd() const;
    /// @}

    /// \name Packet expression
    /// @{
    tPacketExpInfo pkt_GetExp() const;
    /// Stores all ten bytes as they are.
    void pkt_SetExp(const tPacketExpInfo& pei);
    static bool pkt_IsNullExp(const tPacketExpInfo& pei);
    /// The application's own pointer; never dereferenced or freed.
    void pkt_SetOSA4User(const void* data);
    const void* pkt_GetOSA4User() const;
    /// What a keyword callback sees of the packet; all zero outside callbacks.
    tInnerSupportedArgs4ESK& pkt_GetISA4ESK();

    /// Length of this node's item as its packet expression states it; 0 for containers.
    /// \param a_bSki  supporting keywords are applied: items of run-time length count 0
    uPacketLengthExpression pkt_Len4OneSelf(bool a_bSki) const;
    /// Sum of the lengths of all leaves of `a_pRoot` (of this node when null), modulo 2^31.
    uPacketLengthExpression pkt_Len4Children(bool a_bSki, const CFields* a_pRoot = nullptr) const;
    /// Bytes that the present value needs in the form of its packet expression; 0 for containers.
    unsigned int pkt_Len4PEI() const;
    /// @}

    /// \name Packets
    /// A packet is the row of the items of all leaves, in order. `a_pRoot` chooses another subtree than this node's.
    /// @{
    /// Makes this node's item; nothing for containers and for items without length.
    ///
    /// Although constant, this changes leaves: a variable item records its total length in the packet expression, and
    /// with `a_bSki` the supporting keywords fill values and lengths in.
    /// Throws CLogicError when a keyword is unknown, has no AllotPkt callback, or announces a size that does not fit
    /// its item; std::bad_alloc when the packet does not fit the memory. The tree stays whole.
    std::string pkt_Make4OneSelf(bool a_bSki) const;
    /// Makes the packet of a subtree; changes its leaves as above.
    std::string pkt_Make4Children(bool a_bSki, CFields* a_pRoot = nullptr) const;

    /// Reads this node's item from the start of a packet.
    ///
    /// \param data    not kept; must not lie in the tree that is filled
    /// \param length  in bytes; nothing after them is read
    /// \param a_bSet  store the value; otherwise the item is only measured
    /// \return the bytes that remain after the item; negative: how many are missing, or -1 for an unreadable number.
    /// Throws CLogicError when an external keyword has no ParsePkt callback.
    int pkt_Parse4OneSelf(const char* data, unsigned int length, bool a_bSet);
    /// Reads all leaves of a subtree, in as many passes as docs/packets.md says. What was read before a failure stays.
    int pkt_Parse4Children(const char* data, unsigned int length, bool a_bSet, CFields* a_pRoot = nullptr);

    /// Whether the two values are equal, for leaves with the keyword "valid" (`valid` true) or "fix" (false); true for
    /// all other nodes.
    bool pkt_Check4OneSelf(bool valid) const;
    /// True when every leaf of the subtree passes.
    bool pkt_Check4Children(bool valid, const CFields* a_pRoot = nullptr) const;
    /// Checks the item at the start of a packet by the leaf's keyword; true without one.
    ///
    /// Throws CLogicError when an external keyword has no CheckPkt callback.
    bool pkt_DetailCheck4OneSelf(const char* data, unsigned int length);
    /// The number of leaves whose items do not pass; 0 when all do.
    unsigned int pkt_DetailCheck4Children(const char* data, unsigned int length, CFields* a_pRoot = nullptr);
    /// @}

    /// \name Supporting keywords
    /// An external keyword belongs to one of the kinds 1 to 15, and each kind has six callbacks of its own. They are
    /// shared by all trees and threads, and nothing guards them: register them before other threads load, save, make,
    /// parse or check anything.
    ///
    /// A callback may change its node's value and packet expression, throw, and register callbacks. It may not add or
    /// remove members of the tree that is being walked, nor the node itself. When it returns 0 or less, its item is
    /// left out of the packet, not stored, or counted as failed.
    /// @{
    /// Above 0 for a valid index and option, 0 for an unknown index, below 0 for an invalid index or option.
    using tCheckIdxFP = int (*)(unsigned short index, unsigned char option);
    /// The index (1 to 65535) of a keyword's text; anything else for "not mine".
    using tGetIdxFP = int (*)(const char* text, unsigned char option);
    /// The keyword's text, NUL-terminated and not kept beyond the call; null for none.
    using tGetTxtFP = const char* (*)(unsigned short index, unsigned char option);
    /// Gives the node its value while a packet is made.
    using tAllotPktFP = int (*)(unsigned short index, unsigned char option, CFields& node);
    /// Prepares the node before its item is parsed, and may give it its length; the item may lie outside the packet.
    using tParsePktFP = int (*)(unsigned short index, unsigned char option, CFields& node);
    /// Checks the node's item, which lies within the packet; one without length may get it here, and must fit then.
    using tCheckPktFP = int (*)(unsigned short index, unsigned char option, CFields& node);

    /// Registers a callback of a kind; null clears. \return false, with nothing changed, unless the kind is 1 to 15.
    static bool setCheckIdxFP4ESK(unsigned char kind, tCheckIdxFP callback);
    static bool setGetIdxFP4ESK(unsigned char kind, tGetIdxFP callback);
    static bool setGetTxtFP4ESK(unsigned char kind, tGetTxtFP callback);
    static bool setAllotPktFP4ESK(unsigned char kind, tAllotPktFP callback);
    static bool setParsePktFP4ESK(unsigned char kind, tParsePktFP callback);
    static bool setCheckPktFP4ESK(unsigned char kind, tCheckPktFP callback);
    /// The registered callback, or null.
    static tCheckIdxFP getCheckIdxFP4ESK(unsigned char kind);
    static tGetIdxFP getGetIdxFP4ESK(unsigned char kind);
    static tGetTxtFP getGetTxtFP4ESK(unsigned char kind);
    static tAllotPktFP getAllotPktFP4ESK(unsigned char kind);
    static tParsePktFP getParsePktFP4ESK(unsigned char kind);
    static tCheckPktFP getCheckPktFP4ESK(unsigned char kind);

    /// Gives all leaves of the subtree with that keyword the values of `value`, as setValue(const CFields&) does.
    ///
    /// \param kind  0 for internal keywords, 1 to 15 for external ones
    /// \return how many leaves were set; -1 for an unknown kind or index 0, -2 for an internal index above 38
    int pkt_SetValue4SKI(unsigned char kind, unsigned short index, const CFields& value, CFields* a_pRoot = nullptr);
    /// The same for the user pointer.
    int pkt_SetOSA4SKI(unsigned char kind, unsigned short index, const void* data, CFields* a_pRoot = nullptr);
    /// @}

    /// Saves the tree as a string; errors are dropped (use CSavers to see them).
    /// \param encodingRule  0 indented text, 1 one-line text, 2 binary
    /// \param style         bits of E_SaveStyle
    /// \param password      binary only; null or empty for none
    std::string toMURV(unsigned char encodingRule = 0, unsigned char style = 63, const char* password = nullptr) const;

private:
    friend struct detail::tFieldAccess;

    struct tImmortal;
    struct tConstantInit
    {
    };
    constexpr explicit CFields(tConstantInit) noexcept
    {
    }
    static tImmortal s_tNull;
    static tImmortal s_tFreeNull;

    void clearValue(E_DataType dt, E_ValueKind vk, bool owned);

    static constexpr unsigned int s_cuiNameRoom = 24;

    // Some 32-bit machines align doubles to 4 bytes, and the node is to be a cache line everywhere.
    alignas(8) uMultiValue m_uActValue;  // first value
    // A name of up to 23 bytes, then zeros; or the address of a longer name, an owned block that ends in NUL.
    alignas(char*) char m_acName[s_cuiNameRoom] = {};
    std::uintptr_t m_uiSideRecord = 0;  // address of the side record or of the set, see core/side_record.h
    unsigned int m_uiID = 0;            // 0 for none
    int m_iOffsetStart = 0;
    int m_iOffsetEnd = 0;
    tPacketExpInfo m_tPEI{};
    unsigned char m_ucState = 0;  // bits 0..2 type, 3 string is owned, 4..5 value kind, 6 member, 7 of a pool
    unsigned char m_ucNameLen = 0;
};

static_assert(sizeof(CFields) == 64, "a plain node is 64 bytes");

}  // namespace murv

#endif
