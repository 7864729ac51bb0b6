#include "real_program.h"
#include "windows_fixture.h"

#include "platform/stored_values.h"

#include <gmock/gmock.h>

namespace glimra::desktop {
namespace {

using glimra::tests::eventually;
using ::testing::HasSubstr;

constexpr lighting::KeyCode kQ = 0x10;
constexpr lighting::KeyCode kP = 0x19;
constexpr int kSlotOfC = 6;

/// The program as a user meets it: a process of its own on a real display, operated by pointer and keys, and
/// judged by the settings, the log and the trace that it leaves. Where a widget is on that display, its twin
/// tells: the same windows, which this test has made in the same sizes where no display is needed.
class RealProgramTest : public WindowsFixture {
protected:
    static void SetUpTestSuite() { s_desktop = std::make_unique<RealDesktop>(); }
    static void TearDownTestSuite() { s_desktop.reset(); }

    void start(bool hasRunBefore = true) {
        m_machine.userDefaults.set("firstStepsDone", hasRunBefore);
        launch();
        m_program.emplace(*s_desktop, hasRunBefore ? "firstStepsDone=true\n" : "");
        expectWindow("mainWindow");
    }
    void TearDown() override {
        if (HasFailure() && m_program)
            std::fprintf(stderr, "Active at the end: %s\nLog:\n%s\n", qPrintable(s_desktop->active().title),
                         m_program->log().c_str());
    }

    /// Waits for a window of the program. What follows is done in it.
    void expectWindow(const char* outlet) {
        m_twin = window(outlet);
        m_window = s_desktop->waitForWindow(m_twin->windowTitle());
        ASSERT_FALSE(m_window.title.isEmpty()) << "no " << outlet;
        m_twin->show();
        m_twin->resize(m_window.size);
        settle();
    }
    void expectPanel(const char* title) {
        m_window = s_desktop->waitForWindow(title);
        ASSERT_FALSE(m_window.title.isEmpty()) << "no " << title;
    }
    QPoint placeOf(const char* name) {
        const auto* const found = m_twin->findChild<QWidget*>(name);
        if (found == nullptr)
            throw std::runtime_error(std::string("no widget ") + name);
        // The text of a check box is wider than it; its left edge is not.
        return found->mapTo(m_twin, QPoint(std::min(found->width() / 2, 40), found->height() / 2));
    }
    QPoint placeOf(lighting::KeyCode key) { return canvas()->mapTo(m_twin, centerOf(key)); }
    void clickOn(const char* name) { s_desktop->click(m_window, placeOf(name)); }
    void openProgrammerByMouse() {
        clickOn("setColorsButton");
        expectWindow("colorProgrammerWindow");
    }
    void paintRow(const char* paintButton) {
        clickOn(paintButton);
        s_desktop->drag(m_window, placeOf(kQ), placeOf(kP));
    }

    bool logSays(const char* text) {
        return eventually([&] { return m_program->log().find(text) != std::string::npos; });
    }
    bool traceSays(const char* text) {
        return eventually([&] { return m_program->trace().find(text) != std::string::npos; });
    }
    bool isStored(const char* key, const platform::StoredValue& value) {
        return eventually([&] { return m_program->setting(key) == value; });
    }
    /// The slots of the keys from Q to P in profile 1, as they are stored.
    std::set<std::int64_t> storedRow() {
        const auto stored = m_program->setting("savedKeyToColorMap1");
        std::set<std::int64_t> slots;
        for (std::size_t key = kQ; stored && key <= kP; ++key)
            slots.insert(platform::toInteger(std::get<platform::NumberArray>(*stored).at(key)).value_or(-1));
        return slots;
    }
    void quit() {
        s_desktop->press("ctrl+q");
        EXPECT_EQ(m_program->exitStatus(), 0);
        const std::string trace = m_program->trace();
        EXPECT_THAT(trace, HasSubstr(R"("call":"LogiLedShutdown")"));
        EXPECT_THAT(trace, HasSubstr(R"("kind":"quit")"));
        EXPECT_TRUE(m_program->setting("frame.windowPosition").has_value());
    }

    static inline std::unique_ptr<RealDesktop> s_desktop;
    std::optional<RealProgram> m_program;
    RealDesktop::ActiveWindow m_window;
    QWidget* m_twin = nullptr;
};

TEST_F(RealProgramTest, IsGuidedPaintsByMouseKeepsItWithOkAndQuits) {
    ASSERT_NO_FATAL_FAILURE(start(false));
    clickOn("guideDismiss");
    click("guideDismiss");
    settle();
    EXPECT_TRUE(isStored("firstStepsDone", true));

    ASSERT_NO_FATAL_FAILURE(openProgrammerByMouse());
    paintRow("paintC");
    // Green, on the eight keys between that got no event of their own too.
    EXPECT_TRUE(traceSays(R"("LogiLedSetLightingForKeyWithKeyName","args":[19,0,100,0])"));
    clickOn("colorOkButton");
    EXPECT_TRUE(eventually([&] { return storedRow() == std::set<std::int64_t>{kSlotOfC}; }));
    expectWindow("mainWindow");
    EXPECT_TRUE(traceSays(R"("window":"colorProgrammerWindow","visible":false)"));
    quit();
}

TEST_F(RealProgramTest, ExportsAndImportsThroughThePanels) {
    ASSERT_NO_FATAL_FAILURE(start());
    s_desktop->press("ctrl+s");
    ASSERT_NO_FATAL_FAILURE(expectPanel("Save As"));
    s_desktop->press("Return");
    ASSERT_TRUE(logSays("Color profiles exported.\n"));
    const QString path = m_program->path("Documents/Glimra Color Profiles.keycolormap");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_EQ(file.size(), 5608);

    // Somebody's profile from elsewhere: it blinks for 2.5 seconds.
    const float blinkTime = 2.5F;
    ASSERT_TRUE(file.seek(12));
    ASSERT_EQ(file.write(reinterpret_cast<const char*>(&blinkTime), sizeof blinkTime),
              static_cast<qint64>(sizeof blinkTime));
    file.close();
    ASSERT_NO_FATAL_FAILURE(expectWindow("mainWindow"));
    s_desktop->press("ctrl+o");
    ASSERT_NO_FATAL_FAILURE(expectPanel("Import Warning"));
    s_desktop->press("Return");
    ASSERT_NO_FATAL_FAILURE(
        expectPanel("Importing a color profile will replace all your existing colors and profiles."));
    s_desktop->type(path);
    s_desktop->press("Return");
    EXPECT_TRUE(logSays("Color profiles imported.\n"));
    EXPECT_TRUE(isStored("blinkTimePref", 2.5));
    ASSERT_NO_FATAL_FAILURE(expectWindow("mainWindow"));
    quit();
}

} // namespace
} // namespace glimra::desktop
