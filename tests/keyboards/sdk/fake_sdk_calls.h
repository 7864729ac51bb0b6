#pragma once

#include <string>

#include <dlfcn.h>

namespace glimra::tests {

/// What the stand-in for the vendor's library was called with since this was last asked, a call to a line.
inline std::string takeCalls(const char* library) {
    void* handle = dlopen(library, RTLD_NOW | RTLD_NOLOAD);
    if (handle == nullptr)
        return "not loaded";
    const auto take = reinterpret_cast<const char* (*)()>(dlsym(handle, "fakeSdkTakeCalls"));
    std::string calls = take();
    dlclose(handle);
    return calls;
}

} // namespace glimra::tests
