#include "desktop/output_file.h"
#include "support/folder.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace glimra::desktop {
namespace {

TEST(OutputFile, IsItsOwnersAloneAndEndsAtItsLimit) {
    const std::filesystem::path path = tests::newFolder() / "record";
    std::ofstream(path) << "an older one that others could read";
    OutputFile file(path, 6);
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0600));
    EXPECT_EQ(file.append("line\n"), "");
    for (const char* const more : {"xx", ""})
        EXPECT_EQ(file.append(more), "is full");
    EXPECT_EQ(tests::contentOf(path), "line\n");
}

TEST(OutputFile, WaitsForNothingAndFollowsNoLink) {
    const std::filesystem::path folder = tests::newFolder();
    mkfifo((folder / "pipe").c_str(), 0600);
    std::ofstream(folder / "file") << "mine";
    std::filesystem::create_symlink(folder / "file", folder / "link");
    for (const std::string& path :
         {(folder / "pipe").string(), (folder / "link").string(), std::string("/dev/full")})
        EXPECT_THAT([&] { OutputFile{path}; },
                    testing::ThrowsMessage<std::runtime_error>(testing::HasSubstr("name a file")));
    EXPECT_EQ(tests::contentOf(folder / "file"), "mine");
}

} // namespace
} // namespace glimra::desktop
