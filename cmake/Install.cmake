# Installation. All packages take their files from these rules.
include(GNUInstallDirs)

set(GLIMRA_APP_ID "example.glimra.Glimra")
set(GLIMRA_CONTACT "Glimra developers <${GLIMRA_SUPPORT_ADDRESS}>")
# The release of an official Debian package would begin with 1.
set(GLIMRA_DEBIAN_RELEASE 0glimra1)
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
    install(FILES ${GLIMRA_PACKAGING}/systemd/glimra.service DESTINATION lib/systemd/user)
endif()

list(TRANSFORM GLIMRA_ADDON_FILES PREPEND ${GLIMRA_ADDON_BUILT}/ OUTPUT_VARIABLE addon_files)
install(FILES ${addon_files} DESTINATION ${GLIMRA_ADDON_DIR}/Glimraxmit)

install(FILES docs/user-guide.md docs/protocol.md docs/replay.md docs/screens.md DESTINATION ${GLIMRA_DOC_DIR})
install(FILES ${GLIMRA_PACKAGING}/debian/copyright DESTINATION ${GLIMRA_DOC_DIR})
install(FILES LICENSE CHANGELOG.md DESTINATION ${GLIMRA_DOC_DIR} COMPONENT elsewhere)
glimra_install_compressed(CHANGELOG.md changelog ${GLIMRA_DOC_DIR} debian EXCLUDE_FROM_ALL)
glimra_date(GLIMRA_CHANGELOG_DATE --rfc-email)
glimra_install_compressed(${GLIMRA_PACKAGING}/debian/changelog.in changelog.Debian
    ${GLIMRA_DOC_DIR} debian EXCLUDE_FROM_ALL)
