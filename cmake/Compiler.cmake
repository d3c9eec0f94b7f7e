# How every target is compiled, and how a room of the tree becomes a library.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
if(BRIVANE_SANITIZERS)
  # Quick to compile, and each line of the source is a line of the report.
  set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O0 -g1")
else()
  # A quarter smaller than with -O2 and compiled in three quarters of the time. What computes
  # without a pause, days in virtual time, takes a fifth to three fifths longer.
  set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-Os -g1")
endif()
if(NOT BRIVANE_SANITIZERS AND NOT APPLE)
  # A mistake in memory ends the program. Distributions, whose builds are of no type, bring flags of their
  # own. -fcf-protection would change nothing: Debian's start files and C++ archive are without it.
  string(APPEND CMAKE_CXX_FLAGS_RELWITHDEBINFO
    " -fPIE -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
  set(CMAKE_EXE_LINKER_FLAGS_RELWITHDEBINFO "-pie -Wl,-z,relro,-z,now")
  set(CMAKE_MODULE_LINKER_FLAGS_RELWITHDEBINFO "-Wl,-z,relro,-z,now")
endif()

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

if(NOT BRIVANE_SANITIZERS)
  # Of a batch only what is used is linked.
  add_compile_options(-ffunction-sections -fdata-sections)
endif()
# A newer compiler knows more warnings: --compile-no-warning-as-error builds in spite of them.
set(CMAKE_COMPILE_WARNING_AS_ERROR ON)
# No file that is built names a folder of the machine that it was built on.
add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow
                    "-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=" "-ffile-prefix-map=${CMAKE_BINARY_DIR}/=build/")
# Levels and gamma samples are the same on every processor: no fusing of a product with a sum.
add_compile_options(-ffp-contract=off)
include_directories("${PROJECT_SOURCE_DIR}")

if(BRIVANE_SANITIZERS)
  add_compile_options("-fsanitize=${BRIVANE_SANITIZERS}" -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options("-fsanitize=${BRIVANE_SANITIZERS}" -fuse-ld=lld)
endif()

if(BRIVANE_COVERAGE)
  # The counters are a mapped file, so those of a process that is aborted or killed count, too.
  add_compile_options("-fprofile-instr-generate=${CMAKE_BINARY_DIR}/counts/%c%m.profraw" -fcoverage-mapping
                      "SHELL:-mllvm -runtime-counter-relocation")
  add_link_options(-fprofile-instr-generate -fuse-ld=lld)
endif()

# Most of a compile is reading headers, so sources are compiled in batches: several times as fast, but a
# missing include goes unnoticed, and what files keep to themselves has to have names of its own. The
# preset asan compiles each of the program's sources by itself (with the standard library's headers read
# ahead), clang-tidy each source that changes.
set(BRIVANE_BATCHES all CACHE STRING "What is compiled in batches: all, tests or none")
function(brivane_compile_in_batches target size)
  if(BRIVANE_BATCHES STREQUAL "none")
    return()
  endif()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${size})
  # A name of one file is no shadow on another file.
  target_compile_options(${target} PRIVATE -Wno-shadow)
endfunction()

# What isn't run under a sanitizer is there for the other compiler to look at.
function(brivane_only_compiled target)
  if(BRIVANE_SANITIZERS)
    target_compile_options(${target} PRIVATE -fno-sanitize=all -g0)
  endif()
endfunction()

# brivane_library(name folder [EXCEPT path...]): every source below the folder but those files and folders.
# Under the address sanitizer it counts what inputs reach, for the fuzzing tests.
function(brivane_library name folder)
  cmake_parse_arguments(ARG "" "" "EXCEPT" ${ARGN})
  file(GLOB_RECURSE sources RELATIVE "${PROJECT_SOURCE_DIR}/${folder}" CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/${folder}/*.cpp")
  foreach(path IN LISTS ARG_EXCEPT)
    list(FILTER sources EXCLUDE REGEX "^${path}")
  endforeach()
  list(TRANSFORM sources PREPEND "${PROJECT_SOURCE_DIR}/${folder}/")
  add_library(${name} STATIC ${sources})
  if(BRIVANE_SANITIZERS MATCHES "address")
    target_compile_options(${name} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
  if(BRIVANE_BATCHES STREQUAL "all")
    brivane_compile_in_batches(${name} 16)
  elseif(BRIVANE_BATCHES STREQUAL "tests")
    # Each by itself, but for what most of them include of the standard library.
    target_precompile_headers(${name} PRIVATE <algorithm> <array> <chrono> <cmath> <cstdint> <filesystem>
      <functional> <limits> <map> <memory> <mutex> <optional> <set> <span> <string> <string_view> <utility>
      <variant> <vector>)
  endif()
endfunction()
