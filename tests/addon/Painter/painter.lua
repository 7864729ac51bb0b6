-- A small add-on that proves the stand-in for the game: it paints the strip, says what it is told to, and misbehaves on
-- demand.

local name = ...
local width, hold = 80, 0.1

local frame = CreateFrame("Frame", nil, WorldFrame)
frame:SetFrameStrata("TOOLTIP")
frame:SetPoint("TOPLEFT", 0, 0)

local cells, frames = {}, {}
for i = 1, 11 do
    cells[i] = frame:CreateTexture(nil, "OVERLAY")
end
-- Something of the interface that would hide the strip if it lay above it, and goes with the interface.
local bar = CreateFrame("Frame", nil, UIParent):CreateTexture(nil, "OVERLAY")
bar:SetAllPoints(UIParent)
bar:SetTexture("Interface\\Icons\\Some")

local function place()
    local height = GetPhysicalScreenSize and select(2, GetPhysicalScreenSize())
        or tonumber(GetCVar("gxResolution"):match("x(%d+)"))
    frame:SetScale(768 / height)
    frame:SetWidth(width)
    frame:SetHeight(4)
    for i, cell in ipairs(cells) do
        local left, right = math.floor(width * (i - 1) / 11 + 0.5), math.floor(width * i / 11 + 0.5)
        cell:SetPoint("TOPLEFT", left, 0)
        cell:SetWidth(right - left)
        cell:SetHeight(4)
    end
end

-- shown: eleven characters, one for each cell's color.
local colors = {
    ["."] = { 0, 0, 0 }, w = { 1, 1, 1 }, ["`"] = { 1, 0, 0 }, ["["] = { 0, 0, 1 }, ["]"] = { 0, 1, 0 },
    ["{"] = { 1, 0, 1 }, ["}"] = { 0, 1, 1 }, y = { 1, 1, 0 },
}
local function paint(shown)
    for i, cell in ipairs(cells) do
        local color = colors[shown:sub(i, i)]
        local set = cell.SetColorTexture or cell.SetTexture
        set(cell, color[1], color[2], color[3], 1)
    end
end

local function send(message)
    local bits, value = "", message:byte(#message)
    for bit = 6, 0, -1 do
        bits = bits .. (math.floor(value / 2 ^ bit) % 2 == 1 and "w" or ".")
    end
    frames[#frames + 1] = "w." .. bits .. "w."
    frames[#frames + 1] = "ww" .. (#message == 2 and bits:gsub("w", message:sub(1, 1)) or bits) .. "w."
    frames[#frames + 1] = "..........."
end

-- The time of the picture in which a frame is painted does not count: it is not on the screen yet.
local left, isNew = 0, false
local rest -- what is shown when nothing else is
local function update(_, elapsed)
    left = left - (isNew and 0 or elapsed)
    isNew = false
    if left <= 0 and frames[1] then
        paint(table.remove(frames, 1))
        left, isNew = hold, hold == 0.1
    elseif left <= 0 and rest then
        paint(rest)
        rest = nil
    end
end

frame:SetScript("OnUpdate", update)
frame:SetScript("OnEvent", function(_, event, argument)
    if event == "ADDON_LOADED" and argument == name then
        if not PainterDB then
            PainterDB = { loaded = 0, deep = { [1] = 1 / 3, [true] = "\n\0" }, call = update }
            PainterDB.deep.self = PainterDB
        end
        PainterDB.loaded = PainterDB.loaded + 1
    elseif event == "PLAYER_REGEN_DISABLED" then
        send("C")
    elseif event == "PLAYER_REGEN_ENABLED" then
        send("O")
    else
        place()
    end
end)
for _, event in ipairs { "ADDON_LOADED", "PLAYER_ENTERING_WORLD", "DISPLAY_SIZE_CHANGED", "UI_SCALE_CHANGED",
    "PLAYER_REGEN_DISABLED", "PLAYER_REGEN_ENABLED" } do
    frame:RegisterEvent(event)
end
paint("...........")

ChatFrame1EditBox:HookScript("OnEditFocusGained", function() send("E") end)
ChatFrame1EditBox:HookScript("OnEditFocusLost", function() send("e") end)

local isOn = true
if Settings then
    local page = Settings.RegisterVerticalLayoutCategory("Painter")
    Settings.RegisterAddOnCategory(page)
    local setting = Settings.RegisterProxySetting(page, "PAINTER_ON", Settings.VarType.Boolean, "Paint the strip", true,
        function() return isOn end,
        function(value)
            isOn = value
            frame:SetShown(value)
        end)
    Settings.CreateCheckbox(page, setting, "Whether it is painted")
end

local deeds = {}
-- Faults, each of which has to be noticed.
function deeds.crooked() cells[3]:SetWidth(6.4) end
function deeds.hole() cells[3]:Hide() end
function deeds.beside() frame:SetPoint("TOPLEFT", 1, 0) end
function deeds.low() frame:SetPoint("TOPLEFT", 0, -0.5) end
function deeds.hasty() hold = 0.02 end
function deeds.unknown() frame:RegisterEvent("NO_SUCH_EVENT") end
function deeds.misspelt() return UnitHeath end
-- What a secret value forbids.
function deeds.less() return UnitHealth("player") < 5 end
function deeds.equal() return 1 + 1 == UnitHealth("player") end
function deeds.key() return deeds[UnitHealth("player")] end
function deeds.test() return not UnitHealth("player") end
function deeds.add() return 1 + UnitHealth("player") end
function deeds.join() return "health " .. UnitHealth("player") end
-- What it does not.
function deeds.carry()
    local carried = { health = UnitHealth("player") }
    DEFAULT_CHAT_FRAME:AddMessage(type(carried.health) == "number" and carried.health)
end
function deeds.wide()
    width = 120
    place()
end
function deeds.calibrate() rest = "`.}w{[y`]w." end
function deeds.tell()
    local kept = PainterDB
    print("loaded", kept.loaded, kept.call, kept.deep.self, kept.deep[1] == 1 / 3, kept.deep[true] == "\n\0")
end

SLASH_PAINTER1 = "/paint"
SlashCmdList.PAINTER = function(what)
    if deeds[what] then
        deeds[what]()
    else
        send(what)
    end
end
