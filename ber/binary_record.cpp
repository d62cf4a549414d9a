// ber/binary_record.cpp - the general path of the binary reader: a leaf's record and the parts that all records have.
//
// Every length is compared with the bytes that are left before it is believed. Places in messages are offsets in the
// deciphered body.
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "ber/binary_parser.h"
#include "core/text/bit_cast.h"
#include "packet/pei_rules.h"

namespace murv::detail
{

namespace
{
constexpr const char* s_cpBadLength = "Mismatched value length";
}  // namespace

bool CBinaryParser::loadLeaf(tRecord& record, CFields* target)
{
    if (record.m_uiID > CFields::maxSint32)
        return addBadId(record);
    return loadExpression(record) && loadName(record) && loadComments(record) && loadValue(record, target);
}

bool CBinaryParser::loadExpression(tRecord& record)
{
    if (!hasBytes(s_cnExpressionSize))
        return addOverEnd(record);
    const char* const bytes = m_tSource.cursor();
    if (isZero(bytes, s_cnExpressionSize)) [[likely]]
    {
        m_tSource.advance(s_cnExpressionSize);
        return true;
    }
    record.m_tPEI = readExpression(bytes, m_bLittleEndian);
    const char* const fault = record.m_tPEI.m_eLengthExp > LEC_D ? "Mismatched syntax for packet E_LengthExpCode"
                                                                 : findPeiFault(record.m_tPEI);
    if (fault != nullptr)
        return addErrorAt(fault, record, m_tSource.offset());
    m_tSource.advance(s_cnExpressionSize);
    return true;
}

bool CBinaryParser::loadName(tRecord& record)
{
    if (!hasBytes(s_cnNameLengthSize))
        return addOverEnd(record);
    const auto length = static_cast<unsigned char>(*m_tSource.cursor());
    if (!hasBytes(s_cnNameLengthSize + length))
        return addOverEnd(record);
    record.m_strvName = {m_tSource.cursor() + s_cnNameLengthSize, length};
    m_tSource.advance(s_cnNameLengthSize + length);
    return true;
}

void CBinaryParser::keepName(tRecord& record)
{
    const std::size_t length = record.m_strvName.size();
    if (length == 0 || record.m_strvName.data() == m_acName)
        return;
    std::memcpy(m_acName, record.m_strvName.data(), length);
    record.m_strvName = {m_acName, length};
}

bool CBinaryParser::loadComments(tRecord& record)
{
    if (hasBytes(s_cnNoComments) && isZero(m_tSource.cursor(), s_cnNoComments)) [[likely]]
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

bool CBinaryParser::loadComment(tRecord& record, CHeapString& comment)
{
    m_tSource.lookAhead();
    if (!hasBytes(s_cnLengthSize))
        return addOverEnd(record);
    const std::size_t length = take<std::uint32_t>();
    const std::size_t place = m_tSource.offset();
    if (length == 0)
        return true;
    if (length > m_tSource.mostRemaining())
        return addOverEnd(record, place);
    if (!m_bKeepComments)
        return m_tSource.skip(length) || addOverEnd(record, place);
    std::string text(length, '\0');
    if (!m_tSource.read(text.data(), length))
        return addOverEnd(record, place);
    if (text.front() != '/')
        return addErrorAt("Comments must start with /", record, place);
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

bool CBinaryParser::loadValue(tRecord& record, CFields* target)
{
    if (!hasBytes(s_cnLengthSize))
        return addOverEnd(record);
    const std::size_t length = take<std::uint32_t>();
    if (record.m_eType == DT_codelist)
        return loadCodes(record, target, length);
    const std::size_t place = m_tSource.offset();
    if (!hasBytes(length) && (length > m_tSource.mostRemaining() || !m_tSource.skip(length)))
        return addOverEnd(record, place);
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

/// Reads a value that is no string; a length of 0 stands for the zero value. \return null, or what is wrong
const char* CBinaryParser::decodeValue(std::size_t length, tSlot& value) const
{
    if (tFieldAccess::isContainer(value.m_eType))
        return "value must not be DT_fields or DT_array";
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
        value.m_uValue.m_dValue = bitCast<float>(readNumber<std::uint32_t>(from, m_bLittleEndian));
    return nullptr;
}

bool CBinaryParser::loadCodes(tRecord& record, CFields* target, std::size_t length)
{
    tSlot value{DT_codelist, true, {}};
    if (hasBytes(length)) [[likely]]
    {
        CFields* const node = takeNode(record, target);
        if (node == nullptr)
            return false;
        value.m_uValue.m_pData = duplicatePrefixedStream(m_tLoad.m_tNodeStack.pool(), m_tSource.cursor(),
                                                         static_cast<unsigned int>(length), value.m_bPooled);
        m_tSource.advance(length);
        finishLeaf(*node, record, value);
        return true;
    }
    const std::size_t place = m_tSource.offset();
    if (length > m_tSource.mostRemaining())
        return addOverEnd(record, place);
    keepName(record);
    std::unique_ptr<char, decltype(&std::free)> block(makePrefixed(static_cast<unsigned int>(length)), &std::free);
    if (!m_tSource.read(block.get() + s_cuiPrefixWidth, length))
        return addOverEnd(record, place);
    CFields* const node = takeNode(record, target);
    if (node == nullptr)
        return false;
    value.m_uValue.m_pData = block.release();
    finishLeaf(*node, record, value);
    return true;
}

void CBinaryParser::finishLeaf(CFields& node, const tRecord& record, const tSlot& value)
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

}  // namespace murv::detail
