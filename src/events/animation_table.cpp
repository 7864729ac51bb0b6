#include "events/animation_notation.h"
#include "lighting/key_table.h"

namespace glimra::events {

namespace {

using namespace std::chrono_literals;
using lighting::toColor;

constexpr Color redColor{1.0, 0.0, 0.0};
constexpr Color greenColor{0.0, 1.0, 0.0};
constexpr Color blueColor{0.0, 0.0, 1.0};
constexpr Color cyanColor{0.0, 1.0, 1.0};
constexpr Color yellowColor{1.0, 1.0, 0.0};
constexpr Color orangeColor{1.0, 0.5, 0.0};
constexpr Color purpleColor{0.5, 0.0, 0.5};

constexpr Rgb kBlack{0, 0, 0};
constexpr Rgb kWhite{255, 255, 255};
constexpr Color kBlackColor = toColor(kBlack);
constexpr Color kWhiteColor = toColor(kWhite);

// Row sweeps: a bright row between two dimmer ones.

struct SweepColors {
    Rgb lead;
    Rgb trail;
};

constexpr SweepColors kGold{{255, 230, 0}, {128, 118, 50}};
constexpr SweepColors kSilver{{255, 255, 255}, {128, 128, 128}};
constexpr SweepColors kCopper{{202, 81, 0}, {94, 39, 0}};
constexpr SweepColors kFire{{255, 0, 0}, {255, 0, 0}};

constexpr Frame sweepFrame(const SweepColors& colors, int row) {
    return {Ground::Profile, {Row{row - 1, colors.trail}, Row{row, colors.lead}, Row{row + 1, colors.trail}}};
}

constexpr auto sweepDown(const SweepColors& colors) {
    const auto frame = [&](int number) { return sweepFrame(colors, number); };
    return joined(kOnAllDevices, counted<0, 5>(80ms, frame), kBackToProfile);
}

/// Begins below the keyboard, with the trail alone, and ends before the lead reaches the top row.
constexpr auto sweepUp(const SweepColors& colors) {
    const auto frame = [&](int number) { return sweepFrame(colors, 6 - number); };
    return joined(kOnAllDevices, counted<0, 5>(80ms, frame), kBackToProfile);
}

constexpr auto blink(const SweepColors& colors) {
    const Color lead = toColor(colors.lead);
    return joined(kOnAllDevices, wholeKeyboard(200ms, kBlackColor),
                  wholeKeyboard(100ms, lead, kBlackColor, lead));
}

constexpr auto kGoldDown = sweepDown(kGold);
constexpr auto kGoldUp = sweepUp(kGold);
constexpr auto kGoldBlink = blink(kGold);
constexpr auto kSilverDown = sweepDown(kSilver);
constexpr auto kSilverUp = sweepUp(kSilver);
constexpr auto kSilverBlink = blink(kSilver);
constexpr auto kCopperDown = sweepDown(kCopper);
constexpr auto kCopperUp = sweepUp(kCopper);
constexpr auto kCopperBlink = blink(kCopper);
constexpr auto kFireUp = sweepUp(kFire);
constexpr auto kFireBlink = blink(kFire);

// Edge sequences: colours that flow through seven bands, from the centre to both edges.

constexpr Rgb kUnpainted{64, 64, 64};
constexpr Rgb kCrimson{255, 25, 25};
constexpr Rgb kYellow{255, 230, 0};
constexpr Rgb kGreen{0, 200, 0};
constexpr Rgb kBlue{0, 0, 255};
constexpr Rgb kSky{90, 148, 255};
constexpr Rgb kAmber{255, 168, 54};
constexpr Rgb kEmber1{50, 30, 0};
constexpr Rgb kEmber2{90, 60, 0};
constexpr Rgb kEmber3{165, 140, 0};
constexpr Rgb kEmber4{255, 220, 0};

constexpr std::array<Rgb, 29> kSequenceA{kUnpainted, kUnpainted, kUnpainted,                    //
                                         kWhite,     kWhite,     kWhite,     kWhite,  kCrimson, //
                                         kYellow,    kYellow,    kYellow,    kYellow, kGreen,   //
                                         kWhite,     kWhite,     kWhite,     kWhite,  kBlue,    //
                                         kYellow,    kYellow,    kYellow,                       //
                                         kWhite,     kYellow,    kWhite,     kYellow,           //
                                         kWhite,     kYellow,    kWhite,     kYellow};

constexpr std::array<Rgb, 27> kSequenceF{kUnpainted, kUnpainted, kUnpainted,                            //
                                         kCrimson,   kEmber1,    kEmber1,    kEmber1, kEmber1, kEmber1, //
                                         kCrimson,   kEmber2,    kEmber2,    kEmber2, kEmber2, kEmber2, //
                                         kCrimson,   kEmber3,    kEmber3,    kEmber3, kEmber3, kEmber3, //
                                         kCrimson,   kEmber4,    kEmber4,    kEmber4, kEmber4, kEmber4};

constexpr std::array<Rgb, 18> kSequenceN{kUnpainted, kUnpainted, kUnpainted,                 //
                                         kWhite,     kSky,       kSky,       kAmber, kAmber, //
                                         kWhite,     kSky,       kSky,       kAmber, kAmber, //
                                         kWhite,     kSky,       kSky,       kAmber, kAmber};

/// The two bands at a distance from the edges.
constexpr Paint edgeBands(int distance, Rgb color) {
    return color == kUnpainted ? Paint{} : Paint{bands(7, {distance, 6 - distance}, color)};
}

template <std::size_t Length>
constexpr auto flowToEdges(const std::array<Rgb, Length>& colors, Duration wait) {
    const auto frame = [&](int number) {
        const Rgb* color = &colors[static_cast<std::size_t>(number)];
        return Frame{Ground::Kept,
                     {edgeBands(0, color[0]), edgeBands(1, color[1]), edgeBands(2, color[2]),
                      bands(7, {3}, color[3])}};
    };
    return joined(kOnAllDevices, counted<0, Length - 4>(wait, frame));
}

/// On every key what the centre band would show.
template <std::size_t Length>
constexpr auto centreColors(const std::array<Rgb, Length>& colors, Duration wait) {
    const auto centre = [&](int number) {
        return AllKeys{toColor(colors[static_cast<std::size_t>(number)])};
    };
    return joined(kOnAllDevices, counted<3, Length - 1>(wait, centre));
}

constexpr Frame profileRowBack(int row) {
    return {Ground::Kept, {ProfileRow{row}}};
}

constexpr Steps<4> kEndingF{{
    {Frame{Ground::Profile, {bands(7, {0, 1, 2, 4, 5, 6}, kEmber4), bands(7, {3}, kCrimson)}}, 65ms},
    {Frame{Ground::Kept, {bands(7, {0, 1, 5, 6}, kEmber4), bands(7, {2, 4}, kCrimson)}}, 65ms},
    {Frame{Ground::Kept, {bands(7, {0, 6}, kEmber4), bands(7, {1, 5}, kCrimson)}}, 65ms},
    {Frame{Ground::Kept, {bands(7, {0, 6}, kCrimson)}}, 65ms},
}};

constexpr Steps<4> kEndingN{{
    {Frame{Ground::Profile, {bands(7, {0, 6}, kSky), bands(7, {1, 2, 4, 5}, kAmber), bands(7, {3}, kWhite)}},
     65ms},
    {Frame{Ground::Kept, {bands(7, {0, 1, 5, 6}, kAmber), bands(7, {2, 4}, kWhite)}}, 65ms},
    {Frame{Ground::Kept, {bands(7, {0, 6}, kAmber), bands(7, {1, 5}, kWhite)}}, 65ms},
    {Frame{Ground::Kept, {bands(7, {0, 6}, kWhite)}}, 65ms},
}};

constexpr auto kEdgesA = joined(flowToEdges(kSequenceA, 75ms), counted<0, 5>(75ms, profileRowBack));
constexpr auto kCentreA = centreColors(kSequenceA, 75ms);
constexpr auto kEdgesF = joined(flowToEdges(kSequenceF, 65ms), kEndingF, kBackToProfile);
constexpr auto kCentreF = centreColors(kSequenceF, 65ms);
constexpr auto kEdgesN = joined(flowToEdges(kSequenceN, 65ms), kEndingN, kBackToProfile);
constexpr auto kCentreN = centreColors(kSequenceN, 65ms);

// Stripe run: three pairs of stripes, four bands apart, from left to right.

constexpr Frame stripeFrame(int band) {
    const auto stripe = [band](int distance, Rgb color) { return bands(10, {band + distance}, color); };
    return {Ground::Profile,
            {stripe(8, kWhite), stripe(9, kBlue), stripe(4, kWhite), stripe(5, kBlue), stripe(0, kWhite),
             stripe(1, kBlue)}};
}

constexpr auto kStripeRun = joined(kOnAllDevices, counted<-9, 9>(75ms, stripeFrame), kBackToProfile);
constexpr auto kGreyThenBlue = wholeKeyboard(150ms, Color{0.8, 0.8, 0.8}, blueColor);
constexpr auto kStripeBlink = joined(kGreyThenBlue, kGreyThenBlue, kGreyThenBlue);

constexpr auto kWhiteFlash =
    joined(wholeKeyboard(200ms, kBlackColor),
           wholeKeyboard(100ms, kWhiteColor, kBlackColor, kWhiteColor, kBlackColor), kOnAllDevices);

// Edge wipes: a front runs from left to right, then the profile comes back the same way.

constexpr auto edgeWipe(Rgb front, Rgb behind) {
    const auto advance = [&](int band) {
        return Frame{Ground::Kept, {bands(6, {band}, front), bands(6, {band - 1}, behind)}};
    };
    const auto retreat = [&](int band) { return Frame{Ground::Profile, {bandsFrom(6, band, behind)}}; };
    return joined(kOnAllDevices, counted<1, 6>(75ms, advance), counted<1, 5>(75ms, retreat), kBackToProfile);
}

constexpr auto brighten(const Color& first, const Color& second, const Color& third) {
    return joined(kOnAllDevices, wholeKeyboard(170ms, first, second, third));
}

constexpr auto kSandWipe = edgeWipe({255, 255, 0}, {230, 204, 153});
constexpr auto kSandBrighten = brighten({0.5, 0.4, 0.2}, {0.7, 0.6, 0.4}, {0.9, 0.8, 0.6});
constexpr auto kWaterWipe = edgeWipe({0, 255, 255}, {110, 202, 202});
constexpr auto kWaterBrighten = brighten({0.2, 0.5, 0.5}, {0.4, 0.7, 0.7}, {0.6, 0.9, 0.9});

// Wave and rainbow: the rows light up one after the other, from the top.

/// Row r of `rows` is painted in the frames from r + first to r + last.
constexpr Frame rowsInTurn(int number, int first, int last, const std::array<Paint, 6>& rows) {
    Frame frame{Ground::Profile, rows};
    int row = 0;
    for (Paint& paint : frame.paints) {
        if (number < row + first || number > row + last)
            paint = Paint{};
        ++row;
    }
    return frame;
}

constexpr Frame waveFrame(int number) {
    constexpr Rgb kCyan{0, 255, 255};
    return rowsInTurn(number, -6, 3,
                      {AlternateCells{0, kCyan}, AlternateCells{1, kCyan}, AlternateCells{2, kCyan},
                       AlternateCells{3, kCyan}, AlternateCells{4, kCyan}, AlternateCells{5, kCyan}});
}

constexpr AllKeys waveColor(int number) {
    const int distanceFromPeak = number < 0 ? -number : number;
    const double value = (8 - distanceFromPeak) * 31 / 255.0;
    return {{0.0, value, value}};
}

constexpr auto kWave = joined(kOnAllDevices, counted<-6, 8>(75ms, waveFrame), kOnAllDevices, kBackToProfile);
constexpr auto kWaveAsOne =
    joined(kOnAllDevices, counted<-6, 8>(75ms, waveColor), kOnAllDevices, kBackToProfile);

constexpr Frame rainbowFrame(int number) {
    return rowsInTurn(number, 1, 6,
                      {Row{0, {255, 0, 0}}, Row{1, {255, 80, 0}}, Row{2, {255, 220, 0}}, Row{3, {0, 255, 0}},
                       Row{4, {0, 90, 255}}, Row{5, {128, 0, 255}}});
}

constexpr auto kRainbow = joined(kOnAllDevices, counted<1, 11>(75ms, rainbowFrame), kBackToProfile);
constexpr auto kRainbowAsOne =
    wholeKeyboard(150ms, redColor, orangeColor, yellowColor, greenColor, cyanColor, purpleColor);

// Ghost: the profile goes out from the right until only a pale Esc is left; it comes back from the left.

constexpr Frame ghostFadeFrame(int number) {
    return {Ground::Kept, {bands(8, {8 - number}, kBlack)}};
}

constexpr Frame ghostReturnFrame(int number) {
    return {Ground::Profile, {bandsFrom(8, number, kBlack)}};
}

constexpr Steps<2> kOnlyEsc{{{AllKeys{kBlackColor}}, {OneKey{lighting::kEscKey, {0.5, 1.0, 0.5}}}}};
constexpr auto kGhostFade = joined(kOnAllDevices, counted<1, 7>(60ms, ghostFadeFrame), kOnlyEsc);
constexpr auto kGhostReturn = joined(kOnAllDevices, counted<1, 7>(60ms, ghostReturnFrame));

// Framed flash: a block of colour with white around it.

constexpr auto framedFlash(Rgb color) {
    const Frame frame{Ground::White, {Row{2, color}, Row{3, color}, Row{4, color}, bands(8, {0, 7}, kWhite)}};
    return joined(Steps<1>{Step{AllKeys{toColor(color)}}}, kOnAllDevices, Steps<1>{Step{frame, 1250ms}});
}

constexpr auto kRedFlash = framedFlash({255, 0, 0});
constexpr auto kGreenFlash = framedFlash({0, 255, 0});

// Centre ripple: a ring that widens from the centre to both edges.

constexpr Frame rippleFrame(int distance) {
    return {Ground::Profile, {bands(8, {3 - distance, 4 + distance}, {200, 230, 255})}};
}

constexpr auto kCentreRipple =
    joined(kOnPerKeyDevices, counted<0, 3>(65ms, rippleFrame), kBackToProfile, kOnAllDevices);

constexpr std::array<Animation, 21> kAnimations{{
    {'G', kGoldDown, kGoldBlink},
    {'g', kGoldUp, kGoldBlink},
    {'S', kSilverDown, kSilverBlink},
    {'s', kSilverUp, kSilverBlink},
    {'M', kCopperDown, kCopperBlink},
    {'m', kCopperUp, kCopperBlink},
    {'a', kFireUp, kFireBlink},
    {'A', kEdgesA, kCentreA},
    {'H', kRedFlash},
    {'r', kGreenFlash},
    {'T', kStripeRun, kStripeBlink},
    {'F', kEdgesF, kCentreF},
    {'f', kWhiteFlash, {}, {.WoWisInTheForeground = 2}},
    {'N', kSandWipe, kSandBrighten},
    {'n', kEdgesN, kCentreN},
    {'h', kWave, kWaveAsOne},
    {'J', kRainbow, kRainbowAsOne},
    {'W', kGhostFade, {}, {.deadAnimationPlaying = true}},
    {'V', kGhostReturn, {}, {.deadAnimationPlaying = false}},
    {'L', kWaterWipe, kWaterBrighten},
    {'B', kCentreRipple},
}};

} // namespace

std::span<const Animation> animations() {
    return kAnimations;
}

const Animation* findAnimation(char code) {
    const auto* const found = std::ranges::find(kAnimations, code, &Animation::code);
    return found == kAnimations.end() ? nullptr : found;
}

} // namespace glimra::events
