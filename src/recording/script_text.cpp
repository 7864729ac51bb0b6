#include "recording/script_text.h"

#include "platform/decimal_text.h"
#include "platform/hexadecimal.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace glimra::recording {

namespace {

using nlohmann::json;

std::string jsonText(std::string_view text) {
    return json(text).dump(-1, ' ', true, json::error_handler_t::replace);
}

/// Arrays are key maps. JSON has no NaN or infinity, so these become -1: neither names a slot.
json toJson(const platform::NumberArray& numbers) {
    json array = json::array();
    for (const platform::Number& number : numbers) {
        const auto* const real = std::get_if<double>(&number);
        if (real != nullptr && !std::isfinite(*real))
            array.push_back(-1);
        else
            std::visit([&array](auto value) { array.push_back(value); }, number);
    }
    return array;
}

std::string joined(std::initializer_list<double> numbers) {
    std::string text;
    for (const double number : numbers)
        text += ' ' + json(number).dump();
    return text;
}

/// What stands behind an action's selector.
struct ArgumentText {
    std::string operator()(std::monostate) const { return {}; }
    std::string operator()(bool on) const { return on ? " on" : " off"; }
    std::string operator()(const app::ItemIndex& item) const { return " " + std::to_string(item.index); }
    std::string operator()(const app::ItemTitle& item) const { return " " + jsonText(item.title); }
    std::string operator()(const app::EnteredText& entered) const {
        return " " + jsonText(json(platform::leadingNumber(entered.text)).dump());
    }
    std::string operator()(const app::RadioTag& chosen) const { return " " + std::to_string(chosen.tag); }
    std::string operator()(const app::ButtonTag& clicked) const { return " " + std::to_string(clicked.tag); }
    std::string operator()(const app::WellColor& well) const {
        return " " + std::to_string(well.tag) + joined({well.color.red, well.color.green, well.color.blue});
    }
    std::string operator()(const app::CanvasPoint& point) const { return joined({point.x, point.y}); }
    std::string operator()(const app::WindowName& window) const { return " " + jsonText(window.name); }
};

} // namespace

std::optional<std::string> settingLine(const std::string& key, const platform::StoredValue& value) {
    if (std::holds_alternative<std::string>(value))
        return std::nullopt;
    if (const auto* bytes = std::get_if<platform::Data>(&value))
        return bytes->empty()
                   ? std::nullopt
                   : std::optional("default-data " + jsonText(key) + " " + platform::hexadecimal(*bytes));
    json number;
    if (const auto* array = std::get_if<platform::NumberArray>(&value))
        number = toJson(*array);
    else if (const auto* flag = std::get_if<bool>(&value))
        number = *flag;
    else if (const auto* integer = std::get_if<std::int64_t>(&value))
        number = *integer;
    else
        number = std::get<double>(value);
    const std::string text = number.dump();
    // A number that JSON cannot express counts as absent anyway.
    if (text.find("null") != std::string::npos)
        return std::nullopt;
    return "default " + jsonText(key) + " " + text;
}

std::string stripLine(const std::optional<screenlink::Cells>& cells) {
    if (!cells)
        return "strip off";
    std::string line = "strip";
    for (const screenlink::Cell& cell : *cells) {
        line += ' ';
        for (const bool isOn : {cell.red, cell.green, cell.blue})
            line += isOn ? "ff" : "00";
    }
    return line;
}

std::string frontLine(const std::optional<platform::RunningApplication>& application) {
    if (!application)
        return "front none";
    const bool isGame = application->bundleIdentifier == platform::kGameIdentifier;
    return "front " + jsonText(isGame ? platform::kGameIdentifier : "");
}

std::string waitLine(platform::Duration duration) {
    // Microseconds are finer than any timer, and still short to read.
    const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(duration).count();
    std::string fraction = std::to_string(microseconds % 1'000'000);
    fraction.insert(0, 6 - fraction.size(), '0');
    return "wait " + std::to_string(microseconds / 1'000'000) + "." + fraction;
}

std::string actionLine(const app::ActionRow& action, const app::ActionArgument& argument) {
    return "action " + jsonText(action.selector) + std::visit(ArgumentText{}, argument);
}

} // namespace glimra::recording
