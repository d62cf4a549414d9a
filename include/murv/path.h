// murv/path.h - paths that lead to a node: orders[3].price, #7, "quoted name".x, and JSON pointers: /orders/3/price
//
// The paths are those that the tool takes and that messages show. A pointer says the same in the notation of RFC 6901.
#ifndef MURV_PATH_H
#define MURV_PATH_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "murv/error.h"
#include "murv/export.h"
#include "murv/fields.h"

namespace murv
{

/// What one step of a path follows.
enum E_PathStep : unsigned int
{
    PS_name,     ///< the first member of that name, in field sets
    PS_index,    ///< the member at that index, in arrays and field sets
    PS_fromEnd,  ///< the member that many places before the end; 1 is the last
    PS_id,       ///< the first node with that ID: this node, or one at any depth below it
    PS_token,    ///< of a pointer: a name in field sets, an index in arrays
    PS_range,    ///< the members from one index up to another, in arrays and field sets; for findAll
};

/// One step of a path.
struct tPathPart
{
    E_PathStep m_eStep;
    std::string m_strName;    ///< of PS_name and PS_token, without quotes and escapes
    unsigned int m_uiNumber;  ///< index, places or ID; of a PS_token that is no index the largest number
    std::size_t m_nEnd;       ///< where the step ends in the text, in bytes

    /// \name Of a range, whose first index is m_uiNumber. An index that counts from the end is places before it.
    /// @{
    unsigned int m_uiAfter = 0;    ///< the index after the last one
    bool m_bFirstFromEnd = false;  ///< m_uiNumber counts from the end
    bool m_bAfterFromEnd = false;  ///< m_uiAfter counts from the end
    /// @}
};

/// A path, or why a text is none. Without steps it leads to the root.
struct tNodePath
{
    std::vector<tPathPart> m_vStep;
    const char* m_pError = nullptr;  ///< what is wrong with the text (static), or null
    std::size_t m_nErrorAt = 0;      ///< the byte of the text where that was seen
};

/// Options of parsePath.
enum E_PathOption : unsigned int
{
    PO_none = 0,
    PO_fromEnd = 1,  ///< an index may be negative: [-1] is the last member
    PO_several = 2,  ///< steps may lead to several members: "*" and [*] to all, [2..5] to those at 2, 3 and 4
};

/// A text that should be a path is none.
class MURV_API CPathError : public CLogicError
{
public:
    /// \param text   the path; a view of nothing ({}) when it is not known
    /// \param error  what is wrong with it
    /// \param at     where, in bytes
    CPathError(std::string_view text, const char* error, std::size_t at);
    CPathError(const CPathError& other) = default;
    CPathError& operator=(const CPathError& other) = default;
    ~CPathError() override;
    /// The byte of the text where the mistake was seen.
    std::size_t getOffset() const noexcept;

private:
    std::size_t m_nOffset;
};

/// Reads a path: names with dots between them, indexes in brackets, "#" and a number for an ID; "." alone is the root.
///
/// Names that hold `.`, `[`, `]`, `#` or a double quote stand in double quotes, with the escapes of documents.
/// With PO_several, "*" instead of a name or index stands for all members, and [2..5] for those from the index 2 up to
/// before 5; both may be left out, and with PO_fromEnd both may be negative. A name that is "*" then needs quotes.
/// Linear in the length of the text. Mistakes are in the result; only std::bad_alloc is thrown.
/// \param options  bits of E_PathOption
[[nodiscard]] MURV_API tNodePath parsePath(std::string_view text, unsigned int options = PO_fromEnd);

/// Reads a JSON pointer (RFC 6901): a "/" before each step, `~1` for "/" and `~0` for "~" in it; empty for the root.
///
/// The step "-" leads to the place after the last element, which never is there. Cost and errors as above.
[[nodiscard]] MURV_API tNodePath parsePointer(std::string_view text);

/// Follows a path.
///
/// Nothing is there when a name, index or ID is not found, or when the path goes on below a scalar; that throws
/// nothing. A path that is none (m_pError) throws CPathError, and so does a range on the way.
/// \param taken  if not null: how many steps led somewhere
/// \return the node, which belongs to the tree and is valid as references to members are; null when nothing is there.
/// Cost: a look-up for each step; all steps by ID together pass each node at most once.
[[nodiscard]] MURV_API const CFields* find(const CFields& root, const tNodePath& path, std::size_t* taken = nullptr);
[[nodiscard]] MURV_API CFields* find(CFields& root, const tNodePath& path, std::size_t* taken = nullptr);
/// The same for a text: a pointer when it begins with "/", else a path. So a plain name leads to the member of that
/// name; names from elsewhere go through pathName. Throws CPathError when the text is malformed.
[[nodiscard]] MURV_API const CFields* find(const CFields& root, std::string_view path);
[[nodiscard]] MURV_API CFields* find(CFields& root, std::string_view path);
/// An index is a path in brackets; a literal 0 would be taken for a null text.
template <typename T, std::enable_if_t<std::is_integral_v<T>, int> = 0>
const CFields* find(const CFields& root, T index) = delete;

/// Follows a path to all nodes that it leads to, in the order of the document; for a path without range that is one
/// node or none. Of a range, what lies outside the container is left out.
/// \param taken  if not null: the most steps that led somewhere
/// \return the nodes, which belong to the tree; none of them twice, and none below another one
/// Throws CPathError for a path that is none. Goes to any depth. Cost: a look-up for each node and step on the way; all
/// steps by ID together pass each node at most once.
[[nodiscard]] MURV_API std::vector<const CFields*> findAll(const CFields& root, const tNodePath& path,
                                                           std::size_t* taken = nullptr);
[[nodiscard]] MURV_API std::vector<CFields*> findAll(CFields& root, const tNodePath& path,
                                                     std::size_t* taken = nullptr);
/// The same for a text: a pointer when it begins with "/", else a path with all options. Throws CPathError when it is
/// malformed.
[[nodiscard]] MURV_API std::vector<const CFields*> findAll(const CFields& root, std::string_view path);
[[nodiscard]] MURV_API std::vector<CFields*> findAll(CFields& root, std::string_view path);

/// The path from a root to a node in its tree: `find` leads back to this very node.
///
/// Names are quoted where they must be; a member whose name an earlier one has, or that has none, is given by its
/// index. The root itself is ".". Costs a walk over the tree up to the node.
/// \return nothing when the node is not in the tree
[[nodiscard]] MURV_API std::optional<std::string> pathOf(const CFields& root, const CFields& node);
/// The same as a JSON pointer. Nothing also when there is none: a pointer cannot lead to a member of a field set that
/// has no name, or the name of an earlier one.
[[nodiscard]] MURV_API std::optional<std::string> pointerOf(const CFields& root, const CFields& node);

/// A name as a step of a path: in quotes where it must be.
[[nodiscard]] MURV_API std::string pathName(std::string_view name);
/// A name as a step of a JSON pointer, with the "/" before it.
[[nodiscard]] MURV_API std::string pointerToken(std::string_view name);

}  // namespace murv

#endif
