-- SPDX-License-Identifier: MIT
-- Messages between clients and a router, for Wireshark and tshark from version 4.0. docs/link.md tells what is on the
-- wire, docs/binary-form.md and docs/xml-form.md describe the forms, docs/other-tools.md how to use this file. It needs
-- the other two files router_*.lua beside it.

local folder = debug.getinfo(1, "S").source:match("^@(.-)[^/\\]*$")
local messages = dofile(folder .. "router_messages.lua")

local router = Proto("router", "Router Interface")
router.prefs.ports = Pref.range("TCP ports", "4711", "Dissect connections on these ports whatever they carry.", 65535)
router.prefs.desegment = Pref.bool("Put messages together", true, "Dissect messages that take several segments.")
router.prefs.largest = Pref.uint("Largest message (MiB)", 256, "A length above this is a mistake.")

-- Members ---------------------------------------------------------------------------------------------------------

local UNSIGNED, DECIMAL, TRUTH, TEXT, NAME, RECORD, LIST = 1, 2, 3, 4, 5, 6, 7
local FIELD_OF_KIND = {[UNSIGNED] = ProtoField.uint32, [DECIMAL] = ProtoField.double, [TRUTH] = ProtoField.bool,
                       [TEXT] = ProtoField.string, [NAME] = ProtoField.string}

local function record(name, filter, id, members)
    local made = {name = name, id = id, members = members, by_tag = {}, by_name = {},
                  field = ProtoField.none("router." .. filter, name)}
    for _, member in ipairs(members) do
        member.name, member.filter, member.tag, member.kind, member.of = table.unpack(member)
        made.by_tag[member.tag] = member
        made.by_name[member.name] = member
        if FIELD_OF_KIND[member.kind] then
            local prefix = filter == "message" and "router." or "router." .. filter .. "."
            member.field = FIELD_OF_KIND[member.kind](prefix .. member.filter, member.name)
        end
    end
    return made
end

local mastership_state = record("MastershipState", "mastership_state", 0xd6ff526c, {
    {"State", "state", 0x4264f498, NAME, {NoMasterPresent = true, MasterPresent = true, RouterIsMaster = true}},
    {"MasterClientID", "master_client_id", 0x0bcd2cf7, TEXT}})
local acquire_mastership = record("AcquireMastership", "acquire_mastership", 0x1a837aca, {
    {"Success", "success", 0xbf8a59c6, TRUTH}})
local release_mastership = record("ReleaseMastership", "release_mastership", 0x5f3980d4, {
    {"Success", "success", 0xbf8a59c6, TRUTH}})
local ostra_interface_port = record("OstraInterfacePort", "ostra_interface_port", 0x7f012eb8, {
    {"Port", "port", 0x1f980517, UNSIGNED}})
local pel_vt_connect_server = record("PelVtConnectServer", "pel_vt_connect_server", 0x0864034c, {
    {"Address", "address", 0x2ac271ec, TEXT},
    {"Port", "port", 0x1f980517, UNSIGNED}})
local router_vt_server_port = record("RouterVtServerPort", "router_vt_server_port", 0x24c7a508, {
    {"Port", "port", 0x1f980517, UNSIGNED}})
local df_params = record("DF_Params", "df_params", 0xf1ee139c, {
    {"Frequency", "frequency", 0xa97db5be, DECIMAL},
    {"DemodulationFrequency", "demodulation_frequency", 0x5255927f, DECIMAL},
    {"Bandwidth", "bandwidth", 0x104a95ab, DECIMAL},
    {"PanoramaSpan", "panorama_span", 0x7029d96c, DECIMAL}})
local fragment = record("Fragment", "fragment", 0xd2408d54, {
    {"MastershipState", "", 0x111939b4, RECORD, mastership_state},
    {"AcquireMastership", "", 0x21bda6e2, RECORD, acquire_mastership},
    {"ReleaseMastership", "", 0xfc38ab7c, RECORD, release_mastership},
    {"OstraInterfacePort", "", 0xf9e464d0, RECORD, ostra_interface_port},
    {"PelVtConnectServer", "", 0x0bbab464, RECORD, pel_vt_connect_server},
    {"RouterVtServerPort", "", 0x5d020ea0, RECORD, router_vt_server_port},
    {"DF_Params", "", 0xbe2dff74, RECORD, df_params}})
local message = record("PelLu300RouterMessage", "message", 0xeac09d5a, {
    {"Type", "type", 0xe1d9e008, NAME, {Request = true, Reply = true, Event = true}},
    {"MessageID", "message_id", 0xef193de9, UNSIGNED},
    {"Fragment", "", 0x61023a90, LIST, fragment}})
local document = record("PelLu300RouterInterfaceXml", "document", 0x8553499a, {
    {"PelLu300RouterMessage", "", 0x9b1a7ad8, RECORD, message}})

local NULL = 0xffffffff
messages.ids[0x4d4b5a31] = "compressed"
local ids, fields = {}, {}
for _, each in ipairs({mastership_state, acquire_mastership, release_mastership, ostra_interface_port,
                       pel_vt_connect_server, router_vt_server_port, df_params, fragment, message, document}) do
    ids[each.id] = each
    messages.ids[each.id], messages.roots[each.name] = "binary", each
    table.insert(fields, each.field)
    for _, member in ipairs(each.members) do
        if member.field then table.insert(fields, member.field) end
    end
end

-- Other fields ----------------------------------------------------------------------------------------------------

local function field(kind, name, title, ...)
    local made = ProtoField[kind]("router." .. name, title, ...)
    table.insert(fields, made)
    return made
end
local form_field = field("string", "form", "Form")
local id_field = field("uint32", "id", "Id", base.HEX)
local tag_field = field("uint32", "tag", "Tag", base.HEX)
local length_field = field("int32", "length", "Length")
local list_field = field("none", "list", "List")
local count_field = field("int32", "count", "Items")
local null_field = field("bool", "null", "Null text")
local unknown_field = field("bytes", "unknown", "Unknown content")
local unknown_element_field = field("string", "unknown_element", "Unknown element")
local no_message_field = field("bytes", "no_message", "No message")
local piece_field = field("none", "piece", "Piece")
local inflated_field = field("uint32", "piece.inflated_size", "Inflated size")
local reply_field = field("framenum", "reply_in", "The reply is in", base.NONE, frametype.RESPONSE)
local request_field = field("framenum", "request_in", "The request is in", base.NONE, frametype.REQUEST)
local time_field = field("relative_time", "reply_time", "Time since the request")
router.fields = fields

local malformed, note = {expert.group.MALFORMED, expert.severity.ERROR}, {expert.group.PROTOCOL, expert.severity.NOTE}
local function info(name, text, kind) return ProtoExpert.new("router." .. name, text, kind[1], kind[2]) end
local wrong_length = info("wrong_length", "A length does not fit its content", malformed)
local unknown_tag = info("unknown_tag", "Unknown tag", note)
local unknown_tree = info("unknown_element.note", "Unknown element", note)
local unknown_name = info("unknown_name", "The name is no enumerator", {expert.group.PROTOCOL, expert.severity.WARN})
local not_a_message = info("not_a_message", "No message begins here", malformed)
local cut_off = info("cut_off", "The message is cut off", malformed)
local not_inflated = info("not_inflated", "The piece cannot be inflated", malformed)
router.experts = {wrong_length, unknown_tag, unknown_tree, unknown_name, not_a_message, cut_off, not_inflated}

-- Values ----------------------------------------------------------------------------------------------------------

local function decimal_of(text)
    local named = {nan = -(0 / 0), inf = math.huge, ["-inf"] = -math.huge}
    text = text:match("^%s*(.-)%s*$")
    return named[text] or text:match("^[-+%d.eE]+$") and tonumber(text) or 0
end

-- Adds a member that is not a record. The value is nil if the text is null. `seen` collects what a summary needs.
local function add_member(tree, range, owner, member, value, seen)
    local node = tree:add(member.field, range, value == nil and "" or value)
    if value == nil then node:add(null_field, range, true) end
    if member.kind == NAME and value and not member.of[value] then node:add_proto_expert_info(unknown_name) end
    if owner == message then seen[member.name] = value end
    return node
end

local function add_record(tree, range, owner, kind, seen)
    if owner == fragment then table.insert(seen.payloads, kind.name) end
    return tree:add(kind.field, range)
end

-- The binary forms ------------------------------------------------------------------------------------------------

-- The value of an entry, from its payload as bytes, and the number of bytes that it takes; nothing if it is cut off.
local PAYLOADS = {
    [UNSIGNED] = function(range) if range:len() >= 8 then return range(4, 4):uint(), 8 end end,
    [TRUTH] = function(range) return range(0, 1):uint() ~= 0, 1 end,
    [TEXT] = function(range)
        local count = range:len() >= 4 and range(0, 4):uint()
        if count == NULL then return nil, 4 end
        if not count or count > range:len() - 4 then return end
        return count == 0 and "" or range(4, count):string(ENC_UTF_8), 4 + count
    end}
PAYLOADS[NAME] = PAYLOADS[TEXT]
PAYLOADS[DECIMAL] = function(range)
    local text, size = PAYLOADS[TEXT](range)
    if size then return decimal_of(text or ""), size end
end

local add_entries

-- A length word at `from`, for content that must end at `limit` or before. Returns where the content ends.
local function add_length(node, tvb, from, limit)
    local length = tvb(from, 4):int()
    local item = node:add(length_field, tvb(from, 4))
    if length >= 0 and length <= limit - from - 4 then return from + 4 + length end
    item:add_proto_expert_info(wrong_length, "The length is " .. length .. ", but only " .. limit - from - 4 ..
                                             " bytes are left.")
    return limit
end

local function add_items(node, tvb, from, limit, kind, seen)
    if limit - from < 4 then
        node:add_proto_expert_info(wrong_length, "The list is cut off.")
        return
    end
    local count = tvb(from, 4):int()
    node:add(count_field, tvb(from, 4))
    from = from + 4
    local added = 0
    while added < count and limit - from >= 4 do
        local length = tvb(from, 4):int()
        local size = 4 + math.max(0, math.min(length, limit - from - 4))
        local item = node:add(kind.field, tvb(from, size))
        local content_end = add_length(item, tvb, from, limit)
        add_entries(item, tvb, from + 4, content_end, kind, seen)
        from, added = content_end, added + 1
    end
    if added ~= count then
        node:add_proto_expert_info(wrong_length, "The list has " .. added .. " items instead of " .. count .. ".")
    elseif from ~= limit then
        node:add_proto_expert_info(wrong_length, limit - from .. " bytes are left behind the last item.")
    end
end

local function add_entry(tree, tvb, from, limit, owner, seen)
    local tag, length = tvb(from, 4):uint(), tvb(from + 4, 4):int()
    local size = 8 + math.max(0, math.min(length, limit - from - 8))
    local range, member, node = tvb(from, size), owner.by_tag[tag], nil
    local value, used
    if not member then
        node = tree:add(unknown_field, range)
        node:add_proto_expert_info(unknown_tag, string.format("%s has no member with the tag %08X.", owner.name, tag))
    elseif member.kind == RECORD then
        node = add_record(tree, range, owner, member.of, seen)
    elseif member.kind == LIST then
        node = tree:add(list_field, range)
    else
        if size > 8 then value, used = PAYLOADS[member.kind](tvb(from + 8, size - 8)) end
        if used then
            node = add_member(tree, range, owner, member, value, seen)
        else
            node = tree:add(unknown_field, range)
        end
        if used ~= size - 8 then
            node:add_proto_expert_info(wrong_length, "The length of " .. member.name .. " does not fit its value.")
        end
    end
    node:add(tag_field, tvb(from, 4)):append_text(" (" .. (member and member.name or "unknown") .. ")")
    local content_end = add_length(node, tvb, from + 4, limit)
    if member and member.kind == RECORD then
        add_entries(node, tvb, from + 8, content_end, member.of, seen)
    elseif member and member.kind == LIST then
        add_items(node, tvb, from + 8, content_end, member.of, seen)
    end
    return content_end
end

function add_entries(tree, tvb, from, limit, owner, seen)
    while limit - from >= 8 do
        from = add_entry(tree, tvb, from, limit, owner, seen)
    end
    if from < limit then
        tree:add(unknown_field, tvb(from, limit - from)):add_proto_expert_info(wrong_length,
            "No entry fits into the last " .. limit - from .. " bytes.")
    end
end

-- A frame with id, from there to the end of the bytes.
local function add_frame(tree, tvb, from, size, seen)
    local kind = ids[tvb(from, 4):uint()]
    local node = tree:add(kind.field, tvb(from, size))
    node:add(id_field, tvb(from, 4))
    add_entries(node, tvb, from + 8, add_length(node, tvb, from + 4, from + size), kind, seen)
end

-- The bytes of a piece, or nil. The name of the operation depends on the version of Wireshark.
local function inflated(range)
    for _, operation in ipairs({"uncompress_zlib", "uncompress"}) do
        local worked, result = pcall(function() return range[operation](range, "Inflated piece") end)
        if worked then return result and result:len() > 0 and result:bytes() or nil end
    end
end

local function add_compressed(tree, tvb, from, size, seen)
    local limit = from + size
    tree:add(id_field, tvb(from, 4))
    add_length(tree, tvb, from + 4, limit)
    local plain, last = ByteArray.new(), 65536
    local at = from + 8
    while limit - at >= 8 do
        local length = tvb(at, 4):int()
        local piece = tree:add(piece_field, tvb(at, 4 + math.max(4, math.min(length, limit - at - 4))))
        local content_end = add_length(piece, tvb, at, limit)
        piece:add(inflated_field, tvb(at + 4, 4))
        local bytes = content_end > at + 8 and inflated(tvb(at + 8, content_end - at - 8))
        if not bytes or last ~= 65536 then
            piece:add_proto_expert_info(not_inflated)
            return
        end
        last = bytes:len()
        if tvb(at + 4, 4):uint() ~= last then
            piece:add_proto_expert_info(wrong_length, "The piece inflates to " .. last .. " bytes.")
        end
        plain:append(bytes)
        at = content_end
    end
    if at ~= limit then
        tree:add_proto_expert_info(wrong_length, limit - at .. " bytes are left behind the last piece.")
    end
    local whole = plain:tvb("Inflated message")
    if whole:len() < 8 or not ids[whole(0, 4):uint()] or whole(4, 4):int() ~= whole:len() - 8 then
        tree:add_proto_expert_info(not_a_message, "The pieces hold no frame.")
        return
    end
    add_frame(tree, whole, 0, whole:len(), seen)
end

-- XML -------------------------------------------------------------------------------------------------------------

local XML_VALUES = {
    [UNSIGNED] = function(text)
        local number = text:match("^%s*[-+]?%d+%s*$") and tonumber(text) or 0
        return (number < -2147483648 or number > 2147483647) and 0 or number % 4294967296
    end,
    [DECIMAL] = decimal_of,
    [TRUTH] = function(text) return text ~= "" and text ~= "0" and text:lower() ~= "false" end,
    [TEXT] = function(text) return text end,
    [NAME] = function(text) return text end}

-- The content of an element, from the token behind its start tag. Returns the token of its end.
local function add_elements(tree, tvb, xml, at, owner, seen)
    while xml.tokens[at].text or xml.tokens[at].open do
        local token = xml.tokens[at]
        local member = token.open and (owner.by_name[token.name])
        local last = at
        if member and member.of and member.kind ~= NAME then
            local node = add_record(tree, xml.range(token.from, token.to), owner, member.of, seen)
            last = add_elements(node, tvb, xml, at + 1, member.of, seen)
            node:set_len((xml.tokens[last].to - token.from) * xml.coding.unit)
        elseif member then
            local text, depth = "", 1
            repeat
                last = last + 1
                local inner = xml.tokens[last]
                if inner.text then
                    local raw = xml.raw(inner.from, inner.to)
                    if depth == 1 then text = text .. messages.text_of(raw, xml.coding, inner.cdata) end
                else
                    depth = depth + (inner.open and 1 or -1)
                end
            until depth == 0
            local range = xml.range(token.from, xml.tokens[last].to)
            add_member(tree, range, owner, member, XML_VALUES[member.kind](text), seen)
        elseif token.open then
            -- Readers pass over an unknown element up to the next tag of the same name.
            repeat last = last + 1 until xml.tokens[last].name == token.name
            local name = token.name:gsub("[\1\128-\255]", "?")
            local node = tree:add(unknown_element_field, xml.range(token.from, xml.tokens[last].to), name)
            node:add_proto_expert_info(unknown_tree)
        end
        at = last + 1
    end
    return at
end

local function add_xml(tree, tvb, from, size, coding, seen)
    local raw = tvb:raw(from, size)
    local unit = coding.unit
    local tokens = messages.scan_xml(messages.units_of(raw, unit, coding.is_big))
    local xml = {tokens = tokens, coding = coding,
                 raw = function(first, behind) return raw:sub((first - 1) * unit + 1, (behind - 1) * unit) end,
                 range = function(first, behind) return tvb(from + (first - 1) * unit, (behind - first) * unit) end}
    local root = messages.roots[tokens[1].name]
    if not root then
        tree:add_proto_expert_info(not_a_message, "The root is no record.")
        return
    end
    add_elements(tree:add(root.field, tvb(from, size)), tvb, xml, 2, root, seen)
end

-- Requests and replies ----------------------------------------------------------------------------------------------

local stream_of = Field.new("tcp.stream")
local waiting, partners = {}, {}
function router.init()
    waiting, partners = {}, {}
end

-- Shows in which packet the other message of a request and its reply is. A packet is seen first in the order of time.
local function add_partner(tree, pinfo, seen)
    local stream = stream_of()
    if not stream or not seen.MessageID or seen.Type ~= "Request" and seen.Type ~= "Reply" then return end
    local exchange = stream.value .. "/" .. seen.MessageID
    local key = pinfo.number .. "/" .. seen.Type .. "/" .. exchange
    local now = {number = pinfo.number, key = key, time = pinfo.rel_ts, port = pinfo.src_port}
    local request = waiting[exchange]
    if not pinfo.visited and seen.Type == "Request" then
        waiting[exchange] = now
    elseif not pinfo.visited and request and request.port == pinfo.dst_port then
        partners[key], partners[request.key], waiting[exchange] = request, now, nil
    end
    local partner = partners[key]
    if not partner then return end
    if seen.Type == "Request" then
        tree:add(reply_field, partner.number):set_generated()
    else
        tree:add(request_field, partner.number):set_generated()
        local seconds = pinfo.rel_ts - partner.time
        local whole = math.floor(seconds)
        tree:add(time_field, NSTime.new(whole, math.floor((seconds - whole) * 1e9 + 0.5))):set_generated()
    end
end

-- The dissector ---------------------------------------------------------------------------------------------------

local function add_message(tvb, pinfo, tree, from, size, form, coding)
    local node = tree:add(router, tvb(from, size))
    local seen = {payloads = {}}
    node:add(form_field, form):set_generated()
    if form == "binary" then
        add_frame(node, tvb, from, size, seen)
    elseif form == "compressed" then
        add_compressed(node, tvb, from, size, seen)
    else
        add_xml(node, tvb, from + coding.skipped, size - coding.skipped, coding, seen)
    end
    local summary = (seen.Type or "Message") .. (seen.MessageID and " " .. seen.MessageID or "")
    for _, payload in ipairs(seen.payloads) do summary = summary .. " " .. payload end
    node:append_text(": " .. summary .. " (" .. form .. ")")
    add_partner(node, pinfo, seen)
    return summary
end

local function dissect(tvb, pinfo, tree)
    pinfo.cols.protocol = "Router"
    local raw, at, summaries, coding = tvb:raw(), 0, {}, nil
    while at < #raw do
        local from, size, form, missing
        -- Without a size, the form is what is wrong.
        from, size, form, missing, coding = messages.next_message(raw, at, coding)
        if not from then break end
        if size then
            table.insert(summaries, add_message(tvb, pinfo, tree, from, size, form, coding))
            at = from + size
        elseif not form and router.prefs.desegment and pinfo.can_desegment > 0 then
            pinfo.desegment_offset = from
            pinfo.desegment_len = missing > 0 and missing or DESEGMENT_ONE_MORE_SEGMENT
            break
        elseif missing and missing < 0 then
            break
        else
            local node = tree:add(router, tvb(from))
            local item = node:add(no_message_field, tvb(from))
            if form then
                item:add_proto_expert_info(not_a_message, form)
            else
                item:add_proto_expert_info(cut_off)
            end
            table.insert(summaries, form and "[no message]" or "[cut off]")
            break
        end
    end
    if #summaries > 0 then
        pinfo.cols.info:clear()
        pinfo.cols.info:append(table.concat(summaries, "; ") .. " ")
        pinfo.cols.info:fence()
    end
    return tvb:len()
end
router.dissector = dissect

local tcp_ports = DissectorTable.get("tcp.port")
local ports
local function use_preferences()
    messages.largest = router.prefs.largest * 1048576
    if ports then tcp_ports:remove(ports, router) end
    ports = router.prefs.ports
    tcp_ports:add(ports, router)
end
use_preferences()
router.prefs_changed = use_preferences
tcp_ports:add_for_decode_as(router)

router:register_heuristic("tcp", function(tvb, pinfo, tree)
    if not messages.begins_with_one(tvb:raw()) then return false end
    pinfo.conversation = router
    dissect(tvb, pinfo, tree)
    return true
end)

loadfile(folder .. "router_files.lua")(messages, router)
