#include "app/built_bundle.h"
#include "app/rich_text.h"

#include <gmock/gmock.h>

namespace glimra::app {
namespace {

using testing::ElementsAre;

TEST(RichText, ReadsParagraphsLooksAndCharacters) {
    const std::vector<Paragraph> text = readRichText(
        "{\\rtf1{\\fonttbl{\\f0 Sans;}}{\\*\\x no}\\fs36\\b1 Title\\b0\\fs24\\par\n"
        "\\li360\\bullet  type \\f1 /cal\\f0 , \\{x\\} \\'e9\\u8212?\\tab\\line\\'80\\u-3?\\par\n"
        "\\pard\\b;\\'81\\'a0\\u-10240?\\par}");
    ASSERT_EQ(text.size(), 3U);
    EXPECT_THAT(text[0].runs, ElementsAre(TextRun{"Title", true, false, 36}));
    EXPECT_EQ(text[1].leftIndent, 360);
    EXPECT_THAT(text[1].runs, ElementsAre(TextRun{"\u2022 type "}, TextRun{"/cal", false, true, 24},
                                          TextRun{", {x} \u00E9\u2014\t\u2028\u20AC\uFFFD"}));
    EXPECT_EQ(text[2].leftIndent, 0);
    EXPECT_THAT(text[2].runs, ElementsAre(TextRun{";\u0081\u00A0", true}));
}

TEST(RichText, BrokenTextIsReadAsFarAsItGoes) {
    for (const std::string broken :
         {"\\", "{\\'", "\\'z", "}}}}a", "\\u", "\\fs99999999999a", "\\u-10179 a", "\\li-"})
        EXPECT_LE(readRichText(broken).size(), 1U) << broken;
    EXPECT_EQ(readRichText(std::string(100000, '{') + "a").size(), 1U);
}

TEST(RichText, HelpTextIsWholeAndPlain) {
    std::string all;
    for (const Paragraph& paragraph : readRichText(builtBundle().helpText))
        for (const TextRun& run : paragraph.runs)
            all += run.text;
    EXPECT_NE(all.find("/glimracal"), std::string::npos);
    EXPECT_EQ(all.find_first_of("{}\\"), std::string::npos);
}

} // namespace
} // namespace glimra::app
