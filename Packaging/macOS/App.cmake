# Brivane.app, from the Mac's machine and the portable rooms: compiled and linked with the system's
# own development kit on a Mac, with the stand-ins beside this file elsewhere.

enable_language(OBJCXX)

# What came before has no algorithms on ranges in its C++ library.
if(CMAKE_CXX_COMPILER_ID STREQUAL "AppleClang" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 15)
  message(FATAL_ERROR " Brivane takes the compiler of Xcode 15 or later, and its command line tools do.")
endif()

file(GLOB_RECURSE mac_sources CONFIGURE_DEPENDS
  "${PROJECT_SOURCE_DIR}/Machines/Mac/*.cpp" "${PROJECT_SOURCE_DIR}/Machines/Mac/*.mm")
add_executable(Brivane Machines/main.cpp ${mac_sources})
target_compile_options(Brivane PRIVATE $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-arc>)

# Compiled with a Mac's own kit, it says whether what was declared by hand is what the system has.
include(Tests/Mac/AbiCheck/CompareDeclarations.cmake)
compare_declarations(brivane-abi-check CInterfaces.cpp AppKit.mm)
target_compile_options(brivane-abi-check PRIVATE $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-arc>)

set(common_sources Files/ResourceFolder Files/WholeFile Frame/Transition Processes/AnnouncedProcess
  Processes/ChildProcess)
list(TRANSFORM common_sources PREPEND Machines/Common/)
list(TRANSFORM common_sources APPEND .cpp)
add_library(brivane-machine-common STATIC ${common_sources})
target_link_libraries(brivane-machine-common PUBLIC brivane-core)

target_link_libraries(Brivane PRIVATE brivane-app brivane-machine-common objc)
foreach(framework AppKit ApplicationServices Carbon CoreFoundation CoreGraphics CoreServices Foundation
    IOKit QuartzCore)
  target_link_libraries(Brivane PRIVATE "-framework ${framework}")
endforeach()
target_link_options(Brivane PRIVATE LINKER:-dead_strip LINKER:-dead_strip_dylibs)

# A stub names each function with the library that exports it, which is where the system will look.
if(CMAKE_CROSSCOMPILING)
  find_package(Python3 3.9 REQUIRED COMPONENTS Interpreter)
  set(stubs "${CMAKE_BINARY_DIR}/stubs")
  set(make_stubs "${BRIVANE_CROSS}/make_stubs.py")
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS "${BRIVANE_CROSS}/include/*.h")
  add_custom_command(
    OUTPUT "${stubs}/stamp"
    COMMAND Python3::Interpreter "${make_stubs}" "${BRIVANE_CROSS}/symbols.txt" "${stubs}"
    COMMAND "${CMAKE_COMMAND}" -E touch "${stubs}/stamp"
    DEPENDS "${make_stubs}" "${BRIVANE_CROSS}/symbols.txt" ${headers}
    COMMENT "Making the libraries to link against"
    VERBATIM)
  add_custom_target(brivane-stubs DEPENDS "${stubs}/stamp")
  add_dependencies(Brivane brivane-stubs)
  set_property(TARGET Brivane APPEND PROPERTY LINK_DEPENDS "${stubs}/stamp")
  target_link_options(Brivane PRIVATE "-F${stubs}" "-L${stubs}")
endif()

file(GLOB languages CONFIGURE_DEPENDS LIST_DIRECTORIES true
  RELATIVE "${PROJECT_SOURCE_DIR}/BrivaneApp/Resources" "${PROJECT_SOURCE_DIR}/BrivaneApp/Resources/*.lproj")
list(TRANSFORM languages REPLACE "^(.*)[.]lproj$" "    <string>\\1</string>\n")
list(JOIN languages "" LANGUAGES)
file(STRINGS "${PROJECT_SOURCE_DIR}/LICENSE" COPYRIGHT REGEX "^Copyright" LIMIT_COUNT 1)
set(info "${CMAKE_BINARY_DIR}/Info.plist")
configure_file("${CMAKE_CURRENT_LIST_DIR}/Info.plist.in" "${info}" @ONLY)

set(BRIVANE_SIGNING_IDENTITY - CACHE STRING "The certificate to sign with, by its name in the keychain; - for none")

# Kept from the newer looks that a newer development kit stands for; and the same wherever built.
if(CMAKE_CROSSCOMPILING)
  if(NOT BRIVANE_SIGNING_IDENTITY STREQUAL "-")
    message(FATAL_ERROR " Only a Mac signs with a certificate: BRIVANE_SIGNING_IDENTITY is for the preset mac-native.")
  endif()
  set(sealer "${BRIVANE_CROSS}/seal.py")
  set(seal "${Python3_EXECUTABLE}" "${sealer}" --sdk 14.0)
else()
  # Apple notarises only what has the hardened runtime and, with a certificate, the time of signing. The
  # runtime's exceptions (entitlements) are for what Brivane doesn't do: it loads the system's libraries alone,
  # writes no code, and sends no Apple events.
  set(seal codesign --force --options runtime --sign "${BRIVANE_SIGNING_IDENTITY}")
  if(NOT BRIVANE_SIGNING_IDENTITY STREQUAL "-")
    list(APPEND seal --timestamp)
  endif()
endif()
set(app "${CMAKE_BINARY_DIR}/Brivane.app")
set(package "Brivane-${PROJECT_VERSION}")
set(share "${CMAKE_BINARY_DIR}/share/brivane")
set(icon "${CMAKE_CURRENT_LIST_DIR}/Brivane.icns")
set(make_app "${CMAKE_CURRENT_LIST_DIR}/MakeApp.cmake")
set(extras "${PROJECT_SOURCE_DIR}/install.sh" "${PROJECT_SOURCE_DIR}/uninstall.sh"
  "${PROJECT_SOURCE_DIR}/LICENSE")
add_custom_command(
  OUTPUT "${CMAKE_BINARY_DIR}/${package}.zip" "${CMAKE_BINARY_DIR}/${package}.zip.sha256"
  COMMAND "${CMAKE_COMMAND}" "-DAPP=${app}" "-DEXECUTABLE=$<TARGET_FILE:Brivane>" "-DINFO=${info}"
    "-DRESOURCES=${icon};${share}/Brivane_BrivaneApp.bundle;${share}/Brivane_BrivaneUI.bundle"
    "-DSTRIP=${CMAKE_STRIP}" "-DSEAL=${seal}" "-DPACKAGE=${package}" "-DEXTRAS=${extras}"
    -P "${make_app}"
  DEPENDS Brivane "${info}" "${icon}" "${make_app}" "${sealer}" ${extras}
    "${CMAKE_BINARY_DIR}/brivane-app-bundle.stamp" "${CMAKE_BINARY_DIR}/brivane-ui-bundle.stamp"
  COMMENT "Making Brivane.app"
  VERBATIM)
add_custom_target(brivane-mac-app ALL DEPENDS "${CMAKE_BINARY_DIR}/${package}.zip")
