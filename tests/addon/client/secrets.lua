-- Secret values: what the game lets an add-on carry about and hand to widgets, but not look at.
--
-- They are userdata, which raise in arithmetic, concatenation, order and calls by themselves. Equality with another
-- type, a truth test and use as a table key raise nothing in Lua; `guard` rewrites a file's source so that they do.
-- What stays uncaught is what Lua does inside functions of its own: rawequal, rawset and the like.

local secrets = {}

local values = setmetatable({}, { __mode = "k" })
local template = newproxy(true)
local meta = getmetatable(template)
for deed, names in pairs {
    ["do arithmetic with"] = "__add __sub __mul __div __mod __pow __unm",
    ["compare"] = "__eq __lt __le",
    ["concatenate"] = "__concat",
    ["take the length of"] = "__len",
    ["index"] = "__index __newindex",
    ["call"] = "__call",
} do
    for name in names:gmatch("%S+") do
        meta[name] = function()
            error("attempt to " .. deed .. " a secret value", 2)
        end
    end
end
meta.__tostring = function(secret)
    return secret
end

function secrets.new(value)
    local secret = newproxy(template)
    values[secret] = value
    return secret
end

function secrets.is(value)
    return value ~= nil and values[value] ~= nil
end

-- What widgets and tests see.
function secrets.reveal(value)
    if secrets.is(value) then
        return values[value]
    end
    return value
end

-- The functions that guarded source calls.
secrets.checks = {
    __equal = function(a, b)
        if secrets.is(a) or secrets.is(b) then
            error("attempt to compare a secret value", 2)
        end
        return a == b
    end,
    __test = function(value)
        if secrets.is(value) then
            error("attempt to test whether a secret value is true", 2)
        end
        return value
    end,
    __key = function(value)
        if secrets.is(value) then
            error("attempt to use a secret value as a table key", 2)
        end
        return value
    end,
}

local function set(text)
    local result = {}
    for word in text:gmatch("%S+") do
        result[word] = true
    end
    return result
end

local arithmetic = set "+ - * / % ^ .."
local anyOperator = set "+ - * / % ^ .. == ~= < > <= >= and or"
local startsExpression = set "= ( [ { , ; return if elseif while until in"
local hasNoSuffixes = set "function nil true false"
local opens, closes = set "( [ { function do if repeat", set ") ] } end until"

-- What a source consists of; comments are no token.
local lexemes = {
    { "comment", "^%-%-%[(=*)%[.-%]%1%]" }, { "comment", "^%-%-[^\n]*" }, { "string", "^%[(=*)%[.-%]%1%]" },
    { "name", "^[%a_][%w_]*" }, { "number", "^0[xX]%x+" }, { "number", "^%.?%d[%d.]*[eE][+-]?%d+" },
    { "number", "^%.?%d[%d.]*" }, { "operator", "^%.%.%.?" }, { "operator", "^[=~<>]=" }, { "operator", "^." },
}

local function quotedEnd(source, at)
    local quote, last = source:sub(at, at), at
    repeat
        last = source:find("[\\" .. quote .. "]", last + 1) or #source
        local isEscape = source:sub(last, last) == "\\"
        last = isEscape and last + 1 or last
    until not isEscape
    return last
end

-- { kind, text, from, to } each
local function tokenize(source)
    local tokens, at = {}, source:match("^%s*()")
    while at <= #source do
        local kind, last
        if source:find("^[\"']", at) then
            kind, last = "string", quotedEnd(source, at)
        end
        for i = 1, last and 0 or #lexemes do
            kind, last = lexemes[i][1], select(2, source:find(lexemes[i][2], at))
            if last then
                break
            end
        end
        if kind ~= "comment" then
            tokens[#tokens + 1] = { kind = kind, text = source:sub(at, last), from = at, to = last }
        end
        at = source:match("^%s*()", last + 1)
    end
    return tokens
end

local function matchBrackets(tokens)
    local match, opened, open = {}, {}, {}
    for i, token in ipairs(tokens) do
        if token.kind ~= "string" then
            if opens[token.text] then
                open[#open + 1] = i
            elseif closes[token.text] and #open > 0 then
                opened[i] = table.remove(open)
                match[opened[i]] = i
            end
        end
    end
    return match, opened
end

-- The last token of the operand that begins at i, and of the expression of operands and `operators`.
local function operandEnd(tokens, match, i)
    local function text(at)
        return tokens[at] and tokens[at].kind ~= "string" and tokens[at].text
    end
    while text(i) == "not" or text(i) == "-" or text(i) == "#" do
        i = i + 1
    end
    local hasSuffixes = text(i) == "(" or tokens[i].kind == "name" and not hasNoSuffixes[text(i)]
    i = match[i] or i
    while hasSuffixes do
        if text(i + 1) == "." or text(i + 1) == ":" then
            i = i + 2
        elseif text(i + 1) == "(" or text(i + 1) == "[" or text(i + 1) == "{" then
            i = match[i + 1]
        elseif tokens[i + 1] and tokens[i + 1].kind == "string" then
            i = i + 1
        else
            break
        end
    end
    return text(i + 1) == "^" and operandEnd(tokens, match, i + 2) or i
end

local function expressionEnd(tokens, match, i, operators)
    i = operandEnd(tokens, match, i)
    while tokens[i + 1] and operators[tokens[i + 1].text] do
        i = operandEnd(tokens, match, i + 2)
    end
    return i
end

-- The same source, line by line, with every equality, truth test and table key going through `secrets.checks`.
function secrets.guard(source)
    local tokens = tokenize(source)
    local match, opened = matchBrackets(tokens)
    local before, after, replaced = {}, {}, {}
    local function wrap(opening, first, last)
        before[first] = opening .. (before[first] or "")
        after[last] = (after[last] or "") .. ")"
    end
    -- Where the operands of "or", "and" and a comparison begin, for each open bracket or block.
    local levels = { {} }
    local testEnds = {}
    for i, token in ipairs(tokens) do
        local text = token.kind ~= "string" and token.text
        local level = levels[#levels]
        if text == "then" or text == "do" and level.isWhile then
            wrap("__test(", level.either, i - 1)
            level.isWhile = nil
        elseif text == "or" then
            wrap("__test(", level.either, i - 1)
            level.both, level.compared = i + 1, i + 1
        elseif text == "and" then
            wrap("__test(", level.both, i - 1)
            level.compared = i + 1
        elseif text == "not" then
            wrap("__test(", i + 1, operandEnd(tokens, match, i + 1))
        elseif text == "==" or text == "~=" then
            wrap(text == "==" and "__equal(" or "not __equal(", level.compared,
                expressionEnd(tokens, match, i + 1, arithmetic))
            replaced[i] = ","
        elseif text == "]" then
            wrap("__key(", opened[i] + 1, i - 1)
        elseif text == "until" then
            testEnds[expressionEnd(tokens, match, i + 1, anyOperator)] = i + 1
        end
        if closes[text] then
            levels[#levels] = nil
        end
        if opens[text] then
            levels[#levels + 1] = {}
        end
        level = levels[#levels]
        level.isWhile = level.isWhile or text == "while"
        if startsExpression[text] then
            level.either, level.both, level.compared = i + 1, i + 1, i + 1
        end
        if testEnds[i] then
            wrap("__test(", testEnds[i], i)
        end
    end
    local pieces, at = {}, 1
    for i, token in ipairs(tokens) do
        pieces[#pieces + 1] = source:sub(at, token.from - 1)
        pieces[#pieces + 1] = (before[i] or "") .. (replaced[i] or token.text) .. (after[i] or "")
        at = token.to + 1
    end
    return table.concat(pieces) .. source:sub(at)
end

return secrets
