-- lua5.1 tests/addon/check.lua --replay GLIMRA-REPLAY --addon FOLDER SCENARIO...
--
-- Plays scenarios, each with all its clients and rates of pictures, gives what was to be seen to glimra-replay, and holds
-- against each other what the strip said, what Glimra made of it, and what the scenario expects.

package.path = (arg[0]:match("^(.*)/") or ".") .. "/?.lua;" .. package.path

local kinds = require "client.kinds"
local outcome = require "outcome"
local scenario = require "scenario"
local strip = require "strip"
local truth = require "truth"

local check = {}

-- Glimra takes these ahead of others, so that their order says nothing.
local AHEAD = "^[DUOVEe`%[%]{}]"

local function runReplay(program, lines)
    local path = os.tmpname()
    local file = assert(io.open(path, "w"))
    file:write(table.concat(lines, "\n"), "\n")
    file:close()
    local output = assert(io.popen(("%q --only log,led,quit %q 2>&1"):format(program, path)))
    local text = output:read("*a")
    output:close()
    os.remove(path)
    return text
end

-- What Glimra did, by the game's clock: taken = { time, text }, calls = { time, text }.
local function readReplay(text, lead)
    local glimra, hasQuit = { taken = {}, calls = {} }, false
    for line in text:gmatch("[^\n]+") do
        local time, kind = line:match('^{"t":([%d.e+-]+),"kind":"(%a+)"')
        time = tonumber(time) and tonumber(time) - lead
        local digits = line:match('"text":"evaluating message .-%((%x+)%)\\n"}$')
        local call, arguments = line:match('"call":"(%w+)","args":%[(.-)%]')
        if digits then
            local message = digits:gsub("%x%x", function(byte) return string.char(tonumber(byte, 16)) end)
            glimra.taken[#glimra.taken + 1] = { time = time, text = message }
        elseif call then
            glimra.calls[#glimra.calls + 1] = { time = time, text = call .. " " .. arguments:gsub(",", " ") .. " " }
        end
        hasQuit = hasQuit or kind == "quit"
        if not kind then
            error("glimra-replay: " .. line, 0)
        end
    end
    if not hasQuit then
        error("glimra-replay has not come to its end", 0)
    end
    return glimra
end

-- Each message of the strip has to be taken, and nothing else; those that Glimra does not reorder in their order.
local function compareMessages(play, glimra)
    local sent, lastInOrder = play.eye.messages, 0
    local isTaken = {}
    for _, taken in ipairs(glimra.taken) do
        local found
        for i, message in ipairs(sent) do
            if not isTaken[i] and message.text == taken.text and message.confirm.from <= taken.time then
                found = i
                break
            end
        end
        if not found then
            play:complain(("at %.3f s Glimra took %s, which nobody said"):format(taken.time, strip.printable(taken.text)))
        else
            isTaken[found] = true
            if not taken.text:find(AHEAD) then
                if found < lastInOrder then
                    play:complain(("at %.3f s Glimra took %s later than what was said after it"):format(taken.time,
                        strip.printable(taken.text)))
                end
                lastInOrder = math.max(lastInOrder, found)
            end
        end
    end
    local lastSingle, mayBeDropped = nil, false
    for i = #sent, 1, -1 do
        -- R drops what waits.
        mayBeDropped = mayBeDropped or sent[i].text == "R"
        sent[i].mayBeDropped = mayBeDropped and sent[i].text ~= "R"
    end
    for i, message in ipairs(sent) do
        local text = message.text
        -- Not logged: "c", the empty character, and a whisper while one is shown already.
        local isQuiet = text == "c" or text == "\0" or text == "I" and lastSingle == "I"
        if not isTaken[i] and not isQuiet and not message.mayBeDropped then
            play:complain(("%s, confirmed at %.3f s, was lost: its frames stood for %.3f and %.3f s"):format(
                strip.printable(text), message.confirm.from, message.announce.till - message.announce.from,
                message.confirm.till - message.confirm.from))
        end
        lastSingle = #text == 1 and text or lastSingle
    end
end

local function within(list, expectation)
    local result = {}
    for _, item in ipairs(list) do
        if item.time > expectation.since and item.time <= expectation.time then
            result[#result + 1] = item.text
        end
    end
    return result
end

local function printable(messages)
    local list = {}
    for i, message in ipairs(messages) do
        list[i] = strip.printable(message)
    end
    return #list > 0 and table.concat(list, " ") or "nothing"
end

local expectations = {}

function expectations.order(_, glimra, expectation, wanted)
    local taken, i = within(glimra.taken, expectation), 1
    for _, message in ipairs(taken) do
        if message == wanted[i] then
            i = i + 1
        end
    end
    return i > #wanted, "Glimra took " .. printable(taken)
end

function expectations.only(_, glimra, expectation, wanted)
    local taken = printable(within(glimra.taken, expectation))
    return taken == printable(wanted), "Glimra took " .. taken
end

expectations["no"] = function(_, glimra, expectation, unwanted)
    local taken = within(glimra.taken, expectation)
    for _, message in ipairs(taken) do
        for _, bad in ipairs(unwanted) do
            if message == bad then
                return false, "Glimra took " .. printable(taken)
            end
        end
    end
    return true
end

function expectations.led(_, glimra, expectation, text)
    for _, call in ipairs(within(glimra.calls, expectation)) do
        if (call):sub(1, #text + 1) == text .. " " then
            return true
        end
    end
    return false, "there was no such call"
end

function expectations.cooldown(_, glimra, expectation, bar, wanted)
    local slots = {}
    for prefix, report in pairs(truth.reports) do
        local last
        for _, taken in ipairs(glimra.taken) do
            if taken.time <= expectation.time and #taken.text == 2 and taken.text:sub(1, 1) == prefix then
                last = math.floor(taken.text:byte(2) / 2)
            end
        end
        for slot = 1, 6 do
            if report[1] == bar and last and math.floor(last / 2 ^ (6 - slot)) % 2 == 1 then
                slots[#slots + 1] = report[2] + slot
            end
        end
    end
    table.sort(slots)
    local found = #slots > 0 and table.concat(slots, " ") or "none"
    return found == table.concat(wanted, " "), "Glimra takes these as on cooldown: " .. found
end

function expectations.truth(play, _, expectation, longest)
    local lies = {}
    for _, message in ipairs(play.eye.messages) do
        local age = truth.age(play.history, message)
        if message.announce.made <= expectation.time and age > longest then
            lies[#lies + 1] = ("%s, painted at %.3f s, %s"):format(strip.printable(message.text), message.announce.made,
                age == math.huge and "had never been so" or ("had not been so for %.3f s"):format(age))
        end
    end
    return #lies == 0, table.concat(lies, "; ")
end

function expectations.standing(play, _, expectation, shortest)
    local short = {}
    for i, frame in ipairs(play.eye.frames) do
        local following = play.eye.frames[i + 1]
        local isCutOff = not following or following.isGame
        if frame.kind ~= "none" and not frame.isGame and not isCutOff and frame.till <= expectation.time
            and frame.till - frame.from < shortest - 1e-6 then
            short[#short + 1] = ("the %s frame of %.3f s stood %.3f s, %d pictures"):format(frame.kind, frame.from,
                frame.till - frame.from, frame.pictures)
        end
    end
    return #short == 0, table.concat(short, "; ")
end

-- A name that no client has is misspelt; one that others have was asked for.
local function complainOfUnknownNames(play)
    local known = { "^SLASH_", "^ChatFrame%d+" }
    for _, kind in pairs(kinds) do
        for name in pairs(kind.lacks) do
            known[#known + 1] = "^" .. name .. "$"
        end
    end
    for name, place in pairs(play.client.unknownNames) do
        local isKnown = play.client.mayBeNil[name]
        for _, pattern in ipairs(known) do
            isKnown = isKnown or name:find(pattern)
        end
        if not isKnown then
            play:complain(place .. ": nobody defines " .. name)
        end
    end
end

-- Everything that is wrong with one variant of a scenario, as a list of lines.
function check.variant(steps, variant, folder, program)
    local play = scenario.play(steps, { folder }, variant)
    if not play.client then
        return play.problems
    end
    local glimra = readReplay(runReplay(program, outcome.replay(play)), outcome.lead(play))
    compareMessages(play, glimra)
    for _, expectation in ipairs(play.expectations) do
        local isSo, found = expectations[expectation.kind](play, glimra, expectation, unpack(expectation.values))
        if not isSo then
            play.problems[#play.problems + 1] = expectation.place .. ": " .. expectation.text .. ": " .. found
        end
    end
    complainOfUnknownNames(play)
    return play.problems
end

local function main()
    local folder, program, paths, isGood = "addon/Glimraxmit", "glimra-replay", {}, true
    local i = 1
    while arg[i] do
        if arg[i] == "--addon" then
            folder, i = arg[i + 1], i + 1
        elseif arg[i] == "--replay" then
            program, i = arg[i + 1], i + 1
        else
            paths[#paths + 1] = arg[i]
        end
        i = i + 1
    end
    for _, path in ipairs(paths) do
        local steps = scenario.read(path)
        for _, variant in ipairs(scenario.variants(steps)) do
            local problems = check.variant(steps, variant, folder, program)
            print(("%s %s, %s, %s pictures"):format(#problems == 0 and "ok    " or "FAILED", path, variant.kind, variant.rate))
            for _, problem in ipairs(problems) do
                print("    " .. problem)
            end
            isGood = isGood and #problems == 0
        end
    end
    os.exit(isGood and #paths > 0 and 0 or 1)
end

if arg[0]:find("check%.lua$") then
    main()
end
return check
