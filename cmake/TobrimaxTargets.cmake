# The options with which every target of the project is compiled.

add_library(tobrimax_options INTERFACE)
target_include_directories(tobrimax_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_definitions(tobrimax_options INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS
                                                      QT_DISABLE_DEPRECATED_BEFORE=0x060400)
target_compile_options(
  tobrimax_options
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wconversion
            -Wsign-conversion
            -Wnon-virtual-dtor
            -Woverloaded-virtual
            -Wold-style-cast
            $<$<BOOL:${TOBRIMAX_WERROR}>:-Werror>
            # The same rounding on every processor: the compiler makes no fused multiply-add.
            -ffp-contract=off)
# In a unity build a source sees the names of others, and shadows some of them.
if(CMAKE_UNITY_BUILD)
  target_compile_options(tobrimax_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
else()
  target_compile_options(tobrimax_options INTERFACE -Wshadow)
endif()

# Hardening of released programs: checked bounds and formats, guarded stacks and branch targets, addresses that differ at
# each start, and read-only tables of addresses.
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
target_compile_options(
  tobrimax_options INTERFACE $<$<CONFIG:Release>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3 -D_GLIBCXX_ASSERTIONS
                             -fstack-protector-strong>)
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  target_compile_options(tobrimax_options INTERFACE $<$<CONFIG:Release>:-fstack-clash-protection>)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
    target_compile_options(tobrimax_options INTERFACE $<$<CONFIG:Release>:-fcf-protection>)
  endif()
  target_link_options(tobrimax_options INTERFACE $<$<CONFIG:Release>:LINKER:-z,relro,-z,now,-z,noexecstack>)
  # A library that a program takes nothing from is not linked: each library costs time when a program starts.
  target_link_options(tobrimax_options INTERFACE LINKER:--as-needed)
endif()

# The list has the sources that the integer checks leave out: headers of other libraries.
set(integer_checks -fsanitize=integer -fno-sanitize-recover=integer
                   -fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/cmake/integer-checks.txt)

# tobrimax_check_integers(SOURCES…): checks whole numbers in these sources of one library, in the preset `integer`.
function(tobrimax_check_integers)
  if(TOBRIMAX_INTEGER_CHECKS)
    set_source_files_properties(${ARGN} PROPERTIES COMPILE_OPTIONS "${integer_checks}")
  endif()
endfunction()

# tobrimax_room(NAME SOURCES … [ALONE …] [ROOMS …] [QT …] [PACKAGES …]): the static library of one folder. ALONE are
# sources that no other is compiled together with in a unity build: those that include themselves once for each set of
# vector instructions. ROOMS are the folders that it includes, with _ for /; scripts/layers compares them with what is
# included. QT is the highest of Qt's libraries that it uses. PACKAGES are foreign libraries; only this library uses them.
function(tobrimax_room name)
  cmake_parse_arguments(PARSE_ARGV 1 ROOM "" "QT" "SOURCES;ALONE;ROOMS;PACKAGES")
  add_library(${name} STATIC ${ROOM_SOURCES} ${ROOM_ALONE})
  set_source_files_properties(${ROOM_ALONE} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
  target_link_libraries(${name} PUBLIC tobrimax_options ${ROOM_ROOMS})
  if(ROOM_QT)
    target_link_libraries(${name} PUBLIC Qt6::${ROOM_QT})
  endif()
  target_link_libraries(${name} PRIVATE ${ROOM_PACKAGES})
  tobrimax_headers_alone(${name})
endfunction()

# headers_alone compiles each header of each room as if a source included nothing else. scripts/layers builds it. A header
# that its own source includes first is compiled alone there.
add_custom_target(headers_alone)
function(tobrimax_headers_alone name)
  file(
    GLOB headers
    CONFIGURE_DEPENDS
    RELATIVE ${PROJECT_SOURCE_DIR}
    ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  set(sources)
  foreach(header ${headers})
    string(REGEX REPLACE "h$" "cpp" own ${PROJECT_SOURCE_DIR}/${header})
    if(EXISTS ${own})
      file(STRINGS ${own} first REGEX "^#include" LIMIT_COUNT 1)
      if(first STREQUAL "#include \"${header}\"")
        continue()
      endif()
    endif()
    set(source ${PROJECT_BINARY_DIR}/headers_alone/${header}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "#include \"${header}\"\n")
    list(APPEND sources ${source})
  endforeach()
  if(NOT sources)
    return()
  endif()
  add_library(${name}_headers OBJECT EXCLUDE_FROM_ALL ${sources})
  target_link_libraries(${name}_headers PRIVATE ${name})
  set_target_properties(${name}_headers PROPERTIES UNITY_BUILD OFF)
  target_include_directories(${name}_headers SYSTEM PRIVATE $<TARGET_PROPERTY:${name},INCLUDE_DIRECTORIES>)
  add_dependencies(headers_alone ${name}_headers)
endfunction()
