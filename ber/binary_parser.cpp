// ber/binary_parser.cpp - node records, read into a tree: containers, their members, and the nodes that records become.
//
// Counts are believed only as far as the bytes that remain, so that memory stays in proportion to the file. The parts
// of a record are read in binary_record.cpp.
#include "ber/binary_parser.h"

#include "ber/fast_record.h"
#include "core/field_vector.h"
#include "io/load_messages.h"

namespace murv::detail
{

CBinaryParser::CBinaryParser(tLoad& load, CBodySource& source, bool littleEndian)
    : m_tLoad(load),
      m_tSource(source),
      m_bLittleEndian(littleEndian),
      m_bKeepComments(load.m_bComments),
      m_bDuplicate(load.has(LCBC_DUPLICATE)),
      m_bLossless(load.has(LCBC_LOSSLESS))
{
}

CBinaryParser::~CBinaryParser()
{
    m_tLoad.m_tNodeStack.pool().close();
}

double CBinaryParser::partDone() const noexcept
{
    const auto read = static_cast<double>(m_tSource.offset());
    return read / (read + static_cast<double>(m_tSource.mostRemaining()));  // a member is being read: there are bytes
}

bool CBinaryParser::loadDocument(CFields& target)
{
    m_tLoad.m_tNodeStack.pool().begin(this);
    return loadRecord(&target);  // what follows the root's record is not looked at
}

bool CBinaryParser::loadRecord(CFields* target)
{
    if (!m_tLoad.isDepthLeft()) [[unlikely]]
        m_tLoad.throwTooDeep("murv::CLoader4BER::loadFieldInfo");
    m_tSource.lookAhead();
    tRecord record;
    record.m_nStart = m_tSource.offset();
    if (!hasBytes(s_cnHeadSize))
        return addOverEnd(record, record.m_nStart);
    const auto type = static_cast<unsigned char>(*m_tSource.cursor());
    m_tSource.advance(s_cnTypeSize);
    record.m_uiID = take<std::uint32_t>();
    if (!CFields::isValidDT(type))
        return addError("Syntax error: value, field or array expected.", record);
    record.m_eType = static_cast<E_DataType>(type);
    return tFieldAccess::isContainer(record.m_eType) ? loadContainer(record, target) : loadLeaf(record, target);
}

bool CBinaryParser::loadContainer(tRecord& record, CFields* target)
{
    if (!hasBytes(s_cnCountSize))
        return addOverEnd(record);
    const auto count = take<std::uint32_t>();
    if (count == 0 && !m_bLossless)
        return addError("Element number must be bigger than 0", record);
    if (record.m_uiID > CFields::maxSint32)
        return addBadId(record);
    if (!loadName(record) || !loadComments(record))
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
        return loadRecord(nullptr);
    tFastLeaf leaf;
    if (lookAtLeaf(m_tSource, leaf))
    {
        if (CFields* const node = appendFast(parent, leaf.m_strvName))
        {
            setFastLeaf(*node, leaf);
            return true;
        }
    }
    tFastContainer container;
    if (lookAtContainer(m_tSource, container) && (container.m_uiCount != 0 || m_bLossless))
    {
        if (CFields* const node = appendFast(parent, container.m_strvName))
        {
            const std::size_t start = m_tSource.offset();
            m_tSource.advance(container.m_nSize);
            return fillContainer(*node, container.m_eType, container.m_uiCount, start);
        }
    }
    return loadRecord(nullptr);
}

/// A new element, or null when the record has a name.
inline CFields* CBinaryParser::appendFast(CFields& array, std::string_view name)
{
    return name.empty() ? &CFieldVector::append(tFieldAccess::value(array).m_pFV) : nullptr;
}

/// A new member, or null when its name is taken.
inline CFields* CBinaryParser::appendFast(CMemberBuilder& set, std::string_view name)
{
    if (!m_bDuplicate && !name.empty() && set.find(name) != CNameIndex::s_cuiNone)
        return nullptr;
    return &set.append(name, 0);
}

inline void CBinaryParser::setFastLeaf(CFields& node, const tFastLeaf& leaf)
{
    const std::size_t start = m_tSource.offset();
    const char* const end = leaf.m_pValue + leaf.m_uiLength;
    m_tSource.advance(static_cast<std::size_t>(end - m_tSource.cursor()));
    tFieldAccess::setOffsets(node, static_cast<int>(start), static_cast<int>(m_tSource.offset()));
    if (leaf.m_eType == DT_codelist)
    {
        bool isPooled = false;
        const char* const codes =
            duplicatePrefixedStream(m_tLoad.m_tNodeStack.pool(), leaf.m_pValue, leaf.m_uiLength, isPooled);
        tFieldAccess::setType(node, DT_codelist, true, isPooled).m_pData = codes;
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
    // The product fits: at most 1000 containers are open, each with a count of 32 bits. A division would take longer.
    const std::uint64_t shortest = m_bLossless ? s_cnEmptyContainer : s_cnShortestRecord;
    const bool isPossible = (m_ullAwaited + count) * shortest <= m_tSource.mostRemaining();
    return isPossible ? CFieldVector::make(count, m_tLoad.m_tNodeStack.pool()) : CFieldVector::empty();
}

CFields* CBinaryParser::takeNode(const tRecord& record, CFields* target)
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
    {
        bool isNew = false;
        m_tOffset4Id.enter(tFieldAccess::id(*node), 0, isNew) = static_cast<std::uint32_t>(record.m_nStart);
    }
    return node;
}

/// Text cannot give an array's element an ID or a name; a record can, and what a file says is kept.
CFields* CBinaryParser::addElement(CFields& array, const tRecord& record)
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
CFields* CBinaryParser::addMember(const CFields& set, const tRecord& record)
{
    const std::size_t taken = m_bDuplicate ? s_cnNotTaken : findTaken(set, record);
    if (taken == s_cnNotTaken) [[likely]]
        return &m_pBuilder->append(record.m_strvName, record.m_uiID);
    addErrorAt("This field not allow the duplication or a error occured", record, taken);
    return nullptr;
}

/// The offset of the member that has the record's name, or of a node below the set that has its ID; or s_cnNotTaken.
/// Records come in the order of the document: the nodes below an open set are those read since the set began.
std::size_t CBinaryParser::findTaken(const CFields& set, const tRecord& record)
{
    if (!record.m_strvName.empty())
    {
        const std::uint32_t position = m_pBuilder->find(record.m_strvName);
        if (position != CNameIndex::s_cuiNone)
            return static_cast<std::size_t>(m_pBuilder->at(position).getOffsetStart());
    }
    const std::uint32_t* const last = record.m_uiID == 0 ? nullptr : m_tOffset4Id.find(record.m_uiID);
    return last != nullptr && *last >= static_cast<std::uint32_t>(set.getOffsetStart()) ? *last : s_cnNotTaken;
}

bool CBinaryParser::addError(const char* message, const tRecord& record)
{
    return addErrorAt(message, record, record.m_nStart);
}

bool CBinaryParser::addErrorAt(const char* message, const tRecord& record, std::size_t place)
{
    std::optional<std::ptrdiff_t> second;
    if (place != record.m_nStart)
        second = static_cast<std::ptrdiff_t>(place);
    return m_tLoad.addError(message, static_cast<std::ptrdiff_t>(record.m_nStart),
                            static_cast<std::ptrdiff_t>(m_tSource.offset()), second);
}

bool CBinaryParser::addBadId(const tRecord& record)
{
    return addError("Failed to set the field ID", record);
}

bool CBinaryParser::addOverEnd(const tRecord& record)
{
    return addOverEnd(record, m_tSource.offset());
}

bool CBinaryParser::addOverEnd(const tRecord& record, std::size_t place)
{
    return addErrorAt("No more parsing. Over the data length.", record, place);
}

}  // namespace murv::detail
