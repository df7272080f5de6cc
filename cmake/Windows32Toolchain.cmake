# 32-bit Windows, for users of a 32-bit adapter library; see WindowsToolchain.cmake. The libraries must be 32-bit ones.
set(X9_WINDOWS_TRIPLET i686-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(X9_WINDOWS_PRESET windows32)
include("${CMAKE_CURRENT_LIST_DIR}/WindowsToolchain.cmake")
