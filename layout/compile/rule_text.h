// layout/compile/rule_text.h - the text of rules, piece by piece.
//
// A reader of one rule takes words, names, numbers and quoted texts off its front. Names may have blanks inside, so
// what ends a name is a point, a bar, or an operator between blanks.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "layout/plan/part.h"

namespace murv::detail
{

/// A step of a path: a name, or the ID of a part that may have no name.
struct tRuleStep
{
    std::string m_strName;
    unsigned int m_uiID = 0;
};

/// The step as rules write it, for messages.
std::string describeStep(const tRuleStep& step);

/// Cuts a text at its semicolons, outside quotes, and the blanks off both ends of each rule.
///
/// \return false when a quote is not closed or a rule is empty
bool splitRules(std::string_view text, std::vector<std::string_view>& rules);

class CRuleText
{
public:
    explicit CRuleText(std::string_view text) : m_strvLeft(text)
    {
    }

    /// Nothing but blanks is left.
    bool atEnd();
    /// Takes words that are separated by blanks in the text, whole ones only; or nothing.
    bool takeWords(std::string_view words);
    /// Takes a run of characters without blanks; empty at the end.
    std::string_view takeWord();
    bool takeCharacter(char character);
    bool takeNumber(unsigned long long& number);
    /// Takes the operator, when blanks or the end stand around it, and the number after it.
    bool takeOperatorAndNumber(char symbol, unsigned long long& number);
    /// Takes a text in quotes, with the escapes of the notation. \return false when there is none or it is malformed
    bool takeQuoted(std::string& text);
    bool takeStep(tRuleStep& step);
    /// Takes steps with points between them.
    bool takePath(std::vector<tRuleStep>& path);
    bool takeComparison(E_Comparison& comparison);
    /// Takes a value: quoted, or what stands before the next bar, comma where asked for, or the end.
    bool takeValue(std::string& text, bool toComma);
    bool takeRangeMark();
    bool isAt(std::string_view text);

private:
    void skipBlanks();

    std::string_view m_strvLeft;
};

/// Decimal integers are numbers, too.
tConstant makeConstant(std::string_view text);

}  // namespace murv::detail
