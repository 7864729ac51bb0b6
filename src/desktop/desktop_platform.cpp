#include "desktop/desktop_platform.h"

#include "app/built_bundle.h"

namespace glimra::desktop {

namespace {

QString settingsPath(const Options& options) {
    return options.settingsFile ? QString::fromStdString(*options.settingsFile) : SettingsFile::defaultPath();
}

} // namespace

DesktopPlatform::DesktopPlatform(const Options& options)
    : settings(settingsPath(options), systemLog),
      readerCapture(options.captureDisplay),
      mainCapture(options.captureDisplay),
      workspace(options.captureDisplay) {
}

platform::Platform DesktopPlatform::platform() {
    return {.application = lifecycle,
            .runLoop = runLoop,
            .readerThread = readerThread,
            .readerCapture = readerCapture,
            .mainCapture = mainCapture,
            .ledDriver = keyboard,
            .userDefaults = settings,
            .workspace = workspace,
            .windowSystem = windowSystem,
            .childProcesses = childProcesses,
            .sounds = sounds,
            .random = random,
            .systemLog = systemLog,
            .processActivity = processActivity,
            .modifiers = modifiers,
            .bundle = app::builtBundle(),
            .settingsFolder = settings.folder().toStdString()};
}

} // namespace glimra::desktop
