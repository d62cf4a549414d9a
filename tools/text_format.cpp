// tools/text_format.cpp - spellings are kept by stand-ins: strings that the saver lays out and that are then replaced.
//
// A stand-in is as long as what it stands for, wherever quotes leave room for that, so that the saver's decisions
// about lines fit. It is made of a text that occurs nowhere else in the result, which is counted, not assumed.
#include "tools/text_format.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <sstream>
#include <unordered_map>
#include <vector>

#include "murv/saver.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnQuotes = 2;

/// A node whose text is not left to the saver.
struct tKept
{
    CFields* m_pNode;
    std::string_view m_svSpelling;
};

/// Visits a node and all below it in document order, which is also the order in which they lie in memory.
template <typename tVisitor>
void forEachNode(CFields& root, tVisitor&& visit)
{
    std::vector<std::pair<CFields::iterator, CFields::iterator>> open;
    CFields* node = &root;
    for (;;)
    {
        const E_DataType type = node->getDT();
        visit(*node, type);
        if (type == DT_fields || type == DT_array)
            open.emplace_back(node->begin(), node->end());
        while (!open.empty() && open.back().first == open.back().second)
            open.pop_back();
        if (open.empty())
            return;
        node = &*open.back().first++;
    }
}

std::string_view spelling4Node(const CFields& node, std::string_view source)
{
    const auto begin = static_cast<std::size_t>(node.getOffsetStart());
    const auto end = static_cast<std::size_t>(node.getOffsetEnd());
    return begin <= end && end <= source.size() ? source.substr(begin, end - begin) : std::string_view();
}

bool isNumberSpelling(std::string_view text)
{
    return !text.empty() && text.find_first_not_of("+-.0123456789Ee") == std::string_view::npos;
}

/// Whether the only member is one that the text did not hold: "{}" and "[]" are read as a container of one null.
bool isWrittenEmpty(const CFields& node, std::string_view source)
{
    if (source.empty() || node.getChildCount() != 1)
        return false;
    const CFields& member = node.getChildAt(0);
    return member.isNull() && member.getNameLen() == 0 && member.getID() == 0 && !member.isComment() &&
           CFields::pkt_IsNullExp(member.pkt_GetExp()) && spelling4Node(member, source) != "null";
}

/// In compact text no blank stands behind an ID, so that a number without a name would become a part of it.
bool isGluedToId(const CFields& node, E_DataType type)
{
    if (node.getID() == 0 || node.getNameLen() != 0 || (type != DT_sint && type != DT_uint && type != DT_double) ||
        !CFields::pkt_IsNullExp(node.pkt_GetExp()))
        return false;
    const char first = node.asString()[0];
    return first >= '0' && first <= '9';
}

/// Why the node cannot be written as it is; null when it can.
const char* loss4Node(const CFields& node, E_DataType type, bool compact)
{
    const bool container = type == DT_fields || type == DT_array;
    if (container && !CFields::pkt_IsNullExp(node.pkt_GetExp()))
        return "the packet expression of this container would be lost";
    if (compact && isGluedToId(node, type))
        return "compact text cannot hold a number directly behind an ID";
    return nullptr;
}

tLoss findLoss(CFields& root, bool compact)
{
    tLoss loss;
    forEachNode(root, [&loss, compact](CFields& node, E_DataType type) {
        const char* const message = loss.m_pNode == nullptr ? loss4Node(node, type, compact) : nullptr;
        if (message != nullptr)
            loss = {&node, message};
    });
    return loss;
}

std::vector<tKept> findKept(CFields& root, std::string_view source)
{
    std::vector<tKept> kept;
    forEachNode(root, [&kept, source](CFields& node, E_DataType type) {
        if (type == DT_codelist && node.getRawBytes() == 0)
            kept.push_back({&node, "\"\""});
        else if (type == DT_double && isNumberSpelling(spelling4Node(node, source)))
            kept.push_back({&node, spelling4Node(node, source)});
        else if ((type == DT_fields || type == DT_array) && isWrittenEmpty(node, source))
            node.removeChildAll();
    });
    return kept;
}

/// Texts to make stand-ins of, in the order in which they are tried.
std::string standIn4Attempt(std::size_t attempt)
{
    constexpr std::string_view single = "~|^@!$%&;?<>'`*+.:_-";
    return attempt < single.size() ? std::string(1, single[attempt]) : "keep" + std::to_string(attempt) + "~";
}

void putStandIns(const std::vector<tKept>& kept, const std::string& standIn)
{
    for (const tKept& item : kept)
    {
        std::string text = standIn;
        if (item.m_svSpelling.size() > text.size() + s_cnQuotes)
            text.append(item.m_svSpelling.size() - s_cnQuotes - text.size(), standIn.back());
        const E_ValueKind kind = item.m_pNode->getVK();
        // The second value, where there is one, is a copy again.
        item.m_pNode->setVK(VK_actual);
        item.m_pNode->setValue(text);
        item.m_pNode->setVK(kind);
    }
}

/// The end of the stand-in that begins with the quote at `at`; npos when there is none.
std::size_t endOfStandIn(std::string_view text, std::size_t at, const std::string& standIn)
{
    if (text.compare(at + 1, standIn.size(), standIn) != 0)
        return std::string_view::npos;
    const std::size_t end = text.find_first_not_of(standIn.back(), at + 1 + standIn.size());
    return end != std::string_view::npos && text[end] == '"' ? end + 1 : std::string_view::npos;
}

/// Puts the spellings back; nothing when the stand-ins are not the only texts of their kind.
std::optional<std::string> putSpellings(std::string_view text, const std::vector<tKept>& kept,
                                        const std::string& standIn)
{
    std::string out;
    out.reserve(text.size());
    std::size_t next = 0;
    std::size_t copied = 0;
    const std::string begin = '"' + standIn;
    for (std::size_t at = 0; (at = text.find(begin, at)) != std::string_view::npos;)
    {
        const std::size_t end = endOfStandIn(text, at, standIn);
        if (end == std::string_view::npos)
        {
            ++at;
            continue;
        }
        if (next == kept.size())
            return std::nullopt;
        out += text.substr(copied, at - copied);
        out += kept[next++].m_svSpelling;
        at = copied = end;
    }
    if (next != kept.size())
        return std::nullopt;
    out += text.substr(copied);
    return out;
}

void checkSaved(const CErrorBase& saver)
{
    if (saver.isError())
        throw CLogicError(saver.getLastErrMsg());
}

unsigned int savingBits(const tFormat& format)
{
    return SCBC_SECOND_VALUE | (format.m_bOneLineArrays ? SCBC_ONE_LINE_ARRAY : 0U) |
           (format.m_bNullWord ? SCBC_NULL_WORD : 0U) | (format.m_bFinalNewline ? SCBC_FINAL_NEWLINE : 0U);
}

std::string saved(const CFields& tree, const tFormat& format)
{
    const bool blanks = format.m_strIndentUnit.find_first_not_of(' ') == std::string::npos;
    if (format.m_bCompact || blanks)
    {
        CSaver4SER_PKT compact;
        CSaver4SER_HFW indented(static_cast<unsigned int>(format.m_strIndentUnit.size()));
        IStringSaver& saver = format.m_bCompact ? static_cast<IStringSaver&>(compact) : indented;
        saver.setSCBC(savingBits(format));
        std::string text = saver.saving(tree, SAVE_ALL);
        checkSaved(saver);
        return text;
    }
    CStreamSaver4SER_HFW saver(format.m_strIndentUnit);
    saver.setSCBC(savingBits(format));
    std::ostringstream stream;
    saver.saving(stream, tree, SAVE_ALL);
    checkSaved(saver);
    return stream.str();
}

bool isSameExpression(const CFields& a, const CFields& b)
{
    const tPacketExpInfo first = a.pkt_GetExp();
    const tPacketExpInfo second = b.pkt_GetExp();
    return std::memcmp(&first, &second, sizeof first) == 0;
}

bool isSameNode(const CFields& a, const CFields& b)
{
    if (a.getDT() != b.getDT() || a.getID() != b.getID() || a.getVK() != b.getVK() ||
        std::string_view(a.getName(), a.getNameLen()) != std::string_view(b.getName(), b.getNameLen()) ||
        !isSameExpression(a, b))
        return false;
    if (a.isField() || a.isArray())
        return a.getChildCount() == b.getChildCount();
    if (a.getDT() == DT_double && std::isnan(a.asDouble()))
        return std::isnan(b.asDouble());
    return a == b;
}

/// A comment as it is saved: with line feeds, and without one at its end.
std::string normalComment(std::string_view comment)
{
    std::string text;
    for (std::size_t i = 0; i < comment.size(); ++i)
    {
        if (comment[i] != '\r')
            text += comment[i];
        else if (i + 1 == comment.size() || comment[i + 1] != '\n')
            text += '\n';
    }
    return text;
}
}  // namespace

std::string text4Tree(CFields& tree, std::string_view source, const tFormat& format, tLoss* loss)
{
    if (loss != nullptr)
        *loss = findLoss(tree, format.m_bCompact);
    const std::vector<tKept> kept = findKept(tree, source);
    if (kept.empty())
        return saved(tree, format);
    constexpr std::size_t mostAttempts = 1000;  // a text that holds all of these was made to
    for (std::size_t attempt = 0; attempt < mostAttempts; ++attempt)
    {
        const std::string standIn = standIn4Attempt(attempt);
        putStandIns(kept, standIn);
        if (const std::optional<std::string> text = putSpellings(saved(tree, format), kept, standIn))
            return *text;
    }
    throw CLogicError("no text was found that does not occur in the document");
}

bool isSameDocument(const CFields& a, const CFields& b)
{
    std::vector<std::pair<const CFields*, const CFields*>> open{{&a, &b}};
    while (!open.empty())
    {
        const auto [first, second] = open.back();
        open.pop_back();
        if (!isSameNode(*first, *second))
            return false;
        for (unsigned int i = first->getChildCount(); i != 0; --i)
            open.emplace_back(&first->getChildAt(i - 1), &second->getChildAt(i - 1));
    }
    return true;
}

std::optional<tRange> findLostComment(std::string_view before, std::string_view after)
{
    const std::vector<tRange> wanted = findComments(before);
    if (wanted.empty())
        return std::nullopt;
    std::unordered_map<std::string, std::size_t> there;
    for (const tRange& range : findComments(after))
        ++there[normalComment(after.substr(range.m_nBegin, range.m_nEnd - range.m_nBegin))];
    for (const tRange& range : wanted)
    {
        std::size_t& left = there[normalComment(before.substr(range.m_nBegin, range.m_nEnd - range.m_nBegin))];
        if (left == 0)
            return range;
        --left;
    }
    return std::nullopt;
}

}  // namespace murv::tool
