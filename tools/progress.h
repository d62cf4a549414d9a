// tools/progress.h - a line that shows that the tool is alive.
//
// Only for inputs that take a while, and only where a person watches: the line is gone when the work is done.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace murv::tool
{

class CProgress
{
public:
    /// \param total  bytes to come; shown above 64 MB only
    CProgress(std::string_view name, std::size_t total);
    CProgress(const CProgress&) = delete;
    CProgress& operator=(const CProgress&) = delete;
    ~CProgress();

    /// Shows what is being done, and how much of it is done already.
    void show(const char* doing, std::size_t done);
    void show(const char* doing);
    /// Removes the line, so that something else can be written.
    void hide();

private:
    void put(const std::string& text);

    std::string m_strName;
    std::size_t m_nTotal;
    int m_iPercent = -1;
    bool m_bWatched;
    bool m_bShown = false;
};

}  // namespace murv::tool
