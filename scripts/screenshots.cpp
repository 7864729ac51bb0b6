// Takes a picture of every window, in both themes, of the main window at the first start and in a fight, and
// a film of that fight.
//
//   glimra_screenshots FOLDER

#include "desktop/windows/windows_fixture.h"

#include "desktop/windows/application_style.h"
#include "desktop/windows/theme.h"
#include "tools/picture/picture_files.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <map>
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
        m_keyboardName.set("keyboard in this window");
        launch();
        window("mainWindow")->resize(1040, 720);
        window("mainWindow")->show();
        QTest::qWait(1500);
        if (!save(window("mainWindow"), "firstStart", isDark))
            return false;
        m_machine.workspace.setFrontmostApplication(
            platform::RunningApplication{"com.blizzard.worldofwarcraft"});
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
        return std::ranges::all_of(tops,
                                   [isDark](QWidget* top) { return save(top, top->objectName(), isDark); });
    }

    /// A fight with cooldowns, a whisper in it, and an end.
    bool filmFight() {
        QApplication::setPalette(themePalette(true));
        m_machine.userDefaults.set("firstStepsDone", true);
        m_machine.workspace.setFrontmostApplication(
            platform::RunningApplication{"com.blizzard.worldofwarcraft"});
        m_machine.userDefaults.set("scanOffset", std::int64_t{2});
        m_machine.userDefaults.set("scanWidth", 80.0);
        m_keyboardName.set("keyboard G810 on USB");
        launch();
        QWidget* const main = window("mainWindow");
        main->resize(960, 600);
        main->show();
        auto& queue = m_delegate->operations().messageQueue;
        const auto say = [&queue](std::initializer_list<const char*> tokens) {
            for (const char* const token : tokens)
                queue.appendToMessageQueue(token);
        };
        say({"1"});
        QTest::qWait(1200);
        const QSize size = main->size() * 2 / 3;
        tools::GifWriter film((s_folder + "/fight.gif").toStdString(), size.width(), size.height());
        for (int frame = 0; frame < kFrames; ++frame) {
            if (frame == 4)
                say({"C", "x"});
            if (frame == 40)
                say({"z"});
            if (frame == 60)
                say({"O"});
            if (frame == 50 && !save(main, "fight", true))
                return false;
            film.add(pictureOf(main->grab().toImage().scaled(size, Qt::IgnoreAspectRatio,
                                                             Qt::SmoothTransformation)),
                     kFrameTime);
            QTest::qWait(static_cast<int>(kFrameTime.count()));
        }
        film.close();
        return true;
    }

private:
    static constexpr int kFrames = 70;
    static constexpr std::chrono::milliseconds kFrameTime{100};

    static bool save(QWidget* window, const QString& name, bool isDark) {
        return window->grab().save(s_folder + "/" + name + (isDark ? "-dark.png" : "-light.png"), "PNG", 0);
    }
    /// As many as a picture of a film has, of steps that the eye hardly sees.
    static QList<QRgb> mostFrequentColors(const QImage& image) {
        std::map<QRgb, int> counts;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                ++counts[(image.pixel(x, y) & 0xFFF8F8F8) + 0x040404];
        std::vector<std::pair<QRgb, int>> colors(counts.begin(), counts.end());
        std::ranges::sort(colors, std::greater<>(), &std::pair<QRgb, int>::second);
        QList<QRgb> table;
        for (std::size_t i = 0; i < std::min(colors.size(), tools::kMostFilmColors); ++i)
            table.append(colors[i].first);
        return table;
    }
    static tools::Picture pictureOf(const QImage& image) {
        const QImage indexed =
            image.convertToFormat(QImage::Format_Indexed8, mostFrequentColors(image), Qt::ThresholdDither);
        tools::Picture picture{indexed.width(), indexed.height(), {}, {}};
        for (const QRgb color : indexed.colorTable())
            picture.palette.push_back({static_cast<std::uint8_t>(qRed(color)),
                                       static_cast<std::uint8_t>(qGreen(color)),
                                       static_cast<std::uint8_t>(qBlue(color))});
        for (int y = 0; y < indexed.height(); ++y)
            picture.pixels.insert(picture.pixels.end(), indexed.constScanLine(y),
                                  indexed.constScanLine(y) + indexed.width());
        return picture;
    }

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
    QApplication::setStyle(new glimra::desktop::ApplicationStyle);
    bool isGood = true;
    for (const bool isDark : {false, true})
        isGood = isGood && glimra::desktop::Screenshots().take(isDark);
    isGood = isGood && glimra::desktop::Screenshots().filmFight();
    if (!isGood)
        std::fputs("glimra_screenshots: a picture can't be written\n", stderr);
    return isGood ? 0 : 1;
}
