// fuzz/json_read_fuzz.cpp - JSON of any kind, read as convert reads it; what was read is written and read again.
//
// The first byte has the options (1: plain, 2: bytes, 4: nearest), the rest is the text. A parser that knows no trees
// says which texts must be taken, and what plain ones hold.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/same_tree.h"
#include "tools/json_reader.h"
#include "tools/json_writer.h"

using namespace murv;
using namespace murv::tests;
using namespace murv::tool;

namespace
{

using tJson = nlohmann::json;

void require(bool holds, const char* what, const std::string& more)
{
    if (holds)
        return;
    std::fprintf(stderr, "%s\n%s\n", what, more.c_str());
    std::abort();
}

/// Finds what JSON may hold and trees may not: names that repeat or are long, and deep values.
class CLimits : public nlohmann::json_sax<tJson>
{
public:
    bool areKept() const
    {
        return m_bKept;
    }
    bool null() override
    {
        return value();
    }
    bool boolean(bool) override
    {
        return value();
    }
    bool number_integer(number_integer_t) override
    {
        return value();
    }
    bool number_unsigned(number_unsigned_t) override
    {
        return value();
    }
    bool number_float(number_float_t, const string_t&) override
    {
        return value();
    }
    bool string(string_t&) override
    {
        return value();
    }
    bool binary(binary_t&) override
    {
        return false;
    }
    bool start_object(std::size_t) override
    {
        return open();
    }
    bool start_array(std::size_t) override
    {
        return open();
    }
    bool key(string_t& name) override
    {
        const bool isNew = m_vNames.back().insert(name).second;
        m_bKept = m_bKept && isNew && name.size() <= 255;
        return true;
    }
    bool end_object() override
    {
        m_vNames.pop_back();
        return true;
    }
    bool end_array() override
    {
        m_vNames.pop_back();
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override
    {
        return false;
    }

private:
    bool value()
    {
        m_bKept = m_bKept && m_vNames.size() < 1000;
        return true;
    }
    bool open()
    {
        m_vNames.emplace_back();
        m_bKept = m_bKept && m_vNames.size() <= 1000;
        return true;
    }

    std::vector<std::set<std::string>> m_vNames;  // of each container around
    bool m_bKept = true;
};

/// Whether a parser that knows no trees takes the text. It takes a byte of value 0 for the end.
bool isJson(std::string_view text)
{
    return text.find('\0') == std::string_view::npos && tJson::accept(text);
}

void requireFault(std::string_view text, const tJsonReading& how, const tJsonFault& fault)
{
    const std::string more = fault.m_strMessage + "\n" + std::string(text);
    require(!fault.m_strMessage.empty() && fault.m_nOffset <= text.size(), "no message or place", more);
    if (!isJson(text))
        return;
    require(fault.m_strMessage.rfind("no JSON", 0) != 0, "is JSON", more);
    if (!how.m_bPlain || how.m_bBytes || !how.m_bNearest)
        return;
    CLimits limits;
    require(tJson::sax_parse(text, &limits) && !limits.areKept(), "refused without need", more);
}

void requirePlaces(const CFields& node, std::size_t size)
{
    require(node.getOffsetStart() >= 0 && node.getOffsetStart() <= node.getOffsetEnd() &&
                static_cast<std::size_t>(node.getOffsetEnd()) <= size,
            "place outside the text", std::to_string(node.getOffsetStart()));
    for (const CFields& member : node)
        requirePlaces(member, size);
}

std::string written(const CFields& tree, const tJsonReading& how, tLoss& loss)
{
    const tJsonStyle style{how.m_bPlain ? JF_plain : JF_exact, how.m_bPlain && !how.m_bBytes ? JB_none : JB_hex};
    std::string text;
    const auto take = [&text](std::string_view piece) {
        text += piece;
        return true;
    };
    const bool isHeld = checkJson(tree, style, loss);
    require(writeJson(tree, style, take, loss) == isHeld, "check and writer disagree", loss.m_strMessage);
    return text;
}

void requireRoundTrip(std::string_view text, const tJsonReading& how, const CFields& tree)
{
    tLoss loss;
    const std::string again = written(tree, how, loss);
    const std::string more = loss.m_strMessage + "\n" + std::string(text) + "\n" + again;
    // Some expressions can be read that no text gives back.
    const bool isExpression = loss.m_strMessage.find("packet expression") != std::string::npos;
    require(loss.m_strMessage.empty() || isExpression, "cannot be written", more);
    if (isExpression)
        return;
    CFields back;
    tJsonFault fault;
    require(readJson(again, {how.m_bPlain, how.m_bBytes, false}, back, fault), "cannot be read again",
            fault.m_strMessage + "\n" + more);
    require(difference(tree, back, SP_all & ~SP_offsets).empty(), "is read as something else",
            difference(tree, back, SP_all & ~SP_offsets) + "\n" + more);
    if (how.m_bPlain && !how.m_bBytes)
        require(tJson::parse(text) == tJson::parse(again), "plain JSON has other values", more);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);
    const tJsonReading how{(data[0] & 1) != 0, (data[0] & 2) != 0, (data[0] & 4) != 0};
    CFields tree;
    tJsonFault fault;
    if (!readJson(text, how, tree, fault))
    {
        requireFault(text, how, fault);
        return 0;
    }
    require(isJson(text), "is no JSON", std::string(text));
    requirePlaces(tree, text.size());
    requireRoundTrip(text, how, tree);
    return 0;
}
