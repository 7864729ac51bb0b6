# Compile options for all targets of the project; link this library PRIVATE. The presets turn warnings into
# errors. Without a preset they stay warnings, so that a newer compiler can still build the program.
add_library(glimra_options INTERFACE)
target_compile_options(glimra_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # With optimization, GCC 12 wrongly reports overlapping memory in any "text" + std::string, and
    # uninitialized values in std::optional and std::variant.
    target_compile_options(glimra_options INTERFACE -Wno-restrict -Wno-maybe-uninitialized)
    if(CMAKE_UNITY_BUILD)
        # A source is then included by another file, so GCC takes its anonymous namespaces for a header's.
        target_compile_options(glimra_options INTERFACE -Wno-subobject-linkage)
    endif()
endif()

# The older of the formats that Qt's resources have keeps no times of files.
set(CMAKE_AUTORCC_OPTIONS --format-version 1)

include(CheckPIESupported)
check_pie_supported()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
if(CMAKE_BUILD_TYPE STREQUAL Release AND NOT GLIMRA_SANITIZE)
    # What Debian's packages are built with.
    add_compile_options(-fstack-protector-strong -fstack-clash-protection -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    add_link_options(-Wl,-z,relro -Wl,-z,now)
    # The same sources give the same programs, in whatever folder they are built.
    add_compile_options(-ffile-prefix-map=${CMAKE_SOURCE_DIR}=. -ffile-prefix-map=${CMAKE_BINARY_DIR}=build)
endif()

if(GLIMRA_SANITIZE)
    # For all targets: a library of ours that is not instrumented would hide its races and overflows.
    add_compile_options(-fsanitize=${GLIMRA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${GLIMRA_SANITIZE})
endif()

if(GLIMRA_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL Clang)
        message(FATAL_ERROR "GLIMRA_FUZZ needs Clang")
    endif()
    # The fuzzer is guided by the coverage of the tested code, so that code is instrumented as well.
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()
