# Qt Test under CTest. The tests of a folder share one program, which holds all their classes; CTest starts it once for
# each class, so that every test is a process of its own, named, labelled and timed by itself.
#
#   x9_test_program(<folder>_tests LIBS <library>... [SOURCES <file>...] [ADAPTER])
#   x9_add_test(<tst_Name> LABELS <label>... [SOURCES <file>...] [TIMEOUT <seconds>] [OWN_PROGRAM]
#               [FUNCTIONS <name>...])
#
# x9_test_program begins a program, to which the x9_add_test after it add their sources (<tst_Name>.cpp by default).
# OWN_PROGRAM is for a test that replaces functions of the system for its whole program, or that writes files beside it:
# <tst_Name>_program has the same libraries and a folder of its own. ADAPTER hands the paths of the
# virtual adapter's builds to the program as X9_VIRTUAL_ADAPTER (whole) and X9_VIRTUAL_ADAPTER_CLASSIC (without the CAN FD
# entries). FUNCTIONS makes a test of each function of a class that takes long, <tst_Name>.<function>, so that they run side
# by side; one more, <tst_Name>.functions, fails where the class has others than these.
#
# Labels: unit, gui, device, slow (ten seconds and more: these begin), layering, files (paths, and the text in files: runs in several code pages), threads
# (more than one thread of ours or of the toolkit's; these, and no others, run under ThreadSanitizer). That a test has the
# label threads exactly when it starts one is checked by the program itself, see tests/support/TestProgram.cpp.
#
# Tests run offscreen, for Windows on a screen that each has to itself: windows on one screen take the focus from each other,
# and under Wine every program that starts, a console program too, may take it from the window that has it.
#
# AddressSanitizer notes the callers of each allocation by their frame pointers, which takes a twentieth of the time but
# ends at the first library that has none. When it reports a leak of which too little is shown, run the test again with
# fast_unwind_on_malloc=0 in ASAN_OPTIONS.
#
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
    "ASAN_OPTIONS=detect_leaks=1:abort_on_error=0"
    "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/lsan.supp:print_suppressions=0"
    "UBSAN_OPTIONS=print_stacktrace=1"
    "TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/tsan.supp:ignore_noninstrumented_modules=1:second_deadlock_stack=1")

# What a program of tests is made with, whichever tests it holds.
function(x9_make_test_program program)
  cmake_parse_arguments(PARSE_ARGV 1 arg "ADAPTER" "" "SOURCES;LIBS")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "${program}: unknown arguments ${arg_UNPARSED_ARGUMENTS}")
  endif()
  add_executable(${program} ${arg_SOURCES})
  set_target_properties(${program} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/tests/bin")
  target_include_directories(${program} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_compile_definitions(${program} PRIVATE X9_DRIVE="${X9_DRIVE}"
                                                X9_TEST_DATA="${X9_DRIVE}${PROJECT_SOURCE_DIR}/tests/data")
  target_link_libraries(${program} PRIVATE ${arg_LIBS} x9_test_main x9_warnings)
  x9_precompile(${program} test)
  if(arg_ADAPTER)
    target_compile_definitions(
      ${program} PRIVATE X9_VIRTUAL_ADAPTER="${X9_DRIVE}$<TARGET_FILE:ControlCAN>"
                         X9_VIRTUAL_ADAPTER_CLASSIC="${X9_DRIVE}$<TARGET_FILE:ControlCAN_classic>")
    add_dependencies(${program} ControlCAN ControlCAN_classic)
  endif()
endfunction()

macro(x9_test_program program)
  x9_make_test_program(${program} ${ARGN})
  set(X9_TEST_PROGRAM ${program})
  cmake_parse_arguments(X9_TEST "ADAPTER" "" "SOURCES;LIBS" ${ARGN})
endmacro()

function(x9_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "OWN_PROGRAM" "TIMEOUT" "SOURCES;LABELS;FUNCTIONS")
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "x9_add_test(${name}): unknown arguments ${arg_UNPARSED_ARGUMENTS}")
  endif()
  if(NOT arg_SOURCES)
    set(arg_SOURCES ${name}.cpp)
  endif()
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 120)
  endif()
  set(program ${X9_TEST_PROGRAM})
  if(arg_OWN_PROGRAM)
    set(program ${name}_program)
    if(X9_TEST_ADAPTER)
      set(adapter ADAPTER)
    endif()
    x9_make_test_program(${program} LIBS ${X9_TEST_LIBS} ${adapter})
    set_target_properties(${program} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/tests/${name}")
  endif()
  target_sources(${program} PRIVATE ${arg_SOURCES})
  set(threads none)
  if("threads" IN_LIST arg_LABELS)
    set(threads some)
  endif()
  set(tests ${name})
  if(arg_FUNCTIONS)
    list(TRANSFORM arg_FUNCTIONS PREPEND "${name}." OUTPUT_VARIABLE tests)
    if(UNIX) # under Wine the program's output is not seen
      add_test(NAME ${name}.functions COMMAND ${program} ${name} -functions)
      list(JOIN arg_FUNCTIONS "\\(\\)\n" functions)
      set_tests_properties(${name}.functions PROPERTIES LABELS unit ENVIRONMENT "${X9_TEST_ENVIRONMENT}"
                                                        PASS_REGULAR_EXPRESSION "(^|\n)${functions}\\(\\)\n$")
    endif()
  endif()
  foreach(test IN LISTS tests)
    string(REGEX MATCH "[^.]*$" function "${test}")
    if(NOT arg_FUNCTIONS)
      set(function "")
    endif()
    add_test(NAME ${test} COMMAND ${program} ${name} ${function})
    set_tests_properties(${test} PROPERTIES LABELS "${arg_LABELS}" TIMEOUT ${arg_TIMEOUT}
                                            ENVIRONMENT "${X9_TEST_ENVIRONMENT};X9_TEST_THREADS=${threads}")
    if(WIN32)
      set_tests_properties(${test} PROPERTIES RESOURCE_GROUPS screens:1)
    endif()
    # CTest begins with the highest costs, so that no long test is left at the end.
    if("slow" IN_LIST arg_LABELS)
      set_tests_properties(${test} PROPERTIES COST 100)
    endif()
    # The user's own settings are left alone, and no two tests have the same.
    set_property(TEST ${test} APPEND PROPERTY ENVIRONMENT "XDG_CONFIG_HOME=${PROJECT_BINARY_DIR}/tests/config/${test}")
  endforeach()
endfunction()
