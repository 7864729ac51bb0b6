-- The forms in which a play is handed on; each function returns lines.

local strip = require "strip"
local truth = require "truth"

local outcome = {}

-- When the game's clock begins, in seconds of Glimra's: it has started, and the pictures lie anyhow to its looks.
local LEAD = 2.01337

-- A script for glimra-replay.
function outcome.replay(play)
    local lines = { ("display %d %d 1"):format(play.setup.width, play.setup.height), unpack(play.beforeStart) }
    for _, line in ipairs { "start", 'action "debugMenuItem:"', play.FRONT } do
        lines[#lines + 1] = line
    end
    local now, width = 0, 80
    local function add(time, ...)
        local moment = math.floor((LEAD + time) * 1e9 + 0.5)
        if moment > now then
            lines[#lines + 1] = ("wait %.9f"):format((moment - now) / 1e9)
            now = moment
        end
        lines[#lines + 1] = (...)
    end
    for _, item in ipairs(play.toScreen) do
        if item.line then
            add(item.time, item.line)
        elseif item.strip then
            if item.strip.width and item.strip.width ~= width then
                width = item.strip.width
                add(item.time, ("strip-geometry 0 %d"):format(width))
            end
            add(item.time, "strip " .. table.concat(item.strip.cells, " "))
        end
    end
    add(play.client.now + 6, "quit")
    return lines
end

-- Input of "glimra-strip -", which shows it in real time on a real screen.
function outcome.strip(play)
    local lines, now = {}, 0
    local function add(time, line)
        local moment = math.floor(time * 1000 + 0.5)
        if moment > now then
            lines[#lines + 1] = ("wait %d"):format(moment - now)
            now = moment
        end
        lines[#lines + 1] = line
    end
    for _, item in ipairs(play.toScreen) do
        if not item.line then
            add(item.time, item.stage and "stage " .. item.stage or "frame " .. table.concat(item.strip.cells, " "))
        end
    end
    add(play.client.now, "off")
    return lines
end

-- What the strip said: when the announce and the confirm frame appeared, the message, and for how many seconds and
-- pictures each of the two stood; an age behind it means that for so long it had not been so any more.
function outcome.messages(play)
    local lines = {}
    for i, message in ipairs(play.eye.messages) do
        local announce, confirm, age = message.announce, message.confirm, truth.age(play.history, message)
        lines[i] = ("%.3f %.3f %-5s %.3f %d %.3f %d%s"):format(announce.from, confirm.from,
            strip.printable(message.text), announce.till - announce.from, announce.pictures,
            confirm.till - confirm.from, confirm.pictures, age > 0 and (" age %.3f"):format(age) or "")
    end
    return lines
end

return outcome
