// ber/loader_ber.cpp - the binary loader: header, password, and one load from start to end.
//
// What is wrong with header, password or cipher is fatal and leaves the target alone; what is wrong with a record is
// recorded with its place, and leaves what was read before.
#include <cstring>
#include <iterator>
#include <string_view>

#include "ber/binary_parser.h"
#include "ber/cipher/cipher.h"
#include "ber/cipher/vernam.h"
#include "ber/cipher/wipe.h"
#include "ber/layout.h"
#include "core/error_table.h"
#include "io/load.h"
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

/// What is wrong with a file before its first record.
enum E_FileFailure
{
    FF_shortFile,
    FF_noMagic,
    FF_headerSize,
    FF_cipher,
    FF_noPassword,
    FF_badPasswordBlock,
    FF_otherPassword,
    FF_noKey,
    FF_shortBody,
    FF_body,
};

struct tFailureRow
{
    E_FileFailure m_eFailure;
    E_LoadFault m_eFault;
    int m_iCode;
    const char* m_pFunction;
    const char* m_pFormat;
};

constexpr tFailureRow s_ctFailures[] = {
    {FF_shortFile, LF_damagedFile, detail::s_ciBadData, s_cpLoadHeader, "[%s#%d] Very shorter MURF file size(%u)"},
    {FF_noMagic, LF_encodingRule, detail::s_ciInvalidData, s_cpLoadHeader, "[%s#%d] Mismatched MURF magic"},
    {FF_headerSize, LF_damagedFile, detail::s_ciInvalidData, s_cpLoadHeader,
     "[%s#%d] Mismatched size of MURF header structure(%u)"},
    {FF_cipher, LF_damagedFile, detail::s_ciInvalidData, s_cpLoadHeader, "[%s#%d] Mismatched encryption type(%u)"},
    {FF_noPassword, LF_passwordMissing, detail::s_ciInvalidParameter, s_cpLoadHeader, "[%s#%d] Input the password"},
    {FF_badPasswordBlock, LF_damagedFile, detail::s_ciDecryptionFailed, s_cpLoadHeader,
     "[%s#%d] Failed to the password decryption(retval=%u)"},
    {FF_otherPassword, LF_passwordWrong, detail::s_ciInvalidParameter, s_cpLoadHeader, "[%s#%d] Mismatched password"},
    {FF_noKey, LF_passwordMissing, detail::s_ciInvalidParameter, s_cpDecryptField,
     "[%s#%d] '%s' encryption need the key"},
    {FF_shortBody, LF_damagedFile, detail::s_ciBadData, s_cpDecryptField, "[%s#%d] Very shorter field-data size(%u)"},
    {FF_body, LF_damagedFile, detail::s_ciDecryptionFailed, s_cpDecryptField,
     "[%s#%d] Failed to the field-data decryption(retval=%u)"},
};

constexpr bool isIndexedByFailure()
{
    for (std::size_t i = 0; i < std::size(s_ctFailures); ++i)
    {
        if (s_ctFailures[i].m_eFailure != i)
            return false;
    }
    return true;
}
static_assert(isIndexedByFailure(), "the rows stand in the order of the enumeration");

/// Reports a failure: `return fail(...)`. The arguments are those of the row's format after function and line.
template <typename... tArgs>
E_LoadFault fail(CErrorBase& loader, E_FileFailure failure, int line, tArgs... args)
{
    const tFailureRow& row = s_ctFailures[failure];
    loader.setUserError(row.m_iCode, row.m_pFormat, row.m_pFunction, line, args...);
    return row.m_eFault;
}

E_LoadFault checkPassword(CErrorBase& loader, std::string_view block, std::string_view password)
{
    if (password.empty())
        return fail(loader, FF_noPassword, __LINE__);
    detail::CWipedArea<unsigned char, detail::s_cnPasswordBlockLimit> text;
    const std::size_t length =
        detail::vernamDecodeTo(text.data(), reinterpret_cast<const unsigned char*>(block.data()), block.size());
    if (length == 0)
        return fail(loader, FF_badPasswordBlock, __LINE__, 0U);
    if (length != password.size() || std::memcmp(text.data(), password.data(), length) != 0)
        return fail(loader, FF_otherPassword, __LINE__);
    return LF_none;
}

E_LoadFault loadHeader(CErrorBase& loader, std::string_view file, std::string_view password, tFileHead& head)
{
    const auto size = static_cast<unsigned int>(file.size());
    if (size <= s_cnHeaderSize)
        return fail(loader, FF_shortFile, __LINE__, size);
    if (!detail::hasMurfMagic(file.data(), size))
        return fail(loader, FF_noMagic, __LINE__);
    const auto flags = static_cast<unsigned char>(file[detail::s_cuiFlagsOffset]);
    head.m_bLittleEndian = (flags & detail::s_cucLittleEndian) != 0;
    const unsigned int headerSize =
        detail::readNumber<std::uint16_t>(file.data() + detail::s_cnHeaderSizeOffset, head.m_bLittleEndian);
    if (headerSize != s_cnHeaderSize)
        return fail(loader, FF_headerSize, __LINE__, headerSize);
    const unsigned int cipher = static_cast<unsigned char>(file[detail::s_cnEncryptionOffset]);
    if (!detail::isValidCipher(cipher))
        return fail(loader, FF_cipher, __LINE__, cipher);
    head.m_eCipher = static_cast<detail::E_CipherType>(cipher);
    const std::size_t blockSize = static_cast<unsigned char>(file[detail::s_cnPasswordSizeOffset]);
    file.remove_prefix(s_cnHeaderSize);
    if (blockSize > file.size())
        return fail(loader, FF_shortFile, __LINE__, size);
    head.m_strvBody = file.substr(blockSize);
    return blockSize == 0 ? LF_none : checkPassword(loader, file.substr(0, blockSize), password);
}

E_LoadFault checkField(CErrorBase& loader, const tFileHead& head, std::string_view password)
{
    const detail::tCipherRow& cipher = detail::cipherRow(head.m_eCipher);
    if (cipher.m_bKeyNeeded && password.empty())
        return fail(loader, FF_noKey, __LINE__, cipher.m_pName);
    if (head.m_strvBody.size() < detail::s_cnShortestBody)
        return fail(loader, FF_shortBody, __LINE__, static_cast<unsigned int>(head.m_strvBody.size()));
    return LF_none;
}

/// Makes the first bytes of the body readable.
E_LoadFault decryptField(CErrorBase& loader, detail::CBodySource& source, std::string_view password)
{
    if (source.setKey(password))
    {
        source.lookAhead();
        if (source.inWindow() != 0)
            return LF_none;
    }
    return fail(loader, FF_body, __LINE__, 0U);
}

E_LoadFault loadFile(CErrorBase& loader, detail::tLoad& load, std::string_view file, std::string_view password,
                     CFields& target)
{
    tFileHead head{};
    E_LoadFault fault = loadHeader(loader, file, password, head);
    if (fault == LF_none)
        fault = checkField(loader, head, password);
    if (fault != LF_none)
        return fault;
    detail::CBodySource source(head.m_strvBody, head.m_eCipher);
    fault = decryptField(loader, source, password);
    if (fault != LF_none)
        return fault;
    return detail::CBinaryParser(load, source, head.m_bLittleEndian).loadDocument(target) ? LF_none : LF_damagedFile;
}

}  // namespace

CLoader4BER::CLoader4BER(unsigned int flags) : ILoaderCommon(flags)
{
}

bool CLoader4BER::loadit(const char* data, unsigned int size, CFields& target, const char* password, bool comments)
{
    if (data == nullptr || size == 0)
        return false;
    if (isTooBig(size, "murv::CLoader4BER::loadit", __LINE__))
        return false;
    const std::string_view key = password == nullptr ? std::string_view() : std::string_view(password);
    try
    {
        startLoad(data, size, target, comments);
        m_pLoad->m_eFault = loadFile(*this, *m_pLoad, {data, size}, key, target);
        if (!getStatus())
            composeErrors(false);
        m_pLoad->finish();  // a failed load leaves what it has read
        return m_pLoad->m_eFault == LF_none;
    }
    catch (...)
    {
        m_pLoad->noteException();
        m_pLoad->finish();
        throw;
    }
}

}  // namespace murv
