#include "app/color_wells.h"

#include "profiles/color_slots.h"

namespace glimra::app {

namespace {

/// Of a paint button whose tag means no colour of its own.
constexpr int kLastSlot = 12;

} // namespace

void applyColorSetToWells(Outlets& outlets, const lighting::ColorSet& colorSet,
                          profiles::CanvasBuffer& canvas) {
    for (platform::ColorWell* well : colorWells(outlets))
        well->color.set(lighting::slotColor(colorSet, slotOfWell(*well)));
    choosePaintColor(outlets, canvas);
}

void choosePaintColor(const Outlets& outlets, profiles::CanvasBuffer& canvas) {
    canvas.paintColor = profiles::slotOfTag(outlets.colorButtonGroup.selectedTag.get(), kLastSlot);
}

int slotOfWell(const platform::ColorWell& well) {
    return profiles::slotOfTag(well.tag, lighting::kCooldownSlot);
}

platform::ColorWell& wellOfTag(Outlets& outlets, int tag) {
    for (platform::ColorWell* well : colorWells(outlets))
        if (well->tag == tag)
            return *well;
    return outlets.keyCoolColor;
}

std::array<platform::ColorWell*, lighting::kColorSlotCount> colorWells(Outlets& outlets) {
    return {&outlets.keyCoolColor, &outlets.colorA, &outlets.colorB, &outlets.colorC, &outlets.colorD,
            &outlets.colorE,       &outlets.colorF, &outlets.colorG, &outlets.colorH, &outlets.colorI,
            &outlets.colorJ,       &outlets.colorK, &outlets.colorL};
}

} // namespace glimra::app
