# Renders the pictures from their SVG sources, compiles the translations and the resource file. Everything that is made
# goes to the build tree.
#
# An entry is "<resource path>|<file>"; the functions append entries to the list whose name is their first argument
# (any name but "to"), and x9_compile_resources turns the list into one source file.

function(x9_require_resource_tool variable program package)
  find_program(${variable} NAMES ${program} ${ARGN})
  if(NOT ${variable})
    message(FATAL_ERROR "${program} is needed to build the resources and was not found. "
                        "On Debian: apt-get install ${package}")
  endif()
endfunction()

# Debian's Qt tools sit beside qmake and not in the PATH; a cross build takes the host's.
get_target_property(x9_qmake Qt5::qmake IMPORTED_LOCATION)
get_filename_component(x9_qt_tools "${x9_qmake}" DIRECTORY)
set(x9_linguist_places HINTS "${x9_qt_tools}" /usr/lib/qt5/bin)

x9_require_resource_tool(X9_RSVG_CONVERT rsvg-convert librsvg2-bin)
x9_require_resource_tool(X9_ICOTOOL icotool icoutils)
x9_require_resource_tool(X9_LRELEASE lrelease qttools5-dev-tools ${x9_linguist_places})

# x9_resource_images(<list> PATH <resource folder> FOLDER <source folder> SIZE <pixels> NAMES <name>...)
# <name>.svg becomes <name>.png with SIZE pixels and <name>@2x.png with twice as many, which Qt takes on 200 % screens.
function(x9_resource_images to)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "PATH;FOLDER;SIZE" "NAMES")
  set(output "${CMAKE_CURRENT_BINARY_DIR}/rendered/${arg_PATH}")
  file(MAKE_DIRECTORY "${output}")
  math(EXPR doubled "2 * ${arg_SIZE}")
  foreach(name IN LISTS arg_NAMES)
    set(svg "${CMAKE_CURRENT_SOURCE_DIR}/${arg_FOLDER}/${name}.svg")
    set(png "${output}/${name}.png")
    set(png2 "${output}/${name}@2x.png")
    add_custom_command(
      OUTPUT "${png}" "${png2}"
      COMMAND "${X9_RSVG_CONVERT}" --width ${arg_SIZE} --height ${arg_SIZE} --output "${png}" "${svg}"
      COMMAND "${X9_RSVG_CONVERT}" --width ${doubled} --height ${doubled} --output "${png2}" "${svg}"
      DEPENDS "${svg}"
      COMMENT "Rendering ${arg_PATH}/${name}"
      VERBATIM)
    list(APPEND ${to} "${arg_PATH}/${name}.png|${png}" "${arg_PATH}/${name}@2x.png|${png2}")
  endforeach()
  set(${to} "${${to}}" PARENT_SCOPE)
endfunction()

# x9_resource_icon(<list> PATH <resource path> PICTURES <pixels>:<svg>...)
# One ICO file; the picture of 256 pixels is stored as PNG inside it, as Windows expects.
function(x9_resource_icon to)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "PATH" "PICTURES")
  set(ico "${CMAKE_CURRENT_BINARY_DIR}/rendered/${arg_PATH}")
  get_filename_component(output "${ico}" DIRECTORY)
  file(MAKE_DIRECTORY "${output}")
  set(render "")
  set(pictures "")
  set(sources "")
  foreach(picture IN LISTS arg_PICTURES)
    string(REGEX MATCH "^([0-9]+):(.+)$" matched "${picture}")
    set(size "${CMAKE_MATCH_1}")
    set(svg "${CMAKE_CURRENT_SOURCE_DIR}/${CMAKE_MATCH_2}")
    set(png "${ico}.${size}.png")
    list(APPEND render COMMAND "${X9_RSVG_CONVERT}" --width ${size} --height ${size} --output "${png}" "${svg}")
    list(APPEND sources "${svg}")
    if(size EQUAL 256)
      list(APPEND pictures "--raw=${png}")
    else()
      list(APPEND pictures "${png}")
    endif()
  endforeach()
  list(REMOVE_DUPLICATES sources)
  add_custom_command(
    OUTPUT "${ico}" ${render}
    COMMAND "${X9_ICOTOOL}" --create "--output=${ico}" ${pictures}
    DEPENDS ${sources}
    COMMENT "Rendering ${arg_PATH}"
    VERBATIM)
  list(APPEND ${to} "${arg_PATH}|${ico}")
  set(${to} "${${to}}" PARENT_SCOPE)
endfunction()

# x9_resource_translation(<list> PATH <resource path> SOURCE <ts file>)
# The .ts file is read only; the target translations_update is what writes it.
function(x9_resource_translation to)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "PATH;SOURCE" "")
  set(ts "${CMAKE_CURRENT_SOURCE_DIR}/${arg_SOURCE}")
  set(qm "${CMAKE_CURRENT_BINARY_DIR}/rendered/${arg_PATH}")
  get_filename_component(output "${qm}" DIRECTORY)
  file(MAKE_DIRECTORY "${output}")
  add_custom_command(
    OUTPUT "${qm}"
    COMMAND "${X9_LRELEASE}" -silent "${ts}" -qm "${qm}"
    DEPENDS "${ts}"
    COMMENT "Compiling ${arg_PATH}"
    VERBATIM)
  list(APPEND ${to} "${arg_PATH}|${qm}")
  set(${to} "${${to}}" PARENT_SCOPE)
endfunction()

# x9_resource_file(<list> PATH <resource path> SOURCE <file>): a file that goes in as it stands.
function(x9_resource_file to)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "PATH;SOURCE" "")
  list(APPEND ${to} "${arg_PATH}|${CMAKE_CURRENT_SOURCE_DIR}/${arg_SOURCE}")
  set(${to} "${${to}}" PARENT_SCOPE)
endfunction()

# x9_compile_resources(<source> NAME <name> ENTRIES <entry>...)
# <source> is the file to compile into a target; Q_INIT_RESOURCE(<name>) makes its content known to Qt.
function(x9_compile_resources source)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "NAME" "ENTRIES")
  set(lines "")
  set(files "")
  foreach(entry IN LISTS arg_ENTRIES)
    if(NOT entry MATCHES "^([^|]+)\\|(.+)$")
      message(FATAL_ERROR "x9_compile_resources: '${entry}' is no entry")
    endif()
    string(APPEND lines "    <file alias=\"${CMAKE_MATCH_1}\">${CMAKE_MATCH_2}</file>\n")
    list(APPEND files "${CMAKE_MATCH_2}")
  endforeach()
  set(qrc "${CMAKE_CURRENT_BINARY_DIR}/${arg_NAME}.qrc")
  set(cpp "${CMAKE_CURRENT_BINARY_DIR}/qrc_${arg_NAME}.cpp")
  file(CONFIGURE OUTPUT "${qrc}" CONTENT "<RCC version=\"1.0\">\n  <qresource>\n${lines}  </qresource>\n</RCC>\n" @ONLY)
  add_custom_command(
    OUTPUT "${cpp}"
    COMMAND Qt5::rcc --name ${arg_NAME} --output "${cpp}" "${qrc}"
    DEPENDS "${qrc}" ${files}
    COMMENT "Compiling ${arg_NAME}.qrc"
    VERBATIM)
  set_source_files_properties("${cpp}" PROPERTIES SKIP_AUTOGEN ON)
  set(${source} "${cpp}" PARENT_SCOPE)
endfunction()

# x9_add_translations_update(<target> FOLDERS <folder>... SOURCES <ts file>...)
# A target, built only when asked for, that brings the .ts files up to date with the texts in the folders' sources.
function(x9_add_translations_update target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "FOLDERS;SOURCES")
  find_program(X9_LUPDATE NAMES lupdate ${x9_linguist_places})
  if(NOT X9_LUPDATE)
    message(STATUS "lupdate was not found (Debian: qttools5-dev-tools); there will be no target ${target}")
    return()
  endif()
  set(folders "")
  foreach(folder IN LISTS arg_FOLDERS)
    if(IS_DIRECTORY "${PROJECT_SOURCE_DIR}/${folder}")
      list(APPEND folders "${folder}")
    endif()
  endforeach()
  list(TRANSFORM arg_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
  add_custom_target(
    ${target}
    COMMAND "${X9_LUPDATE}" -no-obsolete -locations none ${folders} -ts ${arg_SOURCES}
    WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
    VERBATIM)
endfunction()
