#include "desktop/addon/addon_folder.h"

#include "support/script_folder.h"

#include <gmock/gmock.h>

#include <csignal>
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
using testing::ElementsAre;
using testing::HasSubstr;

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
    EXPECT_THAT(toc.files, ElementsAre("Glimraxmit.toc", "icon.tga", "first.lua", "last.lua"));
    EXPECT_THAT(parseToc("## IconTexture: Interface\\Icons\\x").files, ElementsAre("Glimraxmit.toc"));
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

class AddonFolderTest : public testing::Test {
protected:
    AddonFolderTest() {
        m_files.addFile("shipped/Glimraxmit.toc", "## Version: 0.10.0\nfirst.lua\nbig.lua\n");
        m_files.addFile("shipped/first.lua", "new");
        m_files.addFile("shipped/big.lua", std::string(30'000, 'x'));
        m_shipped = std::get<ShippedAddon>(readShippedAddon(m_files.path("shipped")));
        startOver();
    }

    std::string game() const { return m_files.path("game"); }
    void addFile(const std::string& name, const std::string& content) const {
        m_files.addFile("game/Interface/AddOns/" + name, content);
    }
    void startOver() const {
        fs::remove_all(game());
        addFile("Other/Other.toc", "## Version: 1\n");
        m_files.addFile("game/WTF/Glimraxmit.lua", "saved");
    }
    void addOldVersion() const {
        addFile("Glimraxmit/Glimraxmit.toc", "## Version: 0.9.0\nfirst.lua\ngone.lua\n");
        addFile("Glimraxmit/first.lua", "old");
        addFile("Glimraxmit/gone.lua", "old");
    }
    Standing standing() const { return lookAtAddon(game(), m_shipped).standing; }
    /// Installs, and expects that the add-on is there afterwards and that nothing else has changed but what
    /// is the rest of a killed run.
    Installation install() const {
        Tree tree = treeOf(game());
        std::erase_if(tree, [](const auto& entry) {
            return entry.first.starts_with("Interface/AddOns/Glimraxmit") ||
                   entry.first.find("/.Glimraxmit-") != std::string::npos;
        });
        for (const char* const folder : {"Interface", "Interface/AddOns", "Interface/AddOns/Glimraxmit"})
            tree[folder] = "folder";
        for (const auto& [name, content] : treeOf(m_files.path("shipped")))
            tree["Interface/AddOns/Glimraxmit/" + name] = content;
        const Installation done = installAddon(game(), m_shipped);
        EXPECT_TRUE(done.isCurrent()) << done.error;
        EXPECT_EQ(treeOf(game()), tree);
        return done;
    }
    /// Installs, and expects an error after which nothing has changed.
    std::string refusal() const {
        const Tree before = treeOf(game());
        const Installation done = installAddon(game(), m_shipped);
        EXPECT_EQ(treeOf(game()), before);
        EXPECT_FALSE(done.isCurrent());
        return done.error;
    }

    tests::ScriptFolder m_files;
    ShippedAddon m_shipped;
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
    install();
    addOldVersion();
    addFile(".Glimraxmit-abc123/Glimraxmit.toc", "## Ver");
    const Installation done = install();
    EXPECT_EQ(done.before.standing, Standing::Older);
    EXPECT_EQ(done.before.version.value().text(), "0.9.0");
    EXPECT_EQ(install().before.standing, Standing::Current);

    // What only looks like the rest of a killed run.
    addFile(".Glimraxmit-notes/mine.txt", "mine");
    addOldVersion();
    installAddon(game(), m_shipped);
    EXPECT_EQ(treeOf(game()).at("Interface/AddOns/.Glimraxmit-notes/mine.txt"), "mine");
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

TEST_F(AddonFolderTest, ChangesNothingWhereItMustNotOrCannot) {
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
    fs::remove_all(link);
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

/// Runs a job in a process of its own, which is killed when it makes its `count`th system call if there is a
/// count. Its exit status; none if it was killed.
std::optional<int> exitStatusOf(const std::function<int()>& job, int count = 0) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        ::raise(SIGSTOP);
        ::_exit(job());
    }
    int status = 0;
    for (int stop = 0; ::waitpid(child, &status, 0) == child && WIFSTOPPED(status); ++stop) {
        // Each call stops twice, when it is made and when it returns.
        if (stop == 2 * count - 1)
            ::kill(child, SIGKILL);
        else if (::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) != 0)
            throw std::runtime_error("a child can't be traced");
    }
    return WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt;
}

TEST_F(AddonFolderTest, AFullDiskLeavesEverythingAsItWas) {
    const auto expectNothing = [this] {
        const Tree before = treeOf(game());
        EXPECT_EQ(exitStatusOf([this] {
                      // A file may have so many bytes and no more.
                      const rlimit limit{10'000, 10'000};
                      ::setrlimit(RLIMIT_FSIZE, &limit);
                      std::signal(SIGXFSZ, SIG_IGN);
                      return installAddon(game(), m_shipped).error == "File too large" ? 7 : 1;
                  }),
                  7);
        EXPECT_EQ(treeOf(game()), before);
    };
    // What a killed run has left may be all that there is of the old one.
    addFile(".Glimraxmit-abc123/Glimraxmit.toc", "## Version: 0.8\n");
    addOldVersion();
    expectNothing();
    fs::remove_all(m_files.path("game/Interface"));
    expectNothing();
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

/// Kills the installation at each of its steps, over the old version if there is one, and expects that there
/// is one of these afterwards, and that the next one makes all good.
struct Kills {
    const char* what;
    bool hasOldVersion;
    bool canExchange;
    std::vector<Standing> allowed;
};

TEST_F(AddonFolderTest, AtEveryMomentThereIsTheOldOneOrTheNewOne) {
    for (const auto& [what, hasOldVersion, canExchange, allowed] :
         {Kills{"exchanged", true, true, {Standing::Older, Standing::Current}},
          Kills{"new", false, true, {Standing::Missing, Standing::Current}},
          Kills{"moved", true, false, {Standing::Older, Standing::Missing, Standing::Current}}}) {
        std::optional<int> status;
        int count = 0;
        while (!status && !HasFailure()) {
            SCOPED_TRACE(what + std::to_string(++count));
            startOver();
            if (hasOldVersion)
                addOldVersion();
            status = exitStatusOf(
                [&, exchanges = canExchange] {
                    if (!exchanges)
                        forbidExchange();
                    return installAddon(game(), m_shipped).isCurrent() ? 0 : 1;
                },
                count);
            const Standing after = standing();
            EXPECT_THAT(allowed, testing::Contains(after));
            EXPECT_TRUE(after != Standing::Older ||
                        treeOf(game() + "/Interface/AddOns/Glimraxmit").size() == 3)
                << "an old one is whole";
            install();
        }
        EXPECT_EQ(status, 0);
        EXPECT_GT(count, 20);
    }
}

} // namespace
} // namespace glimra::desktop::addon
