#pragma once

#include "keyboards/device/keyboard_device.h"
#include "platform/led_driver.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace glimra::keyboards {

/// The files that are tried when the player names no library: in the user's own library folder (below `home`,
/// unless that is empty), then in the system's.
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

/// The vendor's own library, loaded at run time. Every call becomes a call of the library's function of the
/// same name. The library runs from a `LogiLedInit` that returned true until `LogiLedShutdown`; at all other
/// times every call returns false and does nothing. Main thread only.
class SdkDriver final : public platform::LedDriver {
public:
    /// `LogiLedInit` will load the first of these files that exists, but only if the file and its folder
    /// belong to root or the user, and nobody else may change them.
    explicit SdkDriver(std::vector<std::filesystem::path> candidates);
    SdkDriver(const SdkDriver&) = delete;
    SdkDriver& operator=(const SdkDriver&) = delete;
    /// Shuts the library down if it still runs. It stays in memory, since it may have threads of its own.
    ~SdkDriver() override;

    /// Why the last `LogiLedInit` returned false, as a sentence for the log. Empty when it returned true.
    const std::string& reason() const { return m_reason; }
    /// The file that `LogiLedInit` loaded or tried to load; empty when it has found none so far.
    const std::filesystem::path& library() const { return m_library; }

    /// Says whether there is a library that may be loaded, by its file alone.
    OpenResult look() const;

    /// Loads the library and starts it. Does nothing when it runs already.
    bool LogiLedInit() override;
    bool LogiLedGetSdkVersion(int& majorNumber, int& minorNumber, int& buildNumber) override;
    bool perform(const platform::LedCall& call) override;
    void LogiLedShutdown() override;

private:
    bool load();

    std::vector<std::filesystem::path> m_candidates;
    std::filesystem::path m_library;
    std::string m_reason;
    /// Has a value while the library runs.
    std::optional<SdkFunctions> m_functions;
};

} // namespace glimra::keyboards
