-- valid.lua: which values the rules call valid. Numbers are compared digit by digit.

local valid = {}

do

-- A decimal number, without the zeros at its ends; nil when a text is none.
local function splitDecimal(number)
    local sign, whole, fraction = number:match("^(-?)([0-9]*)%.?([0-9]*)$")
    if not sign or whole .. fraction == "" then return nil end
    whole, fraction = digits.withoutZeros(whole), digits.trimEnd(fraction, 48)
    return { negative = sign == "-" and whole .. fraction ~= "", whole = whole, fraction = fraction }
end

local function compareMagnitudes(a, b)
    if #a.whole ~= #b.whole then return #a.whole < #b.whole and -1 or 1 end
    if a.whole ~= b.whole then return a.whole < b.whole and -1 or 1 end
    return a.fraction == b.fraction and 0 or a.fraction < b.fraction and -1 or 1
end

local function compareDecimals(a, b)
    if a.negative ~= b.negative then return a.negative and -1 or 1 end
    if a.negative then return compareMagnitudes(b, a) end
    return compareMagnitudes(a, b)
end

-- Texts compare byte by byte, whatever the locale.
function valid.isLess(a, b)
    local shorter = math.min(#a, #b)
    for i = 1, shorter do
        local x, y = a:byte(i), b:byte(i)
        if x ~= y then return x < y end
    end
    return #a < #b
end

-- A text without its padding, which does not count in comparisons.
function valid.withoutPadding(item, bytes)
    if item.form ~= "text" then return bytes end
    return item.padding == "blanks in front" and digits.trimFront(bytes, 32) or digits.trimEnd(bytes, 32)
end

local function isIn(item, range, shown)
    local isText = item.form == "text" or item.form == "bytes" or item.form == "hex text"
    if not isText or range.low ~= range.high then
        local value, low, high = splitDecimal(shown), splitDecimal(range.low), splitDecimal(range.high)
        if value and low and high then
            return compareDecimals(value, low) >= 0 and compareDecimals(value, high) <= 0
        end
    end
    shown = valid.withoutPadding(item, shown)
    return not valid.isLess(shown, valid.withoutPadding(item, range.low))
        and not valid.isLess(valid.withoutPadding(item, range.high), shown)
end

-- The letters are parts of a date in any order; other characters stand for themselves.
local function isDate(letters, shown)
    if #shown ~= #letters then return false end
    local parts, written, at = {}, "", 1
    while at <= #letters do
        local part = times.partAt(letters, at)
        local width = part and #part[1] or 1
        local own = shown:sub(at, at + width - 1)
        if part and not digits.areDigits(own) or not part and own ~= letters:sub(at, at) then return false end
        if part then
            parts[#parts + 1] = part
            written = written .. own
        end
        at = at + width
    end
    return not digits.isMore(digits.withoutZeros(written), "18446744073709551615") and times.exists(parts, written)
end

-- Whether a value is one of the valid ones.
function valid.holds(item, value)
    if not (item.valid or item.validDate) or not value then return true end
    local shown = value.text
    if item.validDate then
        local zeros = value.kind == "integer" and math.max(0, #item.validDate - #shown) or 0
        if not isDate(item.validDate, ("0"):rep(zeros) .. (shown or "")) then return false end
    end
    for _, range in ipairs(item.valid or {}) do
        local isInside
        if value.kind == "double" then
            isInside = value.number >= digits.toNumber(range.low) and value.number <= digits.toNumber(range.high)
        else isInside = isIn(item, range, shown) end
        if isInside then return true end
    end
    return not item.valid
end

end
