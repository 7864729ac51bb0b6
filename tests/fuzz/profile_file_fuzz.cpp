#include "fuzz/fuzz_target.h"
#include "lighting/keyboard_layout.h"
#include "platform/silent_log.h"
#include "profiles/profile_file.h"

#include <algorithm>

namespace {

using namespace glimra;
using glimra::tests::must;

const profiles::CanvasKeyCodes kCanvasKeyCodes = [] {
    profiles::CanvasKeyCodes all;
    for (const lighting::KeyRect& key : lighting::kKeyboardLayout)
        all.push_back(key.code);
    std::ranges::sort(all);
    return all;
}();

} // namespace

/// Whatever is accepted is within its limits, and survives being written and read again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    platform::SilentLog log;
    const auto content = profiles::decodeProfiles({data, size}, kCanvasKeyCodes, log);
    if (!content)
        return 0;
    must(content->blinkTime >= 0.0 && content->blinkTime <= 5.0, "the blink time is limited");
    for (const lighting::ColorSet& set : content->colorSets)
        for (const lighting::Color& color : set)
            for (const double component : {color.red, color.green, color.blue})
                must(component >= 0.0 && component <= 1.0, "a colour is limited");
    for (const lighting::KeyMap& map : content->keyMaps)
        for (const int slot : map)
            must(slot >= 0 && slot <= 12, "a slot is one of thirteen");
    const auto again = profiles::decodeProfiles(profiles::encodeProfiles(*content, kCanvasKeyCodes).bytes(),
                                                kCanvasKeyCodes, log);
    must(again && again->colorSets == content->colorSets && again->keyMaps == content->keyMaps &&
             again->useCooldowns == content->useCooldowns,
         "what is accepted comes back as it was");
    return 0;
}

std::vector<glimra::tests::FuzzSeed> glimra::tests::fuzzSeeds() {
    profiles::ProfileFileContent content;
    content.applicationVersion = 1.2F;
    content.blinkTime = 1.5;
    for (std::size_t i = 0; i < content.keyMaps.size(); ++i) {
        content.useCooldowns[i] = i % 2 == 0;
        content.colorSets[i].fill({0.25, 0.5, 1.0});
        content.keyMaps[i].assign(lighting::kKeyCodeCount, static_cast<int>(i));
    }
    return {{"whole", profiles::encodeProfiles(content, kCanvasKeyCodes).bytes()},
            {"marker", {0x10, 0xBF, 0x1F, 0x49}}};
}
