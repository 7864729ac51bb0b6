-- The player's character and its action bars: their state, and the functions by which an add-on asks about them.

local secrets = require "client.secrets"

local world = { MAX_HEALTH = 24310 }

local BARS = { bar6 = 60, bar5 = 48 }
local VEHICLE_PAGE, OVERRIDE_PAGE, SHAPESHIFT_PAGE = 16, 18, 17
local OLD_VEHICLE_OFFSET = 5
local NOTHING = { start = 0, duration = 0 }

function world.new(client)
    return {
        client = client, health = world.MAX_HEALTH, level = 10, money = 123456, form = 0, specialization = 1,
        page = 1, bonus = 0, gcd = NOTHING, actions = {},
    }
end

-- Health and cooldowns are hidden in fights and encounters, where the client hides anything.
function world.isRestricted(w)
    return w.client.kind.secrets and (w.fight or w.encounter) or false
end

local function hide(w, value)
    return world.isRestricted(w) and secrets.new(value) or value
end

-- The page that bar 1 shows.
function world.page(w)
    if w.client.kind.old then
        local offset = w.vehicle and OLD_VEHICLE_OFFSET or w.bonus
        return w.page == 1 and offset > 0 and 6 + offset or w.page
    end
    return w.vehicle and VEHICLE_PAGE or w.override and OVERRIDE_PAGE or w.shapeshift and SHAPESHIFT_PAGE
        or w.page == 1 and w.bonus > 0 and 6 + w.bonus or w.page
end

-- The number of an action by its bar and slot.
function world.actionOf(w, bar, slot)
    return (BARS[bar] or (world.page(w) - 1) * 12) + slot
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
    local left = math.min(charges.max, charges.left + gained)
    if left == charges.max then
        return left, NOTHING
    end
    return left, { start = charges.start + gained * charges.recharge, duration = charges.recharge }
end

-- The ability's own cooldown, whether it keeps it from being used, and whether that is the global one's doing.
local function cooldownOf(w, ability)
    local own, blocks = ability.cooldown, true
    if ability.charges then
        local left
        left, own = chargesOf(w, ability)
        blocks = left == 0
    end
    own = isRunning(w, own) and own or NOTHING
    if isRunning(w, w.gcd) and w.gcd.start + w.gcd.duration > own.start + own.duration then
        return w.gcd, own ~= NOTHING and blocks, true
    end
    return own, own ~= NOTHING and blocks, false
end

-- Whether an action cannot be used for a reason of its own: what a report of cooldowns has to tell.
function world.isOnCooldown(w, action)
    local ability = world.ability(w, action)
    if not ability then
        return false
    end
    local _, blocked = cooldownOf(w, ability)
    return blocked
end

function world.isAlive(w)
    return not w.dead and not w.ghost
end

function world.functions(client, define)
    local w, lacks = client.world, client.kind.lacks
    local function ofPlayer(value)
        return function(unit)
            if unit == "player" then
                return value()
            end
        end
    end

    define("UnitHealth", ofPlayer(function() return hide(w, world.isAlive(w) and w.health or w.ghost and 1 or 0) end))
    define("UnitHealthMax", ofPlayer(function() return hide(w, world.MAX_HEALTH) end))
    -- To the game a feigned death looks like death: it has to be asked for.
    define("UnitIsDead", ofPlayer(function() return w.dead or w.feign or false end))
    define("UnitIsGhost", ofPlayer(function() return w.ghost or false end))
    define("UnitIsDeadOrGhost", ofPlayer(function() return w.dead or w.feign or w.ghost or false end))
    define("UnitIsFeignDeath", ofPlayer(function() return w.feign or false end))
    define("UnitAffectingCombat", ofPlayer(function() return w.fight or false end))
    define("IsStealthed", function() return w.stealth or false end)
    define("GetShapeshiftForm", function() return w.form end)
    define("GetMoney", function() return w.money end)
    local function specialization() return w.specialization end
    define("GetSpecialization", specialization)
    define("C_SpecializationInfo.GetSpecialization", specialization)
    define("GetActiveTalentGroup", specialization)

    define("C_ActionBar.GetActionCooldown", function(action)
        local ability = world.ability(w, action)
        if not ability then
            return nil
        end
        local shown, _, isGlobal = cooldownOf(w, ability)
        local info = { startTime = hide(w, shown.start), duration = hide(w, shown.duration), isEnabled = true }
        if not lacks.isActive then
            info.isActive = shown ~= NOTHING
        end
        if not lacks.isOnGCD and isRunning(w, w.gcd) then
            info.isOnGCD = isGlobal
        end
        return info
    end)
    define("C_ActionBar.GetActionCharges", function(action)
        local ability = world.ability(w, action)
        if not ability or not ability.charges then
            return nil
        end
        local left, recharge = chargesOf(w, ability)
        return {
            currentCharges = hide(w, left), maxCharges = hide(w, ability.charges.max), chargeModRate = 1,
            cooldownStartTime = hide(w, recharge.start), cooldownDuration = hide(w, recharge.duration),
        }
    end)
    define("GetActionCooldown", function(action)
        local ability = world.ability(w, action)
        local shown = ability and cooldownOf(w, ability) or NOTHING
        return shown.start, shown.duration, 1
    end)

    define("C_ActionBar.GetActionBarPage", function() return w.page end)
    define("GetActionBarPage", function() return w.page end)
    define("GetBonusBarOffset", function() return w.vehicle and OLD_VEHICLE_OFFSET or w.bonus end)
    for name, bar in pairs {
        VehicleActionBar = { "GetVehicleBarIndex", "vehicle", VEHICLE_PAGE },
        OverrideActionBar = { "GetOverrideBarIndex", "override", OVERRIDE_PAGE },
        TempShapeshiftActionBar = { "GetTempShapeshiftBarIndex", "shapeshift", SHAPESHIFT_PAGE },
    } do
        define("C_ActionBar.Has" .. name, function() return w[bar[2]] or false end)
        define("C_ActionBar." .. bar[1], function() return bar[3] end)
    end
    define("C_ActionBar.HasBonusActionBar", function() return w.bonus > 0 end)
    define("C_ActionBar.GetBonusBarIndex", function() return 6 + w.bonus end)
end

return world
