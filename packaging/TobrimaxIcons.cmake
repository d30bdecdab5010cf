# tobrimax_add_icons(TARGET PICTURE FILE
#                    [OUTPUT FOLDER]          default: the target's name
#                    [PLATFORM NAME…]         default: all platforms
#                    [CATALOGUE FILE]         default: the built-in sizes
#                    [ROUND_CORNER FRACTION]  radius of the corners, as a part of the side
#                    [BORDER FRACTION]        width of the border, as a part of the side
#                    [BORDER_COLOR COLOR]
#                    [FIT NAME]               stretch, contain or cover a picture of another shape
#                    [PADDING FRACTION]       free margin at each edge, as a part of the shorter side
#                    [SMALL PICTURE:PX…]      other pictures for icons of up to PX pixels
#                    [BACKGROUND COLOR]       an opaque colour under the icons
#                    [LAYOUT NAME-OR-FILE…]   the files of these layouts in FOLDER, instead of platforms
#                    [NAME NAME])             the app's name, for layouts
#
# Adds a target that makes the app icons of a picture in a folder; the default build includes it. The icons are made again
# when the picture, the catalogue, an argument or the program changes. A relative PICTURE or CATALOGUE, and a LAYOUT with
# a slash or the ending .toml, is in the current source folder, a relative OUTPUT in the current build folder. A custom command of the same CMakeLists.txt may make the
# PICTURE. The words and numbers are those of `tobrimax-cli generate`; a wrong one stops CMake with the program's sentence.
cmake_policy(VERSION 3.18)

function(tobrimax_add_icons target)
  set(each_once PICTURE OUTPUT CATALOGUE ROUND_CORNER BORDER BORDER_COLOR FIT PADDING BACKGROUND NAME)
  cmake_parse_arguments(PARSE_ARGV 1 ICONS "" "${each_once}" "PLATFORM;LAYOUT;SMALL")
  if(ICONS_UNPARSED_ARGUMENTS)
    list(GET ICONS_UNPARSED_ARGUMENTS 0 word)
    message(FATAL_ERROR "tobrimax_add_icons(${target}): '${word}' is no argument of it.")
  endif()
  if(ICONS_KEYWORDS_MISSING_VALUES)
    list(GET ICONS_KEYWORDS_MISSING_VALUES 0 word)
    message(FATAL_ERROR "tobrimax_add_icons(${target}): ${word} has no value.")
  endif()
  if(NOT DEFINED ICONS_PICTURE)
    message(FATAL_ERROR "tobrimax_add_icons(${target}): there is no PICTURE.")
  endif()
  if(TARGET ${target})
    message(FATAL_ERROR "tobrimax_add_icons(${target}): there is a target of that name already.")
  endif()

  set(options)
  foreach(platform IN LISTS ICONS_PLATFORM)
    list(APPEND options --platform=${platform})
  endforeach()
  foreach(word ROUND_CORNER BORDER BORDER_COLOR FIT PADDING BACKGROUND NAME)
    if(DEFINED ICONS_${word})
      string(TOLOWER ${word} option)
      string(REPLACE "_" "-" option ${option})
      list(APPEND options "--${option}=${ICONS_${word}}")
    endif()
  endforeach()
  set(inputs)
  foreach(word PICTURE CATALOGUE)
    if(DEFINED ICONS_${word})
      get_filename_component(file "${ICONS_${word}}" ABSOLUTE)
      get_source_file_property(is_made "${file}" GENERATED)
      if(NOT is_made AND (NOT EXISTS "${file}" OR IS_DIRECTORY "${file}"))
        message(FATAL_ERROR "tobrimax_add_icons(${target}): ${word} ${file} is no file.")
      endif()
      list(APPEND inputs "${file}")
      set(${word} "${file}")
    endif()
  endforeach()
  foreach(layout IN LISTS ICONS_LAYOUT)
    if(layout MATCHES "/|\\.toml$")
      get_filename_component(layout "${layout}" ABSOLUTE)
      list(APPEND inputs "${layout}")
    endif()
    list(APPEND options "--layout=${layout}")
  endforeach()
  foreach(small IN LISTS ICONS_SMALL)
    string(REGEX REPLACE ":[^:]*$" "" file "${small}")
    get_filename_component(whole "${file}" ABSOLUTE)
    list(APPEND inputs "${whole}")
    string(REGEX REPLACE "^.*(:[^:]*)$" "${whole}\\1" small "${small}")
    list(APPEND options "--small=${small}")
  endforeach()
  if(CATALOGUE)
    list(APPEND options "--catalogue=${CATALOGUE}")
  endif()
  set(output ${target})
  if(DEFINED ICONS_OUTPUT)
    set(output "${ICONS_OUTPUT}")
  endif()
  get_filename_component(output "${output}" ABSOLUTE BASE_DIR ${CMAKE_CURRENT_BINARY_DIR})

  # The program checks its arguments before it looks for the picture. Its exit status is 2 where an argument is wrong.
  get_target_property(program Tobrimax::tobrimax-cli LOCATION)
  execute_process(
    COMMAND ${program} generate "--out=${output}" ${options} -- "${CMAKE_CURRENT_FUNCTION_LIST_FILE}.no-picture"
    RESULT_VARIABLE status
    OUTPUT_QUIET
    ERROR_VARIABLE complaint)
  if(status STREQUAL "2")
    string(REGEX REPLACE "^[^\n]*error: ([^\n]*) \\(see .*" "\\1" complaint "${complaint}")
    message(FATAL_ERROR "tobrimax_add_icons(${target}): ${complaint}")
  endif()

  # This file changes when the arguments change. A makefile does not see that by itself.
  set(stamp ${CMAKE_CURRENT_BINARY_DIR}/CMakeFiles/${target}.icons)
  set(command generate "--out=${output}" ${options} --quiet -- "${PICTURE}")
  file(WRITE ${stamp}.arguments.new "${command}\n")
  configure_file(${stamp}.arguments.new ${stamp}.arguments COPYONLY)
  get_filename_component(name "${PICTURE}" NAME)
  add_custom_command(
    OUTPUT ${stamp}
    COMMAND Tobrimax::tobrimax-cli ${command}
    COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
    DEPENDS ${inputs} ${stamp}.arguments Tobrimax::tobrimax-cli
    COMMENT "Making the app icons of ${name}"
    VERBATIM)
  add_custom_target(${target} ALL DEPENDS ${stamp})
  if(NOT DEFINED ICONS_OUTPUT)
    set_target_properties(${target} PROPERTIES ADDITIONAL_CLEAN_FILES "${output}")
  endif()
endfunction()
