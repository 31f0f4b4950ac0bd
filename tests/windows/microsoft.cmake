# Clang and lld as compiler and linker of Microsoft's kind, for hosts that need no C runtime.
set(CMAKE_SYSTEM_NAME Windows)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CMAKE_SYSTEM_PROCESSOR)

set(CMAKE_C_COMPILER clang)
set(CMAKE_C_COMPILER_TARGET ${CMAKE_SYSTEM_PROCESSOR}-pc-windows-msvc)
set(CMAKE_C_FLAGS_INIT "-ffreestanding -Wall -Wextra -Wpedantic -Werror")
set(CMAKE_C_STANDARD_LIBRARIES "")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-nostdlib -Xlinker -nodefaultlib -Xlinker -entry:main")
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
