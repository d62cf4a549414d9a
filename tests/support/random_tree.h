// tests/support/random_tree.h - random trees with everything in them that text can hold.
//
// What text cannot hold is left out here or named in the expectation: a comment after a node that is not the root
// moves to the next node, and a value that is written as nothing has no line that a trailing comment could share.
#pragma once

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "murv/fields.h"

namespace murv::tests
{

/// Of two values that differ the second one is written.
inline E_ValueKind writtenSlot(const CFields& node)
{
    const tPacketExpInfo pei = node.pkt_GetExp();
    const bool dual = pei.m_ucSkKind == 0 && (pei.m_usSkIndex == 1 || pei.m_usSkIndex == 2);
    return dual && !node.isEqualDualValue() ? VK_fix : VK_actual;
}

class CRandomTree
{
public:
    explicit CRandomTree(unsigned int seed) : m_tRandom(seed)
    {
    }

    CFields tree()
    {
        CFields root;
        container(root, 1 + below(4));
        head(root);
        comments(root);
        if (below(4) == 0)
            root.setComment("// behind\n/* all */", CP_after);
        return root;
    }

    unsigned int below(unsigned int limit)
    {
        return static_cast<unsigned int>(m_tRandom() % limit);
    }

private:
    std::string bytes(unsigned int longest)
    {
        std::string text(below(longest + 1), ' ');
        const bool plain = below(2) == 0;
        for (char& byte : text)
            byte = static_cast<char>(plain ? 'a' + below(26) : below(256));
        return text;
    }

    void head(CFields& node)
    {
        if (below(3) == 0)
            node.setID(1 + below(below(2) == 0 ? 5 : 2147483647));
        const std::string name = bytes(below(10) == 0 ? 255 : 6);
        if (below(4) != 0 && !name.empty())
            node.setName(name);
    }

    void comments(CFields& node)
    {
        static const char* const texts[] = {"/* c */", "// c", "/* a\n b */", "// a\n// b", "/**/", "// {\"x\"=[ \" "};
        if (below(5) == 0)
            node.setComment(texts[below(6)], CP_before);
        const E_ValueKind vk = writtenSlot(node);
        const bool hasText = node.getDT(vk) != DT_codelist || node.getRawBytes(vk) != 0;
        if (below(5) == 0 && hasText)
            node.setComment(below(2) == 0 ? "// t" : "/* t */", CP_trailing);
    }

    void container(CFields& node, unsigned int depth)
    {
        const bool isSet = below(3) != 0;
        node.setValue(isSet ? DT_fields : DT_array);
        for (unsigned int left = below(7); left != 0; --left)
        {
            CFields& member = isSet ? node.addChildRef("", 0, true) : node.addChildRef("");
            if (depth > 0 && below(3) == 0)
                container(member, depth - 1);
            else
                scalar(member);
            if (isSet)
                head(member);
            comments(member);
        }
    }

    void scalar(CFields& node)
    {
        value(node, VK_actual);
        switch (below(12))
        {
        case 0: expression(node, 0); break;
        case 1: expression(node, 31); break;
        case 2:
            expression(node, static_cast<unsigned short>(1 + below(2)));
            node.setVK(static_cast<E_ValueKind>(node.pkt_GetExp().m_usSkIndex));
            if (below(2) == 0)
            {
                const E_ValueKind kind = node.getVK();
                value(node, kind);
                node.setVK(kind);
            }
            break;
        default: break;
        }
    }

    void expression(CFields& node, unsigned short keyword)
    {
        tPacketExpInfo pei{};
        pei.m_ePacketExp = static_cast<E_PacketExpCode>(below(2));
        pei.m_eRuntimeExp = static_cast<E_RuntimeExpCode>(below(2));
        pei.m_eLengthExp = static_cast<E_LengthExpCode>(below(3));
        pei.m_uiLength = 1 + below(1000);
        if (pei.m_eLengthExp == LEC_V)
        {
            pei.m_ucPrefixSize = static_cast<unsigned char>(1 + below(9));
            pei.m_uiLength = pei.m_ucPrefixSize;
            pei.m_cCalibration = static_cast<signed char>(static_cast<int>(below(255)) - 127);
        }
        pei.m_usSkIndex = keyword;
        node.pkt_SetExp(pei);
    }

    void value(CFields& node, E_ValueKind vk)
    {
        const auto bits = static_cast<unsigned long long>(m_tRandom()) << 32 | m_tRandom();
        switch (below(8))
        {
        case 0: node.setValue(DT_null, vk); break;
        case 1: node.setValue(below(2) == 0, vk); break;
        case 2: node.setValue(static_cast<long long>(bits) >> below(64), vk); break;
        case 3: node.setValue(bits >> below(64), vk); break;
        case 4: node.setValue(static_cast<double>(static_cast<int>(below(2000)) - 1000), vk); break;
        case 5: node.setValue(odd(bits), vk); break;
        case 6: node.setValue("", vk); break;
        default: node.setValue(bytes(below(20) == 0 ? 300 : 12), vk); break;
        }
    }

    double odd(unsigned long long bits)
    {
        static const double values[] = {0.1,
                                        -0.0,
                                        1e300,
                                        5e-324,
                                        1e22,
                                        123456789012345680.0,
                                        std::numeric_limits<double>::infinity(),
                                        -std::numeric_limits<double>::infinity(),
                                        std::numeric_limits<double>::quiet_NaN()};
        if (below(3) == 0)
            return values[below(9)];
        double value;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }

    std::mt19937 m_tRandom;
};

/// The slot as text gives it back: whole numbers get the type that their digits give, NaN and nothing become null.
inline void setAsRead(CFields& to, const CFields& from, E_ValueKind vk)
{
    const E_DataType type = from.getDT(vk);
    std::string digits;
    if (type == DT_sint || type == DT_uint)
        digits = from.asString(vk);
    else if (type == DT_double && std::isfinite(from.asDouble(vk)))
    {
        char text[40];
        std::snprintf(text, sizeof text, "%.17g", from.asDouble(vk));
        digits = text;
        if (digits.find_first_not_of("-0123456789") != std::string::npos)
            digits.clear();
    }
    if (!digits.empty() && digits[0] == '-')
        to.setValue(std::strtoll(digits.c_str(), nullptr, 10));
    else if (!digits.empty())
    {
        const unsigned long long number = std::strtoull(digits.c_str(), nullptr, 10);
        if (number <= 2147483647)
            to.setValue(static_cast<long long>(number));
        else
            to.setValue(number);
    }
    else if (type == DT_bool)
        to.setValue(from.asBool(vk));
    else if (type == DT_double && !std::isnan(from.asDouble(vk)))
        to.setValue(from.asDouble(vk));
    else if (type == DT_codelist && from.getRawBytes(vk) != 0)
        to.setValue(from.asString(vk));
    else
        to.setValue(DT_null);
}

/// The tree that comes back when `from` is saved as text with all its parts and loaded again.
inline CFields treeAsRead(const CFields& from, bool withComments)
{
    CFields to;
    if (from.isField() || from.isArray())
    {
        to.setValue(from.getDT());
        for (const CFields& member : from)
            to.addChildRef("", 0, true).setField(treeAsRead(member, withComments));
        if (from.getChildCount() == 0)
            to.addChildRef("", 0, true);  // an empty container is read as one with a null member
    }
    else
    {
        const tPacketExpInfo pei = from.pkt_GetExp();
        to.pkt_SetExp(pei);
        setAsRead(to, from, writtenSlot(from));
        if (pei.m_usSkIndex == 1 || pei.m_usSkIndex == 2)
            to.setVK(static_cast<E_ValueKind>(pei.m_usSkIndex));
    }
    to.setID(from.getID());
    if (from.getNameLen() != 0)
        to.setName(from.getName(), from.getNameLen());
    for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
    {
        if (withComments && from.hasComment(position))
            to.setComment(from.getCommentCopy(position), position);
    }
    return to;
}

}  // namespace murv::tests
