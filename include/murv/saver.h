// murv/saver.h - writing trees as text or binary data.
//
// Start with CSavers: it owns one saver of each kind and picks one by the encoding rule. The style byte of a call
// chooses what is written; the configuration word of a saver chooses how it looks.
#ifndef MURV_SAVER_H
#define MURV_SAVER_H

#include <cstddef>
#include <cstdlib>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "murv/error.h"
#include "murv/export.h"
#include "murv/fields.h"
#include "murv/flags.h"

namespace murv
{

namespace detail
{
class CBinaryWriter;
class CTextLayout;
class CValueWriter;
struct tErrorPathAccess;

/// Memory that a saver keeps from one saving to the next, so that it need not grow again; a copy starts without any.
struct tKeptBlock
{
    tKeptBlock() = default;
    tKeptBlock(const tKeptBlock&) noexcept
    {
    }
    tKeptBlock& operator=(const tKeptBlock&) noexcept  // NOLINT(bugprone-unhandled-self-assignment): keeps its own
    {
        return *this;
    }
    ~tKeptBlock()
    {
        std::free(m_pData);
    }

    char* m_pData = nullptr;  // owned, from malloc
    std::size_t m_nSize = 0;
};
}  // namespace detail

/// Encoding rules.
enum E_EncodingRule : unsigned int
{
    ER_SER_HFW = 0,  ///< indented text for people
    ER_SER_PKT = 1,  ///< text on one line
    ER_BER = 2,      ///< binary file
};

/// Bits of the style byte: which parts of the nodes are saved.
enum E_SaveStyle : unsigned int
{
    SAVE_SPACING = 1,   ///< blanks around "=", after "," and before values
    SAVE_ID = 2,        ///< IDs, as "#7 "
    SAVE_NAME = 4,      ///< names
    SAVE_PEI = 8,       ///< packet expressions
    SAVE_VALUE = 16,    ///< values
    SAVE_COMMENT = 32,  ///< comments
    SAVE_ALL = 63,
};

/// Bits of the saver configuration word.
enum E_SaverConfigBit : unsigned int
{
    SCBC_ONE_LINE_ARRAY = 1,  ///< short arrays of scalars go on one line
    SCBC_NULL_WORD = 2,       ///< null is written as "null" instead of nothing
    SCBC_FINAL_NEWLINE = 4,   ///< the document ends with a line feed
    SCBC_SECOND_VALUE = 8,    ///< of two values that differ the second one is written; else its keyword is left out
    /// What is saved reads back equal, with LCBC_LOSSLESS, LCBC_COMMENT and LCBC_DUPLICATE, or the saving fails, writes
    /// nothing, and names the node: see getErrorPath. In text this changes how values look.
    SCBC_LOSSLESS = 16,
};

/// What all savers share: configuration, style, cipher and the error state.
class MURV_API ISaver : public CErrorBase, public CBitCombi32
{
public:
    /// \param scbc  bits of E_SaverConfigBit
    explicit ISaver(unsigned int scbc);
    ISaver(const ISaver& other) = default;
    ISaver& operator=(const ISaver& other) = default;
    ~ISaver() override;

    void setSCBC(unsigned int scbc);
    unsigned int getSCBC() const;
    /// Keeps the number of a cipher: 0 "VERNAM" or 1 "SEED". Files do not depend on it: one with a password is SEED,
    /// one without is VERNAM.
    /// \return false, with nothing changed, for any other type
    bool setCryptType(unsigned char type);
    unsigned char getCryptType() const;

    /// The node that the last saving refused because of SCBC_LOSSLESS: on each level from the root on, the index for
    /// getChildAt. No index at all means the root.
    /// \return nothing when there is no error, or another one. Stays as long as the error. Cost: linear in the depth
    std::optional<std::vector<unsigned int>> getErrorPath() const;
    /// Code 0, empty message, no path.
    void clearError() override;

protected:
    friend class detail::CBinaryWriter;
    friend class detail::CTextLayout;
    friend class detail::CValueWriter;
    friend struct detail::tErrorPathAccess;

    /// The text of one scalar: packet expression and value, with the blanks between them.
    /// \param written  parts already written before it: 2 ID, 4 name, 8 packet expression, 16 value; updated
    std::string makePEIandValue(const CFields& node, unsigned char& written);
    /// The notation of a packet expression, in a buffer of this object that the next call overwrites.
    const char* makePEI(E_DataType type, const tPacketExpInfo& pei, unsigned char& written);

    unsigned char m_ucStyle = SAVE_ALL;
    unsigned char m_ucCryptType = 0;
    std::string m_strValue;                                 // text of the value being written
    char m_cPEI[256] = {};                                  // text of the packet expression being written
    std::optional<std::vector<unsigned int>> m_vErrorPath;  // of the error, when a node was refused
};

/// A saver whose result is a string.
class MURV_API IStringSaver : public ISaver
{
public:
    explicit IStringSaver(unsigned int scbc = SCBC_SECOND_VALUE);
    IStringSaver(const IStringSaver& other) = default;
    IStringSaver& operator=(const IStringSaver& other) = default;
    ~IStringSaver() override;

    /// \param style     bits of E_SaveStyle
    /// \param password  binary only
    /// \return what could be written; on failure see getLastErrMsg
    virtual std::string saving(const CFields& root, unsigned char style = SAVE_ALL, const char* password = nullptr) = 0;

protected:
    detail::tKeptBlock m_tResult;  // where the result is built
};

/// A saver that writes to a stream.
class MURV_API IStreamSaver : public ISaver
{
public:
    explicit IStreamSaver(unsigned int scbc = SCBC_SECOND_VALUE);
    IStreamSaver(const IStreamSaver& other) = default;
    IStreamSaver& operator=(const IStreamSaver& other) = default;
    ~IStreamSaver() override;

    /// Writes bytes as they are: the stream's formatting flags and locale have no effect.
    virtual void saving(std::ostream& os, const CFields& root, unsigned char style = SAVE_ALL,
                        const char* password = nullptr) = 0;

protected:
    std::ostream* m_pStream = nullptr;  // not owned; null when idle
    detail::tKeptBlock m_tSlice;        // text not yet written to the stream
};

/// Writes indented text into a string.
class MURV_API CSaver4SER_HFW : public IStringSaver
{
public:
    /// \param indentWidth  blanks for each level
    explicit CSaver4SER_HFW(unsigned int indentWidth = 2);
    std::string saving(const CFields& root, unsigned char style = SAVE_ALL, const char* password = nullptr) override;

private:
    unsigned int m_uiIndentWidth;
};

/// Writes text on one line.
class MURV_API CSaver4SER_PKT : public IStringSaver
{
public:
    CSaver4SER_PKT();
    /// Comments and spacing are never written.
    std::string saving(const CFields& root, unsigned char style = SAVE_ALL, const char* password = nullptr) override;
    /// Puts a blank after each "=", as YAML's flow style requires after its separator.
    void setCompatibilityYAML(bool compatible);

private:
    bool m_bYaml = false;
};

/// Writes binary files.
class MURV_API CSaver4BER_BASIC : public IStringSaver
{
public:
    CSaver4BER_BASIC();
    /// \return the whole file, or nothing on failure
    std::string saving(const CFields& root, unsigned char style = SAVE_ALL, const char* password = nullptr) override;
};

/// Writes indented text to a stream, byte for byte what CSaver4SER_HFW gives.
class MURV_API CStreamSaver4SER_HFW : public IStreamSaver
{
public:
    /// \param indentUnit  indentation of one level
    explicit CStreamSaver4SER_HFW(std::string indentUnit = "  ");
    void saving(std::ostream& os, const CFields& root, unsigned char style = SAVE_ALL,
                const char* password = nullptr) override;

private:
    std::string m_strIndentUnit;
};

/// Saves trees by any encoding rule. Errors stay until clearError.
class MURV_API CSavers : public ISaver
{
public:
    explicit CSavers(unsigned int scbc = SCBC_SECOND_VALUE);

    /// An unknown rule or a style above 63 gives an empty string and no error.
    std::string saving(const CFields& root, unsigned char encodingRule = ER_SER_HFW, unsigned char style = SAVE_ALL,
                       const char* password = nullptr);
    /// Only ER_SER_HFW can be written to a stream; other rules write nothing and report no error.
    void saving(std::ostream& os, const CFields& root, unsigned char encodingRule = ER_SER_HFW,
                unsigned char style = SAVE_ALL, const char* password = nullptr);

private:
    void takeError(const ISaver& from);

    CSaver4SER_HFW m_tIndented;
    CSaver4SER_PKT m_tCompact;
    CStreamSaver4SER_HFW m_tStream;
    CSaver4BER_BASIC m_tBinary;
};

/// Writes indented text. When the saver reports an error, the message goes to the standard error stream and
/// CLogicError is thrown.
MURV_API std::ostream& operator<<(std::ostream& os, const CFields& root);

}  // namespace murv

#endif
