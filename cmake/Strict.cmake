# The compile options of every target: the language standard, and warnings as errors.
add_library(mirvel_strict INTERFACE)
target_compile_features(mirvel_strict INTERFACE cxx_std_20)
target_compile_options(
  mirvel_strict INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wold-style-cast
                          -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough -Werror
                          # g++ also warns if enumerators of an enum class shadow outer names, hence the narrower option
                          $<IF:$<CXX_COMPILER_ID:GNU>,-Wshadow=local,-Wshadow>
                          # g++ 12 reports overlapping copies in ordinary string concatenation (GCC bug 105651)
                          $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

option(MIRVEL_SANITIZE "Address and undefined-behaviour sanitizers" OFF)
if(MIRVEL_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  # With -fsanitize, g++ gives false warnings about uninitialised values, as its manual says.
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()

# In a unity build the sources of a group see each other's unnamed namespaces: GCC warns of members from these, since
# every source is an included file, and clang that names of one source shadow those of another.
if(CMAKE_UNITY_BUILD)
  target_compile_options(mirvel_strict INTERFACE $<IF:$<CXX_COMPILER_ID:GNU>,-Wno-subobject-linkage,-Wno-shadow>)
endif()
