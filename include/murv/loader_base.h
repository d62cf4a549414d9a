// murv/loader_base.h - what every loader can do.
//
// Programs that load documents include murv/loader.h. What takes a loader of any kind by reference takes this one.
#ifndef MURV_LOADER_BASE_H
#define MURV_LOADER_BASE_H

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "murv/error.h"
#include "murv/export.h"
#include "murv/fields.h"
#include "murv/flags.h"
#include "murv/load_error.h"

namespace murv
{

/// What all loaders share: configuration and error state.
class MURV_API ILoaderBase : public CErrorBase
{
public:
    /// \param flags  bits of E_LoaderConfigBit
    explicit ILoaderBase(unsigned int flags);

    void setLCBC(const CLoaderConfig& config);
    void setLCBC(unsigned int flags);
    void setLCBC(int flags);
    unsigned int getLCBC() const;

    /// Loads a document into `target`, which stays the caller's.
    ///
    /// What the document does not state (name, ID, packet expression, comments of the target) is left as it is. When
    /// loading text fails, a target that is a container loses its members; of binary data what was read stays. Cost:
    /// linear in `size`.
    /// \param data      not kept beyond the call; must not lie in `target`
    /// \param size      in bytes; at most 2147483647
    /// \param password  binary only; null or empty for none
    /// \param comments  keep comments in the tree (needs LCBC_COMMENT too)
    /// \return false on failure: see getLastErrMsg, getErrorPlaces and getLoadFault
    /// Throws CLogicError when the document nests deeper than 1000 levels, std::bad_alloc, and what keyword callbacks
    /// of the application throw; nothing else because of what the document says.
    virtual bool loadit(const char* data, unsigned int size, CFields& target, const char* password = nullptr,
                        bool comments = true) = 0;
    /// True when the last load left no error.
    virtual bool getStatus() const = 0;
    /// Why the last load failed, also when an exception ended it. Like the places it stays until the next load starts,
    /// whatever happens to code and message. A loader refuses null data and a size of 0 before it starts, if at all.
    virtual E_LoadFault getLoadFault() const;
    /// The errors of the last load with their places, in the order in which they were met. They stay when the data is
    /// gone. Empty after a fault that has no place, such as a wrong password. Cost: linear in the number of errors.
    virtual std::vector<tErrorPlace> getErrorPlaces() const;

    bool loading(const char* text, CFields& target, const char* password = nullptr, bool comments = true);
    bool loading(const std::string& data, CFields& target, const char* password = nullptr, bool comments = true);
    bool loading(std::string_view data, CFields& target, const char* password = nullptr, bool comments = true);
    /// Reads to the end of the stream, or to the first byte of value 255, which is dropped, or 2147483647 bytes.
    ///
    /// A stream that has failed already, or breaks while it is read, is reported with code -999 and leaves the target
    /// alone; what was read of it is not loaded. A stream that is merely at its end gives empty data. Throws also what
    /// the stream throws when it was told to.
    bool loading(std::istream& in, CFields& target, const char* password = nullptr, bool comments = true);

    /// The encoding rule of the data: 0 text, 1 reserved, 2 binary, -1 not decidable.
    static int getER(const char* data, unsigned int size);

protected:
    /// Refuses data of more bytes than offsets can count.
    bool isTooBig(unsigned long long size, const char* function, int line);
    /// Forgets all errors and the fault of the last load.
    virtual void forgetErrors();

    CLoaderConfig m_tConfig;
    bool m_bComment = false;  // comments are kept in this load
    E_LoadFault m_eFault = LF_none;

private:
    bool readStream(std::istream& in, std::string& data);
};

}  // namespace murv

#endif
