# Read by CPack once for each kind of package.
set(ENV{SOURCE_DATE_EPOCH} ${CPACK_GLIMRA_SECONDS})
if(CPACK_GENERATOR STREQUAL "DEB")
    set(CPACK_COMPONENTS_ALL glimra debian)
else()
    set(CPACK_COMPONENTS_ALL glimra elsewhere)
endif()
