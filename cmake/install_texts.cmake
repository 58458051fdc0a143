# A part of "cmake --install": the texts that name the programs, with the folder these come to lie in
# instead of /usr/local/bin, and the manual pages with the day of the release, compressed. Takes from
# its caller SOURCE, BUILD, DATE, INSPECTOR (whether it is built), and BINDIR, DATADIR, DOCDIR, MANDIR
# below the prefix.
cmake_policy(VERSION 3.25)
set(stage ${BUILD}/texts)
file(REMOVE_RECURSE ${stage})

# stage_text(FROM NAME): a copy of FROM in the staging folder, with this installation's paths.
function(stage_text from name)
  file(READ ${from} text)
  string(REGEX REPLACE "/usr/local/bin([/:])" "${CMAKE_INSTALL_PREFIX}/${BINDIR}\\1" text "${text}")
  string(REPLACE "/usr/local/share/doc/vantrel/" "${CMAKE_INSTALL_PREFIX}/${DOCDIR}/" text "${text}")
  string(REPLACE "@DATE@" "${DATE}" text "${text}")
  file(WRITE ${stage}/${name} "${text}")
endfunction()

function(stage_compressed from name)
  stage_text(${from} ${name})
  execute_process(COMMAND gzip -9nf ${stage}/${name} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(install_staged to)
  list(TRANSFORM ARGN PREPEND ${stage}/)
  file(INSTALL DESTINATION ${CMAKE_INSTALL_PREFIX}/${to} TYPE FILE FILES ${ARGN})
endfunction()

file(GLOB pages ${SOURCE}/man/*.[158] ${BUILD}/man/*.[158])
file(GLOB units ${SOURCE}/examples/*.service ${SOURCE}/examples/*.timer)
set(completed vantrel-inspect vantrel-sample-site vantrel-day)
if(NOT INSPECTOR)
  list(FILTER pages EXCLUDE REGEX vantrel-inspect)
  list(FILTER units EXCLUDE REGEX "vantrel-(watch|trouble)")
  list(REMOVE_ITEM completed vantrel-inspect)
endif()
foreach(page ${pages})
  cmake_path(GET page FILENAME name)
  cmake_path(GET page EXTENSION LAST_ONLY section)
  string(SUBSTRING ${section} 1 1 section)
  stage_compressed(${page} ${name})
  install_staged(${MANDIR}/man${section} ${name}.gz)
endforeach()

foreach(document packaging/README.md docs/concepts.md docs/files.md docs/operating.md
    packaging/copyright)
  cmake_path(GET document FILENAME name)
  stage_text(${SOURCE}/${document} ${name})
  install_staged(${DOCDIR} ${name})
endforeach()
if(EXISTS ${BUILD}/changelog)
  stage_compressed(${BUILD}/changelog changelog)
  install_staged(${DOCDIR} changelog.gz)
endif()

foreach(example crontab logrotate prometheus-rules.yml)
  stage_text(${SOURCE}/examples/${example} ${example})
  install_staged(${DOCDIR}/examples ${example})
endforeach()
file(INSTALL DESTINATION ${CMAKE_INSTALL_PREFIX}/${DOCDIR}/examples TYPE PROGRAM
  FILES ${SOURCE}/examples/set-trade.py)

foreach(unit ${units})
  cmake_path(GET unit FILENAME name)
  stage_text(${unit} ${name})
  install_staged(lib/systemd/system ${name})
endforeach()

# One file under the three names bash looks for.
foreach(program ${completed})
  stage_text(${SOURCE}/packaging/vantrel.bash ${program})
  install_staged(${DATADIR}/bash-completion/completions ${program})
endforeach()
