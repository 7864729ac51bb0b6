#include "desktop/settings/settings_copy.h"
#include "desktop/settings/settings_file.h"
#include "desktop/settings/stored_value_text.h"
#include "support/eventually.h"
#include "support/folder.h"
#include "support/system_lines.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

#include <array>
#include <limits>

#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace glimra::desktop {
namespace {

using platform::Data;
using platform::NumberArray;
using platform::StoredValue;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::VariantWith;
using Values = std::map<std::string, StoredValue, std::less<>>;

class SettingsTest : public testing::Test {
protected:
    /// Of the settings, or of a file beside them.
    std::string path(const std::string& suffix = {}) const {
        return m_folder.filePath("new/folder/settings.ini").toStdString() + suffix;
    }
    SettingsFile open() { return {QString::fromStdString(path()), m_log}; }
    /// Runs of the program that set a value.
    void startWith(std::initializer_list<std::int64_t> values) {
        for (const std::int64_t value : values)
            open().set("start", value);
    }
    std::optional<StoredValue> start() { return open().get("start"); }
    void write(const std::string& content, const std::string& suffix = {}) {
        std::filesystem::create_directories(std::filesystem::path(path()).parent_path());
        std::ofstream(path(suffix), std::ios::binary) << content;
    }
    std::string content(const std::string& suffix = {}) const { return tests::contentOf(path(suffix)); }
    std::array<std::string, 5> copies() const {
        return {content(".0"), content(".1"), content(".2"), content(".3"), content(".4")};
    }

    /// In memory where there is such a place: some hundred saves are waited for, each until it is on the
    /// disk.
    QTemporaryDir m_folder{(QFileInfo("/dev/shm").isWritable() ? QString("/dev/shm") : QDir::tempPath()) +
                           "/glimra-settings-XXXXXX"};
    tests::SystemLines m_log;
};

TEST_F(SettingsTest, EveryValueComesBackAsItWasStored) {
    const double pi = 3.141592653589793;
    const Values values{
        {"on", true},
        {"off", false},
        {"zero", std::int64_t{0}},
        {"least", std::numeric_limits<std::int64_t>::min()},
        {"whole double", 5.0},
        {"third", 1.0 / 3.0},
        {"negative zero", -0.0},
        {"smallest", std::numeric_limits<double>::denorm_min()},
        {"infinite", -std::numeric_limits<double>::infinity()},
        {"empty text", std::string()},
        {"name", std::string("Battle.net; \"B\", \\ = [x] % 日本 \U0001F5B1\n\ttrue ")},
        {"looks like a number", std::string("12")},
        {"looks like Qt's", std::string("@Invalid()")},
        {"key with = and / and ü % \U0001F5B1", std::string("x")},
        {"General/key", std::string("\x7F"
                                    "1\x01"
                                    "f\0",
                                    5)},
        {"map", NumberArray{std::int64_t{4}, -2.5, 3.0, pi, std::int64_t{-1}}},
        {"empty map", NumberArray{}},
        {"colour", Data{'1', ' ', '0', '.', '5', ',', '"'}},
        {"bytes", Data{0x00, 0xFF, 0x0A, 0x80}},
        {"no bytes", Data{}},
    };
    {
        SettingsFile settings = open();
        for (const auto& [key, value] : values)
            settings.set(key, value);
        EXPECT_EQ(settings.all(), values) << "before it is written, too";
    }
    const SettingsFile settings = open();
    EXPECT_EQ(settings.all(), values);
    EXPECT_TRUE(std::signbit(std::get<double>(*settings.get("negative zero"))));
    EXPECT_EQ(settings.get("missing"), std::nullopt);
    // As former versions stored them.
    std::filesystem::remove(path());
    {
        QSettings former(QString::fromStdString(path()), QSettings::IniFormat);
        for (const auto& [key, value] : values)
            former.setValue(QString::fromStdString(key), QString::fromStdString(toText(value)));
        former.setValue(kEndMark, "true");
    }
    EXPECT_EQ(open().all(), values);
    EXPECT_THAT(m_log.lines, IsEmpty());
}

TEST_F(SettingsTest, AChangeReachesTheDiskWhenTheEventLoopComesRound) {
    SettingsFile settings = open();
    for (const char* const width : {"80.5", "81.25"}) {
        settings.set("scanWidth", std::stod(width));
        QCoreApplication::processEvents();
        EXPECT_THAT(content(), HasSubstr(std::string("scanWidth=") + width + "\n"));
    }
    EXPECT_THAT(content(), HasSubstr("complete=true\n"));
}

TEST_F(SettingsTest, DamagedValuesCountAsAbsentAndAreSaidOnce) {
    // What hands, other programs and broken disks leave behind: each on its own is no value.
    const std::vector<std::string> damaged{
        "",          "tru",           "1.5.5",  "0x10",     "99999999999999999999",
        "1e999",     "- 5",           "+5",     "[1 2",     "1 2]",
        "[one two]", "hex:0g",        "hex:g0", "hex:0",    "HEX:00",
        "text",      "@ByteArray(x)", "1, 2",   "\"\\x0\"", "@Variant(\\0\\0\\0\\x7f\\0\\0\\0)"};
    std::string lines = "[General]\ngood=7\nlist=[4 fuenf  6 99999999999999999999 -1 7,5]\n";
    for (std::size_t i = 0; i < damaged.size(); ++i)
        lines += "bad" + std::to_string(i) + "=" + damaged[i] + "\n";
    write(lines);

    const SettingsFile settings = open();
    for (int round = 0; round < 2; ++round)
        for (std::size_t i = 0; i < damaged.size(); ++i)
            EXPECT_EQ(settings.get("bad" + std::to_string(i)), std::nullopt) << damaged[i];
    EXPECT_EQ(settings.all().size(), 2U);
    EXPECT_EQ(settings.get("good"), StoredValue{std::int64_t{7}});
    EXPECT_EQ(m_log.lines.size(), damaged.size());
    EXPECT_THAT(m_log.lines.front(), HasSubstr("\"bad0\""));
    // An array loses its damaged elements only.
    using Element = testing::Matcher<const platform::Number&>;
    const Element none = VariantWith<double>(testing::IsNan());
    const auto whole = [](std::int64_t value) -> Element { return VariantWith<std::int64_t>(value); };
    EXPECT_THAT(std::get<NumberArray>(settings.get("list").value()),
                ElementsAre(whole(4), none, whole(6), none, whole(-1), none));
}

TEST_F(SettingsTest, WhatQtCanStoreBesidesTextIsNotTakenApart) {
    // Lists within lists, for which a reader of Qt's would run out of stack.
    std::string nested;
    for (int depth = 0; depth < 40'000; ++depth)
        nested += R"(\0\0\0\t\0\0\0\x1)";
    for (const char* const line : {"bad=@Variant(", "[other]\nbad=\\x40Variant("}) {
        write("[General]\ngood=7\n" + (line + nested) + ")\n\n[zz]\ncomplete=true\n");
        EXPECT_EQ(open().all().size(), 1U);
    }
}

TEST_F(SettingsTest, AFileWithoutCopiesIsUsedAsFarAsItGoesAndKeptWhole) {
    // By somebody's hand, or from before there were copies.
    const std::string handmade = "; mine\n[General]\ngood=7\n";
    write(handmade);
    EXPECT_EQ(open().get("good"), StoredValue{std::int64_t{7}});
    EXPECT_THAT(m_log.lines, IsEmpty());
    EXPECT_EQ(content(".1"), "");

    const std::string damaged = "[General\ngood=7\n\x01\xFF no line of settings\nother=true\n";
    write(damaged);
    open().set("new", std::int64_t{1});
    EXPECT_EQ(content(".damaged"), damaged);
    EXPECT_THAT(m_log.lines, ElementsAre(HasSubstr("is kept as " + path(".damaged"))));
    EXPECT_EQ(open().get("new"), StoredValue{std::int64_t{1}});
}

TEST_F(SettingsTest, TheNewestGoodCopyStandsInForADamagedFile) {
    startWith({1, 20, 300, 4000, 50'000});
    open(); // changes nothing, so nothing is kept once more
    const std::string good = content();
    EXPECT_THAT(copies(), ElementsAre("", good, HasSubstr("start=4000\n"), HasSubstr("start=300\n"), ""));
    EXPECT_THAT(m_log.lines, IsEmpty());

    // Too big, cut off, emptied, full of zeros, or scribbled over.
    for (const std::string& damage :
         {good + std::string(kMostSettingsBytes, '\n'), good.substr(0, good.size() - 12), std::string(),
          std::string(good.size(), '\0'), "[General]\nstart\n" + good}) {
        m_log.lines.clear();
        write(damage);
        const SettingsCopy look(QString::fromStdString(path()));
        EXPECT_TRUE(look.isMended() && look.hasBackup());
        EXPECT_EQ(look.values().get("start"), StoredValue{std::int64_t{50'000}});
        EXPECT_TRUE(content() == damage) << "who only looks changes nothing";
        EXPECT_EQ(start(), StoredValue{std::int64_t{50'000}});
        EXPECT_THAT(m_log.lines, ElementsAre(HasSubstr("are used in its place")));
    }
    EXPECT_THAT(content(".damaged-5"), testing::StartsWith("[General]\nstart\n"));
    // The newer copies may be bad, too.
    write("", ".1");
    write("[General]\ncomplete", ".2");
    write("nonsense");
    EXPECT_TRUE(SettingsCopy(QString::fromStdString(path())).hasBackup());
    EXPECT_EQ(start(), StoredValue{std::int64_t{300}});
}

TEST_F(SettingsTest, ARunHasItsCopyFromTheStartOnAndFillsAGap) {
    startWith({1, 20, 300});
    const auto before = copies();
    std::filesystem::remove(path(".1"));
    const SettingsFile running = open();
    EXPECT_EQ(copies(), before);
}

TEST_F(SettingsTest, WhereNothingFitsOnTheDiskTheOldCopiesStay) {
    startWith({1, 20, 300, 4000});
    const auto before = copies();
    write("[General]\nfilling=" + std::string(2000, 'x') + "\n\n[zz]\ncomplete=true\n");

    // Every write beyond that fails, as on a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small{1000, limit.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    for (int run = 0; run < 3; ++run)
        open();
    startWith({5});
    setrlimit(RLIMIT_FSIZE, &limit);
    EXPECT_EQ(copies(), before);
    EXPECT_THAT(m_log.lines, ElementsAre(HasSubstr("can't write")));
    EXPECT_THAT(content(), HasSubstr("filling=xxx")) << "and so does the file";
}

TEST_F(SettingsTest, AKillAtAnyMomentLeavesTheOldOrTheNewValues) {
    const auto saveBoth = [](SettingsFile& settings, std::int64_t number) {
        settings.set("first", number);
        settings.set("filling", std::string(20000, 'x'));
        settings.set("second", number);
        QCoreApplication::processEvents();
    };
    const auto first = [](const SettingsFile& settings) {
        return std::get<std::int64_t>(settings.get("first").value());
    };
    {
        SettingsFile settings = open();
        saveBoth(settings, 0);
    }
    constexpr int kKills = 200;
    std::int64_t before = 0;
    for (int kill = 0; kill < kKills; ++kill) {
        std::array<int, 2> saved{};
        ASSERT_EQ(pipe2(saved.data(), O_NONBLOCK), 0);
        const pid_t child = fork();
        if (child == 0) {
            SettingsFile settings = open();
            while (true) {
                saveBoth(settings, first(settings) + 1);
                [[maybe_unused]] const auto told = ::write(saved[1], "", 1);
            }
        }
        // Every other one while it starts, too.
        pollfd firstSave{saved[0], POLLIN, 0};
        if (kill % 2 == 0) {
            EXPECT_EQ(::poll(&firstSave, 1, 20'000), 1) << "it hangs after kill " << kill - 1;
        }
        // Spread over several saves, so that every step of one is met.
        std::this_thread::sleep_for(std::chrono::microseconds(kill * 7919 % 9000));
        ::kill(child, SIGKILL);
        for (const int end : saved)
            ::close(end);
        ASSERT_EQ(waitpid(child, nullptr, 0), child);
        const SettingsFile settings = open();
        ASSERT_EQ(settings.get("second"), settings.get("first")) << "kill " << kill;
        ASSERT_GE(first(settings), before);
        before = first(settings);
    }
    EXPECT_GT(before, kKills / 4) << "the children hardly came to saving";
    EXPECT_THAT(m_log.lines, IsEmpty());
}

TEST_F(SettingsTest, OnlyItsOwnerReadsItAndWhatIsForeignStays) {
    write("mine", ".lock");
    const mode_t before = umask(0);
    startWith({1});
    umask(before);
    EXPECT_EQ(content(".lock"), "mine");
    for (const char* const suffix : {"", ".1"})
        EXPECT_EQ(std::filesystem::status(path(suffix)).permissions(), std::filesystem::perms(0600))
            << suffix;
    std::filesystem::remove(path());
    mkfifo(path().c_str(), 0600);
    startWith({2}); // and does not wait for the other end
    EXPECT_TRUE(std::filesystem::is_fifo(path()));
    EXPECT_THAT(m_log.lines, ElementsAre(HasSubstr("can't be read"), HasSubstr("can't write")));
}

TEST_F(SettingsTest, AFileThatCannotBeWrittenIsSaidOnceAndTheRunGoesOn) {
    write("");
    // Where the folder should be there is a file.
    SettingsFile settings(QString::fromStdString(path()) + "/settings.ini", m_log);
    std::string told;
    settings.told.observe([&told](std::string_view line) { told += line; });
    for (const char* const key : {"a", "b"}) {
        settings.set(key, true);
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(settings.get("a"), StoredValue{true});
    EXPECT_THAT(m_log.lines, ElementsAre(HasSubstr("can't write")));
    EXPECT_EQ(told, m_log.lines.front());
}

} // namespace
} // namespace glimra::desktop
