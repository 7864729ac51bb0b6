-- lua5.1 tests/addon/stand_in_test.lua GLIMRA-REPLAY: faults in the add-on that the tests have to notice.

local here = arg[0]:match("^(.*)/") or "."
package.path = here .. "/?.lua;" .. package.path

local check = require "check"
local scenario = require "scenario"

local EVENING = [[
    login; wait 6; expect R
    use bar1 1 cooldown 20; fight; wait 3; expect C; expect cooldown bar1 1
    peace; wait 3; expect O
    hide-interface; resize 1680 1051; ui-scale 0.7; whisper; wait 3; expect I
    expect truth 0.25; expect standing 0.1
]]

-- What goes wrong with a scenario when in a file of the add-on a text is replaced.
local function problemsOf(text, variant, file, old, new)
    function variant.edit(name, source)
        local from, to = source:find(name == file and old or "no such text", 1, true)
        return from and source:sub(1, from - 1) .. new .. source:sub(to + 1) or source
    end
    return table.concat(check.variant(scenario.parse(text, "text"), variant, here .. "/../../addon/Glimraxmit", arg[1]),
        "\n")
end

local failures = 0
local function expect(condition, what, problems)
    if not condition then
        failures = failures + 1
        print(("FAILED: %s: %s"):format(what, problems))
    end
end

for _, kind in ipairs { "retail", "era", "old" } do
    local problems = problemsOf(EVENING, { kind = kind, rate = "7..144" })
    expect(problems == "", kind, problems)
end

for _, fault in ipairs {
    { "strip.lua", "(right - left)", "(right - left - 0.4)", "is mixed, in cell" },
    { "strip.lua", "(right - left)", "(right - left + 0.4)", "it goes on at pixel 80" },
    { "strip.lua", '"TOPLEFT", 0, 0', '"TOPLEFT", 1, 0', "pixel 0 is game" },
    { "strip.lua", '"TOPLEFT", 0, 0', '"TOPLEFT", 0, -0.5', "pixel 0 is mixed" },
    { "strip.lua", "HEIGHT = 4", "HEIGHT = 3", "pixel 0 is mixed" },
    { "strip.lua", '"TOOLTIP"', '"DIALOG"', "expect R: Glimra took " },
    { "sender.lua", "FRAME_STANDS = 0.1", "FRAME_STANDS = 0.01", "was lost" },
    -- On a slow picture's time a frame is not on the screen yet.
    { "sender.lua", "announce(next)", "announce(next) standsSince = now", "expect standing 0.1: the " },
    { "main.lua", "addon.tellsOfLoading =", 'frame:RegisterEvent("NO_SUCH_EVENT")', "unknown event \"NO_SUCH_EVENT\"" },
    { "moments.lua", "return not peaceful", "return true", "expect truth 0.25: C" },
    { "messages.lua", 'ends = "O"', 'ends = "Q"', "error" },
} do
    local problems = problemsOf(EVENING, { kind = "retail", rate = "7..144" }, unpack(fault))
    expect(problems:find(fault[4], 1, true), fault[3], problems)
end

-- Each kind of look at a secret value that Lua can notice, on retail in a fight.
for code, isForbidden in pairs { ["h < 5"] = true, ["1 + h"] = true, ["{ h }"] = false } do
    local text = 'login; fight; wait 1; type "/run h = UnitHealth([[player]]); x = ' .. code .. '"'
    for kind, isGood in pairs { retail = not isForbidden, era = true } do
        local problems = problemsOf(text, { kind = kind, rate = 60 })
        expect((problems == "") == isGood, code .. " on " .. kind, problems)
    end
end

os.exit(failures == 0 and 0 or 1)
