-- The globals that an add-on finds: Lua's safe part and the game's functions, less what this kind of client lacks.

local frames = require "client.frames"
local options = require "client.options"
local secrets = require "client.secrets"
local world = require "client.world"

local environment = {}

local safe = [[ assert error getmetatable ipairs next pairs pcall rawequal rawget rawset select setmetatable tonumber
    tostring unpack xpcall ]]

local function bitwise(rule)
    return function(a, b)
        local result, place = 0, 1
        while a > 0 or b > 0 do
            result = result + (rule(a % 2 == 1, b % 2 == 1) and place or 0)
            a, b, place = math.floor(a / 2), math.floor(b / 2), place * 2
        end
        return result
    end
end

local function luaPart(client, define)
    for name in safe:gmatch("%S+") do
        define(name, _G[name])
    end
    for _, library in ipairs { "string", "table", "math", "coroutine" } do
        for name, value in pairs(_G[library]) do
            define(library .. "." .. name, value)
        end
    end
    define("_G", client.globals)
    define("bit.band", bitwise(function(a, b) return a and b end))
    define("bit.bor", bitwise(function(a, b) return a or b end))
    define("collectgarbage", function(what) return collectgarbage(what == "count" and what or "step") end)
    define("type", function(value) return type(secrets.reveal(value)) end)
    define("loadstring", function(source, name) return environment.compile(client, source, name or source) end)
    define("print", function(...)
        local words = { ... }
        for i = 1, select("#", ...) do
            words[i] = tostring(words[i])
        end
        client:say(table.concat(words, " "))
    end)
end

local function timers(client, define)
    local function start(seconds, callback, ticks)
        local timer = { due = client:time() + seconds, every = seconds, ticks = ticks or math.huge }
        timer.callback = callback
        function timer.Cancel(self) self.ticks = 0 end
        client.timers[#client.timers + 1] = timer
        return timer
    end
    define("C_Timer.After", function(seconds, callback) start(seconds, callback, 1) end)
    define("C_Timer.NewTimer", function(seconds, callback) return start(seconds, callback, 1) end)
    define("C_Timer.NewTicker", start)
end

local function system(client, define)
    define("GetTime", function() return client:time() end)
    define("GetBuildInfo", function() return "1.0.0", "10000", "Aug 1 2026", client.kind.interface end)
    define("issecretvalue", secrets.is)
    define("C_EventUtils.IsEventValid", function(event) return client.kind.events[event] or false end)
    define("GetPhysicalScreenSize", function() return client.width, client.height end)
    define("GetCVar", function(name)
        return name == "gxResolution" and client.kind.old and client.width .. "x" .. client.height or nil
    end)
    define("GetScreenResolutions", function() return "800x600", client.width .. "x" .. client.height end)
    define("GetCurrentResolution", function() return 2 end)
    local function metadata(addon, field)
        return client.addons[addon] and client.addons[addon].fields[field]
    end
    define("GetAddOnMetadata", metadata)
    define("C_AddOns.GetAddOnMetadata", metadata)
end

-- One more chat window with its box.
function environment.addChatWindow(client)
    client.chatWindows = client.chatWindows + 1
    local name = "ChatFrame" .. client.chatWindows
    frames.create(client, "MessageFrame", name, client.globals.UIParent)
    frames.create(client, "EditBox", name .. "EditBox", client.globals.UIParent)
end

local function interface(client, define)
    define("CreateFrame", function(class, name, parent) return frames.createFrame(client, class, name, parent) end)
    frames.create(client, "Frame", "WorldFrame")
    frames.create(client, "Frame", "UIParent"):SetScale(client.uiScale)
    define("SlashCmdList", {})
    define("NUM_CHAT_WINDOWS", 10)
    for _ = 1, 10 do
        environment.addChatWindow(client)
    end
    define("DEFAULT_CHAT_FRAME", client.globals.ChatFrame1)
end

-- Source of an add-on, made to run among the client's globals.
function environment.compile(client, source, name)
    local chunk, problem = loadstring(client.kind.secrets and secrets.guard(source) or source, name)
    return chunk and setfenv(chunk, client.globals), problem
end

-- Fills client.globals. A name that nobody has set is nil, and noted in client.unknownNames with the place of its use.
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
    for _, part in ipairs { luaPart, timers, system, world.functions, options.functions, interface } do
        part(client, define)
    end
    for name, guard in pairs(secrets.checks) do
        define(name, guard)
    end
    setmetatable(globals, {
        __index = function(_, name)
            local place = debug.getinfo(2, "Sl")
            client.unknownNames[name] = client.unknownNames[name] or place.short_src .. ":" .. place.currentline
        end,
    })
end

return environment
