-- Frames, textures and edit boxes, as far as add-ons that paint and listen need them: one kind of region, which has the
-- methods of all three. What the client knows of a region stands in its fields.

local frames = {}

local strata = {}
for name in ("WORLD BACKGROUND LOW MEDIUM HIGH DIALOG FULLSCREEN FULLSCREEN_DIALOG TOOLTIP"):gmatch("%S+") do
    strata[name], strata[#strata + 1] = #strata, name
end

local function set(self, field, value)
    assert(value ~= nil, field)
    self[field] = value
    self.client.frameVersion = self.client.frameVersion + 1
end

local Region = {}

for method, field in pairs { SetWidth = "width", SetHeight = "height", SetScale = "scale", SetFrameLevel = "level" } do
    Region[method] = function(self, value) set(self, field, tonumber(value)) end
end

-- SetPoint("TOPLEFT" [, relativeTo, "TOPLEFT"], x, y): this client knows no other corner.
function Region:SetPoint(point, to, toPoint, x, y)
    if type(to) == "number" then
        to, toPoint, x, y = self.parent, point, to, toPoint
    end
    assert(point == "TOPLEFT" and toPoint == point and x and y, "SetPoint: what point is this?")
    set(self, "anchor", { to = to, x = x, y = y })
end

function Region:ClearAllPoints() set(self, "anchor", false) end
function Region:Show() set(self, "isShown", true) end
function Region:Hide() set(self, "isShown", false) end
function Region:IsVisible() return self.isShown and (not self.parent or self.parent:IsVisible()) end

function Region:SetColorTexture(r, g, b, alpha)
    set(self, "color", { name = ("%02X%02X%02X"):format(r * 255, g * 255, b * 255), alpha = alpha or 1 })
end
function Region:SetTexture(...)
    assert(self.client.kind.old, "SetTexture: a file is wanted")
    Region.SetColorTexture(self, ...)
end
-- Nothing moves by them where edges lie on whole pixels, and where they do not the picture shows it.
function Region.SetSnapToPixelGrid() end
function Region.SetTexelSnappingBias() end

function Region.EnableMouse() end
function Region:SetFrameStrata(name) set(self, "strata", strata[name]) end
function Region:CreateTexture() return frames.create(self.client, nil, self) end

function Region:SetScript(name, script) self.scripts[name] = script end
function Region:HookScript(name, hook)
    local client, original = self.client, self.scripts[name]
    self.scripts[name] = original and function(...)
        client:call(original, ...)
        client:call(hook, ...)
    end or hook
end

-- unit: the one that is asked for, or nil for any.
function Region:RegisterUnitEvent(event, unit)
    if not self.client.kind.events[event] then
        error(("RegisterEvent: attempt to register unknown event \"%s\""):format(tostring(event)), 2)
    end
    self.events[event] = unit or "any"
end
function Region:RegisterEvent(event) Region.RegisterUnitEvent(self, event) end

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
function Region:SetFocus() focus(self.client, self) end
function Region:ClearFocus() focus(self.client, self.client.focus ~= self and self.client.focus or nil) end
function Region:AddMessage(text) self.client:say(text) end

-- The methods that this kind of client has.
local function methodsOf(kind)
    if not kind.methods then
        kind.methods = {}
        for name, method in pairs(Region) do
            kind.methods[name] = not kind.lacks[name] and method or nil
        end
    end
    return kind.methods
end

function frames.create(client, name, parent)
    local region = setmetatable({
        client = client, parent = parent, isShown = true, width = 0, height = 0, scale = 1,
        strata = parent and parent.strata or strata.MEDIUM, level = parent and parent.level + 1 or 0,
        scripts = {}, events = {}, order = #client.regions + 1,
    }, { __index = methodsOf(client.kind) })
    client.regions[region.order] = region
    if name then
        client.globals[name] = region
    end
    return region
end

return frames
