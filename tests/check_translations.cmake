# cmake -DROOT=<sources> -DTRANSLATIONS=<folder of the .ts files> -DLUPDATE=<lupdate> -DWORK=<folder>
#       -P check_translations.cmake
# Brings copies of the .ts files up to date with the texts in the sources and fails on each text that this adds, and on
# each that is not translated or no longer in the sources.
cmake_minimum_required(VERSION 3.25)

if(NOT LUPDATE)
  message(FATAL_ERROR "lupdate was not found. On Debian: apt-get install qttools5-dev-tools")
endif()

set(copies "")
file(REMOVE_RECURSE "${WORK}")
foreach(name IN ITEMS CN.ts EN.ts)
  configure_file("${TRANSLATIONS}/${name}" "${WORK}/${name}" COPYONLY)
  list(APPEND copies "${WORK}/${name}")
endforeach()

set(folders "")
foreach(folder IN ITEMS app can capture device exchange lin viewer widgets)
  if(IS_DIRECTORY "${ROOT}/${folder}")
    list(APPEND folders "${folder}")
  endif()
endforeach()
execute_process(
  COMMAND "${LUPDATE}" -silent -I "${ROOT}" -locations none ${folders} -ts ${copies}
  WORKING_DIRECTORY "${ROOT}" COMMAND_ERROR_IS_FATAL ANY)

set(found "")
foreach(copy IN LISTS copies)
  get_filename_component(name "${copy}" NAME)
  file(READ "${copy}" content)
  string(REGEX REPLACE "[][;]" " " content "${content}") # they have a meaning in CMake's lists
  string(REPLACE "\n" ";" lines "${content}")
  set(context "")
  set(source "")
  set(count 0)
  foreach(line IN LISTS lines)
    if(line MATCHES "<name>(.*)</name>")
      set(context "${CMAKE_MATCH_1}")
    elseif(line MATCHES "<source>([^<]*)")
      set(source "${CMAKE_MATCH_1}")
    elseif(line MATCHES "<translation")
      math(EXPR count "${count} + 1")
    endif()
    if(line MATCHES "<translation[^>]* type=\"(unfinished|vanished|obsolete)\"")
      list(APPEND found "${name}: ${context}: '${source}' is ${CMAKE_MATCH_1}")
    endif()
  endforeach()
  if(count EQUAL 0)
    list(APPEND found "${name}: no texts")
  endif()
endforeach()

if(found)
  list(JOIN found "\n  " text)
  message(FATAL_ERROR "Texts and translations differ:\n  ${text}")
endif()
