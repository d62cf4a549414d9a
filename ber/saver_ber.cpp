// ber/saver_ber.cpp - the binary saver: header, password block and enciphered body.
//
// Nothing is returned unless everything could be written.
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "ber/binary_writer.h"
#include "ber/cipher/vernam.h"
#include "ber/cipher/wipe.h"
#include "ber/layout.h"
#include "core/error_table.h"
#include "io/loss.h"
#include "murv/saver.h"
#include "packet/pei_rules.h"

namespace murv
{

namespace
{

using detail::CT_seed;
using detail::CT_vernam;
using detail::E_CipherType;
using detail::s_cnHeaderSize;
using detail::s_cnPasswordBlockLimit;

constexpr const char* s_cpWriteHeader = "murv::CSaver4BER_BASIC::writeHeader";
constexpr const char* s_cpSaving = "murv::CSaver4BER_BASIC::saving";
constexpr const char* s_cpFile = "a binary file";
constexpr const char* s_cpWriteField = "murv::CSaver4BER_BASIC::writeField";
constexpr std::uint64_t s_cullLongestLength = 0xFFFFFFFF;

/// Header and password block.
struct tFileHead
{
    E_CipherType m_eCipher = CT_vernam;
    std::size_t m_nSize = 0;
    detail::CWipedArea<char, s_cnHeaderSize + s_cnPasswordBlockLimit + 1> m_tBytes;
};

void makeHeader(tFileHead& head, std::size_t passwordBlockSize)
{
    char* const to = head.m_tBytes.data();
    std::memcpy(to, detail::s_cMagic, detail::s_cuiMagicSize);
    detail::writeNumber<std::uint32_t>(to + detail::s_cnVersionOffset, detail::s_cuiFileVersion);
    detail::writeNumber<std::uint16_t>(to + detail::s_cnHeaderSizeOffset, s_cnHeaderSize);
    to[detail::s_cuiFlagsOffset] = static_cast<char>(detail::s_cucWrittenFlags);
    to[detail::s_cnEncryptionOffset] = static_cast<char>(head.m_eCipher);
    to[detail::s_cnPasswordSizeOffset] = static_cast<char>(passwordBlockSize);
    head.m_nSize = s_cnHeaderSize + passwordBlockSize;
}

/// \pre the text of the password fits
std::size_t makePasswordBlock(tFileHead& head, std::string_view password)
{
    auto* const to = reinterpret_cast<unsigned char*>(head.m_tBytes.data() + s_cnHeaderSize);
    return detail::vernamEncodeTo(to, reinterpret_cast<const unsigned char*>(password.data()), password.size());
}

/// Writes head and body.
/// \return false, with the file empty, when lengths or memory do not suffice or the key is refused
bool makeFile(std::string& file, detail::tKeptBlock& block, const tFileHead& head, const detail::CBinaryWriter& writer,
              const CFields& root, std::string_view password, std::uint64_t bodySize)
{
    const std::uint64_t size = detail::CBodySink::enciphered(head.m_eCipher, bodySize);
    if (bodySize > s_cullLongestLength || size > s_cullLongestLength)
        return false;
    try
    {
        if (size > file.max_size() - head.m_nSize)  // on a 32-bit machine
            throw std::bad_alloc();
        file.reserve(head.m_nSize + static_cast<std::size_t>(size));
        file.append(head.m_tBytes.data(), head.m_nSize);
        detail::CBodySink sink(block, file, head.m_eCipher);
        if (!sink.setKey(password))
        {
            file.clear();
            return false;
        }
        writer.write(sink, root);
        sink.finish();
        return true;
    }
    catch (const std::bad_alloc&)
    {
        file.clear();
        return false;
    }
}

/// What would be lost of a node in a file, or null.
class CFileLoss
{
public:
    explicit CFileLoss(unsigned char style) : m_ucStyle(style)
    {
    }
    const char* operator()(const CFields& node, const detail::tNodeLevel& level) const
    {
        if (level.m_nLevel > detail::s_cnMostLevels)
            return detail::s_cpLossOfLevel;
        return has(SAVE_PEI) ? lossOfExpression(node) : nullptr;
    }

private:
    bool has(E_SaveStyle part) const
    {
        return (m_ucStyle & part) != 0;
    }
    const char* lossOfExpression(const CFields& node) const
    {
        const tPacketExpInfo& pei = detail::tFieldAccess::pei(node);
        if (!CFields::pkt_IsNullExp(pei))
        {
            if (detail::tFieldAccess::isContainer(node))
                return detail::s_cpLossOfContainerPei;
            if (pei.m_uiReserved != 0 || pei.m_eLengthExp > LEC_D || detail::findPeiFault(pei) != nullptr)
                return detail::s_cpLossOfPei;
        }
        return has(SAVE_VALUE) ? detail::lossOfSecondValue(node) : nullptr;
    }

    const unsigned char m_ucStyle;
};

/// Looks at a tree before a lossless saving, and reports the first node that would not come back equal.
bool isFileWhole(ISaver& saver, unsigned char style, const CFields& root)
{
    std::vector<detail::tPathStep> steps;
    const char* const loss = detail::findLoss(root, CFileLoss(style), steps);
    if (loss == nullptr)
        return true;
    detail::reportLoss(saver, s_cpSaving, steps, s_cpFile, loss);
    return false;
}

}  // namespace

CSaver4BER_BASIC::CSaver4BER_BASIC() = default;

std::string CSaver4BER_BASIC::saving(const CFields& root, unsigned char style, const char* password)
{
    clearError();
    m_ucStyle = style;
    const std::string_view key = password == nullptr ? std::string_view() : std::string_view(password);
    const std::size_t blockSize = detail::vernamTextSize(key.size());
    if (blockSize > s_cnPasswordBlockLimit)
    {
        setUserError(detail::s_ciInvalidParameter, "[%s#%d] Very longer password length detected before encryption(%u)",
                     s_cpWriteHeader, __LINE__, static_cast<unsigned int>(key.size()));
        return {};
    }
    tFileHead head;
    if (!key.empty())
    {
        head.m_eCipher = CT_seed;
        setCryptType(CT_seed);
        makePasswordBlock(head, key);
    }
    makeHeader(head, blockSize);

    const detail::CBinaryWriter writer(*this);
    std::string file;
    if (BC32_Check(SCBC_LOSSLESS) && !isFileWhole(*this, style, root))
        return file;
    const std::uint64_t bodySize = writer.bodySize(root);
    if (BC32_Check(SCBC_LOSSLESS) &&
        head.m_nSize + detail::CBodySink::enciphered(head.m_eCipher, bodySize) > detail::s_cnMostDocumentBytes)
    {
        detail::reportLoss(*this, s_cpSaving, {}, s_cpFile, "more than 2147483647 bytes");
        return file;
    }
    if (!makeFile(file, m_tResult, head, writer, root, key, bodySize))
        setUserError(detail::s_ciEncryptionFailed, "[%s#%d] Failed to the field encryption(ber_size=%u, retval=%u)",
                     s_cpWriteField, __LINE__,
                     static_cast<unsigned int>(bodySize > s_cullLongestLength ? s_cullLongestLength : bodySize), 0U);
    return file;
}

}  // namespace murv
