-- A small add-on that proves the stand-in for the game: it paints the strip and says what it is told to.

local name = ...
local WIDTH, HOLD = 80, 0.12

local frame = CreateFrame("Frame", nil, WorldFrame)
frame:SetFrameStrata("TOOLTIP")
frame:SetFrameLevel(1000)
frame:SetPoint("TOPLEFT", 0, 0)

local cells, frames, until_ = {}, {}, 0
for i = 1, 11 do
    cells[i] = frame:CreateTexture(nil, "OVERLAY")
end

local function place()
    local _, height = 0, nil
    if GetPhysicalScreenSize then
        _, height = GetPhysicalScreenSize()
    else
        height = tonumber(GetCVar("gxResolution"):match("x(%d+)"))
    end
    frame:SetScale(768 / height)
    frame:SetWidth(WIDTH)
    frame:SetHeight(4)
    for i, cell in ipairs(cells) do
        local left, right = math.floor(WIDTH * (i - 1) / 11 + 0.5), math.floor(WIDTH * i / 11 + 0.5)
        cell:SetPoint("TOPLEFT", left, 0)
        cell:SetWidth(right - left)
        cell:SetHeight(4)
    end
end

-- shown: eleven characters, "w" for a white cell.
local function paint(shown)
    for i, cell in ipairs(cells) do
        local value = shown:sub(i, i) == "w" and 1 or 0
        (cell.SetColorTexture or cell.SetTexture)(cell, value, value, value, 1)
    end
end

local function send(character)
    local bits, value = "", character:byte()
    for place_ = 6, 0, -1 do
        bits = bits .. (math.floor(value / 2 ^ place_) % 2 == 1 and "w" or ".")
    end
    frames[#frames + 1] = "w." .. bits .. "w."
    frames[#frames + 1] = "ww" .. bits .. "w."
    frames[#frames + 1] = "..........."
end

local function update(_, elapsed)
    until_ = until_ - elapsed
    if until_ <= 0 and frames[1] then
        paint(table.remove(frames, 1))
        until_ = HOLD
    end
end

local deeds = {}

frame:SetScript("OnEvent", function(_, event, argument)
    if event == "ADDON_LOADED" and argument == name then
        PainterDB = PainterDB or { loaded = 0, odd = { inner = { 1 / 3 } }, call = update }
        PainterDB.loaded = PainterDB.loaded + 1
        PainterDB.self = PainterDB
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
frame:SetScript("OnUpdate", update)
paint("...........")

-- Faults, each of which the stand-in has to notice.
function deeds.wide() WIDTH = 120 place() end
function deeds.crooked() cells[3]:SetWidth(6.4) end
function deeds.hole() cells[3]:Hide() end
function deeds.unknown() frame:RegisterEvent("NO_SUCH_EVENT") end
function deeds.less() return UnitHealth("player") < 5 end
function deeds.equal() return UnitHealth("player") == 5 end
function deeds.key() return deeds[UnitHealth("player")] end
function deeds.truth() return UnitHealth("player") and 1 or 2 end
function deeds.misspelt() return UnitHeath end
function deeds.loaded() DEFAULT_CHAT_FRAME:AddMessage("loaded " .. PainterDB.loaded .. " times, " .. type(PainterDB.call)) end

SLASH_PAINTER1 = "/paint"
SlashCmdList.PAINTER = function(what)
    if deeds[what] then
        deeds[what]()
    else
        send(what)
    end
end
