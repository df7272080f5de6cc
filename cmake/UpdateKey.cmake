# The key that updates must be signed with, see docs/publishing.md. Also a script: cmake -DX9_UPDATE_KEY=... -P <this file>
# says whether it is one.
set(X9_UPDATE_KEY "" CACHE STRING "Public key of minisign's that updates must be signed with; empty: they need no signature")

# 42 bytes in base64: "Ed", which gives "RW" and a letter of four, the key's number and the key.
string(LENGTH "${X9_UPDATE_KEY}" x9_update_key_length)
if(NOT X9_UPDATE_KEY STREQUAL "" AND NOT (x9_update_key_length EQUAL 56 AND X9_UPDATE_KEY MATCHES "^RW[QRST][A-Za-z0-9+/]+$"))
  message(FATAL_ERROR "X9_UPDATE_KEY is no public key of minisign's: \"${X9_UPDATE_KEY}\". "
                      "It is the second line of the file with the public key, 56 characters that begin with RW.")
endif()
