// tests/tools/page.h - what every HTML page of the tool must be.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace murv::tests
{

inline void expectHas(const std::string& text, const std::string& what)
{
    EXPECT_NE(text.find(what), std::string::npos) << what;
}

inline std::size_t countOf(const std::string& text, const std::string& what)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + what.size()))
        ++count;
    return count;
}

/// Reads tags and expects that each one is closed where it was opened.
inline void expectBalanced(const std::string& page)
{
    std::vector<std::string> open;
    for (std::size_t at = page.find('<'); at != std::string::npos; at = page.find('<', at + 1))
    {
        const std::size_t end = page.find('>', at);
        ASSERT_NE(end, std::string::npos);
        const bool isClosing = page[at + 1] == '/';
        const std::size_t begin = at + (isClosing ? 2 : 1);
        const std::string name = page.substr(begin, std::min(page.find_first_of(" >/\n", begin), end) - begin);
        if (name == "!DOCTYPE" || name == "meta" || page[end - 1] == '/')
            continue;
        if (!isClosing)
            open.push_back(name);
        else
        {
            ASSERT_FALSE(open.empty()) << name;
            EXPECT_EQ(open.back(), name) << page.substr(at, 60);
            open.pop_back();
        }
    }
    EXPECT_TRUE(open.empty());
}

/// A page that needs no other file.
inline void expectAlone(const std::string& page)
{
    EXPECT_EQ(page.rfind("<!DOCTYPE html>\n<html lang=\"en\">", 0), 0U);
    for (const char* outside : {"<script", "<link", "src=", "url(", "@import", "http"})
        EXPECT_EQ(page.find(outside), std::string::npos) << outside;
    expectHas(page, "@media (prefers-color-scheme:dark)");
    expectHas(page, "@media print");
    expectBalanced(page);
}

}  // namespace murv::tests
