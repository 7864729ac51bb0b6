#include "tools/replay/state_dump.h"

#include "platform/hexadecimal.h"
#include "profiles/color_archive.h"

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

/// Null before the launch, when there is no rectangle yet.
ordered_json json(const platform::ScreenRect& rect) {
    if (rect == platform::ScreenRect{})
        return nullptr;
    return {rect.x, rect.y, rect.width, rect.height};
}

ordered_json json(std::span<const platform::Color> colors) {
    ordered_json array = ordered_json::array();
    for (const platform::Color& color : colors)
        array.push_back(json(color));
    return array;
}

ordered_json json(const profiles::CanvasBuffer& canvas) {
    return {{"paintColor", canvas.paintColor},
            {"keyColorSet", json(canvas.keyColorSet)},
            {"keysToColors", canvas.keysToColors},
            {"usingActionbarCooldowns", canvas.usingActionbarCooldowns},
            {"dimmedKeys", json(canvas.dimmedKeys)}};
}

/// Bytes that are a stored colour become a colour; others become hexadecimal digits.
ordered_json json(const platform::Data& data) {
    if (const std::optional<platform::Color> color = profiles::unarchiveColor(data))
        return json(*color);
    return platform::hexadecimal(data);
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
            if constexpr (std::is_same_v<Value, platform::Data> ||
                          std::is_same_v<Value, platform::NumberArray>)
                return json(value);
            else
                return value;
        },
        stored);
}

// What each kind of outlet shows; nothing for one that is no control.

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
ordered_json json(const platform::Picture&) {
    return {};
}
ordered_json json(const platform::CanvasView&) {
    return {};
}

} // namespace

ordered_json dumpState(const app::State& state) {
    const screenlink::StripGeometry geometry = state.stripGeometry.copy();
    return {
        {"keyboardColorSet", json(state.lighting.keyboardColorSet)},
        {"keyToColorMap", state.lighting.keyToColorMap},
        {"activeColorProfile", state.profile.activeColorProfile},
        {"chatReturnColorProfile", state.profile.chatReturnColorProfile},
        {"profileTouched", state.profile.profileTouched},
        {"dimmedKeys", json(state.lighting.dimmedKeys)},
        {"scanWidth", state.scan.scanWidth},
        {"scanOffset", state.scan.scanOffset},
        {"myScanRect", json(geometry.myScanRect)},
        {"pixelOffsets", geometry.pixelOffsets},
        {"messageQueue", state.messages.messageQueue.copy()},
        {"currentMessage", state.messages.currentMessage},
        {"combatAnimationPlaying", state.effects.combatAnimationPlaying},
        {"singleColorModeRedFlash", state.effects.singleColorModeRedFlash},
        {"deadAnimationPlaying", state.effects.deadAnimationPlaying},
        {"shadowAnimationPlaying", state.effects.shadowAnimationPlaying},
        {"whisperLightActive", state.effects.whisperLightActive},
        {"suspendScreenReads", state.readerFlags.suspendScreenReads.load()},
        {"keepTheScannerRunning", state.readerFlags.keepTheScannerRunning.load()},
        {"debugMode", state.log.debugMode},
        {"updatePause", state.log.updatePause},
        {"useSpellCooldowns", state.lighting.useSpellCooldowns},
        {"blinkTime", state.cooldowns.blinkTime},
        {"WoWisInTheForeground", state.messages.WoWisInTheForeground},
        {"WowAppName", state.launcher.WowAppName},
        {"WowClassicAppName", state.launcher.WowClassicAppName},
        {"BNAppName", state.launcher.BNAppName},
        {"autoToggleProfile2", state.options.autoToggleProfile2},
        {"combatChatWarning", state.options.combatChatWarning},
        {"confirmCalibrate", state.messages.confirmCalibrate},
        {"useSingleColorMode", state.options.useSingleColorMode},
        {"supressCooldownBlinkCounter", state.cooldowns.supressCooldownBlinkCounter},
        {"saveActionBarKeyMap", state.saveActionBarKeyMap},
        {"combatPulseMs", state.effects.combatPulseMs},
        {"blinkPeriod", state.cooldowns.blinkPeriod},
        {"singleColorFlag", state.lighting.singleColorFlag},
        {"canvas", json(state.canvas)},
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
    for (const app::NamedOutlet& outlet : app::namedOutlets()) {
        ordered_json shown =
            std::visit([](const auto* control) { return json(*control); }, outlet.in(outlets));
        if (!shown.is_null())
            object[std::string(outlet.name)] = std::move(shown);
    }
    return object;
}

ordered_json dumpBitmap(const app::State& state, std::size_t profile) {
    return platform::hexadecimal(state.lighting.keyboardColorBitmap.at(profile));
}

} // namespace glimra::tools
