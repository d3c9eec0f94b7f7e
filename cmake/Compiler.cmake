# How every target is compiled, and how a room of the tree becomes a library.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1")

# The Mac's loader could take what the program exports of the C++ library for the system's.
if(APPLE)
  set(CMAKE_OBJCXX_STANDARD 20)
  set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
  set(CMAKE_OBJCXX_EXTENSIONS OFF)
  set(CMAKE_CXX_VISIBILITY_PRESET hidden)
  set(CMAKE_OBJCXX_VISIBILITY_PRESET hidden)
  set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
  set(CMAKE_CXX_FLAGS_MINSIZEREL "-Os")
  set(CMAKE_OBJCXX_FLAGS_MINSIZEREL "-Os")
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
                    "-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=")
# Levels and gamma samples are the same on every processor: no fusing of a product with a sum.
add_compile_options(-ffp-contract=off)
include_directories("${PROJECT_SOURCE_DIR}")

if(BRIVANE_SANITIZERS)
  add_compile_options("-fsanitize=${BRIVANE_SANITIZERS}" -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options("-fsanitize=${BRIVANE_SANITIZERS}")
endif()

if(BRIVANE_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()

# brivane_library(name folder [EXCEPT file...]): every source below the folder but those.
function(brivane_library name folder)
  cmake_parse_arguments(ARG "" "" "EXCEPT" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.cpp")
  foreach(file IN LISTS ARG_EXCEPT)
    list(REMOVE_ITEM sources "${PROJECT_SOURCE_DIR}/${folder}/${file}")
  endforeach()
  add_library(${name} STATIC ${sources})
endfunction()
