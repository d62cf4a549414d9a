// syntax/token_scanner.h - the tokens of a text, one after the other.
//
// They are the tokens of the loader, comments included. Only the reader of the grammar knows where a packet expression
// may stand: elsewhere its "(" is a token of its own.
#pragma once

#include <string_view>

#include "ser/token_text.h"

namespace murv::detail
{

class CTokenScanner
{
public:
    /// \param text  lives as long as the scanner
    explicit CTokenScanner(std::string_view text) : m_pEnd(text.data() + text.size()), m_pNext(text.data())
    {
    }
    /// Reads the next token. A byte of 0 is the end, like the end itself; after it nothing is read.
    tTokenInfo next();
    /// Makes the last token, which is a "(", a whole packet expression.
    /// \param text  set: the expression without brackets and remark
    /// \return null, or the loader's message; then the token reaches to where reading it ended
    const char* takeExpression(tTokenInfo& open, std::string_view& text);

private:
    bool takeRest(E_TokenType type);

    const char* m_pEnd;
    const char* m_pNext;
};

}  // namespace murv::detail
