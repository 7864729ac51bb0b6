-- Reads a scenario and plays it: what happens in the game, what an add-on makes of it, and what must come of it.

local commands = require "commands"
local newClient = require "client.client"
local strip = require "strip"
local truth = require "truth"

local scenario = {}

local SWITCH = { on = true, off = false }

local function encoded(character)
    return ("\\x%02x"):format(character:byte())
end

-- A word of a step is a text, a number, or "on" or "off" as a Boolean.
local function read(word)
    if SWITCH[word] ~= nil then
        return SWITCH[word]
    end
    return tonumber(word) or (word:gsub("\\x(%x%x)", function(digits) return string.char(tonumber(digits, 16)) end))
end

-- The steps of a scenario; ";" stands between those of one line, "..." and '...' hold blanks, \xHH is any character.
function scenario.parse(text, name)
    local steps, number = {}, 0
    for line in (text .. "\n"):gmatch("(.-)\n") do
        number = number + 1
        line = line:gsub("^%s*#.*", ""):gsub("([\"'])(.-)%1", function(_, quoted)
            return (quoted:gsub("[%s;]", encoded))
        end)
        for step in line:gmatch("[^;]+") do
            local words = {}
            for word in step:gmatch("%S+") do
                words[#words + 1] = read(word)
            end
            local command = table.remove(words, 1)
            steps[#steps + 1] = {
                name = command, run = commands[command], values = words,
                place = name .. ":" .. number, text = step:match("^%s*(.-)%s*$"),
            }
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
    local kinds, rates, variants = { "retail" }, { 60 }, {}
    for _, step in ipairs(steps) do
        kinds = step.name == "client" and step.values or kinds
        rates = step.name == "pictures" and step.values or rates
    end
    for _, kind in ipairs(kinds) do
        for _, rate in ipairs(rates) do
            variants[#variants + 1] = { kind = kind, rate = rate }
        end
    end
    return variants
end

-- A play, while it runs and when it is over:
-- journal:      { time, event } of all that the add-on was told
-- toScreen:     { time, strip }, { time, line } or { time, stage }: what came on the screen and what is besides
-- beforeStart:  lines for Glimra
-- eye, history: the frames and messages seen (strip.lua), and what was so (truth.lua)
-- expectations: { values, place, text, time, mark, first, last }, to be held against what Glimra did; first and last:
--               which messages of the eye came since the one before
-- problems:     what was wrong: errors, faulty rows, what the chat has not said
local Play = { FRONT = 'front "com.blizzard.worldofwarcraft"', MARK = "dump bitmap 0" }
Play.__index = Play

function Play:complain(text)
    self.problems[#self.problems + 1] = (self.step and self.step.place .. ": " or "") .. text
end

function Play:toGlimra(line)
    if not self.client then
        self.beforeStart[#self.beforeStart + 1] = line
        return
    end
    self.toScreen[#self.toScreen + 1] = { time = self.client.now, line = line }
    if line:find("^display") then
        self.lastShown = nil -- It is black until it is painted again.
    end
end

function Play:onScreen(time, row)
    local shown, problem = strip.read(row, self.stripWidth)
    if problem and not self.hasFault then
        self:complain(("at %.3f s the strip is faulty: %s"):format(time, problem))
    end
    if shown ~= self.lastShown then
        self.toScreen[#self.toScreen + 1] = { time = time, strip = shown }
    end
    self.lastShown, self.hasFault = shown, problem ~= nil
    self.eye:see(time, shown, row.made)
end

function Play:login()
    local setup = self.setup
    setup.onScreen = function(time, row) self:onScreen(time, row) end
    setup.onPicture = function(client) truth.note(self.history, client) end
    setup.onEvent = function(name) self.journal[#self.journal + 1] = { time = self.client.now, event = name } end
    self.client = newClient(setup)
    self.world = self.client.world
    self.client:login()
end

-- What Glimra prints for MARK tells the checker which of its deeds came before this moment.
function Play:expect(...)
    local last, now = self.expectations[#self.expectations], self.client.now
    local mark = last and (last.time == now and last.mark or last.mark + 1) or 1
    if not last or last.mark ~= mark then
        self:toGlimra(self.MARK)
    end
    self.expectations[#self.expectations + 1] = {
        values = { ... }, place = self.step.place, text = self.step.text, time = now, mark = mark,
        first = last and last.last + 1 or 1, last = #self.eye.messages,
    }
end

-- Plays steps with the add-on in a folder, as a variant says: { kind, rate }, and maybe edit, see client.lua.
function scenario.play(steps, folder, variant)
    local play = setmetatable({
        stripWidth = 80,
        setup = {
            kind = variant.kind, rate = variant.rate, edit = variant.edit, width = 1920, height = 1080, folder = folder,
        },
        journal = {}, toScreen = {}, beforeStart = {}, eye = strip.newEye(), history = {},
        expectations = {}, problems = {},
    }, Play)
    for _, step in ipairs(steps) do
        play.step = step
        local isGood, problem = pcall(step.run or error, play, unpack(step.values))
        if not isGood then
            play:complain(step.run and tostring(problem) or "there is no such command")
            break
        end
    end
    play.step = nil
    for _, problem in ipairs(play.client.errors) do
        play:complain(problem)
    end
    return play
end

return scenario
