# find_package(Tobrimax) gives the target Tobrimax::tobrimax-cli, the program, and the function tobrimax_add_icons.
include(${CMAKE_CURRENT_LIST_DIR}/TobrimaxPrograms.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/TobrimaxIcons.cmake)
