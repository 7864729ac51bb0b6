# Read by CPack when the files of a package are in place.
execute_process(COMMAND find ${CPACK_TEMPORARY_DIRECTORY} -exec touch -h -d @${CPACK_GLIMRA_SECONDS} {} +
    COMMAND_ERROR_IS_FATAL ANY)

# An RPM owns the folders that it brings, and no others: those whose path has our name in it.
set(root ${CPACK_TEMPORARY_DIRECTORY}/ALL_COMPONENTS_IN_ONE)
file(GLOB_RECURSE folders LIST_DIRECTORIES true RELATIVE ${root} ${root}/usr/*)
list(FILTER folders EXCLUDE REGEX "/glimra(/|$)")
set(CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST /usr)
foreach(folder IN LISTS folders)
    if(IS_DIRECTORY ${root}/${folder})
        list(APPEND CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST /${folder})
    endif()
endforeach()
