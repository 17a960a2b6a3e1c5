# The libraries that a program needs stand in it by their names.
file(STRINGS ${PROGRAM} widgets REGEX "Qt6?Widgets")
if(NOT widgets)
  message(FATAL_ERROR "${PROGRAM} doesn't name its libraries")
endif()
file(STRINGS ${PROGRAM} found REGEX "qscintilla|Qt6?PrintSupport")
if(found)
  message(FATAL_ERROR "${PROGRAM} is linked with ${found}")
endif()
