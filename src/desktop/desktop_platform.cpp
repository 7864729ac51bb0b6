#include "desktop/desktop_platform.h"

namespace glimra::desktop {

namespace {

QString settingsPath(const Options& options) {
    return options.settingsFile ? QString::fromStdString(*options.settingsFile) : SettingsFile::defaultPath();
}

platform::Bundle bundle() {
    platform::Bundle bundle;
    bundle.shortVersion = GLIMRA_VERSION;
    bundle.version = GLIMRA_VERSION;
    return bundle;
}

} // namespace

DesktopPlatform::DesktopPlatform(const Options& options)
    : settings(settingsPath(options), systemLog),
      readerCapture(options.captureDisplay),
      mainCapture(options.captureDisplay),
      workspace(options.captureDisplay) {
}

platform::Platform DesktopPlatform::platform() {
    return {lifecycle,    runLoop,  readerThread, readerCapture, mainCapture,
            keyboard,     settings, workspace,    windowSystem,  childProcesses,
            sounds,       random,   systemLog,    processActivity, modifiers,
            bundle()};
}

} // namespace glimra::desktop
