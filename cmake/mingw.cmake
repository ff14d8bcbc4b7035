# What the two MinGW toolchains share. The posix thread model gives std::mutex and friends; all
# runtime libraries are linked statically, so the DLL needs nothing but Windows.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${VNDOC6_MINGW}-gcc-posix)
set(CMAKE_CXX_COMPILER ${VNDOC6_MINGW}-g++-posix)
set(CMAKE_RC_COMPILER ${VNDOC6_MINGW}-windres)
set(VNDOC6_WIDL ${VNDOC6_MINGW}-widl)

set(CMAKE_FIND_ROOT_PATH /usr/${VNDOC6_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
