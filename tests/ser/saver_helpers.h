// tests/ser/saver_helpers.h - small trees and one-line savings.
//
// Expected texts stand in the tests; what they are made from is put together here.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "murv/saver.h"
#include "tests/support/thrown.h"

namespace murv::tests
{

inline CFields arrayOf(std::initializer_list<CFields> elements)
{
    CFields array(DT_array);
    for (const CFields& element : elements)
        array.addArrayAt(element);
    return array;
}

/// An array of `count` times the same number.
inline CFields arrayOf(unsigned int count, int number)
{
    CFields array(DT_array);
    for (unsigned int i = 0; i < count; ++i)
        array.addArrayAt(number);
    return array;
}

/// The 256 bytes in order.
inline std::string everyByte()
{
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    return bytes;
}

/// Appends a member to a field set and gives it a value.
inline CFields& add(CFields& set, std::string_view name, const CFields& value, unsigned int id = 0)
{
    CFields& member = set.addChildRef(name, id, true);
    member.setValue(value);
    return member;
}

inline CFields commented(CFields node, const char* comment, E_CommentPosition position)
{
    node.setComment(comment, position);
    return node;
}

/// a = 1, flags = [1, 2, 3], sub (ID 7) = {x = 5}
inline CFields sampleTree()
{
    CFields root(DT_fields);
    add(root, "a", 1);
    add(root, "flags", arrayOf({1, 2, 3}));
    add(add(root, "sub", DT_fields, 7), "x", 5);
    return root;
}

/// A fixed ASCII item of that length, with a keyword by its internal index.
inline tPacketExpInfo itemOf(unsigned int length, unsigned short keyword = 0)
{
    tPacketExpInfo pei{};
    pei.m_uiLength = length;
    pei.m_usSkIndex = keyword;
    return pei;
}

inline CFields withItem(CFields node, const tPacketExpInfo& pei)
{
    node.pkt_SetExp(pei);
    return node;
}

/// A node whose second value is in use for the keyword "fix" (1) or "valid" (2).
inline CFields dual(const CFields& first, const CFields& second, E_ValueKind keyword = VK_fix)
{
    CFields node = first;
    switch (second.getDT())
    {
    case DT_bool: node.setValue(second.asBool(), VK_fix); break;
    case DT_sint: node.setValue(second.asSint64(), VK_fix); break;
    case DT_uint: node.setValue(second.asUint64(), VK_fix); break;
    case DT_double: node.setValue(second.asDouble(), VK_fix); break;
    case DT_codelist: node.setValue(second.asString(), VK_fix); break;
    default: node.setValue(second.getDT(), VK_fix); break;
    }
    node.setVK(keyword);
    return withItem(std::move(node),
                    itemOf(4, static_cast<unsigned short>(keyword)));  // a copy changes the second type
}

inline std::string text4String(const CFields& tree, unsigned int style, unsigned int scbc, unsigned int width = 2)
{
    CSaver4SER_HFW saver(width);
    saver.setSCBC(scbc);
    return saver.saving(tree, static_cast<unsigned char>(style));
}

/// Every part and the usual configuration.
inline std::string text4String(const CFields& tree)
{
    return text4String(tree, SAVE_ALL, SCBC_SECOND_VALUE);
}

inline std::string text4Packet(const CFields& tree, unsigned int style = SAVE_ALL,
                               unsigned int scbc = SCBC_SECOND_VALUE)
{
    CSaver4SER_PKT saver;
    saver.setSCBC(scbc);
    return saver.saving(tree, static_cast<unsigned char>(style));
}

}  // namespace murv::tests
