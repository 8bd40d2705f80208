# The library, shared and static. Folders depend on one another one way: strfuncs on engine,
# variables on both, checker on engine.

set(MORANDEL_SOURCES
  checker/check_calls.cpp
  checker/check_levels.cpp
  checker/checker.cpp
  checker/rules.cpp
  engine/arithmetic.cpp
  engine/compiler.cpp
  engine/errors.cpp
  engine/express.cpp
  engine/functions.cpp
  engine/levels.cpp
  engine/loading.cpp
  engine/numbers.cpp
  engine/parameters.cpp
  engine/preparation.cpp
  engine/program.cpp
  engine/rounding.cpp
  engine/search.cpp
  engine/tokenizer.cpp
  engine/validator.cpp
  strfuncs/choosing.cpp
  strfuncs/joining.cpp
  strfuncs/number_to_text.cpp
  strfuncs/parts.cpp
  strfuncs/searching.cpp
  strfuncs/string_function.cpp
  strfuncs/string_node.cpp
  variables/calculation.cpp
  variables/record_store.cpp
  variables/variable_express.cpp
  variables/variable_list.cpp)

set(MORANDEL_HEADERS
  checker/checker.h
  engine/argument_stack.h
  engine/errors.h
  engine/export.h
  engine/express.h
  engine/functions.h
  engine/name_key.h
  engine/numbers.h
  engine/parameters.h
  engine/text_arena.h
  engine/token.h
  engine/value.h
  strfuncs/number_to_text.h
  strfuncs/strfuncs.h
  strfuncs/string_node.h
  variables/variable_express.h
  variables/variables.h
  morandel.h)

function(morandel_library target kind)
  add_library(${target} ${kind} ${MORANDEL_SOURCES})
  target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:morandel_compile>)
  target_compile_features(${target} PUBLIC cxx_std_20)
  if(MORANDEL_PER_THREAD_STATE)
    target_compile_definitions(${target} PUBLIC MORANDEL_PER_THREAD_STATE)
  endif()
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/morandel>)
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME morandel
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
endfunction()

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
