// document/document.cpp - changes a tree and its text together.
//
// A change is made to the text's pieces first where it can be prepared, then to the tree, whose functions say what is
// wrong with a call. What could fail after that is undone.
#include "murv/document.h"

#include <algorithm>
#include <new>
#include <utility>

#include "core/field_access.h"
#include "document/document_path.h"
#include "document/source_builder.h"
#include "document/source_edit.h"
#include "everyday/member_edit.h"
#include "murv/edit.h"
#include "murv/loader.h"
#include "murv/syntax.h"

namespace murv
{

using namespace detail;

namespace
{

constexpr std::size_t s_cnDeepest = 1000;
constexpr std::size_t s_cnSpareBytes = 16384;

unsigned int loaderFlags(unsigned int config)
{
    return LCBC_COMMENT | LCBC_EMPTY_NULL | LCBC_LOSSLESS | LCBC_DUPLICATE |
           (config & (LCBC_UNICODE_UTF8 | LCBC_NUMBER_NAME));
}

/// Leaves the value of a node.
void strip(CFields& node)
{
    node.clearName();
    node.setID(0);
    node.pkt_SetExp(CFields::nullPktExp);
    for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
        node.setComment(std::string_view(), position);
}

/// Whether setting a value would change nothing.
bool isSet(const CFields& node, const CFields& value)
{
    const bool hasSecond = !CFields::pkt_IsNullExp(node.pkt_GetExp()) && !node.isEqualDualValue();
    if (node.getDT() != value.getDT() || hasSecond)
        return false;
    if (!node.isField() && !node.isArray())
        return diff(node, value).empty();
    if (node.getChildCount() != value.getChildCount())
        return false;
    for (unsigned int i = 0; i != node.getChildCount(); ++i)
    {
        if (!sameTree(node.getChildAt(i), value.getChildAt(i), ST_all))
            return false;
    }
    return true;
}

}  // namespace

struct CDocument::tState
{
    explicit tState(unsigned int config) : m_uiConfig(loaderFlags(config))
    {
    }

    /// \return false for a text with mistakes
    bool load(std::string text);
    CSourceEdit edit()
    {
        return CSourceEdit(m_tSource, m_tLayout, m_uiConfig);
    }
    /// Makes the pieces anew when texts that are no longer used outweigh the others. Costs nothing else: changes of a
    /// long text must not put it together each time.
    void collect();
    void changed() noexcept
    {
        m_bTextIsNew = false;
    }
    const std::string& text()
    {
        if (!m_bTextIsNew)
            m_strText = m_tSource.text();
        m_bTextIsNew = true;
        return m_strText;
    }
    void becomeContainer(const CDocumentPath& way, const CFields& node, const tSpelling& spelling = {});

    const unsigned int m_uiConfig;
    CFields m_tTree;
    CSourceTree m_tSource;
    tDocumentLayout m_tLayout;
    std::vector<tErrorPlace> m_vErrors;
    std::size_t m_nLoadedBytes = 0;
    std::string m_strText;
    bool m_bTextIsNew = false;
};

bool CDocument::tState::load(std::string text)
{
    CSourceTree source;
    const std::size_t size = text.size();
    const std::string_view kept = source.keep(std::move(text));
    CSourceBuilder builder(kept, source);
    CGrammarReader(kept, m_uiConfig, builder).read();
    if (builder.hasMistake())
        return false;
    builder.finish();
    m_tLayout = tDocumentLayout::of(source);
    std::swap(m_tSource, source);
    m_nLoadedBytes = size;
    changed();
    return true;
}

void CDocument::tState::collect()
{
    if (m_tSource.keptBytes() / 4 > m_nLoadedBytes + s_cnSpareBytes)
        load(std::string(text()));
}

CDocument::CDocument(unsigned int config) : m_pState(std::make_unique<tState>(config))
{
    static_cast<void>(load("{\n}\n"));
}

CDocument::CDocument(CDocument&& other) noexcept = default;
CDocument& CDocument::operator=(CDocument&& other) noexcept = default;
CDocument::~CDocument() = default;

bool CDocument::load(std::string_view text)
{
    tState& state = *m_pState;
    CLoader4SER loader(state.m_uiConfig);
    CFields tree;
    try
    {
        if (loader.loading(text, tree, "", true) && state.load(std::string(text)))
        {
            swap(state.m_tTree, tree);
            state.m_vErrors.clear();
            return true;
        }
    }
    catch (const CLogicError&)
    {
        if (loader.getLoadFault() == LF_memory)
            throw std::bad_alloc();
    }
    state.m_vErrors =
        loader.getLoadFault() == LF_tooBig ? loader.getErrorPlaces() : findMistakes(text, state.m_uiConfig);
    return false;
}

const std::vector<tErrorPlace>& CDocument::errors() const noexcept
{
    return m_pState->m_vErrors;
}

const CFields& CDocument::tree() const noexcept
{
    return m_pState->m_tTree;
}

const std::string& CDocument::text() const
{
    return m_pState->text();
}

/// A null node that members were added to: its text shows them now.
void CDocument::tState::becomeContainer(const CDocumentPath& way, const CFields& node, const tSpelling& spelling)
{
    CFields value(node);
    strip(value);
    CSourceEdit edit = this->edit();
    edit.prepareValue(way.place(), value, spelling);
    edit.commitValue(way.place());
}

void CDocument::set(std::string_view path, CNewValue value)
{
    setSpelled(path, value.take(), {});
}

void CDocument::setText(std::string_view path, std::string_view notation)
{
    CLoader4SER loader(m_pState->m_uiConfig);
    CFields value;
    const bool isLoaded = loader.loading(notation, value);
    const bool isBare = isLoaded && value.getNameLen() == 0 && value.getID() == 0 && !value.isComment() &&
                        CFields::pkt_IsNullExp(value.pkt_GetExp());
    const auto end = isLoaded ? static_cast<std::size_t>(value.getOffsetEnd()) : 0;
    if (!isBare || notation.find_first_not_of(" \t\r\n", end) != std::string_view::npos)
        throw CLogicError("The text is not one value");
    setSpelled(path, std::move(value), notation);
}

void CDocument::setSpelled(std::string_view path, CFields fresh, std::string_view notation)
{
    tState& state = *m_pState;
    state.collect();
    CDocumentPath way(state.m_tTree, state.m_tSource, path);
    way.requireDepth(fresh, s_cnDeepest);
    CFields& node = way.node();
    if (way.isWhole())
    {
        strip(fresh);
        if (notation.empty() && isSet(node, fresh))
            return;
        way.requireNoExpression(fresh);
        CSourceEdit edit = state.edit();
        edit.prepareValue(way.place(), fresh, {notation});
        murv::set(state.m_tTree, way.steps(), std::move(fresh));
        edit.commitValue(way.place());
        return state.changed();
    }
    const bool wasNull = node.isNull();
    const unsigned int count = node.getChildCount();
    if (wasNull)
        way.requireNoExpression(CFields(DT_fields));
    murv::set(state.m_tTree, way.steps(), std::move(fresh));
    try
    {
        if (wasNull)
            state.becomeContainer(way, node, {notation, way.missing()});
        else
            state.edit().insertMember(way.place().m_uiNode, count, node.getChildAt(count),
                                      {notation, way.missing() - 1});
    }
    catch (...)
    {
        if (wasNull)
            node.removeAll();
        else
            node.removeChildAt(count);
        throw;
    }
    state.changed();
}

void CDocument::insert(std::string_view container, std::size_t index, CNewValue value, std::string_view name)
{
    tState& state = *m_pState;
    state.collect();
    CDocumentPath way(state.m_tTree, state.m_tSource, container);
    CFields fresh = value.take();
    way.requireWhole();
    way.requireDepth(fresh, s_cnDeepest - 1);
    CFields& node = way.node();
    const bool wasNull = node.isNull();
    if (wasNull)
        way.requireNoExpression(CFields(DT_fields));
    insertAt(node, index, std::move(fresh), name);
    try
    {
        if (wasNull)
            state.becomeContainer(way, node);
        else
            state.edit().insertMember(way.place().m_uiNode, index, node.getChildAt(static_cast<unsigned int>(index)));
    }
    catch (...)
    {
        if (wasNull)
            node.removeAll();
        else
            node.removeChildAt(static_cast<unsigned int>(index));
        throw;
    }
    state.changed();
}

void CDocument::remove(std::string_view path)
{
    tState& state = *m_pState;
    state.collect();
    CDocumentPath way(state.m_tTree, state.m_tSource, path);
    way.requireWhole();
    const tSourcePlace place = way.place();
    if (place.m_bRoot)
        throw CLogicError("The root cannot be removed");
    CSourceEdit edit = state.edit();
    edit.prepareRemoval(place);
    way.parent().removeChildAt(static_cast<unsigned int>(place.m_nIndex));
    edit.commitRemoval(place);
    state.changed();
}

void CDocument::rename(std::string_view path, std::string_view name)
{
    tState& state = *m_pState;
    state.collect();
    CDocumentPath way(state.m_tTree, state.m_tSource, path);
    way.requireWhole();
    if (!isMemberName(name))
        throw CLogicError(std::string("The node cannot be renamed: ") + s_cpNameSize);
    const tSourcePlace place = way.place();
    if (!place.m_bRoot && way.parent().isArray())
        throw CLogicError("The node cannot be renamed: elements have no names");
    const std::string before(way.node().getName(), way.node().getNameLen());
    way.node().setName(name);
    try
    {
        state.edit().rename(place, name);
    }
    catch (...)
    {
        way.node().setName(before);
        throw;
    }
    state.changed();
}

void CDocument::comment(std::string_view path, std::string_view comment, E_CommentPosition position)
{
    tState& state = *m_pState;
    state.collect();
    CDocumentPath way(state.m_tTree, state.m_tSource, path);
    way.requireWhole();
    if (position == CP_after)
        throw CLogicError("A comment goes before a node or on its line");
    CSourceEdit edit = state.edit();
    const std::string text = edit.prepareComment(way.place(), comment, position);
    way.node().setComment(text, position);
    edit.commitComment(way.place());
    state.changed();
}

}  // namespace murv
