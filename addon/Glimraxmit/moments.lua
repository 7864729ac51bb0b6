-- What happens in the game, and what Glimra shall show then: one row for each moment.

local _, addon = ...
local message, lights, queue = addon.message, addon.lights, addon.queue

-- A moment that has no end shows a light that stays on for so many seconds.
local PASSES = 5
local GOLD, SILVER = 10000, 100

local change, purse = 0, nil
local chatBoxInUse, peaceful = nil, true

-- What is noted of an event before the rows are asked.
local note = {
    PLAYER_REGEN_DISABLED = function()
        peaceful = false
    end,
    PLAYER_REGEN_ENABLED = function()
        peaceful = true
    end,
    PLAYER_MONEY = function()
        local now = GetMoney()
        change, purse = now - (purse or now), now
    end,
}

local function healthUnder(part)
    return function()
        local health, most = UnitHealth("player"), UnitHealthMax("player")
        if addon.isSecret(health) or addon.isSecret(most) then
            return false
        end
        return most > 0 and health < part * most
    end
end

local function form(number)
    return function()
        return GetShapeshiftForm() == number
    end
end

local function gained(from, to)
    return function()
        return change >= from and change < to
    end
end

local function spent(from, to)
    return function()
        return -change >= from and -change < to
    end
end

local LIFE = { "PLAYER_DEAD", "PLAYER_ALIVE", "PLAYER_UNGHOST", "UNIT_HEALTH" }
local SHAPE = { "UPDATE_STEALTH", "UPDATE_SHAPESHIFT_FORM" }
local HEALTH = { "UNIT_HEALTH" }
local MONEY = { "PLAYER_MONEY" }

-- key:     the name in the options
-- title:   what a player reads
-- effect:  the code of the message that is shown unless the player chose another; "none" for nothing
-- lasts:   for what goes on for a while, a function that tells whether it does; the others are over at once
-- happens: where not each of the events counts, a function that tells whether this one did
-- events:  when to ask
-- Of two lights of one kind the later row's is shown.
local rows = {
    {
        key = "fight", title = "In a fight", effect = "C",
        events = { "PLAYER_REGEN_DISABLED", "PLAYER_REGEN_ENABLED" },
        lasts = function()
            return not peaceful
        end,
    },
    { key = "health75", title = "Health under 75 %", effect = "x", events = HEALTH, lasts = healthUnder(0.75) },
    { key = "health50", title = "Health under 50 %", effect = "y", events = HEALTH, lasts = healthUnder(0.50) },
    { key = "health25", title = "Health under 25 %", effect = "z", events = HEALTH, lasts = healthUnder(0.25) },
    {
        key = "dead", title = "Dead", effect = "D", events = LIFE,
        lasts = function()
            local feigned = UnitIsFeignDeath and UnitIsFeignDeath("player")
            return UnitIsDead("player") and not feigned and not UnitIsGhost("player")
        end,
    },
    {
        key = "ghost", title = "A ghost", effect = "W", events = LIFE,
        lasts = function()
            return UnitIsGhost("player")
        end,
    },
    { key = "form1", title = "In the first form or stance", effect = "none", events = SHAPE, lasts = form(1) },
    { key = "form2", title = "In the second form or stance", effect = "none", events = SHAPE, lasts = form(2) },
    { key = "form3", title = "In the third form or stance", effect = "none", events = SHAPE, lasts = form(3) },
    { key = "form4", title = "In the fourth form or stance", effect = "none", events = SHAPE, lasts = form(4) },
    {
        key = "stealth", title = "In stealth", effect = "j", events = SHAPE,
        lasts = function()
            return IsStealthed()
        end,
    },
    {
        key = "chat", title = "The chat box is open", effect = "E", events = {},
        lasts = function()
            return chatBoxInUse ~= nil
        end,
    },
    {
        key = "whisper", title = "A whisper", effect = "I",
        events = { "CHAT_MSG_WHISPER", "CHAT_MSG_BN_WHISPER" },
    },
    { key = "level", title = "A new level", effect = "A", events = { "PLAYER_LEVEL_UP" } },
    { key = "achievement", title = "An achievement", effect = "J", events = { "ACHIEVEMENT_EARNED" } },
    { key = "quest", title = "A quest is done", effect = "n", events = { "QUEST_TURNED_IN" } },
    { key = "goldGained", title = "Gold gained", effect = "G", events = MONEY, happens = gained(GOLD, math.huge) },
    { key = "silverGained", title = "Silver gained", effect = "S", events = MONEY, happens = gained(SILVER, GOLD) },
    { key = "copperGained", title = "Copper gained", effect = "M", events = MONEY, happens = gained(1, SILVER) },
    { key = "goldSpent", title = "Gold spent", effect = "g", events = MONEY, happens = spent(GOLD, math.huge) },
    { key = "silverSpent", title = "Silver spent", effect = "s", events = MONEY, happens = spent(SILVER, GOLD) },
    { key = "copperSpent", title = "Copper spent", effect = "m", events = MONEY, happens = spent(1, SILVER) },
    { key = "readyCheck", title = "A ready check", effect = "r", events = { "READY_CHECK" } },
    { key = "dungeon", title = "A dungeon is ready", effect = "r", events = { "LFG_PROPOSAL_SHOW" } },
    { key = "invitation", title = "An invitation to a group", effect = "h", events = { "PARTY_INVITE_REQUEST" } },
    { key = "duel", title = "A challenge to a duel", effect = "a", events = { "DUEL_REQUESTED" } },
    { key = "zone", title = "Another zone", effect = "L", events = { "ZONE_CHANGED_NEW_AREA" } },
    -- Without a title: not for the player's list.
    { key = "tour", effect = "none", events = {} },
    { key = "tourPulse", effect = "none", events = {} },
}

local moments = { rows = rows, byKey = {} }
addon.moments = moments

local rowsOf = {}
for _, row in ipairs(rows) do
    moments.byKey[row.key] = row
    for _, event in ipairs(row.events) do
        rowsOf[event] = rowsOf[event] or {}
        table.insert(rowsOf[event], row)
    end
end

-- The events that are wanted, as keys.
moments.events = {}
for event in pairs(rowsOf) do
    moments.events[event] = true
end

-- When the next light of a moment without an end goes out.
local nextEnd = math.huge

local function effectOf(row)
    return message[row.code or addon.options.effect(row.key)]
end

-- Sets the wanted lights from the rows that are on.
local function want()
    for kind in pairs(lights.wanted) do
        if kind ~= "profile" or not addon.options.on then
            lights.wanted[kind] = nil
        end
    end
    if not addon.options.on then
        return
    end
    for _, row in ipairs(rows) do
        local effect = row.isOn and effectOf(row)
        if effect and effect.kind and effect.kind ~= "profile" then
            lights.wanted[effect.kind] = effect.code
        end
    end
end

function moments.showProfile(code)
    lights.wanted.profile = code
    lights.sayAnew("profile")
end

-- The effect of a row that has just begun; a light that stays on comes from want().
local function begin(row)
    local effect = effectOf(row)
    if not effect or not addon.options.on then
        return
    elseif effect.kind == "profile" then
        moments.showProfile(effect.code)
    elseif not effect.kind then
        queue.moment(effect)
    end
end

local function set(row, isOn)
    if isOn ~= (row.isOn or false) then
        row.isOn = isOn
        if isOn then
            begin(row)
        end
    end
end

local function happen(row, now, seconds)
    begin(row)
    row.isOn, row.offAt = true, now + seconds
    nextEnd = math.min(nextEnd, row.offAt)
end

-- The player enters the world: whatever happened before is not known.
function moments.enter()
    peaceful, purse = not UnitAffectingCombat("player"), GetMoney()
end

-- Asks everything that lasts how it is.
function moments.look()
    for _, row in ipairs(rows) do
        if row.lasts then
            set(row, row.lasts() and true or false)
        end
    end
    want()
end

function moments.event(event, now)
    if note[event] then
        note[event]()
    end
    for _, row in ipairs(rowsOf[event] or {}) do
        if row.lasts then
            set(row, row.lasts() and true or false)
        elseif not row.happens or row.happens() then
            happen(row, now, PASSES)
        end
    end
    want()
end

function moments.tick(now)
    if now < nextEnd then
        return
    end
    nextEnd = math.huge
    for _, row in ipairs(rows) do
        if row.offAt and now >= row.offAt then
            row.isOn, row.offAt = false, nil
        elseif row.offAt then
            nextEnd = math.min(nextEnd, row.offAt)
        end
    end
    want()
end

-- Shows an effect for a moment that nothing in the game brings about.
function moments.show(key, code, now, seconds)
    local row = moments.byKey[key]
    row.code = code
    happen(row, now, seconds)
    want()
end

function moments.hide(key)
    local row = moments.byKey[key]
    row.isOn, row.offAt = false, nil
    want()
end

-- The player enters or leaves a chat box.
local function chatBoxGained(box)
    chatBoxInUse = box
    moments.look()
end

local function chatBoxLost(box)
    -- Another box may have got the keyboard before this one lost it.
    if chatBoxInUse == box then
        chatBoxInUse = nil
        moments.look()
    end
end

local hooked = 0

-- Watches the chat boxes that are there; whispers can open more of them.
function moments.watchChatBoxes()
    local box = _G["ChatFrame" .. hooked + 1 .. "EditBox"]
    while box do
        box:HookScript("OnEditFocusGained", chatBoxGained)
        box:HookScript("OnEditFocusLost", chatBoxLost)
        hooked = hooked + 1
        box = _G["ChatFrame" .. hooked + 1 .. "EditBox"]
    end
end
