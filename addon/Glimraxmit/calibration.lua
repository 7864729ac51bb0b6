-- The pattern by which Glimra finds the strip.

local _, addon = ...
local strip, sender = addon.strip, addon.sender

local LONGEST = 90

local calibration = {}
addon.calibration = calibration

local endsAt

function calibration.isOn()
    return endsAt ~= nil
end

-- Shows the pattern, or the strip's own pictures again. What changes meanwhile is said afterwards.
function calibration.toggle(now)
    sender.stop()
    if endsAt then
        endsAt = nil
        addon.say("The calibration pattern is off.")
    else
        endsAt = now + LONGEST
        strip.pattern()
        addon.say(("The calibration pattern is on for %d seconds. /glimracal ends it."):format(LONGEST))
    end
    addon.update()
end

function calibration.picture(now)
    if endsAt and now >= endsAt then
        calibration.toggle(now)
    end
end
