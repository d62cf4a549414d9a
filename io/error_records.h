// io/error_records.h - the errors of a load, with their places.
//
// Places are kept as offsets, so that they can be asked for when the data is gone. Lines and columns are counted once,
// for all errors in one walk over the data.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "murv/error.h"
#include "murv/load_error.h"

namespace murv::detail
{

class CErrorRecords
{
public:
    bool isEmpty() const
    {
        return m_vRecord.empty();
    }
    std::size_t count() const
    {
        return m_vRecord.size();
    }
    void clear()
    {
        m_vRecord.clear();
    }
    /// Drops all records but the first `count` ones.
    void cutTo(std::size_t count);
    /// Places are offsets from the start of the data; those of an application's nodes may be negative.
    /// \param second  a further place, if there is one
    void add(std::string_view message, std::ptrdiff_t start, std::ptrdiff_t end, std::optional<std::ptrdiff_t> second);

    std::vector<tErrorRange> ranges() const;
    std::vector<tErrorPlace> places() const;
    /// Finds lines and columns of all places; until then they have none. Cost: one walk over the data.
    void countLines(const char* data);
    /// Appends all records to the message: with lines and columns where these were counted, else with offsets.
    void appendTo(CErrorBase& loader) const;

private:
    struct tPosition
    {
        std::ptrdiff_t m_nOffset;
        int m_iLine = 0;  // 0: not counted
        int m_iColumn = 0;
    };
    struct tRecord
    {
        tPosition m_tStart;
        std::ptrdiff_t m_nEnd;
        std::optional<tPosition> m_tSecond;
        std::string m_strMessage;
    };

    static tDataPlace place4Position(const tPosition& position);
    static std::string words4Position(const tPosition& position);

    std::vector<tRecord> m_vRecord;
};

}  // namespace murv::detail
