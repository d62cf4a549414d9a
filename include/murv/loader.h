// murv/loader.h - reading data into trees.
//
// CLoaders is the entrance: it finds out whether data is text or binary and hands it to the loader of that rule. A
// loader may be used again and again; every load starts afresh, and its errors stay readable until the next one.
#ifndef MURV_LOADER_H
#define MURV_LOADER_H

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "murv/error.h"
#include "murv/export.h"
#include "murv/fields.h"
#include "murv/flags.h"
#include "murv/load_error.h"
#include "murv/token.h"

namespace murv
{

namespace detail
{
struct tLoad;  // io/load.h
}

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

/// What the loaders of single rules share: the nodes that are being read, and the errors with their places.
///
/// An application's own loader calls startLoad, adds members to the node on top of the stack, records errors, calls
/// composeErrors when there are any, and ends with finishLoad.
class MURV_API ILoaderCommon : public ILoaderBase
{
public:
    explicit ILoaderCommon(unsigned int flags);
    /// A copy has configuration and errors of the other, but no part in a load that is under way.
    ILoaderCommon(const ILoaderCommon& other);
    ILoaderCommon& operator=(const ILoaderCommon& other);
    ~ILoaderCommon() override;

    bool getStatus() const override;
    E_LoadFault getLoadFault() const override;
    /// The errors of the last load, in the order in which they were met.
    std::vector<tErrorRange> getErrorRanges() const;
    std::vector<tErrorPlace> getErrorPlaces() const override;

protected:
    void forgetErrors() override;
    /// Empties all state of the last load and pushes the target.
    /// \param data  not null; stays the caller's
    void startLoad(const char* data, unsigned int size, CFields& target, bool comments);
    /// Empties the stack; after a failure also empties a target that is a container.
    void finishLoad(CFields& target, bool done);

    CFields* getStackTopField() const;
    /// Gets or adds a member of the container on top of the stack.
    /// \param name  empty for none; may hold any bytes
    /// \return null when the member could not be added
    CFields* addChild2StackTop(std::string_view name, unsigned int id);
    CFields* addChild2StackTop(const char* name, unsigned int id)
    {
        return addChild2StackTop(name == nullptr ? std::string_view() : std::string_view(name), id);
    }
    /// The node that a look back from the stack top meets first, third, or first with a comment; or null.
    CFields* getLastField4Stack() const;
    CFields* getLastThirdField4Stack() const;
    CFields* getLastCommentField4Stack() const;

    /// Records an error at a place in the data, and the fault LF_text unless there is one already.
    /// \param second  a further place in the data, or null
    /// \return false
    bool addRecord(std::string_view message, const tTokenInfo& token, const char* second = nullptr);
    /// As above, at the source offsets of nodes; \return false, with nothing recorded, when these are not in the data.
    bool pushError(const CFields& node, const std::string& message);
    bool pushError(const CFields& node, const std::string& message, const CFields& second);
    std::vector<tErrorRange> getLoadErrors() const;
    /// Writes all records into the error message. With `lines` places are lines and columns, which are counted now,
    /// while the data is there, in one walk over it; else they are offsets.
    void composeErrors(bool lines);

    std::unique_ptr<detail::tLoad> m_pLoad;  // never null
};

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
