// tests/ber/random_file_tree.h - random trees with what a binary file gives back equal.
//
// Text keeps other things: its trees are made in tests/support/random_tree.h.
#pragma once

#include <cmath>
#include <limits>
#include <random>
#include <string>

#include "murv/fields.h"

namespace murv::tests
{

/// Trees that a file gives back equal: no empty containers, names and IDs that do not repeat, comments that are not
/// empty, and second values that equal the first.
class CRandomFileTree
{
public:
    /// \param forText  only what the text notation can say too, where an empty string is null
    explicit CRandomFileTree(unsigned int seed, bool forText = false) : m_tRandom(seed), m_bForText(forText)
    {
    }

    CFields make()
    {
        m_uiNodes = 0;
        m_uiNext = 0;
        CFields root;
        if (below(2) == 0)
            root.setName(name());
        fill(root, 1 + below(5));
        return root;
    }

private:
    unsigned int below(unsigned int limit)
    {
        return static_cast<unsigned int>(m_tRandom() % limit);
    }
    std::string bytes(std::size_t length)
    {
        std::string text(length, '\0');
        for (char& byte : text)
            byte = static_cast<char>(m_bForText ? 'a' + below(26) : below(256));
        return text;
    }
    /// A number in it keeps it from being there twice.
    std::string name()
    {
        return std::to_string(m_uiNext++) + "." + bytes(below(!m_bForText && below(20) == 0 ? 240 : 12));
    }

    void fill(CFields& node, unsigned int depth)
    {
        ++m_uiNodes;
        if (below(4) == 0)
            node.setID(++m_uiNext);
        if (below(6) == 0)
            comments(node);
        if (depth == 0 || m_uiNodes > 200 || below(3) == 0)
            leaf(node);
        else
            members(node, depth);
    }
    void members(CFields& node, unsigned int depth)
    {
        const bool isArray = below(2) == 0;
        const unsigned int count = 1 + (below(30) == 0 ? below(150) : below(6));
        node.setValue(isArray ? DT_array : DT_fields);
        for (unsigned int i = 0; i < count; ++i)
        {
            const bool isNamed = !isArray ? m_bForText || below(10) != 0 : !m_bForText && below(10) == 0;
            CFields& member = node.addChildRef("", 0, true);
            if (isNamed)
                member.setName(name());
            fill(member, depth - 1);
            if (isArray && m_bForText)
                member.setID(0);
        }
    }
    void leaf(CFields& node)
    {
        switch (below(7))
        {
        case 0: break;
        case 1: node.setValue(below(2) == 0); break;
        case 2: node.setValue(m_bForText ? -1 - static_cast<long long>(m_tRandom()) : number()); break;
        case 3:
            node.setValue(m_bForText ? 4294967296ULL << below(20) : static_cast<unsigned long long>(number()));
            break;
        case 4: node.setValue(real()); break;
        default: node.setValue(bytes((m_bForText ? 1 : 0) + below(below(40) == 0 ? 40000 : 30))); break;
        }
        if (below(4) == 0)
            expression(node);
    }
    long long number()
    {
        return static_cast<long long>((std::uint64_t{m_tRandom()} << 32 | m_tRandom()) >> below(64));
    }
    double real()
    {
        static const double special[] = {
            0.0, -0.0, std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(), NAN, 5e-324};
        return !m_bForText && below(3) == 0 ? special[below(6)] : std::ldexp(number() | 1, -70);
    }
    void expression(CFields& node)
    {
        static constexpr unsigned short indexes[] = {0, 0, 0, 1, 2, 3, 4, 11, 20, 31, 38};
        tPacketExpInfo pei{};
        pei.m_ePacketExp = static_cast<E_PacketExpCode>(below(2) & 1U);
        pei.m_eRuntimeExp = static_cast<E_RuntimeExpCode>(below(2) & 1U);
        pei.m_eLengthExp = static_cast<E_LengthExpCode>(below(m_bForText ? 1 : 3) & 3U);
        pei.m_usSkIndex = indexes[below(11)];
        pei.m_ucSkOption = (pei.m_usSkIndex == 3 || pei.m_usSkIndex == 4 ? 1 + below(9) : 0) & 15U;
        pei.m_uiLength = m_bForText ? 1 + below(1000) : static_cast<unsigned int>(m_tRandom());
        if (!m_bForText)
        {
            pei.m_ucPrefixSize = static_cast<unsigned char>(below(10));
            pei.m_cCalibration = static_cast<signed char>(m_tRandom());
        }
        node.pkt_SetExp(pei);
        if (pei.m_usSkIndex == 1 || pei.m_usSkIndex == 2)
            node.setVK(static_cast<E_ValueKind>(pei.m_usSkIndex));
    }
    void comments(CFields& node)
    {
        if (m_bForText)
            return;
        for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
        {
            std::string text = bytes(below(50) == 0 ? below(60000) : below(20));
            for (char& byte : text)
                byte = byte == '\0' || byte == '\n' ? '/' : byte;
            if (below(2) == 0)
                node.setComment("/" + text, position);
        }
    }

    std::mt19937 m_tRandom;
    const bool m_bForText;
    unsigned int m_uiNodes = 0;
    unsigned int m_uiNext = 0;
};

}  // namespace murv::tests
