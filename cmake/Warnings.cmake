# x9_warnings: the warnings and Qt restrictions every target of the project is compiled with.
include(CheckCXXCompilerFlag)

add_library(x9_warnings INTERFACE)
target_compile_options(x9_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast)
foreach(flag IN ITEMS -Wsuggest-override -Wzero-as-null-pointer-constant -Wnull-dereference)
  string(MAKE_C_IDENTIFIER "X9_HAS${flag}" known)
  check_cxx_compiler_flag(${flag} ${known})
  if(${known})
    target_compile_options(x9_warnings INTERFACE ${flag})
  endif()
endforeach()
# g++ 12 takes the storage of a QVector for the 24 bytes of its header and warns of every initializer list.
check_cxx_compiler_flag(-Wstringop-overflow X9_HAS_Wstringop_overflow)
if(X9_HAS_Wstringop_overflow)
  target_compile_options(x9_warnings INTERFACE -Wno-stringop-overflow)
endif()
if(X9_WARNINGS_AS_ERRORS)
  target_compile_options(x9_warnings INTERFACE -Werror)
endif()
target_compile_definitions(x9_warnings INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_FOREACH
                                                 QT_DISABLE_DEPRECATED_BEFORE=0x050F00)
