-- The game's options page: what an add-on puts on it, kept so that a test can read and set the controls.

local options = {}

-- client.controls: from the title of a setting to { get, set, kind, choices }
function options.functions(client, define)
    client.controls = {}
    define("Settings.VarType", { Boolean = "boolean", Number = "number", String = "string" })
    define("Settings.RegisterVerticalLayoutCategory", function(name)
        return { name = name, GetID = function() return name .. "'s page" end }
    end)
    define("Settings.RegisterAddOnCategory", function(page) client.page = page end)
    define("Settings.OpenToCategory", function(id)
        assert(id == client.page:GetID(), "there is no such page")
        client:say("The options show " .. id)
    end)
    define("Settings.RegisterProxySetting", function(_, variable, kind, title, default, get, set)
        assert(type(variable) == "string" and type(default) == kind and type(get()) == kind and set, "a bad setting")
        return { title = title, kind = kind, get = get, set = set }
    end)
    local function create(_, setting, choices)
        setting.choices = choices
        client.controls[setting.title] = setting
    end
    local onOff = { { value = true, label = "on" }, { value = false, label = "off" } }
    define("Settings.CreateCheckbox", function(page, setting) create(page, setting, function() return onOff end) end)
    define("Settings.CreateDropdown", create)
    define("Settings.CreateSlider", create)
    define("Settings.CreateSliderOptions", function(least, most)
        return function(shown) return { tonumber(shown) >= least and tonumber(shown) <= most and
            { value = tonumber(shown), label = tostring(shown) } or nil } end
    end)
    define("Settings.CreateControlTextContainer", function()
        local list = {}
        return {
            Add = function(_, value, label) list[#list + 1] = { value = value, label = label } end,
            GetData = function() return list end,
        }
    end)
end

-- An option, and the entry of its choices that has this value in this field, or the one that is chosen.
local function find(client, title, field, wanted)
    local control = client.controls[title] or error("no page has an option \"" .. title .. "\"", 0)
    if wanted == nil then
        wanted = control.get()
    end
    for _, entry in ipairs(control.choices(wanted)) do
        if entry[field] == wanted then
            return control, entry
        end
    end
    error(("\"%s\" has no choice \"%s\""):format(title, tostring(wanted)), 0)
end

-- What the player sees of an option: "on", "off", a number, or the label of a drop-down's entry.
function options.shown(client, title)
    return select(2, find(client, title, "value")).label
end

-- Sets an option as the player does, by what is to be seen.
function options.choose(client, title, shown)
    local control, entry = find(client, title, "label", shown)
    client:call(control.set, entry.value)
end

return options
