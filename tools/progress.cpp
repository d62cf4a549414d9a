// tools/progress.cpp - draws the progress line and removes it again.
#include "tools/progress.h"

#include <unistd.h>

#include "tools/output.h"
#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnLeastBytes = 64'000'000;
constexpr const char* s_cpClearLine = "\r\x1b[K";
}  // namespace

CProgress::CProgress(std::string_view name, std::size_t total)
    : m_strName(shownText(name)), m_nTotal(total), m_bWatched(total > s_cnLeastBytes && isatty(STDERR_FILENO) == 1)
{
}

CProgress::~CProgress()
{
    hide();
}

void CProgress::hide()
{
    if (m_bShown)
        writeAll(STDERR_FILENO, s_cpClearLine);
    m_bShown = false;
}

void CProgress::show(const char* doing, std::size_t done)
{
    if (!m_bWatched)
        return;
    const int percent = static_cast<int>(100.0 * static_cast<double>(done) / static_cast<double>(m_nTotal));
    if (percent == m_iPercent)
        return;
    m_iPercent = percent;
    put(m_strName + ": " + doing + " " + std::to_string(percent) + " %");
}

void CProgress::show(const char* doing)
{
    if (m_bWatched)
        put(m_strName + ": " + doing);
}

void CProgress::put(const std::string& text)
{
    m_bShown = true;
    writeAll(STDERR_FILENO, s_cpClearLine + text);
}

}  // namespace murv::tool
