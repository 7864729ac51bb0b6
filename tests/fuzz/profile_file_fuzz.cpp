#include "fuzz/fuzz_target.h"
#include "lighting/keyboard_layout.h"
#include "profiles/profile_file.h"

#include <algorithm>
#include <cstdlib>

namespace {

using namespace glimra;

struct NoLog final : platform::SystemLog {
    void write(std::string_view) override {}
};

const profiles::CanvasKeyCodes& canvasKeyCodes() {
    static const profiles::CanvasKeyCodes codes = [] {
        profiles::CanvasKeyCodes all;
        for (const lighting::KeyRect& key : lighting::kKeyboardLayout)
            all.push_back(key.code);
        std::ranges::sort(all);
        return all;
    }();
    return codes;
}

void require(bool holds) {
    if (!holds)
        std::abort();
}

bool isFraction(double component) {
    return component >= 0.0 && component <= 1.0;
}

} // namespace

/// Whatever is accepted is within its limits, and survives being written and read again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    NoLog log;
    const auto content = profiles::decodeProfiles({data, size}, canvasKeyCodes(), log);
    if (!content)
        return 0;
    require(content->blinkTime >= 0.0 && content->blinkTime <= 5.0);
    for (const lighting::ColorSet& set : content->colorSets)
        for (const lighting::Color& color : set)
            require(isFraction(color.red) && isFraction(color.green) && isFraction(color.blue));
    for (const lighting::KeyMap& map : content->keyMaps)
        for (const int slot : map)
            require(slot >= 0 && slot <= 12);
    const auto again = profiles::decodeProfiles(profiles::encodeProfiles(*content, canvasKeyCodes()).bytes(),
                                                canvasKeyCodes(), log);
    require(again && again->colorSets == content->colorSets && again->keyMaps == content->keyMaps &&
            again->useCooldowns == content->useCooldowns);
    return 0;
}

std::vector<FuzzInput> fuzzSeeds() {
    profiles::ProfileFileContent content;
    content.applicationVersion = 1.2F;
    content.blinkTime = 1.5;
    for (std::size_t i = 0; i < content.keyMaps.size(); ++i) {
        content.useCooldowns[i] = i % 2 == 0;
        content.colorSets[i].fill({0.25, 0.5, 1.0});
        content.keyMaps[i].assign(lighting::kKeyCodeCount, static_cast<int>(i));
    }
    return {profiles::encodeProfiles(content, canvasKeyCodes()).bytes(), {0x10, 0xBF, 0x1F, 0x49}};
}
