-- Secret values: what the game lets an add-on carry about and ask `issecretvalue` about, but not look at.
--
-- They are userdata, the only ones that an add-on meets, and raise in arithmetic, concatenation, order and calls by
-- themselves. A test for truth, equality with another type and use as a table key raise nothing in Lua; `guard`
-- rewrites a source so that they do for names, fields and calls. What stands in brackets of its own stays uncaught.

local secrets = {}

local template = newproxy(true)
for name in ("add sub mul div mod pow unm eq lt le concat len index newindex call"):gmatch("%a+") do
    getmetatable(template)["__" .. name] = function()
        error("attempt to use a secret value", 2)
    end
end

function secrets.new()
    return newproxy(template)
end

function secrets.is(value)
    return type(value) == "userdata"
end

-- What guarded source calls: gives the value back, unless it is secret.
function secrets.known(value)
    if secrets.is(value) then
        error("attempt to look at a secret value", 2)
    end
    return value
end

-- Each with what stands before an operand that is looked at, the operand, and what stands behind it.
local NAME, CALL = "([%a_][%w_.]*)", "([%a_][%w_.:]*%b())"
local places = { "([=~]=%s*)" .. NAME .. "([^%w_.])", "(%f[%w]not%s+)" .. NAME .. "([^%w_.])" }
places[3] = "(%[)" .. NAME .. "(%])"
for _, operand in ipairs { NAME, CALL } do
    for _, behind in ipairs { "%s*[=~]=", "%s+and%f[%W]", "%s+or%f[%W]", "%s+then%f[%W]" } do
        places[#places + 1] = "([%s(])" .. operand .. "(" .. behind .. ")"
    end
end
local isKeyword = { ["end"] = true, ["not"] = true, ["nil"] = true, ["true"] = true, ["false"] = true }

local function wrap(before, operand, behind)
    return not isKeyword[operand] and before .. "__known(" .. operand .. ")" .. behind or nil
end

-- The same source, line by line, with what is looked at going through `known`.
function secrets.guard(source)
    local texts = {}
    source = (source .. "\n"):gsub("%-%-[^\n]*", ""):gsub('\\"', "\\034"):gsub('"[^"\n]*"', function(text)
        texts[#texts + 1] = text
        return '"' .. #texts .. '"'
    end)
    for _, place in ipairs(places) do
        source = source:gsub(place, wrap)
    end
    return (source:gsub('"(%d+)"', function(number) return texts[tonumber(number)] end))
end

return secrets
