// ber/binary_parser.h - rebuilds a tree from the records of a body.
//
// Counts are known before the members are, so that each container gets one block of exactly its size; but a count is
// believed only as far as the bytes that remain can hold such members. The first error ends the load and leaves the
// members read so far in the tree. The pool of blocks asks how far the body is read, and so takes large pages for
// large files: one of 100 MB loads in 0.46 of the time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "ber/body_source.h"
#include "ber/fast_record.h"
#include "core/field_access.h"
#include "io/ids/key_table.h"
#include "io/load.h"
#include "io/member_builder.h"
#include "io/node_stack.h"

namespace murv::detail
{

/// The record being read.
struct tRecord
{
    E_DataType m_eType;
    unsigned int m_uiID;
    std::size_t m_nStart;     // offset of the record
    tPacketExpInfo m_tPEI{};  // leaves
    std::string_view m_strvName;
    bool m_bComment = false;  // comments were read, and are kept for the node
};

/// Reads the body of one load that was started. Nests at most as deep as loaders go, and recurses as deep.
class CBinaryParser final : IPoolForecast
{
public:
    /// \param littleEndian  whether the file's numbers are
    CBinaryParser(tLoad& load, CBodySource& source, bool littleEndian);
    CBinaryParser(const CBinaryParser&) = delete;
    CBinaryParser& operator=(const CBinaryParser&) = delete;
    ~CBinaryParser();

    bool loadDocument(CFields& target);

private:
    static constexpr std::size_t s_cnNotTaken = ~std::size_t{0};

    /// Of the body's bytes.
    double partDone() const noexcept override;

    /// The general path: any record.
    /// \param target  the root; null for a member of the container on top of the stack
    bool loadRecord(CFields* target);
    bool loadContainer(tRecord& record, CFields* target);
    bool loadLeaf(tRecord& record, CFields* target);
    bool loadMembers(CFields& container, std::uint32_t count);
    bool fillContainer(CFields& node, E_DataType type, std::uint32_t count, std::size_t start);
    /// Reads the next member, on the fast path when its record is an ordinary one.
    /// \param parent  an array, or the builder of a field set
    template <typename tParent>
    bool loadMember(tParent& parent);
    CFields* appendFast(CFields& array, std::string_view name);
    CFields* appendFast(CMemberBuilder& set, std::string_view name);
    void setFastLeaf(CFields& node, const tFastLeaf& leaf);

    bool loadExpression(tRecord& record);
    bool loadName(tRecord& record);
    bool loadComments(tRecord& record);
    bool loadComment(tRecord& record, CHeapString& comment);
    bool loadValue(tRecord& record, CFields* target);
    const char* decodeValue(std::size_t length, tSlot& value) const;
    bool loadCodes(tRecord& record, CFields* target, std::size_t length);

    /// The node of a record: the root, or a new member; null when it is refused, which is then recorded.
    CFields* takeNode(const tRecord& record, CFields* target);
    CFields* addMember(const CFields& set, const tRecord& record);
    CFields* addElement(CFields& array, const tRecord& record);
    std::size_t findTaken(const CFields& set, const tRecord& record);
    void finishLeaf(CFields& node, const tRecord& record, const tSlot& value);
    void giveComments(CFields& node);
    CFieldVector* makeMembers(std::uint32_t count) const;

    /// Keeps the name, which lies in the window, while the window moves.
    void keepName(tRecord& record);

    /// Whether the window holds `count` more bytes; valid for counts up to CBodySource::s_cnAhead.
    bool hasBytes(std::size_t count) const
    {
        return m_tSource.inWindow() >= count;
    }
    template <typename tNumber>
    tNumber take()
    {
        const auto number = readNumber<tNumber>(m_tSource.cursor(), m_bLittleEndian);
        m_tSource.advance(sizeof number);
        return number;
    }
    bool addError(const char* message, const tRecord& record);
    /// \param place  offset within the record that the message is about
    bool addErrorAt(const char* message, const tRecord& record, std::size_t place);
    bool addBadId(const tRecord& record);
    bool addOverEnd(const tRecord& record);
    bool addOverEnd(const tRecord& record, std::size_t place);

    tLoad& m_tLoad;
    CBodySource& m_tSource;
    const bool m_bLittleEndian;
    const bool m_bKeepComments;
    const bool m_bDuplicate;                               // members of equal name or ID are added
    const bool m_bLossless;                                // containers may be empty
    std::uint64_t m_ullAwaited = 0;                        // members that open containers still wait for
    CMemberBuilder* m_pBuilder = nullptr;                  // of the field set being filled
    CNodeStack m_tNoStack;                                 // without room: members are built where they stay
    CKeyTable<std::uint32_t, std::uint32_t> m_tOffset4Id;  // of the last node that has the ID
    CHeapString m_tComment[s_cnCommentCount];
    char m_acName[255];
};

}  // namespace murv::detail
