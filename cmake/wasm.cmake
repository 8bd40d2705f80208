# A toolchain for the engine as WebAssembly: Debian's clang with the C library of WASI. What a Debian
# before or after has, is told with -DMORANDEL_LLVM=...

set(CMAKE_SYSTEM_NAME WASI)
set(CMAKE_SYSTEM_PROCESSOR wasm32)
set(MORANDEL_LLVM 19 CACHE STRING "The version of clang that compiles for WebAssembly")

set(CMAKE_CXX_COMPILER clang++-${MORANDEL_LLVM})
set(CMAKE_CXX_COMPILER_TARGET wasm32-wasi)
set(CMAKE_AR llvm-ar-${MORANDEL_LLVM})
set(CMAKE_RANLIB llvm-ranlib-${MORANDEL_LLVM})
# Without a processor of the machine's own, a program of it cannot be tried.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_CXX_FLAGS_INIT "-fwasm-exceptions -fno-threadsafe-statics -mbulk-memory -mnontrapping-fptoint")
set(CMAKE_CXX_FLAGS_RELEASE_INIT "-O2 -DNDEBUG")
