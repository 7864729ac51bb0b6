-- The page in the game's own options, where the client has them.

local _, addon = ...
local message, moments, options = addon.message, addon.moments, addon.options

local category

-- What a moment can be set to, in the form that the game's lists want.
local function effectChoices()
    local choices = Settings.CreateControlTextContainer()
    choices:Add("none", "Nothing")
    for _, effect in ipairs(addon.messages) do
        if effect.name then
            choices:Add(effect.code, effect.name)
        end
    end
    return choices:GetData()
end

local function profileChoices()
    local choices = Settings.CreateControlTextContainer()
    choices:Add("none", "None")
    for profile = 1, 9 do
        choices:Add(tostring(profile), "Profile " .. profile)
    end
    return choices:GetData()
end

local function setting(name, kind, title, default, get, set)
    return Settings.RegisterProxySetting(category, "GLIMRAXMIT_" .. name, kind, title, default, get, set)
end

local function addSwitch()
    local on = setting("ON", Settings.VarType.Boolean, "On", true, function()
        return options.on
    end, addon.switch)
    Settings.CreateCheckbox(category, on, "Whether Glimra is told what happens.")
end

local function addFast()
    local fast = setting("FAST", Settings.VarType.Boolean, "Fast", false, function()
        return options.fast
    end, addon.chooseFast)
    Settings.CreateCheckbox(category, fast, "Needs Fast Response in Glimra's menu Keyboard, or lights are lost.")
end

local function addWidth()
    local width = setting("WIDTH", Settings.VarType.Number, "Width of the strip", 80, function()
        return options.width
    end, addon.chooseWidth)
    local slider = Settings.CreateSliderOptions(options.NARROWEST, options.WIDEST, 1)
    Settings.CreateSlider(category, width, slider, "In pixels. Calibrate Glimra after a change.")
end

local function addMoment(row)
    local effect = setting(row.key, Settings.VarType.String, row.title, row.effect, function()
        return options.effect(row.key)
    end, function(code)
        addon.chooseEffect(row.key, code)
    end)
    local default = message[row.effect]
    local tip = default and ("At first: %s."):format(default.name) or "At first: nothing."
    Settings.CreateDropdown(category, effect, effectChoices, tip)
end

local function addProfile(specialization)
    local title = ("Profile of specialization %d"):format(specialization)
    local profile = setting("PROFILE" .. specialization, Settings.VarType.String, title, "none", function()
        return options.profile(specialization) or "none"
    end, function(code)
        addon.chooseProfile(specialization, code ~= "none" and code or nil)
    end)
    Settings.CreateDropdown(category, profile, profileChoices, "Shown when the specialization is chosen.")
end

local function build()
    category = Settings.RegisterVerticalLayoutCategory("Glimra")
    addSwitch()
    addWidth()
    addFast()
    for _, row in ipairs(moments.rows) do
        if row.title then
            addMoment(row)
        end
    end
    for specialization = 1, options.MOST_SPECIALIZATIONS do
        addProfile(specialization)
    end
    Settings.RegisterAddOnCategory(category)
end

-- A client whose options work in another way has the slash command.
function addon.buildPage()
    if Settings and Settings.RegisterVerticalLayoutCategory and not pcall(build) then
        category = nil
    end
end

function addon.openPage()
    if category then
        pcall(Settings.OpenToCategory, category:GetID())
    end
end
