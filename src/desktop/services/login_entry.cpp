#include "desktop/services/login_entry.h"

#include "desktop/services/desktop_entry.h"
#include "platform/whole_file.h"

#include <QSaveFile>
#include <QStandardPaths>

#include <string_view>
#include <system_error>

namespace glimra::desktop {

namespace {

constexpr std::size_t kLongestEntry = std::size_t{64} << 10;

/// The name is enough where it finds this program; it outlives an update that moves the file.
std::string commandOf(const std::filesystem::path& program) {
    const std::string name = program.filename().string();
    const std::filesystem::path found =
        QStandardPaths::findExecutable(QString::fromStdString(name)).toStdString();
    std::error_code error;
    return std::filesystem::equivalent(found, program, error) ? name : execWord(program);
}

} // namespace

std::string execWord(const std::filesystem::path& path) {
    std::string word = "\"";
    for (const char c : path.string()) {
        // Escaped twice: as a word in quotes and, with it, as a text of the file.
        if (c == '"' || c == '`' || c == '$')
            word += "\\\\";
        if (c == '\\')
            word += "\\\\\\";
        if (c == '%')
            word += '%';
        word += c;
    }
    return word + '"';
}

LoginEntry::LoginEntry(const std::filesystem::path& configuration, const std::filesystem::path& program)
    : m_file(configuration.empty() ? configuration : configuration / "autostart" / "glimra.desktop"),
      m_program(program) {
}

bool LoginEntry::isOn() const {
    const platform::FileContent file = platform::readWholeFile(m_file.string(), kLongestEntry);
    const auto entry = parseDesktopEntry(std::string(file.bytes.begin(), file.bytes.end()));
    return entry && !entry->hidden;
}

std::string LoginEntry::set(bool on) const {
    if (m_file.empty())
        return "there is no folder for it";
    std::error_code error;
    if (!on) {
        std::filesystem::remove(m_file, error);
        return error ? error.message() : std::string();
    }
    std::filesystem::create_directories(m_file.parent_path(), error);
    if (error)
        return error.message();
    const std::string text =
        "[Desktop Entry]\nType=Application\nName=Glimra\nIcon=glimra\nExec=" + commandOf(m_program) +
        " --hidden\nX-GNOME-Autostart-enabled=true\n";
    // Renamed into its place when all of it is on the disk.
    QSaveFile file(QString::fromStdString(m_file.string()));
    if (file.open(QIODevice::WriteOnly) && file.write(text.data(), static_cast<qint64>(text.size())) >= 0 &&
        file.commit())
        return {};
    return file.errorString().toStdString();
}

} // namespace glimra::desktop
