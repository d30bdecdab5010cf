# cmake -P RunQuietly.cmake -- PROGRAM ARGUMENTS…: runs a program and hides its standard output. Fails where the program
# fails.
set(command)
math(EXPR last "${CMAKE_ARGC} - 1")
foreach(number RANGE 4 ${last})
  list(APPEND command "${CMAKE_ARGV${number}}")
endforeach()
# A build with AddressSanitizer goes on where a library leaks memory.
set(ENV{LSAN_OPTIONS} suppressions=${CMAKE_CURRENT_LIST_DIR}/../tests/support/leaks.txt:print_suppressions=0)
execute_process(COMMAND ${command} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
