# What every target of the project compiles with: the standard, and warnings as errors.
add_library(mirvel_strict INTERFACE)
target_compile_features(mirvel_strict INTERFACE cxx_std_20)
target_compile_options(
  mirvel_strict INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wold-style-cast
                          -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough -Werror
                          # g++ takes the enumerators of an enum class for shadows of outer names, hence its narrower form
                          $<IF:$<CXX_COMPILER_ID:GNU>,-Wshadow=local,-Wshadow>
                          # g++ 12 sees overlapping copies in plain string concatenation (its bug 105651)
                          $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

option(MIRVEL_SANITIZE "Address and undefined-behaviour sanitizers" OFF)
if(MIRVEL_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  # The checks that g++ inserts make it doubt values that are plainly set, as its manual says of -fsanitize.
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()
