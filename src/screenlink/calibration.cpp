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
    : m(parts),
      m_searchTime(searchTime) {
}

void Calibration::calibrateScreen() {
    if (m_running)
        return;
    if (m.messages.confirmCalibrate) {
        m.log.appendLog("\nAre you sure you want to calibrate now?  This will erase your current screen "
                        "calibration, if any.\nThe app will beep to indicate it's working but will otherwise "
                        "appear frozen for up to 90 seconds.\n** Click Calibrate again to begin **\n");
        m.messages.confirmCalibrate = false;
        return;
    }
    m_running = true;
    runSearch();
    m_running = false;
}

void Calibration::runSearch() {
    const auto say = [this](const Speech& speech) {
        sayText(m.log.debugMode() ? speech.debug : speech.player);
    };
    say(kStarting);
    m.log.appendLog("\n**** ATTEMPTING TO CALIBRATE ****\nSwitch back to WoW and type /glimracal\n\n");

    StripSearch search(
        {m.runLoop, m.capture, m.sounds, m.defaults, m.log.debugMode() ? &m.log : nullptr, m.settings},
        m_searchTime);
    const SearchResult result = search.searchScanStrip();
    if (result == SearchResult::Interrupted)
        return;
    if (result == SearchResult::Found) {
        m.log.appendLog("\nCalibration successful!  (offset " + std::to_string(m.settings.scanOffset) +
                        ", width " + platform::decimalText(m.settings.scanWidth) + ")\n");
        say(kSucceeded);
        m.geometry.set(stripGeometry(m.settings.scanWidth, m.settings.scanOffset));
    } else {
        m.log.appendLog(
            "\nCalibration failed. You should try again and check help for troubleshooting tips.\n");
        say(kFailed);
    }
    m.messages.confirmCalibrate = true;
}

void Calibration::sayText(std::string_view text) {
    m.childProcesses.start("/usr/bin/say", {std::string(text)});
}

} // namespace glimra::screenlink
