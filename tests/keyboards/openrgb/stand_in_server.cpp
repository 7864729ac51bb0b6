#include "keyboards/openrgb/stand_in_server.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace glimra::tests {

using keyboards::openrgb::appendBytes;
using keyboards::openrgb::appendU32;
using keyboards::openrgb::ByteReader;

namespace {

constexpr std::size_t kHeaderBytes = 16;

StandInServer::Bytes numbers(std::initializer_list<std::uint32_t> values) {
    StandInServer::Bytes bytes;
    for (const std::uint32_t value : values)
        appendU32(bytes, value);
    return bytes;
}

/// A socket at this port of 127.0.0.1, 0 for one that the system chooses, and that port.
std::pair<int, std::uint16_t> boundSocket(std::uint16_t port) {
    const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(fd, generic, size) != 0 || getsockname(fd, generic, &size) != 0)
        throw std::runtime_error("no port for the stand-in server");
    return {fd, ntohs(address.sin_port)};
}

} // namespace

std::uint16_t closedPort() {
    static const std::uint16_t port = boundSocket(0).second;
    return port;
}

StandInServer::StandInServer(std::vector<Device> devices, Options options)
    : m_options(std::move(options)),
      m_listener(boundSocket(m_options.port)),
      m_devices(std::move(devices)) {
    expect(listen(m_listener.first, 4) == 0, "nobody can reach the server");
    m_thread = std::thread([this] { run(); });
}

StandInServer::~StandInServer() {
    {
        const std::scoped_lock lock(m_mutex);
        shutdown(m_listener.first, SHUT_RDWR);
        shutdown(m_client, SHUT_RDWR);
    }
    m_thread.join();
    close(m_listener.first);
}

std::uint32_t StandInServer::numberOf(std::size_t index) const {
    return static_cast<std::uint32_t>(m_version >= 6 ? index + 70 : index);
}

StandInServer::Lights StandInServer::lights(const std::string& name) const {
    const std::scoped_lock lock(m_mutex);
    const auto device = std::ranges::find(m_devices, name, &Device::name);
    if (device == m_devices.end())
        return {};
    return {device->modes[static_cast<std::size_t>(device->activeMode)].name, device->colors};
}

int StandInServer::changes(const std::string& device) const {
    const std::scoped_lock lock(m_mutex);
    const auto found = m_changes.find(device);
    return found != m_changes.end() ? found->second : 0;
}

void StandInServer::changeMode(const std::string& name, std::int32_t mode) {
    const std::scoped_lock lock(m_mutex);
    const auto device = std::ranges::find(m_devices, name, &Device::name);
    device->activeMode = mode;
    if (m_version >= 6)
        answer(numberOf(static_cast<std::size_t>(device - m_devices.begin())), 1150, numbers({8, 1}));
}

std::vector<std::string> StandInServer::complaints() const {
    return m_complaints.copy();
}

void StandInServer::expect(bool isSo, const char* complaint) {
    if (!isSo)
        m_complaints.with([&](auto& complaints) { complaints.emplace_back(complaint); });
}

bool StandInServer::isLeft() const {
    const std::scoped_lock lock(m_mutex);
    return m_client < 0;
}

void StandInServer::setDevices(std::vector<Device> devices) {
    const std::scoped_lock lock(m_mutex);
    m_devices = std::move(devices);
    for (int notice = 0; notice < 3 && m_client >= 0; ++notice)
        answer(0, 100, {});
}

void StandInServer::run() {
    for (int client = 0; (client = accept4(m_listener.first, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;) {
        enter(client);
        while (serveRequest()) {
        }
        enter(-1);
        close(client);
    }
}

void StandInServer::enter(int client) {
    const std::scoped_lock lock(m_mutex);
    m_client = client;
    m_version = 0;
}

StandInServer::Bytes StandInServer::receive(std::size_t size) {
    Bytes bytes(size);
    const ssize_t count = size > 0 ? recv(m_client, bytes.data(), size, MSG_WAITALL) : 0;
    expect(count >= 0, "the client broke the connection off");
    bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return bytes;
}

bool StandInServer::serveRequest() {
    const Bytes header = receive(kHeaderBytes);
    if (header.size() < kHeaderBytes)
        return false;
    ByteReader reader(header);
    expect(std::ranges::equal(reader.bytes(4), std::string_view("ORGB")), "a packet does not begin as one");
    const std::uint32_t device = reader.u32();
    const std::uint32_t request = reader.u32();
    const Bytes payload = receive(reader.u32());
    const auto other = m_options.instead ? m_options.instead(request, m_client) : std::nullopt;
    const std::scoped_lock lock(m_mutex);
    if (other)
        send(*other);
    else
        serve(device, request, payload);
    return true;
}

void StandInServer::serve(std::uint32_t number, std::uint32_t request, const Bytes& payload) {
    if (request == 0) {
        Bytes list = numbers({static_cast<std::uint32_t>(m_devices.size())});
        for (std::size_t index = 0; index < m_devices.size() && m_version >= 6; ++index)
            appendU32(list, numberOf(index));
        answer(0, 0, list);
    } else if (request == 40 && m_options.version > 0) {
        m_version = std::min(ByteReader(payload).u32(), m_options.version);
        answer(0, 40, numbers({m_options.version}));
    }
    for (std::size_t index = 0; index < m_devices.size(); ++index)
        if (numberOf(index) == number)
            serveDevice(m_devices[index], number, request, payload);
    if (m_version >= 6)
        answer(number, 10, numbers({request, 0}));
}

void StandInServer::serveDevice(Device& device, std::uint32_t number, std::uint32_t request,
                                const Bytes& payload) {
    if (request == 1050 || request == 1100 || request == 1101)
        ++m_changes[device.name];
    if (request == 1) {
        expect(payload == (m_version > 0 ? numbers({m_version}) : Bytes()), "not in the version agreed upon");
        answer(number, 1, encodeDevice(device, m_version));
    } else if (request == 1050) {
        update(device, payload);
    } else if (request == 1101) {
        changeMode(device, payload);
    }
}

void StandInServer::update(Device& device, const Bytes& payload) {
    // On many keyboards colours end the effect of a mode that has none of its own.
    expect(device.modes[static_cast<std::size_t>(device.activeMode)].colorMode == 1,
           "colors in a mode that shows none");
    ByteReader reader(payload);
    const std::size_t count = device.colors.size();
    const bool hasSizes = reader.u32() == payload.size() && reader.u16() == count;
    expect(hasSizes && reader.rest().size() == 4 * count, "an update of colours with wrong sizes");
    for (Rgb& color : device.colors)
        if (const auto bytes = reader.bytes(4); !reader.failed())
            color = {bytes[0], bytes[1], bytes[2]};
}

void StandInServer::changeMode(Device& device, const Bytes& payload) {
    ByteReader reader(payload);
    const bool hasSize = reader.u32() == payload.size();
    const std::uint32_t mode = reader.u32();
    const bool isKnown = hasSize && mode < device.modes.size() &&
                         std::ranges::equal(reader.rest(), encodeMode(device.modes[mode], m_version));
    expect(isKnown, "a mode that is none of the device's");
    if (isKnown)
        device.activeMode = static_cast<std::int32_t>(mode);
}

void StandInServer::answer(std::uint32_t device, std::uint32_t id, const Bytes& payload) {
    Bytes header{'O', 'R', 'G', 'B'};
    appendBytes(header, numbers({device, id, static_cast<std::uint32_t>(payload.size())}));
    // Real servers send header and payload one by one.
    send(header);
    send(payload);
}

void StandInServer::send(const Bytes& bytes) {
    expect(::send(m_client, bytes.data(), bytes.size(), MSG_NOSIGNAL) >= 0, "an answer that nobody took");
}

} // namespace glimra::tests
