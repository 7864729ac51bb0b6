-- The top row of a picture, pixel by pixel, as the client's textures and the game's world make it.

local frames = require "client.frames"
local hidden = frames.hidden

local picture = {}

-- Closer than this to a whole pixel an edge counts as on it: the game reckons in single precision.
local EXACT = 0.01

-- A place's share of the width from the left and of the height from the top.
local function shares(point)
    local x = point:find("LEFT") and 0 or point:find("RIGHT") and 1 or 0.5
    local y = point:find("TOP") and 0 or point:find("BOTTOM") and 1 or 0.5
    return x, y
end

local function whole(value)
    local nearest = math.floor(value + 0.5)
    return math.abs(value - nearest) < EXACT and nearest or value
end

-- The ends of an extent of which two shares are known, or one and the length; nil where it is not known.
local function extent(known, length)
    local share, at = next(known)
    if not share then
        return nil
    end
    local other, otherAt = next(known, share)
    if other then
        length = (otherAt - at) / (other - share)
    end
    return whole(at - share * length), whole(at + (1 - share) * length)
end

-- Left, right, top and bottom in pixels from the screen's top left corner; nil where a region has no place.
local function rectangle(client, region)
    local state = hidden[region or false]
    if not state or region == client.globals.UIParent or region == client.globals.WorldFrame then
        return 0, client.width, 0, client.height
    end
    local pixels = frames.effectiveScale(state.class == "Texture" and state.parent or region) * client.height / 768
    local horizontal, vertical = {}, {}
    for point, anchor in pairs(state.points) do
        local left, right, top, bottom = rectangle(client, anchor.relativeTo)
        if not top then
            return nil
        end
        local x, y = shares(point)
        local relativeX, relativeY = shares(anchor.relativePoint)
        horizontal[x] = left + relativeX * (right - left) + anchor.x * pixels
        vertical[y] = top + relativeY * (bottom - top) - anchor.y * pixels
    end
    local left, right = extent(horizontal, state.width * pixels)
    return left, right, extent(vertical, state.height * pixels)
end

local function alphaOf(region)
    local state = hidden[region]
    return state.alpha * (state.parent and not state.ignoresParentAlpha and alphaOf(state.parent) or 1)
end

-- What the textures lay on the top row: spans of color, the last on top.
local function spansOf(client)
    local spans, white = {}, { 1, 1, 1, 1 }
    for _, texture in ipairs(frames.visibleTextures(client)) do
        local left, right, top, bottom = rectangle(client, texture)
        local height = top and math.min(bottom, 1) - math.max(top, 0) or 0
        if height > 0 and right > left then
            local color, tint = hidden[texture].color, hidden[texture].tint or white
            local span = { left = left, right = right, alpha = color[4] * tint[4] * height * alphaOf(texture) }
            for channel = 1, 3 do
                span[channel] = color[channel] * tint[channel] * 255
            end
            spans[#spans + 1] = span
        end
    end
    return spans
end

-- A row: its spans, the same ones as long as no frame changes, and what the game's world shows where there are none.
function picture.render(client, hasInterface)
    if client.spansVersion ~= client.frameVersion then
        client.spansVersion, client.spans = client.frameVersion, spansOf(client)
    end
    return {
        width = client.width, spans = hasInterface and client.spans or {}, noise = client:random(1000000),
        made = client.now,
    }
end

-- The color of a pixel as RRGGBB, and what it shows: "game", a "clean" color, or a "mixed" one, where an edge lies
-- inside the pixel. A real screen may round such an edge away, and on another day it may not.
function picture.color(row, x)
    local noise = (row.noise * 7919 + (x + 1) * 104729) % 1000003
    noise = noise * noise % 16777213
    local rgb, shows = { noise % 256, math.floor(noise / 256) % 256, math.floor(noise / 65536) }, "game"
    for _, span in ipairs(row.spans) do
        local share = (math.min(span.right, x + 1) - math.max(span.left, x)) * span.alpha
        if share > 0 then
            shows = share == 1 and "clean" or "mixed"
            for channel = 1, 3 do
                rgb[channel] = rgb[channel] + (span[channel] - rgb[channel]) * share
            end
        end
    end
    for channel = 1, 3 do
        rgb[channel] = math.max(0, math.min(255, math.floor(rgb[channel] + 0.5)))
    end
    return ("%02X%02X%02X"):format(rgb[1], rgb[2], rgb[3]), shows
end

return picture
