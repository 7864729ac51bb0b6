-- Whether what is said on the strip is so.

local world = require "client.world"

-- From a prefix to the bar, and how many of its slots come before those of the report.
local reports = {
    ["`"] = { "bar1", 0 }, ["["] = { "bar1", 6 }, ["]"] = { "bar6", 0 }, ["{"] = { "bar6", 6 }, ["}"] = { "bar5", 0 },
}
local truth = { reports = reports }

-- What is over when a message says so.
local ENDS = { O = "C", U = "D", V = "W", e = "E" }

-- The six slots of a report as a number, the first one worth 32.
local function slots(w, bar, offset)
    local value = 0
    for slot = 1, 6 do
        value = value * 2 + (world.isOnCooldown(w, world.actionOf(w, bar, offset + slot)) and 1 or 0)
    end
    return value
end

-- What is so at this moment, as far as an add-on can know: from the message, or the prefix, that says so.
local function factsOf(client)
    local w = client.world
    local facts = { C = w.fight or false, D = w.dead or false, W = w.ghost or false, E = client.focus ~= nil }
    for prefix, report in pairs(reports) do
        facts[prefix] = slots(w, report[1], report[2])
    end
    return facts
end

local function agrees(facts, text)
    if #text == 2 then
        return facts[text:sub(1, 1)] == math.floor(text:byte(2) / 2)
    end
    return facts[ENDS[text] or text] ~= (ENDS[text] ~= nil)
end

-- For how long a message had not been so any more when it was painted; 0 for a true one. history: { time, facts } each.
function truth.age(history, message)
    local painted, till = message.announce.made, nil
    for i = #history, 1, -1 do
        if history[i].time <= painted then
            if agrees(history[i].facts, message.text) then
                return till and painted - till or 0
            end
            till = history[i].time
        end
    end
    return math.huge
end

-- Notes the facts in the history where they have changed.
function truth.note(history, client)
    local facts, last = factsOf(client), history[#history]
    local isSame = last ~= nil
    for name, value in pairs(facts) do
        isSame = isSame and last.facts[name] == value
    end
    if not isSame then
        history[#history + 1] = { time = client.now, facts = facts }
    end
end

return truth
