#include "platform/whole_file.h"
#include "support/replay_text.h"

#include <gmock/gmock.h>

#include <bit>
#include <limits>

namespace glimra {
namespace {

using trace::TraceKind;

constexpr float kMarker = 654321.0F;

class ProfileTransferTest : public ::testing::Test {
protected:
    void write(const std::vector<float>& values,
               std::size_t bytes = std::numeric_limits<std::size_t>::max()) {
        std::vector<std::uint8_t> content;
        for (const float value : values)
            for (unsigned shift = 0; shift < 32; shift += 8)
                content.push_back(static_cast<std::uint8_t>(std::bit_cast<std::uint32_t>(value) >> shift));
        content.resize(std::min(content.size(), bytes));
        ASSERT_EQ(platform::writeWholeFile(path, content), "");
    }

    /// A whole file: version, blink time and every flag, colour component and slot alike.
    static std::vector<float> values(float blink, float flag, float component, float slot) {
        std::vector<float> all{kMarker, 1.2F, 1.0F, blink};
        all.insert(all.end(), 9, flag);
        all.push_back(kMarker);
        all.insert(all.end(), 9 * 13 * 3, component);
        all.push_back(kMarker);
        all.insert(all.end(), 9 * 115, slot);
        all.push_back(kMarker);
        return all;
    }

    /// Imports the file; the last log line, and the settings afterwards.
    std::pair<std::string, nlohmann::ordered_json> import(const std::string& before = "") {
        const auto lines = tests::replay(before + "start\nanswer-path \"" + path +
                                             "\"\naction \"ImportPreferencesMI:\"\ndump defaults\n",
                                         {TraceKind::Log, TraceKind::Dump, TraceKind::SystemLog});
        systemLogLines = 0;
        for (const auto& line : lines)
            systemLogLines += line["kind"] == "system-log" ? 1 : 0;
        return {lines.at(lines.size() - 2)["text"], lines.back()["value"]};
    }

    const std::string path = ::testing::TempDir() + "test.keycolormap";
    const std::string kImported = "Color profiles imported.\n";
    const std::string kInvalid =
        "Error: File does not contain valid Color Presets for this version of Glimra.\n";
    int systemLogLines = 0;
};

TEST_F(ProfileTransferTest, ValuesAreLimited) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    write(values(12.0F, 1.0F, -0.2F, 99.5F));
    auto [message, defaults] = import();
    EXPECT_EQ(message, kImported);
    EXPECT_EQ(defaults["blinkTimePref"], 5.0);
    EXPECT_EQ(defaults["colorLColor9"], nlohmann::ordered_json::parse("[0.0, 0.0, 0.0]"));
    EXPECT_EQ(defaults["savedKeyToColorMap5"][1], 12);

    write(values(nan, 0.0F, nan, nan));
    std::tie(message, defaults) = import();
    EXPECT_EQ(message, kImported);
    EXPECT_EQ(defaults["blinkTimePref"], 0.0);
    EXPECT_EQ(defaults["savedKeyToColorMap5"][1], 0);
}

TEST_F(ProfileTransferTest, AFileThatIsNotValidStoresNothing) {
    const std::string before = "default \"blinkTimePref\" 0.5\n";
    std::vector<std::vector<float>> bad(5, values(1.0F, 0.0F, 0.5F, 3.0F));
    bad[0][0] = 1.0F;
    bad[1][8] = 0.5F;
    bad[2][13] = std::numeric_limits<float>::quiet_NaN();
    bad[3][365] = 0.0F;
    bad[4].back() = 0.0F;
    for (const std::vector<float>& file : bad) {
        write(file);
        const auto [message, defaults] = import(before);
        EXPECT_EQ(message, kInvalid);
        EXPECT_EQ(defaults, nlohmann::ordered_json::parse(R"({"blinkTimePref": 0.5})"));
    }
    write({}, 3);
    EXPECT_EQ(import(before).first, kInvalid);
}

TEST_F(ProfileTransferTest, AFileCutOffRepeatsItsLastValue) {
    write(values(1.0F, 0.0F, 0.5F, 3.0F), 400 * 4 + 3); // in the key maps, with a remainder
    EXPECT_EQ(import().first, kInvalid);
    EXPECT_EQ(systemLogLines, 1002);
    write({kMarker}); // every later value is this one, limited
    const auto [message, defaults] = import();
    EXPECT_EQ(message, kImported);
    EXPECT_EQ(defaults["savedKeyToColorMap1"][1], 12);
}

} // namespace
} // namespace glimra
