// fuzz/text_load_fuzz.cpp - text of any kind, loaded; and what loads is saved as text and must load again.
//
// The first byte is the configuration word (0x80: no comments), the rest is the document.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>

#include "murv/loader.h"
#include "murv/saver.h"
#include "tests/support/random_tree.h"
#include "tests/support/same_tree.h"

using namespace murv;
using namespace murv::tests;

namespace
{

void require(bool holds, const char* what, const std::string& more)
{
    if (holds)
        return;
    std::fprintf(stderr, "%s\n%s\n", what, more.c_str());
    std::abort();
}

/// What the notation cannot give back: a variable length without prefix bytes.
bool isWritable(const CFields& node, bool oneLine)
{
    const tPacketExpInfo pei = node.pkt_GetExp();
    if (!node.isField() && !node.isArray() && pei.m_eLengthExp == LEC_V && pei.m_ucPrefixSize == 0)
        return false;
    // On one line no blank parts an ID from a number.
    if (oneLine && node.getID() != 0 && node.getNameLen() == 0 && node.isNumeric(writtenSlot(node)))
        return false;
    for (const CFields& member : node)
    {
        if (!isWritable(member, oneLine))
            return false;
    }
    return true;
}

void requireRoundTrip(const CFields& tree, bool oneLine)
{
    if (!isWritable(tree, oneLine))
        return;
    CSavers savers(SCBC_SECOND_VALUE | SCBC_NULL_WORD);
    const std::string text = savers.saving(tree, oneLine ? ER_SER_PKT : ER_SER_HFW);
    require(!savers.isError(), "saving reports an error", savers.getLastErrMsg());
    if (!oneLine)
    {
        std::ostringstream out;
        savers.saving(out, tree, ER_SER_HFW);
        require(out.str() == text, "string and stream differ", text + "\n" + out.str());
    }
    CLoader4SER loader(LCBC_COMMENT | LCBC_EMPTY_NULL | LCBC_DUPLICATE);
    CFields back;
    if (!tree.isField() && !tree.isArray() && tree.getDT(writtenSlot(tree)) == DT_codelist &&
        tree.getRawBytes(writtenSlot(tree)) == 0)
        return;  // a root that is written as nothing
    require(loader.loading(text, back), "what was saved does not load", loader.getLastErrMsg() + text);
    const std::string found = difference(treeAsRead(tree, false), back, SP_ids | SP_expressions | SP_second);
    require(found.empty(), "what was saved loads as something else", found + "\n" + text);
}

/// "Line 3, Column 7", counted byte by byte.
std::string words4Offset(const std::string& text, std::size_t offset)
{
    int line = 1;
    int column = 1;
    for (std::size_t at = 0; at < offset; ++at)
    {
        const bool isPairBegin = text[at] == '\r' && at + 1 < offset && text[at + 1] == '\n';
        const bool isBreak = text[at] == '\n' || (text[at] == '\r' && !isPairBegin);
        line += isBreak ? 1 : 0;
        column = isBreak ? 1 : column + 1;
    }
    return "Line " + std::to_string(line) + ", Column " + std::to_string(column);
}

std::string words4Place(unsigned int line, unsigned int column)
{
    return "Line " + std::to_string(line) + ", Column " + std::to_string(column);
}

/// The places are those of the message, and of the text.
void requirePlaces(const CLoader4SER& loader, const std::string& text)
{
    require(loader.getStatus() == (loader.getLoadFault() == LF_none), "fault and status disagree",
            loader.getLastErrMsg());
    std::string message;
    for (const tErrorPlace& place : loader.getErrorPlaces())
    {
        const std::string words = words4Place(place.m_uiLine, place.m_uiColumn);
        require(words == words4Offset(text, place.m_uiStart), "wrong line or column", words);
        message += "* " + words + "\n  " + place.m_strMessage + "\n";
        if (!place.m_tSecond)
            continue;
        require(place.m_tSecond->m_uiOffset <= text.size(), "second place outside the data", message);
        const std::string second = words4Place(place.m_tSecond->m_uiLine, place.m_tSecond->m_uiColumn);
        require(second == words4Offset(text, place.m_tSecond->m_uiOffset), "wrong line or column", second);
        message += "See " + second + " for detail.\n";
    }
    require(message == loader.getLastErrMsg(), "places and message disagree", message + loader.getLastErrMsg());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    CLoader4SER loader(data[0] & 0x7Fu);
    CFields tree;
    bool done = false;
    try
    {
        done = loader.loadit(reinterpret_cast<const char*>(data + 1), static_cast<unsigned int>(size - 1), tree,
                             nullptr, (data[0] & 0x80) == 0);
    }
    catch (const CLogicError& error)
    {
        require(loader.getLoadFault() == LF_tooDeep, "thrown", error.what());
        return 0;
    }
    require(done == loader.getLastErrMsg().empty() && done == loader.getStatus(), "result and message disagree",
            loader.getLastErrMsg());
    for (const tErrorRange& range : loader.getErrorRanges())
        require(range.m_uiStart <= range.m_uiEnd && range.m_uiEnd < size, "range outside the data", range.m_strMessage);
    requirePlaces(loader, {reinterpret_cast<const char*>(data + 1), size - 1});
    if (!done)
        return 0;
    requireRoundTrip(tree, false);
    requireRoundTrip(tree, true);
    return 0;
}
