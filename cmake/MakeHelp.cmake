# Makes the help pages out of the guide: cmake -DCMARK=cmark -DGUIDE=docs/GUIDE.md -DFOLDER=help -P MakeHelp.cmake
#
# "index.html" has the whole guide. Each section has a small page that leads there, since many programs that open files
# drop the fragment of an address. The name of a section is given by <a id="name"></a> on the line before its heading;
# otherwise it is made from the title. Fails if two sections have the same name, a section has that of the main page, or
# a link leads to no section or to a file, since only the pictures are copied.
cmake_minimum_required(VERSION 3.25)

set(style "
:root { color-scheme: light dark; }
body { font: 1rem/1.55 system-ui, sans-serif; max-width: 46rem; margin: 2rem auto; padding: 0 1rem; }
h1, h2, h3 { line-height: 1.25; margin-top: 2em; }
h1 { margin-top: 0; }
:target { outline: 0.15em solid; outline-offset: 0.3em; }
img { max-width: 100%; height: auto; }
code { font-family: ui-monospace, monospace; }
nav ul { padding-left: 1.2em; }
nav .level3 { margin-left: 1.5em; }
")

function(make_head result title more)
  set(${result} "<!DOCTYPE html>
<html lang=\"en\" dir=\"ltr\">
<head>
<meta charset=\"utf-8\">
<title>${title}</title>
${more}
</head>
" PARENT_SCOPE)
endfunction()

function(name_from title result)
  string(REGEX REPLACE "<[^>]*>|&[a-z]+;" "" name "${title}")
  string(TOLOWER "${name}" name)
  string(REGEX REPLACE "[^a-z0-9 ]" "" name "${name}")
  string(REPLACE " " "-" name "${name}")
  set(${result} "${name}" PARENT_SCOPE)
endfunction()

execute_process(COMMAND ${CMARK} --unsafe ${GUIDE} OUTPUT_VARIABLE rest COMMAND_ERROR_IS_FATAL ANY)
file(REMOVE_RECURSE ${FOLDER})

# The page from the beginning, with a name for each heading.
set(page "")
set(contents "")
set(names "")
while(rest MATCHES "(<p><a id=\"([^\"]*)\"></a></p>\n)?<h([1-6])>([^\n]*)</h[1-6]>")
  set(heading "${CMAKE_MATCH_0}")
  set(name "${CMAKE_MATCH_2}")
  set(level "${CMAKE_MATCH_3}")
  set(title "${CMAKE_MATCH_4}")
  if(name STREQUAL "")
    name_from("${title}" name)
  endif()
  if(name MATCHES "^[Ii][Nn][Dd][Ee][Xx]$")
    message(FATAL_ERROR "${GUIDE}: the page of the section \"${title}\" would be the main page")
  endif()
  if(name IN_LIST names)
    message(FATAL_ERROR "${GUIDE}: the section \"${name}\" occurs twice")
  endif()
  list(APPEND names "${name}")
  string(FIND "${rest}" "${heading}" begin)
  string(LENGTH "${heading}" length)
  math(EXPR end "${begin} + ${length}")
  string(SUBSTRING "${rest}" 0 ${begin} before)
  string(SUBSTRING "${rest}" ${end} -1 rest)
  string(APPEND page "${before}<h${level} id=\"${name}\">${title}</h${level}>")
  if(level GREATER 1)
    string(APPEND contents "<li class=\"level${level}\"><a href=\"#${name}\">${title}</a></li>\n")
  endif()
  make_head(head "${title}" "<meta http-equiv=\"refresh\" content=\"0; url=index.html#${name}\">")
  file(WRITE ${FOLDER}/${name}.html
       "${head}<body><p><a href=\"index.html#${name}\">${title}</a></p></body>\n</html>\n")
endwhile()
string(APPEND page "${rest}")

set(rest "${page}")
while(rest MATCHES "(href|src)=\"([^\"]*)\"(.*)")
  set(attribute "${CMAKE_MATCH_1}")
  set(target "${CMAKE_MATCH_2}")
  set(rest "${CMAKE_MATCH_3}")
  if(attribute STREQUAL "src")
    get_filename_component(from ${GUIDE} DIRECTORY)
    get_filename_component(to ${FOLDER}/${target} DIRECTORY)
    file(COPY ${from}/${target} DESTINATION ${to})
  elseif(target MATCHES "^#(.*)")
    if(NOT CMAKE_MATCH_1 IN_LIST names)
      message(FATAL_ERROR "${GUIDE}: there is no section \"${CMAKE_MATCH_1}\"")
    endif()
  elseif(NOT target MATCHES "^[a-z]+:")
    message(FATAL_ERROR "${GUIDE}: \"${target}\" isn't part of the help pages")
  endif()
endwhile()

make_head(head "Mirvel Help" "<meta name=\"viewport\" content=\"width=device-width\">\n<style>${style}</style>")
file(
  WRITE ${FOLDER}/index.html
  "${head}<body>\n<nav aria-label=\"Contents\">\n<ul>\n${contents}</ul>\n</nav>\n<main>\n${page}</main>\n</body>\n</html>\n")
