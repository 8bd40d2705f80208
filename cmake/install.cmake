# cmake --install: libraries, headers, the command, a CMake package and a pkg-config file.

include(CMakePackageConfigHelpers)

install(TARGETS morandel morandel_static EXPORT morandel
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
if(MORANDEL_BUILD_COMMAND)
  install(TARGETS morandel_command RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h" PATTERN "*.hpp")

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
  install(FILES ${generated}/Morandel10.def ${generated}/Morandel10.lib
    DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(DIRECTORY examples/ DESTINATION examples PATTERN *.config EXCLUDE)
  return()
endif()

if(MORANDEL_BUILD_COMMAND)
  install(FILES docs/man/morandel.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES docs/man/zh_CN/morandel.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/zh_CN/man1)
  install(FILES completion/morandel.bash RENAME morandel
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES completion/morandel.zsh RENAME _morandel
    DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
  install(FILES completion/morandel.fish
    DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
endif()

install(FILES examples/prepared.c examples/prepared.cpp examples/prepared.pas examples/prepared.py
    examples/Prepared.cs examples/Prepared.exe.config
  DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)

file(RELATIVE_PATH pkgconfig_to_prefix /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(cmake/morandel.pc.in morandel.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/morandel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
