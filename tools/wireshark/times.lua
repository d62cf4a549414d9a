-- times.lua: which digits are a date or a time that exists.

local times = {}

do

local TIME_PARTS = {
    { "YYYY", "year", 0, 9999 }, { "DOY", "dayOfYear", 1, 366 }, { "DOW", "dayOfWeek", 0, 6 },
    { "sss", "millisecond", 0, 999 }, { "YY", "year", 0, 99 }, { "MM", "month", 1, 12 }, { "DD", "day", 1, 31 },
    { "hh", "hour", 0, 23 }, { "mm", "minute", 0, 59 }, { "SS", "second", 0, 60 },
}
local DAYS = { 31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31 }

-- The part of a time that letters begin with, or nil.
function times.partAt(letters, at)
    for _, part in ipairs(TIME_PARTS) do
        if letters:sub(at, at + #part[1] - 1) == part[1] then return part end
    end
    return nil
end

local timeParts = {}
-- The parts that letters such as YYYYMMDD stand for.
function times.split(letters)
    if not timeParts[letters] then
        local parts, at = {}, 1
        while at <= #letters do
            parts[#parts + 1] = times.partAt(letters, at)
            at = at + #parts[#parts][1]
        end
        timeParts[letters] = parts
    end
    return timeParts[letters]
end

local function daysInMonth(time, hasCentury)
    local year = time.year
    if time.month ~= 2 or not year then return DAYS[time.month] end
    local isLeap = year % 4 == 0 and (not hasCentury or year % 100 ~= 0 or year % 400 == 0)
    return isLeap and 29 or 28
end

-- Whether digits are a time that exists; the first part has all the digits that are left.
function times.exists(parts, digits)
    local time, hasCentury = {}, false
    for i = #parts, 1, -1 do
        local width = #parts[i][1]
        local own = i == 1 and digits or digits:sub(-width)
        digits = digits:sub(1, -width - 1)
        local number = tonumber(own) or 0
        if number < parts[i][3] or number > parts[i][4] then return false end
        time[parts[i][2]] = number
        hasCentury = hasCentury or parts[i][1] == "YYYY"
    end
    return not time.month or (time.day or 0) <= daysInMonth(time, hasCentury)
end

end
