// syntax/text_formatter.h - writes the tokens of a text with a new layout.
//
// Each token is written as it stands, in its order; only what lies between tokens is new. So nothing that a person
// wrote is lost: comments, spellings of numbers and texts, remarks in packet expressions.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "murv/syntax.h"
#include "syntax/format_member.h"
#include "syntax/token_spacing.h"

namespace murv::detail
{

/// Takes the tokens of a text without mistakes.
class CTextFormatter : public ISyntaxSink
{
public:
    using tReceive = std::function<void(std::string_view)>;

    /// \param oneLine  of each container, whether it stays on one line
    /// \param lineEnd  that all line ends become
    CTextFormatter(std::string_view text, const tTextLayout& layout, std::vector<bool> oneLine,
                   std::string_view lineEnd, const tReceive& receive);

    void begin() override;
    void token(E_SyntaxRole role, const tTokenInfo& token) override;
    void end() override
    {
    }
    void mistake(const tMistake&) override
    {
    }
    /// Writes what ends the text.
    void finish();
    /// From the beginning on: the text becomes part of another one.
    void setPlace(const tMemberLayout& place);
    /// Writes the last piece, without a line end.
    void finishMember();

private:
    enum E_Between : unsigned char
    {
        BW_nothing,
        BW_blank,
        BW_line,
        BW_emptyLine,
    };

    /// What stands before the values of a field set so far, or before the present element of an array.
    struct tHeads
    {
        bool m_bFields = false;
        bool m_bNamed = false;  // a name or an ID
        bool m_bExpressed = false;
    };

    E_Between between(const tNeighbour& right, const tTokenInfo& token, bool opensInline) const;
    E_Between betweenOnLines(const tNeighbour& right, const tTokenInfo& token, bool opensInline) const;
    E_Between beforeComment(const tTokenInfo& comment) const;
    E_Between beforeMember(const tNeighbour& right) const;
    E_Between lineAfterGap() const;
    bool leadsMember(const tTokenInfo& comment) const;
    void noteHead(const tNeighbour& token);
    bool isDoubleBlank(E_SyntaxRole role) const;
    void countGapLines(const char* end);
    void putBetween(E_Between between);
    void put(std::string_view text);

    const char* const m_pTextEnd;
    const tTextLayout& m_tLayout;
    const tReceive& m_tReceive;
    const std::vector<bool> m_vOneLine;
    std::size_t m_nContainers = 0;  // opened so far
    std::string_view m_strvLineEnd;
    std::string_view m_strvBase;  // begins every line
    bool m_bOpensOnLine = false;  // brackets open on the line of what stands before them
    std::string m_strOut;
    tNeighbour m_tLeft{SR_comma, false};
    const char* m_pLeftEnd;
    bool m_bStarted = false;          // a token was written
    bool m_bAfterLine = false;        // the last token is a comment that ends its line
    std::size_t m_nGapLines = 0;      // line ends between the last token and the present one
    std::size_t m_nLevel = 0;         // of indentation
    std::size_t m_nInline = 0;        // containers around that stand on one line
    std::vector<tHeads> m_vHeads{1};  // of the containers around, the innermost last
    bool m_bMemberBegins = false;     // its first token is next, or a comma
};

}  // namespace murv::detail
