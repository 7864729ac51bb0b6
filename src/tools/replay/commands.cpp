#include "tools/replay/commands.h"

#include "profiles/color_archive.h"
#include "tools/replay/modal_setting.h"

#include <algorithm>
#include <array>
#include <limits>

namespace glimra::tools {

namespace {

constexpr platform::Duration kLongestWait = std::chrono::hours(24 * 30);
constexpr Range<double> kPoints{-1e6, 1e6};
constexpr Range<double> kLengths{0.01, 1e6};
constexpr Range<double> kDisplaySizes{1.0, 100'000.0};
constexpr Range<double> kScales{0.1, 16.0};
constexpr Range<double> kComponents{0.0, 1.0};
constexpr Range<int> kAnyInteger{std::numeric_limits<int>::min(), std::numeric_limits<int>::max()};
constexpr Range<int> kItems{0, 9999};

std::string inQuotes(std::string_view text) {
    return '"' + std::string(text) + '"';
}

/// Takes a word that is one of two, and tells whether it is the first.
bool firstOf(LineCursor& line, std::string_view first, std::string_view second) {
    const std::string what = inQuotes(first) + " or " + inQuotes(second);
    const std::string_view word = line.word(what);
    if (word != first && word != second)
        throw LineError(what + " is wanted, not " + inQuotes(word));
    return word == first;
}

platform::Color parseColor(LineCursor& line) {
    const double red = line.number("R", kComponents);
    const double green = line.number("G", kComponents);
    return {red, green, line.number("B", kComponents)};
}

Command parseDefault(LineCursor& line) {
    std::string key = line.string("KEY");
    return SetDefault{std::move(key), line.settingValue("VALUE")};
}

Command parseDefaultColor(LineCursor& line) {
    std::string key = line.string("KEY");
    return SetDefault{std::move(key), profiles::archiveColor(parseColor(line))};
}

Command parseDefaultData(LineCursor& line) {
    std::string key = line.string("KEY");
    return SetDefault{std::move(key), line.bytes("HEX")};
}

Command parseDisplay(LineCursor& line) {
    if (line.isAt('n')) {
        if (const std::string_view word = line.word("W"); word != "none")
            throw LineError("W H SCALE or \"none\" is wanted, not " + inQuotes(word));
        return DisconnectDisplay{};
    }
    const double width = line.number("W", kDisplaySizes);
    const double height = line.number("H", kDisplaySizes);
    return ConnectDisplay{width, height, line.number("SCALE", kScales)};
}

Command parseStripGeometry(LineCursor& line) {
    const double left = line.number("LEFT", kPoints);
    return SetStripGeometry{left, line.number("WIDTH", kLengths)};
}

Command parseStrip(LineCursor& line) {
    PaintStrip strip{};
    if (line.isAt('o')) {
        if (const std::string_view word = line.word("C0"); word != "off")
            throw LineError("C0 ... C10 or \"off\" is wanted, not " + inQuotes(word));
        return strip;
    }
    for (std::size_t i = 0; i < strip.frame.size(); ++i)
        strip.frame[i] = line.rgb("C" + std::to_string(i));
    return strip;
}

Command parseShow(LineCursor& line) {
    const auto token = screenlink::tokenOf(line.string("TOKEN"));
    if (!token)
        throw LineError("TOKEN is neither one character U+0000 to U+007F nor a prefix character and one "
                        "character U+0001 to U+007F");
    return ShowToken{*token};
}

Command parseToken(LineCursor& line) {
    return HandOverToken{line.string("TOKEN")};
}

Command parseWait(LineCursor& line) {
    return Wait{line.seconds("SECONDS", kLongestWait)};
}

Command parseFront(LineCursor& line) {
    if (line.isAt('n')) {
        if (const std::string_view word = line.word("BUNDLE-ID"); word != "none")
            throw LineError("\"BUNDLE-ID\" or none is wanted, not " + inQuotes(word));
        return SetFrontmost{};
    }
    std::string identifier = line.string("BUNDLE-ID");
    platform::RunningApplication application;
    if (!identifier.empty())
        application.bundleIdentifier = std::move(identifier);
    return SetFrontmost{application};
}

Command parseOptionKey(LineCursor& line) {
    return SetOptionKey{firstOf(line, "down", "up")};
}

Command parseAnswer(LineCursor& line) {
    QueueAnswer answer{line.integer("CODE", kAnyInteger), {}};
    while (!line.atEnd()) {
        ModalSetting setting{std::string(line.upTo('=', "NAME")), {}};
        if (line.isAt('"'))
            setting.value = line.string("VALUE");
        else
            setting.value = line.integer("VALUE", kItems);
        if (!isPossible(setting))
            throw LineError(inQuotes(setting.outlet) +
                            " is no text field for a string and no pop-up for an index");
        answer.settings.push_back(std::move(setting));
    }
    return answer;
}

Command parseAnswerPath(LineCursor& line) {
    return QueuePath{line.string("PATH")};
}

/// Takes what stands behind a selector, by the kind of its argument.
struct ArgumentParser {
    LineCursor& line;

    void operator()(std::monostate) const {}
    void operator()(bool& on) const { on = firstOf(line, "on", "off"); }
    void operator()(app::ItemIndex& item) const { item.index = line.integer("INDEX", kItems); }
    void operator()(app::ItemTitle& item) const { item.title = line.string("TITLE"); }
    void operator()(app::EnteredText& entered) const { entered.text = line.string("TEXT"); }
    void operator()(app::RadioTag& chosen) const { chosen.tag = line.integer("TAG", kAnyInteger); }
    void operator()(app::ButtonTag& clicked) const { clicked.tag = line.integer("TAG", kAnyInteger); }
    void operator()(app::WellColor& well) const {
        well.tag = line.integer("TAG", kAnyInteger);
        well.color = parseColor(line);
    }
    void operator()(app::CanvasPoint& point) const {
        point.x = line.number("X", kPoints);
        point.y = line.number("Y", kPoints);
    }
    void operator()(app::WindowName& window) const {
        window.name = line.string("WINDOW");
        if (!isWindow(window.name))
            throw LineError("no window is called " + inQuotes(window.name));
    }
};

Command parseAction(LineCursor& line) {
    const std::string selector = line.string("SELECTOR");
    const app::ActionRow* action = app::findAction(selector);
    if (!action)
        throw LineError("not available: the application has no action " + inQuotes(selector));
    PerformAction command{action, action->call.takes};
    std::visit(ArgumentParser{line}, command.argument);
    return command;
}

struct DumpName {
    std::string_view name;
    DumpKind kind;
};

constexpr std::array<DumpName, 5> kDumps{{{"state", DumpKind::State},
                                          {"defaults", DumpKind::Defaults},
                                          {"log", DumpKind::Log},
                                          {"controls", DumpKind::Controls},
                                          {"bitmap", DumpKind::Bitmap}}};

Command parseDump(LineCursor& line) {
    const std::string_view word = line.word("WHAT");
    const auto* known = std::ranges::find(kDumps, word, &DumpName::name);
    if (known == kDumps.end())
        throw LineError("not available: nothing to dump is called " + inQuotes(word));
    Dump dump{known->kind, 0, std::string(word)};
    if (dump.kind == DumpKind::Bitmap) {
        dump.profile = static_cast<std::size_t>(line.integer("P", {0, lighting::kProfileCount}));
        dump.what += ' ' + std::to_string(dump.profile);
    }
    return dump;
}

struct CommandName {
    std::string_view name;
    Command (*parse)(LineCursor& line);
};

constexpr std::array<CommandName, 19> kCommands{{
    {"default", parseDefault},
    {"default-color", parseDefaultColor},
    {"default-data", parseDefaultData},
    {"display", parseDisplay},
    {"strip-geometry", parseStripGeometry},
    {"strip", parseStrip},
    {"show", parseShow},
    {"token", parseToken},
    {"start", [](LineCursor&) -> Command { return Start{}; }},
    {"wait", parseWait},
    {"front", parseFront},
    {"sleep", [](LineCursor&) -> Command { return PowerEvent::Sleep; }},
    {"wake", [](LineCursor&) -> Command { return PowerEvent::Wake; }},
    {"option-key", parseOptionKey},
    {"answer", parseAnswer},
    {"answer-path", parseAnswerPath},
    {"action", parseAction},
    {"quit", [](LineCursor&) -> Command { return Quit{}; }},
    {"dump", parseDump},
}};

} // namespace

Command parseCommand(std::string_view text) {
    LineCursor line(text);
    const std::string_view name = line.word("command");
    const auto* known = std::ranges::find(kCommands, name, &CommandName::name);
    if (known == kCommands.end())
        throw LineError("unknown command " + inQuotes(name));
    Command command = known->parse(line);
    line.expectEnd();
    return command;
}

} // namespace glimra::tools
