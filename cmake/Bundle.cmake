# Facts about the program that it shows to the user.

# The newest heading of the changelog that has a date dates all that is built: `## VERSION (YYYY-MM-DD)`, or
# `## Unreleased (YYYY-MM-DD)` while a version is in the making.
file(STRINGS ${CMAKE_SOURCE_DIR}/CHANGELOG.md headings REGEX "^## .*\\([0-9-]+\\)$")
if(NOT headings MATCHES "^## ([^ ]+) \\(([0-9]+-[0-9]+-[0-9]+)\\)")
    message(FATAL_ERROR "No heading of CHANGELOG.md is of the form `## VERSION (YYYY-MM-DD)`")
endif()
set(GLIMRA_RELEASE_DATE ${CMAKE_MATCH_2})
set(GLIMRA_RELEASE_TYPE stable)
if(CMAKE_MATCH_1 STREQUAL "Unreleased")
    set(GLIMRA_RELEASE_TYPE development)
endif()

# glimra_date(RESULT FORMAT): the release's date, as `date` writes it in this format.
function(glimra_date result format)
    execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C date --utc --date=${GLIMRA_RELEASE_DATE} ${format}
        OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(${result} ${date} PARENT_SCOPE)
endfunction()

set(GLIMRA_BUILD "1" CACHE STRING "Number of the build")
set(GLIMRA_COPYRIGHT "Copyright © 2026 the Glimra developers. Free software under the GNU GPL, version 3 or later."
    CACHE STRING "Copyright line of the about window")
set(GLIMRA_HOME_PAGE "https://glimra.example" CACHE STRING "Address of the product's home page")
set(GLIMRA_DOWNLOAD_PAGE "https://glimra.example/download" CACHE STRING "Address of the download page")
set(GLIMRA_SUPPORT_ADDRESS "support@glimra.example" CACHE STRING "E-mail address for support")

function(glimra_configure_bundle template output)
    set(help_file ${CMAKE_SOURCE_DIR}/resources/HelpText.rtf)
    set_property(DIRECTORY ${CMAKE_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${help_file})
    file(READ ${help_file} GLIMRA_HELP_TEXT)
    configure_file(${template} ${output} @ONLY)
endfunction()
