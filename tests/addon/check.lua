-- lua5.1 tests/addon/check.lua --replay GLIMRA-REPLAY --addon FOLDER SCENARIO
--
-- Plays a scenario with all its clients and rates of pictures, gives what was to be seen to glimra-replay, and holds
-- against each other what the strip said, what Glimra made of it, and what the scenario expects.

local here = arg[0]:match("^(.*)/") or "."
package.path = here .. "/?.lua;" .. package.path

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
    local output = assert(io.popen(("%q --only log,led,dump,quit %q 2>&1"):format(program, path)))
    local text = output:read("*a")
    output:close()
    os.remove(path)
    return text
end

-- What Glimra did: taken = messages, calls = calls of the LED driver; { time, text, mark } each, where mark tells how
-- many of the scenario's marks came before.
local function readReplay(text)
    local glimra, mark, hasQuit = { taken = {}, calls = {} }, 0, false
    for line in text:gmatch("[^\n]+") do
        local time, kind = line:match('^{"t":([%d.e+-]+),"kind":"(%a+)"')
        local digits = line:match('"text":"evaluating message .-%((%x+)%)\\n"}$')
        local call, arguments = line:match('"call":"(%w+)","args":%[(.-)%]')
        if not kind then
            error("glimra-replay: " .. line, 0)
        elseif digits then
            local message = digits:gsub("%x%x", function(byte) return string.char(tonumber(byte, 16)) end)
            table.insert(glimra.taken, { time = tonumber(time), text = message, mark = mark })
        elseif call then
            table.insert(glimra.calls, { text = call .. " " .. arguments:gsub(",", " ") .. " ", mark = mark })
        elseif line:find('"what":"bitmap 0"', 1, true) then
            mark = mark + 1
        end
        hasQuit = hasQuit or kind == "quit"
    end
    return hasQuit and glimra or error("glimra-replay has not come to its end", 0)
end

-- Whether Glimra may have left a message without saying so in its log.
local function mayBeUnseen(sent, i)
    local last = i - 1
    while sent[last] and #sent[last].text > 1 do
        last = last - 1
    end
    -- Enter may flash already.
    return sent[i].isUnread or sent[i].text == "c" or sent[i].text == "I" and sent[last] and sent[last].text == "I"
end

-- The place of the first such message that was not taken yet, rather one that Glimra can read.
local function firstUntaken(sent, isTaken, text)
    local unread
    for i, message in ipairs(sent) do
        if message.text == text and not isTaken[i] then
            if not message.isUnread then
                return i
            end
            unread = unread or i
        end
    end
    return unread
end

-- Each message of the strip has to be taken, and nothing else; those that Glimra does not reorder in their order.
local function compareMessages(play, glimra)
    local sent, isTaken, lastInOrder = play.eye.messages, {}, 0
    for _, taken in ipairs(glimra.taken) do
        local found = firstUntaken(sent, isTaken, taken.text)
        isTaken[found or 0] = true
        local isInOrder = found and (taken.text:find(AHEAD) or found >= lastInOrder)
        if not isInOrder then
            play:complain(("at %.3f s of its clock Glimra took %s, which %s"):format(taken.time,
                strip.printable(taken.text), found and "was said earlier" or "nobody said"))
        elseif not taken.text:find(AHEAD) then
            lastInOrder = found
        end
    end
    for i, message in ipairs(sent) do
        if not isTaken[i] and not mayBeUnseen(sent, i) then
            play:complain(("%s, confirmed at %.3f s, was lost"):format(strip.printable(message.text),
                message.confirm.from))
        end
    end
end

-- What Glimra did between the last moment at which something was expected and this one.
local function since(list, expectation)
    local result = {}
    for _, item in ipairs(list) do
        if item.mark == expectation.mark - 1 then
            result[#result + 1] = item.text
        end
    end
    return result
end

local function printable(messages)
    return #messages > 0 and strip.printable(table.concat(messages, "\n")):gsub("\\x0a", " ") or "nothing"
end

-- For each kind of expectation: what is wrong, or nil.
local expectations = {}

-- Glimra took these messages in this order, among others.
function expectations.order(_, glimra, expectation)
    local taken, i = since(glimra.taken, expectation), 1
    for _, message in ipairs(taken) do
        i = message == tostring(expectation.values[i]) and i + 1 or i
    end
    return i <= #expectation.values and "Glimra took " .. printable(taken) or nil
end

-- Glimra took none of these.
expectations["no"] = function(_, glimra, expectation)
    local taken = since(glimra.taken, expectation)
    local all = "\n" .. table.concat(taken, "\n") .. "\n"
    for _, unwanted in ipairs(expectation.values) do
        if all:find("\n" .. unwanted .. "\n", 1, true) then
            return "Glimra took " .. printable(taken)
        end
    end
end

-- Glimra called this function, with these first arguments.
function expectations.led(_, glimra, expectation)
    local text = expectation.values[1] .. " "
    for _, made in ipairs(since(glimra.calls, expectation)) do
        if made:sub(1, #text) == text then
            return nil
        end
    end
    return "there was no such call"
end

-- It did not.
expectations["no-led"] = function(...)
    return not expectations.led(...) and "there was such a call" or nil
end

-- After all that it was told Glimra takes just these slots of the bar as on cooldown; or none.
function expectations.cooldown(_, glimra, expectation)
    local last, slots, bar = {}, {}, expectation.values[1]
    for _, taken in ipairs(glimra.taken) do
        if taken.mark < expectation.mark and #taken.text == 2 then
            last[taken.text:sub(1, 1)] = math.floor(taken.text:byte(2) / 2)
        end
    end
    for prefix, report in pairs(truth.reports) do
        for slot = 1, 6 do
            if report[1] == bar and math.floor((last[prefix] or 0) / 2 ^ (6 - slot)) % 2 == 1 then
                slots[#slots + 1] = report[2] + slot
            end
        end
    end
    table.sort(slots)
    local found = bar .. " " .. (#slots > 0 and table.concat(slots, " ") or "none")
    return found ~= table.concat(expectation.values, " ") and "Glimra takes these as on cooldown: " .. found or nil
end

-- Nothing painted so far was false, or had been so for so many seconds.
function expectations.truth(play, _, expectation)
    for _, message in ipairs(play.eye.messages) do
        local age = truth.age(play.history, message)
        if message.announce.made <= expectation.time and age > expectation.values[1] then
            return ("%s, painted at %.3f s, had not been so for %.3f s"):format(strip.printable(message.text),
                message.announce.made, age)
        end
    end
end

-- Each frame so far stood for so many seconds.
function expectations.standing(play, _, expectation)
    for i, frame in ipairs(play.eye.frames) do
        local following = play.eye.frames[i + 1]
        -- What a loading screen or the player's own wish takes away is nobody's fault.
        local isCutOff = not following or following.isGame
        local isDue = frame.kind ~= "none" and not isCutOff and frame.till <= expectation.time
        if isDue and frame.till - frame.from < expectation.values[1] - 1e-6 then
            return ("the %s frame of %.3f s stood %.3f s"):format(frame.kind, frame.from, frame.till - frame.from)
        end
    end
end

-- Everything that is wrong with one variant of a scenario, as a list of lines.
function check.variant(steps, variant, folder, program)
    local play = scenario.play(steps, folder, variant)
    if play.client then
        local glimra = readReplay(runReplay(program, outcome.replay(play)))
        compareMessages(play, glimra)
        for _, expectation in ipairs(play.expectations) do
            local isOrder = not expectations[expectation.values[1]]
            local kind = isOrder and "order" or table.remove(expectation.values, 1)
            local problem = expectations[kind](play, glimra, expectation)
            if problem then
                play:complain(expectation.place .. ": " .. expectation.text .. ": " .. problem)
            end
        end
    end
    return play.problems
end

local function main(_, program, _, folder, path)
    local steps, isGood = scenario.read(path), true
    for _, variant in ipairs(scenario.variants(steps)) do
        local problems = check.variant(steps, variant, folder, program)
        local verdict = #problems == 0 and "good" or "FAILED"
        print(("%s %s: %s, %s pictures"):format(verdict, path, variant.kind, variant.rate))
        for _, problem in ipairs(problems) do
            print("    " .. problem)
        end
        isGood = isGood and #problems == 0
    end
    os.exit(isGood and 0 or 1)
end

if arg[0]:find("check%.lua$") then
    main(unpack(arg))
end
return check
