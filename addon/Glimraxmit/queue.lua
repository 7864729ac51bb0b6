-- What is said next. Glimra takes messages in the order in which they come, with exceptions: some jump ahead of those
-- that wait there, and some make all others wait. So nothing is sent that could not be taken soon; it waits here, where
-- what is no longer true can still be dropped.
--
-- Importance: a reset, then the lights that stay on, then the cooldown reports and the moments in turn.
-- Bounded: each report and each moment waits at most once.

local _, addon = ...
local message, lights, reports, pace = addon.message, addon.lights, addon.cooldowns.reports, addon.pace

-- A key that becomes ready keeps Glimra busy so long for each profile that shows cooldowns, 1 to 9 of them.
local READY_KEY, MOST_PROFILES = 0.05, 9
local LONGEST_BUSY = 4
-- Pause between "no blinking" and the reports that are meant.
local AFTER_HUSH = 0.5
-- What may have been lost is said again so long after the last news, and so often in a fight.
local QUIET, IN_A_FIGHT = 2, 10
-- So many reports may go before a moment that waits.
local REPORTS_IN_A_ROW = 5

local queue = {}
addon.queue = queue

local mustReset, mustHush = false, false
local moments = {}
local reportsInARow, lastReport = 0, 0
-- Times: before which nothing, nothing that jumps ahead, no moment, no report is announced; and when Glimra will have
-- done all that it was told, at the latest.
local anythingFrom, jumpsFrom, momentsFrom, reportsFrom, doneBy = 0, 0, 0, 0, 0
local lastNews, saidAgain, againInFight = nil, false, 0
local flashing, lastPulse = false, nil

local function isNews(report)
    return report.value ~= nil and report.told ~= report.value
end

local function isRepeated(report)
    return report.again
end

-- The reports take turns.
local function nextReport(now, isDue)
    if now < reportsFrom then
        return nil
    end
    for step = 1, #reports do
        local report = reports[(lastReport + step - 1) % #reports + 1]
        if isDue(report) then
            return report
        end
    end
end

local function nextMoment(now)
    if now >= momentsFrom and lights.calm() then
        return moments[1]
    end
end

-- The message to announce now, nil for none.
function queue.next(now)
    if now < anythingFrom then
        return nil
    elseif mustReset then
        return message.R
    end
    local light = lights.next()
    if light and (now >= jumpsFrom or not light.jumps) then
        return light
    elseif mustHush then
        return message.c
    end
    -- A light that has to wait does not wait for an animation as well.
    local moment, report = not light and nextMoment(now), nextReport(now, isNews)
    if moment and (not report or reportsInARow >= REPORTS_IN_A_ROW) then
        return moment
    end
    report = report or nextReport(now, isRepeated)
    if report or light then
        return report
    end
    -- An end that is said again would end Enter's flash.
    return saidAgain and not flashing and lights.endAgain() or nil
end

-- Whether what was announced shall be confirmed, or something else is to be said in its place.
function queue.stands(announced, now)
    local next = queue.next(now)
    if next == announced then
        return true
    elseif next == nil or announced == message.R then
        return false
    end
    local nextIsLight = next.kind or next.kindEnded
    return not (nextIsLight or announced.kind or announced.kindEnded or next == message.R)
end

-- How many of the six slots are ready now and were not before.
local function readyKeys(before, now)
    local count, weight = 0, 64
    for _ = 1, 6 do
        if before >= weight and now < weight then
            count = count + 1
        end
        before, now = before % weight, now % weight
        weight = weight / 2
    end
    return count
end

-- Seconds for which Glimra plays what it was told: as they are where one profile shows cooldowns, and at most.
local function busyTimes(told, value)
    if told.isReport then
        local blinking = readyKeys(told.told or 0, value) * READY_KEY
        return blinking, blinking * MOST_PROFILES
    end
    return told.plays or 0, told.plays or 0
end

local function noteTimes(told, value, now)
    local busy, busyAtMost = busyTimes(told, value)
    local glimra = pace.now
    if busy > 0 or told.plays then
        anythingFrom = now + glimra.reaction + busy - glimra.announces
    end
    doneBy = math.min(math.max(doneBy, now + glimra.reaction - glimra.message) + glimra.message + busyAtMost,
        now + LONGEST_BUSY)
    if not told.isReport and told.kind ~= "pulse" then
        -- The end of a fight must not pass its beginning; a pulse's speed may come at any time.
        jumpsFrom = doneBy - glimra.announces
    end
end

local function noteNews(told, value, now)
    local news = true
    if told.isReport then
        news = told.told ~= value
    elseif told.kind == "pulse" then
        news = told.code ~= lastPulse
        lastPulse = told.code
    elseif told.isRepetition then
        news = false
    end
    if news then
        lastNews, saidAgain = now, false
    end
end

-- `told` has been said: its confirm frame, with this value, has just been painted.
function queue.tell(told, value, now)
    noteTimes(told, value, now)
    noteNews(told, value, now)
    if told.isReport then
        told.told, told.again = value, false
        reportsInARow = reportsInARow + 1
        lastReport = told.number
        return
    end
    flashing = told == message.I
    if told == message.R then
        mustReset = false
        lights.forget()
    elseif told == message.c then
        mustHush = false
        reportsFrom = now + AFTER_HUSH
    elseif told.isRepetition then
        lights.toldAgain(told)
    elseif told.kind or told.kindEnded then
        lights.tell(told)
        if told.kind == "fight" then
            againInFight = now + IN_A_FIGHT
        end
    elseif told == moments[1] then
        table.remove(moments, 1)
        reportsInARow = 0
        momentsFrom = now + (told.stays or 0)
    end
end

-- Something happened that Glimra shall show once.
function queue.moment(happened)
    for _, waiting in ipairs(moments) do
        if waiting == happened then
            return
        end
    end
    moments[#moments + 1] = happened
end

local function sayReportsAgain()
    for _, report in ipairs(reports) do
        report.again = report.value ~= nil
    end
end

-- Says again what may have been lost, when it is time to.
function queue.tick(now)
    if lastNews and not saidAgain and now - lastNews >= QUIET then
        saidAgain = true
        sayReportsAgain()
    end
    if lights.said.fight and now >= againInFight then
        againInFight = now + IN_A_FIGHT
        sayReportsAgain()
        lights.sayAnew("pulse")
    end
end

-- The player enters the world: by "login", "reload" or "loading". Everything is said anew. After a reload Glimra
-- is not reset, since the player may have chosen another profile; `earlier` tells which lights were on then.
function queue.enter(way, earlier)
    mustReset = way == "login"
    if way == "reload" then
        lights.resume(earlier)
    end
    mustHush = true
    for _, report in ipairs(reports) do
        report.told = nil
    end
end

-- Nothing more is said than what ends that which is on.
function queue.wane()
    mustReset, mustHush = false, false
    for _, report in ipairs(reports) do
        -- What was never said needs no end, and what ends shall not blink.
        report.told, report.again = report.told or addon.cooldowns.ALL_READY, false
        mustHush = mustHush or report.told ~= addon.cooldowns.ALL_READY
    end
    for i = #moments, 1, -1 do
        moments[i] = nil
    end
    lastNews = nil
end
