#include "desktop/services/unique_fd.h"
#include "desktop/services/x11_display_sleep.h"

#include "private_bus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace glimra::desktop {
namespace {

using glimra::tests::eventually;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

/// A real X server, which has the screen saver extension but no power management.
class Xvfb {
public:
    Xvfb() {
        m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
        m_process.start("Xvfb",
                        {"-displayfd", "1", "-screen", "0", "64x64x24", "-noreset", "-nolisten", "tcp"});
        if (!m_process.waitForReadyRead(20'000))
            throw std::runtime_error("Xvfb does not start");
        m_display = ":" + QString::fromLatin1(m_process.readLine()).trimmed();
    }
    ~Xvfb() { end(); }
    Xvfb(const Xvfb&) = delete;
    Xvfb& operator=(const Xvfb&) = delete;

    std::string display() const { return m_display.toStdString(); }
    /// "activate" or "reset".
    void screenSaver(const QString& command) {
        ASSERT_EQ(QProcess::execute("xset", {"-display", m_display, "s", command}), 0);
    }
    void end() {
        m_process.terminate();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
    QString m_display;
};

/// As much of an X server as answers after its power management, which no server has that runs without a
/// graphics card. It serves one client, and ends with it.
class PowerManagingServer {
public:
    PowerManagingServer() {
        // The address without a file under which clients look for a display first. No credentials for it.
        ::setenv("XAUTHORITY", "/nonexistent", 1);
        const std::string path = "/tmp/.X11-unix/X" + display().substr(1);
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path + 1, sizeof address.sun_path - 1);
        const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + path.size());
        if (::bind(m_listener.get(), reinterpret_cast<const sockaddr*>(&address), size) != 0 ||
            ::listen(m_listener.get(), 1) != 0)
            throw std::runtime_error("cannot listen at " + path);
        m_thread = std::thread([this] { serve(); });
    }
    ~PowerManagingServer() {
        end();
        m_thread.join();
    }
    PowerManagingServer(const PowerManagingServer&) = delete;
    PowerManagingServer& operator=(const PowerManagingServer&) = delete;

    /// A number that no real server takes.
    std::string display() const { return ":" + std::to_string(10'000 + ::getpid()); }
    void end() {
        ::shutdown(m_listener.get(), SHUT_RDWR);
        ::shutdown(m_clientDescriptor, SHUT_RDWR);
    }

    std::atomic<std::uint8_t> powerLevel = 0;
    /// Requests that a server without the extension in question would not understand.
    std::atomic<int> strangeRequests = 0;

private:
    static constexpr std::uint8_t kPowerOpcode = 140;
    using Packet = std::array<std::uint8_t, 32>;

    void serve() {
        m_client = UniqueFd(::accept(m_listener.get(), nullptr, nullptr));
        m_clientDescriptor = m_client.get();
        if (!greet())
            return;
        std::uint16_t sequence = 0;
        std::array<std::uint8_t, 4> head;
        while (receive(head.data(), head.size())) {
            std::vector<std::uint8_t> rest((head[2] + 256U * head[3]) * 4 - head.size());
            if (!receive(rest.data(), rest.size()))
                return;
            ++sequence;
            answer(head[0], sequence, rest);
        }
    }
    /// Takes the client's greeting without credentials, and describes a server with one screen.
    bool greet() {
        std::array<std::uint8_t, 12> greeting;
        std::array<std::uint8_t, 8 + 32 + 40> setup = {1, 0, 11, 0, 0, 0, (32 + 40) / 4};
        setup[8 + 18] = 0xFF; // the length of the longest request
        setup[8 + 20] = 1;    // screens
        setup[8 + 32] = 1;    // the root window's id
        return receive(greeting.data(), greeting.size()) &&
               ::send(m_clientDescriptor, setup.data(), setup.size(), MSG_NOSIGNAL) > 0;
    }
    void answer(std::uint8_t opcode, std::uint16_t sequence, const std::vector<std::uint8_t>& rest) {
        Packet reply = {1, 0, static_cast<std::uint8_t>(sequence & 0xFF),
                        static_cast<std::uint8_t>(sequence >> 8)};
        constexpr std::uint8_t kQueryExtension = 98, kGetInputFocus = 43;
        if (opcode == kQueryExtension) {
            const std::string name(rest.begin() + 4, rest.begin() + 4 + rest[0]);
            reply[8] = name == "DPMS" ? 1 : 0;
            reply[9] = name == "DPMS" ? kPowerOpcode : 0;
        } else if (opcode == kPowerOpcode) {
            reply[8] = powerLevel;
            reply[10] = 1;
        } else if (opcode != kGetInputFocus)
            ++strangeRequests;
        ::send(m_clientDescriptor, reply.data(), reply.size(), MSG_NOSIGNAL);
    }
    bool receive(void* data, std::size_t size) {
        return size == 0 || ::recv(m_clientDescriptor, data, size, MSG_WAITALL) == static_cast<ssize_t>(size);
    }

    UniqueFd m_listener{::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    UniqueFd m_client;
    std::atomic<int> m_clientDescriptor = -1;
    std::thread m_thread;
};

class DisplaySleepTest : public ::testing::Test {
protected:
    DisplaySleepTest() { glimra::tests::ensureApplication(); }

    void observe(const std::string& display) {
        displays = std::make_unique<X11DisplaySleep>(display);
        displays->observe([this](SleepSource source, bool asleep) { told.emplace_back(source, asleep); });
    }
    bool eventuallyTold(SleepSource source, bool asleep) {
        return eventually([&] { return !told.empty() && told.back() == std::pair(source, asleep); });
    }

    std::vector<std::pair<SleepSource, bool>> told;
    std::unique_ptr<X11DisplaySleep> displays;
};

TEST_F(DisplaySleepTest, HearsTheScreenSaver) {
    Xvfb server;
    observe(server.display());
    EXPECT_THAT(told, ElementsAre(Pair(SleepSource::ScreenSaver, false)));
    for (int round = 0; round < 2; ++round) {
        server.screenSaver("activate");
        EXPECT_TRUE(eventuallyTold(SleepSource::ScreenSaver, true));
        server.screenSaver("reset");
        EXPECT_TRUE(eventuallyTold(SleepSource::ScreenSaver, false));
    }
}

TEST_F(DisplaySleepTest, NoticesABlankedScreenAtTheStartAndTheEndOfTheServer) {
    Xvfb server;
    server.screenSaver("activate");
    observe(server.display());
    EXPECT_THAT(told, ElementsAre(Pair(SleepSource::ScreenSaver, true)));
    server.end();
    EXPECT_TRUE(eventually([&] { return told.size() >= 3; }));
    EXPECT_THAT(told, ElementsAre(Pair(SleepSource::ScreenSaver, true), Pair(SleepSource::ScreenSaver, false),
                                  Pair(SleepSource::DisplayPower, false)));
}

TEST_F(DisplaySleepTest, IsSilentWithoutAServer) {
    observe("nonexistent");
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(DisplaySleepTest, AsksForThePowerOfTheDisplaysUntilTheyWake) {
    PowerManagingServer server;
    server.powerLevel = 3;
    observe(server.display());
    EXPECT_TRUE(eventuallyTold(SleepSource::DisplayPower, true));
    server.powerLevel = 0;
    EXPECT_TRUE(eventuallyTold(SleepSource::DisplayPower, false));
    EXPECT_EQ(server.strangeRequests, 0);
}

TEST_F(DisplaySleepTest, TakesTheDisplaysForAwakeWhenTheirServerIsGone) {
    PowerManagingServer server;
    server.powerLevel = 1;
    observe(server.display());
    EXPECT_TRUE(eventuallyTold(SleepSource::DisplayPower, true));
    server.end();
    EXPECT_TRUE(eventuallyTold(SleepSource::DisplayPower, false));
}

} // namespace
} // namespace glimra::desktop
