# Run by CPack before it packs: gives the documents the names and the form that Debian asks for.

set(root "${CPACK_TEMPORARY_INSTALL_DIRECTORY}")
set(documents "${root}/usr/share/doc/brivane")

# The notice of the headers that are compiled in, which is to come with each copy of them.
set(json "/usr/share/doc/nlohmann-json3-dev/copyright")
execute_process(COMMAND awk [[BEGIN { RS = ""; ORS = "\n\n" } /^Files: (\*|include)/ || /^License: Expat/]] "${json}"
  OUTPUT_VARIABLE json_notice OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
if(NOT json_notice MATCHES "Copyright:.*Permission is hereby granted")
  message(FATAL_ERROR "The package needs the JSON library's notice, and there is none in ${json}.")
endif()

file(READ "${documents}/LICENSE" license)
file(REMOVE "${documents}/LICENSE")
file(WRITE "${documents}/copyright" "${license}
The programs contain parts of the C++ library and of libxcb. Debian's packages
have their licenses: /usr/share/doc/libstdc++6/copyright, /usr/share/doc/libxcb1/copyright.

They also contain parts of nlohmann-json3-dev, with this notice:

${json_notice}
")

file(RENAME "${documents}/CHANGELOG.md" "${documents}/changelog")
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE "${documents}/changelog.Debian"
  "brivane (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium

  * Release ${CPACK_PACKAGE_VERSION}; changelog.gz says what is new.

 -- ${CPACK_DEBIAN_PACKAGE_MAINTAINER}  ${date}
")

file(GLOB pages "${root}/usr/share/man/man1/*.1")
execute_process(COMMAND gzip -9n ${pages} "${documents}/changelog" "${documents}/changelog.Debian"
  COMMAND_ERROR_IS_FATAL ANY)
execute_process(
  COMMAND install -D -m 644 "${CMAKE_CURRENT_LIST_DIR}/lintian-overrides" "${root}/usr/share/lintian/overrides/brivane"
  COMMAND_ERROR_IS_FATAL ANY)

set(completions "${root}/usr/share/zsh")
if(EXISTS "${completions}/site-functions")
  file(RENAME "${completions}/site-functions" "${completions}/vendor-completions")
endif()
