# Makes automoc consider files that were added in a subfolder of a target; CMake reruns it only when known files change.
function(mirvel_moc_new_files target)
  set(list ${CMAKE_CURRENT_BINARY_DIR}/${target}_sources.txt)
  file(GENERATE OUTPUT ${list} CONTENT "$<TARGET_PROPERTY:${target},SOURCES>")
  set_source_files_properties(${list} PROPERTIES GENERATED ON)
  set_property(TARGET ${target} APPEND PROPERTY AUTOGEN_TARGET_DEPENDS ${list})
endfunction()
