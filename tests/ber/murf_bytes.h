// tests/ber/murf_bytes.h - binary files put together by hand.
//
// Tests say what bytes they mean, so that writer and reader are held to the layout and not to each other.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "ber/cipher/message.h"
#include "murv/loader.h"
#include "murv/saver.h"
#include "tests/support/thrown.h"

namespace murv::tests
{

/// Bytes of a body, appended part by part.
class CBodyBytes
{
public:
    explicit CBodyBytes(bool littleEndian = true) : m_bLittle(littleEndian)
    {
    }

    CBodyBytes& number(std::uint64_t value, unsigned int size)
    {
        for (unsigned int i = 0; i < size; ++i)
            m_strBytes += static_cast<char>(value >> 8 * (m_bLittle ? i : size - 1 - i));
        return *this;
    }
    CBodyBytes& bytes(std::string_view raw)
    {
        m_strBytes += raw;
        return *this;
    }
    CBodyBytes& name(std::string_view text)
    {
        return number(text.size(), 1).bytes(text);
    }
    /// Length and bytes of a comment or a value.
    CBodyBytes& text(std::string_view raw)
    {
        return number(raw.size(), 4).bytes(raw);
    }
    CBodyBytes& noComments()
    {
        return bytes(std::string(12, '\0'));
    }
    CBodyBytes& noExpression()
    {
        return bytes(std::string(10, '\0'));
    }
    CBodyBytes& container(E_DataType type, std::uint32_t count, std::string_view itsName = {}, std::uint32_t id = 0)
    {
        return number(type, 1).number(id, 4).number(count, 4).name(itsName).noComments();
    }
    CBodyBytes& leaf(E_DataType type, std::string_view value = {}, std::string_view itsName = {}, std::uint32_t id = 0)
    {
        return number(type, 1).number(id, 4).noExpression().name(itsName).noComments().text(value);
    }
    CBodyBytes& integer(std::uint64_t value, std::string_view itsName = {}, std::uint32_t id = 0)
    {
        number(DT_sint, 1).number(id, 4).noExpression().name(itsName).noComments();
        return number(8, 4).number(value, 8);
    }
    const std::string& str() const
    {
        return m_strBytes;
    }

private:
    const bool m_bLittle;
    std::string m_strBytes;
};

inline std::string enciphered(unsigned int type, std::string_view plain, std::string_view key = {})
{
    unsigned char* out = nullptr;
    const std::uint32_t size = CipherEncrypt(type, plain.data(), plain.size(), key.data(), key.size(), false, &out);
    std::string result(reinterpret_cast<const char*>(out), size);
    std::free(out);
    return result;
}

inline std::string deciphered(unsigned int type, std::string_view text, std::string_view key = {})
{
    unsigned char* out = nullptr;
    const std::uint32_t size = CipherDecrypt(type, text.data(), text.size(), key.data(), key.size(), &out);
    std::string result(reinterpret_cast<const char*>(out), size);
    std::free(out);
    return result;
}

/// A header as writers make it; single bytes can be changed afterwards.
inline std::string header(unsigned char encryption = 0, unsigned char passwordSize = 0)
{
    std::string bytes("MURF\0\0\5\1\x0D\0\5\0\0", 13);
    bytes[11] = static_cast<char>(encryption);
    bytes[12] = static_cast<char>(passwordSize);
    return bytes;
}

inline std::string file4Body(const std::string& body)
{
    return header() + enciphered(0, body);
}

inline std::string file4Body(const std::string& body, std::string_view password)
{
    const std::string block = enciphered(0, password);
    return header(1, static_cast<unsigned char>(block.size())) + block + enciphered(1, body, password);
}

/// The deciphered body of a file without password.
inline std::string body4File(const std::string& file)
{
    return deciphered(0, std::string_view(file).substr(13));
}

/// How a load ended: "" when it was done, else the message, with the line number of a fatal one replaced by 0.
struct tLoaded
{
    std::string m_strMessage;
    int m_iCode = 0;
    CFields m_tTree;
    std::vector<tErrorRange> m_vError;
};

inline tLoaded load(const std::string& file, const char* password = nullptr, unsigned int flags = 0x30,
                    bool comments = true)
{
    tLoaded loaded;
    CLoader4BER loader(flags);
    const bool done = loader.loading(file, loaded.m_tTree, password, comments);
    EXPECT_EQ(done, loader.getLastErrMsg().empty());
    loaded.m_strMessage = withoutLine(loader.getLastErrMsg());
    loaded.m_iCode = loader.getLastErrCode();
    loaded.m_vError = loader.getErrorRanges();
    return loaded;
}

inline std::string message4Body(const CBodyBytes& body)
{
    return load(file4Body(body.str())).m_strMessage;
}

inline std::string save(const CFields& tree, unsigned char style = SAVE_ALL, const char* password = nullptr)
{
    CSaver4BER_BASIC saver;
    std::string file = saver.saving(tree, style, password);
    EXPECT_EQ(saver.getLastErrMsg(), "");
    return file;
}

inline std::string hex(std::string_view bytes)
{
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    for (const char byte : bytes)
    {
        text += digits[static_cast<unsigned char>(byte) >> 4];
        text += digits[static_cast<unsigned char>(byte) & 15];
    }
    return text;
}

}  // namespace murv::tests
