// message.cpp - whole messages: one slice of the cipher's row, and a buffer for it.

#include "ber/cipher/message.h"

#include "ber/cipher/cipher.h"

#include <cstdlib>
#include <memory>

namespace murv
{

namespace
{

using detail::tCipherRow;
using detail::tCipherSlice;

constexpr std::uint64_t s_cullMostBytes = 0xFFFFFFFF;

struct tMessage
{
    const tCipherRow* m_pCipher;  // null when there is none of that number
    const void* m_pData;
    std::size_t m_nLength;
    const void* m_pKey;
    std::size_t m_nKeyLength;

    bool isComplete() const
    {
        return m_pCipher != nullptr && m_pData != nullptr && m_nLength != 0 && m_nLength <= s_cullMostBytes;
    }
};

/// Codes a message as one slice into a new buffer of `size` bytes.
std::uint32_t code(const tMessage& message, std::size_t (*coder)(const tCipherSlice&), std::uint64_t size,
                   bool filledUp, unsigned char** out)
{
    if (size > s_cullMostBytes)
        return 0;
    std::unique_ptr<unsigned char, decltype(&std::free)> buffer(
        static_cast<unsigned char*>(std::calloc(static_cast<std::size_t>(size), 1)), &std::free);
    detail::tCipherKey key;
    if (buffer == nullptr || !message.m_pCipher->m_pPrepareKey(key.data(), message.m_pKey, message.m_nKeyLength))
        return 0;
    const auto* const data = static_cast<const unsigned char*>(message.m_pData);
    const std::size_t count = coder({key.data(), buffer.get(), data, message.m_nLength, filledUp});
    if (count != 0)
        *out = buffer.release();
    return static_cast<std::uint32_t>(count);
}

}  // namespace

std::uint32_t CipherEncrypt(unsigned int type, const void* data, std::size_t length, const void* key,
                            std::size_t keyLength, bool padAlways, unsigned char** out)
{
    if (out == nullptr)
        return 0;
    *out = nullptr;
    const tMessage message = {detail::findCipher(type), data, length, key, keyLength};
    if (!message.isComplete())
        return 0;
    const bool filledUp = padAlways || length < message.m_pCipher->m_nShortest;
    return code(message, message.m_pCipher->m_pEncodeSlice, message.m_pCipher->m_pTextSize(length, filledUp), filledUp,
                out);
}

std::uint32_t CipherDecrypt(unsigned int type, const void* data, std::size_t length, const void* key,
                            std::size_t keyLength, unsigned char** out)
{
    if (out == nullptr)
        return 0;
    *out = nullptr;
    const tMessage message = {detail::findCipher(type), data, length, key, keyLength};
    return message.isComplete() ? code(message, message.m_pCipher->m_pDecodeSlice, length, false, out) : 0;
}

std::uint32_t VernamEncode(const void* data, std::size_t length, unsigned char** out)
{
    return CipherEncrypt(detail::CT_vernam, data, length, nullptr, 0, false, out);
}

std::uint32_t VernamDecode(const void* text, std::size_t length, unsigned char** out)
{
    return CipherDecrypt(detail::CT_vernam, text, length, nullptr, 0, out);
}

std::uint32_t SeedEncrypt(const void* data, std::size_t length, const void* key, std::size_t keyLength,
                          unsigned char** out, bool padAlways)
{
    return CipherEncrypt(detail::CT_seed, data, length, key, keyLength, padAlways, out);
}

std::uint32_t SeedDecrypt(const void* data, std::size_t length, const void* key, std::size_t keyLength,
                          unsigned char** out)
{
    return CipherDecrypt(detail::CT_seed, data, length, key, keyLength, out);
}

}  // namespace murv
