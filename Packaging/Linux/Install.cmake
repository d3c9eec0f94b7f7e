# What "cmake --install" puts where. A new tool is a word here; its page of the manual is found.

file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/Packaging")
set(installed_programs Brivane brivane-ctl brivane-defaults brivane-desk brivane-hidutil)
install(TARGETS ${installed_programs} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
# Those who type it needn't know its spelling.
file(CREATE_LINK Brivane "${CMAKE_BINARY_DIR}/Packaging/brivane" SYMBOLIC)
install(FILES "${CMAKE_BINARY_DIR}/Packaging/brivane" DESTINATION "${CMAKE_INSTALL_BINDIR}")
if(BRIVANE_FRAME)
  list(APPEND installed_programs brivane-qt)
  install(TARGETS brivane-qt LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/brivane")
endif()
# Where the program looks: "../share" from its own folder.
install(DIRECTORY "${CMAKE_BINARY_DIR}/share/brivane" DESTINATION "${CMAKE_INSTALL_BINDIR}/../share")

set(here "${CMAKE_CURRENT_LIST_DIR}")
# install_all(pattern folder): the files of this folder that match.
function(install_all pattern folder)
  file(GLOB files CONFIGURE_DEPENDS "${here}/${pattern}")
  install(FILES ${files} DESTINATION "${folder}")
endfunction()

# Read by the desktop and by other programs.
include("${here}/ReleaseNotes.cmake")
foreach(file IN ITEMS metainfo.xml service)
  configure_file("${here}/com.quorrel.brivane.${file}.in" "Packaging/com.quorrel.brivane.${file}" @ONLY)
endforeach()
install(FILES "${here}/com.quorrel.brivane.desktop" DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(DIRECTORY "${here}/icons/hicolor" DESTINATION "${CMAKE_INSTALL_DATADIR}/icons")
install(FILES "${CMAKE_BINARY_DIR}/Packaging/com.quorrel.brivane.metainfo.xml"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
install(FILES "${CMAKE_BINARY_DIR}/Packaging/com.quorrel.brivane.service"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/dbus-1/services")
install_all("dbus-1/*.xml" "${CMAKE_INSTALL_DATADIR}/dbus-1/interfaces")
install(FILES "${here}/autostart/com.quorrel.brivane.desktop"
  DESTINATION "${CMAKE_INSTALL_FULL_SYSCONFDIR}/xdg/autostart")

# Read by people and their shells.
install_all("man/*.1" "${CMAKE_INSTALL_MANDIR}/man1")
file(WRITE "${CMAKE_BINARY_DIR}/Packaging/brivane.1" ".so man1/Brivane.1\n")
install(FILES "${CMAKE_BINARY_DIR}/Packaging/brivane.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
install(FILES "${PROJECT_SOURCE_DIR}/CHANGELOG.md" "${PROJECT_SOURCE_DIR}/LICENSE"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/brivane")
install_all("completions/*.bash" "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
install_all("completions/_*" "${CMAKE_INSTALL_DATADIR}/zsh/site-functions")
install_all("completions/*.fish" "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d")

# Read by udev and systemd, which look into no other folder on any processor.
install(FILES "${here}/60-brivane.rules" DESTINATION lib/udev/rules.d)
install(FILES "${here}/brivane.conf" DESTINATION lib/modules-load.d)

include("${here}/Package.cmake")
