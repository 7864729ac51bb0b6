#include "desktop/services/instance_channel.h"

#include "support/private_bus.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace glimra::desktop {
namespace {

using Kind = InstanceCommand::Kind;
using Standing = InstanceChannel::Standing;
using Delivery = InstanceChannel::Delivery;
using glimra::tests::eventually;

TEST(InstanceCommand, IsReadAsItIsWrittenAndNothingElseIs) {
    for (const InstanceCommand& command :
         {InstanceCommand{Kind::BringToFront}, InstanceCommand{Kind::Quit},
          InstanceCommand{Kind::TestPattern}, InstanceCommand{Kind::Profile, 1},
          InstanceCommand{Kind::Profile, 9}})
        EXPECT_EQ(commandFromText(toText(command)), command);
    for (const char* text :
         {"", "quit ", "QUIT", "profile", "profile ", "profile 0", "profile 10", "profile x"})
        EXPECT_EQ(commandFromText(text), std::nullopt) << text;
}

class InstanceEdgeTest : public ::testing::Test {
protected:
    InstanceEdgeTest() { glimra::tests::ensureApplication(); }

    Standing claim(InstanceChannel& channel) {
        return channel.claim([this](const InstanceCommand& command) {
            m_obeyed.push_back(command);
            return command.kind != Kind::TestPattern;
        });
    }

    QTemporaryDir m_folder;
    std::vector<InstanceCommand> m_obeyed;
};

class InstanceTest : public InstanceEdgeTest, public ::testing::WithParamInterface<const char*> {
protected:
    std::unique_ptr<InstanceChannel> channel(const QString& identity = {}) {
        if (std::string_view(GetParam()) == "socket")
            return makeSocketChannel(m_folder.path(), identity);
        if (!m_bus)
            m_bus.emplace();
        return makeBusChannel(m_bus->address(), identity);
    }
    /// Sends from another thread, while this one serves the event loop.
    Delivery send(const InstanceCommand& command, const QString& identity = {}) {
        channel(); // the bus is up
        std::atomic<bool> isDone = false;
        Delivery delivery{};
        std::thread sender([&] {
            delivery = channel(identity)->send(command);
            isDone = true;
        });
        eventually([&] { return isDone.load(); });
        sender.join();
        return delivery;
    }
    std::optional<glimra::tests::PrivateBus> m_bus;
};

INSTANTIATE_TEST_SUITE_P(Channels, InstanceTest, ::testing::Values("bus", "socket"));

TEST_P(InstanceTest, OneIsFirstAndObeysTheOthers) {
    EXPECT_EQ(send({Kind::Quit}), Delivery::NobodyThere);
    auto first = channel();
    ASSERT_EQ(claim(*first), Standing::First);
    EXPECT_EQ(claim(*channel()), Standing::Second);
    const InstanceCommand profile{Kind::Profile, 7};
    EXPECT_EQ(send(profile), Delivery::Delivered);
    EXPECT_EQ(send({Kind::BringToFront}), Delivery::Delivered)
        << "also after somebody else tried to be first";
    EXPECT_TRUE(eventually([this] { return m_obeyed.size() == 2; }));
    EXPECT_THAT(m_obeyed, ::testing::ElementsAre(profile, InstanceCommand{Kind::BringToFront}));
    EXPECT_EQ(send({Kind::TestPattern}), Delivery::NobodyThere) << "it says that it will not";
    EXPECT_EQ(send({Kind::Quit}, "another"), Delivery::NobodyThere);
    EXPECT_EQ(claim(*channel("another")), Standing::First);

    first.reset();
    EXPECT_EQ(send({Kind::Quit}), Delivery::NobodyThere);
    EXPECT_EQ(claim(*channel()), Standing::First);
}

sockaddr_un addressOf(const QString& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, path.toLocal8Bit().constData(), sizeof address.sun_path);
    return address;
}

TEST_F(InstanceEdgeTest, TheSocketIsItsOwnersAndTakesNoNonsense) {
    const QString path = m_folder.filePath("glimra.sock");
    // What a killed program leaves.
    const int left = ::socket(AF_UNIX, SOCK_STREAM, 0);
    const sockaddr_un address = addressOf(path);
    ASSERT_EQ(::bind(left, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(left);

    auto first = makeSocketChannel(m_folder.path(), {});
    ASSERT_EQ(claim(*first), Standing::First);
    for (const char* name : {"glimra.sock", "glimra.lock"}) {
        struct stat status {};
        ASSERT_EQ(::stat(m_folder.filePath(name).toLocal8Bit().constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 0077U, 0U) << name;
    }
    for (const std::string& text : {std::string("nonsense\n"), std::string(5000, 'x'), std::string("\n"),
                                    std::string("quit"), std::string()}) {
        const int caller = ::socket(AF_UNIX, SOCK_STREAM, 0);
        ASSERT_EQ(::connect(caller, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        ::send(caller, text.data(), text.size(), MSG_NOSIGNAL);
        ::shutdown(caller, SHUT_WR);
        char answer = 0;
        EXPECT_TRUE(eventually([&] {
            const ssize_t count = ::recv(caller, &answer, 1, MSG_DONTWAIT);
            return count == 0 || (count < 0 && errno != EAGAIN);
        })) << "it hangs up";
        ::close(caller);
    }
    EXPECT_THAT(m_obeyed, ::testing::IsEmpty());
    EXPECT_EQ(makeSocketChannel({}, {})->send({Kind::Quit}), Delivery::Unusable);
    EXPECT_EQ(claim(*makeSocketChannel(m_folder.filePath("nowhere"), {})), Standing::Unusable);
}

TEST_F(InstanceEdgeTest, ABusThatNeverAnswersIsNone) {
    const QString path = m_folder.filePath("bus");
    const int silent = ::socket(AF_UNIX, SOCK_STREAM, 0);
    const sockaddr_un address = addressOf(path);
    ASSERT_EQ(::bind(silent, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(silent, 1), 0);
    EXPECT_EQ(claim(*makeBusChannel({}, {})), Standing::Unusable);
    EXPECT_EQ(claim(*makeBusChannel("unix:path=" + m_folder.filePath("no-bus"), {})), Standing::Unusable);
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(claim(*makeBusChannel("unix:path=" + path, {})), Standing::Unusable);
    EXPECT_LT(timer.elapsed(), 10'000);
    ::close(silent);
}

} // namespace
} // namespace glimra::desktop
