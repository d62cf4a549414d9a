-- frames.lua: the reader's records, how they lie in the input, and whole inputs.

do

local MOST_RECORD = 64 * 1024 * 1024

function Reader:isOutside()
    return layout.frame.kind ~= "none" and not self.inRecord
end

-- Opens the frame of the next record. Without a record to come nothing is opened, and that is no fault.
function Reader:openFrame(part)
    if self.frameOpen then return end
    if self.pos == self.edge then return end
    local frame = layout.frame
    if frame.kind == "lines" then self:openLine(part, "\n")
    elseif frame.kind == "mark" then self:openLine(part, frame.mark)
    elseif frame.kind == "fixed" then self:endFrameAt(part, self.pos, frame.length)
    elseif frame.kind == "prefixed" then self:openPrefixed(part) end
end

function Reader:openLine(part, mark)
    local frame = layout.frame
    local found = self:findMark(mark)
    local length = (found or self.edge) - self.pos
    self.frameAfter = self.pos + length + (found and #mark or 0)
    if frame.kind == "lines" and found then
        local hasReturn = length > 0 and self:bytes(self.pos + length - 1, 1) == "\r"
        length = length - (hasReturn and 1 or 0)
        local lineEnd = hasReturn and 2 or 1
        self.lineEnd = self.lineEnd or lineEnd
        if self.lineEnd ~= lineEnd then self:find("lineEnd", part, self.pos + length, lineEnd) end
    end
    self.frameBegin, self.frameEnd, self.frameOpen = self.pos, self.pos + length, true
    if length > MOST_RECORD then self:fault("limit", part, self.pos, length) end
    if frame.length and length ~= frame.length then
        self:fault("frame", part, self.pos, length, length < frame.length and
            "The line is shorter than the records are" or "The line is longer than the records are")
    end
end

-- The length that the bytes before a record say, or nil and what is wrong with it.
local function prefixedLength(bytes)
    local value, code = values.read(layout.frame.item, bytes, false)
    if code then return nil, "The length before the record cannot be read" end
    local number = value and value.kind == "integer" and tonumber(value.text) or 0
    local length = number - (layout.frame.plus or 0)
    if number < 0 or length < 0 or length > 2 ^ 63 then return nil, "The length before the record cannot be right" end
    return length
end

function Reader:openPrefixed(part)
    local width = layout.frame.item.length
    if not self:has(width) then self:lack(part, width) end
    local length, words = prefixedLength(self:bytes(self.pos, width))
    if not length then self:fault("frame", part, self.pos, width, words) end
    if length > MOST_RECORD then self:fault("limit", part, self.pos, width) end
    self:endFrameAt(part, self.pos + width, length)
end

function Reader:endFrameAt(part, begin, length)
    if not self:has(begin - self.pos + length) then self:lack(part, begin - self.pos + length) end
    self.frameBegin, self.frameEnd, self.frameAfter = begin, begin + length, begin + length
    self.frameOpen = true
end

function Reader:beginRecord(part)
    if layout.frame.kind ~= "none" then
        self:openFrame(part)
        if not self.frameOpen then self:lack(part, 1) end
        self:pushLimit(self.frameEnd)
        self.sink:frame(self, self.pos, self.frameBegin)
        self.pos = self.frameBegin
    end
    self.inRecord, self.recordStart = true, self.pos
    self.sink:record(self, part)
    for _, link in ipairs(part.counted) do
        if link.kind == "records" then self:addToSum(link, UInt64.new(1)) end
    end
end

function Reader:endRecord(part)
    for _, link in ipairs(part.lacking) do self:compareAbsent(link) end
    if self.pos - self.recordStart > MOST_RECORD then
        self:fault("limit", part, self.recordStart, self.pos - self.recordStart)
    end
    if self.frameOpen then
        if self.pos ~= self.frameEnd then
            self:fault("frame", part, self.pos, self.frameEnd - self.pos, "Bytes are left at the end of the record")
        end
        self:popLimit()
        self.pos = self.frameAfter
        self.frameOpen = false
    end
    self.inRecord = false
    self.sink:recordEnd(self, part)
end

-- Reads the whole input: one packet after the other, or a file of records. Gives the fault, or nil.
function Reader:readAll()
    local ok, fault = pcall(function()
        if not plan.root.record then
            self:member(plan.root)
            if self.pos ~= self.size then self:fault("leftOver", plan.root, self.pos, self.size - self.pos) end
            return
        end
        while self.pos < self.size do
            local before = self.pos
            self:restart()
            self:member(plan.root)
            if self.pos == before then self:fault("leftOver", plan.root, before, self.size - before) end
        end
    end)
    if ok then return nil end
    if type(fault) ~= "table" then error(fault, 0) end
    return fault
end

-- Reads one record; nil stands for one of no kind. Gives the fault, which is a wish for more bytes when it has
-- `missing`, or nil.
function Reader:readOne(record)
    self:restart()
    self.chosen = record  -- somebody has seen that it is there
    local ok, fault = pcall(function()
        if not record then self:fault("choice", plan.root, self.pos, math.min(self.size - self.pos, 16)) end
        self:member(record)
        if self.isOver and self.pos ~= self.size then
            self:fault("leftOver", record, self.pos, self.size - self.pos)
        end
    end)
    if ok then return nil end
    if type(fault) ~= "table" then error(fault, 0) end
    return fault
end

-- How many bytes a record at an offset takes with its frame: the number; or nil and how many are missing at least, or
-- nil and false when this cannot be told from the bytes at all.
function Reader.frameLength(data, offset)
    local frame, there = layout.frame, #data - offset
    if frame.kind == "lines" or frame.kind == "mark" then
        local mark = frame.mark or "\n"
        local found = data:find(mark, offset + 1, true)
        if found then return found - 1 - offset + #mark end
        return nil, true
    end
    local length = frame.length
    if frame.kind == "prefixed" then
        local width = frame.item.length
        if there < width then return nil, width - there end
        length = prefixedLength(data:sub(offset + 1, offset + width))
        if not length or length > MOST_RECORD then return nil, false end
        length = length + width
    end
    if there < length then return nil, length - there end
    return length
end

-- The record whose literals are there, among all kinds of the layout. Without one, whether more bytes might tell.
function Reader.recordAt(data, offset, stop)
    local mightFit = false
    if layout.frame.kind == "prefixed" then offset = offset + layout.frame.item.length end
    for _, record in ipairs(plan.records) do
        local fits, isCut = true, false
        for _, wanted in ipairs(record.beginning or {}) do
            local from = offset + wanted.offset
            local there = data:sub(from + 1, math.min(from + #wanted.bytes, stop))
            fits = fits and there == wanted.bytes:sub(1, #there)
            isCut = isCut or #there < #wanted.bytes
        end
        if fits and not isCut then return record end
        mightFit = mightFit or fits
    end
    return nil, mightFit
end

end
