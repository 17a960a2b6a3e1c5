# mirvel_define_in(target FILES file... DEFINITIONS definition...) sets compile definitions for some of a target's sources.
# The others then don't depend on them: a definition that contains a path prevents a compiler cache from serving a second
# checkout.
function(mirvel_define_in target)
  cmake_parse_arguments(arg "" "" "FILES;DEFINITIONS" ${ARGN})
  set_property(SOURCE ${arg_FILES} TARGET_DIRECTORY ${target} APPEND PROPERTY COMPILE_DEFINITIONS ${arg_DEFINITIONS})
endfunction()
