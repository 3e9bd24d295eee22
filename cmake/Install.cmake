# cmake --install: headers, libraries, zibsim if it is built, a package for find_package(ZibMessaging) and
# one for pkg-config.

include(CMakePackageConfigHelpers)

set(libraries ZibC ZibMessaging ZibCoreBoundary ZibPlatform)
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/ZibMessaging)
install(TARGETS ${libraries} EXPORT ZibMessaging ARCHIVE COMPONENT module)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/Sources/ DESTINATION ${ZIB_INSTALL_HEADERS} COMPONENT module
  FILES_MATCHING PATTERN "*.h" PATTERN ZibObjectiveC EXCLUDE)
install(EXPORT ZibMessaging NAMESPACE Zib:: DESTINATION ${package} COMPONENT module
  FILE ZibMessagingTargets.cmake)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/ZibMessagingConfig.cmake.in
  ${PROJECT_BINARY_DIR}/ZibMessagingConfig.cmake INSTALL_DESTINATION ${package})
# Before 1.0 a minor version may break what uses it.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZibMessagingConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZibMessagingConfig.cmake
  ${PROJECT_BINARY_DIR}/ZibMessagingConfigVersion.cmake
  DESTINATION ${package} COMPONENT module)

set(ZIB_PKGCONFIG_LIBS "")
foreach(library ${libraries})
  string(APPEND ZIB_PKGCONFIG_LIBS " -l${library}")
endforeach()
# The C++ library is for hosts in C, whose compiler does not bring it.
if(APPLE)
  string(APPEND ZIB_PKGCONFIG_LIBS " -lc++")
else()
  string(APPEND ZIB_PKGCONFIG_LIBS " -lstdc++")
  string(APPEND ZIB_PKGCONFIG_LIBS " -Wl,--no-as-needed -lBlocksRuntime -lgnustep-base -lobjc -Wl,--as-needed")
endif()
# The prefix is found from the file's own place, so that the tree can be moved.
file(RELATIVE_PATH ZIB_PKGCONFIG_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${PROJECT_SOURCE_DIR}/cmake/zibmessaging.pc.in ${PROJECT_BINARY_DIR}/zibmessaging.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zibmessaging.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT module)

if(ZIB_BUILD_SIMULATOR)
  set(loaded ${CMAKE_INSTALL_LIBDIR}/zibsim)
  install(TARGETS ZibHTTP LIBRARY COMPONENT zibsim DESTINATION ${loaded})
  # The tree can be moved.
  file(RELATIVE_PATH path /${CMAKE_INSTALL_BINDIR} /${loaded})
  set_property(TARGET zibsim PROPERTY INSTALL_RPATH $ORIGIN/${path})
  install(TARGETS zibsim RUNTIME COMPONENT zibsim)
  include(Package)
endif()
