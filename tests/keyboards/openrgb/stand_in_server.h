#pragma once

#include "keyboards/openrgb/encoder.h"
#include "platform/locked.h"

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

namespace glimra::tests {

/// A port of 127.0.0.1 where nobody listens, as long as this program runs.
std::uint16_t closedPort();

/// An OpenRGB server for tests: speaks the protocol as the real ones do, on a port of the loopback interface
/// that the system chooses, with one client after the other. What a real server would choke on, it writes
/// down.
class StandInServer {
public:
    using Bytes = std::vector<std::uint8_t>;
    using Device = keyboards::openrgb::Controller;

    struct Options {
        /// The newest that it speaks; with 0 it gives no answer about versions.
        std::uint32_t version = 5;
        std::uint16_t port = 0;
        /// Is asked first, on the server's thread, with the client's socket: what to say in place of the
        /// answer to the request of this number, if anything.
        std::function<std::optional<Bytes>(std::uint32_t request, int client)> instead = nullptr;
    };

    StandInServer(std::vector<Device> devices, Options options);
    explicit StandInServer(std::vector<Device> devices) : StandInServer(std::move(devices), Options()) {}
    ~StandInServer();

    std::uint16_t port() const { return m_listener.second; }

    /// What a device's lights really do.
    struct Lights {
        std::string mode;
        std::vector<Rgb> colors;

        bool operator==(const Lights&) const = default;
    };
    Lights lights(const std::string& device) const;
    /// How often somebody has changed a device's mode or colours.
    int changes(const std::string& device) const;
    /// Another client, or the server's own window, does that.
    void changeMode(const std::string& device, std::int32_t mode);
    std::vector<std::string> complaints() const;
    /// All that the last client had sent has been served, and it has gone.
    bool isLeft() const;

    /// The list of devices becomes another one, as after a new search: clients get several notices.
    void setDevices(std::vector<Device> devices);

private:
    void run();
    void enter(int client);
    Bytes receive(std::size_t size);
    bool serveRequest();
    void serve(std::uint32_t number, std::uint32_t request, const Bytes& payload);
    void serveDevice(Device& device, std::uint32_t number, std::uint32_t request, const Bytes& payload);
    void update(Device& device, const Bytes& payload);
    void changeMode(Device& device, const Bytes& payload);
    void answer(std::uint32_t device, std::uint32_t id, const Bytes& payload);
    void send(const Bytes& bytes);
    void expect(bool isSo, const char* complaint);
    std::uint32_t numberOf(std::size_t index) const;

    const Options m_options;
    const std::pair<int, std::uint16_t> m_listener;

    platform::Locked<std::vector<std::string>> m_complaints;
    mutable std::mutex m_mutex;
    int m_client = -1;
    /// That was agreed with the client.
    std::uint32_t m_version = 0;
    std::vector<Device> m_devices;
    std::map<std::string, int> m_changes;
    std::thread m_thread;
};

} // namespace glimra::tests
