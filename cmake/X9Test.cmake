# x9_add_test(<tst_Name> [SOURCES <file>...] LIBS <library>... LABELS <label>... [TIMEOUT <seconds>] [ADAPTER])
# One Qt Test program under CTest: offscreen, or for Windows on the screen. SOURCES defaults to <tst_Name>.cpp. Labels:
# unit, gui, device, slow, layering, files (paths, and the text in files: runs in several code pages). ADAPTER hands the
# paths of the virtual adapter's builds to the test as X9_VIRTUAL_ADAPTER (whole) and X9_VIRTUAL_ADAPTER_CLASSIC (without
# the CAN FD entries).
# ThreadSanitizer: Qt and GLib are not instrumented, so their locks are unseen; what their own code does with memory and
# descriptors under these locks is left out of the comparison (ignore_noninstrumented_modules). The project's code stays
# in; suppressions for it go to cmake/tsan.supp, by function.
set(X9_TEST_PLATFORM offscreen)
if(WIN32)
  set(X9_TEST_PLATFORM windows)
endif()
set(X9_TEST_ENVIRONMENT
    "QT_QPA_PLATFORM=${X9_TEST_PLATFORM}"
    "QT_STYLE_OVERRIDE=Fusion"
    "QT_LOGGING_RULES=qt.qpa.*=false"
    "QT_ASSUME_STDERR_HAS_CONSOLE=1" # for Windows, where warnings go to a debugger otherwise
    "ASAN_OPTIONS=fast_unwind_on_malloc=0:detect_leaks=1:abort_on_error=0"
    "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/lsan.supp:print_suppressions=0"
    "UBSAN_OPTIONS=print_stacktrace=1"
    "TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/tsan.supp:ignore_noninstrumented_modules=1:second_deadlock_stack=1")

function(x9_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "ADAPTER" "TIMEOUT" "SOURCES;LIBS;LABELS")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "x9_add_test(${name}): unknown arguments ${arg_UNPARSED_ARGUMENTS}")
  endif()
  if(NOT arg_SOURCES)
    set(arg_SOURCES ${name}.cpp)
  endif()
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 120)
  endif()
  add_executable(${name} ${arg_SOURCES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/tests/bin")
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_compile_definitions(${name} PRIVATE X9_DRIVE="${X9_DRIVE}"
                                             X9_TEST_DATA="${X9_DRIVE}${PROJECT_SOURCE_DIR}/tests/data")
  target_link_libraries(${name} PRIVATE ${arg_LIBS} Qt5::Test x9_warnings)
  if(arg_ADAPTER)
    target_compile_definitions(${name} PRIVATE X9_VIRTUAL_ADAPTER="${X9_DRIVE}$<TARGET_FILE:ControlCAN>"
                                               X9_VIRTUAL_ADAPTER_CLASSIC="${X9_DRIVE}$<TARGET_FILE:ControlCAN_classic>")
    add_dependencies(${name} ControlCAN ControlCAN_classic)
  endif()
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES LABELS "${arg_LABELS}" TIMEOUT ${arg_TIMEOUT}
                                          ENVIRONMENT "${X9_TEST_ENVIRONMENT}")
  x9_keep_focus(${name})
endfunction()

# x9_keep_focus(<test>)   A test labelled gui runs alone on Windows: tests on one screen take the focus from each other,
# and under Wine every program that starts, a console program too, may take it from the window that has it. Offscreen,
# each has a screen of its own.
function(x9_keep_focus name)
  get_test_property(${name} LABELS labels)
  if(WIN32 AND "gui" IN_LIST labels)
    set_tests_properties(${name} PROPERTIES RUN_SERIAL ON)
  endif()
endfunction()
