# compare_declarations(TARGET SOURCE...): compiles those sources of this folder, with what compare.py
# writes for them.
function(compare_declarations target)
  set(folder "${PROJECT_SOURCE_DIR}/Tests/Mac/AbiCheck")
  set(written "${CMAKE_CURRENT_BINARY_DIR}/abi-check")
  set(comparisons "${written}/CInterfaces.inc" "${written}/AppKit.inc")
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/Packaging/macOS/include/*.h" "${PROJECT_SOURCE_DIR}/Tests/Mac/Machine/include/*.h")
  add_custom_command(
    OUTPUT ${comparisons}
    COMMAND python3 -B "${folder}/compare.py" "${written}"
    DEPENDS "${folder}/compare.py" ${headers}
    WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
    COMMENT "Writing what compares the Mac's declarations"
    VERBATIM)
  list(TRANSFORM ARGN PREPEND "${folder}/")
  add_library(${target} OBJECT EXCLUDE_FROM_ALL ${ARGN} ${comparisons})
  target_include_directories(${target} PRIVATE "${written}")
endfunction()
