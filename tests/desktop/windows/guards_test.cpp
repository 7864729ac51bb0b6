#include "windows_fixture.h"

#include "desktop/windows/color_well.h"
#include "desktop/windows/tray.h"
#include "platform/monotonic_clock.h"
#include "platform/stored_values.h"
#include "profiles/color_archive.h"

#include <QColorDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include <gmock/gmock.h>

namespace glimra::desktop {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr lighting::KeyCode kOne = 0x02;
constexpr lighting::KeyCode kQ = 0x10;
constexpr lighting::KeyCode kW = 0x11;
constexpr int kSlotOfC = 6;

/// What the windows do so that nothing is lost when the game, a second start or the tray has a word as well.
class GuardsTest : public WindowsFixture {
protected:
    GuardsTest() { launch(); }

    /// The game, or another start of the program, has another profile shown.
    void gameShows(int profile) {
        m_delegate->operations().messageQueue.appendToMessageQueue(std::to_string(profile));
        ASSERT_TRUE(QTest::qWaitFor([&] { return active() == profile; }));
        settle();
    }
    int active() { return state().profile.activeColorProfile; }
    bool isTouched() { return state().profile.profileTouched; }

    /// The slot of a key in a stored profile; none where the profile was never stored.
    std::optional<std::int64_t> storedSlot(int profile, lighting::KeyCode key) {
        const auto stored = m_machine.userDefaults.get("savedKeyToColorMap" + std::to_string(profile));
        const auto* const map = stored ? std::get_if<platform::NumberArray>(&*stored) : nullptr;
        return map == nullptr ? std::nullopt : platform::toInteger(map->at(key));
    }
    std::optional<platform::Color> storedColor(const std::string& key) {
        const auto stored = m_machine.userDefaults.get(key);
        return stored ? profiles::unarchiveColor(std::get<platform::Data>(*stored)) : std::nullopt;
    }
    /// What a key looks like on the keyboard.
    lighting::Rgb lightOf(lighting::KeyCode key) {
        const auto place = std::ranges::find(lighting::kKeyboardLayout, key, &lighting::KeyRect::code);
        return m_keyboard.model().colorsAt(
            platform::monotonicNow())[static_cast<std::size_t>(place - lighting::kKeyboardLayout.begin())];
    }
    QAction* item(const char* name) { return window("mainWindow")->findChild<QAction*>(name); }
    ColorWell* well(const char* name) { return dynamic_cast<ColorWell*>(widget(name)); }
    QColorDialog* colorDialog() {
        for (auto* const dialog : window("colorProgrammerWindow")->findChildren<QColorDialog*>())
            if (dialog->isVisible())
                return dialog;
        return nullptr;
    }
    QColorDialog* openColorDialog(const char* name) {
        well(name)->click();
        return colorDialog();
    }

    void paintInC(lighting::KeyCode key) {
        click("paintC");
        paintKey(key);
        ASSERT_EQ(slotOf(key), kSlotOfC);
    }
    /// Answers the question for unsaved edits that comes next.
    void willAnswer(
        const char* button, std::function<void()> first = [] {}) {
        m_questions = 0;
        QTimer::singleShot(0, [this, button, first] {
            if (!window("profileChangeAlert")->isVisible())
                return;
            ++m_questions;
            first();
            click(button);
        });
    }
    std::string title() { return window("colorProgrammerWindow")->windowTitle().toStdString(); }
    bool painterShows() { return window("colorProgrammerWindow")->isVisible(); }

    int m_questions = 0;
};

TEST_F(GuardsTest, WhatIsPaintedBelongsToTheProfileOnTheCanvasWhateverTheGameShows) {
    openProgrammer();
    EXPECT_THAT(title(), HasSubstr("Profile 1"));
    paintInC(kQ);
    gameShows(5);
    auto* const note = widget<QLabel>("shownProfileNote");
    EXPECT_TRUE(QTest::qWaitFor([&] { return note->isVisible(); }));
    EXPECT_THAT(note->text().toStdString(), HasSubstr("The game now shows profile 5"));
    EXPECT_THAT(title(), HasSubstr("Profile 1"));
    EXPECT_EQ(widget<QComboBox>("currentProfilePopup")->currentIndex(), 0);
    click("actionBarEffectCheckbox");
    settle();
    // Its preview too, though neither 5 nor 6 shows cooldowns.
    gameShows(6);
    canvas()->redraw();
    const auto place = std::ranges::find(lighting::kKeyboardLayout, kOne, &lighting::KeyRect::code);
    const lighting::Rgb& shown =
        canvas()->shownColors()[static_cast<std::size_t>(place - lighting::kKeyboardLayout.begin())];
    const lighting::Rgb unmarked = shown;
    widget<QAbstractButton>("cooldownPreviewBtn")->click();
    settle();
    EXPECT_NE(shown, unmarked);
    gameShows(5);
    click("colorOkButton");
    EXPECT_EQ(storedSlot(1, kQ), kSlotOfC);
    EXPECT_FALSE(storedSlot(5, kQ).has_value());
    EXPECT_EQ(platform::storedBool(m_machine.userDefaults, "useActionBarCooldowns1"), true);
    EXPECT_FALSE(m_machine.userDefaults.get("useActionBarCooldowns5").has_value());
    EXPECT_EQ(active(), 5) << "the keyboard still shows what the game wants";
    EXPECT_FALSE(state().lighting.useSpellCooldowns[0]) << "profile 5 has no cooldowns";

    // With no edit at all, the same.
    openProgrammer();
    EXPECT_THAT(title(), HasSubstr("Profile 5"));
    item("resetItem")->trigger();
    ASSERT_EQ(active(), 1);
    click("colorOkButton");
    EXPECT_EQ(storedSlot(1, kQ), kSlotOfC);
    EXPECT_EQ(active(), 1);
    openProgrammer();
    EXPECT_FALSE(note->isVisible());
}

TEST_F(GuardsTest, TheMenuOfProfilesGoesFromTheProfileOnTheCanvas) {
    openProgrammer();
    paintInC(kQ);
    gameShows(5);
    // What the game shows is not what is edited.
    willAnswer("saveButton");
    choose("currentProfilePopup", 4);
    settle();
    EXPECT_EQ(m_questions, 1);
    EXPECT_EQ(storedSlot(1, kQ), kSlotOfC);
    EXPECT_FALSE(storedSlot(5, kQ).has_value());
    EXPECT_NE(slotOf(kQ), kSlotOfC) << "profile 5 is on the canvas";
    EXPECT_THAT(title(), HasSubstr("Profile 5"));

    paintInC(kW);
    gameShows(2);
    willAnswer("keepEditingButton");
    choose("currentProfilePopup", 2);
    EXPECT_EQ(widget<QComboBox>("currentProfilePopup")->currentIndex(), 4);
    EXPECT_EQ(slotOf(kW), kSlotOfC);
    EXPECT_EQ(active(), 2);
    // The profile on the canvas chosen again loses nothing and asks nothing.
    willAnswer("discardButton");
    choose("currentProfilePopup", 4);
    settle();
    EXPECT_EQ(m_questions, 0);
    EXPECT_EQ(slotOf(kW), kSlotOfC);

    willAnswer("saveButton");
    click("mapKeysButton");
    EXPECT_EQ(storedSlot(5, kW), kSlotOfC);
    EXPECT_FALSE(storedSlot(2, kW).has_value());
}

TEST_F(GuardsTest, AQuestionNamesTheProfileAndServesNothingButItself) {
    openProgrammer();
    paintInC(kQ);
    auto* const alert = window("profileChangeAlert");
    for (const char* const answer : {"keepEditingButton", "saveButton"}) {
        willAnswer(answer, [&] {
            EXPECT_THAT(widget<QLabel>("alertTitle")->text().toStdString(), HasSubstr("Profile 1"));
            EXPECT_TRUE(widget<QPushButton>("saveButton")->isDefault());
            EXPECT_EQ(alert->focusWidget(), widget("saveButton"));
            m_delegate->operations().messageQueue.appendToMessageQueue("7");
            // Longer than a message takes.
            QTest::qWait(600);
            EXPECT_EQ(active(), 1);
        });
        choose("currentProfilePopup", 2);
        EXPECT_EQ(m_questions, 1);
        if (std::string_view(answer) == "keepEditingButton") {
            EXPECT_TRUE(QTest::qWaitFor([&] { return active() == 7; })) << "the game is heard afterwards";
            gameShows(1);
            // As if a user had clicked on it.
            widget("keepEditingButton")->setFocus();
        }
    }
    EXPECT_EQ(storedSlot(1, kQ), kSlotOfC);
    EXPECT_FALSE(storedSlot(7, kQ).has_value());
}

TEST_F(GuardsTest, ClosingAsksForUnsavedEditsAndPutsTheLightBack) {
    const auto ways = {
        std::pair{"the painter", std::function([&] { window("colorProgrammerWindow")->close(); })},
        std::pair{"the main window", std::function([&] { window("mainWindow")->close(); })},
        std::pair{"quit", std::function([&] { item("quitItem")->trigger(); })}};
    openProgrammer();
    const lighting::Rgb stored = lighting::toRgb(state().lighting.keyboardColorSet[3]);
    for (const auto& [name, close] : ways) {
        if (!painterShows())
            openProgrammer();
        paintInC(kQ);
        ASSERT_NE(lightOf(kQ), stored);
        const int quits = m_quits;
        willAnswer("keepEditingButton");
        close();
        settle();
        EXPECT_EQ(m_questions, 1) << name;
        EXPECT_TRUE(painterShows()) << name;
        EXPECT_TRUE(window("mainWindow")->isVisible());
        EXPECT_EQ(m_quits, quits);
        EXPECT_EQ(slotOf(kQ), kSlotOfC);
        if (std::string_view(name) != "the painter")
            continue;
        willAnswer("discardButton");
        close();
        settle();
        EXPECT_EQ(m_questions, 1);
        EXPECT_FALSE(painterShows());
        EXPECT_EQ(lightOf(kQ), stored);
        EXPECT_FALSE(storedSlot(1, kQ).has_value());
    }
    // Without edits nobody is asked.
    willAnswer("discardButton");
    item("quitItem")->trigger();
    EXPECT_EQ(m_quits, 1);
    openProgrammer();
    paintInC(kQ);
    gameShows(4);
    willAnswer("saveButton");
    window("mainWindow")->close();
    EXPECT_EQ(storedSlot(1, kQ), kSlotOfC);
    EXPECT_FALSE(storedSlot(4, kQ).has_value());
    EXPECT_FALSE(painterShows());
    EXPECT_TRUE(m_machine.runLoop.isTerminated()) << "the application has quit";
}

TEST_F(GuardsTest, WindowsThatAreOpenAlreadyDropNothingAndCloseAsCancelDoes) {
    openProgrammer();
    paintInC(kQ);
    click("setColorsButton");
    item("setColorsItem")->trigger();
    settle();
    EXPECT_EQ(slotOf(kQ), kSlotOfC);
    EXPECT_TRUE(isTouched());
    ASSERT_NE(openColorDialog("colorC"), nullptr);
    willAnswer("discardButton");
    window("colorProgrammerWindow")->close();
    settle();
    EXPECT_EQ(colorDialog(), nullptr) << "the color dialog goes with its window";

    click("mapKeysButton");
    auto* const menu = widget<QComboBox>("menu103");
    const lighting::KeyCode before = state().actionKeys.actionBar1Keys[2];
    choose("menu103", menu->findText("F 5"));
    ASSERT_NE(state().actionKeys.actionBar1Keys[2], before);
    click("mapKeysButton");
    window("actionKeySetterWindow")->close();
    EXPECT_EQ(state().actionKeys.actionBar1Keys[2], before);
    EXPECT_FALSE(window("actionKeySetterWindow")->isVisible());
}

TEST_F(GuardsTest, AnImportAsksBeforeItDropsWhatIsPainted) {
    openProgrammer();
    paintInC(kQ);
    willAnswer("keepEditingButton");
    bool isWarned = false;
    QTimer::singleShot(0, [&isWarned] {
        if (auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            isWarned = true;
            QTimer::singleShot(0, [] { QApplication::activeModalWidget()->close(); });
            box->close();
        }
    });
    item("importItem")->trigger();
    EXPECT_EQ(m_questions, 1);
    EXPECT_FALSE(isWarned);
    EXPECT_EQ(slotOf(kQ), kSlotOfC);
}

TEST_F(GuardsTest, TheTrayShowsProfilesAsTheyAreStoredWithTheirCooldowns) {
    Tray tray(windows().binder(), *m_delegate, {});
    const QList<QAction*> items = tray.menu().actions();
    m_machine.userDefaults.set("useActionBarCooldowns3", true);
    m_delegate->operations().messageQueue.appendToMessageQueue("`@"); // the first slot is on cooldown
    ASSERT_TRUE(QTest::qWaitFor([&] { return state().lighting.dimmedKeys.contains(kOne); }));
    items[2]->trigger();
    EXPECT_EQ(active(), 3);
    EXPECT_EQ(lightOf(kOne), lighting::toRgb({0.3, 0.0, 0.0}));

    openProgrammer();
    const lighting::Rgb stored = lighting::toRgb(state().lighting.keyboardColorSet[3]);
    paintInC(kQ);
    items[2]->trigger();
    EXPECT_EQ(lightOf(kQ), stored) << "from the store, not from the canvas";
    EXPECT_EQ(slotOf(kQ), kSlotOfC) << "which keeps its edits";
    EXPECT_TRUE(isTouched());
    EXPECT_TRUE(items[2]->isChecked());
}

TEST_F(GuardsTest, ColorsAndCopiesAreTakenBackTooAndTheGameDoesNotBreakThat) {
    openProgrammer();
    const auto colorC = [this] { return state().canvas.keyColorSet[kSlotOfC]; };
    const platform::Color factory = colorC();
    for (const char* const name : {"#112233", "#336699"}) {
        auto* const dialog = openColorDialog("colorC");
        dialog->setCurrentColor("#445566");
        dialog->setCurrentColor(name);
        dialog->accept();
        settle();
    }
    paintInC(kQ);
    gameShows(5);
    click("undoButton");
    settle();
    EXPECT_NE(slotOf(kQ), kSlotOfC);
    click("undoButton");
    settle();
    EXPECT_EQ(well("colorC")->color(), QColor("#112233")) << "one step for each dialog";
    click("undoButton");
    settle();
    EXPECT_EQ(colorC(), factory);
    EXPECT_FALSE(isTouched()) << "it is as it is stored";
    EXPECT_FALSE(widget("undoButton")->isEnabled());
    for (int i = 0; i < 3; ++i) {
        click("redoButton");
        settle();
    }
    EXPECT_EQ(colorC(), (platform::Color{0.2, 0.4, 0.6}));
    click("colorOkButton");

    // Profile 1 onto 5, which the game shows.
    openProgrammer();
    ASSERT_EQ(active(), 5);
    const lighting::KeyMap before = state().canvas.keysToColors;
    QTimer::singleShot(0, [this] {
        auto* const text = widget<QLabel>("copyText");
        choose("fromProfileMenu", 0);
        choose("toProfileMenu", 4);
        EXPECT_THAT(text->text().toStdString(), HasSubstr("Profile 5 is overwritten"));
        // Enter alone overwrites nothing.
        QTest::keyClick(window("copyProfileDialog")->focusWidget(), Qt::Key_Return);
        if (window("copyProfileDialog")->isVisible())
            QTest::keyClick(window("copyProfileDialog"), Qt::Key_Escape);
    });
    choose("currentProfilePopup", 10);
    EXPECT_EQ(state().canvas.keysToColors, before);
    QTimer::singleShot(0, [this] {
        choose("fromProfileMenu", 0);
        choose("toProfileMenu", 4);
        click("copyProfileCopyBtn");
    });
    choose("currentProfilePopup", 10);
    settle();
    EXPECT_EQ(storedSlot(5, kQ), kSlotOfC);
    gameShows(2);
    click("undoButton");
    settle();
    EXPECT_EQ(state().canvas.keysToColors, before);
    EXPECT_EQ(storedSlot(5, kQ), before[kQ]) << "in the store as well";
    EXPECT_EQ(storedColor("colorCColor5"), factory);
    EXPECT_FALSE(isTouched());
    click("redoButton");
    EXPECT_EQ(storedSlot(5, kQ), kSlotOfC);
    EXPECT_EQ(storedSlot(1, kQ), kSlotOfC);
    EXPECT_FALSE(storedSlot(2, kQ).has_value());
}

TEST_F(GuardsTest, CancelInTheColorDialogLeavesNoTrace) {
    m_machine.userDefaults.set("colorCColor1", profiles::archiveColor({0.5, 1.0 / 3.0, 0.0}));
    openProgrammer();
    auto* dialog = openColorDialog("colorC");
    dialog->setCurrentColor("#336699");
    settle();
    ASSERT_TRUE(isTouched());
    dialog->reject();
    settle();
    EXPECT_EQ(state().canvas.keyColorSet[kSlotOfC], (platform::Color{0.5, 1.0 / 3.0, 0.0}));
    EXPECT_FALSE(isTouched());
    EXPECT_FALSE(widget("undoButton")->isEnabled());

    // An edit made meanwhile stays, and counts.
    dialog = openColorDialog("colorC");
    dialog->setCurrentColor("#336699");
    paintInC(kQ);
    dialog->reject();
    settle();
    EXPECT_EQ(state().canvas.keyColorSet[kSlotOfC], (platform::Color{0.5, 1.0 / 3.0, 0.0}));
    EXPECT_EQ(slotOf(kQ), kSlotOfC);
    EXPECT_TRUE(isTouched());
    click("colorOkButton");
    EXPECT_EQ(storedColor("colorCColor1"), (platform::Color{0.5, 1.0 / 3.0, 0.0}));
}

} // namespace
} // namespace glimra::desktop
