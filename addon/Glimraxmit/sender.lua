-- Says messages by painting them: each as an announce frame and a confirm frame, each of which stands long enough to be
-- seen for certain. Nothing is taken from the queue before it has been confirmed.

local _, addon = ...
local strip, queue, pace = addon.strip, addon.queue, addon.pace

-- A report that changes while it is announced is announced anew, but not for ever: in a storm of cooldowns one that is
-- a moment old is better than none.
local MOST_RESTARTS = 3

local sender = {}
addon.sender = sender

-- What is on the strip: the message, the value with which it was announced, and whether it is confirmed.
local current, value, confirmed = nil, nil, false
local standsSince, restarts = nil, 0
-- How long its frame has to stand, for how many pictures it did, and when there was a frame last.
local framePace, pictures, lastFrame = pace.slow, 0, -math.huge

local function announce(message, now)
    if message ~= current then
        restarts = 0
    end
    current, value, confirmed, standsSince = message, message.value, false, nil
    framePace, pictures = pace.after(now - lastFrame), 0
    strip.announce(value)
end

local function confirm(now)
    confirmed, standsSince, restarts = true, nil, 0
    framePace, pictures = pace.now, 0
    strip.confirm(value, current.color)
    queue.tell(current, value, now)
end

local function mayConfirm(now)
    if current.value ~= value and restarts < MOST_RESTARTS then
        restarts = restarts + 1
        return false
    end
    return queue.stands(current, now)
end

-- To be called once in each picture, with the game's time.
function sender.picture(now)
    if current then
        -- What a picture painted is on the screen only when that picture is done, and it may have taken long: a
        -- frame's time begins with the next one.
        standsSince, pictures, lastFrame = standsSince or now, pictures + 1, now
        if now - standsSince < framePace.stands or pictures < framePace.pictures then
            return
        elseif not confirmed and mayConfirm(now) then
            confirm(now)
            return
        end
    end
    local next = queue.next(now)
    if next then
        announce(next, now)
    elseif current then
        sender.stop()
    end
end

-- The strip is dark; a message that was not confirmed yet will be said later.
function sender.stop()
    current, restarts = nil, 0
    strip.black()
end

-- Whether nothing is on the strip.
function sender.isIdle()
    return current == nil
end
