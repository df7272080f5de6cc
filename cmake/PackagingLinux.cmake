# The layout under /usr (or any other prefix; the launchers find the program from their own place) and the .deb.
#
# The program has a folder of its own, because it loads the adapter's library from its working directory and has its
# other files beside itself. The virtual adapter and the one for SocketCAN are kept out of that folder: there they would pass
# for the maker's library.
set(x9_linux "${PROJECT_SOURCE_DIR}/packaging/linux")
set(x9_linux_made "${PROJECT_BINARY_DIR}/packaging")
set(x9_program_folder lib/x9can)
set(x9_doc_folder share/doc/x9can)

# The day of the version as the changelog writes it.
set(ENV{LC_ALL} C)
execute_process(COMMAND date -u -d "${X9_RELEASE_DATE}" -R OUTPUT_VARIABLE x9_release_day
                OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
unset(ENV{LC_ALL})

# Programs
install(TARGETS X9CAN X9Viewer RUNTIME DESTINATION ${x9_program_folder})
install(TARGETS ControlCAN LIBRARY DESTINATION ${x9_program_folder}/virtual-adapter)
set(x9_launchers x9can x9can-demo x9viewer)
if(TARGET ControlCAN_socketcan)
  install(TARGETS ControlCAN_socketcan LIBRARY DESTINATION ${x9_program_folder}/socketcan)
  list(APPEND x9_launchers x9can-socketcan)
endif()
list(TRANSFORM x9_launchers PREPEND "${x9_linux}/")
install(PROGRAMS ${x9_launchers} DESTINATION bin)
list(TRANSFORM x9_launchers APPEND ".desktop" OUTPUT_VARIABLE x9_desktop_entries)
install(TARGETS x9capture RUNTIME DESTINATION bin)
install(FILES "${x9_linux}/x9capture.bash-completion" DESTINATION share/bash-completion/completions RENAME x9capture)

# Desktop entries and software catalogue
install(FILES ${x9_desktop_entries} DESTINATION share/applications)
foreach(component IN ITEMS x9can x9viewer)
  set(metainfo "${x9_linux_made}/com.example.${component}.metainfo.xml")
  configure_file("${x9_linux}/com.example.${component}.metainfo.xml.in" "${metainfo}" @ONLY)
  install(FILES "${metainfo}" DESTINATION share/metainfo)
endforeach()
# Kinds of captures for which the system has no name.
install(FILES "${x9_linux}/x9can.mime.xml" DESTINATION share/mime/packages RENAME x9can.xml)

# Icons. As in the program's own icon, the simple drawing is taken below 24 pixels.
set(x9_logo "${PROJECT_SOURCE_DIR}/resources/images/logo")
set(x9_linux_files "")
foreach(picture IN ITEMS x9can:Logo x9viewer:Viewer)
  string(REGEX MATCH "^(.+):(.+)$" matched "${picture}")
  set(x9_icon_name "${CMAKE_MATCH_1}")
  set(x9_drawing "${x9_logo}/${CMAKE_MATCH_2}")
  foreach(size IN ITEMS 16 22 24 32 48 64 128 256)
    set(svg "${x9_drawing}.svg")
    if(size LESS 24)
      set(svg "${x9_drawing}Small.svg")
    endif()
    set(png "${x9_linux_made}/icons/${size}/${x9_icon_name}.png")
    file(MAKE_DIRECTORY "${x9_linux_made}/icons/${size}")
    add_custom_command(
      OUTPUT "${png}"
      COMMAND "${X9_RSVG_CONVERT}" --width ${size} --height ${size} --output "${png}" "${svg}"
      DEPENDS "${svg}"
      COMMENT "Rendering the icon ${x9_icon_name} of ${size} pixels"
      VERBATIM)
    list(APPEND x9_linux_files "${png}")
    install(FILES "${png}" DESTINATION share/icons/hicolor/${size}x${size}/apps)
  endforeach()
  install(FILES "${x9_drawing}.svg" DESTINATION share/icons/hicolor/scalable/apps RENAME ${x9_icon_name}.svg)
endforeach()

# x9_install_gzipped(<file> DESTINATION <folder> NAME <name without .gz>)
function(x9_install_gzipped file)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "DESTINATION;NAME" "")
  set(copy "${x9_linux_made}/gzipped/${arg_NAME}")
  add_custom_command(
    OUTPUT "${copy}.gz"
    COMMAND "${CMAKE_COMMAND}" -E copy "${file}" "${copy}"
    COMMAND gzip -9 --no-name --force "${copy}"
    DEPENDS "${file}"
    COMMENT "Compressing ${arg_NAME}"
    VERBATIM)
  install(FILES "${copy}.gz" DESTINATION ${arg_DESTINATION})
  set(x9_linux_files ${x9_linux_files} "${copy}.gz" PARENT_SCOPE)
endfunction()

# Documents
configure_file("${x9_linux}/changelog.Debian.in" "${x9_linux_made}/changelog.Debian" @ONLY)
x9_install_gzipped("${PROJECT_SOURCE_DIR}/CHANGELOG.md" DESTINATION ${x9_doc_folder} NAME changelog)
x9_install_gzipped("${x9_linux_made}/changelog.Debian" DESTINATION ${x9_doc_folder} NAME changelog.Debian)
foreach(launcher IN LISTS x9_launchers)
  get_filename_component(name "${launcher}" NAME)
  x9_install_gzipped("${launcher}.1" DESTINATION share/man/man1 NAME ${name}.1)
endforeach()
x9_install_gzipped("${x9_linux}/x9capture.1" DESTINATION share/man/man1 NAME x9capture.1)
install(FILES "${x9_linux}/copyright" DESTINATION ${x9_doc_folder})
install(DIRECTORY docs/ DESTINATION ${x9_doc_folder}
        FILES_MATCHING REGEX "/(guide|filters|formats|virtual-adapter|socketcan)[^/]*\\.md$|/screenshots/[^/]*\\.png$")
install(FILES "${PROJECT_SOURCE_DIR}/adapter/virtual/example.virtual-adapter.json" DESTINATION ${x9_doc_folder}/examples
        RENAME virtual-adapter.json)

add_custom_target(x9_linux_files ALL DEPENDS ${x9_linux_files})

# The .deb: `cpack --config build/<preset>/CPackConfig.cmake` after a build, or the build target `package`.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PRE_BUILD_SCRIPTS "${x9_linux}/StagedPermissions.cmake")
configure_file("${PROJECT_SOURCE_DIR}/packaging/PackageTime.cmake.in" "${x9_linux_made}/PackageTime.cmake" @ONLY)
set(CPACK_PROJECT_CONFIG_FILE "${x9_linux_made}/PackageTime.cmake")

set(CPACK_DEBIAN_PACKAGE_NAME x9can)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1) # also in changelog.Debian.in
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Shows the frames of CAN, CAN FD and LIN buses in a live table, saves them in
four kinds of files, sends frames once, at a cycle, from a list or from a
file, and finds unknown bit rates.
.
It reaches the buses through any adapter that Linux has a driver for
(x9can-socketcan), or through a USB adapter whose maker's library
libControlCAN.so is put into /usr/lib/x9can. A virtual adapter for work
without hardware is part of the package: x9can-demo. The command x9capture
turns captures of several programs into each other, checks and decodes them;
x9viewer opens them, searches them, and draws their signals.")
# What is linked is found by dpkg-shlibdeps; the platform and icon plugins, loaded at run time, come with libqt5gui5.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "can-utils, fonts-noto-cjk, qttranslations5-l10n")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${x9_linux}/postrm")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

if(X9_BUILD_TESTS)
  add_test(NAME install COMMAND "${x9_linux}/check-install.sh" "${CMAKE_COMMAND}" "${PROJECT_BINARY_DIR}")
  set_tests_properties(install PROPERTIES LABELS gui TIMEOUT 120 ENVIRONMENT "${X9_TEST_ENVIRONMENT}")
endif()
