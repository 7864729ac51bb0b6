#include "desktop/addon/addon_folder.h"

#include "support/script_folder.h"

#include <gmock/gmock.h>

#include <csignal>
#include <cstddef>
#include <functional>
#include <map>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace glimra::desktop::addon {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

TEST(VersionTest, IsComparedByItsNumbers) {
    const auto version = [](const char* text) { return Version::fromText(text).value(); };
    EXPECT_LT(version("0.9.0"), version("0.10.0"));
    EXPECT_LT(version("0.10"), version("0.10.1"));
    EXPECT_TRUE(version("1.0") <=> version("1") == 0);
    for (const char* const text : {"", "@GLIMRA_VERSION@", "1.", ".1", "1..2", "-1", "1.0-beta", "1 ",
                                   "99999999999", "1.1.1.1.1.1.1.1.1.1.1.1.1"})
        EXPECT_FALSE(Version::fromText(text)) << text;
}

TEST(TocTest, ListsWhatMakesUpTheAddon) {
    const Toc toc = parseToc("\xEF\xBB\xBF##Version : 0.2\r\n## IconTexture: Interface\\AddOns\\Glimraxmit\\"
                             "icon.tga\r\n# comment\r\n \r\n\tfirst.lua \r\n##Notes: a: b\r\nlast.lua");
    EXPECT_EQ(toc.version.value().text(), "0.2");
    EXPECT_THAT(toc.files, ::testing::ElementsAre("Glimraxmit.toc", "icon.tga", "first.lua", "last.lua"));
    EXPECT_THAT(parseToc("## IconTexture: Interface\\Icons\\x").files,
                ::testing::ElementsAre("Glimraxmit.toc"));
}

/// What lies below a folder: the content by the path. Folders are there, too, and links as what they lead to.
using Tree = std::map<std::string, std::string>;

Tree treeOf(const fs::path& folder) {
    Tree tree;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        const std::string name = entry.path().lexically_relative(folder).string();
        tree[name] = entry.is_symlink()     ? "-> " + fs::read_symlink(entry.path()).string()
                     : entry.is_directory() ? "folder"
                                            : tests::contentOf(entry.path());
    }
    return tree;
}

class AddonFolderTest : public ::testing::Test {
protected:
    AddonFolderTest() {
        m_files.addFile("shipped/Glimraxmit.toc", "## Version: 0.10.0\nfirst.lua\nbig.lua\n");
        m_files.addFile("shipped/first.lua", "new");
        m_files.addFile("shipped/big.lua", std::string(30'000, 'x'));
        m_files.addFile("game/Interface/AddOns/Other/Other.toc", "## Version: 1\n");
        m_files.addFile("game/WTF/Glimraxmit.lua", "saved");
        m_shipped = std::get<ShippedAddon>(readShippedAddon(m_files.path("shipped")));
        m_before = treeOf(game());
    }

    std::string game() const { return m_files.path("game"); }
    void addFile(const std::string& name, const std::string& content) const {
        m_files.addFile("game/Interface/AddOns/" + name, content);
    }
    void addOldVersion() {
        addFile("Glimraxmit/Glimraxmit.toc", "## Version: 0.9.0\nfirst.lua\ngone.lua\n");
        addFile("Glimraxmit/first.lua", "old");
        addFile("Glimraxmit/gone.lua", "old");
        m_before = treeOf(game());
    }
    /// What is expected once the add-on is there and nothing else has changed.
    Tree installed() const {
        Tree tree = m_before;
        std::erase_if(
            tree, [](const auto& entry) { return entry.first.starts_with("Interface/AddOns/Glimraxmit"); });
        tree["Interface/AddOns"] = "folder";
        tree["Interface/AddOns/Glimraxmit"] = "folder";
        for (const auto& [name, content] : treeOf(m_files.path("shipped")))
            tree["Interface/AddOns/Glimraxmit/" + name] = content;
        return tree;
    }
    Standing standing() const { return lookAtAddon(game(), m_shipped).standing; }
    /// Installs, and expects an error after which nothing has changed.
    std::string refusal() {
        const Tree before = treeOf(game());
        const Installation done = installAddon(game(), m_shipped);
        EXPECT_EQ(treeOf(game()), before);
        EXPECT_FALSE(done.isCurrent());
        return done.error;
    }

    tests::ScriptFolder m_files;
    ShippedAddon m_shipped;
    Tree m_before;
};

TEST_F(AddonFolderTest, TellsHowTheInstalledOneStandsToTheShippedOne) {
    EXPECT_EQ(standing(), Standing::Missing);
    const auto withToc = [this](const std::string& toc) {
        addFile("gLIMRAXMIT/glimraxmit.TOC", toc);
        return standing();
    };
    EXPECT_EQ(withToc("## Version: 0.9.0\n"), Standing::Older);
    EXPECT_EQ(withToc("## Version: @VERSION@\n"), Standing::Older);
    EXPECT_EQ(withToc("## Version: 0.11\n"), Standing::Newer);
    EXPECT_EQ(withToc(m_files.content("shipped/Glimraxmit.toc")), Standing::Changed) << "files are missing";
    addFile("gLIMRAXMIT/FIRST.lua", "new");
    addFile("gLIMRAXMIT/big.lua", std::string(30'000, 'y'));
    EXPECT_EQ(standing(), Standing::Changed) << "a file is another";
    addFile("gLIMRAXMIT/big.lua", std::string(30'000, 'x'));
    EXPECT_EQ(standing(), Standing::Current);
}

TEST_F(AddonFolderTest, IsInstalledWhereThereWasNoneAndReplacesAnOldOne) {
    fs::remove_all(m_files.path("game/Interface"));
    m_before = treeOf(game());
    m_before["Interface"] = "folder";
    EXPECT_TRUE(installAddon(game(), m_shipped).isCurrent());
    EXPECT_EQ(treeOf(game()), installed());

    addOldVersion();
    // Of a run that was killed, and what only looks like it.
    addFile(".Glimraxmit-abc123/Glimraxmit.toc", "## Ver");
    addFile(".Glimraxmit-notes/mine.txt", "mine");
    m_before = treeOf(game());
    std::erase_if(m_before,
                  [](const auto& entry) { return entry.first.find("abc123") != std::string::npos; });
    const Installation done = installAddon(game(), m_shipped);
    EXPECT_TRUE(done.isCurrent()) << done.error;
    EXPECT_EQ(done.before.standing, Standing::Older);
    EXPECT_EQ(done.before.version.value().text(), "0.9.0");
    EXPECT_EQ(treeOf(game()), installed());

    EXPECT_EQ(installAddon(game(), m_shipped).before.standing, Standing::Current);
    EXPECT_EQ(treeOf(game()), installed());
}

TEST_F(AddonFolderTest, KeepsWhatIsThePlayersOwnInTheFolderThatItReplaces) {
    for (const std::string name : {"Glimraxmit.before", "Glimraxmit.before-2"}) {
        addOldVersion();
        addFile("Glimraxmit/notes.txt", "mine");
        EXPECT_EQ(installAddon(game(), m_shipped).kept.filename(), name);
        const Tree tree = treeOf(game());
        EXPECT_EQ(tree.at("Interface/AddOns/" + name + "/notes.txt"), "mine");
        EXPECT_EQ(tree.at("Interface/AddOns/" + name + "/first.lua"), "old");
        EXPECT_EQ(standing(), Standing::Current);
    }
}

TEST_F(AddonFolderTest, LeavesLinksAndNewerVersionsAlone) {
    m_files.addFile("checkout/Glimraxmit.toc", "## Version: 0.1\n");
    const std::string link = m_files.path("game/Interface/AddOns/Glimraxmit");
    for (const char* const target : {"../../../checkout", "nowhere"}) {
        fs::create_directory_symlink(target, link);
        EXPECT_EQ(standing(), Standing::Linked);
        EXPECT_EQ(refusal(), "");
        fs::remove(link);
    }
    addFile("Glimraxmit/Glimraxmit.toc", "## Version: 2\n");
    EXPECT_EQ(refusal(), "");
}

TEST_F(AddonFolderTest, ChangesNothingWhereItCannotBeWritten) {
    addFile("Glimraxmit", "a file");
    EXPECT_THAT(refusal(), HasSubstr("no folder"));
    fs::remove_all(m_files.path("game/Interface"));
    m_files.addFile("game/Interface", "a file");
    EXPECT_THAT(refusal(), HasSubstr("ot a directory"));
    fs::remove(m_files.path("game/Interface"));
    fs::remove(m_files.path("shipped/big.lua"));
    EXPECT_THAT(refusal(), HasSubstr("big.lua"));
    EXPECT_THAT(std::get<std::string>(readShippedAddon(m_files.path("shipped"))), HasSubstr("big.lua"));
}

/// Runs a job in a process of its own and returns its status.
int inChild(const std::function<int()>& job) {
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(job());
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
}

TEST_F(AddonFolderTest, AFullDiskLeavesEverythingAsItWas) {
    const auto installOnFullDisk = [this] {
        // A file may have so many bytes and no more.
        const rlimit limit{10'000, 10'000};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        std::signal(SIGXFSZ, SIG_IGN);
        return installAddon(game(), m_shipped).error == "File too large" ? 7 : 1;
    };
    fs::remove_all(m_files.path("game/Interface"));
    m_before = treeOf(game());
    EXPECT_EQ(WEXITSTATUS(inChild(installOnFullDisk)), 7);
    EXPECT_EQ(treeOf(game()), m_before);
    // What a killed run has left may be all that there is of the old one.
    addFile(".Glimraxmit-abc123/Glimraxmit.toc", "## Version: 0.8\n");
    addOldVersion();
    EXPECT_EQ(WEXITSTATUS(inChild(installOnFullDisk)), 7);
    EXPECT_EQ(treeOf(game()), m_before);
}

/// From now on this process has a disk that cannot exchange two folders.
void forbidExchange() {
    constexpr auto kNumber = static_cast<__u32>(offsetof(seccomp_data, nr));
    constexpr auto kFlags = static_cast<__u32>(offsetof(seccomp_data, args) + 4 * sizeof(__u64));
    sock_filter steps[]{BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kNumber),
                        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat2, 0, 3),
                        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kFlags),
                        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, RENAME_EXCHANGE, 0, 1),
                        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL),
                        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)};
    const sock_fprog filter{static_cast<unsigned short>(std::size(steps)), steps};
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    if (::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0)
        ::_exit(9);
}

/// Runs a job in a process that is killed when it makes its `count`th system call; whether it came that far.
bool isKilledAtCall(int count, const std::function<void()>& job) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        ::raise(SIGSTOP);
        job();
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    // Each call stops twice, when it is made and when it returns.
    for (int stop = 0; stop < 2 * count - 1 && WIFSTOPPED(status); ++stop) {
        if (::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) != 0)
            throw std::runtime_error("a child can't be traced");
        ::waitpid(child, &status, 0);
    }
    if (!WIFSTOPPED(status)) {
        EXPECT_EQ(status, 0);
        return false;
    }
    ::kill(child, SIGKILL);
    ::waitpid(child, &status, 0);
    return true;
}

class KilledTest : public AddonFolderTest {
protected:
    /// Kills the installation at each of its steps, over `prepare`, and expects one of these afterwards, and
    /// that the next one makes all good. Returns how many steps there are.
    int killEverywhere(const std::function<void()>& prepare, const std::function<void()>& limit,
                       const std::vector<Standing>& allowed) {
        for (int count = 1;; ++count) {
            fs::remove_all(game());
            m_files.addFile("game/Interface/AddOns/Other/Other.toc", "## Version: 1\n");
            m_before = treeOf(game());
            prepare();
            const bool isKilled = isKilledAtCall(count, [&] {
                limit();
                installAddon(game(), m_shipped);
            });
            const Standing after = standing();
            EXPECT_THAT(allowed, ::testing::Contains(after)) << "killed at call " << count;
            // An older one is the whole old one.
            if (after == Standing::Older) {
                EXPECT_EQ(treeOf(game() + "/Interface/AddOns/Glimraxmit").size(), 3U);
            }
            const Installation done = installAddon(game(), m_shipped);
            EXPECT_TRUE(done.isCurrent()) << done.error;
            EXPECT_EQ(treeOf(game()), installed()) << "killed at call " << count;
            if (!isKilled || HasFailure())
                return count;
        }
    }
};

TEST_F(KilledTest, AtEveryMomentThereIsTheOldOneOrTheNewOne) {
    const auto noLimit = [] {};
    EXPECT_GT(killEverywhere([this] { addOldVersion(); }, noLimit, {Standing::Older, Standing::Current}), 30);
    EXPECT_GT(killEverywhere([] {}, noLimit, {Standing::Missing, Standing::Current}), 20);
}

TEST_F(KilledTest, WhereTwoFoldersCannotBeExchangedTheNextRunMakesItGood) {
    addOldVersion();
    ASSERT_EQ(WEXITSTATUS(inChild([this] {
                  forbidExchange();
                  return installAddon(game(), m_shipped).isCurrent() ? 0 : 1;
              })),
              0);
    EXPECT_EQ(treeOf(game()), installed());
    killEverywhere([this] { addOldVersion(); }, forbidExchange,
                   {Standing::Older, Standing::Missing, Standing::Current});
}

} // namespace
} // namespace glimra::desktop::addon
