-- The top rows of a picture, as the client's textures make them.

local picture = {}

-- A color has to fill so many rows of pixels.
local ROWS = 4
-- Closer than this to a whole pixel an edge counts as on it: the game reckons in single precision.
local EXACT = 0.01

local function whole(value)
    local nearest = math.floor(value + 0.5)
    return math.abs(value - nearest) < EXACT and nearest or value
end

local function effectiveScale(region)
    return region.scale * (region.parent and effectiveScale(region.parent) or 1)
end

-- A region's top left corner, in pixels from that of the screen, and how many pixels its unit is.
local function cornerOf(client, region)
    local left, top, anchor = 0, 0, region.anchor
    if anchor.to then
        left, top = cornerOf(client, anchor.to)
    end
    local pixels = effectiveScale(region) * client.height / 768
    return left + anchor.x * pixels, top - anchor.y * pixels, pixels
end

-- What the textures lay on the rows: spans of color, the last on top. A texture lies where its frame does.
local function spansOf(client)
    local spans = {}
    for _, texture in ipairs(client.regions) do
        if texture.color and texture.anchor and texture:IsVisible() then
            local left, top, pixels = cornerOf(client, texture)
            local bottom, color, frame = whole(top + texture.height * pixels), texture.color, texture.parent
            spans[#spans + 1] = bottom > 0 and top < ROWS and {
                left = whole(left), right = whole(left + texture.width * pixels), name = color.name,
                isWhole = color.alpha == 1 and whole(top) <= 0 and bottom >= ROWS,
                depth = (frame.strata * 1000 + frame.level) * 10000 + texture.order,
            } or nil
        end
    end
    table.sort(spans, function(a, b) return a.depth < b.depth end)
    return spans
end

-- The spans of a picture, the same table as long as no frame changes, and when it was made.
function picture.render(client, hasInterface)
    if client.spansVersion ~= client.frameVersion then
        client.spansVersion, client.spans = client.frameVersion, spansOf(client)
    end
    return { spans = hasInterface and client.spans or {}, made = client.now }
end

-- The color of a column of pixels as RRGGBB; "game" where the game's own picture is seen, "mixed" where an edge lies
-- inside it. A real screen may round such an edge away, and on another day it may not.
function picture.color(row, x)
    for i = #row.spans, 1, -1 do
        local span = row.spans[i]
        if span.left < x + 1 and span.right > x then
            return span.isWhole and span.left <= x and span.right >= x + 1 and span.name or "mixed"
        end
    end
    return "game"
end

return picture
