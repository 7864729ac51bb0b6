-- Which abilities of the action bars are on cooldown, as five reports of six slots each.

local _, addon = ...

local GLOBAL_COOLDOWN = 1.5
-- No event tells that a cooldown has ended.
local LOOK_AGAIN = 0.2
local SLOTS, FIRST_BIT = 6, 64
-- Cells that are all dark have no color, and so no prefix: the lowest bit means nothing and keeps them lit.
local ALL_READY = 1

-- What counts for a slot: READY and RUNNING are said, UNKNOWN leaves the slot as it was.
local READY, RUNNING, UNKNOWN = 0, 1, 2

-- color:   of the data cells, which tells Glimra which six slots these are
-- actions: the number of the first action; absent for bar 1, whose actions change with its page
-- value:   what is true now, as the character that says it; absent until it is known
-- told:    what was said last
-- again:   it shall be said once more though nothing has changed
local reports = {
    { color = "red", offset = 0 },
    { color = "blue", offset = 6 },
    { color = "green", actions = 61 },
    { color = "magenta", actions = 67 },
    { color = "cyan", actions = 49 },
}
for number, report in ipairs(reports) do
    report.isReport, report.number = true, number
end

local cooldowns = { reports = reports, ALL_READY = ALL_READY }
addon.cooldowns = cooldowns

local bar = C_ActionBar
local mustLook, nextLook = false, nil
-- By action: what it counted as last, and whether it is known to have charges.
local last, hasCharges = {}, {}
local saidUnknown = false

local function isSecret(value)
    return issecretvalue ~= nil and issecretvalue(value)
end
addon.isSecret = isSecret

-- Bar 1 shows another page while a vehicle, an override or a form has one.
local PAGES = {
    { has = "HasVehicleActionBar", page = "GetVehicleBarIndex" },
    { has = "HasOverrideActionBar", page = "GetOverrideBarIndex" },
    { has = "HasTempShapeshiftActionBar", page = "GetTempShapeshiftBarIndex" },
    { has = "HasBonusActionBar", page = "GetBonusBarIndex", onFirstPage = true },
}

local function currentPage()
    if not bar then
        local page, offset = GetActionBarPage(), GetBonusBarOffset()
        return page == 1 and offset > 0 and 6 + offset or page
    end
    local chosen = bar.GetActionBarPage()
    for _, row in ipairs(PAGES) do
        local has, page = bar[row.has], bar[row.page]
        if has and page and (chosen == 1 or not row.onFirstPage) and has() then
            return page()
        end
    end
    return chosen
end

local function byTimes(start, duration)
    if isSecret(start) or isSecret(duration) then
        return UNKNOWN
    elseif start and duration and start > 0 and duration > GLOBAL_COOLDOWN and start + duration > GetTime() then
        return RUNNING
    end
    return READY
end

local function cooldownOf(action)
    local info = bar and bar.GetActionCooldown and bar.GetActionCooldown(action)
    if not info then
        if GetActionCooldown then
            return byTimes(GetActionCooldown(action))
        end
        return READY -- nothing in the slot
    elseif info.isActive ~= nil then
        return info.isActive and not info.isOnGCD and RUNNING or READY
    end
    return byTimes(info.startTime, info.duration)
end

-- An ability whose charges run out one by one is ready as long as one is left; `otherwise` is for one without.
local function withCharges(action, otherwise)
    local charges = bar and bar.GetActionCharges and bar.GetActionCharges(action)
    if not charges then
        return otherwise
    end
    local most, left = charges.maxCharges, charges.currentCharges
    if not isSecret(most) then
        hasCharges[action] = most ~= nil and most > 1
    end
    if not hasCharges[action] then
        return otherwise
    elseif isSecret(left) then
        return UNKNOWN
    end
    return left > 0 and READY or RUNNING
end

local function state(action)
    local now = cooldownOf(action)
    if now ~= READY then
        now = withCharges(action, now)
    end
    if now == UNKNOWN then
        if not saidUnknown then
            saidUnknown = true
            addon.say("In this fight the game does not tell about some abilities; their keys stay as they are.")
        end
        return last[action] or READY, true
    end
    last[action] = now
    return now, now == RUNNING
end

-- What the slots of a report say, and whether that will change without an event.
local function readReport(report)
    local first = report.actions or (currentPage() - 1) * 12 + 1 + report.offset
    local value, weight, changes = 0, FIRST_BIT, false
    for action = first, first + SLOTS - 1 do
        local now, unsettled = state(action)
        value = value + now * weight
        weight = weight / 2
        changes = changes or unsettled
    end
    return value > 0 and value or ALL_READY, changes
end

-- Something happened after which the bars have to be read again, however often it did.
function cooldowns.changed()
    mustLook = true
end

-- Another ability lies in the slot now, in any of them where none is named.
function cooldowns.forget(action)
    for _, known in ipairs({ last, hasCharges }) do
        if action and action > 0 then
            known[action] = nil
        else
            for key in pairs(known) do
                known[key] = nil
            end
        end
    end
end

-- Reads the bars if there is a reason to.
function cooldowns.look(now)
    if not mustLook and not (nextLook and now >= nextLook) then
        return
    end
    mustLook, nextLook = false, nil
    for _, report in ipairs(reports) do
        local value, changes = ALL_READY, false
        if addon.options.on then
            value, changes = readReport(report)
        end
        report.value = value
        if changes then
            nextLook = now + LOOK_AGAIN
        end
    end
end
