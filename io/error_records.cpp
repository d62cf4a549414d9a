// io/error_records.cpp - the errors of a load, as data and in words.
#include "io/error_records.h"

#include <algorithm>
#include <utility>

#include "io/line_counter.h"

namespace murv::detail
{

void CErrorRecords::cutTo(std::size_t count)
{
    m_vRecord.erase(m_vRecord.begin() + static_cast<std::ptrdiff_t>(count), m_vRecord.end());
}

void CErrorRecords::add(std::string_view message, std::ptrdiff_t start, std::ptrdiff_t end,
                        std::optional<std::ptrdiff_t> second)
{
    std::optional<tPosition> position;
    if (second)
        position = tPosition{*second};
    m_vRecord.push_back({{start}, end, position, std::string(message)});
}

std::vector<tErrorRange> CErrorRecords::ranges() const
{
    std::vector<tErrorRange> ranges;
    ranges.reserve(m_vRecord.size());
    for (const tRecord& record : m_vRecord)
        ranges.push_back({static_cast<unsigned int>(record.m_tStart.m_nOffset),
                          static_cast<unsigned int>(record.m_nEnd), record.m_strMessage});
    return ranges;
}

std::vector<tErrorPlace> CErrorRecords::places() const
{
    std::vector<tErrorPlace> places;
    places.reserve(m_vRecord.size());
    for (const tRecord& record : m_vRecord)
    {
        const tDataPlace start = place4Position(record.m_tStart);
        places.push_back({start.m_uiOffset, static_cast<unsigned int>(record.m_nEnd), start.m_uiLine, start.m_uiColumn,
                          record.m_strMessage, std::nullopt});
        if (record.m_tSecond)
            places.back().m_tSecond = place4Position(*record.m_tSecond);
    }
    return places;
}

tDataPlace CErrorRecords::place4Position(const tPosition& position)
{
    return {static_cast<unsigned int>(position.m_nOffset), static_cast<unsigned int>(std::max(position.m_iLine, 0)),
            static_cast<unsigned int>(std::max(position.m_iColumn, 0))};
}

void CErrorRecords::countLines(const char* data)
{
    std::vector<std::pair<std::ptrdiff_t, tPosition*>> positions;
    for (tRecord& record : m_vRecord)
    {
        positions.emplace_back(record.m_tStart.m_nOffset, &record.m_tStart);
        if (record.m_tSecond)
            positions.emplace_back(record.m_tSecond->m_nOffset, &*record.m_tSecond);
    }
    std::sort(positions.begin(), positions.end());  // so that one walk over the data is enough
    CLineCounter counter(data);
    for (const auto& [offset, position] : positions)
    {
        position->m_iLine = counter.line4(data + offset);
        position->m_iColumn = counter.column();
    }
}

std::string CErrorRecords::words4Position(const tPosition& position)
{
    if (position.m_iLine != 0)
        return "Line " + std::to_string(position.m_iLine) + ", Column " + std::to_string(position.m_iColumn);
    if (position.m_nOffset < 0)
        return {};
    return "Offset " + std::to_string(static_cast<unsigned int>(position.m_nOffset));
}

void CErrorRecords::appendTo(CErrorBase& loader) const
{
    for (const tRecord& record : m_vRecord)
    {
        std::string text = "* " + words4Position(record.m_tStart) + "\n  " + record.m_strMessage + "\n";
        if (record.m_tSecond)
            text += "See " + words4Position(*record.m_tSecond) + " for detail.\n";
        loader.addErrMsg(text.c_str());
    }
}

}  // namespace murv::detail
