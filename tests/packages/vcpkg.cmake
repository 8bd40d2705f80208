# Runs the port as vcpkg does, whose functions stand here in short; there is no network to have it by.
# usage: cmake -DPORT_FILE=... -DFOLDER=... -P vcpkg.cmake

cmake_minimum_required(VERSION 3.25)
get_filename_component(folder "${PORT_FILE}" DIRECTORY)
get_filename_component(PORT "${folder}" NAME)
set(CURRENT_PACKAGES_DIR "${FOLDER}/package")
file(READ "${folder}/vcpkg.json" manifest)
string(JSON name GET "${manifest}" name)
string(JSON version GET "${manifest}" version)
file(STRINGS "${folder}/../../../CMakeLists.txt" project REGEX "^project\\(morandel VERSION ${version} ")
if(NOT name STREQUAL PORT OR NOT project)
  message(FATAL_ERROR "vcpkg.json has another name or version: ${name} ${version}")
endif()

function(run)
  execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
endfunction()

function(vcpkg_cmake_configure)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "SOURCE_PATH" "OPTIONS")
  run(${CMAKE_COMMAND} -G Ninja -S ${arg_SOURCE_PATH} -B ${FOLDER}/build -DCMAKE_BUILD_TYPE=Release
    -DCMAKE_INSTALL_PREFIX=${CURRENT_PACKAGES_DIR} -DCMAKE_INSTALL_LIBDIR=lib
    -DCMAKE_FIND_PACKAGE_NO_PACKAGE_REGISTRY=ON ${arg_OPTIONS})
endfunction()

function(vcpkg_cmake_install)
  run(${CMAKE_COMMAND} --build ${FOLDER}/build --target install)
endfunction()

function(vcpkg_cmake_config_fixup)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "PACKAGE_NAME;CONFIG_PATH" "")
  if(NOT EXISTS ${CURRENT_PACKAGES_DIR}/${arg_CONFIG_PATH}/${arg_PACKAGE_NAME}-config.cmake)
    message(FATAL_ERROR "there is no CMake package in ${arg_CONFIG_PATH}")
  endif()
endfunction()

function(vcpkg_fixup_pkgconfig)
  file(GLOB found ${CURRENT_PACKAGES_DIR}/lib/pkgconfig/*.pc)
  if(NOT found)
    message(FATAL_ERROR "there is no pkg-config file")
  endif()
endfunction()

# Included, the port would see this file's folder.
file(MAKE_DIRECTORY ${CURRENT_PACKAGES_DIR}/share/${PORT})
include(${PORT_FILE})
