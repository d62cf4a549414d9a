// ser/text_parser.h - reads one text document into a tree.
//
// Recursive descent over tokens that are pointer pairs into the caller's data; the tree is built in place. The first
// error ends the load: each level skips to its closing token and fails in turn.
//
// The cursor, `p`, is the next byte to read. There is only one: each function that reads is given it by reference and
// leaves it after what it has read, also when it fails.
//
// The usual member - a plain name, "=", a value of one token or a container, a comma - is read by the fast path, whose
// functions end in Fast. They give up with nothing read when they meet anything else; but a container that has begun is
// read to its end, or fails. The general path goes by tokens. It knows the whole notation and all messages.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/text/byte_scan.h"
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
    /// Serves one load, which was just started.
    explicit CTextParser(tLoad& load);

    bool loadDocument(CFields& target);

private:
    // Tokens: ser/text_lexer.h

    void loadToken(const char*& p, tTokenInfo& token);
    /// The next token that is no comment, or a comment where comments are not tolerated.
    void skipCommentTokens(const char*& p, tTokenInfo& token);
    /// The next token that is no comment, from `token` on.
    void skipComments(const char*& p, tTokenInfo& token);
    unsigned int extractID(const tTokenInfo& token) const;

    // Comments: ser/text_comments.cpp

    bool loadComment(const char*& p);
    E_CommentPosition position4Comment(const char* begin, const char* end);
    void addComment(const char* begin, const char* end, E_CommentPosition position);
    /// Gives a node the comments that wait for one; `more`: after those that it got before its value began.
    void giveComments(CFields& node, bool more);

    // Documents, values and what stands before them: ser/text_grammar.cpp

    bool loadFieldInfo(const char*& p, bool root);
    bool loadValue(const char*& p, bool root);
    bool loadRootFieldInfo(const char*& p, tTokenInfo& token);
    bool loadEmptyValue(const char*& p);
    /// What may stand before a value: ID, name and "=". `m_strName` and `id` are set; the value is the next token.
    bool loadHead(const char*& p, tTokenInfo& token, bool root, unsigned int& id);
    bool loadNameOrStepBack(const char*& p, const tTokenInfo& token, const char* numberRefused);
    bool followedByAssign(const char*& p, const tTokenInfo& token);

    // Members: ser/text_members.cpp

    bool loadFields(const char*& p, const tTokenInfo& token);
    bool loadArray(const char*& p, const tTokenInfo& token);
    template <E_DataType type>
    bool loadMembersGeneral(const char*& p, const tTokenInfo& token);
    /// Members of an empty container up to the closing byte; `commented`: it was given comments already.
    template <E_DataType type>
    bool loadMembers(const char*& cursor, CFields& node, bool commented);
    bool loadFieldMember(const char*& p, CMemberBuilder& members);
    bool loadElement(const char*& p, CMemberBuilder& members);
    bool loadMemberValue(const char*& p, CFields& member, E_TokenType closing);
    CFields* addMember(CMemberBuilder& members, unsigned int id);
    CFields* addMemberGeneral(unsigned int id);
    bool isEmptyContainer(const char*& p, char end);

    bool loadNameFast(const char*& p, tTokenInfo& token);
    bool loadValueFast(const char*& p, CFields& member);
    bool loadNumberFast(const char*& p, CFields& member);
    bool loadStringFast(const char*& p, CFields& member);
    bool loadWordFast(const char*& p, CFields& member, std::string_view word, E_DataType type, bool value);
    bool loadEmptyFast(const char* p, CFields& member);
    template <E_DataType type>
    bool loadContainerFast(const char*& p, CFields& member);
    void finishFast(const char*& p, CFields& member, const char* end);
    bool loadSeparatorFast(const char*& p, char end, bool& more) const;

    bool loadNameGeneral(const char*& p, tTokenInfo& token, unsigned int& id);
    bool loadValueGeneral(const char*& p, CFields& member, E_TokenType closing);
    bool loadOneValue(const char*& p, CFields& member);
    bool loadFieldSeparator(const char*& p, bool& more);
    bool loadArraySeparator(const char*& p, bool& more);

    // What values are worth: ser/text_values.cpp

    /// The second value of the node goes, and what was read of a packet expression is settled.
    void startValue(CFields& node);
    bool finishValue(CFields& node, const tTokenInfo& token);
    void finishKind(CFields& node);
    /// Remembers the value that a comment on the same line goes to.
    void noteValue(CFields& node, const char* end);
    /// A value of one token, or the error that it is none.
    bool loadScalar(const char* p, CFields& node, const tTokenInfo& token);
    bool setWord(CFields& node, const tTokenInfo& token, const tSlot& slot);
    bool decodeNumber(CFields& node, const tTokenInfo& token);
    bool allotUnescapeString(CFields& node, const tTokenInfo& token);
    /// The bytes of a string token; valid until the next call.
    bool toUnescapeString(const tTokenInfo& token, std::string_view& bytes);
    void loadPEI(const char*& p, tTokenInfo& token);
    bool decodePEI(const tTokenInfo& token);

    // Errors: ser/text_lexer.cpp

    bool addError(const char* message, const tTokenInfo& token, const char* second = nullptr);
    bool addErrorAndRecover(const char*& p, const char* message, const tTokenInfo& token, E_TokenType until);
    /// Skips to after a token of that type; of what is skipped, comments are kept and errors are not. \return false
    bool recover4Error(const char*& p, E_TokenType until);

    /// Nothing read before belongs to the value to come, and it may nest.
    bool isValueAlone() const
    {
        return m_strComment.empty() && m_tLoad.isDepthLeft();
    }
    void skipSpaces(const char*& p) const
    {
        p = skipBlanks(p, m_pEnd);
    }
    int offset(const char* position) const
    {
        return static_cast<int>(position - m_pBegin);
    }
    /// A value that is not there lies, oddly, in the byte before the place where it is missed.
    void setEmptyOffsets(CFields& node, const char* p) const
    {
        tFieldAccess::setOffsets(node, offset(p) - 1, offset(p));
    }
    CFields& top() const
    {
        return m_tLoad.top();
    }

    tLoad& m_tLoad;
    const char* const m_pBegin;
    const char* const m_pEnd;
    const bool m_bTolerant;                   // comments may stand anywhere
    const bool m_bEmptyNull;                  // a missing value is null
    const bool m_bDuplicates;                 // a name may come again
    const bool m_bLossless;                   // empty containers stay empty, integers may be marked
    bool m_bComments;                         // comments are kept
    bool m_bClean = false;                    // the last string token holds no escape
    bool m_bPeiAllowed = false;               // "(" opens a packet expression
    bool m_bPeiPending = false;               // a packet expression was read for the value to come
    const char* m_pLineChecked;               // bytes from the last value up to here hold no line end
    std::string m_strComment;                 // comments for the next node
    bool m_bCommented = false;                // the container to be read was given comments already
    std::vector<std::size_t> m_vCommentSeam;  // where comments that wait for a node meet without a line feed
    std::string_view m_strPei;                // text of the packet expression just found
    std::string_view m_strName;               // of the member being read; in the data, in the scratch or in the next
    std::string m_strNumberName;              // the text of a number that serves as a name
    std::vector<char> m_vScratch;             // decoded strings
};

}  // namespace murv::detail
