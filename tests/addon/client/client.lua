-- The client itself: its clock, its pictures, the delivery of events, and the ways into and out of the world.
--
-- A picture takes from one moment of the clock to the next: what happened since the last one is delivered, OnUpdate
-- runs, and the picture is painted. It is on the screen from the end of that time until the next one is. So a picture
-- that takes long is seen late, and one that is made quickly after it takes its place soon.

local environment = require "client.environment"
local kinds = require "client.kinds"
local picture = require "client.picture"
local world = require "client.world"

local Client = {}
Client.__index = Client

-- The computer has been running for a while; the game's clock counts from its start.
local UPTIME = 273041.317
local LOGIN_SECONDS, RELOAD_SECONDS = 3, 2

local function nothing() end

-- setup has kind, width, height, folder (of the add-on), and may have rate (see setRate), kept (what an earlier evening
-- left in its saved variable), edit(file, source), which gives the source to run, and functions: onScreen(time, row) is
-- called when another picture comes on the screen, onPicture(client) in each picture when the add-on knows what has
-- happened, onEvent(name) when it is told of something.
local function new(setup)
    local client = setmetatable({
        kind = kinds[setup.kind] or error("there is no kind of client \"" .. tostring(setup.kind) .. "\"", 0),
        width = setup.width, height = setup.height, uiScale = 1, folder = setup.folder, kept = setup.kept,
        onScreen = setup.onScreen or nothing, onPicture = setup.onPicture or nothing,
        onEvent = setup.onEvent or nothing, edit = setup.edit or function(_, source) return source end,
        now = 0, pictureTime = 0, nextPicture = 0, isInWorld = false, queue = {}, errors = {}, said = {},
        globals = {}, regions = {}, frameVersion = 0,
    }, Client)
    client.world = world.new(client)
    client:setRate(setup.rate or 60)
    return client
end

-- Pictures a second: 60; or "7..144", jumping after 1 to 20 pictures, each time in the same way.
function Client:setRate(rate)
    local low, high = tostring(rate):match("^(%d+)%.*(%d*)$")
    local current, left, state = tonumber(low), high == "" and math.huge or 0, 1
    local function random(limit)
        state = (state * 69069 + 1) % 4294967296
        return math.floor(state / 4294967296 * limit)
    end
    function self.rate()
        if left == 0 then
            current, left = low * (high / low) ^ (random(1000) / 999), 1 + random(20)
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
    self.errors[#self.errors + 1] = ("an error at %.3f s: %s"):format(self.now, text)
end

function Client:say(text)
    self.said[#self.said + 1] = text
end

-- Runs a function of an add-on. Its error is noted, and goes no further; the call itself makes no garbage.
function Client:call(f, ...)
    local isGood, problem = pcall(f, ...)
    if not isGood then
        self:fail(problem)
    end
end

function Client:fire(event, ...)
    if self.kind.events[event] then
        self.onEvent(event)
        for i = 1, #self.regions do
            local region = self.regions[i]
            local unit = region.events[event]
            if unit and region.scripts.OnEvent and (unit == "any" or unit == (...)) then
                self:call(region.scripts.OnEvent, region, event, ...)
            end
        end
    end
end

-- Leaves something to be done when the next picture begins.
function Client:later(deed)
    self.queue[#self.queue + 1] = deed
end

function Client:happen(event, ...)
    local arguments = { ... }
    self:later(function() self:fire(event, unpack(arguments)) end)
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
    local isPlaying = client.isInWorld and not isLoading
    for i = 1, isPlaying and #client.regions or 0 do
        local region = client.regions[i]
        if region.scripts.OnUpdate and region:IsVisible() then
            client:call(region.scripts.OnUpdate, region, elapsed)
        end
    end
    client.row = picture.render(client, isPlaying)
    client.nextPicture = client.now + 1 / client.rate()
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
    local isTold = not client.kind.old or nil
    client:fire("PLAYER_ENTERING_WORLD", isTold and isLogin, isTold and isReload)
    client:fire("ACTIONBAR_SLOT_CHANGED", 0)
    for _, event in ipairs { "SPELL_UPDATE_COOLDOWN", "UPDATE_SHAPESHIFT_FORM", "LOADING_SCREEN_DISABLED" } do
        client:fire(event)
    end
end

-- Loads the interface anew, as at login and at /reload.
local function load(client, isReload)
    client.globals, client.regions, client.focus, client.chatWindows = {}, {}, nil, 0
    client.frameVersion = client.frameVersion + 1
    environment.build(client)
    client.isInWorld = true
    environment.load(client)
    enter(client, not isReload, isReload)
    if client.kind.old and not isReload then
        client:fire("PLAYER_ALIVE")
    end
end

function Client:login()
    loadingScreen(self, LOGIN_SECONDS, nothing, function() load(self, false) end)
end

function Client:reload()
    loadingScreen(self, RELOAD_SECONDS, function()
        self:fire("PLAYER_LOGOUT")
        environment.save(self)
        self.isInWorld = false
    end, function() load(self, true) end)
end

function Client:loading(seconds)
    loadingScreen(self, seconds, function() self:fire("LOADING_SCREEN_ENABLED") end,
        function() enter(self, false, false) end)
end

-- The screen's size or the interface's scale changes, as in the game's options.
function Client:resize(width, height, uiScale)
    self:later(function()
        local isNewSize = width ~= self.width or height ~= self.height
        self.width, self.height, self.uiScale = width, height, uiScale
        self.globals.UIParent:SetScale(uiScale)
        self:fire(isNewSize and "DISPLAY_SIZE_CHANGED" or "UI_SCALE_CHANGED")
    end)
end

-- What the player types into the chat and sends; "/run" runs Lua.
function Client:enterText(text)
    local command, argument = text:match("^(/%S+)%s*(.-)%s*$")
    if command == "/run" then
        return self:call(environment.compile(self, argument, "=run"))
    end
    for name, handler in pairs(self.globals.SlashCmdList) do
        if self.globals["SLASH_" .. name .. 1] == command then
            self:call(handler, argument, self.globals.ChatFrame1EditBox)
        end
    end
end

return new
