# The packages: a tar archive, and a .deb where Debian's tools are installed. scripts/package makes them.
set(CPACK_PACKAGE_NAME tobrimax)
set(CPACK_PACKAGE_VENDOR "the Tobrimax authors")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
string(TOLOWER ${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR} system)
set(CPACK_PACKAGE_FILE_NAME tobrimax-${PROJECT_VERSION}-${system})
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
# Folders have these permissions under any umask.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ
    OWNER_WRITE
    OWNER_EXECUTE
    GROUP_READ
    GROUP_EXECUTE
    WORLD_READ
    WORLD_EXECUTE)

set(CPACK_GENERATOR TGZ)
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT CMAKE_CROSSCOMPILING)
  find_program(DPKG_SHLIBDEPS dpkg-shlibdeps)
endif()
if(DPKG_SHLIBDEPS)
  list(APPEND CPACK_GENERATOR DEB)
  include(DebianChangelog.cmake)
  set(debian_documents ${CMAKE_CURRENT_BINARY_DIR}/debian)
  tobrimax_debian_changelog(${debian_documents})
  set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_BINARY_DIR}/PackageKinds.cmake)
  configure_file(PackageKinds.cmake.in ${CPACK_PROJECT_CONFIG_FILE} @ONLY)
endif()

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${TOBRIMAX_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${TOBRIMAX_HOMEPAGE}")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Tobrimax turns one picture into the icon sets that iPhone, iPad, Apple Watch,
Mac and Android apps need: each PNG at its exact size, and Application.icns.
It reads PNG, JPEG, TIFF, GIF, BMP, WebP, ICO, icns and SVG pictures.

The application shows how the icons will look. The program tobrimax-cli does
the same for scripts and build machines. CMake projects find it by
find_package(Tobrimax).")
# dpkg-shlibdeps finds the libraries that the programs are linked with. Qt loads its reader of WebP pictures.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-image-formats-plugins")
# Qt's library has its plugin for X11 in the same package. These packages have the plugins for Wayland and other displays.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, qt6-qpa-plugins, qt6-translations-l10n")

include(CPack)
