# Cross-compiles for Windows with MinGW-w64: for 64 bits, or for 32 with
# -DCMAKE_SYSTEM_PROCESSOR=i686.
#
# The flavour with POSIX threads has all of C++'s own, and linked statically it asks for nothing but
# KERNEL32 and the C runtime.
set(CMAKE_SYSTEM_NAME Windows)
if(NOT CMAKE_SYSTEM_PROCESSOR)
  set(CMAKE_SYSTEM_PROCESSOR x86_64)
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CMAKE_SYSTEM_PROCESSOR)

set(target ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32)
set(CMAKE_C_COMPILER ${target}-gcc-posix)
set(CMAKE_CXX_COMPILER ${target}-g++-posix)
set(CMAKE_RC_COMPILER ${target}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${target} ${CMAKE_PREFIX_PATH})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Programs need no DLL but the project's own.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)

# Tests run under Wine, where there is one for the word size.
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
  find_program(VIALTO_WINE NAMES wine64 PATHS /usr/lib/wine)
  if(VIALTO_WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${VIALTO_WINE})
  endif()
endif()
