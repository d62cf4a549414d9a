// murv/loader.h - reading data into trees.
//
// CLoaders is the entrance: it tells text from binary data and hands the data to the loader of that rule. A loader may
// be used again and again; every load starts afresh, and its errors stay readable until the next one.
#ifndef MURV_LOADER_H
#define MURV_LOADER_H

#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "murv/error.h"
#include "murv/export.h"
#include "murv/fields.h"
#include "murv/flags.h"

namespace murv
{

namespace detail
{
class CBinaryParser;
class CIdIndex;
class CMemberBuilder;
class CNodeStack;
class COpenContainer;
class CTextParser;
struct tNodePlace;
}  // namespace detail

/// One load error with the place it concerns, in bytes from the start of the data.
struct tErrorRange
{
    unsigned int m_uiStart;
    unsigned int m_uiEnd;
    std::string m_strMessage;
};

/// A position in the data of a load.
struct tDataPlace
{
    unsigned int m_uiOffset;  ///< bytes from the start of the data; for binary data, of the deciphered body
    unsigned int m_uiLine;    ///< from 1; a line ends with a line feed, a carriage return, or both; 0 for binary data
    unsigned int m_uiColumn;  ///< from 1, in bytes, as the error message counts; 0 for binary data
};

/// One load error as data: all that the error message says of it in words.
struct tErrorPlace
{
    unsigned int m_uiStart;   ///< offset of the first byte concerned; counted as tDataPlace::m_uiOffset
    unsigned int m_uiEnd;     ///< offset after the last byte concerned
    unsigned int m_uiLine;    ///< of the first byte; see tDataPlace
    unsigned int m_uiColumn;  ///< of the first byte; see tDataPlace
    std::string m_strMessage;
    std::optional<tDataPlace> m_tSecond;  ///< where to look for details, when that is another place
};

/// Why a load failed.
enum E_LoadFault : unsigned int
{
    LF_none = 0,         ///< it did not; or nothing was loaded yet
    LF_text,             ///< the text does not follow the notation or the configuration
    LF_encodingRule,     ///< the data follows no rule that the loader knows, or is too short to tell
    LF_passwordMissing,  ///< the file needs a password, and none was given
    LF_passwordWrong,    ///< the file names another password
    LF_damagedFile,      ///< the binary file is cut short, changed, or holds what it must not
    LF_tooBig,           ///< the data has more than 2147483647 bytes
    LF_tooDeep,          ///< the document nests deeper than 1000 levels
    LF_memory,           ///< out of memory
    LF_stream,           ///< the input stream failed before or while it was read
    LF_callback,         ///< a keyword callback of the application threw
};

/// Kinds of text tokens.
enum E_TokenType : unsigned int
{
    TT_end = 0,  ///< end of the data, or a byte of value 0
    TT_fieldsBegin,
    TT_fieldsEnd,
    TT_arrayBegin,
    TT_arrayEnd,
    TT_peiBegin,
    TT_peiEnd,
    TT_string,
    TT_number,
    TT_true,
    TT_false,
    TT_null,
    TT_id,
    TT_assign,
    TT_comma,
    TT_comment,
    TT_error,  ///< anything else, or a malformed token
};

/// A token: a range of the data.
struct tTokenInfo
{
    E_TokenType m_eType;
    const char* m_pBegin;
    const char* m_pEnd;
};

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

/// What the two loaders share: parse stack, error list, and the places in the data.
class MURV_API ILoaderCommon : public ILoaderBase
{
public:
    explicit ILoaderCommon(unsigned int flags);
    ILoaderCommon(const ILoaderCommon& other);
    ILoaderCommon& operator=(const ILoaderCommon& other);
    ~ILoaderCommon() override;

    bool getStatus() const override;
    /// The errors of the last load, in the order in which they were met.
    std::vector<tErrorRange> getErrorRanges() const;
    std::vector<tErrorPlace> getErrorPlaces() const override;

protected:
    friend class detail::CBinaryParser;
    friend class detail::COpenContainer;
    friend class detail::CTextParser;

    struct tLineColumn
    {
        int m_iLine;
        int m_iColumn;
    };

    struct tErrorRecord
    {
        tTokenInfo m_tToken;
        std::string m_strMessage;
        const char* m_pSecond;            // further place, or null
        tLineColumn m_tLine{0, 0};        // of the token; counted by composeErrors
        tLineColumn m_tSecondLine{0, 0};  // of the further place
    };

    static constexpr int s_cnStackDepthLimit = 1000;

    /// What is known of the member just had.
    enum E_MemberState : unsigned char
    {
        MS_fresh,   // it was added
        MS_placed,  // it was added with an ID, at the place that is kept
        MS_reread,  // it was there before, at the place that is kept
    };

    void forgetErrors() override;
    /// Empties all state of the last load and pushes the target.
    void startLoad(const char* data, unsigned int size, CFields& target, bool comments);
    /// Empties the stack; after a failure also empties a target that is a container.
    void finishLoad(CFields& target, bool done);
    /// Finds the fault for the exception that is being handled.
    void noteException();

    CFields* getStackTopField() const;
    /// Gets or adds a member of the container on top of the stack.
    /// \param name  empty for none; may hold any bytes
    /// \return null when the member could not be had
    CFields* addChild2StackTop(std::string_view name, unsigned int id);
    CFields* addChild2StackTop(const char* name, unsigned int id)
    {
        return addChild2StackTop(name == nullptr ? std::string_view() : std::string_view(name), id);
    }
    /// The node that a look back from the stack top meets first, third, or first with a comment; or null.
    CFields* getLastField4Stack() const;
    CFields* getLastThirdField4Stack() const;
    CFields* getLastCommentField4Stack() const;

    // Recording an error makes the fault LF_text unless there is one already.
    bool addRecord(std::string_view message, const tTokenInfo& token, const char* second = nullptr);
    bool pushError(const CFields& node, const std::string& message);
    bool pushError(const CFields& node, const std::string& message, const CFields& second);
    std::vector<tErrorRange> getLoadErrors() const;
    /// Writes all records into the error message. With `lines` places are lines and columns, which are counted now,
    /// while the data is there, in one walk over it; else they are offsets.
    void composeErrors(bool lines);
    void countLines();
    std::string words4Place(const char* position, const tLineColumn& place) const;

    /// The member or node below that has the name, or else the ID, and is to be read again; or null.
    CFields* findKnown(std::string_view name, unsigned int id);
    /// Remembers where the member just had lies.
    void keepPlace(const detail::tNodePlace& place);
    /// To be called before a node gets another value: what knows of nodes below it forgets them.
    void forgetBelow(const CFields& node);

    std::vector<tErrorRecord> m_vError;
    std::vector<CFields*> m_vStack;  // not owned; entries may be null
    const char* m_pDataBegin = nullptr;
    const char* m_pDataEnd = nullptr;
    const char* m_pCursor = nullptr;
    const char* m_pLastValueEnd = nullptr;  // where the last value ended
    CFields* m_pLastValueNode = nullptr;    // the node that a comment on the same line goes to
    int m_iDepth = 0;
    bool m_bPeiAllowed = false;  // "(" opens a packet expression
    bool m_bPeiPending = false;  // a packet expression was read for the value to come
    E_MemberState m_eMember = MS_fresh;
    unsigned int m_uiMemberSet = 0;
    unsigned int m_uiMemberPosition = 0;
    std::string m_strComment;                          // comments for the next node
    detail::CMemberBuilder* m_pBuilder = nullptr;      // of the innermost open container; lives on the reader's stack
    std::unique_ptr<detail::CNodeStack> m_pNodeStack;  // kept between loads
    std::unique_ptr<detail::CIdIndex> m_pIdIndex;
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
    CLoader4BER(const CLoader4BER& other);
    CLoader4BER& operator=(const CLoader4BER& other);
    ~CLoader4BER() override;
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
    ~CLoaders() override;

    /// Data of fewer than 4 bytes is refused; null data or a size of 0 gives false and leaves the last error.
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
