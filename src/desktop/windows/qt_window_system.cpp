#include "desktop/windows/qt_window_system.h"

#include "desktop/windows/window_fitter.h"
#include "platform/stored_values.h"

#include <QApplication>
#include <QColorDialog>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QScreen>
#include <QStandardPaths>

#include <array>
#include <memory>

namespace glimra::desktop {

namespace {

std::string frameKey(std::string_view frameName) {
    return "frame." + std::string(frameName);
}

/// A point of the window's title bar that must be on a screen, so that the user can get hold of it.
constexpr QPoint kGrip{60, 10};

/// From left, top, width and height; empty when it is no frame that a window can have.
QRect frameFrom(const platform::StoredValue& stored) {
    const auto* const numbers = std::get_if<platform::NumberArray>(&stored);
    if (numbers == nullptr || numbers->size() != 4)
        return {};
    std::array<int, 4> frame{};
    for (std::size_t i = 0; i < frame.size(); ++i) {
        const std::optional<std::int64_t> number = platform::toInteger((*numbers)[i]);
        constexpr std::int64_t kFarthest = 1 << 15;
        if (!number || *number < -kFarthest || *number > kFarthest)
            return {};
        frame[i] = static_cast<int>(*number);
    }
    return {frame[0], frame[1], frame[2], frame[3]};
}

std::unique_ptr<QMessageBox> messageBox(const platform::Alert& alert, QWidget* parent) {
    auto box = std::make_unique<QMessageBox>(parent);
    box->setTextFormat(Qt::PlainText);
    box->setWindowTitle(QString::fromStdString(alert.title));
    box->setText(QString::fromStdString(alert.title));
    box->setInformativeText(QString::fromStdString(alert.text));
    // An alert may quote a file or a name from outside; none of it is markup.
    for (QLabel* label : box->findChildren<QLabel*>())
        label->setTextFormat(Qt::PlainText);
    for (const std::string& button : alert.buttons)
        box->addButton(QString::fromStdString(button), QMessageBox::AcceptRole);
    return box;
}

std::optional<std::string> chosenFile(QFileDialog& dialog) {
    fitPanel(&dialog);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return QFile::encodeName(dialog.selectedFiles().constFirst()).toStdString();
}

void setExtension(QFileDialog& dialog, const std::string& extension) {
    const QString suffix = QString::fromStdString(extension);
    dialog.setDefaultSuffix(suffix);
    dialog.setNameFilter("*." + suffix);
}

} // namespace

void QtWindowSystem::addWindow(platform::Window& window, QWidget* widget) {
    m_widgets[&window] = widget;
    window.visible.changed.observe([this, &window](bool visible) {
        if (!visible && !m_sessions.empty() && &m_sessions.back()->window == &window)
            m_sessions.back()->loop.quit();
    });
}

bool QtWindowSystem::raiseModal() {
    if (m_sessions.empty())
        return false;
    m_sessions.back()->window.bringToFront();
    return true;
}

void QtWindowSystem::restoreFrame(std::string_view frameName) {
    const std::optional<platform::StoredValue> stored = m_userDefaults.get(frameKey(frameName));
    const QRect frame = stored ? frameFrom(*stored) : QRect();
    if (!m_mainWindow || frame.isEmpty())
        return;
    const QPoint grip = frame.topLeft() + kGrip;
    const QScreen* const screen = QGuiApplication::screenAt(grip);
    // The screen that it was on may be gone.
    const bool isReachable = screen != nullptr && screen->availableGeometry().contains(grip);
    const QScreen& limit = isReachable ? *screen : *m_mainWindow->screen();
    m_mainWindow->resize(frame.size().boundedTo(WindowFitter::roomOn(limit)));
    if (isReachable)
        m_mainWindow->move(WindowFitter::withinScreen(frame, limit).topLeft());
}

void QtWindowSystem::saveFrame(std::string_view frameName) {
    if (!m_mainWindow)
        return;
    const QRect normal = m_mainWindow->normalGeometry();
    const bool isNormal = (m_mainWindow->windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen)) == 0;
    const QPoint place = isNormal ? m_mainWindow->pos() : normal.topLeft();
    const QSize size = isNormal ? m_mainWindow->size() : normal.size();
    platform::NumberArray frame;
    for (const int number : {place.x(), place.y(), size.width(), size.height()})
        frame.emplace_back(std::int64_t{number});
    m_userDefaults.set(frameKey(frameName), std::move(frame));
}

int QtWindowSystem::runModal(platform::Window& window) {
    ModalSession session(window);
    if (QWidget* const widget = m_widgets[&window])
        widget->setWindowModality(Qt::ApplicationModal);
    m_sessions.push_back(&session);
    const QtRunLoop::Hold hold(m_runLoop);
    window.bringToFront();
    session.loop.exec();
    m_sessions.pop_back();
    return session.code;
}

void QtWindowSystem::stopModal(int code) {
    if (m_sessions.empty() || m_sessions.back()->isAnswered)
        return;
    ModalSession& session = *m_sessions.back();
    session.isAnswered = true;
    session.code = code;
    // At once: what the session interrupted may take its time before the caller can hide it.
    if (QWidget* const widget = m_widgets[&session.window])
        widget->hide();
    session.loop.quit();
}

std::optional<std::string> QtWindowSystem::runSavePanel(const platform::SavePanel& panel) {
    const QtRunLoop::Hold hold(m_runLoop);
    QFileDialog dialog(m_mainWindow);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setLabelText(QFileDialog::Accept, QString::fromStdString(panel.prompt));
    setExtension(dialog, panel.fileExtension);
    if (!panel.directory.empty())
        dialog.setDirectory(QFile::decodeName(panel.directory.c_str()));
    dialog.selectFile(QString::fromStdString(panel.suggestedName));
    return chosenFile(dialog);
}

std::optional<std::string> QtWindowSystem::runOpenPanel(const platform::OpenPanel& panel) {
    const QtRunLoop::Hold hold(m_runLoop);
    QFileDialog dialog(m_mainWindow);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setLabelText(QFileDialog::Accept, QString::fromStdString(panel.prompt));
    dialog.setWindowTitle(QString::fromStdString(panel.message));
    setExtension(dialog, panel.fileExtension);
    return chosenFile(dialog);
}

void QtWindowSystem::runAlert(const platform::Alert& alert) {
    const QtRunLoop::Hold hold(m_runLoop);
    messageBox(alert, m_mainWindow)->exec();
}

void QtWindowSystem::showSheet(const platform::Alert& alert) {
    QMessageBox* const box = messageBox(alert, m_mainWindow).release();
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::WindowModal);
    box->open();
}

void QtWindowSystem::hideColorPanel() {
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (auto* const panel = qobject_cast<QColorDialog*>(widget))
            panel->hide();
}

std::optional<std::string> QtWindowSystem::documentsFolder() {
    // Many a home has no such folder, and the file may go anywhere.
    for (const auto location : {QStandardPaths::DocumentsLocation, QStandardPaths::HomeLocation}) {
        const QString folder = QStandardPaths::writableLocation(location);
        if (!folder.isEmpty() && QDir(folder).exists())
            return QFile::encodeName(folder).toStdString();
    }
    return std::nullopt;
}

} // namespace glimra::desktop
