# The Debian package and the RPM, by CPack. The same programs give the same bytes whenever and wherever they are packed.
set(GLIMRA_CPACK ${GLIMRA_PACKAGING}/cpack)
set(GLIMRA_DESCRIPTION
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

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME glimra)
set(CPACK_PACKAGE_CONTACT ${GLIMRA_CONTACT})
set(CPACK_PACKAGE_VENDOR "Glimra developers")
set(CPACK_PACKAGE_HOMEPAGE_URL ${GLIMRA_HOME_PAGE})
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
glimra_date(CPACK_GLIMRA_SECONDS +%s)
set(CPACK_PROJECT_CONFIG_FILE ${GLIMRA_CPACK}/each.cmake)
set(CPACK_PRE_BUILD_SCRIPTS ${GLIMRA_CPACK}/before.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${GLIMRA_CPACK}/after.cmake)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${GLIMRA_DEBIAN_RELEASE})
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Speech and sound use programs of the desktop; Glimra works without them.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "speech-dispatcher, gnome-session-canberra | pulseaudio-utils | pipewire-bin")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${GLIMRA_PACKAGING}/debian/postinst ${GLIMRA_PACKAGING}/debian/postrm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# The first line of the package description (the synopsis) is the project's description.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION ${GLIMRA_DESCRIPTION})

set(CPACK_RPM_COMPONENT_INSTALL ON)
set(CPACK_RPM_FILE_NAME RPM-DEFAULT)
set(CPACK_RPM_COMPRESSION_TYPE xz)
set(CPACK_RPM_PACKAGE_SUMMARY ${PROJECT_DESCRIPTION})
string(REPLACE "\n.\n" "\n\n" CPACK_RPM_PACKAGE_DESCRIPTION "${GLIMRA_DESCRIPTION}")
set(CPACK_RPM_PACKAGE_LICENSE "GPL-3.0-or-later AND BSD-3-Clause AND MIT")
set(CPACK_RPM_PACKAGE_GROUP Unspecified)
# Libraries are found in the programs, by the names that Fedora's packages provide. These are no libraries: the folders
# of the icons, and Qt's way to the display.
set(CPACK_RPM_PACKAGE_REQUIRES "hicolor-icon-theme, qt6-qtbase-gui")
set(CPACK_RPM_POST_INSTALL_SCRIPT_FILE ${GLIMRA_PACKAGING}/rpm/post)
set(CPACK_RPM_POST_UNINSTALL_SCRIPT_FILE ${GLIMRA_PACKAGING}/rpm/postun)
glimra_date(GLIMRA_RPM_DATE "+%a %b %d %Y")
set(CPACK_RPM_CHANGELOG_FILE ${CMAKE_BINARY_DIR}/packaging/rpm/changelog)
configure_file(${GLIMRA_PACKAGING}/rpm/changelog.in ${CPACK_RPM_CHANGELOG_FILE} @ONLY)
# Files as they were installed, and nothing of the machine that packs them.
set(CPACK_RPM_SPEC_MORE_DEFINE "%global __os_install_post %{nil}
%global _build_id_links none
%global _buildhost localhost
%global use_source_date_epoch_as_buildtime 1")
include(CPack)
