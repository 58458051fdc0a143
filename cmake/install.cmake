# What is installed, and the Debian package made of it. Included by the top CMakeLists.txt once all
# targets are there.
include(GNUInstallDirs)

# The day of the release stands beside its number, in the first heading of the list of changes.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/CHANGELOG.md)
file(STRINGS ${CMAKE_SOURCE_DIR}/CHANGELOG.md VANTREL_RELEASE REGEX "^## " LIMIT_COUNT 1)
if(NOT VANTREL_RELEASE MATCHES "^## ${PROJECT_VERSION}, ([0-9]+-[0-9]+-[0-9]+)$")
  message(FATAL_ERROR "The first heading of CHANGELOG.md is not \"## ${PROJECT_VERSION}, YYYY-MM-DD\"")
endif()
set(VANTREL_DATE ${CMAKE_MATCH_1})
set(VANTREL_MAINTAINER "The Vantrel maintainers <maintainers@vantrel.example>" CACHE STRING
  "Name and address in the package")

install(TARGETS vantrel-cron vantrel-sample-site vantrel-day
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# Manual pages: the list of events and the file formats are printed from their sources.
set(VANTREL_MAN ${CMAKE_BINARY_DIR}/man)
file(MAKE_DIRECTORY ${VANTREL_MAN})
find_program(VANTREL_AWK awk)
set(VANTREL_PAGES)
if(TARGET vantrel-inspect)
  install(TARGETS vantrel-inspect RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  add_custom_command(OUTPUT ${VANTREL_MAN}/vantrel-cron.8
    COMMAND vantrel-event-pages < ${CMAKE_SOURCE_DIR}/man/vantrel-cron.8.in
      > ${VANTREL_MAN}/vantrel-cron.8
    DEPENDS vantrel-event-pages ${CMAKE_SOURCE_DIR}/man/vantrel-cron.8.in VERBATIM)
  list(APPEND VANTREL_PAGES ${VANTREL_MAN}/vantrel-cron.8)
endif()
if(VANTREL_AWK)
  add_custom_command(OUTPUT ${VANTREL_MAN}/vantrel-site.5
    COMMAND ${VANTREL_AWK} -f ${CMAKE_SOURCE_DIR}/man/site-page.awk
      ${CMAKE_SOURCE_DIR}/docs/files.md > ${VANTREL_MAN}/vantrel-site.5
    DEPENDS ${CMAKE_SOURCE_DIR}/man/site-page.awk ${CMAKE_SOURCE_DIR}/docs/files.md VERBATIM)
  list(APPEND VANTREL_PAGES ${VANTREL_MAN}/vantrel-site.5)
  execute_process(COMMAND ${VANTREL_AWK} -v "maintainer=${VANTREL_MAINTAINER}"
      -f ${CMAKE_SOURCE_DIR}/packaging/changelog.awk ${CMAKE_SOURCE_DIR}/CHANGELOG.md
    OUTPUT_FILE ${CMAKE_BINARY_DIR}/changelog COMMAND_ERROR_IS_FATAL ANY)
endif()
add_custom_target(man ALL DEPENDS ${VANTREL_PAGES})
install(CODE "
  set(SOURCE \"${CMAKE_SOURCE_DIR}\")
  set(BUILD \"${CMAKE_BINARY_DIR}\")
  set(DATE \"${VANTREL_DATE}\")
  set(INSPECTOR $<TARGET_EXISTS:vantrel-inspect>)
  set(BINDIR \"${CMAKE_INSTALL_BINDIR}\")
  set(DATADIR \"${CMAKE_INSTALL_DATADIR}\")
  set(DOCDIR \"${CMAKE_INSTALL_DOCDIR}\")
  set(MANDIR \"${CMAKE_INSTALL_MANDIR}\")")
install(SCRIPT cmake/install_texts.cmake)

# The target "package" makes a Debian package, and an archive of a folder for where none can be installed:
# the same bytes wherever and whenever they are made.
set(CPACK_GENERATOR DEB TGZ)
execute_process(COMMAND date -u -d ${VANTREL_DATE} +%s
  OUTPUT_VARIABLE VANTREL_EPOCH OUTPUT_STRIP_TRAILING_WHITESPACE)
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_BINARY_DIR}/package.cmake)
file(WRITE ${CPACK_PROJECT_CONFIG_FILE} "set(ENV{SOURCE_DATE_EPOCH} ${VANTREL_EPOCH})
if(CPACK_GENERATOR STREQUAL TGZ)
  set(CPACK_SET_DESTDIR ON)
  set(CPACK_INSTALL_PREFIX /opt/vantrel)
  set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY OFF)
endif()
")
set(CPACK_PACKAGE_FILE_NAME vantrel-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_PACKAGE_NAME vantrel)
set(CPACK_PACKAGE_CONTACT "${VANTREL_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Once-a-minute maintenance run of a traffic-trading site")
set(CPACK_PACKAGE_DESCRIPTION
  "Counts the hits of the trades of a site every minute, ranks the trades and
writes the list the site sends its visitors by; keeps history and backups and
mails alerts. Comes with an inspector for the webmaster.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION web)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "cron | systemd")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "default-mta | mail-transport-agent, logrotate")
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_SOURCE_DIR}/cmake/repack.cmake)
if(TARGET vantrel-inspect)
  include(CPack)
else()
  message(STATUS "No target \"package\": it would lack the inspector")
endif()
