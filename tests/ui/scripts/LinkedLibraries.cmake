# An executable contains the names of the libraries that it is linked with.
file(STRINGS ${PROGRAM} widgets REGEX "Qt6?Widgets")
if(NOT widgets)
  message(FATAL_ERROR "found no library names in ${PROGRAM}")
endif()
file(STRINGS ${PROGRAM} found REGEX "qscintilla|Qt6?PrintSupport")
if(found)
  message(FATAL_ERROR "${PROGRAM} must not be linked with ${found}")
endif()
