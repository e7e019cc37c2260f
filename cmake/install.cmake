# What `cmake --install` puts where: on Windows one folder, elsewhere the usual ones.
# The sdk, what else its sources need to be built (cmake -S sdk -B <build folder>), and what makes a
# description of a computer to try packages on.
function(install_sdk folder)
  install(DIRECTORY sdk cmake DESTINATION ${folder} FILES_MATCHING
    PATTERN *.cmake PATTERN CMakeLists.txt PATTERN README.md PATTERN *.h PATTERN *.cpp
    PATTERN exports.* PATTERN *.xml PATTERN *.xsd PATTERN *.inf PATTERN *.reg
    PATTERN install.cmake EXCLUDE PATTERN *package.cmake EXCLUDE)
  install(PROGRAMS kit/collect-computer.sh DESTINATION ${folder})
  install(FILES kit/collect-computer.cmd DESTINATION ${folder})
  install(DIRECTORY src/text src/winapi DESTINATION ${folder}/src)
  install(FILES src/app/tolvanix.manifest src/app/tolvanix.rc.in DESTINATION ${folder}/src/app)
endfunction()

if(WIN32)
  install(TARGETS tolvanix tolvanixkit RUNTIME DESTINATION .)
  install(TARGETS tolvanix RUNTIME DESTINATION sample-package)
  install(TARGETS kivvalid LIBRARY DESTINATION sample-package)
  install(TARGETS tolvanixhelper64 RUNTIME DESTINATION sample-package/tolvanixhelper64)
  install(FILES sdk/sample/package.xml sdk/sample/samplenet.inf sdk/sample/samplestor.inf
    DESTINATION sample-package)
  install_sdk(.)
  install(FILES README.md CHANGELOG.md DESTINATION .)
  install(DIRECTORY docs/ DESTINATION docs FILES_MATCHING PATTERN *.md PATTERN *.xsd
    PATTERN man EXCLUDE PATTERN architecture.md EXCLUDE)
  install(FILES deploy/install.cmd DESTINATION deploy)
  install(DIRECTORY deploy/ansible DESTINATION deploy)
else()
  # The program makes its own folder current, so it has one of its own. Every run starts a debug
  # file there, which is to leave nothing.
  install(TARGETS tolvanix RUNTIME DESTINATION lib/tolvanix)
  file(CREATE_LINK /dev/null ${PROJECT_BINARY_DIR}/tolvanix_debug.log SYMBOLIC)
  install(FILES ${PROJECT_BINARY_DIR}/tolvanix_debug.log DESTINATION lib/tolvanix)
  install(PROGRAMS deploy/tolvanix.sh DESTINATION bin RENAME tolvanix)
  install(TARGETS tolvanixkit RUNTIME DESTINATION bin)
  install(FILES sdk/kivvalid.h DESTINATION include/tolvanix)
  install_sdk(share/tolvanix)
  install(DIRECTORY deploy/ansible DESTINATION share/tolvanix/deploy)
  install(FILES README.md CHANGELOG.md DESTINATION share/doc/tolvanix)
  install(DIRECTORY docs/ DESTINATION share/doc/tolvanix/docs FILES_MATCHING PATTERN *.md
    PATTERN *.xsd PATTERN man EXCLUDE PATTERN architecture.md EXCLUDE)
  install(FILES docs/man/tolvanix.1 docs/man/tolvanixkit.1 DESTINATION share/man/man1)
  foreach(command tolvanix tolvanixkit)
    install(FILES deploy/completions/${command}.bash RENAME ${command}
      DESTINATION share/bash-completion/completions)
    install(FILES deploy/completions/_${command} DESTINATION share/zsh/vendor-completions)
    install(FILES deploy/completions/${command}.fish DESTINATION share/fish/vendor_completions.d)
  endforeach()
endif()
