// tools/json_node.cpp - reads the keys of objects that stand for nodes.
#include "tools/json_node.h"

#include <limits>
#include <utility>

#include "murv/get.h"
#include "tools/base64.h"
#include "tools/hex_text.h"
#include "tools/json_form.h"

namespace murv::tool
{

namespace
{
E_JsonKey keyOf(const CFields& member)
{
    return key4Name({member.getName(), member.getNameLen()});
}

std::string quoted(E_JsonKey key)
{
    return "\"" + std::string(text4Key(key)) + "\"";
}

/// Whether it has what only an object that stands for a node can give it.
bool hasParts(const CFields& node)
{
    return node.getID() != 0 || node.isComment() || !CFields::pkt_IsNullExp(node.pkt_GetExp());
}

std::string setBytes(CFields& value, E_JsonKey key, const CFields& digits)
{
    std::string bytes;
    std::size_t unused = 0;
    const bool isHex = key == JK_hex;
    const bool isGood = digits.isCodelist() &&
                        (isHex ? bytes4Hex(digits.asString(), bytes, unused) : bytes4Base64(textView(digits), bytes));
    if (!isGood)
        return quoted(key) + " holds something other than " +
               (isHex ? "pairs of hexadecimal digits" : "base64 with its padding");
    value.setValue(bytes);
    return {};
}

std::string setInteger(CFields& value, E_JsonKey key, const CFields& number)
{
    unsigned long long bits = 0;
    if (number.getDT() == DT_sint && (key == JK_int || number.asSint64() >= 0))
        bits = static_cast<unsigned long long>(number.asSint64());
    else if (number.getDT() == DT_uint &&
             (key == JK_uint || number.asUint64() <= static_cast<unsigned long long>(CFields::maxSint64)))
        bits = number.asUint64();
    else
        return quoted(key) + " holds no integer of this type";
    if (key == JK_int)
        value.setValue(static_cast<long long>(bits));
    else
        value.setValue(bits);
    return {};
}

std::string setDouble(CFields& value, const CFields& word)
{
    constexpr std::pair<std::string_view, double> words[] = {
        {"NaN", std::numeric_limits<double>::quiet_NaN()},
        {"Infinity", std::numeric_limits<double>::infinity()},
        {"-Infinity", -std::numeric_limits<double>::infinity()},
    };
    for (const auto& [text, number] : words)
    {
        if (word.isCodelist() && textView(word) == text)
        {
            value.setValue(number);
            return {};
        }
    }
    return quoted(JK_double) + " holds none of \"NaN\", \"Infinity\" and \"-Infinity\"";
}

std::string setMembers(CFields& value, CFields& pairs)
{
    constexpr const char* wrong = "\"$members\" holds something other than pairs of a name and a value";
    value.setValue(DT_fields);
    if (!pairs.isArray())
        return wrong;
    for (CFields& pair : pairs)
    {
        if (!pair.isArray() || hasParts(pair) || pair.getChildCount() != 2 || !pair[0].isCodelist() ||
            hasParts(pair[0]) || pair[1].getNameLen() != 0)
            return wrong;
        const std::string name = pair[0].asString();
        CFields member = std::move(pair[1]);
        CFields& added = value.addChildRef("", 0, true);
        added = std::move(member);
        if (!name.empty() && !added.setName(name))
            return "a name is longer than 255 bytes";
    }
    return {};
}

std::string setContent(CFields& value, E_JsonKey key, CFields& content)
{
    if (hasParts(content))
        return quoted(key) + " holds a node with keys of its own";
    switch (key)
    {
    case JK_int:
    case JK_uint: return setInteger(value, key, content);
    case JK_double: return setDouble(value, content);
    case JK_members: return setMembers(value, content);
    case JK_hex:
    case JK_base64: return setBytes(value, key, content);
    default: value.swapValue(content, false); return {};
    }
}

std::string setComment(CFields& node, E_JsonKey key, const CFields& part)
{
    const std::string_view text = textView(part);
    if (!part.isCodelist() || (!text.empty() && text.front() != '/') || text.find('\0') != text.npos)
        return quoted(key) + " holds no comment, which begins with \"/\"";
    node.setComment(text, key == JK_commentBefore ? CP_before : key == JK_commentOnLine ? CP_trailing : CP_after);
    return {};
}
}  // namespace

std::string CJsonNodes::turn(CFields& fields, bool isNamed)
{
    CFields box;
    box.swapValue(fields, false);
    CFields value;
    bool hasContent = false;
    for (CFields& member : box)
    {
        const E_JsonKey key = keyOf(member);
        if (!s_ctJsonKeys[key].m_bContent)
            continue;
        if (std::exchange(hasContent, true))
            return "more than one value: " + quoted(key) + " is too much";
        if (std::string fault = setContent(value, key, member); !fault.empty())
            return fault;
    }
    fields = std::move(value);  // bare, so that the name stays
    for (CFields& member : box)
    {
        if (std::string fault = setPart(fields, member, isNamed); !fault.empty())
            return fault;
    }
    return {};
}

std::string CJsonNodes::setPart(CFields& node, CFields& part, bool isNamed)
{
    const E_JsonKey key = keyOf(part);
    if (hasParts(part) && !s_ctJsonKeys[key].m_bContent)
        return quoted(key) + " holds a node with keys of its own";
    switch (key)
    {
    case JK_name:
        if (isNamed)
            return quoted(key) + " is for the root and for elements of arrays";
        if (part.isCodelist() && node.setName(part.asString()))
            return {};
        return quoted(key) + " holds no name of 1 to 255 bytes";
    case JK_id:
        if (part.getDT() == DT_sint && part.asSint64() > 0 && node.setID(static_cast<unsigned int>(part.asSint64())))
            return {};
        return quoted(key) + " holds no ID from 1 to 2147483647";
    case JK_packet:
        if (!node.isField() && !node.isArray() && part.isCodelist() && m_tExpressions.set(node, part.asString()))
            return {};
        return quoted(key) + " holds no packet expression, or that of no scalar";
    case JK_commentBefore:
    case JK_commentOnLine:
    case JK_commentAfter: return setComment(node, key, part);
    default: return {};
    }
}

std::string turnBytes(CFields& fields)
{
    if (fields.getChildCount() != 1)
        return {};
    const E_JsonKey key = keyOf(fields[0]);
    if (key != JK_hex && key != JK_base64)
        return {};
    CFields value;
    std::string fault = setBytes(value, key, fields[0]);
    fields = std::move(value);
    return fault;
}

}  // namespace murv::tool
