# When the packages are packed: packs each of them anew, so that its bytes depend on nothing but the
# files in it. CPack leaves their order to the file system, and modes to the umask of who builds. The
# time of all is SOURCE_DATE_EPOCH.
function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(package ${CPACK_PACKAGE_FILES})
  set(folder ${package}.files)
  file(REMOVE_RECURSE ${folder})
  file(MAKE_DIRECTORY ${folder})
  if(package MATCHES "deb$")
    run(dpkg-deb -R ${package} ${folder})
    run(sort -k 2 -o ${folder}/DEBIAN/md5sums ${folder}/DEBIAN/md5sums)
    # Folders have another size on each file system: each counts as 1 kB.
    run(sh -ec "cd '${folder}' && size=$(find usr -printf '%y %s\\n' |
      awk '{ size += $1 == \"d\" ? 1 : int(($2 + 1023) / 1024) } END { print size }') &&
      sed -i \"s/^Installed-Size:.*/Installed-Size: $size/\" DEBIAN/control")
    run(chmod -R u=rwX,go=rX ${folder})
    run(dpkg-deb --root-owner-group --threads-max=1 -b ${folder} ${package})
  else()
    run(tar -xzf ${package} -C ${folder})
    run(sh -ec "cd '${folder}' && tar -c --sort=name --format=gnu --owner=0 --group=0 --numeric-owner \
      --mode=u=rwX,go=rX --mtime=@$SOURCE_DATE_EPOCH * | gzip -9n >'${package}'")
  endif()
  run(chmod 644 ${package})
  file(REMOVE_RECURSE ${folder})
endforeach()
