// tools/json_form.h - how JSON says what it has no words for.
//
// Trees have more than JSON: IDs, comments, packet expressions, two types of integers, names that repeat. An object
// whose names are all in the table, one of them content, stands for a node with these. A field set that has just such
// names is written with its members as pairs, so that nothing is taken for something else.
#pragma once

#include <cstddef>
#include <string_view>

#include "murv/fields.h"

namespace murv::tool
{

enum E_JsonForm
{
    JF_shown,  // for people: what JSON cannot hold is replaced
    JF_plain,  // values alone: what JSON cannot hold is an error
    JF_exact,  // everything that a document states, by the keys below
};

/// How bytes that are not UTF-8 are written.
enum E_JsonBytes
{
    JB_none,  // not at all: they are an error
    JB_hex,
    JB_base64,
};

enum E_JsonKey
{
    JK_name,
    JK_id,
    JK_commentBefore,
    JK_commentOnLine,
    JK_commentAfter,
    JK_packet,
    JK_value,
    JK_int,
    JK_uint,
    JK_double,
    JK_members,
    JK_hex,
    JK_base64,
    JK_none,  // no key of the table; their number
};

struct tJsonKeyRow
{
    E_JsonKey m_eKey;
    std::string_view m_svKey;
    bool m_bContent;  // it holds the value; an object has one of these
};

inline constexpr tJsonKeyRow s_ctJsonKeys[] = {
    {JK_name, "$name", false},
    {JK_id, "$id", false},
    {JK_commentBefore, "$comment", false},
    {JK_commentOnLine, "$comment_on_line", false},
    {JK_commentAfter, "$comment_after", false},
    {JK_packet, "$packet", false},
    {JK_value, "$value", true},
    {JK_int, "$int", true},
    {JK_uint, "$uint", true},
    {JK_double, "$double", true},
    {JK_members, "$members", true},
    {JK_hex, "$hex", true},
    {JK_base64, "$base64", true},
};
static_assert(sizeof s_ctJsonKeys / sizeof s_ctJsonKeys[0] == JK_none);

inline std::string_view text4Key(E_JsonKey key)
{
    return s_ctJsonKeys[key].m_svKey;
}

inline E_JsonKey key4Name(std::string_view name)
{
    for (const tJsonKeyRow& row : s_ctJsonKeys)
    {
        if (row.m_svKey == name)
            return row.m_eKey;
    }
    return JK_none;
}

/// Whether the object that has these members would be taken for a node with all it has.
inline bool isNodeObject(const CFields& fields)
{
    bool hasContent = false;
    for (const CFields& member : fields)
    {
        const E_JsonKey key = key4Name({member.getName(), member.getNameLen()});
        if (key == JK_none)
            return false;
        hasContent = hasContent || s_ctJsonKeys[key].m_bContent;
    }
    return hasContent;
}

/// Whether the digits of an integer alone say its type, as in documents: from 2147483648 on it is unsigned.
inline bool isNaturalInteger(const CFields& node)
{
    return node.getDT() == DT_sint ? node.asSint64() <= CFields::maxSint32
                                   : node.asUint64() > static_cast<unsigned long long>(CFields::maxSint32);
}

}  // namespace murv::tool
