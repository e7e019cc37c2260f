# Run by CPack on the folder that becomes the archive.
set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY})

# The notices of what tolvanixkit is built with.
function(add_notices folder)
  file(MAKE_DIRECTORY ${folder})
  foreach(package ${ARGN})
    file(COPY_FILE /usr/share/doc/${package}/copyright ${folder}/${package})
  endforeach()
endfunction()

if(CPACK_GENERATOR STREQUAL "DEB")
  set(documents ${root}/usr/share/doc/tolvanix)
  file(COPY_FILE ${CPACK_DEBIAN_SOURCE_FOLDER}/copyright ${documents}/copyright)
  file(MAKE_DIRECTORY ${root}/usr/share/lintian/overrides)
  file(COPY_FILE ${CPACK_DEBIAN_SOURCE_FOLDER}/lintian-overrides
    ${root}/usr/share/lintian/overrides/tolvanix)
  file(COPY_FILE ${CPACK_DEBIAN_SOURCE_FOLDER}/changelog ${documents}/changelog.Debian)
  file(RENAME ${documents}/CHANGELOG.md ${documents}/changelog)
  add_notices(${documents}/notices libcli11-dev nlohmann-json3-dev)
  file(GLOB manuals ${root}/usr/share/man/man1/*.1)
  execute_process(COMMAND gzip -9n ${documents}/changelog ${documents}/changelog.Debian ${manuals}
    COMMAND_ERROR_IS_FATAL ANY)
else()
  add_notices(${root}/notices libcli11-dev nlohmann-json3-dev mingw-w64-x86-64-dev)
endif()
