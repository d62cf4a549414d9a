// ser/text_parser.h - reads one text document into a tree.
//
// Recursive descent over tokens that are pointer pairs into the caller's data; the tree is built in place. The first
// error ends the load: each level skips to its closing token and fails in turn.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "io/load.h"
#include "io/member_builder.h"
#include "murv/text.h"
#include "murv/token.h"

namespace murv::detail
{

/// Replaces the value of a node by the number that the text stands for.
void setNumber(CFields& node, const char* text, unsigned int length);

class CTextParser
{
public:
    explicit CTextParser(tLoad& load);

    /// Reads the document of the load that was just started.
    bool loadDocument(CFields& target);

private:
    // Tokens and comments: ser/text_lexer.cpp

    void loadToken(tTokenInfo& token);
    /// The next token that is no comment, or a comment where comments are not tolerated.
    void skipCommentTokens(tTokenInfo& token);
    /// The next token that is no comment, from `token` on.
    void skipComments(tTokenInfo& token);
    void skipSpaces();
    void loadNumber();
    bool loadString();
    bool loadComment();
    bool loadCStyleComment();
    bool loadCppStyleComment();
    E_CommentPosition position4Comment(const char* begin);
    void addComment(const char* begin, const char* end, E_CommentPosition position);
    /// Gives a node the comments that wait for one; `more`: behind those that it got before its value began.
    void giveComments(CFields& node, bool more);
    bool matchMove(std::string_view text);
    unsigned int extractID(const tTokenInfo& token) const;

    // Grammar: ser/text_grammar.cpp

    bool loadFieldInfo(bool root);
    bool loadValue(bool root);
    bool loadRootFieldInfo(tTokenInfo& token);
    using fnLoadMember = bool (CTextParser::*)(const char*& p);
    using fnLoadSeparator = bool (CTextParser::*)(const char*& p, bool& more);
    /// Members up to the closing byte; `token` is the opening one.
    template <E_DataType type, char end, fnLoadMember loadMember, fnLoadSeparator loadSeparator>
    bool loadMembers(const tTokenInfo& token);
    bool loadChildFields(const tTokenInfo& token);
    bool loadArray(const tTokenInfo& token);
    bool loadChildField(const char*& p);
    bool loadElement(const char*& p);
    bool loadMemberValue(const char*& p, CFields& member, E_TokenType closing);
    bool loadOtherValue(const char*& p, CFields& member, E_TokenType closing);
    bool loadPlainName(const char*& p, tTokenInfo& token);
    bool loadPlainValue(const char*& p, CFields& member);
    void startContainer(CFields& node, E_DataType type, const tTokenInfo& token);
    bool isEmptyContainer(char end);
    CFields* addChild(unsigned int id);
    bool loadChildValue(CFields& member);
    bool loadChildContainer(CFields& member, E_TokenType type);
    bool loadPlainSeparator(const char*& p, char end, bool& more) const;
    bool loadFieldSeparator(const char*& p, bool& more);
    bool loadArraySeparator(const char*& p, bool& more);
    /// What may stand before a value: ID, name and "=". `m_strName` and `id` are set; the value is the next token.
    bool loadHead(tTokenInfo& token, bool root, unsigned int& id);
    bool loadNameOrStepBack(const tTokenInfo& token, const char* numberRefused);
    bool followedByAssign(const tTokenInfo& token);
    bool loadEmptyValue();
    /// A value that is not there lies, oddly, in the byte before the place where it is missed.
    void setEmptyOffsets(CFields& node, const char* at) const
    {
        tFieldAccess::setOffsets(node, offset(at) - 1, offset(at));
    }

    // Values: ser/text_values.cpp

    /// The second value of the node goes, and what was read of a packet expression is settled.
    void startValue(CFields& node);
    bool finishValue(CFields& node, const tTokenInfo& token);
    void noteValue(CFields& node, const char* end);
    // Into a node that was just made; false, with nothing read, when it is no plain string or not that word.
    bool loadFreshNumber(const char*& p, CFields& node);
    bool loadFreshString(const char*& p, CFields& node);
    bool loadFreshWord(const char*& p, CFields& node, std::string_view word, E_DataType type, bool value);
    bool loadFreshEmpty(const char* p, CFields& node);
    void finishFresh(const char*& p, CFields& node, const char* end);
    void finishKind(CFields& node);
    /// A value of one token, or the error that it is none.
    bool loadScalar(CFields& node, const tTokenInfo& token);
    bool setSimple(CFields& node, const tTokenInfo& token, const tSlot& slot);
    bool decodeNumber(CFields& node, const tTokenInfo& token);
    bool allotUnescapeString(CFields& node, const tTokenInfo& token);
    /// The bytes of a string token; valid until the next call.
    bool toUnescapeString(const tTokenInfo& token, std::string_view& bytes);
    bool loadPEI(tTokenInfo& token);
    bool decodePEI(const tTokenInfo& token);

    // Errors: ser/text_lexer.cpp

    bool addError(const char* message, const tTokenInfo& token, const char* second = nullptr);
    bool addErrorAndRecover(const char* message, const tTokenInfo& token, E_TokenType until);
    bool recover4Error(E_TokenType until);

    /// Nothing read before belongs to the value to come, and it may nest.
    bool isPlain() const
    {
        return m_strComment.empty() && m_tLoad.isDepthLeft();
    }
    int offset(const char* position) const
    {
        return static_cast<int>(position - m_pBegin);
    }
    CFields& top() const
    {
        return m_tLoad.top();
    }

    tLoad& m_tLoad;
    const char* const m_pBegin;
    const char* const m_pEnd;
    const char* m_pCursor;
    const bool m_bTolerant;                   // comments may stand anywhere
    const bool m_bEmptyNull;                  // a missing value is null
    const bool m_bLossless;                   // empty containers stay empty, integers may be marked
    bool m_bComments;                         // comments are kept
    bool m_bPeiAllowed = false;               // "(" opens a packet expression
    bool m_bPeiPending = false;               // a packet expression was read for the value to come
    bool m_bClean = false;                    // the last string token holds no escape
    const char* m_pLineChecked;               // from here on lines behind the last value are still to be looked for
    std::string m_strComment;                 // comments for the next node
    std::vector<std::size_t> m_vCommentSeam;  // where comments that wait for a node meet without a line feed
    std::string_view m_strPei;                // text of the packet expression just found
    std::string_view m_strName;               // of the member being read; in the data, in the scratch or in the next
    std::string m_strNumberName;              // the text of a number that serves as a name
    std::vector<char> m_vScratch;             // decoded strings
};

}  // namespace murv::detail
