// tests/ser/text_model.h - the text rules once more, slowly and literally.
//
// Reads byte by byte, recursively, and builds the tree through the public interface alone. It knows nothing of
// builders, indexes or fast paths, so that what the loader gains by these is checked against what the rules say.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "murv/fields.h"
#include "murv/flags.h"
#include "murv/loader.h"

namespace murv::tests
{

class CTextModel
{
public:
    CTextModel(std::string_view text, unsigned int config, bool comments)
        : m_strText(text), m_uiConfig(config), m_bKeep(comments && (config & LCBC_COMMENT) != 0)
    {
    }

    bool load(CFields& target);
    std::string message() const;
    std::vector<tErrorRange> ranges() const;
    bool isTooDeep() const
    {
        return m_bTooDeep;
    }

private:
    static constexpr std::size_t s_cnNone = static_cast<std::size_t>(-1);

    struct tToken
    {
        E_TokenType m_eType;
        std::size_t m_nBegin;
        std::size_t m_nEnd;
    };
    struct tRecord
    {
        tToken m_tToken;
        std::string m_strMessage;
        std::size_t m_nSecond;
    };

    // Bytes.

    bool atEnd() const
    {
        return m_nCursor == m_strText.size();
    }
    char peek() const
    {
        return atEnd() ? '\0' : m_strText[m_nCursor];
    }
    bool isDigitNext() const
    {
        return !atEnd() && peek() >= '0' && peek() <= '9';
    }
    static bool isBlank(char c)
    {
        return c == ' ' || c == '\t' || c == '\r' || c == '\n';
    }
    void skipBlanks();
    void skipDigits();
    bool hasLineBreak(std::size_t begin, std::size_t end) const;
    std::string location(std::size_t position) const;

    // Tokens.

    tToken plainToken();

    /// The next token after comments, whatever the configuration.
    tToken nextAfterComments();
    tToken next()
    {
        return (m_uiConfig & LCBC_COMMENT) != 0 ? nextAfterComments() : plainToken();
    }

    bool readWord(std::string_view rest);
    bool readString();
    void readNumber();
    bool readComment(std::size_t begin);
    void keepComment(std::size_t begin, bool block);

    // Errors.

    bool fail(const std::string& message, const tToken& token, std::size_t second = s_cnNone);
    bool recover(E_TokenType until);
    bool failAndRecover(const char* message, const tToken& token, E_TokenType until);

    // Grammar.

    bool readValue(bool root);
    bool readOneValue(bool root);

    /// Reads the value that begins with the token.
    bool readValueAt(CFields& node, const tToken& token);

    /// A value that is not there is null where the configuration says so, else an error.
    bool readMissingValue(CFields& node, const tToken& token);

    /// Fails where there is no value that a comment could follow.
    bool failWithoutValue();
    void startValue(CFields& node);
    bool finishValue(CFields& node, std::size_t begin, std::size_t end);
    bool readRootHead(tToken token);
    bool readHead(tToken& token, std::string& name, unsigned int& id, const char* numberRefused);
    unsigned int id4Token(const tToken& token) const;

    /// Looks for "=" after a token that may be a name. Without it the cursor goes back to the token, and comments that
    /// were passed are met again; with it they are taken now.
    bool isAssignNext(const tToken& token);
    bool readFields(CFields& node, const tToken& begin);
    bool readArray(CFields& node, const tToken& begin);

    /// The message for a token that cannot follow a value: after a scalar no member waits for a packet expression.
    const char* message4Fault(std::size_t valueEnd, const tToken& token, const char* message) const;
    bool readMember(CFields& member);
    CFields* add(CFields& set, const std::string& name, unsigned int id);

    // Strings and packet expressions.

    bool readStringValue(CFields& node, const tToken& token);

    /// The number of `count` hex digits, or -1.
    int hexNumber(std::size_t from, int count) const;
    bool unescape(const tToken& token, std::string& out);
    const char* readCodePoint(std::size_t& i, std::size_t end, unsigned int& point) const;
    void readPei(std::size_t begin);

    std::string_view m_strText;
    unsigned int m_uiConfig;
    bool m_bKeep;
    std::size_t m_nCursor = 0;
    std::size_t m_nLastEnd = s_cnNone;
    CFields* m_pLastNode = nullptr;
    std::vector<std::string> m_vPending;  // comments for the next node
    std::string_view m_strPei;
    bool m_bPeiAllowed = false;
    bool m_bPeiPending = false;
    bool m_bNoValue = false;
    bool m_bTooDeep = false;
    int m_iDepth = 0;
    std::vector<CFields*> m_vStack;
    std::vector<tRecord> m_vRecords;
};

}  // namespace murv::tests
