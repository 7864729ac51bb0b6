#include "keyboards/usb/hid_nodes.h"

#include "hid_tree.h"

#include <gmock/gmock.h>

#include <fstream>
#include <functional>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace glimra::keyboards {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string kNone = "There is no keyboard that the USB driver knows.";

TEST(HidNodes, TellsNoKeyboardFromOneWithoutPermission) {
    EXPECT_EQ(whyNoUsbKeyboard({"/nowhere/hidraw", "/nowhere/dev"}), kNone);

    const HidTree tree;
    tree.add("hidraw0", "0003:0000046D:0000C52B");
    tree.add("hidraw1", "0003:00001532:0000C331");
    tree.add("hidraw2", "0005:0000046D:0000C331");
    EXPECT_EQ(whyNoUsbKeyboard(tree.folders()), kNone);

    tree.add("hidraw3", "0003:0000046D:0000C331");
    EXPECT_EQ(whyNoUsbKeyboard(tree.folders()), "");

    tree.addWithoutFile("hidraw4", "0003:0000046D:0000C331");
    EXPECT_THAT(whyNoUsbKeyboard(tree.folders()),
                AllOf(HasSubstr("G810 (046d:c331)"), HasSubstr((tree.folders().devices / "hidraw4").string()),
                      HasSubstr(std::filesystem::path(UDEV_RULE).filename().string())));
}

TEST(HidNodes, ReadingAloneIsNoPermission) {
    constexpr uid_t kNobody = 65534;
    constexpr uid_t kAsBefore = static_cast<uid_t>(-1);
    const HidTree tree;
    tree.add("hidraw0", "0003:0000046D:0000C331");
    const std::filesystem::path file = tree.folders().devices / "hidraw0";
    const std::filesystem::path root = tree.folders().devices.parent_path();
    for (const std::filesystem::path& folder : {root, root.parent_path()})
        chmod(folder.c_str(), S_IRWXU | S_IXGRP | S_IXOTH);
    const auto reasonWithMode = [&](mode_t mode) {
        chmod(file.c_str(), mode);
        const uid_t before = getuid();
        // Root may open everything.
        EXPECT_TRUE(before != 0 || setreuid(kNobody, kAsBefore) == 0);
        const std::string reason = whyNoUsbKeyboard(tree.folders());
        EXPECT_TRUE(before != 0 || setreuid(before, kAsBefore) == 0);
        return reason;
    };
    EXPECT_EQ(reasonWithMode(0666), "");
    EXPECT_THAT(reasonWithMode(0444), HasSubstr("permission"));
}

TEST(HidNodes, TakesNoHarmFromOtherTexts) {
    const HidTree tree;
    for (const char* id :
         {"", ":", "0003:", "0003::", "0003:46D", "0003:046D:", "0003:046D:C331:1", "0003:046D:1C331",
          "0003:046D:-C331", "0003:046D:FFFFFFFFFFFFFFFFF", "C331:046D:0003"})
        tree.add("hidraw" + std::to_string(std::hash<std::string>()(id)), id);
    EXPECT_THAT(findHidNodes(tree.folders()), IsEmpty());
}

} // namespace
} // namespace glimra::keyboards
