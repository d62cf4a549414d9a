// tools/text_format.cpp - keeps spellings by stand-ins: strings that the saver lays out and that are then replaced.
//
// A stand-in is as long as the spelling that replaces it, wherever its quotes leave room for that, so that the saver
// breaks lines rightly. It is made of a text that occurs nowhere else in the result; that is counted, not assumed.
#include "tools/text_format.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <unordered_map>
#include <vector>

#include "murv/saver.h"
#include "tools/node_walk.h"

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

/// What a lossless saver could not hold, and of which node.
tLoss loss4Saver(const CFields& root, const ISaver& saver)
{
    tLoss loss{nullptr, withoutFunction(saver.getLastErrMsg())};
    const std::optional<std::vector<unsigned int>> path = saver.getErrorPath();
    if (!path)
        return loss;
    loss.m_pNode = &root;
    for (const unsigned int index : *path)
        loss.m_pNode = &loss.m_pNode->getChildAt(index);
    // Neither text nor binary files hold it, so the message need not name the medium.
    const bool isContainer = loss.m_pNode->isField() || loss.m_pNode->isArray();
    if (isContainer && !CFields::pkt_IsNullExp(loss.m_pNode->pkt_GetExp()))
        loss.m_strMessage = "the packet expression of this container would be lost";
    return loss;
}

/// Whether its only member is a null that has nothing else: written as nothing, it would leave an empty container.
bool isOnlyNull(const CFields& container)
{
    if (container.getChildCount() != 1)
        return false;
    const CFields& member = container.getChildAt(0);
    return member.isNull() && member.getNameLen() == 0 && member.getID() == 0 &&
           CFields::pkt_IsNullExp(member.pkt_GetExp());
}

/// Whether nothing but a comment would be left of a null that is written as nothing: the comment would lose its place.
bool isBareComment(const CFields& node)
{
    return node.isComment() && node.getNameLen() == 0 && node.getID() == 0;
}

std::vector<tKept> findKept(CFields& root, std::string_view source, bool nullWord)
{
    std::vector<tKept> kept;
    const CFields* neededNull = &root;
    forEachNode(root, [&](CFields& node, std::size_t /*depth*/) {
        const E_DataType type = node.getDT();
        if (type == DT_double && isNumberSpelling(spelling4Node(node, source)))
            kept.push_back({&node, spelling4Node(node, source)});
        else if (type == DT_null && !nullWord && &node != neededNull && !isBareComment(node))
            kept.push_back({&node, std::string_view()});
        else if ((type == DT_fields || type == DT_array) && isOnlyNull(node))
            neededNull = &node.getChildAt(0);
    });
    return kept;
}

/// The text that the stand-ins of an attempt are made of.
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
        // setVK makes the second value a copy of the first again.
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

/// Whether the text ends in the blank after "=" or ")", which is written only before a value.
bool endsInBlankBeforeValue(std::string_view text)
{
    const std::size_t size = text.size();
    return size >= 2 && text[size - 1] == ' ' && (text[size - 2] == '=' || text[size - 2] == ')');
}

/// Replaces the stand-ins by the spellings; nothing when other texts in the result look like stand-ins.
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
        if (kept[next].m_svSpelling.empty() && endsInBlankBeforeValue(out))
            out.pop_back();
        out += kept[next++].m_svSpelling;
        at = copied = end;
    }
    if (next != kept.size())
        return std::nullopt;
    out += text.substr(copied);
    return out;
}

unsigned int savingBits(const tFormat& format)
{
    return SCBC_SECOND_VALUE | SCBC_LOSSLESS | (format.m_bOneLineArrays ? SCBC_ONE_LINE_ARRAY : 0U) |
           (format.m_bFinalNewline ? SCBC_FINAL_NEWLINE : 0U);
}

/// \return false when text cannot hold the tree
bool save(CFields& tree, const tFormat& format, std::string& text, tLoss& loss)
{
    const bool blanks = format.m_strIndentUnit.find_first_not_of(' ') == std::string::npos;
    if (format.m_bCompact || blanks)
    {
        CSaver4SER_PKT compact;
        CSaver4SER_HFW indented(static_cast<unsigned int>(format.m_strIndentUnit.size()));
        IStringSaver& saver = format.m_bCompact ? static_cast<IStringSaver&>(compact) : indented;
        saver.setSCBC(savingBits(format));
        text = saver.saving(tree, SAVE_ALL);
        if (saver.isError())
            loss = loss4Saver(tree, saver);
        return !saver.isError();
    }
    CStreamSaver4SER_HFW saver(format.m_strIndentUnit);
    saver.setSCBC(savingBits(format));
    std::ostringstream stream;
    saver.saving(stream, tree, SAVE_ALL);
    if (saver.isError())
        loss = loss4Saver(tree, saver);
    text = stream.str();
    return !saver.isError();
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
    if (a.getDT() != DT_double)
        return a == b;
    const double first = a.asDouble();
    const double second = b.asDouble();
    return std::isnan(first) ? std::isnan(second)
                             : std::bit_cast<std::uint64_t>(first) == std::bit_cast<std::uint64_t>(second);
}

bool isSameComment(const CFields& a, const CFields& b)
{
    for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
    {
        if (a.getCommentCopy(position) != b.getCommentCopy(position))
            return false;
    }
    return true;
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

/// The first comment of `before` that `after` lacks.
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
}  // namespace

bool writeText(CFields& tree, std::string_view source, const tFormat& format, std::string& text, tLoss& loss)
{
    const std::vector<tKept> kept = findKept(tree, source, format.m_bNullWord);
    if (kept.empty())
        return save(tree, format, text, loss);
    constexpr std::size_t mostAttempts = 1000;  // only a deliberately hostile text contains all of them
    for (std::size_t attempt = 0; attempt < mostAttempts; ++attempt)
    {
        const std::string standIn = standIn4Attempt(attempt);
        putStandIns(kept, standIn);
        if (!save(tree, format, text, loss))
            return false;
        if (std::optional<std::string> spelled = putSpellings(text, kept, standIn))
        {
            text = std::move(*spelled);
            return true;
        }
    }
    throw CLogicError("no text was found that does not occur in the document");
}

bool writeBinary(CFields& tree, const std::string& password, std::string& file, tLoss& loss)
{
    CSavers saver(SCBC_SECOND_VALUE | SCBC_LOSSLESS);
    file = saver.saving(tree, ER_BER, SAVE_ALL, password.c_str());
    if (saver.isError())
        loss = loss4Saver(tree, saver);
    return !saver.isError();
}

E_ExitCode reportLoss(const tInput& input, const tLoss& loss, CDiagnostics& diagnostics)
{
    if (!input.isText() || loss.m_pNode == nullptr)  // binary files have no lines to show
        return diagnostics.fail(input.m_strName, loss.m_strMessage, EC_malformed);
    const auto begin = static_cast<std::size_t>(loss.m_pNode->getOffsetStart());
    return diagnostics.failAt(input.m_strName, input.text(), {begin, begin + 1}, loss.m_strMessage, EC_malformed);
}

bool isSameDocument(const CFields& a, const CFields& b, bool comments)
{
    std::vector<std::pair<const CFields*, const CFields*>> open{{&a, &b}};
    while (!open.empty())
    {
        const auto [first, second] = open.back();
        open.pop_back();
        if (!isSameNode(*first, *second) || (comments && !isSameComment(*first, *second)))
            return false;
        for (unsigned int i = first->getChildCount(); i != 0; --i)
            open.emplace_back(&first->getChildAt(i - 1), &second->getChildAt(i - 1));
    }
    return true;
}

bool keepsComments(const tInput& input, std::string_view text, CDiagnostics& diagnostics)
{
    const std::optional<tRange> lost = findLostComment(input.text(), text);
    if (!lost)
        return true;
    const char* const message = input.text()[lost->m_nBegin] == '/'
                                    ? "this comment would be lost: a value keeps one comment on its line"
                                    : "this remark in a packet expression would be lost";
    diagnostics.failAt(input.m_strName, input.text(), *lost, message, EC_malformed);
    return false;
}

}  // namespace murv::tool
