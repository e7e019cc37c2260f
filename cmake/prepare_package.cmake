# Run by CPack on the folder that becomes the archive.
set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY})

# The notices of what tolvanixkit is built with.
function(add_notices folder)
  foreach(package ${ARGN})
    file(INSTALL /usr/share/doc/${package}/copyright DESTINATION ${folder} RENAME ${package})
  endforeach()
endfunction()

if(CPACK_GENERATOR STREQUAL "DEB")
  set(share ${root}/usr/share)
  set(documents ${share}/doc/tolvanix)
  file(INSTALL ${CPACK_DEBIAN_SOURCE_FOLDER}/copyright DESTINATION ${documents})
  file(INSTALL ${CPACK_DEBIAN_SOURCE_FOLDER}/changelog DESTINATION ${documents}
    RENAME changelog.Debian)
  file(RENAME ${documents}/CHANGELOG.md ${documents}/changelog)
  file(INSTALL ${CPACK_DEBIAN_SOURCE_FOLDER}/lintian-overrides DESTINATION ${share}/lintian/overrides
    RENAME tolvanix)
  add_notices(${documents}/notices libcli11-dev nlohmann-json3-dev)
  file(GLOB manuals ${share}/man/man1/*.1)
  execute_process(COMMAND gzip -9n ${documents}/changelog ${documents}/changelog.Debian ${manuals}
    COMMAND_ERROR_IS_FATAL ANY)
else()
  add_notices(${root}/notices libcli11-dev nlohmann-json3-dev mingw-w64-x86-64-dev)
endif()
# The zip has the times of its files; the Debian package takes SOURCE_DATE_EPOCH by itself.
execute_process(COMMAND find ${root} -exec touch -h -d @$ENV{SOURCE_DATE_EPOCH} {} +
  COMMAND_ERROR_IS_FATAL ANY)
