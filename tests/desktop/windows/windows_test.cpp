#include "windows_fixture.h"

#include "app/palette_check.h"
#include "desktop/windows/color_well.h"
#include "desktop/windows/status_line.h"
#include "platform/monotonic_clock.h"
#include "platform/stored_values.h"

#include <QAccessible>
#include <QCheckBox>
#include <QColorDialog>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace glimra::desktop {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr lighting::KeyCode kQ = 0x10;
constexpr lighting::KeyCode kP = 0x19;
constexpr lighting::KeyCode kEsc = 0x01;

class WindowsTest : public WindowsFixture {
protected:
    WindowsTest() { launch(); }

    std::optional<bool> storedBool(std::string_view key) {
        return platform::storedBool(m_machine.userDefaults, key);
    }
};

TEST_F(WindowsTest, EveryOutletAndSelectorHasItsWidgetAndNoWidgetIsUnknown) {
    EXPECT_THAT(windows().binder().problems(), IsEmpty());
}

TEST(InterfaceBinderTest, TellsWhereADesignAndTheTablesDisagree) {
    simulated::SimulatedPlatform machine(1);
    keyboards::VirtualKeyboard keyboard(platform::monotonicNow);
    platform::Platform platform = machine.platform(keyboard, app::builtBundle());
    app::AppDelegate delegate(platform);
    InterfaceBinder binder(delegate);
    QWidget design;
    const auto add = [&design](QWidget* widget, const char* name, const char* action) {
        widget->setParent(&design);
        widget->setObjectName(name);
        if (action != nullptr)
            widget->setProperty("action", action);
    };
    add(new QPushButton, "someButton", "makeCoffee:");
    add(new QPushButton, "otherButton", nullptr);
    add(new QComboBox, "singleColorModeBtn", nullptr);
    add(new QCheckBox, "actionBarEffectCheckbox", "singleColorModeCheck:");
    binder.bind(&design);
    const std::vector<std::string> problems = binder.problems();
    for (const char* const expected :
         {"someButton sends the unknown makeCoffee:", "otherButton is no outlet and does nothing",
          "singleColorModeBtn is of the wrong kind for its outlet",
          "actionBarEffectCheckbox sends singleColorModeCheck:, which another control sends",
          "no widget for the outlet mainWindow", "no widget sends calibrateButton:"})
        EXPECT_THAT(problems, testing::Contains(expected));
    EXPECT_THAT(problems, testing::Not(testing::Contains("no widget sends singleColorModeCheck:")));
}

TEST_F(WindowsTest, EverythingThatCanBeOperatedHasAnAccessibleName) {
    for (QWidget* const top : QApplication::topLevelWidgets())
        for (const QWidget* const each : top->findChildren<QWidget*>()) {
            if (each->objectName().isEmpty() || each->objectName().startsWith("qt_") ||
                each->focusPolicy() == Qt::NoFocus || each->isHidden() ||
                qobject_cast<const QLabel*>(each) != nullptr)
                continue;
            const auto* const button = qobject_cast<const QAbstractButton*>(each);
            bool hasBuddy = false;
            for (const QLabel* const label : top->findChildren<QLabel*>())
                hasBuddy = hasBuddy || label->buddy() == each;
            EXPECT_TRUE(!each->accessibleName().isEmpty() || hasBuddy ||
                        (button != nullptr && button->text().size() > 1))
                << each->objectName().toStdString();
        }
}

TEST_F(WindowsTest, NoTwoControlsOfAWindowOrMenuHaveOneMnemonic) {
    const auto expectUnique = [](const std::vector<QString>& texts) {
        std::map<QString, QString> owners;
        for (const QString& text : texts) {
            const QString key = QKeySequence::mnemonic(text).toString();
            EXPECT_TRUE(key.isEmpty() || owners.emplace(key, text).second)
                << key.toStdString() << ": " << owners[key].toStdString() << ", " << text.toStdString();
        }
    };
    for (QWidget* const top : QApplication::topLevelWidgets()) {
        std::vector<QString> texts;
        for (const auto* const button : top->findChildren<QAbstractButton*>())
            texts.push_back(button->window() == top ? button->text() : QString());
        for (const auto* const label : top->findChildren<QLabel*>())
            texts.push_back(label->window() == top && label->buddy() != nullptr ? label->text() : QString());
        for (const auto* const bar : top->findChildren<QMenuBar*>())
            for (const QAction* const menu : bar->actions())
                texts.push_back(menu->text());
        expectUnique(texts);
        for (const auto* const menu : top->findChildren<QMenu*>()) {
            texts.clear();
            for (const QAction* const item : menu->actions())
                texts.push_back(item->text());
            expectUnique(texts);
        }
    }
}

TEST_F(WindowsTest, WhatCanDoNothingNowIsGreyOrSaysSo) {
    openProgrammer();
    EXPECT_FALSE(widget("cooldownPreviewBtn")->isEnabled()) << "no cooldowns are shown, so no preview";
    click("actionBarEffectCheckbox");
    settle();
    EXPECT_TRUE(widget("cooldownPreviewBtn")->isEnabled());
    EXPECT_TRUE(widget("controlAllLightsCheckbox")->isEnabled());
    click("singleColorModeBtn");
    settle();
    EXPECT_FALSE(widget("cooldownPreviewBtn")->isEnabled());
    EXPECT_FALSE(widget("controlAllLightsCheckbox")->isEnabled()) << "one color is there, not these";

    click("calibrateButton");
    QTimer::singleShot(0, [this] {
        window("mainWindow")->findChild<QAction*>("calibrateItem")->trigger();
        EXPECT_THAT(outlets().myTextScroll.text, HasSubstr("calibrating already"));
        m_runLoop.terminate();
    });
    click("calibrateButton");
}

/// All windows, in a font of another size than the desktop's own.
class FontSizeTest : public WindowsFixture, public ::testing::WithParamInterface<double> {
protected:
    FontSizeTest() : m_before(QApplication::font()) {
        QFont font = m_before;
        font.setPointSizeF(font.pointSizeF() * GetParam());
        QApplication::setFont(font);
        m_machine.userDefaults.set("firstStepsDone", false);
    }
    ~FontSizeTest() override {
        m_windows.reset();
        QApplication::setFont(m_before);
    }

    /// What a widget needs to show its whole text, at the width that it has.
    static QSize need(const QWidget& widget) {
        if (const auto* const label = qobject_cast<const QLabel*>(&widget)) {
            if (label->wordWrap())
                return {0, label->heightForWidth(label->width())};
            return label->sizeHint();
        }
        // A menu of keys or profiles may be wider than its box; what is chosen must be readable.
        if (const auto* const box = qobject_cast<const QComboBox*>(&widget))
            return {box->fontMetrics().horizontalAdvance(box->currentText()) + 2 * box->height() / 2,
                    box->minimumSizeHint().height()};
        return widget.sizeHint();
    }

    const QFont m_before;
};

TEST_P(FontSizeTest, NoTextIsClippedAndEveryWindowFitsOnASmallScreen) {
    // 1280 x 720, less a panel and a title bar.
    constexpr QSize kRoom{1280, 650};
    launch();
    click("setColorsButton");
    window("mainWindow")->findChild<QAction*>("mapKeysItem")->trigger();
    std::vector<QWidget*> tops{widget("installAddonWindow")};
    for (const app::NamedOutlet& outlet : app::namedOutlets())
        if (outlet.windowIn(outlets()) != nullptr)
            tops.push_back(window(std::string(outlet.name)));
    for (QWidget* const top : tops) {
        const std::string name = top->objectName().toStdString();
        top->show();
        settle();
        EXPECT_LE(top->width(), kRoom.width()) << name;
        EXPECT_LE(top->height(), kRoom.height()) << name;
        // As shown, and as small as the user can make it.
        for (const QSize size : {top->size(), top->minimumSize().expandedTo(top->minimumSizeHint())}) {
            top->resize(size);
            settle();
            for (const QWidget* const each : top->findChildren<QWidget*>()) {
                const bool hasText = qobject_cast<const QLabel*>(each) != nullptr ||
                                     qobject_cast<const QAbstractButton*>(each) != nullptr ||
                                     qobject_cast<const QComboBox*>(each) != nullptr;
                if (!hasText || !each->isVisibleTo(top) || each->objectName().isEmpty() ||
                    each->objectName().startsWith("qt_") || each->objectName() == "statusText")
                    continue;
                EXPECT_GE(each->width(), need(*each).width())
                    << each->objectName().toStdString() << " in " << name << " at " << size.width();
                EXPECT_GE(each->height(), need(*each).height())
                    << each->objectName().toStdString() << " in " << name << " at " << size.height();
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Sizes, FontSizeTest, ::testing::Values(1.0, 1.5));

TEST_F(WindowsTest, AStrokePaintsEveryKeyOnItsWayAndCanBeTakenBack) {
    openProgrammer();
    const lighting::KeyMap before = state().canvas.keysToColors;
    click("paintC");
    ASSERT_EQ(state().canvas.paintColor, 6);
    // Down on Q, up on P: the eight keys between them get no event of their own.
    QTest::mousePress(canvas(), Qt::LeftButton, {}, centerOf(kQ));
    QTest::mouseRelease(canvas(), Qt::LeftButton, {}, centerOf(kP));
    settle();
    for (lighting::KeyCode key = kQ; key <= kP; ++key)
        EXPECT_EQ(slotOf(key), 6) << key;
    EXPECT_EQ(slotOf(kEsc), before[kEsc]);
    EXPECT_TRUE(state().profile.profileTouched);

    click("paintD");
    paintKey(kEsc);
    EXPECT_EQ(slotOf(kEsc), 7);
    click("undoButton");
    settle();
    EXPECT_EQ(slotOf(kEsc), before[kEsc]);
    EXPECT_EQ(slotOf(kQ), 6);
    click("undoButton");
    settle();
    EXPECT_EQ(state().canvas.keysToColors, before);
    EXPECT_FALSE(widget("undoButton")->isEnabled());
    click("redoButton");
    settle();
    EXPECT_EQ(slotOf(kP), 6);
    // What is shown follows the map: green keys.
    const auto& layout = lighting::kKeyboardLayout;
    const auto key = std::ranges::find(layout, kP, &lighting::KeyRect::code);
    EXPECT_EQ(canvas()->shownColors()[static_cast<std::size_t>(key - layout.begin())],
              lighting::toRgb({0, 1, 0}));
}

TEST_F(WindowsTest, StrokesOfOneProfileAreNotTakenBackOnAnother) {
    openProgrammer();
    click("paintC");
    paintKey(kQ);
    ASSERT_TRUE(widget("undoButton")->isEnabled());
    QTimer::singleShot(0, [this] { click("saveButton"); });
    choose("currentProfilePopup", 4);
    settle();
    EXPECT_FALSE(widget("undoButton")->isEnabled());
}

TEST_F(WindowsTest, TheCanvasIsPaintedWithTheKeyboardToo) {
    openProgrammer();
    click("paintD");
    canvas()->setFocus();
    // The walk begins at G6, above F1.
    QTest::keyClick(canvas(), Qt::Key_Down);
    QTest::keyClick(canvas(), Qt::Key_Space);
    constexpr lighting::KeyCode kF1 = 0x3B;
    EXPECT_EQ(slotOf(kF1), 7);
    QTest::keyClick(canvas(), Qt::Key_Left);
    QTest::keyClick(canvas(), Qt::Key_Space);
    EXPECT_EQ(slotOf(kEsc), 7);
}

TEST_F(WindowsTest, EveryKeyCanBeReachedByArrows) {
    openProgrammer();
    canvas()->setFocus();
    QAccessibleInterface* const keys = QAccessible::queryAccessibleInterface(canvas());
    std::set<QString> seen;
    // A wandering that tries all directions from everywhere ends when nothing new comes.
    std::mt19937 random(7);
    const std::array<Qt::Key, 4> arrows{Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down};
    for (int i = 0; i < 30000 && seen.size() < lighting::kKeyboardLayout.size(); ++i) {
        seen.insert(keys->focusChild()->text(QAccessible::Name));
        QTest::keyClick(canvas(), arrows[random() % 4]);
    }
    EXPECT_EQ(seen.size(), lighting::kKeyboardLayout.size());
}

TEST_F(WindowsTest, EveryKeyIsAnAccessibleButtonThatTellsItsColorAndCanBePressed) {
    openProgrammer();
    QAccessibleInterface* const keys = QAccessible::queryAccessibleInterface(canvas());
    ASSERT_EQ(keys->childCount(), static_cast<int>(lighting::kKeyboardLayout.size()));
    std::set<QString> names;
    for (int i = 0; i < keys->childCount(); ++i) {
        QAccessibleInterface* const key = keys->child(i);
        EXPECT_EQ(key->role(), QAccessible::Button);
        EXPECT_EQ(keys->childAt(key->rect().center().x(), key->rect().center().y()), key);
        EXPECT_EQ(key->parent()->indexOfChild(key), i);
        names.insert(key->text(QAccessible::Name));
    }
    EXPECT_EQ(names.size(), lighting::kKeyboardLayout.size()) << "no two of one name";

    const QPoint q = canvas()->mapToGlobal(centerOf(kQ));
    QAccessibleInterface* const key = keys->childAt(q.x(), q.y());
    click("paintD");
    key->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    settle();
    EXPECT_EQ(slotOf(kQ), 7);
    EXPECT_EQ(key->text(QAccessible::Name), "Q – color D");
    EXPECT_TRUE(widget("undoButton")->isEnabled());
    key->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_EQ(keys->focusChild(), key);
    EXPECT_TRUE(key->state().focused);
}

TEST_F(WindowsTest, TheTabOrderFollowsTheEye) {
    // The question for unsaved edits is left out: it begins with its last button, the safe answer.
    for (const char* const name :
         {"mainWindow", "colorProgrammerWindow", "launchOptionWindow", "copyProfileDialog",
          "actionKeySetterWindow", "aboutWindow", "installAddonWindow"}) {
        QWidget* const top = window(name) != nullptr ? window(name) : widget(name);
        top->show();
        settle();
        QRect placeBefore;
        int steps = 0;
        for (QWidget* each = top->nextInFocusChain(); each != top; each = each->nextInFocusChain()) {
            if ((each->focusPolicy() & Qt::TabFocus) == 0 || !each->isVisibleTo(top) || !each->isEnabled() ||
                each->objectName().isEmpty() || each->objectName().startsWith("qt_"))
                continue;
            const QRect place(each->mapTo(top, QPoint()), each->size());
            // Along a row or a column, or on to the next.
            EXPECT_TRUE(steps == 0 || place.top() >= placeBefore.bottom() ||
                        place.left() >= placeBefore.right())
                << each->objectName().toStdString() << " in " << name;
            placeBefore = place;
            ++steps;
        }
        EXPECT_GE(steps, 2) << name;
    }
}

TEST_F(WindowsTest, AWellChangesItsColorThroughTheDialogAndCancelBringsItBack) {
    openProgrammer();
    auto* const well = dynamic_cast<ColorWell*>(widget("colorC"));
    well->click();
    auto* const dialog = window("colorProgrammerWindow")->findChild<QColorDialog*>();
    ASSERT_NE(dialog, nullptr);
    dialog->setCurrentColor("#336699");
    settle();
    EXPECT_EQ(state().canvas.keyColorSet[6], (platform::Color{0.2, 0.4, 0.6}));
    EXPECT_EQ(outlets().colorC.color.get(), (platform::Color{0.2, 0.4, 0.6}));
    dialog->reject();
    EXPECT_EQ(state().canvas.keyColorSet[6], (platform::Color{0, 1, 0}));
    settle();

    well->click();
    const QPointer again = window("colorProgrammerWindow")->findChild<QColorDialog*>();
    ASSERT_NE(again, nullptr);
    again->setCurrentColor("#336699");
    click("colorOkButton");
    settle();
    EXPECT_FALSE(again && again->isVisible()) << "the color dialog goes with the programmer";
    EXPECT_TRUE(m_machine.userDefaults.get("colorCColor1").has_value());
    EXPECT_EQ(state().canvas.keyColorSet[6], (platform::Color{0.2, 0.4, 0.6}));
}

TEST_F(WindowsTest, TheProgrammerWarnsOfACooldownColorThatIsLikeAnActionKeysOwn) {
    openProgrammer();
    auto* const warning = widget<QLabel>("paletteWarning");
    const auto cool = [this](const platform::Color& color) {
        dynamic_cast<ColorWell*>(widget("keyCoolColor"))->picked(color);
        settle();
    };
    constexpr lighting::KeyCode kOne = 0x02;
    click("paintC");
    paintKey(kOne);
    cool({0.0, 0.98, 0.0});
    EXPECT_TRUE(warning->isHidden()) << "no cooldowns are shown";
    click("actionBarEffectCheckbox");
    settle();
    EXPECT_THAT(warning->text().toStdString(), HasSubstr("hard to tell from color C"));
    EXPECT_TRUE(warning->isVisible());
    cool({0.3, 0.0, 0.0});
    EXPECT_THAT(warning->text().toStdString(), testing::Not(HasSubstr("color C")));
}

/// The programmer in one of the two ways to write decimals.
class BlinkTimeTest : public WindowsFixture, public testing::WithParamInterface<QLocale::Language> {
protected:
    BlinkTimeTest() { QLocale::setDefault(QLocale(GetParam())); }
    ~BlinkTimeTest() override { QLocale::setDefault(QLocale::c()); }

    /// What is stored after this was typed over what stood there, and the box was left.
    std::optional<double> type(const char* text) {
        auto* const box = widget("blinkTimeTextbox");
        box->setFocus();
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(box, text);
        widget("colorOkButton")->setFocus();
        return platform::storedDouble(m_machine.userDefaults, "blinkTimePref");
    }
    std::string shown() { return widget("blinkTimeTextbox")->property("text").toString().toStdString(); }
};

INSTANTIATE_TEST_SUITE_P(, BlinkTimeTest, testing::Values(QLocale::German, QLocale::English));

TEST_P(BlinkTimeTest, NeverTurnsIntoAnotherNumber) {
    const std::string sign = QLocale().decimalPoint().toStdString();
    m_machine.userDefaults.set("blinkTimePref", 12.5);
    launch();
    openProgrammer();
    window("colorProgrammerWindow")->activateWindow();
    EXPECT_EQ(shown(), "12" + sign + "5") << "stored before there was a limit";
    EXPECT_EQ(type("1,5"), 1.5);
    EXPECT_EQ(shown(), "1" + sign + "5");
    EXPECT_EQ(type("2.25"), 2.25);
    EXPECT_EQ(shown(), "2" + sign + "25");
    const auto words = [this] { return widget<QLabel>("secondsLabel")->text().toStdString(); };
    EXPECT_EQ(words(), "seconds (0" + sign + "01 to 5)");
    for (const char* const none :
         {"abc", "0", "-1", "15", "0,001", ",", "1e3", "1,5 s", "1,2345", "1.234,5"}) {
        EXPECT_EQ(type(none), 2.25) << none;
        EXPECT_EQ(shown(), "2" + sign + "25") << none;
        EXPECT_THAT(words(), HasSubstr("Only")) << none;
    }
    QTest::keyClick(widget("blinkTimeTextbox"), Qt::Key_Down);
    EXPECT_EQ(platform::storedDouble(m_machine.userDefaults, "blinkTimePref"), 2.15);
    EXPECT_EQ(type("0,01"), 0.01);
    EXPECT_EQ(words(), "seconds (0" + sign + "01 to 5)");
    click("colorOkButton");
    EXPECT_EQ(platform::storedDouble(m_machine.userDefaults, "blinkTimePref"), 0.01);
}

TEST_F(WindowsTest, ClosingTheMainWindowClosesItsCompanionsAndAsksToQuit) {
    openProgrammer();
    click("helpButton");
    settle();
    ASSERT_TRUE(window("helpWindow")->isVisible());
    window("helpWindow")->close();
    EXPECT_FALSE(outlets().helpWindow.visible.get());
    EXPECT_FALSE(m_machine.runLoop.isTerminated());
    window("mainWindow")->close();
    EXPECT_FALSE(window("colorProgrammerWindow")->isVisible());
    EXPECT_FALSE(window("mainWindow")->isVisible());
    EXPECT_TRUE(m_machine.runLoop.isTerminated()) << "the application has quit";
}

class AddonWindowTest : public WindowsTest {
protected:
    AddonWindowTest() {
        qputenv("HOME", QFile::encodeName(m_home.path()));
        const QString game = "/.wine/drive_c/Program Files (x86)/World of Warcraft/";
        QDir(m_home.path() + game).mkpath("_retail_/WTF");
        QDir(m_home.path()).mkpath("elsewhere/_classic_era_/Interface");
    }
    ~AddonWindowTest() override { qputenv("HOME", m_homeBefore); }

    /// Waits until the window has done what it was asked for; what it lists then.
    std::string listed() {
        EXPECT_TRUE(QTest::qWaitFor([this] { return widget("addonChooseButton")->isEnabled(); }));
        const auto* const list = widget<QListWidget>("addonClients");
        QStringList lines;
        for (int row = 0; row < list->count(); ++row)
            lines.append(list->item(row)->text());
        return lines.join('\n').toStdString();
    }
    std::string result() { return widget<QLabel>("addonResult")->text().toStdString(); }
    /// As a user does in the panel.
    void chooseFolder(const QString& folder) {
        click("addonChooseButton");
        auto* const panel = widget("installAddonWindow")->findChild<QFileDialog*>();
        ASSERT_NE(panel, nullptr);
        panel->setDirectory(folder);
        panel->selectFile(folder);
        static_cast<QDialog*>(panel)->accept();
        settle();
    }

    const QByteArray m_homeBefore = qgetenv("HOME");
    QTemporaryDir m_home;
};

TEST_F(AddonWindowTest, ListsTheClientsAndSaysWhatCameOfInstalling) {
    window("mainWindow")->findChild<QAction*>("installAddonItem")->trigger();
    EXPECT_FALSE(widget("addonInstallButton")->isEnabled()) << "it is looking";
    EXPECT_EQ(listed(), "Retail: the add-on is missing; it will be installed\n"
                        "~/.wine/drive_c/Program Files (x86)/World of Warcraft/_retail_");
    chooseFolder(m_home.filePath(".wine"));
    EXPECT_THAT(listed(), HasSubstr("Retail"));
    EXPECT_THAT(result(), HasSubstr("/.wine is no folder of World of Warcraft."));
    chooseFolder(m_home.filePath("elsewhere"));
    EXPECT_THAT(listed(), HasSubstr("_retail_\nClassic Era: the add-on is missing"));
    click("addonInstallButton");
    EXPECT_THAT(listed(), AllOf(HasSubstr("Retail: installed "), HasSubstr("Classic Era: installed ")));
    EXPECT_THAT(result(), HasSubstr("tick Glimraxmit"));
    EXPECT_FALSE(widget("addonInstallButton")->isEnabled());
    EXPECT_TRUE(
        QFile::exists(m_home.filePath("elsewhere/_classic_era_/Interface/AddOns/Glimraxmit/Glimraxmit.toc")));

    QTest::keyClick(widget("installAddonWindow"), Qt::Key_Escape);
    EXPECT_FALSE(widget("installAddonWindow")->isVisible());
    window("mainWindow")->findChild<QAction*>("installAddonItem")->trigger();
    EXPECT_THAT(listed(), HasSubstr("Retail: the add-on is ")) << "it looks anew";
    EXPECT_THAT(listed(), AllOf(HasSubstr(", current"), testing::Not(HasSubstr("Classic Era"))));
    EXPECT_EQ(result(), "There is nothing to install.");
}

using FirstStepsTest = WindowsFixture;

TEST_F(FirstStepsTest, GoForGoodOnceTheyAreDone) {
    m_machine.userDefaults.set("firstStepsDone", false);
    launch();
    EXPECT_FALSE(widget("guidePanel")->isHidden());
    EXPECT_THAT(widget<QLabel>("guideText")->text().toStdString(), HasSubstr("test keyboard"));
    click("guideNext");
    click("guideAct");
    EXPECT_TRUE(widget("installAddonWindow")->isVisible());
    for (int step = 1; step < 5; ++step)
        click("guideNext");
    EXPECT_TRUE(widget("guidePanel")->isHidden());
    EXPECT_EQ(platform::storedBool(m_machine.userDefaults, "firstStepsDone"), true);
    window("mainWindow")->findChild<QAction*>("guideItem")->trigger();
    EXPECT_FALSE(widget("guidePanel")->isHidden());
    EXPECT_EQ(window("mainWindow")->focusWidget(), widget("guideNext")) << "also where it was there already";
}

TEST_F(WindowsTest, TheMenuChoosesTheDriverAndWhatBecomesOfEffects) {
    const auto item = [this](const char* name) { return window("mainWindow")->findChild<QAction*>(name); };
    EXPECT_TRUE(item("driver-auto")->isChecked());
    item("driver-usb")->trigger();
    EXPECT_EQ(m_driver, "usb");
    EXPECT_FALSE(item("driver-auto")->isChecked());
    m_keyboardName.set("keyboard G810 on USB");
    EXPECT_TRUE(widget<QLabel>("statusText")->accessibleName().startsWith("Keyboard G810 on USB"));

    std::string sent;
    windows().binder().aboutToSend.observe(
        [&sent](const app::ActionRow& action, const app::ActionArgument& argument) {
            sent = action.selector + (std::get<bool>(argument) ? " on" : " off");
        });
    item("endStaleEffectsItem")->trigger();
    EXPECT_EQ(sent, "endStaleEffectsMI: on") << "what is sent is what a recording has";
    EXPECT_TRUE(state().options.endStaleEffects);
    EXPECT_EQ(m_machine.userDefaults.get("endStaleEffects"), platform::StoredValue{true});
    m_delegate->operations().staleEffects.setEndStaleEffects(false);
    Q_EMIT window("mainWindow")->findChild<QMenu*>("keyboardMenu")->aboutToShow();
    EXPECT_FALSE(item("endStaleEffectsItem")->isChecked());
}

TEST(StatusTextTest, TellsWhatTheProgramSeesInPlainWords) {
    const auto text = [](const StatusSnapshot& snapshot) { return statusText(snapshot).toStdString(); };
    EXPECT_EQ(
        text({"virtual keyboard", "reading the screen", false, std::nullopt, 0, 1}),
        "Virtual keyboard   ·   Reading the screen   ·   Game not in front   ·   Strip not seen yet   ·   "
        "0 messages per minute   ·   Profile 1");
    EXPECT_THAT(text({"", "", true, 1, 1, 9}), HasSubstr("Strip seen now   ·   1 message per"));
    EXPECT_THAT(text({"", "", true, 119, 1, 9}), HasSubstr("119 seconds ago"));
    EXPECT_THAT(text({"", "", true, 300, 1, 9}), HasSubstr("5 minutes ago"));
}

TEST(StatusTextTest, CountsMessagesPerMinuteAlsoAcrossGaps) {
    using namespace std::chrono_literals;
    RatePerMinute rate;
    EXPECT_EQ(rate.perMinute(), 0U);
    for (int second = 0; second <= 30; ++second)
        rate.add(1h + second * 1s, 100U + static_cast<unsigned>(second));
    EXPECT_EQ(rate.perMinute(), 30U) << "half a minute so far";
    for (int second = 31; second <= 300; ++second)
        rate.add(1h + second * 1s, 100U + static_cast<unsigned>(second));
    EXPECT_EQ(rate.perMinute(), 60U);
    // Nobody looked for five minutes, in which 500 came; then silence.
    rate.add(1h + 600s, 900);
    EXPECT_EQ(rate.perMinute(), 100U);
    rate.add(1h + 661s, 900);
    EXPECT_EQ(rate.perMinute(), 0U);
}

TEST_F(WindowsTest, TheStatusLineTellsWhetherTheGameIsInFrontAndFitsIntoTheWindow) {
    auto* const status = widget<QLabel>("statusText");
    const auto text = [status] { return status->accessibleName().toStdString(); };
    EXPECT_THAT(text(), HasSubstr("Game not in front"));
    m_machine.workspace.setFrontmostApplication(platform::RunningApplication{"com.blizzard.worldofwarcraft"});
    EXPECT_TRUE(QTest::qWaitFor([&] { return text().find("Game in front") != std::string::npos; }));
    // No application in front is not the game either.
    m_machine.workspace.setFrontmostApplication(std::nullopt);
    EXPECT_TRUE(QTest::qWaitFor([&] { return text().find("Game not in front") != std::string::npos; }));

    window("mainWindow")->resize(1280, 720);
    settle();
    EXPECT_EQ(status->text(), status->accessibleName()) << "nothing left out";
    QFont large = window("mainWindow")->font();
    large.setPointSizeF(large.pointSizeF() * 3);
    status->setFont(large);
    window("mainWindow")->resize(window("mainWindow")->minimumSizeHint());
    settle();
    EXPECT_NE(status->text(), status->accessibleName());
    EXPECT_LE(status->fontMetrics().horizontalAdvance(status->text()), status->width());
}

TEST_F(WindowsTest, TheStatusLineHardlyWakesTheProgramWhileNobodyCanSeeIt) {
    QMainWindow mainWindow;
    int looks = 0;
    const StatusLine status(
        &mainWindow, *m_delegate, m_keyboardName, [] { return std::string_view{}; },
        [&looks] {
            ++looks;
            return platform::monotonicNow();
        });
    EXPECT_EQ(status.period(), StatusLine::kHiddenPeriod);
    const int before = looks;
    mainWindow.show();
    EXPECT_EQ(status.period(), StatusLine::kPeriod);
    EXPECT_EQ(looks, before + 1) << "what is shown is up to date";
    mainWindow.showMinimized();
    EXPECT_TRUE(QTest::qWaitFor([&] { return status.period() == StatusLine::kHiddenPeriod; }));
    mainWindow.showNormal();
    EXPECT_TRUE(QTest::qWaitFor([&] { return status.period() == StatusLine::kPeriod; }));
}

TEST(PaletteCheckTest, WarnsOfColorsThatAnyoneOrSomeCannotTellFromTheCooldownColor) {
    using app::ColorVision;
    lighting::ColorSet colors;
    colors.fill({0, 0, 1});
    colors[lighting::kCooldownSlot] = {1.0, 0.0, 0.0};
    colors[6] = {0.97, 0.02, 0.0};
    // Without the sense for green, and only then, this is like a dark red.
    colors[7] = {0.0, 0.5, 0.0};
    lighting::KeyMap map(lighting::kKeyCodeCount, lighting::kColorASlot);
    profiles::ActionKeyMap keys;
    keys.actionBar1Keys[0] = kQ;
    EXPECT_THAT(app::checkPalette(colors, map, keys), IsEmpty());
    map[kQ] = 6;
    EXPECT_THAT(app::checkPalette(colors, map, keys),
                ElementsAre(app::PaletteWarning{6, ColorVision::Common}));
    map[kQ] = 7;
    colors[lighting::kCooldownSlot] = {0.7, 0.0, 0.0};
    EXPECT_THAT(app::checkPalette(colors, map, keys),
                ElementsAre(app::PaletteWarning{7, ColorVision::Deutan}));
    // No slots, or a key map from elsewhere: nothing to say.
    EXPECT_THAT(app::checkPalette({}, map, keys), IsEmpty());
    map[kQ] = 99;
    EXPECT_THAT(app::checkPalette(colors, map, keys), IsEmpty());
}

} // namespace
} // namespace glimra::desktop
