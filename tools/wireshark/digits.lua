-- digits.lua: decimal digits as text, so that no width is too much for a number.

local digits = {}

-- Whether digits, without zeros in front, are more than others.
function digits.isMore(a, b)
    if #a ~= #b then return #a > #b end
    return a > b
end

function digits.withoutZeros(text)
    return (text:gsub("^0+", ""))
end

function digits.areDigits(text)
    return not text:find("[^0-9]")
end

function digits.trimEnd(bytes, byte)
    local last = #bytes
    while last > 0 and bytes:byte(last) == byte do last = last - 1 end
    return bytes:sub(1, last)
end

function digits.trimFront(bytes, byte)
    local first = 1
    while bytes:byte(first) == byte do first = first + 1 end
    return bytes:sub(first)
end

-- The number of a decimal text, whatever the locale has for a point.
function digits.toNumber(text)
    local whole, fraction = text:match("^(-?[0-9]*)%.?([0-9]*)$")
    if not whole then return tonumber(text) end
    return tonumber(whole .. fraction) / 10 ^ #fraction
end
