-- Ties the parts together: the game's events go in, and one look in each picture lets the sender go on.

local addonName, addon = ...
local strip, lights, cooldowns, queue = addon.strip, addon.lights, addon.cooldowns, addon.queue
local sender, moments, options = addon.sender, addon.moments, addon.options
local calibration, tour = addon.calibration, addon.tour

-- Nothing is said while a loading screen may hide the strip: so long at most where the game tells of its end, and so
-- long where it does not.
local LONGEST_VEIL, VEIL_UNTOLD = 10, 1

local frame = CreateFrame("Frame")
local entered = false
-- Whether the game has told that the loading screen is gone, and when the strip can be seen at the latest.
local lifted, veiledUntil = false, math.huge

local function show()
    strip.show(options.on or calibration.isOn() or not sender.isIdle() or lights.next() ~= nil)
end

-- Something was chosen: looks at everything anew.
function addon.update()
    moments.look()
    cooldowns.changed()
    show()
end

local function currentSpecialization()
    local get = C_SpecializationInfo and C_SpecializationInfo.GetSpecialization or GetSpecialization
        or GetActiveTalentGroup
    return get and get()
end

local shownFor

-- The profile of the specialization, if the player wants one and it is another specialization than before.
local function showProfile()
    local specialization = currentSpecialization()
    local code = specialization and options.profile(specialization)
    if options.on and code and specialization ~= shownFor then
        moments.showProfile(code)
    end
    shownFor = specialization
end

function addon.switch(on)
    if on == options.on then
        return
    end
    options.setOn(on)
    if on then
        queue.enter("loading")
    else
        tour.stop()
        queue.wane()
    end
    addon.update()
end

function addon.chooseEffect(key, code)
    options.setEffect(key, code)
    addon.update()
end

function addon.chooseWidth(width)
    options.setWidth(width)
    strip.place(width)
end

function addon.chooseFast(fast)
    options.setFast(fast)
    addon.pace.choose(fast)
end

function addon.chooseProfile(specialization, code)
    options.setProfile(specialization, code)
    shownFor = nil
    showProfile()
end

local function enter(isLogin, isReload)
    local first = not entered
    entered = true
    strip.place(options.width)
    moments.enter()
    moments.watchChatBoxes()
    cooldowns.forget()
    if isReload then
        queue.enter("reload", options.earlierLights())
        shownFor = currentSpecialization()
    elseif isLogin or first then
        queue.enter("login")
        showProfile()
    else
        queue.enter("loading")
    end
    if not options.on then
        queue.wane()
    end
    addon.update()
end

local handlers = {}

function handlers.ADDON_LOADED(name)
    if name == addonName then
        options.load()
        addon.pace.choose(options.fast)
        strip.place(options.width)
        strip.black()
        addon.buildPage()
        show()
    end
end

function handlers.PLAYER_ENTERING_WORLD(isLogin, isReload)
    enter(isLogin, isReload)
    if not lifted then
        veiledUntil = GetTime() + (addon.tellsOfLoading and LONGEST_VEIL or VEIL_UNTOLD)
    end
end

function handlers.LOADING_SCREEN_ENABLED()
    lifted, veiledUntil = false, math.huge
    sender.stop()
end

function handlers.LOADING_SCREEN_DISABLED()
    lifted, veiledUntil = true, GetTime()
end

function handlers.PLAYER_LOGOUT()
    options.keepLights(lights.said)
end

local function place()
    strip.place(options.width)
end
handlers.DISPLAY_SIZE_CHANGED = place
handlers.UI_SCALE_CHANGED = place

handlers.PLAYER_SPECIALIZATION_CHANGED = showProfile
handlers.ACTIVE_TALENT_GROUP_CHANGED = showProfile

-- A whisper can open a window of its own.
handlers.CHAT_MSG_WHISPER = moments.watchChatBoxes
handlers.CHAT_MSG_BN_WHISPER = moments.watchChatBoxes

handlers.ACTIONBAR_UPDATE_COOLDOWN = cooldowns.changed
handlers.SPELL_UPDATE_COOLDOWN = cooldowns.changed
handlers.ACTIONBAR_PAGE_CHANGED = cooldowns.changed
handlers.UPDATE_BONUS_ACTIONBAR = cooldowns.changed
handlers.UPDATE_SHAPESHIFT_FORM = cooldowns.changed

function handlers.ACTIONBAR_SLOT_CHANGED(action)
    cooldowns.forget(action)
    cooldowns.changed()
end

frame:SetScript("OnEvent", function(_, event, ...)
    if handlers[event] then
        handlers[event](...)
    end
    if entered and moments.events[event] and (event ~= "UNIT_HEALTH" or ... == "player") then
        moments.event(event, GetTime())
    end
end)

frame:SetScript("OnUpdate", function()
    local now = GetTime()
    if not entered or now < veiledUntil then
        return
    end
    calibration.picture(now)
    if calibration.isOn() then
        return
    end
    tour.tick(now)
    moments.tick(now)
    cooldowns.look(now)
    if options.on then
        queue.tick(now)
    else
        show()
    end
    sender.picture(now)
end)

-- Clients differ in the events that they know, and raise an error for others.
local function listen(event)
    if C_EventUtils and C_EventUtils.IsEventValid and not C_EventUtils.IsEventValid(event) then
        return false
    elseif event == "UNIT_HEALTH" and frame.RegisterUnitEvent then
        return (pcall(frame.RegisterUnitEvent, frame, event, "player"))
    end
    return (pcall(frame.RegisterEvent, frame, event))
end

for event in pairs(handlers) do
    listen(event)
end
for event in pairs(moments.events) do
    listen(event)
end
addon.tellsOfLoading = listen("LOADING_SCREEN_DISABLED")
