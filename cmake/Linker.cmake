# A linker that takes less time than the system's, where one is installed.
if(NOT CMAKE_CROSSCOMPILING)
  find_program(X9_MOLD mold)
  if(X9_MOLD)
    add_link_options(-fuse-ld=mold)
  endif()
endif()
