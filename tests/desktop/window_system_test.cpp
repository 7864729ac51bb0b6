#include "desktop/main_window.h"
#include "desktop/qt_run_loop.h"
#include "desktop/qt_window_system.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <map>

namespace glimra::desktop {
namespace {

class MemoryDefaults final : public platform::UserDefaults {
public:
    std::optional<platform::StoredValue> get(std::string_view key) const override {
        const auto found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }
    void set(std::string_view key, platform::StoredValue value) override {
        values.insert_or_assign(std::string(key), std::move(value));
    }
    std::map<std::string, platform::StoredValue, std::less<>> all() const override { return values; }

    std::map<std::string, platform::StoredValue, std::less<>> values;
};

class WindowSystemTest : public testing::Test {
protected:
    WindowSystemTest() {
        m_windowSystem.setMainWindow(&m_mainWindow);
        m_windowSystem.addWindow(m_window, &m_mainWindow);
    }

    keyboards::VirtualKeyboard m_keyboard{QtRunLoop::monotonicNow};
    platform::Window m_window;
    platform::TextView m_log;
    int m_closeRequests = 0;
    MainWindow m_mainWindow{{m_window, m_log, m_keyboard, QtRunLoop::monotonicNow},
                            [this] { ++m_closeRequests; }};
    MemoryDefaults m_defaults;
    QtWindowSystem m_windowSystem{m_defaults};
};

TEST_F(WindowSystemTest, TheMainWindowFollowsItsOutletAndLeavesClosingToTheApplication) {
    EXPECT_FALSE(m_mainWindow.isVisible());
    m_window.bringToFront();
    EXPECT_TRUE(m_mainWindow.isVisible());
    EXPECT_FALSE(m_mainWindow.close());
    EXPECT_EQ(m_closeRequests, 1);
    EXPECT_TRUE(m_mainWindow.isVisible());
    m_window.visible.set(false);
    EXPECT_FALSE(m_mainWindow.isVisible());
}

TEST_F(WindowSystemTest, TheFrameComesBackAndADamagedOneDoesNoHarm) {
    m_windowSystem.restoreFrame("windowPosition");
    const QSize untouched = m_mainWindow.size();
    m_mainWindow.resize(720, 560);
    m_windowSystem.saveFrame("windowPosition");
    m_mainWindow.resize(untouched);
    m_windowSystem.restoreFrame("otherName");
    EXPECT_EQ(m_mainWindow.size(), untouched);
    m_windowSystem.restoreFrame("windowPosition");
    EXPECT_EQ(m_mainWindow.size(), QSize(720, 560));

    for (auto& [key, value] : m_defaults.values)
        std::get<platform::Data>(value).resize(20);
    m_windowSystem.restoreFrame("windowPosition");
    for (auto& [key, value] : m_defaults.values)
        value = 1.5;
    m_windowSystem.restoreFrame("windowPosition");
    EXPECT_EQ(m_mainWindow.size(), QSize(720, 560));
}

TEST_F(WindowSystemTest, AModalSessionEndsWithItsCodeOrWithItsWindow) {
    m_windowSystem.stopModal(3); // no session: nothing
    QTimer::singleShot(0, [this] { m_windowSystem.stopModal(2); });
    EXPECT_EQ(m_windowSystem.runModal(m_window), 2);
    EXPECT_TRUE(m_window.visible.get()) << "hiding is the caller's";
    QTimer::singleShot(0, [this] { m_window.visible.set(false); });
    EXPECT_EQ(m_windowSystem.runModal(m_window), 0);
}

TEST_F(WindowSystemTest, AnAlertShowsItsTextAsItIsAndWaits) {
    QString text;
    QTimer::singleShot(0, [&text] {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        for (const QLabel* label : box->findChildren<QLabel*>())
            if (!label->text().isEmpty() && label->textFormat() != Qt::PlainText)
                ADD_FAILURE() << "markup would show in " << label->text().toStdString();
        text = box->text() + "|" + box->informativeText() + "|" + box->buttons().constFirst()->text();
        QTest::mouseClick(box->buttons().constFirst(), Qt::LeftButton);
    });
    m_windowSystem.runAlert({"Title", "<b>text</b>", {"OK"}});
    EXPECT_EQ(text, "Title|<b>text</b>|OK");
}

} // namespace
} // namespace glimra::desktop
