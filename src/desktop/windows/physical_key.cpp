#include "desktop/windows/physical_key.h"

#include <algorithm>
#include <array>
#include <utility>

namespace glimra::desktop {

namespace {

using lighting::KeyCode;

/// X11 and Wayland count from 8 on.
constexpr KeyCode kFirstScanCode = 8;

/// Keys whose number in the kernel (linux/input-event-codes.h) is not their code here. The others have the
/// same, since both go back to the first PC keyboards.
constexpr std::array<std::pair<KeyCode, KeyCode>, 20> kExtended{{
    {96, 0x11C},  {97, 0x11D},  {98, 0x135},  {99, 0x137},  {100, 0x138}, {102, 0x147}, {103, 0x148},
    {104, 0x149}, {105, 0x14B}, {106, 0x14D}, {107, 0x14F}, {108, 0x150}, {109, 0x151}, {110, 0x152},
    {111, 0x153}, {119, 0x145}, {125, 0x15B}, {126, 0x15C}, {127, 0x15D}, {139, 0x15D},
}};
constexpr KeyCode kFirstExtended = 96;

} // namespace

std::optional<KeyCode> physicalKey(const QKeyEvent& event) {
    if (event.nativeScanCode() <= kFirstScanCode)
        return std::nullopt;
    const KeyCode number = event.nativeScanCode() - kFirstScanCode;
    const auto* const extended = std::ranges::find(kExtended, number, &std::pair<KeyCode, KeyCode>::first);
    const KeyCode code = extended != kExtended.end() ? extended->second
                         : number < kFirstExtended   ? number
                                                     : lighting::kNoKey;
    if (code == lighting::kNoKey || !lighting::displayNameOfKey(code))
        return std::nullopt;
    return code;
}

} // namespace glimra::desktop
