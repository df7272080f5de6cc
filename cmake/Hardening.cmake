# What makes a fault harder to use: addresses that nobody can foretell, tables that nobody can write, calls that go where
# they should. For everything that is built, but not beside a sanitizer or coverage, which look for faults themselves.
# tools/test-package.sh and tools/windows/test-package.sh read it back from the files in the packages.
if(x9_instrument)
  return()
endif()
include(CheckCXXCompilerFlag)
add_compile_options(-fstack-protector-strong)
if(WIN32)
  add_link_options(-Wl,--dynamicbase -Wl,--nxcompat)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    add_link_options(-Wl,--high-entropy-va)
  endif()
  # In the program itself instead of one more DLL; last on the line, as everything before needs it.
  string(APPEND CMAKE_CXX_STANDARD_LIBRARIES " -Wl,-Bstatic -lssp -Wl,-Bdynamic")
else()
  include(CheckPIESupported)
  check_pie_supported()
  add_link_options(-Wl,-z,relro -Wl,-z,now)
  check_cxx_compiler_flag(-fcf-protection=full X9_HAS_CF_PROTECTION)
  if(X9_HAS_CF_PROTECTION)
    add_compile_options(-fcf-protection=full)
  endif()
  # It needs optimisation.
  if(NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  endif()
endif()
