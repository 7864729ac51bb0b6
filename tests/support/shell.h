#pragma once

#include <sys/wait.h>

#include <cstdio>
#include <string>

namespace glimra::tests {

struct Outcome {
    int status;
    /// What has come on standard output.
    std::string output;
};

inline Outcome runShell(const std::string& command) {
    std::FILE* const pipe = ::popen(command.c_str(), "r");
    Outcome outcome{-1, {}};
    for (int c = 0; (c = std::fgetc(pipe)) != EOF;)
        outcome.output += static_cast<char>(c);
    outcome.status = WEXITSTATUS(::pclose(pipe));
    return outcome;
}

} // namespace glimra::tests
