// ber/binary_parser.cpp - node records, read into a tree.
//
// Counts and lengths are believed only as far as the bytes that remain, so that memory stays in proportion to the file.
#include "ber/binary_parser.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "core/field_vector.h"
#include "io/load_messages.h"
#include "packet/pei_rules.h"

namespace murv::detail
{

namespace
{
constexpr const char* s_cpOverEnd = "No more parsing. Over the data length.";
constexpr const char* s_cpNoMembers = "Element number must be bigger than 0";
constexpr const char* s_cpBadId = "Failed to set the field ID";
constexpr const char* s_cpBadComment = "Comments must start with /";
constexpr const char* s_cpContainerValue = "value must not be DT_fields or DT_array";
constexpr const char* s_cpBadLength = "Mismatched value length";
constexpr std::uint32_t s_cuiLengthCodes = 3;

/// Whether so many bytes, from 8 to 16, are all zero.
bool isZero(const char* bytes, std::size_t count)
{
    return (loadWord(bytes) | loadWord(bytes + count - 8)) == 0;
}
}  // namespace

CBinaryParser::CBinaryParser(tLoad& load, CBodySource& source, bool littleEndian)
    : m_tLoad(load),
      m_tSource(source),
      m_bLittleEndian(littleEndian),
      m_bKeepComments(load.m_bComments),
      m_bDuplicate(load.has(LCBC_DUPLICATE)),
      m_bLossless(load.has(LCBC_LOSSLESS))
{
}

bool CBinaryParser::loadDocument(CFields& target)
{
    return loadFieldInfo(&target);  // what follows the root's record is not looked at
}

bool CBinaryParser::loadFieldInfo(CFields* target)
{
    if (!m_tLoad.isDepthLeft()) [[unlikely]]
        m_tLoad.throwTooDeep("murv::CLoader4BER::loadFieldInfo");
    m_tSource.lookAhead();
    tMURF_Node record;
    record.m_nStart = m_tSource.offset();
    if (!checkParedSize(s_cnHeadSize))
        return addError(s_cpOverEnd, record);
    const auto type = static_cast<unsigned char>(*m_tSource.cursor());
    m_tSource.advance(s_cnTypeSize);
    record.m_uiID = take<std::uint32_t>();
    if (!CFields::isValidDT(type))
        return addError(s_cpNoValue, record);
    record.m_eType = static_cast<E_DataType>(type);
    return tFieldAccess::isContainer(record.m_eType) ? loadFTI(record, target) : loadETI(record, target);
}

bool CBinaryParser::loadFTI(tMURF_Node& record, CFields* target)
{
    if (!checkParedSize(s_cnCountSize))
        return addOverEnd(record);
    const auto count = take<std::uint32_t>();
    if (count == 0 && !m_bLossless)
        return addError(s_cpNoMembers, record);
    if (record.m_uiID > CFields::maxSint32)
        return addError(s_cpBadId, record);
    if (!loadFieldName(record) || !loadComments(record))
        return false;
    CFields* const node = takeNode(record, target);
    if (node == nullptr)
        return false;

    if (tFieldAccess::sideRecord(*node) != nullptr)
        tFieldAccess::dropSecond(*node);
    if (record.m_bComment)
        giveComments(*node);
    return fillContainer(*node, record.m_eType, count, record.m_nStart);
}

bool CBinaryParser::fillContainer(CFields& node, E_DataType type, std::uint32_t count, std::size_t start)
{
    tSlot value{type, false, {}};
    value.m_uValue.m_pFV = makeMembers(count);
    tFieldAccess::replaceValue(node, value);
    tFieldAccess::setOffsetStart(node, static_cast<int>(start));
    const bool done = loadMembers(node, count);
    tFieldAccess::setOffsetEnd(node, static_cast<int>(m_tSource.offset()));
    return done;
}

bool CBinaryParser::loadMembers(CFields& container, std::uint32_t count)
{
    ++m_tLoad.m_iDepth;
    m_tLoad.m_vStack.push_back(&container);
    m_ullAwaited += count;
    bool done = true;
    if (tFieldAccess::type(container) == DT_array)
    {
        for (std::uint32_t i = 0; i < count && done; ++i, --m_ullAwaited)
            done = loadMember(container);
    }
    else
    {
        CMemberBuilder* const outer = m_pBuilder;
        CMemberBuilder builder(m_tNoStack, container, m_tLoad.m_pLastValueNode, 0);
        m_pBuilder = &builder;
        for (std::uint32_t i = 0; i < count && done; ++i, --m_ullAwaited)
            done = loadMember(builder);
        builder.close();
        m_pBuilder = outer;
    }
    m_tLoad.m_vStack.pop_back();
    --m_tLoad.m_iDepth;
    return done;
}

template <typename tParent>
bool CBinaryParser::loadMember(tParent& parent)
{
    m_tSource.lookAhead();
    const bool isNear = m_bLittleEndian && m_tSource.inWindow() >= CBodySource::s_cnAhead && m_tLoad.isDepthLeft();
    if (!isNear)
        return loadFieldInfo(nullptr);
    tPlainLeaf leaf;
    if (lookAtPlainLeaf(leaf))
    {
        if (CFields* const node = appendPlain(parent, leaf.m_strvName))
        {
            setPlainLeaf(*node, leaf);
            return true;
        }
    }
    tPlainContainer container;
    if (lookAtPlainContainer(container))
    {
        if (CFields* const node = appendPlain(parent, container.m_strvName))
        {
            const std::size_t start = m_tSource.offset();
            m_tSource.advance(container.m_nSize);
            return fillContainer(*node, container.m_eType, container.m_uiCount, start);
        }
    }
    return loadFieldInfo(nullptr);
}

/// A new element, or null when the record has a name.
inline CFields* CBinaryParser::appendPlain(CFields& array, std::string_view name)
{
    return name.empty() ? &CFieldVector::append(tFieldAccess::value(array).m_pFV) : nullptr;
}

/// A new member, or null when its name is taken.
inline CFields* CBinaryParser::appendPlain(CMemberBuilder& set, std::string_view name)
{
    if (!m_bDuplicate && !name.empty() && set.find(name) != CNameIndex::s_cuiNone)
        return nullptr;
    return &set.append(name, 0);
}

inline bool CBinaryParser::lookAtPlainContainer(tPlainContainer& container) const
{
    const char* const start = m_tSource.cursor();
    const auto type = static_cast<unsigned char>(*start);
    if ((type != DT_fields && type != DT_array) || readNumber<std::uint32_t>(start + s_cnTypeSize, true) != 0)
        return false;
    const char* const name = start + s_cnHeadSize + s_cnCountSize + s_cnNameLengthSize;
    container.m_eType = static_cast<E_DataType>(type);
    container.m_uiCount = readNumber<std::uint32_t>(start + s_cnHeadSize, true);
    container.m_strvName = {name, static_cast<unsigned char>(name[-1])};
    container.m_nSize = s_cnEmptyContainer + container.m_strvName.size();
    return (container.m_uiCount != 0 || m_bLossless) && isZero(name + container.m_strvName.size(), s_cnNoComments);
}

inline bool CBinaryParser::lookAtPlainLeaf(tPlainLeaf& leaf) const
{
    // For each type the length of its value; others, and the values of strings, are looked at behind.
    static constexpr std::uint32_t s_cuiOther = 0xFFFFFFFF;
    static constexpr std::uint32_t lengths[] = {
        0, s_cuiOther, s_cuiOther, 1, s_cnNumberSize, s_cnNumberSize, s_cnNumberSize, s_cuiOther};
    const char* const start = m_tSource.cursor();
    const auto type = static_cast<unsigned char>(*start);
    if (type > DT_codelist || !isZero(start + s_cnTypeSize, s_cnIdSize + s_cnExpressionSize))
        return false;
    const char* const name = start + s_cnHeadSize + s_cnExpressionSize + s_cnNameLengthSize;
    leaf.m_strvName = {name, static_cast<unsigned char>(name[-1])};
    const char* const comments = name + leaf.m_strvName.size();
    leaf.m_eType = static_cast<E_DataType>(type);
    leaf.m_uiLength = readNumber<std::uint32_t>(comments + s_cnNoComments, true);
    leaf.m_pValue = comments + s_cnNoComments + s_cnLengthSize;
    if (!isZero(comments, s_cnNoComments))
        return false;
    if (type == DT_codelist)
        return leaf.m_uiLength <= m_tSource.inWindow() - static_cast<std::size_t>(leaf.m_pValue - start);
    return leaf.m_uiLength == lengths[type];
}

inline void CBinaryParser::setPlainLeaf(CFields& node, const tPlainLeaf& leaf)
{
    const std::size_t start = m_tSource.offset();
    const char* const end = leaf.m_pValue + leaf.m_uiLength;
    m_tSource.advance(static_cast<std::size_t>(end - m_tSource.cursor()));
    tFieldAccess::setOffsets(node, static_cast<int>(start), static_cast<int>(m_tSource.offset()));
    if (leaf.m_eType == DT_codelist)
    {
        const char* const codes = duplicatePrefixedStream(leaf.m_pValue, leaf.m_uiLength);
        tFieldAccess::setType(node, DT_codelist, true).m_pData = codes;
        return;
    }
    uMultiValue& value = tFieldAccess::setType(node, leaf.m_eType);
    if (leaf.m_uiLength == s_cnNumberSize)
        value.m_ullValue = readNumber<std::uint64_t>(leaf.m_pValue, true);
    else if (leaf.m_eType == DT_bool)
        value.m_bValue = *leaf.m_pValue != 0;
}

/// Room for all members when they can be there, beside those that outer containers wait for. A count that cannot be
/// true gets none; such a container grows by what the file really holds until it ends early.
CFieldVector* CBinaryParser::makeMembers(std::uint32_t count) const
{
    if (count == 0)
        return CFieldVector::empty();
    const std::uint64_t possible = m_tSource.mostRemaining() / (m_bLossless ? s_cnEmptyContainer : s_cnShortestRecord);
    return m_ullAwaited + count <= possible ? CFieldVector::make(count, m_tLoad.m_tNodeStack.pool())
                                            : CFieldVector::empty();
}

bool CBinaryParser::loadETI(tMURF_Node& record, CFields* target)
{
    if (record.m_uiID > CFields::maxSint32)
        return addError(s_cpBadId, record);
    return loadPEI(record) && loadFieldName(record) && loadComments(record) && loadValue(record, target);
}

bool CBinaryParser::loadPEI(tMURF_Node& record)
{
    if (!checkParedSize(s_cnExpressionSize))
        return addOverEnd(record);
    const char* const bytes = m_tSource.cursor();
    if (isZero(bytes, s_cnExpressionSize)) [[likely]]
    {
        m_tSource.advance(s_cnExpressionSize);
        return true;
    }
    record.m_tPEI = readExpression(bytes, m_bLittleEndian);
    const char* const fault =
        record.m_tPEI.m_eLengthExp == s_cuiLengthCodes ? s_cpBadLengthCode : findPeiFault(record.m_tPEI);
    if (fault != nullptr)
        return addErrorAt(fault, record, m_tSource.offset());
    m_tSource.advance(s_cnExpressionSize);
    return true;
}

bool CBinaryParser::loadFieldName(tMURF_Node& record)
{
    if (!checkParedSize(s_cnNameLengthSize))
        return addOverEnd(record);
    const auto length = static_cast<unsigned char>(*m_tSource.cursor());
    if (!checkParedSize(s_cnNameLengthSize + length))
        return addOverEnd(record);
    record.m_strvName = {m_tSource.cursor() + s_cnNameLengthSize, length};
    m_tSource.advance(s_cnNameLengthSize + length);
    return true;
}

void CBinaryParser::keepName(tMURF_Node& record)
{
    const std::size_t length = record.m_strvName.size();
    if (length == 0 || record.m_strvName.data() == m_acName)
        return;
    std::memcpy(m_acName, record.m_strvName.data(), length);
    record.m_strvName = {m_acName, length};
}

bool CBinaryParser::loadComments(tMURF_Node& record)
{
    if (checkParedSize(s_cnNoComments) && isZero(m_tSource.cursor(), s_cnNoComments)) [[likely]]
    {
        m_tSource.advance(s_cnNoComments);
        return true;
    }
    keepName(record);
    for (CHeapString& comment : m_tComment)
    {
        if (!loadComment(record, comment))
            return false;
    }
    m_tSource.lookAhead();
    return true;
}

bool CBinaryParser::loadComment(tMURF_Node& record, CHeapString& comment)
{
    m_tSource.lookAhead();
    if (!checkParedSize(s_cnLengthSize))
        return addOverEnd(record);
    const std::size_t length = take<std::uint32_t>();
    const std::size_t place = m_tSource.offset();
    if (length == 0)
        return true;
    if (length > m_tSource.mostRemaining())
        return addErrorAt(s_cpOverEnd, record, place);
    if (!m_bKeepComments)
        return m_tSource.skip(length) || addErrorAt(s_cpOverEnd, record, place);
    std::string text(length, '\0');
    if (!m_tSource.read(text.data(), length))
        return addErrorAt(s_cpOverEnd, record, place);
    if (text.front() != '/')
        return addErrorAt(s_cpBadComment, record, place);
    comment.setComment(text.data(), static_cast<unsigned int>(length));
    record.m_bComment = true;
    return true;
}

void CBinaryParser::giveComments(CFields& node)
{
    tSideRecord& record = tFieldAccess::makeSideRecord(node);
    record.m_bComment = true;
    for (std::size_t position = 0; position < s_cnCommentCount; ++position)
    {
        if (m_tComment[position].get() == nullptr)
            continue;
        record.m_tComment[position].swap(m_tComment[position]);
        CHeapString().swap(m_tComment[position]);
    }
}

bool CBinaryParser::loadValue(tMURF_Node& record, CFields* target)
{
    if (!checkParedSize(s_cnLengthSize))
        return addOverEnd(record);
    const std::size_t length = take<std::uint32_t>();
    if (record.m_eType == DT_codelist)
        return loadCodes(record, target, length);
    const std::size_t place = m_tSource.offset();
    if (!checkParedSize(length) && (length > m_tSource.mostRemaining() || !m_tSource.skip(length)))
        return addErrorAt(s_cpOverEnd, record, place);
    tSlot value{record.m_eType, false, {}};
    if (const char* const fault = decodeValue(length, value))
        return addErrorAt(fault, record, place);
    CFields* const node = takeNode(record, target);
    if (node == nullptr)
        return false;
    m_tSource.advance(length);
    finishLeaf(*node, record, value);
    return true;
}

/// Reads a value that is no string; a length of 0 stands for the zero value. \return null, or the message
const char* CBinaryParser::decodeValue(std::size_t length, tSlot& value) const
{
    if (tFieldAccess::isContainer(value.m_eType))
        return s_cpContainerValue;
    if (length == 0)
        return nullptr;
    const char* const from = m_tSource.cursor();
    if (value.m_eType == DT_bool && length == 1)
        value.m_uValue.m_bValue = *from != 0;
    else if (value.m_eType <= DT_bool)
        return s_cpBadLength;
    else if (length == s_cnNumberSize)
        value.m_uValue.m_ullValue = readNumber<std::uint64_t>(from, m_bLittleEndian);
    else if (length != s_cnShortNumberSize)
        return s_cpBadLength;
    else if (value.m_eType == DT_sint)
        value.m_uValue.m_llValue = static_cast<std::int32_t>(readNumber<std::uint32_t>(from, m_bLittleEndian));
    else if (value.m_eType == DT_uint)
        value.m_uValue.m_ullValue = readNumber<std::uint32_t>(from, m_bLittleEndian);
    else
        value.m_uValue.m_dValue = std::bit_cast<float>(readNumber<std::uint32_t>(from, m_bLittleEndian));
    return nullptr;
}

bool CBinaryParser::loadCodes(tMURF_Node& record, CFields* target, std::size_t length)
{
    tSlot value{DT_codelist, true, {}};
    if (checkParedSize(length)) [[likely]]
    {
        CFields* const node = takeNode(record, target);
        if (node == nullptr)
            return false;
        value.m_uValue.m_pData = duplicatePrefixedStream(m_tSource.cursor(), static_cast<unsigned int>(length));
        m_tSource.advance(length);
        finishLeaf(*node, record, value);
        return true;
    }
    const std::size_t place = m_tSource.offset();
    if (length > m_tSource.mostRemaining())
        return addErrorAt(s_cpOverEnd, record, place);
    keepName(record);
    std::unique_ptr<char, decltype(&std::free)> block(makePrefixed(static_cast<unsigned int>(length)), &std::free);
    if (!m_tSource.read(block.get() + s_cuiPrefixWidth, length))
        return addErrorAt(s_cpOverEnd, record, place);
    CFields* const node = takeNode(record, target);
    if (node == nullptr)
        return false;
    value.m_uValue.m_pData = block.release();
    finishLeaf(*node, record, value);
    return true;
}

void CBinaryParser::finishLeaf(CFields& node, const tMURF_Node& record, const tSlot& value)
{
    if (tFieldAccess::sideRecord(node) != nullptr)
        tFieldAccess::dropSecond(node);
    tFieldAccess::replaceValue(node, value);
    tFieldAccess::setOffsets(node, static_cast<int>(record.m_nStart), static_cast<int>(m_tSource.offset()));
    if (record.m_bComment)
        giveComments(node);
    if (!CFields::pkt_IsNullExp(record.m_tPEI))
        tFieldAccess::pei(node) = record.m_tPEI;
    if (isDualExpression(tFieldAccess::pei(node)))
        node.setVK(static_cast<E_ValueKind>(tFieldAccess::pei(node).m_usSkIndex));
}

CFields* CBinaryParser::takeNode(const tMURF_Node& record, CFields* target)
{
    CFields* node = target;
    if (target != nullptr)
    {
        if (record.m_uiID != 0)
            target->setID(record.m_uiID);
        if (!record.m_strvName.empty())
            target->setName(record.m_strvName);
    }
    else
    {
        CFields& container = m_tLoad.top();
        node = tFieldAccess::type(container) == DT_array ? addElement(container, record) : addMember(container, record);
    }
    if (node != nullptr && tFieldAccess::id(*node) != 0 && !m_bDuplicate)
        m_tSeenIds.enter(tFieldAccess::id(*node), record.m_nStart);
    return node;
}

/// Text cannot give an array's element an ID or a name; a record can, and what a file says is kept.
CFields* CBinaryParser::addElement(CFields& array, const tMURF_Node& record)
{
    CFields& element = tFieldAccess::append(array);
    if (!record.m_strvName.empty())
        tFieldAccess::setFirstName(element, record.m_strvName.data(),
                                   static_cast<unsigned int>(record.m_strvName.size()));
    tFieldAccess::setId(element, record.m_uiID);
    return &element;
}

/// Where text reads the member again that has the name or the ID already, a binary load fails: a record is never mixed
/// into a node that another record made.
CFields* CBinaryParser::addMember(const CFields& set, const tMURF_Node& record)
{
    const std::size_t taken = m_bDuplicate ? CSeenIds::s_cnNone : findTaken(set, record);
    if (taken == CSeenIds::s_cnNone) [[likely]]
        return &m_pBuilder->append(record.m_strvName, record.m_uiID);
    addErrorAt(s_cpNotAdded, record, taken);
    return nullptr;
}

/// The offset of the member that has the record's name, or of a node of the set that has its ID; or s_cnNone.
std::size_t CBinaryParser::findTaken(const CFields& set, const tMURF_Node& record)
{
    if (!record.m_strvName.empty())
    {
        const std::uint32_t position = m_pBuilder->find(record.m_strvName);
        if (position != CNameIndex::s_cuiNone)
            return static_cast<std::size_t>(m_pBuilder->at(position).getOffsetStart());
    }
    if (record.m_uiID == 0)
        return CSeenIds::s_cnNone;
    const std::size_t last = m_tSeenIds.find(record.m_uiID);
    return last != CSeenIds::s_cnNone && last >= static_cast<std::size_t>(set.getOffsetStart()) ? last
                                                                                                : CSeenIds::s_cnNone;
}

bool CBinaryParser::addError(const char* message, const tMURF_Node& record)
{
    return addErrorAt(message, record, record.m_nStart);
}

bool CBinaryParser::addErrorAt(const char* message, const tMURF_Node& record, std::size_t place)
{
    std::optional<std::ptrdiff_t> second;
    if (place != record.m_nStart)
        second = static_cast<std::ptrdiff_t>(place);
    return m_tLoad.addError(message, static_cast<std::ptrdiff_t>(record.m_nStart),
                            static_cast<std::ptrdiff_t>(m_tSource.offset()), second);
}

bool CBinaryParser::addOverEnd(const tMURF_Node& record)
{
    return addErrorAt(s_cpOverEnd, record, m_tSource.offset());
}

}  // namespace murv::detail
