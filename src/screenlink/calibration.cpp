#include "screenlink/calibration.h"

#include "platform/decimal_text.h"

#include <string>

namespace glimra::screenlink {

namespace {

/// What is spoken: a few words for whoever debugs, a sentence for a player.
struct Speech {
    std::string_view debug;
    std::string_view player;
};

constexpr Speech kStarting{"calibration mode",
                           "Glimra is calibrating. Switch back to WoW and type slash glimra calibrate"};
constexpr Speech kSucceeded{"Calibration successful",
                            "Calibration successful.  Glimra is ready to light up your game"};
constexpr Speech kFailed{
    "Failed to calibrate",
    "Glimra was unable to calibrate to your screen. Try again. Click the help button for more tips"};

} // namespace

Calibration::Calibration(const Parts& parts, platform::Duration searchTime)
    : m_parts(parts),
      m_searchTime(searchTime) {
}

void Calibration::calibrateScreen() {
    if (m_running)
        return;
    if (m_parts.messages.confirmCalibrate) {
        m_parts.log.appendLog(
            "\nAre you sure you want to calibrate now?  This will erase your current screen "
            "calibration, if any.\nThe app will beep to indicate it's working but will otherwise "
            "appear frozen for up to 90 seconds.\n** Click Calibrate again to begin **\n");
        m_parts.messages.confirmCalibrate = false;
        return;
    }
    m_running = true;
    m_isCanceled = false;
    runSearch();
    m_running = false;
}

void Calibration::runSearch() {
    const auto say = [this](const Speech& speech) {
        sayText(m_parts.log.debugMode() ? speech.debug : speech.player);
    };
    failure.set(std::nullopt);
    say(kStarting);
    m_parts.log.appendLog("\n**** ATTEMPTING TO CALIBRATE ****\nSwitch back to WoW and type /glimracal\n\n");

    const ScanSettings before = m_parts.settings;
    StripSearch search({m_parts.runLoop, m_parts.capture, m_parts.sounds, m_parts.defaults,
                        m_parts.log.debugMode() ? &m_parts.log : nullptr, m_parts.settings, m_isCanceled},
                       m_searchTime);
    const SearchResult result = search.searchScanStrip();
    if (result == SearchResult::Interrupted) {
        m_parts.settings = before;
        if (!m_parts.runLoop.isTerminated())
            endCanceled();
        return;
    }
    if (result == SearchResult::Found) {
        m_parts.log.appendLog("\nCalibration successful!  (offset " +
                              std::to_string(m_parts.settings.scanOffset) + ", width " +
                              platform::decimalText(m_parts.settings.scanWidth) + ")\n");
        say(kSucceeded);
        m_parts.geometry.set(stripGeometry(m_parts.settings.scanWidth, m_parts.settings.scanOffset));
        succeeded.emit();
    } else {
        m_parts.log.appendLog(
            "\nCalibration failed. You should try again and check help for troubleshooting tips.\n");
        say(kFailed);
        failure.set(search.failure());
    }
    m_parts.messages.confirmCalibrate = true;
}

void Calibration::endCanceled() {
    m_parts.log.appendLog("\nCalibration canceled; nothing has changed.\n");
    m_parts.messages.confirmCalibrate = true;
}

void Calibration::sayText(std::string_view text) {
    m_parts.childProcesses.start("/usr/bin/say", {std::string(text)});
}

} // namespace glimra::screenlink
