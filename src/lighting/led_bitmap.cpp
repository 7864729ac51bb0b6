#include "lighting/led_bitmap.h"

namespace glimra::lighting {

Color slotColor(ColorSetView colorSet, int slot) {
    const auto index = static_cast<std::size_t>(slot);
    return index < colorSet.size() ? colorSet[index] : Color{};
}

Color mappedColor(ColorSetView colorSet, const KeyMap& keyMap, KeyCode code) {
    return code < keyMap.size() ? slotColor(colorSet, keyMap[code]) : Color{};
}

LedBitmap buildColorBitmap(ColorSetView colorSet, const KeyMap& keyMap) {
    return buildColorBitmapWithCooldowns(colorSet, keyMap, false, {});
}

LedBitmap buildColorBitmapWithCooldowns(ColorSetView colorSet, const KeyMap& keyMap, bool useCooldowns,
                                        const DimmedKeys& dimmedKeys) {
    LedBitmap bitmap = blankBitmap();
    for (const KeyBitmapOffset& key : keyBitmapOffsets) {
        const bool dimmed = useCooldowns && dimmedKeys.contains(key.code);
        paintCell(
            bitmap, key.offset,
            toRgb(dimmed ? slotColor(colorSet, kCooldownSlot) : mappedColor(colorSet, keyMap, key.code)));
    }
    return bitmap;
}

void paintCell(LedBitmap& bitmap, std::size_t offset, Rgb color) {
    bitmap[offset] = color.blue;
    bitmap[offset + 1] = color.green;
    bitmap[offset + 2] = color.red;
}

} // namespace glimra::lighting
