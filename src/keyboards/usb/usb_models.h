#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace glimra::keyboards {

/// The USB vendor number of every keyboard in the table.
inline constexpr std::uint16_t kUsbVendor = 0x046D;

/// The USB interface by which the lights of all of them are set.
inline constexpr unsigned kLightsInterface = 1;

enum class Lights : std::uint8_t {
    PerKey,
    /// One colour for the whole keyboard.
    Single
};

/// A model of keyboard that the USB driver lights, with what differs from model to model.
struct UsbModel {
    std::uint16_t product;
    std::string_view name;
    Lights lights = Lights::PerKey;
    bool numberPad = true;
    bool logo = false;
    bool badge = false;
    /// How many keys it has of G1, G2 and so on.
    std::uint32_t macroKeys = 0;
};

/// All models. The udev rule in packaging/udev, which lets the player's programs open them, names the same
/// products.
inline constexpr std::array<UsbModel, 13> kUsbModels{{
    {.product = 0xC32B, .name = "G910", .logo = true, .badge = true, .macroKeys = 9},
    {.product = 0xC330, .name = "G410", .numberPad = false},
    {.product = 0xC331, .name = "G810", .logo = true},
    {.product = 0xC333, .name = "G610", .logo = true},
    {.product = 0xC335, .name = "G910", .logo = true, .badge = true, .macroKeys = 9},
    {.product = 0xC336, .name = "G213", .lights = Lights::Single},
    {.product = 0xC337, .name = "G810", .logo = true},
    {.product = 0xC338, .name = "G610", .logo = true},
    {.product = 0xC339, .name = "G Pro", .logo = true},
    {.product = 0xC33A, .name = "G413", .lights = Lights::Single},
    {.product = 0xC33C, .name = "G513"},
    {.product = 0xC33F, .name = "G815", .logo = true, .macroKeys = 5},
    {.product = 0xC342, .name = "G512"},
}};

/// The model with this product number; null when the table has none.
constexpr const UsbModel* findUsbModel(std::uint16_t product) {
    const auto* model = std::ranges::find(kUsbModels, product, &UsbModel::product);
    return model == kUsbModels.end() ? nullptr : model;
}

} // namespace glimra::keyboards
