# Building for Apple silicon on Linux: zig compiles and links; what the system would give (headers,
# libraries to link against) are our own declarations and stubs. A Mac needs none of this.

set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_VERSION 22.0) # macOS 13
set(CMAKE_SYSTEM_PROCESSOR arm64)

set(BRIVANE_CROSS "${CMAKE_CURRENT_LIST_DIR}")
if(NOT DEFINED ENV{ZIG} AND NOT EXISTS "${BRIVANE_CROSS}/../../build/zig/complete")
  message(FATAL_ERROR " The cross compiler is missing. `Packaging/macOS/get-zig.sh` puts it into build/zig.")
endif()

foreach(language C OBJC)
  set(CMAKE_${language}_COMPILER "${BRIVANE_CROSS}/tools/zig-cc")
endforeach()
foreach(language CXX OBJCXX)
  set(CMAKE_${language}_COMPILER "${BRIVANE_CROSS}/tools/zig-c++")
endforeach()
set(CMAKE_AR "${BRIVANE_CROSS}/tools/zig-ar" CACHE FILEPATH "")
set(CMAKE_RANLIB "${BRIVANE_CROSS}/tools/zig-ranlib" CACHE FILEPATH "")
find_program(CMAKE_STRIP NAMES llvm-strip-16 REQUIRED)
find_program(CMAKE_NM NAMES llvm-nm-16 REQUIRED)
find_program(CMAKE_OTOOL NAMES llvm-otool-16 REQUIRED)
find_program(CMAKE_INSTALL_NAME_TOOL NAMES llvm-install-name-tool-16 REQUIRED)

# The tools' own -target says which processor and system.
foreach(variable CMAKE_OSX_SYSROOT CMAKE_OSX_DEPLOYMENT_TARGET CMAKE_OSX_ARCHITECTURES)
  set(${variable} "" CACHE STRING "")
endforeach()
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_FIND_ROOT_PATH "${BRIVANE_CROSS}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
foreach(kind LIBRARY INCLUDE PACKAGE)
  set(CMAKE_FIND_ROOT_PATH_MODE_${kind} ONLY)
endforeach()

# Without -fno-sanitize zig adds checks of its own where nothing is optimised.
foreach(language C CXX OBJC OBJCXX)
  set(CMAKE_${language}_FLAGS_INIT "-fno-sanitize=undefined -isystem ${BRIVANE_CROSS}/include")
endforeach()
