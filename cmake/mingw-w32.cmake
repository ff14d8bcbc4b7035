set(VNDOC6_MINGW i686-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)

# SSE arithmetic rounds as on every other platform, the x87 unit does not. Callers built by other
# compilers align the stack to 4 bytes only, SSE needs 16.
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
# The .def file names its functions without the @n of stdcall.
string(APPEND CMAKE_SHARED_LINKER_FLAGS_INIT " -Wl,--enable-stdcall-fixup")
