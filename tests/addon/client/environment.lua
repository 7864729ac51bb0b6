-- The globals that an add-on finds: Lua's safe part and the game's functions, less what this kind of client lacks.

local frames = require "client.frames"
local options = require "client.options"
local secrets = require "client.secrets"
local world = require "client.world"

local environment = {}

local SAFE = [[ assert error getmetatable ipairs next pairs pcall rawequal rawget rawset select setmetatable tonumber
    tostring type unpack xpcall string table math coroutine ]]
local CHAT_WINDOWS = 10

local function system(client, define)
    for name in SAFE:gmatch("%S+") do
        define(name, _G[name])
    end
    define("_G", client.globals)
    define("__known", secrets.known)
    define("GetTime", function() return client:time() end)
    define("issecretvalue", secrets.is)
    define("C_EventUtils.IsEventValid", function(event) return client.kind.events[event] or false end)
    define("GetPhysicalScreenSize", function() return client.width, client.height end)
    define("GetCVar", function(name)
        return name == "gxResolution" and client.kind.old and client.width .. "x" .. client.height or nil
    end)
    define("GetScreenResolutions", function() return "800x600", client.width .. "x" .. client.height end)
    define("GetCurrentResolution", function() return 2 end)
end

-- One more chat window with its box.
function environment.addChatWindow(client)
    client.chatWindows = client.chatWindows + 1
    local name = "ChatFrame" .. client.chatWindows
    frames.create(client, "EditBox", name, client.globals.UIParent)
    frames.create(client, "EditBox", name .. "EditBox", client.globals.UIParent)
end

local function interface(client, define)
    define("CreateFrame", function(class, name, parent) return frames.create(client, class, name, parent) end)
    local all = frames.create(client, "Frame", "UIParent")
    all:SetScale(client.uiScale)
    -- The game's own interface lies over the whole screen, higher than most.
    local tip = frames.create(client, "Frame", nil, all)
    tip:SetFrameStrata("TOOLTIP")
    tip:SetFrameLevel(50)
    local icon = tip:CreateTexture(nil, "OVERLAY")
    icon.width, icon.height, icon.anchor, icon.color = 1e5, 1e5, { x = 0, y = 0 }, { name = "game", alpha = 1 }
    define("SlashCmdList", {})
    for _ = 1, CHAT_WINDOWS do
        environment.addChatWindow(client)
    end
    define("NUM_CHAT_WINDOWS", CHAT_WINDOWS)
    define("DEFAULT_CHAT_FRAME", client.globals.ChatFrame1)
end

-- Source of an add-on, made to run among the client's globals.
function environment.compile(client, source, name)
    return setfenv(assert(loadstring(client.kind.secrets and secrets.guard(source) or source, name)), client.globals)
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

return environment
