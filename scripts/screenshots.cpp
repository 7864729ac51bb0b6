// Takes a picture of every window, in both themes, with a profile that shows what it can do.
//
//   glimra_screenshots FOLDER

#include "desktop/windows/windows_fixture.h"

#include "desktop/windows/theme.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace glimra::desktop {
namespace {

QString s_folder;

class Screenshots : public WindowsFixture {
protected:
    void TestBody() override {}

public:
    /// Makes a player's home folder with two clients of the game: one with an old add-on, one without.
    Screenshots() {
        const QString game = m_home.filePath(".wine/drive_c/Program Files (x86)/World of Warcraft/");
        const QString old = game + "_classic_era_/Interface/AddOns/Glimraxmit";
        QDir().mkpath(game + "_retail_/Interface");
        QDir().mkpath(old);
        QFile toc(old + "/Glimraxmit.toc");
        if (!toc.open(QIODevice::WriteOnly) || toc.write("## Version: 0.0.9\n") < 0)
            throw std::runtime_error("no home");
        qputenv("HOME", QFile::encodeName(m_home.path()));
    }

    /// Returns whether all pictures could be written.
    bool take(bool isDark) {
        QApplication::setPalette(themePalette(isDark));
        m_machine.userDefaults.set("firstStepsDone", !isDark);
        m_machine.workspace.setFrontmostApplication(
            platform::RunningApplication{"com.blizzard.worldofwarcraft"});
        m_keyboardName.set("keyboard in this window");
        launch();
        click("setColorsButton");
        settle();
        click("actionBarEffectCheckbox");
        click("helpButton");
        click("mapKeysButton");
        settle();
        click("setColorsButton");
        settle();
        window("mainWindow")->findChild<QAction*>("aboutItem")->trigger();
        window("mainWindow")->findChild<QAction*>("installAddonItem")->trigger();
        for (const char* const modal : {"profileChangeAlert", "copyProfileDialog", "launchOptionWindow"})
            window(modal)->show();
        choose("toProfileMenu", 1);
        // Until the status line has been updated again.
        QTest::qWait(1500);
        std::vector<QWidget*> tops{widget("installAddonWindow")};
        for (const app::NamedOutlet& outlet : app::namedOutlets())
            if (outlet.windowIn(outlets()) != nullptr)
                tops.push_back(window(std::string(outlet.name)));
        return std::ranges::all_of(tops, [isDark](QWidget* top) {
            const QString path = s_folder + "/" + top->objectName() + (isDark ? "-dark.png" : "-light.png");
            return top->grab().save(path, "PNG", 0);
        });
    }

private:
    QTemporaryDir m_home;
};

} // namespace
} // namespace glimra::desktop

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: glimra_screenshots FOLDER\n", stderr);
        return 2;
    }
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    glimra::desktop::s_folder = argv[1];
    QDir().mkpath(glimra::desktop::s_folder);
    for (const bool isDark : {false, true})
        if (!glimra::desktop::Screenshots().take(isDark)) {
            std::fputs("glimra_screenshots: a picture can't be written\n", stderr);
            return 1;
        }
    return 0;
}
