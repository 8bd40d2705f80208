# Cross-compiling for Windows x64.

set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(MORANDEL_MACHINE x86_64)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
