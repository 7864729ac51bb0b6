#include "desktop/loop/qt_run_loop.h"
#include "desktop/windows/qt_window_system.h"
#include "desktop/windows/window_fitter.h"
#include "simulated/user_defaults.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

#include <cmath>

namespace glimra::desktop {
namespace {

class WindowSystemTest : public testing::Test {
protected:
    WindowSystemTest() {
        m_windowSystem.setMainWindow(&m_mainWindow);
        m_windowSystem.addWindow(m_window, &m_mainWindow);
    }

    platform::Window m_window;
    QWidget m_mainWindow;
    simulated::InMemoryDefaults m_defaults;
    QtRunLoop m_runLoop;
    QtWindowSystem m_windowSystem{m_defaults, m_runLoop};
};

TEST_F(WindowSystemTest, TheFrameComesBackAndOneThatIsNoneDoesNoHarm) {
    const QRect frame(40, 50, 720, 560);
    m_mainWindow.setGeometry(frame);
    m_windowSystem.saveFrame("windowPosition");
    m_mainWindow.setGeometry(7, 8, 300, 200);
    m_windowSystem.restoreFrame("otherName");
    EXPECT_EQ(m_mainWindow.geometry(), QRect(7, 8, 300, 200));
    m_windowSystem.restoreFrame("windowPosition");
    EXPECT_EQ(m_mainWindow.geometry(), frame);

    const std::string key = m_defaults.all().begin()->first;
    using Array = platform::NumberArray;
    for (const platform::StoredValue& damaged : {platform::StoredValue{1.5},
                                                 {Array{}},
                                                 {Array{1.0, 2.0, 3.0}},
                                                 {Array{1.0, 2.0, 0.0, -5.0}},
                                                 {Array{1e300, 2.0, 300.0, 300.0}},
                                                 {Array{1.0, std::nan(""), 300.0, 300.0}}}) {
        m_defaults.set(key, damaged);
        m_windowSystem.restoreFrame("windowPosition");
        EXPECT_EQ(m_mainWindow.geometry(), frame);
    }
    m_defaults.set(key, Array{std::int64_t{5000}, std::int64_t{9}, std::int64_t{700}, std::int64_t{600}});
    m_windowSystem.restoreFrame("windowPosition");
    EXPECT_EQ(m_mainWindow.geometry(), QRect(40, 50, 700, 600)) << "where no screen is, no window goes";
    m_defaults.set(key, Array{std::int64_t{0}, std::int64_t{0}, std::int64_t{12000}, std::int64_t{12000}});
    m_windowSystem.restoreFrame("windowPosition");
    EXPECT_EQ(m_mainWindow.size(), WindowFitter::roomOn(*m_mainWindow.screen()));
    m_defaults.set(key, Array{std::int64_t{500}, std::int64_t{9}, std::int64_t{700}, std::int64_t{600}});
    m_windowSystem.restoreFrame("windowPosition");
    EXPECT_EQ(m_mainWindow.geometry().right(), m_mainWindow.screen()->availableGeometry().right());
}

TEST_F(WindowSystemTest, WithoutADocumentsFolderTheHomeFolderStandsInForIt) {
    const QTemporaryDir home;
    const QByteArray before = qgetenv("HOME");
    qputenv("HOME", home.path().toLocal8Bit());
    EXPECT_EQ(m_windowSystem.documentsFolder(), home.path().toStdString());
    QDir(home.path()).mkdir("Documents");
    EXPECT_EQ(m_windowSystem.documentsFolder(), home.filePath("Documents").toStdString());
    qputenv("HOME", home.filePath("nobody").toLocal8Bit());
    EXPECT_EQ(m_windowSystem.documentsFolder(), std::nullopt);
    qputenv("HOME", before);
}

TEST_F(WindowSystemTest, AModalSessionEndsWithItsCodeOrWithItsWindow) {
    m_windowSystem.stopModal(3); // no session: nothing
    QTimer::singleShot(0, [this] {
        m_windowSystem.stopModal(2);
        m_windowSystem.stopModal(1); // a second click
    });
    EXPECT_EQ(m_windowSystem.runModal(m_window), 2);
    EXPECT_TRUE(m_window.visible.get()) << "hiding is the caller's";
    QTimer::singleShot(0, [this] { m_window.visible.set(false); });
    EXPECT_EQ(m_windowSystem.runModal(m_window), platform::kModalClosed);
}

TEST_F(WindowSystemTest, APanelGivesTheFileThatIsTyped) {
    const QTemporaryDir folder;
    const QString file = folder.filePath("mine.keycolormap");
    const auto type = [](const QString& name) {
        QTimer::singleShot(0, [name] {
            auto* const panel = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(panel, nullptr);
            panel->findChild<QLineEdit*>("fileNameEdit")->setText(name);
            static_cast<QDialog*>(panel)->accept();
        });
    };
    type("mine");
    EXPECT_EQ(m_windowSystem.runSavePanel({"Export", "x", "keycolormap", folder.path().toStdString()}),
              file.toStdString());
    EXPECT_TRUE(QFile(file).open(QIODevice::WriteOnly));
    type(file);
    EXPECT_EQ(m_windowSystem.runOpenPanel({"Import", "Which?", "keycolormap"}), file.toStdString());
}

TEST_F(WindowSystemTest, AnAlertShowsItsTextAsItIsAndWaits) {
    QString text;
    QTimer::singleShot(0, [&text] {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        for (const QLabel* label : box->findChildren<QLabel*>())
            EXPECT_TRUE(label->text().isEmpty() || label->textFormat() == Qt::PlainText);
        text = box->text() + "|" + box->informativeText() + "|" + box->buttons().constFirst()->text();
        box->buttons().constFirst()->click();
    });
    m_windowSystem.runAlert({"Title", "<b>text</b>", {"OK"}});
    EXPECT_EQ(text, "Title|<b>text</b>|OK");
}

} // namespace
} // namespace glimra::desktop
