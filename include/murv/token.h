// murv/token.h - tokens of the text notation.
//
// A token is a range of the caller's data and what kind of token it is; its text is not copied.
#ifndef MURV_TOKEN_H
#define MURV_TOKEN_H

namespace murv
{

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

}  // namespace murv

#endif
