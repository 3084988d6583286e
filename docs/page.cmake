# Makes an HTML page of a Markdown document:
#   cmake -DCMARK=program -DROOT=project -DSOURCE=document -DTARGET=page -DPAGES=document=page|... -P page.cmake
# Headings get the anchors that links in Markdown expect. A link to a document that has a page leads there; one to another
# file of the project, which is not beside the program, becomes plain text.
cmake_minimum_required(VERSION 3.22)
execute_process(COMMAND ${CMARK} --extension table ${ROOT}/${SOURCE} OUTPUT_VARIABLE html COMMAND_ERROR_IS_FATAL ANY)

# One after the other: what has its anchor is not found again.
while(html MATCHES "<h([1-6])>([^\n]*)</h[1-6]>")
  set(heading "${CMAKE_MATCH_0}")
  set(level ${CMAKE_MATCH_1})
  set(text "${CMAKE_MATCH_2}")
  if(NOT DEFINED title)
    string(REGEX REPLACE "<[^>]*>" "" title "${text}")
  endif()
  string(TOLOWER "${text}" anchor)
  string(REGEX REPLACE "<[^>]*>|&[a-z]+;" "" anchor "${anchor}")
  string(REGEX REPLACE "[^a-z0-9 _-]" "" anchor "${anchor}")
  string(REPLACE " " "-" anchor "${anchor}")
  string(REPLACE "${heading}" "<h${level} id=\"${anchor}\">${text}</h${level}>" html "${html}")
endwhile()

get_filename_component(folder ${ROOT}/${SOURCE} DIRECTORY)
string(REPLACE "|" ";" PAGES "${PAGES}")
set(here "#")
foreach(page IN LISTS PAGES)
  string(REGEX REPLACE "=.*" "" document ${page})
  string(REGEX REPLACE ".*=" "" name ${page})
  file(RELATIVE_PATH link ${folder} ${ROOT}/${document})
  string(REPLACE "href=\"${link}\"" "href=\"${name}\"" html "${html}")
  string(REPLACE "href=\"${link}#" "href=\"${name}#" html "${html}")
  string(APPEND here "|${name}")
endforeach()

string(REGEX MATCHALL "<a href=\"[^\"]*\">" links "${html}")
list(REMOVE_DUPLICATES links)
foreach(link IN LISTS links)
  if(NOT link MATCHES "href=\"(${here}|https?:)")
    string(REGEX REPLACE "([][+.*()^$?])" "\\\\\\1" pattern "${link}")
    string(REGEX REPLACE "${pattern}(([^<]|<code>|</code>)*)</a>" "\\1" html "${html}")
  endif()
endforeach()

file(READ ${CMAKE_CURRENT_LIST_DIR}/page.css style)
file(WRITE ${TARGET} "<!DOCTYPE html>
<html lang=\"en\">
<head>
<meta charset=\"utf-8\">
<title>${title}</title>
<style>
${style}</style>
</head>
<body>
${html}</body>
</html>
")
