# The catalogue template: every text that the sources hand to Localize, for translators to start from.
find_program(XGETTEXT xgettext)
if(XGETTEXT)
  set(MIRVEL_POT ${CMAKE_BINARY_DIR}/mirvel.pot)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/*.cpp ${CMAKE_SOURCE_DIR}/src/*.h)
  add_custom_command(
    OUTPUT ${MIRVEL_POT}
    COMMAND
      ${XGETTEXT} --from-code=UTF-8 --language=C++ --keyword=text --keyword=format --sort-by-file
      --package-name=mirvel --package-version=${PROJECT_VERSION} --add-comments=translators --directory=${CMAKE_SOURCE_DIR}
      --output=${MIRVEL_POT} ${sources}
    DEPENDS ${sources}
    COMMENT "Collecting texts for translators"
    VERBATIM)
  add_custom_target(translations ALL DEPENDS ${MIRVEL_POT})
endif()
