# The catalogue template with every text that the sources pass to Localize. The sources are parsed as Objective-C, whose
# format strings use the placeholder "%@" as well, so that msgfmt can compare the placeholders of a translation with those
# of the original.
find_program(XGETTEXT xgettext)
if(XGETTEXT)
  set(MIRVEL_POT ${CMAKE_BINARY_DIR}/mirvel.pot)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/src/*.cpp
       ${CMAKE_SOURCE_DIR}/src/*.h)
  list(FILTER sources EXCLUDE REGEX "^src/(demo|ctl)/")
  add_custom_command(
    OUTPUT ${MIRVEL_POT}
    COMMAND
      ${XGETTEXT} --from-code=UTF-8 --language=ObjectiveC --keyword=text --keyword=format
      --keyword=clause --keyword=translatable --sort-by-file
      --package-name=mirvel --package-version=${PROJECT_VERSION} --add-comments=translators --directory=${CMAKE_SOURCE_DIR}
      --output=${MIRVEL_POT} ${sources}
    DEPENDS ${sources}
    COMMENT "Collecting texts for translators"
    VERBATIM)
  add_custom_target(translations ALL DEPENDS ${MIRVEL_POT})
endif()

# The compiled catalogues, in the same layout as installed. MIRVEL_LANGUAGES lists the languages.
set(MIRVEL_CATALOGUES ${CMAKE_BINARY_DIR}/locale)
find_program(MSGFMT msgfmt)
if(MSGFMT)
  file(GLOB translations CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/data/translations/*.po)
  foreach(translation ${translations})
    get_filename_component(language ${translation} NAME_WE)
    set(folder ${MIRVEL_CATALOGUES}/${language}/LC_MESSAGES)
    add_custom_command(
      OUTPUT ${folder}/mirvel.mo
      COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
      COMMAND ${MSGFMT} --output-file=${folder}/mirvel.mo ${translation}
      DEPENDS ${translation}
      COMMENT "Compiling the texts in ${language}"
      VERBATIM)
    install(FILES ${folder}/mirvel.mo DESTINATION ${CMAKE_INSTALL_LOCALEDIR}/${language}/LC_MESSAGES)
    list(APPEND catalogues ${folder}/mirvel.mo)
    list(APPEND MIRVEL_LANGUAGES ${language})
  endforeach()
  add_custom_target(catalogues ALL DEPENDS ${catalogues})
else()
  message(STATUS "msgfmt not found: the program will be in English only")
endif()
