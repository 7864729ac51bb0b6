-- What the strip at the top of a picture says: an eye of its own, written from docs/protocol.md alone.

local picture = require "client.picture"

local strip = {}

local CELLS = 11
local UNCALIBRATED_OFFSET, UNCALIBRATED_WIDTH = 2, 80
local ON = 14

local function round(value)
    return math.floor(value + 0.5)
end

-- What Glimra would read of a row before it was calibrated, whatever lies there.
local function sampled(row)
    local cells = {}
    for i = 1, CELLS do
        cells[i] = picture.color(row, UNCALIBRATED_OFFSET + round((i - 1) * UNCALIBRATED_WIDTH / CELLS))
    end
    return { cells = cells }
end

-- Cells of a row: { width, cells = { "RRGGBB" ... } }, without a width where it has no strip; then what is wrong, or
-- nil. All pixels of a cell have to be alike: nothing is made better than it is.
local function read(row, width)
    local cells, showsGame, problem = {}, true, nil
    for i = 1, CELLS do
        local first = round(width * (i - 1) / CELLS)
        cells[i] = picture.color(row, first)
        for x = first, round(width * i / CELLS) - 1 do
            local color, shows = picture.color(row, x)
            showsGame = showsGame and shows == "game"
            if shows ~= "clean" or color ~= cells[i] then
                problem = problem or ("pixel %d is %s (%s), in cell %d, which began as %s"):format(x, color, shows,
                    i - 1, cells[i])
            end
        end
    end
    if showsGame then
        return sampled(row)
    elseif problem then
        return sampled(row), problem
    end
    return { width = width, cells = cells }
end

local lastRead = {}

function strip.read(row, width)
    -- As long as no frame changes, so does no strip; the game's picture changes always.
    if row.spans == lastRead.spans and width == lastRead.shown.width then
        return lastRead.shown
    end
    local shown, problem = read(row, width)
    if shown.width then
        lastRead = { spans = row.spans, shown = shown }
    end
    return shown, problem
end

local function channels(cell)
    local red, green, blue = cell:match("(..)(..)(..)")
    return tonumber(red, 16) >= ON, tonumber(green, 16) >= ON, tonumber(blue, 16) >= ON
end

local function isLit(cell)
    local red, green, blue = channels(cell)
    return red or green or blue
end

local function prefixOf(cells)
    local red, green, blue = 0, 0, 0
    for i = 3, 9 do
        local r, g, b = channels(cells[i])
        red, green, blue = red + (r and 1 or 0), green + (g and 1 or 0), blue + (b and 1 or 0)
    end
    return red > green + blue and "`" or blue > red + green and "[" or green > red + blue and "]"
        or green < red and red == blue and "{" or blue == green and red < blue and "}" or ""
end

-- One frame: its kind ("announce", "confirm", "void" or "none"), its character and its prefix.
local function frameOf(cells)
    if not isLit(cells[1]) or not isLit(cells[10]) then
        return { kind = "none" }
    end
    local value = 0
    for i = 3, 9 do
        value = value * 2 + (isLit(cells[i]) and 1 or 0)
    end
    local kind = isLit(cells[2]) and "confirm" or isLit(cells[11]) and "void" or "announce"
    return { kind = kind, character = string.char(value), prefix = prefixOf(cells) }
end

local Eye = {}
Eye.__index = Eye

-- An eye that misses nothing. frames: all that were seen, { kind, character, prefix, from, till, pictures, made };
-- messages: { text, announce = frame, confirm = frame, isUnread }.
function strip.newEye()
    return setmetatable({ frames = {}, messages = {} }, Eye)
end

-- made: when the picture was painted; isUnread: Glimra may miss it.
function Eye:see(time, shown, made, isUnread)
    local key = table.concat(shown.cells)
    local last = self.frames[#self.frames]
    if last then
        last.till = time
        if last.key == key then
            last.pictures = last.pictures + 1
            return
        end
    end
    local frame = frameOf(shown.cells)
    frame.key, frame.from, frame.till, frame.made, frame.pictures = key, time, time, made, 1
    frame.isGame = not shown.width
    self.frames[#self.frames + 1] = frame
    if frame.kind == "announce" then
        self.announced = frame
    elseif frame.kind == "confirm" then
        if self.announced and self.announced.character == frame.character then
            self.messages[#self.messages + 1] = {
                text = frame.prefix .. frame.character, announce = self.announced, confirm = frame, isUnread = isUnread,
            }
        end
        self.announced = nil
    end
end

-- A message as a scenario writes it.
function strip.printable(text)
    return (text:gsub("[%c\\ \"]", function(character)
        return ("\\x%02x"):format(character:byte())
    end))
end

return strip
