// io/saver_base.cpp - what all savers share: configuration, style, crypt type.
//
// Value and packet expression writers, which belong to the text rules, are members implemented there.
#include "murv/saver.h"

namespace murv
{

ISaver::ISaver(unsigned int scbc) : CBitCombi32(scbc)
{
}

ISaver::~ISaver() = default;

void ISaver::setSCBC(unsigned int scbc)
{
    BC32_Set(scbc);
}

unsigned int ISaver::getSCBC() const
{
    return BC32_Get();
}

bool ISaver::setCryptType(unsigned char type)
{
    if (type > 1)
        return false;
    m_ucCryptType = type;
    return true;
}

unsigned char ISaver::getCryptType() const
{
    return m_ucCryptType;
}

std::optional<std::vector<unsigned int>> ISaver::getErrorPath() const
{
    return m_vErrorPath;
}

void ISaver::clearError()
{
    CErrorBase::clearError();
    m_vErrorPath.reset();
}

IStringSaver::IStringSaver(unsigned int scbc) : ISaver(scbc)
{
}

IStringSaver::~IStringSaver() = default;

IStreamSaver::IStreamSaver(unsigned int scbc) : ISaver(scbc)
{
}

IStreamSaver::~IStreamSaver() = default;

}  // namespace murv
