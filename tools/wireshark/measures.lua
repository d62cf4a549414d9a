-- measures.lua: the reader's sizes, counts, bitmaps, checksums and totals.
--
-- A number that stands before its part rules: it is the limit in which the part is read. All others are compared, as
-- soon as both the number and what it is about are known.

do

function Reader:pushLimit(stop, isOpen)
    table.insert(self.limits, { stop = stop, isOpen = isOpen })
    self:setEdge()
end

function Reader:popLimit()
    table.remove(self.limits)
    self:setEdge()
end

-- The size in bytes that a number says, or nil when it cannot be one.
function Reader:sizeOf(link)
    local number = self:numberOf(link.number)
    if not number or number < link.plus then return nil end
    local size = (number - link.plus) * link.times
    return size < 2 ^ 63 and size or nil
end

function Reader:beginSpans(part)
    for _, span in ipairs(part.spansFrom) do
        local measure = { begin = self.pos }
        self.measures[span] = measure
        if span.size and (span.sizeInside or self:valueOf(span.size.number)) then
            measure.limit = #self.limits + 1
            local size = not span.sizeInside and self:sizeOf(span.size)
            if not span.sizeInside and not size then
                self:faultAt("size", self.numbers[span.size], "The number cannot be a size")
            end
            self:pushLimit(self:stop(), true)
            if size then self:limitTo(span, measure, size, false) end
        end
    end
end

-- Sets the end of what is measured, which the limits opened since must not exceed.
function Reader:limitTo(span, measure, size, isInside)
    local stop, outer = measure.begin + size, self.limits[measure.limit].stop
    local number = self.numbers[span.size]
    if stop < self.pos then self:faultAt("size", number, "The size is less than what was read of the part") end
    if stop > outer then
        if self:isOfInput(measure.limit) and self.isOver then self:more(number.part, stop - self.size) end
        self:faultAt("size", number, "The size is more than the enclosing part has")
    end
    if stop > self.size then self:more(number.part, stop - self.size) end
    self.limits[measure.limit].isOpen = false
    for i = measure.limit, #self.limits do
        self.limits[i].stop = isInside and math.min(self.limits[i].stop, stop) or stop
    end
    self:setEdge()
end

function Reader:endSpans(part)
    for _, span in ipairs(part.spansTo) do
        local measure = self.measures[span] or { begin = 0 }
        self.measures[span] = measure
        if measure.limit then
            local stop = self:stop()
            if self.numbers[span.size] and self.pos ~= stop then
                self:fault("leftOver", part, self.pos, stop - self.pos, "Bytes are left inside the size of the part")
            end
            self:popLimit()
        end
        measure.stop = self.pos
        for _, link in ipairs(span.links) do
            local number = self.numbers[link]
            if link.numberFirst and number and link.kind == "check" then self:compareCheck(link, number, measure)
            elseif link.numberFirst and number then
                self:compareSize(link, number, measure)
                self.numbers[link] = nil
            end
        end
    end
end

-- A number that was read, and compared with nothing, is about a part that was not there.
function Reader:compareAbsent(link)
    local number = self.numbers[link]
    self.numbers[link] = nil
    if not number or integers.compare(number.value, ("%.0f"):format(math.max(link.plus, 0))) == 0 then return end
    self:faultAt(link.kind == "size" and "size" or "count", number, "The number is about a part that is not there")
end

function Reader:compareSize(link, number, measure)
    local size = measure and measure.stop and measure.stop - measure.begin or 0
    local wanted = size / link.times + link.plus
    if size % link.times == 0 and integers.compare(number.value, ("%.0f"):format(wanted)) == 0 then return end
    self:faultAt("size", number, "The size does not agree with the part")
end

function Reader:compareCheck(link, number, measure)
    if not measure or not measure.stop then return end
    local bytes = self:bytes(measure.begin, measure.stop - measure.begin)
    local check = checks.of(link.check, number.part.item, bytes, number.offset - measure.begin, number.length)
    if integers.compare(number.value, ("%.0f"):format(check)) ~= 0 then
        self:find("checksum", number.part, number.offset, number.length, number.shown)
    end
end

-- A number was just read.
function Reader:link(link)
    local value = self:valueOf(link.number)
    self.numbers[link] = nil
    if not value then return end
    local number = { part = link.number.part, value = value, offset = self.lastOffset, length = self.lastLength,
        shown = self.lastShown }
    self.numbers[link] = number
    if link.over then
        self.totals[link] = self.totals[link] or {}
        table.insert(self.totals[link], number)
        return
    end
    if not link.span then return end
    local measure = self.measures[link.span]
    if not link.numberFirst then
        if link.kind == "size" then self:compareSize(link, number, measure)
        else self:compareCheck(link, number, measure) end
        return
    end
    if not link.rules or not measure or not link.span.sizeInside then return end
    local size = self:sizeOf(link)
    if not size then self:faultAt("size", number, "The number cannot be a size") end
    self:limitTo(link.span, measure, size, true)
end

-- Every number that counts an array must agree with its elements.
function Reader:compareCounts(part, count)
    for _, link in ipairs(part.counted) do
        local number = self.numbers[link]
        if link.kind == "count" and number then
            self.numbers[link] = nil
            if integers.compare(number.value, ("%.0f"):format(count + link.plus)) ~= 0 then
                self:faultAt("count", number, "The count does not agree with the elements")
            end
        end
    end
end

-- Adds an amount of 64 bits, which may be below zero, to a sum that keeps what fits its number.
function Reader:addToSum(link, amount)
    local total = self.sums[link] or UInt64.new(0)
    if not link.modulo then
        self.sums[link] = total + amount
        return
    end
    local modulo = UInt64.new(link.modulo)
    local isNegative = amount:higher() >= 2147483648
    local part = (isNegative and UInt64.new(0) - amount or amount) % modulo
    self.sums[link] = (total + (isNegative and modulo - part or part)) % modulo
end

-- What is counted over a part ends with it.
function Reader:endTotals(part)
    for _, link in ipairs(part.totals) do
        if link.kind == "bits" then self:checkBits(link)
        else
            if link.plus ~= 0 then
                local plus = UInt64.new(("%.0f"):format(math.abs(link.plus)))
                self:addToSum(link, link.plus < 0 and UInt64.new(0) - plus or plus)
            end
            local sum = self.sums[link] or UInt64.new(0)
            for _, number in ipairs(self.totals[link] or {}) do
                if number.value.kind ~= "integer" or integers.bits64(number.value) ~= sum then
                    self:find("total", number.part, number.offset, number.length, number.shown)
                end
            end
            self.totals[link], self.sums[link] = nil, nil
        end
    end
end

-- Every bit that is set must have its part.
function Reader:checkBits(link)
    local value = self:valueOf(link.number)
    if not value then return end
    if not link.known then
        link.known = {}
        for _, member in ipairs(link.target.members) do
            if member.bitmap == link then link.known[member.bit] = true end
        end
    end
    for bit = 0, 8 * #value.text - 1 do
        if not link.known[bit] and self:hasBit(link.number, bit) then self:faultAt("bit", self.numbers[link]) end
    end
end

end
