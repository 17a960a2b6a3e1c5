# Lets moc see files that are new in a subfolder of a target: CMake itself starts it anew only when files that it knows
# change.
function(mirvel_moc_new_files target)
  set(list ${CMAKE_CURRENT_BINARY_DIR}/${target}_sources.txt)
  file(GENERATE OUTPUT ${list} CONTENT "$<TARGET_PROPERTY:${target},SOURCES>")
  set_source_files_properties(${list} PROPERTIES GENERATED ON)
  set_property(TARGET ${target} APPEND PROPERTY AUTOGEN_TARGET_DEPENDS ${list})
endfunction()
