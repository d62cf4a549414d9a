// ser/token_text.cpp - where comments and packet expressions end.
#include "ser/token_text.h"

namespace murv::detail
{

namespace
{

constexpr std::size_t s_cnShortestPei = 4;
constexpr std::size_t s_cnLongestPei = 255;

bool takeBlockComment(const char*& p, const char* end)
{
    for (;;)
    {
        const auto left = static_cast<std::size_t>(end - p);
        const void* const star = left == 0 ? nullptr : std::memchr(p, '*', left);
        if (star == nullptr)
        {
            p = end;
            return false;
        }
        p = static_cast<const char*>(star) + 1;
        if (p != end && *p == '/')
        {
            ++p;
            return true;
        }
    }
}

void takeLineComment(const char*& p, const char* end)
{
    p = findLineEnd(p, end);
    if (p == end)
        return;
    const bool pair = *p == '\r' && p + 1 != end && p[1] == '\n';
    p += pair ? 2 : 1;
}

}  // namespace

bool takeComment(const char*& p, const char* end)
{
    if (p == end)
        return false;
    const char second = *p++;
    if (second == '/')
        takeLineComment(p, end);
    return second == '/' || (second == '*' && takeBlockComment(p, end));
}

const char* takePeiText(const char*& p, const char* end, std::string_view& text)
{
    p = skipBlanks(p, end);
    if (p != end && *p == ')')
    {
        ++p;
        return "This packet expression empty";
    }
    const char* const begin = p;
    while (p != end && *p != ')' && !tLineStop::isStop(static_cast<unsigned char>(*p)) && *p != ' ' && *p != '\t')
        ++p;
    if (p == end)
        return "Found not ')' in packet expression";
    text = {begin, static_cast<std::size_t>(p - begin)};
    if (text.size() < s_cnShortestPei)
        return "The packet expression is too short";
    if (text.size() > s_cnLongestPei)
        return "The packet expression is too long";
    // Anything between the expression and the ")" is a remark.
    const void* const close = std::memchr(p, ')', static_cast<std::size_t>(end - p));
    if (close == nullptr)
        return s_cNoPeiEnd;
    p = static_cast<const char*>(close) + 1;
    return nullptr;
}

}  // namespace murv::detail
