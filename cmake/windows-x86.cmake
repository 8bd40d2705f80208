# Cross-compiling for Windows x86.

set(CMAKE_SYSTEM_PROCESSOR x86)
set(MORANDEL_MACHINE i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
