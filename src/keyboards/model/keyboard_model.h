#pragma once

#include "keyboards/model/key_effect.h"
#include "lighting/color_conversion.h"
#include "lighting/keyboard_layout.h"
#include "lighting/lighting_output.h"
#include "platform/led_driver.h"

#include <array>
#include <optional>

namespace glimra::keyboards {

using lighting::Percentages;
using platform::KeyName;

inline constexpr std::size_t kKeyCount = lighting::kKeyboardLayout.size();

/// A colour for every key, in the order of `lighting::kKeyboardLayout`.
using KeyColors = std::array<Rgb, kKeyCount>;

/// Behind the keys' positions: the light of a keyboard, or of a part of one, that has none for each key.
inline constexpr std::size_t kWholeBoard = kKeyCount;
inline constexpr std::size_t kLightCount = kKeyCount + 1;
/// `KeyColors`, then the colour of `kWholeBoard`.
using LightColors = std::array<Rgb, kLightCount>;

/// The position in `lighting::kKeyboardLayout` of the key that the LED functions call `keyName`; none when no
/// key has that name. Takes constant time.
std::optional<std::size_t> keyIndex(KeyName keyName);

/// What a keyboard with a light behind each key shows: a base colour for each key, and at most one effect (a
/// flash or a pulse) for each key. Both are functions of time, so nothing has to tick. A plain value: it has
/// no clock (all times are given to it), it allocates nothing, and a copy is independent of the original. It
/// has no lock; threads that share one must lock it themselves.
class KeyboardModel {
public:
    /// At first the keyboard is dark, and calls are for all types of device.
    KeyboardModel() = default;

    /// Carries out a call at the moment `now`. Returns false, and changes nothing, when the call is about a
    /// key that does not exist.
    ///
    /// - While the chosen target devices do not include those with a colour for each key, every call but
    ///   `SetTargetDevice` changes nothing.
    /// - Percentages below 0 count as 0, those above 100 as 100.
    /// - A base colour that is set while an effect runs is seen when the effect is over.
    /// - A new effect on a key replaces the one that runs there. A flash with a duration below 0 and a pulse
    ///   with one of 0 or below are over at once.
    /// - A flash with an interval of 0 or below shows its colour without dark halves.
    bool perform(const platform::LedCall& call, Time now);

    /// Makes another keyboard show the same. Effects that end by themselves are left out; the others begin
    /// anew there.
    void repeatOn(platform::LedDriver& driver) const;

    /// The colours at a moment. A moment before an effect began shows the effect's beginning.
    KeyColors colorsAt(Time time) const;
    /// The same as a keyboard shows it, in steps (see `stepAt`), and the colour for a light that stands for
    /// all keys: that of most keys or, while an effect runs on many keys, of most of those. Macro keys, logo
    /// and badge are not counted. Among colours of equally many keys it is the one that comes first in the
    /// layout.
    LightColors lightsAt(Time time) const;
    /// The next moment later than `after` at which lights can differ from those before; none when they stay
    /// as they are.
    std::optional<Time> nextChange(Time after) const;

private:
    bool apply(const platform::SetTargetDevice& call, Time now);
    bool apply(const platform::SetLighting& call, Time now);
    bool apply(const platform::SetLightingFromBitmap& call, Time now);
    bool apply(const platform::SetLightingForKeyWithKeyName& call, Time now);
    bool apply(const platform::FlashSingleKey& call, Time now);
    bool apply(const platform::PulseSingleKey& call, Time now);
    bool apply(const platform::StopEffectsOnKey& call, Time now);
    bool apply(const platform::StopEffects& call, Time now);
    bool isMeant() const;
    bool putEffect(KeyName keyName, const KeyEffect& effect);

    int m_targetDevice = lighting::kAllDevices;
    KeyColors m_base{};
    std::array<KeyEffect, kKeyCount> m_effects{};
};

} // namespace glimra::keyboards
