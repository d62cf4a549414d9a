// document/source_removal.cpp - takes members out, and puts comments in.
#include <algorithm>

#include "document/comment_text.h"
#include "document/source_edit.h"
#include "murv/error.h"
#include "syntax/token_scanner.h"
#include "syntax/token_spacing.h"

namespace murv::detail
{

namespace
{

/// \return without the line end that the text ends in
std::string_view withoutLastLineEnd(std::string_view text)
{
    if (!text.empty() && text.back() == '\n')
        text.remove_suffix(1);
    if (!text.empty() && text.back() == '\r')
        text.remove_suffix(1);
    return text;
}

std::vector<std::string_view> splitLines(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty())
    {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        lines.push_back(text.substr(0, end));
        const bool isPair = text.substr(end, 2) == "\r\n";
        text.remove_prefix(std::min(end + (isPair ? 2 : 1), text.size()));
    }
    return lines;
}

/// What follows the comments on the line of a place: the line end, or what else is there.
std::string_view restAfterComments(std::string_view text)
{
    CTokenScanner scanner(text);
    const char* end = text.data();
    for (;;)
    {
        const tTokenInfo token = scanner.next();
        const char* const line = findLineEnd(end, token.m_pEnd);
        if (token.m_eType != TT_comment || line < token.m_pBegin)
            return text.substr(static_cast<std::size_t>((line < token.m_pBegin ? line : end) - text.data()));
        end = isLineComment(token) ? line : token.m_pEnd;
        if (isLineComment(token))
            return text.substr(static_cast<std::size_t>(end - text.data()));
    }
}

std::string blockComment(std::string_view text)
{
    if (text.find("*/") != std::string_view::npos)
        throw CLogicError("A comment among others on a line cannot hold */");
    std::string comment = "/* ";
    for (const std::string_view line : splitLines(text))
        comment.append(line).append(" ");
    return comment + "*/";
}

}  // namespace

/// Where a line begins before a member: its line end and indentation; or the blanks of a member among others.
std::string CSourceEdit::beginOfLine(std::string_view before) const
{
    if (const tLineBegin line = lastLineIn(before); line.m_bThere)
        return m_tLayout.m_strLineEnd + std::string(line.m_strvIndentation);
    return std::string(before.substr(0, before.size() - withoutBlanks(before).size()));
}

void CSourceEdit::prepareRemoval(const tSourcePlace& place)
{
    const tSourceNode& container = m_tTree[place.m_uiParent];
    m_tPrepared = {};
    m_tPrepared.m_strvInner = container.m_strvInner;
    const std::size_t count = container.m_vMember.size();
    if (place.m_nIndex + 1 != count)
        prepareNext(place);
    else
        prepareLast(place);
    // A null that is written as nothing needs a comma beside it.
    if (count == 2 && m_tTree[container.m_vMember[1 - place.m_nIndex]].isMissing())
        m_tPrepared.m_strvOnlyValue = "null";
}

/// The next member takes the place: its line, and what stands apart before it.
void CSourceEdit::prepareNext(const tSourcePlace& place)
{
    const tSourceNode& container = m_tTree[place.m_uiParent];
    const tSourceNode& node = m_tTree[place.m_uiNode];
    const std::string_view next = m_tTree[container.m_vMember[place.m_nIndex + 1]].m_strvBefore;
    const tCutBlanks cut = cutBlanks(node.m_strvBefore);
    const bool isApart = cut.m_bDetachedComment || (place.m_nIndex != 0 && cutBlanks(next).m_strvDetached.empty());
    const std::string kept(isApart ? cut.m_strvDetached : std::string_view());
    const std::string fresh = lastLineIn(next).m_bThere
                                  ? std::string(next)
                                  : beginOfLine(node.m_strvBefore) + std::string(withoutBlanks(next));
    m_tPrepared.m_strvNextBefore = afterPiece(pieceBefore(place), kept + fresh);
}

/// The piece that ends where a member begins.
std::string_view CSourceEdit::pieceBefore(const tSourcePlace& place) const
{
    const tSourceNode& container = m_tTree[place.m_uiParent];
    return place.m_nIndex == 0 ? container.m_strvValue : m_tTree[container.m_vMember[place.m_nIndex - 1]].m_strvAfter;
}

/// The member before it becomes the last one, without a comma.
void CSourceEdit::prepareLast(const tSourcePlace& place)
{
    const tSourceNode& container = m_tTree[place.m_uiParent];
    const tCutBlanks cut = cutBlanks(m_tTree[place.m_uiNode].m_strvBefore);
    std::string_view inner = container.m_strvInner;
    std::string_view piece = container.m_strvValue;
    if (place.m_nIndex != 0)
    {
        const tCutComma after = cutComma(pieceBefore(place));
        piece = m_tTree.keep(std::string(after.m_strvBefore) + std::string(after.m_strvAfter));
        m_tPrepared.m_strvLastAfter = piece;
    }
    else if (piece.size() == 1 && !cutBlanks(inner).m_bComment)
        inner = inner.substr(inner.size() - 1);
    std::string kept;
    if (cut.m_bDetachedComment)
        kept = withoutLastLineEnd(cut.m_strvDetached);
    if (endsInLineComment(kept) && !lastLineIn(inner).m_bThere)
        kept += m_tLayout.m_strLineEnd;
    m_tPrepared.m_strvInner = afterPiece(piece, kept + std::string(inner));
}

void CSourceEdit::commitRemoval(const tSourcePlace& place) noexcept
{
    tSourceNode& container = m_tTree[place.m_uiParent];
    container.m_vMember.erase(container.m_vMember.begin() + static_cast<std::ptrdiff_t>(place.m_nIndex));
    container.m_strvInner = m_tPrepared.m_strvInner;
    if (place.m_nIndex != container.m_vMember.size())
        m_tTree[container.m_vMember[place.m_nIndex]].m_strvBefore = m_tPrepared.m_strvNextBefore;
    else if (place.m_nIndex != 0)
        m_tTree[container.m_vMember.back()].m_strvAfter = m_tPrepared.m_strvLastAfter;
    if (!m_tPrepared.m_strvOnlyValue.empty())
        m_tTree[container.m_vMember[0]].m_strvValue = m_tPrepared.m_strvOnlyValue;
}

bool CSourceEdit::isInline(const tSourcePlace& place) const
{
    return !place.m_bRoot && !lastLineIn(m_tTree[place.m_uiNode].m_strvBefore).m_bThere;
}

std::string CSourceEdit::prepareComment(const tSourcePlace& place, std::string_view comment, E_CommentPosition position)
{
    const tSourceNode& node = m_tTree[place.m_uiNode];
    m_tPrepared.m_strvBefore = node.m_strvBefore;
    m_tPrepared.m_strvAfter = node.m_strvAfter;
    if (node.isMissing() && !place.m_bRoot)
        m_tPrepared.m_strvBefore = afterPiece(pieceBefore(place), std::string(node.m_strvBefore));
    return position == CP_before ? commentBefore(place, comment) : commentAfter(place, comment);
}

void CSourceEdit::commitComment(const tSourcePlace& place) noexcept
{
    m_tTree[place.m_uiNode].m_strvBefore = m_tPrepared.m_strvBefore;
    m_tTree[place.m_uiNode].m_strvAfter = m_tPrepared.m_strvAfter;
}

std::string CSourceEdit::commentBefore(const tSourcePlace& place, std::string_view comment)
{
    const tSourceNode& node = m_tTree[place.m_uiNode];
    const tCutBlanks cut = cutBlanks(node.m_strvBefore);
    std::string text;
    std::string before(cut.m_strvDetached);
    if (isInline(place))
    {
        text = comment.empty() ? std::string() : blockComment(comment);
        const bool hasBlank = node.m_strvBefore.substr(0, 1) == " ";
        before = (hasBlank ? " " : "") + text + (text.empty() ? "" : " ");
    }
    else
    {
        const std::string& lineEnd = m_tLayout.m_strLineEnd;
        const std::string indentation(lastLineIn(node.m_strvBefore).m_strvIndentation);
        for (const std::string_view line : splitLines(comment))
        {
            text += (text.empty() ? "// " : "\n// ") + std::string(line);
            before += (before.empty() && place.m_bRoot ? "" : lineEnd + indentation) + "// " + std::string(line);
        }
        if (!before.empty() || !place.m_bRoot)
            before += lineEnd + indentation;
    }
    m_tPrepared.m_strvBefore = place.m_bRoot ? m_tTree.keep(std::move(before)) : afterPiece(pieceBefore(place), before);
    return text;
}

/// Whether the line ends after a node and its comma.
bool CSourceEdit::isLineAfter(const tSourcePlace& place) const
{
    if (place.m_bRoot)
    {
        const std::string_view rest = restAfterComments(m_tTree[place.m_uiNode].m_strvAfter);
        return rest.empty() || hasLineEnd(rest.substr(0, 1));
    }
    const tSourceNode& container = m_tTree[place.m_uiParent];
    const bool isLast = place.m_nIndex + 1 == container.m_vMember.size();
    const std::string_view next =
        isLast ? container.m_strvInner : m_tTree[container.m_vMember[place.m_nIndex + 1]].m_strvBefore;
    const std::size_t first = next.find_first_not_of(" \t");
    return first != std::string_view::npos && hasLineEnd(next.substr(first, 1));
}

std::string CSourceEdit::commentAfter(const tSourcePlace& place, std::string_view comment)
{
    if (hasLineEnd(comment))
        throw CLogicError("A comment on the line of a value has one line");
    const tSourceNode& node = m_tTree[place.m_uiNode];
    std::string text;
    if (!comment.empty())
        text = isLineAfter(place) ? "// " + std::string(comment) : blockComment(comment);
    std::string after = place.m_bRoot || !cutComma(node.m_strvAfter).m_bComma ? "" : ",";
    after += (text.empty() ? "" : " ") + text;
    if (place.m_bRoot)
    {
        const std::string rest(restAfterComments(node.m_strvAfter));
        after += text.empty() && !rest.empty() && rest.find_first_of(" \t\r\n") != 0 ? " " + rest : rest;
    }
    m_tPrepared.m_strvAfter = m_tTree.keep(std::move(after));
    return text;
}

}  // namespace murv::detail
