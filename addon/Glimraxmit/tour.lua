-- "/glimra test": shows each effect, one after another, with its name in chat.

local _, addon = ...
local moments, lights = addon.moments, addon.lights

-- So long a light stays on, and so long it is dark before the next effect.
local LOOK, DARK = 2.5, 1.5

local tour = {}
addon.tour = tour

local position, due

function tour.isOn()
    return position ~= nil
end

function tour.start(now)
    position, due = 0, now
end

function tour.stop()
    position = nil
    moments.hide("tour")
    moments.hide("tourPulse")
end

-- Some effects mean something only together with what the player does.
local function isShown(effect)
    return effect.name and effect.kind ~= "profile" and effect.kind ~= "chat" and effect.code ~= "p"
end

local function show(effect, now)
    addon.say(("%s: %s"):format(effect.code, effect.name))
    if effect.kind == "pulse" then
        moments.show("tourPulse", effect.code, now, LOOK)
        moments.show("tour", "C", now, LOOK)
    else
        moments.show("tour", effect.code, now, LOOK)
    end
    due = now + (effect.kind and LOOK or effect.plays or effect.stays or 0) + DARK
end

function tour.tick(now)
    if not position or now < due then
        return
    elseif lights.wanted.death or lights.wanted.ghost or moments.byKey.fight.isOn then
        addon.say("The test ends, since there is more important light now.")
        tour.stop()
        return
    end
    repeat
        position = position + 1
    until not addon.messages[position] or isShown(addon.messages[position])
    if addon.messages[position] then
        show(addon.messages[position], now)
    else
        addon.say("That was the last effect.")
        tour.stop()
    end
end
