#include "desktop/settings/settings_file.h"
#include "desktop/settings/stored_value_text.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <limits>
#include <thread>

#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace glimra::desktop {
namespace {

using platform::Data;
using platform::NumberArray;
using platform::StoredValue;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::VariantWith;

class LinesLog final : public platform::SystemLog {
public:
    void write(std::string_view line) override { lines.emplace_back(line); }
    std::vector<std::string> lines;
};

class SettingsTest : public testing::Test {
protected:
    QString path() const { return m_folder.filePath("new/folder/settings.ini"); }
    void writeFile(const QByteArray& content) {
        QDir().mkpath(m_folder.filePath("new/folder"));
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    static QByteArray contentOf(const QString& name) {
        QFile file(name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }

    /// In memory where there is such a place: some hundred saves are waited for, each until it is on the
    /// disk.
    QTemporaryDir m_folder{(QFileInfo("/dev/shm").isWritable() ? QString("/dev/shm") : QDir::tempPath()) +
                           "/glimra-settings-XXXXXX"};
    LinesLog m_log;
};

TEST_F(SettingsTest, EveryValueComesBackAsItWasStored) {
    const double pi = 3.141592653589793;
    const std::map<std::string, StoredValue, std::less<>> values{
        {"on", true},
        {"off", false},
        {"zero", std::int64_t{0}},
        {"least", std::numeric_limits<std::int64_t>::min()},
        {"whole double", 5.0},
        {"third", 1.0 / 3.0},
        {"negative zero", -0.0},
        {"smallest", std::numeric_limits<double>::denorm_min()},
        {"largest", std::numeric_limits<double>::max()},
        {"infinite", -std::numeric_limits<double>::infinity()},
        {"empty text", std::string()},
        {"name", std::string("Battle.net; \"B\", \\ = [x] % 日本 \U0001F5B1\n\ttrue ")},
        {"looks like a number", std::string("12")},
        {"looks like Qt's", std::string("@Invalid()")},
        {"key with = and / and ü", std::string("x")},
        {"map", NumberArray{std::int64_t{4}, -2.5, 3.0, pi, std::int64_t{-1}}},
        {"empty map", NumberArray{}},
        {"colour", Data{'1', ' ', '0', '.', '5', ',', '"'}},
        {"bytes", Data{0x00, 0xFF, 0x0A, 0x80}},
        {"no bytes", Data{}},
    };
    {
        SettingsFile settings(path(), m_log);
        for (const auto& [key, value] : values)
            settings.set(key, value);
        EXPECT_EQ(settings.all(), values) << "before it is written, too";
    }
    const SettingsFile settings(path(), m_log);
    EXPECT_EQ(settings.all(), values);
    EXPECT_TRUE(std::signbit(std::get<double>(*settings.get("negative zero"))));
    EXPECT_EQ(settings.get("missing"), std::nullopt);
    EXPECT_THAT(m_log.lines, ElementsAre());
}

TEST_F(SettingsTest, AChangeReachesTheDiskWhenTheEventLoopComesRound) {
    SettingsFile settings(path(), m_log);
    settings.set("scanWidth", 80.5);
    QCoreApplication::processEvents();
    EXPECT_THAT(contentOf(path()).toStdString(), HasSubstr("scanWidth=80.5\n"));
}

TEST_F(SettingsTest, DamagedValuesCountAsAbsentAndAreSaidOnce) {
    // What hands, other programs and broken disks leave behind: each line on its own is no value.
    const std::vector<std::string> damaged{"",
                                           "tru",
                                           "1.5.5",
                                           "0x10",
                                           "99999999999999999999",
                                           "1e999",
                                           "- 5",
                                           "+5",
                                           "[1 2",
                                           "[one two]",
                                           "hex:0g",
                                           "hex:0",
                                           "HEX:00",
                                           "text",
                                           "@ByteArray(x)",
                                           "1, 2",
                                           "\"\\x0\"",
                                           "@Variant(\\0\\0\\0\\x7f\\0\\0\\0)"};
    QByteArray content = "[General]\ngood=7\n";
    for (std::size_t i = 0; i < damaged.size(); ++i)
        content += QByteArray("bad") + QByteArray::number(i) + "=" + damaged[i].c_str() + "\n";
    writeFile(content);

    const SettingsFile settings(path(), m_log);
    for (int round = 0; round < 2; ++round)
        for (std::size_t i = 0; i < damaged.size(); ++i)
            EXPECT_EQ(settings.get("bad" + std::to_string(i)), std::nullopt) << damaged[i];
    EXPECT_EQ(settings.all(), (std::map<std::string, StoredValue, std::less<>>{{"good", std::int64_t{7}}}));
    EXPECT_EQ(m_log.lines.size(), damaged.size());
    EXPECT_THAT(m_log.lines.front(), HasSubstr("\"bad0\""));
}

TEST_F(SettingsTest, AnArrayLosesItsDamagedElementsOnly) {
    writeFile("[General]\nmap=[4 fuenf 6 99999999999999999999 -1 7,5]\n");
    const auto read = SettingsFile(path(), m_log).get("map");
    ASSERT_TRUE(read);
    using Integer = testing::Matcher<const platform::Number&>;
    const Integer damaged = VariantWith<double>(testing::IsNan());
    const auto integer = [](std::int64_t value) -> Integer { return VariantWith<std::int64_t>(value); };
    EXPECT_THAT(std::get<NumberArray>(*read),
                ElementsAre(integer(4), damaged, integer(6), damaged, integer(-1), damaged));
}

TEST_F(SettingsTest, ADamagedFileIsKeptBesideTheNewOne) {
    const QByteArray content = "[General\ngood=7\n\x01\xFF no line of settings\nother=true\n";
    writeFile(content);
    {
        SettingsFile settings(path(), m_log);
        settings.set("new", std::int64_t{1});
    }
    EXPECT_EQ(contentOf(path() + ".damaged"), content);
    EXPECT_THAT(m_log.lines, ElementsAre(HasSubstr(".damaged")));
    EXPECT_EQ(SettingsFile(path(), m_log).get("new"), StoredValue{std::int64_t{1}});
}

TEST_F(SettingsTest, TheNewestGoodCopyStandsInForADamagedFile) {
    // Each file of another size: within one process Qt takes a file of the same size and time for unchanged.
    for (const std::int64_t start : {1, 20, 300, 4000, 50'000})
        SettingsFile(path(), m_log).set("start", start);
    SettingsFile(path(), m_log); // changes nothing, so nothing is kept once more
    const QByteArray good = contentOf(path());
    EXPECT_EQ(contentOf(path() + ".1"), good);
    EXPECT_THAT(contentOf(path() + ".3").toStdString(), HasSubstr("start=300\n"));
    EXPECT_FALSE(QFile::exists(path() + ".4"));
    EXPECT_THAT(m_log.lines, ElementsAre());

    // Cut off, emptied, full of zeros, or scribbled over; the newest copy may be bad, too.
    for (const QByteArray& damage : {good.left(good.size() - 12), QByteArray(), QByteArray(good.size(), '\0'),
                                     "[General]\nstart\n" + good}) {
        m_log.lines.clear();
        writeFile(damage);
        EXPECT_EQ(SettingsFile(path(), m_log).get("start"), StoredValue{std::int64_t{50'000}});
        EXPECT_THAT(m_log.lines, ElementsAre(HasSubstr(".damaged")));
    }
    EXPECT_EQ(contentOf(path() + ".damaged-4").left(16), "[General]\nstart\n");
    writeFile("");
    QFile::rename(path(), path() + ".1x");
    QFile::remove(path() + ".1");
    QFile::rename(path() + ".1x", path() + ".1");
    writeFile("nonsense");
    EXPECT_EQ(SettingsFile(path(), m_log).get("start"), StoredValue{std::int64_t{4000}});
}

TEST_F(SettingsTest, ARunHasItsCopyFromTheStartOn) {
    SettingsFile(path(), m_log).set("start", true);
    QFile::remove(path() + ".1");
    const SettingsFile running(path(), m_log);
    EXPECT_EQ(contentOf(path() + ".1"), contentOf(path()));
}

TEST_F(SettingsTest, WhereNothingFitsOnTheDiskTheOldCopiesStay) {
    for (const std::int64_t start : {1, 20, 300, 4000})
        SettingsFile(path(), m_log).set("start", start);
    const std::vector copies{contentOf(path() + ".1"), contentOf(path() + ".2"), contentOf(path() + ".3")};
    writeFile("[General]\nfilling=" + QByteArray(2000, 'x') + "\n\n[zz]\ncomplete=true\n");

    // Every write beyond that fails, as on a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{1000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    for (int start = 0; start < 3; ++start)
        SettingsFile(path(), m_log);
    SettingsFile(path(), m_log).set("start", std::int64_t{5});
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(copies,
              (std::vector{contentOf(path() + ".1"), contentOf(path() + ".2"), contentOf(path() + ".3")}));
    EXPECT_THAT(m_log.lines, ElementsAre(HasSubstr("can't write")));
    EXPECT_EQ(SettingsFile(path(), m_log).get("start"), StoredValue{std::int64_t{4000}});
}

/// Changes two values together, again and again, until it is killed. Each save is told through `saved`.
[[noreturn]] void saveForever(const QString& path, platform::SystemLog& log, int saved) {
    SettingsFile settings(path, log);
    for (std::int64_t number = std::get<std::int64_t>(*settings.get("first")) + 1;; ++number) {
        settings.set("first", number);
        settings.set("filling", std::string(20000, 'x'));
        settings.set("second", number);
        QCoreApplication::processEvents();
        [[maybe_unused]] const auto told = ::write(saved, "", 1);
    }
}

TEST_F(SettingsTest, AKillAtAnyMomentLeavesTheOldOrTheNewValues) {
    {
        SettingsFile settings(path(), m_log);
        settings.set("first", std::int64_t{0});
        settings.set("second", std::int64_t{0});
    }
    constexpr int kKills = 200;
    std::int64_t before = 0;
    for (int kill = 0; kill < kKills; ++kill) {
        std::array<int, 2> saved{};
        ASSERT_EQ(pipe2(saved.data(), O_NONBLOCK), 0);
        const pid_t child = fork();
        if (child == 0)
            saveForever(path(), m_log, saved[1]);
        // Every other one while it starts, too.
        pollfd firstSave{saved[0], POLLIN, 0};
        if (kill % 2 == 0) {
            EXPECT_EQ(::poll(&firstSave, 1, 10'000), 1) << "it hangs after kill " << kill - 1;
        }
        // Spread over several saves, so that every step of one is met.
        std::this_thread::sleep_for(std::chrono::microseconds(kill * 7919 % 9000));
        ::kill(child, SIGKILL);
        for (const int end : saved)
            ::close(end);
        ASSERT_EQ(waitpid(child, nullptr, 0), child);
        const SettingsFile settings(path(), m_log);
        const auto first = settings.get("first");
        ASSERT_TRUE(first) << "kill " << kill;
        ASSERT_EQ(settings.get("second"), first) << "kill " << kill;
        ASSERT_GE(std::get<std::int64_t>(*first), before);
        before = std::get<std::int64_t>(*first);
    }
    EXPECT_GT(before, kKills / 4) << "the children hardly came to saving";
    EXPECT_THAT(m_log.lines, ElementsAre());
}

TEST_F(SettingsTest, AFileThatCannotBeWrittenIsSaidOnceAndTheRunGoesOn) {
    writeFile("");
    // Where the folder should be there is a file.
    SettingsFile settings(path() + "/settings.ini", m_log);
    settings.set("a", true);
    QCoreApplication::processEvents();
    settings.set("b", true);
    QCoreApplication::processEvents();
    EXPECT_EQ(settings.get("a"), StoredValue{true});
    EXPECT_THAT(m_log.lines, ElementsAre(HasSubstr("can't write")));
}

} // namespace
} // namespace glimra::desktop
