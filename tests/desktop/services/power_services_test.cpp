#include "desktop/services/power_services.h"
#include "desktop/services/x11_display_sleep.h"

#include "support/private_bus.h"
#include "support/x_server.h"

#include <QDBusArgument>
#include <QDBusVariant>

#include <gmock/gmock.h>

namespace glimra::desktop {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using tests::eventually;

using Texts = std::vector<std::string>;

TEST(SleepWatchTest, TellsEachTransitionOnceWhateverTheOrder) {
    SleepWatch watch;
    Texts told;
    const auto set = [&](SleepSource source, bool asleep) {
        told.clear();
        watch.set(source, asleep);
        return told;
    };
    set(SleepSource::Machine, true);
    set(SleepSource::Machine, false);
    set(SleepSource::ScreenSaver, true);
    watch.observe([&] { told.push_back("sleep"); }, [&] { told.push_back("wake"); });
    EXPECT_THAT(told, ElementsAre("sleep")) << "it is under way; the one before is over";
    EXPECT_THAT(set(SleepSource::ScreenSaver, true), IsEmpty());
    EXPECT_THAT(set(SleepSource::Machine, true), IsEmpty());
    EXPECT_THAT(set(SleepSource::ScreenSaver, false), IsEmpty());
    EXPECT_THAT(set(SleepSource::Machine, false), ElementsAre("wake"));
    EXPECT_THAT(set(SleepSource::Machine, false), IsEmpty());
    EXPECT_THAT(set(SleepSource::DisplayPower, true), ElementsAre("sleep"));
}

TEST(DisplaySleepTest, HearsTheScreenSaver) {
    tests::ensureApplication();
    std::vector<std::pair<SleepSource, bool>> told;
    const auto observe = [&](const std::string& display) {
        auto displays = std::make_unique<X11DisplaySleep>(display);
        displays->observe([&](SleepSource source, bool asleep) { told.emplace_back(source, asleep); });
        return displays;
    };
    observe("nonexistent");
    EXPECT_THAT(told, IsEmpty());
    tests::XvfbServer server;
    const auto screenSaver = [&](const char* does) { tests::run({"xset", "s", does}, server.display()); };
    const auto displays = observe(server.display());
    EXPECT_THAT(told, ElementsAre(Pair(SleepSource::ScreenSaver, false)));
    for (const bool asleep : {true, false, true}) {
        screenSaver(asleep ? "activate" : "reset");
        EXPECT_TRUE(eventually([&] { return told.back() == std::pair(SleepSource::ScreenSaver, asleep); }));
    }
    told.clear();
    observe(server.display());
    EXPECT_THAT(told, ElementsAre(Pair(SleepSource::ScreenSaver, true))) << "it is blank at the start";
    server.process().end(SIGTERM);
    EXPECT_TRUE(eventually([&] { return told.size() >= 3; }));
    EXPECT_THAT(told, ElementsAre(Pair(SleepSource::ScreenSaver, true), Pair(SleepSource::ScreenSaver, false),
                                  Pair(SleepSource::DisplayPower, false)));
}

const QString kLogin = "org.freedesktop.login1";
const QString kLoginPath = "/org/freedesktop/login1";
const QString kManager = "org.freedesktop.login1.Manager";

/// The desktop's screen saver service.
class MockScreenSaver : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")

public:
    explicit MockScreenSaver(tests::PrivateBus& bus) {
        bus.connection().registerObject("/org/freedesktop/ScreenSaver", this,
                                        QDBusConnection::ExportAllSlots);
        bus.connection().registerService("org.freedesktop.ScreenSaver");
    }

    Texts reasons;
    int inhibitions = 0;

public Q_SLOTS:
    uint Inhibit(const QString& application, const QString& reason) {
        reasons.push_back((application + ": " + reason).toStdString());
        ++inhibitions;
        return 40 + static_cast<uint>(reasons.size());
    }
    void UnInhibit(uint cookie) {
        if (cookie == 40 + reasons.size())
            --inhibitions;
    }
};

/// Displays that sleep when the test says so.
struct FakeDisplays final : DisplaySleep {
    explicit FakeDisplays(Teller& teller) : m_teller(teller) {}
    void observe(Teller tell) override { m_teller = std::move(tell); }

    Teller& m_teller;
};

/// A bus with a login manager as its users see it.
class PowerServicesTest : public testing::Test {
protected:
    PowerServicesTest() {
        useBus(bus.address());
        login.emplace("/usr/bin/python3", std::vector<std::string>{"/usr/bin/python3", "-m", "dbusmock",
                                                                   "--system", "--template", "logind"});
        const bool isUp =
            eventually([&] { return bus.connection().interface()->isServiceRegistered(kLogin).value(); });
        if (!isUp)
            throw std::runtime_error("the mock of the login manager does not start (python3-dbusmock)");
        start();
        EXPECT_TRUE(eventuallyLocked(kDelay));
    }
    ~PowerServicesTest() override { power.reset(); }

    static void useBus(const QString& address) {
        for (const char* const name : {"DBUS_SYSTEM_BUS_ADDRESS", "DBUS_SESSION_BUS_ADDRESS"})
            qputenv(name, address.toLocal8Bit());
    }
    void start() {
        power = std::make_unique<PowerServices>(std::make_unique<FakeDisplays>(tellOfDisplays),
                                                [this](const std::string& text) { reports.push_back(text); });
        power->observeSleep(
            [this] {
                told.push_back("sleep");
                locksWhenTold = locks();
            },
            [this] { told.push_back("wake"); });
    }
    /// "what/who/mode" of each lock that is held.
    Texts locks() {
        Texts held;
        const auto reply = bus.call(kLogin, kLoginPath, kManager, "ListInhibitors");
        const auto list = reply.arguments().value(0).value<QDBusArgument>();
        for (list.beginArray(); !list.atEnd();) {
            QString what, who, why, mode;
            uint user = 0, process = 0;
            list.beginStructure();
            list >> what >> who >> why >> mode >> user >> process;
            list.endStructure();
            held.push_back((what + "/" + who + "/" + mode).toStdString());
        }
        return held;
    }
    bool eventuallyLocked(const Texts& expected) {
        return eventually([&] { return locks() == expected; });
    }
    void prepareForSleep(bool start) {
        const QVariantList values{QVariant::fromValue(QDBusVariant(start))};
        bus.call(kLogin, kLoginPath, "org.freedesktop.DBus.Mock", "EmitSignal",
                 {kManager, "PrepareForSleep", "b", values});
    }
    /// So many questions and answers that whatever has been sent before them has come, too.
    void exchangeMessages() {
        int count = 0;
        eventually([&] {
            locks();
            return ++count == 10;
        });
    }

    const Texts kDelay{"sleep/Glimra/delay"};
    tests::PrivateBus bus;
    std::optional<tests::ChildProcess> login;
    DisplaySleep::Teller tellOfDisplays;
    Texts reports, told, locksWhenTold;
    std::unique_ptr<PowerServices> power;
};

TEST_F(PowerServicesTest, HoldsTheSleepUpUntilItsHandlerHasRunAndAgainAfterWaking) {
    const QString busService = "org.freedesktop.DBus";
    const auto names = bus.call(busService, "/org/freedesktop/DBus", busService, "ListNames");
    for (const QString& name : names.arguments().value(0).toStringList()) {
        auto forged = QDBusMessage::createTargetedSignal(name, kLoginPath, kManager, "PrepareForSleep");
        forged << true;
        bus.connection().send(forged);
    }
    exchangeMessages();
    EXPECT_THAT(told, IsEmpty()) << "nobody but the login manager is believed";

    prepareForSleep(true);
    ASSERT_TRUE(eventuallyLocked({}));
    EXPECT_THAT(told, ElementsAre("sleep"));
    EXPECT_EQ(locksWhenTold, kDelay);
    prepareForSleep(false);
    ASSERT_TRUE(eventuallyLocked(kDelay));
    EXPECT_THAT(told, ElementsAre("sleep", "wake"));
    EXPECT_THAT(reports, IsEmpty());
}

TEST_F(PowerServicesTest, KeepsTheMachineAwakeForTheTimeOfTheActivity) {
    power->processActivity().begin("Playing");
    EXPECT_TRUE(eventuallyLocked({"sleep/Glimra/delay", "idle/Glimra/block"}));
    MockScreenSaver screenSaver(bus); // comes late
    EXPECT_TRUE(eventually([&] { return screenSaver.inhibitions == 1; }));
    exchangeMessages();
    power->processActivity().end("Playing");
    EXPECT_TRUE(eventuallyLocked(kDelay));
    EXPECT_TRUE(eventually([&] { return screenSaver.inhibitions == 0; }));
    EXPECT_THAT(screenSaver.reasons, ElementsAre("Glimra: Playing"));

    // The end comes before the answers do.
    power->processActivity().begin("Playing");
    power->processActivity().end("Playing");
    EXPECT_TRUE(eventually([&] { return screenSaver.reasons.size() == 2 && screenSaver.inhibitions == 0; }));
    EXPECT_TRUE(eventuallyLocked(kDelay));
}

TEST_F(PowerServicesTest, RunsWithoutABusAndSaysSoOnce) {
    useBus("unix:path=/nonexistent");
    start();
    power->processActivity().begin("Playing");
    EXPECT_TRUE(eventually([&] { return !reports.empty(); }));
    power->processActivity().end("Playing");
    exchangeMessages();
    EXPECT_THAT(reports, ElementsAre(HasSubstr("No help from the login manager")));
    tellOfDisplays(SleepSource::ScreenSaver, true);
    EXPECT_THAT(told, ElementsAre("sleep"));
}

} // namespace
} // namespace glimra::desktop

#include "power_services_test.moc"
