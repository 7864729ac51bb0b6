# What every target of the project is compiled with; link it PRIVATE.
add_library(glimra_options INTERFACE)
target_compile_options(glimra_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
    # GCC 12 sees overlapping copies in optimised std::string additions where there are none.
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>)

if(GLIMRA_SANITIZE)
    # Not only on our targets: a library of ours that is left out would hide a race or an overflow in it.
    add_compile_options(-fsanitize=${GLIMRA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${GLIMRA_SANITIZE})
endif()
