#include "platform/controls.h"

#include <algorithm>

namespace glimra::platform {

std::string PopUp::selectedTitle() const {
    const std::vector<std::string>& all = titles.get();
    const auto index = static_cast<std::size_t>(selected.get());
    return index < all.size() ? all[index] : std::string{};
}

void PopUp::selectTitle(std::string_view title) {
    const std::vector<std::string>& all = titles.get();
    const auto found = std::ranges::find(all, title);
    if (found != all.end())
        selected.set(static_cast<int>(found - all.begin()));
}

void TextView::insertAtSelection(std::string_view addition) {
    const std::size_t start = std::min(selectionStart, text.size());
    const std::size_t length = std::min(selectionLength, text.size() - start);
    text.replace(start, length, addition);
    selectionStart = start + addition.size();
    selectionLength = 0;
    replaced.emit(start, length, addition);
}

} // namespace glimra::platform
