#include "desktop/windows/keyboard_view.h"
#include "support/eventually.h"

#include <QAccessible>
#include <QImage>
#include <QPaintEvent>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>

namespace glimra::desktop {
namespace {

using namespace std::chrono_literals;
using glimra::tests::eventually;

constexpr platform::KeyName kEnter = 0x1C;
constexpr platform::KeyName kLogo = 0xFFFF1;

QRectF placeOf(platform::KeyName keyName, const QSize& size) {
    return KeyboardPainter(size, 1.0, {}, {}, KeyLook::Lit).capOfKey(*keyboards::keyIndex(keyName));
}

/// What a view painted, and how often its timers woke it.
struct PaintRecorder : QObject {
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            regions.push_back(static_cast<QPaintEvent*>(event)->region());
        timers += event->type() == QEvent::Timer ? 1 : 0;
        return false;
    }
    std::vector<QRegion> regions;
    int timers = 0;
};

TEST(KeyboardViewTest, OnlyWhatChangesIsPaintedACallStormOnceAndAStillKeyboardCostsNothing) {
    platform::Time now = 1h;
    keyboards::VirtualKeyboard keyboard([&] { return now; });
    keyboard.LogiLedInit();
    KeyboardView view(keyboard, [&] { return now; });
    PaintRecorder paints;
    view.installEventFilter(&paints);
    view.resize(view.sizeHint());
    // Whether the view stops painting, and no timer of its own runs on.
    const auto comesToRest = [&] {
        return eventually([&] {
            paints.regions.clear();
            paints.timers = 0;
            QTest::qWait(80);
            return paints.regions.empty() && paints.timers == 0;
        });
    };
    const auto painted = [&](std::size_t times, const std::function<void()>& calls) {
        EXPECT_TRUE(comesToRest());
        now += 1s;
        calls();
        EXPECT_TRUE(eventually([&] { return paints.timers > 0 && paints.regions.size() >= times; }));
        QTest::qWait(50);
        EXPECT_EQ(paints.regions.size(), times);
        return paints.regions.empty() ? QRegion() : paints.regions[0];
    };
    const QRect enter = placeOf(kEnter, view.size()).toAlignedRect();
    const QRect logo = placeOf(kLogo, view.size()).toAlignedRect();
    view.show();
    ASSERT_TRUE(eventually([&] { return !paints.regions.empty(); }));

    const auto lightAll = [&] { keyboard.LogiLedSetLighting(100, 50, 0); };
    painted(1, lightAll);
    painted(0, lightAll); // a call, but no change
    const QRegion one = painted(1, [&] { keyboard.LogiLedSetLightingForKeyWithKeyName(kEnter, 0, 100, 0); });
    EXPECT_TRUE(one.contains(enter));
    EXPECT_FALSE(one.intersects(logo));
    EXPECT_LT(one.boundingRect().width(), view.width() / 5);
    const QRegion all = painted(1, [&] {
        for (const lighting::KeyRect& key : lighting::kKeyboardLayout)
            keyboard.LogiLedSetLightingForKeyWithKeyName(lighting::driverKeyName(key.code), 0, 0, 100);
    });
    EXPECT_TRUE(all.contains(logo));
    EXPECT_TRUE(comesToRest());
}

TEST(KeyboardViewTest, APaintedKeyHasTheVeryColorAtEverySize) {
    keyboards::KeyColors colors{};
    for (std::size_t i = 0; i < colors.size(); ++i)
        colors[i] = {static_cast<std::uint8_t>(255 - 2 * i), static_cast<std::uint8_t>(2 * i), 90};
    for (const double ratio : {1.0, 1.25, 2.0})
        for (const QSize size : {QSize(480, 180), QSize(1000, 900), QSize(1600, 600)}) {
            QImage image((QSizeF(size) * ratio).toSize(), QImage::Format_RGB32);
            image.setDevicePixelRatio(ratio);
            KeyboardPainter keyboard(size, ratio, KeyboardTheme::forBackground(Qt::black), {},
                                     KeyLook::Painted);
            QPainter painter(&image);
            keyboard.paint(painter, QRect({}, size), colors);
            for (std::size_t i = 0; i < colors.size(); ++i) {
                const QRectF cap = keyboard.capOfKey(i);
                // Beside the legend, off the rounded corners.
                const QPointF place(cap.center().x(), cap.bottom() - 2);
                EXPECT_EQ(image.pixel((place * ratio).toPoint()),
                          qRgb(colors[i].red, colors[i].green, colors[i].blue))
                    << "key " << lighting::kKeyboardLayout[i].legend << " at " << size.width();
                EXPECT_EQ(keyboard.keyAt(place), i);
            }
        }
    // The layout counts upwards: F1 stands above A, and Esc left of both.
    const QSize size(960, 373);
    EXPECT_LT(placeOf(0x3B, size).bottom(), placeOf(0x1E, size).top());
    EXPECT_LT(placeOf(0x01, size).right(), placeOf(0x3B, size).left());
}

TEST(KeyboardViewTest, UntilTheKeyboardIsLitItShowsAProfileDimmed) {
    platform::Time now = 1h;
    keyboards::VirtualKeyboard keyboard([&] { return now; });
    keyboard.LogiLedInit();
    KeyboardView view(keyboard, [&] { return now; });
    view.resize(view.sizeHint());
    view.show();
    keyboards::KeyColors profile{};
    profile.fill({240, 80, 0});
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    view.showUntilLit(profile);
    EXPECT_EQ(view.shownColors()[0], (keyboards::Rgb{90, 30, 0}));
    keyboard.LogiLedSetLighting(0, 0, 100);
    EXPECT_TRUE(eventually([&] { return view.shownColors()[0] == keyboards::Rgb{0, 0, 255}; }));
    keyboard.LogiLedSetLighting(0, 0, 0);
    EXPECT_TRUE(eventually([&] { return view.shownColors()[0] == keyboards::Rgb{}; })) << "that is black";
    keyboard.LogiLedSetLightingForKeyWithKeyName(kEnter, 100, 0, 0);
    EXPECT_TRUE(eventually([&] { return view.shownColors()[*keyboards::keyIndex(kEnter)].red == 255; }));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&view)->text(QAccessible::Description),
              "red: Enter; black: all others");
}

TEST(KeyboardViewTest, LegendsAreReadableOnEveryColor) {
    const auto luminance = [](const QColor& color) {
        const auto linear = [](double value) {
            return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        };
        return 0.05 + 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
               0.0722 * linear(color.blueF());
    };
    const KeyboardTheme theme = KeyboardTheme::forBackground(Qt::black);
    for (int color = 0; color < 16 * 16 * 16; ++color) {
        const auto channel = [color](int shift) {
            return static_cast<std::uint8_t>((color >> shift & 0xF) * 17);
        };
        const keyboards::Rgb light{channel(8), channel(4), channel(0)};
        const QColor face(light.red, light.green, light.blue);
        const double onFace = luminance(KeyboardPainter::legendOn(face)) / luminance(face);
        EXPECT_GE(std::max(onFace, 1 / onFace), 4.5) << face.name().toStdString();
        EXPECT_GE(luminance(KeyboardPainter::litLegend(theme, light)) /
                      luminance(KeyboardPainter::litCap(theme, light)),
                  4.5)
            << face.name().toStdString();
    }
}

} // namespace
} // namespace glimra::desktop
