#include "keyboards/usb/hid_nodes.h"

#include "hid_tree.h"
#include "keyboards/drivers.h"

#include <gmock/gmock.h>

namespace glimra::keyboards {
namespace {

using testing::AllOf;
using testing::HasSubstr;

TEST(HidNodes, TellsNoKeyboardFromOneWithoutPermission) {
    const HidTree tree;
    DriverOptions options;
    options.hidFolders = tree.folders;
    const DriverRow& driver = *findDriver("usb");
    tree.add("hidraw0", "0003:0000046D:0000C52B");
    tree.add("hidraw1", "0003:00001532:0000C331");
    tree.add("hidraw2", "0005:0000046D:0000C331");
    // What the kernel would never write.
    for (const char* id :
         {"", ":", "0003:", "0003::", "0003:46D", "0003:046D:", "0003:046D:C331:1", "0003:046D:1C331",
          "0003:046D:-C331", "0003:046D:FFFFFFFFFFFFFFFFF", "C331:046D:0003"})
        tree.add("hidraw of " + std::string(id), id);
    const std::string none = "There is no keyboard that the USB driver knows.";
    EXPECT_EQ(lookForHidNode({"/nowhere/hidraw", "/nowhere/dev"}).text, none);
    EXPECT_EQ(driver.look(options).text, none);
    tree.add("hidraw3", "0003:0000046D:0000C331", true, "00");
    EXPECT_EQ(driver.look(options).text, none) << "it types by this one";

    tree.add("hidraw4", "0003:0000046D:0000C331", false);
    EXPECT_THAT(driver.look(options).text,
                AllOf(HasSubstr("G810 (046d:c331)"), HasSubstr((tree.folders.devices / "hidraw4").string())));
    EXPECT_THAT(driver.look(options).remedy, HasSubstr("sudo udevadm"));
    tree.add("hidraw5", "0003:0000046D:0000C331");
    EXPECT_THAT(driver.look(options).text, HasSubstr("G810 (046d:c331) is there"));
}

} // namespace
} // namespace glimra::keyboards
