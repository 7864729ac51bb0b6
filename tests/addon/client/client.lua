-- The client itself: its clock, its pictures, the delivery of events, and the ways into and out of the world.
--
-- A picture takes from one moment of the clock to the next: what happened since the last one is delivered, OnUpdate
-- runs, and the picture is painted. It is on the screen from the end of that time until the next one is. So a picture
-- that takes long is seen late, and one that is made quickly after it takes its place soon.

local addons = require "client.addons"
local environment = require "client.environment"
local frames = require "client.frames"
local kinds = require "client.kinds"
local picture = require "client.picture"
local world = require "client.world"

local Client = {}
Client.__index = Client

-- The computer has been running for a while; the game's clock counts from its start.
local UPTIME = 273041.317
local LOGIN_SECONDS, RELOAD_SECONDS = 3, 2

local function nothing() end

-- setup has kind, width, height, folders (of add-ons), and may have uiScale, rate (see setRate), seed, and functions:
-- onScreen(time, row) is called when another picture comes on the screen, onPicture(client) in each picture when the
-- add-ons know what has happened, note(kind, text) for whatever happens.
local function new(setup)
    local client = setmetatable({
        kind = kinds[setup.kind] or error("there is no kind of client \"" .. tostring(setup.kind) .. "\"", 0),
        width = setup.width, height = setup.height, uiScale = setup.uiScale or 1, folders = setup.folders,
        onScreen = setup.onScreen or nothing, onPicture = setup.onPicture or nothing, note = setup.note or nothing,
        now = 0, pictureTime = 0, nextPicture = 0, randomState = setup.seed or 1, isInWorld = false,
        queue = {}, savedVariables = setup.kept or {}, mayBeNil = {}, unknownNames = {}, errors = {}, said = {},
        globals = {}, regions = {}, listeners = {}, frameVersion = 0,
    }, Client)
    client.world = world.new(client)
    client:setRate(setup.rate or "60")
    return client
end

-- A whole number from 0 to below `limit`, the same ones for the same seed.
function Client:random(limit)
    self.randomState = (self.randomState * 69069 + 1) % 4294967296
    return math.floor(self.randomState / 4294967296 * limit)
end

-- Pictures a second: "60"; "60,60,7", each for a second in turn; or "7..144", jumping after 1 to 20 pictures.
function Client:setRate(rate)
    local jumps, list = rate:find("..", 1, true), {}
    for number in rate:gsub("%.%.", ","):gmatch("[^,]+") do
        list[#list + 1] = tonumber(number) or 0
    end
    if #list == 0 or math.min(unpack(list)) <= 0 or jumps and #list ~= 2 then
        error("\"" .. rate .. "\" is no rate of pictures", 0)
    end
    local began, current, left = self.now, nil, 0
    function self.rate()
        if not jumps then
            return list[math.floor(self.now - began) % #list + 1]
        elseif left == 0 then
            current, left = list[1] * (list[2] / list[1]) ^ (self:random(1000) / 999), 1 + self:random(20)
        end
        left = left - 1
        return current
    end
end

local function clock(seconds)
    return math.floor((UPTIME + seconds) * 1000) / 1000
end

-- What GetTime tells: whole milliseconds, the same all through a picture. The server's time goes on between two.
function Client:time() return clock(self.pictureTime) end
function Client:serverTime() return clock(self.now) end

function Client:fail(text)
    -- In the game no other value is userdata to an add-on.
    text = tostring(text):gsub("userdata value", "secret value"):gsub("userdata", "secret value")
    self.errors[#self.errors + 1] = { time = self.now, text = text }
    self.note("error", text)
end

function Client:say(text)
    self.said[#self.said + 1] = text
    self.note("said", text)
end

local called, a1, a2, a3, a4, a5, a6
local function run()
    return called(a1, a2, a3, a4, a5, a6)
end
local function trace(problem)
    return debug.traceback(tostring(problem), 2)
end

-- Runs a function of an add-on. Its error is noted, and goes no further; the call itself makes no garbage.
function Client:call(f, ...)
    called, a1, a2, a3, a4, a5, a6 = f, ...
    local isGood, problem = xpcall(run, trace)
    if not isGood then
        self:fail(problem)
    end
end

function Client:fire(event, ...)
    if not self.kind.events[event] then
        return
    end
    self.note("event", event)
    for _, frame in ipairs { unpack(self.listeners[event] or {}) } do
        local state = frames.hidden[frame]
        local unit = state.events[event]
        if state.scripts.OnEvent and (unit == "any" or unit and unit == (...)) then
            self:call(state.scripts.OnEvent, frame, event, ...)
        end
    end
end

-- Leaves something to be done when the next picture begins.
function Client:later(deed)
    self.queue[#self.queue + 1] = deed
end

function Client:happen(event, ...)
    local arguments, count = { ... }, select("#", ...)
    self:later(function() self:fire(event, unpack(arguments, 1, count)) end)
end

local function runTimers(client)
    local now, timers = client:time(), client.timers
    client.timers = {}
    for _, timer in ipairs(timers) do
        if timer.ticks > 0 and timer.due <= now then
            timer.ticks, timer.due = timer.ticks - 1, now + timer.every
            client:call(timer.callback, timer)
        end
        if timer.ticks > 0 then
            client.timers[#client.timers + 1] = timer
        end
    end
end

local function runUpdates(client, elapsed)
    for i = 1, #client.regions do
        local region = client.regions[i]
        local script = frames.hidden[region].scripts.OnUpdate
        if script and region:IsVisible() then
            client:call(script, region, elapsed)
        end
    end
end

local function makePicture(client, isLoading)
    local elapsed = client.now - client.pictureTime
    client.pictureTime = client.now
    if client.row then
        client.onScreen(client.now, client.row)
    end
    while client.queue[1] do
        table.remove(client.queue, 1)()
    end
    client.onPicture(client)
    if client.isInWorld and not isLoading then
        runTimers(client)
        runUpdates(client, elapsed)
    end
    client.row = picture.render(client, client.isInWorld and not isLoading)
    local rate = client.rate()
    client.nextPicture = client.now + 1 / math.min(rate, client.limit or rate)
end

-- Lets the clock run, and makes the pictures that are due.
function Client:wait(seconds)
    local last = self.now + seconds
    while self.nextPicture <= last + 1e-9 do
        self.now = self.nextPicture
        makePicture(self)
    end
    self.now = last
end

function Client:waitForPicture()
    self:wait(self.nextPicture - self.now)
end

-- A loading screen: one picture with its image, which begins with `leave`, and then none until `arrive`.
local function loadingScreen(client, seconds, leave, arrive)
    client:later(leave)
    client.now = client.nextPicture
    makePicture(client, true)
    client.now = client.nextPicture
    client.onScreen(client.now, client.row)
    client.now, client.row = client.now + seconds, nil
    client:later(arrive)
    makePicture(client)
end

local function enter(client, isLogin, isReload)
    if client.kind.old then
        client:fire("PLAYER_ENTERING_WORLD")
    else
        client:fire("PLAYER_ENTERING_WORLD", isLogin, isReload)
    end
    client:fire("ACTIONBAR_SLOT_CHANGED", 0)
    client:fire("SPELL_UPDATE_COOLDOWN")
    client:fire("UPDATE_SHAPESHIFT_FORM")
    client:fire("LOADING_SCREEN_DISABLED")
end

-- Loads the interface anew, as at login and at /reload.
local function load(client, isReload)
    client.globals, client.methods, client.regions, client.listeners = {}, {}, {}, {}
    client.addons, client.timers, client.focus, client.chatWindows = {}, {}, nil, 0
    client.frameVersion = client.frameVersion + 1
    environment.build(client)
    client.isInWorld = true
    for _, folder in ipairs(client.folders) do
        addons.load(client, folder)
    end
    client:fire("VARIABLES_LOADED")
    client:fire("PLAYER_LOGIN")
    enter(client, not isReload, isReload)
    if client.kind.old and not isReload then
        client:fire("PLAYER_ALIVE")
    end
end

local function unload(client)
    client:fire("PLAYER_LEAVING_WORLD")
    client:fire("PLAYER_LOGOUT")
    addons.save(client)
    client.isInWorld = false
end

function Client:login()
    loadingScreen(self, LOGIN_SECONDS, nothing, function() load(self, false) end)
end

function Client:reload()
    loadingScreen(self, RELOAD_SECONDS, function() unload(self) end, function() load(self, true) end)
end

function Client:logout()
    self:later(function() unload(self) end)
    self:waitForPicture()
end

function Client:loading(seconds)
    loadingScreen(self, seconds, function()
        self:fire("LOADING_SCREEN_ENABLED")
        self:fire("PLAYER_LEAVING_WORLD")
    end, function() enter(self, false, false) end)
end

-- The screen's size or the interface's scale changes, as in the game's options.
function Client:resize(width, height, uiScale)
    self:later(function()
        local isNewSize = width ~= self.width or height ~= self.height
        self.width, self.height, self.uiScale = width, height, uiScale
        self.globals.UIParent:SetScale(uiScale)
        if isNewSize then
            self:fire("DISPLAY_SIZE_CHANGED")
        end
        self:fire("UI_SCALE_CHANGED")
    end)
end

-- What the player types into the chat and sends; the box has the focus until it is done.
function Client:enterText(text)
    local command, argument = text:match("^(/%S+)%s*(.-)%s*$")
    for name, handler in pairs(command and self.globals.SlashCmdList or {}) do
        local i = 1
        while rawget(self.globals, "SLASH_" .. name .. i) do
            if self.globals["SLASH_" .. name .. i]:lower() == command:lower() then
                return self:call(handler, argument, self.globals.ChatFrame1EditBox)
            end
            i = i + 1
        end
    end
    if command then
        self:say("Type '/help' for a listing of a few commands.")
    end
end

return new
