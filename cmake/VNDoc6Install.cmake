# What `cmake --install` gives a consumer: the library, its headers under include/vndoc6, and a
# package that find_package(vndoc6) finds.
include(CMakePackageConfigHelpers)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/vndoc6)

install(
  TARGETS vndoc6
  EXPORT vndoc6
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(
  TARGETS vndoc6_drawing
  EXPORT vndoc6
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT vndoc6 FILE vndoc6-targets.cmake NAMESPACE vndoc6:: DESTINATION ${package_folder})

configure_package_config_file(
  ${PROJECT_SOURCE_DIR}/cmake/vndoc6-config.cmake.in ${PROJECT_BINARY_DIR}/vndoc6-config.cmake
  INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/vndoc6-config-version.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/vndoc6-config.cmake
              ${PROJECT_BINARY_DIR}/vndoc6-config-version.cmake DESTINATION ${package_folder})
