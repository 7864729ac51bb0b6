-- Frames, textures and edit boxes: what an add-on makes, places, shows, and hangs its scripts on.

local reveal = require("client.secrets").reveal

local frames = {}

-- What the client knows of each, behind the add-on's back.
local hidden = {}
frames.hidden = hidden

local strata, layers, points, scripts = {}, {}, {}, { Frame = {}, EditBox = {} }
for list, words in pairs {
    [strata] = "WORLD BACKGROUND LOW MEDIUM HIGH DIALOG FULLSCREEN FULLSCREEN_DIALOG TOOLTIP",
    [layers] = "BACKGROUND BORDER ARTWORK OVERLAY HIGHLIGHT",
    [points] = "TOPLEFT TOP TOPRIGHT LEFT CENTER RIGHT BOTTOMLEFT BOTTOM BOTTOMRIGHT",
    [scripts.Frame] = "OnEvent OnUpdate OnShow OnHide OnSizeChanged OnEnter OnLeave OnMouseDown OnMouseUp",
    [scripts.EditBox] = "OnEditFocusGained OnEditFocusLost OnEnterPressed OnEscapePressed OnTextChanged",
} do
    local place = 0
    for word in words:gmatch("%S+") do
        place = place + 1
        list[word] = place
    end
end

local function need(condition, text, ...)
    if not condition then
        error(text:format(...), 3)
    end
end

local function number(value)
    value = reveal(value)
    need(type(value) == "number" and value == value, "a number is wanted, not %s", tostring(value))
    return value
end

local function set(self, field, value)
    hidden[self][field] = value
    hidden[self].client.frameVersion = hidden[self].client.frameVersion + 1
end

local function runScript(self, name)
    local script = hidden[self].scripts[name]
    if script then
        hidden[self].client:call(script, self)
    end
end

local Region, Texture, Frame, EditBox, MessageFrame = {}, {}, {}, {}, {}

for class, methods in pairs {
    [Region] = { GetParent = "parent", GetName = "name", GetObjectType = "class", GetWidth = "width",
        GetHeight = "height", GetAlpha = "alpha", IsShown = "shown" },
    [Frame] = { GetScale = "scale", GetFrameLevel = "level", GetFrameStrata = "strata" },
} do
    for method, field in pairs(methods) do
        class[method] = function(self) return hidden[self][field] end
    end
end

function Region:SetWidth(width) set(self, "width", number(width)) end
function Region:SetHeight(height) set(self, "height", number(height)) end
function Region:SetSize(width, height)
    set(self, "width", number(width))
    set(self, "height", number(height))
end
function Region:SetAlpha(alpha) set(self, "alpha", math.max(0, math.min(1, number(alpha)))) end

-- SetPoint(point [, relativeTo [, relativePoint]] [, x, y])
function Region:SetPoint(point, ...)
    need(points[point], "SetPoint: there is no point %s", tostring(point))
    local anchor, rest = { relativeTo = hidden[self].parent, relativePoint = point }, { ... }
    if type(rest[1]) == "table" or select("#", ...) > 0 and rest[1] == nil then
        anchor.relativeTo = table.remove(rest, 1)
    end
    if type(rest[1]) == "string" then
        anchor.relativePoint = table.remove(rest, 1)
    end
    need(points[anchor.relativePoint], "SetPoint: there is no point %s", anchor.relativePoint)
    anchor.x, anchor.y = number(rest[1] or 0), number(rest[2] or 0)
    hidden[self].points[point] = anchor
    set(self, "points", hidden[self].points)
end

function Region:ClearAllPoints() set(self, "points", {}) end

function Region:SetAllPoints(relativeTo)
    Region.ClearAllPoints(self)
    for _, point in ipairs { "TOPLEFT", "BOTTOMRIGHT" } do
        Region.SetPoint(self, point, relativeTo or hidden[self].parent, point)
    end
end

function Region:IsVisible()
    local state = hidden[self]
    return state.shown and (not state.parent or Region.IsVisible(state.parent))
end

function Region:SetShown(shown)
    shown = not not reveal(shown)
    if hidden[self].shown ~= shown then
        set(self, "shown", shown)
        runScript(self, shown and "OnShow" or "OnHide")
    end
end

function Region:Show() Region.SetShown(self, true) end
function Region:Hide() Region.SetShown(self, false) end

local function color(r, g, b, a)
    return { number(r), number(g), number(b), number(a or 1) }
end

function Texture:SetColorTexture(...) set(self, "color", color(...)) end
function Texture:SetVertexColor(...) set(self, "tint", color(...)) end

function Texture:SetTexture(file, ...)
    if hidden[self].client.kind.old and type(file) == "number" then
        set(self, "color", color(file, ...))
    elseif type(file) == "string" and file:upper():find("WHITE8X8$") then
        set(self, "color", color(1, 1, 1))
    else
        set(self, "color", file and color(0.42, 0.35, 0.17)) -- Some picture.
    end
end

function Texture:SetDrawLayer(layer, sublevel)
    need(layers[layer], "SetDrawLayer: there is no layer %s", tostring(layer))
    set(self, "layer", layers[layer] + (sublevel or 0) / 100)
end

-- Nothing moves by them where edges lie on whole pixels, and where they do not the picture shows it.
function Texture:SetSnapToPixelGrid(snap) set(self, "snap", snap) end
function Texture:SetTexelSnappingBias(bias) set(self, "bias", number(bias)) end

function Frame:EnableMouse(enable) set(self, "mouse", enable) end
function Frame:SetIgnoreParentScale(ignore) set(self, "ignoresParentScale", ignore) end
function Frame:SetIgnoreParentAlpha(ignore) set(self, "ignoresParentAlpha", ignore) end

function Frame:SetScale(scale)
    need(number(scale) > 0, "SetScale: a scale is more than 0")
    set(self, "scale", scale)
end

function Frame:GetEffectiveScale()
    local state = hidden[self]
    local isAlone = not state.parent or state.ignoresParentScale
    return state.scale * (isAlone and 1 or Frame.GetEffectiveScale(state.parent))
end
frames.effectiveScale = Frame.GetEffectiveScale

function Frame:SetFrameStrata(name)
    need(strata[name], "SetFrameStrata: there is no strata %s", tostring(name))
    set(self, "strata", name)
end

function Frame:SetFrameLevel(level)
    need(number(level) >= 0 and level <= 10000, "SetFrameLevel: 0 to 10000")
    set(self, "level", level)
end

function Frame:SetScript(name, script)
    local state = hidden[self]
    need(scripts.Frame[name] or (scripts[state.class] or {})[name], "%s has no script %s", state.class, tostring(name))
    need(script == nil or type(script) == "function", "SetScript: a function is wanted")
    state.scripts[name] = script
end

function Frame:GetScript(name) return hidden[self].scripts[name] end

function Frame:HookScript(name, hook)
    need(type(hook) == "function", "HookScript: a function is wanted")
    local client, original = hidden[self].client, hidden[self].scripts[name]
    Frame.SetScript(self, name, original and function(...)
        client:call(original, ...)
        client:call(hook, ...)
    end or hook)
end

-- unit: the one that is asked for, or any.
local function register(self, event, unit)
    local client = hidden[self].client
    need(client.kind.events[event], "RegisterEvent: attempt to register unknown event \"%s\"", tostring(event))
    client.listeners[event] = client.listeners[event] or {}
    if not hidden[self].events[event] then
        table.insert(client.listeners[event], self)
    end
    hidden[self].events[event] = unit
end

function Frame:RegisterEvent(event) register(self, event, "any") end
function Frame:RegisterUnitEvent(event, unit) register(self, event, unit) end
function Frame:IsEventRegistered(event) return hidden[self].events[event] ~= nil end

function Frame:UnregisterEvent(event)
    hidden[self].events[event] = nil
    local listeners = hidden[self].client.listeners[event] or {}
    for i = #listeners, 1, -1 do
        if listeners[i] == self then
            table.remove(listeners, i)
        end
    end
end

function Frame:UnregisterAllEvents()
    for event in pairs(hidden[self].events) do
        Frame.UnregisterEvent(self, event)
    end
end

function Frame:CreateTexture(name, layer, _, sublevel)
    local texture = frames.create(hidden[self].client, "Texture", name, self)
    Texture.SetDrawLayer(texture, layer or "ARTWORK", sublevel)
    return texture
end

function EditBox:HasFocus() return hidden[self].client.focus == self end

function EditBox:SetFocus()
    local client = hidden[self].client
    if client.focus ~= self then
        if client.focus then
            client.focus:ClearFocus()
        end
        client.focus = self
        runScript(self, "OnEditFocusGained")
    end
end

function EditBox:ClearFocus()
    if EditBox.HasFocus(self) then
        hidden[self].client.focus = nil
        runScript(self, "OnEditFocusLost")
    end
end

function MessageFrame:AddMessage(text) hidden[self].client:say(tostring(reveal(text))) end

local classes = {
    Texture = { Region = Region, Texture = Texture },
    Frame = { Region = Region, Frame = Frame },
    EditBox = { Region = Region, Frame = Frame, EditBox = EditBox },
    MessageFrame = { Region = Region, Frame = Frame, MessageFrame = MessageFrame },
}

-- A class as this kind of client has it.
local function methodsOf(kind, class)
    local methods = {}
    for part, all in pairs(classes[class]) do
        for name, method in pairs(all) do
            methods[name] = not kind.lacks[part .. ":" .. name] and method or nil
        end
    end
    return methods
end

function frames.create(client, class, name, parent)
    client.methods[class] = client.methods[class] or { __index = methodsOf(client.kind, class) }
    local region, above = setmetatable({}, client.methods[class]), hidden[parent or false]
    hidden[region] = {
        client = client, class = class, name = name, parent = parent, shown = true, points = {}, width = 0, height = 0,
        alpha = 1, scale = 1, strata = above and above.strata or "MEDIUM", level = above and above.level + 1 or 0,
        scripts = {}, events = {}, order = #client.regions + 1,
    }
    client.regions[#client.regions + 1] = region
    if name then
        rawset(client.globals, name, region)
    end
    return region
end

function frames.createFrame(client, class, name, parent)
    need(classes[class] and class ~= "Texture", "CreateFrame: there is no frame type %s", tostring(class))
    need(parent == nil or hidden[parent], "CreateFrame: the parent is no frame")
    return frames.create(client, class, name, parent)
end

local function isPaintedBefore(a, b)
    local frameA, frameB = hidden[a.parent], hidden[b.parent]
    for _, pair in ipairs { { strata[frameA.strata], strata[frameB.strata] }, { frameA.level, frameB.level },
        { frameA.order, frameB.order }, { a.layer, b.layer } } do
        if pair[1] ~= pair[2] then
            return pair[1] < pair[2]
        end
    end
    return a.order < b.order
end

-- The textures that are to be seen, in the order in which they are painted, the last one on top.
function frames.visibleTextures(client)
    local list, regionOf = {}, {}
    for _, region in ipairs(client.regions) do
        local state = hidden[region]
        if state.class == "Texture" and state.color and Region.IsVisible(region) then
            list[#list + 1], regionOf[state] = state, region
        end
    end
    table.sort(list, isPaintedBefore)
    for i, state in ipairs(list) do
        list[i] = regionOf[state]
    end
    return list
end

return frames
