# What every target of the project is compiled with; link it PRIVATE. The presets make errors of warnings;
# without them a compiler that is newer than ours still builds the program.
add_library(glimra_options INTERFACE)
target_compile_options(glimra_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # When it optimizes, GCC 12 sees an overlap in any "text" + std::string, and std::optional and std::variant
    # without a value where there is one.
    target_compile_options(glimra_options INTERFACE -Wno-restrict -Wno-maybe-uninitialized)
endif()

if(GLIMRA_SANITIZE)
    # Not only on our targets: a library of ours that is left out would hide a race or an overflow in it.
    add_compile_options(-fsanitize=${GLIMRA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${GLIMRA_SANITIZE})
endif()

if(GLIMRA_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL Clang)
        message(FATAL_ERROR "GLIMRA_FUZZ needs Clang")
    endif()
    # The fuzzer finds its way by what the code under test does, so that is instrumented too.
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()
