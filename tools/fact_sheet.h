// tools/fact_sheet.h - what a verb says of a file: a heading and labelled facts below it.
//
// The same labels serve people and programs: keys of JSON are the labels in small letters, with "_" for blanks.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace murv::tool
{

class CFactSheet
{
public:
    /// \param numberWidth  columns that numbers are right-aligned in, for people
    explicit CFactSheet(std::size_t numberWidth) : m_nNumberWidth(numberWidth)
    {
    }

    void add(const char* label, std::size_t number);
    void add(const char* label, std::string text);

    /// One line for the heading, which may hold any bytes, and one for each fact.
    std::string text(const std::string& heading) const;
    /// One JSON object on one line: the members in `head`, then the facts.
    std::string json(const std::string& head) const;

private:
    struct tFact
    {
        const char* m_pLabel;
        std::string m_strValue;
        bool m_bNumber;
    };

    std::size_t m_nNumberWidth;
    std::vector<tFact> m_vFacts;
};

}  // namespace murv::tool
