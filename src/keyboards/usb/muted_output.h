#pragma once

namespace glimra::keyboards {

/// While an object of this class exists, what its thread writes to std::cout is thrown away; other threads go
/// on printing. It is used around calls of a library that prints.
class MutedOutput {
public:
    MutedOutput();
    ~MutedOutput();
    MutedOutput(const MutedOutput&) = delete;
    MutedOutput& operator=(const MutedOutput&) = delete;

    /// Must be called once before the first object is made, at a time when no other thread prints.
    static void prepare();
};

} // namespace glimra::keyboards
