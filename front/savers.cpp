// front/savers.cpp - one entrance to all savers.
//
// The encoding rule picks the saver, which gets this object's configuration before each saving. Rules and styles out
// of range give nothing and are no error; callers rely on that.
#include <algorithm>
#include <iostream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/error_table.h"
#include "core/throw.h"
#include "murv/saver.h"

namespace murv
{

namespace
{

bool isOutOfRange(unsigned char encodingRule, unsigned char style)
{
    return style > SAVE_ALL || encodingRule > ER_BER;
}

/// Makes a saver ready for a saving on behalf of another one.
void configure(ISaver& saver, const ISaver& front)
{
    saver.setSCBC(front.getSCBC());
    saver.setCryptType(front.getCryptType());
}

}  // namespace

CSavers::CSavers(unsigned int scbc) : ISaver(scbc)
{
}

std::string CSavers::saving(const CFields& root, unsigned char encodingRule, unsigned char style, const char* password)
{
    if (isOutOfRange(encodingRule, style))
        return {};
    IStringSaver* saver = nullptr;
    switch (encodingRule)
    {
    case ER_SER_HFW: saver = &m_tIndented; break;
    case ER_SER_PKT: saver = &m_tCompact; break;
    case ER_BER: saver = &m_tBinary; break;
    default:
        setUserError(detail::s_ciInvalidParameter, "[%s#%d] Unknown encoding rule(%u)", "murv::CSavers::saving",
                     __LINE__, static_cast<unsigned int>(encodingRule));
        return {};
    }
    configure(*saver, *this);
    std::string result = saver->saving(root, style, password);
    takeError(*saver);
    return result;
}

void CSavers::saving(std::ostream& os, const CFields& root, unsigned char encodingRule, unsigned char style,
                     const char* password)
{
    if (isOutOfRange(encodingRule, style) || encodingRule != ER_SER_HFW)
        return;
    configure(m_tStream, *this);
    m_tStream.saving(os, root, style, password);
    takeError(m_tStream);
}

/// Passes the error on as it is, whatever the message's length.
void CSavers::takeError(const ISaver& from)
{
    if (!from.isError())
        return;
    std::optional<std::vector<unsigned int>> path = from.getErrorPath();
    CErrorBase::operator=(from);
    m_vErrorPath = std::move(path);
}

std::string CFields::toMURV(unsigned char encodingRule, unsigned char style, const char* password) const
{
    return CSavers(SCBC_SECOND_VALUE).saving(*this, encodingRule, style, password);
}

std::ostream& operator<<(std::ostream& os, const CFields& root)
{
    constexpr std::size_t longestThrown = 255;
    CStreamSaver4SER_HFW saver("  ");
    saver.saving(os, root, SAVE_ALL, nullptr);
    if (!saver.isError())
        return os;
    std::string text = "[murv::operator <<#" + std::to_string(__LINE__) + "] saver: " + saver.getLastErrMsg();
    text.resize(std::min(text.size(), longestThrown));
    std::cerr.write(text.data(), static_cast<std::streamsize>(text.size())).put('\n');
    detail::throwLogicError("%s", text.c_str());
}

}  // namespace murv
