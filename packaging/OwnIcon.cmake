# The application's own icon. tobrimax-cli makes it from a picture in resources/ during the build. In a build for another
# processor an emulator runs it, or an installed tobrimax-cli of this machine takes its place.
set(own_picture ${PROJECT_SOURCE_DIR}/resources/sample/tobrimax-sample.svg)
set(icon_maker ${CMAKE_COMMAND} -P ${CMAKE_CURRENT_LIST_DIR}/RunQuietly.cmake --)
if(NOT CMAKE_CROSSCOMPILING OR CMAKE_CROSSCOMPILING_EMULATOR)
  list(APPEND icon_maker ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:tobrimax-cli>)
else()
  find_program(TOBRIMAX_HOST_CLI tobrimax-cli DOC "A tobrimax-cli that runs on this machine, for the application's icon")
  if(NOT TOBRIMAX_HOST_CLI)
    message(FATAL_ERROR "The application's icon needs CMAKE_CROSSCOMPILING_EMULATOR or TOBRIMAX_HOST_CLI.")
  endif()
  list(APPEND icon_maker ${TOBRIMAX_HOST_CLI})
endif()

# tobrimax_own_icon(FILE ARGUMENTS…): makes FILE with `tobrimax-cli ARGUMENTS… --out FILE PICTURE`.
function(tobrimax_own_icon file)
  get_filename_component(folder ${file} DIRECTORY)
  file(MAKE_DIRECTORY ${folder})
  file(RELATIVE_PATH shown ${CMAKE_BINARY_DIR} ${file})
  add_custom_command(
    OUTPUT ${file}
    COMMAND ${icon_maker} ${ARGN} --out ${file} ${own_picture}
    DEPENDS tobrimax-cli ${own_picture}
    COMMENT "Making the icon ${shown}"
    VERBATIM)
endfunction()
