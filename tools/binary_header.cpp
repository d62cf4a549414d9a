// tools/binary_header.cpp - the one file of the tool that knows the layout of binary files.
#include "tools/binary_header.h"

#include "ber/cipher/cipher.h"
#include "ber/layout.h"

namespace murv::tool
{

std::optional<tBinaryHeader> binaryHeader4File(std::string_view file)
{
    if (file.size() < detail::s_cnHeaderSize ||
        !detail::hasMurfMagic(file.data(), static_cast<unsigned int>(file.size())))
        return std::nullopt;
    const auto byte = [file](std::size_t offset) { return static_cast<unsigned char>(file[offset]); };
    const bool isLittle = (byte(detail::s_cuiFlagsOffset) & detail::s_cucLittleEndian) != 0;
    const unsigned int cipher = byte(detail::s_cnEncryptionOffset);
    return tBinaryHeader{detail::readNumber<std::uint32_t>(file.data() + detail::s_cnVersionOffset, isLittle), isLittle,
                         detail::isValidCipher(cipher) ? detail::cipherName(cipher) : "unknown", detail::s_cnHeaderSize,
                         byte(detail::s_cnPasswordSizeOffset)};
}

}  // namespace murv::tool
