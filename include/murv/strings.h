// murv/strings.h - text holders with explicit ownership.
//
// Texts have at most 255 bytes, so pointer, length and policy fit two words; text with static lifetime is never copied.
#ifndef MURV_STRINGS_H
#define MURV_STRINGS_H

#include "murv/export.h"

namespace murv
{

/// Marks a NUL-terminated text that lives as long as the process, so that nodes may borrow it without a copy.
class CStaticString
{
public:
    /// \param text  borrowed for ever; not copied
    constexpr CStaticString(const char* text) : m_pText(text)
    {
    }
    constexpr const char* c_str() const
    {
        return m_pText;
    }
    constexpr operator const char*() const
    {
        return m_pText;
    }

private:
    const char* m_pText;  // not owned
};

/// A text of 1 to 255 bytes with its duplication policy, or nothing.
///
/// Invalid arguments never throw: they give an empty string or false. Copying throws CLogicError when memory runs out.
class MURV_API CAllotString
{
public:
    /// Who owns the bytes; stored in the two low bits of the size-and-info word.
    enum E_DuplicationPolicy : unsigned int
    {
        DP_static = 0,     ///< static text: borrowed for ever, copies share the pointer
        DP_duplicate = 1,  ///< a private heap copy, freed by this object
        DP_borrow = 2,     ///< the caller's memory, which outlives this object; a copy becomes DP_duplicate
    };

    CAllotString() = default;
    /// Copies a text of 1 to 255 bytes; null or any other length leaves the string empty.
    CAllotString(const char* text);
    /// Takes `length` bytes (1 to 255) under `policy`; anything invalid leaves the string empty.
    CAllotString(const char* text, unsigned int length, E_DuplicationPolicy policy);
    CAllotString(const CAllotString& other);
    CAllotString(CAllotString&& other) noexcept;
    ~CAllotString();

    CAllotString& operator=(const CAllotString& other);
    CAllotString& operator=(CAllotString&& other) noexcept;

    /// Sets both words to the empty state without freeing anything.
    void init();
    /// Frees an owned copy and becomes empty.
    void clear();
    /// Takes the other's text: static text is shared, everything else copied. Always true.
    bool setData(const CAllotString& other);
    /// \return false, with nothing changed, for a null text, a length outside 1..255 or an unknown policy.
    bool setData(const char* text, unsigned int length, E_DuplicationPolicy policy);

    /// The text, which ends in NUL when it was copied; null when empty.
    const char* getData() const;
    unsigned int getLength() const;
    E_DuplicationPolicy getDP() const;
    /// The size-and-info word: length in bits 2..31, policy in bits 0..1.
    unsigned int getSAI() const;
    bool isStaticString() const;
    void swap(CAllotString& other) noexcept;

    /// Orders by unsigned bytes, then by length; an empty string is less than every other.
    bool operator<(const CAllotString& other) const;
    /// Equal bytes and length; the policy counts only between empty strings.
    bool operator==(const CAllotString& other) const;

private:
    const char* m_pData = nullptr;  // owned when the policy is DP_duplicate
    unsigned int m_uiSAI = 0;
};

}  // namespace murv

#endif
