// core/flags.cpp - 32-bit words of flags.
//
// Only loaders and savers know what the bits mean.
#include "murv/flags.h"

#include <climits>

namespace murv
{

CBitCombi32::CBitCombi32(unsigned int bits) : m_uiBits(bits)
{
}

CBitCombi32::~CBitCombi32() = default;

CBitCombi32& CBitCombi32::operator=(int bits)
{
    m_uiBits = static_cast<unsigned int>(bits);
    return *this;
}

CBitCombi32& CBitCombi32::operator=(unsigned int bits)
{
    m_uiBits = bits;
    return *this;
}

CBitCombi32& CBitCombi32::operator=(const CBitCombi32& other) = default;

bool CBitCombi32::operator==(int bits) const
{
    return m_uiBits == static_cast<unsigned int>(bits);
}

unsigned int CBitCombi32::BC32_Set(unsigned int bits)
{
    return m_uiBits = bits;
}

unsigned int CBitCombi32::BC32_Or(unsigned int mask)
{
    return m_uiBits |= mask;
}

unsigned int CBitCombi32::BC32_Nand(unsigned int mask)
{
    return m_uiBits &= ~mask;
}

bool CBitCombi32::BC32_ChecknSet(unsigned int mask, unsigned int bits)
{
    if (!BC32_Check(mask))
        return false;
    m_uiBits = bits;
    return true;
}

unsigned int CBitCombi32::BC32_Inc()
{
    return m_uiBits = m_uiBits == UINT_MAX ? 1 : m_uiBits + 1;
}

unsigned int CBitCombi32::BC32_Dec()
{
    return m_uiBits = m_uiBits == 0 ? 0 : m_uiBits - 1;
}

CLoaderConfig::CLoaderConfig(unsigned int bits) : CBitCombi32(bits)
{
}

CLoaderConfig::~CLoaderConfig() = default;

CLoaderConfig& CLoaderConfig::operator=(int bits)
{
    CBitCombi32::operator=(bits);
    return *this;
}

CLoaderConfig& CLoaderConfig::operator=(unsigned int bits)
{
    CBitCombi32::operator=(bits);
    return *this;
}

CLoaderConfig& CLoaderConfig::operator=(const CBitCombi32& other)
{
    CBitCombi32::operator=(other);
    return *this;
}

CLoaderConfig& CLoaderConfig::operator=(const CLoaderConfig& other) = default;

bool CLoaderConfig::operator==(int bits) const
{
    return CBitCombi32::operator==(bits);
}

}  // namespace murv
