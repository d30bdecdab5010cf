# The application on a desktop: its entry, its icons in the theme hicolor, and its AppStream description. The formats are
# those of freedesktop.org.
include(OwnIcon.cmake)
include(MetaInfo.cmake)

set(icons)
foreach(size 16 22 24 32 48 64 128 256 512)
  set(place hicolor/${size}x${size}/apps)
  set(icon ${CMAKE_CURRENT_BINARY_DIR}/${place}/tobrimax.png)
  tobrimax_own_icon(${icon} export --format png --size ${size}x${size})
  list(APPEND icons ${icon})
  install(FILES ${icon} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/${place})
endforeach()
add_custom_target(desktop_icons ALL DEPENDS ${icons})
add_dependencies(installed_files desktop_icons)
install(
  FILES ${own_picture}
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps
  RENAME tobrimax.svg)

install(FILES tobrimax.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)

set(metainfo ${CMAKE_CURRENT_BINARY_DIR}/local.varnholt.tobrimax.metainfo.xml)
tobrimax_metainfo(${metainfo} "${TOBRIMAX_HOMEPAGE}")
install(FILES ${metainfo} DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
