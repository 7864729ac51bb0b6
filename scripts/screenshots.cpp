// Takes a picture of every window, in both themes, with a profile that shows what it can do.
//
//   glimra_screenshots FOLDER

#include "desktop/windows/windows_fixture.h"

#include "desktop/windows/theme.h"

#include <QDir>

#include <cstdio>

namespace glimra::desktop {
namespace {

QString s_folder;

class Screenshots : public WindowsFixture {
protected:
    void TestBody() override {}

public:
    /// Whether all pictures could be written.
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
        for (const char* const modal : {"profileChangeAlert", "copyProfileDialog", "launchOptionWindow"})
            window(modal)->show();
        choose("toProfileMenu", 1);
        // Until the status line has looked once more.
        QTest::qWait(1500);
        bool isWritten = true;
        for (const app::NamedOutlet& outlet : app::namedOutlets(outlets()))
            if (std::holds_alternative<platform::Window*>(outlet.control)) {
                const QString path = s_folder + "/" + QString::fromStdString(outlet.name) +
                                     (isDark ? "-dark.png" : "-light.png");
                isWritten = window(outlet.name)->grab().save(path, "PNG", 0) && isWritten;
            }
        return isWritten;
    }
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
