# libsodium, which checks the signatures of updates: the target Sodium::Sodium.
find_path(SODIUM_INCLUDE_DIR NAMES sodium.h)
find_library(SODIUM_LIBRARY NAMES sodium)
mark_as_advanced(SODIUM_INCLUDE_DIR SODIUM_LIBRARY)
if(NOT SODIUM_INCLUDE_DIR OR NOT SODIUM_LIBRARY)
  message(FATAL_ERROR "libsodium was not found. On Debian: apt-get install libsodium-dev; "
                      "for Windows: tools/windows/build-libraries.sh")
endif()
add_library(Sodium::Sodium UNKNOWN IMPORTED GLOBAL)
set_target_properties(Sodium::Sodium PROPERTIES IMPORTED_LOCATION "${SODIUM_LIBRARY}"
                                                INTERFACE_INCLUDE_DIRECTORIES "${SODIUM_INCLUDE_DIR}")
