-- The player's character and its action bars: their state, and the functions by which an add-on asks about them.

local world = { MAX_HEALTH = 24310, HALF = 12155 }

local BARS = { bar6 = 60, bar5 = 48 }
-- What takes bar 1, the most important first: the page, and the names of the functions that tell of it.
local PAGES = {
    { field = "vehicle", page = 16, has = "HasVehicleActionBar", get = "GetVehicleBarIndex" },
    { field = "override", page = 18, has = "HasOverrideActionBar", get = "GetOverrideBarIndex" },
    { field = "shapeshift", page = 17, has = "HasTempShapeshiftActionBar", get = "GetTempShapeshiftBarIndex" },
}
local OLD_VEHICLE_OFFSET = 5
local NOTHING = { start = 0, duration = 0 }

function world.new(client)
    return {
        client = client, health = world.MAX_HEALTH, money = 123456, form = 0, specialization = 1,
        page = 1, bonus = 0, gcd = NOTHING, actions = {},
    }
end

-- A secret value: what the game lets an add-on carry about and ask `issecretvalue` about, but not look at. The only
-- userdata that an add-on meets; not noticed are tests for truth, equality with another type and use as a table key.
local secret = newproxy(true)
for name in ("add sub mul div mod pow unm eq lt le concat len index newindex call"):gmatch("%a+") do
    getmetatable(secret)["__" .. name] = function() error("attempt to use a secret value", 2) end
end

-- Health and cooldowns are hidden in fights, where the client hides anything.
local function hide(w, value)
    return w.client.kind.secrets and w.fight and newproxy(secret) or value
end

local function bonusOffset(w)
    return w.client.kind.old and w.vehicle and OLD_VEHICLE_OFFSET or w.bonus
end

-- The number of an action by its bar and slot.
function world.actionOf(w, bar, slot)
    local page = w.page == 1 and bonusOffset(w) > 0 and 6 + bonusOffset(w) or w.page
    for i = #PAGES, w.client.kind.old and #PAGES + 1 or 1, -1 do
        page = w[PAGES[i].field] and PAGES[i].page or page
    end
    return (BARS[bar] or (page - 1) * 12) + slot
end

-- Every action holds an ability that is ready, until something else is said; false is an empty slot.
function world.ability(w, action)
    if w.actions[action] == nil then
        w.actions[action] = { cooldown = NOTHING }
    end
    return w.actions[action]
end

local function isRunning(w, cooldown)
    return cooldown.start + cooldown.duration > w.client:time()
end

-- Charges left, and the recharge that runs.
local function chargesOf(w, ability)
    local charges = ability.charges
    local gained = math.max(0, math.floor((w.client:time() - charges.start) / charges.recharge))
    local left = math.min(charges.most, charges.left + gained)
    return left, left == charges.most and NOTHING
        or { start = charges.start + gained * charges.recharge, duration = charges.recharge }
end

-- The cooldown that the game shows, whether the ability's own keeps it from being used, and whether the global one is
-- shown.
local function cooldownOf(w, ability)
    local own, left = ability.cooldown, 0
    if ability.charges then
        left, own = chargesOf(w, ability)
    end
    own = isRunning(w, own) and own or NOTHING
    local isGlobal = isRunning(w, w.gcd) and w.gcd.start + w.gcd.duration > own.start + own.duration
    return isGlobal and w.gcd or own, own ~= NOTHING and left == 0, isGlobal
end

-- Whether an action cannot be used for a reason of its own: what a report of cooldowns has to tell.
function world.isOnCooldown(w, action)
    local ability = world.ability(w, action)
    return ability and select(2, cooldownOf(w, ability)) or false
end

local function abilities(w, define)
    local lacks = w.client.kind.lacks
    define("C_ActionBar.GetActionCooldown", function(action)
        local ability = world.ability(w, action)
        if ability then
            local shown, _, isGlobal = cooldownOf(w, ability)
            local info = { startTime = hide(w, shown.start), duration = hide(w, shown.duration), isEnabled = true }
            if not lacks.isActive then
                info.isActive = shown ~= NOTHING
            end
            if not lacks.isOnGCD and isRunning(w, w.gcd) then
                info.isOnGCD = isGlobal
            end
            return info
        end
    end)
    define("C_ActionBar.GetActionCharges", function(action)
        local ability = world.ability(w, action)
        if ability and ability.charges then
            return { currentCharges = hide(w, (chargesOf(w, ability))), maxCharges = hide(w, ability.charges.most) }
        end
    end)
    define("GetActionCooldown", function(action)
        local ability = world.ability(w, action)
        local shown = ability and cooldownOf(w, ability) or NOTHING
        return shown.start, shown.duration, 1
    end)
end

function world.functions(client, define)
    local w = client.world
    for name, value in pairs {
        UnitHealth = function() return hide(w, w.ghost and 1 or w.dead and 0 or w.health) end,
        UnitHealthMax = function() return hide(w, world.MAX_HEALTH) end,
        -- To the game a feigned death looks like death: it has to be asked for.
        UnitIsDead = function() return w.dead or w.feign or false end,
        UnitIsGhost = function() return w.ghost or false end,
        UnitIsFeignDeath = function() return w.feign or false end,
        UnitAffectingCombat = function() return w.fight or false end,
    } do
        define(name, function(unit) return unit == "player" and value() or nil end)
    end
    for field, names in pairs {
        stealth = "IsStealthed", form = "GetShapeshiftForm", money = "GetMoney",
        page = "GetActionBarPage C_ActionBar.GetActionBarPage",
        specialization = "GetSpecialization C_SpecializationInfo.GetSpecialization GetActiveTalentGroup",
    } do
        for name in names:gmatch("%S+") do
            define(name, function() return w[field] end)
        end
    end
    abilities(w, define)
    define("issecretvalue", function(value) return type(value) == "userdata" end)
    define("GetBonusBarOffset", function() return bonusOffset(w) end)
    define("C_ActionBar.HasBonusActionBar", function() return w.bonus > 0 end)
    define("C_ActionBar.GetBonusBarIndex", function() return 6 + w.bonus end)
    for _, row in ipairs(PAGES) do
        define("C_ActionBar." .. row.has, function() return w[row.field] or false end)
        define("C_ActionBar." .. row.get, function() return row.page end)
    end
end

return world
