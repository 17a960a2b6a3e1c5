# mirvel_define_in(target FILES file... DEFINITIONS definition...): what only some of a target's sources are to see. The
# others then don't depend on it; paths in definitions would keep a compiler cache from serving a second checkout.
function(mirvel_define_in target)
  cmake_parse_arguments(arg "" "" "FILES;DEFINITIONS" ${ARGN})
  set_property(SOURCE ${arg_FILES} TARGET_DIRECTORY ${target} APPEND PROPERTY COMPILE_DEFINITIONS ${arg_DEFINITIONS})
endfunction()
