// murv/loader.h - reading data into trees.
//
// CLoaders is the entrance: it finds out whether data is text or binary and hands it to the loader of that rule. A
// loader may be used again and again; every load starts afresh, and its errors stay readable until the next one. What
// all loaders can do is in murv/loader_base.h.
#ifndef MURV_LOADER_H
#define MURV_LOADER_H

#include <iosfwd>
#include <vector>

#include "murv/export.h"
#include "murv/fields.h"
#include "murv/flags.h"
#include "murv/load_error.h"
#include "murv/loader_base.h"
#include "murv/loader_common.h"

namespace murv
{

/// Loads the text notation, indented or on one line.
class MURV_API CLoader4SER : public ILoaderCommon
{
public:
    explicit CLoader4SER(unsigned int flags = LCBC_COMMENT | LCBC_EMPTY_NULL);
    /// The password is not used.
    bool loadit(const char* data, unsigned int size, CFields& target, const char* password = nullptr,
                bool comments = true) override;
};

/// Loads binary files.
class MURV_API CLoader4BER : public ILoaderCommon
{
public:
    explicit CLoader4BER(unsigned int flags = LCBC_COMMENT | LCBC_EMPTY_NULL);
    bool loadit(const char* data, unsigned int size, CFields& target, const char* password = nullptr,
                bool comments = true) override;
};

/// Loads data of any encoding rule.
class MURV_API CLoaders : public ILoaderBase
{
public:
    explicit CLoaders(unsigned int flags = LCBC_COMMENT | LCBC_EMPTY_NULL);
    CLoaders(const CLoaders& other);
    CLoaders& operator=(const CLoaders& other);

    /// Data of fewer than 4 bytes is refused, unless LCBC_LOSSLESS says that it is text; null data or a size of 0 gives
    /// false and leaves the last error.
    bool loadit(const char* data, unsigned int size, CFields& target, const char* password = nullptr,
                bool comments = true) override;
    bool getStatus() const override;
    std::vector<tErrorRange> getErrorRanges() const;
    E_LoadFault getLoadFault() const override;
    std::vector<tErrorPlace> getErrorPlaces() const override;

protected:
    void forgetErrors() override;

private:
    void follow(const CLoaders& other);
    bool loadBy(ILoaderCommon& loader, const char* data, unsigned int size, CFields& target, const char* password,
                bool comments);

    CLoader4SER m_tText;
    CLoader4BER m_tBinary;
    const ILoaderCommon* m_pLast = nullptr;  // the loader of the last load; a part of this object
};

/// Loads the rest of a stream, keeping comments. On failure the message goes to the standard error stream and
/// CLogicError is thrown.
MURV_API std::istream& operator>>(std::istream& in, CFields& target);

}  // namespace murv

#endif
