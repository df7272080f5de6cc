# A linker that takes less time than the system's, where one is installed.
if(NOT CMAKE_CROSSCOMPILING)
  find_program(X9_MOLD mold)
  if(X9_MOLD)
    add_link_options(-fuse-ld=mold)
  endif()
endif()

# On 64-bit Windows a 32-bit program may then have 4 GB of memory instead of 2.
if(WIN32 AND CMAKE_SIZEOF_VOID_P EQUAL 4)
  add_link_options(-Wl,--large-address-aware)
endif()
