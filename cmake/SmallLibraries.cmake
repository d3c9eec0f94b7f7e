# Libraries that are linked in, so that no start has to find and bind them: the C++ library, which takes
# longer than anything else that a start does, and small parts of XCB. Sets cxx_library, options for
# the linker, and xcb_parts.

option(BRIVANE_SHARED_LIBRARIES "Load them at each start instead, as distributions want" OFF)

# archive_of(file variable): the archive's path, or nothing where the system has none.
function(archive_of file variable)
  execute_process(COMMAND "${CMAKE_CXX_COMPILER}" "-print-file-name=${file}"
    OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(BRIVANE_SHARED_LIBRARIES OR NOT IS_ABSOLUTE "${path}")
    set(path)
    message(STATUS "Brivane is linked with the shared library in place of ${file}")
  endif()
  set(${variable} "${path}" PARENT_SCOPE)
endfunction()

archive_of(libstdc++.a archive)
if(archive)
  set(cxx_library -static-libstdc++ -static-libgcc)
endif()

foreach(part IN ITEMS xkb screensaver xinput)
  archive_of(libxcb-${part}.a archive)
  if(NOT archive)
    pkg_check_modules(XCB_${part} REQUIRED IMPORTED_TARGET xcb-${part})
    set(archive PkgConfig::XCB_${part})
  endif()
  list(APPEND xcb_parts ${archive})
endforeach()
