# What `cmake --install` puts where, and the packages that CPack makes of it. Each system has a file of its own, which
# adds its install rules and names its generators in CPACK_GENERATOR.

# The day of this version: in the changelogs, and the time of all files in a package, so that the same sources make the
# same package.
set(X9_RELEASE_DATE "2026-11-21")

set(CPACK_PACKAGE_NAME "${PROJECT_NAME}")
set(CPACK_PACKAGE_VENDOR "X9CAN developers")
set(CPACK_PACKAGE_CONTACT "X9CAN developers <x9can@example.com>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/package")
set(CPACK_STRIP_FILES ON)

# The same day as a time stamp.
if(CMAKE_HOST_UNIX)
  execute_process(COMMAND date -u -d "${X9_RELEASE_DATE}" +%s OUTPUT_VARIABLE x9_release_seconds
                  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
endif()

if(UNIX AND NOT APPLE)
  include(PackagingLinux)
elseif(WIN32)
  include(PackagingWindows)
endif()

# After everything that sets CPACK_ variables.
if(CPACK_GENERATOR)
  include(CPack)
endif()
