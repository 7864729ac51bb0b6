#include "tools/replay/film_output.h"
#include "tools/replay/replay_run.h"
#include "tools/replay/terminal_keyboard.h"

#include <CLI/CLI.hpp>

#include <fstream>
#include <iostream>

namespace {

using namespace glimra;

constexpr int kFailed = 1;
constexpr int kNotUnderstood = 2;

struct CommandLine {
    std::string script;
    tools::ReplayRun::Options run;
    bool drawKeyboard = false;
    /// Where the film goes; empty for none.
    std::string film;
};

/// Throws CLI::Error.
CommandLine parseCommandLine(CLI::App& app, int argc, char** argv) {
    CommandLine line;
    std::vector<std::string> kinds;
    app.add_option("--seed", line.run.seed, "Seed of all that is random")->type_name("N");
    app.add_option("--only", kinds, "Print these kinds of line only")
        ->type_name("KIND[,KIND...]")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check([](const std::string& name) {
            return trace::traceKindNamed(name) ? std::string() : "no kind of line is called " + name;
        });
    app.set_version_flag("--version", GLIMRA_VERSION);
    app.add_flag("--keyboard", line.drawKeyboard, "Draw the keyboard as it is at the end");
    app.add_option("--film", line.film, "Write a picture of the keyboard for each change, or an animated one")
        ->type_name("DIR|FILE.gif");
    app.add_option("SCRIPT", line.script, "What happens outside the application; - is standard input")
        ->required();
    app.parse(argc, argv);
    if (!kinds.empty()) {
        line.run.kinds = {};
        for (const std::string& name : kinds)
            line.run.kinds.add(*trace::traceKindNamed(name));
    }
    return line;
}

std::variant<tools::Script, tools::ScriptError> readScriptFrom(const std::string& path) {
    if (path == "-")
        return tools::readScript(std::cin);
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return tools::ScriptError{1, "the script can't be read"};
    auto script = tools::readScript(file);
    if (file.bad())
        return tools::ScriptError{1, "the script can't be read"};
    return script;
}

void runFilmed(tools::ReplayRun& run, const tools::Script& script, const std::string& path) {
    const std::unique_ptr<tools::FilmOutput> output = tools::openFilm(path);
    tools::Film film([&output](const keyboards::KeyColors& colors, platform::Time begin, platform::Time end) {
        output->show(colors, begin, end);
    });
    run.keyboard().changed().observe([&] { film.change(run.keyboard().model(), run.now()); });
    run.run(script);
    film.end(run.now());
    output->finish();
}

int replay(const CommandLine& line) {
    const auto script = readScriptFrom(line.script);
    if (const auto* error = std::get_if<tools::ScriptError>(&script)) {
        std::cerr << line.script << ':' << error->line << ": " << error->message << '\n';
        return kNotUnderstood;
    }
    tools::ReplayRun run(line.run, [](std::string_view text) { std::cout << text; });
    if (line.film.empty())
        run.run(std::get<tools::Script>(script));
    else
        runFilmed(run, std::get<tools::Script>(script), line.film);
    if (line.drawKeyboard)
        std::cout << tools::drawOnTerminal(run.keyboard().model().colorsAt(run.now()));
    if (!std::cout.flush()) {
        std::cerr << "glimra-replay: the output can't be written\n";
        return kFailed;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    CLI::App app(
        "Runs the whole application on a simulated machine, as a script tells, and prints what leaves it",
        "glimra-replay");
    try {
        return replay(parseCommandLine(app, argc, argv));
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : kNotUnderstood;
    } catch (const std::exception& error) {
        std::cerr << "glimra-replay: " << error.what() << '\n';
        return kFailed;
    }
}
