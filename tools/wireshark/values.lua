-- values.lua: the bytes of one item as its value, strictly.
--
-- A value is nil for null, or a table of a kind: "integer", see integers.lua; "text"; "double" with a number. Functions
-- give the value and a code: nil when all is well, a finding with the value, or a fault.

local values = {}

do

local areDigits, withoutZeros, isMore = digits.areDigits, digits.withoutZeros, digits.isMore
local trimEnd, trimFront = digits.trimEnd, digits.trimFront
local MOST_EXACT, MOST_UNSIGNED, MOST_NEGATIVE = 9007199254740992, "18446744073709551615", "9223372036854775808"

local function text(bytes)
    return { kind = "text", text = bytes }
end

local function checkTime(item, value)
    if not item.time or not value then return nil end
    local isWhole = value.kind == "integer" and not value.negative
        or value.kind == "text" and #value.text == #item.time and areDigits(value.text)
    return not (isWhole and times.exists(times.split(item.time), value.text)) and "date" or nil
end

-- ------------------------------------------------------------------------------------------ numbers as they are seen

local function pointed(negative, digits, decimals)
    if #digits <= decimals then digits = ("0"):rep(decimals - #digits + 1) .. digits end
    local whole = digits:sub(1, #digits - decimals)
    local shown = decimals == 0 and whole or whole .. "." .. digits:sub(-decimals)
    return text(negative and "-" .. shown or shown)
end

-- A whole number of any digits by the item's rules for decimals, null and dates.
local function present(item, unscaled, negative, digits)
    digits = withoutZeros(digits)
    if digits == "" then
        if negative then return nil, "sign" end
        if item.zeroIsNull then return nil end
        digits = "0"
    end
    if item.decimals and not unscaled then
        local isDate = not item.time or not negative and times.exists(times.split(item.time), digits)
        return pointed(negative, digits, item.decimals), not isDate and "date" or nil
    end
    if isMore(digits, negative and MOST_NEGATIVE or MOST_UNSIGNED) then
        return text(negative and "-" .. digits or digits), item.time and "date" or nil
    end
    local value = integers.new(negative, digits)
    return value, checkTime(item, value)
end

-- The digits as they are.
local function presentExact(item, negative, digits, isZeroFilled)
    local point = item.point and digits:find(item.point, 1, true)
    local isZero = not digits:gsub(item.point and "%" .. item.point or "0", "0"):find("[^0]")
    local isNull = isZero and item.zeroIsNull and not point
    if isNull and #digits > 1 and not isZeroFilled then return nil, "zeros" end
    if isNull or (isZero and negative) then
        if negative then return nil, "sign" end
        return nil
    end
    if point then digits = digits:sub(1, point - 1) .. "." .. digits:sub(point + 1) end
    local value = text(negative and "-" .. digits or digits)
    return value, checkTime(item, value)
end

-- -------------------------------------------------------------------------------------------------- code pages

local function pageOf(name)
    return name and layout.pages[name] or nil
end

local function toPage(page, bytes)
    return (bytes:gsub(".", function(byte)
        local at = byte:byte() + 1
        return page:sub(at, at)
    end))
end

-- Bytes as characters of one byte each, in which digits, blanks and signs are those of ASCII.
local function pageDigits(name, bytes)
    local page = pageOf(name)
    return page and toPage(page, bytes) or bytes
end

local function widen(characters)
    return (characters:gsub("[\128-\255]", function(character)
        local code = character:byte()
        return string.char(0xC0 + math.floor(code / 64), 0x80 + code % 64)
    end))
end

local function blankOf(item)
    local page = pageOf(item.page)
    return page and string.char(page:find(" ", 1, true) - 1) or " "
end

-- ------------------------------------------------------------------------------------------------ texts and bytes

local function stripPadding(item, bytes)
    if item.varies then return bytes end
    if item.padding == "blanks after" then return trimEnd(bytes, blankOf(item):byte()) end
    if item.padding == "blanks in front" then return trimFront(bytes, blankOf(item):byte()) end
    if item.padding == "zero bytes" then return trimEnd(bytes, 0) end
    return bytes
end

local function readText(item, bytes)
    local stripped = stripPadding(item, bytes)
    if item.page == "ascii" then
        if stripped:find("[\128-\255]") then return nil, "character" end
    elseif item.page then
        stripped = widen(pageDigits(item.page, stripped))
    end
    local value = text(stripped)
    return value, checkTime(item, value)
end

local function readHexText(item, bytes)
    local digits = pageDigits(item.page, stripPadding(item, bytes))
    if #digits % 2 ~= 0 or digits:find(item.lower and "[^0-9a-f]" or "[^0-9A-F]") then return nil, "digits" end
    return text((digits:gsub("..", function(pair) return string.char(tonumber(pair, 16)) end)))
end

-- --------------------------------------------------------------------------------------------- numbers in characters

local function isZeroFilled(item)
    return not item.varies and item.padding == "zeros in front"
end

local function checkZerosInFront(item, whole)
    if item.exact or isZeroFilled(item) then return nil end
    local isDecimal = item.form ~= "octal" and item.form ~= "hex"
    if item.time and isDecimal then return #whole ~= #item.time and "width" or nil end
    if #whole < 2 or whole:sub(1, 1) ~= "0" then return nil end
    return item.varies and "zeros" or "padding"
end

-- Takes code page, tail and blanks away. Gives the digits, nil for null, and a fault.
local function stripFrame(item, bytes)
    local tail = item.tail or ""
    if tail ~= "" and bytes:sub(-#tail) ~= tail then return nil, "literal" end
    local digits = pageDigits(item.page, bytes:sub(1, #bytes - #tail))
    if not digits:find("^ ") and not digits:find(" $") and digits ~= "" then return digits end
    if not digits:find("[^ ]") then
        local isNull = item.blankIsNull and (not item.varies or digits == "")
        return nil, not isNull and "blank" or nil
    end
    if not item.varies and item.padding == "blanks in front" then digits = trimFront(digits, 32)
    elseif not item.varies and item.padding == "blanks after" then digits = trimEnd(digits, 32) end
    if digits:find("^ ") or digits:find(" $") then return nil, "padding" end
    return digits
end

-- Takes the sign away. Gives the digits, whether the number is negative, and a code.
local function takeSign(item, digits)
    local last = digits:sub(-1)
    if item.form == "trailing" then
        if last ~= "-" and last ~= "+" then return nil, false, "sign" end
        return digits:sub(1, -2), last == "-"
    end
    if item.form ~= "zoned" then
        local isNegative = digits:sub(1, 1) == "-"
        return isNegative and digits:sub(2) or digits, isNegative
    end
    if not item.signed then return digits, false, digits:sub(1, 1) == "-" and "sign" or nil end
    if last:find("[0-9]") then return digits, false, "oldSign" end
    local digit = ("{ABCDEFGHI"):find(last, 1, true)
    local isNegative = not digit
    digit = digit or ("}JKLMNOPQR"):find(last, 1, true)
    if not digit then return nil, false, "sign" end
    return digits:sub(1, -2) .. (digit - 1), isNegative
end

local function readDecimal(item, unscaled, negative, digits)
    local point = item.point and digits:find(item.point, 1, true)
    local whole = point and digits:sub(1, point - 1) or digits
    local fraction = point and digits:sub(point + 1) or ""
    if not areDigits(whole) or not areDigits(fraction) then
        return nil, whole:sub(1, 1) == "+" and "sign" or "digits"
    end
    local isOneSided = point and (whole == "" or fraction == "")
    if (whole == "" and fraction == "") or (isOneSided and not item.exact) then return nil, "digits" end
    local fault = checkZerosInFront(item, whole)
    if fault then return nil, fault end
    if item.exact then return presentExact(item, negative, digits, isZeroFilled(item)) end
    if item.point then
        local significant = withoutZeros(whole)
        return presentExact(item, negative, (significant == "" and "0" or significant) .. digits:sub(#whole + 1),
            isZeroFilled(item))
    end
    return present(item, unscaled, negative, digits)
end

local function readDigits(item, bytes, unscaled)
    local digits, fault = stripFrame(item, bytes)
    if not digits then return nil, fault end
    local unsigned, isNegative, sign = takeSign(item, digits)
    if sign == "sign" then return nil, sign end
    local value, code = readDecimal(item, unscaled, isNegative, unsigned)
    return value, code or sign
end

-- The decimal digits of a number in two words of 32 bits.
local function digits4Words(high, low)
    local number = high * 4294967296 + low
    if number < MOST_EXACT then return ("%.0f"):format(number) end
    return tostring(UInt64.new(low, high))
end

local function readRadix(item, bytes, unscaled)
    local digits, fault = stripFrame(item, bytes)
    if not digits then return nil, fault end
    local base = item.form == "octal" and 8 or 16
    local allowed = base == 8 and "[^0-7]" or item.lower and "[^0-9a-f]" or "[^0-9A-F]"
    local other = digits:match(allowed)
    if other then return nil, (other == "-" or other == "+") and "sign" or "digits" end
    local high, low, isLost = 0, 0, false
    for i = 1, #digits do
        low = low * base + tonumber(digits:sub(i, i), base)
        high = high * base + math.floor(low / 4294967296)
        low = low % 4294967296
        isLost = isLost or high >= 4294967296
        high = high % 4294967296
    end
    if isLost and not item.exact then return nil, "range" end
    fault = checkZerosInFront(item, digits)
    if fault then return nil, fault end
    if item.exact then return presentExact(item, false, digits, isZeroFilled(item)) end
    return present(item, unscaled, false, digits4Words(high, low))
end

-- ------------------------------------------------------------------------------------------------- binary numbers

-- Up to eight bytes as two words of 32 bits.
local function words4Bytes(bytes, little)
    if little then bytes = bytes:reverse() end
    local high, low = 0, 0
    for i = 1, #bytes do
        if #bytes - i >= 4 then high = high * 256 + bytes:byte(i)
        else low = low * 256 + bytes:byte(i) end
    end
    return high, low
end

local function isSmaller(high, low, bytes, signed)
    if bytes == 0 then return false end
    local bits = 8 * bytes - (signed and 1 or 0)
    return high * 4294967296 + low < 2 ^ bits
end

local function readBinary(item, bytes, unscaled)
    if bytes == "" or #bytes > 8 then return nil, bytes == "" and "width" or "range" end
    local high, low = words4Bytes(bytes, item.little)
    local first = bytes:byte(item.little and #bytes or 1)
    local isNegative = item.signed and first >= 128
    if isNegative then  -- the magnitude: what is missing to the next power of 256
        local width = 8 * #bytes
        local highMost = width > 32 and 2 ^ (width - 32) or 0
        if width <= 32 then low = 2 ^ width - low
        else
            low = 4294967296 - low
            high = highMost - high - (low == 4294967296 and 0 or 1)
            low = low % 4294967296
        end
    end
    if item.varies and #bytes > 1 then
        -- Fewer bytes hold the number: of a negative one, its magnitude less one.
        local h, l = high, low
        if isNegative then h, l = l == 0 and h - 1 or h, l == 0 and 4294967295 or l - 1 end
        if isSmaller(h, l, #bytes - 1, item.signed) then return nil, "zeros" end
    end
    return present(item, unscaled, isNegative, digits4Words(high, low))
end

local function scaled(number, exponent)
    if math.ldexp then return math.ldexp(number, exponent) end
    return number * 2.0 ^ exponent
end

local function readFloat(item, bytes)
    if #bytes ~= 4 and #bytes ~= 8 then return nil, "width" end
    local high, low = words4Bytes(bytes, item.little)
    local isShort = #bytes == 4
    if isShort then high, low = low, 0 end
    local isNegative = high >= 2147483648
    high = high % 2147483648
    local scale = isShort and 8388608 or 1048576
    local exponent = math.floor(high / scale)
    local fraction = high % scale / scale + low / scale / 4294967296
    local most, bias = isShort and 255 or 2047, isShort and 127 or 1023
    local number
    if exponent == most then
        if fraction == 0 then number = math.huge
        elseif fraction ~= 0.5 or isNegative then return nil, "float"
        else return { kind = "double", number = 0 / 0, isNan = true } end
    elseif exponent == 0 then number = scaled(fraction, 1 - bias)
    else number = scaled(1 + fraction, exponent - bias) end
    return { kind = "double", number = isNegative and -number or number }
end

-- ----------------------------------------------------------------------------------------------- two digits a byte

local HALVES = {}
for byte = 0, 255 do HALVES[string.char(byte)] = ("%02x"):format(byte) end

local function checkFirstByte(item, bytes, signs)
    if not item.varies or item.exact then return nil end
    if item.time then return #bytes ~= math.floor((#item.time + signs + 1) / 2) and "width" or nil end
    return #bytes > 1 and bytes:byte(1) == 0 and "zeros" or nil
end

local function readPacked(item, bytes, unscaled)
    if bytes == "" then return nil, "width" end
    local digits = bytes:gsub(".", HALVES)
    local isNegative, old, signs = false, nil, 0
    if item.form == "packed" then
        local sign = digits:sub(-1)
        signs = 1
        digits = digits:sub(1, -2)
        if not sign:find(item.signed and "[cdf]" or "f") then return nil, "sign" end
        isNegative = sign == "d"
        old = item.signed and sign == "f" and "oldSign" or nil
    end
    local fault = checkFirstByte(item, bytes, signs)
    if fault then return nil, fault end
    if not areDigits(digits) then return nil, "digits" end
    local value, code
    if item.exact then value, code = presentExact(item, isNegative, digits, isZeroFilled(item))
    else value, code = present(item, unscaled, isNegative, digits) end
    return value, code or old
end

-- ------------------------------------------------------------------------------------------------------------ faces

local FORMS = {
    text = readText, bytes = readText, ["hex text"] = readHexText, digits = readDigits, trailing = readDigits,
    octal = readRadix, hex = readRadix, zoned = readDigits, binary = readBinary, float = readFloat,
    packed = readPacked, bcd = readPacked,
}

-- Reads a value. unscaled: numbers with decimals as integers, in units of the last one.
function values.read(item, bytes, unscaled)
    return FORMS[item.form](item, bytes, unscaled)
end

-- The length that a prefix says, or nil and a fault.
function values.readPrefix(item, bytes)
    local prefix = item.prefix
    local number
    if prefix.binary then
        if item.little then bytes = bytes:reverse() end
        if #bytes > 8 then
            if bytes:sub(1, #bytes - 8):find("[^\0]") then return nil, "size" end
            bytes = bytes:sub(-8)
        end
        local high, low = words4Bytes(bytes, false)
        number = high * 4294967296 + low
    else
        local digits = pageDigits(prefix.page, bytes)
        if not areDigits(digits) then return nil, "digits" end
        number = tonumber(digits)
    end
    local length = number - (prefix.plus or 0)
    if length < 0 or length >= 2 ^ 64 or (item.length and length > item.length) then return nil, "size" end
    return length
end

end
