# 64-bit Windows with Debian's MinGW-w64 (posix threads, which std::thread needs). What the program is linked with comes
# from X9_WINDOWS_LIBRARIES alone: Qt for Windows and nlohmann/json, laid out as tools/windows/build.sh does it.
if(NOT X9_WINDOWS_TRIPLET)
  set(X9_WINDOWS_TRIPLET x86_64-w64-mingw32)
  set(CMAKE_SYSTEM_PROCESSOR x86_64)
  set(X9_WINDOWS_PRESET windows)
endif()
cmake_path(GET CMAKE_CURRENT_LIST_DIR PARENT_PATH x9_source_folder)
set(X9_WINDOWS_LIBRARIES "${x9_source_folder}/build/${X9_WINDOWS_PRESET}-libraries"
    CACHE PATH "Folder of the libraries for Windows")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES X9_WINDOWS_LIBRARIES)

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${X9_WINDOWS_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${X9_WINDOWS_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${X9_WINDOWS_TRIPLET}-windres)

set(CMAKE_PREFIX_PATH "${X9_WINDOWS_LIBRARIES}")
set(CMAKE_FIND_ROOT_PATH "${X9_WINDOWS_LIBRARIES}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
