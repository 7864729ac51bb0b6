# The add-on as it is shipped: the files that its TOC lists, with the version filled into the TOC.
include(GNUInstallDirs)
set(GLIMRA_ADDON_SOURCE ${CMAKE_SOURCE_DIR}/addon/Glimraxmit)
set(GLIMRA_ADDON_BUILT ${CMAKE_BINARY_DIR}/addon/Glimraxmit)
set(GLIMRA_ADDON_DIR ${CMAKE_INSTALL_DATADIR}/glimra/addon)

# The path from the installed programs to the add-on, so that they find it under any prefix.
file(RELATIVE_PATH GLIMRA_ADDON_FROM_PROGRAMS ${CMAKE_INSTALL_FULL_BINDIR}
    ${CMAKE_INSTALL_FULL_DATADIR}/glimra/addon)

# glimra_addon_files(RESULT): the sorted names of the add-on's files. The TOC and the folder must agree;
# otherwise the game would miss a file, or players would get a file that nothing loads.
function(glimra_addon_files result)
    set(toc ${GLIMRA_ADDON_SOURCE}/Glimraxmit.toc)
    file(STRINGS ${toc} lines)
    set(files Glimraxmit.toc)
    foreach(line IN LISTS lines)
        string(STRIP "${line}" line)
        if(line MATCHES "^## *IconTexture: *Interface[\\/]AddOns[\\/]Glimraxmit[\\/](.*)$")
            list(APPEND files "${CMAKE_MATCH_1}")
        elseif(line AND NOT line MATCHES "^#")
            list(APPEND files "${line}")
        endif()
    endforeach()
    foreach(file IN LISTS files)
        if(file MATCHES "[\\/]" OR NOT EXISTS ${GLIMRA_ADDON_SOURCE}/${file})
            message(FATAL_ERROR "${toc} lists ${file}, and there is no such file beside it")
        endif()
    endforeach()
    file(GLOB_RECURSE scripts CONFIGURE_DEPENDS RELATIVE ${GLIMRA_ADDON_SOURCE} ${GLIMRA_ADDON_SOURCE}/*.lua)
    foreach(script IN LISTS scripts)
        if(NOT script IN_LIST files)
            message(FATAL_ERROR "${toc} does not list ${script}")
        endif()
    endforeach()
    list(SORT files)
    set(${result} ${files} PARENT_SCOPE)
endfunction()

glimra_addon_files(GLIMRA_ADDON_FILES)
set(GLIMRA_VERSION ${PROJECT_VERSION})
# Files that are no longer listed must not be shipped.
file(REMOVE_RECURSE ${GLIMRA_ADDON_BUILT})
foreach(file IN LISTS GLIMRA_ADDON_FILES)
    set(how COPYONLY)
    if(file STREQUAL "Glimraxmit.toc")
        set(how @ONLY)
    endif()
    configure_file(${GLIMRA_ADDON_SOURCE}/${file} ${GLIMRA_ADDON_BUILT}/${file} ${how} NO_SOURCE_PERMISSIONS)
endforeach()

# The archive for add-on sites: it contains only the folder, and the same sources always give the same bytes.
set(GLIMRA_ADDON_ZIP ${CMAKE_BINARY_DIR}/glimraxmit-${PROJECT_VERSION}.zip)
list(TRANSFORM GLIMRA_ADDON_FILES PREPEND Glimraxmit/ OUTPUT_VARIABLE addon_paths)
add_custom_target(addon
    COMMAND ${CMAKE_COMMAND} -E rm -f ${GLIMRA_ADDON_ZIP}
    COMMAND ${CMAKE_COMMAND} -E env TZ=UTC touch -d ${GLIMRA_RELEASE_DATE} ${addon_paths}
    COMMAND ${CMAKE_COMMAND} -E env TZ=UTC zip -q -X -D ${GLIMRA_ADDON_ZIP} ${addon_paths}
    WORKING_DIRECTORY ${CMAKE_BINARY_DIR}/addon
    VERBATIM)
