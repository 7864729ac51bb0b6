-- Frames, textures and edit boxes: what an add-on makes, places, shows, and hangs its scripts on.

local secrets = require "client.secrets"
local reveal = secrets.reveal

local frames = {}

-- What the client knows of each, behind the add-on's back.
local hidden = setmetatable({}, { __mode = "k" })
frames.hidden = hidden

local function set(text)
    local result = {}
    for word in text:gmatch("%S+") do
        result[word] = #word
    end
    return result
end

local strata = {}
for level, name in ipairs { "WORLD", "BACKGROUND", "LOW", "MEDIUM", "HIGH", "DIALOG", "FULLSCREEN", "FULLSCREEN_DIALOG",
    "TOOLTIP" } do
    strata[name] = level
end
local layers = { BACKGROUND = 1, BORDER = 2, ARTWORK = 3, OVERLAY = 4, HIGHLIGHT = 5 }
local points = set "TOPLEFT TOP TOPRIGHT LEFT CENTER RIGHT BOTTOMLEFT BOTTOM BOTTOMRIGHT"
local scripts = {
    Frame = set "OnEvent OnUpdate OnShow OnHide OnLoad OnSizeChanged OnEnter OnLeave OnMouseDown OnMouseUp",
    EditBox = set "OnEditFocusGained OnEditFocusLost OnEnterPressed OnEscapePressed OnTextChanged OnChar",
}

local function need(condition, text, ...)
    if not condition then
        error(text:format(...), 3)
    end
end

local function number(value, what)
    value = reveal(value)
    need(type(value) == "number" and value == value, "%s: a number is wanted, not %s", what, tostring(value))
    return value
end

local function changed(self)
    hidden[self].client.frameVersion = hidden[self].client.frameVersion + 1
end

local Region, Texture, Frame, EditBox, MessageFrame = {}, {}, {}, {}, {}

function Region:GetParent() return hidden[self].parent end
function Region:GetName() return hidden[self].name end
function Region:GetObjectType() return hidden[self].class end
function Region:GetWidth() return hidden[self].width end
function Region:GetHeight() return hidden[self].height end
function Region:GetAlpha() return hidden[self].alpha end
function Region:IsShown() return hidden[self].shown end

function Region:SetWidth(width)
    hidden[self].width = number(width, "SetWidth")
    changed(self)
end

function Region:SetHeight(height)
    hidden[self].height = number(height, "SetHeight")
    changed(self)
end

function Region:SetSize(width, height)
    hidden[self].width, hidden[self].height = number(width, "SetSize"), number(height, "SetSize")
    changed(self)
end

-- SetPoint(point [, relativeTo [, relativePoint]] [, x, y])
function Region:SetPoint(point, ...)
    need(points[point], "SetPoint: there is no point %s", tostring(point))
    local relativeTo, relativePoint, rest = hidden[self].parent, point, { ... }
    if type(rest[1]) == "table" or select("#", ...) > 0 and rest[1] == nil then
        relativeTo = rest[1]
        table.remove(rest, 1)
    end
    if type(rest[1]) == "string" then
        relativePoint = table.remove(rest, 1)
        need(points[relativePoint], "SetPoint: there is no point %s", relativePoint)
    end
    need(relativeTo ~= self, "SetPoint: a region cannot be placed by itself")
    hidden[self].points[point] = {
        relativeTo = relativeTo,
        relativePoint = relativePoint,
        x = number(rest[1] or 0, "SetPoint"),
        y = number(rest[2] or 0, "SetPoint"),
    }
    changed(self)
end

function Region:ClearAllPoints()
    hidden[self].points = {}
    changed(self)
end

function Region:SetAllPoints(relativeTo)
    hidden[self].points = {}
    Region.SetPoint(self, "TOPLEFT", relativeTo or hidden[self].parent, "TOPLEFT")
    Region.SetPoint(self, "BOTTOMRIGHT", relativeTo or hidden[self].parent, "BOTTOMRIGHT")
end

function Region:SetAlpha(alpha)
    hidden[self].alpha = math.max(0, math.min(1, number(alpha, "SetAlpha")))
    changed(self)
end

function Region:IsVisible()
    local state = hidden[self]
    return state.shown and (not state.parent or Region.IsVisible(state.parent))
end

local function setShown(self, shown)
    local state = hidden[self]
    if state.shown ~= shown then
        state.shown = shown
        changed(self)
        local script = state.scripts and state.scripts[shown and "OnShow" or "OnHide"]
        if script then
            state.client:call(script, self)
        end
    end
end

function Region:Show() setShown(self, true) end
function Region:Hide() setShown(self, false) end
function Region:SetShown(shown) setShown(self, not not reveal(shown)) end

local function setColor(self, r, g, b, a)
    hidden[self].color = { number(r, "color"), number(g, "color"), number(b, "color"), number(a or 1, "color") }
    changed(self)
end

Texture.SetColorTexture = setColor

function Texture:SetTexture(file, g, b, a)
    if hidden[self].client.kind.old and type(file) == "number" then
        setColor(self, file, g, b, a)
    elseif type(file) == "string" and file:upper():find("WHITE8X8$") then
        setColor(self, 1, 1, 1, 1)
    else
        hidden[self].color = file and "a picture" or nil
        changed(self)
    end
end

function Texture:SetVertexColor(r, g, b, a)
    hidden[self].tint = { number(r, "color"), number(g, "color"), number(b, "color"), number(a or 1, "color") }
    changed(self)
end

function Texture:SetDrawLayer(layer, sublevel)
    need(layers[layer], "SetDrawLayer: there is no layer %s", tostring(layer))
    hidden[self].layer = layers[layer] + (sublevel or 0) / 100
    changed(self)
end

-- Nothing moves by them where edges lie on whole pixels, and where they do not the picture shows it.
function Texture:SetSnapToPixelGrid(snap) hidden[self].snap = snap end
function Texture:SetTexelSnappingBias(bias) hidden[self].bias = number(bias, "SetTexelSnappingBias") end

function Frame:GetScale() return hidden[self].scale end
function Frame:GetFrameLevel() return hidden[self].level end
function Frame:GetFrameStrata() return hidden[self].strata end
function Frame:EnableMouse(enable) hidden[self].mouse = enable end

function Frame:SetScale(scale)
    need(number(scale, "SetScale") > 0, "SetScale: a scale is more than 0")
    hidden[self].scale = reveal(scale)
    changed(self)
end

function Frame:GetEffectiveScale()
    local state = hidden[self]
    if not state.parent or state.ignoresParentScale then
        return state.scale
    end
    return state.scale * Frame.GetEffectiveScale(state.parent)
end

frames.effectiveScale = Frame.GetEffectiveScale

function Frame:SetIgnoreParentScale(ignore)
    hidden[self].ignoresParentScale = ignore
    changed(self)
end

function Frame:SetIgnoreParentAlpha(ignore)
    hidden[self].ignoresParentAlpha = ignore
    changed(self)
end

function Frame:SetFrameStrata(name)
    need(strata[name], "SetFrameStrata: there is no strata %s", tostring(name))
    hidden[self].strata = name
    changed(self)
end

function Frame:SetFrameLevel(level)
    need(number(level, "SetFrameLevel") >= 0 and level <= 10000, "SetFrameLevel: 0 to 10000")
    hidden[self].level = level
    changed(self)
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

local function register(self, event, unit)
    local client = hidden[self].client
    need(client.kind.events[event], "Frame:RegisterEvent: attempt to register unknown event \"%s\"", tostring(event))
    local listeners = client.listeners[event] or {}
    client.listeners[event] = listeners
    if not hidden[self].events[event] then
        listeners[#listeners + 1] = self
    end
    hidden[self].events[event] = unit
end

function Frame:RegisterEvent(event) register(self, event, "any unit") end
function Frame:RegisterUnitEvent(event, unit) register(self, event, unit) end
function Frame:IsEventRegistered(event) return hidden[self].events[event] ~= nil end

function Frame:UnregisterEvent(event)
    local listeners = hidden[self].client.listeners[event] or {}
    for i = #listeners, 1, -1 do
        if listeners[i] == self then
            table.remove(listeners, i)
        end
    end
    hidden[self].events[event] = nil
end

function Frame:UnregisterAllEvents()
    for event in pairs(hidden[self].events) do
        Frame.UnregisterEvent(self, event)
    end
end

function EditBox:HasFocus() return hidden[self].client.focus == self end
function EditBox:GetText() return hidden[self].text or "" end
function EditBox:SetText(text) hidden[self].text = reveal(text) end

function EditBox:SetFocus()
    local state = hidden[self]
    if state.client.focus == self then
        return
    end
    if state.client.focus then
        state.client.focus:ClearFocus()
    end
    state.client.focus = self
    if state.scripts.OnEditFocusGained then
        state.client:call(state.scripts.OnEditFocusGained, self)
    end
end

function EditBox:ClearFocus()
    local state = hidden[self]
    if state.client.focus == self then
        state.client.focus = nil
        if state.scripts.OnEditFocusLost then
            state.client:call(state.scripts.OnEditFocusLost, self)
        end
    end
end

function MessageFrame:AddMessage(text)
    hidden[self].client:say(tostring(reveal(text)))
end

local classes = {
    Texture = { Region, Texture },
    Frame = { Region, Frame },
    EditBox = { Region, Frame, EditBox },
    MessageFrame = { Region, Frame, MessageFrame },
}
local classNames = { [Region] = "Region", [Texture] = "Texture", [Frame] = "Frame", [EditBox] = "EditBox" }

-- A class as this client has it.
local function methodsOf(client, class)
    local methods = {}
    for _, part in ipairs(classes[class]) do
        for name, method in pairs(part) do
            if not client.kind.lacks[(classNames[part] or "") .. ":" .. name] then
                methods[name] = method
            end
        end
    end
    return methods
end

local function create(client, class, name, parent)
    client.methods[class] = client.methods[class] or { __index = methodsOf(client, class) }
    local region = setmetatable({}, client.methods[class])
    local above = parent and hidden[parent]
    hidden[region] = {
        client = client, class = class, name = name, parent = parent, shown = true, points = {}, width = 0, height = 0,
        alpha = 1, scale = 1, strata = above and above.strata or "MEDIUM", level = above and above.level + 1 or 0,
        scripts = {}, events = {}, order = #client.regions + 1,
    }
    client.regions[#client.regions + 1] = region
    client.frameVersion = client.frameVersion + 1
    if name then
        rawset(client.globals, name, region)
    end
    return region
end

function Frame:CreateTexture(name, layer, _, sublevel)
    local texture = create(hidden[self].client, "Texture", name, self)
    Texture.SetDrawLayer(texture, layer or "ARTWORK", sublevel)
    return texture
end

function frames.createFrame(client, class, name, parent)
    need(classes[class] and class ~= "Texture", "CreateFrame: there is no frame type %s", tostring(class))
    need(parent == nil or hidden[parent], "CreateFrame: the parent is no frame")
    return create(client, class, name, parent)
end

-- The order in which textures are painted, the last one on top.
local function paintedBefore(a, b)
    local frameA, frameB = hidden[a.parent], hidden[b.parent]
    for _, pair in ipairs { { strata[frameA.strata], strata[frameB.strata] }, { frameA.level, frameB.level },
        { frameA.order, frameB.order }, { a.layer, b.layer } } do
        if pair[1] ~= pair[2] then
            return pair[1] < pair[2]
        end
    end
    return a.order < b.order
end

-- The textures that are to be seen, in painting order.
function frames.visibleTextures(client)
    local list = {}
    for _, region in ipairs(client.regions) do
        local state = hidden[region]
        if state.class == "Texture" and state.color and Region.IsVisible(region) then
            list[#list + 1] = state
            state.region = region
        end
    end
    table.sort(list, paintedBefore)
    return list
end

return frames
