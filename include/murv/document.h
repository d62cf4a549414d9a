// murv/document.h - a text that is changed member by member, and otherwise stays as it is.
//
//     CDocument document;
//     if (!document.loadFile("service.murv"))
//         return report(document.errors());
//     document.set("listen.port", 8080);
//     document.saveFile("service.murv");
#ifndef MURV_DOCUMENT_H
#define MURV_DOCUMENT_H

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "murv/export.h"
#include "murv/fields.h"
#include "murv/flags.h"
#include "murv/load_error.h"
#include "murv/make.h"

namespace murv
{

/// A text of the notation together with its tree.
///
/// A change rewrites the bytes of one member. Everything else stays byte for byte: comments, empty lines, spellings of
/// numbers, order, indentation and line ends. A new member gets the layout of its neighbours. The text always loads to
/// the tree that it shows, where members of equal names all stay.
///
/// Paths are those of `find`. A change that cannot be made throws CLogicError (a path that is none CPathError) and
/// changes nothing, as when memory runs out. Each change costs a step for each member of the containers on its way;
/// text() then puts the text together again. Belongs to one thread at a time.
class MURV_API CDocument
{
public:
    /// An empty field set.
    /// \param config  LCBC_UNICODE_UTF8 and LCBC_NUMBER_NAME, or 0; other bits are as LCBC_LOSSLESS needs them
    explicit CDocument(unsigned int config = 0);
    CDocument(const CDocument&) = delete;
    CDocument& operator=(const CDocument&) = delete;
    CDocument(CDocument&& other) noexcept;
    CDocument& operator=(CDocument&& other) noexcept;
    ~CDocument();

    /// Loads a text, which is copied. \return false for a text with mistakes: errors() tells all of them, and the
    /// document stays as it was
    [[nodiscard]] bool load(std::string_view text);
    /// Loads a file. \throw CException when it cannot be read
    [[nodiscard]] bool loadFile(const std::string& path);
    /// All mistakes of the last text that was to be loaded; none when it was.
    const std::vector<tErrorPlace>& errors() const noexcept;

    /// The values. References into it end with the next change.
    const CFields& tree() const noexcept;
    /// The text with all changes. Valid until the next change.
    const std::string& text() const;
    /// Replaces or makes a file: the text goes to a file beside it, which then takes its name. The permissions of a
    /// file that exists stay; of a symbolic link, its target is replaced. \throw CException when that fails, also for a
    /// file that nobody may write to; the file is then as it was
    void saveFile(const std::string& path) const;

    /// Sets the value at a path, and makes what is missing on the way, as murv::set does. Where the value is there
    /// already, nothing changes.
    void set(std::string_view path, CNewValue value);
    /// The same for a value in the notation, whose spelling is kept: `setText("rate", "1.50")`.
    /// \throw CLogicError also for a text that is not one value
    void setText(std::string_view path, std::string_view notation);
    /// Removes a member, with the comments that stand at it: on its line, and before it without an empty line between.
    void remove(std::string_view path);
    /// Inserts a member before the one at `index`, or after the last, as insertAt does.
    void insert(std::string_view container, std::size_t index, CNewValue value, std::string_view name = {});
    /// Gives a member of a field set, or the root, another name of 1 to 255 bytes.
    void rename(std::string_view path, std::string_view name);
    /// Gives a node a comment, in place of what stands there; an empty text removes it.
    /// \param comment   without "//": each of its lines becomes a comment
    /// \param position  CP_before: on lines of its own, or on that of a member that shares one. CP_trailing: on the
    ///                  line of the value; a comment of several lines is refused
    void comment(std::string_view path, std::string_view comment, E_CommentPosition position = CP_before);

    /// Changes the document by a merge patch (RFC 7386), as murv::merge changes a tree: members of the patch replace
    /// those of the same name, null removes them, field sets are merged in turn, what is no field set replaces all.
    /// When memory runs out, a part of the patch may have been applied.
    void merge(const CFields& patch);

private:
    void setSpelled(std::string_view path, CFields fresh, std::string_view notation);
    void mergeMembers(const CFields& patch);
    void removeNulls(const CFields& patch, const std::string& prefix);
    void setMerged(const std::string& path, const CFields& value);

    struct tState;
    std::unique_ptr<tState> m_pState;
};

}  // namespace murv

#endif
