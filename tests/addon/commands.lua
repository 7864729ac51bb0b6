-- The language of scenarios: one row a command. A word in small letters stands for itself, one in capitals for a value,
-- [X] may be left out, and X... takes all that follows. A command comes after login, where its row says nothing else.

local environment = require "client.environment"
local options = require "client.options"
local world = require "client.world"

local function say(play, event, ...)
    play.client:happen(event, ...)
end

local function cooldownEvents(play)
    -- The game says it more than once, and more than it need.
    say(play, "SPELL_UPDATE_COOLDOWN")
    say(play, "ACTIONBAR_UPDATE_COOLDOWN")
    say(play, "SPELL_UPDATE_COOLDOWN")
end

local function pageEvents(play)
    say(play, "UPDATE_BONUS_ACTIONBAR")
    say(play, "UPDATE_VEHICLE_ACTIONBAR")
    say(play, "UPDATE_OVERRIDE_ACTIONBAR")
    say(play, "ACTIONBAR_PAGE_CHANGED")
    cooldownEvents(play)
end

local function healthEvents(play)
    say(play, "UNIT_HEALTH", "party1")
    say(play, "UNIT_HEALTH", "player")
end

local function endFight(play)
    if play.world.fight then
        play.world.fight = false
        say(play, "PLAYER_REGEN_ENABLED")
    end
end

local function setHealth(play, percent)
    play.world.health = math.floor(world.MAX_HEALTH * percent / 100 + 0.5)
    healthEvents(play)
end

local function ability(play, bar, slot)
    local w = play.world
    local found = world.ability(w, world.actionOf(w, bar, slot))
    return found or error("that slot is empty", 0)
end

local function setSlot(play, bar, slot, content)
    local action = world.actionOf(play.world, bar, slot)
    play.world.actions[action] = content
    say(play, "ACTIONBAR_SLOT_CHANGED", action)
end

-- A command that sets a field of the world and says some events.
local function switch(field, ...)
    local events = { ... }
    return function(play, value)
        play.world[field] = value
        for _, event in ipairs(events) do
            say(play, event)
        end
    end
end

local function paging(field)
    return function(play, value)
        play.world[field] = value
        pageEvents(play)
    end
end

local function event(name, ...)
    local arguments = { ... }
    return function(play)
        say(play, name, unpack(arguments))
    end
end

local function editBox(play, number)
    return play.client.globals["ChatFrame" .. (number or 1) .. "EditBox"] or error("there is no such chat box", 0)
end

local function expect(kind)
    return function(play, ...)
        play:expect(kind, ...)
    end
end

return {
    -- Where it plays; before login. Of several clients or rates each is played in turn.
    { "client KIND...", "retail, mists, anniversary, era or old", function() end, "before login" },
    { "screen WIDTH HEIGHT", "the screen in pixels (1920 1080)", function(play, width, height)
        play.setup.width, play.setup.height = width, height
    end, "before login" },
    { "pictures RATE...", "a second: 60, or 60,7 each for a second in turn, or 7..144 jumping; one after login",
        function(play, rates)
            if play.client then
                play.client:setRate(rates[1])
            end
        end, "any time" },
    { "seed N", "another row of jumps and another picture of the game", function(play, seed) play.setup.seed = seed end,
        "before login" },

    -- Ways into and out of the world.
    { "login", "a loading screen of 3 seconds, and the character is in the world", function(play) play:login() end,
        "any time" },
    { "reload", "the interface is loaded anew: 2 seconds", function(play) play.client:reload() end },
    { "loading SECONDS", "a loading screen", function(play, seconds) play.client:loading(seconds) end },
    { "logout", "", function(play) play.client:logout() end },
    { "wait SECONDS", "the clock runs", function(play, seconds) play.client:wait(seconds) end },
    { "background N", "another window is in front, and no more than N pictures a second are made", function(play, limit)
        play.client.limit = limit
        play:toGlimra('front "another.program"')
    end },
    { "foreground", "the game is in front again", function(play)
        play.client.limit = nil
        play:toGlimra(play.FRONT)
    end },

    -- Life and death.
    { "fight", "a fight begins", function(play)
        play.world.fight = true
        say(play, "PLAYER_REGEN_DISABLED")
    end },
    { "peace", "the fight is over", endFight },
    { "encounter on|off", "an encounter hides values also where no fight is", function(play, isOn)
        play.world.encounter = isOn
        say(play, isOn and "ENCOUNTER_START" or "ENCOUNTER_END")
    end },
    { "health PERCENT", "", setHealth },
    { "die", "ends the fight, too", function(play)
        play.world.dead, play.world.health, play.world.feign = true, 0, false
        healthEvents(play)
        say(play, "PLAYER_DEAD")
        endFight(play)
    end },
    { "release", "the spirit leaves the body", function(play)
        play.world.dead, play.world.ghost = false, true
        say(play, "PLAYER_ALIVE")
        healthEvents(play)
    end },
    { "resurrect", "with half the health, from body or ghost", function(play)
        local wasGhost = play.world.ghost
        play.world.dead, play.world.ghost = false, false
        say(play, wasGhost and "PLAYER_UNGHOST" or "PLAYER_ALIVE")
        setHealth(play, 50)
    end },
    { "feign on|off", "death is feigned: the fight ends", function(play, isOn)
        play.world.feign = isOn
        healthEvents(play)
        endFight(play)
    end },

    -- Abilities; BAR is bar1 (the page that it shows), bar5 or bar6.
    { "use BAR SLOT cooldown SECONDS", "an ability is used", function(play, bar, slot, seconds)
        ability(play, bar, slot).cooldown = { start = play.client:serverTime(), duration = seconds }
        cooldownEvents(play)
    end },
    { "gcd SECONDS", "the global cooldown runs on all abilities", function(play, seconds)
        play.world.gcd = { start = play.client:serverTime(), duration = seconds }
        cooldownEvents(play)
    end },
    { "charges BAR SLOT LEFT/MOST recharge SECONDS", "of an ability, such as 1/2; not in an old client",
        function(play, bar, slot, charges, seconds)
            local left, most = charges:match("^(%d+)/(%d+)$")
            ability(play, bar, slot).charges = {
                left = tonumber(left), max = tonumber(most), start = play.client:serverTime(), recharge = seconds,
            }
            say(play, "SPELL_UPDATE_CHARGES")
            cooldownEvents(play)
        end },
    { "ready BAR SLOT", "its cooldown is ended", function(play, bar, slot)
        ability(play, bar, slot).cooldown = { start = 0, duration = 0 }
        cooldownEvents(play)
    end },
    { "empty BAR SLOT", "the ability is taken out", function(play, bar, slot) setSlot(play, bar, slot, false) end },
    { "fill BAR SLOT", "an ability is put in", function(play, bar, slot) setSlot(play, bar, slot, nil) end },
    { "page N", "the player turns bar 1 to another page", paging "page" },
    { "bonus N", "bar 1 shows bonus bar N, as forms and stealth do; 0 for none", paging "bonus" },
    { "vehicle on|off", "bar 1 shows a vehicle's abilities", paging "vehicle" },
    { "override on|off", "bar 1 is overridden", paging "override" },
    { "shapeshift on|off", "bar 1 shows a temporary shape's abilities", paging "shapeshift" },

    -- What else happens.
    { "stealth on|off", "", switch("stealth", "UPDATE_STEALTH") },
    { "form N", "0 for none", switch("form", "UPDATE_SHAPESHIFT_FORM", "UPDATE_SHAPESHIFT_FORM") },
    { "specialization N", "another one", function(play, number)
        local last = play.world.specialization
        play.world.specialization = number
        say(play, "PLAYER_SPECIALIZATION_CHANGED", "player")
        say(play, "ACTIVE_TALENT_GROUP_CHANGED", number, last)
        pageEvents(play)
    end },
    { "level", "the next one", function(play)
        play.world.level = play.world.level + 1
        say(play, "PLAYER_LEVEL_UP", play.world.level)
        setHealth(play, 100)
    end },
    { "money COPPER", "more, or with a minus less of it", function(play, copper)
        play.world.money = play.world.money + copper
        say(play, "PLAYER_MONEY")
    end },
    { "whisper", "", event("CHAT_MSG_WHISPER", "hello", "Somebody-Realm") },
    { "bn-whisper", "", event("CHAT_MSG_BN_WHISPER", "hello", "Somebody#1234") },
    { "achievement", "", event("ACHIEVEMENT_EARNED", 6, false) },
    { "quest", "one is turned in", event("QUEST_TURNED_IN", 783, 40, 0) },
    { "ready-check", "", event("READY_CHECK", "Somebody", 35) },
    { "proposal", "the group finder has found a group", event("LFG_PROPOSAL_SHOW") },
    { "invite", "into a group", event("PARTY_INVITE_REQUEST", "Somebody") },
    { "duel", "", event("DUEL_REQUESTED", "Somebody") },
    { "zone", "another one", event("ZONE_CHANGED_NEW_AREA") },
    { "event NAME", "any event without arguments", function(play, name) say(play, name) end },

    -- The interface.
    { "chat open [N]", "the box of chat window N (1)", function(play, number)
        play.client:later(function() editBox(play, number):SetFocus() end)
    end },
    { "chat close", "", function(play)
        play.client:later(function()
            if play.client.focus then
                play.client.focus:ClearFocus()
            end
        end)
    end },
    { "chat window", "another one appears, as for whispers", function(play)
        play.client:later(function() environment.addChatWindow(play.client) end)
        say(play, "UPDATE_CHAT_WINDOWS")
    end },
    { "type TEXT", "into the chat box, and Enter; takes a second", function(play, text)
        play.client:later(function() editBox(play):SetFocus() end)
        play.client:wait(1)
        play.client:later(function()
            play.client:enterText(text)
            editBox(play):ClearFocus()
        end)
        play.client:waitForPicture()
    end },
    { "option NAME VALUE", "sets a control of the options page: on, off, a number, or a drop-down's entry",
        function(play, name, value)
            play.client:later(function() options.choose(play.client, name, value) end)
            play.client:waitForPicture()
        end },
    { "hide-interface", "", function(play) play.client:later(function() play.client.globals.UIParent:Hide() end) end },
    { "show-interface", "", function(play) play.client:later(function() play.client.globals.UIParent:Show() end) end },
    { "resize WIDTH HEIGHT", "the screen", function(play, width, height)
        play:toGlimra(("display %d %d 1"):format(width, height))
        play.client:resize(width, height, play.client.uiScale)
    end },
    { "ui-scale SCALE", "of the interface, 0.3 to 2", function(play, scale)
        if play.client then
            play.client:resize(play.client.width, play.client.height, scale)
        else
            play.setup.uiScale = scale
        end
    end, "any time" },
    { "strip WIDTH", "the add-on's strip has so many pixels from now on (80)", function(play, width)
        play.stripWidth = width
    end, "any time" },
    { "stage NAME", "names this moment, for whoever shows the scenario on a real screen", function(play, name)
        play.toScreen[#play.toScreen + 1] = { time = play.client.now, stage = name }
    end },
    { "unread on|off", "Glimra cannot read that strip: what is said may be lost", function(play, isOn)
        play.isUnread = isOn
    end },
    { "kept NAME VALUE", "what an earlier evening left in a saved variable, in Lua", function(play, name, value)
        play.setup.kept = { [name] = value }
    end, "before login" },
    { "glimra LINE", "a line for glimra-replay, see docs/replay.md; before login it stands before \"start\"",
        function(play, line) play:toGlimra(line) end, "any time" },

    -- What must be so. SINCE is the last moment before this one at which something was expected.
    { "said TEXT", "the chat has shown this since login; * is anything", function(play, text)
        play:mustHaveSaid(text, true)
    end },
    { "not-said TEXT", "it has not", function(play, text) play:mustHaveSaid(text, false) end },
    { "shows NAME VALUE", "an option has this value", function(play, name, value)
        local shown = options.shown(play.client, name)
        if shown ~= value then
            play:complain(("the option \"%s\" shows %s, not %s"):format(name, shown, value))
        end
    end },
    { "errors TEXT", "\"none\", or an error that was raised and is forgiven; any other fails", function(play, text)
        play:forgive(text)
    end },
    { "expect only MESSAGE...", "SINCE, Glimra took these messages and no others", expect "only" },
    { "expect no MESSAGE...", "SINCE, Glimra took none of these", expect "no" },
    { "expect led CALL...", "SINCE, Glimra called this function, with these first arguments", expect "led" },
    { "expect cooldown BAR SLOT...", "after all that it was told Glimra takes just these slots as on cooldown; or none",
        expect "cooldown" },
    { "expect truth SECONDS", "nothing painted so far was false, or had been so for longer", expect "truth" },
    { "expect standing SECONDS", "each frame so far stood so long", expect "standing" },
    { "expect MESSAGE...", "SINCE, Glimra took these messages in this order, among others", expect "order" },
}
