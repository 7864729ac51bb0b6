#include "desktop/services/instance_channel.h"

#include "desktop/services/bus.h"
#include "desktop/services/xdg_folders.h"

#include <QFile>

#include <algorithm>
#include <array>

namespace glimra::desktop {

namespace {

using Kind = InstanceCommand::Kind;

struct CommandRow {
    Kind kind;
    std::string_view name;
    /// The numbers that may follow; none where there is no greatest.
    int least = 0;
    int most = 0;
};
constexpr std::array<CommandRow, 11> kCommands{{
    {Kind::BringToFront, "raise"},
    {Kind::Quit, "quit"},
    {Kind::Status, "status", 0, 1},
    {Kind::Reload, "reload"},
    {Kind::TestPattern, "test-pattern"},
    {Kind::Reset, "reset"},
    {Kind::Calibrate, "calibrate"},
    {Kind::Debug, "debug"},
    {Kind::FastResponse, "fast-response", 0, 1},
    {Kind::EndStaleEffects, "end-stale-effects", 0, 1},
    {Kind::Profile, "profile", 1, 9},
}};

} // namespace

std::string toText(const InstanceCommand& command) {
    const auto row = std::ranges::find(kCommands, command.kind, &CommandRow::kind);
    return std::string(row->name) + (row->most > 0 ? " " + std::to_string(command.number) : "");
}

std::optional<InstanceCommand> commandFromText(std::string_view text) {
    // There are few of them, and each has one form.
    for (const CommandRow& row : kCommands)
        for (int number = row.least; number <= row.most; ++number)
            if (const InstanceCommand command{row.kind, number}; toText(command) == text)
                return command;
    return std::nullopt;
}

std::vector<std::unique_ptr<InstanceChannel>> instanceChannels(const QString& identity) {
    std::vector<std::unique_ptr<InstanceChannel>> channels;
    channels.push_back(makeBusChannel(sessionBusAddress(), identity));
    channels.push_back(makeSocketChannel(QFile::decodeName(socketFolder().c_str()), identity));
    return channels;
}

} // namespace glimra::desktop
