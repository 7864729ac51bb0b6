-- lua5.1 tests/addon/stand_in_test.lua GLIMRA-REPLAY: proves the stand-in for the game with a small add-on.

local here = arg[0]:match("^(.*)/") or "."
package.path = here .. "/?.lua;" .. package.path

local check = require "check"
local newClient = require "client.client"
local picture = require "client.picture"
local scenario = require "scenario"

local painter, replay = here .. "/Painter", arg[1]
local failures = 0

local function expect(condition, what, ...)
    if not condition then
        failures = failures + 1
        print("FAILED: " .. what:format(...))
    end
end

local function enter(kind, width, height, uiScale)
    local client = newClient {
        kind = kind, width = width, height = height, uiScale = uiScale, folders = { painter }, rate = "10",
    }
    client:login()
    client:wait(1)
    return client
end

local function enterText(client, text)
    client:later(function() client:enterText(text) end)
    client:waitForPicture()
end

local function rowOf(client)
    local colors = {}
    for x = 0, 89 do
        local color, shows = picture.color(client.row, x)
        colors[x + 1] = shows == "clean" and color:sub(1, 1) or "?"
    end
    return table.concat(colors)
end

-- A strip of 80 pixels that announces "U" (1010101), and nothing beside it; painted above the picture of an icon.
local announced = ("F"):rep(7) .. ("0"):rep(8) .. ("F"):rep(7) .. ("0"):rep(7) .. ("F"):rep(7) .. ("0"):rep(8)
    .. ("F"):rep(7) .. ("0"):rep(7) .. ("F"):rep(7) .. ("F"):rep(8) .. ("0"):rep(7) .. ("6"):rep(10)

local function pixelsAreExact()
    for _, kind in ipairs { "retail", "mists", "anniversary", "era", "old" } do
        for _, size in ipairs { { 1920, 1080 }, { 2560, 1440 }, { 3840, 2160 }, { 1680, 1051 }, { 1366, 767 } } do
            for _, uiScale in ipairs { 1, 0.64, 1.15 } do
                local client = enter(kind, size[1], size[2], uiScale)
                enterText(client, "/paint U")
                client:waitForPicture()
                expect(rowOf(client) == announced, "%s at %d by %d, scale %g: %s", kind, size[1], size[2], uiScale,
                    rowOf(client))
                expect(#client.errors == 0, "%s: %s", kind, client.errors[1] and client.errors[1].text)
            end
        end
    end
end

local function picturesAreSeenAtTheirEnd()
    local seen = {}
    local client = newClient { kind = "era", width = 800, height = 600, folders = { painter }, rate = "10",
        onScreen = function(time, row) seen[#seen + 1] = { time = time, color = picture.color(row, 0) } end }
    client:login()
    client:wait(0.55)
    local asked = client.now
    client:later(function() client:enterText("/paint U") end)
    client:wait(0.3)
    local shownAt
    for _, entry in ipairs(seen) do
        if entry.color == "FFFFFF" and entry.time > asked then
            shownAt = shownAt or entry.time
        end
    end
    local made = math.ceil(asked * 10 - 1e-6) / 10
    expect(shownAt and math.abs(shownAt - made - 0.1) < 1e-6, "made at %g, seen at %s", made, tostring(shownAt))
end

local function worldAnswers()
    local client = enter("mists", 1920, 1080)
    local bars, get = client.globals.C_ActionBar, client.globals.C_ActionBar.GetActionCooldown
    local function play(text)
        for _, step in ipairs(scenario.parse(text, "text")) do
            step.run({ client = client, world = client.world }, unpack(step.values))
        end
    end
    play("use bar1 1 cooldown 8\ngcd 1.5\ncharges bar6 2 1/2 recharge 3\nwait 1")
    expect(get(1).isActive and get(1).isOnGCD == false and get(1).duration == 8, "an ability's own cooldown")
    expect(get(2).isActive and get(2).isOnGCD and get(2).duration == 1.5, "the global cooldown")
    expect(bars.GetActionCharges(62).currentCharges == 1 and get(62).isActive and not get(62).isOnGCD, "a charge left")
    expect(bars.GetActionCharges(1) == nil, "an ability without charges")
    play("wait 1")
    expect(get(2).isActive == false and get(2).isOnGCD == nil and get(2).startTime == 0, "no cooldown any more")
    play("wait 2")
    expect(bars.GetActionCharges(62).currentCharges == 2 and not get(62).isActive, "all charges are back")
    play("bonus 1\nuse bar1 3 cooldown 8\npage 2\nuse bar1 3 cooldown 8")
    play("override on\nvehicle on\nuse bar1 3 cooldown 8\nwait 1")
    for _, action in ipairs { 72 + 3, 12 + 3, bars.GetVehicleBarIndex() * 12 - 12 + 3 } do
        expect(get(action).isActive, "action %d is on cooldown", action)
    end
    expect(not get(3).isActive and not get(bars.GetOverrideBarIndex() * 12 - 12 + 3).isActive, "other pages are not")
end

-- Plays a text with all the client's checks, and gives what was wrong.
local function problemsOf(text, kind, rate)
    local isGood, steps = pcall(scenario.parse, text, "text")
    if not isGood then
        return steps
    end
    return table.concat(check.variant(steps, { kind = kind or "retail", rate = rate or "60" }, painter, replay), "\n")
end

local function isFine(text, ...)
    local problems = problemsOf(text, ...)
    expect(problems == "", "this should be fine: %s\n%s", text, problems)
end

local function isNoticed(text, problem, ...)
    local problems = problemsOf(text, ...)
    expect(problems:find(problem, 1, true), "this should be noticed (%s): %s\n%s", problem, text, problems)
end

local function secretsAreKept()
    for deed, problem in pairs {
        less = "attempt to compare", equal = "attempt to compare a secret", key = "as a table key", test = "is true",
        add = "arithmetic with a secret", join = "concatenate a secret",
    } do
        local text = "login\nfight\nwait 1\ntype \"/paint " .. deed .. "\"\nwait 1\n"
        isNoticed(text, problem)
        isNoticed("login\nencounter on\ntype \"/paint " .. deed .. "\"\n", problem)
        isFine("login\nfight\npeace\nwait 1\ntype \"/paint " .. deed .. "\"\nwait 1\n")
        isFine(text, "mists")
    end
    isFine('login\nhealth 50\nfight\ntype "/paint carry"\nsaid 12155\nwait 2\n')
end

local function faultsAreNoticed()
    for deed, problem in pairs {
        crooked = "pixel 21 is", hole = "pixel 15 is", beside = "pixel 0 is", low = "(mixed)",
        unknown = "unknown event \"NO_SUCH_EVENT\"", misspelt = "nobody defines UnitHeath",
    } do
        isNoticed("login\nhide-interface\nwait 1\ntype \"/paint " .. deed .. "\"\nwait 1\n", problem)
    end
    isNoticed('login\ntype "/paint hasty"\nwait 1\ntype "/paint J"\nwait 1\nexpect standing 0.1', "stood 0.033")
    isNoticed('login\ntype "/paint hasty"\nwait 1\ntype "/paint J"\nwait 1\n', "was lost")
    isNoticed('login\ntype "/paint D"\nwait 2\nexpect truth 9', "s, had never been so")
    isNoticed('login\nfight\nwait 1\npeace\nwait 2\ntype "/paint C"\nwait 1\nexpect truth 0.5', "had not been so for")
    isNoticed("login\nfight\nwait 1\nexpect O", "Glimra took C")
    isNoticed("login\nfight\nwait 1\nexpect no C", "Glimra took C")
    isNoticed("login\nfight\nwait 1\nexpect only C O", "Glimra took C")
    isNoticed("login\nfight\nwait 1\nexpect led LogiLedFlash", "no such call")
    isNoticed("login\nsaid nothing", "the chat does not show")
    isNoticed("login\nwait\n", "text:2: wait SECONDS: SECONDS is missing")
    isNoticed("login\n\nuse bar1 first cooldown 3", "text:3: use BAR SLOT cooldown SECONDS: SLOT is a number")
    isNoticed("login\nexpect truth much", "text:2: expect truth SECONDS: SECONDS is a number, not much")
    isNoticed("login\npictures 7..", '"7.." is no rate of pictures')
    isNoticed("fight\nlogin", "text:1: comes after login")
end

local function scenariosWork()
    for _, rate in ipairs { "7", "60", "144", "240", "5..240", "60,60,7" } do
        isFine([[
            login
            fight
            wait 3
            expect only C
            expect led LogiLedPulseSingleKey 42 100 0 0
            use bar1 1 cooldown 30
            use bar1 9 cooldown 30
            use bar6 2 cooldown 30
            type "/paint `@"
            wait 2
            expect cooldown bar1 1
            type "/paint [\x10"
            type "/paint ]!"
            type "/paint {\x02"
            type "/paint }\x06"
            wait 6
            expect cooldown bar1 1 9
            expect cooldown bar6 2 12
            expect cooldown bar5 5 6
            peace
            wait 6
            expect O
            loading 2
            wait 2
            expect standing 0.1
        ]], "retail", rate)
    end
    isFine('login\nreload\nreload\ntype "/paint tell"\nsaid "loaded 3 nil nil true true"\nwait 1')
    isFine('login\nhide-interface\nfight\nwait 2\nexpect C\n')
    isNoticed('login\ntype "/paint wide"\nstrip 120\nwait 1\nfight\nwait 2\n', "C, confirmed at 5.200 s, was lost")
    isFine([[
        login
        type "/paint wide"
        strip 120
        unread on
        type "/paint calibrate"
        wait 1
        glimra "action \"calibrateButton:\""
        glimra "action \"calibrateButton:\""
        unread off
        type "/paint I"
        wait 1
        fight
        wait 2
        expect E I e C
    ]])
    isFine('login\nresize 2560 1051\nui-scale 0.7\nwait 1\nfight\nwait 2\nexpect C\n')
    isFine('login\nshows "Paint the strip" on\noption "Paint the strip" off\nfight\nwait 2\nexpect no C\n')
    isFine('glimra "default \\"AutoToggle\\" true"\nlogin\nchat open\nwait 1\nexpect E\nchat close\nwait 1\nexpect e')
end

pixelsAreExact()
picturesAreSeenAtTheirEnd()
worldAnswers()
secretsAreKept()
faultsAreNoticed()
scenariosWork()
os.exit(failures == 0 and 0 or 1)
