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
    local output = assert(io.popen(("%q --only log,dump,quit %q 2>&1"):format(program, path)))
    local text = output:read("*a")
    output:close()
    os.remove(path)
    return text:find('"kind":"quit"', 1, true) and text or error("glimra-replay: " .. text:sub(-300), 0)
end

-- The messages that Glimra took, { time, text, mark } each: mark tells how many of the scenario's marks came before.
local function readReplay(text)
    local all, mark = {}, 0
    for line in text:gmatch("[^\n]+") do
        local time, digits = line:match('^{"t":([%d.e+-]+).*"text":"evaluating message .-%((%x+)%)\\n"}$')
        if digits then
            local message = digits:gsub("%x%x", function(byte) return string.char(tonumber(byte, 16)) end)
            all[#all + 1] = { time = tonumber(time), text = message, mark = mark }
        elseif line:find('"what":"bitmap 0"', 1, true) then
            mark = mark + 1
        end
    end
    return all
end

-- Whether Glimra may have left a message without saying so in its log.
local function mayBeUnseen(sent, i)
    local last = i - 1
    while sent[last] and #sent[last].text > 1 do
        last = last - 1
    end
    -- Enter may flash already.
    return sent[i].text == "c" or sent[i].text == "I" and sent[last] and sent[last].text == "I"
end

-- Each message of the strip has to be taken, and nothing else; those that Glimra does not reorder in their order.
local function compareMessages(play, all)
    local sent, isTaken, lastInOrder = play.eye.messages, {}, 0
    for _, taken in ipairs(all) do
        local i, isAhead = 1, taken.text:find(AHEAD)
        while sent[i] and (isTaken[i] or sent[i].text ~= taken.text) do
            i = i + 1
        end
        isTaken[i] = true
        if not sent[i] or not isAhead and i < lastInOrder then
            play:complain(("at %.3f s of its clock Glimra took %s, which %s"):format(taken.time,
                strip.printable(taken.text), sent[i] and "was said earlier" or "nobody said"))
        end
        lastInOrder = isAhead and lastInOrder or i
    end
    for i, message in ipairs(sent) do
        if not isTaken[i] and not mayBeUnseen(sent, i) then
            play:complain(("%s, confirmed at %.3f s, was lost"):format(strip.printable(message.text),
                message.confirm.from))
        end
    end
end

-- For each kind of expectation: what is wrong, or nil. values: the words behind the kind; recent: the messages taken
-- since the last moment at which something was expected.
local expectations = {}

-- Glimra took these messages in this order, among others.
function expectations.order(values, recent)
    local i = 1
    for _, message in ipairs(recent) do
        i = message == tostring(values[i]) and i + 1 or i
    end
    return values[i] and "Glimra took " .. strip.printable(table.concat(recent, ", "))
end

-- Glimra took none of these.
expectations["no"] = function(values, recent)
    local all = "\n" .. table.concat(recent, "\n") .. "\n"
    for _, unwanted in ipairs(values) do
        if all:find("\n" .. unwanted .. "\n", 1, true) then
            return "Glimra took " .. unwanted
        end
    end
end

-- The strip said this, of which Glimra may say nothing.
function expectations.painted(values, _, expectation, play)
    for i = expectation.first, expectation.last do
        if play.eye.messages[i].text == values[1] then
            return nil
        end
    end
    return "it was not painted"
end

-- After all that it was told Glimra takes just these slots of the bar as on cooldown; or none.
function expectations.cooldown(values, _, expectation, _, all)
    local last, slots, bar = {}, {}, values[1]
    for _, taken in ipairs(all) do
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
    return found ~= table.concat(values, " ") and "Glimra takes these as on cooldown: " .. found
end

-- Nothing painted so far was false, or had been so for so many seconds.
function expectations.truth(values, _, expectation, play)
    for _, message in ipairs(play.eye.messages) do
        local age = truth.age(play.history, message)
        if message.announce.made <= expectation.time and age > values[1] then
            return ("%s, painted at %.3f s, had not been so for %.3f s"):format(strip.printable(message.text),
                message.announce.made, age)
        end
    end
end

-- Each frame stood for so many seconds, unless a loading screen or the player's own wish took it away.
function expectations.standing(values, _, _, play)
    for i, frame in ipairs(play.eye.frames) do
        local following, stood = play.eye.frames[i + 1], frame.till - frame.from
        if frame.kind ~= "none" and following and not following.isGame and stood < values[1] - 1e-6 then
            return ("the %s frame of %.3f s stood %.3f s"):format(frame.kind, frame.from, stood)
        end
    end
end

-- Everything that is wrong with one variant of a scenario, as a list of lines.
function check.variant(steps, variant, folder, program)
    local play = scenario.play(steps, folder, variant)
    local all = readReplay(runReplay(program, outcome.replay(play)))
    compareMessages(play, all)
    for _, expectation in ipairs(play.expectations) do
        local values, recent = expectation.values, {}
        for _, taken in ipairs(all) do
            recent[#recent + 1] = taken.mark == expectation.mark - 1 and taken.text or nil
        end
        local kind = expectations[values[1]] and table.remove(values, 1) or "order"
        local problem = expectations[kind](values, recent, expectation, play, all)
        if problem then
            play:complain(expectation.place .. ": " .. expectation.text .. ": " .. problem)
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
