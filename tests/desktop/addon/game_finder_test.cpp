#include "desktop/addon/game_finder.h"

#include "support/script_folder.h"

#include <gmock/gmock.h>

namespace glimra::desktop::addon {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class GameFinderTest : public testing::Test {
protected:
    void makeFolder(const std::string& path) const { fs::create_directories(m_files.path(path)); }
    void makeFile(const std::string& path) const { m_files.addFile(path, "x"); }

    /// "CLIENT: FOLDER", below the folder of the test.
    std::vector<std::string> texts(const std::vector<GameClient>& clients) const {
        std::vector<std::string> all;
        for (const GameClient& client : clients)
            all.push_back(std::string(client.name) + ": " +
                          client.folder.lexically_relative(fs::canonical(m_files.path(""))).string());
        return all;
    }
    std::vector<std::string> found(const std::vector<std::string>& applications = {}) const {
        return texts(findClients({m_files.path("home"), {m_files.path("data")}, applications}));
    }
    std::vector<std::string> named(const std::string& folder) const {
        return texts(clientsOfFolder(m_files.path(folder)));
    }

    tests::ScriptFolder m_files;
};

TEST_F(GameFinderTest, FindsEveryClientInTheUsualPlacesOnce) {
    const std::string game = "/drive_c/Program Files (x86)/World of Warcraft";
    const std::vector<std::pair<std::string, std::string>> clients{
        {"Retail", ".wine" + game + "/_retail_"},
        {"Anniversary", "Games/one/DRIVE_C/program files (x86)/world of warcraft/_Anniversary_"},
        {"Classic", "Faugus/a" + game + "/_classic_"},
        {"Retail", ".local/share/bottles/bottles/b" + game + "/_retail_"},
        {"Retail", ".var/app/com.usebottles.bottles/data/bottles/bottles/c" + game + "/_retail_"},
        {"Retail", ".local/share/Steam/steamapps/compatdata/77/pfx" + game + "/_retail_"},
        {"Classic Era", ".wine" + game + "/_classic_era_"},
        {"Old client", "Games/two" + game},
    };
    std::vector<std::string> expected;
    for (const auto& [name, folder] : clients) {
        makeFolder("home/" + folder + (name == "Classic Era" ? "" : "/interface"));
        expected.push_back(name + ": home/" + folder);
    }
    makeFile("home/.wine" + game + "/_classic_era_/WowClassic.EXE");
    makeFile("home/Games/two" + game + "/wow.exe");
    // No clients, or the same once more.
    makeFolder("home/.wine" + game + "/_classic_");
    makeFolder("home/.wine" + game + "/_ptr_/Interface");
    makeFile("home/Games/three" + game + "/Wow.exe");
    makeFile("home/Games/readme");
    makeFolder("home/.steam");
    fs::create_directory_symlink("../.local/share/Steam", m_files.path("home/.steam/steam"));
    fs::create_directory_symlink("loop", m_files.path("home/Games/loop"));
    EXPECT_THAT(found(), testing::UnorderedElementsAreArray(expected));
    EXPECT_THAT(texts(findClients({"", {}, {}})), IsEmpty());
}

TEST_F(GameFinderTest, FindsTheGamesThatTheLauncherStarts) {
    const auto addEntry = [this](const std::string& name, const std::string& rest) {
        m_files.addFile("data/applications/" + name + ".desktop",
                        "[Desktop Entry]\nType=Application\nName=" + name + "\n" + rest + "\n");
    };
    m_files.addScript("native/_retail_/start.sh", "exit 0");
    addEntry("Native", "Exec=" + m_files.path("native/_retail_/start.sh"));
    // The disk of that prefix is elsewhere, as Wine has it.
    makeFile("disk/Games/WoW/_classic_/WowClassic.exe");
    makeFolder("disk/Program Files (x86)/World of Warcraft/_retail_/WTF");
    makeFolder("odd prefix/dosdevices");
    makeFolder("native/_retail_/Interface");
    fs::create_directory_symlink("../../disk", m_files.path("odd prefix/dosdevices/c:"));
    fs::create_directory_symlink("../disk", m_files.path("odd prefix/drive_c"));
    addEntry("Wine", "Exec=env \"WINEPREFIX=" + m_files.path("odd prefix") +
                         R"(" true C:\\\\Games\\\\WoW\\\\_classic_\\\\WowClassic.exe)");
    makeFile("old/WoW.exe");
    makeFolder("old/Interface");
    addEntry("Folder", "Exec=true Wow.exe\nPath=" + m_files.path("old"));
    EXPECT_THAT(found({"Native", "Wine", "Folder", "Nothing"}),
                ElementsAre("Retail: native/_retail_",
                            "Retail: disk/Program Files (x86)/World of Warcraft/_retail_",
                            "Classic: disk/Games/WoW/_classic_", "Old client: old"));
}

TEST_F(GameFinderTest, TakesTheFoldersThatAPlayerMayName) {
    makeFolder("game/_retail_/Interface/AddOns/Glimraxmit");
    makeFolder("game/_classic_era_/WTF");
    makeFolder("renamed/interface");
    makeFolder("other/AddOns");
    makeFolder("empty/_retail_");
    EXPECT_THAT(named("game"), ElementsAre("Retail: game/_retail_", "Classic Era: game/_classic_era_"));
    for (const char* const folder : {"game/_retail_", "game/_retail_/", "game/_retail_/Interface",
                                     "game/_retail_/interface/../Interface/AddOns/."})
        EXPECT_THAT(named(folder), ElementsAre("Retail: game/_retail_")) << folder;
    EXPECT_THAT(named("renamed/interface"), ElementsAre("Old client: renamed"));
    for (const char* const folder : {"game/_retail_/Interface/AddOns/Glimraxmit", "renamed", "other/AddOns",
                                     "empty", "empty/_retail_", "no/Interface", "nothing", ""})
        EXPECT_THAT(named(folder), IsEmpty()) << folder;
    EXPECT_THAT(clientsOfFolder(""), IsEmpty());
}

} // namespace
} // namespace glimra::desktop::addon
