-- What the strip at the top of a picture says: an eye of its own, written from docs/protocol.md alone.

local picture = require "client.picture"

local strip = {}

local CELLS = 11
local LONGEST = 400
local UNCALIBRATED_OFFSET, UNCALIBRATED_WIDTH = 2, 80
local ON = 14

local function round(value)
    return math.floor(value + 0.5)
end

local function hex(row, x)
    return ("%02X%02X%02X"):format(picture.color(row, x))
end

local function covered(row, x)
    return select(4, picture.color(row, x))
end

-- Cells of a row: { width, cells = { "RRGGBB" ... } }; without a width where no texture is, and the cells are what Glimra
-- would read there. Or nil and what is wrong: cells are clean or the row is faulty, nothing is made better than it is.
local function read(row)
    local width, cells = 0, {}
    while width < math.min(row.width, LONGEST) and covered(row, width) > 0 do
        width = width + 1
    end
    if width == 0 then
        for i = 1, CELLS do
            cells[i] = hex(row, UNCALIBRATED_OFFSET + round((i - 1) * UNCALIBRATED_WIDTH / CELLS))
        end
        for x = 0, UNCALIBRATED_WIDTH - 1 do
            if covered(row, x) > 0 then
                return nil, ("the strip does not begin at the left edge, but at pixel %d"):format(x)
            end
        end
        return { cells = cells }
    end
    for i = 0, CELLS - 1 do
        local first, last = round(width * i / CELLS), round(width * (i + 1) / CELLS) - 1
        cells[i + 1] = hex(row, first)
        for x = first, last do
            if covered(row, x) < 1 or hex(row, x) ~= cells[i + 1] then
                return nil, ("pixel %d of a strip of %d is %s and %.0f %% covered; cell %d began as %s")
                    :format(x, width, hex(row, x), 100 * covered(row, x), i, cells[i + 1])
            end
        end
    end
    return { width = width, cells = cells }
end

local readSpans, readStrip

function strip.read(row)
    -- As long as no frame changes, so does no strip; the game's picture changes always.
    if row.spans == readSpans and readStrip.width then
        return readStrip
    end
    local result, problem = read(row)
    if result then
        readSpans, readStrip = row.spans, result
    end
    return result, problem
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
-- messages: { text, announce = frame, confirm = frame }.
function strip.newEye()
    return setmetatable({ frames = {}, messages = {} }, Eye)
end

-- made: when the picture was painted.
function Eye:see(time, shown, made)
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
                text = frame.prefix .. frame.character, announce = self.announced, confirm = frame,
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
