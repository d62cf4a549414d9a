// io/loader_base.cpp - what all loaders share: configuration, and reading strings and streams.
//
// Sizes are tested before they are narrowed to the 32 bits that loaders work with.
#include <istream>
#include <new>

#include "core/error_table.h"
#include "io/encoding_rule.h"
#include "io/read_stream.h"
#include "murv/loader_base.h"

namespace murv
{

ILoaderBase::ILoaderBase(unsigned int flags) : m_tConfig(flags)
{
}

void ILoaderBase::setLCBC(const CLoaderConfig& config)
{
    m_tConfig = config;
}

void ILoaderBase::setLCBC(unsigned int flags)
{
    m_tConfig = flags;
}

void ILoaderBase::setLCBC(int flags)
{
    m_tConfig = flags;
}

unsigned int ILoaderBase::getLCBC() const
{
    return m_tConfig.BC32_Get();
}

bool ILoaderBase::loading(const char* text, CFields& target, const char* password, bool comments)
{
    return loading(text == nullptr ? std::string_view() : std::string_view(text), target, password, comments);
}

bool ILoaderBase::loading(const std::string& data, CFields& target, const char* password, bool comments)
{
    return loading(std::string_view(data), target, password, comments);
}

bool ILoaderBase::loading(std::string_view data, CFields& target, const char* password, bool comments)
{
    if (isTooBig(data.size(), "murv::ILoaderBase::loading", __LINE__))
        return false;
    return loadit(data.data(), static_cast<unsigned int>(data.size()), target, password, comments);
}

bool ILoaderBase::loading(std::istream& in, CFields& target, const char* password, bool comments)
{
    std::string data;
    if (readStream(in, data))
        return loading(std::string_view(data), target, password, comments);
    forgetErrors();
    setUserError(detail::s_ciRuntimeError, "[%s#%d] Input stream failed", "murv::ILoaderBase::loading", __LINE__);
    m_eFault = LF_stream;
    return false;
}

bool ILoaderBase::readStream(std::istream& in, std::string& data)
{
    try
    {
        return detail::readStream(in, static_cast<std::size_t>(CFields::maxSint32), data);
    }
    catch (const std::bad_alloc&)
    {
        forgetErrors();
        m_eFault = LF_memory;
        throw;
    }
    catch (...)
    {
        forgetErrors();
        m_eFault = LF_stream;
        throw;
    }
}

bool ILoaderBase::isTooBig(unsigned long long size, const char* function, int line)
{
    if (size <= static_cast<unsigned int>(CFields::maxSint32))
        return false;
    forgetErrors();
    setUserError(detail::s_ciInvalidParameter, "[%s#%d] Too big data size(%llu)", function, line, size);
    m_eFault = LF_tooBig;
    return true;
}

void ILoaderBase::forgetErrors()
{
    clearError();
    m_eFault = LF_none;
}

E_LoadFault ILoaderBase::getLoadFault() const
{
    return m_eFault;
}

std::vector<tErrorPlace> ILoaderBase::getErrorPlaces() const
{
    return {};
}

int ILoaderBase::getER(const char* data, unsigned int size)
{
    if (data == nullptr || size < detail::s_cuiMagicSize)
        return -1;
    if (!detail::hasMurfMagic(data, size))
        return 0;
    if (size <= detail::s_cuiFlagsOffset)
        return -1;
    const auto flags = static_cast<unsigned char>(data[detail::s_cuiFlagsOffset]);
    return detail::rule4Flags(flags);
}

}  // namespace murv
