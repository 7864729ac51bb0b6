#pragma once

#include "platform/system_services.h"

#include <utility>

namespace glimra::simulated {

// What would leave the machine is kept instead, in the order in which it came.

struct StartedProcess {
    std::string path;
    std::vector<std::string> arguments;

    friend bool operator==(const StartedProcess&, const StartedProcess&) = default;
};

class RecordingChildProcesses final : public platform::ChildProcesses {
public:
    void start(const std::string& path, const std::vector<std::string>& arguments) override {
        m_started.push_back({path, arguments});
    }
    const std::vector<StartedProcess>& started() const { return m_started; }

private:
    std::vector<StartedProcess> m_started;
};

class RecordingSounds final : public platform::Sounds {
public:
    void play(std::string_view name) override { m_played.emplace_back(name); }
    const std::vector<std::string>& played() const { return m_played; }

private:
    std::vector<std::string> m_played;
};

class RecordingSystemLog final : public platform::SystemLog {
public:
    void write(std::string_view line) override { m_lines.emplace_back(line); }
    const std::vector<std::string>& lines() const { return m_lines; }

private:
    std::vector<std::string> m_lines;
};

class SimulatedActivity final : public platform::ProcessActivity {
public:
    void begin(std::string_view) override { m_active = true; }
    void end(std::string_view) override { m_active = false; }
    bool isActive() const { return m_active; }

private:
    bool m_active = false;
};

class SimulatedModifiers final : public platform::Modifiers {
public:
    bool optionKeyIsDown() const override { return m_optionKeyIsDown; }
    void setOptionKeyIsDown(bool down) { m_optionKeyIsDown = down; }

private:
    bool m_optionKeyIsDown = false;
};

} // namespace glimra::simulated
