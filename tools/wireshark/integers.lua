-- integers.lua: integers of 64 bits.
--
-- Numbers of Lua 5.2 are doubles, so an integer is a table: its decimal digits as text, the number too where a double
-- holds it exactly, and whether it is negative.

local integers = {}

local MOST_EXACT = 9007199254740992

-- Digits without zeros in front.
function integers.new(isNegative, written)
    isNegative = isNegative and written ~= "0" or false
    local text = isNegative and "-" .. written or written
    local number = tonumber(text)
    if math.abs(number) > MOST_EXACT then number = nil end
    return { kind = "integer", text = text, number = number, negative = isNegative }
end

-- -1, 0 or 1 for an integer and the digits of another.
function integers.compare(value, other)
    local isNegative = other:sub(1, 1) == "-"
    if value.negative ~= isNegative then return value.negative and -1 or 1 end
    if value.text == other then return 0 end
    local isGreater = digits.isMore((value.text:gsub("-", "")), (other:gsub("-", "")))
    return isGreater ~= isNegative and 1 or -1
end

-- The 64 bits of an integer; those of a negative one as its type has them.
function integers.bits64(value)
    if not value.negative then return UInt64.new(value.text) end
    return UInt64.new(0) - UInt64.new(value.text:sub(2))
end

-- A few bits of an integer, as an integer.
function integers.someBits(value, shift, bits)
    if value.number and value.number >= 0 then
        return integers.new(false, ("%.0f"):format(math.floor(value.number / 2 ^ shift) % 2 ^ bits))
    end
    local word = integers.bits64(value):rshift(shift)
    if bits < 64 then word = word:band(UInt64.new(1):lshift(bits) - UInt64.new(1)) end
    return integers.new(false, tostring(word))
end

-- Whether some bit of a constant is set.
function integers.anyBit(value, other)
    return tostring(integers.bits64(value):band(UInt64.new((other:gsub("-", ""))))) ~= "0"
end

-- The digits of an integer that is not below zero, to the base 2.
function integers.binary(value, bits)
    local word, written = UInt64.new(value.text), {}
    for bit = bits - 1, 0, -1 do
        written[#written + 1] = word:rshift(bit):lower() % 2 == 1 and "1" or "0"
    end
    return table.concat(written)
end
