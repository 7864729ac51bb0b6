-- /glimra and /glimracal.

local _, addon = ...
local message, lights, moments, options = addon.message, addon.lights, addon.moments, addon.options

function addon.say(text)
    DEFAULT_CHAT_FRAME:AddMessage("Glimra: " .. text)
end
local say = addon.say

local function nameOf(code)
    return code == "none" and "nothing" or ("%s (%s)"):format(message[code].name, code)
end

-- Players type moments in any mix of capitals.
local function findMoment(word)
    for _, row in ipairs(moments.rows) do
        if row.title and row.key:lower() == word:lower() then
            return row
        end
    end
end

local function listMoments()
    for _, row in ipairs(moments.rows) do
        if row.title then
            say(("%s (%s): %s"):format(row.title, row.key, nameOf(options.effect(row.key))))
        end
    end
end

local function listEffects()
    for _, effect in ipairs(addon.messages) do
        if effect.name then
            say(("%s  %s"):format(effect.code, effect.name))
        end
    end
end

local function readProfile(word)
    return word and word:match("^[1-9]$")
end

local commands

local function help()
    for _, command in ipairs(commands) do
        say(command.usage .. "  " .. command.help)
    end
end

local function status()
    say(options.on and "On." or "Off.")
    say(("The strip is %d pixels wide."):format(options.width))
    local none = true
    for _, code in pairs(lights.said) do
        if message[code].ends then
            say("Showing: " .. message[code].name)
            none = false
        end
    end
    if none then
        say("No light that stays is on.")
    end
    if addon.calibration.isOn() then
        say("The calibration pattern is on.")
    end
end

local function test()
    if addon.tour.isOn() then
        addon.tour.stop()
        say("The test is over.")
    elseif not options.on then
        say("Glimra is off here; /glimra on turns it on.")
    else
        say("Each effect once. /glimra test ends it.")
        addon.tour.start(GetTime())
    end
end

local function effect(key, code)
    if not key then
        listMoments()
        return
    end
    local row = findMoment(key)
    if not row then
        say(("There is no moment \"%s\". /glimra effect lists them."):format(key))
    elseif not code then
        say(("%s: %s"):format(row.title, nameOf(options.effect(row.key))))
        listEffects()
    elseif not options.isEffect(code) then
        say(("There is no effect \"%s\". /glimra effect %s lists them."):format(code, row.key))
    else
        addon.chooseEffect(row.key, code)
        say(("%s: %s"):format(row.title, nameOf(code)))
    end
end

local function profile(word)
    local code = readProfile(word)
    if not code then
        say("Say which profile: /glimra profile 1 to 9.")
    elseif not options.on then
        say("Glimra is off here; /glimra on turns it on.")
    else
        moments.showProfile(code)
        say(("Profile %s is shown."):format(code))
    end
end

local function specialization(number, word)
    local which = tonumber(number)
    local known = which and which % 1 == 0 and which >= 1 and which <= options.MOST_SPECIALIZATIONS
    local code = readProfile(word)
    if not known or not code and word ~= "none" then
        say("Say which specialization, 1 to 4, and which profile comes with it: /glimra talents 2 5, or none.")
        return
    end
    addon.chooseProfile(which, code)
    if code then
        say(("Profile %s comes with specialization %d."):format(code, which))
    else
        say(("No profile comes with specialization %d."):format(which))
    end
end

local function width(word)
    local number = tonumber(word)
    if not options.isWidth(number) then
        say(("The strip can be %d to %d pixels wide."):format(options.NARROWEST, options.WIDEST))
    else
        addon.chooseWidth(number)
        say(("The strip is %d pixels wide now. Calibrate Glimra."):format(number))
    end
end

local function fast(word)
    if word ~= "on" and word ~= "off" then
        say(options.fast and "Fast; /glimra fast off ends it." or "Not fast; /glimra fast on makes it so.")
        return
    end
    addon.chooseFast(word == "on")
    say(options.fast and "Fast. Glimra's menu Keyboard must have Fast Response on, or lights are lost." or "Not fast.")
end

local function switch(on)
    return function()
        addon.switch(on)
        say(on and "On." or "Off: the lights end, and nothing more is said.")
    end
end

commands = {
    { word = "status", usage = "/glimra status", help = "what is on", run = status },
    { word = "test", usage = "/glimra test", help = "shows each effect with its name", run = test },
    { word = "effect", usage = "/glimra effect MOMENT CODE|none", help = "what a moment shows", run = effect },
    { word = "profile", usage = "/glimra profile N", help = "shows a profile, 1 to 9", run = profile },
    {
        word = "talents", usage = "/glimra talents N PROFILE|none", help = "the profile of a specialization",
        run = specialization,
    },
    { word = "width", usage = "/glimra width N", help = "how wide the strip is, 20 to 188 pixels", run = width },
    { word = "fast", usage = "/glimra fast on|off", help = "lights come sooner, with Fast Response on", run = fast },
    { word = "off", usage = "/glimra off", help = "says nothing more to Glimra", run = switch(false) },
    { word = "on", usage = "/glimra on", help = "says it again", run = switch(true) },
}

SLASH_GLIMRA1 = "/glimra"
SlashCmdList.GLIMRA = function(argument)
    local words = {}
    for word in (argument or ""):gmatch("%S+") do
        words[#words + 1] = word
    end
    if not words[1] then
        help()
        addon.openPage()
        return
    end
    for _, command in ipairs(commands) do
        if command.word == words[1]:lower() then
            command.run(words[2], words[3])
            return
        end
    end
    say(("There is no \"%s\". /glimra lists what there is."):format(words[1]))
end

SLASH_GLIMRACAL1 = "/glimracal"
SlashCmdList.GLIMRACAL = function()
    addon.calibration.toggle(GetTime())
end
