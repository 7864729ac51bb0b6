#pragma once

#include "platform/system_services.h"

namespace glimra::simulated {

// What would leave the machine ends here.

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
