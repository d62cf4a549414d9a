-- plan.lua: what is known of the parts before any packet comes. Numbers of parts become the parts themselves.

local plan = {}

do

-- Rows are counted from 0, as the layout counts its parts.
local function each(rows, act)
    local number = 0
    while rows[number] do
        act(rows[number], number)
        number = number + 1
    end
end

local function eachPart(act)
    each(layout.parts, act)
end

local function connect()
    eachPart(function(part, number)
        part.number = number
        part.members, part.spansFrom, part.spansTo = {}, {}, {}
        part.links, part.counted, part.totals, part.lacking = {}, {}, {}, {}
        part.parent = part.parent and layout.parts[part.parent]
        if not part.parent then return end
        part.index = #part.parent.members + 1
        if part.parent.kind ~= "array" then part.label = part.label or part.name end
        part.parent.members[part.index] = part
    end)
    for number = #layout.parts, 0, -1 do
        local part = layout.parts[number]
        local last = part.members[#part.members]
        part.after = last and last.after or number + 1
    end
end

local function keep(value)
    if not value then return end
    value.part = layout.parts[value.part]
    value.part.isKept = true
end

local function isRecordOrBelow(part)
    while part and not part.record do part = part.parent end
    return part ~= nil
end

local function describeParts()
    eachPart(function(part)
        part.inRecord = isRecordOrBelow(part)
        part.mayLack = part.optional or part.tests or part.bitmap
        for _, test in ipairs(part.tests or {}) do keep(test) end
        keep(part.by)
        keep(part.lastIf)
        part.otherwise = part.otherwise and layout.parts[part.otherwise]
        local mark = part.parent and part.parent.between
        -- An array with the mark of the field set around it takes all the parts that are left, so nothing ends it.
        part.cut = mark and (part.kind ~= "array" or part.between ~= mark)
        part.isMeasuredAlways = part.mayLack and part.inRecord and not part.record and not mark
        if part.oneOf == "value" then
            part.byName, part.byId = {}, {}
            for _, member in ipairs(part.members) do
                if member.name then part.byName[member.name] = member end
                if member.id then part.byId[("%d"):format(member.id)] = member end
            end
        end
    end)
end

local function recordAround(part)
    while part and not part.record do part = part.parent end
    return part
end

local function describeLinks()
    each(layout.spans, function(span)
        span.links = {}
        span.first, span.last = layout.parts[span.first], layout.parts[span.last]
        table.insert(span.first.spansFrom, span)
        table.insert(span.last.spansTo, span)
        span.size = span.size and layout.links[span.size]
    end)
    each(layout.links, function(link)
        keep(link.number)
        link.span = link.span and layout.spans[link.span]
        link.target = link.target and layout.parts[link.target]
        link.over = link.over and layout.parts[link.over]
        link.plus, link.times = link.plus or 0, link.times or 1
        table.insert(link.number.part.links, link)
        if link.span then table.insert(link.span.links, link) end
        if link.over then table.insert(link.over.totals, link) end
        if link.kind == "bits" then table.insert(link.target.totals, link) end
        if link.kind == "sum" or link.kind == "elements" or link.kind == "count" then
            table.insert(link.target.counted, link)
        end
        if link.kind == "sum" then link.target.isKept = true end
        if link.kind == "records" then
            for at = link.target.number, link.target.after - 1 do
                if layout.parts[at].record then table.insert(layout.parts[at].counted, link) end
            end
        end
        if link.mayLack then table.insert(recordAround(link.number.part).lacking, link) end
    end)
    eachPart(function(part)
        part.size = part.size and layout.links[part.size]
        part.count = part.count and layout.links[part.count]
        part.bitmap = part.bitmap and layout.links[part.bitmap]
        -- The outermost of several spans begins first and ends last.
        table.sort(part.spansFrom, function(a, b) return a.last.number > b.last.number end)
        table.sort(part.spansTo, function(a, b) return a.first.number > b.first.number end)
    end)
end

-- A leaf that is nothing but its fixed number of bytes.
local function isPlain(part)
    return part.kind == "leaf" and not part.endsBy and not part.align and not part.record and not part.mayLack
        and not part.parent.between and #part.links == 0 and #part.spansFrom == 0 and #part.spansTo == 0
end

-- Neighbours of fixed width are a row: it is there as a whole before any of them is looked at.
local function makeRows(set)
    local open
    for _, member in ipairs(set.members) do
        if member.kind ~= "leaf" or member.endsBy or set.oneOf then open = nil end
        if member.kind == "leaf" and not member.endsBy then
            local plain = isPlain(member)
            if not open or not plain then
                open = { length = 0 }
                member.row = open
            end
            member.rowOffset = open.length
            open[#open + 1] = member
            open.length = open.length + (member.item.length or 0)
            local isAlone = set.kind == "array" or set.oneOf or member.align or member.record or member.mayLack
                or set.between or #member.links > 0 or #member.spansTo > 0
            if isAlone then open = nil end
        end
    end
end

-- What is forgotten when an element begins; what is in arrays of its own is not asked for from outside them.
local function makeReset(element)
    local reset = { kept = {}, spans = {}, links = {} }
    local at = element.number
    while at < element.after do
        local part = layout.parts[at]
        for _, span in ipairs(part.spansFrom) do table.insert(reset.spans, span) end
        if part.kind == "array" then at = part.after
        else
            if part.isKept then table.insert(reset.kept, part) end
            for _, link in ipairs(part.links) do table.insert(reset.links, link) end
            at = at + 1
        end
    end
    element.reset = reset
end

function plan.prepare()
    connect()
    describeParts()
    describeLinks()
    plan.records = {}
    eachPart(function(part)
        if part.kind ~= "leaf" then makeRows(part) end
        if part.kind == "array" then makeReset(part.members[1]) end
        if part.record then plan.records[#plan.records + 1] = part end
    end)
    plan.root = layout.parts[0]
    if plan.root.kind == "leaf" then makeRows({ kind = "array", members = { plan.root } }) end
end

end
