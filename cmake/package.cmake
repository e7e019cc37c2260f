# What users get, made by scripts/package.sh: for Windows a zip, else a Debian package.
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The Tolvanix Founders")
set(CPACK_PACKAGE_CONTACT "The Tolvanix Founders <tolvanix@example.com>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "inventory and driver updates of PCI devices")
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/prepare_package.cmake)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME tolvanix-${PROJECT_VERSION}-windows-x64)
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
  set(CPACK_DEBIAN_PACKAGE_SECTION admin)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS pci.ids)
  set(CPACK_DEBIAN_PACKAGE_SUGGESTS libxml2-utils)
  set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
  set(CPACK_PACKAGE_DESCRIPTION
"Tolvanix takes inventory of a computer's PCI devices, and judges driver
packages for Windows against the computers that registry exports describe.
For the authors of driver packages there are a companion program that
reports, explains and checks, the interface of validation libraries, and a
sample package in source.")
  set(CPACK_DEBIAN_SOURCE_FOLDER ${PROJECT_SOURCE_DIR}/deploy/debian)
endif()
include(CPack)
