#pragma once

#include "platform/led_driver.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace glimra::keyboards {

/// Where the vendor's library is looked for when nobody says where it is: the library folders of the user
/// (below `home`, unless that is empty) and of the system, in this order.
std::vector<std::filesystem::path> usualSdkLibraries(const std::filesystem::path& home);

/// The functions of the vendor's library.
struct SdkFunctions {
    bool (*init)() = nullptr;
    bool (*getSdkVersion)(int*, int*, int*) = nullptr;
    bool (*setTargetDevice)(int) = nullptr;
    bool (*setLighting)(int, int, int) = nullptr;
    bool (*setLightingFromBitmap)(unsigned char*) = nullptr;
    bool (*setLightingForKeyWithKeyName)(int, int, int, int) = nullptr;
    bool (*flashSingleKey)(int, int, int, int, int, int) = nullptr;
    bool (*pulseSingleKey)(int, int, int, int, int, int, int, int, bool) = nullptr;
    bool (*stopEffectsOnKey)(int) = nullptr;
    bool (*stopEffects)() = nullptr;
    void (*shutdown)() = nullptr;
};

/// The vendor's own library, loaded at run time: every call goes straight through to the function of the same
/// name. Between a `LogiLedInit` that returned false, or `LogiLedShutdown`, and the next `LogiLedInit` that
/// returns true, every call returns false and does nothing. Main thread only.
class SdkDriver final : public platform::LedDriver {
public:
    /// Takes the first of `candidates` that exists, at `LogiLedInit`. The names are paths of files, not names
    /// that the dynamic loader would look for.
    explicit SdkDriver(std::vector<std::filesystem::path> candidates);
    SdkDriver(const SdkDriver&) = delete;
    SdkDriver& operator=(const SdkDriver&) = delete;
    /// Shuts the library down if nobody did. It stays in memory: it may have threads of its own.
    ~SdkDriver() override;

    /// Why the last `LogiLedInit` returned false, as a sentence for the log; empty when it did not.
    const std::string& reason() const { return m_reason; }
    /// The library in use; empty before the first `LogiLedInit` that found one.
    const std::filesystem::path& library() const { return m_library; }

    /// Loads the library and has it start. When it is running already, there is nothing to do.
    bool LogiLedInit() override;
    bool LogiLedGetSdkVersion(int& majorNumber, int& minorNumber, int& buildNumber) override;
    bool LogiLedSetTargetDevice(int targetDevice) override;
    bool LogiLedSetLighting(int redPercentage, int greenPercentage, int bluePercentage) override;
    bool LogiLedSetLightingFromBitmap(platform::LedBitmapView bitmap) override;
    bool LogiLedSetLightingForKeyWithKeyName(platform::KeyName keyName, int redPercentage,
                                             int greenPercentage, int bluePercentage) override;
    bool LogiLedFlashSingleKey(platform::KeyName keyName, int redPercentage, int greenPercentage,
                               int bluePercentage, int msDuration, int msInterval) override;
    bool LogiLedPulseSingleKey(platform::KeyName keyName, int startRedPercentage, int startGreenPercentage,
                               int startBluePercentage, int finishRedPercentage, int finishGreenPercentage,
                               int finishBluePercentage, int msDuration, bool isInfinite) override;
    bool LogiLedStopEffectsOnKey(platform::KeyName keyName) override;
    bool LogiLedStopEffects() override;
    void LogiLedShutdown() override;

private:
    bool load();

    std::vector<std::filesystem::path> m_candidates;
    std::filesystem::path m_library;
    std::string m_reason;
    /// There while the library is running.
    std::optional<SdkFunctions> m_functions;
};

} // namespace glimra::keyboards
