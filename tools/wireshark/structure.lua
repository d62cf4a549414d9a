-- structure.lua: the reader's field sets and arrays, alternatives, parts that may be absent, parts between marks.

do

local UNKNOWN = Reader.UNKNOWN

function Reader:member(part)
    local set = part.parent
    if part.isMeasuredAlways then self:beginSpans(part) end
    if part.mayLack and part ~= self.chosen and not self:isThere(part) then
        if part.isMeasuredAlways then self:endSpans(part) end
        return true
    end
    if set and set.between and set.kind == "fields" and not self:joint(part, set) then return false end
    if part.cut then self:beginCut(part, set.between) end
    if part.record then self:beginRecord(part) end
    if not part.isMeasuredAlways then self:beginSpans(part) end
    self[part.kind](self, part)
    self:endSpans(part)
    if part.align then self:align(part) end
    if #part.totals > 0 then self:endTotals(part) end
    if part.record then self:endRecord(part) end
    if part.cut then self:endCut(part) end
    return true
end

function Reader:fields(part)
    if part.between then table.insert(self.firsts, { value = true }) end
    self.sink:open(self, part)
    -- Between marks, a field set without bytes has no members.
    if not (part.cut and not part.between and self.pos == self:stop()) then
        if part.oneOf then self:member(self:choose(part))
        else
            for _, member in ipairs(part.members) do
                local isInRow = member.rowOffset and not member.row
                if not isInRow and not self:member(member) then break end
            end
        end
    end
    if part.between then table.remove(self.firsts) end
    self.sink:close(self, part)
end

function Reader:array(part)
    local loop = { count = 0, wanted = 0 }
    if part.endsBy == "count" then
        local number, plus = self:numberOf(part.count.number), part.count.plus
        if number and number < plus then
            self:fault("count", part, self.pos, 0, "The count is less than what it always includes")
        end
        loop.wanted = number and number - plus or 0
    end
    self.loopOf[part] = loop
    self.sink:open(self, part)
    local element = part.members[1]
    while self:nextIsThere(part, loop) do
        if part.between and loop.count > 0 then self:skipElementMark(part) end
        loop.count = loop.count + 1
        for _, link in ipairs(part.counted) do
            if link.kind == "elements" then self:addToSum(link, UInt64.new(1)) end
        end
        self:reset(element.reset)
        self.sink:element(self, part, loop.count - 1)
        self:member(element)
        if part.endsBy == "until" then loop.isLast = self:holds(part.lastIf) end
    end
    if part.endsBy == "mark" then self.pos = self.pos + #part.mark end
    self:compareCounts(part, loop.count)
    self.loopOf[part] = nil
    self.sink:close(self, part)
end

function Reader:reset(reset)
    for _, part in ipairs(reset.kept) do self.kept[part] = nil end
    for _, span in ipairs(reset.spans) do self.measures[span] = nil end
    for _, link in ipairs(reset.links) do
        if link.mayLack then self:compareAbsent(link) end
        self.numbers[link] = nil
    end
end

-- Whether nothing is left in the enclosing part.
function Reader:isAtEnd(part)
    if self:isOutside() then
        self:openFrame(part)
        return not self.frameOpen
    end
    local stop = self:stop()
    if self.pos == self.edge and self.edge ~= stop then self:more(part, 1) end
    return self.pos >= stop
end

-- Whether one of several beginnings is there, `skip` bytes on.
function Reader:matchHeads(heads, skip, part)
    local begin, edge, isEnded = self.pos + skip, self.edge, self.edge == self:stop()
    if self:isOutside() then
        self:openFrame(part)
        if not self.frameOpen then return false end
        begin, edge, isEnded = self.frameBegin, self.frameEnd, true
    end
    local matches = false
    for _, head in ipairs(heads) do
        local fits = true
        for _, wanted in ipairs(head) do
            local from = begin + wanted.offset
            local there = math.max(0, math.min(edge - from, #wanted.bytes))
            fits = fits and self:bytes(from, there) == wanted.bytes:sub(1, there)
            if fits and there < #wanted.bytes then
                if not isEnded then self:more(part, from + #wanted.bytes - math.max(edge, from)) end
                fits = false
            end
        end
        matches = matches or fits
    end
    return matches
end

function Reader:nextIsThere(part, loop)
    if part.endsBy == "count" then return loop.count < loop.wanted end
    if part.endsBy == "until" then return not loop.isLast end
    if part.endsBy == "mark" then
        part.markHeads = part.markHeads or { { { offset = 0, bytes = part.mark } } }
        return not self:matchHeads(part.markHeads, 0, part)
    end
    if self:isAtEnd(part) then return false end
    if part.endsBy == "heads" then return self:matchHeads(part.heads, 0, part) end
    local after = part.bytesAfter or 0
    if after ~= 0 and self:stop() == UNKNOWN then self:more(part, 1) end
    return after == 0 or self:stop() - self.pos > after
end

function Reader:skipElementMark(part)
    if not self:has(#part.between) then self:lack(part, #part.between) end
    if not self:begins(part.between) then
        self:fault("leftOver", part, self.pos, 1, "Neither the mark between elements nor the end of the array follows")
    end
    self.pos = self.pos + #part.between
end

function Reader:isThere(part)
    for _, test in ipairs(part.tests or {}) do
        if not self:holds(test) then return false end
    end
    if part.bitmap and not self:hasBit(part.bitmap.number, part.bit) then return false end
    if not part.optional then return true end
    if part.size and self:sizeOf(part.size) == 0 then return false end
    local set = part.parent
    local isAfterMark = set and set.between and set.kind == "fields" and not self.firsts[#self.firsts].value
    if part.heads then return self:matchHeads(part.heads, isAfterMark and #set.between or 0, part) end
    return not self:isAtEnd(part)
end

function Reader:choose(set)
    local chosen
    if set.oneOf == "value" then
        local value = self:valueOf(set.by)
        if value and value.kind == "integer" then chosen = set.byId[value.text] or set.byName[value.text]
        elseif value then chosen = set.byName[valid.withoutPadding(set.by.part.item, value.text or "")] end
        chosen = chosen or set.otherwise
    else
        if self:isOutside() then self:openFrame(set) end
        for _, member in ipairs(set.members) do
            if not member.heads or self:matchHeads(member.heads, 0, set) then
                chosen = member
                break
            end
        end
    end
    if chosen then return chosen end
    local isAtEnd = self:isAtEnd(set)
    if isAtEnd and set.oneOf ~= "value" then self:lack(set, 1) end
    local isFrame = self:isOutside() and self.frameOpen
    local begin, edge = isFrame and self.frameBegin or self.pos, isFrame and self.frameEnd or self.edge
    self:fault("choice", set, begin, math.min(edge - begin, 16))
end

-- Before a part between marks: its mark, or nothing more.
function Reader:joint(part, set)
    local first = self.firsts[#self.firsts]
    local isFirst = first.value
    first.value = false
    if isFirst and not (set.parent and set.parent.between) then return true end
    if self:isAtEnd(part) then
        for i = part.index, #set.members do
            if set.members[i].required then self:fault("missing", set.members[i], self.pos, 0) end
        end
        return false
    end
    if isFirst then return true end
    if not self:has(#set.between) then self:lack(part, #set.between) end
    if not self:begins(set.between) then
        self:fault("leftOver", part, self.pos, #set.between, "The mark before this part is missing")
    end
    self.pos = self.pos + #set.between
    return true
end

-- A part between marks has the bytes up to the next mark, or to the end of the enclosing part.
function Reader:beginCut(part, mark)
    local found = self:findMark(mark)
    if not found and self.edge ~= self:stop() then self:more(part, 1) end
    self:pushLimit(found or self.edge)
end

function Reader:endCut(part)
    local stop = self:stop()
    if self.pos ~= stop then
        self:fault("leftOver", part, self.pos, stop - self.pos, "Bytes are left before the next mark")
    end
    self:popLimit()
end

function Reader:align(part)
    local skipped = (part.align - (self.pos - self.recordStart) % part.align) % part.align
    if not self:has(skipped) then self:lack(part, skipped) end
    local fill = part.fill or "\0"
    for i = 0, skipped - 1 do
        if self:bytes(self.pos + i, 1) ~= fill:sub(i % #fill + 1, i % #fill + 1) then
            self:fault("skipped", part, self.pos + i, 1)
        end
    end
    if skipped > 0 then self.sink:skip(self, part, self.pos, skipped) end
    self.pos = self.pos + skipped
end

end
