-- What an add-on finds: Lua's safe part and the game's functions, less what this kind of client lacks. And the add-on
-- itself as it lies on the disk: a TOC and its files, and the variable that the client keeps for it.

local frames = require "client.frames"
local options = require "client.options"
local world = require "client.world"

local environment = {}

local SAFE = [[ assert error getmetatable ipairs next pairs pcall rawequal rawget rawset select setmetatable tonumber
    tostring type unpack xpcall string table math coroutine ]]
local CHAT_WINDOWS = 10
-- The live clients, each of which refuses an add-on that does not name it.
local INTERFACES = { 120100, 50504, 20506, 11509 }

local function system(client, define)
    for name in SAFE:gmatch("%S+") do
        define(name, _G[name])
    end
    define("_G", client.globals)
    define("GetTime", function() return client:time() end)
    define("C_EventUtils.IsEventValid", function(event) return client.kind.events[event] or false end)
    define("GetPhysicalScreenSize", function() return client.width, client.height end)
    define("GetCVar", function(name) return name == "gxResolution" and client.width .. "x" .. client.height or nil end)
end

-- One more chat window with its box.
function environment.addChatWindow(client)
    client.chatWindows = client.chatWindows + 1
    local name = "ChatFrame" .. client.chatWindows
    frames.create(client, name, client.globals.UIParent)
    frames.create(client, name .. "EditBox", client.globals.UIParent)
end

local function interface(client, define)
    define("CreateFrame", function(_, name, parent) return frames.create(client, name, parent) end)
    local all = frames.create(client, "UIParent")
    all:SetScale(client.uiScale)
    -- The game's own interface lies over the whole screen, higher than most.
    local tip = frames.create(client, nil, all)
    tip:SetFrameStrata("TOOLTIP")
    tip:SetFrameLevel(50)
    local icon = tip:CreateTexture()
    icon.width, icon.height, icon.anchor, icon.color = 1e5, 1e5, { x = 0, y = 0 }, { name = "game", alpha = 1 }
    define("SlashCmdList", {})
    for _ = 1, CHAT_WINDOWS do
        environment.addChatWindow(client)
    end
    define("DEFAULT_CHAT_FRAME", client.globals.ChatFrame1)
end

-- Fills client.globals.
function environment.build(client)
    local globals, lacks = client.globals, client.kind.lacks
    local function define(name, value)
        local namespace, member = name:match("^([%w_]+)%.(.+)$")
        if lacks[name] or lacks[namespace or ""] then
            return
        elseif namespace then
            globals[namespace] = globals[namespace] or {}
            globals[namespace][member] = value
        else
            globals[name] = value
        end
    end
    for _, part in ipairs { system, world.functions, options.functions, interface } do
        part(client, define)
    end
end

-- Source of an add-on, made to run among the client's globals.
function environment.compile(client, source, name)
    return setfenv(assert(loadstring(source, name)), client.globals)
end

-- What is kept is none of the add-on's own tables.
local function copy(value)
    if type(value) ~= "table" then
        return value
    end
    local result = {}
    for key, field in pairs(value) do
        result[key] = copy(field)
    end
    return result
end

local function contents(path)
    local file = assert(io.open(path, "rb"))
    local text = file:read("*a")
    file:close()
    return text
end

-- Runs the add-on's files and reads its saved variable; the client then says ADDON_LOADED.
function environment.load(client)
    local name = client.folder:match("([^/]+)/*$")
    local toc, shared = contents(client.folder .. "/" .. name .. ".toc"), {}
    local interfaces = toc:match("## Interface: ([^\n]*)")
    for _, number in ipairs(INTERFACES) do
        assert(interfaces:find("%f[%d]" .. number .. "%f[%D]"), "the TOC does not name interface " .. number)
    end
    for file in toc:gmatch("[^\n]+") do
        if not file:find("^#") then
            local path = client.folder .. "/" .. file
            -- A test of the tests puts faults in.
            client:call(environment.compile(client, client.edit(file, contents(path)), "@" .. path), name, shared)
        end
    end
    client.variable = toc:match("## SavedVariables: (%w+)")
    client.globals[client.variable] = copy(client.kept)
    client:fire("ADDON_LOADED", name)
end

function environment.save(client)
    client.kept = copy(client.globals[client.variable])
end

return environment
