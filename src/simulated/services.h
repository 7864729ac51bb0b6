#pragma once

#include "platform/system_services.h"

namespace glimra::simulated {

// Services that do nothing, so that nothing leaves the simulated machine, and modifier keys set by the
// caller.

class NoChildProcesses final : public platform::ChildProcesses {
public:
    void start(const std::string&, const std::vector<std::string>&) override {}
};

class NoSounds final : public platform::Sounds {
public:
    void play(std::string_view) override {}
};

class NoActivity final : public platform::ProcessActivity {
public:
    void begin(std::string_view) override {}
    void end(std::string_view) override {}
};

class SimulatedModifiers final : public platform::Modifiers {
public:
    bool optionKeyIsDown() const override { return m_optionKeyIsDown; }
    void setOptionKeyIsDown(bool down) { m_optionKeyIsDown = down; }

private:
    bool m_optionKeyIsDown = false;
};

} // namespace glimra::simulated
