#include "keyboards/openrgb/session.h"

#include "platform/monotonic_clock.h"

#include <algorithm>
#include <utility>

namespace glimra::keyboards::openrgb {

namespace {

/// The newest version that released servers know. A newer one is offered only to a server that says it has
/// it.
constexpr std::uint32_t kFirstOffer = 5;
constexpr char kClientName[] = "Glimra";

/// How long `drain` goes on reading from a server that never stops sending.
constexpr Duration kLongestDrain = std::chrono::milliseconds(20);

/// How many devices' changes are remembered; nobody has more keyboards.
constexpr std::size_t kMostChanges = 64;

} // namespace

bool Session::start(const ServerAddress& server, std::uint32_t newestVersion) {
    const std::string problem =
        m_connection.connect(server.host, server.port, platform::monotonicNow() + m_timing.connection);
    if (!problem.empty())
        return fail("cannot be reached (" + problem + ")");
    m_hasConnected = true;
    m_hasAgreed = negotiate(newestVersion);
    return m_hasAgreed && send(clientNamePacket(kClientName));
}

bool Session::negotiate(std::uint32_t newestVersion) {
    const std::uint32_t first = std::min(kFirstOffer, newestVersion);
    const std::optional<std::uint32_t> newest = offer(first);
    m_version = std::min(newest.value_or(0), first);
    if (isOver() || newest.value_or(0) <= first || newestVersion <= first)
        return !isOver();
    if (!offer(newestVersion))
        return fail("did not answer");
    m_version = std::min(*newest, newestVersion);
    return true;
}

/// Tells the server our version and returns the newest one that the server knows; none when it does not
/// answer.
std::optional<std::uint32_t> Session::offer(std::uint32_t version) {
    if (!send(numberPacket(PacketId::ProtocolVersion, 0, version)))
        return std::nullopt;
    const std::optional<Packet> answer =
        await(PacketId::ProtocolVersion, std::nullopt, m_timing.versionAnswer);
    if (!answer)
        return std::nullopt;
    ByteReader reader(answer->payload);
    const std::uint32_t newest = reader.u32();
    if (!reader.atEnd()) {
        misunderstood();
        return std::nullopt;
    }
    return newest;
}

std::optional<std::vector<std::uint32_t>> Session::controllerList() {
    const std::optional<Packet> answer =
        ask(packet(PacketId::ControllerCount, 0), PacketId::ControllerCount, std::nullopt);
    if (!answer)
        return std::nullopt;
    auto list = readControllerList(answer->payload, m_version);
    if (!list)
        misunderstood();
    return list;
}

std::optional<Controller> Session::controller(std::uint32_t device) {
    const std::optional<Packet> answer =
        ask(m_version == 0 ? packet(PacketId::ControllerData, device)
                           : numberPacket(PacketId::ControllerData, device, m_version),
            PacketId::ControllerData, device);
    if (!answer)
        return std::nullopt;
    auto controller = readController(answer->payload, m_version);
    if (!controller)
        misunderstood();
    return controller;
}

bool Session::send(Bytes packet) {
    if (isOver())
        return false;
    if (m_connection.send(packet, platform::monotonicNow() + m_timing.sending))
        return true;
    // Only a part of the packet may have been sent. The server could not understand what comes after it.
    m_connection.close();
    return fail("closed the connection or does not listen any more");
}

bool Session::drain() {
    const Time deadline = platform::monotonicNow() + kLongestDrain;
    while (const std::optional<Packet> packet = nextPacket()) {
        takeNotice(*packet);
        if (platform::monotonicNow() >= deadline)
            break;
    }
    return !isOver();
}

bool Session::waitForQuiet() {
    const Time giveUp = platform::monotonicNow() + m_timing.unrest;
    do {
        m_listHasChanged = false;
        const Time quiet = platform::monotonicNow() + m_timing.quiet;
        while (!m_listHasChanged && waitForInput(quiet, m_wait))
            if (!drain())
                return false;
    } while (m_listHasChanged && platform::monotonicNow() < giveUp);
    m_listHasChanged = false;
    return true;
}

void Session::hurry() {
    constexpr Duration kShort = std::chrono::milliseconds(60);
    m_timing.quiet = m_timing.unrest = m_timing.answer = kShort;
    m_wait = Connection::Wait::Anyway;
}

void Session::end() {
    if (!m_connection.isOpen())
        return;
    fail("was left");
    m_connection.finishSending();
    listen(awaitsAnswer() ? m_timing.lateAnswer : m_timing.farewell);
    m_connection.close();
}

void Session::listen(Duration duration) {
    const Time deadline = platform::monotonicNow() + duration;
    while (m_connection.isOpen() && waitForInput(deadline, Connection::Wait::Anyway))
        drain();
}

std::optional<Packet> Session::ask(Bytes question, PacketId id, std::optional<std::uint32_t> device) {
    if (!send(question))
        return std::nullopt;
    std::optional<Packet> answer = await(id, device, m_timing.answer);
    if (!answer && !m_listHasChanged)
        fail("did not answer");
    return answer;
}

/// Waits for the answer to a request, and takes notice of all else that the server sends before it.
std::optional<Packet> Session::await(PacketId id, std::optional<std::uint32_t> device, Duration limit) {
    const Time deadline = platform::monotonicNow() + limit;
    m_awaited = id;
    do {
        while (std::optional<Packet> packet = nextPacket()) {
            takeNotice(*packet);
            if (packet->is(id) && packet->device == device.value_or(packet->device))
                return packet;
            // Servers do not answer a request about a device that is gone.
            const bool isInVain = m_listHasChanged && id == PacketId::ControllerData;
            if (isInVain || platform::monotonicNow() >= deadline)
                return std::nullopt;
        }
    } while (!isOver() && waitForInput(deadline, m_wait));
    return std::nullopt;
}

/// The next packet that has come completely; none when there is no such.
std::optional<Packet> Session::nextPacket() {
    while (m_connection.isOpen()) {
        if (std::optional<Packet> packet = m_reader.take(m_unread))
            return packet;
        const std::optional<Bytes> received = m_reader.failed() ? std::nullopt : m_connection.receive();
        if (!received) {
            if (m_reader.failed())
                misunderstood();
            fail("closed the connection");
            m_connection.close();
            break;
        }
        if (received->empty())
            break;
        m_unread = *received;
    }
    return std::nullopt;
}

void Session::takeNotice(const Packet& packet) {
    if (m_awaited && packet.is(*m_awaited))
        m_awaited.reset();
    if (packet.is(PacketId::DeviceListUpdated))
        m_listHasChanged = true;
    if (packet.is(PacketId::DeviceChanged)) {
        ByteReader reader(packet.payload);
        reader.u32();
        const bool isAboutColors = reader.u32() == 0;
        if (!isAboutColors && m_changedDevices.size() < kMostChanges)
            m_changedDevices.insert(packet.device);
    }
    // The answer came too late, and the server has been taken for one of those without versions. A new
    // conversation has to begin.
    if (packet.is(PacketId::ProtocolVersion) && m_hasAgreed && m_version == 0)
        fail("answered too late");
    if (packet.is(PacketId::Acknowledgement)) {
        ByteReader reader(packet.payload);
        const bool isForColors = reader.u32() == static_cast<std::uint32_t>(PacketId::UpdateLeds);
        m_wasRefused |= isForColors && reader.u32() != 0;
    }
}

/// Waits until something may have come; false when `deadline` has passed.
bool Session::waitForInput(Time deadline, Connection::Wait wait) {
    // A server that never stops sending must not make us miss the deadline.
    return platform::monotonicNow() < deadline && m_connection.waitForInput(deadline, wait);
}

bool Session::fail(const std::string& problem) {
    if (m_problem.empty())
        m_problem = problem;
    return false;
}

void Session::misunderstood() {
    m_wasMisunderstood = true;
    fail("sent something that is not of its protocol");
}

} // namespace glimra::keyboards::openrgb
