# Precompiled headers of Qt and of the standard library: parsing them takes most of the time in which a source is compiled.
# Each kind is compiled once and shared by all targets that ask for it. No header of the project is in one, and no source
# may rely on them: headers are compiled alone (all_verify_interface_header_sets), sources by clang-tidy without them.
#
#   x9_precompile(<target> <kind>)
#
# The kinds are core (Qt Core), widgets (Qt Widgets) and test (Qt Network, Qt Test, Qt Widgets); the target is linked with
# these modules, too.
function(x9_add_precompiled_headers kind)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBS;HEADERS;OPTIONS")
  set(target x9_precompiled_${kind})
  file(WRITE "${PROJECT_BINARY_DIR}/precompiled/${kind}.cpp" "")
  add_library(${target} OBJECT "${PROJECT_BINARY_DIR}/precompiled/${kind}.cpp")
  set_target_properties(${target} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
  target_link_libraries(${target} PRIVATE ${arg_LIBS} x9_warnings)
  target_precompile_headers(${target} PRIVATE ${arg_HEADERS})
  # The compiler takes precompiled headers only where both are compiled in the same way.
  target_compile_options(${target} PRIVATE ${arg_OPTIONS})
  set_target_properties(${target} PROPERTIES X9_MODULES "${arg_LIBS}" X9_OPTIONS "${arg_OPTIONS}")
endfunction()

# With it ccache can tell what was precompiled.
set(x9_pch_preprocess $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)

function(x9_precompile target kind)
  get_target_property(modules x9_precompiled_${kind} X9_MODULES)
  target_link_libraries(${target} PRIVATE ${modules})
  get_target_property(options x9_precompiled_${kind} X9_OPTIONS)
  target_compile_options(${target} PRIVATE ${options} ${x9_pch_preprocess})
  target_precompile_headers(${target} REUSE_FROM x9_precompiled_${kind})
endfunction()

# What a tenth of the sources or more include: the smaller, the sooner each source has read it.
set(x9_standard_headers <algorithm> <array> <atomic> <functional> <memory> <mutex> <optional> <utility> <vector>)
set(x9_core_headers ${x9_standard_headers} <QByteArray> <QCoreApplication> <QDir> <QFile> <QFileInfo> <QObject> <QPointer>
                    <QRegularExpression> <QString> <QStringList> <QTimer> <QUrl> <QVector>)
set(x9_widgets_headers
    ${x9_core_headers} <QAbstractButton> <QApplication> <QCheckBox> <QComboBox> <QDialog> <QGridLayout> <QHeaderView> <QIcon>
    <QKeyEvent> <QLabel> <QLineEdit> <QPainter> <QProgressBar> <QPushButton> <QScrollBar> <QSpinBox> <QStandardItemModel>
    <QTableView> <QToolButton>)
x9_add_precompiled_headers(core LIBS Qt5::Core HEADERS ${x9_core_headers})
x9_add_precompiled_headers(widgets LIBS Qt5::Widgets HEADERS ${x9_widgets_headers})
if(X9_BUILD_TESTS OR X9_BUILD_BENCH)
  # What tests is not optimised, only what is tested.
  x9_add_precompiled_headers(test LIBS Qt5::Network Qt5::Test Qt5::Widgets OPTIONS -O0 -U_FORTIFY_SOURCE HEADERS ${x9_widgets_headers} <QtTest>)
endif()
