#include "tools/replay/film.h"

#include <algorithm>

namespace glimra::tools {

void Film::change(const keyboards::KeyboardModel& keyboard, platform::Time now) {
    advance(now);
    m_keyboard = keyboard;
}

void Film::end(platform::Time now) {
    if (!m_keyboard)
        return;
    advance(now);
    take(m_keyboard->colorsAt(now), now);
    // The last frame gets some time, too, even if it began only now.
    m_show(m_frame->colors, m_frame->begin, std::max(now, m_frame->begin + keyboards::kFrame));
}

void Film::advance(platform::Time now) {
    while (m_keyboard && m_seen < now) {
        take(m_keyboard->colorsAt(m_seen), m_seen);
        m_seen = std::min(m_keyboard->nextChange(m_seen).value_or(now), now);
    }
    m_seen = now;
}

void Film::take(const keyboards::KeyColors& colors, platform::Time begin) {
    if (m_frame && m_frame->colors == colors)
        return;
    if (m_frame)
        m_show(m_frame->colors, m_frame->begin, begin);
    m_frame = Frame{colors, begin};
}

} // namespace glimra::tools
