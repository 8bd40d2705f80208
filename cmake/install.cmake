# cmake --install: libraries, headers, the command, a CMake package and a pkg-config file.

include(CMakePackageConfigHelpers)

install(TARGETS morandel morandel_static EXPORT morandel
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
if(MORANDEL_BUILD_COMMAND)
  install(TARGETS morandel_command RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

foreach(header IN LISTS MORANDEL_HEADERS)
  cmake_path(GET header PARENT_PATH folder)
  install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/morandel/${folder})
endforeach()

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/morandel)
install(EXPORT morandel NAMESPACE morandel:: FILE morandel-targets.cmake DESTINATION ${package_folder})
configure_package_config_file(cmake/morandel-config.cmake.in morandel-config.cmake
  INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(morandel-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/morandel-config.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/morandel-config-version.cmake
  DESTINATION ${package_folder})

if(WIN32)
  install(FILES ${generated}/Morandel10.tlb ${generated}/Morandel10.manifest
    DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES ${generated}/morandel_com.h automation/morandel.idl
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/morandel/automation)
  install(DIRECTORY examples/ DESTINATION examples)
  return()
endif()

file(RELATIVE_PATH pkgconfig_to_prefix /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(cmake/morandel.pc.in morandel.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/morandel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
