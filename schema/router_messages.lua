-- SPDX-License-Identifier: MIT
-- Where messages begin and end in bytes, and the markup and texts of those in XML. router.lua loads this file, which
-- uses nothing of Wireshark.

-- The first words of binary forms with the names of these forms, and all names that a root may have.
local messages = {ids = {}, roots = {}, largest = 256 * 1048576}

-- XML -------------------------------------------------------------------------------------------------------------

local function utf8_of(code)
    if code >= 0xd800 and code < 0xe000 or code >= 0x110000 then code = 0xfffd end
    if code < 0x80 then return string.char(code) end
    local bytes, first = "", 0x40
    repeat
        bytes = string.char(0x80 + code % 0x40) .. bytes
        code, first = math.floor(code / 0x40), first / 2
    until code < first
    return string.char((0x100 - first * 2) + code) .. bytes
end

local LARGEST_SECOND, SMALLEST_SECOND = {[0xed] = 0x9f, [0xf4] = 0x8f}, {[0xe0] = 0xa0, [0xf0] = 0x90}

-- The text with U+FFFD instead of each byte that is not UTF-8.
local function clean(text)
    return (text:gsub("[\128-\255]+", function(run)
        local parts, at = {}, 1
        while at <= #run do
            local first, second = run:byte(at, at + 1)
            local more = first >= 0xc2 and first <= 0xf4 and (first < 0xe0 and 1 or first < 0xf0 and 2 or 3)
            local part = more and run:match("^." .. ("[\128-\191]"):rep(more), at)
            if part and second >= (SMALLEST_SECOND[first] or 0) and second <= (LARGEST_SECOND[first] or 255) then
                table.insert(parts, part)
            else
                table.insert(parts, utf8_of(0xfffd))
                part = "?"
            end
            at = at + #part
        end
        return table.concat(parts)
    end))
end

-- The bytes of a text, one character for each code unit; only ASCII counts for finding markup.
function messages.units_of(raw, unit, is_big)
    if unit == 1 then return raw end
    local zeros = ("%z"):rep(unit - 1)
    local pattern = is_big and "^" .. zeros .. "(.)$" or "^(.)" .. zeros .. "$"
    local whole = raw:sub(1, #raw - #raw % unit)
    return (whole:gsub(("."):rep(unit), function(bytes) return bytes:match(pattern) or "\1" end))
end

local NAMED = {lt = "<", gt = ">", amp = "&", quot = '"', apos = "'"}
function messages.text_of(raw, coding, is_cdata)
    local text = raw
    if coding.unit > 1 then
        local high
        text = raw:gsub(("."):rep(coding.unit), function(bytes)
            local code = 0
            for byte in (coding.is_big and bytes or bytes:reverse()):gmatch(".") do code = code * 256 + byte:byte() end
            if coding.unit == 2 and code >= 0xd800 and code < 0xdc00 then
                high = code
                return ""
            elseif coding.unit == 2 and high and code >= 0xdc00 and code < 0xe000 then
                code = 0x10000 + (high - 0xd800) * 0x400 + code - 0xdc00
            end
            return utf8_of(code)
        end)
    elseif coding.is_latin then
        text = raw:gsub("[\128-\255]", function(byte) return utf8_of(byte:byte()) end)
    else
        text = clean(raw)
    end
    text = text:gsub("\r\n?", "\n")
    if is_cdata then return text end
    return (text:gsub("&(#?)(%w+);", function(hash, name)
        if hash == "" then return NAMED[name] end
        local code = tonumber(name:match("^x(%x+)$") or name, name:match("^x") and 16 or 10)
        return code and utf8_of(code)
    end))
end

-- The markup of one document: tokens, and the position behind it. Without tokens the second result is what is wrong, or
-- nothing if the end of the document has not come yet. Positions count code units from 1.
function messages.scan_xml(s)
    local tokens, open, at = {}, {}, 1
    while true do
        local lt = s:find("<", at, true)
        if #open == 0 and s:match("^[ \t\r\n]*()", at) < (lt or #s + 1) then return nil, "It is not well-formed." end
        if not lt then return end
        if lt > at and #open > 0 then table.insert(tokens, {text = true, from = at, to = lt}) end
        local function skip(opening, closing)
            if s:sub(lt, lt + #opening - 1) ~= opening then return false end
            local _, last = s:find(closing, lt + #opening, true)
            at = last and last + 1
            return true
        end
        if skip("<!--", "-->") or skip("<?", "?>") then
            if not at then return end
        elseif skip("<![CDATA[", "]]>") then
            if not at then return end
            table.insert(tokens, {text = true, cdata = true, from = lt + 9, to = at - 3})
        elseif s:sub(lt + 1, lt + 1) == "!" then
            if #s < lt + 8 then return end
            return nil, "It has a document type declaration."
        else
            local gt = lt
            repeat
                gt = s:find("[\"'>]", gt + 1)
                local quote = gt and s:sub(gt, gt)
                if quote and quote ~= ">" then gt = s:find(quote, gt + 1, true) end
            until not gt or quote == ">"
            if not gt then return end
            at = gt + 1
            local slash, name = s:match("^<(/?)([^%s/>]+)", lt)
            if not name then return nil, "It is not well-formed." end
            if slash == "" then
                table.insert(open, name)
                table.insert(tokens, {name = name, from = lt, to = at, open = true})
            end
            if slash == "/" or s:sub(gt - 1, gt - 1) == "/" then
                if table.remove(open) ~= name then return nil, "It is not well-formed." end
                table.insert(tokens, {name = name, from = lt, to = at})
                if #open == 0 then return tokens, at end
            end
        end
    end
end

-- Whether it is clear at first sight that the root's end tag has not come yet. Large documents are looked at whenever a
-- segment has come.
local function is_surely_open(s)
    local name, behind = s:match("^%s*<([^!?%s/>]+)()", (select(2, s:find("^<%?xml.-%?>")) or 0) + 1)
    return name and not s:find("</" .. name, behind, true) and not s:match("^[^<>]*/>", behind)
end

-- Messages one behind another ---------------------------------------------------------------------------------------

function messages.word(raw, at)
    local a, b, c, d = raw:byte(at, at + 3)
    return d and ((a * 256 + b) * 256 + c) * 256 + d
end

-- Byte order marks, with the size of a unit, the order, and the size of the mark. White space is passed over before,
-- and with it the first zeros of UTF-32.
local MARKS = {{"\255\254\0\0", 4, false, 4}, {"\254\255\0\0\0", 4, true, 2}, {"\255\254", 2, false, 2},
               {"\254\255", 2, true, 2}, {"\239\187\191", 1, false, 3}}

-- How the text that begins there is coded; nothing if no text begins there. `before` is the number of bytes in front
-- that may belong to it.
function messages.coding_at(raw, at, before)
    for _, mark in ipairs(MARKS) do
        if raw:sub(at, at + #mark[1] - 1) == mark[1] then
            return {unit = mark[2], is_big = mark[3], mark = mark[4]}
        end
    end
    local zeros = raw:match("^<(%z*)", at)
    if not zeros then return end
    zeros = #zeros
    local unit = zeros >= 3 and 4 or zeros >= 1 and 2 or 1
    local is_big = unit > 1 and before % unit == unit - 1
    local declared = raw:match("^<%?xml[^>]-encoding%s*=%s*[\"']([^\"']+)", at)
    return {unit = unit, is_big = is_big, mark = is_big and 1 - unit or 0,
            is_latin = declared and declared:upper() == "ISO-8859-1"}
end

-- The next message from there, counting bytes from 0. Gives its first byte and then its size, form, nothing, and
-- coding; or nothing and what is wrong; or nothing, nothing, and how many bytes are missing (0 if nobody knows). Gives
-- nothing at all if only white space and the like is left, and -1 if its last zeros may belong to a message.
function messages.next_message(raw, from, last_coding)
    local at = from + 1
    while true do
        local first = raw:match("^[ \t\r\n%z]*()", at)
        -- White space behind a wide text is as wide; otherwise zeros may be the first half of a character.
        local is_wide = last_coding and last_coding.unit > 1
        local before = is_wide and first - at or #raw:sub(at, first - 1):match("%z*$")
        at = first
        if at > #raw and before > 0 then return at - 1 - math.min(before, 3), nil, nil, -1 end
        if at > #raw then return end
        local id = messages.word(raw, at)
        if id and messages.ids[id] then
            local length = messages.word(raw, at + 4)
            if not length then return at - 1, nil, nil, 4 - (#raw - at - 3) end
            if length >= 0x80000000 or length > messages.largest then
                return at - 1, nil, "The length is not possible."
            end
            local missing = length - (#raw - at - 7)
            if missing > 0 then return at - 1, nil, nil, missing end
            return at - 1, 8 + length, messages.ids[id]
        end
        local aside = raw:match("^<!%-%-", at) and "-->" or raw:match("^<%?", at) and not raw:match("^<%?xml%s", at) and
                      #raw - at >= 5 and "?>"
        if aside then
            local _, last = raw:find(aside, at + 2, true)
            if not last then return at - 1, nil, nil, 0 end
            at = last + 1
        else
            local coding = messages.coding_at(raw, at, before)
            -- The first bytes of UTF-32 look like UTF-16.
            local enough = coding and (coding.mark > 0 and 6 or 1) or 4
            if #raw - at + 1 < enough then return at - 1, nil, nil, 0 end
            if not coding then return at - 1, nil, "These bytes begin no message." end
            local start = at + math.min(0, coding.mark)
            local body = at + coding.mark
            local units = messages.units_of(raw:sub(body), coding.unit, coding.is_big)
            if is_surely_open(units) then return start - 1, nil, nil, 0 end
            local tokens, result = messages.scan_xml(units)
            if not tokens then return start - 1, nil, result, 0 end
            coding.skipped = body - start
            return start - 1, (result - 1) * coding.unit + coding.skipped, "xml", nil, coding
        end
    end
end

-- Bytes that look like the beginning of a message in any form.
function messages.begins_with_one(raw)
    local id, length = messages.word(raw, 1), messages.word(raw, 5)
    if id and length and messages.ids[id] then return length <= messages.largest end
    local from, size, fault, _, coding = messages.next_message(raw:sub(1, 4096), 0)
    if not from or not size and fault then return false end
    coding = coding or messages.coding_at(raw, from + 1, 0)
    if not coding then return false end
    local units = messages.units_of(raw:sub(from + 1 + math.max(0, coding.mark)), coding.unit, coding.is_big)
    local root = units:gsub("<[?!].->", ""):match("<([^%s/>]+)")
    return root ~= nil and messages.roots[root] ~= nil
end

return messages
