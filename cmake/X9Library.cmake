# x9_add_library(<target> SOURCES <file>... HEADERS <file>... [LINK <library>...] [PRIVATE_LINK <library>...]
#                [PRECOMPILED <kind of cmake/Precompiled.cmake>])
# A static library of one folder. Headers are included with their folder ("device/CANAPI.h") and are checked to stand
# alone by the target all_verify_interface_header_sets.
function(x9_add_library target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "PRECOMPILED" "SOURCES;HEADERS;LINK;PRIVATE_LINK")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "x9_add_library(${target}): unknown arguments ${arg_UNPARSED_ARGUMENTS}")
  endif()
  add_library(${target} STATIC ${arg_SOURCES})
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}" FILES ${arg_HEADERS})
  target_link_libraries(${target} PUBLIC ${arg_LINK} PRIVATE ${arg_PRIVATE_LINK} x9_warnings)
  if(arg_PRECOMPILED)
    x9_precompile(${target} ${arg_PRECOMPILED})
  endif()
endfunction()
