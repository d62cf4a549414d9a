// tests/ber/independent_decoder.h - reads binary files with nothing of the library but its tree.
//
// Written from the page on the file format, with OpenSSL for SEED, so that a mistake that writer and reader of the
// library share does not hide. It trusts the file and takes shortcuts.
#pragma once

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>

#include "murv/fields.h"

#ifdef MURV_TEST_OPENSSL
#include "tests/ber/openssl_seed.h"
#endif

namespace murv::tests
{

class CIndependentDecoder
{
public:
    /// Whether files with a password can be read: SEED is in a module of OpenSSL that may be missing.
    static bool isSeedThere()
    {
#ifdef MURV_TEST_OPENSSL
        return seed().isThere();
#else
        return false;
#endif
    }

    static CFields decode(const std::string& file, const std::string& password = {})
    {
        CIndependentDecoder decoder;
        const std::size_t blockSize = static_cast<unsigned char>(file.at(12));
        if (file.substr(0, 11) != std::string("MURF\0\0\5\1\x0D\0\5", 11) ||
            decode64(file.substr(13, blockSize)) != password)
            throw std::runtime_error("header or password");
        const std::string body = file.substr(13 + blockSize);
        decoder.m_strBody = file[11] == 0 ? decode64(body) : decryptSeed(body, password);
        CFields root;
        decoder.node(root);
        return root;
    }

private:
    /// Symbols from "?" on stand for 0 to 63; "-" fills up.
    static std::string decode64(const std::string& text)
    {
        std::string bytes;
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < text.size() && text[i] != '-'; ++i)
        {
            bits = bits << 6 | static_cast<std::uint32_t>(text[i] - '?');
            if (i % 4 != 0)
                bytes += static_cast<char>(bits >> (6 - i % 4 * 2));
        }
        return bytes;
    }
#ifdef MURV_TEST_OPENSSL
    static const COpensslSeed& seed()
    {
        static const COpensslSeed s_tSeed;
        return s_tSeed;
    }
    /// Bytes after the last whole block are not enciphered.
    static std::string decryptSeed(const std::string& text, std::string key)
    {
        key.resize(16, '\0');
        std::string bytes = text;
        if (!seed().decrypt(reinterpret_cast<const unsigned char*>(key.data()),
                            reinterpret_cast<const unsigned char*>(text.data()), text.size() / 16 * 16,
                            reinterpret_cast<unsigned char*>(bytes.data())))
            throw std::runtime_error("OpenSSL");
        return bytes;
    }
#else
    static std::string decryptSeed(const std::string& /*text*/, const std::string& /*key*/)
    {
        throw std::runtime_error("built without OpenSSL");
    }
#endif

    std::string take(std::uint64_t size)
    {
        if (m_strBody.size() - m_nAt < size)
            throw std::runtime_error("end of body");
        const auto count = static_cast<std::size_t>(size);
        m_nAt += count;
        return m_strBody.substr(m_nAt - count, count);
    }
    std::uint64_t number(std::size_t size)
    {
        const std::string bytes = take(size);
        std::uint64_t value = 0;
        for (std::size_t i = size; i-- > 0;)
            value = value << 8 | static_cast<unsigned char>(bytes[i]);
        return value;
    }

    void node(CFields& to)
    {
        const auto type = static_cast<E_DataType>(number(1));
        to.setID(static_cast<unsigned int>(number(4)));
        const bool isContainer = type == DT_array || type == DT_fields;
        const std::uint64_t count = isContainer ? number(4) : 0;
        if (!isContainer)
        {
            tPacketExpInfo pei;
            std::memcpy(&pei, take(4).data(), 4);
            pei.m_usSkIndex = static_cast<unsigned short>(number(2));
            pei.m_uiLength = static_cast<unsigned int>(number(4));
            to.pkt_SetExp(pei);
        }
        to.setName(take(number(1)));
        for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
        {
            const std::string comment = take(number(4));
            if (!comment.empty())
                to.setComment(comment, position);
        }
        if (isContainer)
        {
            to.setValue(type);
            for (std::uint64_t i = 0; i < count; ++i)
                node(to.addChildRef("", 0, true));
        }
        else
            value(to, type);
    }
    void value(CFields& to, E_DataType type)
    {
        const std::uint64_t size = number(4);
        if (type == DT_codelist)
            to.setValue(take(size));
        else if (type == DT_double)
        {
            const std::uint64_t bits = number(8);
            double value = 0;
            std::memcpy(&value, &bits, sizeof value);
            to.setValue(value);
        }
        else if (type == DT_sint)
            to.setValue(static_cast<long long>(number(8)));
        else if (type == DT_uint)
            to.setValue(static_cast<unsigned long long>(number(8)));
        else if (type == DT_bool)
            to.setValue(number(1) != 0);
        const unsigned short index = to.pkt_GetExp().m_usSkIndex;
        if (to.pkt_GetExp().m_ucSkKind == 0 && (index == 1 || index == 2))
            to.setVK(static_cast<E_ValueKind>(index));
    }

    std::string m_strBody;
    std::size_t m_nAt = 0;
};

}  // namespace murv::tests
