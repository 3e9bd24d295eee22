# cpack: zibsim alone, as a .deb and as a tarball that runs wherever it is unpacked.

set(data ${CMAKE_INSTALL_DATADIR})
install(FILES ${PROJECT_SOURCE_DIR}/docs/zibsim.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT zibsim)
install(FILES ${PROJECT_SOURCE_DIR}/cmake/package/zibsim.bash RENAME zibsim
  DESTINATION ${data}/bash-completion/completions COMPONENT zibsim)
install(FILES ${PROJECT_SOURCE_DIR}/cmake/package/_zibsim
  DESTINATION ${data}/zsh/vendor-completions COMPONENT zibsim)
install(FILES ${PROJECT_SOURCE_DIR}/docs/zibsim.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
  DESTINATION ${data}/doc/zibsim COMPONENT zibsim)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE RENAME copyright DESTINATION ${data}/doc/zibsim COMPONENT zibsim)
file(GLOB examples CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/Examples/*.json)
install(FILES ${examples} DESTINATION ${data}/zibsim/examples COMPONENT zibsim)
# For editors. Printed when it is installed, by the zibsim that is.
set(schema ${PROJECT_BINARY_DIR}/scenario.schema.json)
install(CODE "execute_process(COMMAND \"$<TARGET_FILE:zibsim>\" schema OUTPUT_FILE \"${schema}\"
  COMMAND_ERROR_IS_FATAL ANY)" COMPONENT zibsim)
install(FILES ${schema} DESTINATION ${data}/zibsim COMPONENT zibsim)

set(CPACK_GENERATOR DEB TGZ)
set(CPACK_COMPONENTS_ALL zibsim)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_PACKAGE_NAME zibsim)
set(CPACK_PACKAGE_CONTACT "The ZibMessaging developers <zibmessaging@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "simulated device that plays push scenarios")
set(CPACK_STRIP_FILES ON)
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ZIBSIM_PACKAGE_NAME zibsim)
set(CPACK_DEBIAN_ZIBSIM_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ZIBSIM_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_ARCHIVE_ZIBSIM_FILE_NAME zibsim-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
include(CPack)
