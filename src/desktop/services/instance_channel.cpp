#include "desktop/services/instance_channel.h"

#include "desktop/services/bus.h"
#include "desktop/services/xdg_folders.h"

#include <QFile>

#include <array>
#include <utility>

namespace glimra::desktop {

namespace {

using Kind = InstanceCommand::Kind;

constexpr std::array<std::pair<Kind, std::string_view>, 3> kPlainCommands{{
    {Kind::BringToFront, "raise"},
    {Kind::Quit, "quit"},
    {Kind::TestPattern, "test-pattern"},
}};
constexpr std::string_view kProfileCommand = "profile ";

} // namespace

std::string toText(const InstanceCommand& command) {
    for (const auto& [kind, text] : kPlainCommands)
        if (command.kind == kind)
            return std::string(text);
    return std::string(kProfileCommand) + std::to_string(command.profile);
}

std::optional<InstanceCommand> commandFromText(std::string_view text) {
    for (const auto& [kind, plain] : kPlainCommands)
        if (text == plain)
            return InstanceCommand{kind};
    if (text.size() != kProfileCommand.size() + 1 || !text.starts_with(kProfileCommand) ||
        text.back() < '1' || text.back() > '9')
        return std::nullopt;
    return InstanceCommand{Kind::Profile, text.back() - '0'};
}

std::vector<std::unique_ptr<InstanceChannel>> instanceChannels(const QString& identity) {
    std::vector<std::unique_ptr<InstanceChannel>> channels;
    channels.push_back(makeBusChannel(sessionBusAddress(), identity));
    channels.push_back(makeSocketChannel(QFile::decodeName(socketFolder().c_str()), identity));
    return channels;
}

} // namespace glimra::desktop
