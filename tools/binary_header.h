// tools/binary_header.h - what the first bytes of a binary file say.
//
// Loaders read the header and do not show it; people who search for what is wrong with a file want to see it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace murv::tool
{

struct tBinaryHeader
{
    std::uint32_t m_uiVersion;
    bool m_bLittleEndian;
    const char* m_pCipher;
    std::size_t m_nHeaderBytes;
    std::size_t m_nPasswordBytes;  // of the password block, which follows the header

    std::size_t bodyBegin() const
    {
        return m_nHeaderBytes + m_nPasswordBytes;
    }
};

/// Nothing when the file is no binary file, or ends within its header.
std::optional<tBinaryHeader> binaryHeader4File(std::string_view file);

}  // namespace murv::tool
