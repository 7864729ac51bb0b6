-- How long the add-on takes to say what happened: lua5.1 bench/addon_ways.lua [SCENARIO] [ADD-ON]
--
-- Plays the scenario at 7, 60 and 144 pictures a second and at a rate that jumps, and prints for each message the longest
-- time from the game's event to its confirm frame on the screen, in seconds, and how often it was said. Messages that
-- repeat what was said before are left out: nothing happened that they tell.

local here = arg[0]:match("^(.*)/") or "."
package.path = here .. "/../tests/addon/?.lua;" .. package.path

local scenario = require "scenario"
local strip = require "strip"

-- What a message tells of; the last of these events before it is the one that it answers.
local TELLS = {
    C = { "PLAYER_REGEN_DISABLED" },
    O = { "PLAYER_REGEN_ENABLED" },
    w = { "UNIT_HEALTH", "PLAYER_REGEN_DISABLED" },
    x = { "UNIT_HEALTH", "PLAYER_REGEN_DISABLED" },
    D = { "PLAYER_DEAD" },
    U = { "PLAYER_ALIVE" },
    W = { "PLAYER_ALIVE" },
    V = { "PLAYER_UNGHOST" },
    j = { "UPDATE_STEALTH" },
    K = { "UPDATE_STEALTH" },
    I = { "CHAT_MSG_WHISPER" },
    A = { "PLAYER_LEVEL_UP" },
    J = { "ACHIEVEMENT_EARNED" },
    n = { "QUEST_TURNED_IN" },
    G = { "PLAYER_MONEY" },
    s = { "PLAYER_MONEY" },
    L = { "ZONE_CHANGED_NEW_AREA" },
}
local RATES = { "7", "60", "144", "7..144" }

local function lastEvent(journal, names, before)
    local last
    for _, entry in ipairs(journal) do
        for _, name in ipairs(names) do
            if entry.event == name and entry.time <= before then
                last = entry.time
            end
        end
    end
    return last
end

-- A report answers the last change of what it tells of.
local function lastChange(history, prefix, before)
    local last
    for i = 2, #history do
        if history[i].time <= before and history[i].facts[prefix] ~= history[i - 1].facts[prefix] then
            last = history[i].time
        end
    end
    return last
end

local steps = scenario.read(arg[1] or here .. "/../tests/addon/scenarios/evening.scenario")
for _, rate in ipairs(RATES) do
    local play = scenario.play(steps, arg[2] or here .. "/../addon/Glimraxmit", { kind = "retail", rate = rate })
    local longest, count, answered = {}, {}, {}
    for _, message in ipairs(play.eye.messages) do
        local isReport = #message.text == 2
        local name = isReport and "report" or strip.printable(message.text)
        local began
        if isReport then
            began = lastChange(play.history, message.text:sub(1, 1), message.announce.made)
        elseif TELLS[message.text] then
            began = lastEvent(play.journal, TELLS[message.text], message.announce.made)
        end
        local key = message.text:sub(1, 1)
        if began and answered[key] ~= began then
            answered[key] = began
            count[name] = (count[name] or 0) + 1
            longest[name] = math.max(longest[name] or 0, message.confirm.from - began)
        end
    end
    local line = {}
    for name in ("C O w x report D U W V j K I A J n G s L"):gmatch("%S+") do
        if count[name] then
            line[#line + 1] = ("%s %.2f (%d)"):format(name, longest[name], count[name])
        end
    end
    print(("%-7s %s"):format(rate, table.concat(line, "  ")))
end
