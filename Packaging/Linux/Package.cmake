# The Debian package, of what "cmake --install" puts where. The target brivane-package makes it.

if(NOT BRIVANE_FRAME OR NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  message(STATUS "No Debian package: it takes BRIVANE_FRAME, and /usr as CMAKE_INSTALL_PREFIX")
  return()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME brivane)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The Brivane authors <brivane@quorrel.com>")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "brightness controls for every display")
set(CPACK_PACKAGE_DESCRIPTION "Sets external monitors in hardware over DDC/CI and the built-in panel through
the operating system, by hotkeys, by the keyboard's brightness keys and from
a menu in the tray; darker than a monitor's lowest level and brighter than its
highest by software. Needs an X11 session.")

# Beside what the programs are linked with: Qt ends a program that finds no plug-in for X11; libraries that
# are loaded when needed are missed only by a part of the program.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS qt6-qpa-plugins)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libsystemd0, libudev1, libxkbcommon0, libxkbcommon-x11-0")

set(debian "${CMAKE_CURRENT_LIST_DIR}/debian")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${debian}/postinst;${debian}/conffiles")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_PRE_BUILD_SCRIPTS "${debian}/Documents.cmake")
set(CPACK_STRIP_FILES ON)
# Files in /etc are put there beside those in /usr.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
include(CPack)

# Whenever and by whomever it is made, a release's package is the same: its files have the release's date, and
# may be read by everybody.
execute_process(COMMAND date -u -d "${release_date}" +%s OUTPUT_VARIABLE release_time
  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
add_custom_target(brivane-package
  COMMAND sh -c "rm -f brivane_*.deb; umask 022; SOURCE_DATE_EPOCH=${release_time} exec '${CMAKE_CPACK_COMMAND}'"
  DEPENDS ${installed_programs}
  WORKING_DIRECTORY "${CMAKE_BINARY_DIR}"
  VERBATIM)
