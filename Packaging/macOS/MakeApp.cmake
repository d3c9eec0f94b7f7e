# Puts the app together beside the one before and takes its place when it is whole, then packs it for
# handing on.
#
#   cmake -DAPP=<Brivane.app> -DEXECUTABLE=<file> -DINFO=<Info.plist> -DRESOURCES=<files and folders>
#         -DSTRIP=<tool> -DSEAL=<command to seal an app with> -DPACKAGE=<name of the archive>
#         -DEXTRAS=<files that go into the archive too> -P MakeApp.cmake

cmake_minimum_required(VERSION 3.25)

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Of its own name already, because a Mac's tools know an app by it.
get_filename_component(folder "${APP}" DIRECTORY)
get_filename_component(name "${APP}" NAME)
set(fresh "${folder}/fresh/${name}")
file(REMOVE_RECURSE "${fresh}")
file(MAKE_DIRECTORY "${fresh}/Contents/MacOS" "${fresh}/Contents/Resources")
file(COPY_FILE "${INFO}" "${fresh}/Contents/Info.plist")
file(COPY ${RESOURCES} DESTINATION "${fresh}/Contents/Resources")
file(COPY_FILE "${EXECUTABLE}" "${fresh}/Contents/MacOS/Brivane")
run("${STRIP}" -x "${fresh}/Contents/MacOS/Brivane")
run(${SEAL} "${fresh}")
file(REMOVE_RECURSE "${APP}")
file(RENAME "${fresh}" "${APP}")

# The archive holds one folder of its own name. Its files keep their times: by the executable's the
# program knows that it is another build, which needs a new grant.
set(package "${folder}/package/${PACKAGE}")
file(REMOVE_RECURSE "${package}")
file(COPY "${APP}" ${EXTRAS} DESTINATION "${package}")
file(GLOB_RECURSE files RELATIVE "${folder}/package" "${package}/*")
list(SORT files)
list(JOIN files "\n" lines)
file(WRITE "${folder}/package/files" "${lines}\n")
execute_process(
  COMMAND "${CMAKE_COMMAND}" -E tar cf "${folder}/${PACKAGE}.zip" --format=zip
    --files-from=files
  WORKING_DIRECTORY "${folder}/package" COMMAND_ERROR_IS_FATAL ANY)
file(SHA256 "${folder}/${PACKAGE}.zip" checksum)
file(WRITE "${folder}/${PACKAGE}.zip.sha256" "${checksum}  ${PACKAGE}.zip\n")
