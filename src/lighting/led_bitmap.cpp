#include "lighting/led_bitmap.h"

namespace glimra::lighting {

Color mappedColor(const ColorSet& colorSet, const KeyMap& keyMap, KeyCode code) {
    if (code >= keyMap.size())
        return {};
    const auto slot = static_cast<std::size_t>(keyMap[code]);
    return slot < colorSet.size() ? colorSet[slot] : Color{};
}

LedBitmap buildColorBitmap(const ColorSet& colorSet, const KeyMap& keyMap) {
    return buildColorBitmapWithCooldowns(colorSet, keyMap, false, {});
}

LedBitmap buildColorBitmapWithCooldowns(const ColorSet& colorSet, const KeyMap& keyMap, bool useCooldowns,
                                        const DimmedKeys& dimmedKeys) {
    LedBitmap bitmap = blankBitmap();
    for (const KeyBitmapOffset& key : keyBitmapOffsets) {
        const bool dimmed = useCooldowns && dimmedKeys.contains(key.code);
        paintCell(bitmap, key.offset,
                  toRgb(dimmed ? colorSet[kCooldownSlot] : mappedColor(colorSet, keyMap, key.code)));
    }
    return bitmap;
}

void paintCell(LedBitmap& bitmap, std::size_t offset, Rgb color) {
    bitmap[offset] = color.blue;
    bitmap[offset + 1] = color.green;
    bitmap[offset + 2] = color.red;
}

} // namespace glimra::lighting
