# Read by CPack when it has made a package. CPack's own Debian archives carry the time of their making; dpkg's do not.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
    return()
endif()
foreach(package IN LISTS CPACK_PACKAGE_FILES)
    set(folder ${CPACK_TOPLEVEL_DIRECTORY}/repacked)
    file(REMOVE_RECURSE ${folder})
    execute_process(COMMAND dpkg-deb --raw-extract ${package} ${folder} COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND dpkg-deb --root-owner-group -Zxz --build ${folder} ${package}
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endforeach()
