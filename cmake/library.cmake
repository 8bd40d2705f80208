# The library, shared and static. Folders depend on one another one way, from the last to the first
# of this list.

set(MORANDEL_SOURCES
  base/errors.cpp
  base/numbers.cpp
  base/search.cpp
  arithmetic/operators.cpp
  arithmetic/rounding.cpp
  strfuncs/conversions.cpp
  strfuncs/joining.cpp
  strfuncs/parts.cpp
  strfuncs/searching.cpp
  strfuncs/string_node.cpp
  language/functions.cpp
  engine/block_kernels.cpp
  engine/blocks.cpp
  engine/evaluator.cpp
  engine/free_variables.cpp
  engine/grammar.cpp
  engine/machine.cpp
  engine/parameters.cpp
  engine/pending.cpp
  engine/recorder.cpp
  engine/token_reader.cpp
  engine/well_formed_text.cpp
  variables/calculation.cpp
  variables/record_store.cpp
  variables/variables.cpp
  checker/check_calls.cpp
  checker/checker.cpp
  formula/c_columns.cpp
  formula/c_error.cpp
  formula/c_formula.cpp
  formula/c_language.cpp
  formula/c_warnings.cpp
  formula/code_page.cpp
  formula/columns.cpp
  formula/computation.cpp
  formula/places.cpp
  formula/prepared.cpp
  formula/quick_code.cpp
  formula/recording.cpp
  formula/report.cpp
  formula/warnings.cpp)
if(WIN32)
  list(APPEND MORANDEL_SOURCES formula/system_code_page_windows.cpp)
elseif(CMAKE_SYSTEM_NAME STREQUAL "WASI")
  list(APPEND MORANDEL_SOURCES web/engine/charconv.cpp web/engine/system_code_page.cpp)
else()
  list(APPEND MORANDEL_SOURCES formula/system_code_page_iconv.cpp)
endif()

if(MINGW)
  list(APPEND MORANDEL_SOURCES arithmetic/platform_functions_mingw.cpp)
endif()

# Loops over blocks of rows are compiled for wider vectors too, where the system tells which ones the
# processor has. Nothing is fused, so that all give the same bits.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
  list(APPEND MORANDEL_SOURCES engine/block_kernels_avx2.cpp engine/block_kernels_avx512.cpp)
  set_source_files_properties(engine/block_kernels_avx2.cpp PROPERTIES
    COMPILE_OPTIONS "-mavx2;-mfma")
  set_source_files_properties(engine/block_kernels_avx512.cpp PROPERTIES
    COMPILE_OPTIONS "-mavx512f;-mavx512dq;-mfma;-mprefer-vector-width=512")
endif()

# Recursion that takes in itself, as -O3 lets it, needs more stack than a host's thread may have.
if(NOT MSVC)
  set_source_files_properties(checker/checker.cpp engine/grammar.cpp engine/token_reader.cpp
    PROPERTIES COMPILE_OPTIONS $<$<CONFIG:Release>:-O2>)
endif()

function(morandel_library target kind)
  add_library(${target} ${kind} ${MORANDEL_SOURCES})
  target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:morandel_compile>)
  target_compile_features(${target} PUBLIC cxx_std_17)
  if(MORANDEL_PROCESS_WIDE_STATE)
    target_compile_definitions(${target} PRIVATE MORANDEL_PROCESS_WIDE_STATE)
  endif()
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME morandel
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
endfunction()

if(CMAKE_SYSTEM_NAME STREQUAL "WASI")
  morandel_library(morandel_static STATIC)
  set_target_properties(morandel_static PROPERTIES POSITION_INDEPENDENT_CODE OFF)
  target_compile_definitions(morandel_static PUBLIC MORANDEL_STATIC)
  return()
endif()

morandel_library(morandel SHARED)
target_compile_definitions(morandel PRIVATE MORANDEL_BUILDING)
add_library(morandel::morandel ALIAS morandel)

morandel_library(morandel_static STATIC)
target_compile_definitions(morandel_static PUBLIC MORANDEL_STATIC)
set_target_properties(morandel_static PROPERTIES EXPORT_NAME static)
add_library(morandel::static ALIAS morandel_static)

if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  target_link_options(morandel PRIVATE LINKER:--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map)
  set_target_properties(morandel PROPERTIES LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
endif()
if(WIN32)
  include(cmake/automation.cmake)
endif()
