# One set of warnings for all of our own code; every warning is an error.
add_library(sorvik_warnings INTERFACE)
target_compile_options(sorvik_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Werror
  -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wnon-virtual-dtor
  -Woverloaded-virtual -Wcast-align -Wunused -Wnull-dereference -Wdouble-promotion
  -Wformat=2 -Wimplicit-fallthrough -Wextra-semi)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # g++ 12 reports dangling null pointers inside inlined library code at -O2 and above, and overlapping copies for a
  # literal in front of a std::string (GCC bug 105651).
  target_compile_options(sorvik_warnings INTERFACE -Wno-null-dereference -Wno-restrict)
endif()
target_compile_definitions(sorvik_warnings INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH)

if(SORVIK_SANITIZE)
  add_compile_options(-fsanitize=${SORVIK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${SORVIK_SANITIZE})
endif()
