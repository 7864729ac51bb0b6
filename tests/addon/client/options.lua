-- The game's options page: what an add-on puts on it, kept so that a test can read and set the controls.

local options = {}

-- client.controls: from the title of a setting to { kind, get, set, choices }; choices(value)[value] is what it shows.
function options.functions(client, define)
    client.controls = {}
    local function create(_, setting, choices)
        setting.choices, client.controls[setting.title] = choices, setting
    end
    define("Settings.VarType", { Boolean = "boolean", Number = "number", String = "string" })
    define("Settings.RegisterVerticalLayoutCategory", function(name)
        return { GetID = function() return name .. "'s page" end }
    end)
    define("Settings.RegisterAddOnCategory", function(page) client.page = page end)
    define("Settings.OpenToCategory", function(id)
        assert(id == client.page:GetID(), "there is no such page")
        client:say("Glimra: The options show " .. id)
    end)
    define("Settings.RegisterProxySetting", function(_, _, kind, title, default, get, set)
        assert(type(default) == kind and type(get()) == kind, "a bad setting")
        return { title = title, kind = kind, get = get, set = set }
    end)
    define("Settings.CreateCheckbox", function(page, setting)
        create(page, setting, function() return { [true] = "on", [false] = "off" } end)
    end)
    define("Settings.CreateDropdown", create)
    define("Settings.CreateSlider", create)
    define("Settings.CreateSliderOptions", function(least, most)
        return function(value) return { [value] = value >= least and value <= most and value or nil } end
    end)
    define("Settings.CreateControlTextContainer", function()
        local list = {}
        return { Add = function(_, value, label) list[value] = label end, GetData = function() return list end }
    end)
end

-- An option, with a value as this kind of option has it; it has to be one that the player could choose.
function options.find(client, title, value)
    local control = client.controls[title] or error("no page has an option \"" .. title .. "\"", 0)
    value = control.kind == "string" and tostring(value) or value
    return control.choices(value)[value] and control or error(title .. " cannot be " .. tostring(value), 0), value
end

return options
