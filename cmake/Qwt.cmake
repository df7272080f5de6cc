# Qwt, which draws the viewer's plots: the target Qwt::Qwt. Debian names it after its Qt; the Windows one is a DLL.
find_path(QWT_INCLUDE_DIR NAMES qwt_plot.h PATH_SUFFIXES qwt)
find_library(QWT_LIBRARY NAMES qwt-qt5 qwt)
mark_as_advanced(QWT_INCLUDE_DIR QWT_LIBRARY)
if(NOT QWT_INCLUDE_DIR OR NOT QWT_LIBRARY)
  message(FATAL_ERROR "Qwt was not found. On Debian: apt-get install libqwt-qt5-dev; "
                      "for Windows: tools/windows/build-libraries.sh")
endif()
add_library(Qwt::Qwt UNKNOWN IMPORTED GLOBAL)
set_target_properties(Qwt::Qwt PROPERTIES
  IMPORTED_LOCATION "${QWT_LIBRARY}"
  INTERFACE_INCLUDE_DIRECTORIES "${QWT_INCLUDE_DIR}"
  INTERFACE_COMPILE_DEFINITIONS "$<$<BOOL:${WIN32}>:QWT_DLL>")
