# x9_add_library(<target> SOURCES <file>... HEADERS <file>... [LINK <library>...] [PRIVATE_LINK <library>...]
#                [PRECOMPILED <kind of cmake/Precompiled.cmake>])
# A static library of one folder. Headers are included with their folder ("device/CANAPI.h"), are found only where their
# library is linked, and are checked to stand alone by the target all_verify_interface_header_sets.
function(x9_add_library target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "PRECOMPILED" "SOURCES;HEADERS;LINK;PRIVATE_LINK")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "x9_add_library(${target}): unknown arguments ${arg_UNPARSED_ARGUMENTS}")
  endif()
  add_library(${target} STATIC ${arg_SOURCES} ${arg_HEADERS})
  # A place that holds nothing but a link to this folder.
  get_filename_component(folder "${CMAKE_CURRENT_SOURCE_DIR}" NAME)
  set(place "${PROJECT_BINARY_DIR}/include/${folder}")
  file(MAKE_DIRECTORY "${place}")
  file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}" "${place}/${folder}" SYMBOLIC)
  list(TRANSFORM arg_HEADERS PREPEND "${place}/${folder}/")
  # Not for the target itself: moc would take the linked headers for others than those among its sources.
  target_sources(${target} INTERFACE FILE_SET HEADERS BASE_DIRS "${place}" FILES ${arg_HEADERS})
  target_include_directories(${target} PRIVATE "${place}")
  target_link_libraries(${target} PUBLIC ${arg_LINK} PRIVATE ${arg_PRIVATE_LINK} x9_warnings)
  if(arg_PRECOMPILED)
    x9_precompile(${target} ${arg_PRECOMPILED})
  endif()
endfunction()
