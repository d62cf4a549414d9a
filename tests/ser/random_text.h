// tests/ser/random_text.h - random documents of the text notation, most of them well formed.
//
// Names and IDs come from small sets, so that they repeat; comments, blanks and packet expressions stand everywhere
// where the notation allows them.
#pragma once

#include <random>
#include <string>
#include <string_view>

namespace murv::tests
{

using namespace std::string_view_literals;

class CRandomText
{
public:
    explicit CRandomText(unsigned int seed) : m_tRandom(seed)
    {
    }

    std::string document()
    {
        m_strText.clear();
        m_uiComments = 0;
        m_uiPlain = below(4);
        gap();
        if (below(4) == 0)
            head(false);
        if (below(8) == 0)
            expression();
        if (below(6) == 0)
            scalar();
        else
            container(1 + below(4));
        gap();
        if (below(10) == 0)
            scalar();
        return m_strText;
    }

    /// From now on every comment holds a number of its own, counted in each document from 1.
    void numberComments()
    {
        m_bNumbered = true;
    }

    /// A few bytes of the text changed, dropped, doubled or put in.
    std::string mutated(std::string text)
    {
        for (unsigned int left = 1 + below(3); left != 0 && !text.empty(); --left)
        {
            const std::size_t at = below(static_cast<unsigned int>(text.size()));
            const std::size_t length = 1 + below(4);
            switch (below(5))
            {
            case 0: text[at] = s_strvBytes[below(static_cast<unsigned int>(s_strvBytes.size()))]; break;
            case 1: text.erase(at, length); break;
            case 2: text.insert(at, text.substr(below(static_cast<unsigned int>(text.size())), length)); break;
            case 3: text.insert(at, 1, s_strvBytes[below(static_cast<unsigned int>(s_strvBytes.size()))]); break;
            default: text.resize(at); break;
            }
        }
        return text;
    }

    unsigned int below(unsigned int limit)
    {
        return static_cast<unsigned int>(m_tRandom() % limit);
    }

private:
    static constexpr std::string_view s_strvBytes = "{}[]()\"#=,/*\\ \n\r\t:;-+.eE019tfnux\0\x7E\x80\xFF@"sv;

    template <std::size_t tCount>
    void pick(const std::string_view (&texts)[tCount])
    {
        m_strText += texts[below(tCount)];
    }

    void gap()
    {
        if (m_uiPlain == 0)
            return;
        for (unsigned int left = below(3); left != 0; --left)
        {
            const std::size_t begin = m_strText.size();
            pick({" ", "\n", "\r\n", "\r", "\t", "  ", " ", "/*c*/", "/* c\nd */", "// c\n", "//\r\n", "/*\r*/", "/**/",
                  "// e \r"});
            if (m_bNumbered && m_strText[begin] == '/')
                m_strText.insert(begin + 2, std::to_string(++m_uiComments) + ":");
        }
    }

    void name()
    {
        pick({"\"a\"", "\"b\"", "\"c\"", "\"d\"", "\"\"", "\"\\x41\"", "\"a\\nb\"", "\"q\\u0042\"", "7", "1.5", "-3"});
    }

    void id()
    {
        pick({"#1", "#2", "#3", "#4", "#5", "#6", "#7", "#0012", "#2147483647"});
        if (below(60) == 0)
            pick({"#", "#0", "#2147483648", "#99999999999999999999999999"});
    }

    void expression()
    {
        pick({"(ACF8)", "(ANV2-3)", "( ACF8 a remark )", "(ACF8fix)", "(BNF4valid)", "(ACD0sizedef_1)",
              "(ACF8YYYYMMDD)", "(ACF8fix)", "(BCF8valid)"});
        if (below(30) == 0)
            pick({"(", "()", "(ACF)", "(XCF8)", "(ACF8nothing)", "(ACF8)(ACF8)", "(ACF8", "(ACF8 x"});
    }

    void head(bool named)
    {
        if (below(4) == 0)
        {
            id();
            gap();
        }
        if (named || below(3) == 0)
        {
            name();
            gap();
            m_strText += '=';
        }
        gap();
    }

    void scalar()
    {
        pick({"0", "-1", "2147483648", "1.25", "1e3", "-", "1.", "18446744073709551616", "true", "false", "null",
              "\"\"", "\"text\"", "\"a\\tb\"", "\"\\u00e9\\ud83d\\ude00\"", "\"\\\"\\\\\"", "\"\xC3\xA9\""});
        if (below(50) == 0)
            pick({"\"\\q\"", "\"\\x4\"", "\"\\xzz\"", "\"\\u12\"", "\"\\ud800\"", "\"\\ud800xxxxxx\"", "nul", "tru",
                  ":", "\"open"});
    }

    void container(unsigned int depth)
    {
        const bool isSet = below(3) != 0;
        m_strText += isSet ? '{' : '[';
        const unsigned int count = 1 + below(depth > 1 ? 6 : 3);
        for (unsigned int i = 0; i < count; ++i)
        {
            if (i != 0)
                m_strText += ',';
            gap();
            if (isSet)
                head(below(4) != 0);
            if (below(12) == 0)
                expression();
            gap();
            if (depth > 1 && below(3) == 0)
                container(depth - 1);
            else if (below(8) != 0)
                scalar();
            gap();
        }
        m_strText += isSet ? '}' : ']';
    }

    std::mt19937 m_tRandom;
    std::string m_strText;
    bool m_bNumbered = false;
    unsigned int m_uiComments = 0;
    unsigned int m_uiPlain = 0;  // 0: no blanks and comments at all
};

}  // namespace murv::tests
