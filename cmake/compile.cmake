# What every target of the project is compiled with.

add_library(morandel_compile INTERFACE)
target_compile_features(morandel_compile INTERFACE cxx_std_20)
target_include_directories(morandel_compile INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_definitions(morandel_compile INTERFACE MORANDEL_VERSION="${PROJECT_VERSION}")

if(MSVC)
  target_compile_options(morandel_compile INTERFACE /W4 /utf-8 /fp:precise /permissive-)
else()
  # The same bits on every platform: no fused operations, and on x86 no x87.
  target_compile_options(morandel_compile INTERFACE -ffp-contract=off -Wall -Wextra -Wpedantic -Wconversion)
  # Nobody asks for the C library's error numbers, and without them a root is one instruction.
  target_compile_options(morandel_compile INTERFACE -fno-math-errno)
  # What the library exports is called directly within it.
  if(NOT CMAKE_SYSTEM_NAME STREQUAL "WASI")
    target_compile_options(morandel_compile INTERFACE -fno-semantic-interposition)
  endif()
  # Of an inline function that several files have, the linker keeps one, maybe a host's that is
  # optimised in another way. MinGW's compiler takes it for its own here, and would count on the
  # registers that its own leaves alone.
  if(MINGW)
    target_compile_options(morandel_compile INTERFACE -fno-ipa-ra)
  endif()
  if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_SYSTEM_PROCESSOR MATCHES "x86|86")
    target_compile_options(morandel_compile INTERFACE -msse2 -mfpmath=sse)
  endif()
endif()

# Hardened release builds: checked library calls, guarded stacks, tables that are read-only once a
# program has started. Checked containers cost the evaluator a tenth, so the command alone has them.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND CMAKE_BUILD_TYPE STREQUAL "Release")
  target_compile_options(morandel_compile INTERFACE
    -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -fstack-protector-strong)
  target_link_options(morandel_compile INTERFACE LINKER:-z,relro,-z,now)
endif()

if(MORANDEL_SANITIZE)
  target_compile_options(morandel_compile INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(morandel_compile INTERFACE -fsanitize=address,undefined)
endif()

if(MORANDEL_SANITIZE_THREADS)
  target_compile_options(morandel_compile INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(morandel_compile INTERFACE -fsanitize=thread)
endif()

if(MORANDEL_COVERAGE)
  # Threads count side by side.
  target_compile_options(morandel_compile INTERFACE --coverage -fprofile-update=atomic -O0)
  target_link_options(morandel_compile INTERFACE --coverage)
endif()

if(MINGW)
  # The same bytes from the same sources: the linker strips, since strip itself writes the time.
  set(MORANDEL_REPRODUCIBLE LINKER:--no-insert-timestamp $<$<CONFIG:Release>:-s>)
endif()
