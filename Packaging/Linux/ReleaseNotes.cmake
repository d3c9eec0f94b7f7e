# Reads CHANGELOG.md, whose headings are "## VERSION, YEAR-MONTH-DAY", the newest first. Sets
# BRIVANE_RELEASES to its releases as AppStream metadata, and release_date to the day of the newest.

set(changelog "${PROJECT_SOURCE_DIR}/CHANGELOG.md")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${changelog}")
file(READ "${changelog}" BRIVANE_RELEASES)
if(NOT BRIVANE_RELEASES MATCHES "^# Changelog\n\n(## ([0-9.]+), ([0-9]+-[0-9]+-[0-9]+)\n.*)$" OR
   NOT CMAKE_MATCH_2 STREQUAL PROJECT_VERSION)
  message(FATAL_ERROR " CHANGELOG.md: the newest heading must be \"## ${PROJECT_VERSION}, YEAR-MONTH-DAY\"")
endif()
set(BRIVANE_RELEASES "${CMAKE_MATCH_1}")
set(release_date "${CMAKE_MATCH_3}")

# replace(pattern replacement): in all of the text.
function(replace pattern replacement)
  string(REGEX REPLACE "${pattern}" "${replacement}" text "${BRIVANE_RELEASES}")
  set(BRIVANE_RELEASES "${text}" PARENT_SCOPE)
endfunction()
set(end "</ul></description></release>")
replace("&" "&amp;")
replace("<" "&lt;")
replace("`" "")
replace("\n  +" " ")
replace("\n- ([^\n]*)" "\n<li>\\1</li>")
replace("\n+## " "\n${end}\n## ")
replace("## ([0-9.]+), ([0-9-]+)\n+" "<release version=\"\\1\" date=\"\\2\"><description><ul>\n")
string(APPEND BRIVANE_RELEASES "${end}")
