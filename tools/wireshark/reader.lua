-- reader.lua: finds the parts of a packet in bytes and reads their values, as the codec does.
--
-- A reader walks the parts over the bytes and tells a sink what it finds. It never goes back: an alternative, an
-- optional part and the next element are told by bytes at fixed places, or by a value that was read. A fault is thrown
-- as a table; so is the wish for more bytes, where these may come.

local Reader = {}
Reader.__index = Reader

Reader.UNKNOWN = math.huge  -- the end of what may go on

do

local UNKNOWN = Reader.UNKNOWN

local SENTENCES, FINDINGS = layout.faults, layout.findings

-- Reads the bytes of `data` from `first` on, counted from 0, up to `size`.
-- isOver: nothing follows them. sink: sees what is found. marks: a table that readers of the same data share.
function Reader.new(data, first, size, isOver, sink, marks)
    local self = setmetatable({ data = data, size = size, isOver = isOver, sink = sink, pos = first, marks = marks },
        Reader)
    self:restart()
    return self
end

function Reader:restart()
    self.limits = { { stop = self.isOver and self.size or UNKNOWN } }
    self.loopOf, self.firsts = {}, {}
    self.measures, self.numbers, self.sums, self.totals, self.kept = {}, {}, {}, {}, {}
    self.inRecord, self.frameOpen = false, false
    self:setEdge()
end

function Reader:setEdge()
    self.edge = math.min(self.limits[#self.limits].stop, self.size)
end

function Reader:stop()
    return self.limits[#self.limits].stop
end

function Reader:has(wanted)
    return wanted <= self.edge - self.pos
end

function Reader:bytes(offset, length)
    return self.data:sub(offset + 1, offset + length)
end

function Reader:begins(bytes)
    return self:bytes(self.pos, #bytes) == bytes and self:has(#bytes)
end

-- ---------------------------------------------------------------------------------------------- faults and findings

function Reader:fault(code, part, offset, length, words)
    error({ code = code, part = part, offset = offset, length = length, words = words or SENTENCES[code],
        path = self:path(part) }, 0)
end

function Reader:faultAt(code, number, words)
    self:fault(code, number.part, number.offset, number.length, words)
end

function Reader:find(code, part, offset, length, item)
    self.sink:finding({ code = code, part = part, offset = offset, length = length, words = FINDINGS[code],
        path = self:path(part) }, item)
end

-- The path of a part, with the numbers of the elements around it.
function Reader:path(part)
    local names = {}
    while part and part.parent do
        local loop = self.loopOf[part.parent]
        if part.parent.kind ~= "array" then table.insert(names, 1, part.label)
        elseif loop then table.insert(names, 1, ("[%d]"):format(math.max(loop.count - 1, 0))) end
        part = part.parent
    end
    return (table.concat(names, "."):gsub("%.%[", "["))
end

-- Bytes are missing, and may come.
function Reader:more(part, missing)
    if not self.isOver then error({ missing = missing }, 0) end
    self:fault("more", part, self.pos, self.size - math.min(self.pos, self.size))
end

-- Whether a limit is only the end of the input.
function Reader:isOfInput(at)
    while at > 1 and self.limits[at].isOpen do at = at - 1 end
    return at == 1
end

function Reader:lack(part, wanted)
    local stop = self:stop()
    if self:isOfInput(#self.limits) or wanted <= stop - self.pos then
        self:more(part, wanted - (self.edge - self.pos))
    end
    local isFramed = self.inRecord and stop == self.frameEnd and layout.frame.kind ~= "none"
    self:fault(isFramed and "frame" or "size", part, self.pos, stop - self.pos,
        isFramed and "The record ends within this part" or "The enclosing part ends within this part")
end

-- ---------------------------------------------------------------------------------------------------------- values

function Reader:readLeaf(part, offset, length)
    local item = part.item
    local value, code = values.read(item, self:bytes(offset, length), false)
    if code and not FINDINGS[code] then self:fault(code, part, offset, length) end
    local shown = self.sink:leaf(self, part, value, offset, length)
    if code then self:find(code, part, offset, length, shown) end
    if not valid.holds(item, value) then self:find("invalid", part, offset, length, shown) end
    return shown
end

-- Reads a value that others look at.
function Reader:keep(part, offset, length)
    local value, code = values.read(part.item, self:bytes(offset, length), true)
    if code and not FINDINGS[code] then self:fault(code, part, offset, length) end
    self.kept[part] = value
    for _, link in ipairs(value and part.counted or {}) do
        if link.kind == "sum" and value.kind == "integer" then self:addToSum(link, integers.bits64(value)) end
    end
end

-- The value that something looks at, or nil when it is absent or null.
function Reader:valueOf(of)
    local value = self.kept[of.part]
    if value and of.bits and value.kind == "integer" then return integers.someBits(value, of.shift, of.bits) end
    return value
end

-- An integer that is not below zero, as a number.
function Reader:numberOf(of)
    local value = self:valueOf(of)
    if not value or value.kind ~= "integer" or value.negative then return nil end
    return tonumber(value.text)
end

local function compares(item, value, comparison, constant)
    local isNumber = value.kind == "integer" and constant.number ~= nil
    if comparison == "&" then return isNumber and integers.anyBit(value, constant.number) end
    if isNumber == (value.kind == "text") then return comparison == "!=" end
    local order
    if isNumber then order = integers.compare(value, constant.number)
    else
        local a, b = valid.withoutPadding(item, value.text or ""), valid.withoutPadding(item, constant.text)
        order = a == b and 0 or valid.isLess(a, b) and -1 or 1
    end
    if comparison == "=" then return order == 0 end
    if comparison == "!=" then return order ~= 0 end
    if comparison == "<" then return order < 0 end
    if comparison == ">" then return order > 0 end
    if comparison == "<=" then return order <= 0 end
    return order >= 0
end

function Reader:holds(test)
    local value = self:valueOf(test)
    if not value then return false end
    local isUnequal = test.is == "!="  -- unequal to several: unequal to each
    for _, constant in ipairs(test.values) do
        if compares(test.part.item, value, test.is, constant) ~= isUnequal then return not isUnequal end
    end
    return isUnequal
end

function Reader:hasBit(bitmap, bit)
    local value = self:valueOf(bitmap)
    local byte = value and value.text:byte(math.floor(bit / 8) + 1)
    return byte ~= nil and math.floor(byte / 2 ^ (7 - bit % 8)) % 2 == 1
end

-- ---------------------------------------------------------------------------------------------------------- leaves

-- Reads the first items of a row, as far as their values can be read.
function Reader:showRow(row, count, isLenient)
    for i = 1, count do
        local part = row[i]
        local offset, length = self.pos + part.rowOffset, part.item.length or 0
        if isLenient and not pcall(self.readLeaf, self, part, offset, length) then return end
        if not isLenient then part.shown = self:readLeaf(part, offset, length) end
    end
end

function Reader:row(row)
    if not self:has(row.length) then
        local there, whole = self.edge - self.pos, 0
        while row[whole + 1].rowOffset + (row[whole + 1].item.length or 0) <= there do whole = whole + 1 end
        local cut = row[whole + 1]
        local ok, fault = pcall(self.lack, self, cut, row.length)
        if not ok and not fault.missing then
            self:showRow(row, whole)
            fault.offset, fault.length = self.pos + cut.rowOffset, there - cut.rowOffset
        end
        error(fault, 0)
    end
    for i, part in ipairs(row) do
        local offset = self.pos + part.rowOffset
        if part.literal and self:bytes(offset, #part.literal) ~= part.literal then
            self:showRow(row, i - 1)
            self:fault("literal", part, offset, #part.literal)
        end
    end
    for i, part in ipairs(row) do
        if part.isKept then
            local ok, fault = pcall(self.keep, self, part, self.pos + part.rowOffset, part.item.length or 0)
            if not ok then
                self:showRow(row, i - 1, true)
                error(fault, 0)
            end
        end
    end
    self:showRow(row, #row)
    self.lastOffset, self.lastLength = self.pos, row.length
    self.lastShown = row[#row].shown
    self.pos = self.pos + row.length
end

-- The place of a mark from here on, or nil. Each stretch of the input is searched once, however many items end so.
function Reader:findMark(mark)
    local known = self.marks[mark]
    if not known or self.pos < known.from or self.pos > known.at then
        local found = self.data:find(mark, self.pos + 1, true)
        known = { from = self.pos, at = found and found - 1 or UNKNOWN }
        self.marks[mark] = known
    end
    return known.at + #mark <= self.edge and known.at or nil
end

-- Where an item of varying width has its value, and where it ends.
function Reader:findValue(part)
    if part.endsBy == "mark" or part.endsBy == "before" then
        local found, markLength
        for _, mark in ipairs(part.marks) do
            local at = self:findMark(mark)
            if at and (not found or at < found) then found, markLength = at, #mark end
        end
        if not found then
            if self.edge ~= self:stop() then self:more(part, 1) end
            if part.endsBy == "mark" then
                if self:isOfInput(#self.limits) then self:more(part, 1) end
                self:fault("missing", part, self.pos, self.edge - self.pos, "The mark after the item is missing")
            end
            found = self.edge
        end
        return self.pos, found - self.pos, found + (part.endsBy == "mark" and markLength or 0)
    end
    if part.endsBy == "prefix" then
        local width = part.item.prefix.width
        if not self:has(width) then self:lack(part, width) end
        local length, code = values.readPrefix(part.item, self:bytes(self.pos, width))
        if code then self:fault(code, part, self.pos, width, "The length prefix cannot be read") end
        if length > 0x7FFFFFFF then
            self:fault("size", part, self.pos, width, "The length prefix says more than an item may have")
        end
        if not self:has(width + length) then self:lack(part, width + length) end
        return self.pos + width, length, self.pos + width + length
    end
    local stop, after = self:stop(), part.bytesAfter or 0
    if stop == UNKNOWN then self:more(part, 1) end
    if stop - self.pos < after then self:lack(part, after) end
    return self.pos, stop - self.pos - after, stop - after
end

function Reader:leaf(part)
    if part.row then self:row(part.row)
    else
        local offset, length, after = self:findValue(part)
        if part.item.length and length > part.item.length then
            self:fault("size", part, offset, length, "The item is longer than it may be")
        end
        if part.literal and self:bytes(self.pos, after - self.pos) ~= part.literal then
            self:fault("literal", part, self.pos, after - self.pos)
        end
        if part.isKept then self:keep(part, offset, length) end
        self.lastShown = self:readLeaf(part, offset, length)
        self.lastOffset, self.lastLength = offset, length
        self.pos = after
    end
    for _, link in ipairs(part.links) do self:link(link) end
end

end
