-- dissector.lua: what a reader finds, as Wireshark shows it: fields that filters know, and expert information.

do

-- ---------------------------------------------------------------------------------------------------- what is shown

local UTF8 = {
    "^[\194-\223][\128-\191]()", "^\224[\160-\191][\128-\191]()", "^[\225-\236\238\239][\128-\191][\128-\191]()",
    "^\237[\128-\159][\128-\191]()", "^\240[\144-\191][\128-\191][\128-\191]()",
    "^[\241-\243][\128-\191][\128-\191][\128-\191]()", "^\244[\128-\143][\128-\191][\128-\191]()",
}

local function isUtf8(bytes)
    local at = bytes:find("[\128-\255]")
    while at do
        local after
        for _, pattern in ipairs(UTF8) do
            after = after or bytes:match(pattern, at)
        end
        if not after then return false end
        at = bytes:find("[\128-\255]", after)
    end
    return true
end

local SHORT = { ["\b"] = "\\b", ["\f"] = "\\f", ["\n"] = "\\n", ["\r"] = "\\r", ["\t"] = "\\t" }
-- Characters that a terminal acts on, or that change the direction of writing.
local CONTROLS = {
    "[\0-\31\127]", "\194[\128-\159]", "\216\156", "\226\128[\142\143\170-\174]", "\226\129[\166-\169]",
}

local function escape(character)
    if SHORT[character] then return SHORT[character] end
    local code = character:byte()
    if #character == 2 then code = code % 32 * 64 + character:byte(2) % 64
    elseif #character == 3 then code = code % 16 * 4096 + character:byte(2) % 64 * 64 + character:byte(3) % 64 end
    return ("\\u%04x"):format(code)
end

local function shownText(bytes)
    if not isUtf8(bytes) then
        return "hex " .. bytes:gsub(".", function(byte) return ("%02X"):format(byte:byte()) end)
    end
    for _, pattern in ipairs(CONTROLS) do bytes = bytes:gsub(pattern, escape) end
    return bytes
end

-- A number as "d.ddde+dd" with one more in its last digit; nil where that changes its length.
local function increased(written)
    local digits, nines, exponent = written:match("^(%d%D?%d-)(9*)(e.*)$")
    local last = digits:match("%d$")
    if not last or last == "9" then return nil end
    return digits:sub(1, -2) .. (last + 1) .. ("0"):rep(#nines) .. exponent
end

-- The shortest digits from which the same double comes back, with an exponent.
local function shortest(number)
    -- Fifteen digits always come back, but for numbers so small that they have fewer.
    for digits = number < 2.2250738585072014e-308 and 0 or 14, 15 do
        local written = ("%." .. digits .. "e"):format(number)
        if tonumber(written) == number then return written end
        -- At a power of two the next number below is nearer, so that the nearest digits may be too far away.
        local other = increased(written)
        if other and tonumber(other) == number then return other end
    end
    return ("%.16e"):format(number)
end

local function shownDouble(value)
    local number = value.number
    if value.isNan then return "NaN" end
    if number == math.huge then return "Infinity" end
    if number == -math.huge then return "-Infinity" end
    local sign = (number < 0 or 1 / number < 0) and "-" or ""
    number = math.abs(number)
    if number == 0 then return sign .. "0.0" end
    local first, rest, exponent = shortest(number):match("^(%d)%D?(%d*)e([-+]%d+)$")
    local digits = first .. rest:gsub("0+$", "")
    exponent = tonumber(exponent)
    local scientific = digits:sub(1, 1) .. (#digits > 1 and "." .. digits:sub(2) or "") ..
        ("e%s%02d"):format(exponent < 0 and "-" or "+", math.abs(exponent))
    local fixed
    if exponent < 0 then fixed = "0." .. ("0"):rep(-exponent - 1) .. digits
    elseif #digits <= exponent + 1 then fixed = ("%.0f"):format(number)
    else fixed = digits:sub(1, exponent + 1) .. "." .. digits:sub(exponent + 2) end
    if #fixed > #scientific then return sign .. scientific end
    return sign .. fixed .. (fixed:find(".", 1, true) and "" or ".0")
end

local function masked(item, value, length)
    local shown = value.kind == "double" and shownDouble(value) or value.text
    if value.kind ~= "text" then shown = ("*"):rep(length - #shown) .. shown end
    local hidden = math.max(0, #shown - item.maskedBut)
    return ("*"):rep(hidden) .. shown:sub(hidden + 1)
end

local function shownValue(item, value, length)
    if not value then return "null" end
    if item.maskedBut then return shownText(masked(item, value, length)) end
    if value.kind == "double" then return shownDouble(value) end
    return value.kind == "text" and shownText(value.text) or value.text
end

-- ------------------------------------------------------------------------------------------------------------ fields

-- Digits that a number with decimals has at most, or nil.
local function mostDigits(item)
    local length = item.length
    if not length then return nil end
    if item.form == "binary" then return length <= 6 and 15 or 19 end
    return (item.form == "packed" or item.form == "bcd") and 2 * length or length
end

-- A field has one type. What it cannot hold, such as null, is shown without a field.
local function typeOf(item)
    if item.maskedBut or item.form == "text" or item.form == "hex text" or item.exact then return "string" end
    if item.form == "bytes" then return "bytes" end
    if item.form == "float" then return "double" end
    if item.decimals or item.point then return (mostDigits(item) or 99) <= 15 and "double" or "string" end
    local isSigned = item.signed or item.form == "digits" or item.form == "trailing"
    local width = item.form == "binary" and not item.varies and item.length or 8
    return (isSigned and "int" or "uint") .. (width > 4 and 64 or 8 * width)
end

local function addable(fieldType, value, shown)
    if fieldType == "string" then return shown end
    if fieldType == "double" then
        return value.kind == "double" and value.number or digits.toNumber(value.text)
    end
    if value.kind ~= "integer" then return nil end
    if fieldType == "uint64" then return not value.negative and UInt64.new(value.text) or nil end
    if fieldType ~= "int64" then return value.number end
    if integers.compare(value, "9223372036854775807") > 0 then return nil end
    return Int64.new(value.text)
end

local fields = {}

local function makeField(fieldType, name, label, comment)
    local make, abbreviation = ProtoField[fieldType], layout.protocol .. "." .. name
    local field
    if fieldType == "string" or fieldType == "bytes" then field = make(abbreviation, label, base.NONE, comment)
    elseif fieldType == "double" or fieldType == "none" then field = make(abbreviation, label, comment)
    else field = make(abbreviation, label, base.DEC, nil, nil, comment) end
    fields[#fields + 1] = field
    return field
end

local function makeFields()
    for number = 0, #layout.parts do
        local part = layout.parts[number]
        if part.field and part.kind == "leaf" then
            part.fieldType = typeOf(part.item)
            part.protoField = makeField(part.fieldType, part.field, part.label, part.comment)
            for _, bits in ipairs(part.item.bits or {}) do
                bits.fieldType = part.fieldType:gsub("^int", "uint")
                bits.protoField = makeField(bits.fieldType, bits.field, bits.label)
            end
        elseif part.field then part.protoField = makeField("none", part.field, part.label, part.comment) end
    end
end

-- ------------------------------------------------------------------------------------------------------------- sinks

local proto, faultInfo, findingInfo

local Tree = {}
Tree.__index = Tree

function Tree.new(tvb, item, first)
    return setmetatable({ tvb = tvb, items = { { item = item, begin = first } }, at = first, root = item }, Tree)
end

function Tree:range(offset, length)
    offset = math.min(offset, self.tvb:len())
    return self.tvb(offset, math.max(0, math.min(length, self.tvb:len() - offset)))
end

function Tree:top()
    return self.items[#self.items].item
end

function Tree:bytes(offset, length, what)
    if length > 0 then self:top():add(self:range(offset, length), what) end
end

function Tree:labelOf(part)
    if not (part.parent and part.parent.kind == "array") then return part.label end
    local label = part.parent.label or ""
    return self.index and ("%s[%d]"):format(label, self.index) or label  -- in a stream nobody knows which it is
end

-- What lies before a value: a mark, and the length of the value itself.
function Tree:gap(part, offset)
    local width = part and part.item.prefix and part.item.prefix.width or 0
    local prefix = math.max(self.at, offset - width)
    self:bytes(self.at, prefix - self.at, "mark")
    self:bytes(prefix, offset - prefix, "length")
end

function Tree:open(reader, part)
    local item = self:top()
    if part.parent then
        local range, label = self:range(reader.pos, 0), self:labelOf(part)
        item = part.protoField and item:add(part.protoField, range) or item:add(range, label)
        item:set_text(label)
    end
    table.insert(self.items, { item = item, begin = reader.pos })
end

function Tree:close(reader, part)
    local open = table.remove(self.items)
    if part.parent then open.item:set_len(reader.pos - open.begin) end
end

function Tree:element(_, _, index)
    self.index = index
end

function Tree:leaf(_, part, value, offset, length)
    self:gap(part, offset)
    local shown = shownValue(part.item, value, length)
    local label = self:labelOf(part) .. ": " .. shown
    local item
    if part.fieldType == "bytes" and value then
        -- The value has no padding, but the item has.
        item = self:top():add(part.protoField, self:range(offset, #value.text))
        item:set_len(length)
    else
        local added = value and part.protoField and addable(part.fieldType, value, shown)
        if added then item = self:top():add(part.protoField, self:range(offset, length), added)
        else item = self:top():add(self:range(offset, length), label) end
    end
    item:set_text(label)
    if value and not part.item.maskedBut then self:bits(item, part, value, offset, length) end
    self.at = offset + length
    return item
end

function Tree:bits(item, part, value, offset, length)
    for _, bits in ipairs(part.item.bits or {}) do
        local own = integers.someBits(value, bits.shift, bits.bits)
        local added = addable(bits.fieldType, own)
        local child = item:add(bits.protoField, self:range(offset, length), added)
        local binary = integers.binary(own, bits.bits)
        local pattern = ("."):rep(8 * length - bits.shift - bits.bits) .. binary .. ("."):rep(bits.shift)
        child:set_text(pattern:gsub("....", "%0 ") .. "= " .. bits.label .. ": " .. own.text)
    end
end

function Tree:finding(finding, item)
    (item or self.root):add_proto_expert_info(findingInfo, finding.path .. ": " .. finding.words)
end

function Tree:skip(_, _, offset, length)
    self:gap(nil, offset)
    self:bytes(offset, length, "fill")
    self.at = offset + length
end

function Tree:frame(_, offset, begin)
    self:gap(nil, offset)
    self:bytes(offset, begin - offset, "length of the record")
    self.at = begin
end

function Tree:record(_, part)
    self.kind = self.kind or part.parent and (part.label or part.parent.label)
end

function Tree:recordEnd(reader)
    self:gap(nil, reader.pos)
    self.at = reader.pos
end

-- Reading stopped here.
function Tree:fault(fault, size)
    if fault.offset > self.at then self:bytes(self.at, fault.offset - self.at, "mark") end
    local words = (fault.path == "" and layout.label or fault.path) .. ": " .. fault.words
    local item = self:top():add(self:range(fault.offset, fault.length), words)
    item:add_proto_expert_info(faultInfo, words)
    local after = math.max(self.at, fault.offset + fault.length)
    if after < size then self.root:add(self:range(after, size - after), "not read") end
    for i = #self.items, 2, -1 do
        local open = self.items[i]
        if open.item ~= self.root then open.item:set_len(math.max(0, math.min(after, size) - open.begin)) end
    end
end

local nothing = setmetatable({}, { __index = function() return function() end end })

-- ------------------------------------------------------------------------------------------------------------ packets

local function report(pinfo, kind, isDamaged)
    pinfo.cols.protocol = layout.label
    pinfo.cols.info = (kind or layout.title) .. (isDamaged and ", does not fit the layout" or "")
end

local function dissectDatagram(tvb, pinfo, tree)
    local data = tvb:raw()
    local sink = Tree.new(tvb, tree:add(proto, tvb()), 0)
    local fault = Reader.new(data, 0, #data, true, sink, {}):readAll()
    if fault then sink:fault(fault, #data) end
    report(pinfo, sink.kind, fault)
    return #data
end

-- The end of the record at an offset, and its kind. When bytes are missing, how many at least, or true for any number.
local function findRecord(data, offset, marks)
    if layout.frame.kind ~= "none" then
        local length, missing = Reader.frameLength(data, offset)
        local stop = length and offset + length or #data
        return stop, Reader.recordAt(data, offset, stop), missing
    end
    local record, mightFit = Reader.recordAt(data, offset, #data)
    if not record then return #data, nil, mightFit end
    local reader = Reader.new(data, offset, #data, false, nothing, marks)
    local fault = reader:readOne(record)
    -- What is missing at least is not where the record ends, and Wireshark would give just that: so ask for a segment.
    if fault or reader.pos == offset then return #data, record, fault and fault.missing and true end
    return reader.pos, record
end

local function dissectStream(tvb, pinfo, tree)
    local data, marks, offset = tvb:raw(), {}, 0
    while offset < #data do
        local stop, record, missing = findRecord(data, offset, marks)
        if missing and pinfo.can_desegment > 0 then
            pinfo.desegment_offset = offset
            pinfo.desegment_len = missing == true and DESEGMENT_ONE_MORE_SEGMENT or missing
            break
        end
        local sink = Tree.new(tvb, tree:add(proto, tvb(offset, stop - offset)), offset)
        local fault = Reader.new(data, offset, stop, true, sink, marks):readOne(record)
        if fault then sink:fault(fault, stop) end
        report(pinfo, sink.kind, fault)
        offset = stop
    end
    return #data
end

-- -------------------------------------------------------------------------------------------------------- registration

-- Wireshark may have a protocol of this name: then this one is called murv_NAME.
local function makeProto()
    local names = { layout.protocol, "murv_" .. layout.protocol }
    for _, name in ipairs(names) do
        for _, words in ipairs({ layout.title, layout.title .. " (" .. name .. ")" }) do
            local ok, made = pcall(Proto, name, words)
            if ok then
                layout.protocol = name
                return made
            end
        end
    end
    error("there are protocols called " .. table.concat(names, " and ") .. " already")
end

proto = makeProto()
plan.prepare()
makeFields()
faultInfo = ProtoExpert.new(layout.protocol .. ".fault", "The packet does not fit the layout", expert.group.MALFORMED,
    expert.severity.ERROR)
findingInfo = ProtoExpert.new(layout.protocol .. ".finding", "A value is not as the layout says", expert.group.PROTOCOL,
    expert.severity.WARN)
proto.fields = fields
proto.experts = { faultInfo, findingInfo }

local TCP = 2

function proto.dissector(tvb, pinfo, tree)
    if pinfo.port_type == TCP then return dissectStream(tvb, pinfo, tree) end
    return dissectDatagram(tvb, pinfo, tree)
end

for _, transport in ipairs(layout.transports) do
    local dissectors = DissectorTable.get(transport .. ".port")
    if layout.port then dissectors:add(layout.port, proto) end
    dissectors:add_for_decode_as(proto)
end

end
