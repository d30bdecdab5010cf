# The files that find_package(Tobrimax) reads. They give the target Tobrimax::tobrimax-cli and tobrimax_add_icons.
include(CMakePackageConfigHelpers)

set(package_folder lib/cmake/Tobrimax)
install(
  EXPORT Tobrimax
  NAMESPACE Tobrimax::
  FILE TobrimaxPrograms.cmake
  DESTINATION ${package_folder})
# Before 1.0 a minor version may take other arguments. The program is a tool, so its processor does not matter.
write_basic_package_version_file(
  ${CMAKE_CURRENT_BINARY_DIR}/TobrimaxConfigVersion.cmake
  COMPATIBILITY SameMinorVersion
  ARCH_INDEPENDENT)
install(FILES TobrimaxConfig.cmake TobrimaxIcons.cmake ${CMAKE_CURRENT_BINARY_DIR}/TobrimaxConfigVersion.cmake
        DESTINATION ${package_folder})
