// ber/binary_parser.h - rebuilds a tree from the records of a body.
//
// Counts are known before the members are, so that each container gets one block of exactly its size; but a count is
// believed only as far as the bytes that remain can hold such members. The first error ends the load and leaves the
// members read so far in the tree.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "ber/body_source.h"
#include "ber/seen_ids.h"
#include "core/field_access.h"
#include "io/load.h"
#include "io/member_builder.h"
#include "io/node_stack.h"

namespace murv::detail
{

/// The record being read.
struct tMURF_Node
{
    E_DataType m_eType;
    unsigned int m_uiID;
    std::size_t m_nStart;     // offset of the record
    tPacketExpInfo m_tPEI{};  // leaves
    std::string_view m_strvName;
    bool m_bComment = false;  // comments were read, and are kept for the node
};

/// An ordinary leaf, in the window.
struct tPlainLeaf
{
    E_DataType m_eType;
    std::string_view m_strvName;
    std::uint32_t m_uiLength;  // of the value
    const char* m_pValue;
};

/// The head of an ordinary container, in the window.
struct tPlainContainer
{
    E_DataType m_eType;
    std::uint32_t m_uiCount;
    std::string_view m_strvName;
    std::size_t m_nSize;  // of all that stands before the members
};

/// Reads the body of one load that was started. Nests at most as deep as loaders go, and recurses as deep.
class CBinaryParser
{
public:
    /// \param littleEndian  whether the file's numbers are
    CBinaryParser(tLoad& load, CBodySource& source, bool littleEndian);

    bool loadDocument(CFields& target);

private:
    /// \param target  the root; null for a member of the container on top of the stack
    bool loadFieldInfo(CFields* target);
    bool loadFTI(tMURF_Node& record, CFields* target);
    bool loadETI(tMURF_Node& record, CFields* target);
    bool loadMembers(CFields& container, std::uint32_t count);
    bool fillContainer(CFields& node, E_DataType type, std::uint32_t count, std::size_t start);
    /// Reads the next record. The ordinary one takes one look: little-endian, with no ID, expression or comments, and
    /// well before the end of the window; all others, and whatever is wrong, go the general way.
    /// \param parent  an array, or the builder of a field set
    template <typename tParent>
    bool loadMember(tParent& parent);
    CFields* appendPlain(CFields& array, std::string_view name);
    CFields* appendPlain(CMemberBuilder& set, std::string_view name);
    bool lookAtPlainContainer(tPlainContainer& container) const;
    bool lookAtPlainLeaf(tPlainLeaf& leaf) const;
    void setPlainLeaf(CFields& node, const tPlainLeaf& leaf);

    bool loadPEI(tMURF_Node& record);
    bool loadFieldName(tMURF_Node& record);
    bool loadComments(tMURF_Node& record);
    bool loadComment(tMURF_Node& record, CHeapString& comment);
    bool loadValue(tMURF_Node& record, CFields* target);
    const char* decodeValue(std::size_t length, tSlot& value) const;
    bool loadCodes(tMURF_Node& record, CFields* target, std::size_t length);

    /// The node of a record: the root, or a new member; null when it is refused, which is then recorded.
    CFields* takeNode(const tMURF_Node& record, CFields* target);
    CFields* addMember(const CFields& set, const tMURF_Node& record);
    CFields* addElement(CFields& array, const tMURF_Node& record);
    std::size_t findTaken(const CFields& set, const tMURF_Node& record);
    void finishLeaf(CFields& node, const tMURF_Node& record, const tSlot& value);
    void giveComments(CFields& node);
    CFieldVector* makeMembers(std::uint32_t count) const;

    /// Keeps the name, which lies in the window, while the window moves.
    void keepName(tMURF_Node& record);

    /// True when so many bytes are in the window; only right while no more than look-ahead gives is asked for.
    bool checkParedSize(std::size_t count) const
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
    bool addError(const char* message, const tMURF_Node& record);
    /// \param place  offset within the record that the message is about
    bool addErrorAt(const char* message, const tMURF_Node& record, std::size_t place);
    bool addOverEnd(const tMURF_Node& record);

    tLoad& m_tLoad;
    CBodySource& m_tSource;
    const bool m_bLittleEndian;
    const bool m_bKeepComments;
    const bool m_bDuplicate;               // members of equal name or ID are added
    const bool m_bLossless;                // containers may be empty
    std::uint64_t m_ullAwaited = 0;        // members that open containers still wait for
    CMemberBuilder* m_pBuilder = nullptr;  // of the field set being filled
    CNodeStack m_tNoStack;                 // without room: members are built where they stay
    CSeenIds m_tSeenIds;
    CHeapString m_tComment[s_cnCommentCount];
    char m_acName[255];
};

}  // namespace murv::detail
