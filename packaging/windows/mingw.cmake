# Cross compilation to 64-bit Windows with Debian's mingw-w64 (posix threads).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(MINGW x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${MINGW}-gcc-posix)
set(CMAKE_CXX_COMPILER ${MINGW}-g++-posix)
set(CMAKE_RC_COMPILER ${MINGW}-windres)
set(CMAKE_AR ${MINGW}-gcc-ar-posix CACHE FILEPATH "")
set(CMAKE_RANLIB ${MINGW}-gcc-ranlib-posix CACHE FILEPATH "")

# Libraries and headers come from the built parts and from mingw's own folder, programs from this
# machine.
set(CMAKE_FIND_ROOT_PATH /usr/${MINGW} ${ZVONIVEC_PARTS})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# All libraries are static, so the libraries that they need are linked too.
set(PKG_CONFIG_ARGN --static)

# Windows 10 is the oldest version that Qt 6 supports.
add_compile_definitions(_WIN32_WINNT=0x0A00 WINVER=0x0A00)
