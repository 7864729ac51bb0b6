#include "keyboards/sdk/sdk_driver.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <system_error>
#include <utility>

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

namespace glimra::keyboards {

namespace {

constexpr std::string_view kLibraryName = "libLogitechLED.so";
constexpr std::array<std::string_view, 4> kSystemFolders{"/usr/local/lib", "/usr/local/lib64", "/usr/lib",
                                                         "/usr/lib64"};

bool exists(const std::filesystem::path& file) {
    std::error_code error;
    return std::filesystem::exists(file, error);
}

/// A shell's word for a path.
std::string quoted(const std::filesystem::path& path) {
    std::string text = "'";
    for (const char c : path.string())
        text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
}

bool mayBeChangedByOthers(const std::filesystem::path& path) {
    struct stat status {};
    return stat(path.c_str(), &status) != 0 || (status.st_uid != 0 && status.st_uid != geteuid()) ||
           (status.st_mode & (S_IWGRP | S_IWOTH)) != 0;
}

/// What of the library, with links followed, others could change; empty when nothing.
std::filesystem::path unsafePart(const std::filesystem::path& library) {
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(library, error);
    for (const std::filesystem::path& part : {real, real.parent_path()})
        if (mayBeChangedByOthers(part))
            return part.empty() ? library : part;
    return {};
}

std::string listed(const std::vector<std::filesystem::path>& files) {
    std::string text;
    for (const std::filesystem::path& file : files)
        text += (text.empty() ? "" : " or ") + file.string();
    return text;
}

/// What the loader says about its last failure.
std::string loaderError() {
    const char* text = dlerror();
    return text != nullptr ? text : "unknown error";
}

/// Finds all functions of the library. Returns the name of the first that it lacks, null when it has all.
const char* findFunctions(void* library, SdkFunctions& functions) {
    const char* missing = nullptr;
    const auto find = [&]<class Function>(Function*& function, const char* name) {
        function = reinterpret_cast<Function*>(dlsym(library, name));
        if (function == nullptr && missing == nullptr)
            missing = name;
    };
    find(functions.init, "LogiLedInit");
    find(functions.getSdkVersion, "LogiLedGetSdkVersion");
    find(functions.setTargetDevice, "LogiLedSetTargetDevice");
    find(functions.setLighting, "LogiLedSetLighting");
    find(functions.setLightingFromBitmap, "LogiLedSetLightingFromBitmap");
    find(functions.setLightingForKeyWithKeyName, "LogiLedSetLightingForKeyWithKeyName");
    find(functions.flashSingleKey, "LogiLedFlashSingleKey");
    find(functions.pulseSingleKey, "LogiLedPulseSingleKey");
    find(functions.stopEffectsOnKey, "LogiLedStopEffectsOnKey");
    find(functions.stopEffects, "LogiLedStopEffects");
    find(functions.shutdown, "LogiLedShutdown");
    return missing;
}

/// Makes one call of the library.
struct Caller {
    const SdkFunctions& library;

    bool operator()(const platform::SetTargetDevice& call) const {
        return library.setTargetDevice(call.targetDevice);
    }
    bool operator()(const platform::SetLighting& call) const {
        return library.setLighting(call.color.red, call.color.green, call.color.blue);
    }
    bool operator()(const platform::SetLightingFromBitmap& call) const {
        // The library does not promise to leave the bitmap as it is.
        std::array<unsigned char, platform::kLedBitmapBytes> copy;
        std::ranges::copy(call.bitmap, copy.begin());
        return library.setLightingFromBitmap(copy.data());
    }
    bool operator()(const platform::SetLightingForKeyWithKeyName& call) const {
        return library.setLightingForKeyWithKeyName(asInt(call.keyName), call.color.red, call.color.green,
                                                    call.color.blue);
    }
    bool operator()(const platform::FlashSingleKey& call) const {
        return library.flashSingleKey(asInt(call.keyName), call.color.red, call.color.green, call.color.blue,
                                      call.msDuration, call.msInterval);
    }
    bool operator()(const platform::PulseSingleKey& call) const {
        const auto& [key, start, finish, msDuration, isInfinite] = call;
        return library.pulseSingleKey(asInt(key), start.red, start.green, start.blue, finish.red,
                                      finish.green, finish.blue, msDuration, isInfinite);
    }
    bool operator()(const platform::StopEffectsOnKey& call) const {
        return library.stopEffectsOnKey(asInt(call.keyName));
    }
    bool operator()(const platform::StopEffects&) const { return library.stopEffects(); }

private:
    /// The library takes a key's name as an enumeration.
    static int asInt(platform::KeyName keyName) { return static_cast<int>(keyName); }
};

} // namespace

std::vector<std::filesystem::path> usualSdkLibraries(const std::filesystem::path& home) {
    std::vector<std::filesystem::path> libraries;
    if (!home.empty())
        libraries.push_back(home / ".local/lib" / kLibraryName);
    for (const std::string_view folder : kSystemFolders)
        libraries.push_back(std::filesystem::path(folder) / kLibraryName);
    return libraries;
}

SdkDriver::SdkDriver(std::vector<std::filesystem::path> candidates) : m_candidates(std::move(candidates)) {
}

SdkDriver::~SdkDriver() {
    LogiLedShutdown();
}

OpenResult SdkDriver::look() const {
    const auto found = std::ranges::find_if(m_candidates, exists);
    if (found == m_candidates.end())
        return {.text = "There is no library " + listed(m_candidates) + ".",
                .remedy =
                    "Nothing to do, unless you have the vendor's library: put it there, or say where it "
                    "is with --sdk PATH."};
    if (const std::filesystem::path part = unsafePart(*found); !part.empty())
        return {.text = "The library " + found->string() +
                        " is not loaded, because others than you and root "
                        "could change " +
                        part.string() + ".",
                .remedy = "sudo chown root " + quoted(part) + " && sudo chmod go-w " + quoted(part)};
    // The very file that was looked at: a link to it could be another one by the time it is loaded.
    std::error_code error;
    return {.found = true,
            .text = "The library " + found->string() +
                    " is there. Whether it starts shows when Glimra lights the keyboard by it.",
            .name = std::filesystem::canonical(*found, error).string()};
}

bool SdkDriver::load() {
    const OpenResult seen = look();
    if (!seen.found) {
        m_reason = seen.text;
        return false;
    }
    m_library = seen.name;
    void* library = dlopen(m_library.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (library == nullptr) {
        m_reason = "The library does not load: " + loaderError() + ".";
        return false;
    }
    SdkFunctions functions;
    const char* missing = findFunctions(library, functions);
    dlclose(library);
    if (missing != nullptr) {
        m_reason = "The library " + m_library.string() + " has no function " + missing + ".";
        return false;
    }
    m_functions = functions;
    return true;
}

bool SdkDriver::LogiLedInit() {
    if (m_functions)
        return true;
    m_reason.clear();
    if (!load())
        return false;
    if (m_functions->init())
        return true;
    m_functions.reset();
    m_reason = "The library " + m_library.string() + " refused to start.";
    return false;
}

bool SdkDriver::LogiLedGetSdkVersion(int& majorNumber, int& minorNumber, int& buildNumber) {
    return m_functions && m_functions->getSdkVersion(&majorNumber, &minorNumber, &buildNumber);
}

bool SdkDriver::perform(const platform::LedCall& call) {
    return m_functions && std::visit(Caller{*m_functions}, call);
}

void SdkDriver::LogiLedShutdown() {
    if (m_functions)
        std::exchange(m_functions, std::nullopt)->shutdown();
}

} // namespace glimra::keyboards
