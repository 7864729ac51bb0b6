// Linked into every test program: whatever it starts or looks for, it meets nothing of the user who runs it.

#include <cstdlib>
#include <filesystem>
#include <string>

#include <unistd.h>

namespace {

/// A home folder of this program's own, and no display, bus or sound server.
class OwnSurroundings {
public:
    OwnSurroundings() {
        if (::mkdtemp(m_folder.data()) == nullptr)
            std::abort();
        for (const char* const name : {"HOME", "TMPDIR", "TEST_TMPDIR", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME",
                                       "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"})
            ::setenv(name, m_folder.c_str(), 1);
        for (const char* const name : {"DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS", "PULSE_SERVER"})
            ::setenv(name, ("unix:path=" + m_folder + "/none").c_str(), 1);
        for (const char* const name : {"DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY", "XDG_SESSION_ID"})
            ::unsetenv(name);
        // Windows are made where no display is needed.
        // A file of screens, for Qt's offscreen platform.
        const char* const screens = ::getenv("GLIMRA_TEST_SCREENS");
        const std::string platform =
            screens == nullptr ? "offscreen" : "offscreen:configfile=" + std::string(screens);
        ::setenv("QT_QPA_PLATFORM", platform.c_str(), 1);
    }
    /// Not at the end of a forked child.
    ~OwnSurroundings() {
        std::error_code ignored;
        if (::getpid() == m_process)
            std::filesystem::remove_all(m_folder, ignored);
    }
    OwnSurroundings(const OwnSurroundings&) = delete;
    OwnSurroundings& operator=(const OwnSurroundings&) = delete;

private:
    std::string m_folder = std::filesystem::temp_directory_path() / "glimra-test-XXXXXX";
    pid_t m_process = ::getpid();
};

const OwnSurroundings kOwnSurroundings;

} // namespace
