# Installation in Debian's layout for games, and a Debian package of it:
#   cmake --install build --prefix /usr --strip     (or)     scripts/package.sh
# Only the component "torvy" goes into the package, so that nothing that a test,
# benchmark or tool might one day install ends up in it.
include(GNUInstallDirs)

set(TORVY_MAINTAINER "Torvy developers <maintainers@users.noreply.c-seed-10defe73.example>"
    CACHE STRING "Maintainer named in the Debian package and its changelog")
set(TORVY_DOC_DIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/torvy)

# Debian wants manual pages and changelogs compressed at the highest level and without a
# timestamp inside, so that two builds of the same source give the same package.
find_program(TORVY_GZIP gzip REQUIRED)
configure_file(${CMAKE_SOURCE_DIR}/doc/torvy.6.in ${CMAKE_BINARY_DIR}/packaging/torvy.6 @ONLY)
configure_file(${CMAKE_SOURCE_DIR}/packaging/changelog.in ${CMAKE_BINARY_DIR}/packaging/changelog @ONLY)
set(TORVY_GZIPPED)
foreach(source ${CMAKE_BINARY_DIR}/packaging/torvy.6 ${CMAKE_BINARY_DIR}/packaging/changelog)
  get_filename_component(name ${source} NAME)
  set(copy ${CMAKE_BINARY_DIR}/packaging/gz/${name})
  add_custom_command(OUTPUT ${copy}.gz
    COMMAND ${CMAKE_COMMAND} -E copy ${source} ${copy}
    COMMAND ${TORVY_GZIP} -9nf ${copy}
    DEPENDS ${source} VERBATIM)
  list(APPEND TORVY_GZIPPED ${copy}.gz)
endforeach()
add_custom_target(torvy_docs ALL DEPENDS ${TORVY_GZIPPED})

# Debian's hardening: the whole global offset table read-only once the program is loaded.
target_link_options(torvy PRIVATE -Wl,-z,relro,-z,now)

install(TARGETS torvy RUNTIME DESTINATION games COMPONENT torvy)
# A stripping install also drops the compiler's notes, which nothing at run time reads.
install(CODE "if(CMAKE_INSTALL_DO_STRIP)
  execute_process(COMMAND \"${CMAKE_STRIP}\" --remove-section=.comment --remove-section=.note
                          \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/games/torvy\")
endif()" COMPONENT torvy)
install(FILES ${CMAKE_BINARY_DIR}/packaging/gz/torvy.6.gz
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man6 COMPONENT torvy)
install(FILES ${CMAKE_SOURCE_DIR}/packaging/torvy.eng
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/games/plugins/xboard COMPONENT torvy)
install(FILES ${CMAKE_SOURCE_DIR}/packaging/torvy.png
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/games/plugins/logos COMPONENT torvy)
install(FILES ${CMAKE_SOURCE_DIR}/README.md ${CMAKE_SOURCE_DIR}/packaging/torvy.ini
              ${CMAKE_SOURCE_DIR}/packaging/copyright ${CMAKE_BINARY_DIR}/packaging/gz/changelog.gz
        DESTINATION ${TORVY_DOC_DIR} COMPONENT torvy)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME torvy)
set(CPACK_PACKAGE_VENDOR "Torvy developers")
set(CPACK_PACKAGE_CONTACT "${TORVY_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "chess engine for xboard")
set(CPACK_PACKAGE_DESCRIPTION
"Torvy plays and analyses standard chess for xboard and other graphical front
ends over the xboard protocol, version 2. It searches on as many threads as it
is given, plays from a Polyglot opening book, and probes Gaviota endgame
tablebases of up to five men.

At a terminal it also counts move trees (perft, divide), checks its move
generator against known positions, and shows how it evaluates a position.
xboard finds the engine by itself through its plugin file.")
set(CPACK_INSTALL_CMAKE_PROJECTS "${CMAKE_BINARY_DIR};Torvy;torvy;/")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION games)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "xboard, gaviotatb")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${CMAKE_SOURCE_DIR}/packaging/postinst)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# The packages land beside the build, not among its files.
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/package)
include(CPack)
