# Finds an installed QHexEdit2, the hexadecimal editor widget. Where one is found that links and offers what the program
# uses, X9_QHEXEDIT_LIBRARY_FOUND is true and the target QHexEdit::QHexEdit stands for it; otherwise widgets/ builds its
# own editor of the same name.
include(CMakePushCheckState)
include(CheckCXXSourceCompiles)

option(X9_SYSTEM_QHEXEDIT "Use an installed QHexEdit2 where there is one" ON)

set(X9_QHEXEDIT_LIBRARY_FOUND FALSE)
if(X9_SYSTEM_QHEXEDIT)
  set(x9_qhexedit_names qhexedit-qt5 qhexedit5 qhexedit)
  find_path(QHEXEDIT_INCLUDE_DIR NAMES qhexedit.h PATH_SUFFIXES ${x9_qhexedit_names} qhexedit2)
  find_library(QHEXEDIT_LIBRARY NAMES ${x9_qhexedit_names})
  mark_as_advanced(QHEXEDIT_INCLUDE_DIR QHEXEDIT_LIBRARY)
  if(QHEXEDIT_INCLUDE_DIR AND QHEXEDIT_LIBRARY)
    # A library made for another Qt is there but of no use. The result is kept only for the files it was found with.
    cmake_push_check_state(RESET)
    set(CMAKE_REQUIRED_INCLUDES "${QHEXEDIT_INCLUDE_DIR}")
    set(CMAKE_REQUIRED_LIBRARIES "${QHEXEDIT_LIBRARY}" Qt5::Widgets)
    string(MD5 x9_qhexedit_files "${QHEXEDIT_INCLUDE_DIR}|${QHEXEDIT_LIBRARY}")
    check_cxx_source_compiles("
      #include <qhexedit.h>
      int main()
      {
          QHexEdit editor;
          QObject::connect(&editor, &QHexEdit::dataChanged, [] {});
          editor.setData(QByteArray());
          editor.setBytesPerLine(8);
          editor.undo();
          editor.redo();
          return editor.cursorPosition() + editor.data().size();
      }" X9_QHEXEDIT_LINKS_${x9_qhexedit_files})
    cmake_pop_check_state()
    set(X9_QHEXEDIT_LIBRARY_FOUND "${X9_QHEXEDIT_LINKS_${x9_qhexedit_files}}")
    if(NOT X9_QHEXEDIT_LIBRARY_FOUND)
      message(STATUS "${QHEXEDIT_LIBRARY} is no QHexEdit2 for this Qt and is not used")
    endif()
  endif()
endif()

if(X9_QHEXEDIT_LIBRARY_FOUND)
  message(STATUS "Hexadecimal editor: QHexEdit2, ${QHEXEDIT_LIBRARY}")
  add_library(QHexEdit::QHexEdit UNKNOWN IMPORTED GLOBAL)
  set_target_properties(QHexEdit::QHexEdit PROPERTIES
    IMPORTED_LOCATION "${QHEXEDIT_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${QHEXEDIT_INCLUDE_DIR}"
    INTERFACE_LINK_LIBRARIES Qt5::Widgets)
else()
  message(STATUS "Hexadecimal editor: the project's own, widgets/QHexEdit.cpp")
endif()
