#pragma once

namespace glimra::keyboards {

/// While one lives, what its thread writes to std::cout goes nowhere: for a library that prints there. Other
/// threads go on printing.
class MutedOutput {
public:
    MutedOutput();
    ~MutedOutput();
    MutedOutput(const MutedOutput&) = delete;
    MutedOutput& operator=(const MutedOutput&) = delete;

    /// Has to have been called once before the first one lives, while no other thread prints.
    static void prepare();
};

} // namespace glimra::keyboards
