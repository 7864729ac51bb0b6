-- What the strip at the top of a picture says: an eye of its own, written from docs/protocol.md alone.

local picture = require "client.picture"

local strip = {}

local CELLS = 11
-- Where no strip is to be seen.
local NOTHING = { cells = {} }
for i = 1, CELLS do
    NOTHING.cells[i] = "000000"
end

local function round(value)
    return math.floor(value + 0.5)
end

local last = {}

-- Cells of a row: { width, cells = { "RRGGBB" ... } }, without a width where it has no strip; then what is wrong, or
-- nil. All pixels of a cell have to be alike, and none to lie beside them: nothing is made better than it is.
function strip.read(row, width)
    -- As long as no frame changes, so does no strip.
    if row.spans == last.spans and width == last.width then
        return last.shown, last.problem
    end
    local cells, isGame, problem = {}, true, nil
    for i = 1, CELLS do
        local first = round(width * (i - 1) / CELLS)
        cells[i] = picture.color(row, first)
        for x = first, round(width * i / CELLS) - 1 do
            local color = picture.color(row, x)
            isGame = isGame and color == "game"
            if color ~= cells[i] or #color ~= 6 then
                problem = problem or ("pixel %d is %s, in cell %d, which began as %s"):format(x, color, i - 1, cells[i])
            end
        end
    end
    if isGame then
        problem = nil
    elseif picture.color(row, width) ~= "game" then
        problem = problem or ("it goes on at pixel %d"):format(width)
    end
    local shown = (isGame or problem) and NOTHING or { width = width, cells = cells }
    last = { spans = row.spans, width = width, shown = shown, problem = problem }
    return shown, problem
end

local function isLit(cell)
    return cell ~= "000000"
end

-- By the color of the data cells of a confirm frame.
local PREFIXES = {
    FF0000 = "`", ["0000FF"] = "[", ["00FF00"] = "]", FF00FF = "{", ["00FFFF"] = "}", FFFFFF = "",
}

-- One frame: its kind ("announce", "confirm", "void" or "none"), its character and its prefix.
local function frameOf(cells)
    if not isLit(cells[1]) or not isLit(cells[10]) then
        return { kind = "none" }
    end
    local value, prefix = 0, ""
    for i = 3, 9 do
        value = value * 2 + (isLit(cells[i]) and 1 or 0)
        prefix = isLit(cells[i]) and PREFIXES[cells[i]] or prefix
    end
    local kind = isLit(cells[2]) and "confirm" or isLit(cells[11]) and "void" or "announce"
    return { kind = kind, character = string.char(value), prefix = prefix }
end

local Eye = {}
Eye.__index = Eye

-- An eye that misses nothing. frames: all that were seen, { kind, character, prefix, from, till, made, isGame };
-- messages: { text, announce = frame, confirm = frame }.
function strip.newEye()
    return setmetatable({ frames = {}, messages = {} }, Eye)
end

-- made: when the picture was painted.
function Eye:see(time, shown, made)
    local key, before = table.concat(shown.cells), self.frames[#self.frames]
    if before then
        before.till = time
        if before.key == key then
            return
        end
    end
    local frame, announced = frameOf(shown.cells), self.announced
    frame.key, frame.from, frame.till, frame.made, frame.isGame = key, time, time, made, not shown.width
    self.frames[#self.frames + 1] = frame
    if frame.kind == "confirm" and announced and announced.character == frame.character then
        self.messages[#self.messages + 1] = {
            text = frame.prefix .. frame.character, announce = announced, confirm = frame,
        }
    end
    if frame.kind == "announce" then
        self.announced = frame
    elseif frame.kind == "confirm" then
        self.announced = nil
    end
end

-- A message as a scenario writes it.
function strip.printable(text)
    return (text:gsub("[%c\\\"]", function(character)
        return ("\\x%02x"):format(character:byte())
    end))
end

return strip
