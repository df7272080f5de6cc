# The folder of the Windows program, which is the whole of the portable ZIP and what the installer lays out.
#
# The virtual adapter has a folder of its own: beside the program it would pass for the adapter's real library.
set(x9_windows "${PROJECT_SOURCE_DIR}/packaging/windows")
set(x9_windows_made "${PROJECT_BINARY_DIR}/packaging")
set(x9_adapter_folder virtual-adapter)
set(X9_QT_TRANSLATIONS /usr/share/qt5/translations CACHE PATH "Folder of Qt's own translations, for the package")
set(X9_DEBIAN_TEXTS /usr/share CACHE PATH "Folder of Debian's common-licenses and doc, for the package")

# The packages' names, and what the installer says, tell the program's word size in the words of its own messages.
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(CPACK_X9_BITS 64)
  set(CPACK_X9_NSIS_TARGET amd64-unicode)
  set(x9_exceptions_library libgcc_s_seh-1.dll)
else()
  set(CPACK_X9_BITS 32)
  set(CPACK_X9_NSIS_TARGET x86-unicode)
  set(x9_exceptions_library libgcc_s_dw2-1.dll)
endif()

# Programs
install(TARGETS X9CAN X9Viewer x9capture RUNTIME DESTINATION .)
install(TARGETS ControlCAN RUNTIME DESTINATION ${x9_adapter_folder})
install(FILES "${PROJECT_SOURCE_DIR}/adapter/virtual/example.virtual-adapter.json" DESTINATION ${x9_adapter_folder})
configure_file("${x9_windows}/demo.cmd" "${x9_windows_made}/X9CAN demo.cmd" @ONLY NEWLINE_STYLE DOS)
install(PROGRAMS "${x9_windows_made}/X9CAN demo.cmd" DESTINATION .)

# What they load: Qt's plugins by name, everything else as the files themselves say.
set(x9_plugins Qt5::QWindowsIntegrationPlugin Qt5::QICOPlugin)
set(x9_plugin_files "")
foreach(plugin IN LISTS x9_plugins)
  get_target_property(file ${plugin} LOCATION)
  list(APPEND x9_plugin_files "${file}")
endforeach()
get_target_property(file Qt5::Core LOCATION)
cmake_path(GET file PARENT_PATH x9_qt_folder)
set(x9_library_folders "${x9_qt_folder}")
foreach(library IN ITEMS libstdc++-6.dll libwinpthread-1.dll)
  execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=${library} OUTPUT_VARIABLE file
                  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  file(REAL_PATH "${file}" file)
  cmake_path(GET file PARENT_PATH folder)
  list(APPEND x9_library_folders "${folder}")
endforeach()
install(CODE "
  set(x9_programs \"$<TARGET_FILE:X9CAN>\" \"$<TARGET_FILE:X9Viewer>\")
  set(x9_plugins \"${x9_plugin_files}\")
  set(x9_library_folders \"${x9_library_folders}\")
  set(x9_objdump \"${CMAKE_OBJDUMP}\")
  set(x9_strip \"${CMAKE_STRIP}\")")
install(SCRIPT "${x9_windows}/InstallLibraries.cmake")
install(FILES "${x9_windows}/qt.conf" DESTINATION .)
install(FILES "${X9_QT_TRANSLATIONS}/qtbase_zh_CN.qm" DESTINATION translations)

# Documents, as pages: Windows shows no Markdown files.
set(x9_documents CHANGELOG.md docs/guide.md docs/guide.zh.md docs/filters.md docs/formats.md docs/virtual-adapter.md)
list(TRANSFORM x9_documents PREPEND "${PROJECT_SOURCE_DIR}/")
install(CODE "
  file(REMOVE_RECURSE \"${x9_windows_made}/pages\")
  set(documents \"${x9_documents}\")
  execute_process(COMMAND \"${x9_windows}/make-pages.py\" \"${x9_windows_made}/pages\" \${documents}
                  COMMAND_ERROR_IS_FATAL ANY)")
install(DIRECTORY "${x9_windows_made}/pages/" DESTINATION doc)
configure_file("${x9_windows}/licences.txt" "${x9_windows_made}/licences.txt" @ONLY NEWLINE_STYLE DOS)
install(FILES "${x9_windows_made}/licences.txt" DESTINATION doc)
foreach(licence IN ITEMS LGPL-2.1 LGPL-3 GPL-3)
  install(FILES "${X9_DEBIAN_TEXTS}/common-licenses/${licence}" DESTINATION doc/licences RENAME ${licence}.txt)
endforeach()
foreach(notice IN ITEMS Qt:libqt5core5a Qt-translations:qttranslations5-l10n GCC-runtime:gcc-mingw-w64-base
                        mingw-w64:mingw-w64-common nlohmann-json:nlohmann-json3-dev libsodium:libsodium-dev Qwt:libqwt-qt5-dev)
  string(REGEX MATCH "^(.+):(.+)$" matched "${notice}")
  install(FILES "${X9_DEBIAN_TEXTS}/doc/${CMAKE_MATCH_2}/copyright" DESTINATION doc/licences
          RENAME ${CMAKE_MATCH_1}.txt)
endforeach()

# The packages: `cpack --config build/windows/CPackConfig.cmake` after a build. NSIS takes its script from
# packaging/windows/NSIS.template.in instead of CPack's own, which knows one language and no installation per user.
set(CPACK_GENERATOR ZIP NSIS)
set(CPACK_PACKAGE_FILE_NAME "${PROJECT_NAME}-${PROJECT_VERSION}-windows-${CPACK_X9_BITS}bit")
configure_file("${PROJECT_SOURCE_DIR}/packaging/PackageTime.cmake.in" "${x9_windows_made}/PackageTime.cmake" @ONLY)
get_target_property(x9_endings x9_exchange X9_ENDINGS)
configure_file("${x9_windows}/PackageConfig.cmake.in" "${x9_windows_made}/PackageConfig.cmake" @ONLY)
set(CPACK_PROJECT_CONFIG_FILE "${x9_windows_made}/PackageConfig.cmake")
set(CPACK_PRE_BUILD_SCRIPTS "${x9_windows}/BeforePacking.cmake")

set(CPACK_MODULE_PATH "${x9_windows}")
set(CPACK_X9_TEXTS "${x9_windows}/Texts.nsh")
set(CPACK_X9_LOGO "${PROJECT_SOURCE_DIR}/resources/images/logo/Logo.svg")
set(CPACK_X9_PANEL "${x9_windows_made}/panel.bmp")
get_target_property(CPACK_X9_ICON x9_resources X9_ICON)
