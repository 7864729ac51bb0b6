#include "app/app_delegate.h"
#include "desktop/desktop_platform.h"
#include "desktop/loop/quit_requests.h"
#include "support/fake_driver.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>

#include <atomic>
#include <functional>
#include <thread>

namespace glimra::desktop {
namespace {

using namespace std::chrono_literals;

/// A display that takes its time and shows nothing.
class SlowCapture final : public platform::ScreenCapture {
public:
    int activeDisplayCount() override { return 1; }
    double backingScaleFactor() override { return 1.0; }
    std::optional<platform::Image> capture(const platform::ScreenRect&) override {
        isUnderWay = true;
        std::this_thread::sleep_for(150ms);
        isUnderWay = false;
        return std::nullopt;
    }

    std::atomic<bool> isUnderWay = false;
};

/// The application on the real run loop and the real reader's thread.
class QuitTest : public testing::Test {
protected:
    QuitTest() : m_machine(options(m_folder.path())), m_platform(platform()), m_delegate(m_platform) {}

    static Options options(const QString& folder) {
        Options options;
        options.settingsFile = (folder + "/glimra.ini").toStdString();
        options.captureDisplay = ":no-display";
        return options;
    }
    platform::Platform platform() {
        platform::Platform platform = m_machine.platform();
        platform.readerCapture = m_capture;
        platform.ledDriver = m_driver;
        return platform;
    }

    /// Runs the application; as soon as `isReady` it quits, and is asked to quit once more. Returns how long
    /// that took.
    std::chrono::milliseconds quitWhen(const std::function<bool()>& isReady) {
        QElapsedTimer sinceQuit;
        m_machine.runLoop.post([&] {
            m_machine.lifecycle.launch({.didFinishLaunching =
                                            [&] {
                                                m_delegate.applicationDidFinishLaunching();
                                                m_begin();
                                            },
                                        .shouldTerminate =
                                            [&] {
                                                const auto reply = m_delegate.applicationShouldTerminate();
                                                m_machine.readerThread.wake();
                                                return reply;
                                            },
                                        .willTerminate = [&] { m_delegate.applicationWillTerminate(); }});
        });
        // Not by the run loop, which may be held.
        QTimer look;
        QObject::connect(&look, &QTimer::timeout, [&] {
            if (sinceQuit.isValid() || !isReady())
                return;
            sinceQuit.start();
            m_machine.lifecycle.terminate();
            m_machine.lifecycle.terminate();
        });
        look.start(1ms);
        QTimer::singleShot(20s, [] { QCoreApplication::exit(1); });
        EXPECT_EQ(QCoreApplication::exec(), 0);
        const std::chrono::milliseconds taken(sinceQuit.elapsed());
        m_machine.readerThread.join();
        return taken;
    }
    /// The lights were let go once, and last of all.
    void expectLetGo() const {
        ASSERT_FALSE(m_driver.calls.empty());
        EXPECT_EQ(m_driver.calls.back(), "Shutdown");
        EXPECT_EQ(std::ranges::count(m_driver.calls, "Shutdown"), 1);
    }

    QTemporaryDir m_folder;
    DesktopPlatform m_machine;
    SlowCapture m_capture;
    tests::FakeDriver m_driver;
    platform::Platform m_platform;
    app::AppDelegate m_delegate;
    std::function<void()> m_begin = [] {};
};

/// One capture, one pause, and as much again for a busy machine.
constexpr auto kAnswerLimit = 1500ms;

TEST_F(QuitTest, WaitsForACaptureThatIsUnderWay) {
    EXPECT_LT(quitWhen([this] { return m_capture.isUnderWay.load(); }), kAnswerLimit);
    expectLetGo();
}

TEST_F(QuitTest, IsAnsweredUnderAQuestionInTheMiddleOfAnAnimation) {
    platform::Window question;
    int code = -1;
    QTimer click;
    m_begin = [&] {
        m_driver.calls.clear();
        m_delegate.operations().messageQueue.appendToMessageQueue("A");
        QObject::connect(&click, &QTimer::timeout, [&] {
            if (m_driver.calls.size() < 4)
                return;
            click.stop();
            code = m_machine.windowSystem.runModal(question);
        });
        click.start(1ms);
    };
    QElapsedTimer sinceQuestion;
    // Longer than a frame of the animation.
    const auto isLongAsked = [&] {
        if (question.visible.get() && !sinceQuestion.isValid())
            sinceQuestion.start();
        return sinceQuestion.isValid() && sinceQuestion.elapsed() > 500;
    };
    EXPECT_LT(quitWhen(isLongAsked), kAnswerLimit);
    EXPECT_EQ(code, platform::kModalClosed);
    expectLetGo();
}

TEST(QuitRequests, TheEndOfTheSessionIsARequestLikeAnyOther) {
    int requests = 0;
    const QuitRequests all([&] { ++requests; });
    QEvent quit(QEvent::Quit);
    EXPECT_TRUE(QCoreApplication::sendEvent(QCoreApplication::instance(), &quit));
    EXPECT_EQ(requests, 1);
}

} // namespace
} // namespace glimra::desktop
