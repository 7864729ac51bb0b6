#include "desktop/windows/application_style.h"
#include "desktop/windows/theme.h"
#include "support/private_bus.h"

#include <QApplication>
#include <QDBusVariant>
#include <QStyle>

#include <gtest/gtest.h>

#include <cmath>

namespace glimra::desktop {
namespace {

using glimra::tests::eventually;

constexpr uint kPreferDark = 1;
constexpr uint kPreferLight = 2;

/// The part of a desktop that tells programs what the user prefers.
class MockPortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit MockPortal(glimra::tests::PrivateBus& bus) {
        bus.connection().registerObject("/org/freedesktop/portal/desktop", this,
                                        QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
        bus.connection().registerService("org.freedesktop.portal.Desktop");
    }
    void change(const QString& group, uint preference) {
        Q_EMIT SettingChanged(group, "color-scheme", QDBusVariant(preference));
    }

    int reads = 0;

public Q_SLOTS:
    QDBusVariant Read(const QString& group, const QString& key) {
        ++reads;
        const bool isKnown = group == "org.freedesktop.appearance" && key == "color-scheme";
        return QDBusVariant(QVariant::fromValue(QDBusVariant(isKnown ? kPreferLight : kPreferDark)));
    }

Q_SIGNALS:
    void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);
};

bool isDark() {
    return QApplication::palette().color(QPalette::Window).lightness() < 128;
}

TEST(DesktopThemeTest, FollowsTheDesktopBetweenLightAndDark) {
    glimra::tests::PrivateBus bus;
    MockPortal portal(bus);
    const DesktopTheme theme(QDBusConnection::connectToBus(bus.address(), "theme"));
    const auto isLight = [] { return !isDark(); };
    EXPECT_TRUE(isDark()) << "until the desktop has answered";
    EXPECT_TRUE(eventually(isLight));
    // Other settings of the same name do not count.
    portal.change("org.example", kPreferDark);
    portal.change("org.freedesktop.appearance", kPreferLight);
    portal.change("org.freedesktop.appearance", kPreferDark);
    EXPECT_TRUE(eventually(isDark));
    portal.change("org.freedesktop.appearance", kPreferLight);
    EXPECT_TRUE(eventually(isLight));
    EXPECT_EQ(portal.reads, 1);
    QDBusConnection::disconnectFromBus("theme");
}

/// Relative luminance, as WCAG 2 defines it.
double luminance(const QColor& color) {
    const auto linear = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

TEST(DesktopThemeTest, TextIsReadableInBothThemes) {
    using enum QPalette::ColorRole;
    for (const bool isDark : {false, true}) {
        const QPalette palette = themePalette(isDark);
        std::vector<std::pair<QColor, QColor>> pairs;
        for (const auto& [text, ground] : {std::pair{WindowText, Window},
                                           {Text, Base},
                                           {ButtonText, Button},
                                           {PlaceholderText, Window},
                                           {PlaceholderText, Base},
                                           {Link, Window},
                                           {Link, Base},
                                           {HighlightedText, Highlight},
                                           {ToolTipText, ToolTipBase}})
            pairs.emplace_back(palette.color(text), palette.color(ground));
        for (const QGradientStop& stop : accentBrush({0, 0, 1, 1}).gradient()->stops())
            pairs.emplace_back(palette.color(HighlightedText), stop.second);
        for (const auto& [text, ground] : pairs) {
            const double ratio = (luminance(text) + 0.05) / (luminance(ground) + 0.05);
            EXPECT_GE(std::max(ratio, 1 / ratio), 4.5)
                << text.name().toStdString() << " on " << ground.name().toStdString();
        }
    }
}

TEST(DesktopThemeTest, OfAThemeThatIsNamedAndMissingNothingIsExpected) {
    qputenv("QT_QPA_PLATFORMTHEME", "nothing");
    QApplication::setPalette(themePalette(false));
    const DesktopTheme theme(QDBusConnection::connectToBus("unix:path=/nowhere", "nobody"));
    EXPECT_TRUE(isDark());
    qunsetenv("QT_QPA_PLATFORMTHEME");
}

TEST(DesktopThemeTest, IsDarkWhereNobodyCanBeAskedUnlessTheUserChose) {
    DesktopTheme theme(QDBusConnection::connectToBus("unix:path=/nowhere", "nobody"));
    EXPECT_TRUE(isDark());
    theme.choose("light");
    EXPECT_FALSE(isDark());
    theme.choose("desktop");
    EXPECT_TRUE(isDark());
    EXPECT_NE(dynamic_cast<const ApplicationStyle*>(QApplication::style()), nullptr);
}

} // namespace
} // namespace glimra::desktop

#include "theme_test.moc"
