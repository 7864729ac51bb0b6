-- lua5.1 tests/addon/stand_in_test.lua GLIMRA-REPLAY: faults in the add-on that the tests have to notice.

local here = arg[0]:match("^(.*)/") or "."
package.path = here .. "/?.lua;" .. package.path

local check = require "check"
local scenario = require "scenario"

local EVENING = [[
    login; wait 6; expect R
    use bar1 6 cooldown 20; fight; health 50; wait 3; expect C; expect cooldown bar1 6
    peace; wait 3; expect O
    hide-interface; resize 1680 1051; ui-scale 0.7; whisper; wait 3; expect I
    expect truth 0.25; expect standing 0.1
]]

-- In which file what is replaced by what, and what is said of it.
local isGood = true
for _, fault in ipairs {
    { "strip.lua", "(right - left)", "(right - left - 0.4)", "is mixed, in cell" },
    { "strip.lua", "(right - left)", "(right - left + 0.4)", "it goes on at pixel 80" },
    { "strip.lua", '"TOPLEFT", 0, 0', '"TOPLEFT", 1, 0', "pixel 0 is game" },
    { "strip.lua", "HEIGHT = 4", "HEIGHT = 3", "pixel 0 is mixed" },
    { "strip.lua", '"TOOLTIP"', '"DIALOG"', "expect R: Glimra took " },
    { "sender.lua", "framePace.stands", "framePace.stands / 10", "was lost" },
    -- On a slow picture's time a frame is not on the screen yet.
    { "sender.lua", "announce(next, now)", "announce(next, now) standsSince = now", "expect standing 0.1: the " },
    { "main.lua", "addon.tellsOfLoading =", 'frame:RegisterEvent("NO_SUCH_EVENT")', "unknown event \"NO_SUCH_EVENT\"" },
    { "moments.lua", "return not peaceful", "return true", "expect truth 0.25: C" },
    { "moments.lua", "addon.isSecret(health) or addon.isSecret(most)", "false", "compare number with userdata" },
    { "cooldowns.lua", "first + SLOTS - 1", "first + SLOTS - 2", "Glimra takes these as on cooldown" },
} do
    local variant = { kind = "retail", rate = "7..144" }
    function variant.edit(name, source)
        local from, to = source:find(name == fault[1] and fault[2] or "no such text", 1, true)
        return from and source:sub(1, from - 1) .. fault[3] .. source:sub(to + 1) or source
    end
    local folder, steps = here .. "/../../addon/Glimraxmit", scenario.parse(EVENING, "text")
    local problems = table.concat(check.variant(steps, variant, folder, arg[1]), "\n")
    if not problems:find(fault[4], 1, true) then
        print(("FAILED: %s: %s"):format(fault[3], problems))
        isGood = false
    end
end
os.exit(isGood and 0 or 1)
