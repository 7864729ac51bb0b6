#pragma once

#include "keyboards/device/wake_event.h"
#include "keyboards/openrgb/encoder.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace glimra::tests {

/// A port of 127.0.0.1 where nobody listens, as long as this object is there.
class ClosedPort {
public:
    ClosedPort();
    ~ClosedPort();
    ClosedPort(const ClosedPort&) = delete;
    ClosedPort& operator=(const ClosedPort&) = delete;

    std::uint16_t number() const { return m_number; }

private:
    int m_socket;
    std::uint16_t m_number = 0;
};

/// An OpenRGB server for tests: speaks the protocol as the real ones do, with their peculiarities, on a port
/// of the loopback interface that the system chooses. What a real server would choke on, it writes down.
class StandInServer {
public:
    using Bytes = std::vector<std::uint8_t>;

    struct Options {
        /// The newest that it speaks; with 0 it gives no answer about versions.
        std::uint32_t version = 5;
        std::uint16_t port = 0;
        /// Says something else in place of an answer.
        std::function<std::optional<Bytes>(std::uint32_t requestId)> tamper = nullptr;
    };

    StandInServer(std::vector<ServerDevice> devices, Options options);
    explicit StandInServer(std::vector<ServerDevice> devices)
        : StandInServer(std::move(devices), Options()) {}
    ~StandInServer();

    std::uint16_t port() const { return m_port; }

    /// What a device's lights really do.
    struct Lights {
        std::string mode;
        std::vector<Rgb> colors;
        std::size_t frames = 0;
    };
    Lights lights(const std::string& device) const;
    std::vector<std::string> complaints() const;
    /// A client will send nothing more but waits for its answers.
    bool clientSaidGoodbye() const;
    /// Requests that have come, by their ids.
    std::vector<std::uint32_t> requests() const;

    /// True as soon as `isSo` is, false when it is not within some seconds.
    bool waitUntil(const std::function<bool()>& isSo) const;
    bool waitForClients(std::size_t count) const;

    /// The list of devices becomes another one, as after a new search: clients get several notices.
    void setDevices(std::vector<ServerDevice> devices);
    void sendToAll(const Bytes& bytes);
    /// While it does, requests are read but not answered.
    void holdAnswers(bool hold);
    /// No longer reads what clients send.
    void stopReading();

private:
    struct Device {
        ServerDevice description;
        std::uint32_t id = 0;
        Lights lights;
        std::vector<Rgb> stored;
    };
    struct Client {
        int fd = -1;
        std::uint32_t version = 0;
        Bytes received;
        Bytes unsent;
        bool saidGoodbye = false;
    };
    struct Request {
        std::uint32_t device = 0;
        std::uint32_t id = 0;
        Bytes payload;
    };

    void run();
    bool isRead(const Client& client) const;
    void accept();
    void read(Client& client);
    std::optional<Request> takeRequest(Client& client);
    void serve(Client& client, const Request& request);
    void negotiate(Client& client, const Request& request);
    void describe(Client& client, const Request& request);
    void update(Client& client, const Request& request);
    void changeMode(Client& client, const Request& request);
    void answer(Client& client, std::uint32_t device, std::uint32_t id, const Bytes& payload);
    void acknowledge(Client& client, const Request& request, std::uint32_t status);
    void send(Client& client, const Bytes& bytes);
    void sendNow(Client& client, const Bytes& bytes);
    void drop(Client& client);
    Device* find(const Client& client, std::uint32_t number);
    void install(std::vector<ServerDevice> devices);

    Options m_options;
    int m_listener = -1;
    std::uint16_t m_port = 0;
    keyboards::WakeEvent m_wake;

    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    bool m_quits = false;
    bool m_isReading = true;
    bool m_holdsAnswers = false;
    bool m_wasRescanned = false;
    std::uint32_t m_nextId = 0;
    std::vector<Device> m_devices;
    std::vector<Client> m_clients;
    std::vector<std::string> m_complaints;
    std::vector<std::uint32_t> m_requests;
    std::thread m_thread;
};

} // namespace glimra::tests
