-- Lua 5.1, as the game has it. What the add-on may use of the game is listed here; whatever else it reads is a fault.
std = "lua51"
max_line_length = 120

stds.game = {
    read_globals = {
        -- the interface
        "CreateFrame", "UIParent", "WorldFrame", "DEFAULT_CHAT_FRAME", "NUM_CHAT_WINDOWS", "ChatFrame1EditBox", "Settings",
        -- the machine
        "GetTime", "GetPhysicalScreenSize", "GetCVar", "GetScreenResolutions", "GetCurrentResolution", "bit",
        "issecretvalue", "C_EventUtils", "C_Timer",
        -- action bars
        "C_ActionBar", "GetActionCooldown", "GetActionBarPage", "GetBonusBarOffset",
        -- the character
        "UnitHealth", "UnitHealthMax", "UnitIsDead", "UnitIsGhost", "UnitIsDeadOrGhost", "UnitIsFeignDeath",
        "UnitAffectingCombat", "IsStealthed", "GetShapeshiftForm", "GetMoney", "C_SpecializationInfo",
        "GetSpecialization", "GetActiveTalentGroup",
    },
    globals = { "SlashCmdList" },
}

-- In Lua 5.1, but not in the game.
local unsafe = {
    "io", "os", "debug", "package", "require", "module", "dofile", "loadfile", "load", "getfenv", "setfenv", "newproxy",
    "gcinfo",
}

-- Slash commands are globals of their own names.
local slashCommands = { "111/SLASH_.*", "112/SLASH_.*", "113/SLASH_.*" }

files["addon"] = { std = "lua51+game", globals = { "GlimraxmitDB" }, not_globals = unsafe, ignore = slashCommands }
