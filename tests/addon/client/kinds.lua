-- The kinds of client that an add-on meets. This table alone tells them apart: names of functions, methods, events and
-- fields that a kind lacks. Whatever is not named here, every kind has.

local events = [[
    ADDON_LOADED PLAYER_LOGOUT PLAYER_ENTERING_WORLD LOADING_SCREEN_ENABLED LOADING_SCREEN_DISABLED
    DISPLAY_SIZE_CHANGED UI_SCALE_CHANGED ZONE_CHANGED_NEW_AREA PLAYER_REGEN_DISABLED PLAYER_REGEN_ENABLED
    UNIT_HEALTH PLAYER_DEAD PLAYER_ALIVE PLAYER_UNGHOST UPDATE_STEALTH UPDATE_SHAPESHIFT_FORM
    ACTIONBAR_UPDATE_COOLDOWN ACTIONBAR_SLOT_CHANGED ACTIONBAR_PAGE_CHANGED SPELL_UPDATE_COOLDOWN UPDATE_BONUS_ACTIONBAR
    CHAT_MSG_WHISPER CHAT_MSG_BN_WHISPER PLAYER_LEVEL_UP ACHIEVEMENT_EARNED QUEST_TURNED_IN PLAYER_MONEY
    READY_CHECK LFG_PROPOSAL_SHOW PARTY_INVITE_REQUEST DUEL_REQUESTED
    PLAYER_SPECIALIZATION_CHANGED ACTIVE_TALENT_GROUP_CHANGED
]]
local oldNames = " GetActionCooldown GetActionBarPage GetBonusBarOffset "
local specializations = " C_SpecializationInfo GetSpecialization PLAYER_SPECIALIZATION_CHANGED "

-- secrets: what restricted moments hide is hidden
-- old:     the world's events come without arguments, SetTexture takes a color
local kinds = {
    retail = { secrets = true, lacks = oldNames .. "GetActiveTalentGroup ACTIVE_TALENT_GROUP_CHANGED" },
    -- An older build: what tells a cooldown from the global one is not there yet.
    era = { lacks = oldNames .. specializations .. "isActive isOnGCD LFG_PROPOSAL_SHOW" },
    old = { old = true, lacks = specializations .. [[
        C_ActionBar C_EventUtils Settings GetPhysicalScreenSize issecretvalue RegisterUnitEvent SetColorTexture
        SetSnapToPixelGrid SetTexelSnappingBias LOADING_SCREEN_ENABLED LOADING_SCREEN_DISABLED QUEST_TURNED_IN
        ACHIEVEMENT_EARNED CHAT_MSG_BN_WHISPER
    ]] },
}

for _, kind in pairs(kinds) do
    local lacks = {}
    for name in kind.lacks:gmatch("%S+") do
        lacks[name] = true
    end
    kind.lacks, kind.events = lacks, {}
    for event in events:gmatch("%S+") do
        kind.events[event] = not lacks[event] or nil
    end
end

return kinds
