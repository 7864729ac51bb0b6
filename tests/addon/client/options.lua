-- The game's options pages: what an add-on puts on them, kept so that a test can read and set the controls.

local options = {}

local Setting, Container, SliderOptions = {}, {}, {}

function Setting:GetName() return self.name end
function Setting:GetVariable() return self.variable end
function Setting:GetDefaultValue() return self.default end
function Setting:GetValue() return self.getValue() end

function Setting:SetValue(value)
    if type(value) ~= self.variableType then
        error(("the setting \"%s\" takes a %s, not %s"):format(self.name, self.variableType, tostring(value)), 2)
    end
    self.setValue(value)
end

function Container:Add(value, label, tooltip)
    self.data[#self.data + 1] = { value = value, label = label, text = label, tooltip = tooltip }
end
function Container:GetData() return self.data end

function SliderOptions:SetLabelFormatter(place, formatter)
    self.formatters[place] = formatter
end

local function new(class, object)
    return setmetatable(object, { __index = class })
end

-- client.pages: a list of pages, each { name, isOpen, controls = { { kind, setting, options, tooltip } ... } }
function options.functions(client, define)
    client.pages = {}

    define("Settings.VarType", { Boolean = "boolean", Number = "number", String = "string" })
    define("Settings.RegisterVerticalLayoutCategory", function(name)
        local page = { name = name, ID = #client.pages + 101, controls = {}, GetID = function(self) return self.ID end }
        return page, {}
    end)
    define("Settings.RegisterAddOnCategory", function(page)
        client.pages[#client.pages + 1] = page
    end)
    define("Settings.OpenToCategory", function(id)
        for _, page in ipairs(client.pages) do
            page.isOpen = page.ID == id
        end
    end)
    define("Settings.RegisterProxySetting", function(page, variable, variableType, name, default, getValue, setValue)
        assert(page and page.controls and type(variable) == "string" and type(name) == "string", "bad setting")
        assert(type(default) == variableType, "the default of \"" .. name .. "\" is no " .. tostring(variableType))
        assert(type(getValue) == "function" and type(setValue) == "function", "two functions are wanted")
        return new(Setting, {
            variable = variable, variableType = variableType, name = name, default = default, getValue = getValue,
            setValue = setValue,
        })
    end)
    local function control(kind)
        return function(page, setting, a, b)
            assert(page.controls and setting.variable, "a control takes a page and a setting")
            local isPlain = kind == "checkbox"
            page.controls[#page.controls + 1] = {
                kind = kind, setting = setting, options = not isPlain and a or nil, tooltip = isPlain and a or b,
            }
            return page.controls[#page.controls]
        end
    end
    define("Settings.CreateCheckbox", control "checkbox")
    define("Settings.CreateDropdown", control "dropdown")
    define("Settings.CreateSlider", control "slider")
    define("Settings.CreateControlTextContainer", function() return new(Container, { data = {} }) end)
    define("Settings.CreateSliderOptions", function(min, max, step)
        return new(SliderOptions, { minValue = min, maxValue = max, steps = (max - min) / step, formatters = {} })
    end)
end

-- The control of that name, and a list of { value, label } that it offers; empty for a number.
local function find(client, name)
    for _, page in ipairs(client.pages) do
        for _, control in ipairs(page.controls) do
            if control.setting.name == name then
                local offers = { dropdown = control.options, checkbox = function()
                    return { { value = true, label = "on" }, { value = false, label = "off" } }
                end }
                return control, offers[control.kind] and offers[control.kind]() or {}
            end
        end
    end
    error("no page has an option \"" .. name .. "\"", 0)
end

-- The value that the player sees: the label of a drop-down's entry, "on", "off" or a number.
function options.shown(client, name)
    local control, entries = find(client, name)
    local value = control.setting:GetValue()
    for _, entry in ipairs(entries) do
        if entry.value == value then
            return entry.label
        end
    end
    return tostring(value)
end

-- Sets a control as the player does, by what is to be seen on it.
function options.choose(client, name, shown)
    local control, entries = find(client, name)
    local value = #entries == 0 and tonumber(shown) or nil
    for _, entry in ipairs(entries) do
        if entry.label == shown then
            value = entry.value
        end
    end
    if value == nil then
        error("\"" .. name .. "\" cannot be set to \"" .. shown .. "\"", 0)
    end
    client:call(control.setting.SetValue, control.setting, value)
end

return options
