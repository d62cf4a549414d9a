// ser/pei_writer.cpp - packet expressions as text.
//
// The text is put together in the saver's own buffer; what does not fit there is reported and left out.

#include <cstring>
#include <string_view>

#include "core/error_table.h"
#include "core/field_access.h"
#include "core/field_type.h"
#include "core/text/integer_text.h"
#include "murv/error.h"
#include "murv/saver.h"
#include "packet/keyword_table.h"
#include "ser/pei_letters.h"

namespace murv
{

namespace
{

constexpr const char* s_cpMakePEI = "murv::ISaver::makePEI";

/// Writes texts and numbers one after the other; the caller knows that there is room.
class CPeiText
{
public:
    explicit CPeiText(char* buffer) : m_pEnd(buffer)
    {
    }
    CPeiText& put(char byte)
    {
        *m_pEnd++ = byte;
        return *this;
    }
    CPeiText& put(std::string_view text)
    {
        std::memcpy(m_pEnd, text.data(), text.size());
        m_pEnd += text.size();
        return *this;
    }
    CPeiText& number(unsigned int value)
    {
        m_pEnd = detail::writeUnsigned(m_pEnd, value);
        return *this;
    }
    CPeiText& signedNumber(int value)
    {
        if (value >= 0)
            put('+');
        m_pEnd = detail::writeSigned(m_pEnd, value);
        return *this;
    }
    const char* end() const
    {
        return m_pEnd;
    }

private:
    char* m_pEnd;
};

void putLetters(CPeiText& text, const tPacketExpInfo& pei)
{
    const unsigned int codes[detail::s_cuiPeiLetters] = {pei.m_ePacketExp, pei.m_eRuntimeExp, pei.m_eLengthExp};
    for (unsigned int i = 0; i < detail::s_cuiPeiLetters; ++i)
    {
        // The length code that does not exist ends the text.
        const std::string_view letters = detail::s_ctPeiLetters[i].m_strvLetters;
        text.put(codes[i] < letters.size() ? letters[codes[i]] : '\0');
    }
}

void putLength(CPeiText& text, const tPacketExpInfo& pei, bool withValue)
{
    switch (pei.m_eLengthExp)
    {
    case LEC_F: text.number(pei.m_uiLength); break;
    case LEC_D:
        // A length of run time means nothing without its value.
        text.number(withValue ? pei.m_uiLength : 0);
        break;
    case LEC_V:
        // The width is written as a signed byte widened to 32 bits.
        if (pei.m_ucPrefixSize != 0)
            text.number(static_cast<unsigned int>(static_cast<signed char>(pei.m_ucPrefixSize)))
                .signedNumber(pei.m_cCalibration);
        break;
    }
}

/// The keyword's name, or null for an unknown one.
const char* keywordName(const tPacketExpInfo& pei)
{
    if (pei.m_ucSkKind == 0)
    {
        const detail::tKeywordRow* const row = detail::findKeyword(pei.m_usSkIndex);
        return row == nullptr ? nullptr : row->m_pName;
    }
    const CFields::tGetTxtFP getText = CFields::getGetTxtFP4ESK(pei.m_ucSkKind);
    return getText == nullptr ? nullptr : getText(pei.m_usSkIndex, pei.m_ucSkOption);
}

/// Reports a keyword that is unknown or too long, and leaves it out.
void putKeyword(CErrorBase& saver, CPeiText& text, const tPacketExpInfo& pei, std::size_t room)
{
    const unsigned int option = pei.m_ucSkOption;
    const char* const name = keywordName(pei);
    if (name == nullptr && pei.m_ucSkKind == 0)
        saver.setUserError(detail::s_ciInvalidParameter, "[%s#%d] '%u' was invalid index of internal keyword",
                           s_cpMakePEI, __LINE__, static_cast<unsigned int>(pei.m_usSkIndex));
    if (name == nullptr)
        return;
    const std::size_t length = std::strlen(name);
    if (length > room - (option == 0 ? 0 : detail::digits4Unsigned(option)))
    {
        saver.setUserError(detail::s_ciInvalidParameter, "[%s#%d] Too long keyword text(%u)", s_cpMakePEI, __LINE__,
                           static_cast<unsigned int>(length));
        return;
    }
    text.put(std::string_view(name, length));
    if (option != 0)
        text.number(option);
}

}  // namespace

const char* ISaver::makePEI(E_DataType type, const tPacketExpInfo& pei, unsigned char& written)
{
    m_cPEI[0] = '\0';
    if (detail::tFieldAccess::isContainer(type))
    {
        setUserError(detail::s_ciInvalidParameter, "[%s#%d] '%s' data type was not supported", s_cpMakePEI, __LINE__,
                     detail::s_cpTypeNames[type]);
        return m_cPEI;
    }
    CPeiText text(m_cPEI);
    text.put('(');
    putLetters(text, pei);
    putLength(text, pei, (m_ucStyle & SAVE_VALUE) != 0);
    const auto room = static_cast<std::size_t>(m_cPEI + sizeof m_cPEI - text.end());
    if (pei.m_usSkIndex != 0)
        putKeyword(*this, text, pei, room - sizeof ")");
    text.put(')').put('\0');
    written |= SAVE_PEI;
    return m_cPEI;
}

}  // namespace murv
