// The real program, as a user or a script starts it.

#include "keyboards/openrgb/stand_in_server.h"
#include "support/folder.h"
#include "support/shell.h"
#include "support/x_server.h"
#include "tools/strip/strip_painter.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>

namespace glimra {
namespace {

using glimra::tests::ChildProcess;
using glimra::tests::contentOf;
using glimra::tests::eventually;
using glimra::tests::Outcome;
using glimra::tests::XvfbServer;
using nlohmann::json;
using ::testing::AllOf;
using ::testing::HasSubstr;

class ProgramTest : public ::testing::Test {
protected:
    std::string file(const char* name) const { return (m_folder / name).string(); }
    /// Of the doctor's report: health by check.
    static std::map<std::string, std::string> healths(const json& report) {
        std::map<std::string, std::string> healths;
        for (const json& check : report["checks"])
            healths[check["check"]] = check["health"];
        return healths;
    }

    /// What the doctor would try if it were not told otherwise.
    const std::string m_noKeyboard =
        "--sdk /dev/null --openrgb 127.0.0.1:" + std::to_string(tests::closedPort()) + " ";
    const std::filesystem::path m_folder = tests::newFolder();
    const std::string m_onAnyBus = "XDG_RUNTIME_DIR=" + m_folder.string() +
                                   " QT_QPA_PLATFORM=offscreen " GLIMRA_PROGRAM " --settings " +
                                   file("settings.ini") + " ";
    const std::string m_program = "DBUS_SESSION_BUS_ADDRESS= " + m_onAnyBus;
};

TEST_F(ProgramTest, TheDoctorTellsWhatWorksAndWhatDoesNot) {
    const Outcome blind = tests::runShell(m_program + m_noKeyboard + "doctor --json");
    EXPECT_EQ(blind.status, 1);
    const json nothing = json::parse(blind.output);
    EXPECT_EQ(nothing["works"], false);
    EXPECT_EQ(healths(nothing)["capture"], "bad");
    EXPECT_EQ(healths(nothing)["keyboard-virtual"], "good");

    XvfbServer server;
    tools::StripPainter strip(server.display(), {});
    strip.paint(screenlink::encodeToken({std::nullopt, 'C'}).announce);
    tests::StandInServer openRgb({tests::smallKeyboard()});
    std::ofstream(file("settings.ini.1"))
        << "[General]\nscanOffset=2\nscanWidth=80.0\n\n[zz]\ncomplete=true\n";
    std::ofstream(file("settings.ini")) << "[General]\nscribble\n";
    const Outcome seeing = tests::runShell(
        m_program + "--display " + server.display() +
        " --sdk " FAKE_SDK " --openrgb 127.0.0.1:" + std::to_string(openRgb.port()) + " doctor --json");
    EXPECT_EQ(seeing.status, 0);
    const json report = json::parse(seeing.output);
    auto found = healths(report);
    for (const char* check : {"capture", "display", "strip", "keyboard-sdk", "keyboard-openrgb", "keyboard"})
        EXPECT_EQ(found[check], "good") << check;
    EXPECT_EQ(found["settings"], "limited");
    EXPECT_THAT(seeing.output, HasSubstr(R"("taken": "sdk")"));

    server.process().signal(SIGSTOP);
    const Outcome hung = tests::runShell("timeout 20 env " + m_program + m_noKeyboard + "--display " +
                                         server.display() + " doctor");
    server.process().signal(SIGCONT);
    EXPECT_EQ(hung.status, 1);
    EXPECT_THAT(hung.output, HasSubstr("does not answer"));

    const Outcome words =
        tests::runShell(m_program + m_noKeyboard + "--display " + server.display() + " doctor");
    EXPECT_EQ(words.status, 0);
    EXPECT_THAT(words.output, HasSubstr("microseconds"));
    EXPECT_THAT(words.output, HasSubstr("Glimra can work here."));
}

TEST_F(ProgramTest, TheAddonIsInstalledAndTheDoctorTellsHowItStands) {
    const std::string program =
        "HOME=" + m_folder.string() + " XDG_DATA_HOME= XDG_DATA_DIRS=/nowhere " + m_program;
    const Outcome lost = tests::runShell(program + "--install-addon 2>&1");
    EXPECT_EQ(lost.status, 1);
    EXPECT_THAT(lost.output, AllOf(HasSubstr("~/.wine"), HasSubstr("--install-addon FOLDER")));

    const std::filesystem::path game = m_folder / ".wine/drive_c/Program Files (x86)/World of Warcraft";
    std::filesystem::create_directories(game / "_retail_/WTF");
    const std::filesystem::path old = game / "_classic_/Interface/AddOns/Glimraxmit";
    std::filesystem::create_directories(old);
    std::ofstream(old / "Glimraxmit.toc") << "## Version: 0.0.9\n";
    const auto states = [&] {
        std::string text;
        const std::string output = tests::runShell(program + m_noKeyboard + "doctor --json").output;
        EXPECT_THAT(output, AllOf(HasSubstr("(~/.wine"), ::testing::Not(HasSubstr(m_folder.string()))));
        const json report = json::parse(output);
        for (const json& check : report["checks"])
            if (check["check"] == "addon")
                text += check["details"].value("state", "") + " " + check["health"].get<std::string>() + "; ";
        return text;
    };
    EXPECT_EQ(states(), "missing limited; older limited; ");
    const std::string version = tests::runShell(program + "--version").output.substr(std::strlen("glimra "));
    const Outcome done = tests::runShell(program + "--install-addon");
    EXPECT_EQ(done.status, 0);
    EXPECT_EQ(done.output, (game / "_retail_: installed ").string() + version +
                               (game / "_classic_: replaced 0.0.9 by ").string() + version);
    EXPECT_EQ(states(), "current good; current good; ");

    const Outcome wrong = tests::runShell(program + "--install-addon /usr 2>&1");
    EXPECT_EQ(wrong.status, 1);
    EXPECT_THAT(wrong.output, HasSubstr("\"/usr\" is no folder of World of Warcraft"));
}

TEST_F(ProgramTest, SettingsAreFoundInAHomeWhoseNameIsNoText) {
    const std::filesystem::path home = m_folder / "h\xFF";
    std::filesystem::create_directories(home / ".config/glimra");
    std::ofstream(home / ".config/glimra/glimra.ini") << "[General]\nledDriver=text:virtual\n";
    const Outcome doctor = tests::runShell(
        "HOME='" + home.string() + "' XDG_CONFIG_HOME= DBUS_SESSION_BUS_ADDRESS= " + GLIMRA_PROGRAM " " +
        m_noKeyboard + "doctor");
    EXPECT_THAT(doctor.output, HasSubstr("The driver is virtual."));
}

TEST_F(ProgramTest, WhateverEndsItTheKeyboardIsHandedBack) {
    using End = std::function<void(XvfbServer&, const ChildProcess&)>;
    const auto signal = [](int number) {
        return [number](XvfbServer&, const ChildProcess& program) { program.signal(number); };
    };
    const std::vector<std::pair<int, End>> ends{
        {0, signal(SIGTERM)},
        {0, signal(SIGHUP)},
        {1, [](XvfbServer& server, const ChildProcess&) { server.kill(); }},
        {0,
         [](XvfbServer& server, const ChildProcess&) {
             const std::string user = "DISPLAY=" + server.display() + " timeout 20 xdotool ";
             tests::runShell(user +
                             "search --sync --onlyvisible --name '^Glimra$' windowfocus --sync key ctrl+q");
         }},
    };
    for (const auto& [status, end] : ends) {
        XvfbServer server;
        // As a session manager starts it again.
        ChildProcess program("env",
                             {"env", "-u", "QT_QPA_PLATFORM", "DBUS_SESSION_BUS_ADDRESS=", GLIMRA_PROGRAM,
                              "-session", "glimra_1", "--keyboard", "virtual", "--settings",
                              file("settings.ini"), "--trace", file("trace")},
                             server.display());
        ASSERT_TRUE(
            eventually([&] { return contentOf(file("trace")).find("mainWindow") != std::string::npos; }));
        end(server, program);
        EXPECT_EQ(program.wait(), status);
        const std::string trace = contentOf(file("trace"));
        std::vector<std::string> last;
        std::istringstream lines(trace);
        for (std::string line; std::getline(lines, line);)
            last.push_back(json::parse(line)["kind"]);
        EXPECT_THAT(std::vector(last.end() - 4, last.end()),
                    ::testing::ElementsAre("activity", "frame", "led", "quit"))
            << trace;
        EXPECT_THAT(contentOf(file("settings.ini")), HasSubstr("windowPosition"));
        std::filesystem::remove(file("trace"));
        std::filesystem::remove(file("settings.ini"));
    }
}

TEST_F(ProgramTest, WithoutAWindowItLightsTellsTakesChangedSettingsAndMakesRoom) {
    const XvfbServer server;
    const auto start = [&](const std::string& arguments) {
        return std::make_unique<ChildProcess>(
            "sh", std::vector<std::string>{"sh", "-c",
                                           "exec env " + m_program + "--keyboard virtual --display " +
                                               server.display() + " " + arguments});
    };
    const auto status = [&] {
        const Outcome told = tests::runShell(m_program + "--status --json 2>/dev/null");
        return told.status == 0 ? json::parse(told.output) : json::object();
    };
    EXPECT_EQ(tests::runShell("env -u DISPLAY " + m_program + "--no-window").status, 1) << "nothing to read";
    std::ofstream(file("settings.ini")) << "[General]\nuseCombatChatWarning=true\n\n[zz]\ncomplete=true\n";
    const auto service = start("--no-window");
    tools::StripPainter strip(server.display(), {});
    const screenlink::TokenFrames combat = screenlink::encodeToken({std::nullopt, 'C'});
    ASSERT_TRUE(eventually([&] {
        for (const screenlink::StripFrame& frame : {combat.announce, combat.confirm, {}}) {
            strip.paint(frame);
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
        }
        return status().value("light", "") == "combat";
    }));
    EXPECT_EQ(status().value("window", true), false);
    EXPECT_EQ(status().at("strip").at("state"), "good");

    const std::string before = contentOf(file("settings.ini"));
    for (const auto& [added, isTaken] :
         {std::pair("fastResponse=true\nprofileName1=text:Raid\n", true), std::pair("scribble\n", false)}) {
        std::ofstream(file("settings.ini"))
            << before.substr(0, before.find('\n') + 1) << added << before.substr(before.find('\n') + 1);
        EXPECT_EQ(tests::runShell(m_program + "--reload 2>/dev/null").status, isTaken ? 0 : 1);
        EXPECT_EQ(status()["fastResponse"], true);
    }
    EXPECT_THAT(tests::runShell(m_program + "--status").output, HasSubstr("Profile 1 Raid · In combat"));
    tests::runShell(m_program + "--fast-response off");
    EXPECT_TRUE(eventually([&] { return status()["fastResponse"] == false; }));

    const auto windows = start("");
    EXPECT_EQ(service->wait(), 0);
    EXPECT_TRUE(eventually([&] { return status().value("window", false); }));
    windows->signal(SIGTERM);
    EXPECT_EQ(windows->wait(), 0);
}

TEST_F(ProgramTest, OneRunsTheOthersTellItAndItsRecordingReplays) {
    const XvfbServer server;
    const std::string arguments = "--keyboard virtual --display " + server.display() + " --log --trace " +
                                  file("trace") + " --record " + file("record");
    ChildProcess first("sh",
                       {"sh", "-c", "exec env " + m_program + arguments + " >" + file("log") + " 2>&1"});
    ASSERT_TRUE(eventually([&] { return contentOf(file("log")).find("initialized") != std::string::npos; }));
    const std::string process = "/proc/" + std::to_string(first.pid());
    EXPECT_EQ(tests::runShell("for socket in $(ls -l " + process +
                              "/fd | sed -n 's/.*socket:.\\([0-9]*\\).*/\\1/p'); do"
                              " grep -h \" $socket \" " +
                              process + "/net/tcp* " + process + "/net/udp*; done")
                  .output,
              "")
        << "no port is open";
    EXPECT_EQ(tests::runShell(m_program + "2>&1").status, 0) << "a second start";
    EXPECT_THAT(tests::runShell("dbus-run-session -- env " + m_onAnyBus + "2>&1").output,
                HasSubstr("running already"))
        << "one that sees a bus";

    tools::StripPainter strip(server.display(), {});
    const auto pulses = [&](const std::string& trace) {
        std::size_t count = 0;
        for (std::size_t at = trace.find("PulseSingleKey"); at != std::string::npos;
             at = trace.find("PulseSingleKey", at + 1))
            ++count;
        return count;
    };
    const screenlink::TokenFrames combat = screenlink::encodeToken({std::nullopt, 'C'});
    ASSERT_TRUE(eventually([&] {
        for (const screenlink::StripFrame& frame : {combat.announce, combat.confirm}) {
            strip.paint(frame);
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
        }
        strip.paint({});
        return pulses(contentOf(file("trace"))) > 0;
    }));
    EXPECT_EQ(tests::runShell(m_program + "--profile 4").status, 0);
    EXPECT_EQ(tests::runShell(m_program + "--test-pattern").status, 0);
    ASSERT_TRUE(eventually([&] { return contentOf(file("log")).find("test pattern") != std::string::npos; }));
    // Long after the fight has begun, so that no tick of a timer more or less changes what the script does.
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    EXPECT_EQ(tests::runShell(m_program + "--quit").status, 0);
    first.wait();
    EXPECT_EQ(tests::runShell(m_program + "--quit 2>&1").status, 1);

    const std::string trace = contentOf(file("trace"));
    EXPECT_THAT(trace, ::testing::EndsWith("\"kind\":\"quit\"}\n"));
    const std::string script = contentOf(file("record"));
    EXPECT_THAT(script, HasSubstr("token \"4\"\n"));
    EXPECT_THAT(script, HasSubstr("action \"testLightsMI:\"\n"));
    const Outcome replayed = tests::runShell(REPLAY_PROGRAM " " + file("record"));
    EXPECT_EQ(replayed.status, 0) << replayed.output;
    EXPECT_EQ(pulses(replayed.output), pulses(trace)) << script;
}

} // namespace
} // namespace glimra
