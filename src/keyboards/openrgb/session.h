#pragma once

#include "keyboards/openrgb/connection.h"
#include "keyboards/openrgb/controller_data.h"
#include "keyboards/openrgb/packet.h"

#include <optional>
#include <string>
#include <vector>

namespace glimra::keyboards::openrgb {

/// How long a server may take.
struct Timing {
    Duration connection = std::chrono::seconds(1);
    /// The oldest servers give no answer about their version.
    Duration versionAnswer = std::chrono::seconds(1);
    Duration answer = std::chrono::seconds(2);
    /// To take what is sent to it.
    Duration sending = std::chrono::milliseconds(500);
    /// Without another notice, until a list of devices that has changed counts as settled; and the longest
    /// that it is waited for.
    Duration quiet = std::chrono::milliseconds(250);
    Duration unrest = std::chrono::seconds(3);
    /// From our last word to its own.
    Duration farewell = std::chrono::milliseconds(150);
};

/// A conversation with an OpenRGB server, in the newest version of the protocol that both sides speak. What
/// the server sends may be anything: whatever is not of the protocol ends the conversation. No call takes
/// longer than the limits of `Timing`, and none but `listen` and `end` goes on waiting once `stop` is set.
class Session {
public:
    Session(const WakeEvent& stop, const Timing& timing) : m_timing(timing), m_connection(stop) {}
    ~Session() { end(); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // These return false, or nothing, when the conversation is over; `problem` says why.

    /// Connects and agrees on a version, `newestVersion` at most.
    bool start(const ServerAddress& server, std::uint32_t newestVersion);
    std::optional<std::vector<std::uint32_t>> controllerList();
    /// Nothing, too, when the list of devices changes meanwhile.
    std::optional<Controller> controller(std::uint32_t device);
    bool send(Bytes packet);
    /// Reads what has come, without waiting.
    bool drain();
    /// Waits until the server's list of devices stands still; it has not changed then.
    bool waitForQuiet();

    /// Listens for some time, whether `stop` is set or not.
    void listen(Duration duration);

    /// Waits for what the server still has to say, because old ones fall over answers that they cannot get
    /// rid of; then closes the connection.
    void end();

    std::uint32_t version() const { return m_version; }
    int fd() const { return m_connection.fd(); }
    /// Devices came or went: the numbers of all of them may mean others now.
    bool listHasChanged() const { return m_listHasChanged; }
    /// The server refused to show colours.
    bool wasRefused() const { return m_wasRefused; }
    /// An answer was not what its version of the protocol says.
    bool wasMisunderstood() const { return m_wasMisunderstood; }
    bool isOver() const { return !m_problem.empty(); }
    /// Why it is over: what the server did, as the rest of a sentence: "closed the connection".
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
    /// Received, not yet read.
    Bytes m_unread;
    std::uint32_t m_version = 0;
    bool m_listHasChanged = false;
    bool m_wasRefused = false;
    bool m_wasMisunderstood = false;
    std::string m_problem;
};

} // namespace glimra::keyboards::openrgb
