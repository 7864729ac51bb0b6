#include "windows_fixture.h"

#include "desktop/settings/light_places.h"
#include "desktop/windows/color_well.h"
#include "platform/stored_values.h"

#include <QAccessible>
#include <QCheckBox>
#include <QFileDialog>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QTemporaryDir>
#include <QToolTip>

#include <gmock/gmock.h>

namespace glimra::desktop {
namespace {

using glimra::tests::eventually;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

constexpr lighting::KeyCode kEsc = 0x01;
constexpr lighting::KeyCode kP = 0x19;
constexpr lighting::KeyCode kF1 = 0x3B;
constexpr int kSlotOfD = 7;

class WindowsTest : public WindowsFixture {
protected:
    WindowsTest() { launch(); }
};

/// The widgets that the design names, as opposed to Qt's own parts of them.
bool isDesigned(const QWidget& widget) {
    return !widget.objectName().isEmpty() && !widget.objectName().startsWith("qt_");
}
std::vector<QWidget*> designed(const QWidget* top) {
    std::vector<QWidget*> widgets;
    for (QWidget* const each : top->findChildren<QWidget*>())
        if (isDesigned(*each))
            widgets.push_back(each);
    return widgets;
}

TEST_F(WindowsTest, EveryOutletAndSelectorHasItsWidgetAndNoWidgetIsUnknown) {
    EXPECT_THAT(windows().binder().problems(), IsEmpty());
}

TEST_F(WindowsTest, TheBinderTellsWhereADesignAndTheTablesDisagree) {
    QWidget design;
    const auto add = [&design](QWidget* widget, const char* name, const QVariant& action = {}) {
        widget->setParent(&design);
        widget->setObjectName(name);
        widget->setProperty("action", action);
    };
    add(new QPushButton, "someButton", "makeCoffee:");
    add(new QPushButton, "otherButton");
    add(new QComboBox, "singleColorModeBtn");
    add(new QCheckBox, "actionBarEffectCheckbox", "singleColorModeCheck:");
    InterfaceBinder binder(*m_delegate);
    binder.bind(&design);
    EXPECT_THAT(
        binder.problems(),
        IsSupersetOf({"someButton sends the unknown makeCoffee:", "otherButton is no outlet and does nothing",
                      "singleColorModeBtn is of the wrong kind for its outlet",
                      "actionBarEffectCheckbox sends singleColorModeCheck:, which another control sends",
                      "no widget for the outlet mainWindow", "no widget sends calibrateButton:"}));
}

TEST_F(WindowsTest, EverythingThatCanBeOperatedHasAnAccessibleName) {
    for (QWidget* const top : QApplication::topLevelWidgets())
        for (const QWidget* const each : designed(top)) {
            if (each->focusPolicy() == Qt::NoFocus || each->isHidden() ||
                qobject_cast<const QLabel*>(each) != nullptr)
                continue;
            const auto* const button = qobject_cast<const QAbstractButton*>(each);
            const bool hasBuddy = std::ranges::any_of(
                top->findChildren<QLabel*>(), [each](const QLabel* label) { return label->buddy() == each; });
            EXPECT_TRUE(!each->accessibleName().isEmpty() || hasBuddy ||
                        (button != nullptr && button->text().size() > 1))
                << each->objectName().toStdString();
        }
}

TEST_F(WindowsTest, ANameFromOutsideIsNoMarkup) {
    launch();
    QToolTip::showText({10, 10}, "<h1>Keyboard</h1>");
    int labels = 0;
    for (QWidget* const widget : QApplication::allWidgets())
        if (auto* const label = qobject_cast<QLabel*>(widget)) {
            label->ensurePolished();
            EXPECT_EQ(label->textFormat() == Qt::RichText, label->objectName() == "activityText");
            EXPECT_NE(label->textFormat(), Qt::AutoText) << label->text().toStdString();
            labels += label->text().startsWith("<h1>") ? 1000 : 1;
        }
    EXPECT_GT(labels, 1000) << "the tool tip is among them";
}

TEST_F(WindowsTest, NoTwoControlsOfAWindowOrMenuHaveOneMnemonic) {
    const auto expectUnique = [](const QStringList& texts) {
        std::map<QString, QString> owners;
        for (const QString& text : texts) {
            const QString key = QKeySequence::mnemonic(text).toString();
            EXPECT_TRUE(key.isEmpty() || owners.emplace(key, text).second)
                << key.toStdString() << ": " << owners[key].toStdString() << ", " << text.toStdString();
        }
    };
    const auto textsOf = [](const QList<QAction*>& items) {
        QStringList texts;
        for (const QAction* const item : items)
            texts.append(item->text());
        return texts;
    };
    for (QWidget* const top : QApplication::topLevelWidgets()) {
        QStringList texts;
        for (const auto* const button : top->findChildren<QAbstractButton*>())
            texts.append(button->window() == top ? button->text() : QString());
        for (const auto* const label : top->findChildren<QLabel*>())
            texts.append(label->window() == top && label->buddy() != nullptr ? label->text() : QString());
        for (const auto* const bar : top->findChildren<QMenuBar*>())
            texts.append(textsOf(bar->actions()));
        expectUnique(texts);
        for (const auto* const menu : top->findChildren<QMenu*>())
            expectUnique(textsOf(menu->actions()));
    }
}

TEST_F(WindowsTest, WhatCanDoNothingNowIsGreyOrSaysSo) {
    openProgrammer();
    EXPECT_FALSE(widget("cooldownPreviewBtn")->isEnabled()) << "no cooldowns are shown, so no preview";
    click("actionBarEffectCheckbox");
    EXPECT_TRUE(widget("cooldownPreviewBtn")->isEnabled());
    EXPECT_TRUE(widget("controlAllLightsCheckbox")->isEnabled());
    click("singleColorModeBtn");
    EXPECT_FALSE(widget("cooldownPreviewBtn")->isEnabled());
    EXPECT_FALSE(widget("controlAllLightsCheckbox")->isEnabled()) << "one color is there, not these";
    EXPECT_FALSE(widget("actionBarEffectCheckbox")->isEnabled());

    click("calibrateButton");
    QTimer::singleShot(0, [this] {
        item("calibrateItem")->trigger();
        EXPECT_THAT(outlets().myTextScroll.text, HasSubstr("calibrating already"));
        m_runLoop.terminate();
    });
    click("calibrateButton");
}

/// All windows, in a font of another size than the desktop's own.
class FontSizeTest : public WindowsFixture, public testing::WithParamInterface<double> {
protected:
    FontSizeTest() { QApplication::setFont(enlarged(m_before, GetParam())); }
    ~FontSizeTest() override {
        m_windows.reset();
        QApplication::setFont(m_before);
    }

    static QFont enlarged(QFont font, double factor) {
        font.setPointSizeF(font.pointSizeF() * factor);
        return font;
    }
    /// What a widget needs to show its whole text, at the width that it has.
    static QSize need(const QWidget& widget) {
        if (const auto* const label = qobject_cast<const QLabel*>(&widget))
            return label->wordWrap() ? QSize(0, label->heightForWidth(label->width())) : label->sizeHint();
        // A menu of keys or profiles may be wider than its box; what is chosen must be readable.
        if (const auto* const box = qobject_cast<const QComboBox*>(&widget))
            return {box->fontMetrics().horizontalAdvance(box->currentText()) + box->height(),
                    box->minimumSizeHint().height()};
        return qobject_cast<const QAbstractButton*>(&widget) != nullptr ? widget.sizeHint() : QSize();
    }

    const QFont m_before = QApplication::font();
};

INSTANTIATE_TEST_SUITE_P(Sizes, FontSizeTest, testing::Values(1.0, 1.5, 2.0));

/// Scrolls to a button; whether all of it can be seen then, in a window that lies on its screen.
bool canBeReached(QWidget* top, QWidget* button) {
    for (QWidget* each = button; each != top; each = each->parentWidget())
        if (auto* const area = qobject_cast<QScrollArea*>(each))
            area->ensureWidgetVisible(button);
    return top->screen()->availableGeometry().contains(top->frameGeometry()) &&
           button->visibleRegion().boundingRect() == button->rect();
}

TEST_P(FontSizeTest, NoTextIsClippedAndEveryButtonIsOnTheScreen) {
    ASSERT_EQ(QGuiApplication::primaryScreen()->name().isEmpty(),
              qEnvironmentVariableIsEmpty("GLIMRA_TEST_SCREENS"));
    m_machine.userDefaults.set("firstStepsDone", false);
    launch();
    click("setColorsButton");
    item("mapKeysItem")->trigger();
    std::vector<QWidget*> tops{widget("installAddonWindow")};
    for (const app::NamedOutlet& outlet : app::namedOutlets())
        if (outlet.windowIn(outlets()) != nullptr)
            tops.push_back(window(std::string(outlet.name)));
    for (QWidget* const top : tops) {
        const std::string name = top->objectName().toStdString();
        top->show();
        settle();
        for (auto* const button : top->findChildren<QAbstractButton*>())
            EXPECT_TRUE(!button->isVisibleTo(top) || button->window() != top || canBeReached(top, button))
                << button->objectName().toStdString() << " in " << name;
        // As shown, and as small as the user can make it.
        for (const QSize size : {top->size(), top->minimumSize().expandedTo(top->minimumSizeHint())}) {
            top->resize(size);
            settle();
            for (const QWidget* const each : designed(top)) {
                if (!each->isVisibleTo(top) || each->objectName() == "statusText")
                    continue;
                EXPECT_TRUE(!each->property("fontScale").isValid() ||
                            each->font().pointSizeF() > top->font().pointSizeF());
                EXPECT_EQ(each->size().expandedTo(need(*each)), each->size())
                    << each->objectName().toStdString() << " in " << name << " at " << size.width();
            }
        }
    }
}

TEST_F(WindowsTest, AStrokePaintsEveryKeyOnItsWay) {
    openProgrammer();
    const lighting::KeyMap before = state().canvas.keysToColors;
    click("paintC");
    // Down on Q, up on P: the eight keys between them get no event of their own.
    QTest::mousePress(canvas(), Qt::LeftButton, {}, centerOf(kQ));
    QTest::mouseRelease(canvas(), Qt::LeftButton, {}, centerOf(kP));
    settle();
    for (lighting::KeyCode key = kQ; key <= kP; ++key)
        EXPECT_EQ(slotOf(key), kSlotOfC) << key;
    EXPECT_EQ(slotOf(kEsc), before[kEsc]);
    EXPECT_EQ(canvas()->shownColors()[placeOf(kP)], lighting::toRgb({0, 1, 0})) << "they look green";
    click("undoButton");
    EXPECT_EQ(state().canvas.keysToColors, before);
}

TEST_F(WindowsTest, EveryKeyCanBeReachedByArrowsAndPaintedWithSpace) {
    openProgrammer();
    click("paintD");
    paintKey(kQ);          // whose stroke ends with the release
    canvas()->focusKey(0); // G6, above F1
    for (const auto& [arrow, key] : {std::pair{Qt::Key_Down, kF1}, {Qt::Key_Left, kEsc}}) {
        QTest::keyClick(canvas(), arrow);
        QTest::keyClick(canvas(), Qt::Key_Space);
        EXPECT_EQ(slotOf(key), kSlotOfD);
    }
    QAccessibleInterface* const keys = QAccessible::queryAccessibleInterface(canvas());
    std::set<QString> seen;
    // A wandering that tries all directions from everywhere ends when nothing new comes.
    std::mt19937 random(7);
    const std::array<Qt::Key, 4> arrows{Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down};
    for (int i = 0; i < 30000 && seen.size() < lighting::kKeyboardLayout.size(); ++i) {
        seen.insert(keys->focusChild()->text(QAccessible::Name));
        QTest::keyClick(canvas(), arrows[random() % 4]);
    }
    EXPECT_EQ(seen.size(), lighting::kKeyboardLayout.size()) << "no two of one name";
}

TEST_F(WindowsTest, EveryKeyIsAnAccessibleButtonThatTellsItsColorAndCanBePressed) {
    openProgrammer();
    QAccessibleInterface* const keys = QAccessible::queryAccessibleInterface(canvas());
    ASSERT_EQ(keys->childCount(), static_cast<int>(lighting::kKeyboardLayout.size()));
    for (int i = 0; i < keys->childCount(); ++i) {
        QAccessibleInterface* const key = keys->child(i);
        EXPECT_EQ(key->role(), QAccessible::Button);
        EXPECT_EQ(keys->childAt(key->rect().center().x(), key->rect().center().y()), key);
    }

    const QPoint q = canvas()->mapToGlobal(centerOf(kQ));
    QAccessibleInterface* const key = keys->childAt(q.x(), q.y());
    click("paintD");
    key->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    settle();
    EXPECT_EQ(slotOf(kQ), kSlotOfD);
    EXPECT_EQ(key->text(QAccessible::Name), "Q – color D, red");
    key->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_EQ(keys->focusChild(), key);
    EXPECT_TRUE(key->state().focused);
}

TEST_F(WindowsTest, WhatAScreenReaderTogglesIsDone) {
    openProgrammer();
    const auto toggle = [this](const char* name) {
        auto* const actions = QAccessible::queryAccessibleInterface(widget(name))->actionInterface();
        actions->doAction(QAccessibleActionInterface::toggleAction());
        settle();
    };
    toggle("paintC");
    EXPECT_EQ(state().canvas.paintColor, kSlotOfC);
    toggle("singleColorModeBtn");
    EXPECT_TRUE(state().options.useSingleColorMode);
    toggle("singleColorModeBtn");
    EXPECT_FALSE(state().options.useSingleColorMode);
}

TEST_F(WindowsTest, ASlotTakesTheKeyThatIsPressedOrClicked) {
    item("mapKeysItem")->trigger();
    settle();
    QTest::mouseClick(widget("slot102"), Qt::LeftButton);
    settle();
    QKeyEvent physicalQ(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, 24, 0, 0, "a");
    QApplication::sendEvent(widget("slot102"), &physicalQ);
    EXPECT_EQ(widget<QComboBox>("menu102")->currentText(), "Q");
    auto* const picture = dynamic_cast<KeyboardCanvas*>(widget("slotPicture"));
    QTest::mouseClick(picture, Qt::LeftButton, {}, picture->faceOfKey(0x2).center().toPoint());
    EXPECT_NE(textOf("sharedKeys").find("1 is the key of slot 1 of bar 1 and slot 3 of bar 1."),
              std::string::npos);
}

TEST_F(WindowsTest, TheMenusTellTheShortcutsAndOfferOnlyWhatThereIs) {
    item("shortcutsItem")->trigger();
    const QString list = widget<QPlainTextEdit>("shortcutsWindowText")->toPlainText();
    for (const char* const line :
         {"Ctrl+L              Calibrate", "Ctrl+Shift+3        Profile 3", "Ctrl+A              All Keys"})
        EXPECT_TRUE(list.contains(line)) << list.toStdString();
    EXPECT_FALSE(item("downloadsItem")->isVisible()) << "this build has no such page";
    item("appearance-light")->trigger();
    EXPECT_EQ(m_appearance, "light");
    EXPECT_FALSE(item("appearance-desktop")->isChecked());
}

TEST_F(WindowsTest, ALightIsPlacedByPressingItsKeyAndStaysWhereItWasPut) {
    m_placing.setBoard(keyboards::openrgb::HandPlacing::Board{"1f", "Board", {"LED 1", "LED 2"}, {}});
    item("placeLightsItem")->trigger();
    auto* const lights = widget<QListWidget>("placedLights");
    lights->setCurrentRow(1);
    QTest::keyClick(lights, Qt::Key_Return);
    EXPECT_EQ(m_placing.onlyLed(), 1U);
    QKeyEvent physicalQ(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, 24, 0, 0, "a");
    QApplication::sendEvent(lights, &physicalQ);
    EXPECT_EQ(m_placing.onlyLed(), std::nullopt);
    EXPECT_EQ(m_resends, 2);
    EXPECT_EQ(lights->item(1)->text(), "LED 2  –  Q, by hand");
    const auto stored = loadLightPlaces(m_machine.userDefaults);
    EXPECT_EQ(stored.at("1f"), (keyboards::openrgb::HandPlacing::Places{{1, placeOf(kQ)}}));
    click("lightAsFound");
    EXPECT_EQ(lights->item(1)->text(), "LED 2  –  no key");
}

TEST_F(WindowsTest, TheTabOrderFollowsTheEye) {
    // The question for unsaved edits is left out: it begins with its last button, the safe answer.
    for (const char* const name : {"mainWindow", "colorProgrammerWindow", "launchOptionWindow",
                                   "copyProfileDialog", "actionKeySetterWindow", "installAddonWindow"}) {
        QWidget* const top = window(name) != nullptr ? window(name) : widget(name);
        top->show();
        settle();
        const std::vector<QWidget*> widgets = designed(top);
        std::vector<QRect> places;
        for (QWidget* each = top->nextInFocusChain(); each != top; each = each->nextInFocusChain()) {
            if ((each->focusPolicy() & Qt::TabFocus) == 0 || !each->isVisibleTo(top) || !each->isEnabled() ||
                std::ranges::find(widgets, each) == widgets.end())
                continue;
            const QRect place(each->mapTo(top, QPoint()), each->size());
            // Along a row or a column, or on to the next.
            EXPECT_TRUE(places.empty() || place.top() >= places.back().bottom() ||
                        place.left() >= places.back().right())
                << each->objectName().toStdString() << " in " << name;
            places.push_back(place);
        }
        EXPECT_GE(places.size(), 2U) << name;
    }
}

TEST_F(WindowsTest, TheProgrammerWarnsOfACooldownColorThatIsLikeAnActionKeysOwn) {
    openProgrammer();
    auto* const warning = widget<QLabel>("paletteWarning");
    const auto cool = [this](const platform::Color& color) {
        dynamic_cast<ColorWell*>(widget("keyCoolColor"))->picked(color);
        settle();
    };
    click("paintC");
    paintKey(kOne);
    cool({0.0, 0.98, 0.0});
    EXPECT_TRUE(warning->isHidden()) << "no cooldowns are shown";
    click("actionBarEffectCheckbox");
    EXPECT_THAT(warning->text().toStdString(), HasSubstr("hard to tell from color C"));
    EXPECT_TRUE(warning->isVisible());
    cool({0.3, 0.0, 0.0});
    EXPECT_THAT(warning->text().toStdString(), Not(HasSubstr("color C")));
}

/// The programmer in one of the two ways to write decimals.
class BlinkTimeTest : public WindowsFixture, public testing::WithParamInterface<QLocale::Language> {
protected:
    BlinkTimeTest() { QLocale::setDefault(QLocale(GetParam())); }
    ~BlinkTimeTest() override { QLocale::setDefault(QLocale::c()); }

    std::optional<double> stored() { return platform::storedDouble(m_machine.userDefaults, "blinkTimePref"); }
    /// What is stored after this was typed over what stood there, and the box was left.
    std::optional<double> type(const char* text) {
        auto* const box = widget("blinkTimeTextbox");
        box->setFocus();
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(box, text);
        widget("colorOkButton")->setFocus();
        return stored();
    }
    std::string shown() { return widget("blinkTimeTextbox")->property("text").toString().toStdString(); }
};

INSTANTIATE_TEST_SUITE_P(, BlinkTimeTest, testing::Values(QLocale::German, QLocale::English));

TEST_P(BlinkTimeTest, NeverTurnsIntoAnotherNumber) {
    const std::string sign = QLocale().decimalPoint().toStdString();
    const std::string limits = "seconds (0" + sign + "01 to 5)";
    m_machine.userDefaults.set("blinkTimePref", 12.5);
    launch();
    openProgrammer();
    window("colorProgrammerWindow")->activateWindow();
    EXPECT_EQ(shown(), "12" + sign + "5") << "stored before there was a limit";
    EXPECT_EQ(type("1,5"), 1.5);
    EXPECT_EQ(type("2.25"), 2.25);
    EXPECT_EQ(textOf("secondsLabel"), limits);
    for (const char* const none :
         {"abc", "0", "-1", "15", "0,001", ",", "1e3", "1,5 s", "1,2345", "1.234,5"}) {
        EXPECT_EQ(type(none), 2.25) << none;
        EXPECT_EQ(shown(), "2" + sign + "25") << none;
        EXPECT_THAT(textOf("secondsLabel"), HasSubstr("Only")) << none;
    }
    QTest::keyClick(widget("blinkTimeTextbox"), Qt::Key_Down);
    EXPECT_EQ(stored(), 2.15);
    EXPECT_EQ(type("0,01"), 0.01);
    EXPECT_EQ(textOf("secondsLabel"), limits);
    click("colorOkButton");
    EXPECT_EQ(stored(), 0.01);
}

class AddonWindowTest : public WindowsTest {
protected:
    AddonWindowTest() {
        qputenv("HOME", QFile::encodeName(m_home.path()));
        QDir(m_home.filePath(".wine/drive_c/Program Files (x86)/World of Warcraft")).mkpath("_retail_/WTF");
        QDir(m_home.path()).mkpath("elsewhere/_classic_era_/Interface");
    }
    ~AddonWindowTest() override { qputenv("HOME", m_homeBefore); }

    /// Waits until the window has done what it was asked for; what it lists then.
    std::string listed() {
        EXPECT_TRUE(eventually([this] { return widget("addonChooseButton")->isEnabled(); }));
        const auto* const list = widget<QListWidget>("addonClients");
        std::string lines;
        for (int row = 0; row < list->count(); ++row)
            lines += list->item(row)->text().toStdString() + '\n';
        return lines;
    }
    /// As a user does in the panel.
    void chooseFolder(const QString& folder) {
        // The panel is answered before it has looked into its first folder.
        widget<QAbstractButton>("addonChooseButton")->click();
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
    item("installAddonItem")->trigger();
    EXPECT_FALSE(widget("addonInstallButton")->isEnabled()) << "it is looking";
    EXPECT_EQ(listed(), "Retail: the add-on is missing; it will be installed\n"
                        "~/.wine/drive_c/Program Files (x86)/World of Warcraft/_retail_\n");
    chooseFolder(m_home.filePath(".wine"));
    EXPECT_THAT(listed(), HasSubstr("Retail"));
    EXPECT_THAT(textOf("addonResult"), HasSubstr("/.wine is no folder of World of Warcraft."));
    chooseFolder(m_home.filePath("elsewhere"));
    EXPECT_THAT(listed(), HasSubstr("_retail_\nClassic Era: the add-on is missing"));
    click("addonInstallButton");
    EXPECT_THAT(listed(), AllOf(HasSubstr("Retail: installed "), HasSubstr("Classic Era: installed ")));
    EXPECT_THAT(textOf("addonResult"), HasSubstr("tick Glimraxmit"));
    EXPECT_FALSE(widget("addonInstallButton")->isEnabled());

    QTest::keyClick(widget("installAddonWindow"), Qt::Key_Escape);
    EXPECT_FALSE(widget("installAddonWindow")->isVisible());
    item("installAddonItem")->trigger();
    EXPECT_THAT(listed(), AllOf(HasSubstr(", current"), Not(HasSubstr("Classic Era")))) << "it looks anew";
    EXPECT_EQ(textOf("addonResult"), "There is nothing to install.");
}

using FirstStepsTest = WindowsFixture;

TEST_F(FirstStepsTest, ComeTrueByThemselvesAndGoForGoodWhenTheyAreHidden) {
    m_machine.userDefaults.set("firstStepsDone", false);
    launch();
    const auto isDone = [this](const char* step) {
        return widget<QuietButton>(step)->mark() == Mark::Good &&
               widget<QuietButton>(step)->accessibleName().endsWith(", done");
    };
    EXPECT_FALSE(widget("guidePanel")->isHidden());
    m_keyboardName.set("keyboard lost, looking for it");
    click("testButton");
    EXPECT_TRUE(isDone("stepTest"));
    EXPECT_EQ(textOf("stepTestNote"), "Shown (keyboard lost, looking for it). Reset ends it.");
    click("stepKeys");
    EXPECT_FALSE(isDone("stepKeys"));
    click("setterOkButton");
    EXPECT_TRUE(isDone("stepKeys"));
    m_machine.userDefaults.set("scanWidth", 80.0);
    EXPECT_TRUE(eventually([&] { return isDone("stepCalibrate"); }));
    EXPECT_EQ(textOf("guideCount"), "3 of 6 done");

    click("guideDismiss");
    EXPECT_TRUE(widget("guidePanel")->isHidden());
    EXPECT_EQ(platform::storedBool(m_machine.userDefaults, "firstStepsDone"), true);
    item("guideItem")->trigger();
    EXPECT_FALSE(widget("guidePanel")->isHidden());
    EXPECT_EQ(window("mainWindow")->focusWidget(), widget("stepSeeItMove"));
}

TEST_F(WindowsTest, ChipsSwitchProfilesFollowTheGameAndHaveNames) {
    const auto chosen = [this] {
        std::string all;
        for (int profile = 1; profile <= 9; ++profile)
            if (auto* const chip = widget<QuietButton>(qPrintable(QString("profileChip%1").arg(profile)));
                chip->isChecked())
                all += chip->text().toStdString();
        return all;
    };
    click("profileChip4");
    EXPECT_EQ(state().profile.activeColorProfile, 4);
    EXPECT_EQ(chosen(), "4");
    m_delegate->operations().messageQueue.appendToMessageQueue("2");
    EXPECT_TRUE(eventually([&] { return chosen() == "2"; }));

    QWidget* const chip = widget("profileChip2");
    const auto rename = [&](const char* name, Qt::Key end) {
        QTest::keyClick(chip, Qt::Key_F2);
        QTest::keyClicks(widget("profileNameEditor"), name);
        QTest::keyClick(widget("profileNameEditor"), end);
        settle();
    };
    rename("  In & out ", Qt::Key_Return);
    EXPECT_EQ(chosen(), "2 In && out");
    EXPECT_EQ(platform::storedString(m_machine.userDefaults, "profileName2"), "In & out");
    rename("else", Qt::Key_Escape);
    EXPECT_EQ(chosen(), "2 In && out");
    EXPECT_EQ(textOf("statusProfile"), "Profile 2 In & out");
    openProgrammer();
    click("autoChatProfileCheckbox");
    EXPECT_EQ(chosen(), "2 In && out · auto");
}

TEST_F(WindowsTest, AMarkSaysWhatItMeansAndWhatToDo) {
    for (const auto& [name, label] : {std::pair{"no keyboard on USB yet", "No keyboard"},
                                      {"keyboard in this window", "Keyboard: drawn only"},
                                      {"keyboard G810 on USB", "Keyboard"},
                                      {"keyboard lost, looking for it", "Keyboard lost"}}) {
        m_keyboardName.set(name);
        EXPECT_EQ(widget<QuietButton>("keyboardMark")->text().toStdString(), label);
    }
    m_keyboardName.set("no keyboard on USB yet");
    click("keyboardMark");
    EXPECT_THAT(textOf("markWords"), HasSubstr("No keyboard on USB yet.\n\nNo keyboard. Buy one."));
    QTest::keyClick(widget("markNote"), Qt::Key_Escape);
    settle();
    click("stripMark");
    EXPECT_THAT(textOf("markWords"), HasSubstr("Install the add-on, start the game, and calibrate"));
}

TEST_F(WindowsTest, TheMenuChoosesTheDriverAndWhatBecomesOfEffects) {
    EXPECT_TRUE(item("driver-auto")->isChecked());
    item("driver-usb")->trigger();
    EXPECT_EQ(m_driver, "usb");
    EXPECT_FALSE(item("driver-auto")->isChecked());

    std::string sent;
    windows().binder().aboutToSend.observe(
        [&sent](const app::ActionRow& action, const app::ActionArgument& argument) {
            sent = action.selector + (std::get<bool>(argument) ? " on" : " off");
        });
    item("fastResponseItem")->trigger();
    EXPECT_TRUE(state().readerFlags.fastResponse);
    item("endStaleEffectsItem")->trigger();
    EXPECT_EQ(sent, "endStaleEffectsMI: on") << "what is sent is what a recording has";
    EXPECT_TRUE(state().options.endStaleEffects);
    m_delegate->operations().staleEffects.setEndStaleEffects(false);
    Q_EMIT window("mainWindow")->findChild<QMenu*>("keyboardMenu")->aboutToShow();
    EXPECT_FALSE(item("endStaleEffectsItem")->isChecked());
}

TEST(StatusTextTest, TellsWhatTheProgramSeesAndDoesInPlainWords) {
    const auto text = [](const StatusSnapshot& snapshot) { return statusText(snapshot).toStdString(); };
    const auto activity = [](const StatusSnapshot& snapshot) {
        const ActivityText told = activityText(snapshot);
        return (told.headline + ": " + told.details).toStdString();
    };
    StatusSnapshot seen{.keyboardName = "virtual keyboard"};
    EXPECT_EQ(text(seen), "Virtual keyboard   ·   Reading the screen   ·   Game not in front   ·   "
                          "Strip not seen yet   ·   0 messages per minute");
    EXPECT_EQ(activity(seen), "Nothing has been sent to the keyboard yet: ");
    seen.isLit = seen.showsCooldowns = seen.effects.combatAnimationPlaying = true;
    seen.coolingDown = 5;
    seen.messagesPerMinute = 1;
    seen.secondsSinceStrip = 119;
    EXPECT_THAT(text(seen), HasSubstr("119 seconds ago   ·   1 message per"));
    EXPECT_EQ(activity(seen), "In combat: 5 abilities cooling down · 1 message in the last minute");
    seen.secondsSinceStrip = 120;
    EXPECT_THAT(text(seen), HasSubstr("2 minutes ago"));
}

TEST(StatusTextTest, CountsMessagesPerMinuteAlsoAcrossGaps) {
    using namespace std::chrono_literals;
    RatePerMinute rate;
    for (unsigned second = 0; second <= 300; ++second) {
        rate.add(1h + second * 1s, 100U + second);
        EXPECT_EQ(rate.perMinute(), std::min(second, 60U)) << "as many as there were so far";
    }
    // Nobody looked for five minutes, in which 500 came.
    rate.add(1h + 600s, 900);
    EXPECT_EQ(rate.perMinute(), 100U);
}

TEST_F(WindowsTest, TheStatusLineTellsWhetherTheGameIsInFrontAndFitsIntoTheWindow) {
    auto* const status = widget<QLabel>("statusText");
    const auto says = [status](const char* text) {
        return eventually([&] { return status->accessibleName().contains(text); });
    };
    m_keyboardName.set("keyboard G810 on USB");
    EXPECT_TRUE(status->accessibleName().startsWith("Keyboard G810 on USB"));
    EXPECT_TRUE(says("Game not in front   ·   Strip not seen yet"));
    m_machine.workspace.setFrontmostApplication(platform::RunningApplication{"com.blizzard.worldofwarcraft"});
    EXPECT_TRUE(says("Game in front"));
    // No application in front is not the game either.
    m_machine.workspace.setFrontmostApplication(std::nullopt);
    EXPECT_TRUE(says("Game not in front"));

    window("mainWindow")->resize(1280, 720);
    settle();
    EXPECT_EQ(status->text(), status->accessibleName()) << "nothing left out";
    QFont large = status->font();
    large.setPointSizeF(large.pointSizeF() * 3);
    status->setFont(large);
    window("mainWindow")->resize(window("mainWindow")->minimumSizeHint());
    settle();
    EXPECT_LE(status->fontMetrics().horizontalAdvance(status->text()), status->width());
    const auto* const profile = widget<QLabel>("statusProfile");
    EXPECT_EQ(profile->text(), "Profile 1");
    EXPECT_GE(profile->width(), profile->sizeHint().width());
}

TEST_F(WindowsTest, ACalibrationCountsDownIsCanceledAndItsEndStays) {
    auto& failure = m_delegate->operations().calibration.failure;
    const auto isShown = [this](const char* name) { return !widget(name)->isHidden(); };
    EXPECT_FALSE(isShown("calibrationPanel"));
    failure.set(screenlink::SearchFailure::NoRedCell);
    EXPECT_TRUE(isShown("calibrationPanel"));
    EXPECT_FALSE(isShown("calibrateOtherwise"));
    EXPECT_EQ(widget<QuietButton>("stepCalibrate")->mark(), Mark::Bad);
    click("calibrationDismiss");
    EXPECT_FALSE(isShown("calibrationPanel"));

    m_runLoop.after(std::chrono::milliseconds(50), [&] {
        EXPECT_TRUE(m_delegate->operations().calibration.isRunning()) << "with one press";
        EXPECT_THAT(textOf("calibrationText"),
                    HasSubstr("90 s left. Switch to the game and type /glimracal"));
        click("calibrationCancel");
    });
    click("stepCalibrate");
    EXPECT_THAT(textOf("calibrationText"), HasSubstr("canceled"));

    failure.set(screenlink::SearchFailure::TooWide);
    EXPECT_TRUE(isShown("calibrateOtherwise"));
    // The search that it begins is interrupted by the end of the program.
    m_runLoop.after(std::chrono::milliseconds(50), [this] { m_runLoop.terminate(); });
    click("calibrateOtherwise");
    EXPECT_EQ(m_pixelsPerPoint, 2);
}

} // namespace
} // namespace glimra::desktop
