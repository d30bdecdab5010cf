# tobrimax_debian_changelog(FOLDER): writes FOLDER/changelog.gz. It has the text of CHANGELOG.md in the format of
# deb-changelog(5).
function(tobrimax_debian_changelog folder)
  set(text)
  set(signature)
  set(changelog ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${changelog})
  file(READ ${changelog} lines)
  # In a list of CMake these characters would divide or join lines.
  string(REGEX REPLACE "[][;]" "" lines "${lines}")
  string(REPLACE "\n" ";" lines "${lines}")
  foreach(line IN LISTS lines)
    if(line MATCHES "^## ([0-9.]+) - ([0-9-]+)$")
      execute_process(
        COMMAND date -u -R -d ${CMAKE_MATCH_2}
        OUTPUT_VARIABLE date
        OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
      string(APPEND text "${signature}tobrimax (${CMAKE_MATCH_1}) unstable; urgency=medium\n")
      set(signature "\n -- ${TOBRIMAX_MAINTAINER}  ${date}\n\n")
    elseif(signature AND line MATCHES "^### (.*)$")
      string(APPEND text "\n  [ ${CMAKE_MATCH_1} ]\n")
    elseif(signature AND line MATCHES "^- (.*)$")
      string(APPEND text "  * ${CMAKE_MATCH_1}\n")
    elseif(signature AND line MATCHES "^  (.*)$")
      string(APPEND text "    ${CMAKE_MATCH_1}\n")
    endif()
  endforeach()
  file(WRITE ${folder}/changelog "${text}${signature}")
  execute_process(COMMAND gzip -9 -n -f ${folder}/changelog COMMAND_ERROR_IS_FATAL ANY)
endfunction()
