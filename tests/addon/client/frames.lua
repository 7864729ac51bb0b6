-- Frames, textures and edit boxes, as far as add-ons that paint and listen need them. A region is a table with its
-- methods behind it; what the client knows of it stands in its fields.

local frames = {}

local function places(text)
    local place, count = {}, 0
    for word in text:gmatch("%S+") do
        count = count + 1
        place[word] = count
    end
    return place
end
local strata = places "WORLD BACKGROUND LOW MEDIUM HIGH DIALOG FULLSCREEN FULLSCREEN_DIALOG TOOLTIP"
local layers = places "BACKGROUND BORDER ARTWORK OVERLAY HIGHLIGHT"
local scripts = places "OnEvent OnUpdate OnShow OnHide OnEditFocusGained OnEditFocusLost"

local function need(condition, text, ...)
    if not condition then
        error(text:format(...), 3)
    end
end

local function set(self, field, value)
    self[field] = value
    self.client.frameVersion = self.client.frameVersion + 1
end

local Region, Texture, Frame, EditBox = {}, {}, {}, {}

for method, field in pairs { SetWidth = "width", SetHeight = "height", SetScale = "scale", SetFrameLevel = "level" } do
    Region[method] = function(self, value)
        need(type(value) == "number" and value >= 0, "%s: a number is wanted, not %s", method, tostring(value))
        set(self, field, value)
    end
end

-- SetPoint("TOPLEFT" [, relativeTo, "TOPLEFT"], x, y): this client knows no other corner.
function Region:SetPoint(point, to, toPoint, x, y)
    if type(to) == "number" then
        to, toPoint, x, y = self.parent, point, to, toPoint
    end
    need(point == "TOPLEFT" and toPoint == point and x and y, "SetPoint: what point is this?")
    set(self, "anchor", { to = to, x = x, y = y })
end

function Region:ClearAllPoints() set(self, "anchor", nil) end
function Region:Show() set(self, "isShown", true) end
function Region:Hide() set(self, "isShown", false) end
function Region:IsVisible() return self.isShown and (not self.parent or Region.IsVisible(self.parent)) end

function Texture:SetColorTexture(r, g, b, alpha)
    local name = ("%02X%02X%02X"):format(r * 255, g * 255, b * 255)
    set(self, "color", { name = name, alpha = alpha or 1 })
end
function Texture:SetTexture(...)
    need(self.client.kind.old, "SetTexture: a file is wanted")
    Texture.SetColorTexture(self, ...)
end
-- Nothing moves by them where edges lie on whole pixels, and where they do not the picture shows it.
function Texture.SetSnapToPixelGrid() end
function Texture.SetTexelSnappingBias() end

function Frame.EnableMouse() end
function Frame:SetFrameStrata(name)
    need(strata[name], "SetFrameStrata: there is no strata %s", tostring(name))
    set(self, "strata", strata[name])
end

function Frame:CreateTexture(_, layer)
    need(layers[layer], "CreateTexture: there is no layer %s", tostring(layer))
    local texture = frames.create(self.client, "Texture", nil, self)
    texture.layer = layers[layer]
    return texture
end

function Frame:SetScript(name, script)
    need(scripts[name], "there is no script %s", tostring(name))
    self.scripts[name] = script
end

function Frame:HookScript(name, hook)
    local client, original = self.client, self.scripts[name]
    Frame.SetScript(self, name, original and function(...)
        client:call(original, ...)
        client:call(hook, ...)
    end or hook)
end

-- unit: the one that is asked for, or nil for any.
function Frame:RegisterUnitEvent(event, unit)
    need(self.client.kind.events[event], "RegisterEvent: attempt to register unknown event \"%s\"", tostring(event))
    self.events[event] = unit or "any"
end
function Frame:RegisterEvent(event) Frame.RegisterUnitEvent(self, event) end

-- Takes the keyboard from another box, or gives it away.
local function focus(client, box)
    local last = client.focus
    client.focus = box
    for _, change in ipairs { { last, "OnEditFocusLost" }, { box, "OnEditFocusGained" } } do
        if last ~= box and change[1] and change[1].scripts[change[2]] then
            client:call(change[1].scripts[change[2]], change[1])
        end
    end
end
function EditBox:SetFocus() focus(self.client, self) end
function EditBox:ClearFocus() focus(self.client, self.client.focus ~= self and self.client.focus or nil) end
function EditBox:AddMessage(text) self.client:say(text) end

local classes = { Texture = { Region, Texture }, Frame = { Region, Frame }, EditBox = { Region, Frame, EditBox } }

function frames.create(client, class, name, parent)
    need(classes[class], "CreateFrame: there is no frame type %s", tostring(class))
    -- The class as this kind of client has it.
    local methods = {}
    for _, part in ipairs(classes[class]) do
        for method, run in pairs(part) do
            methods[method] = not client.kind.lacks[method] and run or nil
        end
    end
    local region = setmetatable({
        client = client, class = class, parent = parent, isShown = true, width = 0, height = 0, scale = 1,
        strata = parent and parent.strata or strata.MEDIUM, level = parent and (parent.level or 0) + 1 or 0,
        scripts = {}, events = {}, order = #client.regions + 1,
    }, { __index = methods })
    client.regions[region.order] = region
    if name then
        client.globals[name] = region
    end
    return region
end

function frames.effectiveScale(region)
    return region.scale * (region.parent and frames.effectiveScale(region.parent) or 1)
end

local function isPaintedBefore(a, b)
    for _, field in ipairs { "strata", "level", "layer" } do
        if a[field] ~= b[field] then
            return a[field] < b[field]
        end
    end
    return a.order < b.order
end

-- The textures that are to be seen, in the order in which they are painted, the last one on top.
function frames.visibleTextures(client)
    local list = {}
    for _, region in ipairs(client.regions) do
        if region.color and region.anchor and region:IsVisible() then
            -- A frame's own change of strata or level counts for its textures, too.
            region.strata, region.level = region.parent.strata, region.parent.level
            list[#list + 1] = region
        end
    end
    table.sort(list, isPaintedBefore)
    return list
end

return frames
