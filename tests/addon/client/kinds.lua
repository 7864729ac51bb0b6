-- The kinds of client that an add-on meets. This table alone tells them apart: names of functions, methods
-- ("Class:Name"), events and fields that a kind lacks. Whatever is not named here, every kind has.

local function words(text)
    local list = {}
    for word in text:gmatch("%S+") do
        list[#list + 1] = word
    end
    return list
end

local events = words [[
    ADDON_LOADED VARIABLES_LOADED PLAYER_LOGIN PLAYER_LOGOUT PLAYER_ENTERING_WORLD PLAYER_LEAVING_WORLD
    LOADING_SCREEN_ENABLED LOADING_SCREEN_DISABLED DISPLAY_SIZE_CHANGED UI_SCALE_CHANGED ZONE_CHANGED_NEW_AREA
    PLAYER_REGEN_DISABLED PLAYER_REGEN_ENABLED ENCOUNTER_START ENCOUNTER_END
    UNIT_HEALTH UNIT_MAXHEALTH PLAYER_DEAD PLAYER_ALIVE PLAYER_UNGHOST UPDATE_STEALTH UPDATE_SHAPESHIFT_FORM
    ACTIONBAR_UPDATE_COOLDOWN ACTIONBAR_SLOT_CHANGED ACTIONBAR_PAGE_CHANGED SPELL_UPDATE_COOLDOWN SPELL_UPDATE_CHARGES
    UPDATE_BONUS_ACTIONBAR UPDATE_VEHICLE_ACTIONBAR UPDATE_OVERRIDE_ACTIONBAR
    CHAT_MSG_WHISPER CHAT_MSG_BN_WHISPER UPDATE_CHAT_WINDOWS
    PLAYER_LEVEL_UP ACHIEVEMENT_EARNED QUEST_TURNED_IN PLAYER_MONEY
    READY_CHECK LFG_PROPOSAL_SHOW PARTY_INVITE_REQUEST DUEL_REQUESTED
    PLAYER_SPECIALIZATION_CHANGED ACTIVE_TALENT_GROUP_CHANGED
]]

local newNames = words [[
    C_ActionBar C_AddOns C_EventUtils C_Timer Settings GetPhysicalScreenSize issecretvalue
    Region:SetSize Region:SetShown Frame:RegisterUnitEvent Frame:SetIgnoreParentScale Frame:SetIgnoreParentAlpha
    Texture:SetColorTexture Texture:SetSnapToPixelGrid Texture:SetTexelSnappingBias
    LOADING_SCREEN_ENABLED LOADING_SCREEN_DISABLED ENCOUNTER_START ENCOUNTER_END SPELL_UPDATE_CHARGES
    UPDATE_VEHICLE_ACTIONBAR UPDATE_OVERRIDE_ACTIONBAR QUEST_TURNED_IN ACHIEVEMENT_EARNED CHAT_MSG_BN_WHISPER
]]
local oldNames = words [[
    GetActionCooldown GetActionBarPage GetBonusBarOffset GetScreenResolutions GetCurrentResolution GetAddOnMetadata
]]
local specializations = words [[ C_SpecializationInfo GetSpecialization PLAYER_SPECIALIZATION_CHANGED ]]
local talentGroups = words [[ GetActiveTalentGroup ]]

-- interface: its number
-- lacks:     lists of names
-- secrets:   what restricted moments hide is hidden
-- old:       the world's events come without arguments, SetTexture takes a color, an add-on may be out of date
local kinds = {
    retail = { interface = 120100, secrets = true,
        lacks = { oldNames, talentGroups, words "ACTIVE_TALENT_GROUP_CHANGED" } },
    mists = { interface = 50504, lacks = { oldNames, talentGroups } },
    anniversary = { interface = 20506, lacks = { oldNames, specializations } },
    -- An older build: what tells a cooldown from the global one is not there yet.
    era = { interface = 11509, lacks = { oldNames, specializations, words "isActive isOnGCD LFG_PROPOSAL_SHOW" } },
    old = { interface = 30300, old = true, lacks = { newNames, specializations } },
}

for name, kind in pairs(kinds) do
    kind.name = name
    local lacks = {}
    for _, list in ipairs(kind.lacks) do
        for _, lacking in ipairs(list) do
            lacks[lacking] = true
        end
    end
    kind.lacks = lacks
    kind.events = {}
    for _, event in ipairs(events) do
        kind.events[event] = not lacks[event] or nil
    end
end

return kinds
