#include "tools/replay/state_dump.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <span>

namespace glimra::tools {

namespace {

using nlohmann::ordered_json;

ordered_json json(const platform::Color& color) {
    return {color.red, color.green, color.blue};
}

ordered_json json(const lighting::DimmedKeys& keys) {
    ordered_json object = ordered_json::object();
    for (const lighting::KeyCode key : keys)
        object[std::to_string(key)] = 1;
    return object;
}

ordered_json json(const platform::ScreenRect& rect) {
    return {rect.x, rect.y, rect.width, rect.height};
}

ordered_json json(const lighting::ColorSet& colors) {
    ordered_json array = ordered_json::array();
    for (const platform::Color& color : colors)
        array.push_back(json(color));
    return array;
}

ordered_json hexadecimal(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += kDigits[byte >> 4U];
        text += kDigits[byte & 0xFU];
    }
    return text;
}

ordered_json json(const platform::NumberArray& numbers) {
    ordered_json array = ordered_json::array();
    for (const platform::Number& number : numbers)
        std::visit([&array](auto value) { array.push_back(value); }, number);
    return array;
}

ordered_json json(const platform::StoredValue& stored) {
    return std::visit(
        [](const auto& value) -> ordered_json {
            using Value = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<Value, platform::Data>)
                return hexadecimal(value);
            else if constexpr (std::is_same_v<Value, platform::NumberArray>)
                return json(value);
            else
                return value;
        },
        stored);
}

// What each kind of outlet has to show; nothing of one that is no control.

ordered_json json(const platform::Window& window) {
    return {{"visible", window.visible.get()}};
}
ordered_json json(const platform::RadioGroup& group) {
    return {{"enabled", group.enabled.get()}, {"selected", group.selectedTag.get()}};
}
ordered_json json(const platform::ColorWell& well) {
    return {{"enabled", well.enabled.get()}, {"color", json(well.color.get())}};
}
ordered_json json(const platform::PopUp& popUp) {
    return {{"enabled", popUp.enabled.get()},
            {"selected", popUp.selected.get()},
            {"title", popUp.selectedTitle()}};
}
ordered_json json(const platform::TextField& field) {
    return {{"enabled", field.enabled.get()}, {"text", field.text.get()}};
}
ordered_json json(const platform::Label& label) {
    return {{"text", label.text.get()}};
}
ordered_json json(const platform::CheckBox& box) {
    return {{"on", box.on.get()}, {"enabled", box.enabled.get()}};
}
ordered_json json(const platform::Button& button) {
    return {{"enabled", button.enabled.get()}};
}
ordered_json json(const platform::MenuItem& item) {
    return {{"on", item.on.get()}, {"enabled", item.enabled.get()}, {"title", item.title}};
}
ordered_json json(const platform::TextView&) {
    return {};
}
ordered_json json(const platform::CanvasView&) {
    return {};
}

} // namespace

ordered_json dumpState(const app::AppDelegate& delegate) {
    const lighting::LightingState& lighting = delegate.lightingState();
    const events::EffectState& effects = delegate.effectState();
    const events::OptionState& options = delegate.optionState();
    const events::MessageState& messages = delegate.messageState();
    const events::CooldownState& cooldowns = delegate.cooldownState();
    const profiles::ProfileState& profile = delegate.profileState();
    const screenlink::StripGeometry geometry = delegate.stripGeometry().copy();
    return {
        {"keyboardColorSet", json(lighting.keyboardColorSet)},
        {"keyToColorMap", lighting.keyToColorMap},
        {"activeColorProfile", profile.activeColorProfile},
        {"chatReturnColorProfile", profile.chatReturnColorProfile},
        {"profileTouched", profile.profileTouched},
        {"dimmedKeys", json(lighting.dimmedKeys)},
        {"scanWidth", delegate.scanSettings().scanWidth},
        {"scanOffset", delegate.scanSettings().scanOffset},
        {"myScanRect", json(geometry.myScanRect)},
        {"pixelOffsets", geometry.pixelOffsets},
        {"messageQueue", messages.messageQueue.copy()},
        {"currentMessage", messages.currentMessage},
        {"combatAnimationPlaying", effects.combatAnimationPlaying},
        {"singleColorModeRedFlash", effects.singleColorModeRedFlash},
        {"deadAnimationPlaying", effects.deadAnimationPlaying},
        {"shadowAnimationPlaying", effects.shadowAnimationPlaying},
        {"whisperLightActive", effects.whisperLightActive},
        {"suspendScreenReads", delegate.readerFlags().suspendScreenReads.load()},
        {"keepTheScannerRunning", delegate.readerFlags().keepTheScannerRunning.load()},
        {"debugMode", delegate.logState().debugMode},
        {"updatePause", delegate.logState().updatePause},
        {"useSpellCooldowns", lighting.useSpellCooldowns},
        {"blinkTime", cooldowns.blinkTime},
        {"WoWisInTheForeground", messages.WoWisInTheForeground},
        {"autoToggleProfile2", options.autoToggleProfile2},
        {"combatChatWarning", options.combatChatWarning},
        {"confirmCalibrate", messages.confirmCalibrate},
        {"useSingleColorMode", options.useSingleColorMode},
        {"supressCooldownBlinkCounter", cooldowns.supressCooldownBlinkCounter},
        {"combatPulseMs", effects.combatPulseMs},
        {"blinkPeriod", cooldowns.blinkPeriod},
        {"singleColorFlag", lighting.singleColorFlag},
    };
}

ordered_json dumpDefaults(const platform::UserDefaults& defaults) {
    ordered_json object = ordered_json::object();
    for (const auto& [key, value] : defaults.all())
        object[key] = json(value);
    return object;
}

ordered_json dumpControls(app::Outlets& outlets) {
    ordered_json object = ordered_json::object();
    for (const app::NamedOutlet& outlet : app::namedOutlets(outlets)) {
        ordered_json shown = std::visit([](const auto* control) { return json(*control); }, outlet.control);
        if (!shown.is_null())
            object[outlet.name] = std::move(shown);
    }
    return object;
}

ordered_json dumpBitmap(const app::AppDelegate& delegate, std::size_t profile) {
    return hexadecimal(delegate.lightingState().keyboardColorBitmap.at(profile));
}

} // namespace glimra::tools
