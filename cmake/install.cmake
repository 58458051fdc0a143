# What is installed, and the Debian package made of it. Included by the top CMakeLists.txt once all
# targets are there.
include(GNUInstallDirs)

install(TARGETS vantrel-cron vantrel-sample-site RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES man/vantrel-sample-site.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES examples/crontab examples/logrotate
  "examples/vantrel-cron@.service" "examples/vantrel-cron@.timer"
  DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)
install(PROGRAMS examples/set-trade.py DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)
install(FILES "examples/vantrel-watch@.service" "examples/vantrel-watch@.timer"
  "examples/vantrel-trouble@.service" examples/prometheus-rules.yml
  DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR} FILES_MATCHING PATTERN "*.md")
install(FILES README.md DESTINATION ${CMAKE_INSTALL_DOCDIR} OPTIONAL)

# Manual pages: the list of events and the file formats are printed from their sources.
set(VANTREL_MAN ${CMAKE_BINARY_DIR}/man)
file(MAKE_DIRECTORY ${VANTREL_MAN})
find_program(VANTREL_AWK awk)
set(VANTREL_PAGES)
if(TARGET vantrel-inspect)
  install(TARGETS vantrel-inspect RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES man/vantrel-inspect.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  add_custom_command(OUTPUT ${VANTREL_MAN}/vantrel-cron.8
    COMMAND vantrel-event-pages < ${CMAKE_SOURCE_DIR}/man/vantrel-cron.8.in
      > ${VANTREL_MAN}/vantrel-cron.8
    DEPENDS vantrel-event-pages ${CMAKE_SOURCE_DIR}/man/vantrel-cron.8.in VERBATIM)
  list(APPEND VANTREL_PAGES ${VANTREL_MAN}/vantrel-cron.8)
  install(FILES ${VANTREL_MAN}/vantrel-cron.8 DESTINATION ${CMAKE_INSTALL_MANDIR}/man8)
endif()
if(VANTREL_AWK)
  add_custom_command(OUTPUT ${VANTREL_MAN}/vantrel-site.5
    COMMAND ${VANTREL_AWK} -f ${CMAKE_SOURCE_DIR}/man/site-page.awk
      ${CMAKE_SOURCE_DIR}/docs/files.md > ${VANTREL_MAN}/vantrel-site.5
    DEPENDS ${CMAKE_SOURCE_DIR}/man/site-page.awk ${CMAKE_SOURCE_DIR}/docs/files.md VERBATIM)
  list(APPEND VANTREL_PAGES ${VANTREL_MAN}/vantrel-site.5)
  install(FILES ${VANTREL_MAN}/vantrel-site.5 DESTINATION ${CMAKE_INSTALL_MANDIR}/man5)
endif()
add_custom_target(man ALL DEPENDS ${VANTREL_PAGES})

# cpack in the build directory makes the package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vantrel)
set(CPACK_PACKAGE_CONTACT "The webmaster <root@localhost>")
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
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "cron | systemd, tar")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "default-mta | mail-transport-agent, logrotate")
include(CPack)
