-- lua5.1 tests/addon/play.lua [--addon FOLDER] [--client KIND] [--pictures RATE] [--as FORM] SCENARIO
--
-- Plays a scenario, the first of its variants unless another is chosen, and prints what comes of it as one of the forms
-- of outcome.lua: replay (unless another is chosen), strip or messages.
-- Exit status: 0, or 1 with what went wrong on standard error, 2 for what cannot be understood.

local here = arg[0]:match("^(.*)/") or "."
package.path = here .. "/?.lua;" .. package.path

local outcome = require "outcome"
local scenario = require "scenario"

local chosen, path, i = { addon = here .. "/../../addon/Glimraxmit", as = "replay" }, nil, 1
while arg[i] do
    local option = arg[i]:match("^%-%-(%a+)$")
    if option then
        chosen[option], i = arg[i + 1], i + 1
    else
        path = arg[i]
    end
    i = i + 1
end
local form = outcome[chosen.as]
if not path or not form then
    io.stderr:write("usage: play.lua [--addon FOLDER] [--client KIND] [--pictures RATE] ",
        "[--as replay|strip|messages] SCENARIO\n")
    os.exit(2)
end
local steps = scenario.read(path)
local variant = scenario.variants(steps)[1]
variant.kind, variant.rate = chosen.client or variant.kind, chosen.pictures or variant.rate
local play = scenario.play(steps, chosen.addon, variant)
for _, line in ipairs(play.client and form(play) or {}) do
    print(line)
end
if #play.problems > 0 then
    io.stderr:write(table.concat(play.problems, "\n"), "\n")
    os.exit(1)
end
