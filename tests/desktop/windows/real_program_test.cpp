#include "windows_fixture.h"

#include "support/folder.h"
#include "support/x_server.h"

#include <QDir>
#include <QRegularExpression>

namespace glimra::desktop {
namespace {

using glimra::tests::contentOf;
using glimra::tests::eventually;

constexpr lighting::KeyCode kQ = 0x10;
constexpr lighting::KeyCode kP = 0x19;

/// The program as a user meets it: a process of its own on a real display with a window manager, operated by
/// pointer and keys, and judged by the settings, the log and the trace that it leaves. Where a widget is on
/// that display, its twin tells: the same windows, which this test has made in the same sizes where no
/// display is needed.
class RealProgramTest : public WindowsFixture {
protected:
    RealProgramTest() {
        // Only once it takes charge of windows is the manager there.
        tests::XClient client(m_server.display());
        const xcb_window_t probe = client.createWindow({});
        if (!client.showManaged(probe))
            throw std::runtime_error("no window manager");
        client.destroy(probe);
        m_machine.userDefaults.set("firstStepsDone", false);
        launch();
        QDir::home().mkdir("Documents");
        const std::string command = "exec env QT_QPA_PLATFORM=xcb " GLIMRA_PROGRAM
                                    " --keyboard virtual --log --settings " +
                                    file("settings") + " --trace " + file("trace") + " >" + file("log");
        m_program.emplace("sh", std::vector<std::string>{"sh", "-c", command}, m_server.display());
    }
    void TearDown() override {
        if (HasFailure())
            std::fprintf(stderr, "Log:\n%s\n", contentOf(file("log")).c_str());
    }

    std::string file(const char* name) const { return (m_folder / name).string(); }
    /// Whether a file says something sooner or later. What brings that about is done again where a busy
    /// machine has lost it.
    bool says(
        const char* name, std::string_view text, const std::function<void()>& act = [] {}) const {
        for (int attempt = 0; attempt < 3; ++attempt) {
            act();
            if (eventually([&] { return contentOf(file(name)).find(text) != std::string::npos; }))
                return true;
        }
        return false;
    }
    auto clickOn(const char* name) {
        return [this, name] {
            const auto* const button = m_twin->findChild<QWidget*>(name);
            user(moveTo(button->mapTo(m_twin, button->rect().center())) + "click 1");
        };
    }
    auto press(const char* key) {
        return [this, key] { user(QString("key ") + key); };
    }
    /// What xdotool answers.
    QString user(const QString& does) const {
        const QString command =
            "DISPLAY=" + QString::fromStdString(m_server.display()) + " timeout 10 xdotool " + does + " 2>&1";
        std::FILE* const output = ::popen(qPrintable(command), "r");
        std::string text;
        for (int c = 0; (c = std::fgetc(output)) != EOF;)
            text += static_cast<char>(c);
        ::pclose(output);
        return QString::fromStdString(text);
    }
    /// Waits until a window with this title has the keyboard and its place. What follows is done in it.
    void expectWindow(const QString& title) {
        QString before;
        EXPECT_TRUE(eventually([&] {
            const QString window = user("getactivewindow getwindowname getwindowgeometry --shell");
            // The manager gives the keyboard to a window before it shows it, and may still move it then.
            const bool isStill = window == std::exchange(before, window);
            m_window = QRegularExpression("WINDOW=(\\d+)").match(window).captured(1);
            // The painter appends its profile, and Qt the program's name.
            const QString name = window.section('\n', 0, 0);
            return isStill && (name == title || name.startsWith(title + ' ')) &&
                   user("search --onlyvisible --name .").split('\n').contains(m_window);
        })) << title.toStdString()
            << ", but there is " << before.toStdString();
        m_size = {numberIn(before, "WIDTH"), numberIn(before, "HEIGHT")};
    }
    static int numberIn(const QString& text, const QString& name) {
        return QRegularExpression("\n" + name + "=(\\d+)").match(text).captured(1).toInt();
    }
    void expectTwin(const char* outlet) {
        m_twin = window(outlet);
        expectWindow(m_twin->windowTitle());
        m_twin->show();
        m_twin->resize(m_size);
        settle();
    }
    QString moveTo(QPoint place) const {
        return QString(" mousemove --window %1 %2 %3 ").arg(m_window).arg(place.x()).arg(place.y());
    }
    QPoint placeOnCanvas(lighting::KeyCode key) { return canvas()->mapTo(m_twin, centerOf(key)); }

    const std::filesystem::path m_folder = tests::newFolder();
    tests::XvfbServer m_server{"1280x720x24", tests::reservedDisplayNumber()};
    tests::ChildProcess m_manager{"openbox", {"openbox"}, m_server.display()};
    std::optional<tests::ChildProcess> m_program;
    QString m_window;
    QSize m_size;
    QWidget* m_twin = nullptr;
};

TEST_F(RealProgramTest, IsGuidedPaintsByMouseExportsImportsAndQuits) {
    const std::string programmer = R"("window":"colorProgrammerWindow","visible":)";
    expectTwin("mainWindow");
    ASSERT_TRUE(says("trace", "LogiLedPulseSingleKey", clickOn("stepSeeItMove")))
        << "the demonstration's fight";
    ASSERT_TRUE(says("settings", "firstStepsDone=true", clickOn("guideDismiss")));
    click("guideDismiss");
    ASSERT_TRUE(says("trace", programmer + "true", clickOn("setColorsButton")));
    expectTwin("colorProgrammerWindow");
    // In one leap: green also on the eight keys between, which got no event of their own.
    EXPECT_TRUE(says("trace", R"("LogiLedSetLightingForKeyWithKeyName","args":[19,0,100,0])", [this] {
        clickOn("paintC")();
        user(moveTo(placeOnCanvas(kQ)) + "mousedown 1" + moveTo(placeOnCanvas(kP)) + "mouseup 1");
    }));
    EXPECT_TRUE(says("trace", programmer + "false", clickOn("colorOkButton")));
    EXPECT_TRUE(says("settings", " 6 6 6 6 6 6 6 6 6 6 "));

    expectTwin("mainWindow");
    user("key ctrl+s");
    expectWindow("Save As");
    ASSERT_TRUE(says("log", "Color profiles exported.\n", press("Return")));
    const QString exported = QDir::home().filePath("Documents/Glimra Color Profiles.keycolormap");
    // Somebody's profile from elsewhere: it blinks for 2.5 seconds.
    const float blinkTime = 2.5F;
    std::fstream(exported.toStdString(), std::ios::in | std::ios::out | std::ios::binary)
        .seekp(12)
        .write(reinterpret_cast<const char*>(&blinkTime), sizeof blinkTime);
    expectTwin("mainWindow");
    user("key ctrl+o");
    expectWindow("Import Warning");
    user("key Return");
    expectWindow("Importing a color profile will replace all your existing colors and profiles.");
    user("type --delay 2 '" + exported + "'");
    EXPECT_TRUE(says("log", "Color profiles imported.\n", press("Return")));
    EXPECT_TRUE(says("settings", "blinkTimePref=2.5"));

    expectTwin("mainWindow");
    ASSERT_TRUE(says("trace", R"("kind":"quit")", press("ctrl+q")));
    EXPECT_EQ(m_program->wait(), 0);
    EXPECT_TRUE(says("trace", R"("call":"LogiLedShutdown")"));
    EXPECT_TRUE(says("settings", "frame.windowPosition"));
}

} // namespace
} // namespace glimra::desktop
