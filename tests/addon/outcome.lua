-- The forms in which a play is handed on; each function returns lines.

local picture = require "client.picture"
local strip = require "strip"
local truth = require "truth"

local outcome = {}

local PIXELS = 100

-- When the game's clock begins, in seconds of Glimra's: it has started, and the pictures lie anyhow to its looks.
local function lead(play)
    return 2 + ((play.setup.seed * 13) % 50 + 0.37) / 1000
end

function outcome.replay(play)
    local lines = { ("display %d %d 1"):format(play.setup.width, play.setup.height) }
    for _, line in ipairs(play.beforeStart) do
        lines[#lines + 1] = line
    end
    for _, line in ipairs { "start", 'action "debugMenuItem:"', play.FRONT } do
        lines[#lines + 1] = line
    end
    local now, width = 0, 80
    local function waitUntil(time)
        local moment = math.floor((lead(play) + time) * 1e9 + 0.5)
        if moment > now then
            lines[#lines + 1] = ("wait %.9f"):format((moment - now) / 1e9)
            now = moment
        end
    end
    for _, item in ipairs(play.toScreen) do
        waitUntil(item.time)
        if item.line then
            lines[#lines + 1] = item.line
        elseif item.strip then
            if item.strip.width and item.strip.width ~= width then
                width = item.strip.width
                lines[#lines + 1] = ("strip-geometry 0 %d"):format(width)
            end
            lines[#lines + 1] = "strip " .. table.concat(item.strip.cells, " ")
        end
    end
    waitUntil(play.client.now + 6)
    lines[#lines + 1] = "quit"
    return lines
end

function outcome.strip(play)
    local lines, now = {}, 0
    for _, item in ipairs(play.toScreen) do
        if not item.line then
            local moment = math.floor(item.time * 1000 + 0.5)
            if moment > now then
                lines[#lines + 1] = ("wait %d"):format(moment - now)
                now = moment
            end
            lines[#lines + 1] = item.stage and "stage " .. item.stage or "frame " .. table.concat(item.strip.cells, " ")
        end
    end
    lines[#lines + 1] = ("wait %d"):format(play.client.now * 1000 - now)
    lines[#lines + 1] = "off"
    return lines
end

function outcome.pixels(play)
    local lines = {}
    for _, item in ipairs(play.toScreen) do
        if item.row then
            local runs = {}
            for x = 0, PIXELS - 1 do
                local color = picture.color(item.row, x)
                local last = runs[#runs]
                if last and last.color == color then
                    last.count = last.count + 1
                else
                    runs[#runs + 1] = { color = color, count = 1 }
                end
            end
            for i, run in ipairs(runs) do
                runs[i] = run.color .. (run.count > 1 and "*" .. run.count or "")
            end
            lines[#lines + 1] = ("%.6f %s"):format(item.time, table.concat(runs, " "))
        end
    end
    return lines
end

function outcome.events(play)
    local lines = {}
    for i, entry in ipairs(play.journal) do
        lines[i] = ("%.3f %s %s"):format(entry.time, entry.kind, entry.text)
    end
    return lines
end

function outcome.messages(play)
    local lines = {}
    for i, message in ipairs(play.eye.messages) do
        local announce, confirm = message.announce, message.confirm
        local age = truth.age(play.history, message)
        lines[i] = ("%.3f %.3f %-5s %.3f %d %.3f %d%s"):format(announce.from, confirm.from,
            strip.printable(message.text), announce.till - announce.from, announce.pictures,
            confirm.till - confirm.from, confirm.pictures, age > 0 and (" age %.3f"):format(age) or "")
    end
    return lines
end

return outcome
