-- How fast things are said: as fast as any Glimra can take them or, where the player wants it and Glimra responds fast,
-- as fast as pictures can be told apart.

local _, addon = ...

local paces = {
    -- stands:    a frame is painted for so many seconds, and a picture, at least
    -- pictures:  and for so many pictures
    -- reaction:  Glimra has acted upon a message so long after its confirm frame came up, at the latest
    -- message:   it takes one message in so many seconds
    -- announces: announcing takes so long, and can be done while Glimra is still busy

    -- Glimra looks every 0.05 s and a little, and has two timers.
    slow = { stands = 0.1, pictures = 1, reaction = 0.4, message = 0.2, announces = 0.1 },
    -- It looks every 0.016 s and a little, and acts at once. The picture that is still on the screen while the next
    -- one is painted makes more than 0.034 s of it, and the game's clock has whole milliseconds.
    fast = { stands = 0.0325, pictures = 2, reaction = 0.07, message = 0.03, announces = 0.034 },
}

-- A Glimra that has seen nothing for a minute looks as rarely as a slow one.
local DOZES_AFTER = 55

local pace = { slow = paces.slow, now = paces.slow }
addon.pace = pace

function pace.choose(isFast)
    pace.now = isFast and paces.fast or paces.slow
end

-- For a frame that comes on the strip when the last one was there so many seconds ago.
function pace.after(silence)
    return silence < DOZES_AFTER and pace.now or paces.slow
end
