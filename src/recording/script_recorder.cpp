#include "recording/script_recorder.h"

#include "platform/decimal_text.h"
#include "platform/silent_log.h"
#include "recording/script_text.h"
#include "screenlink/scan_settings.h"

#include <algorithm>
#include <utility>

namespace glimra::recording {

namespace {

/// Window positions do not affect the keyboard and are left out.
constexpr std::string_view kFramePrefix = "frame.";

} // namespace

ScriptRecorder::ScriptRecorder(std::function<platform::Time()> now, Write write,
                               std::function<void(std::string)> ended, std::size_t mostHeldBytes)
    : m_now(std::move(now)),
      m_write(std::move(write)),
      m_ended(std::move(ended)),
      m_mostHeldBytes(mostHeldBytes) {
}

void ScriptRecorder::launch(const platform::UserDefaults& settings, double scale) {
    const platform::Time time = m_now();
    m_written = time;
    for (const auto& [key, value] : settings.all())
        if (const std::optional<std::string> line = settingLine(key, value);
            line && !key.starts_with(kFramePrefix))
            write({*line, time});
    platform::SilentLog noLog;
    screenlink::ScanSettings scan;
    screenlink::loadScanSettings(scan, {settings, noLog});
    const double right = scan.scanWidth + scan.scanOffset;
    write({"display " + std::to_string(static_cast<int>(std::clamp(right, 1920.0, 1e5))) + " 1080 " +
               platform::decimalText(scale),
           time});
    if (scan.scanWidth > 0.0)
        write({"strip-geometry " + std::to_string(scan.scanOffset) + " " +
                   platform::decimalText(scan.scanWidth),
               time});
    write({"start", time});
}

void ScriptRecorder::frame(const std::optional<screenlink::Cells>& cells, platform::Time time) {
    add(stripLine(cells), time);
}

void ScriptRecorder::front(const std::optional<platform::RunningApplication>& application) {
    add(frontLine(application), m_now());
}

void ScriptRecorder::token(std::string_view token) {
    add("token \"" + std::string(token) + "\"", m_now());
}

void ScriptRecorder::quit() {
    add("quit", m_now());
    releasePending();
    m_write = nullptr;
}

void ScriptRecorder::beginAction(const app::ActionRow& action, const app::ActionArgument& argument) {
    // What the user does inside a modal session is part of its answer.
    if (m_openModals > 0)
        return;
    releasePending();
    m_pending = Line{actionLine(action, argument), m_now()};
    ++m_openActions;
}

void ScriptRecorder::endAction() {
    if (m_openModals > 0 || m_openActions == 0)
        return;
    --m_openActions;
    releasePending();
}

void ScriptRecorder::beginModal() {
    ++m_openModals;
}

void ScriptRecorder::endModal(int code, const std::string& settings) {
    if (m_openModals > 0)
        --m_openModals;
    const platform::Time time = m_pending ? m_pending->time : m_now();
    write({"answer " + std::to_string(code) + settings, time});
    if (m_openModals > 0)
        return;
    // An action may open a second session, whose answer must also be written before the action. So the
    // action's own line and the held lines wait until the action ends.
    if (!m_pending)
        releasePending();
}

void ScriptRecorder::add(std::string text, platform::Time time) {
    if (m_openModals > 0) {
        hold({std::move(text), time});
        return;
    }
    releasePending();
    write({text, time});
}

void ScriptRecorder::hold(Line line) {
    if (!m_write)
        return;
    m_heldBytes += line.text.size() + 1;
    m_held.push_back(std::move(line));
    // A session may stay open all night, so the held lines are limited, too.
    if (m_heldBytes > m_mostHeldBytes)
        end("is full");
}

void ScriptRecorder::releasePending() {
    m_heldBytes = 0;
    if (m_pending)
        write(*std::exchange(m_pending, std::nullopt));
    for (const Line& line : std::exchange(m_held, {}))
        write(line);
}

void ScriptRecorder::write(const Line& line) {
    if (!m_written || !m_write)
        return;
    std::string text;
    // Frames are captured on another thread, so their time may be before the last line's.
    if (const platform::Duration pause = line.time - *m_written; pause >= std::chrono::microseconds(1)) {
        text = waitLine(pause) + "\n";
        m_written = line.time - pause % std::chrono::microseconds(1);
    }
    text += line.text + "\n";
    if (const std::string why = m_write(text); !why.empty())
        end(why);
}

void ScriptRecorder::end(const std::string& why) {
    m_write = nullptr;
    m_held.clear();
    m_ended("The recording " + why + " and ends here.");
}

} // namespace glimra::recording
