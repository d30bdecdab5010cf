# Makes the application a bundle of macOS, Tobrimax.app, with its icon. resources/Info.plist.in names both.
include(${CMAKE_CURRENT_LIST_DIR}/OwnIcon.cmake)
set(bundle_icon ${CMAKE_CURRENT_BINARY_DIR}/Application.icns)
tobrimax_own_icon(${bundle_icon} icns make)
set_source_files_properties(${bundle_icon} PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
target_sources(tobrimax PRIVATE ${bundle_icon})
set_target_properties(
  tobrimax
  PROPERTIES MACOSX_BUNDLE ON
             OUTPUT_NAME Tobrimax
             MACOSX_BUNDLE_INFO_PLIST ${PROJECT_BINARY_DIR}/resources/Info.plist)
