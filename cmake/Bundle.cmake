# Facts about the program that it shows to the user.
set(GLIMRA_BUILD "1" CACHE STRING "Number of the build")
set(GLIMRA_RELEASE_DATE "2026-11-23" CACHE STRING "Date of this version")
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
