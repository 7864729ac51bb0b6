#include "real_program.h"
#include "windows_fixture.h"

#include "platform/stored_values.h"
#include "profiles/color_archive.h"

#include <QLineEdit>

#include <gmock/gmock.h>

namespace glimra::desktop {
namespace {

using glimra::tests::eventually;
using ::testing::AssertionFailure;
using ::testing::AssertionResult;
using ::testing::AssertionSuccess;
using ::testing::HasSubstr;

constexpr lighting::KeyCode kQ = 0x10;
constexpr lighting::KeyCode kP = 0x19;
constexpr int kSlotOfC = 6;
constexpr int kSlotOfD = 7;

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
    /// Opens a menu of choices with the pointer, and walks to one with the keys.
    void chooseIn(const char* popUp, int index) {
        clickOn(popUp);
        s_desktop->press("Home");
        if (index > 0)
            s_desktop->press("Down", index);
        s_desktop->press("Return");
    }
    void openProgrammerByMouse() {
        clickOn("setColorsButton");
        expectWindow("colorProgrammerWindow");
    }
    void paintRow(const char* paintButton) {
        clickOn(paintButton);
        s_desktop->drag(m_window, placeOf(kQ), placeOf(kP));
    }

    template <class Read, class Value>
    static AssertionResult eventuallyIs(Read&& read, const Value& value) {
        if (eventually([&] { return read() == value; }))
            return AssertionSuccess();
        return AssertionFailure() << "it stays " << ::testing::PrintToString(read());
    }
    AssertionResult eventuallyStored(const char* key, const platform::StoredValue& value) {
        if (eventually([&] { return m_program->setting(key) == value; }))
            return AssertionSuccess();
        return AssertionFailure() << key << " is never stored as that";
    }
    /// The slots of the keys from Q to P in a stored profile.
    std::set<std::int64_t> storedRow(int profile) {
        const auto stored = m_program->setting("savedKeyToColorMap" + std::to_string(profile));
        std::set<std::int64_t> slots;
        if (const auto* const numbers = stored ? std::get_if<platform::NumberArray>(&*stored) : nullptr)
            for (std::size_t key = kQ; key <= kP && key < numbers->size(); ++key)
                slots.insert(platform::toInteger((*numbers)[key]).value_or(-1));
        return slots;
    }
    AssertionResult rowIsEventually(int profile, int slot) {
        return eventuallyIs([&] { return storedRow(profile); }, std::set<std::int64_t>{slot});
    }
    AssertionResult logSays(const std::string& text) {
        if (eventually([&] { return m_program->log().find(text) != std::string::npos; }))
            return AssertionSuccess();
        return AssertionFailure() << "the log never says " << text;
    }
    AssertionResult traceSays(const std::string& text) {
        if (eventually([&] { return m_program->trace().find(text) != std::string::npos; }))
            return AssertionSuccess();
        return AssertionFailure() << "the trace never says " << text;
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
    EXPECT_TRUE(eventuallyStored("firstStepsDone", true));

    ASSERT_NO_FATAL_FAILURE(openProgrammerByMouse());
    paintRow("paintC");
    // Green, on the eight keys between that got no event of their own too.
    EXPECT_TRUE(traceSays(R"("LogiLedSetLightingForKeyWithKeyName","args":[19,0,100,0])"));
    clickOn("colorOkButton");
    EXPECT_TRUE(rowIsEventually(1, kSlotOfC));
    expectWindow("mainWindow");
    EXPECT_TRUE(traceSays(R"("window":"colorProgrammerWindow","visible":false)"));
    quit();
}

TEST_F(RealProgramTest, AsksForUnsavedEditsAndCopiesProfiles) {
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(openProgrammerByMouse());
    paintRow("paintC");
    for (const char* const answer : {"keepEditingButton", "discardButton"}) {
        chooseIn("currentProfilePopup", 2);
        ASSERT_NO_FATAL_FAILURE(expectWindow("profileChangeAlert"));
        clickOn(answer);
        ASSERT_NO_FATAL_FAILURE(expectWindow("colorProgrammerWindow"));
    }
    // Now in profile 3, and what was painted is gone.
    EXPECT_TRUE(storedRow(1).empty());
    paintRow("paintD");
    chooseIn("currentProfilePopup", 0);
    ASSERT_NO_FATAL_FAILURE(expectWindow("profileChangeAlert"));
    clickOn("saveButton");
    ASSERT_NO_FATAL_FAILURE(expectWindow("colorProgrammerWindow"));
    EXPECT_TRUE(rowIsEventually(3, kSlotOfD));
    EXPECT_TRUE(storedRow(1).empty());

    chooseIn("currentProfilePopup", widget<QComboBox>("currentProfilePopup")->count() - 1);
    ASSERT_NO_FATAL_FAILURE(expectWindow("copyProfileDialog"));
    chooseIn("fromProfileMenu", 2);
    chooseIn("toProfileMenu", 4);
    clickOn("copyProfileCopyBtn");
    EXPECT_TRUE(rowIsEventually(5, kSlotOfD));
    ASSERT_NO_FATAL_FAILURE(expectWindow("colorProgrammerWindow"));
    clickOn("colorCancelButton");
    ASSERT_NO_FATAL_FAILURE(expectWindow("mainWindow"));
    quit();
}

TEST_F(RealProgramTest, StoresOptionsAWellAndActionKeys) {
    ASSERT_NO_FATAL_FAILURE(start());
    ASSERT_NO_FATAL_FAILURE(openProgrammerByMouse());
    clickOn("singleColorModeBtn");
    EXPECT_TRUE(eventuallyStored("singleColorMode", true));
    clickOn("singleColorModeBtn");
    EXPECT_TRUE(eventuallyStored("singleColorMode", false));

    clickOn("colorC");
    ASSERT_NO_FATAL_FAILURE(expectPanel("Change color C"));
    s_desktop->press("alt+h");
    s_desktop->press("ctrl+a");
    s_desktop->type("#336699");
    s_desktop->press("Return");
    ASSERT_NO_FATAL_FAILURE(expectWindow("colorProgrammerWindow"));
    clickOn("colorOkButton");
    EXPECT_TRUE(eventually([&] {
        const auto color = m_program->setting("colorCColor1");
        const auto* const data = color ? std::get_if<platform::Data>(&*color) : nullptr;
        return data != nullptr && profiles::unarchiveColor(*data) == platform::Color{0.2, 0.4, 0.6};
    }));
    ASSERT_NO_FATAL_FAILURE(expectWindow("mainWindow"));

    s_desktop->press("ctrl+k");
    ASSERT_NO_FATAL_FAILURE(expectWindow("actionKeySetterWindow"));
    widget<QAbstractButton>("mapKeysButton")->click();
    const int f5 = widget<QComboBox>("menu103")->findText("F 5");
    ASSERT_GT(f5, 0);
    chooseIn("menu103", f5);
    clickOn("setterOkButton");
    EXPECT_TRUE(eventuallyStored("key103", std::int64_t{0x3F}));
    ASSERT_NO_FATAL_FAILURE(expectWindow("mainWindow"));
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
    EXPECT_TRUE(eventuallyStored("blinkTimePref", 2.5));
    EXPECT_FALSE(storedRow(9).empty());
    ASSERT_NO_FATAL_FAILURE(expectWindow("mainWindow"));
    quit();
}

TEST_F(RealProgramTest, GoesIntoATrayThatComesAfterIt) {
    ASSERT_NO_FATAL_FAILURE(start());
    TrayHost tray(s_desktop->display());
    EXPECT_TRUE(tray.getsAnIcon());
}

} // namespace
} // namespace glimra::desktop
