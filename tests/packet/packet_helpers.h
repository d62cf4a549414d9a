// tests/packet/packet_helpers.h - what the packet tests share.
//
// Leaves from a few letters, exact heap blocks, messages without lines.
#pragma once

#include "support/thrown.h"

#include "murv/fields.h"
#include "tests/support/clean_registries.h"

#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace murv::tests
{

/// A packet expression from its three letters; `size` is the length, or of a variable item the prefix width.
inline tPacketExpInfo pei4(std::string_view letters, unsigned int size, int calibration = 0)
{
    tPacketExpInfo pei{};
    pei.m_ePacketExp = letters[0] == 'A' ? PEC_A : PEC_B;
    pei.m_eRuntimeExp = letters[1] == 'C' ? REC_C : REC_N;
    pei.m_eLengthExp = letters[2] == 'F' ? LEC_F : letters[2] == 'V' ? LEC_V : LEC_D;
    if (letters[2] == 'V')
    {
        pei.m_ucPrefixSize = static_cast<unsigned char>(size);
        pei.m_cCalibration = static_cast<signed char>(calibration);
    }
    else
        pei.m_uiLength = size;
    return pei;
}

inline tPacketExpInfo withKeyword(tPacketExpInfo pei, unsigned int kind, unsigned int index, unsigned int option = 0)
{
    pei.m_ucSkKind = static_cast<unsigned char>(kind & 15U);
    pei.m_usSkIndex = static_cast<unsigned short>(index);
    pei.m_ucSkOption = static_cast<unsigned char>(option & 15U);
    return pei;
}

inline CFields leaf4(CFields value, const tPacketExpInfo& pei)
{
    value.pkt_SetExp(pei);
    return value;
}

inline CFields& addLeaf(CFields& tree, const char* name, const CFields& value, const tPacketExpInfo& pei)
{
    CFields& leaf = tree.addChildRef(name);
    leaf.setValue(value);
    leaf.pkt_SetExp(pei);
    return leaf;
}

/// The length in a leaf's packet expression; a copy, since no reference may be bound to a packed field.
inline unsigned int recorded4(const CFields& leaf)
{
    return leaf.pkt_GetExp().m_uiLength;
}

/// The item that a value makes.
inline std::string made(const CFields& value, const tPacketExpInfo& pei, bool keywords = false)
{
    return leaf4(value, pei).pkt_Make4OneSelf(keywords);
}

/// Bytes in a heap block of exactly their size, so that a byte read too many is seen.
class CExactBytes
{
public:
    explicit CExactBytes(std::string_view bytes)
        : m_pBlock(new char[bytes.size()]), m_uiSize(static_cast<unsigned int>(bytes.size()))
    {
        if (!bytes.empty())
            std::memcpy(m_pBlock.get(), bytes.data(), bytes.size());
    }
    const char* data() const
    {
        return m_pBlock.get();
    }
    unsigned int size() const
    {
        return m_uiSize;
    }

private:
    std::unique_ptr<char[]> m_pBlock;
    unsigned int m_uiSize;
};

inline int parsed(CFields& leaf, std::string_view bytes, bool store = true)
{
    const CExactBytes exact(bytes);
    return leaf.pkt_Parse4OneSelf(exact.data(), exact.size(), store);
}

inline int parsedTree(CFields& tree, std::string_view bytes, bool store = true)
{
    const CExactBytes exact(bytes);
    return tree.pkt_Parse4Children(exact.data(), exact.size(), store);
}

inline unsigned int failedLeaves(CFields& tree, std::string_view bytes)
{
    const CExactBytes exact(bytes);
    return tree.pkt_DetailCheck4Children(exact.data(), exact.size());
}

/// A byte string literal that may hold zero bytes.
template <std::size_t s_cnSize>
std::string bytes4(const char (&literal)[s_cnSize])
{
    return std::string(literal, s_cnSize - 1);
}

inline bool isCallbackRecordZero(CFields& node)
{
    const tInnerSupportedArgs4ESK& args = node.pkt_GetISA4ESK();
    return args.m_pPacket == nullptr && args.m_uiPacketLen == 0 && args.m_uiOffset == 0 && args.m_pMemo == nullptr;
}

}  // namespace murv::tests
