#include "windows_fixture.h"

#include "desktop/windows/color_well.h"
#include "desktop/windows/tray.h"
#include "platform/stored_values.h"
#include "profiles/color_archive.h"

#include <QLineEdit>

#include <gmock/gmock.h>

namespace glimra::desktop {
namespace {

using glimra::tests::eventually;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

constexpr lighting::KeyCode kW = 0x11;

/// What the windows do so that nothing is lost when the game, a second start or the tray has a word as well.
class GuardsTest : public WindowsFixture {
protected:
    GuardsTest() { launch(); }

    /// The game, or another start of the program, has another profile shown.
    void gameShows(int profile) {
        m_delegate->operations().messageQueue.appendToMessageQueue(std::to_string(profile));
        ASSERT_TRUE(eventually([&] { return active() == profile; }));
        settle();
    }
    int active() { return state().profile.activeColorProfile; }
    bool isTouched() { return state().profile.profileTouched; }
    platform::Color colorC() { return state().canvas.keyColorSet[kSlotOfC]; }

    /// A key's slot by profile, as far as profiles were ever stored.
    std::map<int, std::int64_t> stored(lighting::KeyCode key) {
        std::map<int, std::int64_t> slots;
        for (int profile = 1; profile <= static_cast<int>(lighting::kProfileCount); ++profile)
            if (const auto map = m_machine.userDefaults.get("savedKeyToColorMap" + std::to_string(profile)))
                slots[profile] = *platform::toInteger(std::get<platform::NumberArray>(*map).at(key));
        return slots;
    }
    /// What a key looks like on the keyboard.
    lighting::Rgb lightOf(lighting::KeyCode key) {
        return m_keyboard.model().colorsAt(platform::monotonicNow())[placeOf(key)];
    }
    QWidget* editor() { return widget("colorEditor"); }
    void typeColor(const char* color) {
        auto* const field = dynamic_cast<QLineEdit*>(window("colorProgrammerWindow")->focusWidget());
        ASSERT_NE(field, nullptr);
        field->selectAll();
        QTest::keyClicks(field, color);
        settle();
    }
    /// Opens the editor of color C and tries a color.
    void tryColor(const char* color) {
        QTest::mouseDClick(widget("paintC"), Qt::LeftButton);
        ASSERT_TRUE(editor()->isVisible());
        typeColor(color);
    }
    void pressInEditor(Qt::Key key) {
        QTest::keyClick(window("colorProgrammerWindow")->focusWidget(), key);
        settle();
    }
    void paintInC(lighting::KeyCode key) {
        click("paintC");
        paintKey(key);
        ASSERT_EQ(slotOf(key), kSlotOfC);
    }
    /// Does something and answers the first question that comes of it; others are closed. How many came.
    int answering(const std::function<void()>& answer, const std::function<void()>& act) {
        int questions = 0;
        QTimer look;
        look.callOnTimeout([&] {
            QWidget* const question = QApplication::activeModalWidget();
            if (question == nullptr)
                return;
            look.stop();
            if (++questions == 1)
                answer();
            else
                question->close();
            look.start();
        });
        look.start();
        act();
        settle();
        return questions;
    }
    int answering(const char* button, const std::function<void()>& act) {
        return answering([this, button] { click(button); }, act);
    }
    void chooseProfile(int profile) { choose("currentProfilePopup", profile - 1); }
    std::string title() { return window("colorProgrammerWindow")->windowTitle().toStdString(); }
    bool painterShows() { return window("colorProgrammerWindow")->isVisible(); }
};

TEST_F(GuardsTest, WhatIsPaintedBelongsToTheProfileOnTheCanvasWhateverTheGameShows) {
    openProgrammer();
    paintInC(kQ);
    gameShows(5);
    auto* const note = widget<QLabel>("shownProfileNote");
    EXPECT_TRUE(eventually([&] { return note->isVisible(); }));
    EXPECT_THAT(note->text().toStdString(), HasSubstr("The game now shows profile 5"));
    EXPECT_THAT(title(), HasSubstr("Profile 1"));
    EXPECT_EQ(widget<QComboBox>("currentProfilePopup")->currentIndex(), 0);
    click("actionBarEffectCheckbox");
    // Its preview too, though neither 5 nor 6 shows cooldowns.
    gameShows(6);
    canvas()->redraw();
    const lighting::Rgb unmarked = canvas()->shownColors()[placeOf(kOne)];
    click("cooldownPreviewBtn");
    EXPECT_NE(canvas()->shownColors()[placeOf(kOne)], unmarked);
    gameShows(5);
    click("colorOkButton");
    EXPECT_THAT(stored(kQ), ElementsAre(Pair(1, kSlotOfC)));
    EXPECT_EQ(platform::storedBool(m_machine.userDefaults, "useActionBarCooldowns1"), true);
    EXPECT_FALSE(m_machine.userDefaults.get("useActionBarCooldowns5").has_value());
    EXPECT_EQ(active(), 5) << "the keyboard still shows what the game wants";
    EXPECT_FALSE(state().lighting.useSpellCooldowns[0]) << "profile 5 has no cooldowns";

    // With no edit at all, the same.
    openProgrammer();
    item("resetItem")->trigger();
    click("colorOkButton");
    EXPECT_EQ(stored(kQ)[1], kSlotOfC);
    EXPECT_EQ(active(), 1);
    openProgrammer();
    EXPECT_FALSE(note->isVisible());
}

TEST_F(GuardsTest, TheMenuOfProfilesGoesFromTheProfileOnTheCanvas) {
    openProgrammer();
    paintInC(kQ);
    gameShows(5);
    // What the game shows is not what is edited.
    EXPECT_EQ(answering("saveButton", [&] { chooseProfile(5); }), 1);
    EXPECT_THAT(stored(kQ), ElementsAre(Pair(1, kSlotOfC)));
    EXPECT_NE(slotOf(kQ), kSlotOfC) << "profile 5 is on the canvas";
    EXPECT_THAT(title(), HasSubstr("Profile 5"));
    EXPECT_FALSE(widget("undoButton")->isEnabled());

    paintInC(kW);
    gameShows(2);
    EXPECT_EQ(answering("keepEditingButton", [&] { chooseProfile(3); }), 1);
    EXPECT_EQ(widget<QComboBox>("currentProfilePopup")->currentIndex(), 4);
    EXPECT_EQ(active(), 2);
    // The profile on the canvas chosen again loses nothing and asks nothing.
    EXPECT_EQ(answering("discardButton", [&] { chooseProfile(5); }), 0);
    EXPECT_EQ(slotOf(kW), kSlotOfC);

    EXPECT_EQ(answering("saveButton", [&] { click("mapKeysButton"); }), 1);
    EXPECT_EQ(stored(kW)[5], kSlotOfC);
    EXPECT_FALSE(stored(kW).contains(2));
}

TEST_F(GuardsTest, AQuestionNamesTheProfileAndServesNothingButItself) {
    openProgrammer();
    paintInC(kQ);
    const auto changeProfile = [&] { chooseProfile(3); };
    answering(
        [&] {
            EXPECT_THAT(textOf("alertTitle"), HasSubstr("Profile 1"));
            m_delegate->operations().messageQueue.appendToMessageQueue("7");
            // Longer than a message takes.
            QTest::qWait(600);
            EXPECT_EQ(active(), 1);
            click("keepEditingButton");
        },
        changeProfile);
    EXPECT_TRUE(eventually([&] { return active() == 7; })) << "the game is heard afterwards";
    // Whichever button was clicked last, Enter saves.
    widget("keepEditingButton")->setFocus();
    answering([&] { QTest::keyClick(window("profileChangeAlert")->focusWidget(), Qt::Key_Return); },
              changeProfile);
    EXPECT_THAT(stored(kQ), ElementsAre(Pair(1, kSlotOfC)));
}

TEST_F(GuardsTest, ClosingAndImportsAskForUnsavedEdits) {
    const auto closePainter = [&] { window("colorProgrammerWindow")->close(); };
    const auto closeMain = [&] { window("mainWindow")->close(); };
    const auto quit = [&] { item("quitItem")->trigger(); };
    const auto import = [&] { item("importItem")->trigger(); };
    openProgrammer();
    const lighting::Rgb light = lighting::toRgb(state().lighting.keyboardColorSet[3]);
    paintInC(kQ);
    ASSERT_NE(lightOf(kQ), light);
    for (const std::function<void()>& close :
         {std::function<void()>(closePainter), {closeMain}, {quit}, {import}}) {
        EXPECT_EQ(answering("keepEditingButton", close), 1);
        EXPECT_TRUE(painterShows());
        EXPECT_TRUE(window("mainWindow")->isVisible());
        EXPECT_EQ(m_quits, 0);
        EXPECT_EQ(slotOf(kQ), kSlotOfC);
    }
    EXPECT_EQ(answering("discardButton", closePainter), 1);
    EXPECT_FALSE(painterShows());
    EXPECT_EQ(lightOf(kQ), light);
    EXPECT_THAT(stored(kQ), IsEmpty());
    // Without edits nobody is asked.
    EXPECT_EQ(answering("discardButton", quit), 0);
    EXPECT_EQ(m_quits, 1);

    openProgrammer();
    paintInC(kQ);
    gameShows(4);
    click("helpButton");
    window("helpWindow")->close();
    EXPECT_FALSE(outlets().helpWindow.visible.get());
    EXPECT_FALSE(m_machine.runLoop.isTerminated());
    EXPECT_EQ(answering("saveButton", closeMain), 1);
    EXPECT_THAT(stored(kQ), ElementsAre(Pair(1, kSlotOfC)));
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
    tryColor("#336699");
    answering("discardButton", [&] { window("colorProgrammerWindow")->close(); });
    EXPECT_TRUE(editor()->isHidden()) << "the editor goes with its window";

    click("mapKeysButton");
    const lighting::KeyCode before = state().actionKeys.actionBar1Keys[2];
    choose("menu103", widget<QComboBox>("menu103")->findText("F 5"));
    ASSERT_NE(state().actionKeys.actionBar1Keys[2], before);
    click("mapKeysButton");
    window("actionKeySetterWindow")->close();
    EXPECT_EQ(state().actionKeys.actionBar1Keys[2], before);
    EXPECT_FALSE(window("actionKeySetterWindow")->isVisible());
}

TEST_F(GuardsTest, TheTrayShowsProfilesAsTheyAreStoredWithTheirCooldowns) {
    Tray tray(windows().binder(), *m_delegate, [this] { ++m_quits; });
    const QList<QAction*> items = tray.menu().actions();
    items.last()->trigger();
    EXPECT_EQ(m_quits, 1);
    m_machine.userDefaults.set("useActionBarCooldowns3", true);
    m_delegate->operations().messageQueue.appendToMessageQueue("`@"); // the first slot is on cooldown
    ASSERT_TRUE(eventually([&] { return state().lighting.dimmedKeys.contains(kOne); }));
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

TEST_F(GuardsTest, AColorThatIsEditedIsOneStepAndItsCancelLeavesNoTrace) {
    const platform::Color before{0.5, 1.0 / 3.0, 0.0}; // which no editor could bring back
    m_machine.userDefaults.set("colorCColor1", profiles::archiveColor(before));
    openProgrammer();
    tryColor("#336699");
    EXPECT_EQ(colorC(), (platform::Color{0.2, 0.4, 0.6}));
    EXPECT_EQ(outlets().colorC.color.get(), colorC());
    EXPECT_TRUE(isTouched());
    pressInEditor(Qt::Key_Escape);
    EXPECT_TRUE(editor()->isHidden());
    EXPECT_TRUE(painterShows()) << "Escape takes back the color alone";
    EXPECT_EQ(colorC(), before);
    EXPECT_FALSE(isTouched());
    EXPECT_FALSE(widget("undoButton")->isEnabled());

    // An edit made meanwhile stays, and counts.
    tryColor("#336699");
    paintInC(kQ);
    widget("colorEditor")->findChild<QLineEdit*>()->setFocus();
    pressInEditor(Qt::Key_Escape);
    EXPECT_EQ(colorC(), before);
    EXPECT_EQ(slotOf(kQ), kSlotOfC);
    EXPECT_TRUE(isTouched());

    for (const char* const name : {"112233", "#336699"}) {
        tryColor("#445566");
        typeColor(name);
        pressInEditor(Qt::Key_Return);
    }
    gameShows(5);
    click("undoButton");
    EXPECT_EQ(dynamic_cast<ColorWell*>(widget("colorC"))->color(), QColor("#112233"));
    click("undoButton");
    EXPECT_EQ(colorC(), before);
    QTest::keyClick(window("colorProgrammerWindow"), Qt::Key_Y, Qt::ControlModifier);
    tryColor("#336699");
    click("colorOkButton");
    EXPECT_TRUE(editor()->isHidden()) << "it goes with the programmer";
    const auto archived = m_machine.userDefaults.get("colorCColor1");
    EXPECT_EQ(profiles::unarchiveColor(std::get<platform::Data>(*archived)),
              (platform::Color{0.2, 0.4, 0.6}));
}

TEST_F(GuardsTest, ARowAGroupOrAllKeysAreOneStepAndTheRightButtonPicksAColorUp) {
    constexpr lighting::KeyCode kSpace = 0x39;
    openProgrammer();
    const lighting::KeyMap before = state().canvas.keysToColors;
    const auto painted = [&](const char* tool) {
        click(tool);
        if (std::string(tool) != "paintAllButton")
            paintInC(kW);
        const auto keys = std::ranges::count_if(
            lighting::kKeyboardLayout, [this](const auto& key) { return slotOf(key.code) == kSlotOfC; });
        click("undoButton");
        EXPECT_EQ(state().canvas.keysToColors, before) << tool;
        return keys;
    };
    click("paintC");
    EXPECT_EQ(painted("paintAllButton"), 115);
    EXPECT_GE(painted("rowTool"), 21);
    EXPECT_GE(painted("groupTool"), 26);

    click("brushTool");
    paintInC(kSpace);
    click("paintA");
    QTest::mouseClick(canvas(), Qt::RightButton, {}, centerOf(kSpace));
    EXPECT_EQ(state().canvas.paintColor, kSlotOfC);
    EXPECT_TRUE(widget<QAbstractButton>("paintC")->isChecked());
    EXPECT_EQ(slotOf(kSpace), kSlotOfC);
}

TEST_F(GuardsTest, ACopySaysWhatItOverwritesAndEnterAloneOverwritesNothing) {
    openProgrammer();
    gameShows(5);
    const auto copyAnd = [this](const std::function<void()>& answer) {
        const auto choosing = [&] {
            choose("fromProfileMenu", 0);
            choose("toProfileMenu", 4);
            answer();
        };
        answering(choosing, [this] { choose("currentProfilePopup", 10); });
    };
    copyAnd([this] {
        EXPECT_THAT(textOf("copyText"), HasSubstr("Profile 5 is overwritten"));
        QTest::keyClick(window("copyProfileDialog")->focusWidget(), Qt::Key_Return);
        QTest::keyClick(window("copyProfileDialog"), Qt::Key_Escape);
    });
    EXPECT_THAT(stored(kQ), IsEmpty());
    copyAnd([this] { click("copyProfileCopyBtn"); });
    EXPECT_THAT(stored(kQ), Contains(Pair(5, slotOf(kQ))));
}

} // namespace
} // namespace glimra::desktop
