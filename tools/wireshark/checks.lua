-- checks.lua: checksums and check digits over bytes as they lie.

local checks = {}

do

-- Exclusive or: a library of Lua 5.2, an operator of later versions.
local bxor = bit32 and bit32.bxor or load("return function(a, b) return a ~ b end")()

local function makeTable(polynomial, isReflected)
    local remainders = {}
    for byte = 0, 255 do
        local remainder = isReflected and byte or byte * 256
        for _ = 1, 8 do
            if isReflected then
                local isOdd = remainder % 2 == 1
                remainder = math.floor(remainder / 2)
                if isOdd then remainder = bxor(remainder, polynomial) end
            else
                local isHigh = remainder >= 32768
                remainder = remainder * 2 % 65536
                if isHigh then remainder = bxor(remainder, polynomial) end
            end
        end
        remainders[byte] = remainder
    end
    return remainders
end

local function reflected(polynomial, first, last)
    local remainders
    return function(bytes)
        remainders = remainders or makeTable(polynomial, true)
        local remainder = first
        for i = 1, #bytes do
            remainder = bxor(math.floor(remainder / 256), remainders[bxor(remainder % 256, bytes:byte(i))])
        end
        return bxor(remainder, last)
    end
end

local function forward(polynomial, first)
    local remainders
    return function(bytes)
        remainders = remainders or makeTable(polynomial, false)
        local remainder = first
        for i = 1, #bytes do
            remainder = bxor(remainder % 256 * 256, remainders[bxor(math.floor(remainder / 256), bytes:byte(i))])
        end
        return remainder
    end
end

local function sum(modulo)
    return function(bytes)
        local total = 0
        for i = 1, #bytes do total = total + bytes:byte(i) end
        return total % modulo
    end
end

local function inet(bytes)
    local total = 0
    for i = 1, #bytes do total = total + bytes:byte(i) * (i % 2 == 1 and 256 or 1) end
    while total > 65535 do total = total % 65536 + math.floor(total / 65536) end
    return 65535 - total
end

local function xor(bytes)
    local result = 0
    for i = 1, #bytes do result = bxor(result, bytes:byte(i)) end
    return result
end

-- Two sums: as if the last digit were doubled, and as if it were not. Each further digit exchanges them.
local function luhn(bytes)
    local doubled, single = 0, 0
    for digit in bytes:gmatch("[0-9]") do
        digit = tonumber(digit)
        local twice = digit < 5 and 2 * digit or 2 * digit - 9
        doubled, single = (single + twice) % 10, (doubled + digit) % 10
    end
    return (10 - doubled) % 10
end

local function mod10(bytes)
    local total = 0
    for character in bytes:gmatch("[-0-9]") do total = total + (tonumber(character) or 1) end
    return total % 10
end

local function mod97(bytes)
    local remainder = 0
    for character in bytes:gmatch("[0-9A-Z]") do
        local number = tonumber(character, 36)
        remainder = (remainder * (number < 10 and 10 or 100) + number) % 97
    end
    return 98 - remainder * 100 % 97
end

local KINDS = {
    ["crc16"] = reflected(0xA001, 0, 0), ["crc16 modbus"] = reflected(0xA001, 0xFFFF, 0),
    ["crc16 ibm-3740"] = forward(0x1021, 0xFFFF), ["crc16 xmodem"] = forward(0x1021, 0),
    ["crc16 kermit"] = reflected(0x8408, 0, 0), ["crc32"] = reflected(0xEDB88320, 0xFFFFFFFF, 0xFFFFFFFF),
    ["crc32 iscsi"] = reflected(0x82F63B78, 0xFFFFFFFF, 0xFFFFFFFF), ["inet"] = inet, ["xor"] = xor,
    ["sum8"] = sum(256), ["sum32"] = sum(4294967296), ["luhn"] = luhn, ["mod10"] = mod10, ["mod97"] = mod97,
}

-- The checksum of bytes in which the number itself lies at `own`, from 0, or not at all.
function checks.of(kind, item, bytes, own, length)
    if own >= 0 and own < #bytes then
        length = math.min(length, #bytes - own)
        local fill = item.form == "binary" and "\0" or " "
        bytes = bytes:sub(1, own) .. fill:rep(length) .. bytes:sub(own + length + 1)
    end
    return KINDS[kind](bytes)
end

end
