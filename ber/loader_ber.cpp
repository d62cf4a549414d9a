// ber/loader_ber.cpp - the binary loader: header, password, and one load from start to end.
//
// What is wrong with header, password or cipher is fatal and leaves the target alone; what is wrong with a record is
// recorded with its place, and leaves what was read before.
#include <cstring>
#include <string_view>

#include "ber/binary_parser.h"
#include "ber/cipher.h"
#include "ber/layout.h"
#include "ber/vernam.h"
#include "ber/wipe.h"
#include "core/error_table.h"
#include "murv/loader.h"

namespace murv
{

namespace
{

using detail::s_cnHeaderSize;

constexpr const char* s_cpLoadHeader = "murv::CLoader4BER::loadHeader";
constexpr const char* s_cpDecryptField = "murv::CLoader4BER::decryptField";

struct tFileHead
{
    bool m_bLittleEndian;
    detail::E_CipherType m_eCipher;
    std::string_view m_strvBody;  // enciphered
};

/// Reports a fatal failure: `return fatal(...)`.
template <typename... tArgs>
bool fatal(CErrorBase& loader, int code, const char* format, const char* function, int line, tArgs... args)
{
    loader.setUserError(code, format, function, line, args...);
    return false;
}

bool checkPassword(CErrorBase& loader, std::string_view block, std::string_view password)
{
    if (password.empty())
        return fatal(loader, detail::s_ciInvalidParameter, "[%s#%d] Input the password", s_cpLoadHeader, __LINE__);
    detail::CWipedArea<unsigned char, detail::s_cnPasswordBlockLimit> text;
    const std::size_t length =
        detail::vernamDecodeTo(text.data(), reinterpret_cast<const unsigned char*>(block.data()), block.size());
    if (length == 0)
        return fatal(loader, detail::s_ciDecryptionFailed, "[%s#%d] Failed to the password decryption(retval=%u)",
                     s_cpLoadHeader, __LINE__, 0U);
    if (length != password.size() || std::memcmp(text.data(), password.data(), length) != 0)
        return fatal(loader, detail::s_ciInvalidParameter, "[%s#%d] Mismatched password", s_cpLoadHeader, __LINE__);
    return true;
}

bool loadHeader(CErrorBase& loader, std::string_view file, std::string_view password, tFileHead& head)
{
    const auto size = static_cast<unsigned int>(file.size());
    if (size <= s_cnHeaderSize)
        return fatal(loader, detail::s_ciBadData, "[%s#%d] Very shorter MURF file size(%u)", s_cpLoadHeader, __LINE__,
                     size);
    if (!detail::hasMurfMagic(file.data(), size))
        return fatal(loader, detail::s_ciInvalidData, "[%s#%d] Mismatched MURF magic", s_cpLoadHeader, __LINE__);
    const auto flags = static_cast<unsigned char>(file[detail::s_cuiFlagsOffset]);
    head.m_bLittleEndian = (flags & detail::s_cucLittleEndian) != 0;
    const unsigned int headerSize =
        detail::readNumber<std::uint16_t>(file.data() + detail::s_cnHeaderSizeOffset, head.m_bLittleEndian);
    if (headerSize != s_cnHeaderSize)
        return fatal(loader, detail::s_ciInvalidData, "[%s#%d] Mismatched size of MURF header structure(%u)",
                     s_cpLoadHeader, __LINE__, headerSize);
    const unsigned int cipher = static_cast<unsigned char>(file[detail::s_cnEncryptionOffset]);
    if (!detail::isValidCipher(cipher))
        return fatal(loader, detail::s_ciInvalidData, "[%s#%d] Mismatched encryption type(%u)", s_cpLoadHeader,
                     __LINE__, cipher);
    head.m_eCipher = static_cast<detail::E_CipherType>(cipher);
    const std::size_t blockSize = static_cast<unsigned char>(file[detail::s_cnPasswordSizeOffset]);
    file.remove_prefix(s_cnHeaderSize);
    if (blockSize > file.size())
        return fatal(loader, detail::s_ciBadData, "[%s#%d] Very shorter MURF file size(%u)", s_cpLoadHeader, __LINE__,
                     size);
    head.m_strvBody = file.substr(blockSize);
    return blockSize == 0 || checkPassword(loader, file.substr(0, blockSize), password);
}

bool checkField(CErrorBase& loader, const tFileHead& head, std::string_view password)
{
    if (detail::isCipherKeyNeeded(head.m_eCipher) && password.empty())
        return fatal(loader, detail::s_ciInvalidParameter, "[%s#%d] '%s' encryption need the key", s_cpDecryptField,
                     __LINE__, detail::cipherName(head.m_eCipher));
    if (head.m_strvBody.size() < detail::s_cnShortestBody)
        return fatal(loader, detail::s_ciBadData, "[%s#%d] Very shorter field-data size(%u)", s_cpDecryptField,
                     __LINE__, static_cast<unsigned int>(head.m_strvBody.size()));
    return true;
}

/// Makes the first bytes of the body readable.
bool decryptField(CErrorBase& loader, detail::CBodySource& source, const tFileHead& head, std::string_view password)
{
    if (!detail::isCipherKeyNeeded(head.m_eCipher) || source.setKey(password))
    {
        source.lookAhead();
        if (source.inWindow() != 0)
            return true;
    }
    return fatal(loader, detail::s_ciDecryptionFailed, "[%s#%d] Failed to the field-data decryption(retval=%u)",
                 s_cpDecryptField, __LINE__, 0U);
}

}  // namespace

CLoader4BER::CLoader4BER(unsigned int flags) : ILoaderCommon(flags)
{
}

CLoader4BER::CLoader4BER(const CLoader4BER& other) = default;
CLoader4BER& CLoader4BER::operator=(const CLoader4BER& other) = default;
CLoader4BER::~CLoader4BER() = default;

bool CLoader4BER::loadit(const char* data, unsigned int size, CFields& target, const char* password, bool comments)
{
    if (data == nullptr || size == 0)
        return false;
    if (isTooBig(size, "murv::CLoader4BER::loadit", __LINE__))
        return false;
    startLoad(data, size, target, comments);
    const std::string_view key = password == nullptr ? std::string_view() : std::string_view(password);
    const bool keep = true;  // a failed load leaves what it has read
    try
    {
        tFileHead head{};
        bool done = false;
        if (loadHeader(*this, {data, size}, key, head) && checkField(*this, head, key))
        {
            detail::CBodySource source(head.m_strvBody, head.m_eCipher);
            if (decryptField(*this, source, head, key))
            {
                done = detail::CBinaryParser(*this, source, head.m_bLittleEndian).loadDocument(target);
                if (!done)
                    composeErrors(&detail::CBinaryParser::getLocationString);
            }
        }
        finishLoad(target, keep);
        return done;
    }
    catch (...)
    {
        finishLoad(target, keep);
        throw;
    }
}

}  // namespace murv
