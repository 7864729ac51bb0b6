-- What Glimra can be told to show: one row for each message that is an effect.

local _, addon = ...

-- code:  the message
-- name:  what a player calls it
-- plays: seconds for which Glimra is busy with it and takes nothing else
-- ends:  for a light that stays on, the message that ends it
-- kind:  for such a light, which of Glimra's lights it is; at most one of a kind is on
addon.effects = {
    { code = "C", name = "red pulse", kind = "fight", ends = "O" },
    { code = "D", name = "death glow", kind = "death", ends = "U" },
    { code = "W", name = "ghost", kind = "ghost", ends = "V", plays = 0.42 },
    { code = "j", name = "teal glow", kind = "glow", ends = "K" },
    { code = "k", name = "blue glow", kind = "glow", ends = "K" },
    { code = "l", name = "green glow", kind = "glow", ends = "K" },
    { code = "E", name = "chat profile", kind = "chat", ends = "e" },
    { code = "I", name = "Enter flashes", plays = 0 },
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
}
