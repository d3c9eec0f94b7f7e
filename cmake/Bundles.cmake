# Where the resource bundles lie: share/brivane beside the folder of the built programs.

# brivane_bundle(target room): the target makes Brivane_<room>.bundle of the room's resources, and
# fails when they have a mistake.
function(brivane_bundle target room)
  set(bundle "${CMAKE_BINARY_DIR}/share/brivane/Brivane_${room}.bundle")
  set(stamp "${CMAKE_BINARY_DIR}/${target}.stamp")
  set(script "${PROJECT_SOURCE_DIR}/cmake/CompileBundle.cmake")
  file(GLOB_RECURSE resources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${room}/Resources/*")
  add_custom_command(
    OUTPUT "${stamp}"
    COMMAND "${CMAKE_COMMAND}" -DROOM=${room} "-DBUNDLE=${bundle}" -P "${script}"
    COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
    DEPENDS "${script}" "${PROJECT_SOURCE_DIR}/${room}/Strings.h" ${resources}
    WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
    COMMENT "Making Brivane_${room}.bundle"
    VERBATIM)
  add_custom_target(${target} ALL DEPENDS "${stamp}")
endfunction()
