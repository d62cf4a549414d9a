// ser/loader_ser.cpp - the text loader: one load from start to end.

#include "murv/loader.h"
#include "ser/text_parser.h"

namespace murv
{

CLoader4SER::CLoader4SER(unsigned int flags) : ILoaderCommon(flags)
{
}

bool CLoader4SER::loadit(const char* data, unsigned int size, CFields& target, const char* /*password*/, bool comments)
{
    if (isTooBig(size, "murv::CLoader4SER::loadit", __LINE__))
        return false;
    try
    {
        startLoad(data == nullptr ? "" : data, data == nullptr ? 0 : size, target, comments);
        detail::CTextParser parser(*m_pLoad);
        const bool done = parser.loadDocument(target);
        if (!done)
            composeErrors(true);
        finishLoad(target, done);
        return done;
    }
    catch (...)
    {
        m_pLoad->noteException();
        finishLoad(target, false);
        throw;
    }
}

}  // namespace murv
