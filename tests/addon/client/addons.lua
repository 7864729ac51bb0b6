-- Add-ons as they lie on the disk: a TOC and its files; and what the client keeps of their variables.

local environment = require "client.environment"

local addons = {}

-- The text of a value with only what the game can save: tables, strings, numbers, Booleans. What else there is, and a
-- table inside itself, is dropped; nil for what is dropped.
local function saved(value, above)
    local kind = type(value)
    if kind == "string" then
        return ("%q"):format(value)
    elseif kind == "boolean" or kind == "number" and value - value == 0 then
        return kind == "number" and ("%.17g"):format(value) or tostring(value)
    elseif kind ~= "table" or above[value] then
        return nil
    end
    above[value] = true
    local fields = {}
    for key, field in pairs(value) do
        local keyText, fieldText = type(key) ~= "table" and saved(key, above), saved(field, above)
        if keyText and fieldText then
            fields[#fields + 1] = "[" .. keyText .. "]=" .. fieldText
        end
    end
    above[value] = nil
    table.sort(fields)
    return "{" .. table.concat(fields, ",") .. "}"
end

local function contents(path)
    local file = assert(io.open(path, "rb"))
    local text = file:read("*a")
    file:close()
    return text
end

local function readToc(folder, name)
    local toc = { name = name, folder = folder, fields = {}, files = {}, variables = {} }
    for line in (contents(folder .. "/" .. name .. ".toc"):gsub("^\239\187\191", "") .. "\n"):gmatch("(.-)\r?\n") do
        local field, value = line:match("^##%s*([^:]-)%s*:%s*(.-)%s*$")
        if field then
            toc.fields[field] = value
        elseif not line:find("^%s*#") and line:find("%S") then
            toc.files[#toc.files + 1] = (line:match("^%s*(.-)%s*$"):gsub("\\", "/"))
        end
    end
    for variable in (toc.fields.SavedVariables or ""):gmatch("[%w_]+") do
        toc.variables[#toc.variables + 1] = variable
    end
    return toc
end

-- Live clients refuse what is not made for them; in an old one the player has ticked "load out of date add-ons".
local function isUpToDate(client, toc)
    for number in (toc.fields.Interface or ""):gmatch("%d+") do
        if tonumber(number) == client.kind.interface then
            return true
        end
    end
    return client.kind.old
end

-- Runs an add-on's files and reads its saved variables; the client then says ADDON_LOADED.
function addons.load(client, folder)
    folder = folder:gsub("/+$", "")
    local toc = readToc(folder, folder:match("[^/]+$"))
    if not isUpToDate(client, toc) then
        return client:fail(toc.name .. " is out of date: its TOC does not name interface " .. client.kind.interface)
    end
    client.addons[toc.name] = toc
    local shared = {}
    for _, file in ipairs(toc.files) do
        local path = folder .. "/" .. file
        local chunk, problem = environment.compile(client, contents(path), "@" .. path)
        if chunk then
            client:call(chunk, toc.name, shared)
        else
            client:fail(problem)
        end
    end
    for _, variable in ipairs(toc.variables) do
        if client.savedVariables[variable] then
            client.globals[variable] = assert(loadstring("return " .. client.savedVariables[variable]))()
        elseif rawget(client.globals, variable) == nil then
            client.mayBeNil[variable] = true
        end
    end
    client:fire("ADDON_LOADED", toc.name)
end

function addons.save(client)
    for _, toc in pairs(client.addons) do
        for _, variable in ipairs(toc.variables) do
            client.savedVariables[variable] = saved(rawget(client.globals, variable), {})
        end
    end
end

return addons
