# tamo_page(VARIABLE DIRECTORY dir SCRIPTS files...): has page.html, page.css and the scripts of a directory put
# together as a C++ source, whose name VARIABLE gets.
function(tamo_page variable)
  cmake_parse_arguments(PARSE_ARGV 1 page "" DIRECTORY SCRIPTS)
  set(embed ${PROJECT_SOURCE_DIR}/cmake/EmbedPage.cmake)
  set(result ${CMAKE_CURRENT_BINARY_DIR}/PageText.cpp)
  list(TRANSFORM page_SCRIPTS PREPEND ${page_DIRECTORY}/ OUTPUT_VARIABLE scripts)
  string(REPLACE ";" "," names "${page_SCRIPTS}")
  add_custom_command(OUTPUT ${result}
    COMMAND ${CMAKE_COMMAND} -DDIRECTORY=${page_DIRECTORY} -DSCRIPTS=${names} -DRESULT=${result} -P ${embed}
    DEPENDS ${embed} ${page_DIRECTORY}/page.html ${page_DIRECTORY}/page.css ${scripts}
    COMMENT "Putting the page together" VERBATIM)
  set(${variable} ${result} PARENT_SCOPE)
endfunction()
