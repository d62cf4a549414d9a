// murv/load_error.h - why and where a load failed, as data.
//
// The error message of a loader says the same in words.
#ifndef MURV_LOAD_ERROR_H
#define MURV_LOAD_ERROR_H

#include <optional>
#include <string>
#include <string_view>

#include "murv/export.h"

namespace murv
{

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

/// Line and column of a byte of a text, counted as a loader counts them; for an application's own errors, at the source
/// offsets of nodes. An offset after the end is taken for the end. Cost: linear in `offset`.
MURV_API tDataPlace place4Offset(std::string_view text, unsigned int offset) noexcept;

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

}  // namespace murv

#endif
