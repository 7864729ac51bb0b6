-- What can be said to Glimra: one table for each message, made once, so that saying one makes no garbage.

local _, addon = ...

-- code:  the character that is sent
-- name:  what a player calls the effect; a message without a name is none
-- plays: seconds for which Glimra is busy with it and takes nothing else
-- stays: seconds for which other moments should not take its place
-- kind:  for a light that stays on, which of Glimra's lights it is; at most one of a kind is on
-- ends:  for such a light, the code that ends it
-- again: for such a light, a code that ends it, too, and does no harm when it is over already
-- jumps: it goes ahead of what waits at Glimra's
local list = {
    { code = "C", name = "red pulse", kind = "fight", ends = "O", again = "O" },
    { code = "w", name = "slow pulse", kind = "pulse" },
    { code = "x", name = "brisk pulse", kind = "pulse" },
    { code = "y", name = "fast pulse", kind = "pulse" },
    { code = "z", name = "racing pulse", kind = "pulse" },
    { code = "D", name = "death glow", kind = "death", ends = "U", again = "U", jumps = true },
    { code = "W", name = "ghost", kind = "ghost", ends = "V", again = "U", plays = 0.42 },
    { code = "j", name = "teal glow", kind = "glow", ends = "K" },
    { code = "k", name = "blue glow", kind = "glow", ends = "K" },
    { code = "l", name = "green glow", kind = "glow", ends = "K" },
    { code = "E", name = "chat profile", kind = "chat", ends = "e", jumps = true },
    { code = "I", name = "Enter flashes", stays = 3 },
    { code = "G", name = "gold row down", plays = 0.5 },
    { code = "g", name = "gold row up", plays = 0.5 },
    { code = "S", name = "silver row down", plays = 0.5 },
    { code = "s", name = "silver row up", plays = 0.5 },
    { code = "M", name = "copper row down", plays = 0.5 },
    { code = "m", name = "copper row up", plays = 0.5 },
    { code = "a", name = "red rows up", plays = 0.5 },
    { code = "A", name = "parade", plays = 2.4 },
    { code = "F", name = "embers", plays = 1.82 },
    { code = "n", name = "sky", plays = 1.24 },
    { code = "N", name = "sand", plays = 0.83 },
    { code = "L", name = "water", plays = 0.83 },
    { code = "T", name = "stripes", plays = 1.43 },
    { code = "h", name = "wave", plays = 1.13 },
    { code = "J", name = "rainbow", plays = 0.9 },
    { code = "B", name = "ripple", plays = 0.26 },
    { code = "H", name = "red block", plays = 1.25 },
    { code = "r", name = "green block", plays = 1.25 },
    { code = "f", name = "white flash", plays = 0.6 },
    { code = "i", name = "Enter no longer flashes" },
    { code = "p", name = "the other of profiles 1 and 2" },
    { code = "O", jumps = true },
    { code = "U", jumps = true },
    { code = "V", jumps = true, plays = 0.42 },
    { code = "K", plays = 0.6 },
    { code = "e", jumps = true },
    { code = "c" },
    -- Takes no time, but whatever arrives until it is carried out is dropped.
    { code = "R", plays = 0 },
}
for profile = 1, 9 do
    list[#list + 1] = { code = tostring(profile), name = "profile " .. profile, kind = "profile" }
end

local byCode = {}
for _, message in ipairs(list) do
    message.value = message.code:byte()
    message.color = "white"
    byCode[message.code] = message
end
for _, message in ipairs(list) do
    if message.ends then
        message.ending = byCode[message.ends]
        message.ending.kindEnded = message.kind
    end
    if message.again then
        message.repetition = {
            code = message.again,
            value = message.again:byte(),
            color = "white",
            isRepetition = true,
        }
    end
end

-- In the order in which a player is shown them.
addon.messages = list
-- From a code to its message.
addon.message = byCode
