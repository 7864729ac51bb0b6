#include "desktop/services/power_services.h"

#include "support/private_bus.h"

#include <QDBusArgument>
#include <QDBusVariant>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace glimra::desktop {
namespace {

using glimra::tests::eventually;
using glimra::tests::serveEvents;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const QString kLogin = "org.freedesktop.login1";
const QString kLoginPath = "/org/freedesktop/login1";
const QString kManager = "org.freedesktop.login1.Manager";
const QString kScreenSaverName = "org.freedesktop.ScreenSaver";

/// A login manager as its users see it.
class MockLogin {
public:
    explicit MockLogin(glimra::tests::PrivateBus& bus) : m_bus(bus) {
        const bool isUp =
            eventually([&] { return m_bus.connection().interface()->isServiceRegistered(kLogin).value(); });
        if (!isUp)
            throw std::runtime_error("the mock of the login manager does not start (python3-dbusmock)");
    }

    /// "what/who/mode" of each lock that is held.
    std::vector<std::string> locks() {
        std::vector<std::string> held;
        const QDBusMessage reply = m_bus.call(kLogin, kLoginPath, kManager, "ListInhibitors");
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
    void prepareForSleep(bool start) {
        const QVariantList values{QVariant::fromValue(QDBusVariant(start))};
        m_bus.call(kLogin, kLoginPath, "org.freedesktop.DBus.Mock", "EmitSignal",
                   {kManager, "PrepareForSleep", "b", values});
    }

private:
    glimra::tests::PrivateBus& m_bus;
    glimra::tests::ChildProcess m_program{"/usr/bin/python3",
                                          {"python3", "-m", "dbusmock", "--system", "--template", "logind"}};
};

/// The desktop's screen saver service.
class MockScreenSaver : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")

public:
    explicit MockScreenSaver(glimra::tests::PrivateBus& bus) : m_bus(bus) {
        m_bus.connection().registerObject("/org/freedesktop/ScreenSaver", this,
                                          QDBusConnection::ExportAllSlots);
        m_bus.connection().registerService(kScreenSaverName);
    }

    std::vector<std::string> reasons;
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

private:
    glimra::tests::PrivateBus& m_bus;
};

/// Displays that sleep when the test says so.
class FakeDisplays final : public DisplaySleep {
public:
    explicit FakeDisplays(Teller& teller) : m_teller(teller) {}
    void observe(Teller tell) override { m_teller = std::move(tell); }

private:
    Teller& m_teller;
};

class PowerServicesTest : public ::testing::Test {
protected:
    PowerServicesTest() {
        glimra::tests::ensureApplication();
        useBuses("unix:path=/nonexistent", "unix:path=/nonexistent");
    }
    ~PowerServicesTest() override { power.reset(); }

    static void useBuses(const QString& system, const QString& session) {
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", system.toLocal8Bit());
        qputenv("DBUS_SESSION_BUS_ADDRESS", session.toLocal8Bit());
    }
    void useBus() {
        bus = std::make_unique<glimra::tests::PrivateBus>();
        useBuses(bus->address(), bus->address());
    }
    void startLogin() { login = std::make_unique<MockLogin>(*bus); }
    void startPower() {
        power = std::make_unique<PowerServices>(std::make_unique<FakeDisplays>(tellOfDisplays),
                                                [this](const std::string& text) { reports.push_back(text); });
        power->observeSleep(
            [this] {
                told.push_back("sleep");
                if (login)
                    locksWhenTold = login->locks();
            },
            [this] { told.push_back("wake"); });
    }
    bool eventuallyLocked(const std::vector<std::string>& locks) {
        return eventually([&] { return login->locks() == locks; });
    }

    std::unique_ptr<glimra::tests::PrivateBus> bus;
    std::unique_ptr<MockLogin> login;
    DisplaySleep::Teller tellOfDisplays;
    std::vector<std::string> reports;
    std::vector<std::string> told;
    std::vector<std::string> locksWhenTold;
    std::unique_ptr<PowerServices> power;
};

const std::vector<std::string> kDelay{"sleep/Glimra/delay"};

TEST_F(PowerServicesTest, HoldsTheSleepUpUntilItsHandlerHasRunAndAgainAfterWaking) {
    useBus();
    startLogin();
    startPower();
    ASSERT_TRUE(eventuallyLocked(kDelay));

    login->prepareForSleep(true);
    ASSERT_TRUE(eventuallyLocked({}));
    EXPECT_THAT(told, ElementsAre("sleep"));
    EXPECT_EQ(locksWhenTold, kDelay);

    login->prepareForSleep(false);
    ASSERT_TRUE(eventuallyLocked(kDelay));
    EXPECT_THAT(told, ElementsAre("sleep", "wake"));
    EXPECT_THAT(reports, IsEmpty());
}

TEST_F(PowerServicesTest, BelievesNobodyButTheLoginManager) {
    useBus();
    startLogin();
    startPower();
    ASSERT_TRUE(eventuallyLocked(kDelay));

    const QString busService = "org.freedesktop.DBus";
    const QDBusMessage names = bus->call(busService, "/org/freedesktop/DBus", busService, "ListNames");
    for (const QString& name : names.arguments().value(0).toStringList()) {
        QDBusMessage forged =
            QDBusMessage::createTargetedSignal(name, kLoginPath, kManager, "PrepareForSleep");
        forged << true;
        bus->connection().send(forged);
    }
    serveEvents(200);
    EXPECT_THAT(told, IsEmpty());
    EXPECT_EQ(login->locks(), kDelay);
}

TEST_F(PowerServicesTest, KeepsTheMachineAwakeForTheTimeOfTheActivity) {
    useBus();
    startLogin();
    MockScreenSaver screenSaver(*bus);
    startPower();
    ASSERT_TRUE(eventuallyLocked(kDelay));

    power->processActivity().begin("Playing");
    EXPECT_TRUE(eventuallyLocked({"sleep/Glimra/delay", "idle/Glimra/block"}));
    EXPECT_TRUE(eventually([&] { return screenSaver.inhibitions == 1; }));
    serveEvents(100); // the service's answer comes after what it has done
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

TEST_F(PowerServicesTest, InhibitsAScreenSaverServiceThatComesLate) {
    useBus();
    startLogin();
    startPower();
    power->processActivity().begin("Playing");
    ASSERT_TRUE(eventually([&] { return login->locks().size() == 2; }));
    MockScreenSaver screenSaver(*bus);
    EXPECT_TRUE(eventually([&] { return screenSaver.inhibitions == 1; }));
}

TEST_F(PowerServicesTest, RunsWithoutABusAndSaysSoOnce) {
    startPower();
    power->processActivity().begin("Playing");
    EXPECT_TRUE(eventually([&] { return !reports.empty(); }));
    power->processActivity().end("Playing");
    serveEvents(50);
    EXPECT_THAT(reports, ElementsAre(HasSubstr("No help from the login manager")));

    tellOfDisplays(SleepSource::ScreenSaver, true);
    EXPECT_THAT(told, ElementsAre("sleep"));
}

} // namespace
} // namespace glimra::desktop

#include "power_services_test.moc"
