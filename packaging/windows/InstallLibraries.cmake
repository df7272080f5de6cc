# Run by `cmake --install`: the plugins, and the DLLs that the programs and the plugins need, as their import tables say.
# PackagingWindows.cmake sets x9_programs, x9_plugins, x9_library_folders, x9_objdump and x9_strip before.
cmake_policy(VERSION 3.25)

# Parts of Windows that are in no package. A name that is neither found nor here ends the installation.
set(system_libraries
    advapi32 bcrypt crypt32 d3d11 dnsapi dwmapi dxgi gdi32 imm32 iphlpapi kernel32 mpr msvcrt netapi32 ole32 oleaut32
    secur32 shell32 user32 userenv uxtheme version winmm ws2_32 wtsapi32)

# x9_imports(<list> <file>): the names of the DLLs a file needs. (CMake's GET_RUNTIME_DEPENDENCIES looks for them in
# lower case, which the files' names are not.)
function(x9_imports names file)
  execute_process(COMMAND "${x9_objdump}" -p "${file}" OUTPUT_VARIABLE tables COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "DLL Name: [^\n]+" tables "${tables}")
  list(TRANSFORM tables REPLACE "DLL Name: " "")
  set(${names} "${tables}" PARENT_SCOPE)
endfunction()

# x9_find_library(<path> <name>): empty when it is a part of Windows.
function(x9_find_library path name)
  set(${path} "" PARENT_SCOPE)
  foreach(folder IN LISTS x9_library_folders)
    if(EXISTS "${folder}/${name}")
      set(${path} "${folder}/${name}" PARENT_SCOPE)
      return()
    endif()
  endforeach()
  string(TOLOWER "${name}" base)
  string(REGEX REPLACE "\\.dll$" "" base "${base}")
  if(NOT base IN_LIST system_libraries)
    message(FATAL_ERROR "${name} is in none of ${x9_library_folders} and not known as a part of Windows")
  endif()
endfunction()

# x9_install_library(<file> <folder in the package>)
function(x9_install_library file folder)
  file(INSTALL DESTINATION "${CMAKE_INSTALL_PREFIX}/${folder}" TYPE FILE FILES "${file}")
  if(CMAKE_INSTALL_DO_STRIP)
    cmake_path(GET file FILENAME name)
    execute_process(COMMAND "${x9_strip}" "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/${folder}/${name}"
                    COMMAND_ERROR_IS_FATAL ANY)
  endif()
endfunction()

set(libraries "")
set(files ${x9_programs} ${x9_plugins})
while(files)
  list(POP_FRONT files file)
  x9_imports(names "${file}")
  foreach(name IN LISTS names)
    x9_find_library(library "${name}")
    if(library AND NOT library IN_LIST libraries)
      list(APPEND libraries "${library}")
      list(APPEND files "${library}")
    endif()
  endforeach()
endwhile()

foreach(library IN LISTS libraries)
  x9_install_library("${library}" .)
endforeach()
# A plugin's folder in Qt, such as "platforms", says what it is for.
foreach(plugin IN LISTS x9_plugins)
  cmake_path(GET plugin PARENT_PATH folder)
  cmake_path(GET folder FILENAME folder)
  x9_install_library("${plugin}" "plugins/${folder}")
endforeach()
