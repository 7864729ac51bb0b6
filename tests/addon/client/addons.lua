-- Add-ons as they lie on the disk: a TOC and its files; and what the client keeps of their variables.

local environment = require "client.environment"

local addons = {}

-- A value with only what the game can save: tables, strings, numbers, Booleans; nil for what is dropped.
local function saved(value)
    local kind = type(value)
    if kind == "string" or kind == "number" or kind == "boolean" then
        return value
    elseif kind ~= "table" then
        return nil
    end
    local result = {}
    for key, field in pairs(value) do
        result[key] = saved(field)
    end
    return result
end

local function contents(path)
    local file = assert(io.open(path, "rb"))
    local text = file:read("*a")
    file:close()
    return text
end

-- Runs an add-on's files and reads its saved variables; the client then says ADDON_LOADED.
function addons.load(client, folder)
    local name = folder:match("([^/]+)/*$")
    local toc, shared = contents(folder .. "/" .. name .. ".toc"), {}
    -- Live clients refuse what is not made for them; in an old one the player has ticked "load out of date add-ons".
    local interfaces = toc:match("## Interface: ([^\n]*)") or ""
    if not client.kind.old and not interfaces:find("%f[%d]" .. client.kind.interface .. "%f[%D]") then
        return client:fail(name .. " is out of date: its TOC does not name interface " .. client.kind.interface)
    end
    for file in toc:gmatch("[^\n]+") do
        if not file:find("^#") then
            local path = folder .. "/" .. file
            -- A test of the tests puts faults in.
            local source = client.edit(file, contents(path))
            client:call(environment.compile(client, source, "@" .. path), name, shared)
        end
    end
    client.variable = toc:match("## SavedVariables: (%w+)")
    client.globals[client.variable or ""] = saved(client.kept)
    client:fire("ADDON_LOADED", name)
end

function addons.save(client)
    client.kept = saved(client.globals[client.variable or ""])
end

return addons
