// layout/layout.cpp - compiled layouts.
#include "murv/layout.h"

#include <utility>

#include "layout/compile/compile.h"
#include "layout/plan/plan.h"
#include "murv/loader.h"

namespace murv
{

CLayout::CLayout() = default;
CLayout::CLayout(const CLayout&) = default;
CLayout::CLayout(CLayout&&) noexcept = default;
CLayout& CLayout::operator=(const CLayout&) = default;
CLayout& CLayout::operator=(CLayout&&) noexcept = default;
CLayout::~CLayout() = default;

bool CLayout::compile(const CFields& document)
{
    m_pPlan.reset();
    const auto plan = std::make_shared<detail::tPlan>();
    if (!detail::compileParts(document, *plan, m_vMistakes))
        return false;
    detail::makeSteps(*plan);
    m_pPlan = plan;
    return true;
}

bool CLayout::compile(std::string_view text)
{
    m_pPlan.reset();
    m_vMistakes.clear();
    CFields document;
    CLoader4SER loader(LCBC_COMMENT | LCBC_EMPTY_NULL | LCBC_DUPLICATE | LCBC_UNICODE_UTF8);
    tLayoutMistake mistake;
    try
    {
        if (loader.loading(text, document))
            return compile(document);
        const std::vector<tErrorPlace> places = loader.getErrorPlaces();
        mistake.m_uiOffset = places.empty() ? 0 : places.front().m_uiStart;
        mistake.m_strMessage = places.empty() ? std::string(loader.getLastErrMsg()) : places.front().m_strMessage;
    }
    catch (const CLogicError&)
    {
        if (loader.getLoadFault() != LF_tooDeep)
            throw;
        mistake.m_strMessage = "The layout nests deeper than 1000 levels";
    }
    m_vMistakes.push_back(std::move(mistake));
    return false;
}

const std::vector<tLayoutMistake>& CLayout::getMistakes() const
{
    return m_vMistakes;
}

bool CLayout::isCompiled() const
{
    return m_pPlan != nullptr;
}

const std::shared_ptr<const detail::tPlan>& CLayout::getPlan() const
{
    return m_pPlan;
}

}  // namespace murv
