#include "desktop/settings/settings_text.h"
#include "fuzz/fuzz_target.h"

namespace {

using namespace glimra;
using glimra::tests::must;

} // namespace

/// Whatever is read comes back as it was once it has been written.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray content(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const desktop::SettingsText values = desktop::parseSettings(content).values;
    const desktop::ParsedSettings again = desktop::parseSettings(desktop::formatSettings(values));
    must(again.soundness == desktop::Soundness::Sound, "what is written is sound");
    must(again.values == values, "what is written is what was read");
    return 0;
}

std::vector<glimra::tests::FuzzSeed> glimra::tests::fuzzSeeds() {
    const auto seed = [](const char* name, const QByteArray& text) {
        return FuzzSeed{name, {text.begin(), text.end()}};
    };
    const desktop::SettingsText values{{"scanWidth", "80"},
                                       {"colors/1", "0.5, 1; \"a\\b\""},
                                       {"näme", " spaces, \x01 and \xC3\xA9 "},
                                       {"%2F/x", "@Variant(\\0\\0)"}};
    return {
        seed("whole", desktop::formatSettings(values)),
        seed("foreign", "[zz]\r\na=\\x41\\x0\n; remark\n[%General]\nb=\"x\", y\nc=@ByteArray(\\x1)\\\n d\n"),
        seed("nested", "[General]\nx=" + QByteArray("@Variant(").repeated(40) + "\n")};
}
