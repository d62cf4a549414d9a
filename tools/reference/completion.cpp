// tools/reference/completion.cpp - what the files for all shells have in common.
#include "tools/reference/completion.h"

namespace murv::tool
{

std::string shellQuoted(const std::string& text)
{
    std::string quoted = "'";
    for (const char letter : text)
        quoted += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
    return quoted + "'";
}

std::vector<std::string> verbWords(const tReferenceVerb& verb)
{
    std::vector<std::string> words;
    for (const tReferenceVerb& below : verb.m_vVerb)
        words.push_back(below.m_strName);
    return words;
}

std::vector<std::string> valueWords(const tReferenceVerb& program, const tReferenceOption& option)
{
    return option.m_eKind == VK_verb ? verbWords(program) : option.m_vWord;
}

}  // namespace murv::tool
