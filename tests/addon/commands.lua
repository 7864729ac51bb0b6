-- What a scenario can say: a function for each command, called with the play and the words behind the command.

local environment = require "client.environment"
local options = require "client.options"
local world = require "client.world"

local commands = {}

-- Events, with ":" before an argument; a fight ends only where there is one.
local function say(play, events)
    for event, argument in events:gmatch("([%u_]+):?(%w*)") do
        if event ~= "PLAYER_REGEN_ENABLED" or play.world.fight then
            play.client:happen(event, argument ~= "" and argument or nil)
        end
    end
end

-- The game says it more than once, and more than it need.
local COOLDOWN = "SPELL_UPDATE_COOLDOWN ACTIONBAR_UPDATE_COOLDOWN SPELL_UPDATE_COOLDOWN "
local PAGE = "UPDATE_BONUS_ACTIONBAR ACTIONBAR_PAGE_CHANGED " .. COOLDOWN
local HEALTH = "UNIT_HEALTH:party1 UNIT_HEALTH:player "

-- "stealth on", "page 2": a field of the world, with the events that tell of it.
for field, events in pairs {
    stealth = "UPDATE_STEALTH", form = "UPDATE_SHAPESHIFT_FORM UPDATE_SHAPESHIFT_FORM", page = PAGE, bonus = PAGE,
    vehicle = PAGE, override = PAGE, shapeshift = PAGE, feign = HEALTH .. "PLAYER_REGEN_ENABLED",
    specialization = "PLAYER_SPECIALIZATION_CHANGED ACTIVE_TALENT_GROUP_CHANGED " .. PAGE,
} do
    commands[field] = function(play, value)
        say(play, events)
        play.world[field], play.world.fight = value, field ~= "feign" and play.world.fight
    end
end

-- What happens, with what changes in the world by it.
for name, deed in pairs {
    whisper = { "CHAT_MSG_WHISPER:hello" }, level = { "PLAYER_LEVEL_UP:11" }, achievement = { "ACHIEVEMENT_EARNED:6" },
    quest = { "QUEST_TURNED_IN:783" }, zone = { "ZONE_CHANGED_NEW_AREA" },
    fight = { "PLAYER_REGEN_DISABLED", fight = true }, peace = { "PLAYER_REGEN_ENABLED", fight = false },
    die = { HEALTH .. "PLAYER_DEAD PLAYER_REGEN_ENABLED", dead = true, feign = false, fight = false },
    -- The spirit leaves the body, and comes back to it.
    release = { "PLAYER_ALIVE " .. HEALTH, dead = false, ghost = true },
    resurrect = { "PLAYER_ALIVE PLAYER_UNGHOST " .. HEALTH, dead = false, ghost = false, health = world.HALF },
} do
    commands[name] = function(play)
        say(play, deed[1])
        for field, value in pairs(deed) do
            play.world[field] = value
        end
    end
end

function commands.event(play, name) say(play, name) end

function commands.health(play, percent)
    play.world.health = math.floor(world.MAX_HEALTH * percent / 100 + 0.5)
    say(play, HEALTH)
end

-- More copper, or with a minus less of it.
function commands.money(play, copper)
    play.world.money = play.world.money + copper
    say(play, "PLAYER_MONEY")
end

-- Where it plays; before login. Of several clients or rates of pictures each is played in turn.
function commands.client() end
function commands.pictures() end
-- What an earlier evening left in the add-on's variable, in Lua.
function commands.kept(play, value) play.setup.kept = assert(loadstring("return " .. value))() end
-- A line for glimra-replay, see docs/replay.md; before login it stands before "start".
function commands.glimra(play, line) play:toGlimra(line) end

-- Ways into and out of the world.
function commands.login(play) play:login() end
function commands.reload(play) play.client:reload() end
function commands.loading(play, seconds) play.client:loading(seconds) end
function commands.wait(play, seconds) play.client:wait(seconds) end

-- Abilities; the bar is bar1 (the page that it shows), bar5 or bar6.
local function running(play, seconds)
    return { start = play.client:serverTime(), duration = seconds }
end

local function ability(play, bar, slot)
    return world.ability(play.world, world.actionOf(play.world, bar, slot))
end

-- use BAR SLOT cooldown SECONDS
function commands.use(play, bar, slot, _, seconds)
    ability(play, bar, slot).cooldown = running(play, seconds)
    say(play, COOLDOWN)
end

-- For so long abilities of all bars are used again and again, before they are ready.
function commands.storm(play, seconds)
    for _ = 1, seconds / 0.7 do
        for bar, slots in pairs { bar1 = { 1, 8 }, bar6 = { 2, 9 }, bar5 = { 4 } } do
            for _, slot in ipairs(slots) do
                commands.use(play, bar, slot, "cooldown", 1.9)
            end
        end
        play.client:wait(0.7)
    end
end

-- The global cooldown runs on all abilities.
function commands.gcd(play, seconds)
    play.world.gcd = running(play, seconds)
    say(play, COOLDOWN)
end

-- charges BAR SLOT LEFT/MOST recharge SECONDS
function commands.charges(play, bar, slot, charges, _, seconds)
    local left, most = charges:match("^(%d+)/(%d+)$")
    local recharge = { left = tonumber(left), most = tonumber(most), start = play.client:serverTime() }
    ability(play, bar, slot).charges, recharge.recharge = recharge, seconds
    say(play, COOLDOWN)
end

-- The ability is taken out of its slot.
function commands.empty(play, bar, slot)
    local action = world.actionOf(play.world, bar, slot)
    play.world.actions[action] = false
    play.client:happen("ACTIONBAR_SLOT_CHANGED", action)
end

-- chat open [NUMBER], chat close, chat window: the box of a chat window; another window appears, as for whispers.
function commands.chat(play, deed, number)
    play.client:later(function()
        if deed == "window" then
            environment.addChatWindow(play.client)
        elseif deed == "open" then
            play.client.globals["ChatFrame" .. (number or 1) .. "EditBox"]:SetFocus()
        elseif play.client.focus then
            play.client.focus:ClearFocus()
        end
    end)
end

-- Into the chat box, and Enter; takes a second.
function commands.type(play, text)
    commands.chat(play, "open")
    play.client:wait(1)
    play.client:later(function() play.client:enterText(text) end)
    commands.chat(play, "close")
    play.client:waitForPicture()
end

-- Sets a control of the options page: on, off, a number, or what a drop-down's entry stands for.
function commands.option(play, title, value)
    local control, chosen = options.find(play.client, title, value)
    play.client:later(function() play.client:call(control.set, chosen) end)
    play.client:waitForPicture()
end

commands["hide-interface"] = function(play) play.client.globals.UIParent:Hide() end

function commands.resize(play, width, height)
    play:toGlimra(("display %d %d 1"):format(width, height))
    play.client:resize(width, height, play.client.uiScale)
end

commands["ui-scale"] = function(play, scale) play.client:resize(play.client.width, play.client.height, scale) end

-- The add-on's strip has so many pixels from now on (80).
function commands.strip(play, width) play.stripWidth = width end

-- Names this moment, for whoever shows the scenario on a real screen.
function commands.stage(play, name)
    play.toScreen[#play.toScreen + 1] = { time = play.client.now, stage = name }
end

-- What must be so: the chat has shown this since login, * is anything; an option has this value.
function commands.said(play, text)
    local pattern = "^Glimra: " .. text:gsub("[^%w%s*]", "%%%0"):gsub("%*", ".-") .. "$"
    for _, line in ipairs(play.client.said) do
        if line:find(pattern) then
            return
        end
    end
    play:complain(("the chat does not show \"%s\""):format(text))
end

function commands.shows(play, title, value)
    local control, wanted = options.find(play.client, title, value)
    if control.get() ~= wanted then
        play:complain(("the option \"%s\" shows %s"):format(title, tostring(control.get())))
    end
end

-- Held against what Glimra did, when the play is over; check.lua tells what each means.
function commands.expect(play, ...) play:expect(...) end

return commands
