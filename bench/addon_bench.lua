-- What the add-on costs the game, under the stand-in for it: lua5.1 bench/addon_bench.lua [ADD-ON]
--
-- Prints for a quiet picture, one in a fight with cooldowns running, and one in a storm of events: microseconds (the
-- add-on's OnUpdate and its part of the events alone) and bytes of garbage; then the memory in use over an hour.
-- Exit status 1 when a quiet picture makes garbage or the memory grows.

local here = arg[0]:match("^(.*)/") or "."
package.path = here .. "/../tests/addon/?.lua;" .. package.path

local newClient = require "client.client"

local RATE = 60
local HOUR = 3600 * RATE

local client = newClient {
    kind = "retail", width = 1920, height = 1080, rate = RATE,
    folder = arg[1] or here .. "/../addon/Glimraxmit",
}

local function addonFrames()
    local found = {}
    for _, frame in ipairs(client.regions) do
        if frame.scripts.OnUpdate then
            found[#found + 1] = frame
        end
    end
    return found
end

-- One picture as the add-on sees it, without the stand-in's own work.
local function picture(updating)
    client.now = client.now + 1 / RATE
    client.pictureTime = client.now
    for i = 1, #updating do
        client:call(updating[i].scripts.OnUpdate, updating[i], 1 / RATE)
    end
end

local function measure(title, pictures, happen)
    local updating = addonFrames()
    collectgarbage("collect")
    collectgarbage("stop")
    local before, began = collectgarbage("count"), os.clock()
    for number = 1, pictures do
        if happen then
            happen(number)
        end
        picture(updating)
    end
    local seconds, garbage = os.clock() - began, collectgarbage("count") - before
    collectgarbage("restart")
    print(("%-32s %6.1f us  %8.1f bytes of garbage a picture"):format(title, seconds / pictures * 1e6,
        garbage * 1024 / pictures))
    return garbage * 1024 / pictures
end

local function use(bar, slot, seconds)
    local world = require "client.world"
    local action = world.actionOf(client.world, bar, slot)
    world.ability(client.world, action).cooldown = { start = client:serverTime(), duration = seconds }
end

client:login()
client:wait(20)
local quiet = measure("a quiet picture", 10000)

client.world.fight = true
client:fire("PLAYER_REGEN_DISABLED")
for slot = 1, 6 do
    use("bar1", slot, 1e6)
end
client:fire("SPELL_UPDATE_COOLDOWN")
client:wait(5)
measure("in a fight, 6 cooldowns run", 10000)
measure("the same, health falls and rises", 10000, function(number)
    if number % 6 == 0 then
        client.world.health = 1000 + number % 20000
        client:fire("UNIT_HEALTH", "player")
    end
end)
measure("a storm: 3 events each picture", 10000, function(number)
    use("bar6", number % 12 + 1, 1.9)
    client:fire("SPELL_UPDATE_COOLDOWN")
    client:fire("ACTIONBAR_UPDATE_COOLDOWN")
    client:fire("UNIT_HEALTH", "player")
end)

-- An hour of fighting, a look at the memory each ten minutes.
local least, most
local updating = addonFrames()
for number = 1, HOUR do
    if number % 90 == 0 then
        use("bar1", number / 90 % 12 + 1, 1 + number % 11)
        client:fire("SPELL_UPDATE_COOLDOWN")
    end
    picture(updating)
    if number % (HOUR / 6) == 0 then
        collectgarbage("collect")
        collectgarbage("collect")
        local used = collectgarbage("count")
        print(("after %2d minutes %16.1f KiB in use, the stand-in's included"):format(number / RATE / 60, used))
        least, most = math.min(least or used, used), math.max(most or used, used)
    end
end
os.exit(quiet == 0 and most - least < 4 and #client.errors == 0 and 0 or 1)
