# The COM server, which on Windows is the shared library: Morandel10.dll. From the interface
# description come the type library, a resource, and the header of C++ hosts.

enable_language(RC)
find_program(WIDL NAMES ${MORANDEL_TOOL_PREFIX}widl widl REQUIRED)
# widl writes the time into a type library, so it is given one that never changes.
find_program(FAKETIME faketime REQUIRED)
set(widl ${CMAKE_COMMAND} -E env TZ=UTC ${FAKETIME} "2026-01-01 00:00:00" ${WIDL})
# Both come with Wine's development files, as the platform's own interface descriptions do.
find_path(MORANDEL_IDL_FOLDER oaidl.idl PATHS /usr/include/wine/wine/windows /usr/include/wine/windows
  NO_CMAKE_FIND_ROOT_PATH REQUIRED)
find_path(MORANDEL_TLB_FOLDER stdole2.tlb
  PATHS /usr/lib/x86_64-linux-gnu/wine/x86_64-windows /usr/lib/i386-linux-gnu/wine/i386-windows
  NO_CMAKE_FIND_ROOT_PATH REQUIRED)

set(description ${PROJECT_SOURCE_DIR}/automation/morandel.idl)
set(generated ${PROJECT_BINARY_DIR}/automation)
file(MAKE_DIRECTORY ${generated})
math(EXPR bits "8 * ${CMAKE_SIZEOF_VOID_P}")
if(bits EQUAL 64)
  set(MORANDEL_ARCHITECTURE amd64)
else()
  set(MORANDEL_ARCHITECTURE x86)
endif()

# The header names the file it comes from as it is given here, so without the folder: packages made
# in different folders are the same to the last byte.
set(MORANDEL_TYPE_LIBRARY ${generated}/Morandel10.tlb)
add_custom_command(OUTPUT ${MORANDEL_TYPE_LIBRARY}
  COMMAND ${widl} -m${bits} -t -I ${MORANDEL_IDL_FOLDER} -L ${MORANDEL_TLB_FOLDER}
    -o ${MORANDEL_TYPE_LIBRARY} morandel.idl
  WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}/automation DEPENDS ${description} VERBATIM)
add_custom_command(OUTPUT ${generated}/morandel_com.h
  COMMAND ${widl} -m${bits} -h -I ${MORANDEL_IDL_FOLDER} -L ${MORANDEL_TLB_FOLDER}
    -o ${generated}/morandel_com.h morandel.idl
  WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}/automation DEPENDS ${description} VERBATIM)
add_custom_target(morandel_com_header DEPENDS ${generated}/morandel_com.h)

set(MORANDEL_MANIFEST ${generated}/Morandel10.manifest)
configure_file(automation/Morandel10.manifest.in ${MORANDEL_MANIFEST} @ONLY)
configure_file(automation/morandel.rc.in ${generated}/morandel.rc @ONLY)
set_source_files_properties(${generated}/morandel.rc PROPERTIES OBJECT_DEPENDS
  "${MORANDEL_TYPE_LIBRARY};${MORANDEL_MANIFEST};${PROJECT_SOURCE_DIR}/automation/registry.rgs;${PROJECT_SOURCE_DIR}/automation/morandel.ico")

target_sources(morandel PRIVATE
  automation/arguments.cpp
  automation/class_factory.cpp
  automation/code_page.cpp
  automation/com_express.cpp
  automation/conversion.cpp
  automation/dispatch.cpp
  automation/entry_points.cpp
  automation/identifiers.cpp
  automation/module.cpp
  automation/registrar.cpp
  automation/registration.cpp
  automation/registry.cpp
  automation/type_information.cpp
  automation/exports.def
  ${generated}/morandel_com.h
  ${generated}/morandel.rc)
set_source_files_properties(${generated}/morandel.rc PROPERTIES
  INCLUDE_DIRECTORIES ${PROJECT_SOURCE_DIR}/automation)
target_include_directories(morandel SYSTEM PRIVATE ${generated})
target_compile_definitions(morandel PRIVATE UNICODE _WIN32_WINNT=0x0601)
target_link_libraries(morandel PRIVATE ole32 oleaut32 advapi32 uuid)
set_target_properties(morandel PROPERTIES PREFIX "" OUTPUT_NAME Morandel10)
# The DLL needs nothing but what Windows has.
target_link_options(morandel PRIVATE -static LINKER:--enable-stdcall-fixup ${MORANDEL_REPRODUCIBLE})
if(MINGW AND bits EQUAL 32)
  target_sources(morandel PRIVATE automation/frame_table.cpp automation/unwinding.cpp)
  target_link_options(morandel PRIVATE LINKER:--wrap=_Unwind_RaiseException)
endif()

# For other compilers.
add_custom_command(TARGET morandel POST_BUILD
  COMMAND bash ${PROJECT_SOURCE_DIR}/scripts/import-library $<TARGET_LINKER_FILE:morandel>
    $<TARGET_FILE_NAME:morandel> ${MORANDEL_TOOL_PREFIX} ${generated}/Morandel10
  BYPRODUCTS ${generated}/Morandel10.def ${generated}/Morandel10.lib VERBATIM)
