-- lua5.1 tests/addon/play.lua [--addon FOLDER] [--client KIND] [--pictures RATE] [--as FORM] SCENARIO
--
-- Plays a scenario and prints what comes of it as one of these forms:
--   replay     a script for glimra-replay (the default)
--   strip      input of "glimra-strip -", which shows it in real time on a real screen
--   pixels     the left end of the top row of each picture that differs from the last one
--   events     what happened when
--   messages   what the strip said: seconds at which the announce and the confirm frame appeared, the message, and for
--              how many seconds and pictures each of the two stood; an age behind it means it was not so any more
-- play.lua --commands lists the commands of a scenario.
-- Exit status: 0, or 1 with what went wrong on standard error, 2 for what cannot be understood.

local here = arg[0]:match("^(.*)/") or "."
package.path = here .. "/?.lua;" .. package.path

local outcome = require "outcome"
local scenario = require "scenario"

local function stop(status, text)
    io.stderr:write(text, "\n")
    os.exit(status)
end

local chosen = { addon = here .. "/../../addon/Glimraxmit", as = "replay" }
local paths, i = {}, 1
while arg[i] do
    local option = arg[i]:match("^%-%-(%a+)$")
    if option == "commands" then
        for _, command in ipairs(require "commands") do
            print(("%-46s %s"):format(command[1], command[2]))
        end
        os.exit(0)
    elseif option then
        chosen[option], i = arg[i + 1] or stop(2, arg[i] .. " needs a value"), i + 1
    else
        paths[#paths + 1] = arg[i]
    end
    i = i + 1
end
local form = outcome[chosen.as]
if #paths ~= 1 or not form then
    stop(2, "usage: play.lua [--addon FOLDER] [--client KIND] [--pictures RATE] "
        .. "[--as replay|strip|pixels|events|messages] SCENARIO")
end

local isGood, steps = pcall(scenario.read, paths[1])
if not isGood then
    stop(2, tostring(steps))
end
local variant = scenario.variants(steps)[1]
variant.kind, variant.rate = chosen.client or variant.kind, chosen.pictures or variant.rate
local play = scenario.play(steps, { chosen.addon }, variant)
for _, line in ipairs(play.client and form(play) or {}) do
    print(line)
end
if #play.problems > 0 or not play.client then
    stop(1, not play.client and #play.problems == 0 and "nobody logs in" or table.concat(play.problems, "\n"))
end
