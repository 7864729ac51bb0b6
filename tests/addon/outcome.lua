-- The forms in which a play is handed on; each function returns lines.

local outcome = {}

-- When the game's clock begins, in seconds of Glimra's: it has started, and the pictures lie anyhow to its looks.
local LEAD = 2.01337

-- Adds what came on the screen to lines, with a wait of the form before each that came later: `unit` parts a second;
-- line(item) is nil for what the form leaves out.
local function timed(play, lines, form, unit, line)
    local now = 0
    local function add(time, text)
        local moment = math.floor(time * unit + 0.5)
        if moment > now then
            lines[#lines + 1], now = form(moment - now), moment
        end
        lines[#lines + 1] = text
    end
    for _, item in ipairs(play.toScreen) do
        local text = line(item)
        if text then
            add(item.time, text)
        end
    end
    return add
end

-- A script for glimra-replay.
function outcome.replay(play)
    local lines = { ("display %d %d 1"):format(play.setup.width, play.setup.height), unpack(play.beforeStart) }
    for _, line in ipairs { "start", 'action "debugMenuItem:"', play.FRONT, ("wait %.9f"):format(LEAD) } do
        lines[#lines + 1] = line
    end
    local width = 80
    timed(play, lines, function(parts) return ("wait %.9f"):format(parts / 1e9) end, 1e9, function(item)
        local frame = item.strip and "strip " .. table.concat(item.strip.cells, " ")
        if item.strip and item.strip.width and item.strip.width ~= width then
            width = item.strip.width
            frame = ("strip-geometry 0 %d\n%s"):format(width, frame)
        end
        return frame or item.line
    end)(play.client.now + 6, "quit")
    return lines
end

-- Input of "glimra-strip -", which shows it in real time on a real screen.
function outcome.strip(play)
    local lines = {}
    timed(play, lines, function(parts) return ("wait %d"):format(parts) end, 1000, function(item)
        return item.stage and "stage " .. item.stage or item.strip and "frame " .. table.concat(item.strip.cells, " ")
    end)(play.client.now, "off")
    return lines
end

return outcome
