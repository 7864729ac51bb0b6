-- lua5.1 tests/addon/play.lua replay|strip SCENARIO
--
-- Plays a scenario, the first of its variants, and prints what comes of it in one of the forms of outcome.lua.
-- Exit status: 0, or 1 with what went wrong on standard error.

local here = arg[0]:match("^(.*)/") or "."
package.path = here .. "/?.lua;" .. package.path

local outcome = require "outcome"
local scenario = require "scenario"

local form = assert(outcome[arg[1]], "usage: play.lua replay|strip SCENARIO")
local steps = scenario.read(arg[2])
local play = scenario.play(steps, here .. "/../../addon/Glimraxmit", scenario.variants(steps)[1])
print(table.concat(form(play), "\n"))
if #play.problems > 0 then
    io.stderr:write(table.concat(play.problems, "\n"), "\n")
    os.exit(1)
end
