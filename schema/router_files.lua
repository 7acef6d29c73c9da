-- SPDX-License-Identifier: MIT
-- Recordings of messages as files that Wireshark and tshark open: each message is a packet. router.lua loads this file
-- and dissects the packets.

local messages, router = ...
if not messages then return end

local LARGEST_PACKET = 262144  -- what Wireshark takes; the end of larger messages is missing

local recordings = FileHandler.new("Recording of router messages", "router", "Messages of a router in any form", "rms")
recordings.extensions = "bin;binz;rec"

-- Files that begin with a binary or compressed form. Those that begin with XML are not told from other XML.
function recordings.read_open(file, capture)
    local start = file:read(8)
    local id, length = messages.word(start or "", 1), messages.word(start or "", 5)
    if not length or not messages.ids[id] or length > messages.largest then return false end
    file:seek("set", 0)
    capture.encap = wtap_encaps.USER15
    capture.private_table = {content = file:read("*a"), at = 0}
    return capture.private_table.content ~= nil
end

local function give(frame, content, from, size)
    frame.rec_type = wtap_rec_types.PACKET
    frame.encap = wtap_encaps.USER15
    frame.original_length = size
    frame.captured_length = math.min(size, LARGEST_PACKET)
    frame.data = content:sub(from + 1, from + math.min(size, LARGEST_PACKET))
end

-- The first byte and the size of the next message. It is looked for in a small piece first, because looking copies it.
local function next_in(content, at)
    local window = 65536
    while true do
        local from, size, fault, missing = messages.next_message(content:sub(at + 1, at + window), 0)
        local is_last = at + window >= #content
        if is_last and missing == -1 then return end
        if is_last or size or fault then
            return from and at + from, size or from and #content - at - from
        end
        window = window * 4
    end
end

function recordings.read(_, capture, frame)
    local reading = capture.private_table
    local from, size = next_in(reading.content, reading.at)
    if not from then return false end
    give(frame, reading.content, from, size)
    reading.at = from + size
    return from
end

function recordings.seek_read(_, capture, frame, from)
    local content = capture.private_table.content
    local _, size = next_in(content, from)
    give(frame, content, from, size)
    return true
end

register_filehandler(recordings)
DissectorTable.get("wtap_encap"):add(wtap_encaps.USER15, router)
