// document/source_edit.cpp - new members, new values, names.
#include "document/source_edit.h"

#include <algorithm>

#include "document/comment_text.h"
#include "document/source_builder.h"
#include "murv/error.h"
#include "murv/saver.h"
#include "murv/syntax.h"
#include "syntax/token_spacing.h"

namespace murv::detail
{

namespace
{

std::string savedText(const CFields& node)
{
    CSaver4SER_HFW saver;
    saver.setSCBC(SCBC_LOSSLESS | SCBC_ONE_LINE_ARRAY);
    std::string text = saver.saving(node);
    if (!saver.isError())
        return text;
    const std::string& message = saver.getLastErrMsg();  // "[function#line] path: what"
    throw CLogicError("The value cannot be written: " + message.substr(message.find("] ") + 2));
}

/// A node as it is written, but for a value in it that has a spelling of its own.
std::string spelledText(const CFields& node, const tSpelling& spelling)
{
    if (spelling.m_strvNotation.empty())
        return savedText(node);
    CFields without(node);
    CFields* value = &without;
    for (std::size_t level = 0; level != spelling.m_nLevels; ++level)
        value = &(*value)[0U];
    value->removeAll();
    std::string text = savedText(without);
    constexpr std::string_view null = "null";  // nothing but brackets stands after it
    return text.replace(text.rfind(null), null.size(), spelling.m_strvNotation);
}

std::string_view withoutBlanksAtEnd(std::string_view text)
{
    const std::size_t last = text.find_last_not_of(" \t\r\n");
    return text.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

bool isBlank(char byte)
{
    return std::string_view(" \t\r\n").find(byte) != std::string_view::npos;
}

/// The tokens of a head that renaming and spacing look at.
struct tHeadTokens
{
    tTokenInfo m_tId{};
    tTokenInfo m_tName{};
    tTokenInfo m_tAssign{};
    tTokenInfo m_tLast{};
};

tHeadTokens readHead(std::string_view head)
{
    tHeadTokens tokens;
    CTokenScanner scanner(head);
    for (tTokenInfo token = scanner.next(); token.m_eType != TT_end; token = scanner.next())
    {
        std::string_view expression;
        switch (token.m_eType)
        {
        case TT_id: tokens.m_tId = token; break;
        case TT_string:
        case TT_number:
            if (tokens.m_tName.m_pBegin == nullptr)  // later ones are no names
                tokens.m_tName = token;
            break;
        case TT_assign: tokens.m_tAssign = token; break;
        case TT_peiBegin: scanner.takeExpression(token, expression); break;
        default: break;
        }
        tokens.m_tLast = token;
    }
    return tokens;
}

/// Whether a scalar before it would be its name.
bool beginsWithAssign(std::string_view text)
{
    CTokenScanner scanner(text);
    tTokenInfo token = scanner.next();
    while (token.m_eType == TT_comment)
        token = scanner.next();
    return token.m_eType == TT_assign;
}

/// Takes the blanks around "=" away, but for a line end after it.
std::string tightHead(std::string_view head)
{
    const tTokenInfo assign = readHead(head).m_tAssign;
    if (assign.m_pBegin == nullptr)
        return std::string(head);
    const std::string_view before = head.substr(0, static_cast<std::size_t>(assign.m_pBegin - head.data()));
    const std::string_view after = head.substr(before.size() + 1);
    const std::size_t next = std::min(after.find_first_not_of(" \t"), after.size());
    const bool isLine = next != after.size() && hasLineEnd(after.substr(next, 1));
    return std::string(withoutBlanksAtEnd(before)) + "=" + std::string(isLine ? after : after.substr(next));
}

}  // namespace

/// Writes a node and cuts its text. \param layout  no longer inline when the text needs lines of its own
std::uint32_t CSourceEdit::addText(const CFields& node, const tSpelling& spelling, tMemberLayout& layout)
{
    const std::string saved = spelledText(node, spelling);
    if (hasCommentOfLine(saved))
        layout.m_bInline = layout.m_bOneLine = false;
    std::string formatted = formatMember(saved, m_uiConfig, layout);
    if (layout.m_bOneLine && layout.m_strIndent.size() + formatted.size() > tTextLayout().m_uiWidth)
    {
        layout.m_bOneLine = false;
        formatted = formatMember(saved, m_uiConfig, layout);
    }
    const std::string_view text = m_tTree.keep(std::move(formatted));
    CSourceBuilder builder(text, m_tTree);
    CGrammarReader(text, m_uiConfig, builder).read();
    const std::uint32_t added = builder.finish();
    if (layout.m_bTight)
        m_tTree[added].m_strvHead = m_tTree.keep(tightHead(m_tTree[added].m_strvHead));
    return added;
}

void CSourceEdit::insertMember(std::uint32_t container, std::size_t index, const CFields& member,
                               const tSpelling& spelling)
{
    tMemberLayout layout = layout4New(m_tTree, container, index, m_tLayout);
    const std::uint32_t added = addText(member, spelling, layout);
    tSourceNode& set = m_tTree[container];
    tSourceNode& node = m_tTree[added];
    set.m_vMember.reserve(set.m_vMember.size() + 1);
    const bool isLast = index == set.m_vMember.size();
    const bool isFirst = index == 0;
    tSourceNode* const previous = isFirst ? nullptr : &m_tTree[set.m_vMember[index - 1]];
    m_tPrepared = {};
    if (isLast && !isFirst)
        prepareComma(set);
    const std::string_view blank = isFirst && set.m_strvInner.back() == ']' ? "" : " ";
    const std::string_view line = layout.m_bInline ? blank : this->line(layout.m_strIndent);
    const std::string_view before = afterPiece(isFirst ? set.m_strvValue : previous->m_strvAfter,
                                               std::string(line) + std::string(node.m_strvBefore));
    const std::string_view after = isLast ? node.m_strvAfter : m_tTree.keep("," + std::string(node.m_strvAfter));
    const std::string inner = isLast && isFirst ? innerForFirst(set, layout) : std::string(set.m_strvInner);
    const std::string_view newInner = isLast ? afterPiece(after, inner) : set.m_strvInner;
    if (!isLast)
        m_tPrepared.m_strvNextBefore = beforeSecond(m_tTree[set.m_vMember[index]], after);
    // From here on nothing fails.
    if (isLast && !isFirst)
    {
        previous->m_strvBefore = m_tPrepared.m_strvBefore;
        previous->m_strvAfter = m_tPrepared.m_strvAfter;
    }
    if (!isLast)
        m_tTree[set.m_vMember[index]].m_strvBefore = m_tPrepared.m_strvNextBefore;
    set.m_strvInner = newInner;
    node.m_strvBefore = before;
    node.m_strvAfter = after;
    set.m_vMember.insert(set.m_vMember.begin() + static_cast<std::ptrdiff_t>(index), added);
}

/// The last member of a container gets a comma. Where nothing stands for it, that follows what is before it.
void CSourceEdit::prepareComma(const tSourceNode& container)
{
    const std::size_t last = container.m_vMember.size() - 1;
    const tSourceNode& node = m_tTree[container.m_vMember[last]];
    m_tPrepared.m_strvBefore = node.m_strvBefore;
    const std::string_view piece =
        last == 0 ? container.m_strvValue : m_tTree[container.m_vMember[last - 1]].m_strvAfter;
    if (node.isMissing())
        m_tPrepared.m_strvBefore = afterPiece(piece, std::string(node.m_strvBefore));
    m_tPrepared.m_strvAfter = m_tTree.keep("," + std::string(node.m_strvAfter));
}

/// What stands before a member that another one is put before. It may have been the first.
std::string_view CSourceEdit::beforeSecond(const tSourceNode& node, std::string_view piece)
{
    const std::string before(node.m_strvBefore);
    const bool isApart = lastLineIn(before).m_bThere || before.substr(0, 1) == " ";
    return afterPiece(piece, (isApart ? "" : " ") + before);
}

/// What ends a container that was empty so far.
std::string CSourceEdit::innerForFirst(const tSourceNode& container, const tMemberLayout& layout) const
{
    const std::string inner(container.m_strvInner);
    if (layout.m_bInline)
        return inner == "}" ? " }" : inner;
    return lastLineIn(inner).m_bThere ? inner : m_tLayout.m_strLineEnd + inner;
}

/// Keeps a text that is to follow a piece: on a new line, at once, where the piece ends in a comment of one line.
std::string_view CSourceEdit::afterPiece(std::string_view piece, const std::string& text)
{
    if (!endsInLineComment(piece))
        return m_tTree.keep(text);
    const std::size_t first = std::min(text.find_first_not_of(" \t"), text.size());
    const bool isLine = first != text.size() && hasLineEnd(text.substr(first, 1));
    return m_tTree.keep(isLine ? text.substr(first) : m_tLayout.m_strLineEnd + text);
}

void CSourceEdit::prepareValue(const tSourcePlace& place, const CFields& value, const tSpelling& spelling)
{
    tMemberLayout layout = layout4Value(m_tTree, place, m_tLayout);
    tSourceNode value4Node = m_tTree[addText(value, spelling, layout)];
    const tSourceNode& node = m_tTree[place.m_uiNode];
    m_tPrepared = {};
    m_tPrepared.m_strvHead = headForValue(node, value4Node, layout);
    m_tPrepared.m_strvBefore = node.m_strvBefore;
    if (node.isMissing() && !place.m_bRoot)
    {
        const bool needsBlank = node.m_strvBefore.empty() && place.m_nIndex != 0;
        m_tPrepared.m_strvBefore =
            afterPiece(pieceBefore(place), (needsBlank ? " " : "") + std::string(node.m_strvBefore));
    }
    m_tPrepared.m_strvAfter = node.m_strvAfter;
    const bool mayBeName =
        place.m_bRoot && !value4Node.isContainer() && readHead(node.m_strvHead).m_tAssign.m_pBegin == nullptr;
    if (mayBeName && beginsWithAssign(node.m_strvAfter))
        throw CLogicError("The value would be the name of the text after the document, which begins with \"=\"");
    // Text after the document may touch a bracket, but not a number.
    if (place.m_bRoot && !node.m_strvAfter.empty() && !isBlank(node.m_strvAfter[0]))
        m_tPrepared.m_strvAfter = m_tTree.keep(" " + std::string(node.m_strvAfter));
    m_tPrepared.m_tValue = std::move(value4Node);
}

/// What stands before a new value: a blank or a new line where there was the other before the old one.
std::string_view CSourceEdit::headForValue(const tSourceNode& node, const tSourceNode& value,
                                           const tMemberLayout& layout)
{
    const std::string_view head = node.m_strvHead;
    if (head.empty())
        return head;
    const tTokenInfo last = readHead(head).m_tLast;
    if (isLineComment(last))
        return head;
    const std::string_view text = withoutBlanksAtEnd(head);
    const std::string_view gap = head.substr(text.size());
    if (hasLineEnd(value.m_strvInner) && !layout.m_bOpensOnLine)
        return hasLineEnd(gap) ? head : m_tTree.keep(std::string(text) + std::string(line(layout.m_strIndent)));
    const bool mayTouch = layout.m_bTight && last.m_eType != TT_id;
    if (hasLineEnd(gap) || (gap.empty() && !mayTouch))
        return m_tTree.keep(std::string(text) + " ");
    return head;
}

void CSourceEdit::commitValue(const tSourcePlace& place) noexcept
{
    tSourceNode& node = m_tTree[place.m_uiNode];
    node.m_strvBefore = m_tPrepared.m_strvBefore;
    node.m_strvHead = m_tPrepared.m_strvHead;
    node.m_strvValue = m_tPrepared.m_tValue.m_strvValue;
    node.m_strvInner = m_tPrepared.m_tValue.m_strvInner;
    node.m_strvAfter = m_tPrepared.m_strvAfter;
    node.m_vMember.swap(m_tPrepared.m_tValue.m_vMember);
}

void CSourceEdit::rename(const tSourcePlace& place, std::string_view name)
{
    CFields named(1);
    named.setName(name);
    const std::string saved = savedText(named);
    const tTokenInfo quoted = readHead(saved).m_tName;
    const std::string fresh(quoted.m_pBegin, quoted.m_pEnd);
    const std::string_view head = m_tTree[place.m_uiNode].m_strvHead;
    const tHeadTokens tokens = readHead(head);
    const auto upTo = [head](const char* end) { return std::string(head.data(), end); };
    const auto from = [head](const char* begin) { return std::string(begin, head.data() + head.size()); };
    std::string renamed;
    if (tokens.m_tName.m_pBegin != nullptr)
        renamed = upTo(tokens.m_tName.m_pBegin) + fresh + from(tokens.m_tName.m_pEnd);
    else if (tokens.m_tAssign.m_pBegin != nullptr)
        renamed = upTo(tokens.m_tAssign.m_pBegin) + fresh + " " + from(tokens.m_tAssign.m_pBegin);
    else if (tokens.m_tId.m_pBegin != nullptr)
        renamed =
            upTo(tokens.m_tId.m_pEnd) + " " + fresh + " = " + std::string(withoutBlanks(from(tokens.m_tId.m_pEnd)));
    else
        renamed = fresh + " = " + std::string(head);
    tSourceNode& node = m_tTree[place.m_uiNode];
    const std::string_view kept = m_tTree.keep(std::move(renamed));
    if (node.isMissing() && !place.m_bRoot)
        node.m_strvBefore = afterPiece(pieceBefore(place), std::string(node.m_strvBefore));
    node.m_strvHead = kept;
}

}  // namespace murv::detail
