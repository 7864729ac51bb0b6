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
    return {lifecycle,
            runLoop,
            readerThread,
            readerCapture,
            mainCapture,
            keyboard,
            settings,
            workspace,
            windowSystem,
            childProcesses,
            sounds,
            random,
            systemLog,
            processActivity,
            modifiers,
            app::builtBundle(),
            settings.folder().toStdString()};
}

} // namespace glimra::desktop
