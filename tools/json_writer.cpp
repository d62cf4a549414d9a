// tools/json_writer.cpp - walks over a tree with a stack of its own, and hands on what it has written.
#include "tools/json_writer.h"

#include <charconv>
#include <cmath>
#include <vector>

#include "murv/get.h"
#include "murv/path.h"
#include "murv/text.h"
#include "tools/base64.h"
#include "tools/expression_text.h"
#include "tools/hex_text.h"
#include "tools/json_text.h"
#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnPiece = std::size_t{64} << 10U;
constexpr const char* s_cpNotUtf8 = "bytes that are not UTF-8 (see --bytes)";

std::string_view nameOf(const CFields& node)
{
    return {node.getName(), node.getNameLen()};
}

/// A double for people: without a point where it needs none.
std::string shownDouble(double value)
{
    if (std::isnan(value))
        return "null";
    if (std::isinf(value))
        return ToString(value);
    char text[32];
    const std::to_chars_result result = std::to_chars(text, text + sizeof text, value);
    return {text, result.ptr};
}

/// The first member whose name an earlier one has; null when there is none.
const CFields* findRepeated(const CFields& fields)
{
    const CFields* nameless = nullptr;
    for (const CFields& member : fields)
    {
        const std::string_view name = nameOf(member);
        if (name.empty() && nameless != nullptr)
            return &member;
        if (name.empty())
            nameless = &member;
        else if (fields.findChildAt(name.data(), static_cast<unsigned int>(name.size())) != &member)
            return &member;
    }
    return nullptr;
}

bool hasUtf8Names(const CFields& fields)
{
    for (const CFields& member : fields)
    {
        if (!isUtf8(nameOf(member)))
            return false;
    }
    return true;
}

class CJsonWriter
{
public:
    CJsonWriter(const CFields& root, const tJsonStyle& style, const tTakePiece& take, tLoss& loss)
        : m_tRoot(root), m_tStyle(style), m_tTake(take), m_tLoss(loss)
    {
    }

    bool run()
    {
        begin(m_tRoot, true, false);
        while (!m_bStopped && !m_vOpen.empty())
        {
            step();
            if (m_strOut.size() >= s_cnPiece)
                hand();
        }
        hand();
        return !m_bStopped;
    }

private:
    enum E_Form
    {
        FO_array,
        FO_object,
        FO_members,  // pairs of name and value
    };

    struct tOpen
    {
        const CFields* m_pNode;
        unsigned int m_uiNext;
        E_Form m_eForm;
        bool m_bInNode;  // in an object that stands for the node
        bool m_bInPair;
    };

    void hand()
    {
        if (!m_bStopped && !m_tTake(m_strOut))
            m_bStopped = true;
        m_strOut.clear();
    }

    void lose(const CFields& node, const char* what)
    {
        if (m_tStyle.m_bTolerant || m_bStopped)
            return;
        const std::string path = pathOf(m_tRoot, node).value_or(".");
        m_tLoss.m_pNode = &node;
        m_tLoss.m_strMessage = (path == "." ? "the root" : path) +
                               (m_tStyle.m_eForm == JF_plain ? ": plain JSON cannot hold " : ": JSON cannot hold ") +
                               what;
        m_bStopped = true;
    }

    void step()
    {
        tOpen& top = m_vOpen.back();
        if (top.m_uiNext == top.m_pNode->getChildCount())
        {
            const tOpen closed = top;
            m_vOpen.pop_back();
            m_strOut += closed.m_eForm == FO_object ? '}' : ']';
            return end(closed.m_bInNode, closed.m_bInPair);
        }
        if (top.m_uiNext != 0)
            m_strOut += ',';
        const CFields& member = top.m_pNode->getChildAt(top.m_uiNext++);
        const E_Form form = top.m_eForm;
        if (form == FO_members)
            m_strOut += '[';
        if (form != FO_array)
        {
            putBytes(member, nameOf(member));
            m_strOut += form == FO_object ? ':' : ',';
        }
        begin(member, form == FO_array, form == FO_members);
    }

    /// \param ownsName  its name, if it has one, does not stand before it
    void begin(const CFields& node, bool ownsName, bool isInPair)
    {
        bool isInNode = m_tStyle.m_eForm == JF_exact && putParts(node, ownsName);
        if (!node.isField() && !node.isArray())
        {
            putScalar(node, isInNode);
            return end(isInNode, isInPair);
        }
        const E_Form form = node.isArray() ? FO_array : form4Fields(node);
        if (isInNode || form == FO_members)
            putKey(form == FO_members ? JK_members : JK_value, isInNode);
        m_strOut += form == FO_object ? '{' : '[';
        m_vOpen.push_back({&node, 0, form, isInNode, isInPair});
    }

    void end(bool isInNode, bool isInPair)
    {
        if (isInNode)
            m_strOut += '}';
        if (isInPair)
            m_strOut += ']';
    }

    E_Form form4Fields(const CFields& fields)
    {
        if (m_tStyle.m_eForm == JF_shown)
            return FO_object;
        const CFields* const repeated = findRepeated(fields);
        if (m_tStyle.m_eForm == JF_exact)
            return repeated != nullptr || isNodeObject(fields) || !hasUtf8Names(fields) ? FO_members : FO_object;
        if (repeated != nullptr)
            lose(*repeated, "two members of one name");
        return FO_object;
    }

    /// Writes what a node has besides its value. \return whether there is any
    bool putParts(const CFields& node, bool ownsName)
    {
        bool isInNode = false;
        if (ownsName && node.getNameLen() != 0)
        {
            putKey(JK_name, isInNode);
            putBytes(node, nameOf(node));
        }
        if (node.getID() != 0)
        {
            putKey(JK_id, isInNode);
            m_strOut += std::to_string(node.getID());
        }
        if (m_tStyle.m_bComments && node.isComment())
            putComments(node, isInNode);
        std::string_view expression;
        if (const char* const loss = m_tExpressions.text4Node(node, expression))
            lose(node, loss);
        else if (!expression.empty())
        {
            putKey(JK_packet, isInNode);
            appendJsonText(m_strOut, expression);
        }
        return isInNode;
    }

    void putComments(const CFields& node, bool& isInNode)
    {
        constexpr std::pair<E_CommentPosition, E_JsonKey> keys[] = {
            {CP_before, JK_commentBefore}, {CP_trailing, JK_commentOnLine}, {CP_after, JK_commentAfter}};
        for (const auto& [position, key] : keys)
        {
            if (!node.hasComment(position))
                continue;
            putKey(key, isInNode);
            putBytes(node, {node.getCommentPtr(position), node.getCommentLen(position)});
        }
    }

    void putKey(E_JsonKey key, bool& isInNode)
    {
        m_strOut += isInNode ? ",\"" : "{\"";
        m_strOut += text4Key(key);
        m_strOut += "\":";
        isInNode = true;
    }

    void putScalar(const CFields& node, bool& isInNode)
    {
        switch (node.getDT())
        {
        case DT_double: return putDouble(node, isInNode);
        case DT_codelist: return putString(node, isInNode);
        case DT_sint:
        case DT_uint:
            if (m_tStyle.m_eForm == JF_exact && !isNaturalInteger(node))
                putKey(node.getDT() == DT_sint ? JK_int : JK_uint, isInNode);
            else
                putValueKey(isInNode);
            m_strOut += node.asString();
            return;
        case DT_null:
            putValueKey(isInNode);
            m_strOut += "null";
            return;
        default: putValueKey(isInNode); m_strOut += node.asString();
        }
    }

    void putValueKey(bool& isInNode)
    {
        if (isInNode)
            putKey(JK_value, isInNode);
    }

    void putDouble(const CFields& node, bool& isInNode)
    {
        const double value = node.asDouble();
        if (m_tStyle.m_eForm == JF_shown)
        {
            m_strOut += shownDouble(value);
            return;
        }
        if (std::isfinite(value))
            putValueKey(isInNode);
        else if (m_tStyle.m_eForm == JF_exact)
            putKey(JK_double, isInNode);
        else
            lose(node, std::isnan(value) ? "NaN" : "an infinite number");
        appendJsonDouble(m_strOut, value);
    }

    void putString(const CFields& node, bool& isInNode)
    {
        const std::string_view text = textView(node);
        if (m_tStyle.m_eForm == JF_shown || isUtf8(text))
        {
            putValueKey(isInNode);
            return appendJsonText(m_strOut, text);
        }
        if (m_tStyle.m_eBytes == JB_none)
            return lose(node, s_cpNotUtf8);
        putDigits(text, isInNode);
    }

    /// A name or a comment.
    void putBytes(const CFields& node, std::string_view text)
    {
        if (m_tStyle.m_eForm == JF_shown || isUtf8(text))
            return appendJsonText(m_strOut, text);
        if (m_tStyle.m_eForm == JF_plain)
            return lose(node, "a name that is not UTF-8");
        if (m_tStyle.m_eBytes == JB_none)
            return lose(node, "a name or comment that is not UTF-8 (see --bytes)");
        bool isOpen = false;
        putDigits(text, isOpen);
        m_strOut += '}';
    }

    void putDigits(std::string_view bytes, bool& isInNode)
    {
        putKey(m_tStyle.m_eBytes == JB_hex ? JK_hex : JK_base64, isInNode);
        m_strOut += '"';
        if (m_tStyle.m_eBytes == JB_hex)
            appendHex(m_strOut, bytes);
        else
            appendBase64(m_strOut, bytes);
        m_strOut += '"';
    }

    const CFields& m_tRoot;
    const tJsonStyle& m_tStyle;
    const tTakePiece& m_tTake;
    tLoss& m_tLoss;
    std::string m_strOut;
    std::vector<tOpen> m_vOpen;
    CExpressionTexts m_tExpressions;
    bool m_bStopped = false;
};

std::string text4Style(const CFields& node, const tJsonStyle& style)
{
    std::string text;
    tLoss unused;
    writeJson(
        node, style,
        [&text](std::string_view piece) {
            text += piece;
            return true;
        },
        unused);
    return text;
}
}  // namespace

bool writeJson(const CFields& tree, const tJsonStyle& style, const tTakePiece& take, tLoss& loss)
{
    return CJsonWriter(tree, style, take, loss).run();
}

bool checkJson(const CFields& tree, const tJsonStyle& style, tLoss& loss)
{
    return writeJson(
        tree, style, [](std::string_view) { return true; }, loss);
}

std::string json4Value(const CFields& node)
{
    return text4Style(node, {JF_shown, JB_none, false, true});
}

std::string exactJson4Node(const CFields& node, bool withComments)
{
    return text4Style(node, {JF_exact, JB_hex, withComments, true});
}

}  // namespace murv::tool
