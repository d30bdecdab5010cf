# One place for what every target of ours is compiled with.

add_library(tobrimax_options INTERFACE)
target_include_directories(tobrimax_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_definitions(tobrimax_options INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS
                                                      QT_DISABLE_DEPRECATED_BEFORE=0x060400)
target_compile_options(
  tobrimax_options
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wshadow
            -Wconversion
            -Wsign-conversion
            -Wnon-virtual-dtor
            -Woverloaded-virtual
            -Wold-style-cast
            -Werror
            # The same rounding on every processor: no fused multiply-add behind our back.
            -ffp-contract=off)

# tobrimax_library(NAME SOURCES… ): a static library of one folder.
function(tobrimax_library name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PUBLIC tobrimax_options)
endfunction()
