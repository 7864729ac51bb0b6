# Installation, and the Debian package.
include(GNUInstallDirs)

set(GLIMRA_APP_ID "example.glimra.Glimra")
set(CPACK_PACKAGE_CONTACT "Glimra developers <${GLIMRA_SUPPORT_ADDRESS}>")
# The release of an official Debian package would begin with 1.
set(CPACK_DEBIAN_PACKAGE_RELEASE 0glimra1)
set(GLIMRA_PACKAGING ${CMAKE_SOURCE_DIR}/packaging)

# Components: `glimra` is installed everywhere. `elsewhere` contains files that a Debian package has in
# another form or not at all, and `debian` contains those other forms.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME glimra)
set(GLIMRA_DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/glimra)

# Installing and packing use what has been built, without building tests and benchmarks first.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)

# glimra_install_compressed(TEMPLATE NAME DESTINATION COMPONENT [EXCLUDE_FROM_ALL]): fills in the template and
# installs it as NAME.gz. The file contains no time, so the same sources always give the same bytes.
find_program(GZIP_PROGRAM gzip REQUIRED)
function(glimra_install_compressed template name destination component)
    set(file ${CMAKE_BINARY_DIR}/packaging/${component}/${name})
    configure_file(${template} ${file} @ONLY)
    execute_process(COMMAND ${GZIP_PROGRAM} -9nfk ${file} COMMAND_ERROR_IS_FATAL ANY)
    install(FILES ${file}.gz DESTINATION ${destination} COMPONENT ${component} ${ARGN})
endfunction()

set(GLIMRA_PROGRAMS glimra-replay)
if(GLIMRA_DESKTOP)
    list(APPEND GLIMRA_PROGRAMS glimra glimra-strip)
endif()
install(TARGETS ${GLIMRA_PROGRAMS} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

foreach(program IN LISTS GLIMRA_PROGRAMS)
    glimra_install_compressed(${GLIMRA_PACKAGING}/man/${program}.1.in ${program}.1
        ${CMAKE_INSTALL_MANDIR}/man1 glimra)
    # The shell looks for a file named like the program; the same file serves all programs.
    set(bash_completion ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    install(FILES ${GLIMRA_PACKAGING}/completions/glimra.bash DESTINATION ${bash_completion} RENAME ${program})
endforeach()
install(FILES ${GLIMRA_PACKAGING}/completions/_glimra
    DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT elsewhere)
install(FILES ${GLIMRA_PACKAGING}/completions/_glimra
    DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT debian EXCLUDE_FROM_ALL)

if(GLIMRA_DESKTOP)
    set(icons ${CMAKE_SOURCE_DIR}/resources/icons)
    foreach(size 16 22 24 32 48 64 128 256 512)
        install(FILES ${icons}/glimra-${size}.png RENAME glimra.png
            DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
    endforeach()
    install(FILES ${icons}/glimra.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
    install(FILES ${GLIMRA_PACKAGING}/glimra.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
    set(metainfo ${CMAKE_BINARY_DIR}/packaging/${GLIMRA_APP_ID}.metainfo.xml)
    configure_file(${GLIMRA_PACKAGING}/glimra.metainfo.xml.in ${metainfo} @ONLY)
    install(FILES ${metainfo} DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
    # udev always looks in lib/, even where the machine's library folder has another name.
    install(FILES ${GLIMRA_PACKAGING}/udev/70-glimra-keyboard.rules DESTINATION lib/udev/rules.d)
endif()

list(TRANSFORM GLIMRA_ADDON_FILES PREPEND ${GLIMRA_ADDON_BUILT}/ OUTPUT_VARIABLE addon_files)
install(FILES ${addon_files} DESTINATION ${GLIMRA_ADDON_DIR}/Glimraxmit)

install(FILES docs/user-guide.md docs/protocol.md docs/replay.md docs/screens.md DESTINATION ${GLIMRA_DOC_DIR})
install(FILES ${GLIMRA_PACKAGING}/debian/copyright DESTINATION ${GLIMRA_DOC_DIR})
install(FILES LICENSE CHANGELOG.md DESTINATION ${GLIMRA_DOC_DIR} COMPONENT elsewhere)
glimra_install_compressed(CHANGELOG.md changelog ${GLIMRA_DOC_DIR} debian EXCLUDE_FROM_ALL)
execute_process(COMMAND date --rfc-email --utc --date=${GLIMRA_RELEASE_DATE}
    OUTPUT_VARIABLE GLIMRA_CHANGELOG_DATE OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
glimra_install_compressed(${GLIMRA_PACKAGING}/debian/changelog.in changelog.Debian
    ${GLIMRA_DOC_DIR} debian EXCLUDE_FROM_ALL)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME glimra)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL glimra debian)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${GLIMRA_HOME_PAGE})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Speech and sound use programs of the desktop; Glimra works without them.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "speech-dispatcher, gnome-session-canberra | pulseaudio-utils | pipewire-bin")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${GLIMRA_PACKAGING}/debian/postinst ${GLIMRA_PACKAGING}/debian/postrm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# The first line of the package description (the synopsis) is the project's description.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Glimra turns what happens in an online role-playing game into light on a
keyboard with a lamp behind each key: action-bar keys show which abilities are
ready, the edge pulses red in a fight, Enter flashes when someone whispers.
.
An add-on in the game paints a strip of eleven coloured cells at the top edge
of the screen. Glimra reads that strip and nothing else of the screen, and
never touches the game itself.
.
It also shows everything on a keyboard in its own window, so it can be tried
without such a keyboard, and comes with tools that stand in for the game.")
include(CPack)
