-- Reads a scenario and plays it: what happens in the game, what an add-on makes of it, and what must come of it.

local commands = require "commands"
local newClient = require "client.client"
local strip = require "strip"
local truth = require "truth"

local scenario = {}

local numbers = {}
for name in ("SECONDS PERCENT N WIDTH HEIGHT SCALE SLOT COPPER"):gmatch("%S+") do
    numbers[name] = true
end

-- The words of a line; "..." holds blanks, and \" \\ \xHH stand for awkward characters.
local function split(line)
    local words, at = {}, 1
    while line:find("%S", at) do
        at = line:find("%S", at)
        local last, word
        if line:sub(at, at) == '"' then
            last = at
            repeat
                last = line:find('[\\"]', last + 1) or error("a quotation mark is missing", 0)
                local isEscape = line:sub(last, last) == "\\"
                last = isEscape and last + 1 or last
            until not isEscape
            word = line:sub(at + 1, last - 1):gsub('\\(["\\])', "%1")
        else
            word, last = line:match("^(%S+)()", at)
            last = last - 1
        end
        words[#words + 1] = word:gsub("\\x(%x%x)", function(digits) return string.char(tonumber(digits, 16)) end)
        at = last + 1
    end
    return words
end

-- The values that the words have for a command; or nil and what is wrong, or just nil if it is another command.
local function match(usage, words)
    local values, i = {}, 0
    for wanted in usage:gmatch("%S+") do
        i = i + 1
        local word, name = words[i], wanted:match("^%[?(%u[%u/]*)")
        if not name and wanted ~= "on|off" then
            if word ~= wanted then
                return nil
            end
        elseif not word then
            if wanted:sub(1, 1) ~= "[" then
                return nil, wanted .. " is missing"
            end
        elseif wanted:find("...", 1, true) then
            values[#values + 1] = { unpack(words, i) }
            for k = i, #words do
                if name == "MESSAGE" and #words[k] > 2 then
                    return nil, words[k] .. " is no message"
                end
            end
            i = #words
        elseif wanted == "on|off" then
            if word ~= "on" and word ~= "off" then
                return nil, "on or off is wanted, not " .. word
            end
            values[#values + 1] = word == "on"
        elseif numbers[name] then
            values[#values + 1] = tonumber(word)
            if not tonumber(word) then
                return nil, name .. " is a number, not " .. word
            end
        else
            values[#values + 1] = word
        end
    end
    if #words > i then
        return nil, words[i + 1] .. " is too much"
    end
    return values
end

local function parseLine(line)
    local words, problem = split(line), nil
    for _, command in ipairs(commands) do
        local values, wrong = match(command[1], words)
        if values then
            return { name = words[1], run = command[3], values = values, when = command[4] or "after login" }
        end
        problem = problem or wrong and command[1] .. ": " .. wrong
    end
    error(problem or "there is no command like this", 0)
end

-- The steps of a scenario. Raises "NAME:LINE: what is wrong".
function scenario.parse(text, name)
    local steps, number = {}, 0
    for line in (text .. "\n"):gmatch("(.-)\r?\n") do
        number = number + 1
        if line:find("^%s*[^%s#]") then
            local isGood, step = pcall(parseLine, line)
            if not isGood then
                error(("%s:%d: %s"):format(name, number, step), 0)
            end
            step.place, step.text = name .. ":" .. number, line:match("^%s*(.-)%s*$")
            steps[#steps + 1] = step
        end
    end
    return steps
end

function scenario.read(path)
    local file = assert(io.open(path))
    local text = file:read("*a")
    file:close()
    return scenario.parse(text, path)
end

-- The ways in which a scenario is to be played: { kind, rate } each.
function scenario.variants(steps)
    local kinds, rates, variants = { "retail" }, { "60" }, {}
    for _, step in ipairs(steps) do
        if step.name == "login" then
            break
        end
        kinds = step.name == "client" and step.values[1] or kinds
        rates = step.name == "pictures" and step.values[1] or rates
    end
    for _, kind in ipairs(kinds) do
        for _, rate in ipairs(rates) do
            variants[#variants + 1] = { kind = kind, rate = rate }
        end
    end
    return variants
end

-- A play, while it runs and when it is over:
-- journal:      { time, kind, text } of all that happened
-- toScreen:     { time, strip } or { time, line }: what came on the screen and what is for Glimra besides
-- beforeStart:  lines for Glimra
-- eye, history: the frames and messages seen (strip.lua), and what was so (truth.lua)
-- expectations: { kind, values, place, text, time, mark }, to be held against what Glimra did
-- problems:     what was wrong: errors, faulty rows, what the chat has not said
local Play = { FRONT = 'front "com.blizzard.worldofwarcraft"', MARK = "dump bitmap 0" }
Play.__index = Play

function Play:complain(text)
    self.problems[#self.problems + 1] = (self.step and self.step.place .. ": " or "") .. text
end

function Play:toGlimra(line)
    if self.client then
        self.toScreen[#self.toScreen + 1] = { time = self.client.now, line = line }
        if line:find("^display") then
            self.lastShown = nil -- It is black until it is painted again.
        end
    else
        self.beforeStart[#self.beforeStart + 1] = line
    end
end

function Play:onScreen(time, row)
    local shown, problem = strip.read(row, self.stripWidth)
    if problem and not self.hasFault then
        self:complain(("at %.3f s the strip is faulty: %s"):format(time, problem))
    end
    local last = self.lastShown
    self.lastShown, self.hasFault = shown, problem ~= nil
    self.eye:see(time, shown, row.made, self.isUnread)
    if not last or last.width ~= shown.width or table.concat(last.cells) ~= table.concat(shown.cells) then
        self.toScreen[#self.toScreen + 1] = { time = time, strip = shown, row = row }
    end
end

function Play:login()
    if not self.client then
        self.setup.onScreen = function(time, row) self:onScreen(time, row) end
        self.setup.onPicture = function(client) truth.note(self.history, client) end
        self.setup.note = function(kind, text)
            self.journal[#self.journal + 1] = { time = self.client.now, kind = kind, text = text }
        end
        self.client = newClient(self.setup)
        self.world = self.client.world
    elseif self.client.isInWorld then
        error("the character is in the world already", 0)
    end
    self.client:login()
end

function Play:mustHaveSaid(text, isWanted)
    local pattern = text:gsub("[^%w%s*]", "%%%0"):gsub("%*", ".-")
    local isFound = false
    for _, line in ipairs(self.client.said) do
        isFound = isFound or line:find(pattern) ~= nil
    end
    if isFound ~= isWanted then
        self:complain((isWanted and "the chat does not show \"%s\"" or "the chat shows \"%s\""):format(text))
    end
end

function Play:forgive(text)
    local isFound = text == "none"
    for _, problem in ipairs(self.client.errors) do
        if text ~= "none" and problem.text:find(text, 1, true) then
            problem.isForgiven, isFound = true, true
        end
    end
    if not isFound then
        self:complain("no error says \"" .. text .. "\"")
    elseif text == "none" then
        self:complainOfErrors()
    end
end

function Play:complainOfErrors()
    for _, problem in ipairs(self.client.errors) do
        if not problem.isForgiven then
            self:complain(("an error at %.3f s: %s"):format(problem.time, problem.text))
            problem.isForgiven = true
        end
    end
end

-- What Glimra prints for MARK tells the checker which of its deeds came before this moment.
function Play:expect(kind, ...)
    local last, now = self.expectations[#self.expectations], self.client.now
    local mark = last and (last.time == now and last.mark or last.mark + 1) or 1
    if not last or last.mark ~= mark then
        self:toGlimra(self.MARK)
    end
    self.expectations[#self.expectations + 1] = {
        kind = kind, values = { ... }, place = self.step.place, text = self.step.text, time = now, mark = mark,
    }
end

-- Plays steps with add-on folders, as a variant says.
function scenario.play(steps, folders, variant)
    local play = setmetatable({
        stripWidth = 80,
        setup = { kind = variant.kind, rate = variant.rate, width = 1920, height = 1080, seed = 1, folders = folders },
        journal = {}, toScreen = {}, beforeStart = {}, eye = strip.newEye(), history = {},
        expectations = {}, problems = {},
    }, Play)
    for _, step in ipairs(steps) do
        play.step = step
        if play.client then
            play.journal[#play.journal + 1] = { time = play.client.now, kind = "step", text = step.text }
        end
        local isGood, problem = false, "comes " .. step.when
        if step.when == "any time" or step.when == (play.client and "after login" or "before login") then
            isGood, problem = pcall(step.run, play, unpack(step.values, 1, #step.values))
        end
        if not isGood then
            play:complain(tostring(problem))
            break
        end
    end
    play.step = nil
    if play.client then
        play:complainOfErrors()
    end
    return play
end

return scenario
