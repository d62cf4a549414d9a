// fuzz/layout_compile_fuzz.cpp - any text, compiled as a layout.
//
// It compiles, or has mistakes, each with words and a place in the text; never both, and always soon. What compiles
// can be asked for all of its parts.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "murv/layout.h"

using namespace murv;

namespace
{

void require(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

void requireParts(const CLayout& layout)
{
    require(layout.getPartCount() != 0, "a layout without parts");
    for (unsigned int i = 0; i < layout.getPartCount(); ++i)
    {
        const tLayoutPart part = layout.getPart(i);
        require(i == 0 ? part.m_uiParent == CLayout::s_cuiNoPart : part.m_uiParent < i, "a part before its parent");
        const bool isTop = i == 0 || layout.getPart(part.m_uiParent).m_eKind == LP_array;
        require(isTop || layout.findPart(layout.getPath(i)) != CLayout::s_cuiNoPart || part.m_strvName.empty(),
                "a path that leads nowhere");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool s_bRegistered = (registerStandardKeywords(), true);
    require(s_bRegistered, "no keywords");
    CLayout layout;
    const bool isCompiled = layout.compile(std::string_view(reinterpret_cast<const char*>(data), size));
    require(isCompiled == layout.isCompiled() && isCompiled == layout.getMistakes().empty(),
            "result and mistakes differ");
    for (const tLayoutMistake& mistake : layout.getMistakes())
    {
        require(!mistake.m_strMessage.empty(), "a mistake without words");
        require(mistake.m_uiOffset <= size, "a mistake outside the text");
    }
    if (isCompiled)
        requireParts(layout);
    return 0;
}
