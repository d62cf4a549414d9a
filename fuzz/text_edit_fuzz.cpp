// fuzz/text_edit_fuzz.cpp - text of any kind: its mistakes, its layout, and changes to single members.
//
// The first byte is the number of bytes after it that say what is changed, two for a change; the rest is the document.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "murv/document.h"
#include "murv/loader.h"
#include "murv/path.h"
#include "murv/syntax.h"
#include "tests/support/same_tree.h"

using namespace murv;
using namespace murv::tests;

namespace
{

constexpr unsigned int s_cuiConfig = LCBC_COMMENT | LCBC_EMPTY_NULL | LCBC_LOSSLESS | LCBC_DUPLICATE;

void require(bool holds, const char* what, const std::string& more)
{
    if (holds)
        return;
    std::fprintf(stderr, "%s\n%s\n", what, more.c_str());
    std::abort();
}

/// Loads a text as everything here does. \param place  set to that of the first error
bool load(const std::string& text, CFields& tree, unsigned int& place)
{
    CLoader4SER loader(s_cuiConfig);
    try
    {
        if (loader.loading(text, tree, "", true))
            return true;
    }
    catch (const CLogicError&)
    {
    }
    const std::vector<tErrorPlace> places = loader.getErrorPlaces();
    place = places.empty() ? 0 : places[0].m_uiStart;
    return false;
}

void requireSame(const std::string& before, const std::string& after)
{
    CFields first;
    CFields second;
    unsigned int place = 0;
    require(load(before, first, place) && load(after, second, place), "does not load any more", before + "\n" + after);
    const std::string found = difference(first, second, SP_ids | SP_expressions);
    require(found.empty(), "says something else", found + "\n" + before + "\n" + after);
}

void requireLayout(const std::string& text, const tTextLayout& layout)
{
    const std::optional<std::string> once = formatText(text, s_cuiConfig, layout);
    require(once.has_value(), "cannot be laid out", text);
    require(haveSameTokens(text, *once, layout), "other tokens", text + "\n" + *once);
    const std::string again = formatText(*once, s_cuiConfig, layout).value_or("(mistakes)");
    require(again == *once, "laid out again it is another text", text + "\n==>\n" + *once + "\n==>\n" + again);
    requireSame(text, *once);
}

/// The path to one of all nodes.
std::string path4Number(const CFields& root, unsigned int number)
{
    const CFields* node = &root;
    for (unsigned int left = number; node->getChildCount() != 0 && left != 0; left /= 4)
        node = &node->getChildAt((left % 4) % node->getChildCount());
    return pathOf(root, *node).value();
}

void change(CDocument& document, unsigned int what, unsigned int where)
{
    const std::string path = path4Number(document.tree(), where);
    switch (what % 8)
    {
    case 0: return document.set(path, static_cast<int>(what));
    case 1: return document.set(path, array({1, fields({{"x", "y"}})}));
    case 2: return document.set(path == "." ? "new" : path + ".new", nullptr);
    case 3: return document.remove(path);
    case 4: return document.insert(path, 0, 1.5, what < 128 ? "in" : "");
    case 5: return document.rename(path, "other");
    case 6: return document.comment(path, what < 128 ? "c" : "");
    default: return document.comment(path, what < 128 ? "c" : "", CP_trailing);
    }
}

void requireChanges(const std::string& text, const std::uint8_t* changes, std::size_t count)
{
    CDocument document;
    require(document.load(text) && document.text() == text, "no document", text);
    for (std::size_t i = 0; i + 1 < count; i += 2)
    {
        const std::string before = document.text();
        try
        {
            change(document, changes[i], changes[i + 1]);
        }
        catch (const CLogicError&)
        {
            require(document.text() == before, "refused, but changed", before + "\n" + document.text());
        }
        CFields tree;
        unsigned int place = 0;
        require(load(document.text(), tree, place), "does not load any more", before + "\n" + document.text());
        const std::string found = difference(document.tree(), tree, SP_ids | SP_expressions);
        require(found.empty(), "tree and text differ", found + "\n" + before + "\n" + document.text());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::size_t changes = std::min<std::size_t>(data[0] % 16, size - 1);
    const std::string text(reinterpret_cast<const char*>(data + 1 + changes), size - 1 - changes);
    CFields tree;
    unsigned int place = 0;
    const bool isLoaded = load(text, tree, place);
    const std::vector<tErrorPlace> mistakes = findMistakes(text, s_cuiConfig);
    require(isLoaded == mistakes.empty(), "mistakes and loader disagree", text);
    if (!isLoaded)
    {
        require(place == 0 || mistakes[0].m_uiStart == place, "the first mistake is elsewhere", text);
        return 0;
    }
    tTextLayout layout;
    requireLayout(text, layout);
    layout.m_bNullWord = false;
    layout.m_uiWidth = 20;
    requireLayout(text, layout);
    layout.m_bCompact = true;
    requireLayout(text, layout);
    requireChanges(text, data + 1, changes);
    return 0;
}
