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

-- The two ends of an extent of which some shares are known, else one share and the length; nil if it is not known.
local function extent(known, length)
    local share, at = next(known)
    if not share then
        return nil
    end
    local other, otherAt = next(known, share)
    if other then
        length = (otherAt - at) / (other - share)
    end
    return at - share * length, at + (1 - share) * length
end

-- Left, top, right and bottom in pixels from the screen's top left corner; nil where a region has no place.
function picture.rectangle(client, region)
    if not region or region == client.globals.UIParent or region == client.globals.WorldFrame then
        return 0, 0, client.width, client.height
    end
    local state = hidden[region]
    local pixels = frames.effectiveScale(state.class == "Texture" and state.parent or region) * client.height / 768
    local horizontal, vertical = {}, {}
    for point, anchor in pairs(state.points) do
        local left, top, right, bottom = picture.rectangle(client, anchor.relativeTo)
        if not left then
            return nil
        end
        local x, y = shares(point)
        local relativeX, relativeY = shares(anchor.relativePoint)
        horizontal[x] = left + relativeX * (right - left) + anchor.x * pixels
        vertical[y] = top + relativeY * (bottom - top) - anchor.y * pixels
    end
    local left, right = extent(horizontal, state.width * pixels)
    local top, bottom = extent(vertical, state.height * pixels)
    return left, top, right, bottom
end

local function alphaOf(region)
    local state = hidden[region]
    return state.alpha * (state.parent and not state.ignoresParentAlpha and alphaOf(state.parent) or 1)
end

local function whole(value)
    local nearest = math.floor(value + 0.5)
    return math.abs(value - nearest) < EXACT and nearest or value
end

-- What the textures lay on the top row: spans of color, the last on top. Valid as long as no frame changes.
local function spansOf(client)
    local spans = {}
    for _, texture in ipairs(frames.visibleTextures(client)) do
        local left, top, right, bottom = picture.rectangle(client, texture.region)
        if left and top then
            left, top, right, bottom = whole(left), whole(top), whole(right), whole(bottom)
            local height = math.min(bottom, 1) - math.max(top, 0)
            if height > 0 and right > left then
                local color, tint = texture.color, texture.tint or { 1, 1, 1, 1 }
                if color == "a picture" then
                    color = { 0.42, 0.35, 0.17, 1 }
                end
                spans[#spans + 1] = {
                    left = left, right = right, color[1] * tint[1] * 255, color[2] * tint[2] * 255,
                    color[3] * tint[3] * 255, alpha = color[4] * tint[4] * height * alphaOf(texture.region),
                }
            end
        end
    end
    return spans
end

-- A row: its spans, its width in pixels, and what the game's world shows where there are none.
function picture.render(client, isLoadingScreen)
    if client.spansVersion ~= client.frameVersion then
        client.spansVersion, client.spans = client.frameVersion, spansOf(client)
    end
    return { width = client.width, spans = isLoadingScreen and {} or client.spans, noise = client:random(1000000) }
end

-- Red, green and blue of a pixel, 0 to 255, and how much of it textures cover. An edge between pixels is a mixture.
function picture.color(row, x)
    local noise = (row.noise * 7919 + (x + 1) * 104729) % 1000003
    noise = noise * noise % 16777213
    local red, green, blue, covered = noise % 256, math.floor(noise / 256) % 256, math.floor(noise / 65536), 0
    for _, span in ipairs(row.spans) do
        local share = (math.min(span.right, x + 1) - math.max(span.left, x)) * span.alpha
        if share > 0 then
            red, green, blue = red + (span[1] - red) * share, green + (span[2] - green) * share,
                blue + (span[3] - blue) * share
            covered = covered + (1 - covered) * share
        end
    end
    return math.floor(red + 0.5), math.floor(green + 0.5), math.floor(blue + 0.5), covered
end

return picture
