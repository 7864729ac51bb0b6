-- Glimra's lights that stay on until they are ended: which are wanted, which were said, and what to say next.
-- Nothing waits in line here: what is to be said is always the difference between the two, so that a fight that
-- is over before it was said is never said.

local _, addon = ...
local message = addon.message

local wanted, said, renewed, ended = {}, {}, {}, {}

local lights = {
    wanted = wanted, -- from a kind to the code that is wanted, absent for none
    said = said, -- from a kind to the code that was said last and not ended
}
addon.lights = lights

local function always()
    return true
end

-- While one of these is on, Glimra makes a plain message wait, and all that come behind it.
function lights.calm()
    return not (said.fight or said.death or said.ghost)
end

-- In death and in a glow Glimra does not mind the chat box, and what is said of it is lost.
local function chatMinded()
    return not (said.death or said.ghost or said.glow)
end

local function fighting()
    return said.fight ~= nil
end

-- The most important kind first, with when it may begin and when it may end.
local KINDS = {
    { kind = "death", mayBegin = lights.calm, mayEnd = always },
    { kind = "ghost", mayBegin = lights.calm, mayEnd = always },
    { kind = "fight", mayBegin = lights.calm, mayEnd = always },
    { kind = "glow", mayBegin = lights.calm, mayEnd = lights.calm },
    { kind = "chat", mayBegin = chatMinded, mayEnd = chatMinded },
    { kind = "pulse", mayBegin = fighting },
    { kind = "profile", mayBegin = lights.calm },
}

local function target(kind)
    if kind == "fight" and (wanted.death or wanted.ghost) then
        return nil -- its light would hide theirs
    elseif kind == "pulse" then
        return wanted.pulse or "w"
    end
    return wanted[kind]
end

-- The message that brings Glimra's lights nearest to what is wanted, nil when they are as they should be or as
-- near as they can be now. Ends come before beginnings: a beginning may need that another light is off.
function lights.next()
    for _, row in ipairs(KINDS) do
        local current = said[row.kind]
        local ending = current and message[current].ending
        if ending and (renewed[row.kind] or not target(row.kind)) and row.mayEnd() then
            return ending
        end
    end
    for _, row in ipairs(KINDS) do
        local code = target(row.kind)
        if code and code ~= said[row.kind] and row.mayBegin() then
            return message[code]
        end
    end
end

-- A message of lights.next() has been said.
function lights.tell(told)
    local kind = told.kindEnded
    if kind then
        ended[kind] = said[kind]
        said[kind], renewed[kind] = nil, nil
    else
        said[told.kind] = told.code
        ended[told.kind] = nil
    end
end

-- An end to say once more, in case that it was not seen: nil when there is none or when it could do harm.
function lights.endAgain()
    if not lights.calm() or said.glow then
        return nil
    end
    for _, row in ipairs(KINDS) do
        local code = ended[row.kind]
        if code and message[code].repetition then
            return message[code].repetition
        end
    end
end

function lights.toldAgain(repetition)
    for kind, code in pairs(ended) do
        if message[code].again == repetition.code then
            ended[kind] = nil
        end
    end
end

-- Nothing is known to be on any more, as after a reset.
function lights.forget()
    for _, row in ipairs(KINDS) do
        said[row.kind], renewed[row.kind], ended[row.kind] = nil, nil, nil
    end
end

-- Goes on where an earlier life of the add-on ended; what was on then is ended and, where it is still wanted, begun
-- anew, since nobody knows whether Glimra saw it. `earlier` is such a table as `lights.said`, or not even that.
function lights.resume(earlier)
    lights.forget()
    for _, row in ipairs(KINDS) do
        local code = type(earlier) == "table" and earlier[row.kind]
        local known = type(code) == "string" and message[code]
        if known and known.kind == row.kind and known.ending then
            said[row.kind], renewed[row.kind] = code, true
        end
    end
end

-- Says the kind anew though nothing has changed.
function lights.sayAnew(kind)
    said[kind] = nil
end
