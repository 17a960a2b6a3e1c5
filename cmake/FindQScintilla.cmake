# Finds QScintilla for Qt 6 and defines the target QScintilla::QScintilla. QScintilla installs headers and a library, but
# no CMake package. Searches the folders of Qt 6 and CMAKE_PREFIX_PATH.
find_package(Qt6 REQUIRED COMPONENTS Widgets)
get_target_property(qt_headers Qt6::Core INTERFACE_INCLUDE_DIRECTORIES)

find_path(QScintilla_INCLUDE_DIR Qsci/qsciscintilla.h HINTS ${qt_headers} PATH_SUFFIXES qt6)
find_library(QScintilla_LIBRARY NAMES qscintilla2_qt6)
if(QScintilla_INCLUDE_DIR)
  file(STRINGS ${QScintilla_INCLUDE_DIR}/Qsci/qsciglobal.h version_line REGEX "define QSCINTILLA_VERSION_STR")
  string(REGEX MATCH "[0-9]+(\\.[0-9]+)+" QScintilla_VERSION "${version_line}")
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(
  QScintilla
  REQUIRED_VARS QScintilla_LIBRARY QScintilla_INCLUDE_DIR
  VERSION_VAR QScintilla_VERSION
  REASON_FAILURE_MESSAGE
    "It colours scripts. `scripts/dependencies build` installs it: libqscintilla2-qt6-dev on Debian, qscintilla2 by Homebrew.")
mark_as_advanced(QScintilla_INCLUDE_DIR QScintilla_LIBRARY)

if(QScintilla_FOUND AND NOT TARGET QScintilla::QScintilla)
  add_library(QScintilla::QScintilla UNKNOWN IMPORTED)
  set_target_properties(
    QScintilla::QScintilla
    PROPERTIES IMPORTED_LOCATION ${QScintilla_LIBRARY}
               INTERFACE_INCLUDE_DIRECTORIES ${QScintilla_INCLUDE_DIR}
               INTERFACE_COMPILE_DEFINITIONS QSCINTILLA_DLL
               INTERFACE_LINK_LIBRARIES Qt6::Widgets)
endif()
