#include "desktop/windows/keyboard_view.h"

#include <QImage>
#include <QPaintEvent>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>

namespace glimra::desktop {
namespace {

using namespace std::chrono_literals;
using keyboards::Rgb;

constexpr platform::KeyName kEnter = 0x1C;
constexpr platform::KeyName kLogo = 0xFFFF1;

/// A keyboard with a clock of the test's, and the view of it.
class KeyboardViewTest : public testing::Test {
protected:
    KeyboardViewTest() {
        m_keyboard.LogiLedInit();
        m_view.installEventFilter(&m_paints);
        m_view.resize(m_view.sizeHint());
    }
    void show() {
        m_view.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_view));
        ASSERT_TRUE(QTest::qWaitFor([this] { return m_paints.count > 0; }));
        ASSERT_TRUE(comesToRest());
    }
    /// Whether the view stops painting, and no timer of its own runs on.
    bool comesToRest() {
        constexpr int kAttempts = 50;
        for (int i = 0; i < kAttempts; ++i) {
            m_paints.clear();
            QTest::qWait(80);
            if (m_paints.count + m_paints.timers == 0)
                return true;
        }
        return false;
    }
    static QRect placeOf(platform::KeyName keyName, const QSize& size) {
        const KeyboardPainter painter(QRect({}, size), {}, {});
        return painter.faceOfKey(*keyboards::keyIndex(keyName)).toAlignedRect();
    }
    QRect placeOf(platform::KeyName keyName) const { return placeOf(keyName, m_view.size()); }

    struct PaintRecorder : QObject {
        bool eventFilter(QObject*, QEvent* event) override {
            if (event->type() == QEvent::Paint) {
                ++count;
                region += static_cast<QPaintEvent*>(event)->region();
            }
            timers += event->type() == QEvent::Timer ? 1 : 0;
            return false;
        }
        void clear() {
            count = 0;
            timers = 0;
            region = {};
        }
        int count = 0;
        int timers = 0;
        QRegion region;
    };

    platform::Time m_now = 1h;
    keyboards::VirtualKeyboard m_keyboard{[this] { return m_now; }};
    KeyboardView m_view{m_keyboard, [this] { return m_now; }};
    PaintRecorder m_paints;
};

TEST_F(KeyboardViewTest, AStillKeyboardCostsNothing) {
    m_keyboard.LogiLedSetLighting(100, 50, 0);
    show();
    m_now += 1s;
    m_keyboard.LogiLedSetLighting(100, 50, 0); // a call, but no change
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_paints.timers > 0; }));
    EXPECT_EQ(m_paints.count, 0);
    EXPECT_TRUE(comesToRest());
}

TEST_F(KeyboardViewTest, OnlyWhatChangesIsPaintedAndACallStormOnce) {
    show();
    m_now += 1s;
    m_keyboard.LogiLedSetLightingForKeyWithKeyName(kEnter, 0, 100, 0);
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_paints.count > 0; }));
    EXPECT_TRUE(m_paints.region.contains(placeOf(kEnter)));
    EXPECT_FALSE(m_paints.region.intersects(placeOf(kLogo)));
    EXPECT_LT(m_paints.region.boundingRect().width(), m_view.width() / 5);

    m_paints.clear();
    m_now += 1s;
    for (const lighting::KeyRect& key : lighting::kKeyboardLayout)
        m_keyboard.LogiLedSetLightingForKeyWithKeyName(lighting::driverKeyName(key.code), 0, 0, 100);
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_paints.count > 0; }));
    QTest::qWait(50);
    EXPECT_EQ(m_paints.count, 1);
    EXPECT_TRUE(m_paints.region.contains(placeOf(kLogo)));
}

TEST_F(KeyboardViewTest, KeysStandInTheirPlacesAtEverySizeInTheirOwnColours) {
    keyboards::KeyColors colors{};
    for (std::size_t i = 0; i < colors.size(); ++i)
        colors[i] = {static_cast<std::uint8_t>(255 - 2 * i), static_cast<std::uint8_t>(2 * i), 90};
    const KeyboardTheme theme = KeyboardTheme::forBackground(Qt::black);
    for (const QSize size : {QSize(480, 180), QSize(960, 373), QSize(1000, 900), QSize(2400, 900)}) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::black);
        const KeyboardPainter keyboard(image.rect(), theme, {});
        QPainter painter(&image);
        keyboard.paintBody(painter);
        keyboard.paintKeys(painter, image.rect(), colors);
        for (std::size_t i = 0; i < colors.size(); ++i) {
            const QRectF face = keyboard.faceOfKey(i);
            EXPECT_TRUE(QRectF(image.rect()).contains(face));
            // Beside the legend, off the rounded corners.
            const QColor pixel = image.pixelColor(QPointF(face.center().x(), face.bottom() - 2).toPoint());
            const QColor expected = KeyboardPainter::litCap(theme.cap, colors[i]);
            EXPECT_LT(std::abs(pixel.red() - expected.red()) + std::abs(pixel.green() - expected.green()) +
                          std::abs(pixel.blue() - expected.blue()),
                      60)
                << "key " << lighting::kKeyboardLayout[i].legend << " at " << size.width();
        }
    }
    // The layout counts upwards: F1 stands above A, and Esc left of both.
    const QSize size(960, 373);
    EXPECT_LT(placeOf(0x3B, size).bottom(), placeOf(0x1E, size).top());
    EXPECT_LT(placeOf(0x01, size).right(), placeOf(0x3B, size).left());
}

TEST_F(KeyboardViewTest, LegendsAreReadableOnEveryColour) {
    const auto luminance = [](const QColor& color) {
        const auto linear = [](double value) {
            return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
               0.0722 * linear(color.blueF());
    };
    for (const QColor& background : {QColor(Qt::black), QColor(Qt::white)}) {
        const QColor cap = KeyboardTheme::forBackground(background).cap;
        for (int color = 0; color < 16 * 16 * 16; ++color) {
            const auto channel = [color](int shift) {
                return static_cast<std::uint8_t>((color >> shift & 0xF) * 17);
            };
            const QColor face = KeyboardPainter::litCap(cap, {channel(8), channel(4), channel(0)});
            const double one = luminance(face) + 0.05;
            const double other = luminance(KeyboardPainter::legendOn(face)) + 0.05;
            EXPECT_GE(std::max(one, other) / std::min(one, other), 4.2) << face.name().toStdString();
        }
    }
}

} // namespace
} // namespace glimra::desktop
