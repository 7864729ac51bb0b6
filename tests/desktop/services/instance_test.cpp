#include "desktop/services/bus.h"
#include "desktop/services/instance_channel.h"
#include "desktop/services/xdg_folders.h"

#include "support/private_bus.h"

#include <gmock/gmock.h>

#include <future>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace glimra::desktop {
namespace {

using Kind = InstanceCommand::Kind;
using Standing = InstanceChannel::Standing;
using tests::eventually;

class InstanceTest : public testing::Test {
protected:
    InstanceTest() { tests::ensureApplication(); }

    std::unique_ptr<InstanceChannel> channel(const QString& identity = {}) {
        return m_usesBus ? makeBusChannel(m_bus.address(), identity)
                         : makeSocketChannel(m_folder.path(), identity);
    }
    Standing claim(InstanceChannel& channel) {
        return channel.claim([this](const InstanceCommand& command) {
            m_obeyed.push_back(command);
            return InstanceAnswer{command.kind != Kind::Reload, m_text};
        });
    }
    /// Sends from another thread, while this one serves the event loop.
    std::optional<InstanceAnswer> send(const InstanceCommand& command, const QString& identity = {}) {
        auto sent = std::async(std::launch::async, [=, this] { return channel(identity)->send(command); });
        eventually([&] { return sent.wait_for(std::chrono::seconds(0)) == std::future_status::ready; });
        return sent.get();
    }
    /// A socket at a path of the folder, bound to it or connected with it.
    int socketAt(const char* name, decltype(::connect)* attach) {
        const QByteArray path = m_folder.filePath(name).toLocal8Bit();
        sockaddr_un address{AF_UNIX, {}};
        qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
        const int made = ::socket(AF_UNIX, SOCK_STREAM, 0);
        EXPECT_EQ(attach(made, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        return made;
    }

    bool m_usesBus = false;
    QTemporaryDir m_folder;
    tests::PrivateBus m_bus;
    std::vector<InstanceCommand> m_obeyed;
    /// Longer than what one read takes.
    const std::string m_text = std::string(9000, 'x') + "\n";
};

TEST_F(InstanceTest, OneIsFirstAndObeysTheOthers) {
    for (const bool usesBus : {false, true}) {
        SCOPED_TRACE(usesBus);
        m_usesBus = usesBus;
        m_obeyed.clear();
        EXPECT_EQ(send({Kind::Quit}), std::nullopt);
        const auto first = channel();
        ASSERT_EQ(claim(*first), Standing::First);
        EXPECT_EQ(claim(*channel()), Standing::Second);
        const InstanceCommand profile{Kind::Profile, 7};
        EXPECT_EQ(send(profile), (InstanceAnswer{true, m_text}));
        EXPECT_TRUE(send({Kind::BringToFront})->isAccepted) << "also after a second one's claim";
        EXPECT_THAT(m_obeyed, testing::ElementsAre(profile, InstanceCommand{Kind::BringToFront}));
        EXPECT_EQ(send({Kind::Reload}), (InstanceAnswer{false, m_text})) << "it says that it will not";
        EXPECT_EQ(send({Kind::Quit}, "another"), std::nullopt);
        EXPECT_EQ(claim(*channel("another")), Standing::First);
    }
    EXPECT_EQ(send({Kind::Quit}), std::nullopt) << "the first is gone";
    EXPECT_EQ(claim(*channel()), Standing::First);
}

TEST_F(InstanceTest, TheSocketIsItsOwnersAndTakesNoNonsense) {
    ::close(socketAt("glimra.sock", ::bind)); // what a killed program leaves
    auto first = channel();
    ASSERT_EQ(claim(*first), Standing::First);
    for (const char* name : {"glimra.sock", "glimra.lock"}) {
        struct stat status {};
        ASSERT_EQ(::stat(m_folder.filePath(name).toLocal8Bit().constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 0077U, 0U) << name;
    }
    for (const std::string& text : {std::string("nonsense\n"), std::string(5000, 'x'), std::string("\n"),
                                    std::string("quit"), std::string()}) {
        const int caller = socketAt("glimra.sock", ::connect);
        ::send(caller, text.data(), text.size(), MSG_NOSIGNAL);
        ::shutdown(caller, SHUT_WR);
        char answer = 0;
        EXPECT_TRUE(eventually([&] {
            const ssize_t count = ::recv(caller, &answer, 1, MSG_DONTWAIT);
            return count == 0 || (count < 0 && errno != EAGAIN);
        })) << "it hangs up";
        ::close(caller);
    }
    EXPECT_THAT(m_obeyed, testing::IsEmpty());
    EXPECT_EQ(makeSocketChannel({}, {})->send({Kind::Quit}), std::nullopt);
    EXPECT_EQ(claim(*makeSocketChannel(m_folder.filePath("nowhere"), {})), Standing::Unusable);
}

TEST_F(InstanceTest, ARuntimeFolderThatOthersCanChangeIsRefusedAndNoBusIsStarted) {
    ::close(socketAt("bus", ::bind));
    qputenv("XDG_RUNTIME_DIR", m_folder.path().toLocal8Bit());
    for (const auto& [mode, usable] : {std::pair(0777U, false), {0700U, true}}) {
        ::chmod(m_folder.path().toLocal8Bit().constData(), mode);
        qputenv("DBUS_SESSION_BUS_ADDRESS", "");
        EXPECT_EQ(runtimeFolderComplaint().empty(), usable);
        EXPECT_EQ(socketFolder() == m_folder.path().toStdString(), usable);
        EXPECT_EQ(sessionBusAddress().isEmpty(), !usable);
        startNoBus();
        EXPECT_EQ(qgetenv("DBUS_SESSION_BUS_ADDRESS"), usable ? "" : "disabled:");
    }
}

TEST_F(InstanceTest, ABusThatNeverAnswersIsNone) {
    const int silent = socketAt("bus", ::bind);
    ASSERT_EQ(::listen(silent, 1), 0);
    for (const QString& address :
         {QString(), "unix:path=" + m_folder.filePath("no-bus"), "unix:path=" + m_folder.filePath("bus")})
        EXPECT_LT(tests::millisecondsOf(
                      [&] { EXPECT_EQ(claim(*makeBusChannel(address, {})), Standing::Unusable); }),
                  20'000);
    ::close(silent);
}

} // namespace
} // namespace glimra::desktop
