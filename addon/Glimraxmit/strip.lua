-- The strip: eleven cells in a row, on whole pixels of the screen, at the left end of its top edge.

local _, addon = ...

local CELLS = 11
local HEIGHT = 4
local FIRST_BIT, LAST_BIT = 3, 9

local COLORS = {
    black = { 0, 0, 0 },
    white = { 1, 1, 1 },
    red = { 1, 0, 0 },
    green = { 0, 1, 0 },
    blue = { 0, 0, 1 },
    cyan = { 0, 1, 1 },
    magenta = { 1, 0, 1 },
    yellow = { 1, 1, 0 },
}
local PATTERN = {
    "red", "black", "cyan", "white", "magenta", "blue", "yellow", "red", "green", "white", "black",
}

local strip = {}
addon.strip = strip

-- Without a parent it has a scale of its own, and stays when the player hides the interface.
local host = CreateFrame("Frame")
host:SetFrameStrata("TOOLTIP")
host:SetFrameLevel(100)
host:EnableMouse(false)
host:SetPoint("TOPLEFT", 0, 0)
host:SetHeight(HEIGHT)

local cells, shown, toShow = {}, {}, {}
for i = 1, CELLS do
    local cell = host:CreateTexture(nil, "OVERLAY")
    if cell.SetSnapToPixelGrid then
        cell:SetSnapToPixelGrid(false)
        cell:SetTexelSnappingBias(0)
    end
    cell:SetHeight(HEIGHT)
    cells[i] = cell
end

local function screenHeight()
    local height
    if GetPhysicalScreenSize then
        height = select(2, GetPhysicalScreenSize())
    else
        local size = GetCVar("gxResolution") or ({ GetScreenResolutions() })[GetCurrentResolution()]
        height = size and tonumber(size:match("x(%d+)"))
    end
    return height and height > 0 and height or 768
end

-- Puts the cells where they belong; again whenever the screen or a scale has changed.
function strip.place(width)
    -- The screen is 768 units high: with this scale a unit is a pixel.
    host:SetScale(768 / screenHeight())
    host:SetWidth(width)
    for i, cell in ipairs(cells) do
        local left = math.floor(width * (i - 1) / CELLS + 0.5)
        local right = math.floor(width * i / CELLS + 0.5)
        cell:ClearAllPoints()
        cell:SetPoint("TOPLEFT", host, "TOPLEFT", left, 0)
        cell:SetWidth(right - left)
    end
end

local function paint(colors)
    for i = 1, CELLS do
        local color = colors[i]
        if shown[i] ~= color then
            shown[i] = color
            local cell, rgb = cells[i], COLORS[color]
            local set = cell.SetColorTexture or cell.SetTexture
            set(cell, rgb[1], rgb[2], rgb[3], 1)
        end
    end
end

local function paintFrame(value, confirmColor, dataColor)
    toShow[1], toShow[2], toShow[10], toShow[11] = "white", confirmColor, "white", "black"
    local weight = 64
    for i = FIRST_BIT, LAST_BIT do
        toShow[i] = value >= weight and dataColor or "black"
        value = value % weight
        weight = weight / 2
    end
    paint(toShow)
end

function strip.announce(value)
    paintFrame(value, "black", "white")
end

-- `color` is that of the data cells, which carries the prefix.
function strip.confirm(value, color)
    paintFrame(value, "white", color)
end

function strip.pattern()
    paint(PATTERN)
end

function strip.black()
    for i = 1, CELLS do
        toShow[i] = "black"
    end
    paint(toShow)
end

function strip.show(visible)
    if visible then
        host:Show()
    else
        host:Hide()
    end
end
