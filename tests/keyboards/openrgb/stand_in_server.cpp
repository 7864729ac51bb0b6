#include "keyboards/openrgb/stand_in_server.h"

#include "keyboards/openrgb/bytes.h"

#include <algorithm>
#include <stdexcept>
#include <tuple>
#include <utility>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace glimra::tests {

using keyboards::openrgb::appendBytes;
using keyboards::openrgb::appendU32;
using keyboards::openrgb::ByteReader;

namespace {

constexpr std::size_t kHeaderBytes = 16;
constexpr std::uint32_t kGone = 4;

StandInServer::Bytes frame(std::uint32_t device, std::uint32_t id, const StandInServer::Bytes& payload) {
    StandInServer::Bytes bytes{'O', 'R', 'G', 'B'};
    appendU32(bytes, device);
    appendU32(bytes, id);
    appendU32(bytes, static_cast<std::uint32_t>(payload.size()));
    appendBytes(bytes, payload);
    return bytes;
}

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

ClosedPort::ClosedPort() {
    std::tie(m_socket, m_number) = boundSocket(0);
}

ClosedPort::~ClosedPort() {
    close(m_socket);
}

StandInServer::StandInServer(std::vector<ServerDevice> devices, Options options)
    : m_options(std::move(options)) {
    install(std::move(devices));
    std::tie(m_listener, m_port) = boundSocket(m_options.port);
    if (listen(m_listener, 4) != 0)
        throw std::runtime_error("the stand-in server cannot listen");
    m_thread = std::thread([this] { run(); });
}

StandInServer::~StandInServer() {
    {
        const std::scoped_lock lock(m_mutex);
        m_quits = true;
    }
    m_wake.set();
    m_thread.join();
    for (Client& client : m_clients)
        drop(client);
    close(m_listener);
}

void StandInServer::install(std::vector<ServerDevice> devices) {
    m_devices.clear();
    for (ServerDevice& description : devices) {
        Device device;
        device.id = m_nextId++;
        device.lights = {description.modes.empty()
                             ? ""
                             : description.modes[static_cast<std::size_t>(description.activeMode)].name,
                         description.colors, 0};
        device.stored = description.colors;
        device.description = std::move(description);
        m_devices.push_back(std::move(device));
    }
}

StandInServer::Lights StandInServer::lights(const std::string& name) const {
    const std::scoped_lock lock(m_mutex);
    for (const Device& device : m_devices)
        if (device.description.name == name)
            return device.lights;
    return {};
}

std::vector<std::string> StandInServer::complaints() const {
    const std::scoped_lock lock(m_mutex);
    return m_complaints;
}

bool StandInServer::clientSaidGoodbye() const {
    const std::scoped_lock lock(m_mutex);
    return std::ranges::any_of(m_clients, &Client::saidGoodbye);
}

std::vector<std::uint32_t> StandInServer::requests() const {
    const std::scoped_lock lock(m_mutex);
    return m_requests;
}

bool StandInServer::waitUntil(const std::function<bool()>& isSo) const {
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!isSo()) {
        std::unique_lock lock(m_mutex);
        // What is waited for may become so without the server having a part in it.
        m_changed.wait_for(lock, std::chrono::milliseconds(5));
        if (std::chrono::steady_clock::now() > giveUp)
            return false;
    }
    return true;
}

bool StandInServer::waitForClients(std::size_t count) const {
    return waitUntil([&] {
        const std::scoped_lock lock(m_mutex);
        return m_clients.size() == count;
    });
}

void StandInServer::setDevices(std::vector<ServerDevice> devices) {
    const std::scoped_lock lock(m_mutex);
    install(std::move(devices));
    m_wasRescanned = true;
    for (Client& client : m_clients)
        for (int notice = 0; notice < 3 && m_options.version >= 1; ++notice)
            send(client, frame(0, 100, {}));
}

void StandInServer::sendToAll(const Bytes& bytes) {
    const std::scoped_lock lock(m_mutex);
    for (Client& client : m_clients)
        send(client, bytes);
}

void StandInServer::holdAnswers(bool hold) {
    {
        const std::scoped_lock lock(m_mutex);
        m_holdsAnswers = hold;
        for (Client& client : m_clients)
            if (!hold)
                sendNow(client, std::exchange(client.unsent, {}));
    }
    m_wake.set();
}

void StandInServer::stopReading() {
    {
        const std::scoped_lock lock(m_mutex);
        m_isReading = false;
    }
    m_wake.set();
}

void StandInServer::run() {
    for (;;) {
        std::vector<pollfd> watched{{m_wake.fd(), POLLIN, 0}, {m_listener, POLLIN, 0}};
        {
            const std::scoped_lock lock(m_mutex);
            if (m_quits)
                return;
            for (const Client& client : m_clients)
                watched.push_back({isRead(client) ? client.fd : -1, POLLIN, 0});
        }
        poll(watched.data(), watched.size(), -1);
        const std::scoped_lock lock(m_mutex);
        m_wake.clear();
        for (std::size_t index = 2; index < watched.size(); ++index)
            if (watched[index].revents != 0)
                read(m_clients[index - 2]);
        std::erase_if(m_clients, [](const Client& client) { return client.fd < 0; });
        if (watched[1].revents != 0)
            accept();
        m_changed.notify_all();
    }
}

bool StandInServer::isRead(const Client& client) const {
    return m_isReading && (!client.saidGoodbye || client.unsent.empty());
}

void StandInServer::accept() {
    Client client;
    client.fd = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
    if (client.fd >= 0)
        m_clients.push_back(std::move(client));
}

void StandInServer::drop(Client& client) {
    if (client.fd >= 0)
        close(client.fd);
    client.fd = -1;
}

void StandInServer::read(Client& client) {
    std::uint8_t buffer[4096];
    const ssize_t count = recv(client.fd, buffer, sizeof buffer, 0);
    if (count <= 0) {
        if (count < 0)
            m_complaints.push_back("the client broke the connection off");
        client.saidGoodbye = true;
        // A real server would still be busy with the answer and not know yet.
        if (client.unsent.empty())
            drop(client);
        return;
    }
    client.received.insert(client.received.end(), buffer, buffer + count);
    while (client.fd >= 0)
        if (const std::optional<Request> request = takeRequest(client))
            serve(client, *request);
        else
            break;
}

std::optional<StandInServer::Request> StandInServer::takeRequest(Client& client) {
    if (client.received.size() < kHeaderBytes)
        return std::nullopt;
    ByteReader reader(client.received);
    const auto magic = reader.bytes(4);
    if (!std::ranges::equal(magic, std::string_view("ORGB"))) {
        m_complaints.push_back("a packet does not begin as one");
        drop(client);
        return std::nullopt;
    }
    Request request;
    request.device = reader.u32();
    request.id = reader.u32();
    const std::uint32_t size = reader.u32();
    if (reader.rest().size() < size)
        return std::nullopt;
    const auto payload = reader.bytes(size);
    request.payload.assign(payload.begin(), payload.end());
    client.received.erase(client.received.begin(),
                          client.received.begin() + static_cast<std::ptrdiff_t>(kHeaderBytes + size));
    return request;
}

void StandInServer::serve(Client& client, const Request& request) {
    m_requests.push_back(request.id);
    if (m_options.tamper)
        if (const std::optional<Bytes> other = m_options.tamper(request.id)) {
            send(client, *other);
            return;
        }
    switch (request.id) {
    case 0: {
        Bytes list = numbers({static_cast<std::uint32_t>(m_devices.size())});
        for (const Device& device : m_devices)
            if (client.version >= 6)
                appendU32(list, device.id);
        answer(client, 0, 0, list);
        break;
    }
    case 1:
        describe(client, request);
        return;
    case 40:
        negotiate(client, request);
        break;
    case 50:
        break;
    case 1050:
        update(client, request);
        return;
    case 1100:
        if (Device* const device = find(client, request.device)) {
            const auto direct = std::ranges::find(device->description.modes, "Direct", &ServerMode::name);
            // Known to the server only: nobody tells the device.
            if (direct != device->description.modes.end())
                device->description.activeMode =
                    static_cast<std::int32_t>(direct - device->description.modes.begin());
        }
        break;
    case 1101:
        changeMode(client, request);
        break;
    default:
        m_complaints.push_back("unknown request " + std::to_string(request.id));
    }
    acknowledge(client, request, 0);
}

void StandInServer::negotiate(Client& client, const Request& request) {
    if (m_options.version == 0)
        return;
    ByteReader reader(request.payload);
    client.version = std::min(reader.u32(), m_options.version);
    answer(client, 0, 40, numbers({m_options.version}));
    if (client.version >= 6)
        answer(client, 0, 51, {'S', 0});
}

void StandInServer::describe(Client& client, const Request& request) {
    ByteReader reader(request.payload);
    const std::uint32_t version = request.payload.empty() ? 0 : reader.u32();
    if (version != client.version)
        m_complaints.push_back("asked in another version than agreed");
    // Nothing is said of a device that there is not.
    if (const Device* const device = find(client, request.device)) {
        ServerDevice description = device->description;
        description.colors = device->stored;
        answer(client, request.device, 1, encodeDevice(description, version));
    }
    acknowledge(client, request, 0);
}

void StandInServer::update(Client& client, const Request& request) {
    ByteReader reader(request.payload);
    const std::uint32_t size = reader.u32();
    const std::size_t count = reader.u16();
    if (size != request.payload.size() || size != 6 + 4 * count) {
        m_complaints.push_back("an update of colours with wrong sizes");
        drop(client);
        return;
    }
    Device* const device = find(client, request.device);
    // The newest server loses the frames of older clients once it has searched anew.
    if (!device || count > device->stored.size() ||
        (m_options.version >= 6 && client.version < 6 && m_wasRescanned)) {
        acknowledge(client, request, kGone);
        return;
    }
    for (std::size_t led = 0; led < count; ++led) {
        const auto color = reader.bytes(4);
        device->stored[led] = {color[0], color[1], color[2]};
        if (color[3] != 0)
            m_complaints.push_back("a colour with a fourth byte");
    }
    device->lights.colors = device->stored;
    ++device->lights.frames;
    acknowledge(client, request, 0);
    if (client.version >= 6)
        answer(client, request.device, 1150, request.payload);
}

void StandInServer::changeMode(Client& client, const Request& request) {
    Device* const device = find(client, request.device);
    ByteReader reader(request.payload);
    const std::uint32_t size = reader.u32();
    const std::uint32_t index = reader.u32();
    if (!device)
        return;
    const bool isKnown =
        size == request.payload.size() && index < device->description.modes.size() &&
        std::ranges::equal(reader.rest(), encodeMode(device->description.modes[index], client.version));
    if (!isKnown) {
        m_complaints.push_back("a mode that is none of the device's");
        return;
    }
    device->description.activeMode = static_cast<std::int32_t>(index);
    device->lights.mode = device->description.modes[index].name;
}

void StandInServer::answer(Client& client, std::uint32_t device, std::uint32_t id, const Bytes& payload) {
    send(client, frame(device, id, payload));
}

void StandInServer::acknowledge(Client& client, const Request& request, std::uint32_t status) {
    if (client.version >= 6)
        answer(client, request.device, 10, numbers({request.id, status}));
}

void StandInServer::send(Client& client, const Bytes& bytes) {
    if (m_holdsAnswers)
        client.unsent.insert(client.unsent.end(), bytes.begin(), bytes.end());
    else
        sendNow(client, bytes);
}

void StandInServer::sendNow(Client& client, const Bytes& bytes) {
    // Real servers send header and payload one by one.
    for (std::size_t at = 0; at < bytes.size() && client.fd >= 0;) {
        const std::size_t size = std::min(at == 0 ? kHeaderBytes : bytes.size(), bytes.size() - at);
        if (::send(client.fd, bytes.data() + at, size, MSG_NOSIGNAL) < 0) {
            m_complaints.push_back("an answer that nobody took");
            drop(client);
        }
        at += size;
    }
}

StandInServer::Device* StandInServer::find(const Client& client, std::uint32_t number) {
    for (std::size_t index = 0; index < m_devices.size(); ++index)
        if (number == (client.version >= 6 ? m_devices[index].id : index))
            return &m_devices[index];
    return nullptr;
}

} // namespace glimra::tests
