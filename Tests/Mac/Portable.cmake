# What decides, tried with a Mac's own compiler and C++ library: `brivane-desk` plays the scenarios,
# `brivane-tests` has the unit tests of the portable rooms. Both are built only when asked for, and need
# nlohmann-json and googletest; Linux builds the first alone, to see that a Mac could.

if(CMAKE_CROSSCOMPILING)
  # The library is headers alone; nothing else that lies beside them is the Mac's.
  if(NOT EXISTS /usr/include/nlohmann/json.hpp)
    return()
  endif()
  file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/json")
  file(CREATE_LINK /usr/include/nlohmann "${CMAKE_BINARY_DIR}/json/nlohmann" SYMBOLIC)
  add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED)
  target_include_directories(nlohmann_json::nlohmann_json INTERFACE "${CMAKE_BINARY_DIR}/json")
else()
  find_package(nlohmann_json 3.11 QUIET)
  find_package(GTest QUIET)
  if(NOT nlohmann_json_FOUND OR NOT GTest_FOUND)
    message(STATUS "Tests on this Mac take: brew install nlohmann-json googletest")
  endif()
  if(NOT nlohmann_json_FOUND)
    return()
  endif()
endif()

# portable_library(NAME FOLDER [EXCEPT PATH...])
function(portable_library name)
  brivane_library(${name} ${ARGN})
  set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL ON)
  target_link_libraries(${name} PUBLIC nlohmann_json::nlohmann_json)
endfunction()

list(TRANSFORM common_sources REPLACE "^Machines/Common/" "" OUTPUT_VARIABLE app_sources)
portable_library(brivane-desk-common Machines/Common EXCEPT Keys/EvdevKeys.cpp ${app_sources})
target_link_libraries(brivane-desk-common PUBLIC brivane-machine-common)
portable_library(brivane-machine-desk Machines/Desk)
target_link_libraries(brivane-machine-desk PUBLIC brivane-desk-common)
portable_library(brivane-scenarios Tools/BrivaneDesk EXCEPT Main.cpp)
target_link_libraries(brivane-scenarios PUBLIC brivane-app brivane-machine-desk)
file(READ Machines/Desk/default-desk.json DEFAULT_DESK)
configure_file(Tools/BrivaneDesk/DefaultDesk.cpp.in DefaultDesk.cpp @ONLY)
target_sources(brivane-scenarios PRIVATE "${CMAKE_BINARY_DIR}/DefaultDesk.cpp")

add_executable(brivane-desk EXCLUDE_FROM_ALL Tools/BrivaneDesk/Main.cpp)
target_link_libraries(brivane-desk PRIVATE brivane-scenarios)
add_dependencies(brivane-desk brivane-app-bundle brivane-ui-bundle)

if(GTest_FOUND)
  set(folders BrivaneCore BrivaneUI BrivaneApp Tools/BrivaneDesk)
  list(TRANSFORM folders PREPEND Tests/)
  list(TRANSFORM folders APPEND "/*.cpp")
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${folders} Tests/Support/DescribedDisplayList.cpp
    Tests/Support/FakeFrame.cpp Tests/Support/FakeMachine.cpp)
  add_executable(brivane-tests EXCLUDE_FROM_ALL ${sources})
  target_link_libraries(brivane-tests PRIVATE brivane-scenarios GTest::gmock GTest::gtest_main)
  # Tests need not be fast; and a newer compiler's new warnings are no reason not to run them. Batches would bring
  # files together that Linux doesn't, and whose own names may be alike.
  target_compile_options(brivane-tests PRIVATE -O0 -Wno-error)
  add_dependencies(brivane-tests brivane-app-bundle brivane-ui-bundle)
endif()
