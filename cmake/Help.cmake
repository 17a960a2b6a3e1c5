# The help pages, in the build tree and installed with the program.
find_program(CMARK cmark REQUIRED)
set(MIRVEL_HELP ${CMAKE_BINARY_DIR}/help)
file(GLOB pictures CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/docs/images/*.png)
add_custom_command(
  OUTPUT ${MIRVEL_HELP}/index.html
  COMMAND ${CMAKE_COMMAND} -DCMARK=${CMARK} -DGUIDE=${CMAKE_SOURCE_DIR}/docs/GUIDE.md -DFOLDER=${MIRVEL_HELP} -P
          ${CMAKE_SOURCE_DIR}/cmake/MakeHelp.cmake
  DEPENDS ${CMAKE_SOURCE_DIR}/docs/GUIDE.md ${CMAKE_SOURCE_DIR}/cmake/MakeHelp.cmake ${pictures}
  COMMENT "Making the help pages"
  VERBATIM)
add_custom_target(help_pages ALL DEPENDS ${MIRVEL_HELP}/index.html)
install(DIRECTORY ${MIRVEL_HELP}/ DESTINATION ${CMAKE_INSTALL_DATADIR}/mirvel/help)
