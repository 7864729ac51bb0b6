#pragma once

#include "support/eventually.h"
#include "support/folder.h"

#include <cstdlib>

namespace glimra::tests {

/// A folder of small programs that stand in front of all others in PATH, and of the files that they write.
/// It is where XDG's data folders are, too.
class ScriptFolder {
public:
    ScriptFolder() {
        ::setenv("PATH", (path("") + ":/usr/bin:/bin").c_str(), 1);
        ::setenv("XDG_DATA_HOME", path("home").c_str(), 1);
        ::setenv("XDG_DATA_DIRS", (path("first") + ":" + path("second")).c_str(), 1);
        ::setenv("OUT", m_path.c_str(), 1);
    }

    std::string path(const std::string& name) const { return (m_path / name).string(); }

    void addFile(const std::string& name, const std::string& content) const {
        std::filesystem::create_directories((m_path / name).parent_path());
        std::ofstream(m_path / name, std::ios::binary) << content;
    }
    /// A program in the shell's language; $OUT is this folder.
    void addScript(const std::string& name, const std::string& body) const {
        addFile(name, "#!/bin/sh\n" + body + "\n");
        std::filesystem::permissions(m_path / name, std::filesystem::perms::owner_all);
    }
    /// The file's content, empty when there is none.
    std::string content(const std::string& name) const { return contentOf(m_path / name); }

private:
    const std::filesystem::path m_path = newFolder();
};

} // namespace glimra::tests
