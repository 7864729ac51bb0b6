#include "desktop/windows/color_name.h"

#include "app/palette_check.h"

#include <algorithm>
#include <array>

namespace glimra::desktop {

namespace {

struct Named {
    const char* name;
    platform::Color color;
};

constexpr std::array kNames{
    Named{"black", {0.0, 0.0, 0.0}},         Named{"dark gray", {0.25, 0.25, 0.25}},
    Named{"gray", {0.5, 0.5, 0.5}},          Named{"light gray", {0.78, 0.78, 0.78}},
    Named{"white", {1.0, 1.0, 1.0}},         Named{"red", {1.0, 0.0, 0.0}},
    Named{"dark red", {0.45, 0.0, 0.0}},     Named{"light red", {1.0, 0.45, 0.45}},
    Named{"brown", {0.5, 0.28, 0.1}},        Named{"dark brown", {0.25, 0.14, 0.05}},
    Named{"orange", {1.0, 0.5, 0.0}},        Named{"light orange", {1.0, 0.75, 0.45}},
    Named{"yellow", {1.0, 1.0, 0.0}},        Named{"golden yellow", {1.0, 0.78, 0.0}},
    Named{"light yellow", {1.0, 1.0, 0.65}}, Named{"olive", {0.5, 0.5, 0.0}},
    Named{"yellow green", {0.6, 1.0, 0.0}},  Named{"green", {0.0, 1.0, 0.0}},
    Named{"medium green", {0.0, 0.65, 0.0}}, Named{"dark green", {0.0, 0.35, 0.0}},
    Named{"light green", {0.6, 1.0, 0.6}},   Named{"sea green", {0.0, 1.0, 0.5}},
    Named{"teal", {0.0, 0.5, 0.5}},          Named{"cyan", {0.0, 1.0, 1.0}},
    Named{"light cyan", {0.7, 1.0, 1.0}},    Named{"sky blue", {0.0, 0.5, 1.0}},
    Named{"light blue", {0.55, 0.75, 1.0}},  Named{"blue", {0.0, 0.0, 1.0}},
    Named{"dark blue", {0.0, 0.0, 0.45}},    Named{"slate blue", {0.35, 0.4, 0.6}},
    Named{"violet", {0.5, 0.0, 1.0}},        Named{"dark violet", {0.25, 0.0, 0.45}},
    Named{"lavender", {0.78, 0.65, 1.0}},    Named{"magenta", {1.0, 0.0, 1.0}},
    Named{"purple", {0.5, 0.0, 0.5}},        Named{"rose", {1.0, 0.0, 0.5}},
    Named{"dark rose", {0.5, 0.0, 0.25}},    Named{"pink", {1.0, 0.65, 0.8}},
    Named{"mauve", {0.55, 0.4, 0.55}},
};

} // namespace

QString colorName(const platform::Color& color) {
    const auto distance = [&color](const Named& each) {
        return app::visibleDifference(each.color, color, app::ColorVision::Common);
    };
    return std::ranges::min_element(kNames, {}, distance)->name;
}

} // namespace glimra::desktop
