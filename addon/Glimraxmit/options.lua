-- What the player chose, kept by the game in GlimraxmitDB for the account. What is missing has its default; what cannot
-- be used is set aside in there, so that nothing is lost, and counts as missing.

local _, addon = ...
local message, moments = addon.message, addon.moments

local options = { NARROWEST = 20, WIDEST = 188, MOST_SPECIALIZATIONS = 4 }
addon.options = options

-- Until the game has given us what was kept.
local db = { on = false, fast = false, width = 80, effects = {}, profiles = {} }

local function isWhole(value, from, to)
    return type(value) == "number" and value >= from and value <= to and value % 1 == 0
end

function options.isWidth(value)
    return isWhole(value, options.NARROWEST, options.WIDEST)
end

-- Whether the code is one that a moment can be set to.
function options.isEffect(code)
    return code == "none" or type(code) == "string" and message[code] ~= nil and message[code].name ~= nil
end

local function isProfile(code)
    return type(code) == "string" and code:match("^[1-9]$") ~= nil
end

local function isTable(value)
    return type(value) == "table"
end

-- default: a function, so that no two ever share a table
-- entry:   for a table, whether one of its entries can be used
local FIELDS = {
    on = {
        default = function() return true end,
        usable = function(value) return type(value) == "boolean" end,
    },
    fast = {
        default = function() return false end,
        usable = function(value) return type(value) == "boolean" end,
    },
    width = { default = function() return 80 end, usable = options.isWidth },
    effects = {
        default = function() return {} end,
        usable = isTable,
        -- A moment that only a newer add-on knows is left alone.
        entry = function(key, code)
            return type(key) == "string" and (not moments.byKey[key] or options.isEffect(code))
        end,
    },
    profiles = {
        default = function() return {} end,
        usable = isTable,
        entry = function(specialization, code)
            return isWhole(specialization, 1, options.MOST_SPECIALIZATIONS) and isProfile(code)
        end,
    },
}

local function setAside(name, value)
    if type(db.damaged) ~= "table" then
        db.damaged = {}
    end
    db.damaged[name] = value
end

local function loadField(name, field)
    local value = db[name]
    if value == nil then
        db[name] = field.default()
    elseif not field.usable(value) then
        setAside(name, value)
        db[name] = field.default()
        return true
    elseif field.entry then
        local damaged = false
        for key, entry in pairs(value) do
            if not field.entry(key, entry) then
                setAside(name .. "." .. tostring(key), entry)
                value[key] = nil
                damaged = true
            end
        end
        return damaged
    end
end

-- Takes what the game has kept; to be called once it is there.
function options.load()
    local kept, damaged = GlimraxmitDB, false
    db = type(kept) == "table" and kept or {}
    if kept ~= nil and kept ~= db then
        setAside("all", kept)
        damaged = true
    end
    for name, field in pairs(FIELDS) do
        damaged = loadField(name, field) or damaged
    end
    GlimraxmitDB = db
    options.on, options.width, options.fast = db.on, db.width, db.fast
    if damaged then
        addon.say("Some stored options could not be used and have their defaults now; the old ones are kept.")
    end
end

options.on, options.width, options.fast = db.on, db.width, db.fast

function options.setOn(on)
    options.on, db.on = on, on
end

function options.setFast(fast)
    options.fast, db.fast = fast, fast
end

function options.setWidth(width)
    options.width, db.width = width, width
end

-- The code of the message that the moment shows, or "none".
function options.effect(key)
    return db.effects[key] or moments.byKey[key].effect
end

function options.setEffect(key, code)
    db.effects[key] = code
end

-- The profile that comes with a specialization, nil for none.
function options.profile(specialization)
    return db.profiles[specialization]
end

function options.setProfile(specialization, code)
    db.profiles[specialization] = code
end

-- Which lights were on when the add-on was last left.
function options.earlierLights()
    return db.lights
end

function options.keepLights(said)
    db.lights = said
end
