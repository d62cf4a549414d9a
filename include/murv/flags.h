// murv/flags.h - 32-bit words of flags that configure loaders and savers.
//
// One small class holds a word; the bit names stand beside the class that reads them.
#ifndef MURV_FLAGS_H
#define MURV_FLAGS_H

#include "murv/export.h"

namespace murv
{

/// A 32-bit word of flags, also usable as a counter that never wraps to 0.
class MURV_API CBitCombi32
{
public:
    explicit CBitCombi32(unsigned int bits = 0);
    CBitCombi32(const CBitCombi32& other) = default;
    virtual ~CBitCombi32();

    virtual CBitCombi32& operator=(int bits);
    virtual CBitCombi32& operator=(unsigned int bits);
    virtual CBitCombi32& operator=(const CBitCombi32& other);
    /// Compares the word with the 32 bits of `bits`.
    virtual bool operator==(int bits) const;

    unsigned int BC32_Get() const
    {
        return m_uiBits;
    }
    /// Replaces the word and returns it.
    unsigned int BC32_Set(unsigned int bits);
    /// Sets the bits of `mask` and returns the new word.
    unsigned int BC32_Or(unsigned int mask);
    /// Clears the bits of `mask` and returns the new word.
    unsigned int BC32_Nand(unsigned int mask);
    /// True when any bit of `mask` is set; false for a mask of 0.
    bool BC32_Check(unsigned int mask) const
    {
        return (m_uiBits & mask) != 0;
    }
    /// When any bit of `mask` is set, replaces the whole word by `bits` and returns true; else changes nothing.
    bool BC32_ChecknSet(unsigned int mask, unsigned int bits);
    /// Counts up; the step from 4294967295 gives 1, never 0.
    unsigned int BC32_Inc();
    /// Counts down; 0 stays 0.
    unsigned int BC32_Dec();

private:
    unsigned int m_uiBits;
};

/// Bits of the loader configuration word.
enum E_LoaderConfigBit : unsigned int
{
    LCBC_ROOT_CONTAINER = 0x01,   ///< text: the root must be a field set or an array
    LCBC_NUMBER_NAME = 0x02,      ///< text: a number is accepted as a member name
    LCBC_POSITIVE_LENGTH = 0x04,  ///< text: a packet length of 0 or less is refused
    LCBC_UNICODE_UTF8 = 0x08,     ///< text: `\u` escapes give UTF-8; without it two raw bytes, high byte first
    LCBC_COMMENT = 0x10,          ///< comments are tolerated, and kept when the caller's comment switch is on
    LCBC_EMPTY_NULL = 0x20,       ///< text: a missing value is read as null
    LCBC_DUPLICATE = 0x40,        ///< members with equal names or IDs are added; when clear the first one is read again
    LCBC_LOSSLESS = 0x80,         ///< empty containers stay empty, and "05" is unsigned: see SCBC_LOSSLESS
};

/// The configuration word of a loader; 0x30 (LCBC_COMMENT and LCBC_EMPTY_NULL) by default.
class MURV_API CLoaderConfig : public CBitCombi32
{
public:
    explicit CLoaderConfig(unsigned int bits = LCBC_COMMENT | LCBC_EMPTY_NULL);
    CLoaderConfig(const CLoaderConfig& other) = default;
    ~CLoaderConfig() override;

    CLoaderConfig& operator=(int bits) override;
    CLoaderConfig& operator=(unsigned int bits) override;
    CLoaderConfig& operator=(const CBitCombi32& other) override;
    CLoaderConfig& operator=(const CLoaderConfig& other);
    bool operator==(int bits) const override;
};

}  // namespace murv

#endif
