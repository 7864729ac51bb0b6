#pragma once

#include "keyboards/openrgb/connection.h"
#include "keyboards/openrgb/controller_data.h"
#include "keyboards/openrgb/packet.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace glimra::keyboards::openrgb {

/// How long the server is waited for.
struct Timing {
    Duration connection = std::chrono::seconds(1);
    /// For its version. The oldest servers never answer that.
    Duration versionAnswer = std::chrono::seconds(1);
    Duration answer = std::chrono::seconds(2);
    /// Until it has taken what is sent to it.
    Duration sending = std::chrono::milliseconds(500);
    /// When the list of devices has changed: how long no further change must come before it is read again.
    Duration quiet = std::chrono::milliseconds(250);
    /// How long such changes are waited for at most.
    Duration unrest = std::chrono::seconds(3);
    /// For what it still sends after the program has ended its side of the connection.
    Duration farewell = std::chrono::milliseconds(150);
    /// The same, while an answer of it is on its way.
    Duration lateAnswer = std::chrono::seconds(3);
};

/// A conversation with an OpenRGB server, in the newest version of the protocol that both sides know. The
/// server is not trusted: if it sends anything that is not of the protocol, the conversation is over. No call
/// takes longer than the limits of `Timing`. When `stop` is set, only `listen` and `end` go on waiting.
class Session {
public:
    Session(const WakeEvent& stop, const Timing& timing) : m_timing(timing), m_connection(stop) {}
    ~Session() { end(); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // The following functions return false or nothing when the conversation is over; `problem` says why.

    /// Connects, and agrees with the server on a version of the protocol no newer than `newestVersion`.
    bool start(const ServerAddress& server, std::uint32_t newestVersion);
    std::optional<std::vector<std::uint32_t>> controllerList();
    /// What the server says about a device. Returns nothing also when the list of devices changes meanwhile.
    std::optional<Controller> controller(std::uint32_t device);
    bool send(Bytes packet);
    /// Reads what has come; does not wait.
    bool drain();
    /// Waits until the server's list of devices no longer changes. `listHasChanged` is false afterwards.
    bool waitForQuiet();
    /// From now on, waits are short and go on when `stop` is set: the lights are to be handed back.
    void hurry();

    /// Reads what comes during this time, whether `stop` is set or not.
    void listen(Duration duration);

    /// Reads what the server still sends, then closes the connection.
    void end();

    /// A request has not been answered yet. Old servers crash when the connection closes before they have
    /// sent their answer, so it is kept open, for nothing else, until `drain` has read that answer.
    bool awaitsAnswer() const { return m_awaited && m_connection.isOpen(); }
    /// The server has told that somebody has changed more of a device than its colours. False when asked
    /// again.
    bool tookNoticeOf(std::uint32_t device) { return m_changedDevices.erase(device) > 0; }

    std::uint32_t version() const { return m_version; }
    int fd() const { return m_connection.fd(); }
    /// Devices came or went. All numbers of devices may now mean other devices.
    bool listHasChanged() const { return m_listHasChanged; }
    /// The server has refused to show colours.
    bool wasRefused() const { return m_wasRefused; }
    /// An answer was not of the form that the protocol has in this version.
    bool wasMisunderstood() const { return m_wasMisunderstood; }
    bool hasConnected() const { return m_hasConnected; }
    bool isOver() const { return !m_problem.empty(); }
    /// Why it is over. The rest of a sentence that begins with the server: "closed the connection".
    const std::string& problem() const { return m_problem; }

private:
    bool negotiate(std::uint32_t newestVersion);
    std::optional<std::uint32_t> offer(std::uint32_t version);
    std::optional<Packet> ask(Bytes question, PacketId id, std::optional<std::uint32_t> device);
    std::optional<Packet> await(PacketId id, std::optional<std::uint32_t> device, Duration limit);
    std::optional<Packet> nextPacket();
    void takeNotice(const Packet& packet);
    bool waitForInput(Time deadline, Connection::Wait wait);
    bool fail(const std::string& problem);
    void misunderstood();

    Timing m_timing;
    Connection m_connection;
    PacketReader m_reader;
    /// Bytes that were received and not read yet.
    Bytes m_unread;
    std::uint32_t m_version = 0;
    bool m_hasConnected = false;
    bool m_hasAgreed = false;
    bool m_listHasChanged = false;
    bool m_wasRefused = false;
    bool m_wasMisunderstood = false;
    std::optional<PacketId> m_awaited;
    std::set<std::uint32_t> m_changedDevices;
    Connection::Wait m_wait = Connection::Wait::UntilStopped;
    std::string m_problem;
};

} // namespace glimra::keyboards::openrgb
