// syntax/grammar_reader.h - reads a text by its grammar, token by token, and finds every mistake in it.
//
// Nothing is kept of what was read: a sink gets each token with its role, in the order of the text, and takes what it
// needs. So laying a text out takes no more memory for a long one than for a short one. The blanks between two tokens
// are whatever lies between them.
//
// After a mistake the reader goes on at the next comma, or at a bracket that closes an open container. What is skipped
// gives no further mistakes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "syntax/token_scanner.h"

namespace murv::detail
{

/// What a token is to the grammar.
enum E_SyntaxRole : unsigned char
{
    SR_comment,
    SR_id,
    SR_name,
    SR_assign,
    SR_expression,  // a packet expression, brackets and remark included
    SR_scalar,
    SR_open,
    SR_close,
    SR_comma,
    SR_skipped,  // after a mistake
    SR_rest,     // what follows the document, which is not looked at
};

/// Something that breaks the grammar.
struct tMistake
{
    const char* m_pMessage;  // the loader's; static text
    const char* m_pBegin;
    const char* m_pEnd;
    const char* m_pSecond = nullptr;  // where to look for details, or null
};

class ISyntaxSink
{
public:
    virtual ~ISyntaxSink() = default;
    /// The root, a member or an element begins; its first token is next, or none where its value is missing.
    virtual void begin() = 0;
    virtual void token(E_SyntaxRole role, const tTokenInfo& token) = 0;
    virtual void end() = 0;
    virtual void mistake(const tMistake& mistake) = 0;
};

class CGrammarReader
{
public:
    /// \param config  of the loader. Comments are tolerated, missing values are null and containers may be empty,
    ///                whatever it says; repeated names are members of their own
    CGrammarReader(std::string_view text, unsigned int config, ISyntaxSink& sink);

    /// Reads all of the text. Time: linear; memory: the nesting and the longest string with escapes.
    void read();

private:
    enum E_Read : unsigned char
    {
        RD_done,
        RD_opened,  // a container: its members are next
        RD_failed,
    };
    struct tOpen
    {
        bool m_bArray;
        bool m_bEmpty = true;         // no member was read yet
        bool m_bCommaMissed = false;  // that was said once for this array
    };

    void fetch();
    void pass(E_SyntaxRole role);
    E_Read readMember();
    bool readHead(bool isRoot);
    bool readName(bool isRoot);
    bool isAssigned();
    bool readId();
    E_Read readValue();
    bool readExpression();
    E_Read openContainer();
    bool isClosing(const tOpen& open) const;
    void closeContainer();
    void finishMember();
    bool reportSeparator();
    bool goesOn(const tOpen& open) const;
    bool recover();
    void leaveTo(bool isArray);
    bool checkString(const tTokenInfo& token, std::size_t& length);
    bool fail(const char* message, const tTokenInfo& token, const char* second = nullptr);
    void passRest();

    CTokenScanner m_tScanner;
    const char* const m_pTextEnd;
    const unsigned int m_uiConfig;
    ISyntaxSink& m_tSink;
    tTokenInfo m_tToken{};             // the next one that is no comment
    bool m_bCommented = false;         // comments were passed before it
    std::vector<tTokenInfo> m_vAhead;  // tokens that were read to see what comes, from m_nAhead on
    std::size_t m_nAhead = 0;
    std::vector<tOpen> m_vOpen;
    std::size_t m_anOpen[2] = {};  // field sets and arrays among them
    const char* m_pValueEnd = nullptr;
    bool m_bColonSeen = false;
    std::vector<char> m_vScratch;
};

}  // namespace murv::detail
