-- The globals that an add-on finds: Lua's safe part and the game's functions, less what this kind of client lacks.

local frames = require "client.frames"
local options = require "client.options"
local secrets = require "client.secrets"
local world = require "client.world"

local environment = {}

local safe = [[ assert error getmetatable ipairs next pairs pcall rawequal rawget rawset select setmetatable tonumber
    tostring unpack xpcall ]]

local function copy(library)
    local result = {}
    for name, value in pairs(library) do
        result[name] = value
    end
    return result
end

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
        define(library, copy(_G[library]))
    end
    define("_G", client.globals)
    define("bit", {
        band = bitwise(function(a, b) return a and b end),
        bor = bitwise(function(a, b) return a or b end),
        bxor = bitwise(function(a, b) return a ~= b end),
        lshift = function(a, places) return a * 2 ^ places % 2 ^ 32 end,
        rshift = function(a, places) return math.floor(a / 2 ^ places) end,
    })
    define("collectgarbage", function(what) return collectgarbage(what == "count" and "count" or "step") end)
    define("type", function(value) return type(secrets.reveal(value)) end)
    define("loadstring", function(source, name) return environment.compile(client, source, name or source) end)
    define("time", os.time)
    define("date", os.date)
    define("wipe", function(list)
        for key in pairs(list) do
            list[key] = nil
        end
        return list
    end)
    define("print", function(...)
        local words = {}
        for i = 1, select("#", ...) do
            words[i] = tostring((select(i, ...)))
        end
        client:say(table.concat(words, " "))
    end)
end

local function timers(client, define)
    local function start(seconds, callback, ticks)
        local timer = { due = client:time() + seconds, every = seconds, ticks = ticks, callback = callback }
        function timer.Cancel(self) self.isCancelled = true end
        function timer.IsCancelled(self) return self.isCancelled or false end
        client.timers[#client.timers + 1] = timer
        return timer
    end
    define("C_Timer.After", function(seconds, callback) start(seconds, callback, 1) end)
    define("C_Timer.NewTimer", function(seconds, callback) return start(seconds, callback, 1) end)
    define("C_Timer.NewTicker", function(seconds, callback, ticks) return start(seconds, callback, ticks or math.huge) end)
end

local function screen(client, define)
    define("GetPhysicalScreenSize", function() return client.width, client.height end)
    define("GetCVar", function(name)
        return name == "gxResolution" and client.kind.old and client.width .. "x" .. client.height or nil
    end)
    define("GetScreenResolutions", function() return "800x600", client.width .. "x" .. client.height end)
    define("GetCurrentResolution", function() return 2 end)
end

local function system(client, define)
    define("GetTime", function() return client:time() end)
    define("GetBuildInfo", function() return "1.0.0", "10000", "Aug 1 2026", client.kind.interface end)
    define("issecretvalue", secrets.is)
    define("C_EventUtils.IsEventValid", function(event) return client.kind.events[event] or false end)
    define("hooksecurefunc", function(holder, name, hook)
        if type(holder) == "string" then
            holder, name, hook = client.globals, holder, name
        end
        local original = holder[name]
        holder[name] = function(...)
            original(...)
            client:call(hook, ...)
        end
    end)
    local function metadata(addon, field)
        return client.addons[addon] and client.addons[addon].fields[field]
    end
    define("GetAddOnMetadata", metadata)
    define("C_AddOns.GetAddOnMetadata", metadata)
end

local function interface(client, define)
    define("CreateFrame", function(class, name, parent) return frames.createFrame(client, class, name, parent) end)
    for _, name in ipairs { "WorldFrame", "UIParent" } do
        frames.createFrame(client, "Frame", name)
    end
    frames.hidden[client.globals.UIParent].scale = client.uiScale
    define("SlashCmdList", {})
    define("NUM_CHAT_WINDOWS", 10)
    for i = 1, 10 do
        environment.chatWindow(client, i)
    end
    define("DEFAULT_CHAT_FRAME", client.globals.ChatFrame1)
    define("FCF_OpenTemporaryWindow", function()
        client.chatWindows = client.chatWindows + 1
        environment.chatWindow(client, client.chatWindows)
    end)
end

function environment.chatWindow(client, i)
    local name = "ChatFrame" .. i
    frames.createFrame(client, "MessageFrame", name, client.globals.UIParent)
    frames.createFrame(client, "EditBox", name .. "EditBox", client.globals.UIParent)
end

-- Source of an add-on, made to run among the client's globals.
function environment.compile(client, source, name)
    local chunk, problem = loadstring(client.kind.secrets and secrets.guard(source) or source, name)
    return chunk and setfenv(chunk, client.globals), problem
end

-- Fills client.globals. A name that nobody has set is noted in client.unknownNames when it is read, and is nil.
function environment.build(client)
    local globals, lacks = client.globals, client.kind.lacks
    local function define(name, value)
        local namespace, member = name:match("^([%w_]+)%.(.+)$")
        if lacks[name] or lacks[namespace] then
            return
        end
        if namespace then
            globals[namespace] = globals[namespace] or {}
            globals[namespace][member] = value
        else
            globals[name] = value
        end
    end
    luaPart(client, define)
    timers(client, define)
    screen(client, define)
    system(client, define)
    world.functions(client.world, define)
    options.functions(client, define)
    interface(client, define)
    if client.kind.secrets then
        for name, check in pairs(secrets.checks) do
            globals[name] = check
        end
    end
    setmetatable(globals, {
        __index = function(_, name)
            client.unknownNames[name] = client.unknownNames[name] or debug.traceback("", 2):match("\n%s+(%S+:%d+):") or "?"
        end,
    })
end

return environment
